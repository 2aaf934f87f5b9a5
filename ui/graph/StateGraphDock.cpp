#include "ui/graph/StateGraphDock.h"

#include "patch/StepNames.h"
#include "ui/LatinText.h"
#include "ui/graph/GraphLegend.h"
#include "ui/graph/GraphOutput.h"
#include "ui/graph/GraphView.h"

#include <QAction>
#include <QLabel>
#include <QLocale>
#include <QPrintDialog>
#include <QPrinter>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::size_t mostNodes = 2'000;
constexpr const char* pictureFilter = "Picture of lines (*.svg)|*.svg|Picture of pixels (*.png)|*.png";

} // namespace

StateGraphDock::StateGraphDock(const Program& program, Edits& edits, EditorSet& editors, FileDialogs& dialogs)
    : LaterDock("dockStateGraph", tr("State graph")), program_(program), editors_(editors), dialogs_(dialogs) {
    filling_.setSingleShot(true);
    connect(&filling_, &QTimer::timeout, this, &StateGraphDock::Fill);
    connect(&editors_, &EditorSet::PlaceChanged, this, &StateGraphDock::Follow);
    connect(&editors_, &EditorSet::ShownChanged, this, &StateGraphDock::Follow);
    edits.Listen([this](const std::vector<Cell>& cells) { EditsMade(cells); });
}

QWidget* StateGraphDock::MakeContents() {
    scene_ = new GraphScene(program_, program_.settings, GraphStyle(palette(), font()), this);
    view_ = new GraphView(*scene_);
    legend_ = new GraphLegend;
    summary_ = new QLabel;
    summary_->setObjectName(QStringLiteral("lblStateGraph"));
    summary_->setTextFormat(Qt::PlainText);
    summary_->setWordWrap(true);
    summary_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    AddActions(*bar);
    auto* head = new QHBoxLayout;
    head->addWidget(summary_, 1);
    head->addWidget(bar);
    auto* page = new QWidget;
    page->setFocusProxy(view_);
    auto* layout = new QVBoxLayout(page);
    layout->addLayout(head);
    layout->addWidget(view_, 1);
    layout->addWidget(legend_);
    connect(scene_, &GraphScene::Chosen, this, &StateGraphDock::SelectState);
    connect(scene_, &GraphScene::Opened, this, &StateGraphDock::Open);
    return page;
}

void StateGraphDock::AddActions(QToolBar& bar) {
    const auto add = [&](const char* name, const QString& text, const QString& tip, auto act) {
        QAction* action = bar.addAction(text);
        action->setObjectName(QString::fromLatin1(name));
        action->setToolTip(tip);
        connect(action, &QAction::triggered, this, act);
        bar.widgetForAction(action)->setFocusPolicy(Qt::StrongFocus); // no menu has it
        onGraph_.append(action);
    };
    constexpr double step = 1.5;
    add("GraphSmaller", QStringLiteral("-"), tr("Smaller (-, or Ctrl and the wheel)"),
        [this] { view_->Zoom(1 / step); });
    add("GraphLarger", QStringLiteral("+"), tr("Larger (+, or Ctrl and the wheel)"), [this] { view_->Zoom(step); });
    add("GraphOwnSize", tr("100 %"), tr("In its own size (0)"), [this] { view_->OwnSize(); });
    add("GraphFit", tr("Fit"), tr("All of it (F)"), [this] { view_->Fit(); });
    add("GraphArrange", tr("Arrange"), tr("Put boxes that were dragged back into their rows"), [this] {
        const auto current = scene_->Current();
        scene_->Show(scene_->Graph(), false);
        scene_->Current(current);
    });
    bar.addSeparator();
    add("GraphExport", tr("Export..."), tr("Write it as a picture, SVG or PNG"), [this] { Export(); });
    add("GraphPrint", tr("Print..."), tr("Print it, or make a PDF of it"), [this] { Print(); });
}

void StateGraphDock::Refresh() {
    record_.reset();
    stale_ = true;
    Follow();
}

void StateGraphDock::Redraw() {
    if (scene_ != nullptr)
        scene_->ForgetPictures();
}

void StateGraphDock::showEvent(QShowEvent* event) {
    LaterDock::showEvent(event);
    Fill();
}

void StateGraphDock::Follow() {
    if (isVisible())
        filling_.start(0);
}

void StateGraphDock::EditsMade(const std::vector<Cell>& cells) {
    const auto isShown = [](const Cell& cell) {
        return cell.kind == RecordKind::State || cell.kind == RecordKind::Thing || cell.kind == RecordKind::Weapon;
    };
    if (!std::ranges::any_of(cells, isShown) && !RenamesLumps(cells))
        return;
    stale_ = true;
    Follow();
}

void StateGraphDock::ShowNone(const QString& why) {
    record_.reset();
    setWindowTitle(tr("State graph"));
    scene_->Show({}, false);
    legend_->Show(scene_->Graph());
    view_->ShowCurrent();
    summary_->setText(why);
    for (QAction* action : onGraph_)
        action->setEnabled(false);
}

