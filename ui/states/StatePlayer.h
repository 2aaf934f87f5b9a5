#pragma once

#include "patch/PatchSet.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace plinket3 {

/// Runs through the states that follow one another as a game does, 35 tics a second. Stops at a state that lasts for
/// ever, where the states come to an end (state 0), and when a loop has run twice.
class StatePlayer : public QObject {
    Q_OBJECT
public:
    static constexpr int ticsPerSecond = 35;

    /// `set` must outlive the player; it may change while it plays.
    StatePlayer(const PatchSet& set, QObject* parent);

    /// The states that playing from `state` shows, each once.
    std::vector<std::int32_t> Run(std::int32_t state) const;
    void Start(std::int32_t state);
    void Stop();
    bool IsPlaying() const { return playing_; }
    /// One tic goes by. The timer calls this; so may a test that does not want to wait.
    void Advance();

signals:
    void StateShown(std::int32_t state);
    /// Playing came to its end, or was stopped.
    void Stopped();

private:
    void Enter(std::int32_t state);
    void CatchUp();

    const PatchSet& set_;
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 tics_ = 0; // since the start
    bool playing_ = false;
    std::int32_t state_ = 0;
    std::int32_t ticsLeft_ = 0; // of the state
    std::unordered_map<std::int32_t, std::uint8_t> timesEntered_;
};

} // namespace plinket3
