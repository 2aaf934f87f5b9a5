#include "ui/FileCommands.h"
#include "core/Files.h"
#include "patch/PatchDocument.h"
#include "patch/RulesChoice.h"
#include "patch/Session.h"
#include "tests/support/SmallEngine.h"
#include "tests/ui/FakeDialogs.h"
#include "tests/ui/UiTest.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace plinket3 {
namespace {

using test::ReadFile;
using test::UseFolder;
using test::WriteFile;

constexpr const char* loseChanges = "All changes will be lost. Are you sure?";
constexpr const char* normalPatch = "Patch File for DeHackEd v3.0\n\nDoom version = 19\nPatch format = 6\n"
                                    "Engine config = doom19.cfg\nIWAD = Test\n\nThing 12 (Imp)\nHit points = 200\n";

/// A WAD with a palette and nothing else.
std::string PaletteWad(const char* identification, char colour = ' ') {
    return test::WadBytes({{"PLAYPAL", std::string(768, colour)}}, identification);
}

class FileCommandsTest : public ::testing::Test {
protected:
    FileCommandsTest() {
        UseFolder(program, folder.Path());
        WriteFile(folder / "test.wad", PaletteWad("IWAD"));
        program.settings.AddIwad("Test", (folder / "test.wad").string());
        program.settings.Number("patchRules", static_cast<int>(RulesSetting::Kept));
        recovery = std::make_unique<Recovery>(program.settingsFolder);
        commands = std::make_unique<FileCommands>(program, edits, dialogs, *recovery,
                                                  [this](const PatchToOpen* patch) { return ChooseSession(patch); });
    }

    std::optional<Session> ChooseSession(const PatchToOpen* patch) {
        ++sessionsAsked;
        if (sessionCancelled)
            return std::nullopt;
        Session session;
        const bool checked = patch != nullptr && rules == Rules::Kept;
        const SessionChoice choice{EngineAt(engine), 0, dataWads, checked ? 19 : -1, rules};
        if (LoadSession(program, choice, session) != SessionResult::Loaded)
            return std::nullopt;
        return session;
    }

    std::size_t EngineAt(const std::string& name) const {
        for (std::size_t i = 0; i < program.engines.size(); ++i)
            if (program.engines[i].file.stem() == name)
                return i;
        ADD_FAILURE() << "no engine " << name << " beside the tests";
        return 0;
    }

    /// What is asked about the unsaved work of a run that crashed.
    void ExpectRecovery(const std::string& file, Answer answer) {
        notifier.Expect("Plinket3 did not end as it should. Unsaved changes of " + file +
                            " were kept. Do you want to go on with them? With No they are given up, with Cancel you "
                            "are asked again at the next start.",
                        answer);
    }
    void Edit() { edits.Store({RecordKind::Thing, 11, RowOf(&ThingRecord::hitPoints)}, 999); }
    std::string Open(const char* name, std::string_view bytes) {
        const std::filesystem::path file = folder / name;
        WriteFile(file, bytes);
        commands->openFile(file);
        return file.string();
    }

