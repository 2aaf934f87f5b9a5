#include "bench/ProcessFigures.h"

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

/// Not what getrusage tells, which is at least what the process that started this one had.
long PeakKib() {
    std::ifstream file("/proc/self/status");
    for (std::string word; file >> word;)
        if (long kib = 0; word == "VmHWM:" && file >> kib)
            return kib;
    return 0;
}

} // namespace

double ProcessMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_nsec) / 1e6 - StartMilliseconds();
}

void PrintFigure(const char* name, double milliseconds) {
    std::cout << name << ' ' << milliseconds << ' ' << PeakKib() << std::endl;
}

} // namespace plinket3
