#pragma once

#include "patch/Edits.h"
#include "ui/pickers/PickerDialog.h"

#include <cstdint>
#include <optional>

class QTableView;

namespace plinket3 {

class StateTableModel;
class Thumbnails;

/// Lets the user pick a state.
class frmSelectState : public PickerDialog {
    Q_OBJECT
public:
    /// Must live as long as `edits`, and no longer than `thumbnails`.
    frmSelectState(Program& program, Edits& edits, Thumbnails& thumbnails, QWidget* parent);

    /// Starts at state `start`; nothing when the user cancels.
    std::optional<std::int32_t> Choose(std::int32_t start);

protected:
    void Fill() override {} // every opening lists the states anew
    void Narrow(const QString& text) override;
    void RowSelected(const QModelIndex&) override {}

private:
    StateTableModel* model_;
    QTableView* lvwSelectStates_;
};

} // namespace plinket3
