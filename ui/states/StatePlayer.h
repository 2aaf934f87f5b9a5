#pragma once

#include "patch/Program.h"
#include "patch/StateWalk.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <optional>
#include <vector>

namespace plinket3 {

/// Runs through states as a `StateWalk` does, 35 tics a second. Stops at a state that lasts for ever, too.
class StatePlayer : public QObject {
    Q_OBJECT
public:
    static constexpr int ticsPerSecond = 35;

    /// `session` must outlive the player; its patch may change while it plays.
    StatePlayer(const Session& session, QObject* parent);

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
    void Show(std::optional<std::int32_t> state);
    void CatchUp();

    const Session& session_;
    StateWalk walk_;
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 tics_ = 0; // since the start
    bool playing_ = false;
    std::int32_t state_ = 0;
    std::int32_t ticsLeft_ = 0; // of the state
};

} // namespace plinket3
