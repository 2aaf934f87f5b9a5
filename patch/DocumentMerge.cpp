#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/CellIndex.h"
#include "patch/EngineNames.h"
#include "patch/LocalCheck.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/PatchDocument.h"
#include "patch/PatchLines.h"
#include "patch/PatchNotes.h"
#include "patch/PointerTargets.h"
#include "patch/StepNames.h"
#include "patch/modPatchDiff.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace plinket3 {

namespace {

/// A cell that has another value than the document says, and the lines that have set it, in order.
struct Changed {
    Cell cell;
    std::vector<std::size_t> lines;
};

/// The lines from a header up to the next one.
struct SectionRange {
    std::size_t header = 0, end = 0;
    Section section = Section::None;
};

/// A place in the document's bytes where something else is to stand.
struct Replacement {
    std::size_t offset = 0, length = 0;
    std::string text;
};

/// The order in which sections stand in a patch.
int OrderOf(Section section) {
    constexpr std::array order{Section::Thing,   Section::Frame,   Section::Sound,  Section::Pointer, Section::CodePtr,
                               Section::Weapon,  Section::Ammo,    Section::Cheat,  Section::Misc,    Section::Pars,
                               Section::Strings, Section::Sprites, Section::Sounds, Section::Music,   Section::Helper};
    return static_cast<int>(std::find(order.begin(), order.end(), section) - order.begin());
}

/// Where a value of the kind stands that no line holds yet.
Section SectionOf(const Cell& cell, const Dialect& dialect) {
    switch (cell.kind) {
    case RecordKind::Thing:
        return Section::Thing;
    case RecordKind::State:
        if (cell.field == codePointerField)
            return dialect.namedCodePointers ? Section::CodePtr : Section::Pointer;
        return Section::Frame;
    case RecordKind::Sound:
        return cell.field != lumpNameField ? Section::Sound : dialect.unlimited ? Section::Sounds : Section::Text;
    case RecordKind::Sprite:
        return dialect.unlimited ? Section::Sprites : Section::Text;
    case RecordKind::Music:
        return dialect.unlimited ? Section::Music : Section::Text;
    case RecordKind::Weapon:
        return Section::Weapon;
    case RecordKind::Ammo:
        return Section::Ammo;
    case RecordKind::Cheat:
        return Section::Cheat;
    case RecordKind::Misc:
        return cell.field == helperField ? Section::Helper : Section::Misc;
    case RecordKind::String:
        return dialect.keyedTexts ? Section::Strings : Section::Text;
    default:
        return Section::Pars;
    }
}

/// A section that holds one record.
bool IsOfOneRecord(Section section) { return KindOf(section) != RecordKind::Par || section == Section::Pointer; }

class Merge {
public:
    Merge(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
          const EngineConfiguration& engine, bool keepsPlaces)
        : document_(document), lines_(document.Lines()), current_(current), said_(document.Said()), defaults_(defaults),
          engine_(engine), dialect_(engine.dialect), end_(document.LineEnd()), keepsPlaces_(keepsPlaces) {}

    Status Run(BytePieces& merged) {
        FindChanges();
        if (changes_.empty() && made_.empty() && gone_.empty() && current_.pars == said_.pars &&
            current_.notes == said_.notes) {
            merged.Borrow(document_.Bytes());
            return {};
        }
        FindLines();
        for (const Changed& change : changes_)
            Apply(change);
        for (const Cell& cell : made_)
            MakeHeader(cell);
        MergePars();
        MergePatchNotes();
        const std::vector<Cell> notes = ChangedNotes();
        for (const Cell& cell : notes)
            if (SectionFor(cell.kind, cell.index) == nullptr)
                additions_[PlaceOf(cell)];        // whose header has it above
        for (const bool existing : {true, false}) // a section's own lines stand before what is put behind it
            for (const auto& [place, text] : additions_)
                if ((place.existing < Sections().size()) == existing)
                    Add(place, text);
        for (const Cell& cell : notes) // behind a new section that comes before the one that they stand above
            MergeNote(cell);
        RemoveGone();
        if (!keepsPlaces_)
            RemoveEmptySections();
        if (status_)
            Replaced(merged);
        return status_;
    }

    /// Whether what `Run` has made reads back, as far as that can be told without reading everything.
    bool ReadsBack(const BytePieces& merged) const {
        const auto isName = [](const Changed& change) {
            return change.cell.field == nameField || change.cell.field == lumpNameField;
        };
        if (replacements_.empty())
            return true;
        if (removedHeader_ || !made_.empty() || !gone_.empty() || current_.pars != said_.pars ||
            current_.notes != said_.notes || std::ranges::any_of(changes_, isName))
            return false;
        MergedPart part{replacements_.front().offset, 0, merged, {}};
        for (const Replacement& each : replacements_)
            part.end = std::max(part.end, each.offset + each.length);
        for (const Changed& change : changes_)
            part.changed.push_back(change.cell);
        return ReadsBackLocally(document_, current_, defaults_, engine_, part);
    }

private:
    // What has changed

