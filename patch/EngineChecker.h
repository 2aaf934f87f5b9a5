#pragma once

#include "patch/CellIndex.h"
#include "patch/CheckFindings.h"
#include "patch/FrameFindings.h"
#include "patch/SectionWords.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace plinket3::modPatchCheck {

/// What there is to say of a patch by engine rules: what the game will not take, what has no effect, and what engines
/// read differently, with the engines that stumble.
class EngineChecker : public CheckFindings {
public:
    EngineChecker(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults,
                  HasPicture hasPicture)
        : CheckFindings(bytes, engine, defaults), words_(engine.dialect), hasPicture_(std::move(hasPicture)) {}

    void Line(std::size_t offset, std::string_view text) override;
    void Ignored(std::size_t offset, std::string_view reason) override;
    void Section(std::size_t offset, std::string_view word) override;
    void Selected(std::size_t offset, RecordKind kind, std::int32_t index) override;
    void Stored(std::size_t offset, const Cell& cell, std::string_view value) override;
    void Renamed(std::size_t offset, RecordKind kind, std::string_view from, std::string_view to) override;
    void OtherString(std::size_t offset, std::string_view key, std::string_view text) override;
    void Number(std::size_t offset, FieldUnit unit, FieldWidth width, std::string_view text) override;
    void FlagNames(std::size_t offset, BitSet set, std::string_view text) override;
    void Text(std::size_t offset, std::size_t length, std::int32_t space) override;
    void Continued(std::size_t offset, std::size_t end) override;
    void String(std::size_t offset, std::string_view escaped) override;

    /// What shows only when the whole patch is known.
    void Finish(const PatchSet& set);

private:
    void FirstLine();
    void CheckVersions(std::size_t offset, std::string_view line);
    void CheckNumberOf(std::size_t offset, std::string_view line, plinket3::Section section);
    void UnknownField(std::size_t offset, std::string_view reason);
    void CheckLaterField(std::size_t offset, const Cell& cell, std::string_view value);
    void FinishArguments(const PatchSet& set);
    void CheckArgument(std::size_t offset, std::int32_t codePointer, const RowFacts& field, std::int32_t value);
    void FinishAmmoPerShot(const PatchSet& set);
    void FinishThings(const PatchSet& set);
    void FinishNames(const PatchSet& set);
    void FinishRaisedWeapon(const PatchSet& set);
    bool IsOwnId(std::int32_t thing, std::int32_t id) const;
    std::string OtherEngineFor(std::string_view line) const;
    /// The last line that has set a value; null when none has.
    const std::size_t* LineOf(const Cell& cell) const {
        const auto found = setBy_.find(cell);
        return found == setBy_.end() ? nullptr : &found->second;
    }
    bool AllowsLong(std::string_view comment) const { return bytes_.find(comment) != std::string_view::npos; }

    SectionWords words_;
    HasPicture hasPicture_;
    plinket3::Section section_ = plinket3::Section::None;
    std::size_t header_ = static_cast<std::size_t>(-1);
    bool endsSection_ = false;                              // the line before, which begins with a blank
    std::int32_t state_ = noRecord;                         // whose section it is
    std::size_t continuedTo_ = 0;                           // where the last text over several lines ends
    std::unordered_map<Cell, std::size_t, CellHash> setBy_; // the last line that set each value
    std::vector<std::size_t> pars_;                         // the line of each
    std::map<std::int32_t, std::size_t> arguments_;         // a line that gives them to each state
    std::map<std::int32_t, std::size_t> madeSounds_;        // the header of each
    std::set<std::string> otherStrings_;                    // keys in capitals
    std::set<std::int32_t> otherActions_;                   // states with an action that the engine does not have
};

} // namespace plinket3::modPatchCheck
