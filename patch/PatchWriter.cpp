#include "core/PathList.h"
#include "core/Text.h"
#include "core/Version.h"
#include "patch/EngineNames.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/PatchDocument.h"
#include "patch/PatchNotes.h"
#include "patch/PointerTargets.h"
#include "patch/SectionWords.h"
#include "patch/StepNames.h"
#include "patch/modPatchFiles.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <utility>

namespace plinket3::modPatchFiles {

namespace {

constexpr std::string_view lineEnd = "\r\n";

/// Builds the text of a patch in one buffer. A section's header goes in first and is taken out again when no line
/// follows it.
class PatchWriter {
public:
    /// `chosen`: whole records in place of what differs.
    PatchWriter(const PatchData& patch, const EngineConfiguration& engine, const std::set<RecordId>* chosen = nullptr)
        : patch_(patch), engine_(engine), dialect_(engine.dialect), current_(patch.current), defaults_(patch.defaults),
          chosen_(chosen) {}

    std::string Format() {
        out_.reserve(LikelySize());
        Header();
        VisitKinds([this](const auto& kind) {
            if (kind.section == nullptr)
                return;
            EndKind(Records(kind));
            if (kind.kind == RecordKind::Sound)
                EndKind(dialect_.namedCodePointers ? CodePointers() : Pointers());
        });
        if (chosen_ == nullptr) {
            Block(dialect_.cheats, " 0", [this] { Cheats(); });
            Block(dialect_.misc, " 0", [this] { Fields(current_.misc, defaults_.misc); });
            EndKind(Pars());
        }
        if (dialect_.keyedTexts)
            Block(dialect_.strings, "", [this] { Strings(); });
        else
            Texts();
        if (dialect_.unlimited) {
            Block(spriteNames, "", [this] { LumpNames(RecordKind::Sprite, current_.sprites, defaults_.sprites); });
            Block(soundNames, "", [this] { LumpNames(RecordKind::Sound, current_.sounds, defaults_.sounds); });
            Block(musicNames, "", [this] { LumpNames(RecordKind::Music, current_.music, defaults_.music); });
        } else if (CanRenameLumps(dialect_)) {
            for (const RecordKind kind : lumpNamedKinds)
                LumpTexts(kind);
        }
        if (chosen_ == nullptr && current_.misc.helper != defaults_.misc.helper)
            Block(helperSection, "", [this] { Line(helperKey, " = ", current_.misc.helper); });
        return std::move(out_);
    }

private:
    bool IsChosen(RecordKind kind, std::int32_t number) const {
        return chosen_ == nullptr || chosen_->contains({kind, number});
    }

    /// Room for all fields of things and states, which a large patch is made of, so that its text is not moved while it
    /// grows. Room that stays unused is address space only.
    std::size_t LikelySize() const {
        constexpr std::size_t lineSize = 24;
        return lineSize * (current_.things.size() * (fieldsOf<ThingRecord>.size() + 2) +
                           current_.states.size() * (fieldsOf<StateRecord>.size() + 1));
    }

    void Put(std::string_view text) { out_ += text; }
    void Put(std::int32_t number) {
        char digits[12];
        const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
        out_.append(digits, static_cast<std::size_t>(end - digits));
    }
    template <class... Parts> void Line(Parts... parts) {
        (Put(parts), ...);
        Put(lineEnd);
    }

    void Header() {
        Line(dialect_.firstLine);
        if (chosen_ != nullptr)
            return ChosenHeader();
        Note(patchNotes);
        if (dialect_.EngineRules())
            return EngineHeader();
        Line("# Created with ", programVersion);
        Line();
        Line("# General version information");
        Line("Doom version = ", patch_.doomVersion);
        Line("Patch format = ", patch_.patchFormat);
        Line();
        Line("# Info for Plinket3");
        Line("Engine config = ", patch_.engineConfig);
        if (!patch_.dataWadPaths.empty())
            Line("Data WAD = ", JoinPaths(patch_.dataWadPaths));
        Line("IWAD = ", patch_.iwadPath);
        Line();
        Line();
    }

