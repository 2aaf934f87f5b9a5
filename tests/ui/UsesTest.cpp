#include "patch/FreeRecords.h"
#include "tests/support/TestSupport.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/WindowTest.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>

namespace plinket3::test {
namespace {

constexpr int imp = 11, impThrowing = 454;

/// The main window over an engine's own patch, without a file.
class UsesTest : public WindowTest {
protected:
    void OpenWindow(const char* engine) {
        LoadEngine(engine);
        ShowWindow();
    }
    void Press(QKeyCombination keys) {
        QTest::keyClick(QApplication::focusWidget(), keys.key(), keys.keyboardModifiers());
    }
    std::string Focus() const { return QApplication::focusWidget()->objectName().toStdString(); }
    /// The record in front and the control that has the focus: "11 txtHitPoints".
    std::string Place() {
        const auto here = window->Editors().Here();
        return here ? std::to_string(here->index) + " " + Focus() : "nowhere";
    }
};

/// What the dock says: its title, its summary, and its rows.
using Said = std::vector<std::string>;

class WhereUsed : public UsesTest {
protected:
    Said Says() {
        QTest::qWait(1); // it fills itself when all else is done
        Said said{Find<QDockWidget>("dockWhereUsed").windowTitle().toStdString(),
                  Find<QLabel>("lblWhereUsed").text().toStdString()};
        const QAbstractItemModel& rows = *List().model();
        for (int row = 0; row < rows.rowCount(); ++row)
            said.push_back(rows.index(row, 0).data().toString().toStdString());
        return said;
    }
    QListView& List() { return Find<QListView>("lvwWhereUsed"); }
    void Enter(int row) {
        ClickRow(List(), row);
        Press(Qt::Key_Return);
    }
};

TEST_F(WhereUsed, FollowsTheEditorsAndEveryEditAndLeadsToTheFields) {
    OpenWindow("mbf21");
    EditorSet& editors = window->Editors();
    EXPECT_FALSE(Find<QDockWidget>("dockWhereUsed").isVisible());
    editors.ShowCell({RecordKind::Thing, imp, RowOf(&ThingRecord::hitPoints)});
    ASSERT_EQ(Place(), "11 txtHitPoints");
    Press(Qt::CTRL | Qt::Key_U);
    EXPECT_EQ(Focus(), "lvwWhereUsed") << "also from a box, which would empty itself";
    EXPECT_EQ(Says()[0], "Where used: Imp");
    EXPECT_EQ(Says()[1], "Used in 3 places. Levels can place it.");

    editors.ShowRecord(RecordKind::State, impThrowing);
    const Said throwing{"Where used: frame 454", "Used in 2 places.", "action: TroopAttack (1 frame)",
                        "frame 453: Next frame", "the game: cast at the end: plays sound claw"};
    EXPECT_EQ(Says(), throwing);
    Enter(0);
    EXPECT_EQ(Says(),
              (Said{"Where used: TroopAttack", "Used in one place.", "back to frame 454", "frame 454: Action"}));
    Enter(0);
    EXPECT_EQ(Says(), throwing);
    DoubleClickRow(List(), 1);
    EXPECT_EQ(Place(), "453 txtNextState");
    EXPECT_EQ(Says()[0], "Where used: frame 453");

    editors.ShowRecord(RecordKind::Thing, 31);
    const Said ball = Says();
    ASSERT_EQ(ball.size(), 5) << "what the game's own code does, and the Imp's action";
    EXPECT_EQ(ball[4], "frame 454 (TroopAttack): launches when out of close range");
    const std::string before = Place();
    Press(Qt::CTRL | Qt::Key_U);
    Enter(0);
    EXPECT_EQ(Says(), ball) << "no field says so: it leads nowhere";
    Enter(2);
    EXPECT_EQ(Place(), "454 cmbActions");

    editors.ShowRecord(RecordKind::State, 1500);
    EXPECT_EQ(Says(), (Said{"Where used: frame 1500", "Nothing uses it. It is free."}));
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::respawnState)}, 1500);
    EXPECT_EQ(Says(), (Said{"Where used: frame 1500", "Used in one place.", "Imp: Respawn frame"}));
    edits.Undo();
    EXPECT_EQ(Says()[1], "Nothing uses it. It is free.");
    ClickRow(Find<QTableView>("lvwStates"), 1501, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(Says(), (Said{"Where used: frame 1501", "Nothing uses it. It is free. Of the 2 that are selected this is "
                                                      "the one that was clicked last."}));

    editors.ShowRecord(RecordKind::Cheat, 3);
    EXPECT_EQ(Says()[0], "Where used") << "nothing refers to cheats";
    EXPECT_EQ(Says().size(), 2);
    Press(Qt::CTRL | Qt::Key_U);
    Press(Qt::CTRL | Qt::Key_U);
    EXPECT_FALSE(Find<QDockWidget>("dockWhereUsed").isVisible()) << "the same keys put it away";
}

