#include "ui/FileCommands.h"

#include "core/Files.h"
#include "core/Numbers.h"
#include "core/PathList.h"
#include "patch/RulesChoice.h"
#include "patch/Session.h"
#include "patch/SessionChoice.h"
#include "patch/modTables.h"
#include "ui/ChooseLump.h"
#include "ui/LatinText.h"

#include <QApplication>

#include <utility>

namespace plinket3 {

namespace {

constexpr const char* openFilter = "All known file types|*.deh;*.bex;*.wad|Dehacked files (*.deh)|*.deh|"
                                   "Extended Dehacked files (*.bex)|*.bex|WAD files (*.wad)|*.wad|"
                                   "All files (*.*)|*.*";
constexpr const char* wadFilter = "WAD files (*.wad)|*.wad|All files (*.*)|*.*";
constexpr const char* normalFilter = "Dehacked files (*.deh)|*.deh|All files (*.*)|*.*";
constexpr const char* extendedFilter = "Extended Dehacked files (*.bex)|*.bex|All files (*.*)|*.*";
constexpr const char* tableFilter = "Plinket3 table files (*.tbl)|*.tbl|All files (*.*)|*.*";
constexpr std::string_view loseChanges = "All changes will be lost. Are you sure?";

std::int32_t VersionIn(const modPatchFiles::Header& header) {
    return LeadingInt32(modPatchFiles::HeaderValue(header, "engineversion"));
}

} // namespace

FileCommands::FileCommands(Program& program, Edits& edits, FileDialogs& dialogs, Recovery& recovery,
                           SessionDialog sessionDialog)
    : program_(program), edits_(edits), dialogs_(dialogs), recovery_(recovery),
      sessionDialog_(std::move(sessionDialog)) {}

bool FileCommands::MayLoseChanges() {
    return !program_.patch.changed || program_.notifier.Ask(loseChanges, Buttons::NoYes) == Answer::Yes;
}

void FileCommands::Adopt(Session session) {
    static_cast<Session&>(program_) = std::move(session);
    stamp_ = program_.patch.named ? StampOf(program_.patch.fileName) : std::nullopt;
    asked_.reset();
    sessionOpen_ = true;
    edits_.Clear();
    emit SessionChanged();
}

void FileCommands::createNewFile() {
    if (!MayLoseChanges())
        return;
    std::optional<Session> session = sessionDialog_(nullptr);
    if (!session)
        return;
    Adopt(std::move(*session));
    recovery_.Forget();
    emit StatusText(tr("New patch for %1").arg(ShownText(program_.engine.name)));
}

std::string FileCommands::KeptRefusal(const PatchToOpen& patch) const {
    modPatchFiles::Header header;
    if (const Status status = modPatchFiles::ScanHeader(std::string_view(patch.bytes), header); !status)
        return "Could not open " + patch.place.Name() + ": " + status.Reason();
    if (LeadingInt32(modPatchFiles::HeaderValue(header, "patchversion")) != Dialect().patchFormat)
        return "Invalid file or unsupported patch version.";
    if (!FirstEngineOfVersion(program_.engines, VersionIn(header)))
        return "There were no engine configuration files found that match the patch file's target engine.";
    return {};
}

std::optional<PatchToOpen> FileCommands::ToOpen(const PatchPlace& place) const {
    PatchToOpen patch{place, {}, {}};
    std::string refusal;
    if (const Status status = ReadPlace(place, patch.bytes); !status) {
        refusal = "Could not open " + place.Name() + ": " + status.Reason();
    } else {
        // By engine rules a header line that stands twice does not matter.
        static_cast<void>(modPatchFiles::ScanHeader(std::string_view(patch.bytes), patch.header));
        refusal = KeptRefusal(patch);
        if (RulesSettingIn(program_.settings) != RulesSetting::Kept && !refusal.empty()) {
            const Status status = modPatchFiles::ReadableByEngines(patch.bytes);
            refusal = status ? std::string() : "Could not open " + place.Name() + ": " + status.Reason();
        }
    }
    if (refusal.empty())
        return patch;
    program_.notifier.Show(MessageKind::Exclamation, refusal);
    return std::nullopt;
}

void FileCommands::openFile(const std::filesystem::path& path) {
    if (!MayLoseChanges())
        return;
    std::filesystem::path chosen = path;
    if (chosen.empty())
        chosen = StoredPath(dialogs_.OpenFile(QStringLiteral("Load patch file"), QString::fromLatin1(openFilter)));
    if (chosen.empty())
        return;
    std::error_code error; // the current folder may be gone
    std::filesystem::path file = std::filesystem::absolute(chosen, error);
    if (error)
        file = chosen;

    const std::optional<PatchPlace> place = PlaceIn(file);
    const std::optional<PatchToOpen> patch = place ? ToOpen(*place) : std::nullopt;
    if (!patch)
        return;
    std::optional<Session> session = sessionDialog_(&*patch);
    if (!session || !modPatchFiles::ReadPatch(program_.notifier, *place, *session))
        return;
    Adopt(std::move(*session));
    recovery_.Forget();
    AddRecent(file);
    emit StatusText(tr("Opened %1").arg(ShownPath(place->Name())));
}

std::optional<PatchPlace> FileCommands::PlaceIn(const std::filesystem::path& file) {
    if (!IsWad(file))
        return PatchPlace(file);
    const std::vector<PatchLump> lumps = FindPatchLumps(file);
    if (lumps.empty()) {
        BeginPatchIn({file, std::string(patchLump)});
        return std::nullopt;
    }
    return ChooseLump(dialogs_, tr("Open a patch"), file, lumps);
}

void FileCommands::BeginPatchIn(const PatchPlace& place) {
    if (const Status status = IsWritableWad(place.file); !status) {
        program_.notifier.Show(MessageKind::Exclamation,
                               PathText(place.file) + " holds no patch, and none can be added: " + status.Reason());
        return;
    }
    if (program_.notifier.Ask(PathText(place.file) + " holds no patch. Do you want to add one?", Buttons::YesNo) !=
        Answer::Yes)
        return;
    std::optional<Session> session = sessionDialog_(nullptr);
    if (!session)
        return;
    session->patch.fileName = place.file;
    session->patch.lump = place.lump;
    session->patch.named = true;
    Adopt(std::move(*session));
    edits_.MarkChangedForGood();
    recovery_.Forget();
    AddRecent(place.file);
    emit StatusText(tr("A new patch, which the next save puts into %1").arg(ShownPath(place.file)));
}

bool FileCommands::Write(const PatchPlace& place) {
    const bool createBackup = program_.settings.Number("createBackup") == 1;
    const Status status = modPatchFiles::SavePatch(program_, place, createBackup, MissingLump::IsAdded);
    if (!status)
        program_.notifier.Show(MessageKind::Exclamation, "Could not save " + place.Name() + ": " + status.Reason());
    return static_cast<bool>(status);
}

bool FileCommands::SaveTo(const PatchPlace& place) {
    if (!Write(place))
        return false;
    const std::filesystem::path& file = place.file;
    program_.patch.fileName = file;
    program_.patch.lump = place.lump;
    program_.patch.named = true;
    stamp_ = StampOf(file);
    asked_.reset();
    edits_.MarkSaved();
    recovery_.Forget();
    emit Saved();
    AddRecent(file);
    emit StatusText(tr("Saved %1").arg(ShownPath(place.Name())));
    if (!program_.engine.dialect.EngineRules())
        emit GamesReadOtherwise(ReadOtherwise(modPatchFiles::FormatPatch(program_.patch, program_.engine),
                                              program_.patch, program_.engine));
    return true;
}

bool FileCommands::Save() {
    if (!program_.patch.named)
        return SaveAs();
    const std::filesystem::path file = program_.patch.fileName;
    const std::optional<FileStamp> now = ChangedStamp();
    asked_ = now;
    if (now && program_.notifier.Ask("The file " + PathText(file) +
                                         " was changed by another program. Do you want to overwrite it?",
                                     Buttons::NoYes) != Answer::Yes)
        return false;
    return SaveTo(Place());
}

bool FileCommands::SaveAs() {
    const std::filesystem::path file = AskForPatchFile(QStringLiteral("Save patch file"));
    return !file.empty() && SaveTo(file);
}

std::filesystem::path FileCommands::AskForPatchFile(const QString& title) {
    std::filesystem::path proposed = program_.patch.fileName;
    if (!program_.patch.lump.empty())
        proposed.replace_extension(program_.engine.dialect.fileEnding);
    std::filesystem::path file = StoredPath(dialogs_.SaveFile(
        title, QString::fromLatin1(program_.engine.dialect.IsExtended() ? extendedFilter : normalFilter),
        ShownPath(proposed)));
    if (!IsWad(file))
        return file;
    program_.notifier.Show(MessageKind::Exclamation,
                           PathText(file) + " is a WAD. File, Put into WAD... puts the patch into it.");
    return {};
}

void FileCommands::SaveLumpAs() {
    const std::filesystem::path file = AskForPatchFile(QStringLiteral("Save lump"));
    if (!file.empty() && Write(file))
        emit StatusText(tr("Saved a copy as %1").arg(ShownPath(file)));
}

void FileCommands::PutIntoWad() {
    const QString file = dialogs_.OpenFile(QStringLiteral("Put into WAD"), QString::fromLatin1(wadFilter));
    if (file.isEmpty())
        return;
    const PatchPlace place(StoredPath(file), std::string(patchLump));
    if (const Status status = IsWritableWad(place.file); !status) {
        program_.notifier.Show(MessageKind::Exclamation, "Could not save " + place.Name() + ": " + status.Reason());
        return;
    }
    if (!FindPatchLumps(place.file).empty() &&
        program_.notifier.Ask(PathText(place.file) + " holds a patch already. Do you want to replace it?",
                              Buttons::NoYes) != Answer::Yes)
        return;
    if (Write(place))
        emit StatusText(tr("Put into %1").arg(ShownPath(place.Name())));
}

void FileCommands::AddRecent(const std::filesystem::path& file) {
    program_.settings.AddRecentFile(PathText(file));
    const PatchData& patch = program_.patch;
    if (program_.engine.dialect.EngineRules()) // else the header says it
        program_.settings.RememberSession(Place().Name(),
                                          {patch.engineConfig, patch.iwadPath, JoinPaths(patch.dataWadPaths)});
    // At once, since this run may end without its shut-down. There it is tried again, and a failure is told.
    static_cast<void>(program_.settings.Save());
    emit RecentFilesChanged();
}

void FileCommands::ChangeEngine(EngineConfiguration engine, PatchData patch) {
    Session session = static_cast<const Session&>(program_);
    session.engine = std::move(engine);
    session.patch = std::move(patch);
    const std::optional<FileStamp> stamp = stamp_; // of the file as it was read
    Adopt(std::move(session));
    stamp_ = stamp;
    edits_.MarkChangedForGood();
    KeepRecovery();
    emit StatusText(tr("The patch is one for %1 now").arg(ShownText(program_.engine.name)));
}

void FileCommands::LoadTable() {
    if (!MayLoseChanges())
        return;
    const QString file = dialogs_.OpenFile(QStringLiteral("Load table"), QString::fromLatin1(tableFilter));
    if (file.isEmpty())
        return;
    PatchData patch = program_.patch;
    if (!modTables::LoadTable(program_, program_.engine, StoredPath(file), patch))
        return;
    program_.patch = std::move(patch);
    stamp_.reset();
    edits_.Clear();
    recovery_.Forget();
    emit SessionChanged();
    emit TableLoaded();
    emit StatusText(tr("Loaded the table %1").arg(file));
}

void FileCommands::SaveTable() {
    const QString file = dialogs_.SaveFile(QStringLiteral("Save table"), QString::fromLatin1(tableFilter), QString());
    if (file.isEmpty())
        return;
    if (const Status status = modTables::SaveTable(program_, StoredPath(file)); !status)
        program_.notifier.Show(MessageKind::Exclamation,
                               "Could not save " + file.toStdString() + ": " + status.Reason());
    else
        emit StatusText(tr("Saved the table %1").arg(file));
}

bool FileCommands::MayClose() {
    if (!program_.patch.changed) {
        recovery_.Forget(); // what it may hold was undone
        return true;
    }
    switch (program_.notifier.Ask("The file " + PathText(program_.patch.fileName) +
                                      " has been changed. Do you want to save it?",
                                  Buttons::YesNoCancel)) {
    case Answer::Yes:
        return Save();
    case Answer::No:
        recovery_.Forget();
        return true;
    default:
        return false;
    }
}

bool FileCommands::OfferRecovery() {
    for (const KeptWork& work : recovery_.Kept(false)) {
        if (!work.patch) {
            program_.notifier.Show(MessageKind::Exclamation,
                                   "Plinket3 did not end as it should. The file with its unsaved changes is damaged "
                                   "and stays as " +
                                       PathText(recovery_.PutAway(work.file)) + ".");
            continue;
        }
        if (!recovery_.Take(work.file))
            continue;
        switch (program_.notifier.Ask("Plinket3 did not end as it should. Unsaved changes of " + work.patch->fileName +
                                          " were kept. Do you want to go on with them? With No they are given up, "
                                          "with Cancel you are asked again at the next start.",
                                      Buttons::YesNoCancel)) {
        case Answer::Yes:
            return GoOnWith(*work.patch);
        case Answer::No:
            recovery_.Forget();
            return false;
        default:
            recovery_.Leave();
            emit StatusText(tr("The unsaved changes stay: see File, Recovered work..."));
            return false;
        }
    }
    return false;
}

bool FileCommands::OpenKept(const KeptWork& work) {
    if (!work.patch || !MayLoseChanges())
        return false;
    if (const Status taken = recovery_.Take(work.file); !taken) {
        program_.notifier.Show(MessageKind::Exclamation,
                               "Could not open " + PathText(work.file) + ": " + taken.Reason());
        return false;
    }
    const bool opened = GoOnWith(*work.patch);
    KeepRecovery(); // of what is open now, whichever it is
    return opened;
}

bool FileCommands::GoOnWith(const RecoveredPatch& recovered) {
    const auto engine = ChooseEngine(program_.engines, recovered.engineConfig);
    const auto iwad = ChooseIwad(program_.settings.Iwads(), recovered.iwadPath);
    Session session;
    if (!engine || !iwad ||
        LoadSession(program_, {*engine, *iwad, recovered.dataWadPaths, -1, recovered.rules}, session) !=
            SessionResult::Loaded ||
        !ApplyRecovered(recovered, session)) {
        program_.notifier.Show(MessageKind::Exclamation,
                               "The unsaved changes do not fit the engine configurations and IWADs that are there now. "
                               "They stay in " +
                                   PathText(recovery_.SetAside()) + "; File, Recovered work... opens them.");
        return false;
    }
    Adopt(std::move(session));
    edits_.MarkChangedForGood();
    KeepRecovery();
    emit StatusText(tr("Went on with unsaved changes"));
    return true;
}

void FileCommands::KeepRecovery() {
    if (!program_.patch.changed) {
        if (sessionOpen_)
            recovery_.Forget(); // what it may hold was undone
        return;
    }
    const Status status = recovery_.Keep(program_.patch, program_.engine, stamp_, edits_.Revision());
    const bool told = std::exchange(recoveryFails_, !status);
    if (!status && !told)
        emit StatusText(tr("The recovery file could not be written: %1").arg(ShownPath(status.Reason())));
}

std::optional<FileStamp> FileCommands::ChangedStamp() const {
    if (!program_.patch.named)
        return std::nullopt;
    const std::optional<FileStamp> now = StampOf(program_.patch.fileName);
    return now == stamp_ ? std::nullopt : now;
}

void FileCommands::CheckFileOnDisk() {
    // While a dialog is open, another question would stand on top of it; closing it asks again.
    if (asking_ || QApplication::activeModalWidget() != nullptr)
        return;
    if (stamp_ && !StampOf(program_.patch.fileName)) {
        stamp_.reset();
        edits_.MarkChangedForGood();
        emit StatusText(tr("%1 is gone: save it anew").arg(ShownPath(program_.patch.fileName)));
        return;
    }
    const std::optional<FileStamp> now = ChangedStamp();
    if (!now || now == asked_)
        return;
    asking_ = true;
    asked_ = now; // a save asks once more before it overwrites that file
    const bool unsaved = program_.patch.changed;
    std::string question =
        "The file " + PathText(program_.patch.fileName) + " was changed by another program. Do you want to reload it? ";
    if (unsaved || edits_.CanUndo())
        question +=
            unsaved ? "That gives up your unsaved changes and all undo steps. " : "That gives up all undo steps. ";
    question += "With No, what is open here is kept.";
    const bool reload = program_.notifier.Ask(question, unsaved ? Buttons::NoYes : Buttons::YesNo) == Answer::Yes;
    if (!reload || !ReadAgain(program_.engine.dialect.rules))
        edits_.MarkChangedForGood(); // what is open here is no longer what is on disk
    asking_ = false;
}

bool FileCommands::ReadAgain(Rules rules) {
    const std::optional<PatchToOpen> patch = ToOpen(Place());
    if (!patch)
        return false;
    if (rules == Rules::Kept) {
        std::string refusal = KeptRefusal(*patch);
        if (refusal.empty() && VersionIn(patch->header) != program_.engine.version)
            refusal = otherEngine;
        if (!refusal.empty()) {
            program_.notifier.Show(MessageKind::Exclamation, refusal);
            return false;
        }
    }
    Session session = static_cast<const Session&>(program_);
    session.engine.dialect = session.engine.dialect.By(rules);
    if (!modPatchFiles::ReadPatch(program_.notifier, Place(), session))
        return false;
    Adopt(std::move(session));
    recovery_.Forget();
    emit StatusText(tr("Reloaded %1").arg(ShownPath(program_.patch.fileName)));
    return true;
}

void FileCommands::SwitchRules() {
    if (!sessionOpen_)
        return;
    const Rules other = program_.engine.dialect.EngineRules() ? Rules::Kept : Rules::Engine;
    if (program_.patch.named) {
        if (MayLoseChanges())
            ReadAgain(other);
        return;
    }
    program_.engine.dialect = program_.engine.dialect.By(other);
    emit SessionChanged();
}

void FileCommands::GoOnByEngineRules() {
    Session saved = static_cast<const Session&>(program_);
    saved.engine.dialect = saved.engine.dialect.AsEngines();
    if (!modPatchFiles::ReadPatch(program_.notifier, Place(), saved))
        return;
    program_.engine.dialect = saved.engine.dialect;
    program_.patch.document = saved.patch.document;
    edits_.MarkChangedForGood();
    emit SessionChanged();
    emit StatusText(tr("Engine rules: the next save writes what games read as it stands here"));
}

} // namespace plinket3
