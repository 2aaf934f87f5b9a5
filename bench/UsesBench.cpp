#include "bench/BenchFiles.h"
#include "core/Files.h"
#include "patch/FreeRecords.h"
#include "patch/GraphLayout.h"
#include "patch/NewRecords.h"
#include "patch/Problems.h"
#include "patch/Uses.h"
#include "patch/modTables.h"

#include <benchmark/benchmark.h>

namespace plinket3::bench {

namespace {

constexpr std::int32_t firstState = 5000, stateCount = 7400, monsters = 137;

/// A DSDHacked patch as large ones are: states behind those of the engine, each with an action that names a thing.
struct ModernPatch {
    ModernPatch() {
        std::string bytes;
        if (!modConfig::LoadEngine(dataFolder / "config" / "dsdhacked.cfg", engine) ||
            !ReadWholeFile(modTables::TablePath(dataFolder, engine), bytes) ||
            !modTables::ParseTable(bytes, engine, defaults))
            return;
        fixedUses = LoadFixedUses(dataFolder, engine);
        set = defaults;
        const std::int32_t spawn = engine.CodePointerOf("SpawnObject").value_or(0);
        for (std::int32_t number = firstState; number < firstState + stateCount; ++number) {
            StateRecord state = NewRecord<StateRecord>(number);
            state.nextState = number + 1 < firstState + stateCount ? number + 1 : 0;
            state.codePointer = spawn;
            SetValue(state, FieldOf(&StateRecord::arg1), number % monsters + 1);
            set.states.Add(number, state);
        }
    }
    EngineConfiguration engine;
    std::vector<FixedUse> fixedUses;
    PatchSet defaults, set;
};

const ModernPatch& Modern() {
    static const ModernPatch patch;
    return patch;
}

void FindUses(benchmark::State& state) {
    const ModernPatch& patch = Modern();
    for ([[maybe_unused]] auto once : state)
        if (UsesOf(patch.set, patch.engine, patch.fixedUses, {TargetKind::Thing, 1}).size() < stateCount / monsters)
            state.SkipWithError("uses were not found");
}
BENCHMARK(FindUses)->Unit(benchmark::kMillisecond);

void FindFreeStates(benchmark::State& state) {
    const ModernPatch& patch = Modern();
    for ([[maybe_unused]] auto once : state)
        if (FindFree(patch.set, patch.defaults, patch.engine, patch.fixedUses, RecordKind::State).Count() < stateCount)
            state.SkipWithError("free states were not found");
}
BENCHMARK(FindFreeStates)->Unit(benchmark::kMillisecond);

/// A monster of so many states in runs of 20, each of which jumps into others.
void LayOutStates(benchmark::State& state) {
    const auto count = static_cast<std::int32_t>(state.range(0));
    ModernPatch patch;
    PatchData data;
    data.defaults = patch.defaults;
    data.current = patch.set;
    const std::int32_t jump = patch.engine.CodePointerOf("JumpIfHealthBelow").value_or(0);
    for (std::int32_t number = firstState; number < firstState + count; ++number) {
        StateRecord& each = data.current.states[number];
        each.duration = 4;
        if (number % 20 == 0)
            each.nextState = number - 15;
        if (number % 5 != 0)
            continue;
        each.codePointer = jump;
        SetValue(each, FieldOf(&StateRecord::arg1), number + 1 < firstState + count ? number + 1 : firstState);
    }
    data.current.states[firstState + count - 1].nextState = 0;
    data.current.things[0].deathState = firstState;
    for ([[maybe_unused]] auto once : state) {
        const StateGraph graph = GraphOf(data, patch.engine, patch.fixedUses, RecordKind::Thing, 0, 2000);
        if (LayOut(graph, {}).routes.size() < static_cast<std::size_t>(count))
            state.SkipWithError("states are missing");
    }
}
BENCHMARK(LayOutStates)->Arg(500)->Arg(1900)->Unit(benchmark::kMillisecond);

/// With the copy that the window makes, of the patch as it is when its file has been opened and one value was edited.
void FindProblems(benchmark::State& state) {
    const ModernPatch& modern = Modern();
    EngineConfiguration engine = modern.engine;
    engine.dialect = engine.dialect.AsEngines();
    PatchData patch;
    patch.defaults = modern.defaults;
    patch.current = modern.set;
    if (!modPatchFiles::ReadBytes(modPatchFiles::FormatPatch(patch, engine), engine, patch).status)
        return state.SkipWithError("the patch was not read");
    patch.current.states[firstState + stateCount / 2].nextState = 1'000'000;
    for ([[maybe_unused]] auto once : state) {
        const PatchData copy = patch;
        const EngineConfiguration copiedEngine = engine;
        if (ProblemsOf(copy, copiedEngine, {}).empty())
            state.SkipWithError("the problem was not found");
    }
}
BENCHMARK(FindProblems)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace plinket3::bench
