#include "ui/editors/EditorWindow.h"

namespace plinket3 {

EditorWindow::EditorWindow(const char* name, const QString& caption, const EditorContext& context)
    : context_(context) {
    setObjectName(QString::fromLatin1(name));
    setWindowTitle(caption);
    context_.program.log.Add("  Loaded " + std::string(name));
}

void EditorWindow::Refresh() {
    upToDate_ = false;
    if (isVisible())
        BringUpToDate();
}

void EditorWindow::CellsChanged(const std::vector<Cell>& cells) {
    if (upToDate_ && !cells.empty())
        ShowCells(cells);
}

void EditorWindow::BringUpToDate() {
    if (upToDate_)
        return;
    if (!built_)
        Build();
    built_ = true;
    upToDate_ = true;
    fillStaticData();
    updateForm();
}

void EditorWindow::showEvent(QShowEvent* event) {
    BringUpToDate();
    QWidget::showEvent(event);
}

} // namespace plinket3
