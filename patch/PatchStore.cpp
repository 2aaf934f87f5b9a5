#include "patch/PatchStore.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/NewRecords.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace plinket3 {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::size_t stateKind = 1; // of the list kinds

/// The kind whose lumps a section gives other names.
RecordKind RenamedIn(Section section) {
    return section == Section::Sprites ? RecordKind::Sprite
           : section == Section::Music ? RecordKind::Music
                                       : RecordKind::Sound;
}

void TrimRight(std::string& text) { text.erase(text.find_last_not_of(" \t\r\n\v\f") + 1); }

/// Moves past a number as engines read it; false when there is none.
bool SkipEngineNumber(std::string_view& text) {
    std::string_view rest = SkipBlanks(text);
    if (rest.starts_with('-') || rest.starts_with('+'))
        rest.remove_prefix(1);
    const bool hexadecimal = rest.size() > 2 && rest[0] == '0' && ToLower(rest[1]) == 'x';
    const std::size_t begin = hexadecimal ? 2 : 0;
    std::size_t end = begin;
    const auto isDigit = [hexadecimal](char each) {
        return (each >= '0' && each <= '9') || (hexadecimal && ToLower(each) >= 'a' && ToLower(each) <= 'f');
    };
    while (end < rest.size() && isDigit(rest[end]))
        ++end;
    if (end == begin)
        return false;
    text = rest.substr(end);
    return true;
}

/// Takes a number from the start of `text` as engines do; false when there is none.
bool TakeEngineNumber(std::string_view& text, std::int32_t& number) {
    const std::string_view start = text;
    if (!SkipEngineNumber(text))
        return false;
    number = EngineInt32(start);
    return true;
}

/// Takes the next word, up to a blank.
std::string_view TakeWord(std::string_view& text) {
    text = SkipBlanks(text);
    const std::string_view word = text.substr(0, text.find_first_of(blanks));
    text.remove_prefix(word.size());
    return word;
}

} // namespace

std::int32_t PatchStore::Number(std::string_view text) const {
    return dialect_.EngineRules() ? EngineInt32(text) : LeadingInt32(text);
}

std::int32_t PatchStore::PlainNumber(std::string_view text) {
    if (observer_ != nullptr)
        observer_->Number(offset_, FieldUnit::Number, FieldWidth::Int32, text);
    return Number(text);
}

// Selecting records

std::string_view PatchStore::NameIn(std::string_view line) const {
    const std::size_t begin = line.find('(');
    if (begin == std::string_view::npos)
        return {};
    const std::size_t end = line.rfind(')');
    return end == std::string_view::npos || end < begin ? line.substr(begin + 1)
                                                        : line.substr(begin + 1, end - begin - 1);
}

void PatchStore::Select(std::string_view line, std::string_view word) {
    if (observer_ != nullptr)
        observer_->Section(offset_, word);
    const HeaderWords words(line, dialect_.comment);
    const bool engine = dialect_.EngineRules();
    std::string_view number = words[1];
    if (engine) { // the word may go on, and the number ends where it ends
        number = line;
        TakeWord(number);
    }
    index_ = noRecord;
    if (section_ == Section::Pointer) {
        if (engine)
            SelectEnginePointer(number);
        else
            SelectNumber(number, dialect_.pointers.firstRead, [this](std::int32_t pointer) {
                return pointer >= 0 && std::cmp_less(pointer, engine_.codePointerStates.size());
            });
    }
    VisitKind(KindOf(section_), [&](const auto& kind) {
        if (kind.section == nullptr)
            return;
        auto& records = kind.In(set_);
        SelectNumber(number, (dialect_.*kind.section).firstRead,
                     [&](std::int32_t index) { return FindOrMake(kind, index) != nullptr; });
        if constexpr (isNamed<RecordOf<decltype(kind)>>)
            if (auto* record = records.Find(index_)) {
                if (engine && line.find('(') != std::string_view::npos)
                    record->name = NameIn(line);
                else if (!engine && words.Count() >= 3)
                    record->name = words[2];
            }
        if constexpr (!fieldTable<RecordOf<decltype(kind)>>.empty())
            selected_ = records.Find(index_);
    });
    if (observer_ != nullptr && index_ != noRecord)
        observer_->Selected(offset_, section_ == Section::Pointer ? RecordKind::State : KindOf(section_), index_);
}

