#include "cli/Cli.h"
#include "core/ProgramFolder.h"
#include "core/System.h"

#include <iostream>
#ifdef __GLIBC__
#include <malloc.h>
#endif

int main(int argc, char** argv) {
#ifdef __GLIBC__
    // Tables are read and let go one after the other: memory that goes back to the system each time and is asked for
    // anew costs more than reading them.
    mallopt(M_MMAP_THRESHOLD, 4 << 20);
    mallopt(M_TRIM_THRESHOLD, 16 << 20);
#endif
    std::ios::sync_with_stdio(false);
    return plinket3::cli::RunCli(plinket3::CommandLineArguments(argc, argv), plinket3::ProgramFolder(argv[0]),
                                 std::cout, std::cerr);
}
