#include "patch/modPatchFiles.h"

#include "core/Text.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace plinket3::test {
namespace {

/// Each folder of tests/data/patch/ is a case: what becomes of `in.deh` when it is read for the engine of `engine.cfg`,
/// with the small engine's own data, and saved. Lines of `expected.deh` end with a line feed, saved ones with CR LF.
std::vector<std::filesystem::path> Cases() {
    std::vector<std::filesystem::path> folders;
    for (const auto& entry : std::filesystem::directory_iterator(CASES_FOLDER))
        folders.push_back(entry.path());
    return folders;
}

class PatchCase : public testing::TestWithParam<std::filesystem::path> {};
INSTANTIATE_TEST_SUITE_P(Folder, PatchCase, testing::ValuesIn(Cases()),
                         [](const auto& folder) { return folder.param.filename().string(); });

TEST_P(PatchCase, IsSavedAsExpected) {
    EngineConfiguration engine;
    const Status loaded = modConfig::LoadEngine(GetParam() / "engine.cfg", engine);
    ASSERT_TRUE(loaded) << loaded.Reason();
    PatchData patch = SmallPatch(engine);
    patch.iwadPath.clear();
    const auto read = modPatchFiles::ParsePatch(ReadFile(GetParam() / "in.deh"), engine, patch.defaults, patch.current);
    ASSERT_TRUE(read.status) << read.status.Reason();
    EXPECT_EQ(ReplaceAll(modPatchFiles::FormatPatch(patch, engine), "\r\n", "\n"),
              ReadFile(GetParam() / "expected.deh"));
}

} // namespace
} // namespace plinket3::test
