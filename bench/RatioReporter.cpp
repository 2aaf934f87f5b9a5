#include "bench/RatioReporter.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace plinket3::bench {

namespace {

/// A figure must be at most `limit` times its floor, or, without one, at most `limit` seconds.
struct Target {
    const char* name;
    const char* floor; // empty for none
    double limit;
};
constexpr std::array targets{
    Target{"ReadPatch/1000000", "SplitLinesFloor/1000000", 4},
    Target{"ReadPatch/10000", "SplitLinesFloor/10000", 4},
    Target{"ReadPatch/1000000", "ReadPatch/100000", 11},
    Target{"WritePatch/1000000", "CopyLinesFloor/1000000", 4},
    Target{"WritePatch/10000", "CopyLinesFloor/10000", 4},
    Target{"WritePatch/1000000", "WritePatch/100000", 11},
    Target{"LoadEngine/0", "", 0.005},
    Target{"LoadEngine/1", "", 0.005},
    Target{"OpenWad", "ReadDirectoryFloor", 3},
};

} // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        allReached_ = allReached_ && !run.error_occurred;
        if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0)
            continue;
        const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
        const auto [known, added] = seconds_.try_emplace(run.run_name.str(), seconds);
        if (seconds < known->second)
            known->second = seconds;
    }
    ConsoleReporter::ReportRuns(runs);
}

void RatioReporter::Finalize() {
    constexpr double milliseconds = 1000;
    std::printf("\n%-20s %12s   %-24s %12s %9s %9s\n", "figure", "ms", "floor", "ms", "result", "target");
    for (const Target& target : targets) {
        const auto figure = seconds_.find(target.name), floor = seconds_.find(target.floor);
        const bool absolute = std::string_view(target.floor).empty();
        if (figure == seconds_.end() || (!absolute && floor == seconds_.end()))
            continue;
        const double result = absolute ? figure->second : figure->second / floor->second;
        const bool reached = result <= target.limit;
        allReached_ = allReached_ && reached;
        if (absolute)
            std::printf("%-20s %12.4f   %-24s %12s %6.2f ms %6.2f ms", target.name, figure->second * milliseconds, "",
                        "", result * milliseconds, target.limit * milliseconds);
        else
            std::printf("%-20s %12.4f   %-24s %12.4f %7.2f x %7.2f x", target.name, figure->second * milliseconds,
                        target.floor, floor->second * milliseconds, result, target.limit);
        std::printf("%s\n", reached ? "" : "   MISSED");
    }
}

} // namespace plinket3::bench
