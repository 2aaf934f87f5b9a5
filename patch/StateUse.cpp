#include "patch/StateUse.h"

#include "core/Text.h"

#include <string_view>
#include <utility>

namespace plinket3 {

namespace {

/// One mark for each state; numbers that name none are ignored.
class StateMarks {
public:
    explicit StateMarks(const PatchSet& set) : states_(set.states), marked_(set.states.Alike(no)) {}

    /// True when the state was not marked before.
    bool Mark(std::int32_t state) {
        std::uint8_t* mark = marked_.Find(state);
        return mark != nullptr && std::exchange(*mark, yes) == no;
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
                    state = states_[state].nextState;
    }

    std::vector<std::int32_t> States(bool marked) const {
        std::vector<std::int32_t> found;
        for (const auto& [state, mark] : marked_)
            if ((mark == yes) == marked)
                found.push_back(state);
        return found;
    }

private:
    static constexpr std::uint8_t no = 0, yes = 1;

    const NumberedList<StateRecord>& states_;
    NumberedList<std::uint8_t> marked_;
};

template <class Record> std::vector<std::int32_t>
StatesOfRecord(const PatchSet& set, const NumberedList<Record>& records, std::int32_t number) {
    const Record* record = records.Find(number);
    if (record == nullptr)
        return {};
    StateMarks marks(set);
    marks.Follow(*record);
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
void AddUsers(std::vector<std::string>& users, const NumberedList<Record>& records, std::int32_t state) {
    for (const auto& [number, record] : records) {
        std::string fields;
        for (const Field<Record>& field : fieldsOf<Record>)
            if (field.unit == FieldUnit::State && record.*field.member == state)
                fields += (fields.empty() ? "" : ", ") + ShortLabel(field.label);
        if (!fields.empty())
            users.push_back(record.name + " (" + fields + ")");
    }
}

} // namespace

std::vector<std::int32_t> StatesOfThing(const PatchSet& set, std::int32_t thing) {
    return StatesOfRecord(set, set.things, thing);
}

std::vector<std::int32_t> StatesOfWeapon(const PatchSet& set, std::int32_t weapon) {
    return StatesOfRecord(set, set.weapons, weapon);
}

std::vector<std::int32_t> UnusedStates(const PatchSet& set) {
    StateMarks marks(set);
    for (const auto& [number, thing] : set.things)
        marks.MarkFields(thing);
    for (const auto& [number, weapon] : set.weapons)
        marks.MarkFields(weapon);
    for (const auto& [number, state] : set.states)
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
