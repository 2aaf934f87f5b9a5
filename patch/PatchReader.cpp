#include "core/Files.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/LabelIndex.h"
#include "patch/PatchLines.h"
#include "patch/modPatchFiles.h"
#include "patch/modPatchText.h"

#include <array>
#include <unordered_map>
#include <utility>

namespace plinket3::modPatchFiles {

namespace {

enum class Section {
    Thing,
    Frame,
    Sound,
    Pointer,
    Weapon,
    Ammo,
    Cheat,
    Misc,
    CodePtr,
    Strings,
    Pars,
    Text,
    Unsupported
};

struct SectionWord {
    std::string_view word;
    Section section = Section::Unsupported;
};
using SectionWords = std::array<SectionWord, 14>;

constexpr SectionWords WordsOf(const Dialect& dialect) {
    return {{{dialect.things.word, Section::Thing},
             {dialect.states.word, Section::Frame},
             {dialect.sounds.word, Section::Sound},
             {dialect.pointers.word, Section::Pointer},
             {dialect.weapons.word, Section::Weapon},
             {dialect.ammo.word, Section::Ammo},
             {dialect.cheats, Section::Cheat},
             {dialect.misc, Section::Misc},
             {dialect.codePointers, Section::CodePtr},
             {dialect.strings, Section::Strings},
             {dialect.pars, Section::Pars},
             {dialect.texts, Section::Text},
             {dialect.unsupported[0], Section::Unsupported},
             {dialect.unsupported[1], Section::Unsupported}}};
}

/// The kind whose records a section selects by number; `Par` for the other sections.
RecordKind KindOf(Section section) {
    switch (section) {
    case Section::Thing:
        return RecordKind::Thing;
    case Section::Frame:
        return RecordKind::State;
    case Section::Sound:
        return RecordKind::Sound;
    case Section::Weapon:
        return RecordKind::Weapon;
    case Section::Ammo:
        return RecordKind::Ammo;
    default:
        return RecordKind::Par;
    }
}

/// Header lines that only the header scan reads.
constexpr std::array<std::string_view, 3> sessionKeys{"Engine config", "Data WAD", "IWAD"};

class PatchReader {
public:
    PatchReader(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults, PatchSet& set,
                ReadObserver* observer)
        : lines_(bytes), engine_(engine), dialect_(engine.dialect), words_(WordsOf(dialect_)),
          wordIndex_(words_, [](const SectionWord& entry) { return entry.word; }), defaults_(defaults), set_(set),
          observer_(observer) {}

    ReadResult Read() {
        Status status = ReadLines();
        return {std::move(status), offset_, unsupported_};
    }

private:
    Status ReadLines() {
        if (lines_.AtEnd() || Trim(lines_.Next()) != dialect_.firstLine)
            return Status::Failure("Invalid patch file.");
        while (!lines_.AtEnd()) {
            offset_ = lines_.Position();
            const std::string_view line = Trim(lines_.Next());
            if (observer_ != nullptr)
                observer_->Line(offset_, line);
            const std::size_t equals = line.find('=');
            Status status = equals == std::string_view::npos
                                ? HeaderLine(line)
                                : FieldLine(Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)));
            if (!status)
                return status;
        }
        DeriveMisc(set_.misc);
        return {};
    }

    bool VersionsKnown() const { return doomVersionKnown_ && patchFormatKnown_; }

    void Ignore(std::string_view reason) {
        if (observer_ != nullptr)
            observer_->Ignored(offset_, reason);
    }
    void IgnoreEarly() {
        Ignore("is ignored, because it stands before the lines \"Doom version\" and \"Patch format\"");
    }

    /// A number that is no field's value.
    std::int32_t PlainNumber(std::string_view text) {
        if (observer_ != nullptr)
            observer_->Number(offset_, FieldUnit::Number, FieldWidth::Int32, text);
        return LeadingInt32(text);
    }

    // Header lines