    void FindChanges() {
        VisitKinds([this](const auto& kind) {
            const auto &now = kind.In(current_), &then = kind.In(said_);
            for (const auto& [number, record] : now) {
                if (record != *RecordOrNew(then, number))
                    FindCells(kind.kind, number);
                if (!then.Has(number))
                    made_.push_back({kind.kind, number, existsField});
            }
            for (const auto& [number, record] : then)
                if (!now.Has(number))
                    gone_.insert({kind.kind, number});
        });
        if (current_.misc != said_.misc)
            FindCells(RecordKind::Misc, 0);
        for (const Cell& cell : OtherTexts(said_, current_))
            if (HasCell(current_, cell) && TextFieldAt(cell.field)->since <= dialect_.fields)
                changes_.push_back({cell, {}});
    }

    void FindCells(RecordKind kind, std::int32_t index) {
        for (const Cell& cell : CellsOf(kind, index))
            if (TextFieldAt(cell.field) == nullptr && (cell.field < 0 || IsInPatch(cell)) &&
                ReadCell(current_, cell) != ReadCell(said_, cell))
                changes_.push_back({cell, {}});
        const Cell name{kind, index, lumpNameField};
        if (HasLumpName(kind) && ReadCell(current_, name) != ReadCell(said_, name))
            changes_.push_back({name, {}});
    }

    bool IsInPatch(const Cell& cell) const {
        const RowFacts facts = FactsOf(cell.kind, cell.field);
        return facts.inPatch && facts.since <= dialect_.fields;
    }

    /// Looks through the lines once for those that have set what has changed.
    void FindLines() {
        CellIndex changed;
        for (const Changed& change : changes_)
            changed.Add(change.cell);
        changed.VisitLines(lines_,
                           [this](std::size_t line, std::size_t number) { changes_[number].lines.push_back(line); });
    }

    /// Looked for when they are asked for: most edits need none.
    const std::vector<SectionRange>& Sections() const {
        if (sections_)
            return *sections_;
        std::vector<SectionRange>& sections = sections_.emplace();
        for (std::size_t line = 0; line < lines_.size(); ++line) {
            const bool text = lines_[line].what == LineKind::Text;
            if (lines_[line].what != LineKind::Header && !text)
                continue;
            if (!sections.empty())
                sections.back().end = line;
            const Section section = text ? Section::Text : static_cast<Section>(lines_[line].field);
            sections.push_back({line, lines_.size(), section});
        }
        return sections;
    }

    // One change

    void Apply(const Changed& change) {
        const Cell& cell = change.cell;
        const CellValue value = ReadCell(current_, cell);
        if (cell.field == nameField)
            return Rename(cell, std::get<std::string>(value));
        if (value == ReadCell(defaults_, cell)) {
            if (IsMade(cell.kind, cell.index)) // by the line that goes
                MakeHeader(cell);
            for (const std::size_t line : change.lines) {
                if (keepsPlaces_ && lines_[line].what == LineKind::Text) {
                    ReplaceTextEntry(line, cell);
                    continue;
                }
                Remove(line);
                // Behind a text its line ends, and an empty one parts it from the next.
                for (std::size_t next = line + 1; lines_[line].what == LineKind::Text && next < line + 3 &&
                                                  next < lines_.size() && lines_[next].what == LineKind::Blank;
                     ++next)
                    Remove(next);
            }
            return;
        }
        if (change.lines.empty())
            additions_[PlaceOf(cell)] += NewLines(cell);
        else
            Replace(change.lines.back(), cell);
    }

    void Remove(std::size_t line) {
        removed_.push_back(line);
        RemoveLine(line);
    }

    void RemoveLine(std::size_t line) {
        replacements_.push_back({lines_[line].offset, document_.End(line) - lines_[line].offset, {}});
    }

    void Fail(const Cell& cell, std::string_view reason) {
        if (status_)
            status_ = Status::Failure("the " + CellsName(current_, {cell}, {}) + " " + std::string(reason));
    }

