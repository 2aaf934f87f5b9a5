#include "ui/run/RunCommands.h"

#include "core/Files.h"
#include "core/PortCommand.h"
#include "core/Text.h"
#include "patch/PatchPlace.h"
#include "patch/PlacedThing.h"
#include "patch/PortLog.h"
#include "patch/modPatchFiles.h"
#include "ui/LatinText.h"
#include "ui/fields/SelectionBox.h"
#include "ui/run/PortRun.h"
#include "ui/run/Ports.h"
#include "ui/run/frmRun.h"
#include "wad/Levels.h"
#include "wad/TestMap.h"
#include "wad/WadEdit.h"

#include <QAction>
#include <QFileInfo>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace plinket3 {

using modPatchCheck::Finding;
using modPatchCheck::Severity;

namespace {

constexpr const char* testMapFile = "testmap.wad";
constexpr const char* withoutPatchFile = "data.wad";
/// Which no port complains about.
constexpr std::string_view emptyPatch = "Patch File for DeHackEd v3.0\nDoom version = 21\nPatch format = 6\n";
constexpr const char* logFile = "patch.log";
constexpr qint64 mostOfLog = 16'000'000;             // bytes
constexpr int lookInterval = 1'000;                  // milliseconds between looks at what a running port has said
constexpr std::int32_t toWeapon = 96, toThing = 224; // from the player to what is placed, without its radius

/// As a program that starts in another folder finds it.
std::string WholePath(const std::filesystem::path& file) {
    return PathText(StoredPath(QFileInfo(ShownPath(file)).absoluteFilePath()));
}

/// The last line with something in it, as that is where programs say why they end.
std::string LastLine(std::string_view output) {
    const std::size_t end = output.find_last_not_of(" \t\r\n");
    if (end == std::string_view::npos)
        return {};
    output = output.substr(0, end + 1);
    return Printable(output.substr(output.rfind('\n') + 1).substr(0, longestShown));
}

} // namespace

RunCommands::RunCommands(Program& program, EditorSet& editors, QWidget& window)
    : program_(program), editors_(editors), window_(window) {
    const auto add = [this](const char* name, const QString& text, const QKeySequence& key,
                            void (RunCommands::*run)()) {
        auto* action = new QAction(text, &window_);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, [this, run] {
            SelectionBox::TakeWaiting(window_.focusWidget());
            (this->*run)();
        });
        actions_.append(action);
        return action;
    };
    add("RunAgain", tr("&Run"), QKeySequence(Qt::Key_F9), &RunCommands::RunAgain)
        ->setToolTip(tr("Play the patch as it is now, with the port, level and skill chosen last"));
    add("RunWith", tr("Run &with..."), QKeySequence(Qt::SHIFT | Qt::Key_F9), &RunCommands::Ask)
        ->setToolTip(tr("Choose port, level and skill, and what stands in the test map"));
}

RunCommands::~RunCommands() = default;

void RunCommands::SessionChanged() { ++session_; }

void RunCommands::Refuse(const QString& text) { program_.notifier.Show(MessageKind::Exclamation, text.toStdString()); }

void RunCommands::RunAgain() {
    const RunChoice choice = RunChoice::In(program_.settings);
    const std::vector<Settings::Port> ports = PortsToUse(program_.settings);
    if (std::ranges::find(ports, choice.port, &Settings::Port::name) == ports.end())
        return Ask();
    Run(choice);
}

void RunCommands::Ask() {
    const std::vector<Settings::Port> ports = PortsToUse(program_.settings);
    frmRun::Offer offer{ports, {}, {}};
    if (ports.empty())
        return Refuse(tr("No port was found, which is what plays the game. Install one, or add it in View, Options..., "
                         "Ports."));
    for (const std::string& level : Levels())
        offer.levels.append(ShownText(level));
    if (const auto placed = ToPlace())
        offer.toPlace = placed->name;
    const std::optional<RunChoice> choice =
        frmRun(std::move(offer), RunChoice::In(program_.settings), &window_).Choose();
    if (!choice)
        return;
    if (program_.settings.Ports().empty()) // they need not be looked for again
        program_.settings.Ports(ports);
    choice->Remember(program_.settings);
    Run(*choice);
}

