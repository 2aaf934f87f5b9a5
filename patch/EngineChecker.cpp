#include "patch/EngineChecker.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/LabelIndex.h"
#include "patch/NumberRanges.h"
#include "patch/PatchNotes.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace plinket3::modPatchCheck {

namespace {

using Kind = plinket3::Section;

constexpr std::size_t longestLine = 1022, longestText = 2047; // that engines read
constexpr std::int32_t endlessNumber = 1 << 30;
constexpr std::int32_t bfg = 6; // among the weapons
constexpr int shootableBit = 2, noBlockmapBit = 4;
constexpr std::int32_t firstBuiltIn = -1879048192; // of the records that ID24 has
constexpr std::string_view groupBelowZero = "is a group below 0, at which dsda-doom and woof refuse to start";
constexpr std::array<std::int32_t, 7> versions{16, 17, 19, 20, 21, 2021, 2024};

/// Fields that engines have which this program does not know.
struct OtherField {
    Kind section;
    std::string_view key, who;
};
constexpr std::array otherFields{
    OtherField{Kind::Thing, "Blood color", "Eternity, DSDA-Doom, Woof and Doom Retro know it"},
    OtherField{Kind::Thing, "Woof Bits", "Woof knows it"},
    OtherField{Kind::Thing, "Obituary", "Woof and Doom Retro know it"},
    OtherField{Kind::Thing, "Melee obituary", "Woof and Doom Retro know it"},
    OtherField{Kind::Thing, "Self obituary", "Woof and Doom Retro know it"},
    OtherField{Kind::Thing, "Gib health", "Doom Retro knows it"},
    OtherField{Kind::Thing, "Pickup width", "Doom Retro knows it"},
    OtherField{Kind::Thing, "Retro bits", "Doom Retro knows it"},
    OtherField{Kind::Thing, "Projectile pass height", "Doom Retro knows it"},
    OtherField{Kind::Thing, "Fullbright", "Doom Retro knows it"},
    OtherField{Kind::Thing, "Shadow offset", "Doom Retro knows it"},
    OtherField{Kind::Thing, "Bits2", "Eternity knows it"},
    OtherField{Kind::Weapon, "Name", "Doom Retro knows it"},
    OtherField{Kind::Weapon, "Decal", "ZDoom knows it"},
    OtherField{Kind::Weapon, "Ammo use", "ZDoom knows it"},
    OtherField{Kind::Weapon, "Min ammo", "ZDoom knows it"},
};

/// By `FieldLevel`, of fields that came later.
constexpr std::array<std::string_view, 4> whoKnows{"", "engines with DEHEXTRA know it", "MBF21 engines know it",
                                                   "engines with ID24 know it"};

/// Who knows a field that the engine does not have; empty for one that nobody does.
std::string_view WhoKnows(Kind section, std::string_view key) {
    FieldLevel level = FieldLevel::Doom;
    VisitKind(KindOf(section), [&]<class Each>(const Each&) {
        if constexpr (!fieldTable<RecordOf<Each>>.empty())
            if (const auto* field = FindField<RecordOf<Each>>(key))
                level = field->since;
    });
    for (const TextField& text : textFields)
        if (text.kind == KindOf(section) && EqualIgnoringCase(text.label, key))
            level = text.since;
    const auto* found = std::ranges::find_if(otherFields, [&](const OtherField& each) {
        return each.section == section && EqualIgnoringCase(each.key, key);
    });
    return found != otherFields.end() ? found->who : whoKnows[static_cast<std::size_t>(level)];
}

bool IsArgument(std::string_view key) {
    constexpr std::string_view word = "Args";
    return key.size() == word.size() + 1 && EqualIgnoringCase(key.substr(0, word.size()), word) && key.back() >= '1' &&
           key.back() <= '8';
}

/// The digits at the start of `number`, behind a sign; hexadecimal ones behind 0x.
std::size_t DigitsEnd(std::string_view number, std::size_t sign, bool hexadecimal) {
    const std::size_t begin = sign + (hexadecimal ? 2 : 0);
    return std::min(number.find_first_not_of(hexadecimal ? "0123456789abcdefABCDEF" : "0123456789", begin),
                    number.size());
}

} // namespace

