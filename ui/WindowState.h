#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QWidget>

#include <filesystem>

namespace plinket3 {

/// Where windows stand and how their parts are divided, kept in a file of its own beside the settings: nothing in it is
/// missed when it is lost. Each state stands there with a checksum. One that this program did not write itself, whole,
/// is as if it were not there: the toolkit, which gets them, trusts what they say of sizes and counts.
class WindowState {
public:
    explicit WindowState(const std::filesystem::path& settingsFolder);

    /// Empty when there is none.
    QByteArray Bytes(const QString& key) const { return states_.value(key); }
    /// `key`: neither blanks nor "=".
    void Bytes(const QString& key, const QByteArray& value);

    /// Keeps, or gives back, the state of every splitter and list header below `window`, by object names.
    void KeepParts(const QWidget& window);
    void RestoreParts(QWidget& window) const;

    /// Writes what was set since the file was read; what another program has written meanwhile stays beside it. A
    /// failure is not told.
    void Write();

private:
    using States = QMap<QString, QByteArray>;
    static States Read(const std::filesystem::path& file);

    std::filesystem::path file_;
    States states_, changed_;
};

} // namespace plinket3
