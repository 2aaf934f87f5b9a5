#include "bench/BenchFiles.h"
#include "bench/GeneratedPatch.h"
#include "bench/RatioReporter.h"
#include "core/ProgramFolder.h"

#include <cstring>
#include <iostream>

/// plinket3_bench [--write-data FOLDER | --iwad FILE] [Google Benchmark's options]
/// 0 when every target was reached, 1 when one was missed, 2 when something could not be done.
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
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.AllReached() ? 0 : 1;
}
