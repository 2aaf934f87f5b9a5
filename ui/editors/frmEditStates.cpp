#include "ui/editors/frmEditStates.h"

#include "ui/NewButton.h"
#include "ui/editors/RecordMaker.h"
#include "ui/lists/SelectedRecords.h"
#include "ui/states/StateColumns.h"
#include "ui/states/StateFieldsPanel.h"
#include "ui/states/StateFilterPanel.h"
#include "ui/states/StateListView.h"
#include "ui/states/StatePreview.h"
#include "ui/states/StateTableModel.h"
#include "ui/states/frmNewStates.h"

#include <QAction>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace plinket3 {

frmEditStates::frmEditStates(const EditorContext& context)
    : EditorWindow("frmEditStates", tr("State editor"), context) {}

void frmEditStates::Build() {
    filter_ = new StateFilterPanel(context_.program);
    BuildList();
    fields_ = new StateFieldsPanel(context_);
    preview_ = new StatePreview(context_, QStringLiteral("picSprite"), StatePreview::Of::States);
    auto* preview = new QGroupBox(tr("Preview"));
    (new QVBoxLayout(preview))->addWidget(preview_);
    filter_->LeadTo(*lvwStates_);
    maker_ = new RecordMaker(RecordKind::State, "frames", *lvwStates_, context_);
    connect(maker_, &RecordMaker::Made, this, &frmEditStates::SelectRecord);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* newStates = NewButton("cmdNewStates", tr("New states..."));
    newStates->setToolTip(tr("Make a run of states out of free ones"));
    connect(newStates, &QPushButton::clicked, this, &frmEditStates::MakeStates);
    buttons->addWidget(newStates);
    maker_->AddButtons(*buttons);
    filter_->AddBelowText(*buttons);
    connect(filter_, &StateFilterPanel::Changed, this, &frmEditStates::updateStateList);

    auto* list = new QWidget;
    auto* listLayout = new QVBoxLayout(list);
    listLayout->setContentsMargins({});
    listLayout->addWidget(filter_);
    listLayout->addWidget(lvwStates_, 1);
    auto* selected = new QWidget;
    auto* selectedLayout = new QHBoxLayout(selected);
    selectedLayout->setContentsMargins({});
    selectedLayout->addWidget(fields_, 3);
    selectedLayout->addWidget(preview, 1);
    auto* parts = new QSplitter(Qt::Vertical);
    parts->setObjectName(QStringLiteral("splStates"));
    parts->addWidget(list);
    parts->addWidget(selected);
    parts->setStretchFactor(0, 1);
    parts->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(parts);
    setFocusProxy(lvwStates_);
}