    /// Puts the cell's value in the place of the one that the line has.
    void Replace(std::size_t line, const Cell& cell) {
        const std::string_view text = document_.Text(line);
        if (lines_[line].what == LineKind::Text)
            return ReplaceTextEntry(line, cell);
        if (cell.kind == RecordKind::String)
            return ReplaceString(line, cell);
        std::size_t begin = text.find('=') + 1;
        begin = std::min(text.find_first_not_of(" \t", begin), text.size());
        std::string_view old = text.substr(begin);
        if (cell.kind != RecordKind::Cheat && cell.field != lumpNameField)
            old = old.substr(0, old.find(dialect_.comment));
        const bool names = cell.field >= 0 && FactsOf(cell.kind, cell.field).unit == FieldUnit::Flags &&
                           EngineInt32(old) == 0 && Trim(old) != "0";
        if (cell.kind != RecordKind::Cheat && !names)
            old = old.substr(0, old.find_first_of(" \t"));
        while (old.ends_with(' ') || old.ends_with('\t'))
            old.remove_suffix(1);
        replacements_.push_back({lines_[line].offset + begin, old.size(), ValueText(cell, names, old)});
    }

    std::string ValueText(const Cell& cell, bool names, std::string_view old = {}) {
        if (cell.kind == RecordKind::Cheat) {
            std::string text = std::get<std::string>(ReadCell(current_, cell));
            if (text != modPatchText::UnpadCheat(text) || text.find_first_of("\r\n") != std::string::npos)
                Fail(cell,
                     "cannot be written so that it reads back: it begins or ends with blanks or has several lines");
            return text;
        }
        if (cell.field == lumpNameField)
            return LumpName(cell);
        const CellValue stored = ReadCell(current_, cell);
        if (TextFieldAt(cell.field) != nullptr)
            return TextFieldText(cell, std::get<std::string>(stored));
        if (std::holds_alternative<Unset>(stored)) {
            Fail(cell, "cannot be unset: the engine has a number there");
            return {};
        }
        const std::int32_t value = std::get<std::int32_t>(stored);
        if (cell.field == codePointerField)
            return CodePointerText(cell, value, old);
        if (cell.field == helperField)
            return std::to_string(value);
        const RowFacts facts = FactsOf(cell.kind, cell.field);
        if (facts.unit != FieldUnit::Flags)
            return std::to_string(value);
        const std::vector<std::string>& known = engine_.BitNames(facts.bits);
        if (!names || !IsWrittenByName(facts.bits) || !modPatchText::AllNamed(known, value))
            return std::to_string(static_cast<std::uint32_t>(value));
        const std::string text = modPatchText::FormatBits(value, true, known);
        const bool tight = old.find('+') != std::string_view::npos && old.find(' ') == std::string_view::npos;
        return tight ? ReplaceAll(text, " + ", "+") : text;
    }

    std::string TextFieldText(const Cell& cell, const std::string& text) {
        if (text.empty())
            Fail(cell, "cannot be empty: the engine has a name there");
        else if (std::ranges::any_of(text, [this](char each) { return each <= ' ' || each == dialect_.comment; }))
            Fail(cell, "must be one word");
        return text;
    }

    std::string LumpName(const Cell& cell) {
        std::string name = std::get<std::string>(ReadCell(current_, cell));
        const bool sprite = cell.kind == RecordKind::Sprite;
        if (name.empty() || (sprite && name.size() != SpriteRecord{}.name.size()) ||
            std::ranges::any_of(name, [](char each) { return each <= ' '; }))
            Fail(cell, sprite ? "must have four letters" : "must have one to six letters");
        return name;
    }

    /// By name in [CODEPTR], where `old` is a name or there is no such line yet; by a state that has it in a Pointer
    /// section.
    std::string CodePointerText(const Cell& cell, std::int32_t codePointer, std::string_view old) {
        const bool named = old.empty() ? dialect_.namedCodePointers : old[0] < '0' || old[0] > '9';
        if (named) {
            const std::string* mnemonic = engine_.MnemonicOf(codePointer);
            if (mnemonic == nullptr)
                Fail(cell, "has no name in [CODEPTR]");
            return mnemonic == nullptr ? std::string() : *mnemonic;
        }
        const std::int32_t source = Targets().StateWithAction(codePointer);
        if (source == static_cast<std::int32_t>(defaults_.states.DenseSize()))
            Fail(cell, "is one that no frame of the engine has");
        return std::to_string(source);
    }

    const PointerTargets& Targets() {
        if (!targets_)
            targets_.emplace(defaults_.states, engine_.codePointerStates);
        return *targets_;
    }

    void ReplaceString(std::size_t line, const Cell& cell) {
        const std::string_view text = document_.Text(line);
        std::size_t begin = text.find('=') + 1;
        begin = std::min(text.find_first_not_of(" \t", begin), text.size());
        std::string value = StringText(cell);
        // Comments between the lines that it went on in stay behind it.
        PatchLines parts(text.substr(begin));
        parts.Next();
        while (!parts.AtEnd())
            if (const std::string_view part = parts.Next(); part.starts_with(dialect_.comment))
                value.append(end_).append(part);
        replacements_.push_back({lines_[line].offset + begin, text.size() - begin, std::move(value)});
    }