// Lines

void EngineChecker::FirstLine() {
    const std::string_view line = LineFrom(0);
    constexpr std::array<std::string_view, 2> known{"Patch File for DeHackEd v3.0", "Patch File for DeHackEd v2.3"};
    const auto isFirst = [line](std::string_view each) { return line.starts_with(each); };
    if (!engine_.dialect.IsExtended() && std::ranges::none_of(known, isFirst))
        Add(0, "is not \"Patch File for DeHackEd v3.0\", letter by letter: Chocolate Doom refuses the patch",
            Severity::Refused);
}

void EngineChecker::Line(std::size_t offset, std::string_view text) {
    if (offset == 0)
        FirstLine();
    if (text.size() > longestLine)
        Add(offset, "has more than " + std::to_string(longestLine) +
                        " characters: dsda-doom and woof take the rest for another line");
    const bool comment = text.starts_with(engine_.dialect.comment);
    if (endsSection_ || text.empty() || (comment && section_ == Kind::CodePtr))
        section_ = IsBracketed(section_) && section_ != Kind::CodePtr ? section_ : Kind::None;
    endsSection_ = LineFrom(offset).starts_with(' ');
    if (!comment)
        CheckVersions(offset, text);
}

void EngineChecker::CheckVersions(std::size_t offset, std::string_view line) {
    const auto [key, value] = EnginePair(line);
    const std::int32_t number = EngineInt32(value);
    if (EqualIgnoringCase(Trim(key), "Doom version") && std::ranges::find(versions, number) == versions.end())
        Add(offset, "names a version that no engine has: there are 16, 17, 19, 20, 21, 2021 and 2024", Severity::Odd);
    else if (EqualIgnoringCase(Trim(key), "Patch format") && number != engine_.dialect.patchFormat)
        Add(offset,
            "names another format than " + std::to_string(engine_.dialect.patchFormat) +
                "; engines read the patch as if it had that one",
            Severity::Odd);
}

void EngineChecker::Ignored(std::size_t offset, std::string_view reason) {
    const std::string_view line = LineFrom(offset);
    const bool noPair = reason.find(" of the form ") != std::string_view::npos;
    if (noPair && line.find('=') == std::string_view::npos && words_.Beginning(line) != nullptr &&
        (line.starts_with('[') || line.find_first_of("0123456789") != std::string_view::npos))
        return Add(offset, "looks like a header, but no empty line stands before it: engines take it, and the lines "
                           "behind it, for lines of the section before");
    if (section_ == Kind::CodePtr && reason.find("knows no code pointer") != std::string_view::npos)
        otherActions_.insert(EngineInt32(line.substr(std::min(line.find(' '), line.size()))));
    if (reason.ends_with("no such field"))
        return UnknownField(offset, reason);
    Add(offset, std::string(reason) + OtherEngineFor(line));
}

/// Names the engine that has a record which this one does not have, at the end of a sentence; nothing when none has.
std::string EngineChecker::OtherEngineFor(std::string_view line) const {
    const bool names = section_ == Kind::Sprites || section_ == Kind::Sounds, states = section_ == Kind::CodePtr;
    const HeaderWords words(line, engine_.dialect.comment);
    const std::string_view word = names ? words[0] : words[1];
    if (word.empty() || word.find_first_not_of("0123456789", word.starts_with('-') ? 1 : 0) != std::string_view::npos ||
        LeadingReal(word) > INT32_MAX)
        return {};
    const std::int64_t told = std::int64_t{LeadingInt32(word)} - (section_ == Kind::Thing ? 1 : 0);
    if (told < INT32_MIN)
        return {};
    const auto number = static_cast<std::int32_t>(told);
    const auto beyond = [number](const auto& records) { return records.IsBeyond(number); };
    const bool isBeyond = names ? section_ == Kind::Sprites ? beyond(defaults_.sprites) : beyond(defaults_.sounds)
                          : section_ == Kind::Thing           ? beyond(defaults_.things)
                          : section_ == Kind::Sound           ? beyond(defaults_.sounds)
                          : section_ == Kind::Frame || states ? beyond(defaults_.states)
                                                              : false;
    if (isBeyond && !engine_.dialect.unlimited)
        return "; that needs dsdhacked";
    const bool own = number < 0 && OwnerOfNumber(number) == OwnerOfNumber(firstBuiltIn);
    return own && engine_.dialect.fields < FieldLevel::Id24 ? "; that needs id24" : std::string();
}

