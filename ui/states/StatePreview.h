#pragma once

#include "ui/EditorContext.h"
#include "ui/fields/SpriteView.h"
#include "ui/states/StatePlayer.h"

#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QToolButton;

namespace plinket3 {

/// The picture of a state, which can be brought to life: the states from there on are shown one after the other as a
/// game does, with their sounds, by themselves or tic by tic.
class StatePreview : public QWidget {
    Q_OBJECT
public:
    /// What can be played of a thing or weapon.
    struct Run {
        QString name;
        std::int32_t state = 0;                      // 0: it has none
        std::int32_t ThingRecord::*field = nullptr;  // of a thing: by which it comes there
        bool operator==(const Run&) const = default; // the same to play
    };

    /// What is shown: states by ShowState alone, or what ShowRuns offers, with a box to choose.
    enum class Of { States, Runs };

    /// `picture` is the object name of the view.
    StatePreview(const EditorContext& context, const QString& picture, Of of);

    /// Ends playing and shows the state; none blanks the view.
    void ShowState(std::optional<std::int32_t> state);
    /// Offers what a record has of `runs`, of which the one at `usual` is shown until the user chooses another; of
    /// records that do not have that one, the usual. `owner`: whose they are. Goes on playing when they are as before.
    void ShowRuns(std::vector<Run> runs, std::size_t usual, std::optional<Target> owner);
    /// Draws anew: a value of a state may be another one.
    void Update();
    /// Ends playing, back at the state from which it started.
    void Stop();
    StatePlayer& Player() { return *player_; }

protected:
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QToolButton* NewTool(const char* name, const QString& tip, const QKeySequence& key, void (StatePreview::*click)());
    void SetIcons();
    void PlayOrPause();
    void Step();
    bool Begin();
    void Draw(std::int32_t state);
    void NameLump(const QString& lump);
    void FillJumps();
    void ShowRunning();
    void ShowTic();
    void ShowChosen();
    void MakeSound(std::int32_t sound);

    EditorContext context_;
    std::optional<std::int32_t> state_; // from which playing starts
    std::optional<Target> owner_;       // whose it is
    std::int32_t shown_ = 0;            // just now
    StraightRun straight_;              // from `state_`
    std::vector<Run> runs_;
    std::size_t usual_ = 0, chosen_ = 0; // places in it
    SpriteView* picture_;
    QLabel *lblPreview_, *lblTic_;
    QComboBox *cmbRun_, *cmbSpeed_;
    QToolButton *cmdPlay_, *cmdStop_, *cmdStep_, *cmdJumps_;
    QCheckBox* chkSound_;
    StatePlayer* player_;
};

} // namespace plinket3
