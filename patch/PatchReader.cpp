#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/PatchDocument.h"
#include "patch/PatchLines.h"
#include "patch/PatchNotes.h"
#include "patch/PatchStore.h"
#include "patch/modPatchFiles.h"

#include <array>
#include <utility>

namespace plinket3::modPatchFiles {

namespace {

/// Header lines that only the header scan reads.
constexpr std::array<std::string_view, 3> sessionKeys{"Engine config", "Data WAD", "IWAD"};
constexpr std::string_view versionKey = "Doom version", formatKey = "Patch format", hashesKey = "Valid hashes";

bool IsSessionKey(std::string_view key) {
    for (const std::string_view known : sessionKeys)
        if (EqualIgnoringCase(key, known))
            return true;
    return false;
}

/// Parts a patch into lines, sections, keys and values, and hands them to the store.
class PatchReader {
public:
    PatchReader(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults, PatchSet& set,
                ReadObserver* observer, const IncludeReader& includes)
        : lines_(bytes), defaults_(defaults), includes_(includes), engine_(engine), dialect_(engine.dialect),
          words_(dialect_), store_(lines_, engine, defaults, set, observer), set_(set), observer_(observer) {}

    ReadResult Read() {
        Status status = dialect_.EngineRules() ? EngineLines() : KeptLines();
        if (status)
            DeriveMisc(set_.misc);
        return {std::move(status), store_.Offset(), unsupported_};
    }

private:
    /// The next line, which is told to the observer.
    std::string_view NextLine() {
        const std::size_t offset = lines_.Position();
        store_.Offset(offset);
        const std::string_view line = lines_.Next();
        if (observer_ != nullptr)
            observer_->Line(offset, line);
        return line;
    }

    // By the kept rules

    Status KeptLines() {
        if (lines_.AtEnd() || Trim(lines_.Next()) != dialect_.firstLine)
            return Status::Failure("Invalid patch file.");
        store_.EnterFirstThing();
        while (!lines_.AtEnd()) {
            const std::string_view line = Trim(NextLine());
            const std::size_t equals = line.find('=');
            Status status = equals == std::string_view::npos
                                ? HeaderLine(line)
                                : FieldLine(Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)));
            if (!status)
                return status;
        }
        return {};
    }

    bool VersionsKnown() const { return doomVersionKnown_ && patchFormatKnown_; }
    void IgnoreEarly() {
        store_.Ignore("is ignored, because it stands before the lines \"Doom version\" and \"Patch format\"");
    }

    Status HeaderLine(std::string_view line) {
        const HeaderWords words(line, dialect_.comment);
        if (words.Count() == 0)
            return {};
        const SectionWords::Entry* found = words_.Named(words[0]);
        if (found == nullptr) {
            if (VersionsKnown() && store_.Current() == Section::Pars && EqualIgnoringCase(words[0], "par"))
                store_.StorePar(words);
            else if (VersionsKnown())
                store_.Ignore("is ignored: it is neither a section that is known nor a line with \"=\"");
            else
                IgnoreEarly();
            return {};
        }
        if (found->section == Section::Unsupported) {
            unsupported_ = true;
            store_.Ignore("is not supported and will be lost when the patch is saved");
            return {};
        }
        if (VersionsKnown())
            store_.Enter(found->section);
        if (found->section == Section::Text) {
            const std::int32_t oldLength = store_.PlainNumber(words[1]), newLength = store_.PlainNumber(words[2]);
            if (!VersionsKnown())
                IgnoreEarly();
            return store_.ReplaceText(oldLength, newLength, VersionsKnown());
        }
        if (VersionsKnown())
            store_.Select(line, found->word);
        else
            IgnoreEarly();
        return {};
    }

    Status FieldLine(std::string_view key, std::string_view value) {
        if (VersionsKnown() && store_.StoreField(key, value)) {
            if (observer_ != nullptr)
                observer_->Field(store_.Offset());
            return {};
        }
        if (EqualIgnoringCase(key, versionKey)) {
            if (store_.PlainNumber(value) != engine_.version)
                return Status::Failure("Patch file version does not match engine version.");
            doomVersionKnown_ = true;
        } else if (EqualIgnoringCase(key, formatKey)) {
            if (store_.PlainNumber(value) != dialect_.patchFormat)
                return Status::Failure("Unsupported patch format.");
            patchFormatKnown_ = true;
        } else if (observer_ != nullptr && !key.starts_with(dialect_.comment) && !IsSessionKey(key)) {
            if (VersionsKnown())
                store_.Ignore(UnknownKey());
            else
                IgnoreEarly();
        }
        return {};
    }

