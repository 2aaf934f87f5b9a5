#include "ui/DataWadList.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QShortcut>
#include <QVBoxLayout>

#include <utility>

namespace plinket3 {

namespace {

constexpr const char* wadFilter = "WAD files (*.wad)|*.wad|All files (*.*)|*.*";

QListWidgetItem* NewRow(const QString& path) {
    auto* row = new QListWidgetItem(path);
    row->setFlags((row->flags() | Qt::ItemIsEditable) & ~Qt::ItemIsDropEnabled);
    return row;
}

} // namespace

DataWadList::DataWadList(FileDialogs& dialogs)
    : dialogs_(dialogs), lstFiles_(new QListWidget), cmdRemove_(NewButton("cmdRemoveDataWAD", tr("Re&move"))),
      cmdUp_(NewButton("cmdUpDataWAD", tr("&Up"))), cmdDown_(NewButton("cmdDownDataWAD", tr("Dow&n"))) {
    lstFiles_->setObjectName(QStringLiteral("lstDataWADs"));
    lstFiles_->setAccessibleName(tr("Data WADs"));
    lstFiles_->setToolTip(tr("In the order in which they are loaded: a later one replaces what earlier ones and the "
                             "IWAD have.\nF2 changes a path, Delete removes it, Alt+Up and Alt+Down move it."));
    lstFiles_->setDragDropMode(QAbstractItemView::InternalMove);
    lstFiles_->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    setFocusProxy(lstFiles_);
    auto* cmdAdd = NewButton("cmdAddDataWAD", tr("&Add..."));
    cmdAdd->setToolTip(tr("Chooses one or several WAD files"));
    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {cmdAdd, cmdRemove_, cmdUp_, cmdDown_})
        buttons->addWidget(button);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(lstFiles_, 1);
    layout->addLayout(buttons);
    lstFiles_->setFixedHeight(buttons->sizeHint().height());

    connect(cmdAdd, &QPushButton::clicked, this, &DataWadList::Add);
    connect(cmdRemove_, &QPushButton::clicked, this, &DataWadList::Remove);
    connect(cmdUp_, &QPushButton::clicked, this, [this] { Move(-1); });
    connect(cmdDown_, &QPushButton::clicked, this, [this] { Move(1); });
    connect(lstFiles_, &QListWidget::currentRowChanged, this, &DataWadList::UpdateButtons);
    connect(lstFiles_->model(), &QAbstractItemModel::rowsMoved, this, &DataWadList::UpdateButtons);
    const std::pair<QKeySequence, QPushButton*> keys[]{
        {QKeySequence::Delete, cmdRemove_}, {Qt::ALT | Qt::Key_Up, cmdUp_}, {Qt::ALT | Qt::Key_Down, cmdDown_}};
    for (const auto& [key, button] : keys)
        connect(new QShortcut(key, lstFiles_, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, button,
                &QPushButton::click);
    UpdateButtons();
}

void DataWadList::Files(const std::vector<std::string>& paths) {
    lstFiles_->clear();
    for (const std::string& path : paths)
        lstFiles_->addItem(NewRow(ShownPath(path)));
    lstFiles_->setCurrentRow(0);
    UpdateButtons();
}

std::vector<std::string> DataWadList::Files() const {
    std::vector<std::string> paths;
    for (int row = 0; row < lstFiles_->count(); ++row)
        if (const QString path = lstFiles_->item(row)->text(); !path.isEmpty())
            paths.push_back(path.toStdString());
    return paths;
}

void DataWadList::Add() {
    for (const QString& file : dialogs_.OpenFiles(tr("Select WAD files"), QString::fromLatin1(wadFilter))) {
        if (lstFiles_->findItems(file, Qt::MatchExactly).isEmpty())
            lstFiles_->addItem(NewRow(file));
        lstFiles_->setCurrentItem(lstFiles_->findItems(file, Qt::MatchExactly).constFirst());
    }
}

void DataWadList::Remove() {
    delete lstFiles_->takeItem(lstFiles_->currentRow());
    UpdateButtons();
}

void DataWadList::Move(int rows) {
    const int row = lstFiles_->currentRow();
    lstFiles_->insertItem(row + rows, lstFiles_->takeItem(row));
    lstFiles_->setCurrentRow(row + rows);
}

void DataWadList::UpdateButtons() {
    const int row = lstFiles_->currentRow();
    cmdRemove_->setEnabled(row >= 0);
    cmdUp_->setEnabled(row > 0);
    cmdDown_->setEnabled(row >= 0 && row + 1 < lstFiles_->count());
}

} // namespace plinket3
