#pragma once

#include <QFileSystemWatcher>
#include <QLockFile>
#include <QObject>

#include <chrono>
#include <filesystem>

namespace plinket3 {

/// The setting of whether that is wanted: 1 when it is.
inline constexpr const char* openInRunningKey = "openInRunning";

/// How a program that is started with a file hands it to one that runs already: as a small file, in a folder beside the
/// settings, that the other takes away.
class OpenRequests : public QObject {
    Q_OBJECT
public:
    explicit OpenRequests(const std::filesystem::path& settingsFolder);

    /// Hands `file` to the program that listens. False when none does, or when it does not take the file within
    /// `patience`, as while it shows a dialog: the file is then this program's own to open.
    bool HandOver(const std::filesystem::path& file, std::chrono::milliseconds patience = std::chrono::seconds(2));

    /// Tells of files by `Wanted` from now on, unless another program listens already.
    void Listen();

signals:
    void Wanted(const std::filesystem::path& file);

private:
    void Take();

    std::filesystem::path folder_;
    QLockFile lock_;
    QFileSystemWatcher watcher_;
};

} // namespace plinket3
