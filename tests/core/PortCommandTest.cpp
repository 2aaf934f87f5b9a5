#include "core/PortCommand.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

std::string Joined(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words)
        joined += "[" + word + "]";
    return joined;
}

TEST(PortCommandTest, TextsArePartedAsAShellDoesButBackslashesStay) {
    constexpr std::pair<const char*, const char*> rows[]{
        {"", ""},
        {"  -iwad\t%i  ", "[-iwad][%i]"},
        {R"("a b" 'c "d"' e'f g'h)", R"([a b][c "d"][ef gh])"},
        {R"("" '' x"")", "[][][x]"},
        {R"("C:\My games\" \n $HOME;ls `x` *)", R"([C:\My games\][\n][$HOME;ls][`x`][*])"},
    };
    std::vector<std::string> words;
    for (const auto& [text, parted] : rows) {
        EXPECT_TRUE(SplitWords(text, words)) << text;
        EXPECT_EQ(Joined(words), parted) << text;
    }
    for (const char* text : {"a \"b", "it's", "\"'\"'"}) {
        EXPECT_FALSE(SplitWords(text, words)) << text;
        EXPECT_TRUE(words.empty());
    }
}

TEST(PortCommandTest, TokensBecomeWordsAndOptionsWithoutAValueAreLeftOut) {
    const TokenValues values{
        {'i', {"/my games/doom \"2\".wad"}}, {'d', {"a %i.wad", "b.wad"}}, {'p', {"p"}}, {'m', {"1", "8"}}, {'o', {}}};
    constexpr std::pair<const char*, const char*> rows[]{
        {"-iwad %i -file %d", "[-iwad][/my games/doom \"2\".wad][-file][a %i.wad][b.wad]"},
        {"-warp %m -dehout %o -deh %p", "[-warp][1][8][-deh][p]"},
        {"+logfile %o plain %o %o", "[plain]"},
        {"-a -b %o %o -c", "[-a][-c]"},
        {"--deh=%p --maps=%m --out=%o 100%% 5% %x", "[--deh=p][--maps=1 8][--out=][100%][5%][%x]"},
    };
    for (const auto& [text, expanded] : rows) {
        std::vector<std::string> words;
        ASSERT_TRUE(SplitWords(text, words));
        EXPECT_EQ(Joined(ExpandTokens(words, values)), expanded) << text;
    }
}

} // namespace
} // namespace plinket3
