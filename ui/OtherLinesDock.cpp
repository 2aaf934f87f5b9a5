#include "ui/OtherLinesDock.h"

#include "core/Files.h"
#include "patch/OtherLines.h"
#include "patch/PatchPlace.h"
#include "ui/LatinText.h"

#include <QAbstractTableModel>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace plinket3 {

class OtherLinesModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void Show(std::vector<OtherLine> lines) {
        beginResetModel();
        lines_ = std::move(lines);
        endResetModel();
    }
    const OtherLine& At(int row) const { return lines_[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(lines_.size());
    }
    int columnCount(const QModelIndex&) const override { return static_cast<int>(headings.size()); }
    QVariant headerData(int section, Qt::Orientation, int role) const override {
        return role == Qt::DisplayRole ? tr(headings[static_cast<std::size_t>(section)]) : QVariant();
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const OtherLine& line = At(index.row());
        if (role == Qt::TextAlignmentRole && index.column() == 0)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
            return {};
        switch (index.column()) {
        case 0:
            return static_cast<qulonglong>(line.line);
        case 1:
            return ShownStart(line.section);
        case 2:
            return ShownStart(line.text);
        default:
            return ShownStart(line.reason);
        }
    }

private:
    static constexpr std::array headings{
        QT_TRANSLATE_NOOP("OtherLinesModel", "Line"), QT_TRANSLATE_NOOP("OtherLinesModel", "Section"),
        QT_TRANSLATE_NOOP("OtherLinesModel", "Text"), QT_TRANSLATE_NOOP("OtherLinesModel", "Why it is not edited")};
    std::vector<OtherLine> lines_;
};

namespace {

/// Leaves the editors their room.
class ShortList : public QTreeView {
public:
    QSize sizeHint() const override { return {QTreeView::sizeHint().width(), fontMetrics().lineSpacing() * 6}; }
};

} // namespace

OtherLinesDock::OtherLinesDock(const Program& program)
    : LaterDock("dockOtherLines", tr("Other lines")), program_(program), model_(new OtherLinesModel(this)) {}

QWidget* OtherLinesDock::MakeContents() {
    list_ = new ShortList;
    text_ = new QLabel;
    list_->setObjectName(QStringLiteral("lvwOtherLines"));
    list_->setAccessibleName(tr("Other lines"));
    list_->setModel(model_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    text_->setObjectName(QStringLiteral("lblOtherLines"));
    text_->setWordWrap(true);
    auto* copy = new QAction(tr("&Copy"), list_);
    copy->setObjectName(QStringLiteral("actCopy"));
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    list_->addAction(copy);
    list_->setContextMenuPolicy(Qt::ActionsContextMenu);
    copy->setEnabled(false);
    connect(copy, &QAction::triggered, this, &OtherLinesDock::Copy);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, copy,
            [this, copy] { copy->setEnabled(list_->selectionModel()->hasSelection()); });
    auto* page = new QWidget;
    page->setFocusProxy(list_);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(text_);
    layout->addWidget(list_, 1);
    const int character = fontMetrics().averageCharWidth();
    list_->header()->resizeSection(0, character * 9);
    list_->header()->resizeSection(1, character * 24);
    list_->header()->resizeSection(2, character * 50);
    return page;
}

void OtherLinesDock::Refresh() {
    upToDate_ = false;
    if (isVisible())
        Fill();
}

void OtherLinesDock::showEvent(QShowEvent* event) {
    LaterDock::showEvent(event);
    if (!upToDate_)
        Fill();
}

/// From the file itself, whose line numbers these are, whatever was edited since.
void OtherLinesDock::Fill() {
    upToDate_ = true;
    std::string bytes;
    const PatchData& patch = program_.patch;
    std::vector<OtherLine> lines;
    if (patch.named && ReadPlace({patch.fileName, patch.lump}, bytes)) {
        EngineConfiguration asEngines = program_.engine;
        asEngines.dialect = asEngines.dialect.AsEngines();
        lines = OtherLines(bytes, asEngines, patch.defaults);
    }
    const bool lost = !lines.empty() && !program_.engine.dialect.EngineRules();
    text_->setText(lines.empty() ? patch.named ? tr("Every line of the file is edited here, or is a comment.")
                                               : tr("A new patch has no other lines.")
                   : lost ? tr("A save by the kept rules loses these lines of the file.")
                                 : tr("These lines of the file are kept as they are."));
    model_->Show(std::move(lines));
}

void OtherLinesDock::Copy() {
    QModelIndexList rows = list_->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QString text;
    for (const QModelIndex& row : rows)
        text += ShownText(model_->At(row.row()).text) + QLatin1Char('\n');
    QApplication::clipboard()->setText(text);
}

} // namespace plinket3
