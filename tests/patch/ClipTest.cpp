#include "patch/CopyChoice.h"
#include "patch/FreeRecords.h"
#include "patch/OtherCells.h"
#include "patch/PastePlan.h"
#include "patch/StepNames.h"
#include "tests/support/EveryField.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace plinket3::test {
namespace {

using Lines = std::vector<std::string>;

class ClipTest : public ::testing::Test {
protected:
    ClipTest() {
        program.programFolder = DATA_FOLDER;
        program.engines = modConfig::EnumerateEngines(program.programFolder / "config", [](std::string_view) {});
    }

    Session Open(const char* engine) const {
        Session session;
        session.patch = BuiltEngine(DATA_FOLDER, engine, session.engine);
        session.engine.dialect = session.engine.dialect.AsEngines();
        session.fixedUses = LoadFixedUses(DATA_FOLDER, session.engine);
        return session;
    }
    static std::string Copy(const Session& session, const std::vector<RecordId>& records) {
        std::set<RecordId> copied;
        for (const Companion& companion : CompanionsOf(session.patch, session.engine, records))
            if (companion.proposed)
                copied.insert(companion.record);
        return modPatchFiles::FormatRecords(session.patch, session.engine, copied);
    }
    Status Plan(const Session& open, std::string_view text, PasteTo to, PastePlan& plan,
                const PasteChanges& changes = {}) {
        const Status read = ReadClip(program, open, text, clip);
        return read ? PlanPaste(clip, open, to, changes, plan) : read;
    }

    ExpectingNotifier notifier;
    Program program{notifier};
    Clip clip;
};

/// Walks two trees of records side by side.
class SideBySide {
public:
    SideBySide(const Session& from, const Session& to, const PastePlan& plan)
        : from_(from), to_(to), walk_(from.patch.current, from.engine), otherWalk_(to.patch.current, to.engine),
          level_(std::min(from.engine.dialect.fields, to.engine.dialect.fields)) {
        for (const PastePlan::Place& place : plan.places)
            places_.emplace(place.from, place.to);
    }

    void Compare(const RecordId& record, const RecordId& other) {
        if (!seen_.insert(record).second)
            return;
        const std::map<int, Link> links = LinksOf(walk_, record), others = LinksOf(otherWalk_, other);
        const std::string name = from_.engine.name + ": " + RecordName(From(), record.first, record.second);
        for (const Cell& cell : CellsOf(record.first, record.second)) {
            if (cell.field >= 0 &&
                (!FactsOf(cell.kind, cell.field).inPatch || FactsOf(cell.kind, cell.field).since > level_))
                continue;
            const Cell same{other.first, other.second, cell.field};
            const auto link = links.find(cell.field), otherLink = others.find(cell.field);
            if (cell.field == codePointerField) {
                const auto mnemonic = [](const Session& session, const CellValue& value) {
                    return *session.engine.MnemonicOf(std::get<std::int32_t>(value));
                };
                EXPECT_EQ(mnemonic(from_, ReadCell(From(), cell)), mnemonic(to_, ReadCell(To(), same))) << name;
            } else if (link == links.end()) {
                EXPECT_TRUE(otherLink == others.end() && ReadCell(From(), cell) == ReadCell(To(), same))
                    << name << ": field " << cell.field;
            } else if (otherLink == others.end() || !IsSame(link->second.to, otherLink->second.to)) {
                ADD_FAILURE() << name << ": field " << cell.field << " refers to something else";
            }
        }
    }
    std::size_t Count() const { return seen_.size(); }

private:
    const PatchSet& From() const { return from_.patch.current; }
    const PatchSet& To() const { return to_.patch.current; }
    static std::map<int, Link> LinksOf(const LinkWalk& walk, const RecordId& record) {
        std::map<int, Link> links;
        walk.ForEachOf(record.first, record.second, [&links](const Link& link) {
            if (link.to.kind != TargetKind::Action)
                links.insert_or_assign(link.from.field, link);
        });
        return links;
    }
    bool IsSame(const Target& target, const Target& other) {
        if (target.kind == TargetKind::Sprite)
            return From().SpriteName(target.number) == To().SpriteName(other.number);
        if (target.kind == TargetKind::Sound)
            return From().SoundName(target.number) == To().SoundName(other.number);
        const RecordId record{*RecordKindOf(target.kind), target.number};
        const auto place = places_.find(record);
        if (place == places_.end())
            return target == other;
        Compare(record, {record.first, place->second});
        return place->second == other.number;
    }

