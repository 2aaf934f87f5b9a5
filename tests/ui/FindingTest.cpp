#include "patch/Edits.h"
#include "tests/support/TestSupport.h"
#include "tests/ui/FakeDialogs.h"
#include "tests/ui/UiTest.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QTableView>

namespace plinket3::test {
namespace {

constexpr int imp = 11;

/// The main window over an engine's own patch, without a file.
class FindingTest : public EditorTest {
protected:
    void SetUp() override {
        UseFolder(program, folder.Path());
        LoadEngine("id24");
        window = std::make_unique<frmMain>(program, edits, audio, dialogs);
        for (const EditorEntry& entry : editorEntries)
            window->Load(entry.window);
        window->SetEditBar(true);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    EditorSet& Editors() { return window->Editors(); }
    template <class Widget> Widget& Find(const char* name) { return test::Find<Widget>(*window, name); }
    /// Where the user is: "frmEditThings 11 txtHitPoints".
    std::string Place() {
        const auto front = Editors().Front();
        if (!front)
            return "nowhere";
        auto* editor = static_cast<EditorWindow*>(Editors().Frame(*front)->widget());
        const auto record = editor->CurrentRecord();
        const QWidget* focus = QApplication::focusWidget();
        return std::string(editorEntries[*front].window) + " " + (record ? std::to_string(*record) : "none") + " " +
               (focus == nullptr ? "none" : focus->objectName().toStdString());
    }

    TemporaryFolder folder;
    Audio audio;
    FakeDialogs dialogs;
    std::unique_ptr<frmMain> window;
};

TEST_F(FindingTest, EveryRecordAndFieldIsShownWhateverFiltersHide) {
    edits.Store({RecordKind::Par, 0, listField}, std::vector<ParRecord>{{0, 1, 30}, {0, 2, 60}});
    const struct {
        Cell cell;
        const char* place;
    } rows[]{
        {{RecordKind::Thing, imp, existsField}, "frmEditThings 11 lstThings"},
        {{RecordKind::Thing, 12, RowOf(&ThingRecord::hitPoints)}, "frmEditThings 12 txtHitPoints"},
        {{RecordKind::Thing, imp, RowOf(&ThingRecord::painSound)}, "frmEditThings 11 txtPainSoundN"},
        {{RecordKind::Thing, 12, RowOf(&ThingRecord::bits21)}, "frmEditThings 12 trvFlags"},
        {{RecordKind::Thing, imp, pickupMessageField}, "frmEditThings 11 txtPickupMessage"},
        {{RecordKind::Thing, 12, RowOf(&ThingRecord::fastSpeed)}, "frmEditThings 12 txtFastSpeed"},
        {{RecordKind::State, 442, RowOf(&StateRecord::duration)}, "frmEditStates 442 txtDuration"},
        {{RecordKind::State, 443, codePointerField}, "frmEditStates 443 cmbActions"},
        {{RecordKind::State, 0, existsField}, "frmEditStates 0 lvwStates"},
        {{RecordKind::Sound, 5, existsField}, "frmEditSounds 5 lvwSounds"},
        {{RecordKind::String, 7, textField}, "frmEditStrings 7 lvwStrings"},
        {{RecordKind::Weapon, 2, RowOf(&WeaponRecord::shootingState)}, "frmEditWeapons 2 txtShootStateN"},
        {{RecordKind::Weapon, 3, RowOf(&WeaponRecord::ammoType)}, "frmEditWeapons 3 cmbAmmoType"},
        {{RecordKind::Ammo, 1, RowOf(&AmmoRecord::perAmmo)}, "frmEditAmmo 1 txtPickupAmmo"},
        {{RecordKind::Cheat, 4, textField}, "frmEditCheats 4 txtAmmo"},
        {{RecordKind::Misc, 0, RowOf(&MiscRecord::bfgCells)}, "frmEditMisc 0 txtBFGShot"},
        {{RecordKind::Misc, 0, RowOf(&MiscRecord::monstersInfight)}, "frmEditMisc 0 chkMonstersInfight"},
        {{RecordKind::Par, 1, existsField}, "frmEditPars 1 lvwPars"},
        {{RecordKind::Sprite, 3, lumpNameField}, "frmEditSprites 3 lvwSprites"},
    };
    for (const char* round : {"as they were made", "with filters that hide every record"}) {
        for (const auto& row : rows) {
            Editors().ShowCell(row.cell);
            EXPECT_EQ(Place(), row.place) << round;
        }
        for (auto* filter : window->findChildren<QLineEdit*>(QStringLiteral("txtFilter")))
            filter->setText(QStringLiteral("nothing is called so"));
    }
    const std::string before = Place();
    for (const Cell& none : {Cell{RecordKind::Thing, 99999, existsField}, Cell{RecordKind::State, -1, existsField},
                             Cell{RecordKind::Par, 2, existsField}})
        Editors().ShowCell(none);
    EXPECT_EQ(Place(), before) << "what is not there leads nowhere";
}

TEST_F(FindingTest, BackAndForwardGoThroughThePlacesWhereOneHasBeen) {
    const auto show = [this](RecordKind kind, std::int32_t record) { Editors().ShowRecord(kind, record); };
    const auto go = [this](const char* action) {
        Find<QAction>(action).trigger();
        const std::string place = Place();
        return place.substr(0, place.rfind(' '));
    };
    const auto isThere = [this](const char* action) { return Find<QAction>(action).isEnabled(); };
    EXPECT_FALSE(isThere("ViewBack"));
    show(RecordKind::Thing, imp);
    EXPECT_FALSE(isThere("ViewBack")) << "the first place has none before it";
    show(RecordKind::State, 442);
    show(RecordKind::State, 450);
    edits.MakeRecord(RecordKind::Sound, 4000);
    show(RecordKind::Sound, 4000);
    show(RecordKind::Cheat, 3);
    EXPECT_FALSE(isThere("ViewForward"));
    EXPECT_EQ(go("ViewBack"), "frmEditSounds 4000");
    EXPECT_EQ(go("ViewBack"), "frmEditStates 450");
    EXPECT_EQ(go("ViewBack"), "frmEditStates 442");
    EXPECT_EQ(go("ViewForward"), "frmEditStates 450");
    edits.Undo();
    EXPECT_EQ(go("ViewForward"), "frmEditCheats 3") << "the sound is gone";
    EXPECT_EQ(go("ViewBack"), "frmEditStates 450");

    auto& states = Find<QTableView>("lvwStates");
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(&states, Qt::Key_Down);
    EXPECT_FALSE(isThere("ViewForward")) << "one has gone elsewhere";
    EXPECT_EQ(go("ViewBack"), "frmEditStates 450") << "not through each row that was passed";
    EXPECT_EQ(go("ViewForward"), "frmEditStates 455");
    QTest::keyClick(&states, Qt::Key_Down);
    QTest::qWait(1'200);
    QTest::keyClick(&states, Qt::Key_Down);
    EXPECT_EQ(go("ViewBack"), "frmEditStates 456") << "one has stayed there";
    EXPECT_EQ(go("ViewBack"), "frmEditStates 455");

    ClickRow(Find<QTableView>("lvwStates"), 12);
    show(RecordKind::Weapon, 2);
    EXPECT_EQ(go("ViewBack"), "frmEditStates 12") << "a link leads away from it";
    Editors().Show(static_cast<std::size_t>(RecordKind::Thing), true);
    EXPECT_EQ(go("ViewBack"), "frmEditStates 12") << "another editor is another place";
}

} // namespace
} // namespace plinket3::test
