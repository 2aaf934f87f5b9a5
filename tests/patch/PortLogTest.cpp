#include "patch/PortLog.h"

#include "patch/Cells.h"
#include "tests/support/EveryField.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <random>

namespace plinket3::test {
namespace {

std::string File(const char* name) { return ReadFile(std::filesystem::path(PORTS_FOLDER) / name); }

/// A patch, and what ports print and log of it, each in its own way.
const std::string bytes = File("patch.bex"), printed = File("printed.txt"), logged = File("logged.txt");

class PortLogTest : public testing::Test {
protected:
    PortLogTest() : patch_(BuiltEngine(DATA_FOLDER, "mbf21", engine_)) {
        engine_.dialect = engine_.dialect.AsEngines();
    }
    std::vector<modPatchCheck::Finding> Read(std::string_view log, std::string_view patch = bytes) {
        return FindingsInLog(log, {"/tmp/x y/a.bex", patch}, engine_, patch_.defaults);
    }

    EngineConfiguration engine_;
    PatchData patch_;
};

TEST_F(PortLogTest, TellsWhatPortsSayWithItsLinesAndWhatTheseSet) {
    std::string found;
    const auto findings = Read(printed + logged);
    for (const auto& finding : findings)
        found += std::to_string(finding.line) + ": " + finding.text + (finding.cell ? " *\n" : "\n");
    EXPECT_EQ(found, "8: Field named 'No such field' not found\n"
                     "99: Failed\n"
                     "9: Could not find MBF21 bit mnemonic NOSUCH *\n"
                     "13: Invalid frame string index for 'Foo'\n"
                     "14: Invalid frame string index for 'Foo'\n"
                     "17: Invalid frame string index for 'Foo'\n"
                     "20: Invalid value for 'Monsters Infight': 5 *\n"
                     "23: Invalid frame pointer mnemonic 'Nosuch' at 1\n"
                     "25: Invalid MAPnn value MAP77\n");
    EXPECT_EQ(findings.at(2).cell, (Cell{RecordKind::Thing, 11, RowOf(&ThingRecord::bits)}));
}

TEST_F(PortLogTest, TakesAnyBytes) {
    std::mt19937 random(7);
    for (int run = 0; run < 100; ++run) {
        std::string log = printed + logged, patch = bytes;
        for (std::string* text : {&log, &patch})
            for (int change = 0; change < 12; ++change)
                (*text)[random() % text->size()] = "\n'=:\0 L"[random() % 7];
        log.resize(random() % log.size());
        for (const auto& finding : Read(log, patch)) {
            EXPECT_GT(finding.line, 0U);
            EXPECT_EQ(finding.text.find('\n'), std::string::npos);
        }
    }
    std::string endless = logged;
    for (int i = 0; i < 60'000; ++i)
        endless.insert(endless.find("Line='Misc 0'"), "Bad data pair in 'x" + std::to_string(i) + "'\n");
    EXPECT_EQ(Read(endless).size(), 1000U);
}

} // namespace
} // namespace plinket3::test
