#include "bench/Floors.h"

#include "core/Bytes.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <fstream>
#include <vector>

namespace plinket3::bench {

namespace {

/// Calls visit(line) for each line, its end included.
template <class Visit> void ForEachLine(std::string_view bytes, Visit visit) {
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::size_t size = end == std::string_view::npos ? bytes.size() : end + 1;
        visit(bytes.substr(0, size));
        bytes.remove_prefix(size);
    }
}

// Short runs of blanks: plain loops, which the compiler puts in place, beat every search function.
std::string_view TrimInPlace(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

} // namespace

std::int64_t SplitLines(std::string_view bytes) {
    std::int64_t sum = 0;
    ForEachLine(bytes, [&sum](std::string_view line) {
        if (line.ends_with('\n'))
            line.remove_suffix(1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            return;
        const std::string_view key = TrimInPlace(line.substr(0, equals)), value = TrimInPlace(line.substr(equals + 1));
        std::int32_t number = 0;
        std::from_chars(value.data(), value.data() + value.size(), number);
        sum += number + static_cast<std::int64_t>(key.size());
    });
    return sum;
}

std::string CopyLines(std::string_view bytes) {
    std::string copy;
    ForEachLine(bytes, [&copy](std::string_view line) { copy += line; });
    return copy;
}

std::int64_t ReadDirectory(const std::filesystem::path& file) {
    constexpr std::size_t entrySize = 16;
    std::ifstream wad(file, std::ios::binary);
    std::array<char, 12> header{};
    if (!wad.read(header.data(), header.size()))
        return 0;
    ByteReader reader({header.data(), header.size()}, 4);
    const std::int32_t count = reader.Int32();
    std::vector<char> directory(static_cast<std::size_t>(count) * entrySize);
    wad.seekg(reader.Int32());
    wad.read(directory.data(), static_cast<std::streamsize>(directory.size()));
    return wad ? count : 0;
}

} // namespace plinket3::bench
