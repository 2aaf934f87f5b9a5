#pragma once

#include "patch/Program.h"
#include "patch/StateWalk.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <optional>

namespace plinket3 {

/// Runs through states as a `StateWalk` does, 35 tics a second at the game's speed.
class StatePlayer : public QObject {
    Q_OBJECT
public:
    static constexpr int ticsPerSecond = 35;

    /// `session` must outlive the player; its patch may change while it plays.
    StatePlayer(const Session& session, QObject* parent);

    /// Shows the first tic of `state`, and goes on by itself after `Resume`. `start` is what is heard at once, `thing`
    /// the one in whose states that is.
    void Start(std::int32_t state, std::optional<std::int32_t> thing, std::optional<std::int32_t> start);
    /// Goes on by itself, unless it has ended.
    void Resume();
    void Pause();
    /// Forgets where it was.
    void Stop();
    bool IsRunning() const { return timer_.isActive(); }
    /// Between `Start` and `Stop`, or the end.
    bool IsPlaying() const { return playing_; }
    /// Times the game's.
    void Speed(double times);
    /// One tic goes by. The timer calls this; so does stepping, and a test that does not want to wait.
    void Advance();

    StateWalk& Walk() { return walk_; }
    /// Falls as these dice do from now on; at first as those of the system.
    void Chance(Dice dice) { dice_ = std::move(dice); }
    const Dice& Chance() const { return dice_; }

signals:
    void StateShown(std::int32_t state);
    void SoundMade(std::int32_t sound);
    /// Another tic is shown.
    void TicShown();
    /// The walk has ended; what was shown last stays.
    void Ended();
    /// It runs by itself, or no longer.
    void RunningChanged();

private:
    void Show();
    void CatchUp();

    const Session& session_;
    Dice dice_;
    StateWalk walk_;
    QTimer timer_;
    QElapsedTimer clock_;
    double times_ = 1;
    qint64 tics_ = 0; // since the clock was started
    bool playing_ = false;
    std::optional<std::int32_t> thing_;
};

} // namespace plinket3
