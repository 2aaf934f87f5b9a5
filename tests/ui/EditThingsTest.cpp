#include "patch/modPatchText.h"
#include "tests/ui/UiTest.h"
#include "ui/LatinText.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditThings.h"
#include "ui/fields/SpriteView.h"
#include "ui/states/StatePlayer.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QTreeView>

namespace plinket3::test {

namespace {

constexpr int imp = 11, ball = 31;
constexpr std::int32_t unit = 65536; // of fixed point

class frmEditThingsTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("doom19");
        window = &Open<frmEditThings>();
        window->ShowCell({RecordKind::Thing, imp, existsField});
    }
    const ThingRecord& Imp() const { return Current().things[imp]; }
    QTreeView& List() { return Find<QTreeView>(*window, "lstThings"); }
    QComboBox& Names() { return Find<QComboBox>(*window, "cmbThingNames"); }
    QStringList Listed() {
        QStringList names;
        for (int row = 0; row < List().model()->rowCount(); ++row)
            names.append(List().model()->index(row, 0).data().toString().simplified());
        return names;
    }
    /// A flag's row, and a click on its check box.
    QModelIndex Flag(int bit) { return Find<QTreeView>(*window, "trvFlags").model()->index(bit, 0); }
    bool IsChecked(int bit) { return Flag(bit).data(Qt::CheckStateRole).value<Qt::CheckState>() == Qt::Checked; }
    void ToggleFlag(int bit) {
        auto& tree = Find<QTreeView>(*window, "trvFlags");
        tree.scrollTo(Flag(bit));
        const QRect row = tree.visualRect(Flag(bit));
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, {row.left() + row.height() / 2, row.center().y()});
    }
    frmEditThings* window = nullptr;
};

TEST_F(frmEditThingsTest, TheKeyboardReachesEverythingInTheOrderOfTheEye) {
    QStringList expected{"txtFilter",  "lstThings", "cmbThingNames",    "cmdDuplicate",  "cmdRename",
                         "cmdRestore", "cmbRun",    "cmdTurnLeft",      "cmdTurnRight",  "sldLight",
                         "cmdPlay",    "cmdStop",   "cmdStep",          "cmbSpeed",      "chkSound",
                         "cmdJumps",   "txtID",     "txtHitPoints",     "txtSpeed",      "txtRadius",
                         "txtHeight",  "txtMass",   "txtMissileDamage", "txtPainChance", "txtReactionTime"};
    for (const char* stem : {"Spawn", "Move", "Pain", "Melee", "Attack", "Death", "Exploding", "Respawn"})
        for (const char* pattern : {"txt%1StateN", "lbl%1StateS", "cmd%1StateA"})
            expected.append(QString(pattern).arg(stem));
    for (const char* stem : {"Alert", "Attack", "Pain", "Death", "Action"})
        for (const char* pattern : {"txt%1SoundN", "lbl%1SoundS", "cmd%1SoundP", "cmd%1SoundA"})
            expected.append(QString(pattern).arg(stem));
    expected.append({"txtFlagFilter", "trvFlags"});
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::attackSound)}, 1); // or there is nothing to play
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    Box("txtFilter").setFocus();
    QStringList reached;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        reached.append(QApplication::focusWidget()->objectName());
        EXPECT_FALSE(QApplication::focusWidget()->accessibleName().isEmpty() &&
                     qobject_cast<QPushButton*>(QApplication::focusWidget()) == nullptr)
            << reached.back().toStdString();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(reached.join(' ').toStdString(), expected.join(' ').toStdString());

    QWidget& description = Find<QLabel>(*window, "lblMoveStateS");
    description.setFocus();
    QTest::keyClick(&description, Qt::Key_Return);
    EXPECT_EQ(links.calls.back(), "select state " + std::to_string(Imp().firstMovingState) + " 11 -1");
}

TEST_F(frmEditThingsTest, FlagsShowAndStoreTheirBits) {
    ASSERT_EQ(Flag(0).model()->rowCount(), 32);
    for (int bit = 0; bit < 32; ++bit) {
        SCOPED_TRACE(bit);
        const auto before = static_cast<std::uint32_t>(Imp().bits);
        EXPECT_EQ(IsChecked(bit), (before >> bit & 1U) != 0);
        ToggleFlag(bit);
        EXPECT_EQ(static_cast<std::uint32_t>(Imp().bits), before ^ (1U << bit));
        EXPECT_EQ(IsChecked(bit), (before >> bit & 1U) == 0);
        EXPECT_TRUE(Flag(bit).data(Qt::FontRole).value<QFont>().bold());
        EXPECT_TRUE(Flag(bit).data(Qt::ToolTipRole).toString().contains("Default: "));
    }
    UndoAll();
    EXPECT_TRUE(Flag(0).data(Qt::FontRole).isNull());
    EXPECT_EQ(Flag(0).data(Qt::ToolTipRole).toString().toStdString(), program.engine.flagTooltips[0]);
}

