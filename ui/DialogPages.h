#pragma once

#include <QString>

class QWidget;

namespace plinket3 {

/// The manual's page of the dialog or dock that a control belongs to; empty where there is none.
QString DialogPageOf(const QWidget* control);

} // namespace plinket3
