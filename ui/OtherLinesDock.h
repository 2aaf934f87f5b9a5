#pragma once

#include "patch/Program.h"
#include "ui/LaterDock.h"

class QLabel;
class QTreeView;

namespace plinket3 {

class OtherLinesModel;

/// A list of what the open patch's file holds beside that which is edited here: read, copied, not edited. By the kept
/// rules a save loses those lines; it says so.
class OtherLinesDock : public LaterDock {
    Q_OBJECT
public:
    explicit OtherLinesDock(const Program& program);

    /// The patch or its file is another one. Reads it when it is looked at.
    void Refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeContents() override;
    void Fill();
    void Copy();

    const Program& program_;
    OtherLinesModel* model_;
    QTreeView* list_ = nullptr;
    QLabel* text_ = nullptr;
    bool upToDate_ = false;
};

} // namespace plinket3
