#pragma once

#include "core/Status.h"
#include "ui/graph/GraphScene.h"

#include <QList>

#include <filesystem>
#include <utility>

class QPrinter;

namespace plinket3 {

// A whole graph with its title and its legend, on white whatever the desktop's colours are.

/// Writes a picture, of pixels where the name ends with ".png", else of lines (SVG). Pictures of pixels are made
/// smaller where they would take too much memory. The reason of a failure is for the user.
Status ExportGraph(GraphScene& scene, const QString& title, const std::filesystem::path& file);

/// Prints it on one page where that can be read, else on several beside and below each other. False when the printer
/// does not take it.
bool PrintGraph(GraphScene& scene, const QString& title, QPrinter& printer);

/// Of a sheet of that length: where pages of that room begin, and where the last one ends. None cuts one of the spans
/// (from, to), unless half a page would stay empty for that.
QList<double> PageEdges(double length, double room, const QList<std::pair<double, double>>& spans);

} // namespace plinket3
