#include "patch/StateUse.h"

#include "core/Text.h"
#include "patch/Arguments.h"
#include "patch/ValueText.h"

#include <string_view>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::uint8_t no = 0, yes = 1;

/// One mark for each record of a list; numbers that name none are ignored.
template <class Record> class Marks {
public:
    explicit Marks(const NumberedList<Record>& records) : marked_(records.Alike(no)) {}

    /// True when the record was not marked before.
    bool Mark(std::int32_t number) {
        std::uint8_t* mark = marked_.Find(number);
        return mark != nullptr && std::exchange(*mark, yes) == no;
    }
    std::vector<std::int32_t> Numbers(bool marked) const {
        std::vector<std::int32_t> found;
        for (const auto& [number, mark] : marked_)
            if ((mark == yes) == marked)
                found.push_back(number);
        return found;
    }

private:
    NumberedList<std::uint8_t> marked_;
};

template <class Record, class Visit> void VisitStateFields(const Record& record, Visit visit) {
    for (const Field<Record>& field : fieldsOf<Record>)
        if (field.unit == FieldUnit::State)
            visit(field, record.*field.member);
}

/// Calls visit(argument, number) for the arguments that the state's action is given.
template <class Visit> void VisitArguments(const ArgumentTable& table, const StateRecord& state, Visit visit) {
    for (const StateArgument& argument : table.Of(state.codePointer))
        if (const FieldValue number = ArgumentOf(state, argument))
            visit(argument, *number);
}

/// Goes from records to all that they lead to.
class Reach {
public:
    Reach(const PatchSet& set, const EngineConfiguration& engine)
        : set_(set), table_(engine), drops_(engine.dialect.fields >= FieldOf(&ThingRecord::droppedItem).since),
          states_(set.states), things_(set.things) {}

    std::vector<std::int32_t> StatesFrom(RecordKind kind, std::int32_t number) {
        if (kind == RecordKind::Thing)
            AddThing(number);
        else if (const WeaponRecord* weapon = set_.weapons.Find(number))
            AddStates(*weapon);
        while (!newStates_.empty()) {
            const std::int32_t state = newStates_.back();
            newStates_.pop_back();
            Follow(set_.states[state]);
        }
        return states_.Numbers(true);
    }

private:
    void AddState(std::int32_t state) {
        if (states_.Mark(state))
            newStates_.push_back(state);
    }
    template <class Record> void AddStates(const Record& record) {
        VisitStateFields(record, [this](const Field<Record>&, std::int32_t state) { AddState(state); });
    }
    /// A thing may leave another one behind, and that a third.
    void AddThing(std::int32_t thing) {
        while (things_.Mark(thing)) {
            const ThingRecord& record = set_.things[thing];
            AddStates(record);
            const auto dropped = ThingOf(record.droppedItem);
            if (!drops_ || !dropped)
                return;
            thing = *dropped;
        }
    }
    void Follow(const StateRecord& state) {
        AddState(state.nextState);
        VisitArguments(table_, state, [this](const StateArgument& argument, std::int32_t number) {
            if (IsState(argument))
                AddState(number);
            else if (const auto thing = ThingOf(number); thing && IsThing(argument))
                AddThing(*thing);
        });
    }

    const PatchSet& set_;
    ArgumentTable table_;
    bool drops_;
    Marks<StateRecord> states_;
    Marks<ThingRecord> things_;
    std::vector<std::int32_t> newStates_; // that are not yet followed
};

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
        VisitStateFields(record, [&fields, state](const Field<Record>& field, std::int32_t named) {
            if (named == state)
                fields += (fields.empty() ? "" : ", ") + ShortLabel(field.label);
        });
        if (!fields.empty())
            users.push_back(record.name + " (" + fields + ")");
    }
}

} // namespace

std::vector<std::int32_t> StatesOfThing(const PatchSet& set, const EngineConfiguration& engine, std::int32_t thing) {
    return Reach(set, engine).StatesFrom(RecordKind::Thing, thing);
}

std::vector<std::int32_t> StatesOfWeapon(const PatchSet& set, const EngineConfiguration& engine, std::int32_t weapon) {
    return Reach(set, engine).StatesFrom(RecordKind::Weapon, weapon);
}

std::vector<std::int32_t> UnusedStates(const PatchSet& set, const EngineConfiguration& engine) {
    const ArgumentTable table(engine);
    Marks<StateRecord> marks(set.states);
    const auto mark = [&marks](const auto&, std::int32_t state) { marks.Mark(state); };
    for (const auto& [number, thing] : set.things)
        VisitStateFields(thing, mark);
    for (const auto& [number, weapon] : set.weapons)
        VisitStateFields(weapon, mark);
    for (const auto& [number, state] : set.states) {
        marks.Mark(state.nextState);
        VisitArguments(table, state, [&marks](const StateArgument& argument, std::int32_t value) {
            if (IsState(argument))
                marks.Mark(value);
        });
    }
    return marks.Numbers(false);
}

std::vector<std::string> UsersOfState(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state) {
    std::vector<std::string> users;
    if (state == 0)
        return users;
    AddUsers(users, set.things, state);
    AddUsers(users, set.weapons, state);
    const ArgumentTable table(engine);
    for (const auto& [number, user] : set.states) {
        bool names = false;
        VisitArguments(table, user, [&names, state](const StateArgument& argument, std::int32_t value) {
            names = names || (IsState(argument) && value == state);
        });
        if (names)
            users.push_back("frame " + std::to_string(number) + " (" + engine.ActionOf(user.codePointer)->mnemonic +
                            ")");
    }
    return users;
}

} // namespace plinket3
