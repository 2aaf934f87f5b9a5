#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace plinket3::bench {

/// Prints what was measured as usual and, at the end, one table: each figure against its floor or its limit.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;
    /// False when a figure misses its target or could not be taken; one that was not asked for counts as reached.
    bool AllReached() const { return allReached_; }

private:
    std::map<std::string, double> seconds_; // of processor time, the least of all repetitions
    bool allReached_ = true;
};

} // namespace plinket3::bench
