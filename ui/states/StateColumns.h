#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"
#include "ui/fields/RecordSelection.h"

#include <QString>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace plinket3 {

/// What lists and fields show of a state. Frame and lit flag stand in one number of the record.
enum class StateColumn {
    Number,
    Name, // sprite and frame letter
    Sprite,
    Frame, // without the lit bit
    Lit,
    NextState,
    Duration,
    Parameter1,
    Parameter2,
    Action,
    Arguments, // by value
    Picture,   // small, drawn by the list
    Count,     // of the columns in lists
    FrameAndLit,
};
inline constexpr int stateColumnCount = static_cast<int>(StateColumn::Count);

QString StateColumnHeading(StateColumn column);
/// False for columns whose text is words.
bool IsNumberColumn(StateColumn column);

/// The row of the states' table behind a column; `codePointerField` for the action. Not for `Number`, `Name`,
/// `Arguments` and `Picture`.
int StateColumnField(StateColumn column);
/// The step that changes it in these states: "duration of 3 frames".
std::string StateColumnStep(const Edits& edits, StateColumn column, const std::vector<std::int32_t>& states);

/// `state` must be one of the set's. Lit is `litBit` or 0. Not for the same.
std::int32_t StateColumnValue(const PatchSet& set, std::int32_t state, StateColumn column);
/// What a list shows. Empty for an action that the engine's configuration does not name.
QString StateColumnText(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state, StateColumn column);

/// State 0 stands for "no state" and is never changed.
bool AnyEditable(const RecordSelection& states);

struct StateColumnAssignment {
    StateColumn column = StateColumn::Sprite;
    std::int32_t value = 0;
};

/// Stores values in several states as one step ("duration of 3 frames"). State 0 stays as it is, and so does, in a
/// patch that is not extended, the action of a state that has none. With another action goes what it does not take:
/// returns the names of arguments that are cleared.
std::vector<std::string> StoreInStates(Edits& edits, const Session& session, const std::vector<std::int32_t>& states,
                                       std::span<const StateColumnAssignment> values, bool typing = false);

/// Restores one column of these states; for `Name` and `Picture` sprite and frame, for `Number` nothing. Returns the
/// same.
std::vector<std::string> RestoreStateColumn(Edits& edits, const Session& session,
                                            const std::vector<std::int32_t>& states, StateColumn column);

/// Says that arguments were cleared; empty for none.
QString ClearedText(const std::vector<std::string>& names);

} // namespace plinket3
