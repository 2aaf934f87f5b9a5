#include "wad/WadEdit.h"

#include "core/Bytes.h"
#include "core/Text.h"
#include "wad/clsWad.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::int64_t headerSize = 12, entrySize = 16, nameOffset = 8, identificationSize = 4;
constexpr std::size_t nameSize = 8;
constexpr std::int64_t largestFile = std::numeric_limits<std::int32_t>::max(); // its numbers have 32 bits
constexpr const char* tooLarge = "would be larger than 2 GiB";

std::size_t Place(std::int64_t offset) { return static_cast<std::size_t>(offset); }

void PutInt32(std::string& bytes, std::int64_t offset, std::int64_t number) {
    ByteWriter writer;
    writer.Int32(static_cast<std::int32_t>(number));
    bytes.replace(Place(offset), sizeof(std::int32_t), writer.Take());
}

} // namespace

Status WadEdit::Open(std::string bytes) {
    *this = WadEdit();
    bytes_ = std::move(bytes);
    Status status = ReadDirectory();
    if (status)
        status = FindOverlap();
    if (!status)
        *this = WadEdit();
    return status;
}

std::string WadEdit::LumpName(int lump) const {
    std::string name = bytes_.substr(Place(directory_ + lump * entrySize + nameOffset), nameSize);
    std::ranges::replace(name, '\0', ' ');
    return std::string(Trim(name));
}

Status WadEdit::Replace(int lump, std::string_view content) {
    Entry& entry = entries_[static_cast<std::size_t>(lump)];
    const std::string_view old =
        entry.size > 0 ? std::string_view(bytes_).substr(Place(entry.offset), Place(entry.size)) : "";
    if (old == content)
        return {};
    const auto sharing = std::ranges::count(entries_, entry);
    const bool inPlace = entry.size > 0 && sharing == 1;
    const std::int64_t at = inPlace ? entry.offset : PlaceForMore();
    if (Status status = Splice(at, inPlace ? entry.size : 0, content); !status)
        return status;
    entry = {at, static_cast<std::int64_t>(content.size())};
    WriteDirectory();
    return {};
}

Status WadEdit::Add(std::string_view name, std::string_view content) {
    if (name.empty() || name.size() > nameSize)
        return Status::Failure("a lump's name has 1 to 8 characters");
    if (std::cmp_greater_equal(entries_.size(), clsWad::largestDirectory))
        return Status::Failure("its directory is full");
    if (std::cmp_greater(content.size(), largestFile - entrySize - static_cast<std::int64_t>(bytes_.size())))
        return Status::Failure(tooLarge);
    std::string entry(Place(nameOffset), '\0');
    entry.append(name).resize(Place(entrySize), '\0');
    // What stands behind the directory makes room for its new entry, but not the directory itself.
    const std::int64_t directory = directory_;
    if (Status status = Splice(directory + DirectorySize(), 0, entry); !status)
        return status;
    directory_ = directory;
    entries_.push_back({});
    WriteDirectory();
    return Replace(LumpCount() - 1, content);
}

Status WadEdit::ReadDirectory() {
    const std::string_view identification = std::string_view(bytes_).substr(0, Place(identificationSize));
    if (identification == "IWAD")
        return Status::Failure("is an IWAD, which belongs to its game and is never written; a patch for it goes into a "
                               "WAD of your own");
    const auto size = static_cast<std::int64_t>(bytes_.size());
    if (identification != "PWAD" || size < headerSize)
        return Status::Failure("is no WAD that can be read");
    if (size > largestFile)
        return Status::Failure(tooLarge);
    ByteReader header(bytes_, Place(identificationSize));
    const std::int64_t count = header.Int32();
    directory_ = header.Int32();
    if (count == 0 && (directory_ < headerSize || directory_ > size))
        directory_ = size;
    if (count < 0 || directory_ < headerSize || directory_ + count * entrySize > size)
        return Status::Failure("its directory lies outside the file");
    if (count > clsWad::largestDirectory)
        return Status::Failure("its directory has more than " + std::to_string(clsWad::largestDirectory) + " lumps");
    entries_.reserve(static_cast<std::size_t>(count));
    for (std::int64_t lump = 0; lump < count; ++lump) {
        ByteReader reader(bytes_, Place(directory_ + lump * entrySize));
        const std::int64_t offset = reader.Int32(); // of a lump without bytes it may be any number
        entries_.push_back({offset, reader.Int32()});
        const Entry& entry = entries_.back();
        if (entry.size < 0 || (entry.size > 0 && (offset < 0 || entry.End() > size)))
            return Status::Failure("its " + Described(static_cast<int>(lump)) + " lies outside the file");
    }
    return {};
}

Status WadEdit::FindOverlap() const {
    constexpr int header = -2, directory = -1;
    std::vector<std::pair<Entry, int>> parts{{{0, headerSize}, header}, {{directory_, DirectorySize()}, directory}};
    for (int lump = 0; lump < LumpCount(); ++lump)
        if (const Entry& entry = entries_[static_cast<std::size_t>(lump)]; entry.size > 0)
            parts.emplace_back(entry, lump);
    std::ranges::sort(parts, {},
                      [](const auto& part) { return std::tuple(part.first.offset, part.first.size, part.second); });
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const auto& [before, first] = parts[i - 1];
        const auto& [after, second] = parts[i];
        if (after.offset >= before.End() || after.size == 0 || (first >= 0 && before == after))
            continue;
        const auto name = [this](int part) {
            return part == header ? "header" : part == directory ? "directory" : Described(part);
        };
        return Status::Failure("its " + name(first) + " and its " + name(second) + " overlap");
    }
    return {};
}

std::string WadEdit::Described(int lump) const {
    return "lump " + std::to_string(lump) + " (" + Printable(LumpName(lump)) + ")";
}

std::int64_t WadEdit::DirectorySize() const { return LumpCount() * entrySize; }

/// Before a directory that ends the file, as that is where most WADs have it, else at the end of the file.
std::int64_t WadEdit::PlaceForMore() const {
    const bool last =
        std::ranges::none_of(entries_, [this](const Entry& each) { return each.size > 0 && each.offset > directory_; });
    return last ? directory_ : static_cast<std::int64_t>(bytes_.size());
}

/// Puts bytes in the place of others, and moves what stands behind them in the directory; it is not yet written.
Status WadEdit::Splice(std::int64_t at, std::int64_t removed, std::string_view put) {
    const auto size = static_cast<std::int64_t>(bytes_.size());
    const std::int64_t grown = static_cast<std::int64_t>(put.size()) - removed;
    if (grown > largestFile - size)
        return Status::Failure(tooLarge);
    bytes_.replace(Place(at), Place(removed), put);
    const auto move = [&](std::int64_t& offset) {
        if (offset >= at + removed && offset <= size)
            offset += grown;
    };
    move(directory_);
    for (Entry& entry : entries_)
        move(entry.offset);
    return {};
}

void WadEdit::WriteDirectory() {
    PutInt32(bytes_, identificationSize, LumpCount());
    PutInt32(bytes_, identificationSize + 4, directory_);
    std::int64_t place = directory_;
    for (const Entry& entry : entries_) {
        PutInt32(bytes_, place, entry.offset);
        PutInt32(bytes_, place + 4, entry.size);
        place += entrySize;
    }
}

} // namespace plinket3
