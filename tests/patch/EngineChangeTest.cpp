#include "patch/EngineChange.h"

#include "core/Text.h"
#include "patch/PatchDocument.h"
#include "patch/modPatchFiles.h"
#include "tests/support/EveryField.h"
#include "tests/support/TextCases.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

namespace plinket3::test {
namespace {

/// A case of engine_change.txt: a patch, and in its kind the engine that it is for and the one that it is taken over
/// to. Behind "--- lost" stands what that cannot hold, behind "--- saved" what is saved then.
class EngineChangeTest : public testing::TestWithParam<TextCase> {};
INSTANTIATE_TEST_SUITE_P(Patch, EngineChangeTest,
                         testing::ValuesIn(CasesIn(std::filesystem::path(CASES_FOLDER) / "engine_change.txt")),
                         [](const auto& each) { return each.param.name; });

TEST_P(EngineChangeTest, KeepsWhatTheOtherEngineCanHoldAndTellsTheRest) {
    std::string from, word, to;
    std::istringstream(GetParam().kind) >> from >> word >> to;
    EngineConfiguration former, engine;
    PatchData patch = BuiltEngine(DATA_FOLDER, from, former);
    former.dialect = former.dialect.AsEngines();
    auto document = std::make_shared<PatchDocument>();
    ASSERT_TRUE(document->Read(GetParam().text, former, patch.defaults, patch.current).status);
    patch.document = std::move(document);
    const PatchData standard = BuiltEngine(DATA_FOLDER, to, engine);
    engine.dialect = engine.dialect.AsEngines();
    const EngineChange change = ChangeEngine(patch, former, engine, standard.defaults);
    std::string told = change.lost.empty() ? "" : "--- lost\n";
    for (const std::string& line : change.lost)
        told += line + "\n";
    BytePieces saved;
    ASSERT_TRUE(modPatchFiles::FormatForSaving(change.patch, engine, saved));
    const std::string text = ReplaceAll(saved.Joined(), "\r\n", "\n");
    EXPECT_EQ(told + "--- saved\n" + Encoded(text), GetParam().told);
}

} // namespace
} // namespace plinket3::test
