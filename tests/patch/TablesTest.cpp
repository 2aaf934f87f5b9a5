#include "patch/modTables.h"

#include "core/Bytes.h"
#include "patch/Cells.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

using namespace std::string_literals;
using modTables::FormatTable;
using modTables::ParseTable;

/// Defaults in which every value is another, so that a field in the wrong place shows.
PatchSet DistinctSet(const EngineConfiguration& engine) {
    PatchSet set = SmallDefaults(engine);
    std::int32_t value = 0;
    const auto fill = [&](auto& record) {
        using Record = std::remove_reference_t<decltype(record)>;
        for (const Field<Record>& field : fieldsOf<Record>)
            if (field.since <= engine.dialect.fields)
                SetValue(record, field,
                         FitWidth(field, ++value * (field.width == FieldWidth::Byte ? 1 : 70001) % 1000000007));
    };
    const auto fillAll = [&fill](auto& records) {
        for (auto& record : records.Dense())
            fill(record);
    };
    fill(set.misc);
    fillAll(set.things);
    fillAll(set.states);
    fillAll(set.sounds);
    fillAll(set.weapons);
    fillAll(set.ammo);
    for (ThingRecord& thing : set.things.Dense())
        thing.extra.fill(static_cast<std::uint8_t>(++value));
    for (StateRecord& state : set.states.Dense())
        state.codePointer = -++value;
    set.cheats[3] = {1, "a\0\xff"s, -2};
    return set;
}

class BothModes : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Tables, BothModes, testing::Bool(),
                         [](const auto& mode) { return mode.param ? "Extended" : "Normal"; });

TEST_P(BothModes, ReadBackWhatTheyHold) {
    const EngineConfiguration engine = SmallEngine(GetParam());
    const PatchSet written = DistinctSet(engine);
    const std::string bytes = FormatTable(written, engine.dialect);
    PatchSet read;
    ASSERT_TRUE(ParseTable(bytes, engine, read));
    EXPECT_EQ(read, written);
    EXPECT_TRUE(ParseTable(bytes + "more", engine, read)); // nothing behind the table is read
    EXPECT_EQ(read, written);
    const TemporaryFolder folder;
    Session session;
    session.engine = engine;
    session.patch.current = written;
    ASSERT_TRUE(modTables::SaveTable(session, folder / "new.tbl"));
    EXPECT_EQ(ReadFile(folder / "new.tbl"), bytes);
}

TEST_P(BothModes, ReadAsZerosFromWhereTheyEnd) {
    const EngineConfiguration engine = SmallEngine(GetParam());
    const std::string bytes = FormatTable(DistinctSet(engine), engine.dialect);
    for (std::size_t length = 6; length < bytes.size(); ++length) {
        PatchSet cut, zeros;
        ASSERT_TRUE(ParseTable(bytes.substr(0, length), engine, cut)) << length;
        ASSERT_TRUE(ParseTable(bytes.substr(0, length) + std::string(bytes.size(), '\0'), engine, zeros));
        for (PatchSet* set : {&cut, &zeros}) // a text is as long as the file, not filled up
            for (StringRecord& string : set->strings.Dense())
                string.text.resize(static_cast<std::size_t>(string.length = 0));
        for (std::size_t i = 0; i < cut.things.size(); ++i) {
            EXPECT_TRUE(zeros.things[i].name.starts_with(cut.things[i].name));
            zeros.things[i].name = cut.things[i].name; // the same holds for it
        }
        EXPECT_EQ(cut.things, zeros.things) << length;
        EXPECT_EQ(cut.states, zeros.states) << length;
        EXPECT_EQ(cut.sounds, zeros.sounds) << length;
        EXPECT_EQ(cut.misc, zeros.misc) << length;
    }
}