/// The record of a kind that has this number, which where an engine knows no limits the patch makes so; null for one
/// that there is not.
template <class Kind> RecordOf<Kind>* PatchStore::FindOrMake(const Kind& kind, std::int32_t number) {
    auto& records = kind.In(set_);
    auto* record = records.Find(number);
    if (record == nullptr && dialect_.unlimited && CanBeMade(kind.kind) && records.IsBeyond(number))
        record = &records.Add(number, NewRecord<RecordOf<Kind>>(number));
    return record;
}

template <class Has> void PatchStore::SelectNumber(std::string_view number, std::int32_t first, Has has) {
    if (std::string_view rest = number; dialect_.EngineRules() && !SkipEngineNumber(rest))
        return Ignore("has no number, so its lines are ignored");
    const std::int64_t index = std::int64_t{PlainNumber(number)} - first;
    const bool exists = index >= INT32_MIN && index != noRecord && has(static_cast<std::int32_t>(index));
    index_ = exists ? static_cast<std::int32_t>(index) : noRecord;
    if (!exists)
        Ignore(dialect_.unlimited && index < 0
                   ? "has a number that no patch can make, so its lines are ignored"
                   : "has a number that the engine does not have, so its lines are ignored");
}

/// "Pointer n (Frame f)": f counts, and the word before it may be any.
void PatchStore::SelectEnginePointer(std::string_view line) {
    std::string_view rest = line;
    std::int32_t state = noRecord;
    if (!SkipEngineNumber(rest) || !(rest = SkipBlanks(rest)).starts_with('('))
        return Ignore("names no frame in brackets, so its lines are ignored");
    rest.remove_prefix(1);
    TakeWord(rest);
    if (!TakeEngineNumber(rest, state) || set_.states.Find(state) == nullptr)
        return Ignore("names a frame that the engine does not have, so its lines are ignored");
    index_ = state;
}

// Numbers and flags

bool PatchStore::StoreField(std::string_view key, std::string_view value) {
    switch (section_) {
    case Section::Misc:
        return StoreNumber(RecordKind::Misc, &set_.misc, key, value);
    case Section::Pointer:
        return StorePointer(key, value);
    case Section::Cheat:
        return StoreCheat(key, value);
    case Section::CodePtr:
        return StoreCodePointer(key, value);
    case Section::Strings:
        return StoreString(key, value);
    default:
        return std::visit(
            [&](auto record) {
                if constexpr (std::is_pointer_v<decltype(record)>)
                    return StoreNumber(KindOf(section_), record, key, value) || StoreText(key, value);
                else
                    return false;
            },
            selected_);
    }
}

bool PatchStore::StoreText(std::string_view key, std::string_view value) {
    const auto* field = std::ranges::find_if(textFields, [&](const TextField& each) {
        return each.kind == KindOf(section_) && EqualIgnoringCase(each.label, key);
    });
    if (field == textFields.end() || field->since > dialect_.fields)
        return false;
    if (index_ == noRecord)
        return true;
    const std::string_view word = TakeWord(value);
    if (word.empty()) {
        Ignore("is ignored: it holds no name");
        return true;
    }
    const Cell cell{field->kind, index_, TextCell(static_cast<std::size_t>(field - textFields.begin()))};
    WriteCell(set_, cell, std::string(word));
    Stored(cell, word);
    return true;
}