TEST_F(frmEditThingsTest, SpeedKeepsItsMeaningWhenAThingBecomesAProjectile) {
    QLineEdit& speed = Box("txtSpeed");
    ToggleFlag(projectileBit);
    EXPECT_EQ(Imp().speed, 8 * unit);
    EXPECT_EQ(speed.text(), "8");
    EXPECT_FALSE(speed.font().bold()) << "it means the same";
    EXPECT_EQ(edits.UndoName(), "flag MISSILE of Imp");
    Type(speed, "10");
    EXPECT_EQ(Imp().speed, 10 * unit);
    EXPECT_EQ(speed.toolTip(), "Default: 8");
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::speed)}, 5 * unit / 2);
    ToggleFlag(projectileBit);
    EXPECT_EQ(Imp().speed, 2);
    EXPECT_EQ(speed.text(), "2");
    edits.Undo();
    EXPECT_TRUE(IsChecked(projectileBit));
    QTest::keyClick(&speed, Qt::Key_Tab);
    EXPECT_EQ(speed.text(), "2.5");
    window->findChild<QAction*>("actRestoreFlags")->trigger();
    EXPECT_EQ(Imp().speed, 2);
    EXPECT_FALSE(IsChecked(projectileBit));
    UndoAll();
    EXPECT_EQ(speed.text(), "8");
}

TEST_F(frmEditThingsTest, TheListNarrowsByNameNumberOrIndex) {
    const struct {
        const char* text;
        QStringList listed;
    } cases[]{{"barrel", {"31 Explosive Barrel", "128 Burning Barrel"}},
              {" IMP F ", {"32 Imp Fireball"}},
              {"imp", Listed().filter("imp", Qt::CaseInsensitive)},
              {"136", {"136 " + ShownText(Current().things[135].name), "137 " + ShownText(Current().things[136].name)}},
              {"nothing", {}}};
    for (const auto& row : cases) {
        Type(Box("txtFilter"), row.text);
        EXPECT_EQ(Listed(), row.listed) << row.text;
        EXPECT_EQ(Names().currentIndex(), imp) << row.text; // the filter chooses nothing
        EXPECT_EQ(List().selectionModel()->hasSelection(), Listed().contains("12 Imp")) << row.text;
    }
    Type(Box("txtFilter"), "fireball");
    QTest::keyClick(&Box("txtFilter"), Qt::Key_Return);
    EXPECT_EQ(Names().currentText(), "Mancubus Fireball");
    ClickRow(List(), 2);
    EXPECT_EQ(Names().currentText(), "Imp Fireball");
    links.typedText = QStringLiteral("Ball");
    window->findChild<QAction*>("actRename")->trigger();
    EXPECT_EQ(links.calls.back(), "filter entry 32 Ball");
    EXPECT_TRUE(List().currentIndex().data().toString().endsWith("Ball")) << "listed, though it is not asked for";
    Box("txtFilter").clear();
    EXPECT_EQ(List().currentIndex().row(), Names().currentIndex());
    EXPECT_EQ(Listed().size(), Names().count());
}

TEST_F(frmEditThingsTest, FollowsEditsOfOthers) {
    const auto& picture = *window->findChild<SpriteView*>("picThing");
    const QImage before = picture.Picture();
    EXPECT_NE(before.isNull(), HasWad());
    edits.Store({RecordKind::State, Imp().initialState, RowOf(&StateRecord::sprite)}, 28);
    EXPECT_EQ(Find<QLabel>(*window, "lblSpawnStateS").text(), "PLAYA");
    EXPECT_NE(picture.Picture() == before, HasWad());
    Type(Box("txtSpawnStateN"), "0");
    EXPECT_TRUE(picture.Picture().isNull()) << "no state, nothing to show";
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 61);
    EXPECT_EQ(Box("txtHitPoints").text(), "61");
    EXPECT_EQ(Box("txtHitPoints").toolTip(), "Default: 60");
}

