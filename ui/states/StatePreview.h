#pragma once

#include "patch/Program.h"
#include "ui/fields/SpriteView.h"
#include "ui/states/StatePlayer.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <cstdint>
#include <optional>

namespace plinket3 {

/// The picture of a state, which can be brought to life: the states from there on are shown one after the other as a
/// game does.
class StatePreview : public QGroupBox {
    Q_OBJECT
public:
    explicit StatePreview(const Program& program);

    /// Ends playing and shows the state; none blanks the view.
    void ShowState(std::optional<std::int32_t> state);
    /// Draws anew: a value of the state may be another one.
    void Update();
    void Stop() { player_->Stop(); }
    StatePlayer& Player() { return *player_; }

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void Draw(std::int32_t state);
    void NameLump(const QString& lump);
    void PlayOrStop();

    std::optional<std::int32_t> state_; // from which playing starts
    std::optional<Target> owner_;       // of that one
    std::int32_t shown_ = 0;            // just now
    const Program& program_;
    SpriteView* picSprite_;
    QLabel* lblPreview_;
    QPushButton* cmdPlay_;
    StatePlayer* player_;
};

} // namespace plinket3
