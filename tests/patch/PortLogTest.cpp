#include "patch/PortLog.h"

#include "patch/Cells.h"
#include "tests/support/EveryField.h"

#include <gtest/gtest.h>

#include <random>

namespace plinket3::test {
namespace {

constexpr std::string_view bytes = "Patch File for DeHackEd v3.0\n"
                                   "\n"
                                   "Doom version = 21\n"
                                   "Patch format = 6\n"
                                   "\n"
                                   "Thing 12 (Imp)\n"
                                   "Hit points = 61\n"
                                   "No such field = 1\n" // 8
                                   "Bits = SOLID+NOSUCH\n"
                                   "\n"
                                   "Frame 442\n"
                                   "Duration = 5\n"
                                   "Foo = 3\n" // 13
                                   "Foo = 4\n"
                                   "\n"
                                   "Frame 443\n"
                                   "Foo = 3\n" // 17
                                   "\n"
                                   "Misc 0\n"
                                   "Monsters Infight = 5\n" // 20
                                   "\n"
                                   "[CODEPTR]\n"
                                   "Frame 1 = Nosuch\n" // 23
                                   "\n"
                                   "[PARS]\n"
                                   "par 77 3\n";

/// As ports write it, each in its own way.
constexpr std::string_view printed = "V_Init: allocate screens.\n"
                                     "/tmp/x y/a.bex:8: warning: Field named 'No such field' not found\n"
                                     "/tmp/x y/a.bex:8: warning: Field named 'No such field' not found\n"
                                     "/tmp/x y/a.bex:99999999999999999999: warning: no such line\n"
                                     "/tmp/other.bex:8: warning: of another patch\n"
                                     "/tmp/x y/a.bex:99: Failed\n";
constexpr std::string_view logged = "Loading DEH lump from /games/doom2.wad\n"
                                    "Line='Frame 442'\n"
                                    "Bad data pair in 'another patch'\n"
                                    "Loading DEH file /tmp/x y/a.bex\n"
                                    "\n"
                                    "Line='Patch File for DeHackEd v3.0'\n"
                                    "Unmatched Block: 'Patch File for DeHackEd v3.0'\n"
                                    "Line='Doom version = 21'\n"
                                    "Unmatched Block: 'Doom version = 21'\n"
                                    "Line=''\n"
                                    "Line='Thing 12 (Imp)'\n"
                                    "Assigned 61 to Hit points(11) at index 2\n"
                                    "Could not find MBF21 bit mnemonic NOSUCH\n"
                                    "Could not find bit mnemonic 0\n"
                                    "Line='Frame 442'\n"
                                    "Invalid frame string index for 'Foo'\n"
                                    "Invalid frame string index for 'Foo'\n"
                                    "Line='Frame 443'\n"
                                    "Invalid frame string index for 'Foo'\n"
                                    "Line='Misc 0'\n"
                                    "Invalid value for 'Monsters Infight': 5Line='[CODEPTR]'\n"
                                    "*BEX FORMAT:\n"
                                    "Could not find 'what a text says'\n"
                                    "*END BEX\n"
                                    "Invalid frame pointer mnemonic 'Nosuch' at 1\n"
                                    "Line='[PARS]'\n"
                                    "Invalid MAPnn value MAP77\r\n"
                                    "Loading DEH file /tmp/other.bex\n"
                                    "Bad data pair in 'Foo'\n";

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
    const auto findings = Read(std::string(printed) + std::string(logged));
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
        std::string log = std::string(printed) + std::string(logged), patch(bytes);
        for (std::string* text : {&log, &patch})
            for (int change = 0; change < 12; ++change)
                (*text)[random() % text->size()] = "\n'=:\0 L"[random() % 7];
        log.resize(random() % log.size());
        for (const auto& finding : Read(log, patch)) {
            EXPECT_GT(finding.line, 0U);
            EXPECT_EQ(finding.text.find('\n'), std::string::npos);
        }
    }
    std::string endless(logged);
    for (int i = 0; i < 60'000; ++i)
        endless.insert(endless.find("Line='Misc 0'"), "Bad data pair in 'x" + std::to_string(i) + "'\n");
    EXPECT_EQ(Read(endless).size(), 1000U);
}

} // namespace
} // namespace plinket3::test
