#pragma once

class QWidget;

namespace plinket3 {

/// Says that a control is for a field of the records that its window shows. One may be for several fields.
void ForField(QWidget& control, int field);

/// Gives the focus to the control inside `window` that is for the field, and brings it into view; false when there is
/// none that can be used now.
bool FocusField(QWidget& window, int field);

} // namespace plinket3