template <class Record>
bool PatchStore::StoreNumber(RecordKind kind, Record* record, std::string_view key, std::string_view value) {
    const Field<Record>* field = FindField<Record>(key);
    if (field == nullptr || field->since > dialect_.fields)
        return false;
    if (record == nullptr)
        return true;
    const bool flags = field->unit == FieldUnit::Flags;
    if (flags)
        SetValue(*record, *field, Bits(field->bits, value));
    else if (field->unit == FieldUnit::Truth && EqualIgnoringCase(value, "true"))
        SetValue(*record, *field, 1);
    else // engines take any number even where the program of old had one byte
        SetValue(*record, *field, dialect_.EngineRules() ? EngineInt32(value) : FitWidth(*field, LeadingInt32(value)));
    if (observer_ != nullptr && !(flags && !IsBitsNumber(value)))
        observer_->Number(offset_, field->unit, field->width, value);
    const int row = static_cast<int>(field - fieldsOf<Record>.data());
    Stored({kind, kind == RecordKind::Misc ? 0 : index_, row}, value);
    return true;
}

bool PatchStore::IsBitsNumber(std::string_view value) const {
    if (dialect_.EngineRules())
        return EngineInt32(value) != 0 || value == "0";
    return value == "0" || LeadingReal(value) > 0;
}

std::int32_t PatchStore::Bits(BitSet set, std::string_view value) {
    if (!IsBitsNumber(value)) {
        if (observer_ != nullptr)
            observer_->FlagNames(offset_, set, value);
        return dialect_.EngineRules() ? EngineBits(set, value) : KeptBits(engine_.BitNames(set), value);
    }
    if (dialect_.EngineRules())
        return EngineInt32(value);
    const double number = LeadingReal(value);
    if (number > INT32_MAX && number <= UINT32_MAX)
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
    return RoundToInt32(number);
}

/// Kept: a name counts wherever it occurs. docs/kept-behaviour.md
std::int32_t PatchStore::KeptBits(const std::vector<std::string>& known, std::string_view value) {
    const std::string names = ToUpper(value);
    std::int32_t bits = 0;
    for (std::size_t bit = 0; bit < known.size(); ++bit)
        if (!known[bit].empty() && names.find(known[bit]) != std::string::npos)
            bits = modPatchText::SetFlag(bits, static_cast<int>(bit));
    return bits;
}

std::int32_t PatchStore::EngineBits(BitSet set, std::string_view value) {
    std::int32_t bits = 0;
    for (const std::string_view name : BitWords(value))
        if (const std::optional<int> bit = BitNamed(engine_, set, name))
            bits = modPatchText::SetFlag(bits, *bit);
    return bits;
}

// Code pointers

bool PatchStore::StorePointer(std::string_view key, std::string_view value) {
    if (!EqualIgnoringCase(key, "Codep Frame"))
        return false;
    if (index_ == noRecord)
        return true;
    const std::int32_t target =
        dialect_.EngineRules() ? index_ : engine_.codePointerStates[static_cast<std::size_t>(index_)];
    const StateRecord* source = set_.states.Find(PlainNumber(value));
    if (source == nullptr)
        Ignore("is ignored: it names a frame that the engine does not have");
    else
        StoreCodePointer(target, source->action, value);
    return true;
}

bool PatchStore::StoreCodePointer(std::string_view key, std::string_view value) {
    constexpr std::string_view frame = "Frame ";
    if (!EqualIgnoringCase(key.substr(0, frame.size()), frame))
        return false;
    if (const auto codePointer = engine_.CodePointerOf(value))
        StoreCodePointer(PlainNumber(Trim(key.substr(frame.size()))), *codePointer, value);
    else if (observer_ != nullptr)
        Ignore("is ignored: the engine knows no code pointer \"" + std::string(value) + "\"");
    return true;
}

void PatchStore::StoreCodePointer(std::int32_t state, std::int32_t codePointer, std::string_view value) {
    StateRecord* record = FindOrMake(std::get<stateKind>(listKinds), state);
    if (record == nullptr) {
        Ignore("is ignored: it names a frame that the engine does not have");
        return;
    }
    record->codePointer = codePointer;
    if (observer_ != nullptr)
        observer_->CodePointer(offset_, state);
    Stored({RecordKind::State, state, codePointerField}, value);
}