TEST_F(frmEditThingsTest, PlaysWhatTheThingHas) {
    program.fixedUses = LoadFixedUses(program.programFolder, program.engine);
    auto& runs = Find<QComboBox>(*window, "cmbRun");
    auto& player = *window->findChild<StatePlayer*>();
    player.Chance([] { return 1; });
    const auto choose = [&](const char* run) {
        QTest::keyClick(&runs, Qt::Key_Home);
        for (int row = 0; row < runs.count() && runs.currentText() != run; ++row)
            QTest::keyClick(&runs, Qt::Key_Down);
        EXPECT_EQ(runs.currentText(), run);
    };
    const auto played = [&](int tics) {
        links.calls.clear();
        QTest::mouseClick(&Find<QToolButton>(*window, "cmdPlay"), Qt::LeftButton);
        for (int tic = 1; tic < tics; ++tic)
            player.Advance();
        return links.calls;
    };
    const auto sounds = [](std::initializer_list<std::string_view> names, const PatchSet& set) {
        std::vector<std::string> calls;
        for (const std::string_view name : names)
            for (const auto& [number, sound] : set.sounds)
                if (set.SoundName(number) == name)
                    calls.push_back("play sound " + std::to_string(number));
        return calls;
    };
    EXPECT_EQ(runs.count(), 8);
    EXPECT_EQ(runs.currentText(), "Initial frame");
    program.patch.current.things[imp].deathState = 5000;
    window->Refresh();
    EXPECT_EQ(runs.count(), 7) << "there is no such state";
    program.patch.current.states.Add(5000);
    window->Refresh();
    EXPECT_EQ(runs.count(), 8) << "now there is";
    program.patch.current = program.patch.defaults;
    window->Refresh();
    choose("Death frame");
    EXPECT_EQ(Find<QLabel>(*window, "lblTic").text(), "28 tics, then stays");
    EXPECT_EQ(played(100), sounds({"bgdth2"}, Current()));
    EXPECT_FALSE(player.IsPlaying());
    choose("First moving frame");
    EXPECT_EQ(played(1), sounds({"bgsit2", "bgact"}, Current())) << "it has seen somebody";
    choose("Injury frame");
    EXPECT_EQ(played(4), sounds({"popain"}, Current()));
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 61);
    EXPECT_TRUE(player.IsPlaying()) << "another value is no reason to stop";

    const auto show = [this](int thing) { window->ShowCell({RecordKind::Thing, thing, existsField}); };
    show(imp + 1);
    EXPECT_FALSE(player.IsPlaying());
    EXPECT_EQ(runs.currentText(), "Injury frame") << "the choice stays";
    show(ball);
    EXPECT_EQ(runs.currentText(), "Initial frame") << "a ball does not flinch";
    edits.Store({RecordKind::Thing, ball, RowOf(&ThingRecord::initialState)}, 0);
    EXPECT_EQ(runs.currentIndex(), -1);
    EXPECT_FALSE(Find<QToolButton>(*window, "cmdPlay").isEnabled());
    show(imp);
    choose("Death frame");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    Click("chkSound");
    EXPECT_EQ(played(100), std::vector<std::string>());
    EXPECT_FALSE(Find<QCheckBox>(Open<frmEditStates>(), "chkSound").isChecked()) << "it is remembered";
}

TEST_F(frmEditThingsTest, ShowsTheThingsOfTheNextPatch) {
    for (const int none : {-1, 137})
        window->ShowCell({RecordKind::Thing, none, existsField});
    LoadEngine("dehextra19");
    window->Refresh();
    EXPECT_EQ(Names().currentIndex(), imp);
    EXPECT_EQ(List().currentIndex().row(), imp);
    window->ShowCell({RecordKind::Thing, Names().count() - 1, existsField});
    LoadEngine("doom19");
    window->Refresh();
    EXPECT_EQ(Names().currentIndex(), 136);
    EXPECT_EQ(Box("txtID").text().toInt(), Current().things[136].id);
    program.patch = {};
    window->Refresh();
    EXPECT_EQ(Names().count(), 0);
    EXPECT_FALSE(Box("txtID").isEnabled());
    EXPECT_FALSE(Flag(0).flags().testFlag(Qt::ItemIsUserCheckable));
    for (const char* button : {"cmdRename", "cmdRestore"})
        Click(button);
    EXPECT_TRUE(links.calls.empty());
}

