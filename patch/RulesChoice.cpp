#include "patch/RulesChoice.h"

#include "core/Text.h"
#include "patch/modPatchDiff.h"
#include "patch/modPatchFiles.h"
#include "patch/modTables.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace plinket3 {

namespace {

/// Counts what a save by the kept rules loses.
class LossCounter : public modPatchFiles::ReadObserver {
public:
    explicit LossCounter(const Dialect& dialect) : dialect_(dialect) {}

    void Line(std::size_t, std::string_view text) override {
        text = TrimLeft(text);
        if (text.starts_with(dialect_.comment) && !IsOwnComment(text))
            ++comments;
    }
    void Ignored(std::size_t offset, std::string_view) override {
        lines += std::exchange(lastIgnored_, offset) != offset ? 1 : 0;
    }

    std::int64_t comments = 0, lines = 0;

private:
    /// What a save writes anew.
    static bool IsOwnComment(std::string_view text) {
        constexpr std::array<std::string_view, 3> own{"# Created with Plinket3", "# General version information",
                                                      "# Info for Plinket3"};
        for (const std::string_view each : own)
            if (text.starts_with(each))
                return true;
        return false;
    }

    const Dialect& dialect_;
    std::size_t lastIgnored_ = static_cast<std::size_t>(-1);
};

std::string Count(std::int64_t count, std::string_view one, std::string_view what) {
    return std::to_string(count) + " " + std::string(one) + (count == 1 ? "" : "s") + " " + std::string(what);
}

} // namespace

RulesAdvice RecommendRules(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults) {
    if (engine.dialect.engineRulesOnly)
        return {Rules::Engine, "the engine has no others"};
    EngineConfiguration kept = engine, asEngines = engine;
    kept.dialect = engine.dialect.By(Rules::Kept);
    asEngines.dialect = engine.dialect.By(Rules::Engine);
    PatchSet keptSet, engineSet;
    LossCounter losses(kept.dialect);
    const modPatchFiles::ReadResult keptRead = modPatchFiles::ParsePatch(bytes, kept, defaults, keptSet, &losses);
    if (!modPatchFiles::ParsePatch(bytes, asEngines, defaults, engineSet).status)
        return {};
    modPatchFiles::Header header;
    if (const Status scanned = modPatchFiles::ScanHeader(bytes, header); !scanned)
        return {Rules::Engine, "the kept rules refuse it: " + scanned.Reason()};
    if (!keptRead.status)
        return {Rules::Engine, "the kept rules refuse it: " + keptRead.status.Reason()};
    const auto otherwise = static_cast<std::int64_t>(modPatchDiff::Differences(keptSet, engineSet, kept).size());
    std::string reason;
    const auto add = [&reason](std::int64_t count, std::string_view one, std::string_view what) {
        if (count > 0)
            reason += (reason.empty() ? "" : ", ") + Count(count, one, what);
    };
    add(losses.comments, "comment", "would be lost");
    add(losses.lines, "line", "would be lost");
    add(otherwise, "value", "read otherwise");
    if (reason.empty())
        return {};
    return {Rules::Engine, reason};
}

RulesSetting RulesSettingIn(const Settings& settings) {
    return static_cast<RulesSetting>(std::clamp(settings.Number("patchRules"), 0, 2));
}

RulesProposal ProposeRules(const Environment& environment, std::size_t engine, const std::string* bytes) {
    EngineConfiguration configuration;
    PatchSet defaults;
    const bool loaded =
        engine < environment.engines.size() &&
        modTables::ReadEngine(environment.programFolder, environment.engines[engine], configuration, defaults);
    if (configuration.dialect.EngineRules())
        return {{Rules::Engine, "patches for this engine are always read so"}, true};
    const RulesSetting setting = RulesSettingIn(environment.settings);
    if (setting != RulesSetting::Recommend)
        return {{setting == RulesSetting::Engine ? Rules::Engine : Rules::Kept, "as the options tell"}, true};
    if (bytes == nullptr)
        return {{environment.settings.Number("lastRules") == 1 ? Rules::Engine : Rules::Kept, {}}, false};
    return {loaded ? RecommendRules(*bytes, configuration, defaults) : RulesAdvice(), false};
}

std::vector<std::string> ReadOtherwise(std::string_view saved, const PatchData& patch,
                                       const EngineConfiguration& engine) {
    EngineConfiguration asEngines = engine;
    asEngines.dialect = engine.dialect.AsEngines();
    PatchSet read;
    if (!modPatchFiles::ParsePatch(saved, asEngines, patch.defaults, read).status)
        return {};
    return modPatchDiff::Differences(patch.current, read, asEngines);
}

} // namespace plinket3