    Status HeaderLine(std::string_view line) {
        const HeaderWords words(line, dialect_.comment);
        if (words.Count() == 0)
            return {};
        const int place = wordIndex_.Find(words[0]);
        if (place < 0) {
            if (VersionsKnown() && section_ == Section::Pars && EqualIgnoringCase(words[0], "par"))
                Par(words);
            else if (VersionsKnown())
                Ignore("is ignored: it is neither a section that is known nor a line with \"=\"");
            else
                IgnoreEarly();
            return {};
        }
        const SectionWord& found = words_[static_cast<std::size_t>(place)];
        if (found.section == Section::Unsupported) {
            unsupported_ = true;
            Ignore("is not supported and will be lost when the patch is saved");
            return {};
        }
        if (VersionsKnown())
            section_ = found.section;
        if (found.section == Section::Text)
            return TextReplacement(PlainNumber(words[1]), PlainNumber(words[2]));
        if (!VersionsKnown()) {
            IgnoreEarly();
            return {};
        }
        if (observer_ != nullptr)
            observer_->Section(offset_, found.word);
        Select(words);
        return {};
    }

    void Select(const HeaderWords& words) {
        if (section_ == Section::Pointer)
            return SelectRecord(words[1], dialect_.pointers, engine_.codePointerStates.size());
        VisitKind(KindOf(section_), [this, &words](const auto& kind) {
            if (kind.section == nullptr)
                return;
            auto& records = kind.In(set_);
            SelectRecord(words[1], dialect_.*kind.section, records.size());
            if constexpr (isNamed<RecordOf<decltype(kind)>>)
                if (auto* record = RecordAt(records, index_); record != nullptr && words.Count() >= 3)
                    record->name = words[2];
        });
    }

    void SelectRecord(std::string_view number, const SectionRule& section, std::size_t count) {
        const std::int64_t index = std::int64_t{PlainNumber(number)} - section.firstRead;
        index_ = index >= 0 && index < static_cast<std::int64_t>(count) ? static_cast<std::int32_t>(index) : -1;
        if (index_ < 0)
            Ignore("has a number that the engine does not have, so its lines are ignored");
    }

    void Par(const HeaderWords& words) {
        if (words.Count() == 4)
            set_.pars.push_back({PlainNumber(words[1]), PlainNumber(words[2]), PlainNumber(words[3])});
        else if (words.Count() == 3)
            set_.pars.push_back({0, PlainNumber(words[1]), PlainNumber(words[2])});
        else
            Ignore("is ignored: two or three numbers must follow \"par\"");
    }

