#include "ui/fields/NoteEdit.h"

#include "ui/LatinText.h"

#include <QSignalBlocker>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace plinket3 {

NoteEdit::NoteEdit(const QString& name, const QString& accessibleName, Tell tell) : tell_(std::move(tell)) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false); // undo is the patch's
    connect(this, &QPlainTextEdit::textChanged, this, &NoteEdit::Check);
}

void NoteEdit::ShowNote(std::string_view note) {
    if (note == Note())
        return;
    const QSignalBlocker quiet(this);
    accepted_ = ShownText(note);
    setPlainText(accepted_);
}

/// The raw text, because the plain one turns the no-break space into a blank.
std::string NoteEdit::Note() const {
    return StoredText(document()->toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n')));
}

int NoteEdit::HeightOf(int lines) const {
    return lines * fontMetrics().lineSpacing() + 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
}

void NoteEdit::Check() {
    QString text = document()->toRawText();
    text.remove(QChar::ParagraphSeparator);
    const QString why = WhyNotStorable(text);
    if (why.isEmpty()) {
        accepted_ = ShownText(Note());
        emit Edited();
        return;
    }
    const int caret = textCursor().position();
    {
        const QSignalBlocker quiet(this);
        setPlainText(accepted_);
    }
    QTextCursor back = textCursor();
    back.setPosition(std::clamp(caret - 1, 0, static_cast<int>(accepted_.size())));
    setTextCursor(back);
    tell_(why);
}

} // namespace plinket3
