#include "cli/Cli.h"

#include "core/Text.h"
#include "core/Version.h"
#include "tests/support/TestSupport.h"
#include "tests/support/TextCases.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace plinket3::test {
namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

const std::filesystem::path buildFolder = DATA_FOLDER;
const std::filesystem::path freedoom1 = "/usr/share/games/doom/freedoom1.wad",
                            freedoom2 = "/usr/share/games/doom/freedoom2.wad",
                            dsdaWad = "/usr/share/dsda-doom/dsda-doom.wad",
                            chexPatch = "/usr/share/woof/autoload/chex.wad/chex.deh";
const std::string start = "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n";

/// Runs commands in a folder of its own, which words name by a leading "@".
class CliTest : public testing::Test {
protected:
    struct Result {
        int exit = 0;
        std::string out, error;
    };

    Result Run(const std::string& words) {
        std::istringstream stream(words);
        Words arguments;
        for (std::string word; stream >> word;)
            arguments.push_back(Place(word));
        return Run(arguments);
    }
    Result Run(const Words& arguments) {
        std::ostringstream out, error;
        const int exit = cli::RunCli(arguments, buildFolder, out, error);
        return {exit, out.str(), ReplaceAll(error.str(), (folder_.Path() / "").string(), "@")};
    }
    std::string Place(const std::string& word) const {
        return word.starts_with('@') ? (folder_ / word.substr(1)).string() : word;
    }
    void Write(const std::string& name, std::string_view bytes) { WriteFile(Place(name), bytes); }
    Json Dump(const std::string& words) {
        const Result result = Run("dump " + words);
        EXPECT_EQ(result.exit, cli::done) << result.error;
        return Json::parse(result.out);
    }
    /// A file of the data folder @data, beside which nothing else lies.
    void WriteData(const std::string& name, std::string_view bytes) {
        for (const char* folder : {"config", "tables"})
            std::filesystem::create_directories(folder_ / "data" / folder);
        Write("@data/" + name, bytes);
    }

    TemporaryFolder folder_;
};

TEST_F(CliTest, ListsTheEnginesAndTellsOfThoseItCannotRead) {
    WriteData("config/a.cfg", ReadFile(buildFolder / "config" / "doom19.cfg"));
    WriteData("config/b.cfg", "type = \"Plinket3 Engine Configuration file\"; a = 1; a = 2;");
    const Result result = Run("engines --data @data");
    EXPECT_EQ(result.out, "a.cfg\tDoom and Doom II 1.9\t19\tnormal\n");
    EXPECT_EQ(result.error, "plinket3-cli: @data/config/b.cfg: line 1: key \"a\" occurs twice in one block\n");
}

TEST_F(CliTest, DumpsThePatchAsJson) {
    Write("@a.deh", start +
                        "Thing 2 (Zomb\xef (x)\nBits = SOLID\n[CODEPTR]\nFrame 3 = Punch\n[STRINGS]\nQUITMSG = a\\nb\n"
                        "[PARS]\npar 2 3 4\nCheat 0\nGod mode = g\xffh\nMisc 0\nMax Health = 7\n");
    const Json dump = Dump("-e boom21.cfg -"), patched = Dump("--rules kept -e boom19 @a.deh");
    EXPECT_EQ(
        dump["engine"],
        (Json{{"file", "boom21.cfg"}, {"name", "Boom 2.02 (Doom version 21)"}, {"version", 21}, {"extended", true}}));
    EXPECT_EQ(patched["patch"], (Json{{"file", Place("@a.deh")}, {"version", 19}, {"format", 6}}));
    EXPECT_EQ(dump["things"].size(), 139U);
    EXPECT_EQ(patched["things"][1]["name"], "Zomb\xc3\xaf (x");
    EXPECT_EQ(patched["things"][1]["Bits"], 2);
    EXPECT_EQ(patched["states"][3]["Mnemonic"], "Punch");
    EXPECT_NE(patched["states"][3]["Code pointer"], patched["states"][3]["Action"]);
    EXPECT_EQ(dump["sounds"][1]["name"], "pistol");
    const std::pair<const char*, std::size_t> fields[]{{"things", 24}, {"states", 9},  {"sounds", 10}, {"sprites", 2},
                                                       {"strings", 4}, {"weapons", 7}, {"ammo", 3},    {"cheats", 3}};
    for (const auto& [kind, count] : fields)
        EXPECT_EQ(dump[kind][0].size(), count) << kind;
    const auto quit = std::ranges::find_if(patched["strings"], [](const Json& s) { return s["key"] == "QUITMSG"; });
    ASSERT_NE(quit, patched["strings"].end());
    EXPECT_EQ(*quit, (Json{{"key", "QUITMSG"}, {"text", "a\nb"}, {"length", 3}, {"position", 0}}));
    EXPECT_EQ(patched["cheats"][2], (Json{{"label", "God mode"}, {"max", 0}, {"text", "g h"}}));
    EXPECT_EQ(patched["misc"]["Second Max Health"], 7);
    EXPECT_EQ(patched["misc"].size(), 22U);
    EXPECT_EQ(patched["pars"], Json::parse(R"([{"episode": 2, "map": 3, "seconds": 4}])"));
    EXPECT_EQ(Dump("-e doom19")["strings"][0]["key"], nullptr);
}

