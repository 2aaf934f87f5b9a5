#include "ui/pickers/PickerDialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>

namespace plinket3 {

PickerDialog::PickerDialog(const char* name, const QString& caption, Program& program, QWidget* parent)
    : QDialog(parent), program_(program), txtFilter_(new FilterBox(tr("Find"), tr("Find"))),
      layout_(new QVBoxLayout(this)) {
    setObjectName(QString::fromLatin1(name));
    setWindowTitle(caption);
    layout_->addWidget(txtFilter_);
}

void PickerDialog::SetList(QAbstractItemView& list, QWidget* beside) {
    list_ = &list;
    txtFilter_->LeadTo(list);
    auto* body = new QHBoxLayout;
    body->addWidget(list_, 3);
    if (beside != nullptr)
        body->addWidget(beside, 2);
    layout_->addLayout(body, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    cmdAccept_ = buttons->button(QDialogButtonBox::Ok);
    cmdAccept_->setObjectName(QStringLiteral("cmdAccept"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    layout_->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list_, &QAbstractItemView::doubleClicked, this, &QDialog::accept);
    connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& row) {
        cmdAccept_->setEnabled(row.isValid());
        RowSelected(row);
    });
    connect(txtFilter_, &QLineEdit::textEdited, this, [this](const QString& text) {
        Narrow(text);
        SelectMatch(text);
    });
}

/// Leaves the row that is selected, unless only another one has the text in its name.
void PickerDialog::SelectMatch(const QString& text) {
    const QModelIndex current = list_->currentIndex();
    const QModelIndex first = list_->model()->index(0, 0);
    const QModelIndexList named = list_->model()->match(first, Qt::DisplayRole, text, 1, Qt::MatchContains);
    const bool isNamed = current.siblingAtColumn(0).data().toString().contains(text, Qt::CaseInsensitive);
    if (!named.isEmpty() && !isNamed)
        Select(named.front());
    else if (!current.isValid())
        Select(first);
}

void PickerDialog::Prepare() {
    txtFilter_->clear();
    Narrow({});
    if (!upToDate_)
        Fill();
    upToDate_ = true;
}

void PickerDialog::Select(const QModelIndex& index) {
    list_->setCurrentIndex(index);
    if (index.isValid())
        list_->scrollTo(index, QAbstractItemView::PositionAtCenter);
    // The list does not tell of a row that was current before.
    cmdAccept_->setEnabled(index.isValid());
    RowSelected(index);
}

bool PickerDialog::Run() {
    list_->setFocus();
    return exec() == QDialog::Accepted && list_->currentIndex().isValid();
}

} // namespace plinket3