    std::string_view UnknownKey() const {
        switch (store_.Current()) {
        case Section::Strings:
            return "is ignored: the engine has no string of that name";
        case Section::CodePtr:
            return "is ignored: [CODEPTR] has only lines of the form \"Frame 1 = NAME\"";
        case Section::Pars:
            return "is ignored: [PARS] has only lines of the form \"par 1 1 30\" or \"par 1 30\"";
        case Section::Text:
            return "is ignored: a text has ended here, and no other section begins";
        default:
            return "is ignored: this section has no such field";
        }
    }

    // By the rules of game engines

    Status EngineLines() {
        bool inside = false; // of the store's section
        while (!lines_.AtEnd()) {
            const std::string_view line = NextLine();
            if (inside)
                inside = EngineSectionLine(line);
            else
                inside = EngineLineOutside(line);
        }
        if (understood_ || !unknown_)
            return {};
        store_.Offset(0); // no line is to blame more than the first
        return Status::Failure("The file holds no line that a game engine knows.");
    }

    bool IsComment(std::string_view line) const { return line.starts_with(dialect_.comment); }

    /// A line outside of every section; true when it begins one or takes one up again.
    bool EngineLineOutside(std::string_view line) {
        if (line.empty() || IsComment(line))
            return false;
        if (line.starts_with(' ')) {
            unknown_ |= !Trim(line).empty();
            if (!Trim(line).empty())
                store_.Ignore("is skipped: it begins with a blank and stands outside of every section");
            return false;
        }
        if (const SectionWords::Entry* found = words_.Beginning(line)) {
            (IsPlainSection(*found, line) ? understood_ : unknown_) = true;
            return BeginEngineSection(*found, line);
        }
        if (IsBracketed(store_.Current()))
            return EngineSectionLine(line);
        const auto [key, value] = EnginePair(line);
        const std::string_view name = Trim(key);
        const bool hashes = dialect_.fields >= FieldLevel::Id24 && EqualIgnoringCase(name, hashesKey);
        if (EqualIgnoringCase(name, versionKey) || EqualIgnoringCase(name, formatKey) || IsSessionKey(name) ||
            IsFirstLine(line) || hashes) {
            understood_ = true;
            return false;
        }
        unknown_ = true;
        store_.Ignore("belongs to no section");
        return false;
    }

    /// Whether a line that begins with a section's word is one that only a patch has: engines also take "Texture" for
    /// "Text", but so do lines in programs and letters begin.
    bool IsPlainSection(const SectionWords::Entry& found, std::string_view line) const {
        const std::string_view rest = line.substr(found.word.size());
        if (found.section == Section::Include) {
            const std::string_view ending = rest.substr(rest.size() - std::min(rest.size(), std::size_t{4}));
            return line.starts_with("INCLUDE") || EqualIgnoringCase(ending, ".deh") ||
                   EqualIgnoringCase(ending, ".bex");
        }
        if (IsBracketed(found.section))
            return Trim(rest).empty() || IsComment(Trim(rest));
        const std::size_t number = std::min(rest.find_first_not_of(" \t-+"), rest.size());
        return number > 0 && number < rest.size() && rest[number] >= '0' && rest[number] <= '9';
    }

    bool BeginEngineSection(const SectionWords::Entry& found, std::string_view line) {
        store_.Enter(found.section);
        switch (found.section) {
        case Section::Text: {
            if (withoutText_) { // engines read no further
                lines_.Skip();
                return false;
            }
            const HeaderWords words(line, dialect_.comment);
            if (observer_ != nullptr)
                observer_->Section(store_.Offset(), found.word);
            static_cast<void>(
                store_.ReplaceText(store_.PlainNumber(words[1]), store_.PlainNumber(words[2]), true)); // never fails
            return false;
        }
        case Section::Include:
            Include(line);
            return false;
        default:
            store_.Select(line, found.word);
            return true;
        }
    }

