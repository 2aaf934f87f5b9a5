#include "tools/EngineBuilder.h"

#include <iostream>

/// build_engines DATA OUTPUT: 0 when all files were written, else 2 and one line on standard error.
int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: build_engines DATA_DIR OUT_DIR\n";
        return 2;
    }
    const plinket3::Status built = plinket3::tools::BuildEngines(argv[1], argv[2]);
    if (built)
        return 0;
    std::cerr << built.Reason() << '\n';
    return 2;
}