std::optional<RunCommands::Placed> RunCommands::ToPlace() const {
    const PatchSet& set = program_.patch.current;
    const std::optional<Cell> here = editors_.Here();
    if (here && here->kind == RecordKind::Weapon && set.weapons.Has(here->index)) {
        std::optional<std::int32_t> pickup = PickupOf(program_.patch.defaults, here->index);
        if (pickup && !set.things.Has(*pickup))
            pickup.reset();
        return Placed{ShownStart(set.weapons[here->index].name), pickup, true};
    }
    const std::optional<std::int32_t> thing = editors_.CurrentRecord(RecordKind::Thing);
    if (!thing || !set.things.Has(*thing))
        return std::nullopt;
    return Placed{ShownStart(set.things[*thing].name), thing, false};
}

std::vector<std::string> RunCommands::DataWads() const {
    std::vector<std::string> wads;
    if (const PatchData& patch = program_.patch; !patch.lump.empty())
        wads.push_back(WholePath(patch.fileName));
    for (const std::shared_ptr<clsWad>& wad : program_.dataWads)
        if (std::string path = WholePath(wad->WadFileName()); std::ranges::find(wads, path) == wads.end())
            wads.push_back(std::move(path));
    if (program_.iwad)
        std::erase(wads, WholePath(program_.iwad->WadFileName()));
    return wads;
}

Status RunCommands::TakePatchOut(const PortRun& run, std::vector<std::string>& dataWads) const {
    const PatchData& patch = program_.patch;
    const auto holder = std::ranges::find(dataWads, WholePath(patch.fileName));
    if (patch.lump.empty() || holder == dataWads.end())
        return {};
    WadEdit wad;
    Status status = EditPlace({patch.fileName, patch.lump}, emptyPatch, MissingLump::Fails, wad);
    if (status)
        status = run.Write(withoutPatchFile, wad.Bytes());
    if (status)
        *holder = PathText(run.File(withoutPatchFile));
    return status;
}

std::vector<std::string> RunCommands::Levels(const std::string& chosen) const {
    std::vector<std::string> levels;
    const auto add = [&](const clsWad& wad) {
        std::vector<std::string> names = LevelNames(wad);
        if (!chosen.empty() && wad.NumForName(chosen) != -1)
            names.push_back(chosen);
        for (std::string& level : names)
            if (std::ranges::find(levels, level) == levels.end())
                levels.push_back(std::move(level));
    };
    if (program_.iwad)
        add(*program_.iwad);
    for (const std::string& file : DataWads()) {
        clsWad wad;
        wad.OpenWad(PathOf(file));
        add(wad);
    }
    return levels;
}