    std::string StringText(const Cell& cell) {
        const std::optional<std::string> escaped = EngineEscape(current_.strings[cell.index].text, end_);
        if (!escaped)
            Fail(cell, "cannot be written so that game engines read it back: it is empty, begins or ends with blanks, "
                       "or has a backslash at its end or before an \"n\"");
        return escaped.value_or(std::string());
    }

    void ReplaceTextEntry(std::size_t line, const Cell& cell) {
        replacements_.push_back({lines_[line].offset, document_.End(line) - lines_[line].offset, TextEntry(cell)});
    }

    std::string TextEntry(const Cell& cell) {
        if (cell.field == lumpNameField) {
            const std::string old = NameInTexts(defaults_, cell.kind, cell.index);
            if (old.empty())
                Fail(cell, "cannot be another one: the engine has another of that name");
            return TextEntry(old, LumpName(cell));
        }
        return TextEntry(defaults_.strings[cell.index].text, current_.strings[cell.index].text);
    }

    std::string TextEntry(const std::string& old, const std::string& text) const {
        return std::string(dialect_.texts) + " " + std::to_string(old.size()) + " " + std::to_string(text.size()) +
               std::string(end_) + ReplaceAll(old + text, "\n", end_);
    }

    void Rename(const Cell& cell, const std::string& name) {
        const SectionRange* section = SectionFor(cell.kind, cell.index);
        if (section == nullptr) {
            additions_[PlaceOf(cell)];
            return;
        }
        const std::string_view text = document_.Text(section->header);
        const std::size_t begin = text.find('('), last = text.rfind(')');
        const std::size_t offset = lines_[section->header].offset;
        if (begin == std::string_view::npos) {
            const std::size_t length = text.find_last_not_of(" \t") + 1;
            replacements_.push_back({offset + length, 0, " (" + name + ")"});
        } else {
            const std::size_t stop = last == std::string_view::npos || last < begin ? text.size() : last;
            replacements_.push_back({offset + begin + 1, stop - begin - 1, name});
        }
    }

    // What is new

    /// Where new lines go: behind those of a section that there is, or into a new one of this record.
    struct Place {
        Section section = Section::None;
        std::int32_t record = noRecord;                      // for a section of one record, and for a text
        RecordKind kind = RecordKind::Par;                   // for a text
        std::size_t existing = static_cast<std::size_t>(-1); // among the sections
        bool operator<(const Place& other) const {
            return std::tuple(OrderOf(section), kind, record) <
                   std::tuple(OrderOf(other.section), other.kind, other.record);
        }
    };

    const SectionRange* SectionFor(RecordKind kind, std::int32_t index) const {
        for (std::size_t i = Sections().size(); i-- > 0;) {
            const DocumentLine& header = lines_[Sections()[i].header];
            if (header.kind == kind && header.index == index && Sections()[i].section != Section::Pointer)
                return &Sections()[i];
        }
        return nullptr;
    }

    Place PlaceOf(const Cell& cell) const {
        Place place{SectionOf(cell, dialect_)};
        if (IsOfOneRecord(place.section) || place.section == Section::Text)
            place.record = cell.index;
        if (place.section == Section::Text)
            place.kind = cell.kind;
        if (place.section == Section::Text || place.section == Section::Pointer)
            return place;
        for (std::size_t i = Sections().size(); i-- > 0 && place.existing > Sections().size();)
            if (Sections()[i].section == place.section &&
                (place.record == noRecord || lines_[Sections()[i].header].index == place.record))
                place.existing = i;
        return place;
    }

    std::string NewLines(const Cell& cell) {
        const std::string end(end_);
        const auto index = static_cast<std::size_t>(cell.index);
        switch (SectionOf(cell, dialect_)) {
        case Section::Text:
            return TextEntry(cell) + end;
        case Section::Strings:
            return engine_.strings[index].mnemonic + " = " + StringText(cell) + end;
        case Section::Cheat:
            return std::string(cheatLabels[index]) + " = " + ValueText(cell, false) + end;
        case Section::CodePtr:
            return std::string(dialect_.states.word) + " " + std::to_string(cell.index) + " = " +
                   ValueText(cell, false) + end;
        case Section::Pointer:
            return "Codep Frame = " + ValueText(cell, false) + end;
        case Section::Sprites:
            return LumpNameKey(defaults_.sprites, cell.index) + " = " + ValueText(cell, false) + end;
        case Section::Sounds:
            return LumpNameKey(defaults_.sounds, cell.index) + " = " + ValueText(cell, false) + end;
        case Section::Music:
            return LumpNameKey(defaults_.music, cell.index) + " = " + ValueText(cell, false) + end;
        case Section::Helper:
            return std::string(helperKey) + " = " + ValueText(cell, false) + end;
        default: {
            const TextField* text = TextFieldAt(cell.field);
            return std::string(text != nullptr ? text->label : FactsOf(cell.kind, cell.field).label) + " = " +
                   ValueText(cell, dialect_.namedBits) + end;
        }
        }
    }

