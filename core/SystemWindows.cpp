#include "core/System.h"

#include "core/LeftoverName.h"
#include "core/Paths.h"
#include "core/Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <aclapi.h>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

namespace plinket3 {

namespace {

constexpr DWORD allSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD longestTransfer = 1 << 30;

/// What the system says of its last error, without the full stop and the line end that it puts behind it.
Status SystemFailure(DWORD error = GetLastError()) {
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION)
        return Status::Failure("another program has it open");
    wchar_t* text = nullptr;
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring said(text == nullptr ? L"" : text, length);
    LocalFree(text);
    said.erase(said.find_last_not_of(L".\r\n ") + 1);
    return Status::Failure(said.empty() ? "error " + std::to_string(error) : PathText(said));
}

class Handle {
public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    ~Handle() {
        if (IsOpen())
            CloseHandle(handle_);
    }
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    Handle& operator=(Handle&&) = delete;
    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return handle_; }

private:
    HANDLE handle_;
};

/// The whole path, in the form that may be longer than 260 characters. Empty for no path.
std::wstring SystemPath(const std::filesystem::path& file) {
    const DWORD room = GetFullPathNameW(file.c_str(), 0, nullptr, nullptr);
    std::wstring whole(room, L'\0');
    whole.resize(GetFullPathNameW(file.c_str(), room, whole.data(), nullptr));
    if (whole.starts_with(L"\\\\?\\") || whole.starts_with(L"\\\\.\\") || whole.empty())
        return whole;
    return whole.starts_with(L"\\\\") ? L"\\\\?\\UNC" + whole.substr(1) : L"\\\\?\\" + whole;
}

/// "CON", "nul.txt", "COM1": names that mean a device in every folder.
bool IsDevice(const std::filesystem::path& file) {
    constexpr std::string_view devices[]{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    std::string name = PathText(file.filename());
    name.resize(std::min(name.find_first_of(".:"), name.size()));
    name.resize(name.find_last_not_of(' ') + 1);
    const bool numbered = name.size() == 4 && name.back() >= '1' && name.back() <= '9' &&
                          (EqualIgnoringCase(name.substr(0, 3), "COM") || EqualIgnoringCase(name.substr(0, 3), "LPT"));
    return numbered || std::ranges::any_of(devices, [&](auto device) { return EqualIgnoringCase(device, name); }) ||
           SystemPath(file).starts_with(L"\\\\.\\");
}

/// What is there, opened without hindering anybody.
Handle OpenToLook(const std::wstring& path, DWORD access) {
    return Handle(CreateFileW(path.c_str(), access, allSharing, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

/// The file that links and junctions lead to; the path as it is when nothing is there.
std::wstring FollowLinks(std::wstring path) {
    const Handle found = OpenToLook(path, 0);
    if (!found.IsOpen())
        return path;
    const DWORD room = GetFinalPathNameByHandleW(found.Get(), nullptr, 0, FILE_NAME_NORMALIZED);
    std::wstring target(room, L'\0');
    target.resize(GetFinalPathNameByHandleW(found.Get(), target.data(), room, FILE_NAME_NORMALIZED));
    return target.empty() || target.size() >= room ? path : target;
}

bool WriteFully(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD count = 0;
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), longestTransfer));
        if (WriteFile(file, bytes.data(), size, &count, nullptr) == 0)
            return false;
        bytes.remove_prefix(count);
    }
    return true;
}

/// Removes what a program that was killed while it saved has left under this name. False when there is none such, or a
/// running program writes it: that has it open for itself alone.
bool RemoveLeftover(const std::wstring& path) {
    return Handle(CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr))
        .IsOpen();
}