void RunCommands::Run(const RunChoice& choice) {
    const std::vector<Settings::Port> ports = PortsToUse(program_.settings);
    const auto port = std::ranges::find(ports, choice.port, &Settings::Port::name);
    if (port == ports.end() || !program_.iwad)
        return;
    const QString name = ShownPath(port->name);
    if (const QString fault = FaultOf(*port); !fault.isEmpty())
        return Refuse(tr("Could not run %1: %2: %3").arg(name, ShownPath(port->program), fault));
    std::vector<std::string> words, more;
    Status status = SplitWords(port->arguments, words);
    if (status)
        status = SplitWords(choice.arguments, more);
    words.insert(words.end(), more.begin(), more.end());

    const std::vector<std::string> levels = Levels(choice.level);
    std::string level = choice.level;
    if (std::ranges::find(levels, level) == levels.end() && !levels.empty())
        level = levels.front(); // of another game
    std::vector<std::string> dataWads = DataWads();
    QString told = tr("Started %1").arg(name);
    PatchData patch = program_.patch; // shares its records
    auto run = std::make_unique<PortRun>(this);
    if (status)
        status = TakePatchOut(*run, dataWads);
    if (const std::optional<Placed> placed = choice.inTestMap ? ToPlace() : std::nullopt; placed && status) {
        level = program_.iwad->NumForName("MAP01") != -1 ? "MAP01" : "E1M1";
        TestMap map{level};
        told = tr("Started %1 in the test map with %2").arg(name, placed->name);
        if (placed->thing) {
            ThingRecord& thing = patch.current.things[*placed->thing];
            constexpr std::int32_t unit = 65536;
            map.thing = IdToPlace(patch.current, *placed->thing);
            map.away = placed->isWeapon ? toWeapon : toThing + std::clamp(thing.width / unit, 0, TestMap::farthest);
            if (thing.id != map.thing)
                told += tr("; it has no ID # of its own and gets %1 in this run only").arg(map.thing);
            thing.id = map.thing;
        } else {
            told = tr("Started %1 in the test map; you have the %2 from the start").arg(name, placed->name);
        }
        dataWads.push_back(PathText(run->File(testMapFile)));
        status = run->Write(testMapFile, TestMapWad(map));
    } else if (!level.empty()) {
        told += tr(" on %1").arg(ShownText(level));
    }

    BytePieces bytes;
    const std::filesystem::path file = run->File("patch" + std::string(program_.engine.dialect.fileEnding));
    if (status)
        status = modPatchFiles::FormatForSaving(patch, program_.engine, bytes);
    if (status)
        status = run->Write(PathText(file.filename()), bytes.Joined());
    if (!status)
        return Refuse(tr("Could not run %1: %2").arg(name, ShownPath(status.Reason())));

    QStringList arguments;
    for (const std::string& argument : ExpandTokens(words, {{'i', {WholePath(program_.iwad->WadFileName())}},
                                                            {'d', dataWads},
                                                            {'p', {PathText(file)}},
                                                            {'m', WarpWords(level)},
                                                            {'s', {std::to_string(choice.skill)}},
                                                            {'o', {PathText(run->File(logFile))}}}))
        arguments.append(ShownPath(argument));
    // Where the patch stands lie the files that it includes, and what a port leaves there is not lost.
    const QFileInfo folder(
        ShownPath(program_.patch.named ? program_.patch.fileName.parent_path() : program_.documentsFolder));
    const auto running = std::make_shared<const Running>(Running{run.get(), name, bytes.Joined(), session_});
    connect(run.get(), &PortRun::Failed, this, [this, running](const QString& reason) {
        running->run->deleteLater();
        emit StatusText(tr("%1 could not be started").arg(running->port));
        Refuse(tr("Could not start %1: %2").arg(running->port, reason));
    });
    connect(run.get(), &PortRun::Ended, this,
            [this, running](int exitCode, bool crashed) { Ended(*running, exitCode, crashed); });
    auto* looks = new QTimer(run.get());
    connect(looks, &QTimer::timeout, this, [this, running, seen = qint64{0}]() mutable {
        const qint64 ofLog = QFileInfo(ShownPath(running->run->File(logFile))).size();
        const qint64 size = running->run->Output().size() + std::min(ofLog, mostOfLog + 1); // what follows is not read
        if (std::exchange(seen, size) != size)
            Report(*running);
    });
    looks->start(lookInterval);
    emit StatusText(told);
    run->Start(PathOf(WholePath(PathOf(port->program))), arguments, folder.isDir() ? folder.filePath() : QString());
    static_cast<void>(run.release()); // belongs to this object now, and goes when the port has ended
}

void RunCommands::Report(const Running& running, const std::vector<Finding>& more) {
    if (running.session != session_)
        return;
    const PortRun& run = *running.run;
    std::string log;
    bool cut = false;
    const Status read = ReadStartOfFile(run.File(logFile), log, mostOfLog, cut); // which not every port writes
    log = run.Output().toStdString() + "\n" + log;
    const std::string file = "patch" + std::string(program_.engine.dialect.fileEnding);
    std::vector<Finding> findings =
        FindingsInLog(log, {run.File(file), running.bytes}, program_.engine, program_.patch.defaults);
    findings.insert(findings.end(), more.begin(), more.end());
    if (run.OutputIsCut())
        findings.push_back({0, "printed more than 1 MB; what came behind that was dropped", Severity::Odd, {}, {}});
    if (cut)
        findings.push_back(
            {0, "wrote a log of more than 16 MB; what came behind that was not read", Severity::Odd, {}, {}});
    emit Reported(running.port, findings);
}

void RunCommands::Ended(const Running& running, int exitCode, bool crashed) {
    const QString how = crashed         ? tr("%1 crashed").arg(running.port)
                        : exitCode == 0 ? tr("%1 ended").arg(running.port)
                                        : tr("%1 ended with exit code %2").arg(running.port).arg(exitCode);
    std::vector<Finding> more;
    if (crashed || exitCode != 0) {
        const std::string last = LastLine(running.run->Output().toStdString());
        const std::string text = (crashed ? "crashed" : "ended with exit code " + std::to_string(exitCode)) +
                                 (last.empty() ? "" : "; the last that it printed: " + last);
        more.push_back({0, text, Severity::Refused, {}, {}});
    }
    Report(running, more);
    emit StatusText(how);
    running.run->deleteLater();
}

} // namespace plinket3