    test::TemporaryFolder folder;
    test::ExpectingNotifier notifier;
    Program program{notifier};
    Edits edits{program.patch};
    test::FakeDialogs dialogs;
    std::unique_ptr<Recovery> recovery;
    std::unique_ptr<FileCommands> commands;
    std::string engine = "doom19";
    std::vector<std::string> dataWads;
    Rules rules = Rules::Kept;
    bool sessionCancelled = false;
    int sessionsAsked = 0;
};

TEST_F(FileCommandsTest, AnUnnamedPatchAsksForItsName) {
    engine = "mbf19";
    commands->createNewFile();
    EXPECT_EQ(program.patch.fileName, program.documentsFolder / "unnamed.bex");
    dialogs.Expect("Save patch file", "");
    EXPECT_FALSE(commands->Save());
    EXPECT_EQ(dialogs.lastDetail, "Extended Dehacked files (*.bex)|*.bex|All files (*.*)|*.*");
}

TEST_F(FileCommandsTest, OpenAsksForAFileWithoutAPathAndRemembersIt) {
    dialogs.Expect("Load patch file", "");
    commands->openFile({});
    EXPECT_EQ(dialogs.lastDetail, "All known file types|*.deh;*.bex;*.wad|Dehacked files (*.deh)|*.deh|"
                                  "Extended Dehacked files (*.bex)|*.bex|WAD files (*.wad)|*.wad|"
                                  "All files (*.*)|*.*");
    EXPECT_EQ(sessionsAsked, 0);
    const std::string file = Open("mine.deh", normalPatch);
    EXPECT_EQ(program.patch.current.things[11].hitPoints, 200);
    EXPECT_EQ(program.patch.fileName, file);
    EXPECT_EQ(program.settings.RecentFiles().back(), file);
    Settings afterAKill;
    afterAKill.File(program.settings.File());
    EXPECT_TRUE(afterAKill.Load());
    EXPECT_EQ(afterAKill.RecentFiles(), std::vector{file});
}

TEST_F(FileCommandsTest, RefusedFilesLeaveTheOpenPatchAsItWas) {
    struct Case {
        const char* bytes;
        const char* message; // FILE stands for the file's path
        int sessions;
        RulesSetting setting = RulesSetting::Kept;
    };
    const Case cases[]{
        {"nothing", "Invalid file or unsupported patch version.", 0},
        {"nothing", "Could not open FILE: The file holds no line that a game engine knows.", 0, RulesSetting::Engine},
        {"Patch format = 5\nDoom version = 19\n", "Invalid file or unsupported patch version.", 0},
        {"Patch format = 6\nDoom version = 12\n",
         "There were no engine configuration files found that match the patch file's target engine.", 0},
        {"Patch format = 6\nPatch format = 6\n",
         "Could not open FILE: the line \"Patch format\" stands in it twice, again in line 2", 0},
        {"Patch format = 6\nDoom version = 19\n", "Invalid patch file.", 1},
        {"Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\nText 3 3\nxyzabc\n",
         "Could not find string replacement.", 1},
    };
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    edits.MarkSaved();
    for (const Case& row : cases) {
        sessionsAsked = 0;
        std::string message = row.message;
        const std::string file = (folder / "bad.deh").string();
        if (const std::size_t at = message.find("FILE"); at != std::string::npos)
            message.replace(at, 4, file);
        notifier.Expect(MessageKind::Exclamation, message);
        program.settings.Number("patchRules", static_cast<int>(row.setting));
        Open("bad.deh", row.bytes);
        notifier.AllAsked();
        EXPECT_EQ(sessionsAsked, row.sessions) << row.bytes;
        EXPECT_EQ(program.patch.fileName, mine);
        EXPECT_EQ(program.patch.current.things[11].hitPoints, 999);
    }
}

TEST_F(FileCommandsTest, AFailedSessionLeavesTheFormerOneUsable) {
    const std::string mine = Open("mine.deh", normalPatch);
    sessionCancelled = true;
    Open("other.deh", normalPatch);
    EXPECT_EQ(program.patch.fileName, mine);

    sessionCancelled = false;
    WriteFile(folder / "test.wad", "PWAD");
    notifier.Expect(MessageKind::Exclamation, "Could not load PLAYPAL lump.");
    Open("other.deh", normalPatch);
    EXPECT_EQ(program.patch.fileName, mine);
    EXPECT_EQ(program.patch.current.things[11].hitPoints, 200);
    EXPECT_EQ(program.palette.size(), 768U);
    EXPECT_EQ(program.wads.Count(), 1U);
}

TEST_F(FileCommandsTest, ASaveNamesTheDataWadOnlyIfItWasThere) {
    for (const char* name : {"data.wad", "more.wad"})
        WriteFile(folder / name, PaletteWad("PWAD"));
    const std::string data = (folder / "data.wad").string(), more = (folder / "more.wad").string();
    const struct {
        Rules rules;
        std::vector<std::string> wads;
        std::string line, saved;
    } rows[]{{Rules::Kept, {data}, data, data},
             {Rules::Kept, {"/gone.wad"}, "/gone.wad", ""},
             {Rules::Kept, {data, "/gone.wad", more}, "", '"' + data + "\" \"" + more + '"'},
             {Rules::Engine, {data, "/gone.wad"}, "\"x/DATA.WAD\"  \"gone.wad\"", "\"x/DATA.WAD\"  \"gone.wad\""},
             {Rules::Engine, {more, data}, "\"data.wad\" \"more.wad\"", '"' + more + "\" \"" + data + '"'}};
    for (const auto& row : rows) {
        dataWads = row.wads;
        rules = row.rules;
        const std::string mine = Open("mine.deh", std::string(normalPatch) + "Data WAD = " + row.line + "\n");
        Edit();
        EXPECT_TRUE(commands->Save());
        modPatchFiles::Header header;
        ASSERT_TRUE(modPatchFiles::ScanHeader(ReadFile(mine), header));
        EXPECT_EQ(modPatchFiles::HeaderValue(header, "datawad"), row.saved);
    }
}

TEST_F(FileCommandsTest, TheLastDataWadsPaletteReplacesTheOthers) {
    WriteFile(folder / "Data.wad", PaletteWad("PWAD", 'c'));
    WriteFile(folder / "more.wad", PaletteWad("PWAD", 'd'));
    const std::string data = (folder / "data.WAD").string(), more = (folder / "more.wad").string(); // another case
    for (const char last : {'c', 'd'}) {
        dataWads = last == 'c' ? std::vector{more, data} : std::vector{data, std::string("/gone.wad"), more};
        Open("mine.deh", normalPatch);
        EXPECT_EQ(program.palette, std::string(768, last));
        EXPECT_EQ(program.wads.Count(), 3U);
    }
    EXPECT_EQ(program.missingDataWads, std::vector<std::string>{"/gone.wad"});
}

TEST_F(FileCommandsTest, AsksBeforeChangesAreLost) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    notifier.Expect(loseChanges, Answer::No, Buttons::NoYes);
    Open("other.deh", normalPatch);
    notifier.Expect(loseChanges, Answer::No, Buttons::NoYes);
    commands->createNewFile();
    notifier.Expect(loseChanges, Answer::No, Buttons::NoYes);
    commands->LoadTable();
    notifier.AllAsked();
    EXPECT_EQ(program.patch.fileName, mine);
    notifier.Expect(loseChanges, Answer::Yes);
    Open("other.deh", normalPatch);
    EXPECT_EQ(program.patch.fileName, folder / "other.deh");
    EXPECT_FALSE(edits.CanUndo()) << "the steps belonged to the former patch";
}

