#include "ui/editors/RecordTableEditor.h"

#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "ui/NewButton.h"
#include "ui/editors/RecordMaker.h"
#include "ui/lists/FilterBox.h"

#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

namespace plinket3 {

RecordTableEditor::RecordTableEditor(const char* name, const QString& caption, const EditorContext& context,
                                     RecordKind kind, RecordTableModel& model, const Words& words)
    : EditorWindow(name, caption, context), kind_(kind), model_(model), words_(words) {}

void RecordTableEditor::Build() {
    list_ = new RecordList(QString::fromLatin1(words_.list), windowTitle(), model_);
    SizeColumns();
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &EditorWindow::CurrentChanged);
    connect(list_, &RecordList::EditAsked, this, &RecordTableEditor::EditRecord);
    connect(list_, &RecordList::MenuAsked, this, [this](const QPoint& place, bool byKeyboard) {
        if (byKeyboard || MenuByMouse())
            ShowMenu(place);
    });

    filter_ = new FilterBox(tr("Filter"), tr("Type a part of what you look for"));
    filter_->EnterLeads();
    filter_->LeadTo(*list_);
    auto* filterLabel = new QLabel(tr("Fi&lter"));
    filterLabel->setBuddy(filter_);
    connect(filter_, &QLineEdit::textChanged, list_, &RecordList::Filter);

    edit_ = NewButton("cmdEdit", tr(words_.edit));
    connect(edit_, &QPushButton::clicked, this, &RecordTableEditor::EditSelected);
    restore_ = NewButton("cmdRestore", tr("&Restore"));
    restore_->setToolTip(tr("Give the selected records the engine's values"));
    connect(restore_, &QPushButton::clicked, this, &RecordTableEditor::Restore);

    auto* top = new QHBoxLayout;
    top->addWidget(filterLabel);
    top->addWidget(filter_);
    auto* buttons = new QHBoxLayout;
    AddButtons(*buttons);
    buttons->addWidget(edit_);
    if (CanBeMade(kind_)) {
        maker_ = new RecordMaker(kind_, words_.many, *list_, context_);
        maker_->AddButtons(*buttons);
        connect(maker_, &RecordMaker::Made, this, &RecordTableEditor::SelectRecord);
        connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, maker_,
                [this] { maker_->ShowSelection(list_->SelectedRecords()); });
    }
    buttons->addStretch();
    buttons->addWidget(restore_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(list_);
    layout->addLayout(buttons);
    setFocusProxy(list_);
}

void RecordTableEditor::fillStaticData() {
    const std::optional<int> selected = SelectedRow();
    model_.Reset();
    if (selected && model_.rowCount() > 0)
        list_->SelectRecord(model_.Rows().Nearest(*selected));
    edit_->setEnabled(MayEdit());
    restore_->setEnabled(MayEdit());
    if (maker_ != nullptr) {
        maker_->ShowSelection(list_->SelectedRecords());
        maker_->Reload();
    }
}

std::optional<int> RecordTableEditor::SelectedRow() const {
    return list_ != nullptr ? list_->SelectedRecord() : std::nullopt;
}

std::vector<std::int32_t> RecordTableEditor::Selected() const {
    return list_ != nullptr ? list_->SelectedRecords() : std::vector<std::int32_t>();
}

bool RecordTableEditor::SelectRecord(std::int32_t record) {
    if (model_.Rows().RowOf(record) < 0)
        return false;
    list_->SelectRecord(record);
    if (SelectedRow() == record)
        return true;
    filter_->clear(); // it hides the record
    list_->SelectRecord(record);
    return true;
}

void RecordTableEditor::EditSelected() {
    if (const std::optional<int> record = SelectedRow())
        EditRecord(*record);
}

void RecordTableEditor::Restore() {
    const std::vector<int> records = list_->SelectedRecords();
    const char* question = records.size() == 1 ? words_.restoreOne : words_.restoreMany;
    if (context_.program.notifier.Ask(question, Buttons::YesNo) == Answer::No)
        return;
    context_.edits.Restore(RestoredCells(records),
                           "restore " + context_.edits.RecordsName(kind_, records, words_.many));
}

/// With the names of the engine's own sprites and sounds, where patches give them others.
std::vector<Cell> RecordTableEditor::RestoredCells(const std::vector<std::int32_t>& records) const {
    std::vector<Cell> restored;
    for (const std::int32_t record : records) {
        const std::vector<Cell> cells = context_.edits.CellsOf(kind_, record);
        restored.insert(restored.end(), cells.begin(), cells.end());
        const Cell name{kind_, record, lumpNameField};
        if (CanRenameLumps(context_.program.engine.dialect) && HasCell(Defaults(), name))
            restored.push_back(name);
    }
    return restored;
}

void RecordTableEditor::ShowMenu(const QPoint& place) {
    QMenu menu;
    const bool enabled = SelectedRow().has_value() && MayEdit();
    menu.addAction(edit_->text(), this, &RecordTableEditor::EditSelected)->setEnabled(enabled);
    QAction* restore = menu.addAction(tr("&Restore"), this, &RecordTableEditor::Restore);
    restore->setObjectName(QStringLiteral("restoreRows"));
    restore->setEnabled(enabled);
    if (maker_ != nullptr)
        for (QAction* action : maker_->Actions())
            menu.addAction(action);
    menu.addSeparator();
    menu.addActions(context_.links.ClipActions());
    menu.addActions(context_.links.RecordActions(kind_));
    menu.setToolTipsVisible(true);
    menu.exec(place);
}

} // namespace plinket3
