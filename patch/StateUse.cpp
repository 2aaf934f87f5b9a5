#include "patch/StateUse.h"

#include "core/Text.h"

#include <algorithm>
#include <string_view>

namespace plinket3 {

namespace {

/// One mark for each state; numbers that name none are ignored.
class StateMarks {
public:
    explicit StateMarks(const PatchSet& set) : states_(set.states), marked_(set.states.size(), false) {}

    /// True when the state was not marked before.
    bool Mark(std::int32_t state) {
        if (state < 0 || static_cast<std::size_t>(state) >= marked_.size() || marked_[static_cast<std::size_t>(state)])
            return false;
        marked_[static_cast<std::size_t>(state)] = true;
        return true;
    }

    template <class Record> void MarkFields(const Record& record) {
        for (const Field<Record>& field : fieldsOf<Record>)
            if (field.unit == FieldUnit::State)
                Mark(record.*field.member);
    }

    /// Marks a record's states and all that follow them.
    template <class Record> void Follow(const Record& record) {
        for (const Field<Record>& field : fieldsOf<Record>)
            if (field.unit == FieldUnit::State)
                for (std::int32_t state = record.*field.member; Mark(state);)
                    state = states_[static_cast<std::size_t>(state)].nextState;
    }

    std::vector<std::int32_t> States(bool marked) const {
        std::vector<std::int32_t> found;
        for (std::size_t state = 0; state < marked_.size(); ++state)
            if (marked_[state] == marked)
                found.push_back(static_cast<std::int32_t>(state));
        return found;
    }

private:
    const std::vector<StateRecord>& states_;
    std::vector<bool> marked_;
};

template <class Record>
std::vector<std::int32_t> StatesOfRecord(const PatchSet& set, const std::vector<Record>& records, std::size_t index) {
    if (index >= records.size())
        return {};
    StateMarks marks(set);
    marks.Follow(records[index]);
    return marks.States(true);
}

/// "Far attack frame" is "far attack" in a list.
std::string ShortLabel(std::string_view label) {
    constexpr std::string_view ending = " frame";
    if (label.ends_with(ending))
        label.remove_suffix(ending.size());
    return ToLower(label);
}

template <class Record>
void AddUsers(std::vector<std::string>& users, const std::vector<Record>& records, std::int32_t state) {
    for (const Record& record : records) {
        std::string fields;
        for (const Field<Record>& field : fieldsOf<Record>)
            if (field.unit == FieldUnit::State && record.*field.member == state)
                fields += (fields.empty() ? "" : ", ") + ShortLabel(field.label);
        if (!fields.empty())
            users.push_back(record.name + " (" + fields + ")");
    }
}

} // namespace

std::vector<std::int32_t> StatesOfThing(const PatchSet& set, std::size_t thing) {
    return StatesOfRecord(set, set.things, thing);
}

std::vector<std::int32_t> StatesOfWeapon(const PatchSet& set, std::size_t weapon) {
    return StatesOfRecord(set, set.weapons, weapon);
}

std::vector<std::int32_t> UnusedStates(const PatchSet& set) {
    StateMarks marks(set);
    for (const ThingRecord& thing : set.things)
        marks.MarkFields(thing);
    for (const WeaponRecord& weapon : set.weapons)
        marks.MarkFields(weapon);
    for (const StateRecord& state : set.states)
        marks.Mark(state.nextState);
    return marks.States(false);
}

std::vector<std::string> UsersOfState(const PatchSet& set, std::int32_t state) {
    std::vector<std::string> users;
    if (state == 0)
        return users;
    AddUsers(users, set.things, state);
    AddUsers(users, set.weapons, state);
    return users;
}

} // namespace plinket3
