#pragma once

#include "core/modConfig.h"

#include <algorithm>
#include <string>

namespace plinket3 {

/// How the patch is run, as it was chosen last.
struct RunChoice {
    static constexpr int easiest = 1, hardest = 5;

    std::string port;  // its name; empty before the first choice
    std::string level; // MAP01 or E1M1; empty for the game's first one
    int skill = 3;
    bool inTestMap = true; // where there is something to place in it
    std::string arguments; // behind those of the port

    static RunChoice In(const Settings& settings) {
        RunChoice choice{settings.Text("runPort"), settings.Text("runLevel"), settings.Number("runSkill"),
                         settings.Number("runWithoutTestMap") == 0, settings.Text("runArguments")};
        if (std::clamp(choice.skill, easiest, hardest) != choice.skill)
            choice.skill = RunChoice().skill;
        return choice;
    }
    void Remember(Settings& settings) const {
        settings.Text("runPort", port);
        settings.Text("runLevel", level);
        settings.Number("runSkill", skill);
        settings.Number("runWithoutTestMap", inTestMap ? 0 : 1);
        settings.Text("runArguments", arguments);
    }
};

} // namespace plinket3
