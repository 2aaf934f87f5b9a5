// How long the state editor takes for what a user does to many states at once, and finding among them; figures.py sets
// it against its limits.
//   plinket3_editor_lists PROGRAM-FOLDER IWAD
#include "bench/ProcessFigures.h"
#include "core/modConfig.h"
#include "patch/Arguments.h"
#include "patch/Session.h"
#include "tools/SilentNotifier.h"
#include "ui/Audio.h"
#include "ui/EditorSet.h"
#include "ui/FindDock.h"
#include "ui/graph/StateGraphDock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMdiArea>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <functional>
#include <iostream>
#include <vector>

namespace {

using namespace plinket3;

constexpr int repetitions = 9;
constexpr int manyRows = 1000;
constexpr int graphStates = 500, runOfGraph = 20;
constexpr std::size_t manyStates = 100'000, statesWithArguments = 50'000, modernStates = 7'400,
                      statesWithPictures = 967;

/// Prints the median of the times that `act` takes until its outcome is on the screen; `prepare` goes before each.
void Measure(const char* name, const std::function<void()>& prepare, const std::function<void()>& act) {
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        prepare();
        QApplication::processEvents();
        QElapsedTimer timer;
        timer.start();
        act();
        QApplication::processEvents();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::nth_element(times.begin(), times.begin() + repetitions / 2, times.end());
    PrintFigure(name, times[repetitions / 2]);
}

/// Makes states that all have arguments, of actions that take different ones.
void GiveArguments(PatchSet& set, const EngineConfiguration& engine, std::size_t states) {
    std::vector<std::int32_t> actions;
    for (const EngineConfiguration::Action& action : engine.actions)
        if (!action.arguments.empty())
            actions.push_back(action.value);
    const ArgumentTable table(engine);
    set.states.resize(states);
    std::size_t next = 0;
    for (StateRecord& state : set.states.Dense()) {
        state.codePointer = actions[next++ % actions.size()];
        for (const StateArgument& argument : table.Of(state.codePointer))
            SetValue(state, fieldTable<StateRecord>[static_cast<std::size_t>(argument.field)], 2);
    }
}

/// Makes `graphStates` states that follow each other in runs, each of which leads back into itself and jumps to the
/// next.
void MakeRuns(PatchSet& set, const EngineConfiguration& engine) {
    const std::int32_t jump = engine.CodePointerOf("JumpIfHealthBelow").value_or(0);
    for (std::int32_t number = 1500; number < 1500 + graphStates; ++number) {
        StateRecord& state = set.states[number];
        state.sprite = 0;
        state.duration = 4;
        const bool ends = number % runOfGraph == runOfGraph - 1;
        state.nextState = ends ? number - runOfGraph + 1 : number + 1;
        state.codePointer = ends ? jump : 0;
        SetValue(state, FieldOf(&StateRecord::arg1), number + 1);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: plinket3_editor_lists PROGRAM-FOLDER IWAD\n";
        return 2;
    }
    QApplication application(argc, argv);
    SilentNotifier notifier;
    Program program(notifier);
    program.programFolder = argv[1];
    program.engines = modConfig::EnumerateEngines(program.programFolder / "config", [](std::string_view) {});
    program.settings.AddIwad("IWAD", argv[2]);
    const auto extended = std::find_if(program.engines.begin(), program.engines.end(),
                                       [](const auto& engine) { return engine.file.filename() == "mbf21.cfg"; });
    Session session;
    if (LoadSession(program, {static_cast<std::size_t>(extended - program.engines.begin()), 0, {}, -1}, session) !=
        SessionResult::Loaded)
        return 1;
    static_cast<Session&>(program) = std::move(session);

    Edits edits(program.patch);
    Audio audio;
    QtFileDialogs dialogs(program.settings, notifier);
    QMdiArea area;
    EditorSet editors(program, edits, audio, dialogs, area);
    editors.Load("frmEditStates");
    area.resize(1000, 800);
    area.show();
    editors.Show(1, true);
    auto& list = *area.findChild<QTableView*>("lvwStates");
    auto& filter = *area.findChild<QLineEdit*>("txtFilter");
    auto& duration = *area.findChild<QLineEdit*>("txtDuration");
    const QModelIndex first = list.model()->index(1, 0);
    const auto select = [&](int row) {
        list.selectionModel()->select({first, list.model()->index(row, 0)},
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    };

    Measure(
        "filter", [&] { filter.clear(); }, [&] { QTest::keyClick(&filter, Qt::Key_P); });
    filter.clear();
    Measure(
        "select", [&] { select(1); }, [&] { select(manyRows); });
    Measure(
        "edit", [&] { edits.Undo(); }, [&] { QTest::keyClick(&duration, Qt::Key_7); });

    // As in the engine's first states, which have pictures, so in all others.
    auto& states = program.patch.current.states.Dense();
    for (std::size_t state = statesWithPictures; state < states.size(); ++state)
        states[state] = states[state % statesWithPictures];
    QScrollBar& bar = *list.verticalScrollBar();
    Measure(
        "new pictures", [&] { editors.Pictures().Clear(); }, [&] { bar.setValue(bar.value() + bar.pageStep()); });

    MakeRuns(program.patch.current, program.engine);
    editors.Load("frmEditThings");
    editors.Show(0, true);
    editors.ShowRecord(RecordKind::Thing, 0);
    StateGraphDock graph(program, edits, editors, dialogs);
    graph.resize(1000, 800);
    graph.show();
    const Cell death{RecordKind::Thing, 0, RowOf(&ThingRecord::deathState)};
    Measure(
        "graph", [&] { edits.Store(death, 0); },
        [&] {
            edits.Store(death, 1500);
            QApplication::processEvents(); // the graph waits for the end of what changes at a time
        });
    graph.hide();
    edits.Clear();
    editors.Show(1, true);

    FindDock dock({program, edits, editors});
    dock.show(); // which makes what is in it
    dock.hide();
    auto& anything = *dock.findChild<QLineEdit*>("txtFind");
    const auto findAnything = [&](const char* name) {
        dock.show();
        Measure(
            name, [&] { anything.clear(); }, [&] { QTest::keyClick(&anything, Qt::Key_A); });
        dock.hide();
    };
    GiveArguments(program.patch.current, program.engine, modernStates);
    findAnything("modern anything");
    GiveArguments(program.patch.current, program.engine, statesWithArguments);
    findAnything("anything");
    edits.Clear();
    editors.Refresh();
    Measure(
        "find arguments", [&] { filter.clear(); }, [&] { QTest::keyClick(&filter, Qt::Key_P); });
    Measure(
        "find nothing", [&] { filter.clear(); }, [&] { QTest::keyClick(&filter, Qt::Key_QuoteDbl); });
    filter.clear();

    for (PatchSet* set : {&program.patch.current, &program.patch.defaults})
        set->states.resize(manyStates);
    edits.Clear();
    editors.Refresh();
    Measure(
        "scroll", [] {}, [&] { bar.setValue(bar.value() + bar.maximum() / (repetitions + 1)); });
    return 0;
}
