#include "ui/editors/RecordMaker.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/editors/frmNewRecord.h"

#include <QAction>
#include <QBoxLayout>

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

QAction* ListAction(const char* name, const QString& text, Qt::Key key, QWidget& list) {
    auto* action = new QAction(text, &list);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    list.addAction(action);
    return action;
}

} // namespace

RecordMaker::RecordMaker(RecordKind kind, const char* many, QWidget& list, const EditorContext& context)
    : QObject(&list), kind_(kind), many_(many), context_(context), list_(list),
      new_(ListAction("actNew", tr("New..."), Qt::Key_Insert, list)),
      remove_(ListAction("actRemove", tr("Remove"), Qt::Key_Delete, list)),
      newButton_(NewButton("cmdNew", new_->text())), removeButton_(NewButton("cmdRemove", remove_->text())) {
    newButton_->setToolTip(tr("Make one of another number (Ins)"));
    connect(new_, &QAction::triggered, this, &RecordMaker::Make);
    connect(remove_, &QAction::triggered, this, &RecordMaker::Remove);
    connect(newButton_, &QPushButton::clicked, new_, &QAction::trigger);
    connect(removeButton_, &QPushButton::clicked, remove_, &QAction::trigger);
}

void RecordMaker::AddButtons(QBoxLayout& layout) {
    layout.addWidget(newButton_);
    layout.addWidget(removeButton_);
}

void RecordMaker::Reload() {
    const bool unlimited = context_.program.engine.dialect.unlimited;
    for (QAction* action : Actions())
        action->setVisible(unlimited);
    newButton_->setVisible(unlimited);
    removeButton_->setVisible(unlimited);
    ShowSelection(selected_);
}

void RecordMaker::ShowSelection(std::vector<std::int32_t> records) {
    selected_ = std::move(records);
    const bool made = !selected_.empty() && std::ranges::all_of(selected_, [this](std::int32_t record) {
        return context_.edits.IsMade(kind_, record);
    });
    const QString why = made ? tr("Remove what the patch made (Del)")
                             : tr("Only what the patch made can be removed; the engine's own can be restored");
    remove_->setEnabled(made && remove_->isVisible());
    removeButton_->setEnabled(made);
    removeButton_->setToolTip(why);
}

void RecordMaker::Make() {
    frmNewRecord dialog(kind_, context_.edits, list_.window());
    const auto answer = dialog.AskNew();
    if (!answer)
        return;
    context_.edits.MakeRecord(kind_, answer->number, answer->name);
    emit Made(answer->number);
    list_.setFocus();
}

void RecordMaker::Remove() {
    const QString what = ShownText(context_.edits.RecordsName(kind_, selected_, many_));
    context_.edits.RemoveRecords(kind_, std::exchange(selected_, {}), many_);
    context_.links.ShowStatus(tr("Removed %1").arg(what));
}

} // namespace plinket3