TEST_F(CliTest, KeepsEveryByteOfRealWads) {
    const std::pair<std::filesystem::path, const char*> patches[]{{freedoom1, "DEHACKED"},
                                                                  {freedoom2, "DEHACKED"},
                                                                  {dsdaWad, "CHEXDEH"},
                                                                  {dsdaWad, "NERVEBEX"},
                                                                  {dsdaWad, "BFGBEX"}};
    for (const auto& [file, lump] : patches) {
        if (!std::filesystem::exists(file))
            GTEST_SKIP() << "the Debian package of " << file << " is not installed";
        std::string bytes = ReadFile(file);
        bytes[0] = 'P';
        Write("@a.wad", bytes);
        const std::string options = std::string("convert -e boom19 --lump ") + lump;
        ASSERT_EQ(Run(options + " @a.wad @a.wad").exit, cli::done);
        EXPECT_EQ(ReadFile(folder_ / "a.wad"), bytes) << file << " " << lump;
        ASSERT_EQ(Run(options + " @a.wad @lump.bex").exit, cli::done);
        EXPECT_EQ(ReadFile(folder_ / "lump.bex"), Run("wad @a.wad " + std::string(lump)).out);
    }
}

TEST_F(CliTest, DumpsWhatPatchesByEngineRulesSay) {
    Write("@a.bex", "# my patch\n#\n# by me\n\n# tough\nThing 12 (Imp (old))\nHit points = 0x10\n\n#far\n"
                    "Frame 2147483646\nNext frame = 4001\n\nFrame 4001\n\nThing 2000000000 (Far)\n\n[CODEPTR]\n"
                    "Frame 2147483646 = Look\n\n[STRINGS]\nUSER_X = own\n\n[SPRITES]\ntroop = IMPX\n"
                    "2147483647 = NEWS\n\n[SOUNDS]\n900 = newone\npistol = banger\n\n[MUSIC]\ne1m1 = longname\n\n"
                    "[HELPER]\ntype = 3\n");
    const Json dump = Dump("-e dsdhacked @a.bex");
    EXPECT_EQ(dump["things"][11]["index"], 11);
    EXPECT_EQ(dump["things"][11]["name"], "Imp (old)");
    EXPECT_EQ(dump["things"][11]["Hit points"], 16);
    EXPECT_EQ(dump["things"].back()["index"], 1999999999);
    EXPECT_EQ(dump["states"].size(), 4002U);
    EXPECT_EQ(dump["states"].back()["index"], 2147483646);
    EXPECT_EQ(dump["states"].back()["Mnemonic"], "Look");
    EXPECT_EQ(dump["sounds"].back()["name"], "newone");
    EXPECT_EQ(dump["sounds"][1]["name"], "banger");
    EXPECT_EQ(dump["sprites"].back()["index"], 2147483647);
    EXPECT_EQ(dump["sprites"][0]["name"], "IMPX");
    EXPECT_EQ(dump["renames"][3], (Json{{"kind", "sound"}, {"from", "pistol"}, {"to", "banger"}}));
    EXPECT_EQ(dump["music"], Json::parse(R"([{"index": 1, "name": "longna"}])"));
    EXPECT_EQ(dump["helper"], 3);
    EXPECT_EQ(dump["strings"].back(),
              (Json{{"key", "USER_X"}, {"text", "own"}, {"length", 3}, {"position", 0}, {"known", false}}));
    EXPECT_EQ(dump["notes"], Json::parse(R"([{"kind": "thing", "index": 11, "text": "tough"},
                                             {"kind": "state", "index": 2147483646, "text": "far"},
                                             {"kind": "patch", "index": null, "text": "my patch\n\nby me"}])"));
}

