#include "ui/states/StatePlayer.h"

namespace plinket3 {

StatePlayer::StatePlayer(const Session& session, QObject* parent)
    : QObject(parent), session_(session), walk_(session.patch.current, session.engine) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(1000 / ticsPerSecond);
    connect(&timer_, &QTimer::timeout, this, &StatePlayer::CatchUp);
}

std::vector<std::int32_t> StatePlayer::Run(std::int32_t state) const {
    return StateWalk(session_.patch.current, session_.engine).Shown(state);
}

void StatePlayer::Start(std::int32_t state) {
    Stop();
    tics_ = 0;
    playing_ = true;
    clock_.start();
    timer_.start();
    Show(walk_.Start(state));
}

void StatePlayer::Stop() {
    if (!playing_)
        return;
    playing_ = false;
    timer_.stop();
    emit Stopped();
}

/// A tic is no whole number of milliseconds, and a busy machine may let some timeouts pass.
void StatePlayer::CatchUp() {
    const qint64 due = clock_.elapsed() * ticsPerSecond / 1000;
    while (playing_ && tics_ < due)
        Advance();
}

void StatePlayer::Advance() {
    ++tics_;
    if (!playing_ || --ticsLeft_ > 0)
        return;
    Show(walk_.After(state_));
}

/// None ends it, and so does a state that lasts for ever.
void StatePlayer::Show(std::optional<std::int32_t> state) {
    const StateRecord* record = state ? session_.patch.current.states.Find(*state) : nullptr;
    if (record == nullptr)
        return Stop();
    state_ = *state;
    ticsLeft_ = record->duration;
    emit StateShown(state_);
    if (ticsLeft_ < 0)
        Stop();
}

} // namespace plinket3
