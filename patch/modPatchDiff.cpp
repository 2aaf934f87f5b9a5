#include "patch/modPatchDiff.h"

#include "patch/Cells.h"
#include "patch/EngineNames.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace plinket3::modPatchDiff {

namespace {

class Comparison {
public:
    Comparison(const PatchSet& before, const PatchSet& after, const EngineConfiguration& engine)
        : before_(before), after_(after), engine_(engine) {}

    std::vector<std::string> Lines() {
        Note("Patch notes", "", patchNotes);
        for (const Cell& cell : OtherTexts(before_, after_))
            if (TextFieldAt(cell.field)->since <= engine_.dialect.fields)
                otherTexts_[{cell.kind, cell.index}].push_back(cell);
        VisitKinds([this](const auto& kind) {
            if (kind.section == nullptr)
                return;
            Records(kind);
            if (kind.kind == RecordKind::State)
                CodePointers();
        });
        Cheats();
        Fields("Misc", before_.misc, after_.misc);
        Helper();
        Strings();
        Pars();
        LumpNames();
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

    static std::string NameOrUnset(const CellValue& value) {
        const std::string& name = std::get<std::string>(value);
        return name.empty() ? "unset" : name;
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
        for (const std::int32_t number : Together(before, after)) {
            const Cell note{kind.kind, number, noteField};
            const RecordOrNew record(before, number), other(after, number);
            const bool alike = before.Has(number) == after.Has(number);
            const auto texts = otherTexts_.find({kind.kind, number});
            if (alike && *record == *other && !HasOtherNote(note) && texts == otherTexts_.end())
                continue;
            std::string name;
            if constexpr (isNamed<Record>)
                name = before.Has(number) ? record->name : other->name;
            else if constexpr (std::is_same_v<Record, SoundRecord>)
                name = (before.Has(number) ? before_ : after_).SoundName(number);
            const std::string heading = Heading(section, number, name);
            if (!alike) // the heading tells the name
                Line(heading, "", before.Has(number) ? "made" : "none", after.Has(number) ? "made" : "none");
            Note(heading, "Note", note);
            if constexpr (isNamed<Record>)
                if (alike && record->name != other->name)
                    Line(heading, "Name", record->name, other->name);
            Fields(heading, *record, *other);
            if (texts != otherTexts_.end())
                for (const Cell& cell : texts->second)
                    Line(heading, TextFieldAt(cell.field)->label, NameOrUnset(ReadCell(before_, cell)),
                         NameOrUnset(ReadCell(after_, cell)));
        }
    }

    /// The numbers that at least one of two lists has, in order.
    template <class Record>
    static std::vector<std::int32_t> Together(const NumberedList<Record>& before, const NumberedList<Record>& after) {
        std::vector<std::int32_t> numbers = before.Numbers();
        const auto had = static_cast<std::ptrdiff_t>(numbers.size());
        for (const auto& [number, record] : after)
            if (!before.Has(number))
                numbers.push_back(number);
        std::inplace_merge(numbers.begin(), numbers.begin() + had, numbers.end(),
                           [](std::int32_t left, std::int32_t right) {
                               return static_cast<std::uint32_t>(left) < static_cast<std::uint32_t>(right);
                           });
        return numbers;
    }

    void Helper() {
        const auto text = [](const PatchSet& set) {
            return set.misc.helper == 0 ? std::string("unset") : std::to_string(set.misc.helper);
        };
        if (before_.misc.helper != after_.misc.helper)
            Line("Helper", "Type", text(before_), text(after_));
    }

    /// Of sprites, sounds and music.
    void LumpNames() {
        if (!CanRenameLumps(engine_.dialect))
            return;
        const auto tell = [this](RecordKind kind, std::string_view word, const std::vector<std::int32_t>& numbers) {
            for (const std::int32_t number : numbers) {
                const Cell cell{kind, number, lumpNameField};
                const std::string before = std::get<std::string>(ReadCell(before_, cell)),
                                  after = std::get<std::string>(ReadCell(after_, cell));
                if (before != after)
                    Line(std::string(word) + " " + std::to_string(number), "Name", Quoted(before), Quoted(after));
            }
        };
        tell(RecordKind::Sprite, "Sprite", Together(before_.sprites, after_.sprites));
        tell(RecordKind::Sound, engine_.dialect.sounds.word, Together(before_.sounds, after_.sounds));
        tell(RecordKind::Music, "Music", Together(before_.music, after_.music));
    }

    std::string CodePointerText(std::int32_t codePointer) const {
        const std::string* mnemonic = engine_.MnemonicOf(codePointer);
        return mnemonic != nullptr ? *mnemonic : std::to_string(codePointer);
    }

    void CodePointers() {
        for (const std::int32_t number : Together(before_.states, after_.states)) {
            const std::int32_t before = RecordOrNew(before_.states, number)->codePointer,
                               after = RecordOrNew(after_.states, number)->codePointer;
            if (before != after)
                Line(Heading(engine_.dialect.states, number, {}), "Code pointer", CodePointerText(before),
                     CodePointerText(after));
        }
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
    std::map<std::pair<RecordKind, std::int32_t>, std::vector<Cell>> otherTexts_; // by record
    std::vector<std::string> lines_;
};

} // namespace

std::vector<std::string> Differences(const PatchSet& before, const PatchSet& after, const EngineConfiguration& engine) {
    return Comparison(before, after, engine).Lines();
}

} // namespace plinket3::modPatchDiff
