#include "ui/Recovery.h"

#include "core/Files.h"
#include "core/Numbers.h"
#include "core/PathList.h"
#include "core/clsConfiguration.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/PatchDocument.h"
#include "patch/PatchPlace.h"
#include "patch/modPatchFiles.h"
#include "patch/modTables.h"
#include "ui/LatinText.h"

#include <algorithm>
#include <charconv>
#include <tuple>
#include <utility>

namespace plinket3 {

namespace {

constexpr int mostPlaces = 16; // programs that run at the same time
constexpr const char* inUse = "another program has it now";
constexpr std::string_view putAwayEnding = ".kept";
constexpr std::string_view recoveryType = "Plinket3 recovery file";

/// Of tables that hold all that an engine's patches change, strings too.
Dialect LayoutFor(const Dialect& dialect) {
    Dialect layout;
    layout.fields = layout.engineFields = dialect.fields;
    return layout;
}

std::string TextOf(const SettingTree& tree, std::string_view key) {
    const SettingValue* value = tree.Find(key);
    const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
    return text == nullptr ? std::string() : *text;
}

std::int32_t NumberOf(const SettingTree& tree, std::string_view key) {
    const SettingValue* value = tree.Find(key);
    return value == nullptr ? 0 : RoundToInt32(NumberIn(*value).value_or(0));
}

/// Calls visit(tree) for each tree within the one of that name.
template <class Visit> void EachTree(const SettingTree& root, std::string_view name, Visit visit) {
    const SettingValue* value = root.Find(name);
    const auto* tree = value == nullptr ? nullptr : std::get_if<std::shared_ptr<SettingTree>>(value);
    if (tree == nullptr)
        return;
    for (const auto& entry : (*tree)->Entries())
        if (const auto* inner = std::get_if<std::shared_ptr<SettingTree>>(&entry.second))
            visit(**inner);
}

std::vector<ParRecord> ParsOf(const SettingTree& root) {
    std::vector<ParRecord> pars;
    EachTree(root, "pars", [&pars](const SettingTree& par) {
        pars.push_back({NumberOf(par, "episode"), NumberOf(par, "map"), NumberOf(par, "seconds")});
    });
    return pars;
}

Notes NotesOf(const SettingTree& root) {
    Notes notes;
    EachTree(root, "notes", [&notes](const SettingTree& note) {
        notes[{static_cast<RecordKind>(NumberOf(note, "kind")), NumberOf(note, "record")}] = TextOf(note, "text");
    });
    return notes;
}

std::map<std::int32_t, std::string> MusicOf(const SettingTree& root) {
    std::map<std::int32_t, std::string> names;
    EachTree(root, "music", [&names](const SettingTree& music) {
        if (std::string name = TextOf(music, "name"); MayBeLumpName(RecordKind::Music, name))
            names[NumberOf(music, "record")] = std::move(name);
    });
    return names;
}

/// The numbers are kept as texts, since those of the format do not hold 64 bits.
std::optional<FileStamp> FileStampOf(const SettingTree& root) {
    const auto number = [&root](std::string_view key) {
        const std::string text = TextOf(root, key);
        std::optional<std::int64_t> value(0);
        if (std::from_chars(text.data(), text.data() + text.size(), *value).ec != std::errc())
            value.reset();
        return value;
    };
    const auto time = number("fileTime"), size = number("fileSize");
    if (!time || !size)
        return std::nullopt;
    return FileStamp{*time, static_cast<std::uintmax_t>(*size)};
}

/// Reads a recovery file: the length of the texts as decimal number, a line feed, the texts, the table, the
/// document, the engine's table.
std::optional<RecoveredPatch> Split(std::string_view bytes) {
    const std::size_t lineEnd = bytes.find('\n');
    if (lineEnd == std::string_view::npos)
        return std::nullopt;
    const std::int32_t length = LeadingInt32(bytes.substr(0, lineEnd));
    bytes.remove_prefix(lineEnd + 1);
    if (length < 0 || static_cast<std::size_t>(length) > bytes.size())
        return std::nullopt;
    clsConfiguration texts;
    if (!texts.InputConfiguration(bytes.substr(0, static_cast<std::size_t>(length))))
        return std::nullopt;
    const auto root = texts.Root(true);
    if (TextOf(*root, "type") != recoveryType)
        return std::nullopt;
    RecoveredPatch recovered;
    recovered.fileName = TextOf(*root, "fileName");
    recovered.lump = TextOf(*root, "lump");
    recovered.engineConfig = TextOf(*root, "engineConfig");
    recovered.iwadPath = TextOf(*root, "iwad");
    recovered.dataWadPaths = SplitPaths(TextOf(*root, "dataWad"));
    recovered.named = NumberOf(*root, "named") != 0;
    recovered.rules = NumberOf(*root, "engineRules") != 0 ? Rules::Engine : Rules::Kept;
    bytes.remove_prefix(static_cast<std::size_t>(length));
    for (const auto& [key, part] :
         {std::pair("tableSize", &recovered.table), std::pair("documentSize", &recovered.document)}) {
        const std::int32_t size = NumberOf(*root, key);
        if (size < 0 || static_cast<std::size_t>(size) > bytes.size())
            return std::nullopt;
        *part = bytes.substr(0, static_cast<std::size_t>(size));
        bytes.remove_prefix(static_cast<std::size_t>(size));
    }
    recovered.defaultsTable = bytes;
    recovered.pars = ParsOf(*root);
    recovered.notes = NotesOf(*root);
    recovered.music = MusicOf(*root);
    recovered.helper = NumberOf(*root, "helper");
    recovered.stamp = FileStampOf(*root);
    return recovered;
}

} // namespace

Recovery::Recovery(std::filesystem::path folder) : folder_(std::move(folder)) { TakeFreePlace(); }

void Recovery::TakeFreePlace() {
    kept_.reset();
    lock_.reset();
    place_ = -1;
    for (int place = 0; place < mostPlaces && !lock_; ++place) {
        // A place whose owner is gone but whose file is still there is not free: it is offered first.
        if (FileExists(FileAt(place)))
            continue;
        lock_ = LockAt(place);
        if (lock_)
            place_ = place;
    }
}

std::filesystem::path Recovery::FileAt(int place) const {
    return folder_ / ("recovery-" + std::to_string(place) + ".dat");
}

std::unique_ptr<QLockFile> Recovery::LockAt(int place) const {
    auto lock = std::make_unique<QLockFile>(ShownPath(folder_ / ("recovery-" + std::to_string(place) + ".lock")));
    lock->setStaleLockTime(0); // only the end of the program that holds it makes a lock void
    if (lock->tryLock(0))
        return lock;
    // Of a damaged lock the class cannot tell that its program has ended; the system can, and refuses to remove others.
    qint64 process = 0;
    QString host, program;
    if (lock->error() == QLockFile::LockFailedError && !lock->getLockInfo(&process, &host, &program) &&
        lock->removeStaleLockFile() && lock->tryLock(0))
        return lock;
    return nullptr;
}

int Recovery::PlaceOf(const std::filesystem::path& file) const {
    for (int place = 0; place < mostPlaces; ++place)
        if (file == FileAt(place))
            return place;
    return -1;
}

Status Recovery::Keep(const PatchData& patch, const EngineConfiguration& engine, const std::optional<FileStamp>& stamp,
                      std::uint64_t revision) {
    if (place_ < 0)
        return Status::Failure("the settings folder cannot be written");
    if (kept_ == revision)
        return {};
    clsConfiguration texts;
    const auto root = texts.Root(true);
    root->Set("type", std::string(recoveryType));
    root->Set("fileName", PathText(patch.fileName));
    root->Set("lump", patch.lump);
    root->Set("named", patch.named ? 1 : 0);
    root->Set("engineRules", engine.dialect.EngineRules() ? 1 : 0);
    root->Set("engineConfig", patch.engineConfig);
    root->Set("iwad", patch.iwadPath);
    root->Set("dataWad", JoinPaths(patch.dataWadPaths));
    if (stamp) {
        root->Set("fileTime", std::to_string(stamp->time));
        root->Set("fileSize", std::to_string(stamp->size));
    }
    const auto pars = std::make_shared<SettingTree>();
    for (std::size_t i = 0; i < patch.current.pars.size(); ++i) {
        const auto par = std::make_shared<SettingTree>();
        par->Set("episode", patch.current.pars[i].episode);
        par->Set("map", patch.current.pars[i].map);
        par->Set("seconds", patch.current.pars[i].seconds);
        pars->Set(std::to_string(i), par);
    }
    root->Set("pars", pars);
    const auto notes = std::make_shared<SettingTree>();
    for (const auto& [record, text] : patch.current.notes) {
        const auto note = std::make_shared<SettingTree>();
        note->Set("kind", static_cast<std::int32_t>(record.first));
        note->Set("record", record.second);
        note->Set("text", text);
        notes->Set(std::to_string(notes->Count()), note);
    }
    root->Set("notes", notes);
    const auto music = std::make_shared<SettingTree>();
    for (const std::int32_t number : RecordNumbers(patch.current, RecordKind::Music)) {
        const Cell cell{RecordKind::Music, number, lumpNameField};
        const CellValue name = ReadCell(patch.current, cell);
        if (name == ReadCell(patch.defaults, cell))
            continue;
        const auto renamed = std::make_shared<SettingTree>();
        renamed->Set("record", number);
        renamed->Set("name", std::get<std::string>(name));
        music->Set(std::to_string(number), renamed);
    }
    root->Set("music", music);
    root->Set("helper", patch.current.misc.helper);
    const std::string table = modTables::FormatTable(patch.current, LayoutFor(engine.dialect));
    root->Set("tableSize", static_cast<std::int32_t>(table.size()));
    const std::string document = patch.document ? patch.document->Bytes() : std::string();
    root->Set("documentSize", static_cast<std::int32_t>(document.size()));
    const std::string text = texts.OutputConfiguration("\n", false);
    Status status =
        WriteFileAtomically(FileAt(place_), std::to_string(text.size()) + "\n" + text + table + document +
                                                modTables::FormatTable(patch.defaults, LayoutFor(engine.dialect)));
    if (status)
        kept_ = revision;
    return status;
}

void Recovery::Forget() {
    kept_.reset();
    if (place_ < 0)
        return;
    std::error_code ignored;
    std::filesystem::remove(FileAt(place_), ignored);
}

std::vector<KeptWork> Recovery::Kept(bool alsoPutAway) const {
    std::vector<KeptWork> kept;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder_, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::filesystem::path& file = entry->path();
        const int place = PlaceOf(file);
        const bool putAway = PathText(file.filename()).starts_with("recovery-") && file.extension() == putAwayEnding;
        const bool leftBehind = place >= 0 && place != place_;
        if (!(leftBehind || (putAway && alsoPutAway)) || !FileExists(file) || (leftBehind && !LockAt(place)))
            continue;
        KeptWork& work = kept.emplace_back();
        std::string bytes;
        std::error_code ignored;
        work.file = file;
        work.time = std::filesystem::last_write_time(file, ignored);
        if (ReadWholeFile(file, bytes))
            work.patch = Split(bytes);
    }
    std::ranges::sort(kept, [](const KeptWork& left, const KeptWork& right) {
        return std::tie(right.time, left.file) < std::tie(left.time, right.file);
    });
    return kept;
}

