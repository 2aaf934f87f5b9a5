#include "core/Text.h"
#include "patch/modPatchCheck.h"
#include "patch/modPatchDiff.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <sstream>
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
/// "%0D" is the byte of that code; "%" at the end of a line takes the line feed away.
struct PatchText {
    std::string name, patch, told;
    bool normal = true, extended = true, asEngines = false;
    std::optional<EngineConfiguration> engine{}; // instead of the two small ones
    friend void PrintTo(const PatchText& text, std::ostream* out) { *out << text.name; }
};

std::string Encoded(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        const bool blankAtEnd = byte == ' ' && (at + 1 == bytes.size() || bytes[at + 1] == '\n');
        if (byte == '\n' || (byte >= ' ' && byte < 0x7f && byte != '%' && !blankAtEnd))
            text += bytes[at];
        else
            text.append({'%', digits[byte >> 4U], digits[byte & 15U]});
    }
    return text.empty() || text.ends_with('\n') ? text : text + "%\n";
}

std::string Decoded(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            bytes += text[at];
        } else if (text[++at] != '\n') {
            bytes += static_cast<char>(std::stoi(std::string(text.substr(at, 2)), nullptr, 16));
            ++at;
        }
    }
    return bytes;
}

std::vector<PatchText> PatchTexts() {
    std::vector<PatchText> texts;
    for (const char* file :
         {"normal", "extended", "both", "engine_normal", "engine_extended", "engine_mbf21", "engine_id24"}) {
        std::istringstream lines(ReadFile(cases / (std::string(file) + ".txt")));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("=== ")) {
                const std::string name = line.substr(4, line.find(" (whole)") - 4);
                const char* start = "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n";
                const std::string_view what = file;
                const bool asEngines = what.starts_with("engine"), whole = asEngines || line.ends_with(" (whole)");
                PatchText& text = texts.emplace_back(PatchText{name, whole ? "" : start, ""});
                text.asEngines = asEngines;
                if (what.ends_with("mbf21"))
                    text.engine = SmallMbf21Engine();
                else if (what.ends_with("id24"))
                    text.engine = SmallId24Engine();
                text.normal = !what.ends_with("extended") && !text.engine;
                text.extended = !what.ends_with("normal");
            } else if (PatchText& last = texts.back(); line.starts_with("--- ") || !last.told.empty()) {
                last.told += line + "\n";
            } else {
                last.patch += line + "\n";
            }
        }
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