    std::string HeaderText(const Place& place) {
        const std::string end(end_), number = std::to_string(place.record);
        std::string header;
        switch (place.section) {
        case Section::Text:
            return {};
        case Section::Pointer:
            return std::string(dialect_.pointers.word) + " " + std::to_string(Targets().PointerOf(place.record)) +
                   " (" + std::string(dialect_.states.word) + " " + number + ")" + end;
        case Section::Cheat:
            return std::string(dialect_.cheats) + " 0" + end;
        case Section::Misc:
            return std::string(dialect_.misc) + " 0" + end;
        case Section::CodePtr:
            return std::string(dialect_.codePointers) + end;
        case Section::Strings:
            return std::string(dialect_.strings) + end;
        case Section::Pars:
            return std::string(dialect_.pars) + end;
        case Section::Sprites:
            return std::string(spriteNames) + end;
        case Section::Sounds:
            return std::string(soundNames) + end;
        case Section::Music:
            return std::string(musicNames) + end;
        case Section::Helper:
            return std::string(helperSection) + end;
        default:
            break;
        }
        VisitKind(KindOf(place.section), [&](const auto& kind) {
            if (kind.section == nullptr)
                return;
            for (const std::string& line : NoteOf({kind.kind, place.record, noteField}))
                header += line + end;
            const SectionRule& rule = dialect_.*kind.section;
            header += std::string(rule.word) + " " + std::to_string(place.record + rule.firstWritten);
            if constexpr (isNamed<RecordOf<decltype(kind)>>) {
                const std::string& name = kind.In(current_)[place.record].name;
                const bool named = !name.empty() || !IsMade(kind.kind, place.record);
                if ((named && NamesStandInBrackets()) || name != RecordOrNew(kind.In(defaults_), place.record)->name)
                    header += " (" + name + ")";
            }
        });
        return header + end;
    }

    /// Whether the patch's headers have names, as those of most patches do.
    bool NamesStandInBrackets() const {
        for (const SectionRange& section : Sections())
            if (section.section == Section::Thing || section.section == Section::Weapon ||
                section.section == Section::Ammo)
                return document_.Text(section.header).find('(') != std::string_view::npos;
        return true;
    }

    void Add(const Place& place, const std::string& text) {
        if (place.existing < Sections().size()) {
            kept_.push_back(Sections()[place.existing].header);
            return Insert(EndOfLines(Sections()[place.existing]), text);
        }
        const std::size_t line = LineForSection(place.section);
        std::string section = HeaderText(place) + text;
        const bool textFollows = line < lines_.size() && (lines_[line].what != LineKind::Blank ||
                                                          std::ranges::find(removed_, line) != removed_.end());
        const bool behindAnother = std::exchange(lastSection_, line) == line && !textFollows;
        const bool behindNotes = line == 0 && insertedAt_.contains(line);
        if (behindAnother || behindNotes || (line > 0 && lines_[line - 1].what != LineKind::Blank))
            section.insert(0, end_);
        if (textFollows)
            section += end_;
        Insert(line, section);
    }

    /// Puts lines before `line`; a last line without an end gets one.
    void Insert(std::size_t line, std::string text) {
        insertedAt_.insert(line);
        const std::size_t offset = line < lines_.size() ? lines_[line].offset : document_.Bytes().size();
        if (offset > 0 && document_.Bytes()[offset - 1] != '\n') {
            text.insert(0, end_);
            if (text.ends_with(end_))
                text.resize(text.size() - end_.size());
        }
        replacements_.push_back({offset, 0, std::move(text)});
    }

    bool BeginsWithBlank(std::size_t line) const { return document_.Text(line).starts_with(' '); }

    /// The line before which a section's new lines stand: engines still count it to the section.
    std::size_t EndOfLines(const SectionRange& section) const {
        std::size_t line = section.header + 1;
        if (IsBracketed(section.section)) {
            for (std::size_t each = line; each < section.end; ++each)
                if (lines_[each].what == LineKind::Value &&
                    (section.section == Section::Strings || !BeginsWithBlank(each)))
                    line = each + 1;
            return line;
        }
        while (line < section.end && lines_[line].what != LineKind::Blank && !BeginsWithBlank(line))
            ++line;
        while (line > section.header + 1 && lines_[line - 1].what == LineKind::Comment && line == section.end)
            --line; // belongs to what comes next
        return line;
    }

