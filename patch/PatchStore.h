#pragma once

#include "patch/PatchLines.h"
#include "patch/SectionWords.h"
#include "patch/modPatchFiles.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>

namespace plinket3 {

/// Stores what the lines of a patch say in a set, whatever rules part them into sections, keys and values. The reader
/// moves it from line to line and section to section.
class PatchStore {
public:
    /// All must outlive this object. `lines` is read further by values that go on over several lines.
    PatchStore(PatchLines& lines, const EngineConfiguration& engine, const PatchSet& defaults, PatchSet& set,
               modPatchFiles::ReadObserver* observer)
        : lines_(lines), engine_(engine), dialect_(engine.dialect), defaults_(defaults), set_(set),
          observer_(observer) {}

    /// Where the line begins that is being read.
    void Offset(std::size_t offset) { offset_ = offset; }
    std::size_t Offset() const { return offset_; }

    /// Begins a section, with no record selected.
    void Enter(Section section) {
        section_ = section;
        selected_ = {};
    }
    /// Kept: values before the first header are those of the first thing. docs/kept-behaviour.md
    void EnterFirstThing() {
        section_ = Section::Thing;
        selected_ = set_.things.Find(0);
    }
    Section Current() const { return section_; }

    /// Selects the record whose header `line` is, and gives it the name behind its number. For a number that the engine
    /// does not have, the lines that follow change nothing.
    void Select(std::string_view line, std::string_view word);

    /// Stores a line with "=" in the section. False when the section does not know the key.
    bool StoreField(std::string_view key, std::string_view value);
    /// Stores a line of [PARS] that was parted into its words.
    void StorePar(const HeaderWords& words);
    /// A line of [PARS] as engines read it.
    void StoreEnginePar(std::string_view line);
    /// The same for [CODEPTR]. False for a line that ends the section.
    bool StoreEngineCodePointer(std::string_view line);
    /// [STRINGS]: takes in the lines in which the text goes on.
    void StoreEngineString(std::string_view line);
    /// [SPRITES], [SOUNDS] and [MUSIC].
    void StoreRename(std::string_view key, std::string_view value);
    /// [HELPER].
    void StoreHelper(std::string_view key, std::string_view value);

    /// A text that takes the place of another; both follow in the patch. Fails by the kept rules when the engine does
    /// not have the old one. `counts`: whether the patch may change anything yet.
    Status ReplaceText(std::int32_t oldLength, std::int32_t newLength, bool counts);

    /// A number that is no field's value.
    std::int32_t PlainNumber(std::string_view text);
    void Ignore(std::string_view reason) {
        if (observer_ != nullptr)
            observer_->Ignored(offset_, reason);
    }

private:
    std::int32_t Number(std::string_view text) const;
    template <class Has> void SelectNumber(std::string_view number, std::int32_t first, Has has);
    template <class Kind> RecordOf<Kind>* FindOrMake(const Kind& kind, std::int32_t number);
    template <class Kind> RecordOf<Kind>* RecordToRename(const Kind& kind, std::string_view key);
    void SelectEnginePointer(std::string_view line);
    std::string_view NameIn(std::string_view line) const;
    template <class Record>
    bool StoreNumber(RecordKind kind, Record* record, std::string_view key, std::string_view value);
    std::int32_t Bits(BitSet set, std::string_view value);
    std::int32_t KeptBits(const std::vector<std::string>& known, std::string_view value);
    std::int32_t EngineBits(BitSet set, std::string_view value);
    bool IsBitsNumber(std::string_view value) const;
    bool StoreText(std::string_view key, std::string_view value);
    bool StorePointer(std::string_view key, std::string_view value);
    bool StoreCodePointer(std::string_view key, std::string_view value);
    void StoreCodePointer(std::int32_t state, std::int32_t codePointer, std::string_view value);
    bool StoreCheat(std::string_view key, std::string_view value);
    bool StoreString(std::string_view key, std::string_view value);
    void StorePar(const ParRecord& par);
    Status ReplaceKeptText(std::int32_t oldLength, std::int32_t newLength, bool counts);
    void ReplaceEngineText(std::int32_t oldLength, std::int32_t newLength);
    bool RenameByText(std::string_view oldText, std::string_view newText);
    void Stored(const Cell& cell, std::string_view value) {
        if (observer_ != nullptr)
            observer_->Stored(offset_, cell, value);
    }
    const std::unordered_map<std::string_view, std::int32_t>& TextIndex();
    const std::unordered_map<std::string, std::int32_t>& StringIndex();
    const std::unordered_map<std::string, std::int32_t>& ActionIndex();

    PatchLines& lines_;
    const EngineConfiguration& engine_;
    const Dialect& dialect_;
    const PatchSet& defaults_;
    PatchSet& set_;
    modPatchFiles::ReadObserver* observer_;

    std::size_t offset_ = 0;
    Section section_ = Section::None;
    std::int32_t index_ = 0; // of the selected record; `noRecord` for one that there is not
    std::variant<std::monostate, ThingRecord*, StateRecord*, SoundRecord*, WeaponRecord*, AmmoRecord*> selected_;
    std::unordered_map<std::string_view, std::int32_t> texts_;
    std::unordered_map<std::string, std::int32_t> keys_, actions_;
};

} // namespace plinket3
