#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditWeapons.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QPushButton>

namespace plinket3::test {

namespace {

class frmEditWeaponsTest : public EditorTest, public ::testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        LoadEngine(GetParam());
        window = &Open<frmEditWeapons>();
    }
    QListView& List() { return Find<QListView>(*window, "lstWeapons"); }
    void Select(int weapon) { ClickRow(List(), weapon); }
    void Click(const char* button) { QTest::mouseClick(&Find<QPushButton>(*window, button), Qt::LeftButton); }
    const WeaponRecord& Weapon(std::size_t weapon) const { return Current().weapons[weapon]; }
    frmEditWeapons* window = nullptr;
};
INSTANTIATE_TEST_SUITE_P(Engines, frmEditWeaponsTest, ::testing::Values("doom19", "mbf19"));

struct StateControl {
    const char* stem;
    std::int32_t WeaponRecord::*member;
};
constexpr StateControl stateControls[]{{"SelectState", &WeaponRecord::selectState},
                                       {"DeselectState", &WeaponRecord::deselectState},
                                       {"BobbingState", &WeaponRecord::bobbingState},
                                       {"ShootState", &WeaponRecord::shootingState},
                                       {"MuzzleState", &WeaponRecord::firingState}};

TEST_P(frmEditWeaponsTest, EveryStateIsTypedShownAssignedAndBroughtUp) {
    const std::size_t weapon = 2;
    Select(2);
    const std::string last = std::to_string(Current().states.size() - 1);
    for (const StateControl& control : stateControls) {
        const std::string stem = control.stem;
        auto& box = Find<QLineEdit>(*window, ("txt" + stem + "N").c_str());
        auto& label = Find<QLabel>(*window, ("lbl" + stem + "S").c_str());
        EXPECT_EQ(box.text().toInt(), Weapon(weapon).*control.member) << stem;
        Type(box, "149");
        EXPECT_EQ(Weapon(weapon).*control.member, 149) << stem;
        EXPECT_EQ(label.text(), "PLAYA") << stem;
        EXPECT_TRUE(program.patch.changed);
        QTest::mouseClick(&label, Qt::LeftButton);
        EXPECT_EQ(links.calls.back(), "select state 149 -1 2");
        Type(box, "-5");
        EXPECT_EQ(box.text(), "0") << stem;
        Type(box, "99999");
        EXPECT_EQ(box.text().toStdString(), last) << stem;
        links.selectedStateRow = 11;
        Click(("cmd" + stem + "A").c_str());
        EXPECT_EQ(Weapon(weapon).*control.member, 11) << stem;
    }
    while (edits.CanUndo())
        edits.Undo();
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(Find<QLineEdit>(*window, "txtSelectStateN").text().toInt(), Defaults().weapons[weapon].selectState);
}

TEST_P(frmEditWeaponsTest, SelectingShowsAWeaponAndChangesNothing) {
    for (int weapon = 0; weapon < List().model()->rowCount(); ++weapon) {
        Select(weapon);
        EXPECT_EQ(Find<QLineEdit>(*window, "txtBobbingStateN").text().toInt(),
                  Weapon(static_cast<std::size_t>(weapon)).bobbingState);
        EXPECT_NE(window->findChild<SpriteView*>("picSprite")->Picture().isNull(), HasWad()) << weapon;
    }
    EXPECT_EQ(Current(), Defaults());
    EXPECT_FALSE(edits.CanUndo());
    EXPECT_FALSE(program.patch.changed);
}

