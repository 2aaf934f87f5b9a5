#include "patch/PatchDocument.h"
#include "tests/support/SmallEngine.h"
#include "tests/ui/FileCommandsTest.h"

namespace plinket3::test {
namespace {

class RecoveryTest : public FileCommandsTest {};

TEST_F(RecoveryTest, UnsavedWorkOfARunThatCrashedIsOffered) {
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
        const PatchSet lost = program.patch.current, standard = program.patch.defaults;
        Crash();

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
        Start();
    }
}

TEST_F(RecoveryTest, UnsavedWorkHoldsTheRecordsThatAPatchMade) {
    Session session;
    session.engine = SmallId24Engine();
    PatchData patch = SmallPatch(session.engine);
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
    made.Store({RecordKind::Thing, firstNegative, TextCell(0)}, "USER_X");
    made.Store({RecordKind::Weapon, firstNegative, RowOf(&WeaponRecord::slot)}, 6);
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

TEST_F(RecoveryTest, RecoveredWorkIsSavedUnaskedOnlyOverThePatchThatItCameFrom) {
    // Of a whole second, as some systems' libraries set no others.
    const std::filesystem::path mine = folder / "mine.deh";
    WriteFile(mine, normalPatch);
    const auto time = std::chrono::floor<std::chrono::seconds>(std::filesystem::last_write_time(mine));
    std::filesystem::last_write_time(mine, time);
    commands->openFile(mine);
    Edit();
    Crash();
    const std::string kept = ReadFile(program.settingsFolder / "recovery-0.dat");
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
        ExpectRecovery(mine.string(), Answer::Yes);
        EXPECT_TRUE(nextCommands.OfferRecovery());
        if (row.asks)
            dialogs.Expect("Save patch file", "");
        EXPECT_EQ(nextCommands.Save(), !row.asks);
        next.Forget();
    }
}

TEST_F(RecoveryTest, AQuestionAboutRecoveryThatIsOnlyClosedIsAskedAgain) {
    const std::string mine = Open("mine.deh", normalPatch);
    Edit();
    Crash();
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

TEST_F(RecoveryTest, UnsavedWorkThatFitsNoEngineIsPutAside) {
    commands->createNewFile();
    Edit();
    Crash();
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
}

TEST_F(RecoveryTest, ADamagedRecoveryFileIsToldAndBlocksNoPlace) {
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

TEST_F(RecoveryTest, TheRecoveryFileIsWrittenAfterEditsOnlyAndAFailureIsToldOnce) {
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

TEST_F(RecoveryTest, SavingAndGivingUpRemoveTheRecoveryFile) {
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
} // namespace plinket3::test
