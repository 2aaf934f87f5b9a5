#include "bench/Floors.h"
#include "bench/GeneratedPatch.h"
#include "patch/modPatchFiles.h"

#include <benchmark/benchmark.h>

#include <map>

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
        if (!read.status || set.states.back() != generated.patch.current.states.back()) {
            state.SkipWithError("the patch was not read");
            break;
        }
        benchmark::DoNotOptimize(set);
    }
    CountBytes(state, bytes);
}
BENCHMARK(ReadPatch)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

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