const std::unordered_map<std::string, std::int32_t>& PatchStore::ActionIndex() {
    if (actions_.empty())
        for (const auto& [value, mnemonic] : engine_.mnemonicByValue)
            actions_.try_emplace(ToUpper(mnemonic), value);
    return actions_;
}

bool PatchStore::StoreEngineCodePointer(std::string_view line) {
    std::string_view rest = line;
    std::int32_t state = 0;
    const std::string_view word = TakeWord(rest);
    const bool frame = EqualIgnoringCase(word, dialect_.states.word) && TakeEngineNumber(rest, state) &&
                       (rest = SkipBlanks(rest)).starts_with('=');
    if (frame)
        rest.remove_prefix(1);
    const std::string_view name = frame ? TakeWord(rest) : std::string_view();
    if (name.empty()) {
        Ignore("ends [CODEPTR], which has only lines of the form \"Frame 1 = NAME\"");
        return false;
    }
    const auto found = ActionIndex().find(ToUpper(name));
    if (found != ActionIndex().end())
        StoreCodePointer(state, found->second, name);
    else
        Ignore("is ignored: the engine knows no code pointer \"" + std::string(name) + "\"");
    return true;
}

// Texts

bool PatchStore::StoreCheat(std::string_view key, std::string_view value) {
    static const LabelIndex<64> index(cheatLabels, [](std::string_view label) { return label; });
    const int place = index.Find(key);
    if (place < 0)
        return false;
    CheatRecord* cheat = set_.cheats.Find(place);
    if (cheat == nullptr)
        return true;
    cheat->text = modPatchText::UnpadCheat(value);
    const std::int32_t space = cheat->maximumLength & 0xffff;
    if (observer_ != nullptr && space > 0)
        observer_->Text(offset_, cheat->text.size(), space);
    Stored({RecordKind::Cheat, place, textField}, value);
    return true;
}

const std::unordered_map<std::string, std::int32_t>& PatchStore::StringIndex() {
    if (keys_.empty())
        for (std::size_t i = 0; i < engine_.strings.size(); ++i)
            keys_.try_emplace(ToUpper(engine_.strings[i].mnemonic), static_cast<std::int32_t>(i));
    return keys_;
}

bool PatchStore::StoreString(std::string_view key, std::string_view value) {
    std::string text(value);
    // Kept: of the lines that go on only the first one loses its backslash. docs/kept-behaviour.md
    if (text.ends_with('\\')) { // goes on in the next lines, also when the key is unknown
        text.pop_back();
        std::string_view next;
        do {
            if (lines_.AtEnd())
                break;
            next = TrimLeft(lines_.Next());
            text += next;
        } while (next.ends_with('\\'));
        if (observer_ != nullptr)
            observer_->Continued(offset_, lines_.Position());
    }
    const auto found = StringIndex().find(ToUpper(key));
    if (found == StringIndex().end())
        return false;
    if (StringRecord* record = set_.strings.Find(found->second)) {
        record->text = modPatchText::UnescapeText(text);
        record->length = static_cast<std::int32_t>(record->text.size());
        if (observer_ != nullptr)
            observer_->String(offset_, text);
        Stored({RecordKind::String, found->second, textField}, value);
    }
    return true;
}

void PatchStore::StoreEngineString(std::string_view line) {
    const auto [key, value] = EnginePair(line);
    if (value.data() == nullptr)
        return Ignore("is ignored: it is no line of the form \"KEY = text\"");
    std::string text;
    std::string_view part = value;
    for (bool more = true; more;) {
        text += SkipBlanks(part);
        TrimRight(text);
        more = text.ends_with('\\');
        if (!more)
            break;
        text.pop_back();
        if (text.empty()) // a backslash alone begins nothing
            break;
        do {
            more = !lines_.AtEnd();
            part = lines_.Next();
        } while (more && part.starts_with(dialect_.comment));
    }
    if (observer_ != nullptr && lines_.Position() > offset_)
        observer_->Continued(offset_, lines_.Position());
    if (text.empty())
        return Ignore("is ignored: engines take no empty text");
    std::string plain = EngineText(text);
    const auto found = StringIndex().find(ToUpper(key));
    StringRecord* record = found == StringIndex().end() ? nullptr : set_.strings.Find(found->second);
    if (record == nullptr) {
        if (observer_ != nullptr)
            observer_->OtherString(offset_, key, plain);
        return;
    }
    record->text = std::move(plain);
    record->length = static_cast<std::int32_t>(record->text.size());
    if (observer_ != nullptr)
        observer_->String(offset_, text);
    Stored({RecordKind::String, found->second, textField}, value);
}

