#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditSounds.h"
#include "ui/editors/frmPropSound.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <QTreeView>

namespace plinket3::test {

namespace {

class frmEditSoundsTest : public EditorTest, public ::testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        LoadEngine(GetParam());
        dialog = std::make_unique<frmPropSound>(Context(), nullptr);
        window = &Open<frmEditSounds>();
        window->PropertyDialog(*dialog);
        window->resize(700, 500);
    }
    QTreeView& List() { return Find<QTreeView>(*window, "lvwSounds"); }
    QLineEdit& Filter() { return Find<QLineEdit>(*window, "txtFilter"); }
    QLineEdit& Priority() { return Find<QLineEdit>(*dialog, "txtPriority"); }
    QString Shown(int row, int column) { return List().model()->index(row, column).data().toString(); }
    void Click(QWidget& in, const char* button) { QTest::mouseClick(&Find<QPushButton>(in, button), Qt::LeftButton); }
    /// Opens the dialog for a row and works in it until it closes.
    void Edit(int row, const std::function<void()>& work) {
        ClickRow(List(), row);
        QTimer::singleShot(0, dialog.get(), work);
        QTest::keyClick(&List(), Qt::Key_Return);
        ASSERT_FALSE(dialog->isVisible());
    }
    void Set(std::int32_t sound, std::int32_t SoundRecord::*member, std::int32_t value) {
        edits.Store({RecordKind::Sound, sound, RowOf(member)}, value);
    }
    std::unique_ptr<frmPropSound> dialog;
    frmEditSounds* window = nullptr;
};
INSTANTIATE_TEST_SUITE_P(Engines, frmEditSoundsTest, ::testing::Values("doom19", "mbf19"));

