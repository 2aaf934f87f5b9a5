#pragma once

#include <QByteArray>
#include <QString>
#include <QWidget>

#include <filesystem>
#include <memory>

class QSettings;

namespace plinket3 {

/// Where windows stand and how their parts are divided, kept in a file of its own beside the settings: nothing in it is
/// missed when it is lost.
class WindowState {
public:
    explicit WindowState(const std::filesystem::path& settingsFolder);
    ~WindowState();

    QByteArray Bytes(const QString& key) const;
    void Bytes(const QString& key, const QByteArray& value);

    /// Keeps, or gives back, the state of every splitter and list header below `window`, by object names.
    void KeepParts(const QWidget& window);
    void RestoreParts(QWidget& window) const;

private:
    std::unique_ptr<QSettings> file_;
};

} // namespace plinket3
