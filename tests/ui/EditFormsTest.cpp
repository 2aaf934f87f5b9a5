#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditCheats.h"
#include "ui/editors/frmEditMisc.h"
#include "ui/editors/frmEditPars.h"
#include "ui/editors/frmEditWeapons.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QTreeView>

namespace plinket3::test {

namespace {

// The ammunition of weapons and the infighting of monsters

class frmEditWeaponsTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("doom19");
        window = &Open<frmEditWeapons>();
    }
    void Select(int weapon) { ClickRow(Find<QListView>(*window, "lstWeapons"), weapon); }
    frmEditWeapons* window = nullptr;
};

TEST_F(frmEditWeaponsTest, AmmoTypesAreNamedAsFarAsEnginesCountThem) {
    auto& types = Find<QComboBox>(*window, "cmbAmmoType");
    Select(0);
    EXPECT_EQ(Current().weapons[0].ammoType, 5);
    EXPECT_EQ(types.currentText(), "No Ammo");
    types.setFocus();
    QTest::keyClick(&types, Qt::Key_Up);
    EXPECT_EQ(Current().weapons[0].ammoType, 4);
    edits.Store({RecordKind::Weapon, 0, RowOf(&WeaponRecord::ammoType)}, 6);
    EXPECT_EQ(types.currentIndex(), -1);
    EXPECT_EQ(types.placeholderText(), "6");
    const QAbstractItemModelTester tester(types.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
}

TEST_F(frmEditWeaponsTest, SeveralWeaponsAreEditedTogether) {
    auto& types = Find<QComboBox>(*window, "cmbAmmoType");
    Select(1);
    ClickRow(Find<QListView>(*window, "lstWeapons"), 2, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(types.currentText(), "");
    types.setFocus();
    QTest::keyClick(&types, Qt::Key_End);
    EXPECT_EQ(types.currentText(), "No Ammo");
    links.selectedStateRow = 11;
    QTest::mouseClick(&Find<QPushButton>(*window, "cmdDeselectStateA"), Qt::LeftButton);
    PatchSet expected = Defaults();
    for (const std::size_t weapon : {1U, 2U}) {
        expected.weapons[weapon].ammoType = 5;
        expected.weapons[weapon].deselectState = 11;
    }
    EXPECT_EQ(Current(), expected);
}

TEST_F(frmEditWeaponsTest, ChoosingTheAmmoTypeDoesNotMarkThePatchChanged) {
    auto& types = Find<QComboBox>(*window, "cmbAmmoType");
    Select(1);
    types.setFocus();
    QTest::keyClick(&types, Qt::Key_Down);
    EXPECT_EQ(Current().weapons[1].ammoType, 1);
    EXPECT_FALSE(program.patch.changed);
    EXPECT_TRUE(types.font().bold());
    Type(Find<QLineEdit>(*window, "txtSelectStateN"), "3");
    EXPECT_TRUE(program.patch.changed);
    types.actions().constFirst()->trigger();
    EXPECT_EQ(Current().weapons[1].ammoType, 0);
    EXPECT_FALSE(types.font().bold());
}

class frmEditMiscTest : public EditorTest {};

TEST_F(frmEditMiscTest, MonstersInfightIsOneOfTwoNumbers) {
    LoadEngine("doom19");
    auto& box = Find<QCheckBox>(Open<frmEditMisc>(), "chkMonstersInfight");
    EXPECT_FALSE(box.isChecked());
    for (const std::int32_t stored : {221, 202}) {
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(6, box.height() / 2));
        EXPECT_EQ(Current().misc.monstersInfight, stored);
    }
    edits.Store({RecordKind::Misc, 0, RowOf(&MiscRecord::monstersInfight)}, 7);
    EXPECT_TRUE(box.isChecked()) << "anything but 202 is shown as on";
}

TEST_F(frmEditMiscTest, TheHelperIsAThingOrUnset) {
    LoadEngine("doom19");
    EXPECT_FALSE(Find<QLineEdit>(Open<frmEditMisc>(), "txtHelper").isVisible());
    LoadEngine("mbf21");
    constexpr int imp = 11;
    auto& window = Open<frmEditMisc>();
    auto& box = Find<QLineEdit>(window, "txtHelper");
    auto& name = Find<QLabel>(window, "lblHelper");
    EXPECT_EQ(box.placeholderText(), "unset");
    links.pickedRecord = imp;
    QTest::mouseClick(&Find<QPushButton>(window, "cmdHelperBrowse"), Qt::LeftButton);
    EXPECT_EQ(Current().misc.helper, imp + 1);
    EXPECT_EQ(edits.UndoName(), "helper");
    EXPECT_EQ(name.text(), "Imp");
    EXPECT_TRUE(box.font().bold());
    edits.Store({RecordKind::Thing, imp, nameField}, "Pal");
    EXPECT_EQ(name.text(), "Pal");
    edits.Undo();
    Type(box, "3");
    EXPECT_EQ(Current().misc.helper, 3);
    notifier.Expect("Are you sure you want to restore ALL miscellaneous values?", Answer::Yes);
    QTest::mouseClick(&Find<QPushButton>(window, "cmdRestoreAll"), Qt::LeftButton);
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(box.text(), "");
}

// The other boxes leave a fraction until they are left: EditorsTest.
TEST_F(frmEditMiscTest, AFractionIsWrittenBackAtOnceWithTheCaretAtTheEnd) {
    LoadEngine("doom19");
    auto& box = Find<QLineEdit>(Open<frmEditMisc>(), "txtIH");
    Type(box, "7.25");
    EXPECT_EQ(box.text(), "75");
    Type(box, "9998");
    box.setCursorPosition(0);
    QTest::keyClicks(&box, "1");
    EXPECT_EQ(box.text(), "9999");
    EXPECT_EQ(box.cursorPosition(), 4);
}

// Cheats

class frmEditCheatsTest : public EditorTest {};

constexpr const char* cheatBoxes[]{"txtChangeMus", "txtChainsaw", "txtGodMode", "txtAmmokeys", "txtAmmo",
                                   "txtNoClip1",   "txtNoClip2",  "txtInvinc",  "txtBerserk",  "txtInvis",
                                   "txtRadSuit",   "txtAutomap",  "txtGoggles", "txtBehold",   "txtWarp",
                                   "txtPosition",  "txtMap"};

TEST_F(frmEditCheatsTest, BoxesTakeTheCheatsLengthInNormalModeOnly) {
    for (const char* engine : {"doom19", "mbf19"}) {
        LoadEngine(engine);
        auto& window = Open<frmEditCheats>();
        for (std::size_t cheat = 0; cheat < std::size(cheatBoxes); ++cheat) {
            auto& box = Find<QLineEdit>(window, cheatBoxes[cheat]);
            EXPECT_EQ(box.text().toStdString(), Defaults().cheats[cheat].text);
            Type(box, "abcdefghijklmno");
            const std::size_t space = static_cast<std::size_t>(Defaults().cheats[cheat].maximumLength);
            EXPECT_EQ(Current().cheats[cheat].text, std::string("abcdefghijklmno").substr(0, space > 0 ? space : 15))
                << engine << " " << cheatBoxes[cheat];
            EXPECT_TRUE(program.patch.changed);
            edits.Undo();
            EXPECT_EQ(box.text().toStdString(), Defaults().cheats[cheat].text);
        }
        EXPECT_EQ(Current(), Defaults());
    }
}

TEST_F(frmEditCheatsTest, CharactersWithoutAByteAreRefusedWithAWord) {
    LoadEngine("mbf19");
    auto& box = Find<QLineEdit>(Open<frmEditCheats>(), "txtGodMode");
    Type(box, "a");
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, QString(QChar(0x20ac)), Qt::NoModifier);
    EXPECT_EQ(Current().cheats[2].text, "a");
    ASSERT_FALSE(links.calls.empty());
    EXPECT_TRUE(links.calls.back().starts_with("status ")) << links.calls.back();
}

