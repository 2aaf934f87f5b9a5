#include "core/clsConfiguration.h"

#include "tests/support/TestSupport.h"
#include "tests/support/TextCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <random>
#include <utility>
#include <vector>

namespace plinket3 {
namespace {

using Tree = std::shared_ptr<SettingTree>;

/// The tree as one line that also tells the kinds of the values: a:d5, b:f0.5, c:'text', k:[...].
std::string Shape(const SettingTree& tree) {
    std::string shape;
    for (const auto& [key, value] : tree.Entries()) {
        shape += (shape.empty() ? "" : ", ") + key + ":";
        if (const auto* real = std::get_if<double>(&value))
            shape += testing::PrintToString(*real) + "d";
        else if (const auto* single = std::get_if<float>(&value))
            shape += testing::PrintToString(*single) + "f";
        else if (const auto* text = std::get_if<std::string>(&value))
            shape += "'" + *text + "'";
        else if (const auto* structure = std::get_if<Tree>(&value))
            shape += "[" + Shape(**structure) + "]";
    }
    return shape;
}

std::string ShapeOf(std::string_view text) {
    clsConfiguration configuration;
    const Status status = configuration.InputConfiguration(text);
    return status ? Shape(*configuration.Root(true)) : "failed: " + status.Reason();
}

/// A case of configuration.txt: a text, and behind "--- tree" what it gives.
class ConfigurationReading : public testing::TestWithParam<test::TextCase> {};
INSTANTIATE_TEST_SUITE_P(Rows, ConfigurationReading,
                         testing::ValuesIn(test::CasesIn(std::filesystem::path(CASES_FOLDER) / "configuration.txt")),
                         [](const auto& row) { return row.param.name; });

TEST_P(ConfigurationReading, GivesTheTree) {
    EXPECT_EQ("--- tree\n" + test::Encoded(ShapeOf(test::Decoded(GetParam().text))), GetParam().told);
}

std::string Nested(std::size_t levels) {
    std::string text;
    for (std::size_t level = 0; level < levels; ++level)
        text += "k{";
    return text + "a;";
}

TEST(Configuration, NestingHasALimit) {
    EXPECT_EQ(ShapeOf(Nested(100)).substr(0, 6), "k:[k:[");
    EXPECT_EQ(ShapeOf(Nested(101)), "failed: line 1: blocks are nested deeper than 100 levels");
    EXPECT_EQ(ShapeOf(Nested(1'000'000)), "failed: line 1: blocks are nested deeper than 100 levels");
}

TEST(Configuration, AFailureNamesTheFileAndKeepsTheOldRoot) {
    const test::TemporaryFolder folder;
    test::WriteFile(folder / "twice.cfg", "b;" + std::string(100, 'k') + ";b;");
    clsConfiguration configuration;
    ASSERT_TRUE(configuration.InputConfiguration("a=1;"));
    const std::string file = (folder / "twice.cfg").string();
    EXPECT_EQ(configuration.LoadConfiguration(folder / "twice.cfg").Reason(),
              file + ": line 1: key \"b\" occurs twice in one block");
    EXPECT_FALSE(configuration.LoadConfiguration(folder / "none.cfg"));
    EXPECT_EQ(Shape(*configuration.Root(true)), "a:1d");
}

clsConfiguration Sample() {
    clsConfiguration configuration;
    auto inner = std::make_shared<SettingTree>();
    auto outer = std::make_shared<SettingTree>();
    EXPECT_TRUE(inner->Add("real", 0.25));
    EXPECT_TRUE(outer->Add("text", std::string("\\ \n\r\t\";")));
    EXPECT_TRUE(outer->Add("inner", inner));
    configuration.WriteSetting("a", 1, false);
    configuration.WriteSetting("k", outer, true);
    configuration.WriteSetting("flag", true, false);
    configuration.WriteSetting("single", 0.1f, false);
    return configuration;
}

TEST(Configuration, WritesIndentedTextWithEmptyLines) {
    EXPECT_EQ(Sample().OutputConfiguration("\n", true), "a = 1;\n"
                                                        "\n"
                                                        "k\n"
                                                        "{\n"
                                                        "\ttext = \"\\\\ \\n\\r\\t\\\";\";\n"
                                                        "\t\n"
                                                        "\tinner\n"
                                                        "\t{\n"
                                                        "\t\treal = 0.25;\n"
                                                        "\t}\n"
                                                        "\t\n"
                                                        "}\n"
                                                        "\n"
                                                        "flag = 0;\n"
                                                        "single = 0.1;\n");
}

TEST(Configuration, OnlyAStructureThatReplacesIsCopied) {
    const struct {
        std::string_view key;
        bool reference, shared;
    } rows[]{{"old", false, false}, {"old", true, true}, {"new", false, true}, {"new", true, true}};
    for (const auto& row : rows) {
        clsConfiguration configuration;
        ASSERT_TRUE(configuration.InputConfiguration("old=1;last;"));
        const auto structure = std::make_shared<SettingTree>();
        configuration.WriteSetting(row.key, structure, row.reference);
        structure->Set("late", 1.0);
        const Tree stored = std::get<Tree>(configuration.ReadSetting(row.key, 0.0, true));
        EXPECT_EQ(stored->Exists("late"), row.shared) << row.key << row.reference;
        EXPECT_EQ(configuration.Root(true)->Entries()[row.key == "old" ? 0 : 2].first, row.key);
    }
}

TEST(Configuration, RemovingKeepsTheOrderOfTheOthers) {
    clsConfiguration configuration;
    ASSERT_TRUE(configuration.InputConfiguration("a;b;c;d;"));
    configuration.RemoveSetting("b");
    configuration.RemoveSetting("none");
    configuration.WriteSetting("c", 5.0, false);
    configuration.WriteSetting("b", 6.0, false);
    EXPECT_EQ(Shape(*configuration.Root(true)), "a:0d, c:5d, d:0d, b:6d");
}

TEST(Configuration, AnyNumberOfKeysIsFoundAddedAndRemovedInOrder) {
    std::mt19937 random(3);
    SettingTree tree;
    std::vector<std::pair<std::string, double>> expected;
    for (int step = 0; step < 3000; ++step) {
        const std::string key = std::to_string(random() % 200);
        const auto value = static_cast<double>(step);
        const auto known = std::ranges::find(expected, key, &std::pair<std::string, double>::first);
        switch (random() % (step < 1500 ? 3 : 5)) { // it grows at first, then shrinks
        case 0:
            EXPECT_EQ(tree.Add(key, value), known == expected.end());
            if (known == expected.end())
                expected.emplace_back(key, value);
            break;
        case 1:
            tree.Set(key, value);
            if (known == expected.end())
                expected.emplace_back(key, value);
            else
                known->second = value;
            break;
        default:
            tree.Remove(key);
            if (known != expected.end())
                expected.erase(known);
        }
        const SettingValue* found = tree.Find(key);
        const auto now = std::ranges::find(expected, key, &std::pair<std::string, double>::first);
        ASSERT_EQ(found != nullptr, now != expected.end()) << key;
        if (found != nullptr) {
            ASSERT_EQ(*found, SettingValue(now->second));
        }
    }
    ASSERT_EQ(tree.Count(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(tree.Entries()[i], SettingTree::Entry(expected[i].first, expected[i].second));
}

} // namespace
} // namespace plinket3
