#include "wad/WadEdit.h"

#include "tests/support/TestSupport.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace plinket3::test {
namespace {

std::string Padded(std::string name) {
    name.resize(8, '\0');
    return name;
}

/// A WAD with its directory somewhere, lumps in any order in the file, holes, shared and empty lumps.
std::string RandomWad(std::mt19937& random) {
    const auto dice = [&random](std::size_t sides) { return random() % sides; };
    const auto noise = [&](std::size_t length) {
        std::string bytes(length, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        return bytes;
    };
    std::vector<std::pair<std::int32_t, std::int32_t>> places;
    const std::size_t parts = dice(8), directoryPart = dice(parts + 1);
    std::size_t count = 0, directorySpace = 0;
    std::vector<std::size_t> sizes(parts);
    for (std::size_t& size : sizes) {
        size = dice(3) == 0 ? 0 : dice(20);
        count += 1 + (dice(4) == 0 ? 1 : 0);
    }
    directorySpace = count * 16;
    std::string file(12, '\0');
    std::int32_t directory = 0;
    for (std::size_t part = 0; part <= parts; ++part) {
        file += noise(dice(3) == 0 ? dice(9) : 0);
        if (part == directoryPart) {
            directory = static_cast<std::int32_t>(file.size());
            file.append(directorySpace, '\0');
        }
        if (part < parts) {
            places.emplace_back(static_cast<std::int32_t>(file.size()), static_cast<std::int32_t>(sizes[part]));
            file += noise(sizes[part]);
        }
    }
    while (places.size() < count) // shared
        places.push_back(places[dice(parts)]);
    std::ranges::shuffle(places, random);
    std::string entries;
    for (auto& [offset, size] : places) {
        if (size == 0 && dice(2) == 0)
            offset = static_cast<std::int32_t>(random()); // of no lump
        entries += WadEntry(offset, size, noise(1 + dice(8)));
    }
    file.replace(static_cast<std::size_t>(directory), entries.size(), entries);
    return file.replace(0, 12, WadHeader("PWAD", static_cast<std::int32_t>(count), directory));
}

TEST(WadEdit, KeepsAllOtherLumpsByteForByte) {
    std::mt19937 random(5);
    for (int round = 0; round < 5000; ++round) {
        const std::string bytes = RandomWad(random);
        WadEdit wad;
        ASSERT_TRUE(wad.Open(bytes));
        EXPECT_EQ(wad.Bytes(), bytes);
        std::vector<Lump> expected = LumpsOf(bytes);
        for (int step = 0; step < 4; ++step) {
            const std::string content(random() % 40, static_cast<char>('a' + step));
            if (expected.empty() || random() % 4 == 0) {
                ASSERT_TRUE(wad.Add("NEW", content));
                expected.push_back({Padded("NEW"), content});
            } else {
                const std::size_t lump = random() % expected.size();
                const std::string before = wad.Bytes();
                ASSERT_TRUE(wad.Replace(static_cast<int>(lump), expected[lump].bytes));
                ASSERT_EQ(wad.Bytes(), before) << "the same content, the same bytes";
                ASSERT_TRUE(wad.Replace(static_cast<int>(lump), content));
                expected[lump].bytes = content;
            }
            ASSERT_EQ(LumpsOf(wad.Bytes()), expected) << "round " << round << ", step " << step;
            WadEdit again;
            ASSERT_TRUE(again.Open(wad.Bytes()));
        }
    }
}

TEST(WadEdit, LeavesNoHolesAndFindsBackToTheOldBytes) {
    const std::string bytes = WadBytes({{"A", "first"}, {"DEHACKED", "Thing 1"}, {"MARK", ""}, {"B", "last"}});
    WadEdit wad;
    ASSERT_TRUE(wad.Open(bytes));
    ASSERT_TRUE(wad.Replace(1, "a longer patch"));
    EXPECT_EQ(wad.Bytes(), WadBytes({{"A", "first"}, {"DEHACKED", "a longer patch"}, {"MARK", ""}, {"B", "last"}}));
    ASSERT_TRUE(wad.Replace(1, "Thing 1"));
    EXPECT_EQ(wad.Bytes(), bytes);
    EXPECT_EQ(wad.LumpName(1), "DEHACKED");
}

TEST(WadEdit, RefusesWhatItCannotRewriteSafely) {
    const auto of = [](std::int32_t count, std::int32_t directory, const std::string& rest) {
        return WadHeader("PWAD", count, directory) + rest;
    };
    const std::string body = "0123456789";
    const std::pair<std::string, const char*> cases[]{
        {WadBytes({{"A", "x"}}, "IWAD"),
         "is an IWAD, which belongs to its game and is never written; a patch for it goes into a WAD of your own"},
        {"", "is no WAD that can be read"},
        {"PWAD\1", "is no WAD that can be read"},
        {of(1, 12, ""), "its directory lies outside the file"},
        {of(-1, 12, ""), "its directory lies outside the file"},
        {of(1, -16, body), "its directory lies outside the file"},
        {of(1, 0, body), "its directory lies outside the file"},
        {of(0x7fffffff, 12, body), "its directory lies outside the file"},
        {of(1, 12, WadEntry(28, 11, "A\x1b") + body), "its lump 0 (A\\x1b) lies outside the file"},
        {of(1, 12, WadEntry(28, -1, "A") + body), "its lump 0 (A) lies outside the file"},
        {of(1, 12, WadEntry(-5, 3, "A") + body), "its lump 0 (A) lies outside the file"},
        {of(1, 12, WadEntry(0x7fffffff, 0x7fffffff, "A") + body), "its lump 0 (A) lies outside the file"},
        {of(1, 12, WadEntry(11, 1, "A") + body), "its header and its lump 0 (A) overlap"},
        {of(1, 12, WadEntry(27, 2, "A") + body), "its directory and its lump 0 (A) overlap"},
        {of(1, 22, body + WadEntry(12, 11, "A")), "its lump 0 (A) and its directory overlap"},
        {of(2, 12, WadEntry(46, 5, "A") + WadEntry(44, 3, "B") + body), "its lump 1 (B) and its lump 0 (A) overlap"},
        {of(2, 12, WadEntry(44, 5, "A") + WadEntry(44, 3, "B") + body), "its lump 1 (B) and its lump 0 (A) overlap"},
        {of(2, 12, WadEntry(44, 9, "A") + WadEntry(47, 2, "B") + body), "its lump 0 (A) and its lump 1 (B) overlap"},
    };
    for (const auto& [bytes, reason] : cases) {
        WadEdit wad;
        EXPECT_EQ(wad.Open(bytes).Reason(), reason);
        EXPECT_EQ(wad.LumpCount(), 0);
    }
    WadEdit wad;
    ASSERT_TRUE(wad.Open(WadBytes({})));
    EXPECT_FALSE(wad.Add("", "x"));
    EXPECT_FALSE(wad.Add("NINECHARS", "x"));
    EXPECT_EQ(wad.Bytes(), WadBytes({}));
}

} // namespace
} // namespace plinket3::test