Status Recovery::Take(const std::filesystem::path& file) {
    const int place = PlaceOf(file);
    std::unique_ptr<QLockFile> lock = place < 0 ? nullptr : LockAt(place);
    if (place >= 0 && !lock)
        return Status::Failure(inUse);
    if (place_ < 0 && place >= 0) { // every place holds such work
        lock_ = std::move(lock);
        place_ = place;
    }
    if (place_ < 0)
        return Status::Failure("the settings folder cannot be written");
    kept_.reset();
    std::error_code error;
    std::filesystem::rename(file, FileAt(place_), error);
    return error ? Status::Failure(error.message()) : Status();
}

Status Recovery::Delete(const std::filesystem::path& file) const {
    const int place = PlaceOf(file);
    const std::unique_ptr<QLockFile> lock = place < 0 ? nullptr : LockAt(place);
    if (place >= 0 && !lock)
        return Status::Failure(inUse);
    std::error_code error;
    std::filesystem::remove(file, error);
    return error ? Status::Failure(error.message()) : Status();
}

void Recovery::Leave() { TakeFreePlace(); }

std::filesystem::path Recovery::PutAway(const std::filesystem::path& file) const {
    std::filesystem::path aside = file;
    aside += putAwayEnding;
    for (int number = 2; FileExists(aside); ++number) {
        aside = file;
        aside += "." + std::to_string(number) + std::string(putAwayEnding);
    }
    std::error_code error;
    std::filesystem::rename(file, aside, error);
    return error ? file : aside;
}