TEST_F(CliTest, LinksLeadIncludesNowhereElse) {
    std::filesystem::create_symlink("/etc/passwd", folder_ / "link");
    Write("@a.bex", "INCLUDE link\n\nThing 1\n");
    EXPECT_EQ(Run("check --rules engine -e boom19 @a.bex").out,
              Place("@a.bex") +
                  ":1: warning: \"INCLUDE link\" names a patch outside of this one's folder, which is not read\n");
}

TEST_F(CliTest, MakesATableOfWhichThePatchIsNoDifference) {
    Write("@a.deh", start + "Thing 12\nHit points = 200\nText 4 4\nTROOABCD\nMisc 0\nMax Armor = 3\n");
    WriteData("config/doom19.cfg", ReadFile(buildFolder / "config" / "doom19.cfg"));
    ASSERT_EQ(Run("table -e doom19 @a.deh @data/tables/doom19.tbl").exit, cli::done);
    Write("@same.deh", start + "Thing 12\nHit points = 200\nMisc 0\nMax Armor = 3\n");
    EXPECT_EQ(Run("diff --data @data -e doom19 @same.deh").out, "");
    EXPECT_EQ(Run("convert --data @data -e doom19 - @b.deh").exit, cli::done);
    EXPECT_EQ(ReadFile(folder_ / "b.deh").find("Text "), std::string::npos);
}

TEST_F(CliTest, FiltersStates) {
    Write("@a.deh", start + "Thing 1\nInjury frame = 2\n");
    EXPECT_TRUE(Run("states -e doom19 @a.deh --thing 0").out.starts_with("0\n2\n"));
    EXPECT_TRUE(Run("states -e doom19 --thing 0").out.starts_with("0\n149\n"));
    EXPECT_EQ(Run("states -e doom19 --weapon 0").out, "0\n2\n3\n4\n5\n6\n7\n8\n9\n");
    EXPECT_FALSE(Run("states -e doom19 --unused").out.empty());
}

