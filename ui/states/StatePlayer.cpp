#include "ui/states/StatePlayer.h"

#include "patch/StateSounds.h"

#include <QRandomGenerator>

#include <algorithm>
#include <utility>

namespace plinket3 {

StatePlayer::StatePlayer(const Session& session, QObject* parent)
    : QObject(parent), session_(session), dice_([] { return QRandomGenerator::global()->bounded(certainChance); }),
      walk_(session, [this] { return dice_(); }) {
    timer_.setTimerType(Qt::PreciseTimer);
    Speed(1);
    connect(&timer_, &QTimer::timeout, this, &StatePlayer::CatchUp);
}

void StatePlayer::Start(std::int32_t state, std::optional<std::int32_t> thing, std::optional<std::int32_t> start) {
    Pause();
    thing_ = thing;
    playing_ = true;
    if (start)
        emit SoundMade(*start);
    walk_.Start(state);
    Show();
}

void StatePlayer::Resume() {
    if (!playing_ || IsRunning())
        return;
    tics_ = 0;
    clock_.start();
    timer_.start();
    emit RunningChanged();
}

void StatePlayer::Pause() {
    if (!IsRunning())
        return;
    timer_.stop();
    emit RunningChanged();
}

void StatePlayer::Stop() {
    playing_ = false;
    Pause();
}

void StatePlayer::Speed(double times) {
    times_ = times;
    timer_.setInterval(static_cast<int>(1000 / (ticsPerSecond * times)));
    tics_ = 0;
    clock_.restart();
}

/// A tic is no whole number of milliseconds, and a busy machine may let some timeouts pass.
void StatePlayer::CatchUp() {
    const auto due = static_cast<qint64>(static_cast<double>(clock_.elapsed()) * ticsPerSecond * times_ / 1000);
    tics_ = std::max(tics_, due - ticsPerSecond); // what it missed while it slept is not made up for
    while (IsRunning() && tics_ < due) {
        ++tics_;
        Advance();
    }
}

void StatePlayer::Advance() {
    if (!playing_)
        return;
    walk_.Tic();
    Show();
}

void StatePlayer::Show() {
    const StateWalk::End end = walk_.Ended();
    const auto& entered = walk_.Entered();
    for (auto state = entered.rbegin(); state != entered.rend(); ++state) // the last cuts off those before
        if (const auto sound = SoundOfState(session_, *state, thing_, dice_)) {
            emit SoundMade(*sound);
            break;
        }
    if (!entered.empty() && (end == StateWalk::End::None || end == StateWalk::End::ForEver))
        emit StateShown(*walk_.State());
    emit TicShown();
    if (end == StateWalk::End::None)
        return;
    Stop();
    emit Ended();
}

} // namespace plinket3