TEST_F(FileCommandsTest, SaveWritesABackupAndClearsTheChangedFlag) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    EXPECT_TRUE(commands->Save());
    EXPECT_FALSE(program.patch.changed);
    EXPECT_NE(ReadFile(mine).find("Hit points = 999\r\n"), std::string::npos);
    EXPECT_EQ(ReadFile(mine + ".bak"), normalPatch);
    edits.Undo();
    EXPECT_TRUE(program.patch.changed);
}

TEST_F(FileCommandsTest, SaveAsTakesTheNewNameAndFailuresKeepTheChanges) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    const std::string nowhere = (folder / "nowhere" / "mine.deh").string();
    dialogs.Expect("Save patch file", nowhere);
    notifier.Expect(MessageKind::Exclamation, "Could not save " + nowhere + ": No such file or directory");
    EXPECT_FALSE(commands->SaveAs());
    EXPECT_TRUE(program.patch.changed);
    EXPECT_EQ(program.patch.fileName, mine);

    const std::string copy = (folder / "copy.deh").string();
    dialogs.Expect("Save patch file", copy);
    EXPECT_TRUE(commands->SaveAs());
    EXPECT_EQ(program.patch.fileName, copy);
    EXPECT_EQ(ReadFile(mine), normalPatch);
    EXPECT_EQ(program.settings.RecentFiles().back(), copy);
}

TEST_F(FileCommandsTest, TableOfAnEditedPatchBecomesTheNewDefaults) {
    Open("mine.deh", normalPatch);
    const std::string table = (folder / "mine.tbl").string();
    dialogs.Expect("Save table", table);
    commands->SaveTable();
    EXPECT_EQ(dialogs.lastDetail, "Plinket3 table files (*.tbl)|*.tbl|All files (*.*)|*.*");
    commands->createNewFile();
    EXPECT_EQ(program.patch.defaults.things[11].hitPoints, 60);
    dialogs.Expect("Load table", table);
    commands->LoadTable();
    EXPECT_EQ(program.patch.defaults.things[11].hitPoints, 200);
    EXPECT_EQ(program.patch.current, program.patch.defaults);

    WriteFile(folder / "bad.tbl", "ETBL\x01\x02");
    dialogs.Expect("Load table", (folder / "bad.tbl").string());
    notifier.Expect(MessageKind::Exclamation, "Invalid table version.");
    commands->LoadTable();
    EXPECT_EQ(program.patch.defaults.things[11].hitPoints, 200);
}

