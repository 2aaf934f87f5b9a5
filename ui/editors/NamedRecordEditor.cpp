#include "ui/editors/NamedRecordEditor.h"

#include "ui/NewButton.h"
#include "ui/lists/SelectedRecords.h"

#include <QAction>
#include <QHBoxLayout>
#include <QListView>
#include <QSplitter>

namespace plinket3 {

NamedRecordEditor::NamedRecordEditor(const char* name, const QString& caption, const EditorContext& context,
                                     RecordKind kind, const Words& words)
    : EditorWindow(name, caption, context), kind_(kind), words_(words), names_(context, kind),
      boxes_(kind, words.many) {}

void NamedRecordEditor::Build() {
    list_ = new QListView;
    list_->setObjectName(QString::fromLatin1(words_.list));
    list_->setAccessibleName(windowTitle());
    list_->setModel(&names_);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setAlternatingRowColors(true);
    list_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000000000000")));
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, &NamedRecordEditor::updateForm);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &NamedRecordEditor::updateForm);
    connect(list_, &QListView::doubleClicked, this, &NamedRecordEditor::Rename);

    auto* rename = NewButton("cmdRename", tr("Re&name..."));
    connect(rename, &QPushButton::clicked, this, &NamedRecordEditor::Rename);
    auto* restore = NewButton("cmdRestore", tr("&Restore"));
    restore->setToolTip(tr("Give the selected records the engine's values and names"));
    connect(restore, &QPushButton::clicked, this, &NamedRecordEditor::Restore);

    auto* renameAction = new QAction(rename->text(), list_);
    renameAction->setShortcut(Qt::Key_F2);
    renameAction->setShortcutContext(Qt::WidgetShortcut);
    connect(renameAction, &QAction::triggered, this, &NamedRecordEditor::Rename);
    auto* restoreAction = new QAction(restore->text(), list_);
    connect(restoreAction, &QAction::triggered, this, &NamedRecordEditor::Restore);
    list_->addActions(QList{renameAction, restoreAction} + context_.links.ClipActions() +
                      context_.links.RecordActions(kind_));
    list_->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* buttons = new QHBoxLayout;
    AddButtons(*buttons);
    buttons->addWidget(rename);
    buttons->addWidget(restore);
    auto* left = new QWidget;
    auto* leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(list_);
    leftLayout->addLayout(buttons);

    auto* splitter = new QSplitter;
    splitter->setObjectName(QStringLiteral("splitter"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(left);
    splitter->addWidget(BuildFields());
    splitter->setStretchFactor(1, 1);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(splitter);
    setFocusProxy(list_);
}

void NamedRecordEditor::fillStaticData() {
    names_.Reset();
    list_->setCurrentIndex(names_.index(0));
}

void NamedRecordEditor::updateForm() {
    RecordSelection selection = SelectedRecords(*list_, [this](int row) { return names_.Rows().At(row); });
    boxes_.Show(std::move(selection));
    ShowRecords();
    emit CurrentChanged();
}

std::optional<std::int32_t> NamedRecordEditor::CurrentRecord() const {
    return Selection().records.empty() ? std::nullopt : std::optional(Selection().current);
}

bool NamedRecordEditor::SelectRecord(std::int32_t record) {
    const int row = names_.Rows().RowOf(record);
    if (row >= 0)
        list_->setCurrentIndex(names_.index(row));
    return row >= 0;
}

void NamedRecordEditor::ShowCells(const std::vector<Cell>& cells) {
    names_.ShowCells(cells);
    boxes_.Update();
    ShowRecords();
}

void NamedRecordEditor::Rename() {
    if (Selection().records.empty())
        return;
    const std::int32_t record = Selection().current;
    AskName(kind_, record, QString::fromLatin1(words_.renameTitle) + QString::number(record + words_.firstNumber),
            QString::fromLatin1(words_.renamePrompt));
}

void NamedRecordEditor::Restore() {
    const std::vector<std::int32_t>& records = Selection().records;
    const char* question = Selection().Several() ? words_.restoreMany : words_.restoreOne;
    if (!records.empty() && context_.program.notifier.Ask(question, Buttons::YesNo) != Answer::No)
        context_.edits.RestoreRecords(kind_, records, words_.many);
}

} // namespace plinket3
