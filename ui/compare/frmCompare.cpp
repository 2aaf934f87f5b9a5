#include "ui/compare/frmCompare.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/compare/frmCompareWith.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QSplitter>
#include <QStackedWidget>
#include <QTreeView>

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::size_t fewDifferences = 100; // that are shown with all records expanded

/// Leaves the editors their room.
class ShortTree : public QTreeView {
public:
    QSize sizeHint() const override { return {QTreeView::sizeHint().width(), fontMetrics().lineSpacing() * 10}; }
};

QComboBox* NewFilter(const char* name, const QString& accessibleName) {
    auto* box = new QComboBox;
    box->setObjectName(QString::fromLatin1(name));
    box->setAccessibleName(accessibleName);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return box;
}

RecordId KeyOf(const Difference& difference) { return {difference.cell.kind, difference.cell.index}; }

/// The place of a difference in a list that has others, or of what comes next in place of it.
std::size_t Nearest(const std::vector<Difference>& differences, const Difference& wanted) {
    const auto order = [](const Difference& difference) {
        return std::pair(difference.cell.kind, static_cast<std::uint32_t>(difference.cell.index));
    };
    const auto record = std::ranges::lower_bound(differences, order(wanted), {}, order);
    const auto same = std::find_if(record, differences.end(), [&wanted](const Difference& each) {
        return each.cell == wanted.cell && each.level == wanted.level;
    });
    const auto place = (same != differences.end() ? same : record) - differences.begin();
    return std::min(static_cast<std::size_t>(place), differences.size() - 1);
}

QLabel* NewLabel(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

frmCompare::frmCompare(const Program& program, Edits& edits, FileDialogs& dialogs)
    : LaterDock("frmCompare", tr("Comparison")), program_(program), edits_(edits), dialogs_(dialogs),
      model_(new DifferencesModel(program, this)) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &frmCompare::Refresh);
    edits_.Listen([this](const std::vector<Cell>& cells) {
        if (comparison_ && !cells.empty())
            timer_.start(0);
    });
}

QWidget* frmCompare::MakeContents() {
    lblCompared_ = NewLabel("lblCompared");
    lblNone_ = NewLabel("lblNone");
    cmbKind_ = NewFilter("cmbKind", tr("Kinds"));
    cmbChanged_ = NewFilter("cmbChanged", tr("Changed"));
    pages_ = new QStackedWidget;
    tvwDifferences_ = new ShortTree;
    lstLost_ = new QListWidget;
    cmdTake_ = NewButton("cmdTake", tr("&Take over"));
    cmdTakeKind_ = NewButton("cmdTakeKind", tr("Take over all of this &kind"));
    cmdShow_ = NewButton("cmdShow", tr("S&how in its editor"));
    cmdCompareWith_ = NewButton("cmdCompareWith", tr("&Compare with..."));
    cmdLost_ = NewButton("cmdLost", QString());
    tvwDifferences_->setObjectName(QStringLiteral("tvwDifferences"));
    tvwDifferences_->setAccessibleName(tr("Differences"));
    tvwDifferences_->setModel(model_);
    tvwDifferences_->setUniformRowHeights(true);
    tvwDifferences_->setExpandsOnDoubleClick(false);
    tvwDifferences_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    const int character = fontMetrics().averageCharWidth();
    for (const auto& [column, characters] : {std::pair{DifferencesModel::What, 34},
                                             {DifferencesModel::Changed, 14},
                                             {DifferencesModel::Here, 26},
                                             {DifferencesModel::There, 26}})
        tvwDifferences_->header()->resizeSection(column, character * characters);
    lstLost_->setObjectName(QStringLiteral("lstLost"));
    lstLost_->setAccessibleName(tr("What this engine cannot hold"));
    lblNone_->setAlignment(Qt::AlignCenter);
    lblNone_->setWordWrap(true);
    lblCompared_->setWordWrap(true);
    pages_->addWidget(tvwDifferences_);
    pages_->addWidget(lblNone_);

    pictures_ = Pictures();
    auto* middle = new QSplitter;
    middle->setChildrenCollapsible(false);
    middle->addWidget(pages_);
    middle->addWidget(pictures_);
    middle->setStretchFactor(0, 1);
    auto* page = new QWidget;
    page->setFocusProxy(tvwDifferences_);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(FilterRow());
    layout->addWidget(middle, 1);
    layout->addWidget(lstLost_);
    layout->addWidget(Buttons());

    connect(tvwDifferences_, &QTreeView::activated, this, &frmCompare::GoTo);
    connect(tvwDifferences_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &frmCompare::ShowCurrent);
    connect(tvwDifferences_->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmCompare::ShowCurrent);
    for (QComboBox* filter : {cmbKind_, cmbChanged_})
        connect(filter, &QComboBox::activated, this, &frmCompare::Fill);
    ShowNone();
    return page;
}

