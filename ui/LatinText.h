#pragma once

#include "core/Paths.h"

#include <QString>

#include <filesystem>
#include <string>
#include <string_view>

namespace plinket3 {

// Text of patches is bytes and shown as Latin-1; paths are what the file system says.

inline QString ShownText(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

inline constexpr std::size_t longestShown = 200; // characters
/// The same for labels, lists and menus, which cannot lay out a text of any length: of a longer one they show the
/// start, and dots.
QString ShownStart(std::string_view text);

inline std::string StoredText(const QString& text) { return text.toLatin1().toStdString(); }

inline QString ShownPath(const std::filesystem::path& path) { return QString::fromStdString(PathText(path)); }
/// The same of a path that is a text already, or of a text that holds one.
inline QString ShownPath(const std::string& text) { return ShownPath(PathOf(text)); }
/// With the system's own separators, where the toolkit has slashes on every system.
inline std::filesystem::path StoredPath(const QString& path) { return PathOf(path.toStdString()).make_preferred(); }

} // namespace plinket3
