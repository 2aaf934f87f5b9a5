#include "bench/BenchFiles.h"
#include "bench/Floors.h"
#include "core/Files.h"
#include "patch/modTables.h"
#include "wad/clsBitmap.h"
#include "wad/modWADList.h"

#include <benchmark/benchmark.h>

namespace plinket3::bench {

namespace {

void OpenWad(benchmark::State& state) {
    for ([[maybe_unused]] auto once : state) {
        clsWad wad;
        wad.OpenWad(iwadFile);
        if (wad.LumpCount() == 0)
            state.SkipWithError("the WAD was not opened");
        benchmark::DoNotOptimize(wad);
    }
}
BENCHMARK(OpenWad)->Unit(benchmark::kMicrosecond);

void ReadDirectoryFloor(benchmark::State& state) {
    for ([[maybe_unused]] auto once : state)
        benchmark::DoNotOptimize(ReadDirectory(iwadFile));
}
BENCHMARK(ReadDirectoryFloor)->Unit(benchmark::kMicrosecond);

WadList OpenIwad() {
    WadList wads;
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(iwadFile);
    if (!wads.RegisterWad(wad))
        wads.ClearWads();
    return wads;
}

/// The preview of every state of an engine, as its list of states would ask for them.
void FindSprites(benchmark::State& state) {
    const WadList wads = OpenIwad();
    EngineConfiguration engine;
    std::string bytes;
    PatchSet set;
    if (!modConfig::LoadEngine(dataFolder / "config" / "doom19.cfg", engine) ||
        !ReadWholeFile(modTables::TablePath(dataFolder, engine), bytes) || !modTables::ParseTable(bytes, engine, set))
        state.SkipWithError("the engine was not loaded");
    for ([[maybe_unused]] auto once : state)
        for (const StateRecord& record : set.states.Dense())
            benchmark::DoNotOptimize(
                ChooseSpriteFrame(wads, set.SpriteName(record.sprite), record.subnumber & ~litBit));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(set.states.size()));
}
BENCHMARK(FindSprites)->Unit(benchmark::kMillisecond);

/// Every lump between the sprite markers, read from the file and decoded.
void DecodeSprites(benchmark::State& state) {
    clsWad wad;
    wad.OpenWad(iwadFile);
    const std::string palette = wad.ReadLumpString(wad.NumForName("PLAYPAL"));
    const int first = wad.NumForName("S_START") + 1, end = wad.NumForName("S_END");
    for ([[maybe_unused]] auto once : state)
        for (int lump = first; lump < end; ++lump) {
            clsBitmap bitmap;
            if (!DecodePicture(wad.ReadLumpString(lump), palette, bitmap))
                state.SkipWithError("a sprite was not decoded");
            benchmark::DoNotOptimize(bitmap);
        }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * (end - first));
}
BENCHMARK(DecodeSprites)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace plinket3::bench