QWidget* frmCompare::FilterRow() {
    cmbKind_->addItem(tr("All kinds"));
    for (const RecordKind kind : {RecordKind::Thing, RecordKind::State, RecordKind::Sound, RecordKind::Sprite,
                                  RecordKind::Music, RecordKind::String, RecordKind::Weapon, RecordKind::Ammo,
                                  RecordKind::Cheat, RecordKind::Misc, RecordKind::Par})
        cmbKind_->addItem(KindTitle(kind), static_cast<int>(kind));
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lblCompared_, 1);
    layout->addWidget(cmbKind_);
    layout->addWidget(cmbChanged_);
    return row;
}

QWidget* frmCompare::Pictures() {
    auto* pictures = new QWidget;
    pictures->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored); // the list alone tells how high all is
    auto* layout = new QHBoxLayout(pictures);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [this, layout](const char* picture, const char* label, SpriteView*& view, QLabel*& name) {
        view = new SpriteView(QString::fromLatin1(picture), program_);
        name = NewLabel(label);
        name->setAlignment(Qt::AlignCenter);
        auto* column = new QVBoxLayout;
        column->addWidget(view, 1);
        column->addWidget(name);
        layout->addLayout(column);
    };
    add("picHere", "lblHere", picHere_, lblHere_);
    add("picThere", "lblThere", picThere_, lblThere_);
    picHere_->setAccessibleName(tr("Picture here"));
    picThere_->setAccessibleName(tr("Picture there"));
    return pictures;
}

QWidget* frmCompare::Buttons() {
    cmdTake_->setToolTip(tr("Gives the open patch what the other one has in the selected rows, as one step"));
    cmdTakeKind_->setToolTip(tr("The same for everything that is listed of the kind that the current row is of"));
    cmdLost_->setCheckable(true);
    connect(cmdTake_, &QPushButton::clicked, this, &frmCompare::TakeSelected);
    connect(cmdTakeKind_, &QPushButton::clicked, this, &frmCompare::TakeKind);
    connect(cmdShow_, &QPushButton::clicked, this, [this] { GoTo(tvwDifferences_->currentIndex()); });
    connect(cmdCompareWith_, &QPushButton::clicked, this, &frmCompare::CompareWith);
    connect(cmdLost_, &QPushButton::toggled, lstLost_, &QWidget::setVisible);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QPushButton* button : {cmdTake_, cmdTakeKind_, cmdShow_, cmdLost_})
        layout->addWidget(button);
    layout->addStretch();
    layout->addWidget(cmdCompareWith_);
    return row;
}

void frmCompare::CompareWith() {
    std::unique_ptr<Comparison> chosen = frmCompareWith(program_, dialogs_, window()).Choose();
    if (!chosen)
        return;
    EnsureMade();
    Drop(true);
    comparison_ = std::move(chosen);
    cmbChanged_->addItem(tr("All differences"));
    cmbChanged_->addItem(tr("Changed only here"), static_cast<int>(ChangedIn::Here));
    cmbChanged_->addItem(tr("Changed only there"), static_cast<int>(ChangedIn::There));
    cmbChanged_->addItem(comparison_->ancestor ? tr("Conflicts") : tr("Changed in both"),
                         static_cast<int>(ChangedIn::Both));
    ShowLost();
    Fill();
    Bring();
}

void frmCompare::Drop(bool sessionOpen) {
    sessionOpen_ = sessionOpen;
    timer_.stop();
    model_->Clear();
    comparison_.reset();
    if (IsMade())
        ShowNone();
}

void frmCompare::ShowNone() {
    cmbKind_->setCurrentIndex(0);
    cmbChanged_->clear();
    cmdCompareWith_->setEnabled(sessionOpen_);
    ShowLost();
    Fill();
}

