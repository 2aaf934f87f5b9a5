#include "patch/modPatchText.h"
#include "tests/ui/UiTest.h"
#include "ui/LatinText.h"
#include "ui/editors/frmEditThings.h"
#include "ui/fields/SpriteView.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTreeView>

namespace plinket3::test {

namespace {

constexpr int imp = 11;
constexpr std::int32_t unit = 65536; // of fixed point

class frmEditThingsTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("doom19");
        window = &Open<frmEditThings>();
        window->ShowThing(imp);
    }
    const ThingRecord& Imp() const { return Current().things[imp]; }
    QLineEdit& Box(const std::string& name) { return Find<QLineEdit>(*window, name.c_str()); }
    QTreeView& List() { return Find<QTreeView>(*window, "lstThings"); }
    QComboBox& Names() { return Find<QComboBox>(*window, "cmbThingNames"); }
    void Click(const std::string& button) {
        QTest::mouseClick(&Find<QPushButton>(*window, button.c_str()), Qt::LeftButton);
    }
    void Trigger(const char* action) { window->findChild<QAction*>(action)->trigger(); }
    void Filter(const char* text) { Type(Box("txtFilter"), text); }
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
    void UndoAll() {
        while (edits.CanUndo())
            edits.Undo();
    }
    frmEditThings* window = nullptr;
};

struct NumberCase {
    const char* box;
    std::int32_t ThingRecord::*member;
    const char* typed;
    std::int32_t stored;
    const char* shown;     // while typing
    const char* left = ""; // when the box is left; empty for the same
};
constexpr NumberCase numberCases[]{
    {"txtID", &ThingRecord::id, "12", 12, "12"},
    {"txtHitPoints", &ThingRecord::hitPoints, "99999999999", INT32_MAX, "2147483647"},
    {"txtHitPoints", &ThingRecord::hitPoints, "-2147483649", INT32_MIN, "-2147483648"},
    {"txtHitPoints", &ThingRecord::hitPoints, "12 imps", 12, "12 imps", "12"},
    {"txtSpeed", &ThingRecord::speed, "12", 12, "12"},
    {"txtRadius", &ThingRecord::width, "12.5", 12 * unit, "12.5", "12"},
    {"txtRadius", &ThingRecord::width, "13.5", 14 * unit, "13.5", "14"},
    {"txtRadius", &ThingRecord::width, "40000", -1673527296, "40000", "-25536"},
    {"txtHeight", &ThingRecord::height, "-3", -3 * unit, "-3"},
    {"txtMass", &ThingRecord::mass, "none", 0, "none", "0"},
    {"txtMissileDamage", &ThingRecord::missileDamage, "3", 3, "3"},
    {"txtPainChance", &ThingRecord::painChance, "257", 257, "257"},
    {"txtReactionTime", &ThingRecord::reactionTime, "2.5", 2, "2.5", "2"},
};

TEST_F(frmEditThingsTest, NumbersAreRoundedLimitedAndStoredInTheirUnits) {
    for (const NumberCase& row : numberCases) {
        SCOPED_TRACE(std::string(row.box) + " " + row.typed);
        QLineEdit& box = Box(row.box);
        EXPECT_EQ(box.text().toInt(),
                  Imp().*row.member / (box.objectName() == "txtRadius" || box.objectName() == "txtHeight" ? unit : 1));
        Type(box, row.typed);
        EXPECT_EQ(Imp().*row.member, row.stored);
        EXPECT_EQ(box.text(), row.shown);
        EXPECT_EQ(box.cursorPosition(), box.text().size());
        EXPECT_TRUE(program.patch.changed);
        EXPECT_TRUE(box.font().bold());
        QTest::keyClick(&box, Qt::Key_Tab);
        EXPECT_EQ(box.text(), *row.left != '\0' ? row.left : row.shown);
        edits.Undo(); // all of the typing is one step
        EXPECT_EQ(Current(), Defaults());
        EXPECT_FALSE(box.font().bold());
    }
}