    /// INCLUDE [NOTEXT] FILE, whose values count in this place.
    void Include(std::string_view line) {
        constexpr std::string_view noText = "NOTEXT";
        if (!includes_) {
            namesOther_ = true;
            return store_.Ignore("names another patch, whose values belong to it and are not edited here");
        }
        std::string_view name = TrimLeft(line.substr(std::min(line.find_first_of(" \t"), line.size())));
        const bool withoutText = EqualIgnoringCase(name.substr(0, noText.size()), noText);
        if (withoutText)
            name = TrimLeft(name.substr(noText.size()));
        std::string bytes;
        if (const Status status = includes_(Trim(name), bytes); !status)
            return store_.Ignore(status.Reason());
        const IncludeReader none;
        PatchReader included(bytes, engine_, defaults_, set_, nullptr, none);
        included.withoutText_ = withoutText;
        if (!included.EngineLines())
            store_.Ignore("names a file that holds no line that a game engine knows");
        else if (included.namesOther_)
            store_.Ignore("names a patch that names another one in turn, which is not read");
    }

    /// A line within a section; false when that ends with it.
    bool EngineSectionLine(std::string_view line) {
        if (line.empty())
            return false;
        if (IsComment(line))
            return store_.Current() != Section::CodePtr;
        const bool goesOn = !line.starts_with(' ');
        switch (store_.Current()) {
        case Section::Strings:
            store_.StoreEngineString(line);
            return true;
        case Section::Pars:
            store_.StoreEnginePar(line);
            return goesOn;
        case Section::CodePtr:
            return store_.StoreEngineCodePointer(line) && goesOn;
        default:
            EngineFieldLine(line);
            return goesOn;
        }
    }

    void EngineFieldLine(std::string_view line) {
        const auto [key, value] = EnginePair(line);
        if (value.data() == nullptr)
            return store_.Ignore(Trim(line).empty() ? "ends its section" : "is no line of the form \"key = value\"");
        switch (store_.Current()) {
        case Section::Sprites:
        case Section::Sounds:
        case Section::Music:
            return store_.StoreRename(key, value);
        case Section::Helper:
            return store_.StoreHelper(key, value);
        case Section::Unsupported:
            return store_.Ignore("belongs to a section that engines do not read");
        default:
            if (store_.StoreField(key, SkipBlanks(value)))
                understood_ = true;
            else
                store_.Ignore("is ignored: this section has no such field");
        }
    }

    PatchLines lines_;
    const PatchSet& defaults_;
    const IncludeReader& includes_;
    const EngineConfiguration& engine_;
    const Dialect& dialect_;
    SectionWords words_;
    PatchStore store_;
    PatchSet& set_;
    ReadObserver* observer_;

    bool withoutText_ = false,
         namesOther_ = false; // an included patch is read up to its first Text; it includes others
    bool doomVersionKnown_ = false, patchFormatKnown_ = false, unsupported_ = false;
    bool understood_ = false,
         unknown_ = false; // there was a line that says that this is a patch; one that says nothing
};

} // namespace

ReadResult ParsePatch(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults,
                      PatchSet& set, ReadObserver* observer, const IncludeReader& includes) {
    set = defaults;
    set.pars.clear();
    return PatchReader(bytes, engine, defaults, set, observer, includes).Read();
}

Status ReadableByEngines(std::string_view bytes) {
    EngineConfiguration none; // what counts as a patch is the same for all
    none.dialect = none.dialect.AsEngines();
    PatchSet set;
    return ParsePatch(bytes, none, PatchSet(), set).status;
}

ReadResult ReadBytes(std::string bytes, const EngineConfiguration& engine, PatchData& patch) {
    patch.document.reset();
    if (!engine.dialect.EngineRules())
        return ParsePatch(bytes, engine, patch.defaults, patch.current);
    auto document = std::make_shared<PatchDocument>();
    ReadResult result = document->Read(std::move(bytes), engine, patch.defaults, patch.current);
    patch.document = std::move(document);
    return result;
}

bool ReadPatch(Notifier& notifier, const PatchPlace& place, Session& session) {
    std::string bytes;
    if (const Status status = ReadPlace(place, bytes); !status) {
        notifier.Show(MessageKind::Exclamation, "Could not read " + place.Name() + ": " + status.Reason());
        return false;
    }
    PatchData read;
    read.defaults = session.patch.defaults;
    const ReadResult result = ReadBytes(std::move(bytes), session.engine, read);
    if (!result.status) {
        notifier.Show(MessageKind::Exclamation, result.status.Reason());
        return false;
    }
    session.patch.current = std::move(read.current);
    session.patch.document = std::move(read.document);
    session.patch.fileName = place.file;
    session.patch.lump = place.lump;
    session.patch.named = true;
    session.patch.changed = false;
    if (result.unsupported)
        notifier.Show(MessageKind::Exclamation, unsupportedEntries);
    return true;
}

} // namespace plinket3::modPatchFiles