/// A field that the engine does not have; others may.
void EngineChecker::UnknownField(std::size_t offset, std::string_view reason) {
    const auto [key, value] = EnginePair(LineFrom(offset));
    const std::int32_t number = EngineInt32(value);
    if (section_ == Kind::Frame && IsArgument(key) && number != 0 && state_ != noRecord)
        arguments_.try_emplace(state_, offset);
    const bool group = EqualIgnoringCase(key, "Infighting group") || EqualIgnoringCase(key, "Splash group");
    if (section_ == Kind::Thing && group && number < 0)
        return Add(offset, groupBelowZero, Severity::Refused);
    const std::string_view who = WhoKnows(section_, key);
    Add(offset, std::string(reason) + (who.empty() ? "" : "; " + std::string(who)));
}

// Sections

void EngineChecker::Section(std::size_t offset, std::string_view word) {
    section_ = words_.Named(word)->section;
    header_ = offset;
    state_ = noRecord;
    const std::string_view line = LineFrom(offset);
    if (section_ == Kind::Frame && line.find('=') < line.find('('))
        Add(offset, "is taken for the header of a frame: [CODEPTR] has ended before it");
    CheckNumberOf(offset, line, section_);
}

/// What engines do with numbers that no table has.
void EngineChecker::CheckNumberOf(std::size_t offset, std::string_view line, Kind section) {
    const HeaderWords words(line, engine_.dialect.comment);
    if (section == Kind::Text) {
        const std::int64_t together = std::int64_t{EngineInt32(words[1])} + EngineInt32(words[2]);
        if (together > static_cast<std::int64_t>(longestText))
            Add(offset,
                "has texts of " + std::to_string(together) + " characters together: dsda-doom and woof crash beyond " +
                    std::to_string(longestText),
                Severity::Refused);
        return;
    }
    const std::int32_t number = EngineInt32(words[1]);
    const bool beyond = (section == Kind::Weapon && std::cmp_greater_equal(number, defaults_.weapons.DenseSize())) ||
                        (section == Kind::Ammo && std::cmp_greater_equal(number, defaults_.ammo.DenseSize()));
    if (beyond)
        Add(offset,
            "is beyond the engines' tables: dsda-doom and woof write into other memory, the newest woof "
            "refuses it",
            Severity::Refused);
    else if (section == Kind::Thing && words.Count() > 1 &&
             (number == 0 || (number < 0 && engine_.dialect.fields < FieldLevel::Id24)))
        Add(offset,
            "is no thing, they count from 1: dsda-doom and woof write into other memory, the newest woof "
            "refuses it",
            Severity::Refused);
    else if ((section == Kind::Thing || section == Kind::Frame || section == Kind::Sound) && number >= endlessNumber)
        Add(offset, "has a number so large that dsda-doom and woof never finish reading", Severity::Refused);
}

void EngineChecker::Selected(std::size_t offset, RecordKind kind, std::int32_t index) {
    CheckFindings::Selected(offset, kind, index);
    state_ = kind == RecordKind::State ? index : noRecord;
    if (kind == RecordKind::Sound && !defaults_.sounds.Has(index))
        madeSounds_.try_emplace(index, offset);
}

// Values

