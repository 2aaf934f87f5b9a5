#include "ui/FindDock.h"

#include "patch/StepNames.h"
#include "patch/TextReplace.h"
#include "patch/modPatchText.h"
#include "ui/FindResultsModel.h"
#include "ui/LatinLineEdit.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int afterEdits = 100; // milliseconds
constexpr int titleCharacters = 22, detailCharacters = 26;
constexpr std::size_t refusalsShown = 20;

QString Counted(std::size_t count, const char* one, const char* many) {
    return count == 1 ? FindDock::tr(one) : FindDock::tr(many).arg(static_cast<qulonglong>(count));
}

/// Says what came of it; of what stays as it is the first, and more under the mouse.
void ShowOutcome(QLabel& label, const PatchSet& set, const ReplacedTexts& replaced) {
    QString text = replaced.places == 0
                       ? FindDock::tr("Nothing was replaced.")
                       : FindDock::tr("Replaced %1 in %2.")
                             .arg(Counted(replaced.places, QT_TRANSLATE_NOOP("FindDock", "one place"),
                                          QT_TRANSLATE_NOOP("FindDock", "%1 places")),
                                  Counted(replaced.texts.size(), QT_TRANSLATE_NOOP("FindDock", "one text"),
                                          QT_TRANSLATE_NOOP("FindDock", "%1 texts")));
    QStringList refused;
    for (const auto& [cell, reason] : replaced.refused)
        if (refused.size() < static_cast<qsizetype>(refusalsShown))
            refused.append(ShownStart(RecordName(set, cell.kind, cell.index) + ": " + reason));
    if (!refused.isEmpty())
        text += QLatin1Char(' ') +
                Counted(replaced.refused.size(), QT_TRANSLATE_NOOP("FindDock", "One text cannot hold that:"),
                        QT_TRANSLATE_NOOP("FindDock", "%1 texts cannot hold that, the first of them:")) +
                QLatin1Char(' ') + refused.front() + QLatin1Char('.');
    label.setText(text);
    label.setToolTip(refused.join(QLatin1Char('\n')));
}

} // namespace

FindDock::FindDock(const EditorContext& context)
    : LaterDock("dockFind", tr("Find")), context_(context), model_(new FindResultsModel(this)) {
    refresh_.setSingleShot(true);
    refresh_.setInterval(afterEdits);
    connect(&refresh_, &QTimer::timeout, this, &FindDock::Search);
    context_.edits.Listen([this](const std::vector<Cell>& cells) {
        if (!cells.empty())
            Refresh();
    });
}

QWidget* FindDock::MakeContents() {
    text_ = new LatinLineEdit(QStringLiteral("txtFind"), tr("Find"),
                              [&links = context_.links](const QString& why) { links.ShowStatus(why); });
    matchCase_ = new QCheckBox(tr("Match case"));
    results_ = new QTreeView;
    nothing_ = new QLabel(tr("Nothing in this patch holds that."));
    text_->setPlaceholderText(tr("Number, name, action or text"));
    text_->setClearButtonEnabled(true);
    text_->installEventFilter(this);
    connect(text_, &QLineEdit::textChanged, this, [this] {
        whole_.reset();
        outcome_->hide();
        Search();
        SelectRow(model_->RowFor(std::nullopt, 0)); // the best
    });
    matchCase_->setObjectName(QStringLiteral("chkMatchCase"));
    connect(matchCase_, &QCheckBox::toggled, this, &FindDock::Search);

    results_->setObjectName(QStringLiteral("lvwFound"));
    results_->setAccessibleName(tr("What was found"));
    results_->setModel(model_);
    results_->setHeaderHidden(true);
    results_->setRootIsDecorated(false);
    results_->setUniformRowHeights(true);
    results_->setAllColumnsShowFocus(true);
    results_->setColumnWidth(0, fontMetrics().averageCharWidth() * titleCharacters);
    results_->setMinimumWidth(fontMetrics().averageCharWidth() * (titleCharacters + detailCharacters));
    results_->installEventFilter(this);
    connect(results_, &QTreeView::doubleClicked, this, &FindDock::GoTo);
    connect(results_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &FindDock::UpdateButtons);
    nothing_->setObjectName(QStringLiteral("lblNothing"));

    auto* page = new QWidget;
    page->setFocusProxy(text_);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(text_);
    layout->addWidget(matchCase_);
    layout->addWidget(nothing_);
    layout->addWidget(results_, 1);
    layout->addWidget(MakeReplacing());
    Search();
    return page;
}

QGroupBox* FindDock::MakeReplacing() {
    with_ = new LatinLineEdit(QStringLiteral("txtReplace"), tr("Replace with"),
                              [&links = context_.links](const QString& why) { links.ShowStatus(why); });
    with_->setPlaceholderText(tr("Replace with"));
    with_->setToolTip(tr("What is put in the place of the text found; \\n is a line break"));
    replace_ = NewButton("cmdReplace", tr("Replace"));
    replace_->setToolTip(tr("In the selected string or cheat"));
    replaceAll_ = NewButton("cmdReplaceAll", tr("Replace all"));
    replaceAll_->setToolTip(tr("In every string and cheat, as one step"));
    outcome_ = new QLabel;
    outcome_->setObjectName(QStringLiteral("lblReplaced"));
    outcome_->setTextFormat(Qt::PlainText);
    outcome_->setWordWrap(true);
    outcome_->hide();
    connect(replace_, &QPushButton::clicked, this, &FindDock::Replace);
    connect(replaceAll_, &QPushButton::clicked, this, &FindDock::ReplaceAll);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(replace_);
    buttons->addWidget(replaceAll_);
    buttons->addStretch();
    auto* group = new QGroupBox(tr("In strings and cheats"));
    auto* layout = new QVBoxLayout(group);
    layout->addWidget(with_);
    layout->addLayout(buttons);
    layout->addWidget(outcome_);
    return group;
}

