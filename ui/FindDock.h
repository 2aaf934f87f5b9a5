#pragma once

#include "patch/Find.h"
#include "ui/EditorContext.h"
#include "ui/LaterDock.h"

#include <QTimer>

#include <optional>
#include <string>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace plinket3 {

class FindResultsModel;

/// Finds anything in the open patch as one types, leads there, and replaces in strings and cheats. Down leads from the
/// text into the results, Escape back, and from the text out.
class FindDock : public LaterDock {
    Q_OBJECT
public:
    explicit FindDock(const EditorContext& context);

    /// Shows itself with the keyboard in the text.
    void Start();
    /// The patch or values of it are others.
    void Refresh();

signals:
    /// The user wants back to where the search began.
    void Left();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* MakeContents() override;
    QGroupBox* MakeReplacing();
    void Search();
    void SelectRow(int row);
    void GoToResults();
    void GoTo(const QModelIndex& result);
    /// The text of the string or cheat in a row, if it holds what is typed.
    std::optional<Cell> TextAt(int row) const;
    void UpdateButtons();
    void Replace();
    void ReplaceAll();
    void ReplaceIn(const std::vector<Cell>& texts);
    bool LineKey(int key);
    bool ResultsKey(int key);

    EditorContext context_;
    FindResultsModel* model_;
    QLineEdit *text_ = nullptr, *with_ = nullptr;
    QCheckBox* matchCase_ = nullptr;
    QTreeView* results_ = nullptr;
    QLabel *nothing_ = nullptr, *outcome_ = nullptr;
    QPushButton *replace_ = nullptr, *replaceAll_ = nullptr;
    std::optional<FindGroup> whole_; // the group of which all results are shown
    QTimer refresh_;
};

} // namespace plinket3
