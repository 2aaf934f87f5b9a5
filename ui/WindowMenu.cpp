#include "ui/WindowMenu.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace plinket3 {

WindowMenu::WindowMenu(EditorSet& editors, QMdiArea& area, QWidget* parent)
    : QMenu(tr("W&indow"), parent), editors_(editors), area_(area) {
    setObjectName(QStringLiteral("mnuWindow"));
    Add("WindowCascade", tr("&Cascade"), &QMdiArea::cascadeSubWindows);
    Add("WindowTile", tr("&Tile"), &QMdiArea::tileSubWindows);
    addSeparator();
    Add("WindowNext", tr("&Next"), &QMdiArea::activateNextSubWindow, {QKeySequence(Qt::CTRL | Qt::Key_Tab)});
    Add("WindowPrevious", tr("&Previous"), &QMdiArea::activatePreviousSubWindow,
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab)});
    addSeparator();
    Add("WindowClose", tr("C&lose"), &QMdiArea::closeActiveSubWindow,
        {QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::CTRL | Qt::Key_F4)});
    Add("WindowCloseAll", tr("Close &all"), &QMdiArea::closeAllSubWindows);
    addSeparator();
    connect(&editors_, &EditorSet::ShownChanged, this, &WindowMenu::Update);
    connect(this, &QMenu::aboutToShow, this, &WindowMenu::List);
    Update();
}

void WindowMenu::Add(const char* name, const QString& text, void (QMdiArea::*run)(), const QList<QKeySequence>& keys) {
    QAction* command = addAction(text);
    command->setObjectName(QString::fromLatin1(name));
    command->setShortcuts(keys);
    connect(command, &QAction::triggered, &area_, run);
    commands_.append(command);
}

void WindowMenu::Update() {
    bool any = false;
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor)
        any = any || editors_.IsShown(editor);
    for (QAction* command : commands_)
        command->setEnabled(any);
}

void WindowMenu::List() {
    qDeleteAll(listed_);
    listed_.clear();
    for (std::size_t editor = 0; editor < editorEntries.size(); ++editor) {
        if (!editors_.IsShown(editor))
            continue;
        QAction* entry = addAction(tr("&%1 %2").arg(listed_.size() + 1).arg(tr(editorEntries[editor].menuText)));
        entry->setObjectName(QStringLiteral("Window") + QString::fromLatin1(editorEntries[editor].window));
        entry->setCheckable(true);
        entry->setChecked(editors_.Front() == editor);
        connect(entry, &QAction::triggered, &editors_, [this, editor] { editors_.Show(editor, true); });
        listed_.append(entry);
    }
}

} // namespace plinket3
