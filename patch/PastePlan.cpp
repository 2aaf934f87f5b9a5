#include "patch/PastePlan.h"

#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/EngineTerms.h"
#include "patch/FreeRecords.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/PlacedThing.h"
#include "patch/PointerTargets.h"
#include "patch/StepNames.h"

#include <algorithm>
#include <map>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::string_view noSuchName = "the engine has none of that name, and none can be given it";

/// Sprites and sounds are known by the names of their lumps.
bool GoesByName(RecordKind kind) { return kind == RecordKind::Sound || kind == RecordKind::Sprite; }

class Planner {
public:
    Planner(const Clip& clip, const Session& open, PasteTo to, const PasteChanges& changes, PastePlan& plan)
        : clip_(clip), from_(clip.patch.current), open_(open), set_(open.patch.current), changes_(changes), plan_(plan),
          free_(to == PasteTo::Free), sameEngine_(clip.engine.fileName == open.engine.fileName),
          pointers_(open.patch.defaults.states, open.engine.codePointerStates) {
        const LinkWalk walk(clip.patch.current, clip.engine);
        for (const RecordId& record : clip.records)
            walk.ForEachOf(record.first, record.second,
                           [&](const Link& link) { links_.emplace(std::pair(record, link.from.field), link); });
        for (const auto& [number, thing] : set_.things)
            idsHere_.insert(thing.id);
        for (const Cell& cell : clip.said)
            said_[{cell.kind, cell.index}].insert(cell.field);
    }

    Status Run() {
        for (const RecordKind kind : {RecordKind::Thing, RecordKind::State})
            if (Status placed = PlaceAll(kind); !placed)
                return placed;
        for (const RecordId& record : clip_.records)
            if (record.first != RecordKind::Thing && record.first != RecordKind::State)
                PlaceOne(record);
        for (std::size_t i = 0; i < plan_.places.size(); ++i) // more sprites and sounds come behind
            if (!plan_.places[i].isThere)
                Take(plan_.places[i]);
        if (!changes_.sprite.empty())
            Reskin();
        std::stable_partition(plan_.assignments.begin(), plan_.assignments.end(),
                              [](const Assignment& each) { return each.cell.field == existsField; });
        if (!spent_.empty())
            return Status::Failure("There are too few free " + std::string(PluralOf(*spent_.begin())) +
                                   " for what is pasted.");
        return {};
    }

private:
    void Lose(const RecordId& record, const std::string& what) {
        const std::string name = RecordName(from_, record.first, record.second);
        plan_.lost.push_back(name.empty() ? what : name + ": " + what);
    }

    std::vector<std::int32_t> TakeFree(RecordKind kind, std::size_t count) const {
        return FindFree(set_, open_.patch.defaults, open_.engine, open_.fixedUses, kind).Take(set_, kind, count);
    }
    /// `noRecord` when there is none left, which ends the pasting.
    std::int32_t NextFree(RecordKind kind) {
        auto numbers = freeNumbers_.find(kind);
        if (numbers == freeNumbers_.end()) {
            numbers = freeNumbers_.emplace(kind, TakeFree(kind, mostClipRecords)).first;
            std::ranges::reverse(numbers->second);
        }
        if (numbers->second.empty()) {
            spent_.insert(kind);
            return noRecord;
        }
        const std::int32_t number = numbers->second.back();
        numbers->second.pop_back();
        return number;
    }

    Status PlaceAll(RecordKind kind) {
        std::vector<std::int32_t> numbers;
        for (const auto& [each, number] : clip_.records)
            if (each == kind && Target{*TargetKindOf(kind), number}.IsNone() == false)
                numbers.push_back(number);
        if (!free_) {
            for (const std::int32_t number : numbers)
                PlaceSame({kind, number});
            return {};
        }
        const std::vector<std::int32_t> taken = TakeFree(kind, numbers.size());
        if (taken.size() < numbers.size())
            return Status::Failure("There are " + std::to_string(taken.size()) + " free " +
                                   std::string(PluralOf(kind)) + ", " + std::to_string(numbers.size()) +
                                   " are needed.");
        for (std::size_t i = 0; i < numbers.size(); ++i)
            AddPlace({kind, numbers[i]}, taken[i]);
        return {};
    }

