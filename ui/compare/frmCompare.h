#pragma once

#include "patch/Edits.h"
#include "ui/FileDialogs.h"
#include "ui/LaterDock.h"
#include "ui/compare/DifferencesModel.h"
#include "ui/fields/SpriteView.h"

#include <QTimer>

#include <memory>
#include <optional>
#include <set>

class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QStackedWidget;
class QTreeView;

namespace plinket3 {

/// What differs between the open patch and another one, as a list from which differences are taken over. It follows the
/// edits of the open patch and is dropped with that.
class frmCompare : public LaterDock {
    Q_OBJECT
public:
    frmCompare(const Program& program, Edits& edits, FileDialogs& dialogs);

    /// Asks what to compare with, and shows that.
    void CompareWith();
    /// Another patch is open, or none yet.
    void Drop(bool sessionOpen);
    /// The open patch was saved.
    void Saved();

signals:
    /// The field, or the record of `existsField`, is to be shown in its editor.
    void CellWanted(const Cell& cell);
    /// What just happened, for the status bar.
    void StatusText(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeContents() override;
    QWidget* FilterRow();
    QWidget* Pictures();
    QWidget* Buttons();
    void ShowNone();
    void Refresh();
    void Fill();
    std::set<RecordId> Expanded() const;
    void ShowCounts(std::size_t all, std::size_t conflicts);
    void ShowCurrent();
    void ShowLost();
    void TakeSelected();
    void TakeKind();
    void Take(std::vector<Difference> differences);
    void GoTo(const QModelIndex& index);
    std::optional<std::int32_t> PlaceOf(const Level& level) const;
    bool IsHere(const Difference& difference) const;

    const Program& program_;
    Edits& edits_;
    FileDialogs& dialogs_;
    bool sessionOpen_ = false;
    std::unique_ptr<Comparison> comparison_;
    DifferencesModel* model_;
    QTimer timer_; // several edits in a row are looked at once
    QLabel *lblCompared_ = nullptr, *lblNone_ = nullptr;
    QComboBox *cmbKind_ = nullptr, *cmbChanged_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    QTreeView* tvwDifferences_ = nullptr;
    QWidget* pictures_ = nullptr;
    SpriteView *picHere_ = nullptr, *picThere_ = nullptr;
    QLabel *lblHere_ = nullptr, *lblThere_ = nullptr;
    QListWidget* lstLost_ = nullptr;
    QPushButton *cmdTake_ = nullptr, *cmdTakeKind_ = nullptr, *cmdShow_ = nullptr, *cmdCompareWith_ = nullptr,
                *cmdLost_ = nullptr;
};

} // namespace plinket3
