#include "core/modMain.h"
#include "patch/RulesChoice.h"
#include "patch/modPatchDiff.h"
#include "tests/support/TestSupport.h"
#include "tests/ui/FakeDialogs.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/UiTest.h"
#include "ui/QtFrontEnd.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSlider>
#include <QTableView>
#include <QToolBar>
#include <QTreeView>

namespace plinket3::test {

namespace {

constexpr int imp = 11, pistol = 1, shells = 1;
constexpr int chasing = 450, attacking = 454, floatBit = 14;

/// The program from its start to its end.
struct ProgramRun {
    ExpectingNotifier notifier;
    FakeDialogs dialogs;
    Program program{notifier};
    QtFrontEnd frontEnd{program, dialogs};
    bool ended = false;
};

class ScenarioTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(freedoom))
            GTEST_SKIP() << "the Debian package freedoom is not installed";
        std::filesystem::create_directories(folder / "settings");
        std::filesystem::create_directories(folder / "documents");
        Settings settings;
        settings.File(folder / "settings/plinket3.cfg");
        settings.CreateDefaults(folder / "documents");
        settings.AddIwad("Freedoom", freedoom);
        settings.Number("firstRun", 0);
        ASSERT_TRUE(settings.Save());
    }

    /// Starts the program with a command line.
    void Start(const std::vector<std::string>& arguments) {
        run = std::make_unique<ProgramRun>();
        run->program.programFolder = PLINKET3_PROGRAM_FOLDER;
        run->program.settingsFolder = folder / "settings";
        run->program.documentsFolder = folder / "documents";
        QObject::connect(&run->frontEnd, &QtFrontEnd::Ended, &run->frontEnd, [this] { run->ended = true; });
        run->notifier.Expect(MessageKind::Exclamation,
                             "This is a beta release of Plinket3 -- use it at your own risk!");
        ASSERT_TRUE(modMain::StartUp(run->program, run->frontEnd, modMain::ReadCommandLine(arguments)));
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == QStringLiteral("frmMain"))
                window = widget;
        ASSERT_NE(window, nullptr);
    }
    void NewPatch(const char* engine) {
        Start({});
        Click(*window->findChild<QWidget*>("frmStartup"), "cmdCancel");
        const ModalDriver driver("frmNewFile", AcceptSession(engine));
        Press(Qt::Key_N, Qt::ControlModifier);
    }
    /// Nothing is left to be asked: the program ends.
    void End() {
        EXPECT_TRUE(window->close());
        EXPECT_TRUE(run->ended);
        window = nullptr;
        run.reset();
    }
    void SaveAs(const std::filesystem::path& file) {
        run->dialogs.Expect("Save patch file", file.string());
        Press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_FALSE(run->program.patch.changed);
    }

    /// A shortcut of the main window.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        window->activateWindow();
        // A window also counts as active while a dialog of it is, be it one that has closed.
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window; }));
        QTest::keyClick(window, key, modifiers);
    }
    void Undo() { Press(Qt::Key_Z, Qt::ControlModifier); }
    void Redo() { Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
    void UndoTwoStepsAndRedoThem() {
        const PatchSet after = Patch();
        Undo();
        const PatchSet between = Patch();
        EXPECT_NE(between, after);
        Undo();
        EXPECT_NE(Patch(), between);
        Redo();
        EXPECT_EQ(Patch(), between);
        Redo();
        EXPECT_EQ(Patch(), after);
    }

    /// Shows an editor with its button, if it is hidden.
    QWidget& Editor(const char* name) {
        for (const EditorEntry& entry : editorEntries) {
            auto* action = window->findChild<QAction*>(entry.command);
            if (std::string_view(entry.window) == name && !action->isChecked())
                QTest::mouseClick(Find<QToolBar>(*window, "tlbEditors").widgetForAction(action), Qt::LeftButton);
        }
        return Find<QWidget>(*window, name);
    }
    static void Click(QWidget& in, const char* control) {
        auto* button = in.findChild<QWidget*>(control);
        ASSERT_NE(button, nullptr) << control;
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    }
    static void TypeIn(QWidget& in, const char* box, const char* text) { Type(Find<QLineEdit>(in, box), text); }
    static QAbstractItemView& SelectRow(QWidget& in, const char* list, int row) {
        auto& view = Find<QTreeView>(in, list);
        ClickRow(view, row);
        return view;
    }

    QWidget& Thing(int thing) {
        QWidget& editor = Editor("frmEditThings");
        SelectRow(editor, "lstThings", thing);
        return editor;
    }
    QWidget& State(int state) {
        QWidget& editor = Editor("frmEditStates");
        ClickRow(Find<QTableView>(editor, "lvwStates"), state);
        return editor;
    }
    static void PickPicture(QWidget& states, int sprite, const char* frame) {
        const ModalDriver driver("frmSelectSprite", [=](QDialog& dialog) {
            ClickRow(Find<QListView>(dialog, "lstSprites"), sprite);
            TypeIn(dialog, "txtFrame", frame);
            Click(dialog, "cmdAccept");
        });
        Click(states, "cmdSpriteBrowse");
    }
    static void PickAction(QWidget& states, const char* action) {
        const ModalDriver driver("frmSelectAction", [=](QDialog& dialog) {
            TypeIn(dialog, "txtFilter", action);
            Click(dialog, "cmdAccept");
        });
        Click(states, "cmdActionBrowse");
    }
    void TypeAction(QWidget& states, const char* action) {
        auto& box = Find<QComboBox>(states, "cmbActions");
        Type(*box.lineEdit(), action);
        if (QWidget* offered = QApplication::activePopupWidget())
            QTest::keyClick(offered, Qt::Key_Escape);
        window->activateWindow();
        QApplication::processEvents();
        QTest::keyClick(box.lineEdit(), Qt::Key_Return);
    }

    void ChangeThingsAndStates();
    void ChangeSoundsAndStrings();
    void ChangeTheRest();

    const PatchSet& Patch() const { return run->program.patch.current; }
    std::vector<std::string> Differences() const {
        return modPatchDiff::Differences(run->program.patch.defaults, Patch(), run->program.engine);
    }

    TemporaryFolder folder;
    std::unique_ptr<ProgramRun> run;
    QWidget* window = nullptr;
};

