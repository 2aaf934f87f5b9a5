#include "ui/editors/frmNewRecord.h"

#include "patch/NewRecords.h"
#include "ui/AcceptButtons.h"
#include "patch/StepNames.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/LumpNameEdit.h"

#include <QFormLayout>
#include <QLabel>

namespace plinket3 {

frmNewRecord::frmNewRecord(RecordKind kind, const Edits& edits, QWidget* parent)
    : QDialog(parent), kind_(kind), edits_(edits), number_(new QLineEdit), numberLabel_(new QLabel(tr("N&umber"))),
      note_(new QLabel), accept_(NewButton("cmdAccept", tr("OK"))) {
    setObjectName(QStringLiteral("frmNewRecord"));
    number_->setObjectName(QStringLiteral("txtNumber"));
    number_->setAccessibleName(tr("Number"));
    numberLabel_->setBuddy(number_);
    connect(number_, &QLineEdit::textChanged, this, &frmNewRecord::Check);
    note_->setObjectName(QStringLiteral("lblNote"));
    note_->setTextFormat(Qt::PlainText);
    note_->setWordWrap(true);
    note_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    note_->setMinimumSize(fontMetrics().averageCharWidth() * 48, fontMetrics().lineSpacing() * 3);
    QDialogButtonBox* buttons = AcceptButtons(*this, *accept_);

    auto* form = new QFormLayout(this);
    form->addRow(numberLabel_, number_);
    if (HasLumpName(kind)) {
        name_ = new LumpNameEdit(QStringLiteral("txtName"), kind);
        connect(name_, &QLineEdit::textChanged, this, &frmNewRecord::Check);
        form->addRow(tr("N&ame"), name_);
    }
    form->addRow(note_);
    form->addRow(buttons);
}

std::optional<frmNewRecord::Answer> frmNewRecord::AskNew() {
    const std::int32_t proposed = edits_.FreeNumber(kind_);
    setWindowTitle(kind_ == RecordKind::Thing   ? tr("New thing")
                   : kind_ == RecordKind::State ? tr("New state")
                   : kind_ == RecordKind::Sound ? tr("New sound")
                                                : tr("New sprite"));
    if (proposed != noRecord)
        number_->setText(QString::number(PatchNumber(kind_, proposed)));
    number_->selectAll();
    Check();
    Answer answer;
    if (exec() != Accepted || !ReadNumber(answer.number))
        return std::nullopt;
    if (name_ != nullptr)
        answer.name = name_->Name();
    return answer;
}

std::optional<std::string> frmNewRecord::AskName(std::int32_t record) {
    setWindowTitle(ShownText("Name of " + edits_.RecordName(kind_, record)));
    number_->hide();
    numberLabel_->hide();
    name_->ShowName(std::get<std::string>(edits_.Value({kind_, record, lumpNameField})));
    name_->selectAll();
    Check();
    return exec() == Accepted ? std::optional(name_->Name()) : std::nullopt;
}

Status frmNewRecord::ReadNumber(std::int32_t& number) const {
    bool isNumber = false;
    const std::int64_t typed = number_->text().trimmed().toLongLong(&isNumber);
    if (!isNumber)
        return Status::Failure("A whole number stands here, up to 2147483647.");
    if (typed <= INT32_MIN || typed > INT32_MAX)
        return Status::Failure("Numbers go up to 2147483647.");
    if (typed == 0 && kind_ == RecordKind::Thing)
        return Status::Failure("Things are counted from 1.");
    number = static_cast<std::int32_t>(typed - PatchNumber(kind_, 0));
    return edits_.MayMake(kind_, number);
}

void frmNewRecord::Check() {
    std::int32_t number = 0;
    Status status = number_->isHidden() ? Status() : ReadNumber(number);
    if (status && name_ != nullptr)
        status = name_->Check();
    note_->setText(ShownText(status.Reason()));
    accept_->setEnabled(static_cast<bool>(status));
}

} // namespace plinket3