struct ReferenceCase {
    const char* stem;
    std::int32_t ThingRecord::*member;
};
constexpr ReferenceCase stateCases[]{
    {"SpawnState", &ThingRecord::initialState},       {"MoveState", &ThingRecord::firstMovingState},
    {"PainState", &ThingRecord::injuryState},         {"MeleeState", &ThingRecord::closeAttackState},
    {"AttackState", &ThingRecord::farAttackState},    {"DeathState", &ThingRecord::deathState},
    {"ExplodingState", &ThingRecord::explodingState}, {"RespawnState", &ThingRecord::respawnState},
};
constexpr ReferenceCase soundCases[]{
    {"AlertSound", &ThingRecord::alertSound},   {"AttackSound", &ThingRecord::attackSound},
    {"PainSound", &ThingRecord::painSound},     {"DeathSound", &ThingRecord::deathSound},
    {"ActionSound", &ThingRecord::actionSound},
};

TEST_F(frmEditThingsTest, EveryStateIsTypedDescribedAssignedAndBroughtUp) {
    const QString last = QString::number(Current().states.size() - 1);
    for (const auto& [stem, member] : stateCases) {
        SCOPED_TRACE(stem);
        QLineEdit& box = Box("txt" + std::string(stem) + "N");
        auto& label = Find<QLabel>(*window, ("lbl" + std::string(stem) + "S").c_str());
        EXPECT_EQ(box.text().toInt(), Imp().*member);
        Type(box, "149.4");
        EXPECT_EQ(Imp().*member, 149);
        EXPECT_EQ(label.text(), "PLAYA");
        QTest::mouseClick(&label, Qt::LeftButton);
        EXPECT_EQ(links.calls.back(), "select state 149 11 -1");
        Type(box, "-5");
        EXPECT_EQ(box.text(), "0");
        EXPECT_EQ(label.text(), "-");
        Type(box, "99999");
        EXPECT_EQ(box.text(), last);
        links.selectedStateRow.reset();
        Click("cmd" + std::string(stem) + "A");
        EXPECT_EQ(box.text(), last);
        EXPECT_EQ(links.calls.back(), "status No row is selected in the state editor");
        links.selectedStateRow = 6;
        Click("cmd" + std::string(stem) + "A");
        EXPECT_EQ(links.calls.back(), "status Took row 7: state 6 (PUNGC)");
        links.selectedStateRow = 7;
        Click("cmd" + std::string(stem) + "A");
        EXPECT_EQ(Imp().*member, 7);
        EXPECT_EQ(box.text(), "7");
    }
    UndoAll();
    EXPECT_EQ(Current(), Defaults());
}

TEST_F(frmEditThingsTest, EverySoundIsTypedDescribedAssignedShownAndPlayed) {
    for (const auto& [stem, member] : soundCases) {
        SCOPED_TRACE(stem);
        QLineEdit& box = Box("txt" + std::string(stem) + "N");
        auto& label = Find<QLabel>(*window, ("lbl" + std::string(stem) + "S").c_str());
        EXPECT_EQ(box.text().toInt(), Imp().*member);
        Type(box, "99999");
        EXPECT_EQ(box.text().toInt(), static_cast<int>(Current().sounds.size()) - 1);
        links.selectedSoundRow = 1;
        Click("cmd" + std::string(stem) + "A");
        EXPECT_EQ(Imp().*member, 1);
        EXPECT_EQ(label.text(), "pistol");
        EXPECT_EQ(links.calls.back(), "status Took row 2: sound 1 (pistol)");
        links.calls.clear();
        QTest::mouseClick(&label, Qt::LeftButton);
        QTest::mouseDClick(&label, Qt::LeftButton);
        EXPECT_EQ(links.calls, (std::vector<std::string>{"show sound 1", "play sound 1"}));
        Click("cmd" + std::string(stem) + "P");
        EXPECT_EQ(links.calls.back(), "play sound 1");
        links.calls.clear();
    }
}

