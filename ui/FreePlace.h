#pragma once

#include <QList>
#include <QRect>

#include <optional>

namespace plinket3 {

/// Where in `room` a window covers none of `others`: of `size`, else made smaller, but not below `least`. Of several
/// places the one that leaves it the largest, then the topmost, then the leftmost. Absent when there is none.
std::optional<QRect> FreePlace(const QRect& room, const QList<QRect>& others, QSize size, QSize least);

} // namespace plinket3