    void PlaceOne(const RecordId& record) {
        const auto& [kind, number] = record;
        if (kind == RecordKind::Par) {
            if (said_.contains(record))
                plan_.lost.emplace_back("par times are not pasted");
        } else if (kind == RecordKind::String) {
            const auto same = StringIn(open_.engine, open_.patch.defaults, clip_.engine, clip_.patch.defaults, number);
            if (same)
                AddPlace(record, *same);
            else
                Lose(record, "the engine does not have it");
        } else if (GoesByName(kind) && free_) {
            PlaceLump(record);
        } else if (kind == RecordKind::Weapon && changes_.weapon) {
            AddPlace(record, *changes_.weapon);
        } else {
            PlaceSame(record);
        }
    }

    void PlaceSame(const RecordId& record) {
        const auto& [kind, number] = record;
        const bool mayBeMade = open_.engine.dialect.unlimited && CanBeMade(kind) && number >= 0;
        if (kind == RecordKind::Misc || HasRecord(set_, kind, number) || mayBeMade)
            AddPlace(record, number);
        else
            Lose(record, "the engine has none of that number");
    }

    struct NamedLump {
        std::int32_t number = 0;
        bool isThere = true;
    };
    /// The sprite or sound of that name, or a free one that can be given it; absent when there is neither.
    std::optional<NamedLump> LumpNamed(RecordKind kind, const std::string& name) {
        if (name.empty())
            return std::nullopt;
        const auto same = kind == RecordKind::Sprite ? IndexByName(set_.sprites, name) : IndexByName(set_.sounds, name);
        if (same)
            return NamedLump{*same};
        const std::int32_t free = NextFree(kind);
        if (free == noRecord || !MayBeNamed(kind, free))
            return std::nullopt;
        return NamedLump{free, false};
    }

    /// A sprite or sound goes where one of its name is, at best its own number, else to a free one; 0 when it can go
    /// nowhere.
    std::int32_t PlaceLump(const RecordId& record) {
        const std::string name = LumpName(from_, record);
        std::optional<NamedLump> lump;
        if (LumpName(set_, record) == name)
            lump = NamedLump{record.second};
        else if (!(lump = LumpNamed(record.first, name)))
            Lose(record, std::string(noSuchName));
        AddPlace(record, lump.value_or(NamedLump()).number, lump.value_or(NamedLump()).isThere);
        return numbers_.at(record);
    }
    bool MayBeNamed(RecordKind kind, std::int32_t number) const {
        return CanRenameLump(open_.engine.dialect, open_.patch.defaults, kind, number);
    }
    static std::string LumpName(const PatchSet& set, const RecordId& record) {
        if (!HasRecord(set, record.first, record.second))
            return {};
        return std::get<std::string>(ReadCell(set, {record.first, record.second, lumpNameField}));
    }

    void AddPlace(const RecordId& record, std::int32_t to, bool isThere = false) {
        plan_.places.push_back({record, to, isThere});
        numbers_.emplace(record, to);
    }

    /// Whether the text says all of a record, so that what it does not say is unset.
    bool IsWhole(const RecordId& record) const {
        const auto said = said_.find(record);
        if (said == said_.end())
            return false;
        return std::ranges::all_of(CellsOf(record.first, record.second), [&](const Cell& cell) {
            if (cell.field < 0)
                return true;
            const RowFacts facts = FactsOf(cell.kind, cell.field);
            return !facts.inPatch || facts.since != FieldLevel::Doom || said->second.contains(cell.field);
        });
    }