TEST_F(frmEditThingsTest, TheKeyboardReachesEverythingInTheOrderOfTheEye) {
    QStringList expected{"txtFilter", "lstThings",        "cmbThingNames", "cmdRename",      "cmdRestore",
                         "txtID",     "txtHitPoints",     "txtSpeed",      "txtRadius",      "txtHeight",
                         "txtMass",   "txtMissileDamage", "txtPainChance", "txtReactionTime"};
    for (const auto& [stem, member] : stateCases)
        for (const char* pattern : {"txt%1N", "lbl%1S", "cmd%1A"})
            expected.append(QString(pattern).arg(stem));
    for (const auto& [stem, member] : soundCases)
        for (const char* pattern : {"txt%1N", "lbl%1S", "cmd%1P", "cmd%1A"})
            expected.append(QString(pattern).arg(stem));
    expected.append("trvFlags");
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
    ASSERT_EQ(Flag(0).model()->rowCount(), static_cast<int>(program.engine.flagNames.size()));
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
    EXPECT_EQ(Current(), Defaults());
    EXPECT_TRUE(Flag(0).data(Qt::FontRole).isNull());
    EXPECT_EQ(Flag(0).data(Qt::ToolTipRole).toString().toStdString(), program.engine.flagTooltips[0]);
}

TEST_F(frmEditThingsTest, SpeedKeepsItsMeaningWhenAThingBecomesAProjectile) {
    QLineEdit& speed = Box("txtSpeed");
    ASSERT_EQ(Imp().speed, 8);
    ToggleFlag(projectileBit);
    EXPECT_EQ(Imp().speed, 8 * unit);
    EXPECT_EQ(speed.text(), "8");
    EXPECT_FALSE(speed.font().bold()) << "it means the same";
    EXPECT_EQ(edits.UndoName(), "flag MISSILE of Imp");
    Type(speed, "10");
    EXPECT_EQ(Imp().speed, 10 * unit);
    EXPECT_EQ(speed.toolTip(), "Default: 8");
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::speed)}, 5 * unit / 2);
    EXPECT_EQ(Imp().speed, 5 * unit / 2);
    ToggleFlag(projectileBit);
    EXPECT_EQ(Imp().speed, 2);
    EXPECT_EQ(speed.text(), "2");
    edits.Undo();
    EXPECT_TRUE(IsChecked(projectileBit));
    QTest::keyClick(&speed, Qt::Key_Tab);
    EXPECT_EQ(speed.text(), "2.5");
    Trigger("actRestoreFlags");
    EXPECT_EQ(Imp().speed, 2);
    EXPECT_FALSE(IsChecked(projectileBit));
    UndoAll();
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(speed.text(), "8");
}

TEST_F(frmEditThingsTest, ShowingThingsChangesNothing) {
    edits.Store({RecordKind::Thing, 0, RowOf(&ThingRecord::width)}, 41 * unit / 2);
    edits.MarkSaved();
    const PatchSet before = Current();
    for (int thing = 0; thing < Names().count(); ++thing) {
        Names().setCurrentIndex(thing);
        EXPECT_EQ(Names().currentText().toStdString(), Current().things[static_cast<std::size_t>(thing)].name);
        EXPECT_EQ(List().currentIndex().row(), thing);
    }
    window->ShowThing(0);
    EXPECT_EQ(Box("txtRadius").text(), "20.5");
    QTest::keyClick(&Box("txtRadius"), Qt::Key_Tab);
    window->ShowThing(-1);
    window->ShowThing(Names().count());
    EXPECT_EQ(Names().currentIndex(), 0);
    EXPECT_EQ(Current(), before);
    EXPECT_FALSE(program.patch.changed);
}

