#include "patch/Arguments.h"
#include "patch/EngineNames.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/WindowTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableView>
#include <QTreeView>
#include <QTreeWidget>

namespace plinket3::test {
namespace {

constexpr int imp = 11, ball = 31, pistol = 1, chaingun = 3;
constexpr auto control = Qt::ControlModifier;

/// The main window over one engine's own patch after the other, with one clipboard.
class CopyingTest : public WindowTest {
protected:
    void SetUp() override {
        LoadEngine("mbf21");
        ShowWindow();
    }

    QAbstractItemView& Select(RecordKind kind, std::int32_t record, const char* list) {
        window->Editors().ShowRecord(kind, record);
        auto& view = *window->findChild<QAbstractItemView*>(QString::fromLatin1(list));
        view.setFocus();
        return view;
    }
    void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window.get(); }));
        widget.setFocus();
        QTest::keyClick(&widget, key, modifiers);
    }
    static std::string Copied() { return QApplication::clipboard()->text().toStdString(); }
    std::optional<Cell> Here() { return window->Editors().Here(); }
    /// Waits until keys are the dialog's.
    static void AwaitKeys(QDialog& dialog) {
        EXPECT_TRUE(QTest::qWaitFor([&dialog] {
            return QApplication::focusWidget() != nullptr && QApplication::focusWidget()->window() == &dialog;
        }));
    }
    static void Accept(QDialog& dialog) {
        AwaitKeys(dialog);
        QTest::keyClick(&dialog, Qt::Key_Return);
        if (dialog.isVisible())
            dialog.reject();
    }
};

