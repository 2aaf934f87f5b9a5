#pragma once

#include "core/Status.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// The bytes of a PWAD, of which one lump after the other can be replaced or added. All other lumps stay byte for byte
/// as they are, in their order, and so do the bytes of all names and what lies between lumps. What stands behind a
/// lump moves when its size changes, so that saving again and again leaves no holes.
///
/// Lump indices and names are those of `clsWad`. The reason of a failure does not name the file.
class WadEdit {
public:
    /// Takes the bytes. Fails for what cannot be rewritten safely: what is no WAD; an IWAD, which belongs to its game;
    /// a directory or lump that lies outside the file; lumps, directory or header that overlap, other than lumps that
    /// share all of their bytes. After a failure there are no lumps.
    Status Open(std::string bytes);

    int LumpCount() const { return static_cast<int>(entries_.size()); }
    /// Trimmed, without NULs.
    std::string LumpName(int lump) const;
    /// Gives the lump at that index, which must be there, other content; a lump that shares its bytes with others
    /// leaves them these. Fails, with nothing changed, when the file would be larger than 2 GiB.
    Status Replace(int lump, std::string_view content);
    /// Adds a lump at the end of the directory. Fails, with nothing changed, as `Replace` and for a name that is empty
    /// or longer than 8 characters.
    Status Add(std::string_view name, std::string_view content);

    const std::string& Bytes() const { return bytes_; }

private:
    struct Entry {
        std::int64_t offset = 0, size = 0;
        std::int64_t End() const { return offset + size; }
        bool operator==(const Entry&) const = default;
    };
    Status ReadDirectory();
    Status FindOverlap() const;
    std::string Described(int lump) const;
    std::int64_t DirectorySize() const;
    std::int64_t PlaceForMore() const;
    Status Splice(std::int64_t at, std::int64_t removed, std::string_view put);
    void WriteDirectory();

    std::string bytes_;
    std::int64_t directory_ = 0; // its offset
    std::vector<Entry> entries_;
};

} // namespace plinket3