TEST_F(FileCommandsTest, ClosingAsksAboutUnsavedChanges) {
    EXPECT_TRUE(commands->MayClose());
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    const std::string question = "The file " + mine + " has been changed. Do you want to save it?";
    notifier.Expect(question, Answer::Cancel);
    EXPECT_FALSE(commands->MayClose());
    notifier.Expect(question, Answer::No);
    EXPECT_TRUE(commands->MayClose());
    EXPECT_EQ(ReadFile(mine), normalPatch);
    notifier.Expect(question, Answer::Yes);
    EXPECT_TRUE(commands->MayClose());
    EXPECT_NE(ReadFile(mine).find("999"), std::string::npos);
}

TEST_F(FileCommandsTest, NoticesAFileThatAnotherProgramChanged) {
    const std::string mine = Open("mine.deh", normalPatch);
    commands->CheckFileOnDisk();
    const std::string question = "The file " + mine + " was changed by another program. Do you want to reload it? ";
    const std::string kept = "With No, what is open here is kept.";
    WriteFile(mine, std::string(normalPatch) + "Speed = 15\n");
    notifier.Expect(question + kept, Answer::No, Buttons::YesNo);
    commands->CheckFileOnDisk();
    EXPECT_TRUE(program.patch.changed) << "what is open is not what is on disk";
    commands->CheckFileOnDisk(); // asks once for each change

    WriteFile(mine, std::string(normalPatch) + "Doom version = 21\n");
    const std::string gone = "That gives up your unsaved changes and all undo steps. ";
    notifier.Expect(question + gone + kept, Answer::Yes, Buttons::NoYes);
    notifier.Expect(MessageKind::Exclamation,
                    "Could not open " + mine + ": the line \"Doom version\" stands in it twice, again in line 10");
    commands->CheckFileOnDisk();
    std::string otherVersion = normalPatch;
    otherVersion.replace(otherVersion.find("19"), 2, "21");
    WriteFile(mine, otherVersion);
    notifier.Expect(question + gone + kept, Answer::Yes, Buttons::NoYes);
    notifier.Expect(MessageKind::Exclamation, std::string(otherEngine));
    commands->CheckFileOnDisk();
    EXPECT_EQ(program.patch.current.things[11].hitPoints, 200);

    WriteFile(mine, std::string(normalPatch) + "Speed = 155\n");
    notifier.Expect(question + gone + kept, Answer::Yes, Buttons::NoYes);
    commands->CheckFileOnDisk();
    EXPECT_EQ(program.patch.current.things[11].speed, 155);
    EXPECT_FALSE(program.patch.changed);
    EXPECT_TRUE(commands->Save());
    commands->CheckFileOnDisk(); // our own save is no change of others
}

constexpr std::string_view oddPatch =
    "# by hand\n\nThing 12 (Imp)\nHit points = 0100 # octal\n# more\nBlood color = 3\n";

TEST_F(FileCommandsTest, ByEngineRulesASaveTouchesWhatWasChangedAlsoAfterACrash) {
    program.settings.Number("patchRules", static_cast<int>(RulesSetting::Recommend));
    rules = Rules::Engine;
    const std::string mine = Open("mine.deh", oddPatch);
    EXPECT_EQ(program.patch.current.things[11].hitPoints, 64);
    Edit();
    edits.Store({RecordKind::Thing, 11, noteField}, std::string("\"my\" \\ note\nof two lines"));
    edits.Store(patchNotes, std::string("by me"));
    commands->KeepRecovery();
    commands = nullptr;
    recovery = std::make_unique<Recovery>(program.settingsFolder); // the crash: another place
    commands = std::make_unique<FileCommands>(program, edits, dialogs, *recovery, nullptr);
    program.patch = {};
    program.engine = {};
    ExpectRecovery(mine, Answer::Yes);
    EXPECT_TRUE(commands->OfferRecovery());
    EXPECT_TRUE(commands->Save());
    std::string expected(oddPatch);
    expected.replace(expected.find("0100"), 4, "999");
    expected.replace(expected.find("by hand"), 7, "by me");
    EXPECT_EQ(ReadFile(mine), expected.insert(expected.find("Thing"), "# \"my\" \\ note\n# of two lines\n"));
    edits.Store({RecordKind::Thing, 11, RowOf(&ThingRecord::hitPoints)}, 64);
    edits.Store({RecordKind::Thing, 11, noteField}, std::string());
    edits.Store(patchNotes, std::string("by hand"));
    EXPECT_TRUE(commands->Save());
    EXPECT_EQ(ReadFile(mine), oddPatch) << "what is as it was opened is written as it was";
}