void ScenarioTest::ChangeThingsAndStates() {
    QWidget& things = Thing(imp);
    TypeIn(things, "txtHitPoints", "200");
    TypeIn(things, "txtSpeed", "12");
    auto& flags = Find<QTreeView>(things, "trvFlags");
    const QModelIndex flag = flags.model()->index(floatBit, 0);
    flags.scrollTo(flag);
    const QRect row = flags.visualRect(flag);
    QTest::mouseClick(flags.viewport(), Qt::LeftButton, {}, {row.left() + row.height() / 2, row.center().y()});
    run->dialogs.Expect("Thing 12", "Devil");
    Click(things, "cmdRename");

    QWidget& states = State(chasing);
    TypeIn(states, "txtDuration", "5");
    TypeIn(states, "txtNextState", "444");
    PickPicture(states, 29, "2");
    PickAction(states, "look");
    TypeAction(State(attacking), "Chase");
}

void ScenarioTest::ChangeSoundsAndStrings() {
    QWidget& sounds = Editor("frmEditSounds");
    {
        const ModalDriver driver("frmPropSound", [](QDialog& dialog) {
            auto& priority = Find<QSlider>(dialog, "scrlPriority");
            QTest::keyClick(&priority, Qt::Key_Home);
            QTest::keyClick(&priority, Qt::Key_Right);
            Click(dialog, "cmdAccept");
        });
        QTest::keyClick(&SelectRow(sounds, "lvwSounds", 1), Qt::Key_Return);
    }
    QWidget& strings = Editor("frmEditStrings");
    TypeIn(strings, "txtFilter", "picked up the armor");
    const ModalDriver driver("frmPropString", [](QDialog& dialog) {
        auto& text = Find<QPlainTextEdit>(dialog, "txtNewString");
        text.selectAll();
        QTest::keyClick(&text, Qt::Key_Delete);
        QTest::keyClicks(&text, "Tin. Well,");
        QTest::keyClick(&text, Qt::Key_Return);
        QTest::keyClicks(&text, "tin = tin.");
        Click(dialog, "cmdAccept");
    });
    QTest::keyClick(&SelectRow(strings, "lvwStrings", 0), Qt::Key_Return);
}

