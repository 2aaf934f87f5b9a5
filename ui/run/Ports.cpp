#include "ui/run/Ports.h"

#include "core/Files.h"
#include "core/PortCommand.h"
#include "core/SystemFolders.h"
#include "ui/LatinText.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace plinket3 {

namespace {

/// A row of data/engines/ports.tsv.
struct KnownPort {
    QString name;
    QStringList programs; // names of files on this system
    QString arguments;
    QString log; // the option before the file of its log of patches; empty for none
};

std::vector<KnownPort> ReadKnownPorts() {
#ifdef Q_OS_WIN
    constexpr int programs = 2;
#else
    constexpr int programs = 1;
#endif
    QFile file(QStringLiteral(":/plinket3/ports.tsv"));
    std::vector<KnownPort> ports;
    if (!file.open(QIODevice::ReadOnly))
        return ports;
    QStringList lines = QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines.removeFirst(); // the names of the columns
    for (const QString& line : lines) {
        const QStringList cells = line.split(QLatin1Char('\t'));
        ports.push_back({cells[0], cells[programs].split(QLatin1Char(' ')), cells[3], cells[4]});
    }
    return ports;
}

const std::vector<KnownPort>& KnownPorts() {
    static const std::vector<KnownPort> ports = ReadKnownPorts();
    return ports;
}

/// Whether a program knows an option: its file then holds its name. Ports have lost options, and end at those that they
/// do not know.
bool Names(const std::filesystem::path& program, const QString& option) {
    constexpr std::uint64_t largestProgram = 256'000'000;
    std::string bytes;
    return ReadWholeFile(program, bytes, largestProgram) && bytes.find(option.toStdString()) != std::string::npos;
}

Settings::Port Suited(const KnownPort& known, const std::filesystem::path& program) {
    QString arguments = known.arguments;
    if (!known.log.isEmpty() && Names(program, known.log.mid(1)))
        arguments += QLatin1Char(' ') + known.log + QStringLiteral(" %o");
    return {known.name.toStdString(), PathText(program), arguments.toStdString()};
}

QString Tr(const char* text) { return QCoreApplication::translate("Ports", text); }

} // namespace

std::vector<Settings::Port> FindPorts() {
    QStringList usualFolders;
    for (const std::filesystem::path& folder : UsualGamePlaces().programs) {
        usualFolders += ShownPath(folder);
        for (const std::filesystem::path& below : FoldersIn(folder))
            usualFolders += ShownPath(below);
    }
    std::vector<Settings::Port> found;
    for (const KnownPort& known : KnownPorts())
        for (const QString& name : known.programs) {
            QString program = QStandardPaths::findExecutable(name);
            if (program.isEmpty())
                program = QStandardPaths::findExecutable(name, usualFolders);
            if (program.isEmpty())
                continue;
            found.push_back(Suited(known, StoredPath(program)));
            break;
        }
    return found;
}

Settings::Port PortOf(const std::filesystem::path& program) {
    const QString file = ShownPath(program.filename());
    for (const KnownPort& known : KnownPorts())
        if (known.programs.contains(file, Qt::CaseInsensitive))
            return Suited(known, program);
    return {PathText(program.stem()), PathText(program), KnownPorts().front().arguments.toStdString()};
}

std::vector<Settings::Port> PortsToUse(const Settings& settings) {
    std::vector<Settings::Port> ports = settings.Ports();
    return ports.empty() ? FindPorts() : ports;
}

QString FaultOf(const Settings::Port& port) {
    const QFileInfo program(ShownPath(port.program));
    std::vector<std::string> words;
    if (port.program.empty())
        return Tr("no program");
    if (!program.exists())
        return Tr("not found");
    if (!program.isFile() || !program.isExecutable())
        return Tr("no program");
    if (const Status split = SplitWords(port.arguments, words); !split)
        return ShownText(split.Reason());
    return {};
}

} // namespace plinket3