class FreeAndKept : public UsesTest {
protected:
    std::vector<std::int32_t> Free(RecordKind kind) const {
        return FindFree(Current(), Defaults(), program.engine, program.fixedUses, kind).Numbers();
    }
    std::int32_t Here() { return window->Editors().Here()->index; }
};

TEST_F(FreeAndKept, OnesAreListedGoneToMarkedAndPassedOver) {
    OpenWindow("dsdhacked");
    EditorSet& editors = window->Editors();
    auto& next = Find<QAction>("EditNextFree");
    auto& keep = Find<QAction>("EditKeep");
    EXPECT_FALSE(next.isEnabled() || keep.isEnabled());
    for (const RecordKind kind : {RecordKind::Thing, RecordKind::Sound, RecordKind::Sprite, RecordKind::State}) {
        editors.ShowRecord(kind, 0);
        const std::vector<std::int32_t> free = Free(kind);
        ASSERT_GT(free.size(), 1);
        Press(Qt::Key_F8);
        EXPECT_EQ(Here(), free[0]);
        Press(Qt::CTRL | Qt::SHIFT | Qt::Key_K);
        EXPECT_TRUE(keep.isChecked());
        EXPECT_EQ(edits.UndoName(), "keep " + edits.RecordName(kind, free[0]));
        Press(Qt::Key_F8);
        EXPECT_FALSE(keep.isChecked()) << "that is another one";
        EXPECT_EQ(Here(), free[1]);
        editors.ShowRecord(kind, free.back());
        Press(Qt::Key_F8);
        EXPECT_EQ(Here(), free[1]) << "the one that is kept is passed over, and behind the last comes the first";
        editors.ShowRecord(kind, free[0]);
        EXPECT_TRUE(keep.isChecked());
        const auto* list = qobject_cast<QAbstractItemView*>(QApplication::focusWidget());
        const QModelIndex name = list->currentIndex().siblingAtColumn(list->model()->columnCount() > 1 ? 1 : 0);
        const auto isMarked = [&name] {
            return !name.data(Qt::DecorationRole).isNull() && name.data(Qt::ToolTipRole).toString().contains("Kept");
        };
        EXPECT_TRUE(isMarked());
        edits.Undo();
        EXPECT_FALSE(isMarked());
        EXPECT_FALSE(keep.isChecked());
        EXPECT_EQ(Current(), Defaults());
    }
    auto& states = Find<QTableView>("lvwStates");
    QTest::mouseClick(&Find<QRadioButton>("optFilterFree"), Qt::LeftButton);
    const std::vector<std::int32_t> free = Free(RecordKind::State);
    ASSERT_EQ(states.model()->rowCount(), static_cast<int>(free.size()));
    EXPECT_EQ(states.model()->index(5, 0).data().toInt(), free[5]);
    const std::string shown = std::to_string(free.size());
    EXPECT_EQ(Find<QLabel>("lblFree").text().toStdString(),
              shown.substr(0, shown.size() - 3) + "," + shown.substr(shown.size() - 3) + " of 4,000 free");
    ClickRow(states, 2);
    ClickRow(states, 4, Qt::LeftButton, Qt::ShiftModifier);
    keep.trigger();
    EXPECT_EQ(edits.UndoName(), "keep 3 frames");
    EXPECT_EQ(Free(RecordKind::State).size(), free.size() - 3);
    keep.trigger();
    EXPECT_EQ(Current(), Defaults()) << "the same takes the marks off";
    QTest::mouseClick(&Find<QRadioButton>("optFilterDisabled"), Qt::LeftButton);
    EXPECT_EQ(Find<QLabel>("lblFree").text(), "");

    edits.Store(patchNotes, "Plinket3 keeps: Frame 4000, 4002");
    EXPECT_EQ(edits.FreeNumber(RecordKind::State), 4001) << "which is what a new one is proposed as";
}

TEST_F(FreeAndKept, WithoutNotesThereIsNothingToKeepThemIn) {
    OpenWindow("boom21");
    window->Editors().ShowRecord(RecordKind::State, 5);
    EXPECT_FALSE(Find<QAction>("EditKeep").isEnabled());
    EXPECT_TRUE(Find<QAction>("EditKeep").toolTip().contains("engine rules"));
    EXPECT_TRUE(Find<QAction>("EditNextFree").isEnabled());
}