    /// Engine, IWAD and data WAD are remembered elsewhere; comments are only those that Chocolate Doom looks for.
    void EngineHeader() {
        const auto longer = [](const auto& list, const auto& standard, auto room) {
            for (std::size_t i = 0; i < list.size(); ++i)
                if (list[i].text != standard[i].text && std::cmp_greater(list[i].text.size(), room(standard[i])))
                    return true;
            return false;
        };
        if (!dialect_.keyedTexts &&
            longer(current_.strings.Dense(), defaults_.strings.Dense(), [](const StringRecord& text) {
                return modPatchText::TextSpace(static_cast<std::int32_t>(text.text.size()));
            }))
            Line("# *allow-long-strings*");
        if (dialect_.limitedCheats && longer(current_.cheats.Dense(), defaults_.cheats.Dense(),
                                             [](const CheatRecord& cheat) { return cheat.text.size(); }))
            Line("# *allow-long-cheats*");
        Line();
        Line("Doom version = ", patch_.doomVersion);
        Line("Patch format = ", patch_.patchFormat);
        Line();
    }

    /// With the engine that the records come from.
    void ChosenHeader() {
        Line();
        Line("Doom version = ", static_cast<std::int32_t>(engine_.version));
        Line("Patch format = ", dialect_.patchFormat);
        Line("Engine config = ", std::string_view(engine_.fileName));
        Line();
    }

    /// What a record is that has no name of its own, below its header, where comments are no notes.
    template <class Record> void Comment([[maybe_unused]] std::int32_t number, [[maybe_unused]] const Record& record) {
        if constexpr (std::is_same_v<Record, StateRecord>) {
            const std::string* action = record.codePointer == 0 ? nullptr : engine_.MnemonicOf(record.codePointer);
            Line("# ", std::string_view(PictureName(current_, record)), action == nullptr ? "" : ", ",
                 action == nullptr ? std::string_view() : std::string_view(*action));
        } else if constexpr (std::is_same_v<Record, SoundRecord>) {
            Line("# ", std::string_view(current_.SoundName(number)));
        }
    }

    /// A note is written above the header of its record; the kept rules know none.
    bool Note(const Cell& cell) {
        if (!dialect_.EngineRules() || current_.notes.empty())
            return false;
        const std::vector<std::string> lines = CommentLines(std::get<std::string>(ReadCell(current_, cell)));
        for (const std::string& line : lines)
            Line(std::string_view(line));
        return !lines.empty();
    }

    std::set<std::int32_t> OtherTextsOf(RecordKind kind) const {
        std::set<std::int32_t> numbers;
        for (const Cell& cell : OtherTexts(defaults_, current_))
            if (cell.kind == kind)
                numbers.insert(cell.index);
        return numbers;
    }

    void EndKind(bool anySection) {
        if (anySection) {
            Line();
            Line();
        }
    }

    template <class Record> void Fields(const Record& current, const Record& standard) {
        const auto write = [this](const Field<Record>& field, FieldValue value) {
            if (!value) // no line can take a number away
                return;
            if (field.unit == FieldUnit::Flags)
                Line(field.label, " = ", std::string_view(BitsText(engine_, field.bits, *value)));
            else
                Line(field.label, " = ", *value);
        };
        if (chosen_ == nullptr)
            return ForEachDifference(current, standard, dialect_.fields, write);
        for (const Field<Record>& field : fieldsOf<Record>)
            if (field.inPatch && field.since <= dialect_.fields)
                write(field, ValueOf(current, field));
    }

    void TextFields(RecordKind kind, std::int32_t number) {
        for (std::size_t i = 0; i < textFields.size(); ++i) {
            const int field = static_cast<int>(i);
            const std::string_view text = current_.TextOf(kind, number, field);
            if (textFields[i].kind == kind && textFields[i].since <= dialect_.fields && !text.empty() &&
                (chosen_ != nullptr || text != defaults_.TextOf(kind, number, field)))
                Line(textFields[i].label, " = ", text);
        }
    }

    template <class Record> bool Records(const ListKind<Record>& kind) {
        const SectionRule& section = dialect_.*kind.section;
        const std::set<std::int32_t> otherTexts = OtherTextsOf(kind.kind);
        bool any = false;
        for (const auto& [number, record] : kind.In(current_)) {
            const RecordOrNew own(kind.In(defaults_), number);
            const Record& standard = *own;
            const bool made = !kind.In(defaults_).Has(number);
            const std::size_t start = out_.size();
            if (!IsChosen(kind.kind, number))
                continue;
            const bool noted = Note({kind.kind, number, noteField}), whole = chosen_ != nullptr;
            if (record == standard && !noted && !made && !whole && !otherTexts.contains(number))
                continue;
            Put(section.word);
            Put(" ");
            Put(number + section.firstWritten);
            bool renamed = false;
            if constexpr (isNamed<Record>) {
                renamed = record.name != standard.name;
                if (renamed || !made) {
                    Put(" (");
                    Put(record.name);
                    Put(")");
                }
            }
            Line();
            if (whole)
                Comment(number, record);
            const std::size_t headerEnd = out_.size();
            Fields(record, standard);
            if (whole || otherTexts.contains(number))
                TextFields(kind.kind, number);
            if (!renamed && !noted && !made && !whole && out_.size() == headerEnd) { // only what no patch has differs
                out_.resize(start);
                continue;
            }
            Line();
            any = true;
        }
        return any;
    }