TEST(Tables, StandInTheFileAsDrawn) {
    PatchSet set;
    set.things.resize(1);
    set.things[0].name = "Imp";
    set.things[0].id = 3001;
    set.things[0].respawnState = -1;
    set.things[0].extra = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    set.strings = {{0x11, 99, "hi"}};
    set.cheats = {{5, "id", 7}};
    set.misc.initialHealth = 100;
    set.misc.soulsphereHealth = 200;
    set.misc.megasphereHealth = 0x01020304;
    set.misc.monstersInfight = 221;
    const auto int32 = [](std::int32_t value) {
        ByteWriter writer;
        writer.Int32(value);
        return writer.Take();
    };
    const std::string none = int32(-1), zero = int32(0);
    std::string expected = "ETBL\x01\x03" + zero + std::string("\x03\0Imp", 5) + int32(3001);
    for (int field = 1; field < 22; ++field)
        expected += zero;
    expected += int32(-1) + "\x01\x02\x03\x04\x05\x06\x07\x08\x09"; // respawn frame, extra block
    expected += none + none + none + none;                          // states, code pointers, sounds, sprites
    expected += zero + int32(2) + int32(0x11) + "hi";               // length before position
    expected += none + none;                                        // weapons, ammunition
    expected += zero + int32(2) + int32(5) + std::string("\x02\0id", 4) + int32(7);
    expected += int32(100);
    for (int field = 1; field < 10; ++field)
        expected += zero;
    expected += "\xc8\x04\x03\x02\x01" + std::string(6 * 4 + 3, '\0') + "\xdd";
    EXPECT_EQ(FormatTable(set, Dialect()), expected);
}

EngineConfiguration EngineOf(FieldLevel level) {
    EngineConfiguration engine = SmallEngine(true);
    engine.dialect.engineFields = level;
    engine.dialect = engine.dialect.AsEngines();
    return engine;
}

TEST(Tables, HoldLaterFieldsBehindAllElse) {
    const EngineConfiguration doom = EngineOf(FieldLevel::Doom), mbf21 = EngineOf(FieldLevel::Mbf21);
    PatchSet written = DistinctSet(mbf21);
    written.states[2] = StateRecord(); // unset is another value than every number
    written.states[3].arg1 = 0;
    written.states[4].arg1 = INT32_MIN;
    written.things[1] = ThingRecord();
    const std::string bytes = FormatTable(written, mbf21.dialect), plain = FormatTable(written, doom.dialect);
    EXPECT_TRUE(bytes.starts_with("ETBL\x01\x04") && plain.starts_with("ETBL\x01\x03"));
    EXPECT_TRUE(bytes.substr(6).starts_with(plain.substr(6)));
    PatchSet read, plainRead, doomRead;
    ASSERT_TRUE(ParseTable(bytes, mbf21, read));
    EXPECT_EQ(read, written);
    ASSERT_TRUE(ParseTable(plain, mbf21, plainRead)); // as tables were before
    EXPECT_EQ(plainRead.things[0].fastSpeed, -1);
    EXPECT_EQ(plainRead.states[0].given, 0U);
    ASSERT_TRUE(ParseTable(bytes, doom, doomRead));
    EXPECT_EQ(FormatTable(doomRead, doom.dialect), plain);
    for (std::size_t length = plain.size(); length < bytes.size(); ++length)
        EXPECT_TRUE(ParseTable(bytes.substr(0, length), mbf21, read) || length > plain.size());
}

TEST(Tables, PassOverLaterFieldsThatAreNotKnownAndRefuseImpossibleCounts) {
    const EngineConfiguration mbf21 = EngineOf(FieldLevel::Mbf21);
    const PatchSet set = DistinctSet(mbf21);
    const std::string bytes = FormatTable(set, mbf21.dialect);
    const auto with = [&bytes](std::string_view what, std::string_view by) {
        return std::string(bytes).replace(bytes.find(what), what.size(), by);
    };
    PatchSet read;
    ASSERT_TRUE(ParseTable(with("Rip sound", "Rip noise"), mbf21, read));
    EXPECT_EQ(read.things[0].ripSound, 0);
    EXPECT_EQ(read.things[0].fastSpeed, set.things[0].fastSpeed); // what stands behind it
    EXPECT_EQ(ParseTable(with("Rip sound"s + "\x02\0\0\0"s, "Rip sound\xff\xff\x0f\0"s), mbf21, read).Reason(),
              "Damaged table file.");
    EXPECT_TRUE(ParseTable(with("Rip sound"s + "\x02\0\0\0\0"s, "Rip sound\x02\0\0\0\x7f"s), mbf21, read));
}

