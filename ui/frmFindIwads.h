#pragma once

#include <QDialog>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

class QTreeWidget;

namespace plinket3 {

/// Offers IWADs that were found, each with a name and a check box.
class frmFindIwads : public QDialog {
    Q_OBJECT
public:
    /// A name and a path.
    using Found = std::pair<std::string, std::filesystem::path>;

    frmFindIwads(const std::vector<Found>& found, QWidget* parent);

    /// Those that the user left checked; empty when the dialog was cancelled.
    std::vector<Found> Choose();

private:
    std::vector<Found> found_;
    QTreeWidget* lvwFound_;
};

} // namespace plinket3