TEST_F(FileCommandsTest, RulesAreSwitchedByReadingAgainOrWithAllAsItStands) {
    std::string patch = normalPatch;
    const std::string mine = Open("mine.deh", patch += "\nSound 3\nValue = 9\n# last\n");
    EXPECT_EQ(program.patch.current.sounds[3].value, 9);
    Edit();
    notifier.Expect(loseChanges, Answer::No, Buttons::NoYes);
    commands->SwitchRules();
    EXPECT_FALSE(program.engine.dialect.EngineRules());

    std::vector<std::string> told;
    QObject::connect(commands.get(), &FileCommands::GamesReadOtherwise,
                     [&told](const std::vector<std::string>& values) { told = values; });
    EXPECT_TRUE(commands->Save());
    ASSERT_EQ(told.size(), 2U) << "written as sound 4, which games count from 0";
    EXPECT_TRUE(told[0].starts_with("Sound 3")) << told[0];
    commands->GoOnByEngineRules();
    EXPECT_EQ(program.patch.current.sounds[3].value, 9);
    EXPECT_TRUE(commands->Save());
    EXPECT_NE(ReadFile(mine).find("Sound 3\r\nValue = 9"), std::string::npos);

    commands->SwitchRules();
    EXPECT_FALSE(program.engine.dialect.EngineRules());
    program.settings.Number("patchRules", static_cast<int>(RulesSetting::Engine));
    WriteFile(mine, oddPatch);
    notifier.Expect(MessageKind::Exclamation, "Invalid file or unsupported patch version.");
    commands->SwitchRules(); // engine rules first: they read it
    EXPECT_TRUE(program.engine.dialect.EngineRules());
    commands->SwitchRules();
    EXPECT_TRUE(program.engine.dialect.EngineRules());
}

TEST_F(FileCommandsTest, PatchesInWadsAreOpenedSavedAndPutThere) {
    program.settings.Number("patchRules", static_cast<int>(RulesSetting::Engine));
    rules = Rules::Engine;
    const auto wad = [](std::string_view first, std::string_view second) {
        return test::WadBytes({{"DEHACKED", std::string(first)}, {"MAP01", "x"}, {"DEHACKED", std::string(second)}});
    };
    dialogs.Expect("Open a patch", "DEHACKED#1");
    const std::string file = Open("two.wad", wad(oddPatch, normalPatch));
    EXPECT_EQ(program.patch.current.things[11].hitPoints, 64);
    Edit();
    EXPECT_TRUE(commands->Save());
    std::string edited(oddPatch);
    edited.replace(edited.find("0100"), 4, "999");
    EXPECT_EQ(ReadFile(file), wad(edited, normalPatch));
    EXPECT_EQ(program.settings.RecentFiles().back(), file);

    dialogs.Expect("Save lump", (folder / "a.deh").string());
    commands->SaveLumpAs();
    EXPECT_EQ(ReadFile(folder / "a.deh"), edited);
    dialogs.Expect("Save patch file", file);
    notifier.Expect(MessageKind::Exclamation, file + " is a WAD. File, Put into WAD... puts the patch into it.");
    EXPECT_FALSE(commands->SaveAs());

    const std::string empty = test::WadBytes({{"MAP01", "x"}});
    notifier.Expect((folder / "none.wad").string() + " holds no patch. Do you want to add one?", Answer::Yes);
    const std::string none = Open("none.wad", empty);
    EXPECT_TRUE(program.patch.changed);
    EXPECT_EQ(ReadFile(none), empty);
    EXPECT_TRUE(commands->Save());
    EXPECT_NE(ReadFile(none).find("Doom version = 19"), std::string::npos);

    dialogs.Expect("Put into WAD", file);
    notifier.Expect(file + " holds a patch already. Do you want to replace it?", Answer::Yes, Buttons::NoYes);
    commands->PutIntoWad();
    EXPECT_NE(ReadFile(file), wad(edited, normalPatch));
    EXPECT_EQ(program.patch.fileName, none) << "what is open stays so";

    const std::string game = (folder / "game.wad").string();
    const std::string iwad =
        "is an IWAD, which belongs to its game and is never written; a patch for it goes into a WAD "
        "of your own";
    notifier.Expect(MessageKind::Exclamation, game + " holds no patch, and none can be added: " + iwad);
    Open("game.wad", PaletteWad("IWAD"));
    notifier.Expect(MessageKind::Exclamation, "Could not save " + game + ":DEHACKED: " + iwad);
    dialogs.Expect("Put into WAD", game);
    commands->PutIntoWad();
}

