#pragma once

#include "core/Status.h"

#include <QByteArray>
#include <QObject>
#include <QStringList>
#include <QTemporaryDir>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

class QProcess;

namespace plinket3 {

/// One run of a port: its program, a folder of its own for the files that it is given, and what it prints. The folder
/// goes with this object. The program does not: when this object ends first, it goes on alone.
class PortRun : public QObject {
    Q_OBJECT
public:
    explicit PortRun(QObject* parent);
    ~PortRun() override;

    /// A file in the folder of this run, whether or not it is there.
    std::filesystem::path File(std::string_view name) const;
    /// Writes one. Fails when there is no room, or no folder could be made.
    Status Write(std::string_view name, std::string_view bytes) const;
    /// Starts the program, without a shell; `Failed` or `Ended` tells the outcome later.
    void Start(const std::filesystem::path& program, const QStringList& arguments, const QString& workingFolder);

    /// What it has printed so far, the first `mostOutput` bytes.
    const QByteArray& Output() const { return output_; }
    bool OutputIsCut() const { return cut_; }

    static constexpr qsizetype mostOutput = 1'000'000;

signals:
    void Failed(const QString& reason);
    void Ended(int exitCode, bool crashed);

private:
    void TakeOutput();

    QTemporaryDir folder_;
    std::unique_ptr<QProcess> process_;
    QByteArray output_;
    bool cut_ = false;
};

} // namespace plinket3
