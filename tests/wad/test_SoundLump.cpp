#include "wad/SoundLump.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

TEST(SoundLumpTest, TakesTheSamplesFromTheLumpsLengthWhateverItsHeaderCounts) {
    struct {
        std::vector<std::uint8_t> lumpAndOneByte;
        int rate;
        std::vector<std::uint8_t> samples;
    } const rows[]{
        {{3, 0, 0x11, 0x2B, 9, 9, 9, 9, 128, 129, 77}, 11025, {128, 129}},
        {{0, 9, 0x44, 0xAC, 0, 0, 0, 0, 1, 77}, 44100 - 65536, {1}},
        {{3, 0, 0x40, 0x1F, 0, 0, 0, 0, 77}, 8000, {}},
        {{3, 0, 0x40, 0x1F, 0, 0, 0, 77}, 0, {}},
        {{}, 0, {}},
    };
    for (const auto& row : rows) {
        const SoundLump sound = ReadSoundLump(row.lumpAndOneByte);
        EXPECT_EQ(sound.rate, row.rate);
        EXPECT_EQ(std::vector(sound.samples.begin(), sound.samples.end()), row.samples);
    }
}

} // namespace
} // namespace plinket3::test