    /// The line before which a new section stands: behind the last of its kind or of those that come before it.
    std::size_t LineForSection(Section section) const {
        const SectionRange* best = nullptr;
        for (const SectionRange& each : Sections())
            if (OrderOf(each.section) <= OrderOf(section) &&
                (best == nullptr || OrderOf(each.section) >= OrderOf(best->section)))
                best = &each;
        std::size_t line = best != nullptr ? best->end : Sections().empty() ? lines_.size() : Sections().front().header;
        const std::size_t first = best != nullptr ? best->header + 1 : 0;
        // Comments right above the next section are its own, and so are the empty lines.
        while (line > first && line < lines_.size() && lines_[line - 1].what == LineKind::Comment)
            --line;
        while (line > first && lines_[line - 1].what == LineKind::Blank)
            --line;
        return line;
    }

    // Records that the patch makes

    bool IsMade(RecordKind kind, std::int32_t number) const {
        return !HasRecord(defaults_, kind, number) && HasRecord(current_, kind, number);
    }

    /// Sees to a header, which makes the record; a sprite has none.
    void MakeHeader(const Cell& cell) {
        if (cell.kind == RecordKind::Sprite)
            LumpName({cell.kind, cell.index, lumpNameField});
        else if (SectionFor(cell.kind, cell.index) == nullptr)
            additions_[PlaceOf({cell.kind, cell.index, existsField})];
    }

    /// Takes out the sections of records that are gone, and the lines that speak of them elsewhere.
    void RemoveGone() {
        std::set<std::size_t> lines;
        const auto isGone = [this](std::size_t line) {
            return gone_.contains({lines_[line].kind, lines_[line].index}) && lines_[line].index != noRecord;
        };
        for (const SectionRange& section : Sections()) {
            if (gone_.empty() || !isGone(section.header))
                continue;
            goneSections_.insert(section.header);
            std::size_t line = section.header;
            for (const std::size_t end = EndOfLines(section); line < end; ++line)
                lines.insert(line);
            if (!keepsPlaces_ && line < section.end && lines_[line].what == LineKind::Blank &&
                !insertedAt_.contains(line))
                lines.insert(line);
        }
        for (std::size_t line = 0; !gone_.empty() && line < lines_.size(); ++line)
            if (lines_[line].what == LineKind::Value && isGone(line))
                lines.insert(line);
        for (const std::size_t line : lines) {
            Remove(line);
            // What stands behind it is not to be read in the section before.
            if (keepsPlaces_ && goneSections_.contains(line))
                replacements_.back().text = std::string(dialect_.misc) + " 0" + std::string(end_);
        }
    }

    // Notes

    /// The records with another note than the document says.
    std::vector<Cell> ChangedNotes() const {
        std::vector<Cell> cells;
        const auto add = [&](const auto& key) {
            const Cell cell{key.first, key.second, noteField};
            if (cell != patchNotes && ReadCell(current_, cell) != ReadCell(said_, cell))
                cells.push_back(cell);
        };
        for (const auto& [key, note] : current_.notes)
            add(key);
        for (const auto& [key, note] : said_.notes)
            if (!current_.notes.contains(key))
                add(key);
        return cells;
    }

    /// The lines of the cell's note as comments.
    std::vector<std::string> NoteOf(const Cell& cell) {
        std::vector<std::string> lines = CommentLines(std::get<std::string>(ReadCell(current_, cell)));
        for (const std::string& line : lines)
            if (IsForPrograms(line) || line.find('\r') != std::string::npos)
                Fail(cell, "cannot be written: a line of it would mean something to game engines, or holds a carriage "
                           "return");
        return lines;
    }

    void MergePatchNotes() {
        if (ReadCell(current_, patchNotes) == ReadCell(said_, patchNotes))
            return;
        const std::vector<std::size_t> old = PatchNoteLines(document_);
        std::vector<std::string> lines = NoteOf(patchNotes);
        const std::size_t line = !lines_.empty() && IsFirstLine(document_.Text(0)) ? 1 : 0;
        ReplaceNote(old, std::move(lines), line);
        if (old.empty() && line < lines_.size() && lines_[line].what != LineKind::Blank)
            Insert(line, std::string(end_)); // they are no note of what follows
    }

    void MergeNote(const Cell& cell) {
        const SectionRange* section = SectionFor(cell.kind, cell.index);
        if (section == nullptr)
            return;
        const std::vector<std::size_t> old = NoteLinesAbove(document_, section->header);
        std::vector<std::string> lines = NoteOf(cell);
        if (lines.empty())
            withoutNote_.insert(static_cast<std::size_t>(section - Sections().data()));
        else
            kept_.push_back(section->header);
        ReplaceNote(old, std::move(lines), section->header);
    }

