#include "core/modConfig.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

const std::filesystem::path file = std::filesystem::path(DATA_FOLDER) / "iwaddetect.cfg";

// Keys in other letters or with blanks would never be found, and a broken value would come back changed.
TEST(IwadDetectFile, IsWrittenAsTheProgramWrites) {
    clsConfiguration iwadDetect;
    ASSERT_TRUE(modConfig::LoadIwadDetect(file, iwadDetect));
    EXPECT_EQ(iwadDetect.OutputConfiguration("\r\n", true), test::ReadFile(file));
    for (const auto& [key, value] : iwadDetect.Root(true)->Entries())
        EXPECT_EQ(key, ToLower(key));
}

} // namespace
} // namespace plinket3
