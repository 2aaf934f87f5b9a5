#include "core/clsLog.h"

#include "core/System.h"
#include "core/Version.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace plinket3 {

namespace {

std::string TimeText(const char* format, const std::tm& time) {
    std::array<char, 64> buffer{};
    return {buffer.data(), std::strftime(buffer.data(), buffer.size(), format, &time)};
}

} // namespace

clsLog::clsLog() : clsLog(LocalTime) {}

clsLog::clsLog(Clock clock) : clock_(std::move(clock)) {}

Status clsLog::StartLog(const std::filesystem::path& FileName, bool Append) {
    CloseLog();
    std::error_code error;
    if (!Append && !std::filesystem::is_directory(FileName, error)) {
        std::filesystem::remove(FileName, error);
        if (error)
            return Status::Failure(error.message());
    }
    fileName_ = FileName;
    errno = 0;
    file_.clear();
    file_.open(FileName, std::ios::binary | std::ios::app);
    if (!file_.is_open())
        return Status::Failure(std::generic_category().message(errno));
    // The banner speaks of appending even when the old log was deleted; see docs/kept-behaviour.md.
    file_ << "\r\n"
          << std::string(70, '-') << "\r\nAppend log at " << TimeText("%Y-%m-%d %H:%M:%S", clock_()) << "\r\n";
    Add(programLogVersion);
    Add(std::string(58, '-'));
    return {};
}

void clsLog::Add(std::string_view Text) {
    if (!file_.is_open())
        return;
    file_ << TimeText("[%H:%M:%S]  ", clock_()) << Text << "\r\n";
    file_.flush();
}

void clsLog::CloseLog() {
    if (file_.is_open())
        file_.close();
}

} // namespace plinket3