struct FilterCase {
    const char* text;
    QStringList listed;
};
TEST_F(frmEditThingsTest, TheListNarrowsByNameNumberOrIndex) {
    const FilterCase cases[]{
        {"barrel", {"31 Explosive Barrel", "128 Burning Barrel"}},
        {" IMP F ", {"32 Imp Fireball"}},
        {"imp", Listed().filter("imp", Qt::CaseInsensitive)},
        {"136", {"136 " + ShownText(Current().things[135].name), "137 " + ShownText(Current().things[136].name)}},
        {"nothing", {}}};
    for (const FilterCase& row : cases) {
        Filter(row.text);
        EXPECT_EQ(Listed(), row.listed) << row.text;
        EXPECT_EQ(Names().currentIndex(), imp) << row.text; // the filter chooses nothing
        EXPECT_EQ(List().selectionModel()->hasSelection(), Listed().contains("12 Imp")) << row.text;
    }
    Filter("fireball");
    QTest::keyClick(&Box("txtFilter"), Qt::Key_Return);
    EXPECT_EQ(Names().currentText(), "Mancubus Fireball");
    ClickRow(List(), 2);
    EXPECT_EQ(Names().currentText(), "Imp Fireball");
    Box("txtFilter").clear();
    EXPECT_EQ(List().currentIndex().row(), Names().currentIndex());
    EXPECT_EQ(Listed().size(), Names().count());
}

TEST_F(frmEditThingsTest, RenamesAsTypedAndUndoes) {
    Filter("imp");
    links.typedText = QStringLiteral(" Dev\u00efl ");
    Click("cmdRename");
    EXPECT_EQ(links.calls,
              (std::vector<std::string>{"ask Thing 12|Enter a new name|Imp", "filter entry 12  Dev\u00efl "}));
    EXPECT_EQ(Current().things[imp].name, " Dev\xefl ");
    EXPECT_EQ(Names().currentText(), links.typedText);
    EXPECT_TRUE(List().currentIndex().data().toString().endsWith(links.typedText)); // though it is not asked for
    EXPECT_TRUE(List().currentIndex().data(Qt::FontRole).value<QFont>().bold());
    EXPECT_TRUE(program.patch.changed);
    edits.Undo();
    EXPECT_EQ(Names().currentText(), "Imp");
    EXPECT_EQ(Current(), Defaults());

    links.typedText.clear();
    Trigger("actRename");
    EXPECT_EQ(Current(), Defaults());
}

TEST_F(frmEditThingsTest, RestoresTheWholeThingAndNoOther) {
    for (const Cell& cell : edits.CellsOf(RecordKind::Thing, imp))
        cell.field == nameField ? edits.Store(cell, "X") : edits.Store(cell, 3);
    edits.Store({RecordKind::Thing, imp + 1, RowOf(&ThingRecord::mass)}, 1);
    notifier.Expect("Are you sure you want to restore this thing?", Answer::No);
    Click("cmdRestore");
    EXPECT_EQ(Names().currentText(), "X");
    notifier.Expect("Are you sure you want to restore this thing?", Answer::Yes);
    Click("cmdRestore");
    EXPECT_EQ(Imp(), Defaults().things[imp]);
    EXPECT_EQ(Names().currentText(), "Imp");
    EXPECT_EQ(Box("txtHitPoints").text(), "60");
    EXPECT_EQ(Current().things[imp + 1].mass, 1);
    EXPECT_TRUE(links.calls.empty()); // the state editor's list keeps its entry
    edits.Undo();
    EXPECT_EQ(Imp().respawnState, 3);
}

TEST_F(frmEditThingsTest, RestoresAllSelectedThingsAsOneStep) {
    for (const int thing : {2, 3, 4})
        edits.Store({RecordKind::Thing, thing, RowOf(&ThingRecord::mass)}, 1);
    ClickRow(List(), 2);
    ClickRow(List(), 4, Qt::LeftButton, Qt::ControlModifier);
    notifier.Expect("Are you sure you want to restore these things?", Answer::Yes);
    Trigger("actRestore");
    EXPECT_EQ(Current().things[2], Defaults().things[2]);
    EXPECT_EQ(Current().things[3].mass, 1);
    EXPECT_EQ(Current().things[4], Defaults().things[4]);
    EXPECT_EQ(edits.UndoName(), "restore 2 things");
}

