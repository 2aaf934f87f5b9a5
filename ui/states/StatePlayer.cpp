#include "ui/states/StatePlayer.h"

#include <unordered_set>

namespace plinket3 {

namespace {

constexpr std::uint8_t timesThroughALoop = 2;

} // namespace

StatePlayer::StatePlayer(const PatchSet& set, QObject* parent) : QObject(parent), set_(set) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(1000 / ticsPerSecond);
    connect(&timer_, &QTimer::timeout, this, &StatePlayer::CatchUp);
}

std::vector<std::int32_t> StatePlayer::Run(std::int32_t state) const {
    std::vector<std::int32_t> shown;
    std::unordered_set<std::int32_t> entered{0};
    for (const StateRecord* record = set_.states.Find(state); record != nullptr && entered.insert(state).second;
         record = set_.states.Find(state)) {
        if (record->duration != 0)
            shown.push_back(state);
        if (record->duration < 0)
            break;
        state = record->nextState;
    }
    return shown;
}

void StatePlayer::Start(std::int32_t state) {
    Stop();
    timesEntered_.clear();
    tics_ = 0;
    playing_ = true;
    clock_.start();
    timer_.start();
    Enter(state);
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
    const StateRecord* record = set_.states.Find(state_);
    Enter(record != nullptr ? record->nextState : 0);
}

/// States that last no time are passed through at once; as none is entered more than twice, this ends.
void StatePlayer::Enter(std::int32_t state) {
    for (;;) {
        const StateRecord* record = set_.states.Find(state);
        if (state == 0 || record == nullptr || timesEntered_[state] == timesThroughALoop)
            return Stop();
        ++timesEntered_[state];
        state_ = state;
        ticsLeft_ = record->duration;
        if (ticsLeft_ != 0)
            break;
        state = record->nextState;
    }
    emit StateShown(state_);
    if (ticsLeft_ < 0)
        Stop();
}

} // namespace plinket3
