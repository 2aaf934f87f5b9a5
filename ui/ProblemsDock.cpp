#include "ui/ProblemsDock.h"

#include "patch/Problems.h"
#include "ui/LatinText.h"

#include <QAbstractTableModel>
#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace plinket3 {

using modPatchCheck::Finding;
using modPatchCheck::Severity;

class ProblemsModel : public QAbstractTableModel {
public:
    explicit ProblemsModel(const PatchSet& set, QObject* parent) : QAbstractTableModel(parent), set_(set) {}

    struct Problem {
        Finding finding;
        QString port; // that tells it; empty for one that was found here
    };

    void Show(std::vector<Problem> problems) {
        beginResetModel();
        problems_ = std::move(problems);
        endResetModel();
    }
    const Finding& At(int row) const { return problems_[static_cast<std::size_t>(row)].finding; }
    int Count(Severity severity) const {
        return static_cast<int>(
            std::ranges::count(problems_, severity, [](const Problem& problem) { return problem.finding.severity; }));
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(problems_.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 4; }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        const std::array headers{tr("Kind"), tr("Where"), tr("Line"), tr("Problem")};
        if (orientation == Qt::Horizontal && role == Qt::ToolTipRole && section == 2)
            return tr("In the file as a save would write it now; what a port says is of the file as it ran");
        return orientation == Qt::Horizontal && role == Qt::DisplayRole ? headers[static_cast<std::size_t>(section)]
                                                                        : QVariant();
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const Finding& problem = At(index.row());
        if (role == Qt::ToolTipRole)
            return index.column() == 3 ? ShownText(problem.text) : QVariant();
        if (role != Qt::DisplayRole)
            return {};
        switch (index.column()) {
        case 0:
            return problem.severity == Severity::Refused ? tr("Error")
                   : problem.severity == Severity::Wrong ? tr("Warning")
                                                         : tr("Note");
        case 1:
            return Where(problems_[static_cast<std::size_t>(index.row())]);
        case 2:
            return problem.line == 0 ? QVariant() : QVariant(static_cast<qulonglong>(problem.line));
        default:
            return ShownStart(problem.text);
        }
    }

private:
    QString Where(const Problem& problem) const {
        if (!problem.finding.cell)
            return problem.port;
        const Cell& cell = *problem.finding.cell;
        const QString where = ShownStart(cell.field == existsField ? RecordName(set_, cell.kind, cell.index)
                                                                   : CellsName(set_, {cell}, {}));
        return problem.port.isEmpty() ? where : problem.port + QStringLiteral(": ") + where;
    }

    const PatchSet& set_;
    std::vector<Problem> problems_;
};

namespace {

/// Leaves the editors their room.
class ShortList : public QTreeView {
public:
    QSize sizeHint() const override { return {QTreeView::sizeHint().width(), fontMetrics().lineSpacing() * 6}; }
};

constexpr int pauseBeforeSearch = 40; // milliseconds

} // namespace

ProblemsDock::ProblemsDock(const Program& program, Edits& edits, EditorLinks& links)
    : LaterDock("dockProblems", tr("Problems")), program_(program), edits_(edits), links_(links),
      model_(new ProblemsModel(program.patch.current, this)) {
    thread_.setMaxThreadCount(1);
    pause_.setSingleShot(true);
    pause_.setInterval(pauseBeforeSearch);
    connect(&pause_, &QTimer::timeout, this, &ProblemsDock::Search);
    edits.Listen([this](const std::vector<Cell>&) { Refresh(); });
}