void EngineChecker::Stored(std::size_t offset, const Cell& cell, std::string_view value) {
    CheckFindings::Stored(offset, cell, value);
    if (cell.kind == RecordKind::Par) {
        pars_.push_back(offset);
        return;
    }
    const auto [before, isNew] = setBy_.try_emplace(cell, offset);
    if (!isNew) {
        Add(before->second, "has no effect: a later line sets the same value again", Severity::Odd);
        before->second = offset;
    }
    const std::string_view line = LineFrom(offset);
    const std::size_t equals = line.find('=');
    const bool lumpName = cell.field == lumpNameField;
    if (section_ != Kind::CodePtr && section_ != Kind::Text && !lumpName && equals != std::string_view::npos &&
        equals > 0 && line[equals - 1] != ' ' && line[equals - 1] != '\t')
        Add(offset, "has no blank before \"=\": dsda-doom and woof 10 lose its last letter and so the line, the newest "
                    "woof reads it");
    if (!IsBracketed(section_) && line.starts_with(' ')) {
        const std::size_t next = bytes_.find('\n', offset);
        if (next != std::string_view::npos && !Trim(LineFrom(next + 1)).empty())
            Add(offset, "begins with a blank, which ends its section: the next line belongs to none");
    }
    if (cell.kind == RecordKind::Sound && cell.field == RowOf(&SoundRecord::zero1) && !engine_.dialect.IsExtended())
        Add(offset, "is a field at which Chocolate Doom 3.0 stops", Severity::Refused);
    if (cell.field >= 0 && FactsOf(cell.kind, cell.field).since != FieldLevel::Doom)
        CheckLaterField(offset, cell, value);
    constexpr std::size_t longestLump = 8;
    if (const TextField* text = TextFieldAt(cell.field);
        text != nullptr && text->unit == TextField::Unit::LumpName && value.size() > longestLump)
        Add(offset, "names a lump with more than " + std::to_string(longestLump) + " letters, which no WAD has");
}

void EngineChecker::CheckLaterField(std::size_t offset, const Cell& cell, std::string_view value) {
    const RowFacts facts = FactsOf(cell.kind, cell.field);
    const std::int32_t number = EngineInt32(value);
    if (cell.kind == RecordKind::Thing && facts.mayBeUnset && number < facts.limits.lowest)
        Add(offset, groupBelowZero, Severity::Refused, Unset{});
    else if (facts.since == FieldLevel::Id24 && facts.unit != FieldUnit::Truth && number != facts.limits.Apply(number))
        Add(offset,
            "is not within " + std::to_string(facts.limits.lowest) + " to " + std::to_string(facts.limits.highest),
            Severity::Wrong, facts.limits.Apply(number));
    if (facts.unit == FieldUnit::Flags && !modPatchText::AllNamed(engine_.BitNames(facts.bits), number))
        Add(offset, "sets bits without a meaning, which dsda-doom drops");
}

void EngineChecker::Number(std::size_t offset, FieldUnit unit, FieldWidth, std::string_view text) {
    const std::string_view number = Trim(text);
    const std::size_t sign = number.starts_with('-') || number.starts_with('+') ? 1 : 0;
    const auto digit = [number](std::size_t at) {
        return at < number.size() && number[at] >= '0' && number[at] <= '9';
    };
    const bool hexadecimal =
        digit(sign) && number[sign] == '0' && sign + 1 < number.size() && ToLower(number[sign + 1]) == 'x';
    const std::size_t end = DigitsEnd(number, sign, hexadecimal);
    const std::string_view rest = Trim(number.substr(end));
    const std::int32_t value = EngineInt32(number);
    const std::string read = std::to_string(value);
    if (unit == FieldUnit::Truth && (EqualIgnoringCase(number, "true") || EqualIgnoringCase(number, "false")))
        return Add(offset, "is a word that some engines read as 0: write 1 or 0");
    if (!digit(sign))
        Add(offset, "holds no number and is read as 0");
    else if (hexadecimal)
        Add(offset, "is hexadecimal, " + read + ", where the newest woof reads 0", Severity::Odd);
    else if (number[sign] == '0' && digit(sign + 1) && value != LeadingInt32(number))
        Add(offset, "is octal for dsda-doom, " + read + ", where the newest woof reads decimals", Severity::Odd);
    else if (rest.starts_with('.'))
        Add(offset, "holds a fraction and is read as " + read);
    else if (!rest.empty() && !rest.starts_with(engine_.dialect.comment) && offset != header_)
        Add(offset, "is read only up to " + Quoted(rest));
    const double exact = hexadecimal ? 0 : LeadingReal(number);
    const bool mayBeBits = unit == FieldUnit::Flags || unit == FieldUnit::Argument;
    if (exact < INT32_MIN || exact > UINT32_MAX || (exact > INT32_MAX && !mayBeBits))
        Add(offset, "holds a number beyond 32 bits and is read as " + read);
    Reference(offset, unit, value);
}