class NewStates : public UsesTest {
protected:
    static void Pick(QDialog& dialog, const char* box, const QString& text) {
        auto& list = test::Find<QComboBox>(dialog, box);
        list.setCurrentIndex(list.findText(text));
        EXPECT_EQ(list.currentText(), text);
    }
    /// Types into a cell of the table of frames, as a user does.
    static void Edit(QDialog& dialog, int row, int column, const char* text) {
        auto& table = test::Find<QTableView>(dialog, "tblFrames");
        const QModelIndex cell = table.model()->index(row, column);
        table.scrollTo(cell);
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(cell).center());
        auto* box = dialog.focusWidget()->findChild<QLineEdit*>();
        ASSERT_NE(box, nullptr);
        box->selectAll();
        QTest::keyClicks(box, text);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    }
};

TEST_F(NewStates, AnAttackOfTwelveFramesTakesEightSteps) {
    OpenWindow("mbf21");
    window->Editors().ShowRecord(RecordKind::State, impThrowing);
    const std::int32_t face = *program.engine.CodePointerOf("FaceTarget"),
                       spawn = *program.engine.CodePointerOf("SpawnObject");
    const FreeRecords free = FindFree(Current(), Defaults(), program.engine, program.fixedUses, RecordKind::State);
    {
        const ModalDriver driver("frmNewStates", [](QDialog& dialog) {
            auto& count = test::Find<QSpinBox>(dialog, "txtCount");
            count.setFocus();
            count.selectAll();
            QTest::keyClicks(&count, "12");
            Edit(dialog, 0, 2, "facetarg");
            Edit(dialog, 11, 2, "SpawnObject");
            Pick(dialog, "cmbEnd", "goes on at state");
            Pick(dialog, "cmbThing", "Imp");
            QTest::mouseClick(&test::Find<QPushButton>(dialog, "cmdAccept"), Qt::LeftButton);
        });
        QTest::mouseClick(&Find<QPushButton>("cmdNewStates"), Qt::LeftButton);
    }
    const std::vector<std::int32_t> made = window->Editors().Selected();
    ASSERT_EQ(made.size(), 12) << "they are selected";
    EXPECT_EQ(edits.UndoName(), "12 new frames");
    EXPECT_EQ(Current().things[imp].farAttackState, made.front());
    for (std::size_t i = 0; i < made.size(); ++i) {
        EXPECT_TRUE(free.Has(made[i]));
        const StateRecord& state = Current().states[made[i]];
        EXPECT_EQ(state.sprite, Defaults().states[impThrowing].sprite);
        EXPECT_EQ(state.subnumber, 6 + static_cast<int>(i)) << "the pictures go on from the selected state's";
        EXPECT_EQ(state.codePointer, i < 11 ? face : spawn);
        EXPECT_EQ(state.nextState, i < 11 ? made[i + 1] : Defaults().things[imp].firstMovingState);
    }
    edits.Undo();
    EXPECT_EQ(Current(), Defaults());
}

TEST_F(NewStates, SayWhatTheFirstRowLeadsAndWhenThereAreTooFew) {
    OpenWindow("boom21");
    window->Editors().ShowRecord(RecordKind::State, 1);
    const std::size_t free =
        FindFree(Current(), Defaults(), program.engine, program.fixedUses, RecordKind::State).Count();
    const ModalDriver driver("frmNewStates", [&](QDialog& dialog) {
        Edit(dialog, 1, 1, "9");
        Edit(dialog, 0, 1, "3");
        Edit(dialog, 0, 0, "C");
        const QAbstractItemModel& frames = *test::Find<QTableView>(dialog, "tblFrames").model();
        QStringList shown;
        for (int row = 0; row < frames.rowCount(); ++row)
            shown << frames.index(row, 0).data().toString() + frames.index(row, 1).data().toString();
        EXPECT_EQ(shown, QStringList({"C3", "D9", "E3", "F3"})) << "the second was set apart";
        test::Find<QSpinBox>(dialog, "txtCount").setValue(900);
        EXPECT_EQ(test::Find<QLabel>(dialog, "lblNote").text().toStdString(),
                  "There are " + std::to_string(free) + " free states, 900 are asked for.");
        EXPECT_FALSE(test::Find<QPushButton>(dialog, "cmdAccept").isEnabled());
        dialog.reject();
    });
    QTest::mouseClick(&Find<QPushButton>("cmdNewStates"), Qt::LeftButton);
    EXPECT_FALSE(edits.CanUndo());
}

} // namespace
} // namespace plinket3::test
