#include "bench/BenchFiles.h"
#include "core/Files.h"
#include "patch/modTables.h"

#include <benchmark/benchmark.h>

#include <array>

namespace plinket3::bench {

namespace {

constexpr std::array engineNames{"doom19", "dehextra21"}; // the smallest and the largest that are shipped

std::filesystem::path ConfigurationFile(std::int64_t engine) {
    return dataFolder / "config" / (std::string(engineNames[static_cast<std::size_t>(engine)]) + ".cfg");
}

void EachEngine(benchmark::internal::Benchmark* benchmark) {
    for (std::size_t engine = 0; engine < engineNames.size(); ++engine)
        benchmark->Arg(static_cast<std::int64_t>(engine));
    benchmark->Unit(benchmark::kMillisecond);
}

void LoadConfiguration(benchmark::State& state) {
    state.SetLabel(engineNames[static_cast<std::size_t>(state.range(0))]);
    for ([[maybe_unused]] auto once : state) {
        clsConfiguration configuration;
        if (!configuration.LoadConfiguration(ConfigurationFile(state.range(0))))
            state.SkipWithError("the configuration was not read");
        benchmark::DoNotOptimize(configuration);
    }
}
BENCHMARK(LoadConfiguration)->Apply(EachEngine);

void LoadTable(benchmark::State& state) {
    state.SetLabel(engineNames[static_cast<std::size_t>(state.range(0))]);
    EngineConfiguration engine;
    if (!modConfig::LoadEngine(ConfigurationFile(state.range(0)), engine))
        state.SkipWithError("the configuration was not read");
    for ([[maybe_unused]] auto once : state) {
        std::string bytes;
        PatchSet set;
        if (!ReadWholeFile(modTables::TablePath(dataFolder, engine), bytes) ||
            !modTables::ParseTable(bytes, engine, set))
            state.SkipWithError("the table was not read");
        benchmark::DoNotOptimize(set);
    }
}
BENCHMARK(LoadTable)->Apply(EachEngine);

/// What choosing an engine costs: its configuration and its table.
void LoadEngine(benchmark::State& state) {
    state.SetLabel(engineNames[static_cast<std::size_t>(state.range(0))]);
    for ([[maybe_unused]] auto once : state) {
        EngineConfiguration engine;
        std::string bytes;
        PatchSet set;
        if (!modConfig::LoadEngine(ConfigurationFile(state.range(0)), engine) ||
            !ReadWholeFile(modTables::TablePath(dataFolder, engine), bytes) ||
            !modTables::ParseTable(bytes, engine, set))
            state.SkipWithError("the engine was not loaded");
        benchmark::DoNotOptimize(set);
    }
}
BENCHMARK(LoadEngine)->Apply(EachEngine);

} // namespace

} // namespace plinket3::bench