TEST_F(frmEditThingsTest, SeveralThingsAreEditedTogether) {
    constexpr int ball = 31, barrel = 30; // the ball is a projectile, of fixed-point speed
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
    Type(Box("txtHeight"), "40");
    Type(Box("txtPainStateN"), "149");
    links.selectedSoundRow = 2;
    Click("cmdPainSoundA");
    ToggleFlag(solid);
    PatchSet expected = Defaults();
    for (const std::size_t thing : {imp, ball, barrel}) {
        ThingRecord& record = expected.things[thing];
        record.hitPoints = 7;
        record.speed = thing == ball ? 9 * unit : 9;
        record.height = 40 * unit;
        record.injuryState = 149;
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
    EXPECT_EQ(steps, 6);
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(Box("txtHitPoints").text(), "");

    ToggleFlag(projectileBit);
    EXPECT_EQ(Current().things[imp].speed, 8 * unit);
    EXPECT_EQ(Current().things[ball].speed, Defaults().things[ball].speed);
    Names().setCurrentIndex(imp);
    EXPECT_EQ(List().selectionModel()->selectedRows().size(), 1) << "one is chosen from the box";
}

TEST_F(frmEditThingsTest, AThingWithoutAnInitialStateShowsNothing) {
    const auto& picture = *window->findChild<SpriteView*>("picThing");
    Type(Box("txtSpawnStateN"), "0");
    EXPECT_TRUE(picture.Picture().isNull());
    edits.Undo();
    EXPECT_NE(picture.Picture().isNull(), HasWad());
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

TEST_F(frmEditThingsTest, FollowsEditsOfOthers) {
    const auto& picture = *window->findChild<SpriteView*>("picThing");
    const QImage before = picture.Picture();
    EXPECT_NE(before.isNull(), HasWad());
    edits.Store({RecordKind::State, Imp().initialState, RowOf(&StateRecord::sprite)}, 28);
    EXPECT_EQ(Find<QLabel>(*window, "lblSpawnStateS").text(), "PLAYA");
    EXPECT_NE(picture.Picture() == before, HasWad());
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 61);
    EXPECT_EQ(Box("txtHitPoints").text(), "61");
    EXPECT_EQ(Box("txtHitPoints").toolTip(), "Default: 60");
}

TEST_F(frmEditThingsTest, ShowsTheThingsOfTheNextPatch) {
    LoadEngine("dehextra19");
    window->Refresh();
    EXPECT_EQ(Names().currentIndex(), imp);
    window->ShowThing(Names().count() - 1);
    LoadEngine("doom19");
    window->Refresh();
    EXPECT_EQ(Names().currentIndex(), 136);
    EXPECT_EQ(Box("txtID").text().toInt(), Current().things[136].id);
    program.patch = {};
    window->Refresh();
    EXPECT_EQ(Names().count(), 0);
    EXPECT_FALSE(Box("txtID").isEnabled());
    EXPECT_FALSE(Flag(0).flags().testFlag(Qt::ItemIsUserCheckable));
    Click("cmdRename");
    Click("cmdRestore");
    EXPECT_TRUE(links.calls.empty());
}

TEST_F(frmEditThingsTest, ListsKeepTheRulesOfModels) {
    const auto mode = QAbstractItemModelTester::FailureReportingMode::Fatal;
    const QAbstractItemModelTester listed(List().model(), mode);
    const QAbstractItemModelTester flags(Find<QTreeView>(*window, "trvFlags").model(), mode);
    Filter("imp");
    ToggleFlag(3);
    Box("txtFilter").clear();
    LoadEngine("mbf19");
    window->Refresh();
    EXPECT_EQ(Flag(0).model()->rowCount(), 32);
}

} // namespace

} // namespace plinket3::test
