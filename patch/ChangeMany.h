#pragma once

#include "core/modConfig.h"
#include "patch/Links.h"
#include "patch/ValueText.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

// Edits of many records at once. Each gives values for `Edits::StoreGroup`, some of which may be those that are there.

/// Records of a kind that are changed together.
struct ManyRecords {
    RecordKind kind = RecordKind::Thing;
    std::vector<std::int32_t> numbers; // in the order of the list in which they are selected
    std::string_view many;             // what they are called in the name of a step: "frames"
};

/// What becomes of a number, whichever it is.
struct NumberChange {
    enum class Kind { Add, Multiply, Divide };
    Kind kind = Kind::Add;
    double by = 0; // in the units in which the number is typed; never 0 for `Divide`
    bool operator==(const NumberChange&) const = default;
};
/// Whether a text is meant as such a change, and not as a number of its own.
bool BeginsChange(std::string_view text);
struct TypedChange {
    std::optional<NumberChange> change; // absent when the text is none, or the beginning of one
    std::string refusal;                // why, in a sentence; else empty
};
/// "*0.5", "/2", "+10", "+-10"; blanks may stand around the number.
TypedChange ReadChange(std::string_view text);

/// A cell that can hold a number with which one can reckon, and what this means there.
struct NumberCell {
    Cell cell;
    ValueMeaning meaning;
};
/// The rows of a kind's table that patches for the engine have and that hold such numbers.
std::vector<int> NumberFields(RecordKind kind, const EngineConfiguration& engine);
/// The cells of such a row in these records, without those that have nothing to reckon with there: state 0, which is
/// never changed, and arguments that a state's action does not take, or takes as bits.
std::vector<NumberCell> NumberCells(const PatchSet& set, const EngineConfiguration& engine, const ManyRecords& records,
                                    int field);

/// Each number changed for itself: rounded, halves to the even one, and limited to what the field takes. What is unset
/// stays so, and so does a number that stands for something else: a reference to nothing, a duration without end, the
/// normal speed. No other number becomes one of the latter two.
std::vector<Assignment> ChangeNumbers(const PatchSet& set, const std::vector<NumberCell>& cells,
                                      const NumberChange& change);
/// `first`, `first + step` and so on, in the units in which such a number is typed; rounded and limited alike.
std::vector<Assignment> NumberSeries(const PatchSet& set, const std::vector<NumberCell>& cells, double first,
                                     double step);
/// Each of these states leads to the one behind it, the last one to the first if they are a ring, else where it leads.
std::vector<Assignment> NextInOrder(const std::vector<std::int32_t>& states, bool ring);

/// The things, states, sounds and sprites to which these records refer by number, each once, kind by kind.
std::vector<Target> TargetsOf(const PatchSet& set, const EngineConfiguration& engine, const ManyRecords& records);
/// What refers to `from` in these records refers to the record `to` of its kind. There need not be such a record.
std::vector<Assignment> ReplaceTarget(const PatchSet& set, const EngineConfiguration& engine,
                                      const ManyRecords& records, const Target& from, std::int32_t to);

} // namespace plinket3
