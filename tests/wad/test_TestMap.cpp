#include "core/Bytes.h"
#include "tests/support/TestSupport.h"
#include "tests/wad/WadBytes.h"
#include "wad/Levels.h"
#include "wad/TestMap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

namespace plinket3 {
namespace {

using Numbers = std::vector<std::int32_t>;

/// The lump of a level that games build themselves: walked here as they do.
class Level {
public:
    explicit Level(const TestMap& map) : lumps_(test::LumpsOf(TestMapWad(map))) {}

    /// Signed numbers of 16 bits, `width` of them a record.
    std::vector<Numbers> Records(std::size_t lump, std::size_t width) const {
        std::vector<Numbers> records;
        for (ByteReader reader(lumps_.at(lump).bytes); !reader.AtEnd();) {
            Numbers& record = records.emplace_back();
            for (std::size_t i = 0; i < width; ++i)
                record.push_back(static_cast<std::int16_t>(reader.UInt16()));
        }
        return records;
    }
    std::string Name(std::size_t lump) const { return lumps_.at(lump).name.substr(0, lumps_.at(lump).name.find('\0')); }
    std::size_t Count() const { return lumps_.size(); }

private:
    std::vector<test::Lump> lumps_;
};

const Numbers& At(const std::vector<Numbers>& records, int place) {
    return records.at(static_cast<std::size_t>(place));
}

/// More than 0: the point is on the right of the line from a to b.
double RightOf(const Numbers& a, const Numbers& b, double x, double y) {
    return (x - a[0]) * (b[1] - a[1]) - (y - a[1]) * (b[0] - a[0]);
}

TEST(TestMapTest, HasTheLumpsOfALevelAndTheThingBeforeThePlayer) {
    const Level level({"E1M1", 3004, 300});
    std::string names;
    for (std::size_t lump = 0; lump < level.Count(); ++lump)
        names += level.Name(lump) + " ";
    EXPECT_EQ(names, "E1M1 THINGS LINEDEFS SIDEDEFS VERTEXES SEGS SSECTORS NODES SECTORS REJECT BLOCKMAP ");
    const auto things = level.Records(1, 5);
    ASSERT_EQ(things.size(), 2U);
    EXPECT_EQ(things[0], (Numbers{things[0][0], things[0][1], 0, 1, 7})) << "the player looks east";
    EXPECT_EQ(things[1], (Numbers{things[0][0] + 300, things[0][1], 180, 3004, 7})) << "and the thing at him";
    EXPECT_EQ(Level({"MAP01"}).Records(1, 5).size(), 1U) << "no thing";
    for (const auto& thing : Level({"MAP01", 9, INT32_MAX}).Records(1, 5))
        for (const Numbers& line : level.Records(2, 7)) {
            const auto vertices = level.Records(4, 2);
            EXPECT_GT(RightOf(At(vertices, line[0]), At(vertices, line[1]), thing[0], thing[1]), 0)
                << "stands in the room";
        }
}

TEST(TestMapTest, NodesLeadEveryPointToASubsectorAroundIt) {
    const Level level({"MAP01", 1, 1});
    const auto lines = level.Records(2, 7), vertices = level.Records(4, 2), segs = level.Records(5, 6),
               subsectors = level.Records(6, 2), nodes = level.Records(7, 14);
    ASSERT_EQ(nodes.size(), 1U);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> anyX(vertices[0][0] + 1, vertices[2][0] - 1),
        anyY(vertices[0][1] + 1, vertices[2][1] - 1);
    std::set<int> reached;
    for (int point = 0; point < 200; ++point) {
        const double x = anyX(random), y = anyY(random);
        const Numbers& node = nodes[0];
        const bool right = RightOf({node[0], node[1]}, {node[0] + node[2], node[1] + node[3]}, x, y) > 0;
        const std::size_t box = right ? 4 : 8; // top, bottom, left, right
        EXPECT_TRUE(y <= node[box] && y >= node[box + 1] && x >= node[box + 2] && x <= node[box + 3]);
        const int child = node[right ? 12 : 13];
        ASSERT_LT(child, 0) << "a subsector";
        const Numbers& subsector = At(subsectors, child & 0x7fff);
        reached.insert(child);
        for (int seg = subsector[1]; seg < subsector[0] + subsector[1]; ++seg)
            EXPECT_GT(RightOf(At(vertices, At(segs, seg)[0]), At(vertices, At(segs, seg)[1]), x, y), 0);
    }
    EXPECT_EQ(reached.size(), subsectors.size());
    double covered = 0, all = 0;
    for (const Numbers& seg : segs) { // each lies on its line, as far behind its beginning and as turned as it says
        const Numbers &from = At(vertices, seg[0]), &to = At(vertices, seg[1]),
                      &begin = At(vertices, At(lines, seg[3])[0]);
        const double turn = seg[2] * 3.14159265358979 / 32768, length = std::hypot(to[0] - from[0], to[1] - from[1]);
        EXPECT_NEAR(begin[0] + std::cos(turn) * seg[5], from[0], 0.5);
        EXPECT_NEAR(begin[1] + std::sin(turn) * seg[5], from[1], 0.5);
        EXPECT_NEAR(from[0] + std::cos(turn) * length, to[0], 0.5);
        EXPECT_NEAR(from[1] + std::sin(turn) * length, to[1], 0.5);
        covered += length;
    }
    for (const Numbers& line : lines)
        all += std::hypot(At(vertices, line[1])[0] - At(vertices, line[0])[0],
                          At(vertices, line[1])[1] - At(vertices, line[0])[1]);
    EXPECT_EQ(covered, all);
}

TEST(TestMapTest, TheBlockmapNamesTheLinesOfEveryBlock) {
    const Level level({"MAP01", 1, 1});
    const auto lines = level.Records(2, 7), vertices = level.Records(4, 2), words = level.Records(10, 1);
    const auto word = [&words](int place) { return At(words, place)[0]; };
    const int columns = word(2), rows = word(3);
    for (std::size_t line = 0; line < lines.size(); ++line) {
        const Numbers &from = At(vertices, lines[line][0]), &to = At(vertices, lines[line][1]);
        for (int step = 0; step <= 1000; ++step) {
            const int column = (from[0] + (to[0] - from[0]) * step / 1000 - word(0)) / 128,
                      row = (from[1] + (to[1] - from[1]) * step / 1000 - word(1)) / 128;
            ASSERT_TRUE(column >= 0 && column < columns && row >= 0 && row < rows);
            std::set<int> listed;
            for (int place = word(4 + row * columns + column) + 1; word(place) != -1; ++place)
                listed.insert(word(place));
            EXPECT_TRUE(listed.contains(static_cast<int>(line))) << line << " at " << step;
        }
    }
    EXPECT_EQ(word(word(4 + columns * (rows / 2) + columns / 2)), 0) << "a list begins with 0";
    EXPECT_EQ(word(word(4 + columns * (rows / 2) + columns / 2) + 1), -1) << "none in the middle of the room";
}

TEST(LevelsTest, AreKnownByTheirNamesAndGivenToPortsAsNumbers) {
    const test::TemporaryFolder folder;
    std::vector<test::Lump> lumps{};
    for (const char* name :
         {"MAP01", "THINGS", "MAP32", "E1M9", "MAP1", "MAP001", "E1M", "E1M10", "EXMY", "MAP+1", "MAPAB"})
        lumps.push_back({name, ""});
    test::WriteFile(folder / "a.wad", test::WadBytes(lumps));
    clsWad wad;
    wad.OpenWad(folder / "a.wad");
    EXPECT_EQ(LevelNames(wad), (std::vector<std::string>{"MAP01", "MAP32", "E1M9"}));
    EXPECT_EQ(WarpWords("MAP07"), (std::vector<std::string>{"7"}));
    EXPECT_EQ(WarpWords("e3m8"), (std::vector<std::string>{"3", "8"}));
    EXPECT_EQ(WarpWords("TITLE"), (std::vector<std::string>{"TITLE"}));
    EXPECT_TRUE(WarpWords("").empty());
}

} // namespace
} // namespace plinket3
