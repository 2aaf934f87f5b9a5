#pragma once

#include "patch/CopyChoice.h"
#include "patch/Program.h"

#include <QDialog>

#include <optional>
#include <set>
#include <vector>

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

namespace plinket3 {

/// Shows all that could go along with records that are copied, and why, and asks for what does.
class frmCopyWith : public QDialog {
    Q_OBJECT
public:
    /// `records`, at least one, are there, and of one kind.
    frmCopyWith(const Session& session, const std::vector<RecordId>& records, QWidget* parent);

    /// Nothing when the user cancels.
    std::optional<std::set<RecordId>> Choose();

private:
    void Fill();
    void Ticked(QTreeWidgetItem* item);
    void ShowTicks();

    const Session& session_;
    std::vector<RecordId> records_;
    CopyChoice choice_;
    QTreeWidget* tree_;
    QLabel* count_;
    std::vector<QTreeWidgetItem*> items_; // by the place of the companion
};

} // namespace plinket3