void StateGraphDock::Fill() {
    const PatchSet& set = program_.patch.current;
    const EngineConfiguration& engine = program_.engine;
    const std::optional<Cell> here = editors_.Here();
    std::optional<RecordId> record = record_;
    std::optional<Target> selected;
    if (here && HasRecord(set, here->kind, here->index)) {
        if (here->kind == RecordKind::Thing || here->kind == RecordKind::Weapon)
            record = {here->kind, here->index};
        else if (here->kind == RecordKind::State)
            selected = Target{TargetKind::State, here->index};
    }
    const auto make = [&] {
        return record ? GraphOf(program_.patch, engine, program_.fixedUses, record->first, record->second, mostNodes)
                      : StateGraph();
    };
    StateGraph graph = stale_ || record != record_ ? make() : scene_->Graph();
    bool isNew = stale_ || record != record_;
    if (selected && !graph.Find(*selected)) {
        record = NearestUser(set, engine, selected->number);
        if (!record)
            return ShowNone(tr("Nothing comes to frame %1.").arg(selected->number));
        graph = make();
        isNew = true;
    }
    if (graph.nodes.empty())
        return ShowNone(record ? tr("It has no states.")
                               : tr("Select a thing or weapon in its editor, or a state that one of them comes to."));
    if (isNew) {
        const bool same = record == record_;
        const auto current = scene_->Current();
        if (!selected && same && current)
            selected = scene_->Graph().nodes[*current].target;
        record_ = record;
        stale_ = false;
        scene_->Show(std::move(graph), same);
        legend_->Show(scene_->Graph());
        setWindowTitle(tr("State graph: %1").arg(ShownStart(RecordName(set, record->first, record->second))));
        summary_->setText(Summary());
        for (QAction* action : onGraph_)
            action->setEnabled(true);
        if (!same)
            view_->ShowAtFirst();
    }
    const auto node = selected ? scene_->Graph().Find(*selected) : scene_->Current();
    if (!isNew && node == scene_->Current())
        return; // nothing moves under the mouse
    scene_->Current(node);
    view_->ShowCurrent();
}

QString StateGraphDock::Summary() const {
    const StateGraph& graph = scene_->Graph();
    const QLocale locale = QLocale(QLocale::English);
    const auto count = [&](auto is) { return static_cast<int>(std::ranges::count_if(graph.nodes, is)); };
    const int states = count([](const auto& node) { return node.target.kind == TargetKind::State; });
    QStringList texts{graph.all > graph.nodes.size()
                          ? tr("Shows the first %1 of %2 states.")
                                .arg(locale.toString(states), locale.toString(static_cast<qulonglong>(graph.all)))
                      : states == 1 ? tr("1 state.")
                                    : tr("%1 states.").arg(states)};
    if (const int unreached = count([](const auto& node) { return !node.reached; }); unreached > 0)
        texts.append(unreached == 1 ? tr("Nothing comes to 1 of them.")
                                    : tr("Nothing comes to %1 of them.").arg(unreached));
    if (const int timeless = count([](const auto& node) { return node.timeless; }); timeless > 0)
        texts.append(tr("Games hang in a circle of 0 tics."));
    return texts.join(QLatin1Char(' '));
}

void StateGraphDock::SelectState(std::size_t node) {
    const Target& target = scene_->Graph().nodes[node].target;
    if (target.kind == TargetKind::State)
        editors_.Select(RecordKind::State, target.number);
}

void StateGraphDock::Open(std::size_t node) {
    const Target target = scene_->Graph().nodes[node].target;
    editors_.ShowRecord(*RecordKindOf(target.kind), target.number);
}

/// That of the record, as a file may be called.
QString StateGraphDock::FileName() const {
    return ShownStart(RecordName(program_.patch.current, record_->first, record_->second))
        .replace(QLatin1Char('/'), QLatin1Char('-'));
}

void StateGraphDock::Export() {
    const QString file = dialogs_.SaveFile(tr("Export state graph"), QString::fromLatin1(pictureFilter),
                                           FileName() + QStringLiteral(".svg"));
    if (file.isEmpty())
        return;
    if (const Status status = ExportGraph(*scene_, windowTitle(), StoredPath(file)); !status)
        program_.notifier.Show(MessageKind::Exclamation, file.toStdString() + ": " + status.Reason());
    else
        editors_.ShowStatus(tr("%1 was written").arg(file));
}

void StateGraphDock::Print() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(FileName()); // by which a queue knows it, and a file is called
    const QRectF drawn = scene_->Drawn();
    printer.setPageOrientation(drawn.width() > drawn.height() ? QPageLayout::Landscape : QPageLayout::Portrait);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted && !PrintGraph(*scene_, windowTitle(), printer))
        program_.notifier.Show(MessageKind::Exclamation, "The printer does not take the state graph.");
}

} // namespace plinket3