TEST_F(FileCommandsTest, AsksBeforeItOverwritesWhatAnotherProgramWrote) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    std::string others = std::string(normalPatch) + "Speed = 15\n";
    WriteFile(mine, others);
    const std::string question = "The file " + mine + " was changed by another program. Do you want to overwrite it?";
    notifier.Expect(question, Answer::No, Buttons::NoYes);
    EXPECT_FALSE(commands->Save());
    EXPECT_EQ(ReadFile(mine), others);
    EXPECT_TRUE(program.patch.changed);
    commands->CheckFileOnDisk(); // what was just decided is not asked about
    notifier.Expect(question, Answer::No, Buttons::NoYes);
    EXPECT_FALSE(commands->Save());
    others += "Mass = 7\n";
    WriteFile(mine, others);
    notifier.Expect("The file " + mine +
                        " was changed by another program. Do you want to reload it? That gives up your unsaved "
                        "changes and all undo steps. With No, what is open here is kept.",
                    Answer::No);
    commands->CheckFileOnDisk();
    notifier.Expect(question, Answer::Yes, Buttons::NoYes);
    EXPECT_TRUE(commands->Save());
    EXPECT_EQ(ReadFile(mine + ".bak"), others);

    edits.Undo();
    commands->Save();
    std::filesystem::remove(mine);
    commands->CheckFileOnDisk();
    EXPECT_TRUE(program.patch.changed) << "what is open here is the only one";
    EXPECT_TRUE(commands->Save()) << "a deleted file is written anew";
    EXPECT_TRUE(FileExists(mine));
}

TEST_F(FileCommandsTest, UnsavedWorkOfARunThatCrashedIsOffered) {
    for (const std::string mode : {"doom19", "mbf19"}) {
        engine = mode;
        commands->createNewFile();
        for (PatchSet* set : {&program.patch.defaults, &program.patch.current}) { // as a loaded table may have it
            set->things[3].mass = 77;
            set->cheats.emplace_back();
        }
        Edit();
        edits.Store({RecordKind::Sound, 1, RowOf(&SoundRecord::value)}, 77);
        edits.Store({RecordKind::String, 0, textField}, std::string("a\\n\xe9\n"));
        edits.Store({RecordKind::Par, 0, listField}, std::vector<ParRecord>{{1, 2, 95}, {0, 3, 40}});
        commands->KeepRecovery();
        const PatchSet lost = program.patch.current, standard = program.patch.defaults;
        recovery = nullptr; // the crash: nothing is forgotten, only the lock is gone

        Program next(notifier);
        static_cast<Environment&>(next).programFolder = program.programFolder;
        next.settingsFolder = program.settingsFolder;
        next.engines = program.engines;
        next.settings.AddIwad("Test", (folder / "test.wad").string());
        Edits nextEdits(next.patch);
        Recovery nextRecovery(next.settingsFolder);
        FileCommands nextCommands(next, nextEdits, dialogs, nextRecovery, {});
        ExpectRecovery(program.patch.fileName.string(), Answer::Yes);
        EXPECT_TRUE(nextCommands.OfferRecovery()) << mode;
        EXPECT_EQ(next.patch.current, lost) << mode;
        EXPECT_EQ(next.patch.defaults, standard) << mode;
        EXPECT_TRUE(next.patch.changed);
        EXPECT_EQ(next.patch.named, program.patch.named);
        EXPECT_TRUE(Recovery(next.settingsFolder).Kept(true).empty()) << "the files of a running program are its own";
        nextRecovery.Forget();
        EXPECT_FALSE(nextCommands.OfferRecovery());
        edits.Clear();
        recovery = std::make_unique<Recovery>(program.settingsFolder);
        commands = std::make_unique<FileCommands>(program, edits, dialogs, *recovery,
                                                  [this](const PatchToOpen* patch) { return ChooseSession(patch); });
    }
}

