#include "core/Files.h"
#include "patch/modPatchText.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/UiTest.h"
#include "ui/FileDialogs.h"
#include "ui/fields/SpriteView.h"
#include "ui/pickers/frmSelectAction.h"
#include "ui/pickers/frmSelectRecord.h"
#include "ui/pickers/frmSelectSprite.h"
#include "ui/pickers/frmSelectState.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QTableView>
#include <QTimer>

#include <algorithm>
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
    frmSelectSprite dialog(program, links.thumbnails, nullptr);
    auto& list = Find<QListView>(dialog, "lstSprites");
    const QAbstractItemModelTester tester(list.model());
    auto& frame = Find<QLineEdit>(dialog, "txtFrame");
    const EditorLinks::SpriteChoice start{28, 3 | litBit};
    auto chosen = Choose(dialog, start, [&] {
        EXPECT_EQ(list.currentIndex().data().toString().toStdString(), Current().SpriteName(28));
        EXPECT_EQ(frame.text(), "3");
        Accept(dialog);
    });
    ASSERT_TRUE(chosen);
    EXPECT_EQ(std::pair(chosen->sprite, chosen->frame), std::pair(28, 3 | litBit));
    chosen = Choose(dialog, start, [&] {
        ClickRow(list, 0);
        EXPECT_EQ(frame.text(), "0") << "another sprite starts with its first frame";
        EXPECT_NE(dialog.findChild<SpriteView*>()->Picture().isNull(), HasWad());
        Type(frame, "31");
        EXPECT_EQ(Find<QLabel>(dialog, "lblPreview").text(), "-") << "no WAD has this picture";
        DoubleClickRow(list, 6);
    });
    ASSERT_TRUE(chosen);
    EXPECT_EQ(std::pair(chosen->sprite, chosen->frame & ~litBit), std::pair(6, 0));
    EXPECT_FALSE(Choose(dialog, start, [&] { QTest::keyClick(&dialog, Qt::Key_Escape); }));
}

TEST_F(SelectDialogsTest, FramesAreLimitedInBothForms) {
    frmSelectSprite dialog(program, links.thumbnails, nullptr);
    const struct {
        int letters;
        std::int32_t start;
        const char* typed; // "+" and "-" stand for a step
        std::int32_t chosen;
    } cases[]{{0, 4, "40", 31}, {0, 4, "-", 3},  {0, 31, "+", 31}, {0, 0, "-", 0},
              {1, 4, "z", 25},  {1, 4, "~", 31}, {1, 4, "3", 0},   {1, 4, "+", 5}};
    for (const auto& row : cases) {
        program.settings.Number("frameCharacter", row.letters);
        const auto chosen = Choose(dialog, EditorLinks::SpriteChoice{0, row.start}, [&] {
            if (*row.typed == '+' || *row.typed == '-')
                QTest::keyClick(&Find<QWidget>(dialog, "udFrame"), *row.typed == '+' ? Qt::Key_Up : Qt::Key_Down);
            else
                Type(Find<QLineEdit>(dialog, "txtFrame"), row.typed);
            Accept(dialog);
        });
        EXPECT_EQ(chosen->frame, row.chosen) << row.typed;
    }
}

TEST_F(SelectDialogsTest, TheStateDialogShowsEveryStateAsItIsNow) {
    frmSelectState dialog(program, edits, links.thumbnails, nullptr);
    auto& list = Find<QTableView>(dialog, "lvwSelectStates");
    auto& filter = Find<QLineEdit>(dialog, "txtFilter");
    const QAbstractItemModelTester tester(list.model());
    const auto clicked = Choose(dialog, walking, [&] {
        EXPECT_EQ(list.model()->rowCount(), static_cast<int>(Current().states.size()));
        EXPECT_EQ(list.currentIndex().row(), walking);
        EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.currentIndex()).center()));
        int told = 0;
        QObject::connect(list.model(), &QAbstractItemModel::dataChanged, &list, [&told] { ++told; });
        edits.Store({RecordKind::State, walking, RowOf(&StateRecord::duration)}, 77);
        EXPECT_EQ(told, 1) << "the row is drawn anew";
        DoubleClickRow(list, 14);
    });
    EXPECT_EQ(clicked, 14);
    const auto found = Choose(dialog, walking, [&] {
        Type(filter, "nosuch");
        EXPECT_FALSE(Find<QPushButton>(dialog, "cmdAccept").isEnabled()) << "nothing to accept";
        Type(filter, "troopattack");
        EXPECT_EQ(list.model()->rowCount(), 1);
        QTest::keyClick(&filter, Qt::Key_Return);
    });
    EXPECT_EQ(found, 454);
}

