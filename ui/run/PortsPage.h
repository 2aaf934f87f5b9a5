#pragma once

#include "core/modConfig.h"
#include "ui/FileDialogs.h"

#include <QWidget>

#include <vector>

class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace plinket3 {

/// The page of the options with the ports: a list of them, and the fields of the selected one below it. Looks for them
/// by itself when it is shown without any.
class PortsPage : public QWidget {
    Q_OBJECT
public:
    explicit PortsPage(FileDialogs& dialogs);

    void Show(std::vector<Settings::Port> ports);
    /// As they stand in the page now.
    const std::vector<Settings::Port>& Ports() const { return ports_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Fill(int row);
    void FillRow(int row);
    void Find();
    void Add();
    void Remove();
    void Browse();
    void SelectionChanged();
    void Edited();
    /// The selected one; null when there is none.
    Settings::Port* Current();

    FileDialogs& dialogs_;
    std::vector<Settings::Port> ports_;
    QTreeWidget* lvwPorts_;
    QLineEdit *txtName_, *txtProgram_, *txtArguments_;
    QPushButton *cmdRemove_, *cmdBrowse_, *cmdUsual_;
    bool filling_ = false;
};

} // namespace plinket3
