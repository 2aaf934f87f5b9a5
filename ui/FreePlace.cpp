#include "ui/FreePlace.h"

#include <algorithm>

namespace plinket3 {

namespace {

/// The borders between which free places may lie, in order; `first` and `last` are those of the room.
QList<int> Borders(int first, int last, const QList<QRect>& others, int (*begin)(const QRect&),
                   int (*end)(const QRect&)) {
    QList<int> borders{first, last};
    for (const QRect& other : others)
        for (const int border : {begin(other), end(other)})
            if (border > first && border < last)
                borders.append(border);
    std::ranges::sort(borders);
    return borders;
}

} // namespace

std::optional<QRect> FreePlace(const QRect& room, const QList<QRect>& others, QSize size, QSize least) {
    const QList<int> xs = Borders(
        room.left(), room.left() + room.width(), others, [](const QRect& rect) { return rect.left(); },
        [](const QRect& rect) { return rect.left() + rect.width(); });
    const QList<int> ys = Borders(
        room.top(), room.top() + room.height(), others, [](const QRect& rect) { return rect.top(); },
        [](const QRect& rect) { return rect.top() + rect.height(); });
    const auto covers = [&others](const QRect& place) {
        return std::ranges::any_of(others, [&place](const QRect& other) { return other.intersects(place); });
    };
    std::optional<QRect> best;
    const auto area = [](const QRect& rect) { return rect.width() * rect.height(); };
    for (const int top : ys)
        for (const int left : xs)
            for (const int bottom : ys)
                for (const int right : xs) {
                    const QRect place(QPoint(left, top), QSize(right - left, bottom - top).boundedTo(size));
                    const bool holds = place.width() >= least.width() && place.height() >= least.height();
                    if (holds && (!best || area(place) > area(*best)) && !covers(place))
                        best = place;
                }
    return best;
}

} // namespace plinket3
