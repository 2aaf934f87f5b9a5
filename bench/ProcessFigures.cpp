#include "bench/ProcessFigures.h"

#include <sys/resource.h>
#include <unistd.h>

#include <ctime>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace plinket3 {

namespace {

constexpr int startTimeField = 20; // of /proc/self/stat, counted behind the program's name in brackets

/// When the process was started, in milliseconds since the machine was; in steps of a clock tick (10 ms).
double StartMilliseconds() {
    std::ifstream file("/proc/self/stat");
    std::string text;
    std::getline(file, text);
    std::istringstream fields(text.substr(text.rfind(')') + 1));
    std::string field;
    for (int i = 0; i < startTimeField; ++i)
        fields >> field;
    return std::stod(field) * 1000.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

} // namespace

double ProcessMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_nsec) / 1e6 - StartMilliseconds();
}

void PrintProcessFigures(const char* name) {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::cout << name << ' ' << ProcessMilliseconds() << ' ' << usage.ru_maxrss << std::endl;
}

} // namespace plinket3
