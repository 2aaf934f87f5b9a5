#include "ui/run/PortRun.h"

#include "core/Files.h"
#include "ui/LatinText.h"

#include <QDir>
#include <QProcess>

#include <csignal>
#include <vector>

namespace plinket3 {

namespace {

/// Programs that outlive their run. Their objects stay until this process ends, as they would end their programs.
std::vector<std::unique_ptr<QProcess>>& LeftAlone() {
    static auto* processes = new std::vector<std::unique_ptr<QProcess>>; // NOLINT: never to be destroyed
    return *processes;
}

std::string TemporaryFolder() { return QDir::toNativeSeparators(QDir::tempPath()).toStdString(); }

} // namespace

PortRun::PortRun(QObject* parent)
    : QObject(parent), folder_(QDir::tempPath() + QStringLiteral("/plinket3-run-XXXXXX")),
      process_(std::make_unique<QProcess>()) {
    process_->setProcessChannelMode(QProcess::MergedChannels);
    process_->setStandardInputFile(QProcess::nullDevice());
#ifdef Q_OS_UNIX
    // When nobody reads any longer what it prints, that must not end it.
    process_->setChildProcessModifier([] { std::signal(SIGPIPE, SIG_IGN); });
#endif
    connect(process_.get(), &QProcess::readyRead, this, &PortRun::TakeOutput);
    connect(process_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            emit Failed(process_->errorString());
    });
    connect(process_.get(), &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
        TakeOutput();
        emit Ended(exitCode, status == QProcess::CrashExit);
    });
}

PortRun::~PortRun() {
    process_->disconnect(this);
    if (process_->state() != QProcess::NotRunning)
        LeftAlone().push_back(std::move(process_));
}

std::filesystem::path PortRun::File(std::string_view name) const { return StoredPath(folder_.path()) / name; }

Status PortRun::Write(std::string_view name, std::string_view bytes) const {
    if (!folder_.isValid())
        return Status::Failure("no folder can be made in " + TemporaryFolder() + ": " +
                               folder_.errorString().toStdString());
    const Status written = WriteFileAtomically(File(name), bytes);
    return written ? Status()
                   : Status::Failure(std::string(name) + " could not be written in " + TemporaryFolder() + ": " +
                                     written.Reason());
}

void PortRun::Start(const std::filesystem::path& program, const QStringList& arguments, const QString& workingFolder) {
    process_->setWorkingDirectory(workingFolder);
    process_->start(ShownPath(program), arguments, QIODevice::ReadOnly);
}

void PortRun::TakeOutput() {
    const QByteArray printed = process_->readAll();
    cut_ = cut_ || printed.size() > mostOutput - output_.size();
    output_ += printed.left(mostOutput - output_.size());
}

} // namespace plinket3
