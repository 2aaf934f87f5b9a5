#pragma once

#include "patch/Edits.h"
#include "patch/Links.h"
#include "patch/Program.h"
#include "ui/EditorSet.h"
#include "ui/LaterDock.h"

#include <QTimer>

#include <optional>

class QLabel;
class QListView;

namespace plinket3 {

class UsesModel;

/// A list of all that uses the current record of the editor in front, or the action of that state. It follows the
/// editors and every edit while it is seen; each row that a patch says leads to the field that says it.
class WhereUsedDock : public LaterDock {
    Q_OBJECT
public:
    /// All must outlive the dock.
    WhereUsedDock(const Program& program, Edits& edits, EditorSet& editors);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeContents() override;
    /// Fills the list soon, once for all that changes at a time.
    void Follow();
    void Fill();
    void ShowNone();
    void Activate();
    QString Summary(std::size_t uses) const;

    const Program& program_;
    EditorSet& editors_;
    UsesModel* model_;
    QListView* list_ = nullptr;
    QLabel* summary_ = nullptr;
    QTimer filling_;
    std::optional<Target> record_; // that is current in the editor in front
    bool ofAction_ = false;        // the list is that of the state's action
};

} // namespace plinket3