TEST(Tables, HoldRecordsOfAnyNumberAndTextsBehindThem) {
    EngineConfiguration engine = SmallId24Engine();
    PatchSet set = DistinctSet(engine), read;
    set.states.Add(2000000000).duration = 7;
    set.states[2000000000].codePointer = 3;
    set.ammo[firstNegative].given = 1;
    WriteCell(set, {RecordKind::State, 2000000000, TextCell(2)}, "FOG");
    const std::string bytes = FormatTable(set, engine.dialect);
    EXPECT_TRUE(bytes.starts_with("ETBL\x01\x05"));
    ASSERT_TRUE(ParseTable(bytes, engine, read));
    EXPECT_EQ(read, set);
    for (std::size_t length = 6; length < bytes.size(); ++length)
        static_cast<void>(ParseTable(bytes.substr(0, length), engine, read));         // as an early end, or not at all
    const std::size_t count = bytes.find("\x00\x94\x35\x77"s) - sizeof(std::int32_t); // of the states
    ASSERT_EQ(bytes.substr(count, 4), "\x01\0\0\0"s);
    for (const std::string& impossible : {"\x02\0\0\0"s, "\xff\xff\x0f\0"s, "\xfe\xff\xff\xff"s})
        EXPECT_EQ(ParseTable(std::string(bytes).replace(count, 4, impossible), engine, read).Reason(),
                  "Damaged table file.");
    engine.dialect.engineFields = engine.dialect.fields = FieldLevel::Mbf21;
    ASSERT_TRUE(ParseTable(bytes, engine, read));
    EXPECT_TRUE(read.texts.empty()) << "the engine has no such fields";
    EXPECT_EQ(read.things[firstNegative].name, "Ghoul");
}

TEST(Tables, OfThePlainVersionGetTheirDroppedItemsFromTheConfiguration) {
    EngineConfiguration engine = EngineOf(FieldLevel::Dehextra);
    engine.droppedItems = {{1, 3}, {99, 1}, {-1, 1}};
    PatchSet set = SmallDefaults(engine), read;
    ASSERT_TRUE(ParseTable(FormatTable(set, Dialect::Extended()), engine, read));
    EXPECT_EQ(read.things[1].droppedItem, 3);
    set.things[2].droppedItem = 7;
    ASSERT_TRUE(ParseTable(FormatTable(set, engine.dialect), engine, read));
    EXPECT_EQ(std::pair(read.things[1].droppedItem, read.things[2].droppedItem), std::pair(0, 7));
}

TEST(Tables, RefusesWhatIsNoTable) {
    const EngineConfiguration engine = SmallEngine(false);
    const std::string good = FormatTable(SmallDefaults(engine), engine.dialect);
    const auto withCount = [&good](const std::string& count) { return good.substr(0, 6) + count; };
    struct {
        std::string bytes;
        const char* reason;
    } const rows[]{
        {"", "Invalid table Id."},
        {"ETBK" + good.substr(4), "Invalid table Id."},
        {"ETB", "Invalid table Id."},
        {"ETBL", "Invalid table version."},
        {"ETBL\x01\x02" + good.substr(6), "Invalid table version."},
        {"ETBL\x02\x03" + good.substr(6), "Invalid table version."},
        {withCount("\xff\xff\xff\x7f"s), "Damaged table file."},
        {withCount("\xfe\xff\xff\xff"s), "Damaged table file."},
        {withCount("\x00\x00\x10\x00"s), "Damaged table file."},
        {withCount("\xff\xff\xff\xff"s) + "\xff\xff\xff\x7f", "Damaged table file."},
        {withCount("\x10\x27\x00\x00"s), "Damaged table file."}, // one more than reads as zeros
    };
    for (const auto& row : rows) {
        PatchSet set = SmallDefaults(engine);
        const Status status = ParseTable(row.bytes, engine, set);
        EXPECT_FALSE(status);
        EXPECT_EQ(status.Reason(), row.reason);
        EXPECT_EQ(set, SmallDefaults(engine)); // nothing was assigned
    }
}