void ScenarioTest::ChangeTheRest() {
    QWidget& weapons = Editor("frmEditWeapons");
    ClickRow(Find<QListView>(weapons, "lstWeapons"), pistol);
    QTest::keyClick(&Find<QComboBox>(weapons, "cmbAmmoType"), Qt::Key_Down);
    TypeIn(weapons, "txtMuzzleStateN", "30");
    QWidget& ammo = Editor("frmEditAmmo");
    ClickRow(Find<QListView>(ammo, "lstAmmo"), shells);
    TypeIn(ammo, "txtMaxAmmo", "60");
    TypeIn(ammo, "txtPickupAmmo", "8");
    TypeIn(Editor("frmEditCheats"), "txtGodMode", "godly");
    QWidget& misc = Editor("frmEditMisc");
    TypeIn(misc, "txtIH", "75");
    Click(misc, "chkMonstersInfight");
    if (!run->program.engine.dialect.IsExtended())
        return;
    QWidget& pars = Editor("frmEditPars");
    Click(pars, "cmdAdd");
    TypeIn(pars, "txtMap", "7");
    TypeIn(pars, "txtTime", "1:30");
}

struct Mode {
    const char* name;
    RulesSetting rules;
    bool extended;
};

class EveryEditorTest : public ScenarioTest, public ::testing::WithParamInterface<Mode> {
protected:
    static std::vector<std::string> Expected(const char* sound) {
        const Mode& mode = GetParam();
        std::vector<std::string> lines{
            "Thing 12 (Imp): Name Imp -> Devil",
            "Thing 12 (Imp): Hit points 60 -> 200",
            "Thing 12 (Imp): Speed 8 -> 12",
            mode.extended
                ? "Thing 12 (Imp): Bits SOLID + SHOOTABLE + COUNTKILL -> SOLID + SHOOTABLE + FLOAT + COUNTKILL"
                : "Thing 12 (Imp): Bits 4194310 -> 4210694",
            "Frame 450: Sprite number 0 -> 29",
            "Frame 450: Sprite subnumber 3 -> 2",
            "Frame 450: Duration 3 -> 5",
            "Frame 450: Next frame 451 -> 444",
            "Frame 450: Code pointer Chase -> Look",
            "Frame 454: Code pointer TroopAttack -> Chase",
            std::string(sound) + ": Value 64 -> 1",
            "Weapon 1 (Pistol): Ammo type 0 -> 1",
            "Weapon 1 (Pistol): Firing frame 17 -> 30",
            "Ammo 1 (Shells): Max ammo 50 -> 60",
            "Ammo 1 (Shells): Per ammo 4 -> 8",
            "Cheat: God mode \"iddqd\" -> \"godly\"",
            "Misc: Initial Health 100 -> 75",
            "Misc: Monsters Infight 202 -> 221",
            std::string(mode.extended ? "String GOTARMOR" : "String 448") +
                ": \"Picked up the armor.\" -> \"Tin. Well,\\ntin = tin.\""};
        if (mode.extended)
            lines.emplace_back("Par MAP07: none -> 90");
        return lines;
    }
};
INSTANTIATE_TEST_SUITE_P(Modes, EveryEditorTest,
                         ::testing::Values(Mode{"doom19", RulesSetting::Kept, false},
                                           Mode{"mbf19", RulesSetting::Kept, true},
                                           Mode{"doom19AsEngines", RulesSetting::Engine, false},
                                           Mode{"mbf19AsEngines", RulesSetting::Engine, true}),
                         [](const auto& mode) { return std::string(mode.param.name); });

