#include "patch/PatchPlace.h"

#include "core/Files.h"
#include "core/Numbers.h"
#include "core/System.h"
#include "core/Text.h"
#include "wad/WadEdit.h"
#include "wad/clsWad.h"

#include <algorithm>
#include <array>
#include <optional>

namespace plinket3 {

namespace {

/// A lump as a place names it.
struct LumpWords {
    std::string_view name;
    std::int32_t number = 0; // from 1; 0 for the last one
};

LumpWords Parse(std::string_view lump) {
    constexpr std::size_t mostDigits = 9;
    const std::size_t mark = lump.rfind('#');
    const std::string_view digits = mark == std::string_view::npos ? std::string_view() : lump.substr(mark + 1);
    if (digits.empty() || digits.size() > mostDigits || digits.find_first_not_of("0123456789") != digits.npos)
        return {lump};
    return {lump.substr(0, mark), LeadingInt32(digits)};
}

/// The directory indices of all lumps of that name. `wad` is a `clsWad` or a `WadEdit`.
template <class NameOf> std::vector<int> IndicesOf(std::string_view name, int count, NameOf nameOf) {
    std::vector<int> indices;
    for (int lump = 0; lump < count; ++lump)
        if (EqualIgnoringCase(nameOf(lump), name))
            indices.push_back(lump);
    return indices;
}

std::optional<int> Choose(const std::vector<int>& indices, std::int32_t number) {
    if (indices.empty() || std::cmp_greater(number, indices.size()))
        return std::nullopt;
    return number == 0 ? indices.back() : indices[static_cast<std::size_t>(number) - 1];
}

Status NoLump(std::string_view lump) { return Status::Failure("there is no lump " + std::string(lump) + " in it"); }

std::vector<int> IndicesIn(const clsWad& wad, std::string_view name) {
    return IndicesOf(name, wad.LumpCount(), [&wad](int lump) { return wad.lumpName(lump); });
}

Status OpenToWrite(const std::filesystem::path& file, WadEdit& wad) {
    std::string bytes;
    if (Status read = ReadWholeFile(file, bytes); !read)
        return read;
    return wad.Open(std::move(bytes));
}

Status PutLump(const PatchPlace& place, std::string_view bytes, MissingLump missing, WadEdit& wad) {
    const LumpWords words = Parse(place.lump);
    const std::vector<int> indices =
        IndicesOf(words.name, wad.LumpCount(), [&wad](int lump) { return wad.LumpName(lump); });
    if (const std::optional<int> index = Choose(indices, words.number))
        return wad.Replace(*index, bytes);
    const bool next = words.number == 0 || std::cmp_equal(words.number, indices.size() + 1);
    return missing == MissingLump::IsAdded && next ? wad.Add(ToUpper(words.name), bytes) : NoLump(place.lump);
}

} // namespace

bool IsWad(const std::filesystem::path& file) {
    std::error_code ignored;
    SystemFile opened;
    std::array<char, 4> start{};
    if (!std::filesystem::is_regular_file(file, ignored) || !opened.Open(file) ||
        opened.ReadAt(0, start.data(), start.size()) != start.size())
        return false;
    const std::string_view identification(start.data(), start.size());
    return identification == "IWAD" || identification == "PWAD";
}

Status IsWritableWad(const std::filesystem::path& file) {
    WadEdit wad;
    return OpenToWrite(file, wad);
}

std::vector<PatchLump> FindPatchLumps(const std::filesystem::path& wad, std::string_view name) {
    clsWad opened;
    opened.OpenWad(wad);
    const std::vector<int> indices = IndicesIn(opened, name);
    std::vector<PatchLump> lumps;
    for (const int index : indices) {
        std::string lump(name);
        if (indices.size() > 1)
            lump += "#" + std::to_string(lumps.size() + 1);
        lumps.push_back({std::move(lump), index, opened.LumpSize(index)});
    }
    return lumps;
}

Status ReadPlace(const PatchPlace& place, std::string& bytes) {
    if (place.lump.empty())
        return ReadWholeFile(place.file, bytes);
    bytes.clear();
    clsWad wad;
    wad.OpenWad(place.file);
    if (wad.WadFileName().empty())
        return Status::Failure("is no WAD that can be read");
    const LumpWords words = Parse(place.lump);
    const std::optional<int> index = Choose(IndicesIn(wad, words.name), words.number);
    if (!index)
        return NoLump(place.lump);
    bytes = wad.ReadLumpString(*index);
    if (std::cmp_equal(bytes.size(), wad.LumpSize(*index)))
        return {};
    bytes.clear();
    return Status::Failure("the lump does not lie in the file as a whole");
}

Status EditPlace(const PatchPlace& place, std::string_view bytes, MissingLump missing, WadEdit& wad) {
    const Status opened = OpenToWrite(place.file, wad);
    return opened ? PutLump(place, bytes, missing, wad) : opened;
}

Status WritePlace(const PatchPlace& place, const BytePieces& bytes, bool createBackup, MissingLump missing) {
    WadEdit wad;
    if (!place.lump.empty())
        if (Status edited = EditPlace(place, bytes.Joined(), missing, wad); !edited)
            return edited;
    std::error_code ignored;
    if (createBackup && std::filesystem::is_regular_file(place.file, ignored)) {
        std::filesystem::path backup = place.file;
        backup += ".bak";
        if (const Status status = CopyFileAtomically(place.file, backup); !status)
            return Status::Failure("no backup could be made: " + status.Reason());
    }
    return place.lump.empty() ? WriteFileAtomically(place.file, bytes) : WriteFileAtomically(place.file, wad.Bytes());
}

} // namespace plinket3