TEST_F(frmEditThingsTest, SeveralThingsAreEditedTogether) {
    constexpr int barrel = 30; // the ball is a projectile, of fixed-point speed
    constexpr int solid = 1;
    ASSERT_TRUE(modPatchText::GetFlag(Current().things[ball].bits, projectileBit));
    ClickRow(List(), imp);
    for (const int thing : {ball, barrel})
        ClickRow(List(), thing, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(Names().currentIndex(), barrel);
    EXPECT_EQ(Box("txtHitPoints").text(), "");
    EXPECT_EQ(Box("txtReactionTime").text(), "8") << "they all have it";
    EXPECT_EQ(Find<QLabel>(*window, "lblSpawnStateS").text(), "");
    EXPECT_EQ(Flag(solid).data(Qt::CheckStateRole).value<Qt::CheckState>(), Qt::PartiallyChecked);

    Type(Box("txtHitPoints"), "7");
    EXPECT_EQ(edits.UndoName(), "hit points of 3 things");
    QTest::keyClick(&Box("txtHitPoints"), Qt::Key_Backspace); // an empty box changes nothing
    Type(Box("txtSpeed"), "9");
    links.selectedSoundRow = 2;
    Click("cmdPainSoundA");
    ToggleFlag(solid);
    PatchSet expected = Defaults();
    for (const int thing : {imp, ball, barrel}) {
        ThingRecord& record = expected.things[static_cast<std::size_t>(thing)];
        record.hitPoints = 7;
        record.speed = thing == ball ? 9 * unit : 9;
        record.painSound = 2;
        record.bits = modPatchText::SetFlag(record.bits, solid);
    }
    EXPECT_EQ(Current(), expected);
    EXPECT_TRUE(IsChecked(solid));
    Box("txtFilter").setFocus();
    EXPECT_EQ(Box("txtHitPoints").text(), "7");
    EXPECT_EQ(Box("txtSpeed").text(), "9");
    int steps = 0;
    for (; edits.CanUndo(); ++steps)
        edits.Undo();
    EXPECT_EQ(steps, 4);
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(Box("txtHitPoints").text(), "");

    ToggleFlag(projectileBit);
    EXPECT_EQ(Current().things[imp].speed, 8 * unit);
    EXPECT_EQ(Current().things[ball].speed, Defaults().things[ball].speed);
    Names().setCurrentIndex(imp);
    EXPECT_EQ(List().selectionModel()->selectedRows().size(), 1) << "one is chosen from the box";
}

TEST_F(frmEditThingsTest, ListsAndEditsThingsThatThePatchMade) {
    constexpr int far = 1'999'999'999;
    for (const int thing : {far, 200})
        edits.MakeRecord(RecordKind::Thing, thing);
    EXPECT_EQ(Names().count(), static_cast<int>(Defaults().things.size()) + 2);
    EXPECT_EQ(Listed().last(), "2000000000 thing 2000000000");
    window->ShowCell({RecordKind::Thing, far, existsField});
    EXPECT_EQ(List().currentIndex().row(), Names().count() - 1);
    Type(Box("txtHitPoints"), "7");
    EXPECT_EQ(Current().things[far].hitPoints, 7);
    edits.Store({RecordKind::Thing, far, RowOf(&ThingRecord::initialState)}, 12345678);
    EXPECT_EQ(Current().things[far].initialState, Current().states.Highest());
    Names().setCurrentIndex(Names().count() - 2);
    Type(Box("txtHitPoints"), "8");
    EXPECT_EQ(Current().things[200].hitPoints, 8);
    window->ShowCell({RecordKind::Thing, far, existsField});
    edits.RemoveRecords(RecordKind::Thing, {far}, "things");
    EXPECT_EQ(Box("txtHitPoints").text(), "8") << "the last of those that are left";
    UndoAll();
}

TEST_F(frmEditThingsTest, ALongNameIsShownFromItsStartAndKeptWhole) {
    std::string endless;
    endless.resize(20'000'000, 'n');
    edits.Store({RecordKind::Thing, imp, nameField}, endless);
    const QString shown = QString(200, 'n') + "...";
    EXPECT_EQ(Names().currentText(), shown);
    EXPECT_TRUE(List().currentIndex().data().toString().endsWith(shown));
    links.typedText = shown;
    Click("cmdRename"); // and accepted as it is proposed
    EXPECT_EQ(Current().things[imp].name, endless);
}

} // namespace

} // namespace plinket3::test