TEST_P(frmEditWeaponsTest, AmmoTypesAreNamedAsFarAsEnginesCountThem) {
    auto& types = Find<QComboBox>(*window, "cmbAmmoType");
    Select(0);
    EXPECT_EQ(Weapon(0).ammoType, 5);
    EXPECT_EQ(types.currentText(), "No Ammo");
    types.setFocus();
    QTest::keyClick(&types, Qt::Key_Up);
    EXPECT_EQ(Weapon(0).ammoType, 4);
    edits.Store({RecordKind::Weapon, 0, RowOf(&WeaponRecord::ammoType)}, 6);
    EXPECT_EQ(types.currentIndex(), -1);
    EXPECT_EQ(types.placeholderText(), "6");
    const QAbstractItemModelTester tester(types.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
}

TEST_P(frmEditWeaponsTest, SeveralWeaponsAreEditedTogether) {
    auto& types = Find<QComboBox>(*window, "cmbAmmoType");
    auto& box = Find<QLineEdit>(*window, "txtSelectStateN");
    Select(1);
    ClickRow(List(), 2, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(box.text(), "");
    EXPECT_EQ(types.currentText(), "");
    Type(box, "149");
    EXPECT_EQ(edits.UndoName(), "select frame of 2 weapons");
    types.setFocus();
    QTest::keyClick(&types, Qt::Key_End);
    EXPECT_EQ(types.currentText(), "No Ammo");
    links.selectedStateRow = 11;
    Click("cmdDeselectStateA");
    PatchSet expected = Defaults();
    for (const std::size_t weapon : {1, 2}) {
        expected.weapons[weapon].selectState = 149;
        expected.weapons[weapon].ammoType = 5;
        expected.weapons[weapon].deselectState = 11;
    }
    EXPECT_EQ(Current(), expected);
    notifier.Expect("Are you sure you want to restore these weapons?", Answer::Yes);
    Click("cmdRestore");
    EXPECT_EQ(Current(), Defaults());
}

TEST_P(frmEditWeaponsTest, ChoosingTheAmmoTypeDoesNotMarkThePatchChanged) {
    auto& types = Find<QComboBox>(*window, "cmbAmmoType");
    Select(1);
    types.setFocus();
    QTest::keyClick(&types, Qt::Key_Down);
    EXPECT_EQ(Weapon(1).ammoType, 1);
    EXPECT_FALSE(program.patch.changed);
    EXPECT_TRUE(types.font().bold());
    Type(Find<QLineEdit>(*window, "txtSelectStateN"), "3");
    EXPECT_TRUE(program.patch.changed);
    types.actions().constFirst()->trigger();
    EXPECT_EQ(Weapon(1).ammoType, 0);
    EXPECT_FALSE(types.font().bold());
}

TEST_P(frmEditWeaponsTest, RenamingCountsWeaponsFromOne) {
    Select(1);
    links.typedText.clear();
    Click("cmdRename");
    EXPECT_EQ(links.calls.back(), "ask Weapon 2|Enter new name|" + Current().weapons[1].name);
    EXPECT_FALSE(program.patch.changed);
    links.typedText = QStringLiteral("Kanone f\u00fcr alle");
    DoubleClickRow(List(), 1);
    EXPECT_EQ(Current().weapons[1].name, "Kanone f\xfcr alle");
    EXPECT_EQ(List().model()->index(1, 0).data().toString(), links.typedText);
    EXPECT_TRUE(program.patch.changed);
    edits.Undo();
    EXPECT_EQ(Current(), Defaults());
}

TEST_P(frmEditWeaponsTest, RestoringAsksAndRestoresThatWeaponOnly) {
    for (const int weapon : {1, 3}) {
        Select(weapon);
        Type(Find<QLineEdit>(*window, "txtSelectStateN"), "1");
        Type(Find<QLineEdit>(*window, "txtMuzzleStateN"), "1");
        edits.Store({RecordKind::Weapon, weapon, nameField}, std::string("Other"));
    }
    notifier.Expect("Are you sure you want to restore this weapon?", Answer::No);
    Click("cmdRestore");
    EXPECT_EQ(Current().weapons[3].name, "Other");
    notifier.Expect("Are you sure you want to restore this weapon?", Answer::Yes);
    Click("cmdRestore");
    EXPECT_EQ(Weapon(3), Defaults().weapons[3]);
    EXPECT_EQ(Current().weapons[3].name, Defaults().weapons[3].name);
    EXPECT_EQ(Current().weapons[1].name, "Other");
    EXPECT_EQ(Find<QLineEdit>(*window, "txtMuzzleStateN").text().toInt(), Defaults().weapons[3].firingState);
}

TEST_P(frmEditWeaponsTest, TheListIsASoundModelThatMarksChangedWeapons) {
    const QAbstractItemModelTester tester(List().model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    edits.Store({RecordKind::Weapon, 4, RowOf(&WeaponRecord::selectState)}, 1);
    EXPECT_TRUE(List().model()->index(4, 0).data(Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(List().model()->index(5, 0).data(Qt::FontRole).isValid());
}

} // namespace

} // namespace plinket3::test