void FindDock::Start() {
    Bring();
    text_->selectAll();
}

void FindDock::Refresh() {
    if (isVisible() && !refresh_.isActive())
        refresh_.start();
}

void FindDock::showEvent(QShowEvent* event) {
    LaterDock::showEvent(event);
    Search();
}

/// What was selected stays so; when it is no longer found, what comes after it is.
void FindDock::Search() {
    const std::string text = StoredText(text_->text());
    const auto selected = model_->CellAt(results_->currentIndex());
    const int formerRow = results_->currentIndex().row();
    model_->Show(FindAnything(context_.program, {.text = text, .matchCase = matchCase_->isChecked(), .whole = whole_}));
    for (int row = 0; row < model_->rowCount(); ++row)
        if (model_->IsHeading(row))
            results_->setFirstColumnSpanned(row, {}, true);
    nothing_->setVisible(model_->rowCount() == 0 && !QStringView(text_->text()).trimmed().isEmpty());
    SelectRow(model_->RowFor(selected, formerRow));
    UpdateButtons();
}

void FindDock::SelectRow(int row) {
    if (row < 0)
        return;
    results_->setCurrentIndex(model_->index(row, 0));
    results_->scrollTo(row == 1 ? model_->index(0, 0) : model_->index(row, 0)); // with the heading above the first one
}

void FindDock::GoToResults() {
    if (results_->currentIndex().isValid())
        results_->setFocus();
}

void FindDock::GoTo(const QModelIndex& result) {
    if (const auto rest = model_->RestAt(result)) {
        const int row = result.row();
        whole_ = rest;
        Search();
        SelectRow(model_->RowFor(std::nullopt, row));
    } else if (const auto cell = model_->CellAt(result)) {
        context_.links.ShowCell(*cell);
    }
}

/// The keyboard leaves it first: else it would go to any window.
void FindDock::closeEvent(QCloseEvent* event) {
    emit Left();
    LaterDock::closeEvent(event);
}

bool FindDock::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if ((watched == text_ && LineKey(key)) || (watched == results_ && ResultsKey(key)))
            return true;
    }
    return LaterDock::eventFilter(watched, event);
}

bool FindDock::LineKey(int key) {
    switch (key) {
    case Qt::Key_Down:
        GoToResults();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        GoTo(results_->currentIndex());
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    default:
        return false;
    }
}

bool FindDock::ResultsKey(int key) {
    const bool onFirst = results_->currentIndex().row() <= model_->RowFor(std::nullopt, 0);
    if (key == Qt::Key_Escape || (key == Qt::Key_Up && onFirst)) {
        text_->setFocus();
        return true;
    }
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    GoTo(results_->currentIndex());
    return true;
}

/// A string may have been found by its key.
std::optional<Cell> FindDock::TextAt(int row) const {
    const auto cell = model_->CellAt(model_->index(row, 0));
    if (!cell || (cell->kind != RecordKind::String && cell->kind != RecordKind::Cheat))
        return std::nullopt;
    const Cell text{cell->kind, cell->index, textField};
    const std::string what = modPatchText::UnescapeText(StoredText(text_->text()));
    const auto value = std::get<std::string>(context_.edits.Value(text));
    const bool holds = !what.empty() && FindText(value, what, matchCase_->isChecked()) != std::string::npos;
    return holds ? std::optional(text) : std::nullopt;
}

void FindDock::UpdateButtons() {
    replace_->setEnabled(TextAt(results_->currentIndex().row()).has_value());
    replaceAll_->setEnabled(!text_->text().isEmpty());
}

/// Goes on to the next text that holds it.
void FindDock::Replace() {
    int row = results_->currentIndex().row();
    const auto text = TextAt(row);
    if (!text)
        return;
    ReplaceIn({*text});
    while (row < model_->rowCount() && (!TextAt(row) || TextAt(row) == text))
        ++row;
    if (row < model_->rowCount())
        SelectRow(row);
}

void FindDock::ReplaceAll() { ReplaceIn(EditedTexts(context_.program)); }

void FindDock::ReplaceIn(const std::vector<Cell>& texts) {
    const ReplacedTexts replaced = ReplaceInTexts(
        context_.program, texts, {StoredText(text_->text()), StoredText(with_->text()), matchCase_->isChecked()});
    if (!replaced.texts.empty()) {
        const Cell& first = replaced.texts.front().cell;
        const std::string where = replaced.texts.size() == 1 ? context_.edits.RecordName(first.kind, first.index)
                                                             : std::to_string(replaced.texts.size()) + " texts";
        context_.edits.StoreGroup(replaced.texts, "replace in " + where);
    }
    ShowOutcome(*outcome_, context_.program.patch.current, replaced);
    outcome_->show();
    Search();
}

} // namespace plinket3
