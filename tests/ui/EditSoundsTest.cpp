#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditSounds.h"
#include "ui/editors/frmPropSound.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <QTreeView>

namespace plinket3::test {

namespace {

class frmEditSoundsTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("doom19");
        dialog = std::make_unique<frmPropSound>(Context(), nullptr);
        window = &Open<frmEditSounds>();
        window->PropertyDialog(*dialog);
        window->resize(700, 500);
    }
    QTreeView& List() { return Find<QTreeView>(*window, "lvwSounds"); }
    QLineEdit& Filter() { return Find<QLineEdit>(*window, "txtFilter"); }
    QString Shown(int row, int column) { return List().model()->index(row, column).data().toString(); }
    void Click(QWidget& in, const char* button) { QTest::mouseClick(&Find<QPushButton>(in, button), Qt::LeftButton); }
    /// Opens the dialog for a row and works in it until it closes.
    void Edit(int row, const std::function<void()>& work) {
        ClickRow(List(), row);
        QTimer::singleShot(0, dialog.get(), work);
        QTest::keyClick(&List(), Qt::Key_Return);
        ASSERT_FALSE(dialog->isVisible());
    }
    QLineEdit& Priority() { return Find<QLineEdit>(*dialog, "txtPriority"); }
    void ClickSingularity() {
        QTest::mouseClick(&Find<QCheckBox>(*dialog, "chkSingularity"), Qt::LeftButton, {}, QPoint(5, 8));
    }
    void Set(std::int32_t sound, std::int32_t SoundRecord::*member, std::int32_t value) {
        edits.Store({RecordKind::Sound, sound, RowOf(member)}, value);
    }
    std::unique_ptr<frmPropSound> dialog;
    frmEditSounds* window = nullptr;
};

TEST_F(frmEditSoundsTest, ListsEverySoundAndMarksWhatIsNotTheEngines) {
    ASSERT_EQ(List().model()->rowCount(), static_cast<int>(Current().sounds.size()));
    const SoundRecord& sound = Current().sounds[1];
    edits.StoreGroup({{{RecordKind::Sound, 1, RowOf(&SoundRecord::zeroOne)}, 1},
                      {{RecordKind::Sound, 1, RowOf(&SoundRecord::offset)}, -7},
                      {{RecordKind::Sound, 1, RowOf(&SoundRecord::zero1)}, 5},
                      {{RecordKind::Sound, 1, RowOf(&SoundRecord::negOne2)}, 6}},
                     "");
    const QStringList expected{"1", "pistol", "-7", "Yes", QString::number(sound.value), "5", "-1", "6"};
    const QStringList headers{"#", "Name", "Offset", "Sng", "Pri", "Refer", "Pitch", "Vol"};
    ASSERT_EQ(List().model()->columnCount(), expected.size());
    for (int column = 0; column < expected.size(); ++column) {
        EXPECT_EQ(Shown(1, column), expected[column]);
        EXPECT_EQ(List().model()->headerData(column, Qt::Horizontal).toString(), headers[column]);
        EXPECT_EQ(List().model()->index(1, column).data(Qt::FontRole).isValid(),
                  column == 2 || column == 5 || column == 7 || (column == 3 && Defaults().sounds[1].zeroOne != 1))
            << column;
    }
    Set(1, &SoundRecord::zeroOne, 2);
    EXPECT_EQ(Shown(1, 3), "No");
}

TEST_F(frmEditSoundsTest, TheDialogChangesPriorityAndSingularityInOneStep) {
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
        ClickSingularity();
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

TEST_F(frmEditSoundsTest, OfSeveralSoundsOnlyWhatIsChosenChanges) {
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
        ClickSingularity();
        EXPECT_EQ(singularity.checkState(), Qt::Checked);
    });
    expected.sounds[1].zeroOne = expected.sounds[2].zeroOne = 1;
    EXPECT_EQ(Current(), expected) << "sound 4 has the priority that cancels";
    EXPECT_EQ(edits.UndoName(), "2 sounds");
    edit([this] { Type(Priority(), "9"); });
    for (const std::size_t sound : {1U, 2U, 4U})
        expected.sounds[sound].value = 9;
    EXPECT_EQ(Current(), expected);
    EXPECT_EQ(edits.UndoName(), "3 sounds");
}

TEST_F(frmEditSoundsTest, TheDialogStoresOnlyWhatIsEditedAndAccepted) {
    const struct {
        std::int32_t priority;
        bool edited;
        std::function<void()> leave;
    } rows[]{{9, true, [this] { Click(*dialog, "cmdCancel"); }},
             {9, true, [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }},
             {-5, false, [this] { Click(*dialog, "cmdAccept"); }}, // not what the slider can show
             {300, false, [this] { Click(*dialog, "cmdAccept"); }},
             {-1, true, [this] { Click(*dialog, "cmdAccept"); }}}; // Kept: it means that the dialog was cancelled
    for (const auto& row : rows) {
        Set(3, &SoundRecord::value, row.priority);
        Set(3, &SoundRecord::zeroOne, 2);
        const SoundRecord before = Current().sounds[3];
        Edit(3, [&] {
            EXPECT_EQ(Priority().text(), QString::number(row.priority));
            if (row.edited)
                ClickSingularity();
            row.leave();
        });
        EXPECT_EQ(Current().sounds[3], before) << row.priority;
    }
}

TEST_F(frmEditSoundsTest, TheDialogNamesTheSoundThatIsPlayedInstead) {
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

TEST_F(frmEditSoundsTest, TheFilterLeavesTheNumbersOfTheSounds) {
    EXPECT_EQ(window->SelectedRow(), std::nullopt);
    QTest::keyClicks(&Filter(), "SHOTGN");
    ASSERT_EQ(List().model()->rowCount(), 1);
    ClickRow(List(), 0, Qt::RightButton);
    Click(*window, "cmdPlay");
    QTest::mouseClick(List().viewport(), Qt::RightButton, {}, QPoint(20, List().viewport()->height() - 3));
    EXPECT_EQ(links.calls, (std::vector<std::string>{"play sound 2", "play sound 2"})) << "none below the last row";
    ClickRow(List(), 0);
    EXPECT_EQ(window->SelectedRow(), 2);
    window->ShowCell({RecordKind::Sound, 40, existsField});
    EXPECT_EQ(window->SelectedRow(), 40);
    EXPECT_EQ(Filter().text(), "") << "it would hide the sound";
    EXPECT_TRUE(List().viewport()->rect().contains(List().visualRect(List().currentIndex())));
    window->ShowCell({RecordKind::Sound, 100000, existsField});
    window->Refresh();
    EXPECT_EQ(window->SelectedRow(), 40);
}

} // namespace

} // namespace plinket3::test
