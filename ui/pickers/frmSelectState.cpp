#include "ui/pickers/frmSelectState.h"

#include "ui/states/StateListView.h"
#include "ui/states/StateTableModel.h"

#include <QHeaderView>
#include <QTableView>

namespace plinket3 {

frmSelectState::frmSelectState(Program& program, Edits& edits, Thumbnails& thumbnails, QWidget* parent)
    : PickerDialog("frmSelectState", tr("Choose a state"), program, parent), model_(new StateTableModel(program, this)),
      lvwSelectStates_(new QTableView) {
    SetUpStateList(*lvwSelectStates_, *model_, QStringLiteral("lvwSelectStates"), tr("States"), program.patch.current,
                   thumbnails);
    lvwSelectStates_->setSelectionMode(QAbstractItemView::SingleSelection);
    SetList(*lvwSelectStates_, nullptr);
    resize(lvwSelectStates_->horizontalHeader()->length() + fontMetrics().averageCharWidth() * 10,
           fontMetrics().height() * 32); // every column and the scroll bar
    edits.Listen([this](const std::vector<Cell>& cells) { model_->CellsChanged(cells); });
}

void frmSelectState::Narrow(const QString& text) {
    model_->Show(MatchingStates(program_, AllStates(program_.patch.current), text));
}

std::optional<std::int32_t> frmSelectState::Choose(std::int32_t start) {
    Prepare();
    ShowArgumentsColumn(*lvwSelectStates_, program_.engine);
    Select(model_->index(model_->RowOfState(start).value_or(0), 0));
    if (!Run())
        return std::nullopt;
    return model_->Shown()[static_cast<std::size_t>(lvwSelectStates_->currentIndex().row())];
}

} // namespace plinket3
