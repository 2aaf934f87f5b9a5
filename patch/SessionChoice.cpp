#include "patch/SessionChoice.h"

#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "patch/StepNames.h"
#include "patch/modTables.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <tuple>
#include <utility>
#include <vector>

namespace plinket3 {

namespace {

using modPatchFiles::FileNameOf;

template <class Entries, class Fits> std::optional<std::size_t> First(const Entries& entries, Fits fits) {
    const auto found = std::find_if(entries.begin(), entries.end(), fits);
    if (found == entries.end())
        return std::nullopt;
    return static_cast<std::size_t>(std::distance(entries.begin(), found));
}

/// Counts the lines for which an engine has no use, and gathers what the patch sets that not every engine has.
class MisfitCounter : public modPatchFiles::ReadObserver {
public:
    MisfitCounter(const EngineConfiguration& engine, const PatchSet& defaults) : engine_(engine), defaults_(defaults) {}
    std::int64_t Count() const { return count_; }

    void Ignored(std::size_t, std::string_view) override { ++count_; }
    void Section(std::size_t, std::string_view word) override {
        count_ += word.starts_with('[') && !engine_.dialect.IsExtended();
    }
    void FlagNames(std::size_t, BitSet, std::string_view) override { count_ += !engine_.dialect.IsExtended(); }
    void Number(std::size_t, FieldUnit unit, FieldWidth, std::string_view text) override {
        if (engine_.dialect.unlimited)
            return;
        const auto beyond = [&](const auto& records) { return LeadingInt32(text) > records.Highest(); };
        count_ += (unit == FieldUnit::State && beyond(defaults_.states)) ||
                  (unit == FieldUnit::Sound && beyond(defaults_.sounds)) ||
                  (unit == FieldUnit::Sprite && beyond(defaults_.sprites));
    }
    void Selected(std::size_t, RecordKind kind, std::int32_t index) override { NoteRecord(kind, index); }
    void Stored(std::size_t, const Cell& cell, std::string_view value) override {
        NoteRecord(cell.kind, cell.index);
        if (cell.field >= 0) {
            const RowFacts facts = FactsOf(cell.kind, cell.field);
            if (facts.since != FieldLevel::Doom)
                Add(facts.since == FieldLevel::Id24 ? newest_ : later_, facts.label);
        } else if (const TextField* text = TextFieldAt(cell.field)) {
            Add(newest_, text->label);
        } else if (cell.field == codePointerField && engine_.dialect.fields >= FieldLevel::Mbf21) {
            const std::string_view name = value.substr(0, value.find_first_of(" \t"));
            const auto& actions = engine_.actions;
            const auto action = std::ranges::find_if(
                actions, [name](const auto& each) { return EqualIgnoringCase(each.mnemonic, name); });
            if (action != actions.end() && action->value > lastMbfAction)
                Add(later_, action->mnemonic);
        }
    }

    /// What of the patch not every engine has, in a few words: of the newest fields, of records beyond the tables, of
    /// other later fields and actions the first that it has; empty when it has none.
    std::string Later() const {
        if (!newest_.empty())
            return "it sets " + AFew(newest_);
        return !further_.empty() ? "it has " + AFew(further_)
               : later_.empty()  ? std::string()
                                 : "it sets " + AFew(later_);
    }

private:
    static constexpr std::size_t mostNames = 3;
    static constexpr std::int32_t lastMbfAction = 87; // what came later came with the fields of MBF21

    void NoteRecord(RecordKind kind, std::int32_t index) {
        if (engine_.dialect.unlimited && further_.size() <= mostNames &&
            (HasCell(defaults_, {kind, index, existsField}) || (index < 0 && index != noRecord)))
            Add(further_, MadeName(kind, index));
    }
    static void Add(std::vector<std::string>& names, std::string_view name) {
        if (std::ranges::find(names, name) == names.end())
            names.emplace_back(name);
    }
    static std::string AFew(const std::vector<std::string>& names) {
        std::string text;
        for (std::size_t i = 0; i < std::min(names.size(), mostNames); ++i)
            text += (i == 0 ? "" : ", ") + names[i];
        return text + (names.size() > mostNames ? " and others" : "");
    }