/// Creates a new file in the folder of `target` for what is to replace it, open for this program alone.
Handle CreateBeside(const std::wstring& target) {
    const std::size_t slash = target.find_last_of(L"\\/") + 1;
    const auto name = [&](int number) {
        return target.substr(0, slash) + LeftoverName(target.substr(slash), number).native();
    };
    for (int number = 0; number < mostLeftovers; ++number) {
        const std::wstring created = name(number);
        for (int attempt = 0; attempt < 2; ++attempt) {
            Handle file(CreateFileW(created.c_str(), GENERIC_WRITE | DELETE | WRITE_DAC, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
            if (file.IsOpen()) {
                for (int next = number + 1; RemoveLeftover(name(next));)
                    ++next;
                return file;
            }
            if (GetLastError() != ERROR_FILE_EXISTS)
                return file;
            if (!RemoveLeftover(created))
                break;
        }
    }
    SetLastError(ERROR_SHARING_VIOLATION);
    return Handle(INVALID_HANDLE_VALUE);
}

/// Gives the new file the access list and the attributes of another, as far as user and file system can.
void TakeOver(HANDLE file, const std::wstring& original) {
    const Handle from = OpenToLook(original, READ_CONTROL | FILE_READ_ATTRIBUTES);
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(from.Get(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                        &descriptor) == ERROR_SUCCESS) {
        SECURITY_DESCRIPTOR_CONTROL control = 0;
        DWORD revision = 0;
        GetSecurityDescriptorControl(descriptor, &control, &revision);
        const bool inherits = (control & SE_DACL_PROTECTED) == 0;
        SetSecurityInfo(file, SE_FILE_OBJECT,
                        DACL_SECURITY_INFORMATION |
                            (inherits ? UNPROTECTED_DACL_SECURITY_INFORMATION : PROTECTED_DACL_SECURITY_INFORMATION),
                        nullptr, nullptr, list, nullptr);
        LocalFree(descriptor);
    }
    FILE_BASIC_INFO information{};
    if (GetFileInformationByHandleEx(from.Get(), FileBasicInfo, &information, sizeof information) != 0) {
        FILE_BASIC_INFO attributes{}; // times of 0 stay as they are
        attributes.FileAttributes = information.FileAttributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
        SetFileInformationByHandle(file, FileBasicInfo, &attributes, sizeof attributes);
    }
}

/// Gives an open file another name, in place of what has it. Virus scanners and indexers hold a file for moments.
bool RenameTo(HANDLE file, const std::wstring& target) {
    constexpr int attempts = 20;
    constexpr DWORD pause = 25; // milliseconds
    const std::size_t bytes = target.size() * sizeof(wchar_t);
    std::vector<std::byte> room(sizeof(FILE_RENAME_INFO) + bytes);
    auto* information = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
    information->ReplaceIfExists = TRUE;
    information->FileNameLength = static_cast<DWORD>(bytes);
    std::ranges::copy(target, information->FileName);
    for (int attempt = 1;; ++attempt) {
        if (SetFileInformationByHandle(file, FileRenameInfo, information, static_cast<DWORD>(room.size())) != 0)
            return true;
        const DWORD error = GetLastError();
        if (attempt == attempts || (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION))
            return false;
        Sleep(pause);
        SetLastError(error);
    }
}

/// Removes a file that is open, when it is closed.
void Remove(HANDLE file) {
    FILE_DISPOSITION_INFO information{};
    information.DeleteFile = TRUE;
    SetFileInformationByHandle(file, FileDispositionInfo, &information, sizeof information);
}

HANDLE HandleOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

} // namespace

SystemFile::~SystemFile() {
    if (IsOpen())
        CloseHandle(HandleOf(handle_));
}

SystemFile::SystemFile(SystemFile&& other) noexcept : handle_(std::exchange(other.handle_, closed)) {}

SystemFile& SystemFile::operator=(SystemFile&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

Status SystemFile::Open(const std::filesystem::path& file) {
    *this = SystemFile();
    if (IsDevice(file))
        return Status::Failure("is the name of a device");
    handle_ = reinterpret_cast<std::intptr_t>(CreateFileW(SystemPath(file).c_str(), GENERIC_READ, allSharing, nullptr,
                                                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return IsOpen() ? Status() : SystemFailure();
}

SystemFile::Kind SystemFile::FileKind() const {
    BY_HANDLE_FILE_INFORMATION information{};
    if (!IsOpen() || GetFileType(HandleOf(handle_)) != FILE_TYPE_DISK ||
        GetFileInformationByHandle(HandleOf(handle_), &information) == 0)
        return Kind::Other;
    return (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::Folder : Kind::Regular;
}

std::uint64_t SystemFile::Size() const {
    LARGE_INTEGER size{};
    return IsOpen() && GetFileSizeEx(HandleOf(handle_), &size) != 0 ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

Status SystemFile::Read(char* bytes, std::size_t size, std::size_t& count) {
    count = 0;
    while (count < size) {
        DWORD got = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(size - count, longestTransfer));
        if (ReadFile(HandleOf(handle_), bytes + count, wanted, &got, nullptr) == 0)
            return SystemFailure();
        if (got == 0)
            break;
        count += got;
    }
    return {};
}

std::size_t SystemFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t size) const {
    std::size_t done = 0;
    while (done < size) {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset + done);
        place.OffsetHigh = static_cast<DWORD>((offset + done) >> 32);
        DWORD got = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(size - done, longestTransfer));
        if (ReadFile(HandleOf(handle_), static_cast<char*>(bytes) + done, wanted, &got, &place) == 0 || got == 0)
            break;
        done += got;
    }
    return done;
}

Status ReplaceContent(const std::filesystem::path& file, std::span<const std::string_view> pieces,
                      const std::filesystem::path* like) {
    if (file.empty())
        return Status::Failure("no file name");
    if (IsDevice(file))
        return Status::Failure("is the name of a device");
    const std::wstring target = FollowLinks(SystemPath(file));
    const DWORD attributes = GetFileAttributesW(target.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (!exists && GetLastError() != ERROR_FILE_NOT_FOUND)
        return SystemFailure();
    if (exists && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return Status::Failure("is a folder");
    if (exists && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return Status::Failure("the file is read-only");
    const std::wstring original = like != nullptr ? FollowLinks(SystemPath(*like)) : target;
    if (like != nullptr && !OpenToLook(original, 0).IsOpen())
        return SystemFailure();

    const Handle created = CreateBeside(target);
    if (!created.IsOpen())
        return SystemFailure();
    if (exists || like != nullptr)
        TakeOver(created.Get(), original);
    const bool written =
        std::ranges::all_of(pieces, [&](std::string_view piece) { return WriteFully(created.Get(), piece); }) &&
        FlushFileBuffers(created.Get()) != 0 && RenameTo(created.Get(), target);
    if (written)
        return {};
    const DWORD error = GetLastError();
    Remove(created.Get());
    return SystemFailure(error);
}

Status FolderIsWritable(const std::filesystem::path& folder) {
    const std::wstring name = SystemPath(folder / (".plinket3-" + std::to_string(GetCurrentProcessId())));
    const Handle tried(CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                   FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    return tried.IsOpen() ? Status() : SystemFailure();
}

std::optional<std::int64_t> WriteTime(const std::filesystem::path& file) {
    WIN32_FILE_ATTRIBUTE_DATA known{};
    if (!GetFileAttributesExW(SystemPath(file).c_str(), GetFileExInfoStandard, &known))
        return std::nullopt;
    return std::int64_t{known.ftLastWriteTime.dwHighDateTime} << 32 | known.ftLastWriteTime.dwLowDateTime;
}

void LetWritesFail() {} // they do

void KeepLargeBlocks() {}

std::vector<std::string> CommandLineArguments(int, char**) {
    // A program with windows has no console of its own, but may have been started from one.
    if (GetStdHandle(STD_OUTPUT_HANDLE) == nullptr && AttachConsole(ATTACH_PARENT_PROCESS) != 0)
        static_cast<void>(std::freopen("CONOUT$", "w", stdout));
    SetConsoleOutputCP(CP_UTF8);
    for (FILE* stream : {stdin, stdout})
        _setmode(_fileno(stream), _O_BINARY);
    int count = 0;
    wchar_t** given = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(PathText(given[i]));
    LocalFree(given);
    return arguments;
}

std::filesystem::path RunningProgram() {
    std::wstring name(std::numeric_limits<std::int16_t>::max(), L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

std::tm LocalTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_s(&local, &now);
    return local;
}

} // namespace plinket3
