#include "patch/SessionChoice.h"

#include "core/Text.h"

#include <algorithm>
#include <iterator>

namespace plinket3 {

namespace {

template <class Entries, class Fits> std::optional<std::size_t> First(const Entries& entries, Fits fits) {
    const auto found = std::find_if(entries.begin(), entries.end(), fits);
    if (found == entries.end())
        return std::nullopt;
    return static_cast<std::size_t>(std::distance(entries.begin(), found));
}

/// Paths in patches come from every platform.
std::string_view FileNameOf(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

} // namespace

std::optional<std::size_t> ChooseEngine(const std::vector<modConfig::EngineEntry>& engines, std::string_view named) {
    using Entry = modConfig::EngineEntry;
    if (const auto byFile = First(engines, [&](const Entry& entry) { return entry.file.filename() == named; }))
        return byFile;
    return First(engines, [&](const Entry& entry) { return entry.name == named; });
}

std::optional<std::size_t> FirstEngineOfVersion(const std::vector<modConfig::EngineEntry>& engines,
                                                std::int32_t version) {
    return First(engines, [&](const modConfig::EngineEntry& entry) { return entry.version == version; });
}

std::optional<std::size_t> LikelyEngine(const std::vector<modConfig::EngineEntry>& engines, std::int32_t version,
                                        const std::filesystem::path& patch) {
    const bool extended = EqualIgnoringCase(patch.extension().string(), ".bex");
    const auto likely = First(engines, [&](const modConfig::EngineEntry& entry) {
        return entry.version == version && entry.extended == extended;
    });
    return likely ? likely : FirstEngineOfVersion(engines, version);
}

std::optional<std::size_t> ChooseIwad(const std::vector<Settings::Iwad>& iwads, std::string_view named) {
    using Iwad = Settings::Iwad;
    if (const auto byName = First(iwads, [&](const Iwad& iwad) { return EqualIgnoringCase(iwad.name, named); }))
        return byName;
    if (const auto byPath = First(iwads, [&](const Iwad& iwad) { return EqualIgnoringCase(iwad.path, named); }))
        return byPath;
    return First(iwads, [&](const Iwad& iwad) {
        return !named.empty() && EqualIgnoringCase(FileNameOf(iwad.path), FileNameOf(named));
    });
}

} // namespace plinket3