void frmCompare::Saved() {
    if (!comparison_ || comparison_->with != Comparison::With::SavedFile)
        return;
    comparison_->place = {program_.patch.fileName, program_.patch.lump};
    if (!ReadComparison(program_, {}, *comparison_))
        return Drop(true);
    ShowLost();
    Fill();
}

void frmCompare::showEvent(QShowEvent* event) {
    LaterDock::showEvent(event);
    Refresh();
}

void frmCompare::Refresh() {
    if (isVisible())
        Fill();
}

void frmCompare::Fill() {
    for (QWidget* filter : {cmbKind_, cmbChanged_})
        filter->setEnabled(comparison_ != nullptr);
    if (!comparison_) {
        lblCompared_->clear();
        lblNone_->setText(tr("Nothing is compared yet."));
        pages_->setCurrentWidget(lblNone_);
        return ShowCurrent();
    }
    const bool first = model_->Shown().empty();
    const std::set<RecordId> expanded = Expanded();
    const QModelIndex current = tvwDifferences_->currentIndex();
    const bool onRecord = model_->rowCount(current.siblingAtColumn(0)) > 0;
    const std::optional<Difference> place =
        current.isValid() ? std::optional(model_->Below(current).front()) : std::nullopt;

    const PatchSet& ancestor = comparison_->ancestor ? comparison_->ancestor->set : program_.patch.defaults;
    std::vector<Difference> differences = Compare(program_.patch.current, comparison_->there.set, ancestor);
    const std::size_t all = differences.size();
    const auto conflicts =
        static_cast<std::size_t>(std::ranges::count(differences, ChangedIn::Both, &Difference::side));
    DifferencesModel::Filter filter;
    if (const QVariant kind = cmbKind_->currentData(); kind.isValid())
        filter.kind = static_cast<RecordKind>(kind.toInt());
    if (const QVariant side = cmbChanged_->currentData(); side.isValid())
        filter.side = static_cast<ChangedIn>(side.toInt());
    const bool same = model_->Show(std::move(differences), *comparison_, filter);
    ShowCounts(all, conflicts);
    const std::vector<Difference>& shown = model_->Shown();
    if (!same && !shown.empty()) {
        tvwDifferences_->expandToDepth(first && shown.size() <= fewDifferences ? 1 : 0);
        for (std::size_t i = 0; i < shown.size(); ++i)
            if (expanded.contains(KeyOf(shown[i])))
                tvwDifferences_->expand(model_->IndexOf(i, true));
        tvwDifferences_->setCurrentIndex(model_->IndexOf(place ? Nearest(shown, *place) : 0, !place || onRecord));
    }
    ShowCurrent();
}

/// The records of which fields are seen.
std::set<RecordId> frmCompare::Expanded() const {
    std::set<RecordId> expanded;
    for (int kind = 0; kind < model_->rowCount(); ++kind)
        for (int record = 0; record < model_->rowCount(model_->index(kind, 0)); ++record)
            if (const QModelIndex index = model_->index(record, 0, model_->index(kind, 0));
                tvwDifferences_->isExpanded(index))
                expanded.insert(KeyOf(model_->Below(index).front()));
    return expanded;
}

void frmCompare::ShowCounts(std::size_t all, std::size_t conflicts) {
    const QString other =
        comparison_->with == Comparison::With::Engine ? tr("the engine's own data")
        : comparison_->with == Comparison::With::SavedFile
            ? tr("the patch as it was saved")
            : ShownPath(PatchPlace(comparison_->place.file.filename(), comparison_->place.lump).Name());
    const std::size_t shown = model_->Shown().size();
    QString text = tr("Compared with %1: %2").arg(other, CountText(all));
    if (comparison_->ancestor)
        text += conflicts == 1 ? tr(", 1 conflict") : tr(", %1 conflicts").arg(conflicts);
    if (shown != all)
        text += tr(", %1 listed").arg(shown);
    lblCompared_->setText(text);
    lblNone_->setText(all == 0 ? tr("No differences.") : tr("No such differences."));
    pages_->setCurrentWidget(shown == 0 ? static_cast<QWidget*>(lblNone_) : tvwDifferences_);
}

