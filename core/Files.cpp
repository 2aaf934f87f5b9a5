#include "core/Files.h"

#include "core/Paths.h"
#include "core/System.h"
#include "core/Text.h"

#include <algorithm>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

namespace plinket3 {

namespace {

Status OpenRegularFile(const std::filesystem::path& file, SystemFile& opened) {
    if (Status status = opened.Open(file); !status)
        return status;
    if (opened.FileKind() == SystemFile::Kind::Folder)
        return Status::Failure("is a folder");
    if (opened.FileKind() != SystemFile::Kind::Regular)
        return Status::Failure("is not a regular file");
    return {};
}

} // namespace

Status ReadWholeFile(const std::filesystem::path& file, std::string& bytes, std::uint64_t limit) try {
    bytes.clear();
    SystemFile opened;
    if (Status status = OpenRegularFile(file, opened); !status)
        return status;

    // One byte more than the size shows at the first reading whether the file has grown since.
    std::string content;
    std::uint64_t room = opened.Size() + 1;
    for (;;) {
        if (room - 1 > limit)
            return Status::Failure("is larger than " + std::to_string(limit) + " bytes");
        const std::size_t done = content.size();
        content.resize(static_cast<std::size_t>(room));
        std::size_t count = 0;
        if (Status status = opened.Read(content.data() + done, content.size() - done, count); !status)
            return status;
        content.resize(done + count);
        if (content.size() < room)
            break;
        room = std::max(room + 1, std::min(room * 2, limit + 1));
    }
    bytes = std::move(content);
    return {};
} catch (const std::bad_alloc&) {
    return Status::Failure("does not fit into memory");
} catch (const std::length_error&) {
    return Status::Failure("does not fit into memory");
}

Status ReadStartOfFile(const std::filesystem::path& file, std::string& bytes, std::uint64_t limit, bool& cut) {
    bytes.clear();
    cut = false;
    SystemFile opened;
    if (Status status = OpenRegularFile(file, opened); !status)
        return status;
    const std::uint64_t size = opened.Size();
    std::string content(static_cast<std::size_t>(std::min(size, limit)), '\0');
    std::size_t count = 0;
    if (Status status = opened.Read(content.data(), content.size(), count); !status)
        return status;
    content.resize(count);
    bytes = std::move(content);
    cut = size > limit;
    return {};
}

Status WriteFileAtomically(const std::filesystem::path& file, std::string_view bytes) {
    return ReplaceContent(file, {&bytes, 1});
}

Status WriteFileAtomically(const std::filesystem::path& file, const BytePieces& bytes) {
    return ReplaceContent(file, bytes.Pieces());
}

Status CopyFileAtomically(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::string bytes;
    if (Status read = ReadWholeFile(from, bytes); !read)
        return read;
    const std::string_view whole = bytes;
    return ReplaceContent(to, {&whole, 1}, &from);
}

std::filesystem::path ResolveIgnoringCase(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::exists(path, error))
        return path;
    std::filesystem::path resolved;
    for (const std::filesystem::path& part : path) {
        const std::filesystem::path exact = resolved / part;
        if (std::filesystem::exists(exact, error)) {
            resolved = exact;
            continue;
        }
        std::optional<std::string> best;
        std::filesystem::directory_iterator entry(resolved.empty() ? "." : resolved, error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            std::string name = PathText(entry->path().filename());
            if (EqualIgnoringCase(name, PathText(part)) && (!best || name < *best))
                best = std::move(name);
        }
        if (!best)
            return path;
        resolved /= *best;
    }
    return resolved;
}

bool FileExists(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

bool NamesOneOf(const std::filesystem::path& path, const std::vector<std::filesystem::path>& others) {
    return std::ranges::any_of(others, [&path](const std::filesystem::path& other) {
        std::error_code ignored; // nothing is there
        return std::filesystem::equivalent(path, other, ignored);
    });
}

std::vector<std::filesystem::path> FoldersIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> folders;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (std::error_code ignored; entry->is_directory(ignored))
            folders.push_back(entry->path());
    std::ranges::sort(folders);
    return folders;
}

} // namespace plinket3
