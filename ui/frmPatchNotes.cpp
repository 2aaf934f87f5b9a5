#include "ui/frmPatchNotes.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace plinket3 {

frmPatchNotes::frmPatchNotes(std::string_view notes, const Tell& tell, QWidget* parent)
    : QDialog(parent), txtNotes_(new NoteEdit(QStringLiteral("txtPatchNotes"), tr("Patch notes"), tell)) {
    setObjectName(QStringLiteral("frmPatchNotes"));
    setWindowTitle(tr("Patch notes"));
    txtNotes_->ShowNote(notes);
    auto* label = new QLabel(tr("&The comments at the head of the patch, for whoever reads it:"));
    label->setBuddy(txtNotes_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdAccept"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(txtNotes_, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 20);
}

std::optional<std::string> frmPatchNotes::Edit() {
    if (exec() != Accepted)
        return std::nullopt;
    return txtNotes_->Note();
}

} // namespace plinket3
