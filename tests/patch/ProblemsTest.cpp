#include "patch/Problems.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace plinket3::test {
namespace {

using modPatchCheck::Finding;
using modPatchCheck::Severity;
using Lines = std::vector<std::string>;

Lines Texts(const std::vector<Finding>& findings) {
    Lines texts;
    for (const Finding& finding : findings)
        texts.push_back(std::to_string(finding.line) + ": " + finding.text);
    std::ranges::sort(texts);
    return texts;
}

class Problems : public testing::TestWithParam<const char*> {
protected:
    /// A patch of that engine by engine rules in which fields hold what they like, here and there.
    PatchData WildPatch(unsigned seed) {
        PatchData patch = BuiltEngine(DATA_FOLDER, GetParam(), engine);
        engine.dialect = engine.dialect.AsEngines();
        std::mt19937 random(seed);
        const auto below = [&random](std::size_t end) { return static_cast<std::int32_t>(random() % end); };
        for (int change = 0; change < 60; ++change) {
            const RecordKind kind = std::array{RecordKind::Thing, RecordKind::State, RecordKind::Weapon}[random() % 3];
            const std::vector<std::int32_t> numbers = RecordNumbers(patch.current, kind);
            const std::vector<Cell> cells = CellsOf(kind, numbers[random() % (numbers.size() - 1) + 1]);
            const Cell& cell = cells[random() % cells.size()];
            if (cell.field >= 0 && FactsOf(kind, cell.field).inPatch &&
                FactsOf(kind, cell.field).since <= engine.dialect.fields)
                WriteCell(patch.current, cell, below(4) == 0 ? below(200'000) - 100'000 : below(1'000));
        }
        return patch;
    }

    EngineConfiguration engine;
};
INSTANTIATE_TEST_SUITE_P(Of, Problems, testing::Values("boom19", "mbf21", "dsdhacked"));

TEST_P(Problems, AreThoseOfTheSavedFileTheWorstFirst) {
    std::size_t errors = 0, others = 0;
    for (unsigned seed = 0; seed < 5; ++seed) {
        PatchData patch = WildPatch(seed);
        BytePieces saved;
        ASSERT_TRUE(modPatchFiles::FormatForSaving(patch, engine, saved));
        const std::vector<Finding> problems = ProblemsOf(patch, engine, {});
        const auto checked = modPatchCheck::CheckPatch(saved.Joined(), engine, patch.defaults);
        ASSERT_TRUE(checked.status);
        EXPECT_EQ(Texts(problems), Texts(checked.findings));
        ASSERT_TRUE(modPatchFiles::ReadBytes(saved.Joined(), engine, patch).status);
        EXPECT_EQ(Texts(ProblemsOf(patch, engine, {})), Texts(checked.findings)) << "of the file when it is open";
        EXPECT_TRUE(std::ranges::is_sorted(problems, {}, &Finding::severity));
        for (const Finding& problem : problems) {
            const bool refused = problem.text.find(" refuse to start") != std::string::npos ||
                                 problem.text.find("does not exist") != std::string::npos;
            EXPECT_TRUE(!refused || problem.severity == Severity::Refused) << problem.text;
            ++(refused ? errors : others);
        }
    }
    EXPECT_GT(errors, 20U);
    EXPECT_GT(others, 0U);
}

TEST_P(Problems, AreGoneWhenTheyAreMendedAndBackWhenThatIsUndone) {
    std::size_t mended = 0;
    for (unsigned seed = 0; seed < 2; ++seed) {
        PatchData patch = WildPatch(seed);
        Edits edits(patch);
        const std::vector<Finding> before = ProblemsOf(patch, engine, {});
        for (const Finding& problem : before) {
            const PatchSet set = patch.current;
            Mend(edits, problem);
            ASSERT_EQ(edits.CanUndo(), problem.mend.has_value()) << problem.text;
            if (!problem.mend)
                continue;
            ++mended;
            for (const Finding& left : ProblemsOf(patch, engine, {}))
                EXPECT_TRUE(left.cell != problem.cell || !left.mend) << problem.text << "\n" << left.text;
            edits.Undo();
            EXPECT_EQ(patch.current, set);
            edits.Clear();
        }
        EXPECT_EQ(Texts(ProblemsOf(patch, engine, {})), Texts(before));
    }
    EXPECT_GT(mended, 10U);
}

} // namespace
} // namespace plinket3::test
