#include "tests/support/TestSupport.h"
#include "tests/ui/WindowTest.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QToolButton>
#include <QTreeView>

namespace plinket3::test {
namespace {

constexpr int imp = 11;
constexpr Cell respawn{RecordKind::Thing, imp, RowOf(&ThingRecord::respawnState)};
constexpr Cell firstArgument{RecordKind::State, 1, RowOf(&StateRecord::arg1)};

class ProblemsTest : public WindowTest {
protected:
    bool Counts(const char* counts) {
        return QTest::qWaitFor([&] { return Find<QToolButton>("cmdProblems").text() == QString::fromLatin1(counts); });
    }
    std::string Row(int row) {
        std::string text;
        for (int column = 0; column < 3; ++column)
            text += Find<QTreeView>("lvwProblems").model()->index(row, column).data().toString().toStdString() + "|";
        return text;
    }
};

TEST_F(ProblemsTest, AreCountedAsOneEditsLeadToTheirFieldsAndAreMended) {
    LoadEngine("mbf21", true);
    const std::string patch = "Patch File for DeHackEd v3.0\n\nDoom version = 2021\nPatch format = 6\n\n"
                              "Thing 12 (Imp)\nRespawn frame = 1\nHit points = 61\nNo such field = 1\n";
    ASSERT_TRUE(modPatchFiles::ReadBytes(patch, program.engine, program.patch).status);
    program.patch.fileName = folder / "a.bex";
    program.patch.named = true;
    ShowWindow();

    edits.StoreGroup({{respawn, 30'000}}, "a frame that there is not");
    EXPECT_TRUE(Counts("1 error, 1 warning"));
    edits.StoreGroup({{firstArgument, 7}}, "an argument that nothing takes");
    EXPECT_TRUE(Counts("2 errors, 1 warning"));

    EXPECT_FALSE(Find<QDockWidget>("dockProblems").isVisible());
    Find<QAction>("ViewProblems").trigger();
    auto& list = Find<QTreeView>("lvwProblems");
    EXPECT_EQ(Row(0), "Error|respawn frame of Imp|7|");
    EXPECT_EQ(Row(2), "Warning||9|") << "a line that says nothing";
    ClickRow(list, 2);
    EXPECT_FALSE(Find<QPushButton>("cmdGoToProblem").isEnabled());
    EXPECT_FALSE(Find<QPushButton>("cmdMend").isEnabled());

    ClickRow(list, 0);
    QTest::keyClick(&list, Qt::Key_Return);
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_EQ(window->Editors().Here()->index, imp);
    EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), "txtRespawnStateN");
    QTest::mouseClick(&Find<QPushButton>("cmdMend"), Qt::LeftButton);
    EXPECT_EQ(edits.Value(respawn), CellValue(0));
    EXPECT_TRUE(Counts("1 error, 1 warning"));
    QTest::mouseClick(&Find<QPushButton>("cmdMend"), Qt::LeftButton);
    EXPECT_EQ(edits.Value(firstArgument), CellValue(Unset()));
    EXPECT_TRUE(Counts("0 errors, 1 warning"));
    edits.Undo();
    EXPECT_TRUE(Counts("1 error, 1 warning"));

    ASSERT_TRUE(window->Commands().Save());
    EXPECT_TRUE(QTest::qWaitFor([this] {
        return window->statusBar()->currentMessage() ==
               "Saved, but games refuse it or crash: see the error in Problems";
    })) << window->statusBar()->currentMessage().toStdString();
    EXPECT_NE(ReadFile(folder / "a.bex").find("Args1 = 7"), std::string::npos);
}

} // namespace
} // namespace plinket3::test
