#include "core/Files.h"
#include "patch/modPatchText.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/UiTest.h"
#include "ui/FileDialogs.h"
#include "ui/fields/SpriteView.h"
#include "ui/pickers/frmSelectAction.h"
#include "ui/pickers/frmSelectSprite.h"
#include "ui/pickers/frmSelectState.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QTableView>
#include <QTimer>

#include <functional>

namespace plinket3::test {

namespace {

constexpr std::int32_t walking = 450;

class SelectDialogsTest : public EditorTest {
protected:
    void SetUp() override { LoadEngine("doom19"); }
    /// Opens the dialog and lets `act` loose on it; what `act` leaves open is cancelled.
    template <class Dialog, class Start> auto Choose(Dialog& dialog, Start start, const std::function<void()>& act) {
        QTimer::singleShot(0, &dialog, [&dialog, act] {
            act();
            if (dialog.isVisible())
                dialog.reject();
        });
        return dialog.Choose(start);
    }
    static void Accept(QDialog& dialog) { QTest::mouseClick(&Find<QPushButton>(dialog, "cmdAccept"), Qt::LeftButton); }
};

TEST_F(SelectDialogsTest, ASpriteStartsAtTheGivenFrameAndKeepsItsLitBit) {
    frmSelectSprite dialog(program, nullptr);
    auto& list = Find<QListView>(dialog, "lstSprites");
    const QAbstractItemModelTester tester(list.model());
    auto& frame = Find<QLineEdit>(dialog, "txtFrame");
    auto chosen = Choose(dialog, EditorLinks::SpriteChoice{28, 3 | litBit}, [&] {
        EXPECT_EQ(list.model()->rowCount(), static_cast<int>(Current().sprites.size()));
        EXPECT_EQ(list.currentIndex().data().toString().toStdString(), Current().SpriteName(28));
        EXPECT_EQ(frame.text(), "3");
        Accept(dialog);
    });
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->sprite, 28);
    EXPECT_EQ(chosen->frame, 3 | litBit);

    chosen = Choose(dialog, EditorLinks::SpriteChoice{28, 3}, [&] {
        ClickRow(list, 5);
        EXPECT_EQ(frame.text(), "0") << "another sprite starts with its first frame";
        QTest::keyClick(&frame, Qt::Key_Up);
        DoubleClickRow(list, 6);
    });
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->sprite, 6);
    EXPECT_EQ(chosen->frame, 0);

    EXPECT_FALSE(Choose(dialog, EditorLinks::SpriteChoice{28, 3}, [&] {
        ClickRow(list, 5);
        QTest::mouseClick(&Find<QPushButton>(dialog, "cmdCancel"), Qt::LeftButton);
    }));
    EXPECT_FALSE(Choose(dialog, EditorLinks::SpriteChoice{28, 3}, [&] { QTest::keyClick(&dialog, Qt::Key_Escape); }));
}

TEST_F(SelectDialogsTest, FramesAreLimitedInBothForms) {
    frmSelectSprite dialog(program, nullptr);
    auto& frame = Find<QLineEdit>(dialog, "txtFrame");
    const struct {
        int letters;
        std::int32_t start;
        const char* typed; // "+" and "-" stand for a step
        const char* shown;
        std::int32_t chosen;
    } cases[]{
        {0, 4, "12", "12", 12}, {0, 4, "40", "31", 31}, {0, 4, "-", "3", 3},  {0, 31, "+", "31", 31},
        {0, 0, "-", "0", 0},    {1, 4, "z", "Z", 25},   {1, 4, "~", "`", 31}, {1, 4, "3", "A", 0},
        {1, 4, "+", "F", 5},    {1, 31, "+", "`", 31},  {1, 0, "-", "A", 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.typed);
        program.settings.Number("frameCharacter", row.letters);
        const auto chosen = Choose(dialog, EditorLinks::SpriteChoice{0, row.start}, [&] {
            if (*row.typed == '+' || *row.typed == '-')
                QTest::keyClick(&Find<QWidget>(dialog, "udFrame"), *row.typed == '+' ? Qt::Key_Up : Qt::Key_Down);
            else
                Type(frame, row.typed);
            EXPECT_EQ(frame.text(), row.shown);
            Accept(dialog);
        });
        ASSERT_TRUE(chosen);
        EXPECT_EQ(chosen->frame, row.chosen);
    }
}

TEST_F(SelectDialogsTest, APictureThatTheWadsDoNotHaveIsADash) {
    if (!HasWad())
        GTEST_SKIP() << "no IWAD is installed";
    frmSelectSprite dialog(program, nullptr);
    Choose(dialog, EditorLinks::SpriteChoice{0, 0}, [&] {
        EXPECT_EQ(Find<QLabel>(dialog, "lblPreview").text(), "TROOA1");
        EXPECT_FALSE(dialog.findChild<SpriteView*>()->Picture().isNull());
        Type(Find<QLineEdit>(dialog, "txtFrame"), "31");
        EXPECT_EQ(Find<QLabel>(dialog, "lblPreview").text(), "-");
        EXPECT_TRUE(dialog.findChild<SpriteView*>()->Picture().isNull());
    });
}

