#pragma once

#include "patch/GraphLayout.h"

#include <QFont>
#include <QPalette>
#include <QPen>

namespace plinket3 {

/// Colours, fonts and sizes of a drawn graph.
struct GraphStyle {
    GraphStyle(const QPalette& palette, const QFont& font);

    QColor text, canvas, box, frame, current, warning;
    QFont font, bold;
    double line = 0;    // the height of a line of text
    double padding = 4; // between the border of a box and what is in it
    GraphSizes sizes;

    /// The line of an arrow; told apart by its dashes as well as by its colour.
    QPen LineOf(EdgeKind kind) const;

private:
    QColor faint_, jump_, argument_, engine_;
};

} // namespace plinket3