TEST_P(frmEditSoundsTest, ListsEverySoundInTableOrder) {
    const QAbstractItemModelTester tester(List().model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    ASSERT_EQ(List().model()->rowCount(), static_cast<int>(Current().sounds.size()));
    Set(1, &SoundRecord::zeroOne, 2);
    Set(1, &SoundRecord::offset, -7);
    const SoundRecord& sound = Current().sounds[1];
    const QString expected[]{"1",
                             "pistol",
                             "-7",
                             "No",
                             QString::number(sound.value),
                             QString::number(sound.zero1),
                             QString::number(sound.negOne1),
                             QString::number(sound.negOne2)};
    const char* const headers[]{"#", "Name", "Offset", "Sng", "Pri", "Refer", "Pitch", "Vol"};
    ASSERT_EQ(List().model()->columnCount(), 8);
    for (int column = 0; column < 8; ++column) {
        EXPECT_EQ(Shown(1, column), expected[column]);
        EXPECT_EQ(List().model()->headerData(column, Qt::Horizontal).toString(), headers[column]);
        EXPECT_EQ(List().model()->index(1, column).data(Qt::FontRole).isValid(), column == 2) << column;
    }
    Set(1, &SoundRecord::zeroOne, 1);
    EXPECT_EQ(Shown(1, 3), "Yes");
}

TEST_P(frmEditSoundsTest, TheDialogChangesPriorityAndSingularityInOneStep) {
    const bool singular = Current().sounds[1].zeroOne == 1;
    Edit(1, [&] {
        EXPECT_EQ(dialog->windowTitle(), "Sound 1 (pistol)");
        auto& priority = Find<QSlider>(*dialog, "scrlPriority");
        EXPECT_EQ(priority.value(), Defaults().sounds[1].value);
        priority.setFocus();
        QTest::keyClick(&priority, Qt::Key_Home);
        QTest::keyClick(&priority, Qt::Key_Right);
        EXPECT_EQ(Priority().text(), "1");
        Type(Priority(), "300");
        EXPECT_EQ(Priority().text(), "255");
        Type(Priority(), "12");
        EXPECT_EQ(priority.value(), 12);
        QTest::mouseClick(&Find<QCheckBox>(*dialog, "chkSingularity"), Qt::LeftButton, {}, QPoint(5, 8));
        Click(*dialog, "cmdAccept");
    });
    SoundRecord expected = Defaults().sounds[1];
    expected.value = 12;
    expected.zeroOne = singular ? 0 : 1;
    EXPECT_EQ(Current().sounds[1], expected);
    EXPECT_EQ(Shown(1, 4), "12");
    EXPECT_TRUE(program.patch.changed);
    edits.Undo();
    EXPECT_EQ(Current(), Defaults());
    EXPECT_EQ(Shown(1, 4), QString::number(Defaults().sounds[1].value));
}

TEST_P(frmEditSoundsTest, OfSeveralSoundsOnlyWhatIsChosenChanges) {
    Set(2, &SoundRecord::zeroOne, 2); // neither on nor off
    Set(4, &SoundRecord::value, -1);
    PatchSet expected = Current();
    ClickRow(List(), 1);
    for (const int sound : {2, 4})
        ClickRow(List(), sound, Qt::LeftButton, Qt::ControlModifier);
    const auto edit = [this](const std::function<void()>& work) {
        QTimer::singleShot(0, dialog.get(), [this, work] {
            EXPECT_EQ(dialog->windowTitle(), "3 sounds");
            EXPECT_EQ(Priority().text(), "") << "they differ";
            work();
            Click(*dialog, "cmdAccept");
        });
        Click(*window, "cmdEdit");
    };
    edit([this] {
        auto& singularity = Find<QCheckBox>(*dialog, "chkSingularity");
        EXPECT_EQ(singularity.checkState(), Qt::PartiallyChecked);
        QTest::mouseClick(&singularity, Qt::LeftButton, {}, QPoint(5, 8));
        EXPECT_EQ(singularity.checkState(), Qt::Checked);
    });
    expected.sounds[1].zeroOne = expected.sounds[2].zeroOne = 1;
    EXPECT_EQ(Current(), expected) << "sound 4 has the priority that cancels";
    EXPECT_EQ(edits.UndoName(), "2 sounds");
    edit([this] { Type(Priority(), "9"); });
    for (const std::size_t sound : {1, 2, 4})
        expected.sounds[sound].value = 9;
    EXPECT_EQ(Current(), expected);
    EXPECT_EQ(edits.UndoName(), "3 sounds");
}

TEST_P(frmEditSoundsTest, CancellingTheDialogChangesNothing) {
    const std::function<void()> ways[]{[&] { Click(*dialog, "cmdCancel"); },
                                       [&] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }};
    for (const auto& leave : ways)
        Edit(2, [&] {
            Find<QSlider>(*dialog, "scrlPriority").setValue(9);
            QTest::mouseClick(&Find<QCheckBox>(*dialog, "chkSingularity"), Qt::LeftButton, {}, QPoint(5, 8));
            leave();
        });
    EXPECT_FALSE(program.patch.changed);
    EXPECT_EQ(Current(), Defaults());
}

TEST_P(frmEditSoundsTest, ShowingAValueInTheDialogDoesNotChangeIt) {
    for (const std::int32_t priority : {-5, 300}) {
        Set(3, &SoundRecord::value, priority);
        Set(3, &SoundRecord::zeroOne, 2);
        Edit(3, [&] {
            EXPECT_EQ(Priority().text(), QString::number(priority));
            EXPECT_FALSE(Find<QCheckBox>(*dialog, "chkSingularity").isChecked());
            Click(*dialog, "cmdAccept");
        });
        EXPECT_EQ(Current().sounds[3].value, priority);
        EXPECT_EQ(Current().sounds[3].zeroOne, 2);
    }
}

TEST_P(frmEditSoundsTest, ThePriorityMinusOneMeansCancelled) {
    Set(3, &SoundRecord::value, -1);
    const SoundRecord before = Current().sounds[3];
    Edit(3, [&] {
        QTest::mouseClick(&Find<QCheckBox>(*dialog, "chkSingularity"), Qt::LeftButton, {}, QPoint(5, 8));
        Click(*dialog, "cmdAccept");
    });
    EXPECT_EQ(Current().sounds[3], before);
}

