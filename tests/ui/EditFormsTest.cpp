#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditCheats.h"
#include "ui/editors/frmEditMisc.h"
#include "ui/editors/frmEditPars.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>

namespace plinket3::test {

namespace {

// Miscellaneous values

class frmEditMiscTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("doom19");
        window = &Open<frmEditMisc>();
    }
    frmEditMisc* window = nullptr;
};

struct MiscCase {
    const char* box;
    std::int32_t MiscRecord::*member;
    const char* typed;
    const char* shown;
    std::int32_t stored;
};
constexpr MiscCase miscCases[]{
    {"txtIH", &MiscRecord::initialHealth, "10000", "9999", 9999},
    {"txtIB", &MiscRecord::initialBullets, "-1", "0", 0},
    {"txtMaxH", &MiscRecord::maxHealth, "150", "150", 150},
    {"txtMaxA", &MiscRecord::maxArmor, "150", "150", 150},
    {"txtGreenAC", &MiscRecord::greenArmorClass, "12", "12", 12},
    {"txtBlueAC", &MiscRecord::blueArmorClass, "13", "13", 13},
    {"txtMaxSP", &MiscRecord::maxSoulsphere, "333", "333", 333},
    {"txtSPHealth", &MiscRecord::soulsphereHealth, "300", "255", 255},
    {"txtMegaH", &MiscRecord::megasphereHealth, "14", "14", 14},
    {"txtGMHealth", &MiscRecord::godModeHealth, "15", "15", 15},
    {"txtIDFAArmor", &MiscRecord::idfaArmor, "16", "16", 16},
    {"txtIDFAClass", &MiscRecord::idfaArmorClass, "17", "17", 17},
    {"txtIDKFAArmor", &MiscRecord::idkfaArmor, "18", "18", 18},
    {"txtIDKFAClass", &MiscRecord::idkfaArmorClass, "19", "19", 19},
    {"txtBFGShot", &MiscRecord::bfgCells, "200", "127", 127},
    {"txtBFGShot", &MiscRecord::bfgCells, "-1", "-1", 255},
    {"txtBFGShot", &MiscRecord::bfgCells, "-200", "-128", 128},
};

TEST_F(frmEditMiscTest, EachBoxShowsLimitsStoresAndUndoes) {
    for (const MiscCase& row : miscCases)
        CheckTyping(Find<QLineEdit>(*window, row.box),
                    {{RecordKind::Misc, 0, RowOf(row.member)}, row.typed, row.shown, row.stored});
}

TEST_F(frmEditMiscTest, AFractionIsWrittenBackAtOnceWithTheCaretAtTheEnd) {
    auto& box = Find<QLineEdit>(*window, "txtIH");
    Type(box, "7.25");
    EXPECT_EQ(box.text(), "75");
    Type(box, "9998");
    box.setCursorPosition(0);
    QTest::keyClicks(&box, "1");
    EXPECT_EQ(box.text(), "9999");
    EXPECT_EQ(box.cursorPosition(), 4);
}

TEST_F(frmEditMiscTest, SecondCopiesFollow) {
    Type(Find<QLineEdit>(*window, "txtMaxH"), "150");
    EXPECT_EQ(Current().misc.secondMaxHealth, 150);
    Type(Find<QLineEdit>(*window, "txtBFGShot"), "0");
    EXPECT_EQ(Current().misc.spare2, 255);
}

TEST_F(frmEditMiscTest, MonstersInfightIsOneOfTwoNumbers) {
    auto& box = Find<QCheckBox>(*window, "chkMonstersInfight");
    EXPECT_FALSE(box.isChecked());
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(6, box.height() / 2));
    EXPECT_EQ(Current().misc.monstersInfight, 221);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(6, box.height() / 2));
    EXPECT_EQ(Current().misc.monstersInfight, 202);
    edits.Store({RecordKind::Misc, 0, RowOf(&MiscRecord::monstersInfight)}, 7);
    EXPECT_TRUE(box.isChecked()) << "anything but 202 is shown as on";
}

TEST_F(frmEditMiscTest, RestoresAllAfterAsking) {
    const char* question = "Are you sure you want to restore ALL miscellaneous values?";
    Type(Find<QLineEdit>(*window, "txtIH"), "1");
    auto& button = Find<QPushButton>(*window, "cmdRestoreAll");
    notifier.Expect(question, Answer::No);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(Current().misc.initialHealth, 1);
    notifier.Expect(question, Answer::Yes);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(Find<QLineEdit>(*window, "txtIH").text(), "100");
    edits.Undo();
    EXPECT_EQ(Current().misc.initialHealth, 1);
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

TEST_F(frmEditCheatsTest, RestoresAllAfterAsking) {
    LoadEngine("doom19");
    auto& window = Open<frmEditCheats>();
    Type(Find<QLineEdit>(window, "txtGodMode"), "x");
    Type(Find<QLineEdit>(window, "txtMap"), "y");
    const char* question = "Are you sure you want to restore ALL cheat strings?";
    notifier.Expect(question, Answer::No);
    QTest::mouseClick(&Find<QPushButton>(window, "cmdRestoreAll"), Qt::LeftButton);
    EXPECT_EQ(Current().cheats[2].text, "x");
    notifier.Expect(question, Answer::Yes);
    QTest::mouseClick(&Find<QPushButton>(window, "cmdRestoreAll"), Qt::LeftButton);
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(Find<QLineEdit>(window, "txtMap").text(), "iddt");
}

// Par times

class frmEditParsTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("mbf19");
        window = &Open<frmEditPars>();
        tester = std::make_unique<QAbstractItemModelTester>(List().model());
    }
    QTreeView& List() { return Find<QTreeView>(*window, "lvwPars"); }
    QString Title() { return Find<QLabel>(*window, "lblMapTitle").text(); }
    QLineEdit& Box(const char* name) { return Find<QLineEdit>(*window, name); }
    void Click(const char* button) { QTest::mouseClick(&Find<QPushButton>(*window, button), Qt::LeftButton); }
    frmEditPars* window = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(frmEditParsTest, AddingMakesALevelAndRemovingEmptiesTheList) {
    EXPECT_EQ(List().model()->rowCount(), 0);
    EXPECT_EQ(Title(), "-");
    EXPECT_FALSE(Find<QPushButton>(*window, "cmdRemove").isEnabled());
    Click("cmdAdd");
    EXPECT_EQ(Current().pars, (std::vector<ParRecord>{{0, 1, 30}}));
    EXPECT_EQ(Title(), "MAP01 (0:30)");
    EXPECT_EQ(Box("txtTime").text(), "30");
    EXPECT_TRUE(program.patch.changed);
    Click("cmdRemove");
    EXPECT_TRUE(Current().pars.empty());
    EXPECT_EQ(Title(), "-");
    EXPECT_EQ(Box("txtTime").text(), "");
    edits.Undo();
    EXPECT_EQ(Current().pars.size(), 1U);
    EXPECT_EQ(List().model()->rowCount(), 1);
    edits.Undo();
    EXPECT_FALSE(program.patch.changed);
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
