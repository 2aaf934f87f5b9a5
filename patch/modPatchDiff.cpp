#include "patch/modPatchDiff.h"

#include "patch/Cells.h"
#include "patch/EngineNames.h"
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
        Note("Patch notes", "", patchNotes);
        VisitKinds([this](const auto& kind) {
            if (kind.section == nullptr)
                return;
            Records(kind);
            if (kind.kind == RecordKind::State)
                CodePointers();
        });
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
        ForEachDifference(after, before, engine_.dialect.fields,
                          [&](const Field<Record>& field, const FieldValue& value) {
                              const auto text = [&](const FieldValue& number) -> std::string {
                                  if (!number)
                                      return "unset";
                                  return field.unit == FieldUnit::Flags ? BitsText(engine_, field.bits, *number)
                                                                        : std::to_string(*number);
                              };
                              Line(what, field.label, text(ValueOf(before, field)), text(value));
                          });
    }

    /// The kept rules know no notes.
    bool HasOtherNote(const Cell& cell) const {
        return engine_.dialect.EngineRules() && !(before_.notes.empty() && after_.notes.empty()) &&
               ReadCell(before_, cell) != ReadCell(after_, cell);
    }

    void Note(std::string_view what, std::string_view field, const Cell& cell) {
        if (HasOtherNote(cell))
            Line(what, field, Quoted(std::get<std::string>(ReadCell(before_, cell))),
                 Quoted(std::get<std::string>(ReadCell(after_, cell))));
    }

    static std::string Heading(const SectionRule& section, std::int32_t index, std::string_view name) {
        std::string heading(section.word);
        heading += " " + std::to_string(std::int64_t{index} + section.firstWritten);
        if (!name.empty())
            heading += " (" + std::string(name) + ")";
        return heading;
    }

    /// Things, weapons, ammunition and sounds are told with the name that they had.
    template <class Record> void Records(const ListKind<Record>& kind) {
        const NumberedList<Record>&before = kind.In(before_), &after = kind.In(after_);
        const SectionRule& section = engine_.dialect.*kind.section;
        for (const auto& [number, record] : before) {
            const Cell note{kind.kind, number, noteField};
            const Record& other = after[number];
            if (record == other && !HasOtherNote(note))
                continue;
            std::string name;
            if constexpr (isNamed<Record>)
                name = record.name;
            else if constexpr (std::is_same_v<Record, SoundRecord>)
                name = before_.SoundName(number);
            const std::string heading = Heading(section, number, name);
            Note(heading, "Note", note);
            if constexpr (isNamed<Record>)
                if (record.name != other.name)
                    Line(heading, "Name", record.name, other.name);
            Fields(heading, record, other);
        }
    }

    std::string CodePointerText(std::int32_t codePointer) const {
        const std::string* mnemonic = engine_.MnemonicOf(codePointer);
        return mnemonic != nullptr ? *mnemonic : std::to_string(codePointer);
    }

    void CodePointers() {
        for (const auto& [number, state] : before_.states)
            if (state.codePointer != after_.states[number].codePointer)
                Line(Heading(engine_.dialect.states, number, {}), "Code pointer", CodePointerText(state.codePointer),
                     CodePointerText(after_.states[number].codePointer));
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
            const std::string key = engine_.dialect.keyedTexts && i < engine_.strings.size()
                                        ? engine_.strings[i].mnemonic
                                        : std::to_string(i);
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