    /// A section of which there is one: two empty lines, the header, the lines that `write` makes, an empty line.
    template <class Write> void Block(std::string_view word, std::string_view number, Write write) {
        const std::size_t start = out_.size();
        Line();
        Line();
        Line(word, number);
        const std::size_t headerEnd = out_.size();
        write();
        if (out_.size() == headerEnd)
            out_.resize(start);
        else
            Line();
    }

    bool CodePointers() {
        const std::size_t start = out_.size();
        Line(dialect_.codePointers);
        const std::size_t headerEnd = out_.size();
        for (const auto& [state, record] : current_.states) {
            if (chosen_ == nullptr ? record.codePointer == RecordOrNew(defaults_.states, state)->codePointer
                                   : !IsChosen(RecordKind::State, state))
                continue;
            const std::string* mnemonic = engine_.MnemonicOf(record.codePointer);
            Line(dialect_.states.word, " ", state, " = ",
                 mnemonic != nullptr ? std::string_view(*mnemonic) : std::string_view());
        }
        if (out_.size() == headerEnd) {
            out_.resize(start);
            return false;
        }
        Line();
        return true;
    }

    bool Pointers() {
        const std::vector<StateRecord>&current = current_.states.Dense(), &defaults = defaults_.states.Dense();
        if (chosen_ == nullptr &&
            std::ranges::equal(current, defaults, {}, &StateRecord::codePointer, &StateRecord::codePointer))
            return false; // most patches need no search for sources
        const PointerTargets targets(current_.states, engine_.codePointerStates);
        bool any = false;
        for (std::size_t i = 0; i < current.size(); ++i) {
            const std::int32_t codePointer = current[i].codePointer;
            const auto state = static_cast<std::int32_t>(i);
            if (chosen_ == nullptr ? codePointer == defaults[i].codePointer
                                   : !IsChosen(RecordKind::State, state) || !targets.CanExpress(state, codePointer))
                continue;
            const std::int32_t source = targets.StateWithAction(codePointer);
            // Kept: the last state is never written as a source, and the number of states stands for "none found".
            // docs/kept-behaviour.md
            if (!dialect_.EngineRules() && source == static_cast<std::int32_t>(current.size()) - 1)
                continue;
            Line(dialect_.pointers.word, " ", targets.PointerOf(state), " (", dialect_.states.word, " ", state, ")");
            Line("Codep Frame = ", source);
            Line();
            any = true;
        }
        return any;
    }

    void Cheats() {
        const std::size_t count = std::min(current_.cheats.size(), cheatLabels.size());
        for (std::size_t i = 0; i < count; ++i) {
            const CheatRecord& cheat = current_.cheats[i];
            if (cheat.text != defaults_.cheats[i].text)
                Line(cheatLabels[i], " = ",
                     dialect_.EngineRules() ? cheat.text : modPatchText::PadCheat(cheat.text, cheat.maximumLength));
        }
    }

    bool Pars() {
        if (current_.pars.empty())
            return false;
        Line(dialect_.pars);
        for (const ParRecord& par : current_.pars) {
            Put("par ");
            if (par.episode != 0) {
                Put(par.episode);
                Put(" ");
            }
            Line(par.map, " ", par.seconds);
        }
        Line();
        return true;
    }

    void EngineStrings() {
        for (std::size_t i = 0; i < std::min(current_.strings.size(), engine_.strings.size()); ++i)
            if (chosen_ == nullptr ? current_.strings[i].text != defaults_.strings[i].text
                                   : IsChosen(RecordKind::String, static_cast<std::int32_t>(i)))
                if (const auto escaped = EngineEscape(current_.strings[i].text, lineEnd))
                    Line(engine_.strings[i].mnemonic, " = ", std::string_view(*escaped));
    }