TEST_P(frmEditSoundsTest, TheDialogNamesTheSoundThatIsPlayedInstead) {
    program.engine.offsets.sounds = 1000000;
    program.engine.offsets.dataSegment = 400000;
    const struct {
        std::int32_t address;
        const char* shown;
    } rows[]{{0, "-"},
             {600000 + 36 * 2, "shotgn"},
             {600000 + 36 * 2 + 17, "shotgn"},
             {INT32_MIN, "no sound (address -2147483648)"}};
    for (const auto& row : rows) {
        Set(5, &SoundRecord::zero1, row.address);
        Edit(5, [&] {
            EXPECT_EQ(Find<QLabel>(*dialog, "lblRefSound").text(), row.shown);
            Click(*dialog, "cmdCancel");
        });
    }
}

TEST_P(frmEditSoundsTest, RestoringAsksForOneOrSeveral) {
    for (const std::int32_t sound : {1, 2, 3})
        Set(sound, &SoundRecord::value, 17);
    notifier.Expect("Are you sure you want to restore these sounds?", Answer::Yes);
    Click(*window, "cmdRestore"); // nothing is selected
    EXPECT_EQ(Current().sounds[1].value, 17);
    ClickRow(List(), 1);
    notifier.Expect("Are you sure you want to restore this sound?", Answer::No);
    Click(*window, "cmdRestore");
    EXPECT_EQ(Current().sounds[1].value, 17);
    ClickRow(List(), 2, Qt::LeftButton, Qt::ControlModifier);
    notifier.Expect("Are you sure you want to restore these sounds?", Answer::Yes);
    Click(*window, "cmdRestore");
    EXPECT_EQ(edits.UndoName(), "restore 2 sounds");
    EXPECT_EQ(Current().sounds[1], Defaults().sounds[1]);
    EXPECT_EQ(Current().sounds[2], Defaults().sounds[2]);
    EXPECT_EQ(Current().sounds[3].value, 17);
    edits.Undo();
    EXPECT_EQ(Current().sounds[2].value, 17);
}

TEST_P(frmEditSoundsTest, TheRightButtonPlaysTheSoundUnderIt) {
    Filter().setText("pis");
    ClickRow(List(), 0, Qt::RightButton);
    EXPECT_EQ(links.calls, std::vector<std::string>{"play sound 1"});
    Click(*window, "cmdPlay");
    EXPECT_EQ(links.calls.size(), 2U);
    QTest::mouseClick(List().viewport(), Qt::RightButton, {}, QPoint(20, List().viewport()->height() - 3));
    EXPECT_EQ(links.calls.size(), 2U) << "below the last row";
}

TEST_P(frmEditSoundsTest, TheFilterLeavesTheNumbersOfTheSounds) {
    EXPECT_EQ(window->SelectedRow(), std::nullopt);
    QTest::keyClicks(&Filter(), "SHOTGN");
    ASSERT_EQ(List().model()->rowCount(), 1);
    ClickRow(List(), 0);
    EXPECT_EQ(window->SelectedRow(), 2);
    window->ShowSound(4);
    EXPECT_EQ(window->SelectedRow(), 4);
    EXPECT_EQ(Filter().text(), "") << "it would hide the sound";
    const QRect row = List().visualRect(List().currentIndex());
    EXPECT_TRUE(List().viewport()->rect().contains(row));
    window->ShowSound(100000);
    EXPECT_EQ(window->SelectedRow(), 4);
}

TEST_P(frmEditSoundsTest, RefreshingKeepsTheSelectedRow) {
    window->ShowSound(40);
    window->Refresh();
    EXPECT_EQ(window->SelectedRow(), 40);
    EXPECT_FALSE(program.patch.changed);
}

} // namespace

} // namespace plinket3::test
