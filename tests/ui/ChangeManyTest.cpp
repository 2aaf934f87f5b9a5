#include "tests/support/TestSupport.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/WindowTest.h"

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTreeView>
#include <QTreeWidget>

namespace plinket3::test {
namespace {

/// The main window over an engine's own patch, without a file.
class ChangeManyTest : public WindowTest {
protected:
    void SetUp() override {
        LoadEngine("mbf21");
        ShowWindow();
    }

    /// Selects this record and those in the `more` rows below it.
    void Select(RecordKind kind, std::int32_t record, int more) {
        window->Editors().ShowRecord(kind, record);
        for (int i = 0; i < more; ++i)
            QTest::keyClick(window->focusWidget(), Qt::Key_Down, Qt::ShiftModifier);
    }
};

constexpr int imp = 11;

TEST_F(ChangeManyTest, AChangeTypedForSeveralThingsWaitsForEnterOrLeaving) {
    const auto things = [this](auto member) {
        std::vector<std::int32_t> values;
        for (int i = imp; i < imp + 3; ++i)
            values.push_back(Current().things[i].*member);
        return values;
    };
    constexpr auto hitPoints = &ThingRecord::hitPoints;
    const auto engines = things(hitPoints); // of imp, demon and spectre
    ASSERT_EQ(engines, (std::vector{60, 150, 150}));
    Select(RecordKind::Thing, imp, 2);
    auto& box = Find<QLineEdit>("txtHitPoints");
    EXPECT_TRUE(box.toolTip().contains("For all 3: *0.5")) << box.toolTip().toStdString();

    Type(box, "*0.");
    EXPECT_EQ(Status(), "Enter multiplies the hit points of 3 things by 0.");
    Type(box, "*0.5");
    EXPECT_EQ(Status(), "Enter multiplies the hit points of 3 things by 0.5.");
    EXPECT_FALSE(edits.CanUndo()) << "nothing is stored while it is being typed";
    edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::mass)}, 7); // the box is shown anew
    EXPECT_EQ(box.text(), "*0.5");
    QTest::keyClick(&box, Qt::Key_Escape);
    EXPECT_EQ(box.text(), "") << "the box is given back";
    EXPECT_EQ(things(hitPoints), engines);

    Type(box, "*0.5");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(things(hitPoints), (std::vector{30, 75, 75}));
    EXPECT_EQ(edits.UndoName(), "hit points of 3 things");
    QTest::keyClicks(&box, "+-5");
    EXPECT_EQ(Status(), "Enter takes 5 from the hit points of 3 things.");
    QTest::keyClick(&box, Qt::Key_Tab);
    EXPECT_EQ(things(hitPoints), (std::vector{25, 70, 70})) << "taken as the box is left";
    edits.Undo();
    edits.Undo();
    EXPECT_EQ(things(hitPoints), engines) << "each was one step";

    Type(box, "/0");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(Status(), "Nothing can be divided by 0.");
    EXPECT_EQ(things(hitPoints), engines);
    Type(box, "*2");
    dialogs.Expect("Save patch file", "");
    QTest::keyClick(&box, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(things(hitPoints), (std::vector{120, 300, 300})) << "what waits is saved, too";
    edits.Undo();
    Type(box, "-12");
    EXPECT_EQ(things(hitPoints), (std::vector{-12, -12, -12})) << "a number is no change";

    auto& range = Find<QLineEdit>("txtMeleeRange"); // a box that refuses what its value cannot be
    Type(range, "*1.5");
    QTest::keyClick(&range, Qt::Key_Enter);
    EXPECT_EQ(things(&ThingRecord::meleeRange), std::vector<std::int32_t>(3, 96 * 65536));
    EXPECT_EQ(range.text(), "96");

    Select(RecordKind::Thing, imp, 0);
    Type(box, "+5");
    EXPECT_EQ(Current().things[imp].hitPoints, 5) << "for a single record everything is as it was";
}

