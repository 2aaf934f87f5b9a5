#include "ui/frmFindIwads.h"

#include "ui/LatinText.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace plinket3 {

frmFindIwads::frmFindIwads(const std::vector<Found>& found, QWidget* parent)
    : QDialog(parent), found_(found), lvwFound_(new QTreeWidget) {
    setObjectName(QStringLiteral("frmFindIWADs"));
    setWindowTitle(tr("IWADs found"));
    lvwFound_->setObjectName(QStringLiteral("lvwFound"));
    lvwFound_->setAccessibleName(tr("IWADs found"));
    lvwFound_->setHeaderLabels({tr("Name"), tr("File")});
    lvwFound_->setRootIsDecorated(false);
    for (const auto& [name, path] : found_) {
        auto* row = new QTreeWidgetItem(lvwFound_, {ShownPath(name), ShownPath(path)});
        row->setCheckState(0, Qt::Checked);
    }
    lvwFound_->resizeColumnToContents(0);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Add"));
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdAccept"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("These IWADs lie in the usual folders. Those that are checked will be added.")));
    layout->addWidget(lvwFound_, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 16);
}

std::vector<frmFindIwads::Found> frmFindIwads::Choose() {
    std::vector<Found> chosen;
    if (exec() == QDialog::Accepted)
        for (std::size_t i = 0; i < found_.size(); ++i)
            if (lvwFound_->topLevelItem(static_cast<int>(i))->checkState(0) == Qt::Checked)
                chosen.push_back(found_[i]);
    return chosen;
}

} // namespace plinket3
