#pragma once

#include <QFont>
#include <QString>
#include <QWidget>

namespace plinket3 {

// How every editor shows that a value is not the engine's: bold, with the engine's own value in the tooltip.

/// The engine's own value as a tooltip tells it.
QString DefaultTip(const QString& defaultText);

/// `font` for a value that differs.
QFont MarkedFont(QFont font = {});

/// Marks a control when its value differs; makes it plain, with the tooltip `plainTip`, when it does not.
void MarkDifference(QWidget& widget, bool differs, const QString& defaultText, const QString& plainTip = {});

} // namespace plinket3
