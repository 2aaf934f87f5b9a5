#include "core/ProgramFolder.h"

namespace plinket3 {

std::filesystem::path ProgramFolder(const std::filesystem::path& invokedAs) {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::canonical("/proc/self/exe", error);
    if (!error)
        return self.parent_path();
    return std::filesystem::weakly_canonical(std::filesystem::absolute(invokedAs), error).parent_path();
}

} // namespace plinket3
