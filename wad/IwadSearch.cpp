#include "wad/IwadSearch.h"

#include "core/Files.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "wad/clsWad.h"

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int iwadType = 0;

bool IsIwad(const std::filesystem::path& file) {
    clsWad wad;
    wad.OpenWad(file);
    return !wad.WadFileName().empty() && wad.WadType() == iwadType;
}

} // namespace

std::vector<std::filesystem::path> FindIwads(const std::vector<std::filesystem::path>& folders) {
    std::vector<std::filesystem::path> found;
    for (const std::filesystem::path& folder : folders) {
        std::vector<std::filesystem::path> files;
        std::error_code error;
        for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error))
            if (EqualIgnoringCase(PathText(entry->path().extension()), ".wad"))
                files.push_back(entry->path());
        std::sort(files.begin(), files.end());
        for (const std::filesystem::path& file : files)
            if (!NamesOneOf(file, found) && IsIwad(file))
                found.push_back(file);
    }
    return found;
}

} // namespace plinket3