    /// Puts `lines` in the place of the lines `old`, or before `line` where there are none. A line that says the same
    /// as one of `old` is written as that one.
    void ReplaceNote(const std::vector<std::size_t>& old, std::vector<std::string> lines, std::size_t line) {
        std::unordered_map<std::string_view, std::vector<std::string_view>> known;
        for (auto each = old.rbegin(); each != old.rend(); ++each)
            known[NoteLine(document_.Text(*each))].push_back(document_.Text(*each));
        for (std::string& each : lines)
            if (const auto same = known.find(NoteLine(each)); same != known.end() && !same->second.empty()) {
                each = same->second.back();
                same->second.pop_back();
            }
        // An empty line without the sign belongs to the note only between comments.
        const auto isComment = [this](const std::string& each) { return each.starts_with(dialect_.comment); };
        std::fill(lines.begin(), std::ranges::find_if(lines, isComment), std::string(1, dialect_.comment));
        std::fill(std::find_if(lines.rbegin(), lines.rend(), isComment).base(), lines.end(),
                  std::string(1, dialect_.comment));

        std::size_t first = 0, oldEnd = old.size(), newEnd = lines.size();
        while (first < oldEnd && first < newEnd && lines[first] == document_.Text(old[first]))
            ++first;
        while (oldEnd > first && newEnd > first && lines[newEnd - 1] == document_.Text(old[oldEnd - 1])) {
            --oldEnd;
            --newEnd;
        }
        std::string text;
        for (std::size_t each = first; each < newEnd; ++each)
            text.append(lines[each]).append(end_);
        if (!text.empty())
            Insert(first < old.size() ? old[first] : old.empty() ? line : old.back() + 1, std::move(text));
        for (std::size_t gone = first; gone < oldEnd; ++gone) {
            RemoveLine(old[gone]);
            removedComments_.push_back(old[gone]);
        }
    }

    // Par times

    std::string ParLine(const ParRecord& par) const {
        return "par " + (par.episode != 0 ? std::to_string(par.episode) + " " : std::string()) +
               std::to_string(par.map) + " " + std::to_string(par.seconds);
    }

    /// Entries that are the same at the beginning and the end of the list keep their lines; of those between, each
    /// takes the line of one that was there.
    void MergePars() {
        const std::vector<ParRecord>&now = current_.pars, &then = said_.pars;
        if (now == then)
            return;
        std::vector<std::size_t> lines;
        for (std::size_t line = 0; line < lines_.size(); ++line)
            if (lines_[line].what == LineKind::Value && lines_[line].kind == RecordKind::Par)
                lines.push_back(line);
        std::size_t first = 0, nowEnd = now.size(), thenEnd = then.size();
        while (first < nowEnd && first < thenEnd && now[first] == then[first])
            ++first;
        while (nowEnd > first && thenEnd > first && now[nowEnd - 1] == then[thenEnd - 1]) {
            --nowEnd;
            --thenEnd;
        }
        std::size_t at = first;
        for (; at < nowEnd && at < thenEnd; ++at) {
            const std::string_view text = document_.Text(lines[at]);
            std::size_t length = text.find_first_not_of("0123456789-+ \t", std::string_view("par").size());
            length = text.substr(0, length).find_last_not_of(" \t") + 1;
            replacements_.push_back({lines_[lines[at]].offset, length, ParLine(now[at])});
        }
        for (std::size_t gone = at; gone < thenEnd; ++gone)
            Remove(lines[gone]);
        std::string added;
        for (; at < nowEnd; ++at)
            added += ParLine(now[at]) + std::string(end_);
        if (added.empty())
            return;
        if (thenEnd < lines.size())
            Insert(lines[thenEnd], added);
        else
            additions_[PlaceOf({RecordKind::Par, 0, listField})] += added;
    }

    // Sections without lines

    void RemoveEmptySections() {
        std::ranges::sort(removed_);
        std::ranges::sort(removedComments_);
        std::set<std::size_t> touched = withoutNote_;
        for (const std::size_t line : removed_) {
            const auto behind = std::ranges::upper_bound(Sections(), line, {}, &SectionRange::header);
            if (behind != Sections().begin())
                touched.insert(static_cast<std::size_t>(behind - Sections().begin()) - 1);
        }
        for (const std::size_t at : touched)
            RemoveIfEmpty(Sections()[at]);
    }

