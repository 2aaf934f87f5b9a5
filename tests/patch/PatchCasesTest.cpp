#include "core/Text.h"
#include "patch/modPatchCheck.h"
#include "patch/modPatchDiff.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TextCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace plinket3::test {
namespace {

const std::filesystem::path cases = CASES_FOLDER;

/// A case of normal.txt, extended.txt or both.txt, which say for which small engine it is; engine_normal.txt,
/// engine_extended.txt, engine_mbf21.txt and engine_id24.txt have whole patches that are read by the rules of game
/// engines. "=== NAME" begins a patch behind its first line and its versions, "=== NAME (whole)" one that has only what
/// stands there. What is to come of it follows in sections, which are left
/// out when they are empty:
///     --- fails    why and in which line it cannot be read; then nothing else
///     --- means    what it changes, as modPatchDiff tells it
///     --- saved    what a save writes behind the header, only in the first two
///     --- check    what modPatchCheck finds
struct PatchText {
    std::string name, patch, told;
    bool normal = true, extended = true, asEngines = false;
    std::optional<EngineConfiguration> engine{}; // instead of the two small ones
    friend void PrintTo(const PatchText& text, std::ostream* out) { *out << text.name; }
};

std::vector<PatchText> PatchTexts() {
    std::vector<PatchText> texts;
    for (const std::string_view file :
         {"normal", "extended", "both", "engine_normal", "engine_extended", "engine_mbf21", "engine_id24"})
        for (const TextCase& each : CasesIn(cases / (std::string(file) + ".txt"))) {
            const char* start = "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n";
            const bool asEngines = file.starts_with("engine"), whole = asEngines || each.kind == "whole";
            PatchText& text = texts.emplace_back(PatchText{each.name, (whole ? "" : start) + each.text, each.told});
            text.asEngines = asEngines;
            if (file.ends_with("mbf21"))
                text.engine = SmallMbf21Engine();
            else if (file.ends_with("id24"))
                text.engine = SmallId24Engine();
            text.normal = !file.ends_with("extended") && !text.engine;
            text.extended = !file.ends_with("normal");
        }
    return texts;
}

/// What comes of a patch, as the files tell it.
std::string Told(std::string_view bytes, EngineConfiguration engine, bool both, Rules rules) {
    std::string told;
    const auto section = [&told](const char* name, std::string_view text) {
        if (!text.empty())
            told += std::string("--- ") + name + "\n" + Encoded(text);
    };
    engine.dialect = engine.dialect.By(rules);
    PatchData patch = SmallPatch(engine);
    const std::string header = modPatchFiles::FormatPatch(patch, SmallEngine(false));
    const auto read = modPatchFiles::ParsePatch(bytes, engine, patch.defaults, patch.current);
    const auto check = modPatchCheck::CheckPatch(bytes, engine, patch.defaults);
    if (!read.status) {
        EXPECT_EQ(check.status.Reason(), read.status.Reason());
        EXPECT_TRUE(check.findings.empty());
        EXPECT_EQ(static_cast<std::ptrdiff_t>(check.failedLine),
                  1 + std::count(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(read.offset), '\n'));
        section("fails", std::to_string(check.failedLine) + ": " + read.status.Reason() + "\n");
        return told;
    }
    std::string means = read.unsupported ? "unsupported\n" : "", findings;
    for (const std::string& line : modPatchDiff::Differences(patch.defaults, patch.current, engine))
        means += line + "\n";
    for (const modPatchCheck::Finding& finding : check.findings)
        findings += std::to_string(finding.line) + ": " + finding.text + "\n";
    section("means", means);
    if (!both && rules == Rules::Kept)
        section("saved", ReplaceAll(modPatchFiles::FormatPatch(patch, engine).substr(header.size()), "\r\n", "\n"));
    section("check", findings);
    return told;
}

class PatchCase : public testing::TestWithParam<PatchText> {};
INSTANTIATE_TEST_SUITE_P(Of, PatchCase, testing::ValuesIn(PatchTexts()),
                         [](const auto& text) { return text.param.name; });

TEST_P(PatchCase, IsReadSavedAndCheckedAsTold) {
    const PatchText& text = GetParam();
    for (const bool extended : {false, true}) {
        if (extended ? text.extended : text.normal) {
            EXPECT_EQ(Told(Decoded(text.patch), text.engine.value_or(SmallEngine(extended)),
                           text.normal && text.extended, text.asEngines ? Rules::Engine : Rules::Kept),
                      text.told);
        }
    }
}

} // namespace
} // namespace plinket3::test