TEST_F(CliTest, DumpsLaterFieldsForTheEnginesThatHaveThem) {
    Write("@a.deh", "Frame 5\nArgs1 = 0\n\nThing 2\nDropped item = 7\n");
    const std::string dump = Run("dump -e mbf21 @a.deh").out;
    const auto ordered = nlohmann::ordered_json::parse(dump);
    const auto keysBehind = [&ordered](const char* list, std::size_t index, std::string_view key) {
        std::vector<std::string> keys;
        for (const auto& entry : ordered[list][index].items())
            keys.push_back(entry.key());
        return std::vector(std::ranges::find(keys, key), keys.end());
    };
    using Keys = std::vector<std::string>;
    const Json mbf21 = Json::parse(dump);
    EXPECT_EQ(keysBehind("things", 1, "Respawn frame"),
              (Keys{"Respawn frame", "Dropped item", "Infighting group", "Projectile group", "Splash group",
                    "MBF21 Bits", "Rip sound", "Fast speed", "Melee range"}));
    EXPECT_EQ(keysBehind("states", 5, "Mnemonic"),
              (Keys{"Mnemonic", "Args1", "Args2", "Args3", "Args4", "Args5", "Args6", "Args7", "Args8", "MBF21 Bits"}));
    EXPECT_EQ(keysBehind("weapons", 1, "Firing frame"), (Keys{"Firing frame", "Ammo per shot", "MBF21 Bits"}));
    EXPECT_EQ(mbf21["states"][5]["Args1"], 0);
    EXPECT_TRUE(mbf21["states"][5]["Args2"].is_null() && mbf21["things"][15]["Projectile group"].is_null());
    EXPECT_EQ(mbf21["things"][1]["Dropped item"], 7);
    EXPECT_EQ(Dump("-e dehextra21 --rules engine @a.deh")["things"][1]["Dropped item"], 7);
    EXPECT_FALSE(Dump("-e dehextra21 --rules kept")["things"][1].contains("Dropped item"));
    EXPECT_FALSE(Dump("-e mbf203 --rules engine @a.deh")["states"][5].contains("Args1"));
    for (const auto& [engine, version] : {std::pair("mbf21", '\x04'), {"dehextra21", '\x03'}}) {
        ASSERT_EQ(Run(std::string("table -e ") + engine + " @new.tbl").exit, cli::done);
        const std::string table = std::string(engine) == "mbf21" ? "mbf21.tbl" : "dehextra.tbl";
        EXPECT_EQ(ReadFile(folder_ / "new.tbl"), ReadFile(buildFolder / "tables" / table));
        EXPECT_EQ(ReadFile(folder_ / "new.tbl")[5], version);
    }
}

TEST_F(CliTest, ReadsWads) {
    if (!std::filesystem::exists(freedoom2))
        GTEST_SKIP() << "the Debian package freedoom is not installed";
    const std::string directory = Run("wad " + freedoom2.generic_string()).out;
    EXPECT_EQ(directory.substr(0, directory.find('\t')), "0");
    EXPECT_NE(directory.find("\tPLAYPAL\t"), std::string::npos);
    EXPECT_EQ(Run("wad " + freedoom2.generic_string() + " playpal").out.size(), 14U * 768);
    EXPECT_EQ(Run("wad " + freedoom2.generic_string() + " NONE").exit, cli::no);
    const Result front = Run("wad --sprite TROO A " + freedoom2.generic_string());
    EXPECT_EQ(front.exit, cli::done);
    EXPECT_TRUE(front.out.starts_with("0\t") && front.out.ends_with("\tTROOA1\n")) << front.out;
    EXPECT_EQ(Run("wad --sprite TROO 0 " + freedoom2.generic_string()).out, front.out);
    EXPECT_EQ(Run("wad --sprite TROO a " + freedoom2.generic_string()).exit, cli::no);
    EXPECT_EQ(Run("wad --sprite NONE 0 " + freedoom2.generic_string()).exit, cli::no);
    ASSERT_EQ(Run("picture TITLEPIC " + freedoom2.generic_string() + " @title.ppm").exit, cli::done);
    const std::string picture = ReadFile(folder_ / "title.ppm");
    EXPECT_TRUE(picture.starts_with("P6\n320 200\n255\n"));
    EXPECT_EQ(picture.size(), 15U + 320 * 200 * 3);
    EXPECT_EQ(Run("picture NONE " + freedoom2.generic_string() + " @none.ppm").exit, cli::no);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "none.ppm"));
}