void EngineChecker::FlagNames(std::size_t offset, BitSet set, std::string_view text) {
    if (!engine_.dialect.namedBits)
        Add(offset, "names flags, which Chocolate Doom reads as 0");
    if (!IsWrittenByName(set))
        Add(offset, "names bits of a weapon, which the newest woof reads as 0: write the number");
    for (const std::string_view word : BitWords(text))
        if (!BitNamed(engine_, set, word))
            Add(offset, "names a flag that the engine does not know, " + Quoted(word));
}

// Texts

void EngineChecker::Renamed(std::size_t offset, RecordKind kind, std::string_view, std::string_view to) {
    const std::size_t longest = kind == RecordKind::Sprite ? SpriteRecord{}.name.size() : SoundRecord{}.name.size();
    const std::string_view line = LineFrom(offset);
    const std::string_view rest = SkipBlanks(line.substr(std::min(line.find('='), line.size() - 1) + 1));
    if ((section_ == Kind::Sprites || section_ == Kind::Sounds) && to.size() < longest && rest.size() > to.size())
        Add(offset, "has blanks behind its name, which dsda-doom and woof 10 take for a part of it");
}

void EngineChecker::OtherString(std::size_t offset, std::string_view key, std::string_view) {
    constexpr std::string_view patchString = "USER_"; // which patches make by giving them a text
    const std::string name = ToUpper(Trim(key));
    otherStrings_.insert(name);
    if (engine_.dialect.fields < FieldLevel::Id24 || !name.starts_with(patchString))
        Add(offset, "names a string that the engine does not have, " + Quoted(key) + "; it is kept", Severity::Odd);
}

void EngineChecker::Text(std::size_t offset, std::size_t length, std::int32_t space) {
    if (std::cmp_less_equal(length, space) || engine_.dialect.IsExtended())
        return;
    const bool cheat = section_ == Kind::Cheat;
    const std::string_view comment = cheat ? "*allow-long-cheats*" : "*allow-long-strings*";
    if (!AllowsLong(comment))
        Add(offset,
            "puts " + std::to_string(length) + " characters where the original has room for " + std::to_string(space) +
                ", " + (cheat ? "of which Chocolate Doom warns" : "at which Chocolate Doom stops") +
                " without a comment with " + std::string(comment),
            cheat ? Severity::Odd : Severity::Refused);
}

void EngineChecker::Continued(std::size_t offset, std::size_t end) {
    continuedTo_ = end;
    if (section_ != Kind::Text || end >= bytes_.size())
        return;
    if (const std::string_view rest = Trim(LineFrom(end)); !rest.empty())
        Add(offset, "has lengths that end within a line, before " + Quoted(rest));
}

void EngineChecker::String(std::size_t offset, std::string_view) {
    Escapes(offset, std::max(continuedTo_, offset + LineFrom(offset).size()));
}