void PatchStore::StoreRename(std::string_view key, std::string_view value) {
    const std::string_view name = SkipBlanks(value);
    VisitKind(RenamedIn(section_), [&](const auto& kind) {
        using Record = RecordOf<decltype(kind)>;
        if constexpr (hasLumpName<Record>) {
            const std::string_view taken = name.substr(0, std::min(name.find_first_of(blanks), Record{}.name.size()));
            Record* record = taken.empty() ? nullptr : RecordToRename(kind, key);
            if (record == nullptr)
                return Ignore("is ignored: the engine has nothing of that name");
            PutLumpName(record->name, taken);
            if (observer_ != nullptr)
                observer_->Renamed(offset_, kind.kind, key, taken);
            Stored({kind.kind, index_, lumpNameField}, taken);
        }
    });
}

/// By its default name, of which engines without limits compare only as much as a name has; for these a sprite or sound
/// also by its number. Null when there is none; else `index_` is its number.
template <class Kind> RecordOf<Kind>* PatchStore::RecordToRename(const Kind& kind, std::string_view key) {
    const std::size_t compared = dialect_.unlimited ? RecordOf<Kind>{}.name.size() : key.size();
    const std::optional<std::int32_t> named = IndexByName(kind.In(defaults_), key.substr(0, compared));
    index_ = named.value_or(noRecord);
    const bool digits = !key.empty() && key.find_first_not_of("0123456789") == std::string_view::npos;
    if (!named && dialect_.unlimited && CanBeMade(kind.kind) && digits && LeadingReal(key) <= INT32_MAX)
        index_ = LeadingInt32(key);
    return FindOrMake(kind, index_);
}

void PatchStore::StoreHelper(std::string_view key, std::string_view value) {
    std::string_view rest = value;
    std::int32_t thing = 0;
    if (!EqualIgnoringCase(key, helperKey) || !TakeEngineNumber(rest, thing))
        return Ignore("is ignored: [HELPER] has only a line of the form \"type = 3\"");
    const bool mayBeMadeLater = dialect_.unlimited && thing > 0;
    if (thing == INT32_MIN || (set_.things.Find(thing - 1) == nullptr && !mayBeMadeLater))
        return Ignore("is ignored: it names a thing that the engine does not have");
    if (observer_ != nullptr)
        observer_->Number(offset_, FieldUnit::Thing, FieldWidth::Int32, SkipBlanks(value));
    set_.misc.helper = thing;
    Stored({RecordKind::Misc, 0, helperField}, value);
}

Status PatchStore::ReplaceText(std::int32_t oldLength, std::int32_t newLength, bool counts) {
    if (!dialect_.EngineRules())
        return ReplaceKeptText(oldLength, newLength, counts);
    ReplaceEngineText(oldLength, newLength);
    return {};
}

Status PatchStore::ReplaceKeptText(std::int32_t oldLength, std::int32_t newLength, bool counts) {
    const std::string oldText = lines_.Characters(oldLength);
    std::string newText = lines_.Characters(newLength);
    if (!counts)
        return {};
    const auto found = dialect_.keyedTexts ? TextIndex().end() : TextIndex().find(oldText);
    const bool cutOff = modPatchText::CountCharacters(oldText) < oldLength;
    if (cutOff || found == TextIndex().end())
        return Status::Failure("Could not find string replacement.");
    const std::int32_t length = modPatchText::CountCharacters(newText);
    if (length < newLength)
        Ignore("promises more characters than the patch holds");
    StringRecord& record = set_.strings[found->second];
    record.length = length;
    record.text = std::move(newText);
    if (observer_ != nullptr)
        observer_->Text(offset_, record.text.size(),
                        modPatchText::TextSpace(static_cast<std::int32_t>(oldText.size())));
    return {};
}