    void Take(const PastePlan::Place place) {
        const auto& [kind, number] = place.from;
        Make(kind, place.to);
        const bool all = (free_ && CanBeMade(kind)) || IsWhole(place.from);
        std::vector<Cell> cells = CellsOf(kind, number);
        if (HasLumpName(kind))
            cells.push_back({kind, number, lumpNameField});
        if (open_.engine.dialect.EngineRules() &&
            !std::get<std::string>(ReadCell(from_, {kind, number, noteField})).empty())
            cells.push_back({kind, number, noteField});
        const auto said = said_.find(place.from);
        for (const Cell& cell : cells) {
            const bool isSaid = said != said_.end() && said->second.contains(cell.field);
            if (!all && !isSaid && cell.field != noteField && (cell.field != nameField || !IsRenamed(cell)))
                continue;
            if (cell.field >= 0 && !FactsOf(kind, cell.field).inPatch)
                continue;
            if (IsAddress(cell) && !sameEngine_)
                continue;
            if (cell.field >= 0 && FactsOf(kind, cell.field).since > clip_.engine.dialect.fields) {
                // What the clip's engine knows nothing of is as it is of the record that it is here.
                if (const Cell here{kind, number, cell.field}; HasCell(open_.patch.defaults, here))
                    Assign({kind, place.to, cell.field}, ReadCell(open_.patch.defaults, here));
                continue;
            }
            TakeCell(cell, {kind, place.to, cell.field}, ReadCell(from_, cell));
        }
        if (kind == RecordKind::Thing)
            TakeIdentity(place);
        if (kind == RecordKind::Weapon && changes_.name)
            Assign({kind, place.to, nameField}, *changes_.name);
    }
    bool IsRenamed(const Cell& name) const {
        return !HasRecord(clip_.patch.defaults, name.kind, name.index) ||
               ReadCell(from_, name) != ReadCell(clip_.patch.defaults, name);
    }
    static bool IsAddress(const Cell& cell) {
        return cell.kind == RecordKind::Sound &&
               (cell.field == RowOf(&SoundRecord::offset) || cell.field == RowOf(&SoundRecord::zero1));
    }

    void TakeCell(const Cell& cell, const Cell& to, const CellValue& value) {
        if (!IsKnown(cell)) {
            if (value != ReadCell(PatchSet(), cell) && value != ReadCell(clip_.patch.defaults, cell))
                Lose({cell.kind, cell.index}, "the engine does not know \"" + FieldName(cell) + "\"");
            return;
        }
        if (cell.field == lumpNameField && !MayBeNamed(to.kind, to.index)) {
            if (value != ReadCell(set_, to))
                Lose({cell.kind, cell.index}, "the engine cannot name it");
            return;
        }
        if (cell.field == codePointerField)
            return TakeAction(cell, to, std::get<std::int32_t>(value));
        const auto link = links_.find({{cell.kind, cell.index}, cell.field});
        if (link != links_.end() && std::holds_alternative<std::int32_t>(value) && !IsAddress(cell))
            return Assign(to, Resolve(link->second));
        if (cell.field >= 0 && FactsOf(cell.kind, cell.field).unit == FieldUnit::Flags && !sameEngine_) {
            const std::int32_t bits = std::get<std::int32_t>(value),
                               lost =
                                   bits & BitsLostIn(open_.engine, clip_.engine, FactsOf(cell.kind, cell.field).bits);
            if (lost != 0)
                Lose({cell.kind, cell.index}, "the engine does not have all of \"" + FieldName(cell) + "\"");
            return Assign(to, bits & ~lost);
        }
        Assign(to, value);
    }
    /// Whether the open engine has the field.
    bool IsKnown(const Cell& cell) const {
        const Dialect& dialect = open_.engine.dialect;
        if (cell.field == helperField)
            return HasHelper(dialect);
        if (const TextField* text = TextFieldAt(cell.field))
            return text->since <= dialect.fields;
        return cell.field < 0 || FactsOf(cell.kind, cell.field).since <= dialect.fields;
    }

    void TakeAction(const Cell& cell, const Cell& to, std::int32_t codePointer) {
        const std::string* mnemonic = clip_.engine.MnemonicOf(codePointer);
        auto action = ActionIn(open_.engine, clip_.engine, codePointer);
        const Dialect& dialect = open_.engine.dialect;
        const bool isNow = action && HasRecord(set_, to.kind, to.index) && ReadCell(set_, to) == CellValue(*action);
        if (action && !isNow && !dialect.namedCodePointers && !pointers_.CanExpress(to.index, *action))
            action.reset();
        if (!action)
            Lose({cell.kind, cell.index}, "the action " +
                                              (mnemonic == nullptr ? std::to_string(codePointer) : *mnemonic) +
                                              " cannot be had in frame " + std::to_string(to.index));
        else
            Assign(to, *action);
    }