TEST_F(SelectDialogsTest, TheStateDialogShowsEveryStateAsItIsNow) {
    frmSelectState dialog(program, edits, nullptr);
    auto& list = Find<QTableView>(dialog, "lvwSelectStates");
    const QAbstractItemModelTester tester(list.model());
    const auto first = Choose(dialog, walking, [&] {
        EXPECT_EQ(list.model()->rowCount(), static_cast<int>(Current().states.size()));
        EXPECT_EQ(list.currentIndex().row(), walking);
        EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.currentIndex()).center()));
        int told = 0;
        QObject::connect(list.model(), &QAbstractItemModel::dataChanged, &list, [&told] { ++told; });
        edits.Store({RecordKind::State, walking, RowOf(&StateRecord::duration)}, 77);
        EXPECT_EQ(told, 1) << "the row is drawn anew";
        ClickRow(list, 12);
        Accept(dialog);
    });
    EXPECT_EQ(first, 12);
    EXPECT_EQ(Choose(dialog, 12, [&] { DoubleClickRow(list, 14); }), 14);
    EXPECT_EQ(Choose(dialog, walking, [&] { QTest::keyClick(&dialog, Qt::Key_Escape); }), std::nullopt);
    EXPECT_EQ(Choose(dialog, walking,
                     [&] {
                         Type(Find<QLineEdit>(dialog, "txtFilter"), "troopattack");
                         EXPECT_EQ(list.model()->rowCount(), 1);
                         QTest::keyClick(&Find<QLineEdit>(dialog, "txtFilter"), Qt::Key_Return);
                     }),
              454);
    Choose(dialog, walking, [&] {
        Type(Find<QLineEdit>(dialog, "txtFilter"), "nosuch");
        EXPECT_FALSE(Find<QPushButton>(dialog, "cmdAccept").isEnabled()) << "nothing to accept";
    });
}

TEST_F(SelectDialogsTest, TheActionDialogSaysWhatAnActionDoes) {
    program.engine.actions[3].description = "First line.\\nSecond line.";
    frmSelectAction dialog(program, nullptr);
    auto& list = Find<QListView>(dialog, "lstActions");
    const QAbstractItemModelTester tester(list.model());
    const auto& actions = program.engine.actions;
    auto chosen = Choose(dialog, actions[20].value, [&] {
        EXPECT_EQ(list.model()->rowCount(), static_cast<int>(actions.size()));
        EXPECT_EQ(list.currentIndex().row(), 20);
        EXPECT_EQ(Find<QLabel>(dialog, "lblActionName").text().toStdString(), actions[20].mnemonic);
        ClickRow(list, 3);
        EXPECT_EQ(Find<QLabel>(dialog, "lblActionName").text().toStdString(), actions[3].mnemonic);
        EXPECT_EQ(Find<QLabel>(dialog, "lblDescription").text(), "First line.\nSecond line.");
        Accept(dialog);
    });
    EXPECT_EQ(chosen, actions[3].value);
    EXPECT_EQ(Choose(dialog, actions[3].value, [&] { DoubleClickRow(list, 5); }), actions[5].value);
    EXPECT_EQ(Choose(dialog, actions[3].value, [] {}), std::nullopt);
    chosen = Choose(dialog, actions[4].value, [&] {
        auto& filter = Find<QLineEdit>(dialog, "txtFilter");
        Type(filter, "second LINE");
        EXPECT_EQ(list.model()->rowCount(), 1) << "descriptions are searched, too";
        QTest::keyClick(&filter, Qt::Key_Down);
        EXPECT_TRUE(list.hasFocus());
        QTest::keyClick(&list, Qt::Key_Return);
    });
    EXPECT_EQ(chosen, actions[3].value);
    chosen = Choose(dialog, actions[3].value, [&] {
        Type(Find<QLineEdit>(dialog, "txtFilter"), "troopatt");
        Accept(dialog);
    });
    EXPECT_EQ(chosen, program.engine.CodePointerOf("TroopAttack"));
}

TEST_F(SelectDialogsTest, AnotherEngineFillsTheListsAnew) {
    frmSelectAction dialog(program, nullptr);
    Choose(dialog, 0, [] {});
    LoadEngine("mbf19");
    dialog.Refresh();
    Choose(dialog, 0, [&] {
        EXPECT_EQ(Find<QListView>(dialog, "lstActions").model()->rowCount(),
                  static_cast<int>(program.engine.actions.size()));
    });
}

TEST(AskText, TakesAsANameOnlyWhatAPatchCanHold) {
    Settings settings;
    ExpectingNotifier notifier;
    QtFileDialogs dialogs(settings, notifier);
    const QString prompt = "Enter a new name";
    struct {
        FileDialogs::Characters characters;
        QString typed, taken, told;
    } const cases[]{
        {FileDialogs::Characters::OfNames, u"D\u00e9j\u20ac\u00e0"_qs, u"D\u00e9j\u00e0"_qs,
         u"\"\u20ac\" cannot be stored"_qs},
        {FileDialogs::Characters::OfNames, u"Imp (fast)=2"_qs, u"Imp (fast2"_qs, u"cannot hold \"=\""_qs},
        {FileDialogs::Characters::Any, u"(\u20ac=)"_qs, u"(\u20ac=)"_qs, {}},
    };
    for (const auto& row : cases) {
        const ModalDriver driver("askText", [&](QDialog& dialog) {
            auto& box = *dialog.findChild<QLineEdit*>();
            const auto& label = *dialog.findChild<QLabel*>();
            QStringList told;
            for (const QChar character : row.typed) {
                QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, character, Qt::NoModifier);
                if (label.text() != prompt)
                    told << label.text();
            }
            EXPECT_EQ(told.isEmpty(), row.told.isEmpty());
            EXPECT_TRUE(told.isEmpty() || told.last().contains(row.told)) << told.join('\n').toStdString();
            EXPECT_EQ(label.text(), prompt) << "the reason goes when something else is typed";
            dialog.accept();
        });
        EXPECT_EQ(dialogs.AskText("Thing 1", prompt, {}, row.characters), row.taken);
    }
}

} // namespace

} // namespace plinket3::test