void frmEditStates::BuildList() {
    model_ = new StateTableModel(context_.program, this);
    lvwStates_ = new QTableView;
    SetUpStateList(*lvwStates_, *model_, QStringLiteral("lvwStates"), tr("States"), Current(),
                   context_.links.Pictures());
    lvwStates_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lvwStates_->setContextMenuPolicy(Qt::CustomContextMenu);
    lvwStates_->setMinimumHeight(lvwStates_->fontMetrics().height() * 6);
    auto* activate = new QAction(lvwStates_);
    activate->setShortcuts({QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
    activate->setShortcutContext(Qt::WidgetShortcut);
    lvwStates_->addAction(activate);
    connect(activate, &QAction::triggered, this, &frmEditStates::ActivateRow);
    connect(lvwStates_, &QTableView::doubleClicked, this, &frmEditStates::ActivateRow);
    connect(lvwStates_, &QTableView::customContextMenuRequested, this, &frmEditStates::ShowListMenu);
    const QItemSelectionModel* selection = lvwStates_->selectionModel();
    connect(selection, &QItemSelectionModel::selectionChanged, this, &frmEditStates::ShowSelected);
    connect(selection, &QItemSelectionModel::currentRowChanged, this, &frmEditStates::ShowSelected);
}

void frmEditStates::fillStaticData() {
    filter_->Fill();
    fields_->Fill();
    maker_->Reload();
    if (const RecordRows rows(AllStates(Current())); rows.Count() > 0)
        currentState_ = rows.Nearest(currentState_);
    ShowArgumentsColumn(*lvwStates_, context_.program.engine);
}

void frmEditStates::updateStateList() {
    busy_ = true;
    model_->Show(filter_->States());
    if (const auto row = model_->RowOfState(currentState_))
        SelectStateRow(*lvwStates_, *row);
    else
        lvwStates_->scrollToTop();
    busy_ = false;
    ShowSelected();
}

void frmEditStates::selectSingleState(int state, int thing, int weapon) {
    BringUpToDate();
    if (thing != -1) {
        filter_->ShowStatesOf(StateFilterMode::Thing, thing);
    } else if (weapon != -1) {
        filter_->ShowStatesOf(StateFilterMode::Weapon, weapon);
    } else if (!model_->RowOfState(state)) {
        filter_->ClearText();
        updateStateList();
    }
    if (const auto row = model_->RowOfState(state))
        SelectRow(*row);
}

void frmEditStates::SelectRow(int row) {
    busy_ = true;
    SelectStateRow(*lvwStates_, row);
    busy_ = false;
    ShowSelected();
}

std::optional<std::int32_t> frmEditStates::CurrentRecord() const {
    return fields_ == nullptr || fields_->Selection().records.empty() ? std::nullopt : std::optional(currentState_);
}

std::vector<std::int32_t> frmEditStates::Selected() const {
    return fields_ == nullptr ? std::vector<std::int32_t>() : fields_->Selection().records;
}

bool frmEditStates::SelectRecord(std::int32_t state) {
    if (!Current().states.Has(state))
        return false;
    if (!model_->RowOfState(state)) {
        filter_->ShowAll();
        updateStateList();
    }
    SelectRow(*model_->RowOfState(state));
    return true;
}

std::optional<int> frmEditStates::SelectedRow() {
    BringUpToDate();
    if (!fields_->Selection().records.empty())
        return model_->RowOfState(fields_->Selection().current);
    return std::nullopt;
}

QString frmEditStates::ReplaceThingFilterEntry(int entry, const QString& text) {
    BringUpToDate();
    return filter_->ReplaceThing(entry, text);
}

void frmEditStates::MakeStates() {
    const auto made = frmNewStates(context_, currentState_, window()).Ask();
    if (!made)
        return;
    const std::vector<std::int32_t>& states = made->states;
    context_.edits.StoreGroup(made->assignments,
                              states.size() == 1 ? "new " + context_.edits.RecordName(RecordKind::State, states.front())
                                                 : std::to_string(states.size()) + " new frames");
    if (!SelectRecord(states.front()))
        return;
    if (!std::ranges::all_of(states, [this](std::int32_t state) { return model_->RowOfState(state).has_value(); })) {
        filter_->ShowAll();
        updateStateList();
    }
    QItemSelection rows;
    for (const std::int32_t state : states) {
        const QModelIndex row = model_->index(*model_->RowOfState(state), 0);
        rows.select(row, row);
    }
    lvwStates_->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    lvwStates_->setFocus();
}

void frmEditStates::ShowSelected() {
    if (busy_)
        return;
    const std::vector<std::int32_t>& shown = model_->Shown();
    fields_->ShowSelection(
        SelectedRecords(*lvwStates_, [&shown](int row) { return shown[static_cast<std::size_t>(row)]; }));
    const RecordSelection& selection = fields_->Selection();
    maker_->ShowSelection(selection.records);
    if (selection.records.empty()) {
        preview_->ShowState(std::nullopt);
    } else {
        currentState_ = selection.current;
        preview_->ShowState(currentState_);
    }
    emit CurrentChanged();
}

void frmEditStates::ShowCells(const std::vector<Cell>& cells) {
    const auto isShown = [](const Cell& cell) {
        return cell.kind == RecordKind::State || cell.kind == RecordKind::Thing || cell.kind == RecordKind::Weapon ||
               cell == patchNotes;
    };
    if (!std::any_of(cells.begin(), cells.end(), isShown) && !RenamesLumps(cells))
        return;
    model_->CellsChanged(cells);
    fields_->Update();
    preview_->Update();
}

/// What a double click opens is the user's choice.
void frmEditStates::ActivateRow() {
    constexpr std::array browsers{&StateFieldsPanel::BrowseSprite, &StateFieldsPanel::BrowseNextState,
                                  &StateFieldsPanel::BrowseAction};
    const auto chosen = static_cast<std::size_t>(context_.program.settings.Number("stateActivate"));
    if (chosen < browsers.size())
        (fields_->*browsers[chosen])();
}

void frmEditStates::ShowListMenu(const QPoint& place) {
    const QModelIndex clicked = lvwStates_->indexAt(place);
    const std::vector<std::int32_t> states = fields_->Selection().records;
    if (!clicked.isValid() || states.empty())
        return;
    const auto column = static_cast<StateColumn>(clicked.column());
    const int count = static_cast<int>(states.size());
    QMenu menu;
    const QString heading = StateColumnHeading(column);
    QAction* restoreColumn = menu.addAction(
        count == 1 ? tr("Restore \"%1\"").arg(heading) : tr("Restore \"%1\" of %n states", nullptr, count).arg(heading),
        this, [&] {
            const auto cleared = RestoreStateColumn(context_.edits, context_.program, states, column);
            if (!cleared.empty())
                context_.links.ShowStatus(ClearedText(cleared));
        });
    restoreColumn->setObjectName(QStringLiteral("restoreColumn"));
    restoreColumn->setEnabled(column != StateColumn::Number);
    QAction* restoreStates =
        menu.addAction(count == 1 ? tr("Restore this state...") : tr("Restore %n states...", nullptr, count), fields_,
                       &StateFieldsPanel::Restore);
    restoreStates->setObjectName(QStringLiteral("restoreStates"));
    menu.addAction(tr("New states..."), this, &frmEditStates::MakeStates);
    for (QAction* action : maker_->Actions())
        menu.addAction(action);
    menu.addSeparator();
    menu.addActions(lvwStates_->horizontalHeader()->actions());
    menu.addSeparator();
    menu.addActions(context_.links.ClipActions());
    menu.addActions(context_.links.RecordActions(RecordKind::State));
    menu.setToolTipsVisible(true);
    menu.exec(lvwStates_->viewport()->mapToGlobal(place));
}

} // namespace plinket3