    Status TextReplacement(std::int32_t oldLength, std::int32_t newLength) {
        const std::string oldText = lines_.Characters(oldLength);
        std::string newText = lines_.Characters(newLength);
        if (!VersionsKnown()) {
            IgnoreEarly();
            return {};
        }
        const auto found = dialect_.keyedTexts ? texts_.end() : TextIndex().find(oldText);
        const bool cutOff = modPatchText::CountCharacters(oldText) < oldLength;
        if (cutOff || found == texts_.end())
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

    /// The engine's texts; of equal ones the first.
    const std::unordered_map<std::string_view, std::size_t>& TextIndex() {
        if (texts_.empty())
            for (std::size_t i = 0; i < defaults_.strings.size(); ++i)
                texts_.try_emplace(defaults_.strings[i].text, i);
        return texts_;
    }

    // Field lines

    Status FieldLine(std::string_view key, std::string_view value) {
        if (VersionsKnown() && StoreField(key, value)) {
            if (observer_ != nullptr)
                observer_->Field(offset_);
            return {};
        }
        if (EqualIgnoringCase(key, "Doom version")) {
            if (PlainNumber(value) != engine_.version)
                return Status::Failure("Patch file version does not match engine version.");
            doomVersionKnown_ = true;
        } else if (EqualIgnoringCase(key, "Patch format")) {
            if (PlainNumber(value) != dialect_.patchFormat)
                return Status::Failure("Unsupported patch format.");
            patchFormatKnown_ = true;
        } else if (observer_ != nullptr && !key.starts_with(dialect_.comment) && !IsSessionKey(key)) {
            if (VersionsKnown())
                Ignore(UnknownKey());
            else
                IgnoreEarly();
        }
        return {};
    }

    std::string_view UnknownKey() const {
        switch (section_) {
        case Section::Strings:
            return "is ignored: the engine has no string of that name";
        case Section::CodePtr:
            return "is ignored: [CODEPTR] has only lines of the form \"Frame 1 = NAME\"";
        case Section::Pars:
            return "is ignored: [PARS] has only lines of the form \"par 1 1 30\" or \"par 1 30\"";
        case Section::Text:
            return "is ignored: a text has ended here, and no other section begins";
        default:
            return "is ignored: this section has no such field";
        }
    }

    static bool IsSessionKey(std::string_view key) {
        for (const std::string_view known : sessionKeys)
            if (EqualIgnoringCase(key, known))
                return true;
        return false;
    }

    /// False when the section does not know the key.
    bool StoreField(std::string_view key, std::string_view value) {
        switch (section_) {
        case Section::Misc:
            return StoreNumber(&set_.misc, key, value);
        case Section::Pointer:
            return StorePointer(key, value);
        case Section::Cheat:
            return StoreCheat(key, value);
        case Section::CodePtr:
            return StoreCodePointer(key, value);
        case Section::Strings:
            return StoreString(key, value);
        default:
            return StoreRecordNumber(key, value);
        }
    }

    bool StoreRecordNumber(std::string_view key, std::string_view value) {
        bool known = false;
        VisitKind(KindOf(section_), [&](const auto& kind) {
            if constexpr (!fieldTable<RecordOf<decltype(kind)>>.empty())
                known = StoreNumber(RecordAt(kind.In(set_), index_), key, value);
        });
        return known;
    }

    template <class Record> bool StoreNumber(Record* record, std::string_view key, std::string_view value) {
        const Field<Record>* field = FindField<Record>(key);
        if (field == nullptr || field->since > dialect_.fields)
            return false;
        if (record == nullptr)
            return true;
        record->*field->member =
            field->unit == FieldUnit::Flags ? Bits(field->bits, value) : FitWidth(*field, LeadingInt32(value));
        if (observer_ != nullptr && !(field->unit == FieldUnit::Flags && !IsBitsNumber(value)))
            observer_->Number(offset_, field->unit, field->width, value);
        return true;
    }

    static bool IsBitsNumber(std::string_view value) { return value == "0" || LeadingReal(value) > 0; }

    std::int32_t Bits(BitSet set, std::string_view value) {
        if (IsBitsNumber(value)) {
            const double number = LeadingReal(value);
            if (number > INT32_MAX && number <= UINT32_MAX)
                return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
            return RoundToInt32(number);
        }
        if (observer_ != nullptr)
            observer_->FlagNames(offset_, value);
        const std::string names = ToUpper(value);
        std::int32_t bits = 0;
        const std::vector<std::string>& known = engine_.BitNames(set);
        for (std::size_t bit = 0; bit < known.size(); ++bit)
            if (!known[bit].empty() && names.find(known[bit]) != std::string::npos)
                bits = modPatchText::SetFlag(bits, static_cast<int>(bit));
        return bits;
    }

    bool StorePointer(std::string_view key, std::string_view value) {
        if (!EqualIgnoringCase(key, "Codep Frame"))
            return false;
        if (index_ < 0)
            return true;
        const std::int32_t target = engine_.codePointerStates[static_cast<std::size_t>(index_)];
        const StateRecord* source = RecordAt(set_.states, PlainNumber(value));
        if (source == nullptr)
            Ignore("is ignored: it names a frame that the engine does not have");
        else
            StoreCodePointer(target, source->action);
        return true;
    }

    bool StoreCodePointer(std::string_view key, std::string_view value) {
        constexpr std::string_view frame = "Frame ";
        if (!EqualIgnoringCase(key.substr(0, frame.size()), frame))
            return false;
        if (const auto codePointer = engine_.CodePointerOf(value))
            StoreCodePointer(PlainNumber(Trim(key.substr(frame.size()))), *codePointer);
        else if (observer_ != nullptr)
            Ignore("is ignored: the engine knows no code pointer \"" + std::string(value) + "\"");
        return true;
    }

    void StoreCodePointer(std::int32_t state, std::int32_t codePointer) {
        StateRecord* record = RecordAt(set_.states, state);
        if (record == nullptr) {
            Ignore("is ignored: it names a frame that the engine does not have");
            return;
        }
        record->codePointer = codePointer;
        if (observer_ != nullptr)
            observer_->CodePointer(offset_, state);
    }

    bool StoreCheat(std::string_view key, std::string_view value) {
        static const LabelIndex<64> index(cheatLabels, [](std::string_view label) { return label; });
        const int place = index.Find(key);
        if (place < 0)
            return false;
        CheatRecord* cheat = RecordAt(set_.cheats, place);
        if (cheat == nullptr)
            return true;
        cheat->text = modPatchText::UnpadCheat(value);
        const std::int32_t space = cheat->maximumLength & 0xffff;
        if (observer_ != nullptr && space > 0)
            observer_->Text(offset_, cheat->text.size(), space);
        return true;
    }

    bool StoreString(std::string_view key, std::string_view value) {
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
        if (found == keys_.end())
            return false;
        if (StringRecord* record = RecordAt(set_.strings, found->second)) {
            record->text = modPatchText::UnescapeText(text);
            record->length = static_cast<std::int32_t>(record->text.size());
            if (observer_ != nullptr)
                observer_->String(offset_, text);
        }
        return true;
    }

    const std::unordered_map<std::string, std::int32_t>& StringIndex() {
        if (keys_.empty())
            for (std::size_t i = 0; i < engine_.strings.size(); ++i)
                keys_.try_emplace(ToUpper(engine_.strings[i].mnemonic), static_cast<std::int32_t>(i));
        return keys_;
    }

    PatchLines lines_;
    const EngineConfiguration& engine_;
    const Dialect& dialect_;
    SectionWords words_;
    LabelIndex<32> wordIndex_;
    const PatchSet& defaults_;
    PatchSet& set_;
    ReadObserver* observer_;

    std::size_t offset_ = 0; // of the line that is being read
    Section section_ = Section::Thing;
    std::int32_t index_ = 0; // of the selected record; -1 for one that the engine does not have
    bool doomVersionKnown_ = false, patchFormatKnown_ = false, unsupported_ = false;
    std::unordered_map<std::string_view, std::size_t> texts_;
    std::unordered_map<std::string, std::int32_t> keys_;
};

} // namespace

ReadResult ParsePatch(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults,
                      PatchSet& set, ReadObserver* observer) {
    set = defaults;
    set.pars.clear();
    return PatchReader(bytes, engine, defaults, set, observer).Read();
}

bool ReadPatch(Notifier& notifier, const std::filesystem::path& file, Session& session) {
    std::string bytes;
    if (const Status status = ReadWholeFile(file, bytes); !status) {
        notifier.Show(MessageKind::Exclamation, "Could not read " + file.string() + ": " + status.Reason());
        return false;
    }
    PatchSet set;
    const ReadResult result = ParsePatch(bytes, session.engine, session.patch.defaults, set);
    if (!result.status) {
        notifier.Show(MessageKind::Exclamation, result.status.Reason());
        return false;
    }
    session.patch.current = std::move(set);
    session.patch.fileName = file;
    session.patch.named = true;
    session.patch.changed = false;
    if (result.unsupported)
        notifier.Show(MessageKind::Exclamation, unsupportedEntries);
    return true;
}

} // namespace plinket3::modPatchFiles
