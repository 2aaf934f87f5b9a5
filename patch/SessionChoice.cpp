#include "patch/SessionChoice.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/modTables.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace plinket3 {

namespace {

using modPatchFiles::FileNameOf;

template <class Entries, class Fits> std::optional<std::size_t> First(const Entries& entries, Fits fits) {
    const auto found = std::find_if(entries.begin(), entries.end(), fits);
    if (found == entries.end())
        return std::nullopt;
    return static_cast<std::size_t>(std::distance(entries.begin(), found));
}

/// Counts the lines for which an engine has no use.
class MisfitCounter : public modPatchFiles::ReadObserver {
public:
    MisfitCounter(const EngineConfiguration& engine, const PatchSet& defaults) : engine_(engine), defaults_(defaults) {}
    std::int64_t Count() const { return count_; }

    void Ignored(std::size_t, std::string_view) override { ++count_; }
    void Section(std::size_t, std::string_view word) override {
        count_ += word.starts_with('[') && !engine_.dialect.IsExtended();
    }
    void FlagNames(std::size_t, std::string_view) override { count_ += !engine_.dialect.IsExtended(); }
    void Number(std::size_t, FieldUnit unit, FieldWidth, std::string_view text) override {
        if (engine_.dialect.unlimited)
            return;
        const auto beyond = [&](const auto& records) { return LeadingInt32(text) > records.Highest(); };
        count_ += (unit == FieldUnit::State && beyond(defaults_.states)) ||
                  (unit == FieldUnit::Sound && beyond(defaults_.sounds)) ||
                  (unit == FieldUnit::Sprite && beyond(defaults_.sprites));
    }

private:
    const EngineConfiguration& engine_;
    const PatchSet& defaults_;
    std::int64_t count_ = 0;
};

/// How an engine takes a patch.
struct Reading {
    std::size_t length = 0; // bytes up to the line that cannot be read
    std::int64_t misfits = 0;
    std::int64_t states = 0; // that the engine has
};

/// An engine that cannot be loaded reads nothing.
Reading TryReading(const std::filesystem::path& programFolder, const modConfig::EngineEntry& entry,
                   std::string_view bytes, Rules rules) {
    EngineConfiguration engine;
    PatchSet defaults, set;
    if (!modTables::ReadEngine(programFolder, entry.file, engine, defaults))
        return {};
    if (rules == Rules::Engine)
        engine.dialect = engine.dialect.AsEngines();
    MisfitCounter misfits(engine, defaults);
    const modPatchFiles::ReadResult read = modPatchFiles::ParsePatch(bytes, engine, defaults, set, &misfits);
    return {read.status ? bytes.size() + 1 : read.offset, misfits.Count(),
            static_cast<std::int64_t>(defaults.states.size())};
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

std::optional<std::size_t> RecommendEngine(const Environment& environment, const modPatchFiles::Header& header,
                                           std::string_view bytes, const std::filesystem::path& file,
                                           std::optional<std::size_t> preferred, Rules rules) {
    if (const auto named = ChooseEngine(environment.engines, modPatchFiles::HeaderValue(header, "engineconfig")))
        return named;
    const std::int32_t version = LeadingInt32(modPatchFiles::HeaderValue(header, "engineversion"));
    const bool extended = EqualIgnoringCase(file.extension().string(), ".bex");
    const bool anyVersion = rules == Rules::Engine && !FirstEngineOfVersion(environment.engines, version);
    std::optional<std::size_t> best;
    // How well the best one fits; what comes first counts most, and more is better.
    std::tuple<std::size_t, std::int64_t, bool, bool, std::int64_t> bestFit;
    for (std::size_t i = 0; i < environment.engines.size(); ++i) {
        const modConfig::EngineEntry& entry = environment.engines[i];
        if (entry.version != version && !anyVersion)
            continue;
        const Reading reading = TryReading(environment.programFolder, entry, bytes, rules);
        const std::tuple fit(reading.length, -reading.misfits, entry.extended == extended, preferred == i,
                             -reading.states);
        if (!best || fit > bestFit) {
            best = i;
            bestFit = fit;
        }
    }
    return best;
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