    void RemoveIfEmpty(const SectionRange& section) {
        if (goneSections_.contains(section.header) ||
            (IsOfOneRecord(section.section) && section.section != Section::Pointer &&
             IsMade(lines_[section.header].kind, lines_[section.header].index)))
            return;
        if (section.section == Section::Text || std::ranges::find(kept_, section.header) != kept_.end())
            return;
        // A name of its own is a reason to stay.
        const DocumentLine& header = lines_[section.header];
        if (header.index != noRecord && section.section != Section::Pointer &&
            (header.kind == RecordKind::Thing || header.kind == RecordKind::Weapon ||
             header.kind == RecordKind::Ammo)) {
            const Cell name{header.kind, header.index, nameField};
            if (ReadCell(current_, name) != ReadCell(defaults_, name))
                return;
        }
        std::size_t line = section.header + 1;
        if (section.header > 0 && lines_[section.header - 1].what == LineKind::Comment &&
            !std::ranges::binary_search(removedComments_, section.header - 1))
            return;
        for (; line < section.end && lines_[line].what != LineKind::Blank; ++line)
            if (!std::ranges::binary_search(removed_, line))
                return;
        for (std::size_t rest = line; IsBracketed(section.section) && rest < section.end; ++rest)
            if (lines_[rest].what != LineKind::Blank && lines_[rest].what != LineKind::Comment &&
                !std::ranges::binary_search(removed_, rest))
                return;
        removedHeader_ = true;
        replacements_.push_back({header.offset, document_.End(section.header) - header.offset, {}});
        if (line < section.end && !insertedAt_.contains(line)) // the blank line that ends it
            replacements_.push_back({lines_[line].offset, document_.End(line) - lines_[line].offset, {}});
    }

    void Replaced(BytePieces& merged) {
        // What is put before a line stands before what takes the line's place.
        std::ranges::stable_sort(replacements_, {},
                                 [](const Replacement& each) { return std::pair(each.offset, each.length > 0); });
        const std::string_view bytes = document_.Bytes();
        std::size_t done = 0;
        for (const Replacement& each : replacements_) {
            merged.Borrow(bytes.substr(done, each.offset - done));
            merged.Own(each.text);
            done = each.offset + each.length;
        }
        merged.Borrow(bytes.substr(done));
    }

    const PatchDocument& document_;
    const std::vector<DocumentLine>& lines_;
    const PatchSet& current_;
    const PatchSet& said_;
    const PatchSet& defaults_;
    const EngineConfiguration& engine_;
    const Dialect& dialect_;
    const std::string_view end_;
    const bool keepsPlaces_; // of sections and texts that say nothing any more

    std::vector<Changed> changes_;
    std::vector<Cell> made_;                             // of existence
    std::set<std::pair<RecordKind, std::int32_t>> gone_; // records
    std::set<std::size_t> goneSections_;                 // by their headers
    mutable std::optional<std::vector<SectionRange>> sections_;
    std::map<Place, std::string> additions_;
    std::vector<Replacement> replacements_;
    std::vector<std::size_t> removed_, removedComments_, kept_; // lines
    std::set<std::size_t> insertedAt_;                          // lines
    std::set<std::size_t> withoutNote_;                         // sections whose note is gone
    std::size_t lastSection_ = static_cast<std::size_t>(-1);    // where the last new one went
    bool removedHeader_ = false;
    std::optional<PointerTargets> targets_;
    Status status_;
};

} // namespace

Status MergeIntoDocument(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                         const EngineConfiguration& engine, PatchDocument& merged) {
    Status status;
    // A header that is left without lines, or a text that is the engine's own, may keep those behind it from being read
    // in the section before, and comments from standing above another section.
    for (const bool keepsPlaces : {false, true}) {
        BytePieces bytes;
        status = Merge(document, current, defaults, engine, keepsPlaces).Run(bytes);
        if (!status)
            break;
        PatchSet read;
        modPatchFiles::ReadResult result = merged.Read(bytes.Joined(), engine, defaults, read);
        const std::vector<std::string> otherwise = modPatchDiff::Differences(current, read, engine);
        if (result.status && otherwise.empty())
            break;
        status =
            result.status ? Status::Failure("it would not read back: " + otherwise.front()) : std::move(result.status);
    }
    return status;
}

Status MergedBytes(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                   const EngineConfiguration& engine, BytePieces& bytes) {
    {
        BytePieces made;
        Merge merge(document, current, defaults, engine, false);
        Status status = merge.Run(made);
        if (!status || merge.ReadsBack(made)) {
            bytes = std::move(made);
            return status;
        }
    }
    PatchDocument merged;
    Status status = MergeIntoDocument(document, current, defaults, engine, merged);
    bytes = BytePieces(merged.Bytes());
    return status;
}

} // namespace plinket3
