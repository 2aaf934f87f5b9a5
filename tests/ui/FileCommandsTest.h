#pragma once

#include "core/Files.h"
#include "patch/RulesChoice.h"
#include "patch/Session.h"
#include "tests/ui/FakeDialogs.h"
#include "tests/ui/UiTest.h"
#include "tests/wad/WadBytes.h"
#include "ui/FileCommands.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace plinket3::test {

inline constexpr const char* normalPatch =
    "Patch File for DeHackEd v3.0\n\nDoom version = 19\nPatch format = 6\n"
    "Engine config = doom19.cfg\nIWAD = Test\n\nThing 12 (Imp)\nHit points = 200\n";

/// A WAD with a palette and nothing else.
inline std::string PaletteWad(const char* identification, char colour = ' ') {
    return WadBytes({{"PLAYPAL", std::string(768, colour)}}, identification);
}

/// What the menu "File" does, without windows.
class FileCommandsTest : public ::testing::Test {
protected:
    FileCommandsTest() {
        UseFolder(program, folder.Path());
        WriteFile(folder / "test.wad", PaletteWad("IWAD"));
        program.settings.AddIwad("Test", (folder / "test.wad").string());
        program.settings.Number("patchRules", static_cast<int>(RulesSetting::Kept));
        Start();
    }

    void Start() {
        recovery = std::make_unique<Recovery>(program.settingsFolder);
        commands = std::make_unique<FileCommands>(program, edits, dialogs, *recovery,
                                                  [this](const PatchToOpen* patch) { return ChooseSession(patch); });
    }
    /// Nothing is forgotten, only the lock is gone.
    void Crash() {
        commands->KeepRecovery();
        recovery = nullptr;
        commands = nullptr;
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

    TemporaryFolder folder;
    ExpectingNotifier notifier;
    Program program{notifier};
    Edits edits{program.patch};
    FakeDialogs dialogs;
    std::unique_ptr<Recovery> recovery;
    std::unique_ptr<FileCommands> commands;
    std::string engine = "doom19";
    std::vector<std::string> dataWads;
    Rules rules = Rules::Kept;
    bool sessionCancelled = false;
    int sessionsAsked = 0;
};

} // namespace plinket3::test
