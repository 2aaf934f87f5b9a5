#include "ui/frmRecovered.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace plinket3 {

frmRecovered::frmRecovered(const Recovery& recovery, Notifier& notifier, QWidget* parent)
    : QDialog(parent), recovery_(recovery), notifier_(notifier), lvwKept_(new QTreeWidget),
      cmdOpen_(NewButton("cmdOpen", tr("&Open"))), cmdDelete_(NewButton("cmdDelete", tr("&Delete"))) {
    setObjectName(QStringLiteral("frmRecovered"));
    setWindowTitle(tr("Recovered work"));
    lvwKept_->setObjectName(QStringLiteral("lvwKept"));
    lvwKept_->setAccessibleName(tr("Unsaved work that was kept"));
    lvwKept_->setHeaderLabels({tr("Date"), tr("Patch"), tr("Kept as")});
    lvwKept_->setRootIsDecorated(false);
    lvwKept_->setTextElideMode(Qt::ElideMiddle);
    auto* label = new QLabel(tr("&Unsaved work of runs that did not end as they should:"));
    label->setBuddy(lvwKept_);
    auto* cmdClose = NewButton("cmdCancel", tr("Close"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdOpen_);
    buttons->addWidget(cmdDelete_);
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(lvwKept_, 1);
    layout->addLayout(buttons);
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 18);

    connect(lvwKept_, &QTreeWidget::itemSelectionChanged, this, &frmRecovered::UpdateButtons);
    connect(lvwKept_, &QTreeWidget::itemActivated, this, &frmRecovered::OpenSelected);
    connect(cmdOpen_, &QPushButton::clicked, this, &frmRecovered::OpenSelected);
    connect(cmdDelete_, &QPushButton::clicked, this, &frmRecovered::Delete);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    cmdOpen_->setDefault(true);
    Fill();
}

void frmRecovered::Fill() {
    kept_ = recovery_.Kept(true);
    lvwKept_->clear();
    for (const KeptWork& work : kept_) {
        const QFileInfo file(ShownPath(work.file));
        const QString patch = work.patch ? ShownPath(work.patch->fileName) : tr("(damaged)");
        auto* row = new QTreeWidgetItem(
            lvwKept_, {QLocale().toString(file.lastModified(), QLocale::ShortFormat), patch, file.fileName()});
        row->setToolTip(1, patch);
        row->setToolTip(2, file.filePath());
    }
    if (kept_.empty())
        (new QTreeWidgetItem(lvwKept_, {tr("Nothing is kept.")}))->setFlags(Qt::NoItemFlags);
    else
        lvwKept_->setCurrentItem(lvwKept_->topLevelItem(0));
    lvwKept_->resizeColumnToContents(0);
    lvwKept_->header()->resizeSection(1, fontMetrics().averageCharWidth() * 52);
    UpdateButtons();
}

int frmRecovered::SelectedRow() const {
    const QList<QTreeWidgetItem*> selected = lvwKept_->selectedItems();
    return selected.isEmpty() ? -1 : lvwKept_->indexOfTopLevelItem(selected.constFirst());
}

void frmRecovered::UpdateButtons() {
    const int row = SelectedRow();
    cmdDelete_->setEnabled(row >= 0);
    cmdOpen_->setEnabled(row >= 0 && kept_[static_cast<std::size_t>(row)].patch.has_value());
}

void frmRecovered::OpenSelected() {
    if (cmdOpen_->isEnabled())
        accept();
}

void frmRecovered::Delete() {
    const KeptWork& work = kept_[static_cast<std::size_t>(SelectedRow())];
    if (notifier_.Ask("Are you sure you want to delete this unsaved work? It cannot be brought back.",
                      Buttons::NoYes) != Answer::Yes)
        return;
    if (const Status deleted = recovery_.Delete(work.file); !deleted)
        notifier_.Show(MessageKind::Exclamation, "Could not delete " + PathText(work.file) + ": " + deleted.Reason());
    Fill();
}

std::optional<KeptWork> frmRecovered::Choose() {
    if (exec() != QDialog::Accepted)
        return std::nullopt;
    return kept_[static_cast<std::size_t>(SelectedRow())];
}

} // namespace plinket3
