#include "patch/PatchMerge.h"

#include "tests/support/SmallEngine.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace plinket3::test {
namespace {

using Edits = std::map<std::pair<std::size_t, int>, std::int32_t>; // of a thing and a row, 0 for the engine's own

const std::string original = "# head\nThing 1\nMass = 5\nSpeed = 6 # why\n\nThing 2 (Other)\nHit points = 3\n";

class PatchMergeTest : public testing::Test {
protected:
    PatchMergeTest() { engine_.dialect = engine_.dialect.AsEngines(); }

    PatchDocument Read(const std::string& bytes) const {
        PatchDocument document;
        PatchSet set;
        EXPECT_TRUE(document.Read(bytes, engine_, defaults_, set).status);
        return document;
    }
    void Apply(const Edits& edits, PatchSet& set) const {
        for (const auto& [place, value] : edits) {
            const Cell cell{RecordKind::Thing, static_cast<std::int32_t>(place.first), place.second};
            WriteCell(set, cell, value == 0 ? ReadCell(defaults_, cell) : CellValue(value));
        }
    }
    PatchDocument Edited(const PatchDocument& from, const Edits& edits) const {
        PatchSet set = from.Said();
        Apply(edits, set);
        PatchDocument merged;
        EXPECT_TRUE(MergeIntoDocument(from, set, defaults_, engine_, merged));
        return merged;
    }

    EngineConfiguration engine_ = SmallEngine(true);
    const PatchSet defaults_ = SmallDefaults(engine_);
};

TEST_F(PatchMergeTest, TakesWhatOneSideChangedAndKeepsWhatBothDid) {
    std::mt19937 random(8);
    const PatchDocument old = Read(original);
    for (int round = 0; round < 300; ++round) {
        Edits ours, theirs;
        for (Edits* edits : {&ours, &theirs})
            for (std::size_t count = random() % 5; count > 0; --count)
                (*edits)[{random() % 2, static_cast<int>(random() % 12)}] = static_cast<std::int32_t>(random() % 3);
        const PatchDocument here = Edited(old, ours), there = Edited(old, theirs);
        PatchSet merged = here.Said(), expected = old.Said(), expectedRefused;
        const PatchSet refused = MergeChanges(there, old, merged);
        Apply(theirs, expected);
        for (const auto& [place, value] : ours) { // ours stays, unless it is the original's
            const Cell cell{RecordKind::Thing, static_cast<std::int32_t>(place.first), place.second};
            if (ReadCell(here.Said(), cell) != ReadCell(old.Said(), cell))
                WriteCell(expected, cell, ReadCell(here.Said(), cell));
        }
        ASSERT_EQ(merged, expected) << here.Bytes() << "---\n" << there.Bytes();
        expectedRefused = expected;
        for (const auto& [place, value] : theirs) {
            const Cell cell{RecordKind::Thing, static_cast<std::int32_t>(place.first), place.second};
            if (ReadCell(there.Said(), cell) != ReadCell(old.Said(), cell))
                WriteCell(expectedRefused, cell, ReadCell(there.Said(), cell));
        }
        ASSERT_EQ(refused, expectedRefused) << here.Bytes() << "---\n" << there.Bytes();
    }
}

} // namespace
} // namespace plinket3::test
