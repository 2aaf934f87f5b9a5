#include "bench/Floors.h"
#include "bench/GeneratedPatch.h"
#include "core/Files.h"
#include "patch/Compare.h"
#include "patch/CopyChoice.h"
#include "patch/PatchDocument.h"
#include "patch/modPatchFiles.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <utility>

namespace plinket3::bench {

namespace {

/// A generated patch and its bytes, made once for each size.
struct PatchCase {
    GeneratedPatch generated;
    std::string bytes;
};

const PatchCase& CaseOf(std::int64_t lines) {
    static std::map<std::int64_t, PatchCase> cases;
    PatchCase& made = cases[lines];
    if (made.bytes.empty()) {
        made.generated = GeneratePatch(static_cast<std::size_t>(lines));
        made.bytes = modPatchFiles::FormatPatch(made.generated.patch, made.generated.engine);
    }
    return made;
}

void CountBytes(benchmark::State& state, const std::string& bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bytes.size()));
}

void ReadPatch(benchmark::State& state) {
    const auto& [generated, bytes] = CaseOf(state.range(0));
    for ([[maybe_unused]] auto once : state) {
        PatchSet set;
        const modPatchFiles::ReadResult read =
            modPatchFiles::ParsePatch(bytes, generated.engine, generated.patch.defaults, set);
        if (!read.status || std::as_const(set).states.back() != generated.patch.current.states.back()) {
            state.SkipWithError("the patch was not read");
            break;
        }
        benchmark::DoNotOptimize(set);
    }
    CountBytes(state, bytes);
}
BENCHMARK(ReadPatch)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

/// The same by engine rules, as a document. What it keeps beside the set is counted, too, but not closing it.
void OpenDocument(benchmark::State& state) {
    const auto& [generated, bytes] = CaseOf(state.range(0));
    EngineConfiguration engine = generated.engine;
    engine.dialect = engine.dialect.AsEngines();
    for ([[maybe_unused]] auto once : state) {
        state.PauseTiming();
        PatchDocument document;
        PatchSet set;
        std::string copy = bytes;
        state.ResumeTiming();
        if (!document.Read(std::move(copy), engine, generated.patch.defaults, set).status ||
            std::as_const(set).states.back() != generated.patch.current.states.back()) {
            state.SkipWithError("the patch was not read");
            break;
        }
        benchmark::DoNotOptimize(set);
        state.PauseTiming();
        document = PatchDocument();
        state.ResumeTiming();
    }
    CountBytes(state, bytes);
}
BENCHMARK(OpenDocument)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

/// Opens a document, changes a value and writes it. The other half is what writing the same bytes alone takes.
void SaveDocument(benchmark::State& state) {
    const auto& [generated, bytes] = CaseOf(state.range(0));
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "plinket3_bench.deh";
    PatchData patch = generated.patch;
    EngineConfiguration engine = generated.engine;
    engine.dialect = engine.dialect.AsEngines();
    auto document = std::make_shared<PatchDocument>();
    if (!document->Read(bytes, engine, patch.defaults, patch.current).status)
        state.SkipWithError("the patch was not read");
    patch.document = document;
    patch.current.states[patch.current.states.size() / 2].duration += 1;
    const bool merges = state.range(1) != 0;
    for ([[maybe_unused]] auto once : state) {
        BytePieces saved;
        saved.Borrow(bytes);
        if ((merges && !modPatchFiles::FormatForSaving(patch, engine, saved)) || !WriteFileAtomically(file, saved)) {
            state.SkipWithError("the patch was not saved");
            break;
        }
    }
    std::filesystem::remove(file);
    CountBytes(state, bytes);
}
BENCHMARK(SaveDocument)->Args({1'000'000, 0})->Args({1'000'000, 1})->Unit(benchmark::kMillisecond)->UseRealTime();

/// Compares a patch that changes all of some 7,400 states with one that has another duration and next state in each,
/// and takes all of it over: all that is done between choosing the file and the values in the open patch.
void ComparePatches(benchmark::State& state) {
    const GeneratedPatch& generated = CaseOf(66'600).generated;
    const PatchSet &here = generated.patch.current, &defaults = generated.patch.defaults;
    PatchData other = generated.patch;
    for (StateRecord& record : other.current.states.Dense()) {
        ++record.duration;
        ++record.nextState;
    }
    const std::string bytes = modPatchFiles::FormatPatch(other, generated.engine);
    for ([[maybe_unused]] auto once : state) {
        PatchSet there;
        const bool read = static_cast<bool>(modPatchFiles::ParsePatch(bytes, generated.engine, defaults, there).status);
        const std::vector<Difference> differences = Compare(here, there, defaults);
        if (!read || differences.size() != 2 * here.states.size() ||
            TakeOver(differences, here, there).size() != differences.size()) {
            state.SkipWithError("the patches were not compared");
            break;
        }
    }
    state.SetLabel(std::to_string(here.states.size()) + " states");
}
BENCHMARK(ComparePatches)->Unit(benchmark::kMillisecond);

/// What a monster of 60 states takes along out of a patch of some 7,400, and its text.
void CopyMonster(benchmark::State& state) {
    const GeneratedPatch& generated = CaseOf(66'600).generated;
    PatchData patch = generated.patch;
    constexpr std::int32_t first = 5000, count = 60;
    for (std::int32_t i = first; i < first + count; ++i)
        patch.current.states[i].nextState = i + 1 < first + count ? i + 1 : first;
    ThingRecord& monster = patch.current.things[0];
    for (const auto frame : {&ThingRecord::initialState, &ThingRecord::firstMovingState, &ThingRecord::injuryState,
                             &ThingRecord::closeAttackState, &ThingRecord::farAttackState, &ThingRecord::deathState,
                             &ThingRecord::explodingState, &ThingRecord::respawnState})
        monster.*frame = first;
    for ([[maybe_unused]] auto once : state) {
        const std::set<RecordId> chosen = CopyChoice(patch, generated.engine, {{RecordKind::Thing, 0}}).Chosen();
        const auto states = std::ranges::count(chosen, RecordKind::State, &RecordId::first);
        if (states != count || modPatchFiles::FormatRecords(patch, generated.engine, chosen).empty()) {
            state.SkipWithError("the monster was not copied");
            break;
        }
    }
    state.SetLabel(std::to_string(patch.current.states.size()) + " states");
}
BENCHMARK(CopyMonster)->Unit(benchmark::kMillisecond);

void SplitLinesFloor(benchmark::State& state) {
    const std::string& bytes = CaseOf(state.range(0)).bytes;
    for ([[maybe_unused]] auto once : state)
        benchmark::DoNotOptimize(SplitLines(bytes));
    CountBytes(state, bytes);
}
BENCHMARK(SplitLinesFloor)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void WritePatch(benchmark::State& state) {
    const auto& [generated, bytes] = CaseOf(state.range(0));
    for ([[maybe_unused]] auto once : state)
        benchmark::DoNotOptimize(modPatchFiles::FormatPatch(generated.patch, generated.engine));
    CountBytes(state, bytes);
}
BENCHMARK(WritePatch)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void CopyLinesFloor(benchmark::State& state) {
    const std::string& bytes = CaseOf(state.range(0)).bytes;
    for ([[maybe_unused]] auto once : state)
        benchmark::DoNotOptimize(CopyLines(bytes));
    CountBytes(state, bytes);
}
BENCHMARK(CopyLinesFloor)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace plinket3::bench
