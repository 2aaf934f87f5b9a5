#include "ui/editors/frmPropString.h"

#include "core/Text.h"
#include "patch/modPatchText.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/EscapedTextEdit.h"
#include "ui/lists/StringsModel.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

namespace plinket3 {

namespace {

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
      oldLength_(new QLabel), charsLeft_(new QLabel), note_(new QLabel) {
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

    auto* restore = NewButton("cmdRestore", tr("&Restore"));
    restore->setToolTip(tr("Put the engine's text in"));
    connect(restore, &QPushButton::clicked, this, [this] { newString_->ReplaceText(oldString_->Stored()); });
    auto* accept = NewButton("cmdAccept", tr("OK"));
    connect(accept, &QPushButton::clicked, this, &QDialog::accept);
    auto* cancel = NewButton("cmdCancel", tr("Cancel"));
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(restore, QDialogButtonBox::ResetRole);
    buttons->addButton(accept, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    restore->setAutoDefault(false);
    accept->setDefault(true);

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
    const std::string& standard = patch.defaults.strings[index].text;
    const std::string& current = patch.current.strings[index].text;

    QString title = tr("String %1").arg(string);
    const bool keyed = context_.program.engine.dialect.keyedTexts;
    if (keyed)
        title += ": " + StringKey(context_.program, index);
    setWindowTitle(title);
    limit_ = keyed ? std::nullopt : std::optional(modPatchText::TextSpace(static_cast<std::int32_t>(standard.size())));
    oldString_->ShowText(standard, std::nullopt);
    oldLength_->setText(
        tr("Length: %1").arg(keyed ? oldString_->Escaped().size() : static_cast<qsizetype>(standard.size())));
    newString_->ShowText(current, limit_);
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
    note_->setText(limit_ ? QString() : WhatIsLost(stored));
}

} // namespace plinket3