void frmCompare::ShowLost() {
    lstLost_->clear();
    if (comparison_)
        for (const ComparedPatch* patch :
             {&comparison_->there, comparison_->ancestor ? &*comparison_->ancestor : nullptr})
            for (std::size_t line = 0; patch != nullptr && line < patch->lost.size(); ++line)
                lstLost_->addItem(ShownText(patch->engine + ": " + patch->lost[line]));
    cmdLost_->setText(tr("&Left out (%1)").arg(lstLost_->count()));
    cmdLost_->setToolTip(tr("Values of another engine that the open patch's engine cannot hold are not compared"));
    cmdLost_->setVisible(lstLost_->count() > 0);
    cmdLost_->setChecked(false);
    lstLost_->setVisible(false);
}

void frmCompare::ShowCurrent() {
    const QModelIndex current = tvwDifferences_->currentIndex();
    const bool any = comparison_ != nullptr && current.isValid();
    cmdTake_->setEnabled(any && tvwDifferences_->selectionModel()->hasSelection());
    cmdTakeKind_->setEnabled(any);
    const Cell cell = any ? model_->Below(current).front().cell : Cell();
    const bool record = any && !DifferencesModel::IsKind(current.siblingAtColumn(0));
    cmdShow_->setEnabled(record && IsHere(model_->Below(current).front()));
    pictures_->setVisible(record && cell.kind == RecordKind::State);
    if (!pictures_->isHidden()) {
        const QString here = picHere_->ShowState(cell.index),
                      there = picThere_->ShowState(comparison_->there.set, cell.index);
        const auto name = [](const QString& lump) { return lump.isEmpty() ? QStringLiteral("-") : lump; };
        lblHere_->setText(tr("Here: %1").arg(name(here)));
        lblThere_->setText(tr("There: %1").arg(name(there)));
    }
}

/// The entry of the open patch that counts for a level.
std::optional<std::int32_t> frmCompare::PlaceOf(const Level& level) const {
    const std::vector<ParRecord>& pars = program_.patch.current.pars;
    for (std::size_t place = pars.size(); place-- > 0;)
        if (Level(pars[place].episode, pars[place].map) == level)
            return static_cast<std::int32_t>(place);
    return std::nullopt;
}

bool frmCompare::IsHere(const Difference& difference) const {
    if (difference.level)
        return PlaceOf(*difference.level).has_value();
    return HasRecord(program_.patch.current, difference.cell.kind, difference.cell.index);
}

void frmCompare::TakeSelected() {
    std::set<std::size_t> places; // a row may be selected with the one that it stands below
    for (const QModelIndex& row : tvwDifferences_->selectionModel()->selectedRows())
        for (const Difference& difference : model_->Below(row))
            places.insert(static_cast<std::size_t>(&difference - model_->Shown().data()));
    std::vector<Difference> differences;
    differences.reserve(places.size());
    for (const std::size_t place : places)
        differences.push_back(model_->Shown()[place]);
    Take(std::move(differences));
}

void frmCompare::TakeKind() {
    const RecordKind kind = model_->Below(tvwDifferences_->currentIndex()).front().cell.kind;
    std::vector<Difference> differences;
    std::ranges::copy_if(model_->Shown(), std::back_inserter(differences),
                         [kind](const Difference& difference) { return difference.cell.kind == kind; });
    Take(std::move(differences));
}

void frmCompare::Take(std::vector<Difference> differences) {
    if (differences.empty())
        return;
    const std::string what = differences.size() == 1 ? edits_.NameOf(differences.front().cell)
                                                     : std::to_string(differences.size()) + " values";
    edits_.StoreGroup(TakeOver(differences, program_.patch.current, comparison_->there.set), "take over " + what);
    emit StatusText(tr("Took over %1").arg(ShownStart(what)));
}

void frmCompare::GoTo(const QModelIndex& index) {
    const QModelIndex row = index.siblingAtColumn(0);
    if (!row.isValid())
        return;
    if (DifferencesModel::IsKind(row))
        return tvwDifferences_->setExpanded(row, !tvwDifferences_->isExpanded(row));
    const Difference& difference = model_->Below(row).front();
    if (!IsHere(difference)) {
        emit StatusText(tr("The open patch does not have it: take it over first"));
        return;
    }
    Cell cell = difference.cell;
    if (model_->rowCount(row) > 0)
        cell.field = existsField; // of the record as a whole
    if (difference.level)
        cell = {RecordKind::Par, *PlaceOf(*difference.level), listField};
    emit CellWanted(cell);
}

} // namespace plinket3
