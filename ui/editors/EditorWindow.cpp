#include "ui/editors/EditorWindow.h"

#include "ui/LatinText.h"
#include "ui/fields/FieldControl.h"

namespace plinket3 {

EditorWindow::EditorWindow(const char* name, const QString& caption, const EditorContext& context) : context_(context) {
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
    if (MakesOrRemoves(cells))
        Refresh();
    else if (upToDate_ && !cells.empty())
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

bool EditorWindow::ShowCell(const Cell& cell) {
    if (!Select(cell.index))
        return false;
    FocusField(*this, cell.field);
    return true;
}

bool EditorWindow::Select(std::int32_t record) {
    BringUpToDate();
    return SelectRecord(record);
}

std::vector<std::int32_t> EditorWindow::Selected() const {
    const std::optional<std::int32_t> current = CurrentRecord();
    return current ? std::vector{*current} : std::vector<std::int32_t>();
}

void EditorWindow::showEvent(QShowEvent* event) {
    BringUpToDate();
    QWidget::showEvent(event);
}

QString EditorWindow::AskName(RecordKind kind, std::int32_t record, const QString& title, const QString& prompt) {
    const Cell cell{kind, record, nameField};
    const std::string former = std::get<std::string>(context_.edits.Value(cell));
    const QString start = ShownStart(former);
    QString name = context_.links.AskText(title, prompt, start);
    if (name.isEmpty() || (name == start && name != ShownText(former))) // no end was put to a long one
        return {};
    context_.edits.Store(cell, StoredText(name));
    return name;
}

} // namespace plinket3
