#include "patch/modPatchDiff.h"

#include "patch/modPatchText.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace plinket3::modPatchDiff {

namespace {

class Comparison {
public:
    Comparison(const PatchSet& before, const PatchSet& after, const EngineConfiguration& engine)
        : before_(before), after_(after), engine_(engine) {}

    std::vector<std::string> Lines() {
        Records(thingSection, before_.things, after_.things, &before_.thingNames, &after_.thingNames);
        Records(frameSection, before_.states, after_.states);
        CodePointers();
        Sounds();
        Records(weaponSection, before_.weapons, after_.weapons, &before_.weaponNames, &after_.weaponNames);
        Records(ammoSection, before_.ammo, after_.ammo, &before_.ammoNames, &after_.ammoNames);
        Cheats();
        Fields("Misc", before_.misc, after_.misc);
        Strings();
        Pars();
        return std::move(lines_);
    }

private:
    void Line(std::string_view what, std::string_view field, std::string_view before, std::string_view after) {
        std::string line(what);
        line += ": ";
        line += field;
        if (!field.empty())
            line += ' ';
        line += before;
        line += " -> ";
        line += after;
        lines_.push_back(std::move(line));
    }

    static std::string Quoted(std::string_view text) { return "\"" + modPatchText::EscapeText(text) + "\""; }

    template <class Record> void Fields(std::string_view what, const Record& before, const Record& after) {
        ForEachDifference(after, before, [&](const Field<Record>& field, std::int32_t value) {
            const auto text = [&](std::int32_t number) {
                return field.unit == FieldUnit::Flags
                           ? modPatchText::FormatBits(number, engine_.extended, engine_.flagNames)
                           : std::to_string(number);
            };
            Line(what, field.label, text(before.*field.member), text(value));
        });
    }

    static std::string Heading(const SectionRule& section, std::size_t index, std::string_view name) {
        std::string heading(section.word);
        heading += " " + std::to_string(static_cast<std::int64_t>(index) + section.firstWritten);
        if (!name.empty())
            heading += " (" + std::string(name) + ")";
        return heading;
    }

    template <class Record> void Records(const SectionRule& section, const std::vector<Record>& before,
                                         const std::vector<Record>& after,
                                         const std::vector<std::string>* namesBefore = nullptr,
                                         const std::vector<std::string>* namesAfter = nullptr) {
        for (std::size_t i = 0; i < before.size(); ++i) {
            const bool renamed = namesBefore != nullptr && (*namesBefore)[i] != (*namesAfter)[i];
            if (!renamed && before[i] == after[i])
                continue;
            const std::string heading =
                Heading(section, i, namesBefore != nullptr ? std::string_view((*namesBefore)[i]) : std::string_view());
            if (renamed)
                Line(heading, "Name", (*namesBefore)[i], (*namesAfter)[i]);
            Fields(heading, before[i], after[i]);
        }
    }

    void Sounds() {
        for (std::size_t i = 0; i < before_.sounds.size(); ++i)
            if (before_.sounds[i] != after_.sounds[i])
                Fields(Heading(soundSection, i, before_.SoundName(static_cast<std::int32_t>(i))), before_.sounds[i],
                       after_.sounds[i]);
    }

    std::string CodePointerText(std::int32_t codePointer) const {
        const std::string* mnemonic = engine_.MnemonicOf(codePointer);
        return mnemonic != nullptr ? *mnemonic : std::to_string(codePointer);
    }

    void CodePointers() {
        for (std::size_t i = 0; i < before_.codePointers.size(); ++i)
            if (before_.codePointers[i] != after_.codePointers[i])
                Line(Heading(frameSection, i, {}), "Code pointer", CodePointerText(before_.codePointers[i]),
                     CodePointerText(after_.codePointers[i]));
    }

    void Cheats() {
        const std::size_t count = std::min(before_.cheats.size(), cheatLabels.size());
        for (std::size_t i = 0; i < count; ++i)
            if (before_.cheats[i].text != after_.cheats[i].text)
                Line("Cheat", cheatLabels[i], Quoted(before_.cheats[i].text), Quoted(after_.cheats[i].text));
    }

    void Strings() {
        for (std::size_t i = 0; i < before_.strings.size(); ++i) {
            if (before_.strings[i].text == after_.strings[i].text)
                continue;
            const std::string key =
                engine_.extended && i < engine_.strings.size() ? engine_.strings[i].mnemonic : std::to_string(i);
            Line("String " + key, "", Quoted(before_.strings[i].text), Quoted(after_.strings[i].text));
        }
    }

    void Pars() {
        // An engine takes the last entry of a level.
        std::map<std::pair<std::int32_t, std::int32_t>, std::pair<std::string, std::string>> levels;
        for (const ParRecord& par : before_.pars)
            levels[{par.episode, par.map}].first = std::to_string(par.seconds);
        for (const ParRecord& par : after_.pars)
            levels[{par.episode, par.map}].second = std::to_string(par.seconds);
        for (const auto& [level, seconds] : levels)
            if (seconds.first != seconds.second)
                Line("Par " + modPatchText::LevelName(level.first, level.second), "",
                     seconds.first.empty() ? "none" : seconds.first, seconds.second.empty() ? "none" : seconds.second);
    }

    const PatchSet& before_;
    const PatchSet& after_;
    const EngineConfiguration& engine_;
    std::vector<std::string> lines_;
};

} // namespace

std::vector<std::string> Differences(const PatchSet& before, const PatchSet& after, const EngineConfiguration& engine) {
    return Comparison(before, after, engine).Lines();
}

} // namespace plinket3::modPatchDiff
