#include "cli/Cli.h"
#include "core/ProgramFolder.h"
#include "core/System.h"

#include <iostream>

int main(int argc, char** argv) {
    plinket3::KeepLargeBlocks(); // tables are read and let go one after the other
    std::ios::sync_with_stdio(false);
    return plinket3::cli::RunCli(plinket3::CommandLineArguments(argc, argv), plinket3::ProgramFolder(argv[0]),
                                 std::cout, std::cerr);
}