    void Strings() {
        if (dialect_.EngineRules())
            return EngineStrings();
        const std::size_t count = std::min(current_.strings.size(), engine_.strings.size());
        bool takesNextLine = false;
        for (std::size_t i = 0; i < count; ++i) {
            // Kept: the text as it is against the default with its escapes, so that every string whose default holds
            // an escape is written. docs/kept-behaviour.md
            if (current_.strings[i].text == engine_.strings[i].text)
                continue;
            // A line that ends in a backslash is read together with the next one: an empty one adds nothing. The last
            // string has the one that ends the section.
            if (takesNextLine)
                Line();
            const std::string escaped = modPatchText::EscapeText(current_.strings[i].text);
            takesNextLine = Trim(escaped).ends_with('\\');
            Line(engine_.strings[i].mnemonic, " = ", std::string_view(escaped));
        }
    }

    template <class Record>
    void LumpNames(RecordKind kind, const NumberedList<Record>& current, const NumberedList<Record>& defaults) {
        for (const auto& [number, record] : current)
            if (record.name != RecordOrNew(defaults, number)->name && IsChosen(kind, number)) {
                std::string name(record.name.begin(), record.name.end());
                std::replace(name.begin(), name.end(), '\0', ' ');
                Line(std::string_view(LumpNameKey(defaults, number)), " = ", Trim(std::string_view(name)));
            }
    }

    /// The same for engines that know sprites, sounds and music by their own names alone.
    void LumpTexts(RecordKind kind) {
        for (const std::int32_t number : RecordNumbers(current_, kind)) {
            const Cell cell{kind, number, lumpNameField};
            const auto name = std::get<std::string>(ReadCell(current_, cell));
            const std::string old = NameInTexts(defaults_, kind, number);
            if (old.empty() || name == std::get<std::string>(ReadCell(defaults_, cell)) || !IsChosen(kind, number))
                continue;
            Line(dialect_.texts, " ", static_cast<std::int32_t>(old.size()), " ",
                 static_cast<std::int32_t>(name.size()));
            Line(std::string_view(old), std::string_view(name));
            Line();
        }
    }

    void Texts() {
        for (std::size_t i = 0; i < current_.strings.size(); ++i) {
            const StringRecord& text = current_.strings[i];
            const StringRecord& standard = defaults_.strings[i];
            if (text.text == standard.text || !IsChosen(RecordKind::String, static_cast<std::int32_t>(i)))
                continue;
            Line(dialect_.texts, " ", standard.length, " ", text.length);
            Line(std::string_view(standard.text), std::string_view(text.text));
            Line();
        }
    }

    const PatchData& patch_;
    const EngineConfiguration& engine_;
    const Dialect& dialect_;
    const PatchSet& current_;
    const PatchSet& defaults_;
    const std::set<RecordId>* chosen_; // null for all that differs
    std::string out_;
};

} // namespace

std::string FormatPatch(const PatchData& patch, const EngineConfiguration& engine) {
    return PatchWriter(patch, engine).Format();
}

std::string FormatRecords(const PatchData& patch, const EngineConfiguration& engine,
                          const std::set<RecordId>& records) {
    EngineConfiguration byEngineRules = engine;
    byEngineRules.dialect = engine.dialect.AsEngines();
    return PatchWriter(patch, byEngineRules, &records).Format();
}

Status FormatForSaving(const PatchData& patch, const EngineConfiguration& engine, BytePieces& bytes) {
    if (engine.dialect.EngineRules() && patch.document) {
        const std::optional<std::string> updated = UpdateHeader(*patch.document, patch);
        if (!updated)
            return MergedBytes(*patch.document, patch.current, patch.defaults, engine, bytes);
        PatchDocument document;
        PatchSet set;                                                            // what it says is what it said before
        static_cast<void>(document.Read(*updated, engine, patch.defaults, set)); // as it was read before
        BytePieces merged;
        Status status = MergedBytes(document, patch.current, patch.defaults, engine, merged);
        bytes = BytePieces(merged.Joined()); // the document ends here
        return status;
    }
    bytes = BytePieces(FormatPatch(patch, engine));
    return {};
}

Status SavePatch(Program& program, const PatchPlace& place, bool createBackup, MissingLump missing) {
    BytePieces bytes;
    if (Status merged = FormatForSaving(program.patch, program.engine, bytes); !merged)
        return merged;
    Status status = WritePlace(place, bytes, createBackup, missing);
    if (status)
        program.log.Add("Saved " + place.Name());
    return status;
}

} // namespace plinket3::modPatchFiles