std::filesystem::path Recovery::SetAside() {
    kept_.reset();
    return PutAway(FileAt(place_));
}

namespace {

/// True when the patch that the work belongs to still stands where the recovery file says. Who could write that file
/// could name any other one in it, which a save would replace.
bool IsStillThere(const RecoveredPatch& recovered, const Dialect& dialect) {
    std::string bytes;
    if (!recovered.stamp || StampOf(recovered.fileName) != recovered.stamp ||
        !ReadPlace({recovered.fileName, recovered.lump}, bytes))
        return false;
    if (dialect.EngineRules())
        return static_cast<bool>(modPatchFiles::ReadableByEngines(bytes));
    modPatchFiles::Header header;
    return modPatchFiles::ScanHeader(std::string_view(bytes), header) &&
           LeadingInt32(modPatchFiles::HeaderValue(header, "patchversion")) == dialect.patchFormat;
}

/// Whether a patch can have made `set` of `defaults`.
bool CanBeMadeOf(const PatchSet& set, const PatchSet& defaults, bool unlimited) {
    bool can = true;
    VisitKinds([&](const auto& kind) {
        const auto &now = kind.In(set), &own = kind.In(defaults);
        const bool mayHaveMore = unlimited && CanBeMade(kind.kind);
        can = can && now.DenseSize() == own.DenseSize() && (mayHaveMore || now.size() == own.size()) &&
              std::ranges::all_of(own.Numbers(), [&](std::int32_t number) { return now.Has(number); });
    });
    return can;
}

} // namespace

