#include "core/ProgramFolder.h"

#include "core/System.h"

namespace plinket3 {

std::filesystem::path ProgramFolder(const std::filesystem::path& invokedAs) {
    if (const std::filesystem::path program = RunningProgram(); !program.empty())
        return program.parent_path();
    std::error_code error;
    return std::filesystem::weakly_canonical(std::filesystem::absolute(invokedAs), error).parent_path();
}

} // namespace plinket3