TEST(Tables, TakeNoMemoryForRecordsThatTheFileDoesNotHave) {
    const EngineConfiguration engine = SmallEngine(false);
    constexpr int codePointers = 2,
                  counts = 9; // things, states, code pointers, sounds, sprites, strings, weapons, ammunition, cheats
    for (int none = 0; none < counts; ++none) {
        std::string bytes = "ETBL\x01\x03";
        for (int count = 0; count < none; ++count)
            bytes += "\xff\xff\xff\xff";
        PatchSet set;
        if (none != codePointers) { // whose states are there already
            EXPECT_EQ(ParseTable(bytes + "\xff\xff\x0f\x00"s, engine, set).Reason(), "Damaged table file.") << none;
        }
        EXPECT_TRUE(ParseTable(bytes + "\x0f\x27\x00\x00"s, engine, set)) << none;
    }
    PatchSet large, read;
    large.ammo.resize(20000);
    ASSERT_TRUE(ParseTable(FormatTable(large, engine.dialect), engine, read)) << "all of them are there";
    EXPECT_EQ(read.ammo.size(), 20000U);
}

TEST(Tables, TakesATextsLengthFromTheTextThatThereIs) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchSet set;
    set.strings = {{0, 2, "hi"}};
    std::string bytes = FormatTable(set, engine.dialect);
    bytes.replace(bytes.find("hi") - 8, 4, "\xff\xff\xff\x7f");
    ASSERT_TRUE(ParseTable(bytes, engine, set));
    ASSERT_EQ(set.strings.size(), 1U);
    EXPECT_TRUE(set.strings[0].text.starts_with("hi"));
    EXPECT_EQ(static_cast<std::size_t>(set.strings[0].length), set.strings[0].text.size());
}

TEST(Tables, CutNamesAndCheatsAtTheLongestThatTheirCountsCanTell) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchSet set = SmallDefaults(engine), read;
    const std::string longest(65535, 'x');
    for (std::string* text : {&set.things[1].name, &set.weapons[0].name, &set.ammo[1].name, &set.cheats[0].text})
        *text = longest + "y";
    ASSERT_TRUE(ParseTable(FormatTable(set, engine.dialect), engine, read));
    for (std::string* text : {&set.things[1].name, &set.weapons[0].name, &set.ammo[1].name, &set.cheats[0].text})
        *text = longest;
    EXPECT_EQ(read, set);
}

TEST(Tables, GiveEveryStateACodePointer) {
    const EngineConfiguration engine = SmallEngine(true);
    PatchSet set, read;
    set.states = SmallDefaults(engine).states;
    constexpr std::size_t header = 6, size = 4, countOfPointers = header + size + size + size * 6 * 7;
    std::string bytes = FormatTable(set, engine.dialect).substr(0, countOfPointers + 3 * size);
    bytes[countOfPointers] = 1; // the last index of two
    ASSERT_TRUE(ParseTable(bytes, engine, read));
    ASSERT_EQ(read.states.size(), 6U);
    EXPECT_EQ(read.states[1].codePointer, 1);
    EXPECT_EQ(read.states[2].codePointer, 0);
}

} // namespace
} // namespace plinket3::test
