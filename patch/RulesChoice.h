#pragma once

#include "patch/Program.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

struct RulesAdvice {
    Rules rules = Rules::Kept;
    std::string reason; // why engine rules, in a few words; empty for the kept rules
};

/// By which rules a patch is best read: by those of engines when the kept rules refuse it, read any of its values
/// otherwise, or would lose a line or comment when it is saved, and when the engine has no others.
RulesAdvice RecommendRules(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults);

/// What the setting "Patches" asks for: a recommendation for each patch, or the same rules for all.
enum class RulesSetting { Recommend, Kept, Engine };
RulesSetting RulesSettingIn(const Settings& settings);

/// By which rules a patch is to be opened with the engine at that place in `environment.engines`, by the setting or as
/// recommended; without `bytes` a new one, for which the last choice counts. `fixed`: there is nothing to choose.
struct RulesProposal : RulesAdvice {
    bool fixed = false;
};
RulesProposal ProposeRules(const Environment& environment, std::size_t engine, const std::string* bytes);

/// What is another value to game engines in `saved`, a patch as the kept rules have written it, than in `patch`: a line
/// for each as `diff` tells them.
std::vector<std::string> ReadOtherwise(std::string_view saved, const PatchData& patch,
                                       const EngineConfiguration& engine);

} // namespace plinket3
