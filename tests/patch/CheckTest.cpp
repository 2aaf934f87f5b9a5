#include "patch/modPatchCheck.h"

#include "tests/support/SmallEngine.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

using modPatchCheck::CheckPatch;

const std::string first = "Patch File for DeHackEd v3.0\n";
const std::string start = first + "Doom version = 19\nPatch format = 6\n";

enum Modes { normal = 1, extended = 2, both = 3 };

struct CheckRow {
    const char* name;
    std::string lines; // behind the versions, from line 4
    std::vector<std::string> findings;
    Modes modes = both;
};
void PrintTo(const CheckRow& row, std::ostream* out) { *out << row.name; }

const CheckRow checkRows[]{
    {"ACleanPatch",
     "# x = y\nEngine config = a\nIWAD = b\nData WAD = c\n\nThing 1 (X)\nHit points = 5 # five\nBits = 0\n",
     {}},
    {"AnUnknownField",
     "\r\nThing 1\r\nHitpoints = 5\r\n",
     {R"(6: "Hitpoints = 5" is ignored: this section has no such field)"}},
    {"AnUnknownLine",
     "Thnig 1",
     {R"(4: "Thnig 1" is ignored: it is neither a section that is known nor a line with "=")"}},
    {"AnUnknownRecord",
     "Thing 9 X\nMass = 1\nMiss = 1\n",
     {R"(4: "Thing 9 X" has a number that the engine does not have, so its lines are ignored)",
      R"(6: "Miss = 1" is ignored: this section has no such field)"}},
    {"AnUnsupportedSection",
     "Sprite 1\n",
     {R"(4: "Sprite 1" is not supported and will be lost when the patch is saved)"}},
    {"ASound",
     "Sound 1\n",
     {R"(4: "Sound 1" counts sounds from 0, as game engines do, but a saved patch counts them from 1 and names this )"
      "sound by the next number"}},
    {"ASectionOfExtendedPatches",
     "[PARS]\npar 1\n",
     {R"(4: "[PARS]" begins a section of extended patches, which an engine of normal patches does not read)",
      R"(5: "par 1" is ignored: two or three numbers must follow "par")"},
     normal},
    {"LinesThatASectionHasNoPlaceFor",
     "[PARS]\npar 1 = 2\n[CODEPTR]\nPointer 1 = Fire\n[STRINGS]\nNONE = a\\\nb\nQUIT = c\n",
     {R"(5: "par 1 = 2" is ignored: [PARS] has only lines of the form "par 1 1 30" or "par 1 30")",
      R"(7: "Pointer 1 = Fire" is ignored: [CODEPTR] has only lines of the form "Frame 1 = NAME")",
      R"(9: "NONE = a\" is ignored: the engine has no string of that name)"},
     extended},
    {"CodePointers",
     "[CODEPTR]\nFrame 9 = Fire\nFrame 1 = fire\n",
     {R"(5: "Frame 9 = Fire" is ignored: it names a frame that the engine does not have)",
      R"(6: "Frame 1 = fire" is ignored: the engine knows no code pointer "fire")"},
     extended},
    {"PointersThatCannotBeSaved",
     "Pointer 0\nCodep Frame = 5\nPointer 1\nCodep Frame = 5\nCodep Frame = 9\nCodep Frame = 3\n",
     {R"(5: "Codep Frame = 5" gives frame 1 a code pointer that a saved patch of this engine cannot express)",
      R"(8: "Codep Frame = 9" is ignored: it names a frame that the engine does not have)"},
     normal},
    {"Numbers",
     "Mass = x\nMass = 5 6\nMass = 1.5\nMass = 3000000000\nMass = -3000000000 x\nMass =\nMass = -\nMass = 1-2\nMass = "
     ".\n"
     "Mass = -4.0\n",
     {R"(4: "Mass = x" holds no number and is read as 0)", R"(5: "Mass = 5 6" is read only up to "6")",
      R"(6: "Mass = 1.5" holds a fraction and is read as 2)",
      R"(7: "Mass = 3000000000" holds a number beyond 32 bits and is read as 2147483647)",
      R"(8: "Mass = -3000000000 x" is read only up to "x")",
      R"(8: "Mass = -3000000000 x" holds a number beyond 32 bits and is read as -2147483648)",
      R"(9: "Mass =" holds no number and is read as 0)", R"(10: "Mass = -" holds no number and is read as 0)",
      R"(11: "Mass = 1-2" is read only up to "-2")", R"(12: "Mass = ." holds no number and is read as 0)"}},
    {"NumbersOfOtherLines",
     "Frame x\nFrame 1z\n[PARS]\npar 1 2 3x\n[CODEPTR]\nFrame y = Fire\n",
     {R"(4: "Frame x" holds no number and is read as 0)", R"(5: "Frame 1z" is read only up to "z")",
      R"(7: "par 1 2 3x" is read only up to "x")", R"(9: "Frame y = Fire" holds no number and is read as 0)"},
     extended},
    {"Bytes",
     "Misc 0\nSoulsphere Health = 256\nBFG Cells/Shot = -1\nMonsters Infight = 7\n",
     {R"(5: "Soulsphere Health = 256" holds a number beyond one byte and is limited to 0 to 255)",
      R"(6: "BFG Cells/Shot = -1" holds a number beyond one byte and is limited to 0 to 255)",
      R"(7: "Monsters Infight = 7" is neither 202 (off) nor 221 (on))"}},
    {"References",
     "Initial frame = 6\nAlert sound = 4\nFrame 1\nSprite number = 3\nSprite subnumber = 32\nSprite subnumber = 32799\n"
     "Next frame = -1\nWeapon 0\nAmmo type = 6\nAmmo type = 5\n",
     {R"(4: "Initial frame = 6" names a frame that does not exist; the last one is 5)",
      R"(5: "Alert sound = 4" names a sound that does not exist; the last one is 3)",
      R"(7: "Sprite number = 3" names a sprite that does not exist; the last one is 2)",
      R"(8: "Sprite subnumber = 32" names a sprite's frame beyond the last possible one, 31)",
      R"(10: "Next frame = -1" names a frame that does not exist; the last one is 5)",
      R"(12: "Ammo type = 6" names a kind of ammunition that does not exist; the last one is 5)"}},
    {"FlagsByName",
     "Bits = SOLID+FLOTE | SPECIAL\nBits = INFLOAT\nBits = INFLOAT, FLOAT\nBits =\n",
     {R"(4: "Bits = SOLID+FLOTE | SPECIAL" names a flag that the engine does not know, "FLOTE")",
      R"(5: "Bits = INFLOAT" sets the flag FLOAT too, because its name is a part of "INFLOAT")"},
     extended},
    {"FlagsByNameInANormalPatch",
     "Bits = SOLID\n",
     {R"(4: "Bits = SOLID" names flags, which an engine of normal patches does not know; a saved patch has their number)"},
     normal},
    {"FlagsByNumber",
     "Bits = 2147483651\nBits = 51\n",
     {R"(4: "Bits = 2147483651" sets bits that have no name and are lost when the patch is saved: 31)",
      R"(5: "Bits = 51" sets bits that have no name and are lost when the patch is saved: 4 5)"},
     extended},
    {"NegativeFlags",
     "Bits = -1\n",
     {R"(4: "Bits = -1" is negative and so taken for names of flags; the same bits are read from 4294967295)"}},
    {"Texts",
     "Text 5 8\ndemo112345678\nText 7 3\none\ntwo12",
     {R"(4: "Text 5 8" puts 8 characters where the engine has room for 7)",
      R"(6: "Text 7 3" promises more characters than the patch holds)"},
     normal},
    {"Cheats",
     "Cheat 0\nChange music = idmusic\nChainsaw = as long as you like\n",
     {R"(5: "Change music = idmusic" puts 7 characters where the engine has room for 6)"}},
    {"StringsThatTakeInALine",
     "[STRINGS]\n# path = C:\\\nQUIT = lost\nQUIT = c:\\x\\\nb\nQUIT = a\\\n\nGOTARMOR = one\\\ntwo\n",
     {R"(5: "# path = C:\" is a comment, but ends in a backslash and so takes in the next line)",
      R"(9: "QUIT = a\" ends in a backslash with nothing behind it: game engines leave out such a text)"},
     extended},
    {"StringsThatTakeInAnother",
     "[STRINGS]\nQUIT = c:\\x\\\n  gotarmor = b\n",
     {R"(5: "QUIT = c:\x\" ends in a backslash and so takes in the next line, which looks like another string)"},
     extended},
    {"BlanksAroundStrings",
     "[STRINGS]\nQUIT =  a\nQUIT = a \nQUIT = a \\\nb\nQUIT = a\\\nb \n",
     {R"(5: "QUIT =  a" has blanks before or behind its text, which are not read)",
      R"(6: "QUIT = a" has blanks before or behind its text, which are not read)",
      R"(9: "QUIT = a\" has a text that ends in blanks, which are lost when the patch is saved)"},
     extended},
    {"EscapesOfItsOwn",
     "[STRINGS]\nQUIT = a\\nb\\x\nQUIT = \\\"\\\\\\t\\r\\t\\n\nQUIT = a\\\nt\\\"\n",
     {R"(6: "QUIT = \"\\\t\r\t\n" has escapes that game engines show as they stand: \" \\ \t \r)",
      R"(7: "QUIT = a\" has escapes that game engines show as they stand: \")"},
     extended},
    {"LinesBehindAnEmptyLine",
     "Thing 1\nMass = 1\n\n# comment\nMass = 2\nThing 2\nMass = 3\n[STRINGS]\n\nQUIT = a\n",
     {R"(8: "Mass = 2" stands behind an empty line, where game engines no longer count it to its section)"},
     extended},
    {"CommentsForOthers",
     "# on: *allow-long-strings* *allow-long-cheats*\n#$Editor Angle = x\n# $Editor\n",
     {R"(4: "# on: *allow-long-strings* *allow-long-cheats*" is a comment that means something to Chocolate Doom and is )"
      "lost when the patch is saved",
      R"(5: "#$Editor Angle = x" is a comment that means something to map editors and is lost when the patch is saved)"}},
    {"NamesAndNumbersInBrackets",
     "Thing 1 (Rocket (in air))\nWeapon 0 (Fist) # (x)\nPointer 0 (Frame 1)\nPointer 1 (x 3)\nPointer 2 (3)\n"
     "Pointer 1\n",
     {R"x(4: "Thing 1 (Rocket (in air))" has a name that is read only up to its first ")", "Rocket (in air")x",
      R"x(7: "Pointer 1 (x 3)" changes frame 2, to which its pointer number belongs; game engines change the one in )x"
      "its brackets, 3"}},
    {"LongLinesAndControlCharacters",
     "Thing 1\n\tx" + std::string(100, 'y') + "=1\n",
     {"5: \"\\tx" + std::string(58, 'y') + "...\" is ignored: this section has no such field"}},
};

class Check : public testing::TestWithParam<CheckRow> {};
INSTANTIATE_TEST_SUITE_P(Finds, Check, testing::ValuesIn(checkRows), [](const auto& row) { return row.param.name; });

std::vector<std::string> Findings(const modPatchCheck::CheckResult& result) {
    std::vector<std::string> lines;
    for (const modPatchCheck::Finding& finding : result.findings)
        lines.push_back(std::to_string(finding.line) + ": " + finding.text);
    return lines;
}

TEST_P(Check, TellsLineAndReason) {
    for (const bool isExtended : {false, true}) {
        if ((GetParam().modes & (isExtended ? extended : normal)) == 0)
            continue;
        const EngineConfiguration engine = SmallEngine(isExtended);
        const auto result = CheckPatch(start + GetParam().lines, engine, SmallDefaults(engine));
        EXPECT_TRUE(result.status) << result.status.Reason();
        EXPECT_EQ(Findings(result), GetParam().findings) << (isExtended ? "extended" : "normal");
    }
}

TEST(PatchCheck, TellsOfLinesBeforeTheVersions) {
    const EngineConfiguration engine = SmallEngine(false);
    const std::string reason = R"( is ignored, because it stands before the lines "Doom version" and "Patch format")";
    EXPECT_EQ(Findings(CheckPatch(first + "Thing 1 X\nMass = 1\nText 1 1\nab\n# c\n", engine, SmallDefaults(engine))),
              (std::vector<std::string>{"2: \"Thing 1 X\"" + reason, "3: \"Mass = 1\"" + reason,
                                        "4: \"Text 1 1\"" + reason}));
}

TEST(PatchCheck, TellsTheLineOfAFailure) {
    const EngineConfiguration engine = SmallEngine(false);
    const auto result =
        CheckPatch(start + "Sprite 1\nText 5 5\ndemo1\nother\nText 1 1\nxy\n", engine, SmallDefaults(engine));
    EXPECT_FALSE(result.status);
    EXPECT_EQ(result.failedLine, 8U);
    EXPECT_TRUE(result.findings.empty());
}

} // namespace
} // namespace plinket3::test