TEST_F(FileCommandsTest, UnsavedWorkHoldsTheRecordsThatAPatchMade) {
    Session session;
    session.engine = test::SmallId24Engine();
    PatchData patch = test::SmallPatch(session.engine);
    session.patch.defaults = patch.defaults;
    auto document = std::make_shared<PatchDocument>();
    ASSERT_TRUE(
        document
            ->Read("# mine\nFrame 70\nDuration = 3\n\nThing 2000000000 (A)\n\nFrame 71\n\n[SPRITES]\n77 = ABCD\n",
                   session.engine, patch.defaults, patch.current)
            .status);
    patch.document = document;
    Edits made(patch);
    made.Store({RecordKind::State, 70, codePointerField}, 2);
    made.Store({RecordKind::Thing, 1999999999, RowOf(&ThingRecord::mass)}, 5);
    made.Store({RecordKind::Thing, 1, RowOf(&ThingRecord::splashGroup)}, 6); // which not every engine has
    made.Store({RecordKind::Thing, test::firstNegative, TextCell(0)}, "USER_X");
    made.Store({RecordKind::Weapon, test::firstNegative, RowOf(&WeaponRecord::slot)}, 6);
    made.RemoveRecords(RecordKind::State, {71}, "frames");
    made.MakeRecord(RecordKind::Sound, 2147483647);
    made.Store({RecordKind::Music, 3, lumpNameField}, "tune");
    made.Store({RecordKind::Misc, 0, helperField}, 4);
    const std::filesystem::path other = folder / "made";
    std::filesystem::create_directory(other);
    ASSERT_TRUE(Recovery(other).Keep(patch, session.engine, std::nullopt, 1));
    const std::vector<KeptWork> kept = Recovery(other).Kept(false);
    ASSERT_EQ(kept.size(), 1U);
    ASSERT_TRUE(kept[0].patch && ApplyRecovered(*kept[0].patch, session));
    EXPECT_EQ(session.patch.current, patch.current);
    EXPECT_EQ(session.patch.defaults, patch.defaults);
    EXPECT_EQ(session.patch.document->Bytes(), document->Bytes());
}

TEST_F(FileCommandsTest, RecoveredWorkIsSavedUnaskedOnlyOverThePatchThatItCameFrom) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    commands->KeepRecovery();
    recovery = nullptr;
    commands = nullptr;
    const std::string kept = ReadFile(program.settingsFolder / "recovery-0.dat");
    const auto time = std::filesystem::last_write_time(mine);
    std::string noPatch = normalPatch;
    noPatch.replace(noPatch.find("Patch format = 6"), 16, "Patch format = 5");
    const struct {
        const char* what;
        std::string now;
        bool sameTime, asks;
    } rows[]{{"as it was", normalPatch, true, false},
             {"written meanwhile", normalPatch, false, true},
             {"no patch, though a forged file knows its time and size", noPatch, true, true},
             {"gone", {}, true, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        WriteFile(program.settingsFolder / "recovery-0.dat", kept);
        WriteFile(mine, row.now);
        std::filesystem::last_write_time(mine, row.sameTime ? time : time + std::chrono::seconds(2));
        if (row.now.empty())
            std::filesystem::remove(mine);
        Recovery next(program.settingsFolder);
        FileCommands nextCommands(program, edits, dialogs, next, {});
        ExpectRecovery(mine, Answer::Yes);
        EXPECT_TRUE(nextCommands.OfferRecovery());
        if (row.asks)
            dialogs.Expect("Save patch file", "");
        EXPECT_EQ(nextCommands.Save(), !row.asks);
        next.Forget();
    }
}

TEST_F(FileCommandsTest, AQuestionAboutRecoveryThatIsOnlyClosedIsAskedAgain) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    commands->KeepRecovery();
    recovery = nullptr;
    commands = nullptr;
    WriteFile(program.settingsFolder / "recovery-0.lock", ""); // as a power cut may leave it
    for (int start = 0; start < 2; ++start) {
        Recovery next(program.settingsFolder);
        FileCommands nextCommands(program, edits, dialogs, next, {});
        static_cast<Session&>(program) = {};
        ExpectRecovery(mine, Answer::Cancel);
        EXPECT_FALSE(nextCommands.OfferRecovery());
        ASSERT_EQ(next.Kept(true).size(), 1U) << "and can be opened meanwhile";
        EXPECT_TRUE(nextCommands.OpenKept(next.Kept(true).front()));
        EXPECT_EQ(program.patch.current.things[11].hitPoints, 999);
        EXPECT_TRUE(next.Kept(true).empty());
    }
}

