#include "patch/DocumentValues.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/PatchNotes.h"
#include "patch/StepNames.h"
#include "patch/modPatchText.h"

#include <algorithm>

namespace plinket3 {

std::string DocumentValues::ValueText(const Cell& cell, bool names, std::string_view old) {
    if (cell.kind == RecordKind::Cheat) {
        std::string text = std::get<std::string>(ReadCell(current_, cell));
        if (text != modPatchText::UnpadCheat(text) || text.find_first_of("\r\n") != std::string::npos)
            Fail(cell, "cannot be written so that it reads back: it begins or ends with blanks or has several lines");
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

std::string DocumentValues::TextFieldText(const Cell& cell, const std::string& text) {
    if (text.empty())
        Fail(cell, "cannot be empty: the engine has a name there");
    else if (std::ranges::any_of(text, [this](char each) { return each <= ' ' || each == dialect_.comment; }))
        Fail(cell, "must be one word");
    return text;
}

std::string DocumentValues::LumpName(const Cell& cell) {
    std::string name = std::get<std::string>(ReadCell(current_, cell));
    const bool sprite = cell.kind == RecordKind::Sprite;
    if (name.empty() || (sprite && name.size() != SpriteRecord{}.name.size()) ||
        std::ranges::any_of(name, [](char each) { return each <= ' '; }))
        Fail(cell, sprite ? "must have four letters" : "must have one to six letters");
    return name;
}

/// By name in [CODEPTR], where `old` is a name or there is no such line yet; by a state that has it in a Pointer
/// section.
std::string DocumentValues::CodePointerText(const Cell& cell, std::int32_t codePointer, std::string_view old) {
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

const PointerTargets& DocumentValues::Targets() {
    if (!targets_)
        targets_.emplace(defaults_.states, engine_.codePointerStates);
    return *targets_;
}

std::string DocumentValues::StringText(const Cell& cell) {
    const std::optional<std::string> escaped = EngineEscape(current_.strings[cell.index].text, end_);
    if (!escaped)
        Fail(cell, "cannot be written so that game engines read it back: it is empty, begins or ends with blanks, "
                   "or has a backslash at its end or before an \"n\"");
    return escaped.value_or(std::string());
}

std::string DocumentValues::TextEntry(const Cell& cell) {
    if (cell.field == lumpNameField) {
        const std::string old = NameInTexts(defaults_, cell.kind, cell.index);
        if (old.empty())
            Fail(cell, "cannot be another one: the engine has another of that name");
        return TextEntry(old, LumpName(cell));
    }
    return TextEntry(defaults_.strings[cell.index].text, current_.strings[cell.index].text);
}

std::string DocumentValues::TextEntry(const std::string& old, const std::string& text) const {
    return std::string(dialect_.texts) + " " + std::to_string(old.size()) + " " + std::to_string(text.size()) +
           std::string(end_) + ReplaceAll(old + text, "\n", end_);
}

std::string DocumentValues::ParLine(const ParRecord& par) const {
    return "par " + (par.episode != 0 ? std::to_string(par.episode) + " " : std::string()) + std::to_string(par.map) +
           " " + std::to_string(par.seconds);
}

std::string DocumentValues::NewLines(const Cell& cell) {
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
        return std::string(dialect_.states.word) + " " + std::to_string(cell.index) + " = " + ValueText(cell, false) +
               end;
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

std::string DocumentValues::HeaderText(const SectionPlace& place, bool named) {
    const std::string end(end_), number = std::to_string(place.record);
    std::string header;
    switch (place.section) {
    case Section::Text:
        return {};
    case Section::Pointer:
        return std::string(dialect_.pointers.word) + " " + std::to_string(Targets().PointerOf(place.record)) + " (" +
               std::string(dialect_.states.word) + " " + number + ")" + end;
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
            const bool hasName = !name.empty() || !IsMade(kind.kind, place.record);
            if ((named && hasName) || name != RecordOrNew(kind.In(defaults_), place.record)->name)
                header += " (" + name + ")";
        }
    });
    return header + end;
}

std::vector<std::string> DocumentValues::NoteOf(const Cell& cell) {
    std::vector<std::string> lines = CommentLines(std::get<std::string>(ReadCell(current_, cell)));
    for (const std::string& line : lines)
        if (IsForPrograms(line) || line.find('\r') != std::string::npos)
            Fail(cell, "cannot be written: a line of it would mean something to game engines, or holds a carriage "
                       "return");
    return lines;
}

bool DocumentValues::IsMade(RecordKind kind, std::int32_t number) const {
    return !HasRecord(defaults_, kind, number) && HasRecord(current_, kind, number);
}

void DocumentValues::Fail(const Cell& cell, std::string_view reason) {
    if (status_)
        status_ = Status::Failure("the " + CellsName(current_, {cell}, {}) + " " + std::string(reason));
}

} // namespace plinket3
