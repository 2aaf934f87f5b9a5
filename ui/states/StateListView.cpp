#include "ui/states/StateListView.h"

#include "patch/Arguments.h"
#include "ui/lists/ThumbnailDelegate.h"
#include "ui/states/StateColumns.h"
#include "ui/states/StateTableModel.h"

#include <QAction>
#include <QFontDatabase>
#include <QHeaderView>

#include <algorithm>
#include <array>

namespace plinket3 {

namespace {

/// Characters that fit into each column, beside the name also the sign of a state that is kept; a heading may need
/// more.
constexpr std::array<int, stateColumnCount> columnWidths{6, 11, 5, 5, 4, 6, 6, 6, 6, 16, 24, 0};

constexpr int pictureColumn = static_cast<int>(StateColumn::Picture);

/// Rows are as high as their text where there are no pictures.
void FitToPictures(QTableView& view, const Thumbnails& thumbnails) {
    const int textHeight = view.fontMetrics().height() + view.fontMetrics().height() / 4;
    const bool pictures = thumbnails.InStateLists();
    view.setColumnHidden(pictureColumn, !pictures);
    view.verticalHeader()->setDefaultSectionSize(pictures ? std::max(textHeight, ThumbnailDelegate::RowHeight())
                                                          : textHeight);
}

/// The entry of the header's menu that hides the pictures.
void AddPictureAction(QTableView& view, Thumbnails& thumbnails) {
    auto* action = new QAction(StateColumnHeading(StateColumn::Picture), &view);
    action->setObjectName(QStringLiteral("actPictures"));
    action->setCheckable(true);
    const auto follow = [&view, &thumbnails, action] {
        FitToPictures(view, thumbnails);
        action->setChecked(thumbnails.InStateLists());
        action->setVisible(thumbnails.Wanted());
    };
    follow();
    QObject::connect(&thumbnails, &Thumbnails::Changed, &view, follow);
    QObject::connect(action, &QAction::triggered, &thumbnails,
                     [&thumbnails](bool wanted) { thumbnails.InStateLists(wanted); });
    view.horizontalHeader()->addAction(action);
    view.horizontalHeader()->setContextMenuPolicy(Qt::ActionsContextMenu);
}

} // namespace

void SetUpStateList(QTableView& view, StateTableModel& model, const QString& name, const QString& accessibleName,
                    const PatchSet& set, Thumbnails& thumbnails) {
    view.setObjectName(name);
    view.setAccessibleName(accessibleName);
    view.setModel(&model);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setAlternatingRowColors(true);
    view.setWordWrap(false);
    view.setTabKeyNavigation(false);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setCornerButtonEnabled(false);

    QHeaderView& rows = *view.verticalHeader();
    rows.hide();
    rows.setMinimumSectionSize(1);
    rows.setSectionResizeMode(QHeaderView::Fixed);

    QHeaderView& columns = *view.horizontalHeader();
    columns.setHighlightSections(false);
    columns.setStretchLastSection(true);
    const int digit = QFontMetrics(QFontDatabase::systemFont(QFontDatabase::FixedFont)).horizontalAdvance(u'0');
    for (int column = 0; column < stateColumnCount; ++column)
        columns.resizeSection(column, std::max(columns.sectionSizeHint(column),
                                               (columnWidths[static_cast<std::size_t>(column)] + 1) * digit));
    columns.moveSection(pictureColumn, static_cast<int>(StateColumn::Name));
    new ThumbnailDelegate(view, pictureColumn, thumbnails, [&set, &model](const QModelIndex& row) {
        return FrameOfState(set, model.Shown()[static_cast<std::size_t>(row.row())]);
    });
    AddPictureAction(view, thumbnails);
}

void ShowArgumentsColumn(QTableView& view, const EngineConfiguration& engine) {
    view.setColumnHidden(static_cast<int>(StateColumn::Arguments), ArgumentTable(engine).Empty());
}

void SelectStateRow(QTableView& view, int row) {
    const QModelIndex index = view.model()->index(row, 0);
    view.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    view.scrollTo(index, QAbstractItemView::EnsureVisible);
}

} // namespace plinket3
