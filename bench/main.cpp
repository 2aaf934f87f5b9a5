#include "bench/BenchFiles.h"
#include "bench/GeneratedPatch.h"
#include "core/ProgramFolder.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <iostream>

/// plinket3_bench [--write-data FOLDER | --iwad FILE] [Google Benchmark's options]
/// figures.py sets what it measures against what is promised.
int main(int argc, char** argv) {
    using namespace plinket3::bench;
    dataFolder = plinket3::ProgramFolder(argv[0]);
    iwadFile = "/usr/share/games/doom/freedoom2.wad";
    if (argc == 3 && std::strcmp(argv[1], "--write-data") == 0) {
        const plinket3::Status written = WriteDataFolder(argv[2]);
        if (written)
            return 0;
        std::cerr << written.Reason() << '\n';
        return 2;
    }
    benchmark::Initialize(&argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--iwad") == 0) {
        iwadFile = argv[2];
    } else if (argc != 1) {
        std::cerr << "usage: plinket3_bench [--write-data FOLDER | --iwad FILE] [--benchmark_...]\n";
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