QWidget* ProblemsDock::MakeContents() {
    summary_ = new QLabel;
    list_ = new ShortList;
    goTo_ = new QPushButton(tr("&Go to field"));
    mend_ = new QPushButton(tr("&Mend"));
    list_->setObjectName(QStringLiteral("lvwProblems"));
    list_->setAccessibleName(tr("Problems"));
    list_->setModel(model_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    summary_->setObjectName(QStringLiteral("lblProblems"));
    summary_->setTextFormat(Qt::PlainText);
    summary_->setWordWrap(true);
    goTo_->setObjectName(QStringLiteral("cmdGoToProblem"));
    goTo_->setToolTip(tr("Show what the line says in its editor (Enter)"));
    mend_->setObjectName(QStringLiteral("cmdMend"));
    auto* enter = new QAction(list_);
    enter->setShortcuts({QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
    enter->setShortcutContext(Qt::WidgetShortcut);
    list_->addAction(enter);
    connect(enter, &QAction::triggered, this, &ProblemsDock::GoTo);
    connect(list_, &QTreeView::doubleClicked, this, &ProblemsDock::GoTo);
    connect(goTo_, &QPushButton::clicked, this, &ProblemsDock::GoTo);
    connect(mend_, &QPushButton::clicked, this, &ProblemsDock::MendCurrent);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, &ProblemsDock::CurrentChanged);

    auto* page = new QWidget;
    page->setFocusProxy(list_);
    auto* layout = new QVBoxLayout(page);
    auto* top = new QHBoxLayout;
    top->addWidget(summary_, 1);
    top->addWidget(goTo_);
    top->addWidget(mend_);
    layout->addLayout(top);
    layout->addWidget(list_, 1);
    const int character = fontMetrics().averageCharWidth();
    list_->header()->resizeSection(0, character * 12);
    list_->header()->resizeSection(1, character * 36);
    list_->header()->resizeSection(2, character * 9);
    ShowSummary();
    SelectRow(0);
    return page;
}

void ProblemsDock::Refresh() { pause_.start(); }

void ProblemsDock::SessionChanged() {
    ofPorts_.clear();
    Show();
    Refresh();
}

void ProblemsDock::ShowOfPort(const QString& port, const std::vector<Finding>& problems) {
    ofPorts_[port] = problems;
    Show();
}

void ProblemsDock::Saved() {
    saved_ = true;
    Refresh();
}

void ProblemsDock::Search() {
    late_ = job_ != nullptr;
    if (late_ || program_.engine.name.empty())
        return;
    job_ =
        std::make_unique<const Job>(Job{program_.patch, program_.engine, program_.wads, std::exchange(saved_, false)});
    thread_.start([this, &job = *job_] {
        QMetaObject::invokeMethod(
            this,
            [this, problems = ProblemsOf(job.patch, job.engine, job.wads)]() mutable { Found(std::move(problems)); },
            Qt::QueuedConnection);
    });
}

void ProblemsDock::Found(std::vector<Finding> problems) {
    const bool afterSave = job_->afterSave;
    job_.reset();
    if (late_)
        pause_.start();
    own_ = std::move(problems);
    Show();
    if (const auto errors = std::ranges::count(own_, Severity::Refused, &Finding::severity); afterSave && errors > 0)
        emit StatusText(errors == 1
                            ? tr("Saved, but games refuse it or crash: see the error in Problems")
                            : tr("Saved, but games refuse it or crash: see the %1 errors in Problems").arg(errors));
}

QString ProblemsDock::Counts() const {
    const auto count = [this](Severity severity, const QString& one, const QString& many) {
        const int number = model_->Count(severity);
        return number == 1 ? one : many.arg(number);
    };
    return count(Severity::Refused, tr("1 error"), tr("%1 errors")) + QStringLiteral(", ") +
           count(Severity::Wrong, tr("1 warning"), tr("%1 warnings"));
}

void ProblemsDock::Show() {
    const int row = IsMade() ? std::max(list_->currentIndex().row(), 0) : 0;
    std::vector<ProblemsModel::Problem> problems;
    for (const Finding& own : own_)
        problems.push_back({own, {}});
    for (const auto& [port, told] : ofPorts_)
        for (const Finding& problem : told)
            problems.push_back({problem, port});
    model_->Show(std::move(problems));
    if (IsMade()) {
        ShowSummary();
        SelectRow(row);
    }
    emit Searched();
}

void ProblemsDock::ShowSummary() {
    const int notes = model_->Count(Severity::Odd);
    summary_->setText(program_.engine.name.empty() ? tr("No patch is open.")
                      : model_->rowCount() == 0    ? tr("Nothing was found.")
                                                   : Counts() + (notes == 0   ? QString()
                                                                 : notes == 1 ? tr(", 1 note")
                                                                              : tr(", %1 notes").arg(notes)));
}

void ProblemsDock::SelectRow(int row) {
    if (const int rows = model_->rowCount(); rows > 0)
        list_->setCurrentIndex(model_->index(std::min(row, rows - 1), 0));
    CurrentChanged();
}

const Finding* ProblemsDock::Current() const {
    const QModelIndex index = list_->currentIndex();
    return index.isValid() ? &model_->At(index.row()) : nullptr;
}

void ProblemsDock::CurrentChanged() {
    const Finding* problem = Current();
    goTo_->setEnabled(problem != nullptr && problem->cell);
    const bool mends = problem != nullptr && problem->mend;
    mend_->setEnabled(mends);
    QString tip = tr("There is no value that suggests itself");
    if (mends) {
        const auto* number = std::get_if<std::int32_t>(&*problem->mend);
        tip = number != nullptr ? tr("Set the field to %1").arg(*number) : tr("Take the value away");
    }
    mend_->setToolTip(tip);
}

void ProblemsDock::GoTo() {
    if (const Finding* problem = Current(); problem != nullptr && problem->cell)
        links_.ShowCell(*problem->cell);
}

void ProblemsDock::MendCurrent() {
    if (const Finding* problem = Current())
        Mend(edits_, Finding(*problem)); // the list may be made anew meanwhile
}

} // namespace plinket3
