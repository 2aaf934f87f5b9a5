#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditThings.h"
#include "ui/fields/SpriteImage.h"
#include "ui/fields/SpriteView.h"
#include "ui/pickers/frmSelectRecord.h"
#include "ui/pickers/frmSelectSprite.h"
#include "ui/pickers/frmSelectState.h"
#include "ui/states/StateColumns.h"

#include <QApplication>
#include <QHeaderView>
#include <QListView>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>
#include <QTreeView>

#include <cmath>

namespace plinket3::test {
namespace {

constexpr std::int32_t imp = 11, cyberdemon = 21;

class ThumbnailsTest : public EditorTest {
protected:
    void SetUp() override {
        LoadEngine("doom19");
        if (!HasWad())
            GTEST_SKIP() << "no IWAD is installed";
    }
    Thumbnails& Small() { return links.thumbnails; }
    /// A row of a list as it is drawn now, but for what tells that it is selected.
    static QImage Drawn(QAbstractItemView& view, const QModelIndex& index) {
        view.scrollTo(index);
        view.selectionModel()->clear();
        return view.viewport()->grab(view.visualRect(index)).toImage();
    }
    static QTableView& StateList(QWidget& window) { return Find<QTableView>(window, "lvwStates"); }
    static bool HasPictures(QWidget& window) {
        return !StateList(window).isColumnHidden(static_cast<int>(StateColumn::Picture));
    }
};

TEST_F(ThumbnailsTest, FitKeepTheirShapeAndAreKeptWithinBounds) {
    const PatchSet& set = Current();
    for (const qreal ratio : {1.0, 1.5, 2.0, 4.0})
        for (const auto& [state, record] : set.states) {
            const QPixmap small = Small().Of(FrameOfState(set, state), ratio);
            const double most = Thumbnails::side * ratio;
            ASSERT_LE(small.width(), most);
            ASSERT_LE(small.height(), most);
            const QImage whole =
                GameSprite(program, set.SpriteName(record.sprite), record.subnumber & ~litBit, 1).image;
            ASSERT_EQ(small.isNull(), state == 0 || whole.isNull()) << state;
            if (small.isNull())
                continue;
            EXPECT_TRUE(small.hasAlphaChannel());
            EXPECT_EQ(small.devicePixelRatio(), ratio);
            const int longer = std::max(small.width(), small.height());
            const int fits = std::max(whole.width(), whole.height());
            EXPECT_TRUE(longer == std::floor(most) || longer == fits * std::floor(ratio)) << state << " at " << ratio;
            const double shorter = 1.0 * longer * std::min(whole.width(), whole.height()) / fits;
            EXPECT_NEAR(std::min(small.width(), small.height()), shorter, 0.999) << state << ": less than a pixel off";
            ASSERT_LE(Small().Bytes(), Thumbnails::mostBytes);
        }
    const qsizetype kept = Small().Bytes();
    EXPECT_GT(kept, 0);
    Small().Of(FrameOfThing(set, imp), 4.0);
    EXPECT_EQ(Small().Bytes(), kept) << "it is there already";
    for (int ratio = 20; ratio < 30; ++ratio) { // more than there is room for
        for (std::int32_t thing = 0; thing < 137; ++thing)
            Small().Of(FrameOfThing(set, thing), ratio);
        ASSERT_LE(Small().Bytes(), Thumbnails::mostBytes);
    }
    EXPECT_GT(Small().Bytes(), Thumbnails::mostBytes / 2);
    Small().Clear();
    EXPECT_EQ(Small().Bytes(), 0);
    SpriteView::GamePictures(program.settings, false);
    EXPECT_EQ(qAlpha(Small().Of(FrameOfThing(set, imp), 1).toImage().pixel(0, 0)), 255) << "black there";
    EXPECT_TRUE(FrameOfThing(set, 123456).sprite.empty());
    EXPECT_TRUE(FrameOfState(set, 123456).sprite.empty());
    EXPECT_TRUE(Small().Of({"NONE", 3}, 1).isNull());
    EXPECT_TRUE(Small().Of({}, 1).isNull());
}

TEST_F(ThumbnailsTest, ListsDrawThoseInViewOnlyAndFollowEdits) {
    auto& window = Open<frmEditThings>();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    auto& list = Find<QTreeView>(window, "lstThings");
    list.grab();
    const qsizetype first = Small().Bytes();
    EXPECT_GT(first, 0);
    list.scrollToBottom();
    list.grab();
    EXPECT_GT(Small().Bytes(), first) << "those at the end were not made before";

    const QModelIndex row = list.model()->index(imp, 0);
    EXPECT_GE(list.visualRect(row).height(), Thumbnails::side);
    const QImage before = Drawn(list, row);
    edits.Store({RecordKind::State, Current().things[imp].initialState, RowOf(&StateRecord::sprite)},
                Current().states[Current().things[cyberdemon].initialState].sprite);
    const QImage after = Drawn(list, row);
    EXPECT_NE(after, before);
    edits.Undo();
    EXPECT_EQ(Drawn(list, row), before);

    Small().Wanted(false);
    QApplication::processEvents();
    EXPECT_LT(list.visualRect(row).height(), Thumbnails::side);
    Small().Clear();
    list.grab();
    EXPECT_EQ(Small().Bytes(), 0) << "none is made";
    Small().Wanted(true);
    QApplication::processEvents();
    EXPECT_EQ(Drawn(list, row), before);
}

TEST_F(ThumbnailsTest, ThePictureColumnOfStatesIsHiddenForGood) {
    auto& window = Open<frmEditStates>();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    auto& list = StateList(window);
    const int picture = static_cast<int>(StateColumn::Picture);
    const auto height = [&list] { return list.rowHeight(0); };
    EXPECT_EQ(list.horizontalHeader()->visualIndex(picture), 1) << "behind the number";
    EXPECT_TRUE(HasPictures(window));
    EXPECT_GE(height(), Thumbnails::side);
    const QModelIndex cell = list.model()->index(Current().things[imp].initialState, picture);
    const QImage before = Drawn(list, cell);
    EXPECT_NE(before, Drawn(list, list.model()->index(0, picture))) << "state 0 shows nothing";
    edits.Store({RecordKind::State, Current().things[imp].initialState, RowOf(&StateRecord::subnumber)}, 4);
    EXPECT_NE(Drawn(list, cell), before);

    list.selectRow(cell.row());
    TriggerMenu(*list.viewport(), list.visualRect(cell).center(), "restoreColumn");
    EXPECT_EQ(Current(), Defaults()) << "it is that of sprite and frame";
    EXPECT_EQ(Drawn(list, cell), before);

    window.findChild<QAction*>("actPictures")->trigger(); // of the header's menu
    EXPECT_FALSE(HasPictures(window));
    EXPECT_LT(height(), Thumbnails::side);
    auto& another = Open<frmEditStates>();
    QApplication::processEvents();
    EXPECT_FALSE(HasPictures(another)) << "it is remembered";
    Small().Wanted(false);
    Small().Wanted(true);
    EXPECT_FALSE(HasPictures(window)) << "the column is another thing than all of them";
    list.selectRow(cell.row());
    TriggerMenu(*list.viewport(), list.visualRect(cell.siblingAtColumn(0)).center(), "actPictures");
    EXPECT_TRUE(HasPictures(window));
    EXPECT_TRUE(HasPictures(another));
    Small().Wanted(false);
    EXPECT_FALSE(HasPictures(window));
}

TEST_F(ThumbnailsTest, PickersShowThem) {
    frmSelectSprite sprites(program, Small(), nullptr);
    frmSelectState states(program, edits, Small(), nullptr);
    frmSelectRecord things(program, RecordKind::Thing, Small(), nullptr);
    frmSelectRecord sounds(program, RecordKind::Sound, Small(), nullptr);
    const auto bytesOf = [this](QDialog& dialog, const char* list, const std::function<void()>& choose) {
        Small().Clear();
        qsizetype bytes = 0;
        QTimer::singleShot(0, &dialog, [&] {
            dialog.findChild<QAbstractItemView*>(QString::fromLatin1(list))->grab();
            bytes = Small().Bytes();
            dialog.reject();
        });
        choose();
        return bytes;
    };
    EXPECT_GT(bytesOf(sprites, "lstSprites", [&] { sprites.Choose({0, 0}); }), 0);
    EXPECT_GT(bytesOf(states, "lvwSelectStates", [&] { states.Choose(442); }), 0);
    EXPECT_GT(bytesOf(things, "lstRecords", [&] { things.Choose(imp); }), 0);
    EXPECT_EQ(bytesOf(sounds, "lstRecords", [&] { sounds.Choose(1); }), 0);
}

} // namespace
} // namespace plinket3::test
