#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "ui/EditorSet.h"
#include "ui/LaterDock.h"
#include "ui/graph/GraphScene.h"

#include <QTimer>

#include <optional>

class QLabel;
class QToolBar;

namespace plinket3 {

class GraphLegend;
class GraphView;

/// The states of the thing or weapon that is selected in the editor in front, or that comes to the selected state, as
/// boxes and arrows. It follows the editors and every edit while it is seen.
class StateGraphDock : public LaterDock {
    Q_OBJECT
public:
    /// All must outlive the dock.
    StateGraphDock(const Program& program, Edits& edits, EditorSet& editors, FileDialogs& dialogs);

    /// The patch or the engine is another now.
    void Refresh();
    /// Pictures look otherwise now.
    void Redraw();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeContents() override;
    void AddActions(QToolBar& bar);
    /// Sees soon what is selected, once for all that changes at a time.
    void Follow();
    void EditsMade(const std::vector<Cell>& cells);
    void Fill();
    void ShowNone(const QString& why);
    QString Summary() const;
    void SelectState(std::size_t node);
    void Open(std::size_t node);
    QString FileName() const;
    void Export();
    void Print();

    const Program& program_;
    EditorSet& editors_;
    FileDialogs& dialogs_;
    GraphScene* scene_ = nullptr; // none of these before it is built
    GraphView* view_ = nullptr;
    GraphLegend* legend_ = nullptr;
    QLabel* summary_ = nullptr;
    QList<QAction*> onGraph_; // what needs a graph
    QTimer filling_;
    std::optional<RecordId> record_; // whose states are shown
    bool stale_ = true;              // they may be other ones
};

} // namespace plinket3
