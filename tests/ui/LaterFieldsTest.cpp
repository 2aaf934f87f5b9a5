#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditAmmo.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditThings.h"
#include "ui/editors/frmEditWeapons.h"
#include "ui/states/StateColumns.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>

namespace plinket3::test {

namespace {

constexpr std::int32_t unit = 65536; // of fixed point
constexpr int imp = 11, ball = 31, shotgun = 2, walking = 450, chasing = 451;

/// The editors over the engine that has all that came after Boom.
class LaterFieldsTest : public EditorTest {
protected:
    void SetUp() override { LoadEngine("mbf21"); }
    bool IsVisible(const char* name) {
        QApplication::processEvents(); // controls are shown when the event that makes them is over
        const auto* control = window->findChild<QWidget*>(QString::fromLatin1(name));
        return control != nullptr && control->isVisible();
    }
    void ClickLink(const char* label) { QTest::mouseClick(&Find<QLabel>(*window, label), Qt::LeftButton); }
    CellValue Thing(int thing, std::int32_t ThingNumbers::*member) {
        return edits.Value({RecordKind::Thing, thing, RowOf(member)});
    }
    CellValue State(int state, std::int32_t StateNumbers::*member) {
        return edits.Value({RecordKind::State, state, RowOf(member)});
    }
    /// The page of the thing editor that has this box, brought up; its heading.
    std::string Page(const char* box) {
        auto& pages = Find<QTabWidget>(*window, "tabExtra");
        for (int page = 0; page < pages.count(); ++page)
            if (pages.widget(page)->isAncestorOf(&Box(box))) {
                pages.setCurrentIndex(page);
                return pages.tabText(page).toStdString();
            }
        return "none";
    }
    void OpenThing(int thing) { Open<frmEditThings>().ShowCell({RecordKind::Thing, thing, existsField}); }
    void OpenWeapon(int weapon) {
        Open<frmEditWeapons>();
        ClickRow(Find<QListView>(*window, "lstWeapons"), weapon);
    }
    // States
    void OpenStates() { Open<frmEditStates>().resize(1000, 900); }
    void Select(int state, Qt::KeyboardModifiers modifiers = {}) {
        ClickRow(Find<QTableView>(*window, "lvwStates"), state, Qt::LeftButton, modifiers);
    }
    void SetAction(int state, const char* mnemonic) {
        edits.Store({RecordKind::State, state, codePointerField}, *program.engine.CodePointerOf(mnemonic));
    }
    void ChooseAction(const char* mnemonic) {
        auto& actions = Find<QComboBox>(*window, "cmbActions");
        const int entry = actions.findText(QString::fromLatin1(mnemonic));
        ASSERT_GE(entry, 0) << mnemonic;
        emit actions.activated(entry);
    }
    QString Cell(int state, StateColumn column) {
        return Find<QTableView>(*window, "lvwStates").model()->index(state, static_cast<int>(column)).data().toString();
    }
};

constexpr Cell OfImp(std::int32_t ThingNumbers::*member) { return {RecordKind::Thing, imp, RowOf(member)}; }
constexpr Cell OfState(std::int32_t StateNumbers::*member) { return {RecordKind::State, walking, RowOf(member)}; }

/// What is stored of any value is told by ArgumentsTest, that boxes store by EditorsTest.
const struct {
    const char* box;
    Cell cell;
    const char* typed; // "\b" empties the box
    CellValue stored;
    const char* shown = nullptr;   // while typing, when otherwise
    const char* refused = nullptr; // how the word in the status bar begins
} typedCases[]{
    {"txtInfightingGroup", OfImp(&ThingRecord::infightingGroup), "-3", 3, "3", "What may stand here goes from 0 to"},
    {"txtProjectileGroup", OfImp(&ThingRecord::projectileGroup), "-3", -3},
    {"txtSplashGroup", OfImp(&ThingRecord::splashGroup), "x", Unset(), "", "A whole number"},
    {"txtMeleeRange", OfImp(&ThingRecord::meleeRange), "12.25", 49 * unit / 4},
    {"txtMeleeRange", OfImp(&ThingRecord::meleeRange), "\b", 64 * unit},
    {"txtFastSpeed", OfImp(&ThingRecord::fastSpeed), "9999999999", 999'999'999, "999999999", "What may"},
    {"txtDroppedItem", OfImp(&ThingRecord::droppedItem), "9999", 99, "99", "Things go from 1 to 250"},
};

TEST_F(LaterFieldsTest, InAWideThingEditorTheyStandBesideTheOthers) {
    Open<frmEditThings>();
    const auto& extra = Find<QTabWidget>(*window, "tabExtra");
    const auto placeAt = [&](int width) {
        window->resize(width, 900);
        QTest::qWait(20); // it is laid out in several rounds
        const auto corner = [this](const QWidget& widget) { return widget.mapTo(window, QPoint()); };
        const QPoint sound = corner(Box("txtActionSoundN"));
        return corner(extra).y() > sound.y() ? "below" : corner(extra).x() > sound.x() ? "beside" : "over them";
    };
    EXPECT_STREQ(placeAt(900), "below");
    EXPECT_STREQ(placeAt(1900), "beside");
    EXPECT_GE(extra.width(), extra.minimumSizeHint().width());
    EXPECT_STREQ(placeAt(900), "below");
}

TEST_F(LaterFieldsTest, TypedValuesAreStoredOrRefusedWithAWord) {
    OpenThing(imp);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    for (const auto& row : typedCases) {
        SCOPED_TRACE(std::string(row.box) + " " + row.typed);
        links.calls.clear();
        QLineEdit& box = Box(row.box);
        const bool isUnset = std::holds_alternative<Unset>(edits.Value(row.cell));
        EXPECT_EQ(box.text().isEmpty() && box.placeholderText().endsWith("unset"), isUnset);
        Type(box, row.typed);
        EXPECT_EQ(edits.Value(row.cell), row.stored);
        EXPECT_EQ(box.text(), row.shown != nullptr ? row.shown : *row.typed == '\b' ? "" : row.typed);
        const std::string said = links.calls.empty() ? "" : links.calls.back();
        EXPECT_TRUE(row.refused == nullptr ? said.empty() : said.starts_with(std::string("status ") + row.refused))
            << said;
        const bool differs = row.stored != edits.DefaultValue(row.cell);
        EXPECT_EQ(box.font().bold(), differs);
        EXPECT_EQ(edits.CanUndo(), differs);
        QTest::keyClick(&box, Qt::Key_Tab);
        if (edits.CanUndo())
            edits.Undo();
        EXPECT_FALSE(edits.CanUndo()) << "a run of typing is one step";
        EXPECT_EQ(Current(), Defaults());
    }
}

TEST_F(LaterFieldsTest, AnEmptyBoxOrItsMenuUnsets) {
    OpenThing(imp);
    Type(Box("txtSplashGroup"), "7");
    EXPECT_TRUE(Box("txtSplashGroup").toolTip().endsWith("Default: unset"));
    Type(Box("txtSplashGroup"), "\b");
    EXPECT_EQ(Thing(imp, &ThingRecord::splashGroup), CellValue(Unset()));
    ClickRow(Find<QTreeView>(*window, "lstThings"), imp + 1, Qt::LeftButton, Qt::ControlModifier);
    Type(Box("txtSplashGroup"), "7");
    EXPECT_EQ(edits.UndoName(), "splash group of 2 things");
    Type(Box("txtSplashGroup"), "\b");
    EXPECT_EQ(Thing(imp, &ThingRecord::splashGroup), CellValue(7)) << "several stay as they are";
    TriggerMenu(Box("txtSplashGroup"), {5, 5}, "unsetField");
    EXPECT_EQ(Thing(imp, &ThingRecord::splashGroup), CellValue(Unset()));
    EXPECT_EQ(Thing(imp + 1, &ThingRecord::splashGroup), CellValue(Unset()));
    EXPECT_EQ(Box("txtSplashGroup").placeholderText(), "unset");
    UndoAll();
}

TEST_F(LaterFieldsTest, FastSpeedsFollowTheProjectileBit) {
    OpenThing(ball);
    EXPECT_EQ(Box("txtFastSpeed").text(), "20");
    const auto bits = std::get<std::int32_t>(Thing(ball, &ThingRecord::bits));
    auto& flags = Find<QTreeView>(*window, "trvFlags");
    flags.model()->setData(flags.model()->index(projectileBit + 1, 0), Qt::Unchecked, Qt::CheckStateRole);
    EXPECT_NE(Thing(ball, &ThingRecord::bits), CellValue(bits));
    EXPECT_EQ(Thing(ball, &ThingRecord::fastSpeed), CellValue(20));
    EXPECT_EQ(Box("txtFastSpeed").text(), "20");
    Type(Box("txtFastSpeed"), "-1");
    flags.model()->setData(flags.model()->index(projectileBit + 1, 0), Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(Thing(ball, &ThingRecord::fastSpeed), CellValue(-1)) << "which stands for the usual one";
    TriggerMenu(Box("txtFastSpeed"), {5, 5}, "restoreField");
    EXPECT_EQ(Thing(ball, &ThingRecord::fastSpeed), CellValue(20 * unit));
    UndoAll();
}

TEST_F(LaterFieldsTest, OneFilterNarrowsTheOldFlagsAndTheNew) {
    OpenThing(imp);
    auto& flags = Find<QTreeView>(*window, "trvFlags");
    const QAbstractItemModelTester tester(flags.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto listed = [&flags] {
        QStringList names;
        for (int row = 0; row < flags.model()->rowCount(); ++row)
            names.append(flags.model()->index(row, 0).data().toString());
        return names.join(' ').toStdString();
    };
    EXPECT_EQ(flags.model()->index(0, 0).data(), "Bits");
    EXPECT_FALSE(flags.model()->flags(flags.model()->index(0, 0)) & Qt::ItemIsEnabled);
    EXPECT_EQ(flags.model()->rowCount(), 2 + 32 + 19);
    Type(Box("txtFlagFilter"), "rad");
    EXPECT_EQ(listed(), "NORADIUSDMG FORCERADIUSDMG");
    Type(Box("txtFlagFilter"), "miss");
    EXPECT_EQ(listed(), "MISSILE");
    Type(Box("txtFlagFilter"), "boss");
    QTest::keyClick(&Box("txtFlagFilter"), Qt::Key_Return);
    QTest::keyClick(&flags, Qt::Key_Space);
    EXPECT_EQ(Thing(imp, &ThingRecord::bits21), CellValue(1 << 9));
    EXPECT_EQ(edits.UndoName(), "flag BOSS of Imp");
    EXPECT_TRUE(flags.currentIndex().data(Qt::FontRole).value<QFont>().bold());
    window->findChild<QAction*>("actRestoreFlags")->trigger();
    EXPECT_EQ(Current(), Defaults());
    UndoAll();
}

TEST_F(LaterFieldsTest, EnginesShowOnlyTheFieldsThatTheyHave) {
    const struct {
        const char* engine;
        bool asEngines;
        const char* group; // its heading; null for none
        bool bits;
    } cases[]{{"dehextra19", false, nullptr, false},
              {"dehextra19", true, "DEHEXTRA", false},
              {"mbf21", true, "MBF21", true},
              {"doom19", true, nullptr, false}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.engine);
        LoadEngine(row.engine);
        if (row.asEngines)
            program.engine.dialect = program.engine.dialect.AsEngines();
        Open<frmEditThings>();
        EXPECT_EQ(IsVisible("txtDroppedItem"), row.group != nullptr);
        EXPECT_EQ(IsVisible("txtMeleeRange"), row.bits);
        if (row.group != nullptr) {
            EXPECT_EQ(Page("txtDroppedItem"), row.group);
        }
        Open<frmEditWeapons>();
        EXPECT_EQ(IsVisible("txtAmmoPerShot") && IsVisible("txtBits21"), row.bits);
        OpenStates();
        EXPECT_EQ(IsVisible("txtBits21"), row.bits);
        EXPECT_TRUE(IsVisible("txtParameter1"));
        EXPECT_EQ(Find<QTableView>(*window, "lvwStates").isColumnHidden(static_cast<int>(StateColumn::Arguments)),
                  std::string_view(row.engine) == "doom19");
    }
}

TEST_F(LaterFieldsTest, WhatComesAfterIsInFormsOfTheSameMake) {
    LoadEngine("id24");
    OpenThing(imp);
    EXPECT_EQ(Page("txtPickupSound"), "Pickup");
    EXPECT_EQ(Page("txtRespawnDice"), "ID24");
    Type(Box("txtRespawnDice"), "256");
    EXPECT_EQ(Thing(imp, &ThingRecord::respawnDice), CellValue(25));
    OpenWeapon(shotgun);
    auto& owned = Find<QComboBox>(*window, "cmbInitialOwned");
    EXPECT_EQ(owned.count(), 2) << "it is never unset";
    owned.setFocus();
    QTest::keyClick(&owned, Qt::Key_Down);
    EXPECT_EQ(Current().weapons[shotgun].initialOwned, 1);
    UndoAll();
    constexpr int roomOfEditors = 600; // on a screen of 768 lines
    for (const EditorWindow* editor : {window, static_cast<EditorWindow*>(&Open<frmEditAmmo>())}) {
        QApplication::processEvents();
        EXPECT_LE(editor->minimumSizeHint().height(), roomOfEditors) << editor->objectName().toStdString();
    }
}

TEST_F(LaterFieldsTest, NamesAreTypedInUpperCaseRefusedPickedAndUnset) {
    LoadEngine("id24");
    OpenThing(imp);
    const ::plinket3::Cell translation{RecordKind::Thing, imp, translationField};
    const ::plinket3::Cell message{RecordKind::Thing, imp, pickupMessageField};
    Page("txtTranslation");
    EXPECT_EQ(Box("txtTranslation").placeholderText(), "unset");
    Type(Box("txtTranslation"), "red x");
    EXPECT_EQ(links.calls.back(), "status Names of lumps are made of letters, digits and -_[]\\^.");
    Type(Box("txtTranslation"), "redtorangex");
    EXPECT_EQ(links.calls.back(), "status Names of lumps have up to 8 characters.");
    EXPECT_EQ(edits.Value(translation), CellValue("REDTORAN"));
    EXPECT_TRUE(Box("txtTranslation").font().bold());
    Type(Box("txtTranslation"), "\b");
    EXPECT_EQ(edits.Value(translation), CellValue(""));
    QTest::keyClick(&Box("txtTranslation"), Qt::Key_Tab);
    edits.Store(translation, std::string("longerThan8"));
    EXPECT_EQ(Box("txtTranslation").text(), "longerThan8") << "as it stands in a patch";

    Page("txtPickupMessage");
    Type(Box("txtPickupMessage"), "gotarmor");
    EXPECT_EQ(edits.Value(message), CellValue("GOTARMOR"));
    EXPECT_EQ(Text("lblPickupMessage"), "Picked up the armor.");
    Type(Box("txtPickupMessage"), "user_hi =");
    EXPECT_TRUE(links.calls.back().starts_with("status Keys of strings"));
    EXPECT_EQ(Text("lblPickupMessage"), "(the engine has no such string)");
    const auto& strings = program.engine.strings;
    links.pickedRecord = static_cast<std::int32_t>(strings.size()) - 1;
    Click("cmdPickupMessageBrowse");
    EXPECT_EQ(edits.Value(message), CellValue(strings.back().mnemonic));
    EXPECT_EQ(Box("txtPickupMessage").text().toStdString(), strings.back().mnemonic);

    OpenStates();
    Select(walking);
    Type(Box("txtTranmap"), "glass");
    EXPECT_EQ(edits.Value({RecordKind::State, walking, tranmapField}), CellValue("GLASS"));
    OpenWeapon(shotgun);
    Type(Box("txtCarouselIcon"), "smshot");
    EXPECT_EQ(edits.Value({RecordKind::Weapon, shotgun, carouselIconField}), CellValue("SMSHOT"));
    UndoAll();
}

TEST_F(LaterFieldsTest, AmountsAndItemsAreEditedByWhatTheyStandFor) {
    Open<frmEditAmmo>();
    EXPECT_FALSE(IsVisible("txtBoxAmmo"));
    LoadEngine("id24");
    Open<frmEditAmmo>();
    const ::plinket3::Cell box{RecordKind::Ammo, 0, RowOf(&AmmoRecord::boxAmmo)};
    auto& list = Find<QListView>(*window, "lstAmmo");
    ClickRow(list, list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, "Bullets").front().row());
    ASSERT_EQ(edits.Value(box), CellValue(Unset()));
    EXPECT_EQ(Box("txtDroppedBoxAmmo").placeholderText(), "25 (unset)");
    Type(Box("txtPickupAmmo"), "20");
    EXPECT_EQ(Box("txtBoxAmmo").placeholderText(), "100 (unset)");
    Type(Box("txtBoxAmmo"), "0");
    EXPECT_EQ(edits.Value(box), CellValue(0));
    EXPECT_TRUE(Box("txtBoxAmmo").toolTip().endsWith("Default: 50 (unset)"));
    EXPECT_EQ(Box("txtDroppedBoxAmmo").placeholderText(), "0 (unset)");
    Type(Box("txtBoxAmmo"), "\b");
    EXPECT_EQ(edits.Value(box), CellValue(Unset()));
    list.selectAll();
    EXPECT_EQ(Box("txtBoxAmmo").placeholderText(), "unset") << "other numbers for other kinds";
    UndoAll();

    OpenWeapon(shotgun);
    auto& type = Find<QComboBox>(*window, "cmbAmmoType");
    type.setFocus();
    QTest::keyClicks(&type, "Fuel");
    EXPECT_LT(Current().weapons[shotgun].ammoType, 0);
    EXPECT_EQ(type.currentText(), "Fuel");
    UndoAll();

    OpenThing(imp);
    Page("txtPickupSound");
    auto& weapon = Find<QComboBox>(*window, "cmbPickupWeaponType");
    EXPECT_EQ(weapon.currentText(), "-1: none");
    auto& item = Find<QComboBox>(*window, "cmbPickupItemType");
    item.setFocus();
    QTest::keyClick(&item, Qt::Key_Down);
    QTest::keyClick(&item, Qt::Key_Down);
    EXPECT_EQ(item.currentText(), "1: blue keycard");
    EXPECT_EQ(Thing(imp, &ThingRecord::pickupItemType), CellValue(1));
    edits.Store(OfImp(&ThingRecord::pickupItemType), 99);
    EXPECT_EQ(item.placeholderText(), "99: (none such)");
    UndoAll();
}

TEST_F(LaterFieldsTest, ReferencesAreDescribedBroughtUpPlayedAndPicked) {
    OpenThing(imp);
    EXPECT_EQ(Text("lblDroppedItem"), "-");
    links.pickedRecord = 63;
    Click("cmdDroppedItemBrowse");
    EXPECT_EQ(links.calls.back(), "pick thing 0");
    EXPECT_EQ(Thing(imp, &ThingRecord::droppedItem), CellValue(64)) << "counted from 1";
    EXPECT_EQ(Text("lblDroppedItem").toStdString(), Current().things[63].name);
    ClickLink("lblDroppedItem");
    EXPECT_EQ(links.calls.back(), "show thing 64");
    links.pickedRecord = 5;
    Click("cmdRipSoundBrowse");
    Click("cmdRipSoundPlay");
    EXPECT_EQ(links.calls.back(), "play sound 5");
    ClickLink("lblRipSound");
    EXPECT_EQ(links.calls.back(), "show sound 5");
    edits.StoreGroup({{OfImp(&ThingRecord::droppedItem), 9999}}, "as from a file");
    EXPECT_EQ(Box("txtDroppedItem").text(), "9999");
    EXPECT_EQ(Text("lblDroppedItem"), "(none such)");
    UndoAll();
}

TEST_F(LaterFieldsTest, AnActionHasARowForEachOfItsArguments) {
    OpenStates();
    SetAction(walking, "MonsterMeleeAttack");
    Select(walking);
    EXPECT_TRUE(IsVisible("txtParameter1")) << "which it does not take";
    EXPECT_EQ(Box("txtArgs1").placeholderText(), "3 (unset)");
    EXPECT_TRUE(Box("txtArgs2").toolTip().contains("0: division by 0")) << Box("txtArgs2").toolTip().toStdString();
    EXPECT_FALSE(IsVisible("txtArgs5"));
    Type(Box("txtArgs2"), "6");
    EXPECT_EQ(edits.UndoName(), "damagedice of frame 450");
    EXPECT_EQ(Cell(walking, StateColumn::Arguments), "damage 3d6");
    links.pickedRecord = 7;
    Click("cmdArgs3Browse");
    EXPECT_EQ(State(walking, &StateRecord::arg3), CellValue(7));
    Click("cmdArgs3Play");
    EXPECT_EQ(links.calls.back(), "play sound 7");

    SetAction(walking, "HealChase");
    EXPECT_EQ(Text("lblArgs1"), "") << "unset";
    EXPECT_TRUE(IsVisible("txtArgs3")) << "given, though not taken";
    links.pickedState = 442;
    Click("cmdArgs1Browse");
    EXPECT_EQ(Text("lblArgs1"), "TROOA");
    ClickLink("lblArgs1");
    EXPECT_EQ(links.calls.back(), "show frame 442");
    Type(Box("txtArgs3"), "\b");
    EXPECT_FALSE(IsVisible("txtArgs3"));
    UndoAll();
}

TEST_F(LaterFieldsTest, BitsAndTruthsHaveTheirOwnBoxes) {
    OpenStates();
    SetAction(walking, "AddFlags");
    Select(walking);
    auto& bits = Find<QToolButton>(*window, "cmdArgs2Browse");
    auto& list = *bits.menu()->findChild<QListView*>("cmdArgs2BrowseList");
    EXPECT_EQ(list.model()->rowCount(), 19);
    list.model()->setData(list.model()->index(17, 0), Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(Box("txtArgs2").text(), "RIP");
    EXPECT_EQ(State(walking, &StateRecord::arg2), CellValue(1 << 17));
    Type(Box("txtArgs1"), "solid + shoot");
    EXPECT_EQ(State(walking, &StateRecord::arg1), CellValue(2)) << "as far as it is a name";
    QTest::keyClicks(&Box("txtArgs1"), "able");
    QTest::keyClick(&Box("txtArgs1"), Qt::Key_Tab);
    EXPECT_EQ(Box("txtArgs1").text(), "SOLID + SHOOTABLE");

    ChooseAction("WeaponSound");
    auto& full = Find<QComboBox>(*window, "cmbArgs2");
    EXPECT_EQ(full.currentText(), "0 (unset)");
    full.setFocus();
    QTest::keyClick(&full, Qt::Key_Up);
    EXPECT_EQ(full.currentText(), "1: yes");
    EXPECT_EQ(State(walking, &StateRecord::arg2), CellValue(1));
    EXPECT_TRUE(full.font().bold());
    edits.Store(OfState(&StateRecord::arg2), 5);
    EXPECT_EQ(full.currentIndex(), -1);
    EXPECT_EQ(full.placeholderText(), "5: yes");
    full.actions().front()->trigger();
    EXPECT_EQ(State(walking, &StateRecord::arg2), CellValue(Unset()));
    UndoAll();
}

TEST_F(LaterFieldsTest, AnotherActionClearsWhatItDoesNotTakeInTheSameStep) {
    OpenStates();
    for (const int state : {walking, chasing})
        SetAction(state, "SpawnObject");
    Select(walking);
    Select(chasing, Qt::ControlModifier);
    EXPECT_EQ(Box("txtArgs3").placeholderText(), "0 (unset)");
    Type(Box("txtArgs1"), "32");
    Type(Box("txtArgs3"), "2");
    EXPECT_EQ(edits.UndoName(), "x_ofs of 2 frames");
    const PatchSet before = Current();
    links.calls.clear();
    ChooseAction("MonsterProjectile");
    EXPECT_EQ(links.calls, std::vector<std::string>{"status Cleared what the new action does not take: x_ofs"});
    for (const int state : {walking, chasing}) {
        EXPECT_EQ(State(state, &StateRecord::arg1), CellValue(32));
        EXPECT_EQ(State(state, &StateRecord::arg3), CellValue(Unset()));
    }
    EXPECT_EQ(Box("txtArgs1").text(), "32");
    edits.Undo();
    EXPECT_EQ(Current(), before);
    RestoreStateColumn(edits, program, {walking, chasing}, StateColumn::Action);
    EXPECT_EQ(Current(), Defaults()) << "restored, it takes none";
    edits.Undo();
    RestoreStateColumn(edits, program, {walking, chasing}, StateColumn::Arguments);
    EXPECT_EQ(Current().states[walking].given, 0U);
    EXPECT_EQ(edits.UndoName(), "restore arguments of 2 frames");
    edits.Undo();
    SetAction(chasing, "Chase");
    EXPECT_FALSE(IsVisible("txtArgs1")) << "the states have different actions";
    UndoAll();
}

TEST_F(LaterFieldsTest, OlderActionsTakeTheirArgumentsFromTheParameters) {
    LoadEngine("mbf19");
    OpenStates();
    Select(walking);
    ChooseAction("PlaySound");
    EXPECT_FALSE(IsVisible("txtParameter1") || IsVisible("txtParameter2"));
    Type(Box("txtUnknown1"), "999");
    EXPECT_EQ(State(walking, &StateRecord::unknown1), CellValue(99)) << "as many sounds as there are";
    EXPECT_EQ(Find<QComboBox>(*window, "cmbUnknown2").currentText(), "0: no");
    EXPECT_TRUE(Cell(walking, StateColumn::Arguments).startsWith("sound: "));
    ChooseAction("Chase");
    EXPECT_EQ(Box("txtParameter1").text(), "0");
    EXPECT_TRUE(IsVisible("txtParameter1"));
    edits.Undo();
    edits.StoreGroup({{OfState(&StateRecord::unknown1), -70000}}, "as from a file");
    EXPECT_EQ(Box("txtUnknown1").text(), "-70000") << "what stands in a file is shown";
    UndoAll();
}

TEST_F(LaterFieldsTest, FiltersAndFindLookIntoArguments) {
    OpenStates();
    SetAction(walking, "SpawnObject");
    edits.Store(OfState(&StateRecord::arg1), ball + 1);
    const auto listed = [this] { return Find<QTableView>(*window, "lvwStates").model()->rowCount(); };
    Type(Box("txtFilter"), "imp fire");
    EXPECT_EQ(listed(), 1);
    EXPECT_EQ(Find<QTableView>(*window, "lvwStates").model()->index(0, 0).data(), QString::number(walking));
    const std::int32_t flying = Current().things[ball].initialState;
    static_cast<frmEditStates*>(window)->selectSingleState(flying, imp, noRecord);
    EXPECT_EQ(Text("lblUsedBy"), "Used by: Imp Fireball (initial)");
    EXPECT_TRUE(static_cast<frmEditStates*>(window)->SelectedRow()) << "among the states of the imp";
}

} // namespace

} // namespace plinket3::test