void EngineChecker::Finish(const PatchSet& set) {
    FinishReferences(set);
    for (std::size_t i = 0; i < pars_.size() && i < set.pars.size(); ++i) {
        const ParRecord& par = set.pars[i];
        const bool exists = par.episode == 0 ? par.map >= 1 && par.map <= 32
                                             : par.episode >= 1 && par.episode <= 3 && par.map >= 1 && par.map <= 9;
        const bool newer = par.episode == 0 ? par.map >= 1 && par.map <= 34
                                            : par.episode >= 1 && par.episode <= 6 && par.map >= 1 && par.map <= 9;
        if (!exists)
            Add(pars_[i],
                newer ? "is for a level that dsda-doom and woof 10 refuse, but the newest woof has"
                      : "is for a level that no engine has",
                newer ? Severity::Refused : Severity::Wrong);
    }
    FinishArguments(set);
    FinishAmmoPerShot(set);
    FinishThings(set);
    FinishNames(set);
    FinishRaisedWeapon(set);
    for (const FrameFinding& finding : FindingsOfFrames(
             set, engine_, [this](const Cell& cell) { return LineOf(cell); }, hasPicture_))
        Add(finding.offset, finding.reason, finding.severity);
    for (const auto& [state, offset] : arguments_)
        if (!otherActions_.contains(state))
            Add(offset, "gives an argument to an action that takes none: dsda-doom and woof refuse to start",
                Severity::Refused);
}

/// Numbers that an action takes from its state, and those that none takes.
void EngineChecker::FinishArguments(const PatchSet& set) {
    for (const auto& [cell, offset] : setBy_)
        if (cell.kind == RecordKind::State && cell.field >= 0)
            CheckArgument(offset, std::get<std::int32_t>(ReadCell(set, {cell.kind, cell.index, codePointerField})),
                          FactsOf(cell.kind, cell.field), std::get<std::int32_t>(ReadCell(set, cell)));
}

void EngineChecker::CheckArgument(std::size_t offset, std::int32_t codePointer, const RowFacts& field,
                                  std::int32_t value) {
    using Argument = EngineConfiguration::Argument;
    const EngineConfiguration::Action* action = engine_.ActionOf(codePointer);
    static const std::vector<Argument> none;
    const std::vector<Argument>& arguments = action == nullptr ? none : action->arguments;
    const auto argument = std::ranges::find(arguments, field.label, &Argument::field);
    if (argument == arguments.end()) {
        if (field.unit == FieldUnit::Argument && value != 0)
            Add(offset,
                codePointer == 0 ? "gives an argument to a frame without an action: dsda-doom and woof refuse to start"
                                 : "gives an argument that the action " + (action == nullptr ? "" : action->mnemonic) +
                                       " does not take: dsda-doom and woof refuse to start",
                Severity::Refused, Unset{});
        return;
    }
    if (value == 0 && argument->zero.find("crash") != std::string::npos)
        Add(offset,
            "is 0 where the action " + action->mnemonic + " takes \"" + argument->name + "\": " + argument->zero,
            Severity::Refused);
    if (argument->kind == Argument::Kind::Thing)
        Reference(offset, FieldUnit::Thing, value);
    else if (argument->kind == Argument::Kind::State)
        Reference(offset, FieldUnit::State, value);
    else if (argument->kind == Argument::Kind::Sound)
        Reference(offset, FieldUnit::Sound, value);
}

/// What a shot of the BFG takes can be said in two places.
void EngineChecker::FinishAmmoPerShot(const PatchSet& set) {
    const std::size_t* weapon = LineOf({RecordKind::Weapon, bfg, RowOf(&WeaponRecord::ammoPerShot)});
    const std::size_t* misc = LineOf({RecordKind::Misc, 0, RowOf(&MiscRecord::bfgCells)});
    if (weapon == nullptr || misc == nullptr || set.weapons[bfg].ammoPerShot == set.misc.bfgCells)
        return;
    Add(*weapon,
        *misc < *weapon ? "is another number than \"BFG Cells/Shot\" has, which stands before it: dsda-doom "
                          "and woof refuse to start"
                        : "has no effect: \"BFG Cells/Shot\", which stands behind it, has another number",
        *misc < *weapon ? Severity::Refused : Severity::Wrong, set.misc.bfgCells);
}

