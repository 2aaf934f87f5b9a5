#pragma once

#include "patch/Cells.h"

#include <QObject>
#include <QTimer>

#include <cstddef>
#include <optional>
#include <vector>

namespace plinket3 {

class EditorSet;

/// Where the user has been, an editor with a record each, and the way back and forward through it, as in a browser. A
/// place is kept when a link or a search leads away from it or to it, or when the user stays there for a moment.
class PlaceHistory : public QObject {
    Q_OBJECT
public:
    /// `editors` outlives this object.
    explicit PlaceHistory(EditorSet& editors);

    /// Go to the last or next place that is still there.
    void Back();
    void Forward();
    bool CanGoBack() const { return PlaceBehind().has_value() || IsAway(); }
    bool CanGoForward() const { return !IsAway() && PlaceAhead().has_value(); }
    /// Begins anew: another patch is open.
    void Clear();

signals:
    /// There may be another way back or forward.
    void Changed();

private:
    void Visit();
    void GoTo(std::size_t place);
    bool IsThere(std::size_t place) const;
    /// Whether the user is where nothing is kept of yet.
    bool IsAway() const;
    std::optional<std::size_t> PlaceBehind() const;
    std::optional<std::size_t> PlaceAhead() const;

    EditorSet& editors_;
    QTimer settled_;
    std::vector<Cell> places_;
    std::size_t at_ = 0; // in `places_`, if there are any
    bool going_ = false;
};

} // namespace plinket3