    /// The value with which a field refers to what the link's does in the clip.
    std::int32_t Resolve(const Link& link) {
        if (link.to.IsNone())
            return LinkValue(link, 0);
        const RecordId record{*RecordKindOf(link.to.kind), link.to.number};
        if (const auto number = numbers_.find(record); number != numbers_.end())
            return LinkValue(link, number->second);
        if (GoesByName(record.first))
            return LinkValue(link, PlaceLump(record));
        if (HasRecord(set_, record.first, record.second)) {
            if (outside_.insert(record).second)
                plan_.told.push_back(RecordName(from_, record.first, record.second) +
                                     " is not pasted; what refers to it "
                                     "refers to the one that is here");
            return LinkValue(link, record.second);
        }
        Lose({link.from.kind, link.from.index},
             "there is no " + MadeName(record.first, record.second) + " here, which it refers to");
        return 0;
    }

    bool IsNew(RecordKind kind, std::int32_t number) const {
        return kind != RecordKind::Misc && !HasRecord(set_, kind, number);
    }
    /// Makes the record where there is none.
    void Make(RecordKind kind, std::int32_t number) {
        if (IsNew(kind, number))
            plan_.assignments.push_back({{kind, number, existsField}, 1});
    }
    void Assign(const Cell& cell, CellValue value) {
        if (IsNew(cell.kind, cell.index) || ReadCell(set_, cell) != value)
            plan_.assignments.push_back({cell, std::move(value)});
    }

    /// Name and ID number of a thing that is pasted beside others.
    void TakeIdentity(const PastePlan::Place& place) {
        const bool first = std::exchange(firstThing_, false);
        if (first && changes_.name)
            Assign({RecordKind::Thing, place.to, nameField}, *changes_.name);
        const Cell id{RecordKind::Thing, place.to, RowOf(&ThingRecord::id)};
        if (first && changes_.id)
            return Assign(id, *changes_.id);
        const std::int32_t own = from_.things[place.from.second].id;
        if (!free_ || own <= 0 || !idsHere_.contains(own))
            return;
        std::int32_t free = firstFreeId;
        while (idsHere_.contains(free) || !idsGiven_.insert(free).second)
            ++free;
        plan_.told.push_back(RecordName(from_, RecordKind::Thing, place.from.second) + ": ID # " + std::to_string(own) +
                             " is taken here, it gets " + std::to_string(free));
        Assign(id, free);
    }
    /// Shows the states that show the first thing's sprite with another one.
    void Reskin() {
        const auto thing = std::ranges::find(plan_.places, RecordKind::Thing,
                                             [](const PastePlan::Place& place) { return place.from.first; });
        const StateRecord* state =
            thing == plan_.places.end() ? nullptr : from_.states.Find(from_.things[thing->from.second].initialState);
        if (state == nullptr)
            return;
        const auto sprite = LumpNamed(RecordKind::Sprite, changes_.sprite);
        if (!sprite) {
            plan_.lost.push_back("sprite " + changes_.sprite + ": " + std::string(noSuchName));
            return;
        }
        if (!sprite->isThere) {
            Make(RecordKind::Sprite, sprite->number);
            Assign({RecordKind::Sprite, sprite->number, lumpNameField}, changes_.sprite);
        }
        for (const PastePlan::Place& place : plan_.places)
            if (place.from.first == RecordKind::State && from_.states[place.from.second].sprite == state->sprite)
                plan_.assignments.push_back(
                    {{RecordKind::State, place.to, RowOf(&StateRecord::sprite)}, sprite->number});
    }

    const Clip& clip_;
    const PatchSet& from_;
    const Session& open_;
    const PatchSet& set_;
    const PasteChanges& changes_;
    PastePlan& plan_;
    bool free_, sameEngine_, firstThing_ = true;
    PointerTargets pointers_;
    std::map<std::pair<RecordId, int>, Link> links_; // by record and field
    std::map<RecordId, std::set<int>> said_;
    std::map<RecordId, std::int32_t> numbers_;
    std::map<RecordKind, std::vector<std::int32_t>> freeNumbers_; // not yet taken, the best last
    std::set<RecordKind> spent_;
    std::set<RecordId> outside_;
    std::set<std::int32_t> idsHere_, idsGiven_;
};

} // namespace

Status PlanPaste(const Clip& clip, const Session& open, PasteTo to, const PasteChanges& changes, PastePlan& plan) {
    PastePlan made;
    if (Status planned = Planner(clip, open, to, changes, made).Run(); !planned)
        return planned;
    plan = std::move(made);
    return {};
}

} // namespace plinket3
