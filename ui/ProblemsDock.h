#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "patch/modPatchCheck.h"
#include "ui/EditorLinks.h"
#include "ui/LaterDock.h"

#include <QThreadPool>
#include <QTimer>

#include <map>
#include <memory>
#include <vector>

class QLabel;
class QPushButton;
class QTreeView;

namespace plinket3 {

class ProblemsModel;

/// A list of the problems of the patch as it is now. It is made anew in another thread, on a copy, a moment after the
/// last edit, whether or not it is seen: others show how many there are.
class ProblemsDock : public LaterDock {
    Q_OBJECT
public:
    /// All must outlive the dock.
    ProblemsDock(const Program& program, Edits& edits, EditorLinks& links);

    /// The patch, its engine or its file is another one.
    void Refresh();
    /// The same, and what ports said is of another patch.
    void SessionChanged();
    /// What a port said about the patch when it ran, in place of what it said before.
    void ShowOfPort(const QString& port, const std::vector<modPatchCheck::Finding>& problems);
    /// The same after a save: says at the end of the search when games refuse what was saved.
    void Saved();
    /// "2 errors, 5 warnings"
    QString Counts() const;

signals:
    /// The list is up to date with the patch again.
    void Searched();
    void StatusText(const QString& text);

private:
    /// What is searched: a copy, which shares its records with the open patch until one of them is changed. It is made
    /// and given up in this thread and only read in the other one; sharing bears no more.
    struct Job {
        PatchData patch;
        EngineConfiguration engine;
        WadList wads;
        bool afterSave = false;
    };

    QWidget* MakeContents() override;
    void Search();
    void Found(std::vector<modPatchCheck::Finding> problems);
    void Show();
    void ShowSummary();
    /// The last one in place of one beyond the list.
    void SelectRow(int row);
    void CurrentChanged();
    void GoTo();
    void MendCurrent();
    /// The selected problem; null when there is none.
    const modPatchCheck::Finding* Current() const;

    const Program& program_;
    Edits& edits_;
    EditorLinks& links_;
    ProblemsModel* model_;
    QLabel* summary_ = nullptr;
    QTreeView* list_ = nullptr;
    QPushButton *goTo_ = nullptr, *mend_ = nullptr;
    std::vector<modPatchCheck::Finding> own_;                        // of the last search
    std::map<QString, std::vector<modPatchCheck::Finding>> ofPorts_; // by their names
    QTimer pause_;
    std::unique_ptr<const Job> job_; // the search that goes on; null when none does
    bool late_ = false;              // the patch was changed after the search began
    bool saved_ = false;             // since the last search began
    QThreadPool thread_;             // of one thread; the last member, as it waits for a search before the others go
};

} // namespace plinket3