bool ApplyRecovered(const RecoveredPatch& recovered, Session& session) {
    EngineConfiguration layout = session.engine;
    layout.dialect = LayoutFor(session.engine.dialect);
    PatchSet set, defaults;
    if (!modTables::ParseTable(recovered.table, layout, set) ||
        !modTables::ParseTable(recovered.defaultsTable, layout, defaults) ||
        !CanBeMadeOf(set, defaults, session.engine.dialect.unlimited) ||
        (session.engine.dialect.keyedTexts &&
         set.strings.size() != session.patch.defaults.strings.size())) // which no table holds
        return false;
    std::shared_ptr<PatchDocument> document;
    if (session.engine.dialect.EngineRules() && !recovered.document.empty()) {
        document = std::make_shared<PatchDocument>();
        PatchSet opened;
        if (!document->Read(recovered.document, session.engine, defaults, opened).status)
            return false;
    }
    set.pars = recovered.pars;
    for (const auto& [record, text] : recovered.notes)
        if (const Cell note{record.first, record.second, noteField}; HasCell(set, note))
            WriteCell(set, note, text);
    for (const auto& [number, name] : recovered.music)
        if (const Cell music{RecordKind::Music, number, lumpNameField}; HasCell(set, music))
            WriteCell(set, music, name);
    set.misc.helper = recovered.helper;
    session.patch.document = std::move(document);
    session.patch.current = std::move(set);
    session.patch.defaults = std::move(defaults);
    session.patch.fileName = recovered.fileName;
    session.patch.lump = recovered.lump;
    session.patch.named = recovered.named && IsStillThere(recovered, session.engine.dialect);
    return true;
}

} // namespace plinket3
