#include "tests/ui/FileCommandsTest.h"

namespace plinket3::test {
namespace {

constexpr const char* loseChanges = "All changes will be lost. Are you sure?";

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

TEST_F(FileCommandsTest, TellsWhichDataWadCannotBeTakenAndWhy) {
    WriteFile(folder / "data.wad", PaletteWad("PWAD"));
    const std::string iwad = (folder / "test.wad").string(), data = (folder / "data.wad").string();
    const struct {
        std::vector<std::string> wads;
        std::string message;
    } rows[]{{{iwad}, "Unable to register data WAD."},
             {{data, iwad}, "Unable to register data WAD.\n" + iwad + " is the IWAD."},
             {{data, data}, "Unable to register data WAD.\n" + data + " is among the data WADs twice."},
             {{data, "a\"b.wad"},
              "A patch cannot name several data WADs when the path of one has a quotation mark in it: a\"b.wad. Rename "
              "it, or choose it alone."}};
    for (const auto& row : rows) {
        dataWads = row.wads;
        notifier.Expect(MessageKind::Exclamation, row.message);
        Open("mine.deh", normalPatch);
        notifier.AllAsked();
        EXPECT_FALSE(commands->SessionOpen());
    }
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

TEST_F(FileCommandsTest, SaveAsTakesTheNewNameAndFailuresKeepTheChanges) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    const std::string nowhere = (folder / "nowhere" / "mine.deh").string();
    dialogs.Expect("Save patch file", nowhere);
    notifier.Expect(MessageKind::Exclamation, "Could not save " + nowhere + ": " + WhyNotRead(nowhere));
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
    EXPECT_FALSE(program.patch.changed);
    EXPECT_NE(ReadFile(mine).find("Hit points = 999\r\n"), std::string::npos);
    EXPECT_EQ(ReadFile(mine + ".bak"), normalPatch);
    edits.Undo();
    EXPECT_TRUE(program.patch.changed);
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
    Crash();
    Start();
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
        return WadBytes({{"DEHACKED", std::string(first)}, {"MAP01", "x"}, {"DEHACKED", std::string(second)}});
    };
    dialogs.Expect("Open a patch", "DEHACKED#1");
    const std::string file = Open("two.wad", wad(oddPatch, normalPatch));
    EXPECT_EQ(program.patch.current.things[11].hitPoints, 64);
    Edit();
    EXPECT_TRUE(commands->Save());
    std::string edited(oddPatch);
    edited.replace(edited.find("0100"), 4, "999");
    EXPECT_EQ(ReadFile(file), wad(edited, normalPatch));
    EXPECT_EQ(ReadFile(file + ".bak"), wad(oddPatch, normalPatch));
    EXPECT_EQ(program.settings.RecentFiles().back(), file);

    dialogs.Expect("Save lump", (folder / "a.deh").string());
    commands->SaveLumpAs();
    EXPECT_EQ(ReadFile(folder / "a.deh"), edited);
    dialogs.Expect("Save patch file", file);
    notifier.Expect(MessageKind::Exclamation, file + " is a WAD. File, Put into WAD... puts the patch into it.");
    EXPECT_FALSE(commands->SaveAs());

    const std::string empty = WadBytes({{"MAP01", "x"}});
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

} // namespace
} // namespace plinket3::test
