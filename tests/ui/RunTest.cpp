#include "core/Bytes.h"
#include "patch/PlacedThing.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/WindowTest.h"
#include "tests/wad/WadBytes.h"
#include "ui/run/Ports.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QToolButton>
#include <QTreeView>

#include <sys/resource.h>

#include <csignal>

namespace plinket3::test {
namespace {

constexpr int imp = 11, impBall = 31, fist = 0, shotgun = 2;

class RunTest : public WindowTest {
protected:
    void SetUp() override {
        LoadEngine("mbf21", true);
        if (!HasWad())
            GTEST_SKIP() << "there is no IWAD";
        std::filesystem::create_directory(temporary);
        qputenv("TMPDIR", temporary.c_str());
        const auto port = folder / "my port's.sh";
        WriteFile(port, ReadFile(PORT));
        std::filesystem::permissions(port, std::filesystem::perms::owner_all);
        program.settings.Ports({{"Missing", "/nowhere/doom", "-iwad %i"},
                                {"Fake", port.string(), "-iwad %i -file %d -deh %p -dehout %o -warp %m -skill %s"}});
        program.patch.fileName = folder / "mine.bex";
        program.patch.named = true;
        ShowWindow();
    }
    void TearDown() override {
        window.reset();
        qunsetenv("TMPDIR");
    }

    /// As if it had been chosen before.
    void Choose(const char* arguments, bool inTestMap = false) {
        program.settings.Text("runPort", "Fake");
        program.settings.Text("runArguments", arguments);
        program.settings.Number("runWithoutTestMap", inTestMap ? 0 : 1);
    }
    void PressF9() {
        for (const char* note : {"arguments", "patch", "map"})
            std::filesystem::remove(folder / note);
        QTest::keyClick(window.get(), Qt::Key_F9);
    }
    bool Tells(const std::string& text) {
        return QTest::qWaitFor([&] { return Status() == text; });
    }
    /// What the port noted, as soon as it has.
    std::string Noted(const char* note) {
        const bool noted = QTest::qWaitFor([&] { return std::filesystem::exists(folder / "arguments"); });
        return noted && std::filesystem::exists(folder / note) ? ReadFile(folder / note) : "";
    }
    bool NothingIsLeft() {
        return QTest::qWaitFor([&] { return std::filesystem::is_empty(temporary); });
    }
    std::string Problems() {
        std::string text;
        Find<QDockWidget>("dockProblems").show();
        const auto& model = *Find<QTreeView>("lvwProblems").model();
        for (int row = 0; row < model.rowCount(); ++row)
            for (int column = 0; column < 4; ++column)
                text += model.index(row, column).data().toString().toStdString() + (column == 3 ? "\n" : "|");
        return text;
    }
    std::vector<int> ThingsOfMap() {
        Noted("arguments");
        const std::vector<Lump> lumps = LumpsOf(ReadFile(folder / "map"));
        std::vector<int> ids;
        for (ByteReader reader(lumps.at(1).bytes); !reader.AtEnd();) {
            reader.Text(6);
            ids.push_back(reader.UInt16());
            reader.UInt16();
        }
        return ids;
    }