TEST_F(FileCommandsTest, UnsavedWorkThatFitsNoEngineIsPutAside) {
    commands->createNewFile();
    Edit();
    commands->KeepRecovery();
    recovery = nullptr;
    program.engines.clear();
    Recovery next(program.settingsFolder);
    FileCommands nextCommands(program, edits, dialogs, next, {});
    ExpectRecovery(program.patch.fileName.string(), Answer::Yes);
    notifier.Expect(
        MessageKind::Exclamation,
        "The unsaved changes do not fit the engine configurations and IWADs that are there now. They stay in " +
            (program.settingsFolder / "recovery-1.dat.kept").string() + "; File, Recovered work... opens them.");
    EXPECT_FALSE(nextCommands.OfferRecovery());
    next.Forget();
    EXPECT_TRUE(FileExists(program.settingsFolder / "recovery-1.dat.kept"));
    EXPECT_FALSE(nextCommands.OfferRecovery()) << "it is offered once";
    commands = nullptr;
}

TEST_F(FileCommandsTest, ADamagedRecoveryFileIsToldAndBlocksNoPlace) {
    recovery = nullptr;
    for (const char* name : {"recovery-0.dat.kept", "recovery-0.dat.2.kept"}) {
        WriteFile(program.settingsFolder / "recovery-0.dat", "12\nnonsense");
        Recovery next(program.settingsFolder);
        FileCommands nextCommands(program, edits, dialogs, next, {});
        notifier.Expect(MessageKind::Exclamation, "Plinket3 did not end as it should. The file with its unsaved "
                                                  "changes is damaged and stays as " +
                                                      (program.settingsFolder / name).string() + ".");
        EXPECT_FALSE(nextCommands.OfferRecovery());
        EXPECT_EQ(ReadFile(program.settingsFolder / name), "12\nnonsense");
    }
    commands = nullptr;
}

TEST_F(FileCommandsTest, TheRecoveryFileIsWrittenAfterEditsOnlyAndAFailureIsToldOnce) {
    std::vector<std::string> told;
    QObject::connect(commands.get(), &FileCommands::StatusText,
                     [&told](const QString& text) { told.push_back(text.toStdString()); });
    Open("mine.deh", normalPatch);
    Edit();
    const std::filesystem::path file = program.settingsFolder / "recovery-0.dat";
    commands->KeepRecovery();
    WriteFile(file, "untouched");
    commands->KeepRecovery();
    EXPECT_EQ(ReadFile(file), "untouched");
    edits.Store({RecordKind::Thing, 11, RowOf(&ThingRecord::speed)}, 7);
    commands->KeepRecovery();
    EXPECT_NE(ReadFile(file), "untouched");

    std::filesystem::remove(file);
    std::filesystem::create_directory(file); // nothing can be written there
    edits.Undo();
    told.clear();
    commands->KeepRecovery();
    commands->KeepRecovery();
    EXPECT_EQ(told, std::vector<std::string>{"The recovery file could not be written: is a folder"});
    std::filesystem::remove(file);
    commands->KeepRecovery();
    EXPECT_TRUE(FileExists(file)) << "it is tried again";
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    edits.Redo();
    commands->KeepRecovery();
    EXPECT_EQ(told.size(), 2U);
    std::filesystem::remove(file);
}

TEST_F(FileCommandsTest, SavingAndGivingUpRemoveTheRecoveryFile) {
    Open("mine.deh", normalPatch);
    const auto kept = [this] {
        commands->KeepRecovery();
        return FileExists(program.settingsFolder / "recovery-0.dat");
    };
    Edit();
    EXPECT_TRUE(kept());
    edits.Undo();
    EXPECT_TRUE(commands->MayClose());
    EXPECT_FALSE(kept()) << "what it held was undone";
    Edit();
    EXPECT_TRUE(kept());
    EXPECT_TRUE(commands->Save());
    EXPECT_FALSE(kept());
    edits.Undo();
    EXPECT_TRUE(kept());
    notifier.Expect("The file " + (folder / "mine.deh").string() + " has been changed. Do you want to save it?",
                    Answer::No);
    EXPECT_TRUE(commands->MayClose());
    EXPECT_FALSE(FileExists(program.settingsFolder / "recovery-0.dat"));
}

} // namespace
} // namespace plinket3