TEST_F(CliTest, ReadsRealPatchesAndItsOwnCopiesOfThemAlikeByTheKeptRules) {
    // All there is to tell: strings of other engines, comments for them, and what their authors count on there.
    const std::string_view known[]{
        "the engine has no string of that name", "Chocolate Doom", "stay in the text, where game engines drop them",
        "has escapes that game engines show as they stand", " characters where the engine has room for "};
    for (const auto& [file, engine] :
         {std::pair(freedoom1, "boom19"), {freedoom2, "boom19"}, {chexPatch, "ultimate"}}) {
        if (!std::filesystem::exists(file))
            GTEST_SKIP() << "the Debian package of " << file << " is not installed";
        Write("@in.deh", file == chexPatch ? ReadFile(file) : Run("wad " + file.generic_string() + " DEHACKED").out);
        const std::string option = std::string(" --rules kept -e ") + engine;
        ASSERT_EQ(Run("convert" + option + " @in.deh @out.deh").exit, cli::done);
        Json in = Dump("--rules kept @in.deh"), out = Dump("--rules kept @out.deh"), standard = Dump(option);
        EXPECT_EQ(in["engine"]["file"], std::string(engine) + ".cfg");
        EXPECT_NE(in["strings"], standard["strings"]);
        EXPECT_TRUE(in["things"] != standard["things"] || !in["pars"].empty());
        for (Json* dump : {&in, &out})
            dump->erase("patch");
        EXPECT_EQ(in, out);
        std::istringstream findings(Run("check --rules kept @in.deh").out + Run("check --rules kept @out.deh").out);
        for (std::string line; std::getline(findings, line);)
            EXPECT_TRUE(std::ranges::any_of(known, [&line](auto text) { return line.find(text) != line.npos; }))
                << line;
    }
}

/// tests/data/cli/answers.txt: behind "$" the words of a command, then what it prints, then "=" and its exit code or,
/// when it refuses, "!" and the one line on standard error; nothing else is printed then, and no output file is made.
TEST_F(CliTest, AnswersAndRefusesAsTold) {
    Write("@a.deh", start + "IWAD = my.wad\nEngine config = doom19.cfg\nThing 12 (Imp)\nHit points = 200\n");
    Write("@b.deh", start + "Frame 5\nDuration = 9\nMiss = 1\n");
    Write("@s.deh", start + "Sound 5\n# louder\nValue = 100\n");
    Write("@u.deh",
          "Patch File for DeHackEd v3.0\nDoom version = 21\nPatch format = 6\nAmmo 0 (Bullets)\nPer ammo = 5\n");
    const std::string modern = "Doom version = 21\n\n", misc = "Misc 0\nBFG Cells/Shot = 30\n\n",
                      weapon = "Weapon 6\nAmmo per shot = 20\nMBF21 Bits = SILENT\n\n";
    Write("@bfg.deh", modern + misc + weapon);
    Write("@bfg2.deh", modern + weapon + misc);
    Write("@drop.deh", modern + "Thing 2\nDropped item = 0\n");
    Write("@c.cfg", "a = 1; b { c = \"x\"; }");
    const std::string deep(100000, '{');
    Write("@empty", "");
    Write("@letter.txt", "Text of a letter\nFrame it = a\n\nIncludes a picture\nMiscellaneous\n[STRINGS]?\nThings\n");
    Write("@short.deh", "Patch File for DeHack");
    Write("@twice.deh", start + "IWAD = a\nThing 1\niwad = b\n");
    Write("@text.deh", start + "Text 2147483647 5\nabc");
    Write("@old.deh", "Patch File for DeHackEd v3.0\nDoom version = 16\nPatch format = 6\n");
    for (const char* name : {"@good.deh", "@clean.deh"})
        Write(name, start);
    Write("@deep.cfg", deep);
    Write("@twice.cfg", "a = 1;\nb { c; c; }");
    Write("@p.wad", WadBytes({{"DEHACKED", start + "Thing 12\nHit points = 200\n"},
                              {"dehacked", start + "Frame 5\nMiss = 1\n"},
                              {"TEXT", "no patch"}}));
    Write("@bad.wad", std::string("PWAD\xff\xff\xff\x7f\xff\xff\xff\x7f", 12) + "x");
    test::MakePipe(Place("@fifo"));
    const std::string config = ReadFile(buildFolder / "config" / "doom19.cfg");
    for (const char* name : {"doom19", "boom19"})
        WriteData(std::string("config/") + name + ".cfg",
                  ReadFile(buildFolder / "config" / (std::string(name) + ".cfg")));
    WriteData("config/deep.cfg", deep);
    WriteData("config/part.cfg", config.substr(0, config.find("itemcounts")));
    WriteData("tables/doom19.tbl", std::string("ETBL\x01\x03\xff\xff\xff\x7f", 10));

    const auto relative = [this](const std::string& text) {
        return ReplaceAll(ReplaceAll(text, (folder_.Path() / "").string(), "@"), "\r\n", "\n");
    };
    const std::string expected = ReadFile(std::filesystem::path(CASES_FOLDER) / "answers.txt");
    const std::string told = Retold(expected, [&](const std::string& words, const std::string&) {
        const Result result = Run(words);
        EXPECT_FALSE(std::filesystem::exists(folder_ / "out")) << words;
        return relative(result.out) + (result.exit == cli::refused
                                           ? ReplaceAll(result.error, "plinket3-cli: ", "! ")
                                           : result.error + "= " + std::to_string(result.exit) + "\n");
    });
    EXPECT_EQ(told, expected);
    EXPECT_EQ(Run(Words{"info", "a\nb"}).error, "plinket3-cli: a\\nb: No such file or directory\n");
}