TEST_F(SelectDialogsTest, TheActionDialogSaysWhatAnActionDoes) {
    frmSelectAction dialog(program, nullptr);
    auto& list = Find<QListView>(dialog, "lstActions");
    const QAbstractItemModelTester tester(list.model());
    Choose(dialog, 0, [] {});
    LoadEngine("mbf19"); // another engine fills the list anew
    dialog.Refresh();
    program.engine.actions[3].description = "First line.\\nSecond line.";
    const auto& actions = program.engine.actions;
    const auto clicked = Choose(dialog, actions[20].value, [&] {
        EXPECT_EQ(list.model()->rowCount(), static_cast<int>(actions.size()));
        EXPECT_EQ(list.currentIndex().row(), 20);
        ClickRow(list, 3);
        EXPECT_EQ(Find<QLabel>(dialog, "lblActionName").text().toStdString(), actions[3].mnemonic);
        EXPECT_EQ(Find<QLabel>(dialog, "lblDescription").text(), "First line.\nSecond line.");
        Accept(dialog);
    });
    EXPECT_EQ(clicked, actions[3].value);
    const auto found = Choose(dialog, actions[4].value, [&] {
        auto& filter = Find<QLineEdit>(dialog, "txtFilter");
        Type(filter, "second LINE");
        EXPECT_EQ(list.model()->rowCount(), 1) << "descriptions are searched, too";
        QTest::keyClick(&filter, Qt::Key_Down);
        EXPECT_TRUE(list.hasFocus());
        QTest::keyClick(&list, Qt::Key_Return);
    });
    EXPECT_EQ(found, actions[3].value);
    EXPECT_EQ(Choose(dialog, actions[3].value, [] {}), std::nullopt);
}

TEST_F(SelectDialogsTest, ThingsSoundsAndStringsAreListedByNumberNameOrKey) {
    LoadEngine("mbf21");
    const auto& strings = program.engine.strings;
    const auto gotArmor = std::ranges::find_if(strings, [](const auto& each) { return each.mnemonic == "GOTARMOR"; });
    const struct {
        RecordKind kind;
        int start;
        const char *shown, *typed;
        int chosen;
    } cases[]{{RecordKind::Thing, 11, "12  Imp", "imp fire", 31},
              {RecordKind::Thing, 100000, "", "12  imp", 11},
              {RecordKind::Sound, 1, "1  pistol", "shotgn", 2},
              {RecordKind::String, 0, "D_DEVSTR  Development mode ON.", "GOTARMOR",
               static_cast<int>(gotArmor - strings.begin())}};
    for (const auto& row : cases) {
        frmSelectRecord picker(program, row.kind, links.thumbnails, nullptr);
        const auto chosen = Choose(picker, row.start, [&] {
            EXPECT_EQ(Find<QListView>(picker, "lstRecords").currentIndex().data().toString(), row.shown);
            QTest::keyClicks(&Find<QLineEdit>(picker, "txtFilter"), row.typed);
            Accept(picker);
        });
        EXPECT_EQ(chosen, row.chosen) << row.typed;
    }
}

TEST(AskText, TakesAsANameOnlyWhatAPatchCanHold) {
    Settings settings;
    ExpectingNotifier notifier;
    QtFileDialogs dialogs(settings, notifier);
    const QString prompt = "Enter a new name";
    const struct {
        FileDialogs::Characters characters;
        QString typed, taken, told;
    } cases[]{{FileDialogs::Characters::OfNames, u"D\u00e9j\u20ac\u00e0"_qs, u"D\u00e9j\u00e0"_qs,
               u"\"\u20ac\" cannot be"_qs},
              {FileDialogs::Characters::OfNames, u"Imp (fast)=2"_qs, u"Imp (fast2"_qs, u"cannot hold \"=\""_qs},
              {FileDialogs::Characters::Any, u"(\u20ac=)"_qs, u"(\u20ac=)"_qs, prompt}};
    for (const auto& row : cases) {
        const ModalDriver driver("askText", [&](QDialog& dialog) {
            const auto& label = *dialog.findChild<QLabel*>();
            QString told = prompt;
            for (const QChar character : row.typed) {
                QTest::sendKeyEvent(QTest::Click, dialog.findChild<QLineEdit*>(), Qt::Key_unknown, character,
                                    Qt::NoModifier);
                told = label.text() != prompt ? label.text() : told;
            }
            EXPECT_TRUE(told.contains(row.told)) << told.toStdString();
            EXPECT_EQ(label.text(), prompt) << "the reason goes when something else is typed";
            dialog.accept();
        });
        EXPECT_EQ(dialogs.AskText("Thing 1", prompt, {}, row.characters), row.taken);
    }
}

} // namespace

} // namespace plinket3::test