    const EngineConfiguration& engine_;
    const PatchSet& defaults_;
    std::int64_t count_ = 0;
    std::vector<std::string> later_, further_, newest_;
};

/// How an engine takes a patch.
struct Reading {
    std::size_t length = 0; // bytes up to the line that cannot be read
    std::int64_t misfits = 0;
    std::int64_t states = 0; // that the engine has
    bool engineRulesOnly = false;
    std::string later; // what the patch sets that not every engine has, in a few words
};

/// An engine that cannot be loaded reads nothing.
Reading TryReading(const std::filesystem::path& programFolder, const modConfig::EngineEntry& entry,
                   std::string_view bytes, Rules rules) {
    EngineConfiguration engine;
    PatchSet defaults, set;
    if (!modTables::ReadEngine(programFolder, entry, engine, defaults))
        return {};
    if (rules == Rules::Engine)
        engine.dialect = engine.dialect.AsEngines();
    MisfitCounter misfits(engine, defaults);
    const modPatchFiles::ReadResult read = modPatchFiles::ParsePatch(bytes, engine, defaults, set, &misfits);
    return {read.status ? bytes.size() + 1 : read.offset, misfits.Count(),
            static_cast<std::int64_t>(defaults.states.size()), engine.dialect.engineRulesOnly, misfits.Later()};
}

/// Of the engines that have what the patch sets of later fields and actions the one that fits best.
EngineAdvice AdviseByLaterFields(const Environment& environment, std::int32_t version, std::string_view bytes,
                                 std::optional<std::size_t> preferred) {
    using Level = std::pair<FieldLevel, bool>; // what an engine can take, and whether of any number
    std::vector<std::pair<Level, std::size_t>> engines;
    for (std::size_t i = 0; i < environment.engines.size(); ++i) {
        const auto& [file, name, number, extended, engine] = environment.engines[i];
        if (extended && engine != nullptr && engine->dialect.engineFields != FieldLevel::Doom)
            engines.emplace_back(Level(engine->dialect.engineFields, engine->dialect.unlimited), i);
    }
    std::ranges::stable_sort(engines, std::greater(), &std::pair<Level, std::size_t>::first);
    EngineAdvice best;
    std::tuple<std::int64_t, bool, Level, bool> bestFit;
    for (const auto& [level, i] : engines) {
        const Reading reading = TryReading(environment.programFolder, environment.engines[i], bytes, Rules::Engine);
        if (reading.later.empty()) // nor is there anything for those of lower levels
            break;
        const std::tuple fit(reading.misfits, environment.engines[i].version != version, level, preferred != i);
        if (!best.index || fit < bestFit) {
            best = {i, reading.later};
            bestFit = fit;
        }
    }
    return best;
}

} // namespace

std::optional<std::size_t> ChooseEngine(const std::vector<modConfig::EngineEntry>& engines, std::string_view named) {
    using Entry = modConfig::EngineEntry;
    if (const auto byFile = First(engines, [&](const Entry& entry) { return entry.file.filename() == PathOf(named); }))
        return byFile;
    return First(engines, [&](const Entry& entry) { return entry.name == named; });
}

std::optional<std::size_t> FirstEngineOfVersion(const std::vector<modConfig::EngineEntry>& engines,
                                                std::int32_t version) {
    return First(engines, [&](const modConfig::EngineEntry& entry) { return entry.version == version; });
}

EngineAdvice AdviseEngine(const Environment& environment, const modPatchFiles::Header& header, std::string_view bytes,
                          const std::filesystem::path& file, std::optional<std::size_t> preferred, RulesSetting rules) {
    if (const auto named = ChooseEngine(environment.engines, modPatchFiles::HeaderValue(header, "engineconfig")))
        return {named, "the patch names it"};
    const std::int32_t version = LeadingInt32(modPatchFiles::HeaderValue(header, "engineversion"));
    const Rules by = rules == RulesSetting::Engine ? Rules::Engine : Rules::Kept;
    const bool extended = EqualIgnoringCase(PathText(file.extension()), ".bex");
    const bool anyVersion = by == Rules::Engine && !FirstEngineOfVersion(environment.engines, version);
    EngineAdvice best;
    // How well the best one fits; what comes first counts most, and more is better.
    std::tuple<bool, std::size_t, std::int64_t, bool, bool, std::int64_t> bestFit;
    for (std::size_t i = 0; i < environment.engines.size(); ++i) {
        const modConfig::EngineEntry& entry = environment.engines[i];
        if (entry.version != version && !anyVersion)
            continue;
        const Reading reading = TryReading(environment.programFolder, entry, bytes, by);
        const std::tuple fit(!reading.engineRulesOnly, reading.length, -reading.misfits, entry.extended == extended,
                             preferred == i, -reading.states);
        if (!best.index || fit > bestFit) {
            best = {i, "it has a use for the most lines of the patch"};
            bestFit = fit;
        }
    }
    if (!anyVersion && std::ranges::count(environment.engines, version, &modConfig::EngineEntry::version) == 1)
        best.reason = "it is the only one of Doom version " + std::to_string(version);
    const bool fitsWhole = best.index && std::get<1>(bestFit) > bytes.size() && std::get<2>(bestFit) == 0;
    if (rules != RulesSetting::Kept && !fitsWhole)
        if (EngineAdvice later = AdviseByLaterFields(environment, version, bytes, preferred); later.index)
            return later;
    return best;
}

EngineAdvice RecommendEngine(const Environment& environment, const modPatchFiles::Header& header,
                             std::string_view bytes, const std::filesystem::path& file,
                             std::optional<std::size_t> preferred, RulesSetting rules) {
    EngineAdvice advice = AdviseEngine(environment, header, bytes, file, preferred, rules);
    if (advice.index || rules != RulesSetting::Recommend)
        return advice;
    return AdviseEngine(environment, header, bytes, file, preferred, RulesSetting::Engine);
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