TEST_F(ChangeManyTest, WhatWaitsIsTakenByEveryCommandOfTheWindow) {
    if (!std::filesystem::exists(freedoom))
        GTEST_SKIP() << "the Debian package freedoom is not installed";
    program.settings.AddIwad("Freedoom", freedoom);
    const std::filesystem::path file = folder / "mine.deh";
    WriteFile(file, "Patch File for DeHackEd v3.0\n\nDoom version = 21\nPatch format = 6\n");
    {
        const ModalDriver driver("frmNewFile", AcceptSession("MBF21"));
        window->Commands().openFile(file);
    }
    Activate();
    window->Editors().ShowRecord(RecordKind::Thing, imp);
    auto& save = Find<QAction>("FileSave");
    auto& box = Find<QLineEdit>("txtHitPoints");
    const auto type = [&](const char* text) {
        Select(RecordKind::Thing, imp, 2);
        Type(box, text);
    };
    EXPECT_FALSE(save.isEnabled());
    type("*2");
    EXPECT_TRUE(save.isEnabled()) << "there is something to save";
    QTest::keyClick(&box, Qt::Key_Escape);
    EXPECT_FALSE(save.isEnabled());
    type("*2");
    QTest::keyClick(&box, Qt::Key_S, Qt::ControlModifier);
    EXPECT_NE(ReadFile(file).find("Hit points = 120"), std::string::npos);
    EXPECT_FALSE(save.isEnabled());

    type("*2");
    QTest::keyClick(&box, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(window->Editors().Selected(), std::vector<std::int32_t>{imp});
    EXPECT_EQ(Current().things[imp].hitPoints, 240) << "leaving by the way back takes it";
}

TEST_F(ChangeManyTest, FramesAreChangedTogetherInTheDialog) {
    constexpr int first = 442; // of the imp
    const auto states = [this](auto member) {
        std::vector<std::int32_t> values;
        for (int i = first; i < first + 4; ++i)
            values.push_back(Current().states[i].*member);
        return values;
    };
    Select(RecordKind::State, first, 3);
    auto& duration = Find<QLineEdit>("txtDuration");
    const auto before = Current().states[first].duration;
    Type(duration, "*2");
    QTest::keyClick(&duration, Qt::Key_Return);
    EXPECT_EQ(Current().states[first].duration, 2 * before);

    const auto change = [this](const std::function<void(QDialog&)>& fill) {
        const ModalDriver driver("frmChangeMany", [&fill](QDialog& dialog) {
            fill(dialog);
            QTest::keyClick(&dialog, Qt::Key_Return);
            if (dialog.isVisible())
                dialog.reject();
        });
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window->focusWidget(), Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    };
    const auto choose = [](QDialog& dialog, const char* box, const char* text) {
        auto& combo = test::Find<QComboBox>(dialog, box);
        combo.setFocus();
        QTest::keyClick(&combo, Qt::Key_Home);
        for (int i = 0; i < combo.count() && !combo.currentText().startsWith(text); ++i)
            QTest::keyClick(&combo, Qt::Key_Down);
        EXPECT_TRUE(combo.currentText().startsWith(text)) << combo.currentText().toStdString();
    };
    const auto rows = [](QDialog& dialog) { return test::Find<QTreeWidget>(dialog, "lvwPreview").topLevelItemCount(); };
    const auto count = [](QDialog& dialog) { return test::Find<QLabel>(dialog, "lblCount").text().toStdString(); };

    change([&](QDialog& dialog) {
        EXPECT_EQ(test::Find<QComboBox>(dialog, "cmbField").currentText(), "Duration") << "whose box has the focus";
        choose(dialog, "cmbField", "Sprite sub");
        Type(test::Find<QLineEdit>(dialog, "txtFirst"), "3");
        EXPECT_EQ(rows(dialog), 4);
    });
    EXPECT_EQ(states(&StateRecord::subnumber), (std::vector{3, 4, 5, 6}));
    EXPECT_EQ(edits.UndoName(), "sprite subnumber of 4 frames");

    const int last = Current().states[first + 3].nextState;
    change([&](QDialog& dialog) {
        choose(dialog, "cmbWhat", "Next frame");
        EXPECT_EQ(count(dialog), "1 of 3 values change."); // the others lead on already
    });
    EXPECT_EQ(states(&StateRecord::nextState), (std::vector{first + 1, first + 2, first + 3, last}));

    const std::int32_t sprite = Current().states[first].sprite;
    change([&](QDialog& dialog) {
        choose(dialog, "cmbWhat", "Replace a sprite");
        EXPECT_FALSE(test::Find<QPushButton>(dialog, "cmdAccept").isEnabled());
        Type(test::Find<QLineEdit>(dialog, "txtTo"), "99999");
        EXPECT_EQ(count(dialog), "There is no such record.");
        Type(test::Find<QLineEdit>(dialog, "txtTo"), "5");
        EXPECT_EQ(rows(dialog), 4);
    });
    EXPECT_EQ(states(&StateRecord::sprite), std::vector<std::int32_t>(4, 5));
    edits.Undo();
    EXPECT_EQ(states(&StateRecord::sprite), std::vector<std::int32_t>(4, sprite)) << "one step";
    change([&](QDialog& dialog) {
        choose(dialog, "cmbWhat", "Add");
        Type(test::Find<QLineEdit>(dialog, "txtChange"), "*x");
        EXPECT_EQ(rows(dialog), 0);
    });
}

} // namespace
} // namespace plinket3::test
