#include "core/Files.h"
#include "core/Paths.h"
#include "patch/modPatchFiles.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace plinket3::modPatchFiles {

namespace {

Status ReadBeside(const std::filesystem::path& patch, std::string name, std::string& bytes) {
    Status outside = Status::Failure("names a patch outside of this one's folder, which is not read");
    std::ranges::replace(name, '\\', '/');
    if (name.empty())
        return Status::Failure("names no patch");
    std::error_code error;
    const std::filesystem::path folder =
        std::filesystem::weakly_canonical(std::filesystem::absolute(patch, error).parent_path(), error);
    const std::filesystem::path wanted = PathOf(name);
    if (error || wanted.is_absolute() || wanted.has_root_name() || name.find(':') != std::string::npos)
        return outside;
    const std::filesystem::path file =
        std::filesystem::weakly_canonical(ResolveIgnoringCase(folder / wanted), error); // links may lead anywhere
    if (error || file.lexically_relative(folder).begin() == file.lexically_relative(folder).end() ||
        *file.lexically_relative(folder).begin() == "..")
        return outside;
    if (const Status status = ReadWholeFile(file, bytes); !status)
        return Status::Failure("names a patch that cannot be read: " + status.Reason());
    return {};
}

} // namespace

IncludeReader IncludesBeside(std::filesystem::path patch) {
    return [patch = std::move(patch)](std::string_view name, std::string& bytes) {
        return ReadBeside(patch, std::string(name), bytes);
    };
}

} // namespace plinket3::modPatchFiles
