#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditAmmo.h"

#include <QListView>
#include <QPushButton>

namespace plinket3::test {

namespace {

class frmEditAmmoTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("doom19");
        window = &Open<frmEditAmmo>();
    }
    void Click(const char* button) { QTest::mouseClick(&Find<QPushButton>(*window, button), Qt::LeftButton); }
    void Select(int ammo) { ClickRow(Find<QListView>(*window, "lstAmmo"), ammo); }
    frmEditAmmo* window = nullptr;
};

TEST_F(frmEditAmmoTest, NumbersAreLimitedStoredAndUndone) {
    struct {
        const char* box;
        Typed typed;
    } const cases[]{
        {"txtMaxAmmo", {{RecordKind::Ammo, 1, RowOf(&AmmoRecord::maxAmmo)}, "1000000", "999999", 999999}},
        {"txtMaxAmmo", {{RecordKind::Ammo, 1, RowOf(&AmmoRecord::maxAmmo)}, "-1", "0", 0}},
        {"txtMaxAmmo", {{RecordKind::Ammo, 1, RowOf(&AmmoRecord::maxAmmo)}, "300", "300", 300}},
        {"txtPickupAmmo", {{RecordKind::Ammo, 1, RowOf(&AmmoRecord::perAmmo)}, "1000000", "999999", 999999}},
        {"txtPickupAmmo", {{RecordKind::Ammo, 1, RowOf(&AmmoRecord::perAmmo)}, "-1", "0", 0}},
        {"txtPickupAmmo", {{RecordKind::Ammo, 1, RowOf(&AmmoRecord::perAmmo)}, "", "", 0}},
    };
    Select(1);
    for (const auto& row : cases)
        CheckTyping(Find<QLineEdit>(*window, row.box), row.typed);
}

TEST_F(frmEditAmmoTest, AFractionIsWrittenBackWhenTheBoxIsLeft) {
    auto& box = Find<QLineEdit>(*window, "txtMaxAmmo");
    Type(box, "7.25");
    EXPECT_EQ(box.text(), "7.25");
    EXPECT_EQ(Current().ammo[0].maxAmmo, 7);
    QTest::keyClick(&box, Qt::Key_Tab);
    EXPECT_EQ(box.text(), "7");
}

TEST_F(frmEditAmmoTest, RenamingCountsAmmunitionFromZero) {
    Select(1);
    links.typedText = "Nails";
    Click("cmdRename");
    EXPECT_EQ(links.calls.back(), "ask Ammo 1|Enter a new name|Shells");
    EXPECT_EQ(Current().ammo[1].name, "Nails");
    EXPECT_EQ(Find<QListView>(*window, "lstAmmo").model()->index(1, 0).data().toString(), "Nails");
}

TEST_F(frmEditAmmoTest, RestoringAsksAndRestoresThatAmmunitionOnly) {
    edits.Store({RecordKind::Ammo, 0, 0}, 1);
    edits.Store({RecordKind::Ammo, 2, 1}, 2);
    edits.Store({RecordKind::Ammo, 2, nameField}, std::string("Volts"));
    Select(2);
    notifier.Expect("Are you sure you want to restore this ammo entry?", Answer::No);
    Click("cmdRestore");
    EXPECT_EQ(Current().ammo[2].name, "Volts");
    notifier.Expect("Are you sure you want to restore this ammo entry?", Answer::Yes);
    Click("cmdRestore");
    EXPECT_EQ(Current().ammo[2], Defaults().ammo[2]);
    EXPECT_EQ(Current().ammo[2].name, Defaults().ammo[2].name);
    EXPECT_EQ(Current().ammo[0].maxAmmo, 1);
    EXPECT_EQ(edits.UndoName(), "restore Volts");
}

} // namespace

} // namespace plinket3::test
