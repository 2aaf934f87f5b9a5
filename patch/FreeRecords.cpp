#include "patch/FreeRecords.h"

#include "patch/KeptRecords.h"
#include "patch/NewRecords.h"

#include <algorithm>
#include <map>
#include <type_traits>
#include <utility>

namespace plinket3 {

namespace {

/// What things, weapons and the engine come to.
class Used {
public:
    Used(const PatchSet& set, const EngineConfiguration& engine, std::span<const FixedUse> fixedUses)
        : walk_(set, engine), marks_{{TargetKind::Thing, set.things.Alike(char{})},
                                     {TargetKind::State, set.states.Alike(char{})},
                                     {TargetKind::Sound, set.sounds.Alike(char{})},
                                     {TargetKind::Sprite, set.sprites.Alike(char{})}} {
        for (const FixedUse& use : fixedUses)
            Mark(use.target);
        Mark({TargetKind::State, 0});
        Mark({TargetKind::Sound, 0});
        const auto mark = [this](const Link& link) { Mark(link.to); };
        for (const auto& [number, thing] : set.things) {
            if (thing.id > 0)
                Mark({TargetKind::Thing, number});
            walk_.ForEachOf(RecordKind::Thing, number, mark);
        }
        for (const auto& [number, weapon] : set.weapons)
            walk_.ForEachOf(RecordKind::Weapon, number, mark);
        while (!toFollow_.empty()) {
            const std::int32_t state = toFollow_.back();
            toFollow_.pop_back();
            walk_.ForEachOf(RecordKind::State, state, mark);
        }
        for (const auto& [number, sound] : set.sounds)
            if (Has(RecordKind::Sound, number))
                walk_.ForEachOf(RecordKind::Sound, number, mark);
    }

    bool Has(RecordKind kind, std::int32_t number) const {
        const auto marks = marks_.find(*TargetKindOf(kind));
        const char* mark = marks == marks_.end() ? nullptr : marks->second.Find(number);
        return mark != nullptr && *mark != 0;
    }

private:
    void Mark(const Target& target) {
        const auto marks = marks_.find(target.kind);
        char* mark = marks == marks_.end() ? nullptr : marks->second.Find(target.number);
        if (mark != nullptr && std::exchange(*mark, char{1}) == 0 && target.kind == TargetKind::State)
            toFollow_.push_back(target.number);
    }

    LinkWalk walk_;
    std::map<TargetKind, NumberedList<char>> marks_;
    std::vector<std::int32_t> toFollow_;
};

/// Whether a record holds nothing but what a new one has; names do not count, nor does what a patch cannot say.
template <class Record> bool IsBlank(const Record& record, std::int32_t number) {
    Record blank = NewRecord<Record>(number);
    if constexpr (requires { record.name; })
        blank.name = record.name;
    if constexpr (std::is_same_v<Record, ThingRecord>) {
        blank.id = record.id;
        blank.extra = record.extra;
    }
    return record == blank;
}

} // namespace

std::vector<std::int32_t> FreeRecords::Numbers() const {
    std::vector<std::int32_t> numbers;
    for (const auto* each : {&blank, &used, &changed})
        numbers.insert(numbers.end(), each->begin(), each->end());
    std::ranges::sort(numbers);
    return numbers;
}

bool FreeRecords::Has(std::int32_t number) const { return std::ranges::binary_search(Numbers(), number); }

std::vector<std::int32_t> FreeRecords::Take(const PatchSet& set, RecordKind kind, std::size_t count) const {
    std::vector<std::int32_t> taken;
    const auto take = [&taken, count](const std::vector<std::int32_t>& numbers) {
        const auto wanted = static_cast<std::ptrdiff_t>(std::min(count - taken.size(), numbers.size()));
        taken.insert(taken.end(), numbers.begin(), numbers.begin() + wanted);
    };
    take(blank);
    if (unlimited)
        take(NewNumbers(set, kind, count - taken.size()));
    take(used);
    take(changed);
    return taken;
}

std::vector<std::int32_t> NewNumbers(const PatchSet& set, RecordKind kind, std::size_t count) {
    std::vector<std::int32_t> numbers;
    VisitKind(kind, [&](const auto& list) {
        const KeptRecords kept(std::get<std::string>(ReadCell(set, patchNotes)));
        std::int64_t next = std::max<std::int64_t>(list.In(set).FirstFree(), 0);
        for (; numbers.size() < count && next <= INT32_MAX; ++next)
            if (const auto number = static_cast<std::int32_t>(next);
                !list.In(set).Has(number) && !kept.Has(kind, number))
                numbers.push_back(number);
    });
    return numbers;
}

FreeRecords FindFree(const PatchSet& set, const PatchSet& defaults, const EngineConfiguration& engine,
                     std::span<const FixedUse> fixedUses, RecordKind kind) {
    FreeRecords free;
    free.unlimited = engine.dialect.unlimited;
    const Used used(set, engine, fixedUses);
    const KeptRecords kept(std::get<std::string>(ReadCell(set, patchNotes)));
    VisitKind(kind, [&](const auto& list) {
        for (const auto& [number, record] : list.In(set)) {
            if (number < 0 || used.Has(kind, number) || kept.Has(kind, number))
                continue;
            const auto* standard = list.In(defaults).Find(number);
            auto& numbers = standard == nullptr || *standard != record ? free.changed
                            : IsBlank(record, number)                  ? free.blank
                                                                       : free.used;
            numbers.push_back(number);
        }
    });
    return free;
}

} // namespace plinket3