void PatchStore::ReplaceEngineText(std::int32_t oldLength, std::int32_t newLength) {
    const std::string oldText = lines_.EngineCharacters(oldLength);
    const std::string newText = lines_.EngineCharacters(newLength);
    if (observer_ != nullptr)
        observer_->Continued(offset_, lines_.Position());
    if (std::cmp_less(newText.size(), newLength))
        Ignore("promises more characters than the patch holds");
    if (RenameByText(oldText, newText))
        return;
    const auto found = TextIndex().find(oldText);
    if (found == TextIndex().end())
        return Ignore("is ignored: the engine has no text such as this one");
    StringRecord& record = set_.strings[found->second];
    record.text = newText;
    record.length = static_cast<std::int32_t>(newText.size());
    if (observer_ != nullptr)
        observer_->Text(offset_, newText.size(), modPatchText::TextSpace(static_cast<std::int32_t>(oldText.size())));
    Stored({RecordKind::String, found->second, textField}, {});
}

/// Sprites have names of four letters, sounds and music of up to six.
bool PatchStore::RenameByText(std::string_view oldText, std::string_view newText) {
    constexpr std::size_t spriteLength = 4, longest = 6;
    const auto rename = [&](auto& records, const auto& defaults, RecordKind kind) {
        const std::optional<std::int32_t> index = IndexByName(defaults, oldText);
        if (!index || records.Find(*index) == nullptr)
            return false;
        PutLumpName(records.Find(*index)->name, newText);
        if (observer_ != nullptr)
            observer_->Renamed(offset_, kind, oldText, newText);
        Stored({kind, *index, lumpNameField}, {});
        return true;
    };
    if (oldText.size() == spriteLength && newText.size() == spriteLength &&
        rename(set_.sprites, defaults_.sprites, RecordKind::Sprite))
        return true;
    if (oldText.size() > longest || newText.size() > longest)
        return false;
    return rename(set_.sounds, defaults_.sounds, RecordKind::Sound) ||
           rename(set_.music, defaults_.music, RecordKind::Music);
}

/// The engine's texts; of equal ones the first.
const std::unordered_map<std::string_view, std::int32_t>& PatchStore::TextIndex() {
    if (texts_.empty())
        for (const auto& [number, string] : defaults_.strings)
            texts_.try_emplace(string.text, number);
    return texts_;
}

// Par times

void PatchStore::StorePar(const ParRecord& par) {
    set_.pars.push_back(par);
    Stored({RecordKind::Par, static_cast<std::int32_t>(set_.pars.size()) - 1, listField}, {});
}

void PatchStore::StorePar(const HeaderWords& words) {
    if (words.Count() == 4)
        StorePar(ParRecord{PlainNumber(words[1]), PlainNumber(words[2]), PlainNumber(words[3])});
    else if (words.Count() == 3)
        StorePar(ParRecord{0, PlainNumber(words[1]), PlainNumber(words[2])});
    else
        Ignore("is ignored: two or three numbers must follow \"par\"");
}

void PatchStore::StoreEnginePar(std::string_view line) {
    constexpr std::string_view word = "par";
    std::array<std::int32_t, 3> numbers{};
    std::size_t count = 0;
    if (EqualIgnoringCase(line.substr(0, word.size()), word))
        for (std::string_view rest = line.substr(word.size());
             count < numbers.size() && TakeEngineNumber(rest, numbers[count]);)
            ++count;
    if (count == 3)
        StorePar(ParRecord{numbers[0], numbers[1], numbers[2]});
    else if (count == 2)
        StorePar(ParRecord{0, numbers[0], numbers[1]});
    else
        Ignore("is ignored: [PARS] has only lines of the form \"par 1 1 30\" or \"par 1 30\"");
}

} // namespace plinket3
