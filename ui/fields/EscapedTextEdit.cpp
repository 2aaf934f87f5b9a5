#include "ui/fields/EscapedTextEdit.h"

#include "core/Text.h"
#include "patch/modPatchText.h"
#include "ui/LatinLineEdit.h"
#include "ui/LatinText.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextBlock>

#include <algorithm>

namespace plinket3 {

namespace {

QString Displayed(std::string_view text) {
    return ShownText(ReplaceAll(modPatchText::ShowLineBreaks(modPatchText::EscapeText(text)), "\r\n", "\n"));
}

std::string StoredFrom(const QString& escaped) { return modPatchText::UnescapeText(StoredText(escaped)); }

} // namespace

EscapedTextEdit::EscapedTextEdit(const QString& name, const QString& accessibleName) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::textChanged, this, &EscapedTextEdit::Check);
}

void EscapedTextEdit::ShowText(std::string_view text, std::optional<std::int32_t> limit) {
    limit_ = limit;
    accepted_ = Displayed(text);
    acceptedLength_ = text.size();
    {
        const QScopedValueRollback filling(checking_, false);
        setPlainText(accepted_);
    }
    // Undo would lead back to a text that is too long.
    setUndoRedoEnabled(!limit_ || text.size() <= static_cast<std::size_t>(std::max(*limit_, 0)));
    emit Edited();
}

void EscapedTextEdit::ReplaceText(std::string_view text) {
    QTextCursor all(document());
    all.select(QTextCursor::Document);
    all.insertText(Displayed(text));
}

/// The raw text, because the plain one turns the no-break space into a blank.
QString EscapedTextEdit::Escaped(int end) const {
    return document()->toRawText().left(end).remove(QChar::ParagraphSeparator);
}

std::string EscapedTextEdit::Stored() const { return StoredFrom(Escaped()); }

void EscapedTextEdit::keyPressEvent(QKeyEvent* event) {
    if (!isReadOnly() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        insertPlainText(QStringLiteral("\\n"));
    else
        QPlainTextEdit::keyPressEvent(event);
}

void EscapedTextEdit::insertFromMimeData(const QMimeData* source) {
    QString text = source->text();
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QStringLiteral("\\n\n"), QStringLiteral("\\n")); // copied out of such a box
    text.replace('\n', QStringLiteral("\\n")).replace('\r', QStringLiteral("\\r")).replace('\t', QStringLiteral("\\t"));
    insertPlainText(text);
}

QString EscapedTextEdit::WhyRefused() const {
    const QString escaped = Escaped();
    if (QString why = WhyNotStorable(escaped); !why.isEmpty())
        return why;
    const std::size_t length = StoredFrom(escaped).size();
    if (limit_ && length > static_cast<std::size_t>(std::max(*limit_, 0)) && length > acceptedLength_)
        return tr("There is room for %1 characters in this string.").arg(*limit_);
    return {};
}

QString EscapedTextEdit::Raw() const { return document()->toRawText().replace(QChar::ParagraphSeparator, '\n'); }

/// Goes back to the accepted text so that the user's Undo knows nothing of what was refused.
void EscapedTextEdit::Revert() {
    const QScopedValueRollback reverting(checking_, false);
    if (!isUndoRedoEnabled()) {
        setPlainText(accepted_);
        return;
    }
    undo();
    document()->clearUndoRedoStacks(QTextDocument::RedoStack);
    if (Raw() == accepted_)
        return;
    QTextCursor all(document()); // one step holds a whole run of typing
    all.select(QTextCursor::Document);
    all.insertText(accepted_);
}

void EscapedTextEdit::Check() {
    if (!checking_)
        return;
    const QString why = WhyRefused();
    if (why.isEmpty()) {
        accepted_ = Raw();
        acceptedLength_ = Stored().size();
        emit Edited();
        return;
    }
    const int caret = textCursor().position();
    Revert();
    QTextCursor back = textCursor();
    back.setPosition(std::clamp(caret - 1, 0, static_cast<int>(accepted_.size())));
    setTextCursor(back);
    emit Refused(why);
}

} // namespace plinket3
