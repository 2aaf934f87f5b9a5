#include "ui/editors/NamedRecordEditor.h"

#include "ui/NewButton.h"

#include <QAction>
#include <QHBoxLayout>
#include <QListView>
#include <QSplitter>

namespace plinket3 {

NamedRecordEditor::NamedRecordEditor(const char* name, const QString& caption, const EditorContext& context,
                                     RecordKind kind, const Words& words)
    : EditorWindow(name, caption, context), kind_(kind), words_(words), names_(context, kind) {}

void NamedRecordEditor::Build() {
    list_ = new QListView;
    list_->setObjectName(QString::fromLatin1(words_.list));
    list_->setAccessibleName(windowTitle());
    list_->setModel(&names_);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setAlternatingRowColors(true);
    list_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000000000000")));
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { updateForm(); });
    connect(list_, &QListView::doubleClicked, this, &NamedRecordEditor::Rename);

    auto* rename = NewButton("cmdRename", tr("Re&name..."));
    connect(rename, &QPushButton::clicked, this, &NamedRecordEditor::Rename);
    auto* restore = NewButton("cmdRestore", tr("&Restore"));
    restore->setToolTip(tr("Give the selected record the engine's values and name"));
    connect(restore, &QPushButton::clicked, this, &NamedRecordEditor::Restore);

    auto* renameAction = new QAction(rename->text(), list_);
    renameAction->setShortcut(Qt::Key_F2);
    renameAction->setShortcutContext(Qt::WidgetShortcut);
    connect(renameAction, &QAction::triggered, this, &NamedRecordEditor::Rename);
    auto* restoreAction = new QAction(restore->text(), list_);
    connect(restoreAction, &QAction::triggered, this, &NamedRecordEditor::Restore);
    list_->addActions({renameAction, restoreAction});
    list_->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* buttons = new QHBoxLayout;
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

void NamedRecordEditor::updateForm() { ShowRecord(CurrentRecord()); }

void NamedRecordEditor::ShowCells(const std::vector<Cell>& cells) {
    names_.ShowCells(cells);
    UpdateRecord();
}

std::optional<std::int32_t> NamedRecordEditor::CurrentRecord() const {
    const QModelIndex current = list_->currentIndex();
    return current.isValid() ? std::optional<std::int32_t>(current.row()) : std::nullopt;
}

void NamedRecordEditor::Rename() {
    const std::optional<std::int32_t> record = CurrentRecord();
    if (!record)
        return;
    AskName(kind_, *record, QString::fromLatin1(words_.renameTitle) + QString::number(*record + words_.firstNumber),
            QString::fromLatin1(words_.renamePrompt));
}

void NamedRecordEditor::Restore() {
    const std::optional<std::int32_t> record = CurrentRecord();
    if (!record || context_.program.notifier.Ask(words_.restoreQuestion, Buttons::YesNo) == Answer::No)
        return;
    context_.edits.RestoreRecords(kind_, {*record}, {});
}

} // namespace plinket3
