#include "patch/Edits.h"
#include "tests/support/TestSupport.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/WindowTest.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTableView>
#include <QTreeView>

namespace plinket3::test {
namespace {

constexpr int imp = 11;

/// The main window over an engine's own patch, without a file.
class FindingTest : public WindowTest {
protected:
    void SetUp() override {
        LoadEngine("id24");
        ShowWindow();
    }

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
};

TEST_F(FindingTest, EveryRecordAndFieldIsShownWhateverFiltersHide) {
    edits.Store({RecordKind::Par, 0, listField}, std::vector<ParRecord>{{0, 1, 30}, {0, 2, 60}});
    const struct {
        Cell cell;
        const char* place;
    } rows[]{
        {{RecordKind::Thing, imp, existsField}, "frmEditThings 11 lstThings"},
        {{RecordKind::Thing, 12, RowOf(&ThingRecord::hitPoints)}, "frmEditThings 12 txtHitPoints"},
        {{RecordKind::Thing, 12, RowOf(&ThingRecord::bits21)}, "frmEditThings 12 trvFlags"},
        {{RecordKind::Thing, imp, pickupMessageField}, "frmEditThings 11 txtPickupMessage"},
        {{RecordKind::State, 443, codePointerField}, "frmEditStates 443 cmbActions"},
        {{RecordKind::State, 0, existsField}, "frmEditStates 0 lvwStates"},
        {{RecordKind::Sound, 5, existsField}, "frmEditSounds 5 lvwSounds"},
        {{RecordKind::String, 7, textField}, "frmEditStrings 7 lvwStrings"},
        {{RecordKind::Weapon, 3, RowOf(&WeaponRecord::ammoType)}, "frmEditWeapons 3 cmbAmmoType"},
        {{RecordKind::Cheat, 4, textField}, "frmEditCheats 4 txtAmmo"},
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

TEST_F(FindingTest, WhatIsTypedIsFoundAndLeadsThereByTheKeyboardAlone) {
    Find<QAction>("EditFind").trigger();
    auto& text = Find<QLineEdit>("txtFind");
    auto& list = Find<QTreeView>("lvwFound");
    const auto rows = [&list](int most) {
        std::string found;
        for (int row = 0; row < std::min(most, list.model()->rowCount()); ++row)
            for (int column : {0, 1})
                found += list.model()->index(row, column).data().toString().toStdString() + (column == 0 ? "|" : "\n");
        return found;
    };
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    Editors().ShowRecord(RecordKind::Weapon, 1);
    QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(text.hasFocus());
    QTest::keyClicks(&text, "troo");
    EXPECT_EQ(rows(4), "Sprites (1)|\n0 TROO|\nStates (35)|\n442 TROOA|Look\n")
        << "also the two that spawn the parts of a Shocktrooper";
    press(Qt::Key_Down);
    EXPECT_TRUE(list.hasFocus());
    press(Qt::Key_Down); // past the heading
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(Place(), "frmEditStates 443 lvwStates");

    QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(text.selectedText(), "troo");
    QTest::keyClicks(&text, "A_FaceTarget");
    EXPECT_EQ(rows(1), "States (58)|\n");
    press(Qt::Key_Down);
    press(Qt::Key_End);
    EXPECT_EQ(list.currentIndex().data().toString(), "50 more...");
    press(Qt::Key_Return);
    EXPECT_EQ(list.model()->rowCount(), 1 + 58);
    EXPECT_EQ(list.currentIndex().row(), 9) << "the first of the rest";
    press(Qt::Key_Escape);
    EXPECT_TRUE(text.hasFocus());
    press(Qt::Key_Escape);
    EXPECT_EQ(Place(), "frmEditStates 443 lvwStates") << "back where one came from";
    EXPECT_FALSE(text.isVisible());

    QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&text, "thing 12");
    press(Qt::Key_Return);
    EXPECT_EQ(Place(), "frmEditThings 11 lstThings");
    Find<QAction>("ViewBack").trigger();
    EXPECT_EQ(Place(), "frmEditStates 443 lvwStates");
    text.setText("no such thing");
    EXPECT_TRUE(Find<QLabel>("lblNothing").isVisible());
    text.setText("Impostor");
    edits.Store({RecordKind::Thing, 20, nameField}, std::string("Impostor"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows(9) == "Things (1)|\n21 Impostor|ID 68\n"; })) << rows(9);
}

TEST_F(FindingTest, TextsAreReplacedOneByOneOrAllInOneStep) {
    Find<QAction>("EditFind").trigger();
    auto& text = Find<QLineEdit>("txtFind");
    auto& list = Find<QTreeView>("lvwFound");
    auto& all = Find<QPushButton>("cmdReplaceAll");
    auto& one = Find<QPushButton>("cmdReplace");
    const auto string = [this](std::int32_t number) -> const std::string& { return Current().strings[number].text; };
    const PatchSet before = Current();
    EXPECT_FALSE(all.isEnabled());
    text.setText(" keycard.");
    Find<QCheckBox>("chkMatchCase").setChecked(true);
    Find<QLineEdit>("txtReplace").setText(" CARD.");
    const auto texts = [&] { return list.model()->rowCount() == 0 ? 0 : list.model()->rowCount() - 1; };
    const int found = texts();
    ASSERT_GT(found, 1);
    ASSERT_TRUE(one.isEnabled());
    QTest::mouseClick(&one, Qt::LeftButton);
    EXPECT_EQ(texts(), found - 1);
    EXPECT_EQ(Find<QLabel>("lblReplaced").text(), "Replaced one place in one text.");
    EXPECT_NE(Current(), before);
    QTest::mouseClick(&all, Qt::LeftButton);
    EXPECT_EQ(texts(), 0);
    edits.Undo();
    edits.Undo();
    EXPECT_EQ(Current(), before) << "each of them was one step";

    text.setText("GOTARM");
    Find<QLineEdit>("txtReplace").setText("armor");
    EXPECT_GT(texts(), 1);
    EXPECT_FALSE(one.isEnabled()) << "keys are no texts";
    text.setText("armor");
    for (int row = 0; row < list.model()->rowCount() && !one.isEnabled(); ++row)
        list.setCurrentIndex(list.model()->index(row, 0));
    const QString first = list.currentIndex().data().toString();
    Find<QLineEdit>("txtReplace").setText("an armor");
    QTest::mouseClick(&one, Qt::LeftButton);
    EXPECT_TRUE(one.isEnabled());
    EXPECT_NE(list.currentIndex().data().toString(), first) << "what was replaced is not the next one";
    edits.Undo();

    text.setText("Picked up the armor.");
    Find<QLineEdit>("txtReplace").setText(" ");
    QTest::mouseClick(&all, Qt::LeftButton);
    EXPECT_EQ(Find<QLabel>("lblReplaced").text().section(':', 0, 1),
              "Nothing was replaced. One text cannot hold that: string 27");
    EXPECT_EQ(string(27), "Picked up the armor.");
}

TEST_F(FindingTest, GoToTakesANumberOrNameOfTheEditorInFront) {
    const struct {
        RecordKind kind;
        const char* prompt;
        const char* typed;
        const char* note;
        std::int32_t record;
    } rows[]{
        {RecordKind::Thing, "Thing number (1 to 250 and 61 more) or name", "12", "12 Imp", imp},
        {RecordKind::Thing, "Thing number (1 to 250 and 61 more) or name", "0", "There is none.", noRecord},
        {RecordKind::State, "State number (0 to 3999 and 465 more), sprite or action", "442", "442 TROOA", 442},
        {RecordKind::String, "String number (0 to 326), key or text", "gotarmor", "27 GOTARMOR", 27},
        {RecordKind::Cheat, "Cheat, by its name or text", "idclip", "No Clipping 2", 6},
        {RecordKind::Misc, "Value, by its name", "max health", "Max Health", 0},
    };
    for (const auto& row : rows) {
        Editors().ShowRecord(row.kind, 1);
        Editors().ShowRecord(row.kind, 0);
        const ModalDriver driver("frmGoTo", [&row](QDialog& dialog) {
            EXPECT_EQ(test::Find<QLineEdit>(dialog, "txtGoTo").accessibleName(), row.prompt);
            QTest::keyClicks(&test::Find<QLineEdit>(dialog, "txtGoTo"), row.typed);
            EXPECT_EQ(test::Find<QLabel>(dialog, "lblNote").text(), row.note);
            const bool found = test::Find<QPushButton>(dialog, "cmdAccept").isEnabled();
            EXPECT_EQ(found, row.record != noRecord);
            QTest::mouseClick(&test::Find<QPushButton>(dialog, found ? "cmdAccept" : "cmdCancel"), Qt::LeftButton);
        });
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window.get(), Qt::Key_G, Qt::ControlModifier);
        const std::optional<Cell> here = Editors().Here();
        ASSERT_TRUE(here);
        EXPECT_EQ(here->kind, row.kind);
        EXPECT_EQ(here->index, row.record == noRecord ? 0 : row.record) << row.typed;
    }
}

} // namespace
} // namespace plinket3::test
