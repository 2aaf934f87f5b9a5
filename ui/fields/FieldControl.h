#pragma once

#include <optional>

class QWidget;

namespace plinket3 {

/// Says that a control is for a field of the records that its window shows. One may be for several fields.
void ForField(QWidget& control, int field);

/// The first field that a control is for; absent for one (or null) that is for none.
std::optional<int> FieldAt(const QWidget* control);

/// Gives the focus to the control inside `window` that is for the field, and brings it into view; false when there is
/// none that can be used now.
bool FocusField(QWidget& window, int field);

} // namespace plinket3
