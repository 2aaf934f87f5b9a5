#include "tests/support/TestSupport.h"
#include "tests/ui/FakeDialogs.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/UiTest.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QListView>
#include <QMdiSubWindow>
#include <QTableView>

namespace plinket3::test {
namespace {

constexpr int imp = 11, impThrowing = 454;

/// The main window over an engine's own patch, without a file.
class UsesTest : public EditorTest {
protected:
    void OpenWindow(const char* engine) {
        UseFolder(program, folder.Path());
        LoadEngine(engine);
        program.fixedUses = LoadFixedUses(program.programFolder, program.engine);
        window = std::make_unique<frmMain>(program, edits, audio, dialogs);
        for (const EditorEntry& entry : editorEntries)
            window->Load(entry.window);
        window->SetEditBar(true);
        window->resize(1200, 900);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    template <class Widget> Widget& Find(const char* name) { return test::Find<Widget>(*window, name); }
    void Press(QKeyCombination keys) {
        QTest::keyClick(QApplication::focusWidget(), keys.key(), keys.keyboardModifiers());
    }
    std::string Focus() const { return QApplication::focusWidget()->objectName().toStdString(); }
    /// The record in front and the control that has the focus: "11 txtHitPoints".
    std::string Place() {
        const auto here = window->Editors().Here();
        return here ? std::to_string(here->index) + " " + Focus() : "nowhere";
    }

    TemporaryFolder folder;
    Audio audio;
    FakeDialogs dialogs;
    std::unique_ptr<frmMain> window;
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

} // namespace
} // namespace plinket3::test
