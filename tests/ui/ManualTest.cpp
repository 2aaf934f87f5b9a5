#include "tests/ui/UiTest.h"
#include "ui/frmManual.h"

#include <QAction>
#include <QImage>
#include <QScrollBar>
#include <QStatusBar>
#include <QTextBlock>

#include <algorithm>

namespace plinket3 {
namespace {

using test::Find;

class ManualTest : public ::testing::Test {
protected:
    ManualTest() { program.programFolder = PLINKET3_PROGRAM_FOLDER; }

    void Open(const char* page) {
        manual.Open(QString::fromLatin1(page));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&manual));
    }
    ManualPage& Page() { return Find<ManualPage>(manual, "manualPage"); }
    void Press(const char* action) { Find<QAction>(manual, action).trigger(); }
    /// The text at the top of the window.
    std::string TopLine() { return Page().cursorForPosition({20, 10}).block().text().toStdString(); }

    test::TemporaryFolder folder;
    test::ExpectingNotifier notifier;
    Program program{notifier};
    WindowState state{folder.Path()};
    frmManual manual{program, state};
};

TEST_F(ManualTest, GoesToHeadingsAndBackToWhereOneWas) {
    Open("oddities.md#numbers");
    EXPECT_EQ(manual.windowTitle(), "Kept oddities - Plinket3 manual");
    EXPECT_EQ(TopLine(), "Numbers");
    Page().verticalScrollBar()->setValue(Page().verticalScrollBar()->value() + 40);
    const std::string left = TopLine();
    Page().setSource(QUrl(QStringLiteral("formats.md#states")));
    EXPECT_EQ(TopLine(), "States");
    Press("back");
    EXPECT_EQ(TopLine(), left);
    Press("contents");
    EXPECT_EQ(TopLine(), "Manual of Plinket3") << "another page begins at its top";
}

TEST_F(ManualTest, PicturesAreNeverWiderThanThePage) {
    Open("things.md");
    const int itself = QImage(QStringLiteral(PLINKET3_PROGRAM_FOLDER "/manual/images/things.png")).width();
    for (const int width : {itself + 200, itself / 2}) {
        manual.resize(width, 600);
        EXPECT_TRUE(QTest::qWaitFor([this, itself, width] {
            const QVariant picture =
                Page().document()->resource(QTextDocument::ImageResource, QUrl(QStringLiteral("images/things.png")));
            const qreal shown = picture.value<QImage>().deviceIndependentSize().width();
            return shown <= Page().viewport()->width() && shown > std::min(itself, width) * 0.8;
        })) << width;
    }
}

TEST_F(ManualTest, FindsAroundTheEndAndSaysWhatIsNotThere) {
    Open("things.md");
    auto& find = Find<QLineEdit>(manual, "txtFind");
    const QString word = QStringLiteral("damage"), text = Page().toPlainText().toLower();
    const auto first = text.indexOf(word), second = text.indexOf(word, first + 1), last = text.lastIndexOf(word);
    ASSERT_GT(second, first);
    const auto at = [this] { return Page().textCursor().selectionStart(); };
    QTest::keyClicks(&find, word);
    EXPECT_EQ(at(), first) << "typing on does not go on";
    QTest::keyClick(&find, Qt::Key_Return);
    EXPECT_EQ(at(), second);
    Press("findPrevious");
    EXPECT_EQ(at(), first);
    Press("findPrevious");
    EXPECT_EQ(at(), last) << "around the top";
    Press("findNext");
    EXPECT_EQ(at(), first) << "around the end";
    QTest::keyClicks(&find, "x");
    EXPECT_EQ(manual.statusBar()->currentMessage(), "\"" + word + "x\" is not on this page");
}

TEST_F(ManualTest, WithoutItsFilesSaysWhereTheyWereLookedFor) {
    program.programFolder = folder / "bare";
    notifier.Expect(MessageKind::Exclamation,
                    "The manual could not be opened: " + (folder / "bare/manual/index.md").string() + " is not there.");
    manual.Open({});
    EXPECT_TRUE(manual.isHidden());
}

} // namespace
} // namespace plinket3