    const Session& from_;
    const Session& to_;
    LinkWalk walk_, otherWalk_;
    FieldLevel level_; // of the fields that both engines know
    std::map<RecordId, std::int32_t> places_;
    std::set<RecordId> seen_;
};

TEST_F(ClipTest, AMonsterIsTheSameInAnotherPatchAndNothingElseIsChanged) {
    std::mt19937 random(11);
    const auto any = [&random](std::size_t count) { return static_cast<std::int32_t>(random() % count); };
    std::size_t records = 0;
    for (const char* source : {"doom19", "boom21", "mbf203", "dehextra21", "mbf21", "dsdhacked", "id24"})
        for (const char* target : {"mbf21", "dsdhacked", "id24"}) {
            Session from = Open(source), open = Open(target);
            PatchSet& set = from.patch.current;
            const bool arguments = from.engine.dialect.fields >= FieldLevel::Mbf21;
            if (from.engine.dialect.unlimited) {
                MakeRecords(set, from.engine);
                if (std::string_view(source) == target)
                    MakeRecords(open.patch.current, open.engine);
            }
            const std::int32_t thing = any(137), state = set.things[thing].initialState;
            for (int i = 0; i < 4; ++i) // runs of states go criss-cross; chains of two monsters mix
                set.states[set.states[state].nextState].nextState = set.things[any(137)].initialState;
            set.things[thing].deathState = set.things[any(137)].deathState;
            set.states[state].sprite = any(138);
            if (arguments) {
                StateRecord& spawning = set.states[state];
                spawning.codePointer = *from.engine.CodePointerOf("SpawnObject");
                SetValue(spawning, FieldOf(&StateRecord::arg1), any(137) + 1);
                set.things[spawning.arg1 - 1].hitPoints = 77; // another one than elsewhere: it goes along
            }
            const std::string text = Copy(from, {{RecordKind::Thing, thing}});
            const PatchSet before = open.patch.current;
            PastePlan plan;
            const Status planned = Plan(open, text, PasteTo::Free, plan);
            ASSERT_TRUE(planned) << source << " to " << target << ": " << planned.Reason();
            EXPECT_EQ(plan.lost, Lines()) << source << " to " << target;
            EXPECT_EQ(clip.ignored, Lines());
            Edits edits(open.patch);
            edits.StoreGroup(plan.assignments, "paste");

            std::set<RecordId> places;
            for (const PastePlan::Place& place : plan.places)
                if (!place.isThere)
                    places.insert({place.from.first, place.to});
            ForEachOtherCell(before, open.patch.current, [&](const Cell& cell) {
                EXPECT_TRUE(places.contains({cell.kind, cell.index})) << RecordName(before, cell.kind, cell.index);
            });
            // The ID number is the one thing that may not be the same.
            const auto placed =
                std::ranges::find(plan.places, RecordId(RecordKind::Thing, thing), &PastePlan::Place::from);
            for (const PastePlan::Place& place : plan.places)
                if (place.from.first == RecordKind::Thing)
                    open.patch.current.things[place.to].id = set.things[place.from.second].id;
            SideBySide walk(from, open, plan);
            walk.Compare({RecordKind::Thing, thing}, {RecordKind::Thing, placed->to});
            records += walk.Count();
            for (const PastePlan::Place& place : plan.places)
                if (place.from.first == RecordKind::Thing)
                    open.patch.current.things[place.to].id =
                        before.things.Has(place.to) ? before.things[place.to].id : 0;
            edits.Undo();
            EXPECT_TRUE(open.patch.current == before);
        }
    EXPECT_GT(records, 200U);
}

TEST_F(ClipTest, RefusesTextsThatAreNoPatchAndTooManyRecords) {
    const Session open = Open("dsdhacked");
    PastePlan plan;
    for (const auto& [text, reason] : {std::pair("", "The text holds nothing of a patch"),
                                       {"Hello\nworld\n", "The text holds nothing"},
                                       {"\0\xff\n[STRINGS]\n", "The text"}})
        EXPECT_TRUE(Plan(open, text, PasteTo::Free, plan).Reason().find(reason) != std::string::npos)
            << text << ": " << Plan(open, text, PasteTo::Free, plan).Reason();
    std::string many = "Patch File for DeHackEd v3.0\nDoom version = 2021\nPatch format = 6\n";
    for (int i = 0; i < 100000; ++i)
        many += "Frame " + std::to_string(i + 4000) + "\nDuration = 3\n\n";
    EXPECT_EQ(Plan(open, many, PasteTo::Free, plan).Reason(),
              "The text holds 100000 records; no more than 20000 are pasted at once.");
}

/// An Imp that throws a changed fireball, and comes to the fireball's states by itself, too.
TEST_F(ClipTest, WhatGoesAlongFollowsTheTicks) {
    Session session = Open("mbf21");
    PatchSet& set = session.patch.current;
    constexpr std::int32_t imp = 11, ball = 31, throwing = 454, rocket = 33;
    const std::int32_t flying = set.things[ball].initialState, burst = set.things[ball].deathState;
    StateRecord& state = set.states[throwing];
    state.codePointer = *session.engine.CodePointerOf("MonsterProjectile");
    SetValue(state, FieldOf(&StateRecord::arg1), ball + 1);
    state.nextState = burst;
    StateRecord& standing = set.states[set.things[imp].initialState];
    standing.codePointer = state.codePointer;
    SetValue(standing, FieldOf(&StateRecord::arg1), rocket + 1);
    set.things[rocket].deathState = burst; // to which a thing that stays comes first
    session.patch.defaults.things[rocket] = set.things[rocket];
    set.things[ball].hitPoints = 5;

    CopyChoice choice(session.patch, session.engine, {{RecordKind::Thing, imp}});
    const auto has = [&choice](RecordKind kind, std::int32_t number) {
        return choice.Chosen().contains({kind, number});
    };
    const auto tick = [&choice](RecordKind kind, std::int32_t number, bool ticked) {
        const auto& companions = choice.Companions();
        choice.Tick(static_cast<std::size_t>(std::ranges::find(companions, RecordId(kind, number), &Companion::record) -
                                             companions.begin()),
                    ticked);
    };
    const std::set<RecordId> proposed = choice.Chosen();
    EXPECT_TRUE(has(RecordKind::Thing, ball) && has(RecordKind::State, flying));
    EXPECT_TRUE(has(RecordKind::State, burst)) << "the Imp comes to it";
    EXPECT_FALSE(has(RecordKind::Thing, rocket)) << "it is the engine's own";
    tick(RecordKind::Thing, ball, false);
    EXPECT_FALSE(has(RecordKind::Thing, ball) || has(RecordKind::State, flying));
    EXPECT_TRUE(has(RecordKind::State, burst) && has(RecordKind::State, throwing));
    tick(RecordKind::Thing, ball, true);
    EXPECT_EQ(choice.Chosen(), proposed);
    tick(RecordKind::Thing, rocket, true);
    EXPECT_TRUE(has(RecordKind::State, set.things[rocket].initialState));
    tick(RecordKind::State, set.things[imp].initialState, false);
    EXPECT_TRUE(has(RecordKind::Thing, rocket)) << "it was ticked by itself";
    tick(RecordKind::State, throwing - 1, false);
    EXPECT_FALSE(has(RecordKind::State, throwing)) << "only the state before leads to it";
    tick(RecordKind::Thing, imp, false);
    EXPECT_TRUE(has(RecordKind::Thing, imp)) << "that is what is copied";

    const std::set<RecordId> own = WithOwnStates(session.patch, session.engine, {RecordKind::Thing, imp});
    EXPECT_TRUE(own.contains({RecordKind::State, burst}) && own.contains({RecordKind::State, throwing}));
    EXPECT_FALSE(own.contains({RecordKind::State, flying}) || own.contains({RecordKind::Thing, ball}));
    PastePlan plan;
    ASSERT_TRUE(
        Plan(session, modPatchFiles::FormatRecords(session.patch, session.engine, proposed), PasteTo::Free, plan));
    EXPECT_EQ(SubjectsOf(clip), (std::vector<RecordId>{{RecordKind::Thing, imp}})) << "it throws the other";
    EXPECT_EQ(
        ClipName(set, SubjectsOf(clip), {{RecordKind::Thing, imp}, {RecordKind::Thing, ball}, {RecordKind::State, 5}}),
        "Imp with 1 thing and 1 frame");
}

TEST_F(ClipTest, ADuplicateKeepsTheSoundsAndSpritesThatThePatchHasMade) {
    Session session = Open("dsdhacked");
    Edits edits(session.patch);
    const ThingRecord& imp = session.patch.current.things[11];
    constexpr std::int32_t sound = 700, sprite = 300;
    edits.StoreGroup({{{RecordKind::Sound, sound, existsField}, 1},
                      {{RecordKind::Sound, sound, lumpNameField}, "radio"},
                      {{RecordKind::Sprite, sprite, existsField}, 1},
                      {{RecordKind::Sprite, sprite, lumpNameField}, "PLYC"},
                      {{RecordKind::Thing, 11, RowOf(&ThingRecord::alertSound)}, sound},
                      {{RecordKind::State, imp.initialState, RowOf(&StateRecord::sprite)}, sprite}},
                     "make");
    const auto sounds = session.patch.current.sounds;
    PastePlan plan;
    ASSERT_TRUE(
        Plan(session,
             modPatchFiles::FormatRecords(session.patch, session.engine,
                                          WithOwnStates(session.patch, session.engine, {RecordKind::Thing, 11})),
             PasteTo::Free, plan));
    EXPECT_EQ(plan.lost, Lines());
    edits.StoreGroup(plan.assignments, "duplicate");
    const auto place = std::ranges::find(plan.places, RecordId(RecordKind::Thing, 11), &PastePlan::Place::from);
    ASSERT_NE(place, plan.places.end());
    const ThingRecord& other = session.patch.current.things[place->to];
    EXPECT_NE(other.initialState, imp.initialState);
    EXPECT_EQ(other.alertSound, sound);
    EXPECT_EQ(session.patch.current.states[other.initialState].sprite, sprite);
    EXPECT_EQ(session.patch.current.sounds, sounds);
}

TEST_F(ClipTest, TakesMusicAndTheHelperAndSaysWhereThereIsNone) {
    const std::string text = "[MUSIC]\nE1M1 = TUNE\n\n[HELPER]\nType = 12\n";
    Session open = Open("mbf21"), older = Open("boom21");
    PastePlan plan;
    ASSERT_TRUE(Plan(open, text, PasteTo::Free, plan));
    EXPECT_EQ(plan.lost, Lines());
    Edits edits(open.patch);
    edits.StoreGroup(plan.assignments, "paste");
    const std::int32_t song =
        plan.places.front().from.first == RecordKind::Music ? plan.places.front().to : plan.places.back().to;
    EXPECT_EQ(edits.Value({RecordKind::Music, song, lumpNameField}), CellValue(std::string("TUNE")));
    EXPECT_EQ(edits.Value({RecordKind::Misc, 0, helperField}), CellValue(12));
    EXPECT_EQ(ClipName(clip.patch.current, {{RecordKind::Music, song}}, clip.records),
              "music TUNE with 1 miscellaneous record");

    older.patch.current.misc.helper = 0;
    Session text21 = Open("mbf21");
    text21.patch.current.misc.helper = 12;
    ASSERT_TRUE(Plan(older, modPatchFiles::FormatPatch(text21.patch, text21.engine), PasteTo::Free, plan));
    EXPECT_EQ(plan.lost.size(), 1U) << ::testing::PrintToString(plan.lost);
    EXPECT_TRUE(plan.assignments.empty());
}

} // namespace
} // namespace plinket3::test
