#include "patch/StateUse.h"

#include "core/Text.h"
#include "patch/Links.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
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

/// Goes from records to all that they lead to.
class Reach {
public:
    Reach(const PatchSet& set, const EngineConfiguration& engine)
        : walk_(set, engine), states_(set.states), things_(set.things) {}

    std::vector<std::int32_t> StatesFrom(RecordKind kind, std::int32_t number) {
        if (kind == RecordKind::Thing)
            things_.Mark(number);
        Follow(kind, number);
        while (!toFollow_.empty()) {
            const Target next = toFollow_.back();
            toFollow_.pop_back();
            Follow(*RecordKindOf(next.kind), next.number);
        }
        return states_.Numbers(true);
    }

private:
    void Follow(RecordKind kind, std::int32_t number) {
        walk_.ForEachOf(kind, number, [this](const Link& link) {
            if ((link.to.kind == TargetKind::State && states_.Mark(link.to.number)) ||
                (link.to.kind == TargetKind::Thing && things_.Mark(link.to.number)))
                toFollow_.push_back(link.to);
        });
    }

    LinkWalk walk_;
    Marks<StateRecord> states_;
    Marks<ThingRecord> things_;
    std::vector<Target> toFollow_;
};

/// "Far attack frame" is "far attack" in a list.
std::string ShortLabel(std::string_view label) {
    constexpr std::string_view ending = " frame";
    if (label.ends_with(ending))
        label.remove_suffix(ending.size());
    return ToLower(label);
}

/// "second", "third", and from there on "4th".
std::string Ordinal(std::size_t number) {
    constexpr std::array<std::string_view, 4> words{"", "first", "second", "third"};
    if (number < words.size())
        return std::string(words[number]);
    const std::size_t last = number % 100 / 10 == 1 ? 0 : number % 10;
    return std::to_string(number) + (last == 1 ? "st" : last == 2 ? "nd" : last == 3 ? "rd" : "th");
}

/// Finds a state in the runs of states that follow each other from those that something names.
class Runs {
public:
    Runs(const PatchSet& set, std::int32_t state)
        : set_(set), state_(state), seen_(set.states.Alike(std::uint32_t{})) {}

    /// Where the state stands in the run from `first`, which stands at 1; absent when the run ends, or comes to a
    /// state where one of `others` begins, before.
    std::optional<std::size_t> PlaceFrom(std::int32_t first, std::span<const std::int32_t> others) {
        ++run_;
        std::int32_t next = first;
        for (std::size_t place = 1; next != 0; ++place) {
            std::uint32_t* seen = seen_.Find(next);
            if (seen == nullptr || std::exchange(*seen, run_) == run_ ||
                (place > 1 && std::ranges::find(others, next) != others.end()))
                break;
            if (next == state_)
                return place;
            next = set_.states[next].nextState;
        }
        return std::nullopt;
    }

private:
    const PatchSet& set_;
    std::int32_t state_;
    NumberedList<std::uint32_t> seen_; // in which run last
    std::uint32_t run_ = 0;
};

std::string AndPlace(std::size_t place) { return place == 1 ? std::string() : ", " + Ordinal(place); }

/// The links of a record to states, without those to none, and the states.
struct LinksToStates {
    LinksToStates(const LinkWalk& walk, RecordKind kind, std::int32_t number) {
        walk.ForEachOf(kind, number, [this](const Link& link) {
            if (link.to.kind == TargetKind::State && !link.to.IsNone()) {
                links.push_back(link);
                firsts.push_back(link.to.number);
            }
        });
    }
    std::vector<Link> links;
    std::vector<std::int32_t> firsts;
};

/// "Imp (injury, death)" of a record's fields that name the state; those of runs that come to it are told apart with
/// "; ": "Imp (far attack, third; death)".
template <class Record> void AddUsers(std::vector<std::string>& users, RecordKind kind,
                                      const NumberedList<Record>& records, const LinkWalk& walk, Runs& runs) {
    for (const auto& [number, record] : records) {
        const auto [links, firsts] = LinksToStates(walk, kind, number);
        std::string fields;
        bool plain = true; // what was told last stands first in its run
        for (const Link& link : links)
            if (const auto place = runs.PlaceFrom(link.to.number, firsts)) {
                fields += (fields.empty()         ? ""
                           : plain && *place == 1 ? ", "
                                                  : "; ") +
                          ShortLabel(FactsOf(kind, link.from.field).label) + AndPlace(*place);
                plain = *place == 1;
            }
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
    Marks<StateRecord> marks(set.states);
    LinkWalk(set, engine).ForEach([&marks](const Link& link) {
        if (link.to.kind == TargetKind::State)
            marks.Mark(link.to.number);
    });
    return marks.Numbers(false);
}

std::vector<std::string> UsersOfState(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state) {
    std::vector<std::string> users;
    if (state == 0)
        return users;
    const LinkWalk walk(set, engine);
    Runs runs(set, state);
    AddUsers(users, RecordKind::Thing, set.things, walk, runs);
    AddUsers(users, RecordKind::Weapon, set.weapons, walk, runs);
    std::vector<Link> jumps;
    walk.ForEach([&jumps](const Link& link) {
        if (link.argument != nullptr && link.to.kind == TargetKind::State && !link.to.IsNone())
            jumps.push_back(link);
    });
    for (const Link& jump : jumps)
        if (const auto place = runs.PlaceFrom(jump.to.number, {}))
            users.push_back("frame " + std::to_string(jump.from.index) + " (" +
                            engine.ActionOf(set.states[jump.from.index].codePointer)->mnemonic + AndPlace(*place) +
                            ")");
    return users;
}

std::optional<Target> OwnerOfState(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state) {
    if (state == 0)
        return std::nullopt;
    const LinkWalk walk(set, engine);
    Runs runs(set, state);
    const auto ownerAmong = [&](RecordKind kind, const auto& records) -> std::optional<Target> {
        for (const auto& [number, record] : records) {
            const auto [links, firsts] = LinksToStates(walk, kind, number);
            for (const std::int32_t first : firsts)
                if (runs.PlaceFrom(first, firsts))
                    return Target{*TargetKindOf(kind), number};
        }
        return std::nullopt;
    };
    const auto thing = ownerAmong(RecordKind::Thing, set.things);
    return thing ? thing : ownerAmong(RecordKind::Weapon, set.weapons);
}

} // namespace plinket3