/// What values of a thing mean together, as far as the patch has set one of them.
void EngineChecker::FinishThings(const PatchSet& set) {
    const auto isPlaced = [](std::int32_t id) { return id != 0 && id != -1; };
    std::unordered_map<std::int32_t, std::vector<std::int32_t>> byId;
    for (const auto& [number, thing] : set.things)
        if (isPlaced(thing.id))
            byId[thing.id].push_back(number);
    for (const auto& each : set.things) {
        const std::int32_t index = each.number;
        const ThingRecord& thing = each.record;
        const auto lineOf = [&](std::int32_t ThingNumbers::*member) {
            return LineOf({RecordKind::Thing, index, RowOf(member)});
        };
        const std::size_t *bits = lineOf(&ThingRecord::bits), *mass = lineOf(&ThingRecord::mass),
                          *id = lineOf(&ThingRecord::id);
        const bool shootable = modPatchText::GetFlag(thing.bits, shootableBit);
        if ((bits != nullptr || mass != nullptr) && shootable && thing.mass == 0)
            Add(mass != nullptr ? *mass : *bits,
                "makes a thing of mass 0 with SHOOTABLE: engines divide by its mass "
                "when it is hurt",
                Severity::Refused);
        if (bits != nullptr && modPatchText::GetFlag(thing.bits, projectileBit) &&
            !modPatchText::GetFlag(thing.bits, noBlockmapBit))
            Add(*bits, "has MISSILE without NOBLOCKMAP, which all projectiles of the game have", Severity::Odd);
        if (id == nullptr || !isPlaced(thing.id))
            continue;
        if (const std::string_view owner = OwnerOfId(thing.id); !owner.empty() && !IsOwnId(index, thing.id))
            Add(*id, "is an ID that belongs to " + std::string(owner));
        for (const std::int32_t other : byId[thing.id])
            if (other != index) {
                Add(*id, "is the ID that thing " + std::to_string(std::int64_t{other} + 1) +
                             " has, too: maps get only one of them");
                break;
            }
    }
}

bool EngineChecker::IsOwnId(std::int32_t thing, std::int32_t id) const {
    const ThingRecord* record = defaults_.things.Find(thing);
    return record != nullptr && record->id == id;
}

/// Sounds that the patch makes without a name, and text fields that name a string which nobody has.
void EngineChecker::FinishNames(const PatchSet& set) {
    for (const auto& [sound, offset] : madeSounds_)
        if (set.SoundName(sound).empty())
            Add(offset, "makes a sound without a name, which no engine can play: it needs a line in [SOUNDS]",
                Severity::Refused);
    for (const auto& [cell, offset] : setBy_) {
        const TextField* field = TextFieldAt(cell.field);
        if (field == nullptr || field->unit != TextField::Unit::StringKey)
            continue;
        const std::string key = ToUpper(std::get<std::string>(ReadCell(set, cell)));
        const auto isKey = [&key](const EngineConfiguration::String& string) {
            return EqualIgnoringCase(string.mnemonic, key);
        };
        if (!otherStrings_.contains(key) && std::ranges::none_of(engine_.strings, isKey))
            Add(offset, "names a string that neither the engine nor [STRINGS] of the patch has");
    }
}

/// A player starts with one weapon in hand.
void EngineChecker::FinishRaisedWeapon(const PatchSet& set) {
    const std::size_t* last = nullptr;
    int raised = 0;
    for (const auto& [number, weapon] : set.weapons) {
        raised += weapon.initialOwned != 0 && weapon.initialRaised != 0;
        for (const auto member : {&WeaponRecord::initialOwned, &WeaponRecord::initialRaised})
            if (const std::size_t* line = LineOf({RecordKind::Weapon, number, RowOf(member)});
                line != nullptr && (last == nullptr || *line > *last))
                last = line;
    }
    if (last != nullptr && raised != 1)
        Add(*last, "leaves " + std::to_string(raised) +
                       " weapons that the player owns and holds at the start: there must be one");
}

} // namespace plinket3::modPatchCheck
