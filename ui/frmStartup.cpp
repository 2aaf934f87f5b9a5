#include "ui/frmStartup.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"

#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace plinket3 {

frmStartup::frmStartup(Environment& environment, QWidget* parent) : QDialog(parent), environment_(environment) {
    setObjectName(QStringLiteral("frmStartup"));
    setWindowTitle(tr("Welcome to Plinket3"));

    auto* cmdNew = NewButton("cmdNew", tr("&New patch..."));
    auto* cmdOpen = NewButton("cmdOpen", tr("&Open a patch..."));
    auto* cmdCancel = NewButton("cmdCancel", tr("Cancel"));
    lstRecent_ = new QListWidget;
    lstRecent_->setObjectName(QStringLiteral("lstRecent"));
    lstRecent_->setAccessibleName(tr("Recently used patches"));
    lstRecent_->setTextElideMode(Qt::ElideMiddle);
    lstRecent_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* recentLabel = new QLabel(tr("&Recently used patches (double-click to open):"));
    recentLabel->setBuddy(lstRecent_);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdNew);
    buttons->addWidget(cmdOpen);
    buttons->addStretch();
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(recentLabel);
    layout->addWidget(lstRecent_, 1);
    layout->addLayout(buttons);
    resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 20);

    connect(cmdNew, &QPushButton::clicked, this, [this] {
        hide();
        emit NewChosen();
    });
    connect(cmdOpen, &QPushButton::clicked, this, [this] {
        hide();
        emit OpenChosen();
    });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(lstRecent_, &QListWidget::itemActivated, this, &frmStartup::OpenRecent);
}

void frmStartup::showEvent(QShowEvent* event) {
    lstRecent_->clear();
    const std::vector<std::string> recent = environment_.settings.RecentFiles();
    for (auto path = recent.rbegin(); path != recent.rend(); ++path) {
        auto* item = new QListWidgetItem(ShownPath(*path), lstRecent_);
        item->setToolTip(ShownPath(*path));
    }
    if (lstRecent_->count() == 0) {
        auto* empty = new QListWidgetItem(tr("No patch has been used yet."), lstRecent_);
        empty->setFlags(Qt::NoItemFlags);
    } else {
        lstRecent_->setCurrentRow(0);
    }
    QDialog::showEvent(event);
}

void frmStartup::OpenRecent() {
    const QListWidgetItem* item = lstRecent_->currentItem();
    if (item == nullptr || !(item->flags() & Qt::ItemIsEnabled))
        return;
    const QString path = item->text();
    hide();
    emit RecentChosen(path);
}

} // namespace plinket3