    const std::filesystem::path temporary = folder / "tmp \"x\"";
};

TEST_F(RunTest, AsksOnceThenRunsThePatchAsItIsWithoutTouchingItsFile) {
    const auto data = folder / "my data's \"best\".wad";
    WriteFile(data, WadBytes({{"MAP42", ""}, {"ARENA", ""}}));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    program.dataWads = {std::make_shared<clsWad>()};
    program.dataWads.front()->OpenWad(data.filename());
    {
        const ModalDriver driver("frmRun", [](QDialog& dialog) {
            auto& ports = test::Find<QComboBox>(dialog, "cmbPort");
            auto& accept = test::Find<QPushButton>(dialog, "cmdAccept");
            EXPECT_FALSE(accept.isEnabled()) << "the first one is missing";
            EXPECT_EQ(test::Find<QLabel>(dialog, "lblNote").text().toStdString(), "/nowhere/doom: not found");
            ports.setCurrentText("Fake");
            test::Find<QCheckBox>(dialog, "chkTestMap").setChecked(false);
            auto& levels = test::Find<QComboBox>(dialog, "cmbLevel");
            EXPECT_EQ(levels.currentText(), "MAP01");
            levels.setCurrentIndex(levels.findText("MAP42"));
            test::Find<QComboBox>(dialog, "cmbSkill").setCurrentIndex(4);
            auto& arguments = test::Find<QLineEdit>(dialog, "txtArguments");
            Type(arguments, "-x 'y");
            EXPECT_FALSE(accept.isEnabled());
            Type(arguments, "-x 'y \"%s\" z'");
            QTest::mouseClick(&accept, Qt::LeftButton);
        });
        QTest::keyClick(window.get(), Qt::Key_F9);
    }
    EXPECT_EQ(Status(), "Started Fake on MAP42");
    const std::string arguments = Noted("arguments");
    const std::size_t own = arguments.find("[-deh][") + 7, end = arguments.find("/patch.bex]", own);
    ASSERT_NE(end, std::string::npos) << arguments;
    const std::string made = arguments.substr(own, end - own);
    EXPECT_TRUE(made.starts_with(temporary.string() + "/plinket3-run-")) << made;
    EXPECT_EQ(arguments, "[-iwad][" + std::string(freedoom) + "][-file][" + data.string() + "][-deh][" + made +
                             "/patch.bex][-dehout][" + made + "/patch.log][-warp][42][-skill][5][-x][y \"5\" z]");
    EXPECT_EQ(ReadFile(folder / "folder"), folder.Path().string() + "\n") << "where files lie that it includes";
    EXPECT_TRUE(Tells("Fake ended"));

    edits.StoreGroup({{{RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 77}}, "tough");
    Activate();
    PressF9();
    EXPECT_NE(Noted("patch").find("Hit points = 77"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(program.patch.fileName));
    EXPECT_TRUE(program.patch.changed);
    EXPECT_TRUE(Tells("Fake ended"));

    for (const auto& [level, started] : {std::pair{"ARENA", "ARENA"}, {"E1M1", "MAP01"}}) {
        program.settings.Text("runLevel", level);
        PressF9();
        EXPECT_EQ(Status(), std::string("Started Fake on ") + started) << "no WAD has E1M1";
        EXPECT_TRUE(Tells("Fake ended"));
    }
    EXPECT_TRUE(NothingIsLeft());
    std::filesystem::current_path(before);
}

TEST_F(RunTest, ThePatchThatStandsInAWadIsNotReadTwice) {
    const std::string old = "Patch File for DeHackEd v3.0\nThing 12\nHit points = 5\n";
    const std::string bytes = WadBytes({{"FIRST", "1"}, {"DEHACKED", old}, {"LAST", "2"}});
    program.patch.named = false; // nobody is to ask why the file has changed
    program.patch.fileName = folder / "held.wad";
    program.patch.lump = "DEHACKED";
    WriteFile(program.patch.fileName, bytes);
    Choose("");
    PressF9();
    EXPECT_NE(Noted("arguments").find("/data.wad][-deh]"), std::string::npos) << Noted("arguments");
    clsWad wad;
    wad.OpenWad(folder / "wad");
    ASSERT_EQ(wad.LumpCount(), 3);
    EXPECT_EQ(wad.ReadLumpString(0) + wad.ReadLumpString(2), "12");
    EXPECT_EQ(wad.ReadLumpString(1).find("Thing"), std::string::npos) << "some ports read it last";
    EXPECT_EQ(ReadFile(program.patch.fileName), bytes);
    EXPECT_TRUE(Tells("Fake ended"));
}

TEST_F(RunTest, PlacesTheSelectedThingOrWeaponInTheTestMap) {
    Choose("", true);
    struct {
        RecordKind kind;
        int record;
        const char* status;
        std::vector<int> things;
    } const rows[]{
        {RecordKind::Thing, imp, "Started Fake in the test map with Imp", {1, 3001}},
        {RecordKind::Thing,
         impBall,
         "Started Fake in the test map with Imp Fireball; it has no ID # of its own and gets 20000 in this run only",
         {1, firstFreeId}},
        {RecordKind::Weapon, shotgun, "Started Fake in the test map with Shotgun", {1, 2001}},
        {RecordKind::Weapon, fist, "Started Fake in the test map; you have the Fist from the start", {1}},
    };
    for (const auto& row : rows) {
        Editors().ShowRecord(row.kind, row.record);
        PressF9();
        EXPECT_EQ(Status(), row.status);
        EXPECT_EQ(ThingsOfMap(), row.things) << row.status;
        EXPECT_EQ(Noted("patch").find("ID # = 20000") != std::string::npos, row.record == impBall);
        EXPECT_NE(Noted("arguments").find("/testmap.wad][-deh]"), std::string::npos) << "the last of the WADs";
        EXPECT_TRUE(Tells("Fake ended"));
    }
    EXPECT_EQ(program.patch.current, program.patch.defaults);
}

TEST_F(RunTest, TellsWhatThePortSaysAndHowItEnds) {
    edits.StoreGroup({{{RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 77}}, "tough");
    ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QToolButton>("cmdProblems").text() == "0 errors, 0 warnings"; }));
    struct {
        const char* arguments;
        const char* status;
        const char* problems;
    } const rows[]{
        {"-do fail", "Fake ended with exit code 3",
         "Error|Fake||ended with exit code 3; the last that it printed: W_GetNumForName: NOSUCH not found!\n"},
        {"-do crash", "Fake crashed", "Error|Fake||crashed\n"},
        {"-do flood", "Fake ended", "Note|Fake||printed more than 1 MB; what came behind that was dropped\n"},
        {"-do longlog", "Fake ended",
         "Warning|Fake: Imp|6|a strange number\n"
         "Note|Fake||wrote a log of more than 16 MB; what came behind that was not read\n"},
        {"-do nothing", "Fake ended", ""},
    };
    for (const auto& row : rows) {
        Choose(row.arguments);
        PressF9();
        EXPECT_TRUE(Tells(row.status)) << row.arguments << ": " << Status();
        EXPECT_EQ(Problems(), row.problems) << row.arguments;
    }
    EXPECT_TRUE(NothingIsLeft());

    Choose("-do warn"); // which still runs when it is told
    PressF9();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Problems().empty(); }));
    EXPECT_EQ(Problems(), "Warning|Fake: Imp|6|a strange number\n");
    emit window->Commands().SessionChanged();
    EXPECT_EQ(Problems(), "") << "of another patch";
}

