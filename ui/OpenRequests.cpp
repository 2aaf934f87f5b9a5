#include "ui/OpenRequests.h"

#include "core/Files.h"
#include "ui/LatinText.h"

#include <QApplication>
#include <QDir>
#include <QTimer>

#include <thread>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::uint64_t longestRequest = 70'000; // a path of Windows, the longest there is, in UTF-8
constexpr auto askAgain = std::chrono::milliseconds(300), lookAgain = std::chrono::milliseconds(10);

} // namespace

OpenRequests::OpenRequests(const std::filesystem::path& settingsFolder)
    : folder_(settingsFolder / "open"), lock_(ShownPath(settingsFolder / "open.lock")) {
    lock_.setStaleLockTime(0); // left by a program that runs no more, it does not count
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &OpenRequests::Take);
}

bool OpenRequests::HandOver(const std::filesystem::path& file, std::chrono::milliseconds patience) {
    if (lock_.tryLock()) {
        lock_.unlock(); // nobody listens
        return false;
    }
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(file, error);
    const std::filesystem::path request = folder_ / (std::to_string(QCoreApplication::applicationPid()) + ".txt");
    if (error || !WriteFileAtomically(request, PathText(whole)))
        return false;
    const auto end = std::chrono::steady_clock::now() + patience;
    while (FileExists(request) && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(lookAgain);
    return !std::filesystem::remove(request, error);
}

void OpenRequests::Listen() {
    if (!lock_.isLocked() && !lock_.tryLock())
        return;
    QDir(ShownPath(folder_)).removeRecursively(); // what nobody took is wanted no more
    if (QDir().mkpath(ShownPath(folder_)))
        watcher_.addPath(ShownPath(folder_));
}

void OpenRequests::Take() {
    for (const QString& name : QDir(ShownPath(folder_)).entryList({QStringLiteral("*.txt")}, QDir::Files)) {
        if (QApplication::activeModalWidget() != nullptr) {
            QTimer::singleShot(askAgain, this, &OpenRequests::Take); // until the dialog ends, or the other gives up
            return;
        }
        const std::filesystem::path request = folder_ / StoredPath(name);
        std::string text;
        std::error_code error;
        if (ReadWholeFile(request, text, longestRequest) && std::filesystem::remove(request, error) && !text.empty())
            emit Wanted(PathOf(text));
    }
}

} // namespace plinket3
