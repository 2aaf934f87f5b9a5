#pragma once

#include "patch/Program.h"

#include <string>
#include <string_view>

namespace plinket3 {

struct RulesAdvice {
    Rules rules = Rules::Kept;
    std::string reason; // why engine rules, in a few words; empty for the kept rules
};

/// By which rules a patch is best read: by those of engines when the kept rules refuse it, read any of its values
/// otherwise, or would lose a line or comment when it is saved, and when the engine has no others.
RulesAdvice RecommendRules(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults);

} // namespace plinket3
