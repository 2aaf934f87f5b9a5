#pragma once

#include "ui/pickers/PickerDialog.h"

#include <QLabel>
#include <QListView>
#include <QSortFilterProxyModel>

#include <cstdint>
#include <optional>

namespace plinket3 {

class TextListModel;

/// Lets the user pick an action, and says what each one does.
class frmSelectAction : public PickerDialog {
    Q_OBJECT
public:
    frmSelectAction(Program& program, QWidget* parent);

    /// Starts at the action with the code pointer value `start` and returns such a value; nothing when the user
    /// cancels.
    std::optional<std::int32_t> Choose(std::int32_t start);

protected:
    void Fill() override;
    void Narrow(const QString& text) override;
    void RowSelected(const QModelIndex& row) override;

private:
    const EngineConfiguration::Action& ActionAt(const QModelIndex& row) const;

    TextListModel* names_;
    QSortFilterProxyModel* narrowed_;
    QListView* lstActions_;
    QLabel* lblActionName_;
    QLabel* lblDescription_;
};

} // namespace plinket3
