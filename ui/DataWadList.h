#pragma once

#include "ui/FileDialogs.h"

#include <QWidget>

#include <string>
#include <vector>

class QListWidget;
class QPushButton;

namespace plinket3 {

/// The data WADs of a patch in the order in which they are loaded. A path can be typed anew in its row (F2), Delete
/// takes rows out, and Alt with the arrow keys or the mouse moves one.
class DataWadList : public QWidget {
    Q_OBJECT
public:
    /// `dialogs` must outlive the list.
    explicit DataWadList(FileDialogs& dialogs);

    void Files(const std::vector<std::string>& paths);
    /// Without empty rows.
    std::vector<std::string> Files() const;

private:
    void Add();
    void Remove();
    void Move(int rows);
    void UpdateButtons();

    FileDialogs& dialogs_;
    QListWidget* lstFiles_;
    QPushButton *cmdRemove_, *cmdUp_, *cmdDown_;
};

} // namespace plinket3
