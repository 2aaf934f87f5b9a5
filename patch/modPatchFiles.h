#pragma once

#include "core/Status.h"
#include "patch/Cells.h"
#include "patch/PatchPlace.h"
#include "patch/Program.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

/// DeHackEd patches, normal (.deh) and extended (.bex): the text files that hold what differs from an engine's own
/// data. docs/formats.md draws the dialect.
namespace plinket3::modPatchFiles {

/// What the lines of a patch say of what it was made for, by name: "patchversion", "engineversion", "engineconfig",
/// "datawad", "iwad" (only those found) and "filename".
using Header = std::map<std::string, std::string, std::less<>>;

/// What the header says under a name; empty when it says nothing.
std::string HeaderValue(const Header& header, std::string_view name);

/// A path without its folders. Paths in patches come from every platform.
std::string_view FileNameOf(std::string_view path);

/// Scans a patch for its header lines. Fails when the patch cannot be read or when a header line stands in it twice.
Status ScanHeader(const PatchPlace& place, Header& header);
Status ScanHeader(std::string_view bytes, Header& header);

/// What the user is told when a patch held sections that are not supported.
inline constexpr std::string_view unsupportedEntries = "Unsupported entries were found in the patch file. Those "
                                                       "entries will be ignored. This means that Plinket3 will not "
                                                       "save those entries again either!";

/// Told of what a read did with the patch's lines, in file order; `offset` is the place in the bytes where the line
/// begins. `check` watches a read this way.
class ReadObserver {
public:
    virtual ~ReadObserver() = default;
    /// A line begins that is no part of a text and of no string before it.
    virtual void Line(std::size_t /*offset*/, std::string_view /*text*/) {}
    /// A line that changes nothing. `reason` continues a sentence that the line begins.
    virtual void Ignored(std::size_t /*offset*/, std::string_view /*reason*/) {}
    /// A line that selects a record or begins a section; `word` as a patch writes it.
    virtual void Section(std::size_t /*offset*/, std::string_view /*word*/) {}
    /// The record that a section selects: a state for Pointer sections. Not for one that there is not and that the
    /// patch may not make.
    virtual void Selected(std::size_t /*offset*/, RecordKind /*kind*/, std::int32_t /*index*/) {}
    /// A line has set a value; a line of [PARS] the entry of the list that is the cell's index. `value` is the part of
    /// the patch's bytes that says it, as far as one part does.
    virtual void Stored(std::size_t /*offset*/, const Cell& /*cell*/, std::string_view /*value*/) {}
    /// By engine rules: a string that the engine does not know, and a sprite, sound or music with another name.
    virtual void OtherString(std::size_t /*offset*/, std::string_view /*key*/, std::string_view /*text*/) {}
    virtual void Renamed(std::size_t /*offset*/, RecordKind /*kind*/, std::string_view /*from*/,
                         std::string_view /*to*/) {}
    /// By the kept rules: a line with "=" belongs to its section, whether or not the record exists.
    virtual void Field(std::size_t /*offset*/) {}
    /// A number was read, for a field or as a part of another line.
    virtual void Number(std::size_t /*offset*/, FieldUnit /*unit*/, FieldWidth /*width*/, std::string_view /*text*/) {}
    /// Bits of a set were read from their names.
    virtual void FlagNames(std::size_t /*offset*/, BitSet /*set*/, std::string_view /*text*/) {}
    /// A state got another code pointer.
    virtual void CodePointer(std::size_t /*offset*/, std::int32_t /*state*/) {}
    /// A text of `length` characters was stored where the engine has room for `space`.
    virtual void Text(std::size_t /*offset*/, std::size_t /*length*/, std::int32_t /*space*/) {}
    /// The value of a line in [STRINGS], of a comment too, has taken in the lines up to `end`.
    virtual void Continued(std::size_t /*offset*/, std::size_t /*end*/) {}
    /// A string was stored; `escaped` is its text, joined from its lines, before escapes are undone.
    virtual void String(std::size_t /*offset*/, std::string_view /*escaped*/) {}
};

struct ReadResult {
    Status status;            // a failure's reason is the message for the user
    std::size_t offset = 0;   // where the line begins that made the read fail
    bool unsupported = false; // there were entries that a save will lose
};

/// Gets the bytes of a patch that an INCLUDE line names. The reason of a failure continues a sentence that the line
/// begins.
using IncludeReader = std::function<Status(std::string_view name, std::string& bytes)>;
/// One that reads the files beside `patch` and in folders below, and no others.
IncludeReader IncludesBeside(std::filesystem::path patch);

/// Reads a patch over a copy of `defaults` into `set`, which after a failure holds what was applied so far. With
/// `includes` the values of patches that it includes by engine rules count where they are named, but not of those that
/// these include in turn; `observer` is told of the patch's own lines alone.
ReadResult ParsePatch(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults,
                      PatchSet& set, ReadObserver* observer = nullptr, const IncludeReader& includes = {});

/// Reads a patch over `patch.defaults` into `patch.current` by the engine's rules, by those of game engines also into
/// `patch.document`. After a failure both are as far as it was read.
ReadResult ReadBytes(std::string bytes, const EngineConfiguration& engine, PatchData& patch);

/// Fails for bytes of which game engines understand nothing, with the message for the user.
Status ReadableByEngines(std::string_view bytes);

/// Reads a patch into `session.patch`, over its default set. Shows what goes wrong; the patch is then as it was.
[[nodiscard]] bool ReadPatch(Notifier& notifier, const PatchPlace& place, Session& session);

/// The differences between the two sets of `patch` as a patch file's bytes.
std::string FormatPatch(const PatchData& patch, const EngineConfiguration& engine);

/// These records as a patch's text, by engine rules: all that they hold, whether or not it is the engine's own, with
/// names in comments. States, things, weapons, ammunition, sounds, sprites' names and strings; others are left out.
std::string FormatRecords(const PatchData& patch, const EngineConfiguration& engine, const std::set<RecordId>& records);

/// The document's bytes with the engine, IWAD and data WAD of `patch` in the lines that name others. A line stays that
/// names a file of the same name in whatever folder, and so does one for which `patch` says nothing, or nothing that
/// the header scan would find again. No line is added. Absent when all stay. `version`: the same for "Doom version".
std::optional<std::string> UpdateHeader(const PatchDocument& document, const PatchData& patch, bool version = false);

/// What saving writes: by engine rules the file as it was opened with what was changed in it, else `FormatPatch`. Fails
/// for a value that could not be read back. The bytes may be the document's, which must outlive them.
Status FormatForSaving(const PatchData& patch, const EngineConfiguration& engine, BytePieces& bytes);

/// Writes the open patch as `WritePlace` does. Logs "Saved " and the name. Does not change `program.patch`.
Status SavePatch(Program& program, const PatchPlace& place, bool createBackup,
                 MissingLump missing = MissingLump::Fails);

} // namespace plinket3::modPatchFiles
