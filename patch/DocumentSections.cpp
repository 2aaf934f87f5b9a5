#include "patch/DocumentSections.h"

#include "patch/Cells.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace plinket3 {

namespace {

/// The order in which sections stand in a patch.
int OrderOf(Section section) {
    constexpr std::array order{Section::Thing,   Section::Frame,   Section::Sound,  Section::Pointer, Section::CodePtr,
                               Section::Weapon,  Section::Ammo,    Section::Cheat,  Section::Misc,    Section::Pars,
                               Section::Strings, Section::Sprites, Section::Sounds, Section::Music,   Section::Helper};
    return static_cast<int>(std::find(order.begin(), order.end(), section) - order.begin());
}

} // namespace

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

bool IsOfOneRecord(Section section) { return KindOf(section) != RecordKind::Par || section == Section::Pointer; }

bool SectionPlace::operator<(const SectionPlace& other) const {
    return std::tuple(OrderOf(section), kind, record) < std::tuple(OrderOf(other.section), other.kind, other.record);
}

const std::vector<SectionRange>& DocumentSections::All() const {
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

const SectionRange* DocumentSections::Of(RecordKind kind, std::int32_t index) const {
    for (std::size_t i = All().size(); i-- > 0;) {
        const DocumentLine& header = lines_[All()[i].header];
        if (header.kind == kind && header.index == index && All()[i].section != Section::Pointer)
            return &All()[i];
    }
    return nullptr;
}

SectionPlace DocumentSections::PlaceOf(const Cell& cell) const {
    SectionPlace place{SectionOf(cell, dialect_)};
    if (IsOfOneRecord(place.section) || place.section == Section::Text)
        place.record = cell.index;
    if (place.section == Section::Text)
        place.kind = cell.kind;
    if (place.section == Section::Text || place.section == Section::Pointer)
        return place;
    for (std::size_t i = All().size(); i-- > 0 && place.existing > All().size();)
        if (All()[i].section == place.section &&
            (place.record == noRecord || lines_[All()[i].header].index == place.record))
            place.existing = i;
    return place;
}

std::size_t DocumentSections::EndOfLines(const SectionRange& section) const {
    std::size_t line = section.header + 1;
    if (IsBracketed(section.section)) {
        for (std::size_t each = line; each < section.end; ++each)
            if (lines_[each].what == LineKind::Value && (section.section == Section::Strings || !BeginsWithBlank(each)))
                line = each + 1;
        return line;
    }
    while (line < section.end && lines_[line].what != LineKind::Blank && !BeginsWithBlank(line))
        ++line;
    while (line > section.header + 1 && lines_[line - 1].what == LineKind::Comment && line == section.end)
        --line; // belongs to what comes next
    return line;
}

std::size_t DocumentSections::LineForNew(Section section) const {
    const SectionRange* best = nullptr;
    for (const SectionRange& each : All())
        if (OrderOf(each.section) <= OrderOf(section) &&
            (best == nullptr || OrderOf(each.section) >= OrderOf(best->section)))
            best = &each;
    std::size_t line = best != nullptr ? best->end : All().empty() ? lines_.size() : All().front().header;
    const std::size_t first = best != nullptr ? best->header + 1 : 0;
    // Comments right above the next section are its own, and so are the empty lines.
    while (line > first && line < lines_.size() && lines_[line - 1].what == LineKind::Comment)
        --line;
    while (line > first && lines_[line - 1].what == LineKind::Blank)
        --line;
    return line;
}

bool DocumentSections::HaveNames() const {
    for (const SectionRange& section : All())
        if (section.section == Section::Thing || section.section == Section::Weapon || section.section == Section::Ammo)
            return document_.Text(section.header).find('(') != std::string_view::npos;
    return true;
}

} // namespace plinket3