TEST_F(CopyingTest, AMonsterGoesToAnotherPatchByItsKeys) {
    LoadEngine("boom21", true);
    const std::int32_t firstState = Current().things[imp].initialState;
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 70);
    edits.Store({RecordKind::State, firstState, RowOf(&StateRecord::duration)}, 33);
    auto& things = Select(RecordKind::Thing, imp, "lstThings");
    Press(things, Qt::Key_C, control);
    EXPECT_EQ(Status(), "Copied Imp with 33 frames");
    const std::string monster = Copied();
    EXPECT_NE(monster.find("\nThing 12 (Imp)\r\n"), std::string::npos) << monster;

    auto& box = Find<QLineEdit>("txtHitPoints");
    box.setFocus();
    box.selectAll();
    Press(box, Qt::Key_C, control);
    EXPECT_EQ(Copied(), "70") << "a box copies its own text";
    QTest::keyClicks(&box, "1");
    box.selectAll();
    Press(box, Qt::Key_V, control);
    EXPECT_EQ(Copied(), "70");
    const std::string bad[]{"70", "Hello\nworld", std::string("\0\xff", 2)};
    for (const std::string& text : bad) {
        const PatchSet before = Current();
        QApplication::clipboard()->setText(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
        Press(things, Qt::Key_V, control); // a dialog would wait for an answer
        EXPECT_NE(Status().find("text"), std::string::npos) << Status();
        EXPECT_EQ(Current(), before);
    }
    QApplication::clipboard()->setText(QString::fromLatin1(monster.data(), static_cast<qsizetype>(monster.size())));
    {
        const ModalDriver driver("frmPaste", [](QDialog& dialog) {
            EXPECT_EQ(test::Find<QLabel>(dialog, "lblNote").text(),
                      "There are 0 free things, 1 are needed. Paste at the same numbers, or copy fewer records "
                      "(Copy with...).");
            EXPECT_FALSE(test::Find<QPushButton>(dialog, "cmdAccept").isEnabled());
            QTest::mouseClick(&test::Find<QRadioButton>(dialog, "optSame"), Qt::LeftButton, {}, {8, 8});
            EXPECT_FALSE(test::Find<QPushButton>(dialog, "cmdAccept").isEnabled()) << "all of it is there";
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        Press(things, Qt::Key_V, control);
    }

    LoadEngine("mbf21", true);
    std::int32_t to = noRecord;
    {
        const ModalDriver driver("frmPaste", [&](QDialog& dialog) {
            auto& places = test::Find<QTreeWidget>(dialog, "lvwPlaces");
            EXPECT_EQ(places.topLevelItemCount(), 1 + 33 + 1 + 4) << "with the sprite and sounds";
            EXPECT_EQ(places.topLevelItem(0)->text(0), "Imp");
            EXPECT_EQ(places.topLevelItem(0)->text(1), "12");
            to = places.topLevelItem(0)->text(2).toInt() - 1;
            Accept(dialog);
        });
        Press(things, Qt::Key_V, control);
    }
    EXPECT_EQ(edits.UndoName(), "paste Imp");
    EXPECT_EQ(Status(), "Pasted Imp with 33 frames");
    EXPECT_EQ(Here(), (Cell{RecordKind::Thing, to, existsField})) << "it is selected";
    EXPECT_EQ(Current().things[to].hitPoints, 70);
    EXPECT_EQ(Current().states[Current().things[to].initialState].duration, 33);
    EXPECT_NE(Current().things[to].initialState, firstState);
    edits.Undo();
    EXPECT_EQ(Current(), Defaults()) << "in one step";
    {
        const ModalDriver driver("frmPaste", [](QDialog& dialog) {
            QTest::mouseClick(&test::Find<QRadioButton>(dialog, "optSame"), Qt::LeftButton, {}, {8, 8});
            Accept(dialog);
        });
        Press(things, Qt::Key_V, control);
    }
    EXPECT_EQ(Current().things[imp].hitPoints, 70);
    EXPECT_EQ(Current().states[firstState].duration, 33);
}

TEST_F(CopyingTest, ByTheKeptRulesWhatTheirPatchesCannotHoldStaysOut) {
    LoadEngine("mbf21", true);
    const std::int32_t firstState = Current().things[imp].initialState;
    edits.StoreGroup({{{RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)}, 70},
                      {{RecordKind::Thing, imp, RowOf(&ThingRecord::meleeRange)}, 96 * 65536},
                      {{RecordKind::State, firstState, RowOf(&StateRecord::duration)}, 33}},
                     "a monster");
    Press(Select(RecordKind::Thing, imp, "lstThings"), Qt::Key_C, control);
    LoadEngine("boom21");
    const ModalDriver driver("frmPaste", [](QDialog& dialog) {
        QTest::mouseClick(&test::Find<QRadioButton>(dialog, "optSame"), Qt::LeftButton, {}, {8, 8});
        const QString told = test::Find<QPlainTextEdit>(dialog, "txtTold").toPlainText();
        EXPECT_TRUE(told.contains("Melee range")) << told.toStdString();
        Accept(dialog);
    });
    Press(Select(RecordKind::Thing, imp, "lstThings"), Qt::Key_V, control);
    PatchSet expected = Defaults();
    expected.things[imp].hitPoints = 70;
    expected.states[firstState].duration = 33;
    EXPECT_EQ(Current(), expected);
    edits.Undo();
    EXPECT_EQ(Current(), Defaults());
}

TEST_F(CopyingTest, WhatGoesAlongIsChosenInATree) {
    LoadEngine("dsdhacked", true);
    constexpr int throwing = 454;
    edits.StoreGroup(
        {{{RecordKind::State, throwing, codePointerField}, *program.engine.CodePointerOf("MonsterProjectile")},
         {{RecordKind::State, throwing, RowOf(&StateRecord::arg1)}, ball + 1},
         {{RecordKind::Thing, ball, RowOf(&ThingRecord::hitPoints)}, 5}},
        "a ball of its own");
    auto& things = Select(RecordKind::Thing, imp, "lstThings");
    Press(things, Qt::Key_C, control);
    EXPECT_EQ(Status(), "Copied Imp with 1 thing and 38 frames");
    const ModalDriver driver("frmCopyWith", [](QDialog& dialog) {
        auto& tree = test::Find<QTreeWidget>(dialog, "trvCompanions");
        EXPECT_EQ(test::Find<QLabel>(dialog, "lblCount").text(), "Imp with 1 thing and 38 frames");
        const auto row = [&](const char* name) {
            const auto found = tree.findItems(QString::fromLatin1(name), Qt::MatchExactly | Qt::MatchRecursive);
            return found.isEmpty() ? new QTreeWidgetItem(&tree) : found.front();
        };
        QTreeWidgetItem* fireball = row("Imp Fireball");
        EXPECT_EQ(fireball->text(1), "Type of frame 454");
        EXPECT_EQ(row("frame 452")->text(1), "Close attack frame of Imp");
        EXPECT_EQ(row("frame 454")->parent(), row("frame 452")) << "a run stands under its first state";
        tree.setCurrentItem(fireball);
        QTest::keyClick(&tree, Qt::Key_Space);
        EXPECT_EQ(test::Find<QLabel>(dialog, "lblCount").text(), "Imp with 33 frames");
        EXPECT_EQ(row("frame 97")->checkState(0), Qt::Unchecked);
        Accept(dialog);
    });
    Press(things, Qt::Key_C, control | Qt::ShiftModifier);
    EXPECT_EQ(Status(), "Copied Imp with 33 frames");
    EXPECT_EQ(Copied().find("Thing 32"), std::string::npos);
}

TEST_F(CopyingTest, DuplicatesHaveTheirOwnStatesNumbersAndLooks) {
    LoadEngine("dsdhacked", true);
    auto& things = Select(RecordKind::Thing, imp, "lstThings");
    {
        const ModalDriver driver("frmDuplicate", [](QDialog& dialog) {
            AwaitKeys(dialog);
            EXPECT_EQ(test::Find<QLineEdit>(dialog, "txtName").text(), "Imp 2");
            auto& id = test::Find<QSpinBox>(dialog, "txtID");
            EXPECT_EQ(id.value(), 20000) << "a free one is proposed";
            EXPECT_EQ(test::Find<QLabel>(dialog, "lblNote").text(), "This makes thing 151, with 33 frames.");
            for (const char* typed : {"Devil", "3001"}) { // by keys only
                QTest::keyClicks(dialog.focusWidget(), typed);
                QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            }
            EXPECT_TRUE(test::Find<QLabel>(dialog, "lblNote").text().contains("Imp has this ID #, too"));
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab); // its own states
            QTest::keyClicks(dialog.focusWidget(), "dev");
            EXPECT_FALSE(test::Find<QPushButton>(dialog, "cmdAccept").isEnabled()) << "no name of a sprite";
            QTest::keyClicks(dialog.focusWidget(), "l");
            Accept(dialog);
        });
        Press(things, Qt::Key_D, control);
    }
    ASSERT_TRUE(Here());
    const std::int32_t devil = Here()->index;
    EXPECT_EQ(edits.UndoName(), "duplicate Imp");
    EXPECT_EQ(Status(), "Duplicated Imp with 33 frames");
    EXPECT_EQ(devil, 150) << "a blank one";
    EXPECT_EQ(Current().things[devil].name, "Devil");
    EXPECT_EQ(Current().things[devil].id, 3001);
    EXPECT_EQ(Current().SpriteName(Current().states[Current().things[devil].deathState].sprite), "DEVL");
    edits.Undo();
    EXPECT_EQ(Current(), Defaults());
    {
        const ModalDriver driver("frmDuplicate", [](QDialog& dialog) {
            auto& states = test::Find<QCheckBox>(dialog, "chkStates");
            QTest::keyClick(&states, Qt::Key_Space);
            EXPECT_FALSE(test::Find<QLineEdit>(dialog, "txtSprite").isEnabled());
            Accept(dialog);
        });
        Select(RecordKind::Thing, imp, "lstThings");
        QTest::mouseClick(&test::Find<QPushButton>(Find<QWidget>("frmEditThings"), "cmdDuplicate"), Qt::LeftButton);
    }
    EXPECT_EQ(Current().things[Here()->index].initialState, Current().things[imp].initialState);
    EXPECT_EQ(Current().states, Defaults().states);
    edits.Undo();
    {
        const ModalDriver driver("frmDuplicate", [](QDialog& dialog) {
            auto& weapon = test::Find<QComboBox>(dialog, "cmbWeapon");
            weapon.setCurrentIndex(weapon.findData(chaingun));
            Type(test::Find<QLineEdit>(dialog, "txtName"), "Blaster");
            Accept(dialog);
        });
        Press(Select(RecordKind::Weapon, pistol, "lstWeapons"), Qt::Key_D, control);
    }
    EXPECT_EQ(Here(), (Cell{RecordKind::Weapon, chaingun, existsField}));
    EXPECT_EQ(Current().weapons[chaingun].name, "Blaster");
    EXPECT_EQ(Current().weapons[chaingun].ammoType, Current().weapons[pistol].ammoType);
    EXPECT_NE(Current().weapons[chaingun].shootingState, Current().weapons[pistol].shootingState);
    edits.Undo();
    EXPECT_EQ(Current(), Defaults());
    {
        const ModalDriver driver("frmPaste", &Accept);
        auto& states = Select(RecordKind::State, 452, "lvwStates");
        Press(states, Qt::Key_Down, Qt::ShiftModifier);
        Press(states, Qt::Key_D, control);
    }
    EXPECT_EQ(edits.UndoName(), "duplicate 2 frames");
    const std::int32_t first = Here()->index;
    EXPECT_EQ(Current().states[first].nextState, first + 1);
    EXPECT_EQ(Current().states[first + 1].nextState, Current().states[453].nextState) << "which stays where it is";
}

} // namespace
} // namespace plinket3::test