/// A case of scenes.txt. "< FILE" writes the lines behind "| " into a file of the case's folder, of which the first may
/// say that it is a WAD whose lumps follow, each with a name and its bytes; "$ WORDS" runs a command, what it prints
/// stands below, lines on standard error behind "! ", and "= CODE" unless the exit code is 0;
/// "> FILE" shows what the file holds then.
class CliScene : public CliTest, public testing::WithParamInterface<TextCase> {
protected:
    static std::string FileOf(const std::string& text) {
        if (!text.starts_with("PWAD\n") && !text.starts_with("IWAD\n"))
            return Decoded(text);
        std::vector<Lump> lumps;
        std::istringstream lines(text.substr(5));
        for (std::string line; std::getline(lines, line);) {
            const std::size_t name = std::min(line.find(' '), line.size());
            lumps.push_back({line.substr(0, name), Decoded(line.substr(std::min(name + 1, line.size())))});
        }
        return WadBytes(lumps, text.substr(0, 4));
    }
    static std::string AsLines(const std::string& bytes) {
        std::string told;
        std::istringstream lines(Encoded(ReplaceAll(bytes, programVersion, "VERSION")));
        for (std::string line; std::getline(lines, line);)
            told += (line.empty() ? "|" : "| " + line) + "\n";
        return told;
    }
};
INSTANTIATE_TEST_SUITE_P(Cli, CliScene, testing::ValuesIn(CasesIn(std::filesystem::path(CASES_FOLDER) / "scenes.txt")),
                         [](const auto& scene) { return scene.param.name; });

TEST_P(CliScene, GoesAsTold) {
    std::string told, file, bytes;
    std::istringstream lines(GetParam().text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('|') && !file.empty()) {
            Write(file, FileOf(bytes += line.substr(std::min<std::size_t>(line.size(), 2)) + "\n"));
            told += line + "\n";
            continue;
        }
        if (!line.starts_with("< ") && !line.starts_with("$ ") && !line.starts_with("> "))
            continue; // it is told by what is done
        told += line + "\n";
        bytes.clear();
        file = line.starts_with('<') ? line.substr(2) : "";
        if (!file.empty()) {
            std::filesystem::create_directories(std::filesystem::path(Place(file)).parent_path());
            Write(file, "");
        } else if (line.starts_with('>')) {
            told += AsLines(ReadFile(Place(line.substr(2))));
        } else {
            const Result result = Run(line.substr(2));
            told += Encoded(ReplaceAll(result.out, (folder_.Path() / "").string(), "@"));
            told += Encoded(ReplaceAll(result.error, "plinket3-cli: ", "! "));
            told += result.exit == cli::done ? "" : "= " + std::to_string(result.exit) + "\n";
        }
    }
    EXPECT_EQ(told, GetParam().text);
}

TEST_F(CliTest, ReportsOutputThatCannotBeWritten) {
    std::ostringstream error;
    std::ostream broken(nullptr);
    EXPECT_EQ(cli::RunCli({"engines"}, buildFolder, broken, error), cli::refused);
    EXPECT_EQ(error.str(), "plinket3-cli: the output could not be written\n");
}

} // namespace
} // namespace plinket3::test
