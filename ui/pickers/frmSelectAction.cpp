#include "ui/pickers/frmSelectAction.h"

#include "ui/fields/ActionText.h"
#include "ui/lists/TextListModel.h"

#include <algorithm>

namespace plinket3 {

frmSelectAction::frmSelectAction(Program& program, QWidget* parent)
    : PickerDialog("frmSelectAction", tr("Choose an action"), program, parent),
      names_(new TextListModel(
          this, [&program] { return program.engine.actions.size(); },
          [&program](std::size_t entry) { return ActionName(program.engine.actions[entry]); },
          [&program](std::size_t entry) { return ActionSearchText(program.engine.actions[entry]); })),
      narrowed_(new QSortFilterProxyModel(this)), lstActions_(new QListView), lblActionName_(new QLabel),
      lblDescription_(new QLabel) {
    narrowed_->setSourceModel(names_);
    narrowed_->setFilterRole(TextListModel::searchRole);
    narrowed_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    lstActions_->setObjectName(QStringLiteral("lstActions"));
    lstActions_->setAccessibleName(tr("Actions"));
    lstActions_->setModel(narrowed_);
    lstActions_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lstActions_->setUniformItemSizes(true);
    lblActionName_->setObjectName(QStringLiteral("lblActionName"));
    lblActionName_->setTextFormat(Qt::PlainText);
    QFont heading = lblActionName_->font();
    heading.setBold(true);
    lblActionName_->setFont(heading);
    lblDescription_->setObjectName(QStringLiteral("lblDescription"));
    lblDescription_->setTextFormat(Qt::PlainText);
    lblDescription_->setWordWrap(true);
    lblDescription_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    lblDescription_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* told = new QWidget;
    auto* layout = new QVBoxLayout(told);
    layout->addWidget(lblActionName_);
    layout->addWidget(lblDescription_, 1);
    SetList(*lstActions_, told);
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 26);
}

void frmSelectAction::Fill() { names_->Reset(); }

void frmSelectAction::Narrow(const QString& text) { narrowed_->setFilterFixedString(text); }

const EngineConfiguration::Action& frmSelectAction::ActionAt(const QModelIndex& row) const {
    return program_.engine.actions[static_cast<std::size_t>(narrowed_->mapToSource(row).row())];
}

void frmSelectAction::RowSelected(const QModelIndex& row) {
    lblActionName_->setText(row.data().toString());
    lblDescription_->setText(row.isValid() ? ActionDescription(ActionAt(row)) : QString());
}

std::optional<std::int32_t> frmSelectAction::Choose(std::int32_t start) {
    Prepare();
    const auto& actions = program_.engine.actions;
    const auto found = std::find_if(actions.begin(), actions.end(), [start](const EngineConfiguration::Action& action) {
        return action.value == start;
    });
    Select(narrowed_->index(found == actions.end() ? -1 : static_cast<int>(found - actions.begin()), 0));
    if (!Run())
        return std::nullopt;
    return ActionAt(lstActions_->currentIndex()).value;
}

} // namespace plinket3
