#include "ui/PlaceHistory.h"

#include "ui/EditorSet.h"

#include <QScopedValueRollback>

#include <utility>

namespace plinket3 {

namespace {

constexpr int moment = 1'000; // milliseconds: arrow keys that run through a list leave no places
constexpr std::size_t mostPlaces = 200;

} // namespace

PlaceHistory::PlaceHistory(EditorSet& editors) : editors_(editors) {
    settled_.setSingleShot(true);
    settled_.setInterval(moment);
    connect(&settled_, &QTimer::timeout, this, &PlaceHistory::Visit);
    connect(&editors, &EditorSet::Jumping, this, &PlaceHistory::Visit);
    connect(&editors, &EditorSet::Jumped, this, &PlaceHistory::Visit);
    connect(&editors, &EditorSet::PlaceChanged, this, [this] {
        settled_.start();
        emit Changed();
    });
}

void PlaceHistory::Clear() {
    places_.clear();
    at_ = 0;
    emit Changed();
}

bool PlaceHistory::IsAway() const {
    const std::optional<Cell> here = editors_.Here();
    return here && !places_.empty() && *here != places_[at_] && IsThere(at_);
}

bool PlaceHistory::IsThere(std::size_t place) const { return editors_.IsThere(places_[place]); }

std::optional<std::size_t> PlaceHistory::PlaceBehind() const {
    for (std::size_t place = at_; place > 0; --place)
        if (IsThere(place - 1))
            return place - 1;
    return std::nullopt;
}

std::optional<std::size_t> PlaceHistory::PlaceAhead() const {
    for (std::size_t place = at_ + 1; place < places_.size(); ++place)
        if (IsThere(place))
            return place;
    return std::nullopt;
}

/// What was ahead is forgotten, as everywhere.
void PlaceHistory::Visit() {
    settled_.stop();
    const std::optional<Cell> here = editors_.Here();
    if (going_ || !here || (!places_.empty() && *here == places_[at_]))
        return;
    if (!places_.empty())
        places_.resize(at_ + 1);
    if (places_.size() == mostPlaces)
        places_.erase(places_.begin());
    places_.push_back(*here);
    at_ = places_.size() - 1;
    emit Changed();
}

void PlaceHistory::Back() {
    Visit();
    if (const auto place = PlaceBehind())
        GoTo(*place);
}

void PlaceHistory::Forward() {
    if (const auto place = PlaceAhead())
        GoTo(*place);
}

void PlaceHistory::GoTo(std::size_t place) {
    const QScopedValueRollback going(going_, true);
    at_ = place;
    editors_.ShowPlace(places_[at_]);
    settled_.stop();
    emit Changed();
}

} // namespace plinket3
