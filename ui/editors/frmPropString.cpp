#include "ui/editors/frmPropString.h"

#include "core/Text.h"
#include "patch/TextReplace.h"
#include "patch/modPatchText.h"
#include "ui/AcceptButtons.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/EscapedTextEdit.h"
#include "ui/lists/StringsModel.h"

#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr std::size_t longestEdited = 30000; // characters: beyond, each key would take its time

std::string_view Start(std::string_view text) { return text.substr(0, longestEdited); }

/// What a saved patch or a game makes otherwise of a text in [STRINGS]; empty for nothing.
QString WhatIsLost(std::string_view text) {
    if (Trim(text) != text)
        return QObject::tr("Blanks at the ends of a text are lost when the patch is saved.");
    if (text.ends_with('\\'))
        return QObject::tr("Games leave out a text that ends in a backslash.");
    return {};
}

/// A caption above a box, and a word about its text at the other end of the line.
void AddBox(QVBoxLayout& layout, const QString& caption, QPlainTextEdit& box, QLabel* about) {
    auto* line = new QHBoxLayout;
    auto* label = new QLabel(caption);
    label->setBuddy(&box);
    line->addWidget(label);
    line->addStretch();
    if (about != nullptr)
        line->addWidget(about);
    layout.addLayout(line);
    layout.addWidget(&box, 1);
    const QFontMetrics metrics(box.font());
    box.setMinimumSize(metrics.horizontalAdvance(QString(56, '0')), 4 * metrics.lineSpacing());
}

} // namespace

frmPropString::frmPropString(const EditorContext& context, QWidget* parent)
    : QDialog(parent), context_(context),
      oldString_(new EscapedTextEdit(QStringLiteral("txtOldString"), tr("Text of the engine"))),
      newString_(new EscapedTextEdit(QStringLiteral("txtNewString"), tr("New text"))), preview_(new QPlainTextEdit),
      oldLength_(new QLabel), charsLeft_(new QLabel), note_(new QLabel),
      restore_(NewButton("cmdRestore", tr("&Restore"))), accept_(NewButton("cmdAccept", tr("OK"))) {
    setObjectName(QStringLiteral("frmPropString"));
    context_.program.log.Add("  Loaded frmPropString");

    oldString_->setReadOnly(true);
    preview_->setObjectName(QStringLiteral("txtPreview"));
    preview_->setAccessibleName(tr("In the game"));
    preview_->setReadOnly(true);
    preview_->setTabChangesFocus(true);
    oldLength_->setObjectName(QStringLiteral("lblLength"));
    charsLeft_->setObjectName(QStringLiteral("lblCharsLeft"));
    note_->setObjectName(QStringLiteral("lblNote"));
    note_->setTextFormat(Qt::PlainText);
    connect(newString_, &EscapedTextEdit::Edited, this, &frmPropString::ShowNewText);
    connect(newString_, &EscapedTextEdit::Refused, note_, &QLabel::setText);

    connect(newString_, &QPlainTextEdit::cursorPositionChanged, this, &frmPropString::ShowPlaceInPreview);

    restore_->setToolTip(tr("Put the engine's text in"));
    connect(restore_, &QPushButton::clicked, this, &frmPropString::RestoreText);
    QDialogButtonBox* buttons = AcceptButtons(*this, *accept_);
    buttons->addButton(restore_, QDialogButtonBox::ResetRole);
    restore_->setAutoDefault(false);
    accept_->setToolTip(tr("Ctrl+Enter"));
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) // without Ctrl it is part of the text
        connect(new QShortcut(QKeySequence(Qt::CTRL | enter), this), &QShortcut::activated, accept_,
                &QPushButton::click);

    auto* layout = new QVBoxLayout(this);
    AddBox(*layout, tr("Text of the &engine"), *oldString_, oldLength_);
    AddBox(*layout, tr("&New text"), *newString_, charsLeft_);
    layout->addWidget(note_);
    AddBox(*layout, tr("In the &game"), *preview_, nullptr);
    layout->addWidget(buttons);
    setTabOrder(newString_, preview_);
}

std::optional<std::string> frmPropString::Edit(int string) {
    const PatchData& patch = context_.program.patch;
    const auto index = static_cast<std::size_t>(string);
    if (string < 0 || index >= patch.current.strings.size() || index >= patch.defaults.strings.size())
        return std::nullopt;
    text_ = {RecordKind::String, string, textField};
    const std::string& standard = patch.defaults.strings[index].text;
    const std::string& current = patch.current.strings[index].text;

    QString title = tr("String %1").arg(string);
    const bool keyed = context_.program.engine.dialect.keyedTexts;
    if (keyed)
        title += ": " + StringKey(context_.program, string);
    setWindowTitle(title);
    limit_ = RoomFor(context_.program, text_);
    const bool oldIsWhole = standard.size() <= longestEdited;
    const bool newIsWhole = current.size() <= longestEdited;
    oldString_->ShowText(Start(standard), std::nullopt);
    oldLength_->setText(
        tr("Length: %1")
            .arg(keyed && oldIsWhole ? oldString_->Escaped().size() : static_cast<qsizetype>(standard.size())));
    restore_->setEnabled(oldIsWhole);
    newString_->ShowText(Start(current), limit_);
    newString_->setReadOnly(!newIsWhole);
    if (!newIsWhole) {
        charsLeft_->setText(tr("Length: %1").arg(current.size()));
        note_->setText(tr("This text is too long to be edited; its first %1 characters are shown.").arg(longestEdited));
    }
    const QString start = newString_->Escaped();
    newString_->setFocus();
    newString_->moveCursor(QTextCursor::End);
    if (exec() != Accepted || newString_->Escaped() == start)
        return std::nullopt;
    return newString_->Stored();
}

void frmPropString::ShowNewText() {
    const std::string stored = newString_->Stored();
    charsLeft_->setText(limit_ ? tr("Characters left: %1").arg(*limit_ - static_cast<std::int64_t>(stored.size()))
                               : tr("Length: %1").arg(newString_->Escaped().size()));
    preview_->setPlainText(ShownText(stored));
    ShowPlaceInPreview();
    const Status status = MayHold(context_.program, text_, stored);
    accept_->setEnabled(static_cast<bool>(status));
    note_->setText(!status ? ShownText(status.Reason() + ".") : limit_ ? QString() : WhatIsLost(stored));
}

/// Keeps what the caret is at in sight.
void frmPropString::ShowPlaceInPreview() {
    const QString before = newString_->Escaped(newString_->textCursor().position());
    QString shown = ShownText(modPatchText::UnescapeText(StoredText(before)));
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QTextCursor place(preview_->document());
    place.setPosition(std::min(static_cast<int>(shown.size()), preview_->document()->characterCount() - 1));
    preview_->setTextCursor(place);
    preview_->ensureCursorVisible();
}

/// In place of a text of which only the start is shown, so that Undo does not lead back to it.
void frmPropString::RestoreText() {
    if (!newString_->isReadOnly())
        return newString_->ReplaceText(oldString_->Stored());
    newString_->setReadOnly(false);
    newString_->ShowText(oldString_->Stored(), limit_);
}

} // namespace plinket3