// Par times

class frmEditParsTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("mbf19");
        window = &Open<frmEditPars>();
    }
    QTreeView& List() { return Find<QTreeView>(*window, "lvwPars"); }
    QString Title() { return Find<QLabel>(*window, "lblMapTitle").text(); }
    frmEditPars* window = nullptr;
};

TEST_F(frmEditParsTest, AddingMakesALevelAndRemovingEmptiesTheList) {
    EXPECT_FALSE(Find<QPushButton>(*window, "cmdRemove").isEnabled());
    Click("cmdAdd");
    EXPECT_EQ(Current().pars, (std::vector<ParRecord>{{0, 1, 30}}));
    EXPECT_EQ(Title(), "MAP01 (0:30)");
    EXPECT_EQ(Box("txtTime").text(), "30");
    Click("cmdRemove");
    EXPECT_TRUE(Current().pars.empty());
    EXPECT_EQ(Title(), "-");
    EXPECT_EQ(Box("txtTime").text(), "");
    edits.Undo();
    EXPECT_EQ(List().model()->rowCount(), 1);
}

TEST_F(frmEditParsTest, TypingStoresWithoutARangeAndIsOneStep) {
    Click("cmdAdd");
    Type(Box("txtEpisode"), "2");
    Type(Box("txtMap"), "3");
    struct Case {
        const char *typed, *title;
        std::int32_t seconds;
    };
    for (const Case& row : {Case{"125", "E2M3 (2:05)", 125},
                            {"1:30", "E2M3 (1:30)", 90},
                            {"x", "E2M3 (0:00)", 0},
                            {"-5", "E2M3 (-0:05)", -5},
                            {"12.5", "E2M3 (0:12)", 12},
                            {"-1:30", "E2M3 (-1:30)", -90},
                            {"-0:30", "E2M3 (-0:30)", -30},
                            {"1:5", "E2M3 (1:05)", 65}}) {
        Type(Box("txtTime"), row.typed);
        EXPECT_EQ(Current().pars[0], (ParRecord{2, 3, row.seconds})) << row.typed;
        EXPECT_EQ(Title(), row.title);
        EXPECT_EQ(Box("txtTime").text(), row.typed) << "what is typed stays as it is";
        EXPECT_EQ(List().model()->index(0, 2).data().toInt(), row.seconds);
        window->setFocus();
    }
    edits.Undo();
    EXPECT_EQ(Current().pars[0].seconds, -30);
    EXPECT_EQ(Box("txtTime").text(), "-30");
}

TEST_F(frmEditParsTest, RemovingSelectsTheRowInItsPlaceOrTheLast) {
    for (const char* map : {"1", "2", "3"}) {
        Click("cmdAdd");
        Type(Box("txtMap"), map);
    }
    List().setFocus();
    QTest::keyClick(&List(), Qt::Key_Up);
    EXPECT_EQ(Title(), "MAP02 (0:30)");
    ClickRow(List(), 1, Qt::LeftButton, Qt::ControlModifier); // selected no more, but current
    EXPECT_EQ(Title(), "-");
    EXPECT_FALSE(Find<QPushButton>(*window, "cmdRemove").isEnabled());
    ClickRow(List(), 1);
    Click("cmdRemove");
    EXPECT_EQ(Title(), "MAP03 (0:30)");
    Click("cmdRemove");
    EXPECT_EQ(Title(), "MAP01 (0:30)");
    EXPECT_EQ(Current().pars, (std::vector<ParRecord>{{0, 1, 30}}));
}

} // namespace

} // namespace plinket3::test
