#include "cli/Cli.h"
#include "core/ProgramFolder.h"

#include <iostream>

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    return plinket3::cli::RunCli({argv + 1, argv + argc}, plinket3::ProgramFolder(argv[0]), std::cout, std::cerr);
}