TEST_F(RunTest, WhatCannotBeStartedIsToldAndLosesNothing) {
    const auto refused = [this](const std::string& text) {
        notifier.Expect(MessageKind::Exclamation, text);
        PressF9();
        EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::is_empty(temporary); }));
        notifier.AllAsked();
    };
    Choose("it's");
    refused("Could not run Fake: nothing closes the quotation mark '");
    Choose("");
    const auto port = folder / "my port's.sh";
    std::filesystem::permissions(port, std::filesystem::perms::owner_read);
    refused("Could not run Fake: " + port.string() + ": no program");
    std::filesystem::permissions(port, std::filesystem::perms::owner_all);
    const std::string script = ReadFile(port);
    WriteFile(port, "#!/nowhere/sh\n");
    QProcess probe;
    probe.start(QString::fromStdString(port.string()));
    EXPECT_FALSE(probe.waitForStarted());
    refused("Could not start Fake: " + probe.errorString().toStdString());
    EXPECT_TRUE(Tells("Fake could not be started"));
    WriteFile(port, script);

    qputenv("TMPDIR", port.c_str());
    refused("Could not run Fake: no folder can be made in " + port.string() + ": Not a directory");
    qputenv("TMPDIR", temporary.c_str());
    edits.StoreGroup({{{RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 77}}, "tough");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    rlimit full = before;
    full.rlim_cur = 50; // as if the disk had no more room
    setrlimit(RLIMIT_FSIZE, &full);
    notifier.Expect(MessageKind::Exclamation,
                    "Could not run Fake: patch.bex could not be written in " + temporary.string() + ": File too large");
    PressF9();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signalBefore);
    notifier.AllAsked();
    EXPECT_TRUE(NothingIsLeft());
    EXPECT_TRUE(edits.CanUndo());
}

TEST_F(RunTest, RealPortsAreUnderstood) {
    const std::string bytes = "Patch File for DeHackEd v3.0\n\nDoom version = 2021\nPatch format = 6\n\n"
                              "Frame 442 (Imp)\nDuration = 5\nFoo = 3\n\nFrame 443 (Imp)\nDuration = 6\nFoo = 3\n";
    ASSERT_TRUE(modPatchFiles::ReadBytes(bytes, program.engine, program.patch).status);
    struct {
        const char* name;
        const char* quiet;
        const char* says;
    } const rows[]{{"Chocolate Doom", "-nogui", "Field named 'Foo' not found"},
                   {"DSDA-Doom", "-no_message_box", "Invalid frame string index for 'Foo'"},
                   {"Woof!", "-nogui", "Invalid frame string index for 'Foo'"}};
    const auto wrapper = folder / "wrapper";
    for (const char* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME"})
        qputenv(variable, folder.Path().c_str());
    qputenv("SDL_VIDEODRIVER", "dummy");
    qputenv("SDL_AUDIODRIVER", "dummy");
    int runs = 0;
    for (Settings::Port port : FindPorts())
        for (const auto& row : rows) {
            if (port.name != row.name)
                continue;
            ++runs;
            WriteFile(wrapper,
                      "#!/bin/sh\necho $$ > '" + (folder / "pid").string() + "'\nexec " + port.program + " \"$@\"\n");
            std::filesystem::permissions(wrapper, std::filesystem::perms::owner_all);
            port.program = wrapper.string();
            program.settings.Ports({port});
            program.settings.Text("runPort", port.name);
            program.settings.Text("runArguments", std::string("-nosound ") + row.quiet);
            PressF9();
            for (const char* line : {"8", "12"}) {
                const std::string due = std::string("Warning|") + row.name + "|" + line + "|" + row.says + "\n";
                EXPECT_TRUE(QTest::qWaitFor([&] { return Problems().find(due) != std::string::npos; }, 15'000))
                    << due << "in\n"
                    << Problems();
            }
            kill(static_cast<pid_t>(std::stoi(ReadFile(folder / "pid"))), SIGKILL);
            EXPECT_TRUE(Tells(port.name + " crashed"));
        }
    EXPECT_TRUE(NothingIsLeft());
    if (runs == 0)
        GTEST_SKIP() << "no port is installed";
}

TEST_F(RunTest, PortsGoOnWhenTheWindowIsGone) {
    Choose("-do stay");
    PressF9();
    ASSERT_NE(Noted("arguments"), "");
    window.reset();
    EXPECT_TRUE(NothingIsLeft());
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(folder / "stayed"); }));
}

} // namespace
} // namespace plinket3::test