/// The text of the tooltip that shows over a place, if it is shown as it is.
std::string ToolTipAt(QWidget& widget, QPoint place) {
    QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* tip = qobject_cast<QLabel*>(window);
            tip != nullptr && tip->isVisible() && tip->windowType() == Qt::ToolTip)
            return tip->textFormat() == Qt::PlainText ? tip->text().toStdString() : "as markup";
    return "";
}

TEST_F(ScenarioTest, NamesThatLookLikeMarkupStandInToolTipsAsTheyAre) {
    std::string patch = "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n";
    for (const char* thing : {"1 (<b>1", "2 (<b>2", "3 (<b>3", "4 (<b>4"})
        patch.append("Thing ").append(thing).append("</b>)\nInitial frame = 442\n\n");
    WriteFile(folder / "a.deh", patch);
    {
        const ModalDriver driver("frmNewFile", AcceptSession("Doom and Doom II"));
        Start({(folder / "a.deh").string()});
    }
    const auto overRow = [](QWidget& in, const char* list, int row) {
        auto& view = Find<QTreeView>(in, list);
        return ToolTipAt(*view.viewport(), view.visualRect(view.model()->index(row, 0)).center());
    };
    EXPECT_EQ(overRow(Editor("frmEditThings"), "lstThings", 0), "Thing 1 (index 0): <b>1</b>\nNot as in the engine");
    EXPECT_EQ(ToolTipAt(Find<QLabel>(State(442), "lblUsedBy"), {2, 2}),
              "<b>1</b> (initial)\n<b>2</b> (initial)\n<b>3</b> (initial)\n<b>4</b> (initial)\nImp (initial)");
    Press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&Find<QLineEdit>(*window, "txtFind"), "<b>");
    EXPECT_EQ(overRow(*window, "lvwFound", 1), "1 <b>1</b>");
    End();
}

TEST_P(EveryEditorTest, WhatIsEditedSavedAndOpenedAgainIsWhatWasEdited) {
    const std::string name = GetParam().extended ? "all.bex" : "all.deh";
    const std::string config = GetParam().extended ? "mbf19.cfg" : "doom19.cfg";
    const bool kept = GetParam().rules == RulesSetting::Kept;
    Settings settings;
    settings.File(folder / "settings/plinket3.cfg");
    ASSERT_TRUE(settings.Load());
    settings.Number("patchRules", static_cast<int>(GetParam().rules));
    ASSERT_TRUE(settings.Save());
    NewPatch(GetParam().extended ? "MBF 2.03 (Doom version 19)" : "Doom and Doom II");
    ASSERT_EQ(run->program.engine.fileName, config);
    ChangeThingsAndStates();
    ChangeSoundsAndStrings();
    ChangeTheRest();
    UndoTwoStepsAndRedoThem();
    EXPECT_EQ(Differences(), Expected(kept ? "Sound 2 (pistol)" : "Sound 1 (pistol)"));
    SaveAs(folder / name);
    End();

    {
        std::filesystem::current_path(folder.Path()); // the option takes no path with a dash in it
        const ModalDriver driver("frmNewFile", AcceptSession(""));
        Start({"-load", name});
        std::filesystem::current_path("/");
    }
    EXPECT_EQ(run->program.engine.fileName, config);
    // Kept: sounds are written from 1 and read from 0. docs/kept-behaviour.md
    EXPECT_EQ(Differences(), Expected(kept ? "Sound 3 (shotgn)" : "Sound 1 (pistol)"));
    EXPECT_EQ(Find<QLineEdit>(Thing(imp), "txtHitPoints").text(), "200");
    EXPECT_EQ(Find<QComboBox>(State(attacking), "cmbActions").currentText(), "Chase");
    EXPECT_FALSE(run->program.patch.changed);
    End();
}

} // namespace

} // namespace plinket3::test
