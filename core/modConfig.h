#pragma once

#include "core/Dialect.h"
#include "core/Notifier.h"
#include "core/Status.h"
#include "core/Text.h"
#include "core/clsConfiguration.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace plinket3 {

/// One engine version as its configuration file describes it. All counts and numbers are the file's own and not yet
/// trusted: nothing takes memory by them.
struct EngineConfiguration {
    /// A number that an action takes from its state.
    struct Argument {
        enum class Kind {
            Number,
            Unsigned,
            Fixed16, // 16.16 fixed point: a length, a speed or a factor
            Angle,   // degrees in 16.16 fixed point
            Degrees, // whole degrees
            Flag,    // other than 0: yes
            Thing,   // counted from 1
            State,
            Sound,
            Bits,  // of `BitSet::Things`
            Bits21 // of `BitSet::Things21`
        };
        std::string field; // the state's field that it stands in, by its label
        std::string name;
        Kind kind = Kind::Number;
        std::int32_t standard = 0; // what counts when the field is unset
        std::string zero;          // what a 0 does that is given, in a few words; may be empty
        std::string meaning;
        bool operator==(const Argument&) const = default;
    };
    struct Action {
        std::int32_t value = 0;  // the code pointer value; 0 is the empty action
        std::string mnemonic;    // as extended patches spell it, also the name that is shown; may be empty
        std::string description; // escaped
        std::vector<Argument> arguments{};
    };
    /// Bits that a field holds by name, lowest first; tooltips may be fewer than names.
    struct Bits {
        std::vector<std::string> names, tooltips;
    };
    struct String {
        std::string mnemonic; // the key in the section [STRINGS] of extended patches
        std::string text;     // the default text in its stored, escaped form
    };
    /// Numbers of records: 137 for 137 things.
    struct Counts {
        std::int32_t things = 0, states = 0, sounds = 0, sprites = 0, strings = 0, weapons = 0, ammunition = 0,
                     cheats = 0;
    };
    /// Positions of the data blocks in the game's executable, in bytes.
    struct Offsets {
        std::int32_t dataSegment = 0, things = 0, states = 0, sounds = 0, sprites = 0, strings = 0, codePointers = 0,
                     weapons = 0, ammunition = 0, cheats = 0;
    };

    std::string name;
    std::int16_t version = 0; // "Doom version = " of its patches
    std::string fileName;     // the configuration's, without its folder
    std::string table;        // the table file's name, looked for in the folder "tables"
    bool allowExeRead = false;
    std::int32_t exeSize = 0;
    Dialect dialect; // of its patches
    Counts itemCounts;
    Offsets offsets;
    std::vector<std::string> flagNames;    // by bit; also the flags' mnemonics in extended patches
    std::vector<std::string> flagTooltips; // by bit; may be shorter than flagNames
    std::vector<std::string> thingNames, weaponNames, ammoNames;
    std::vector<Action> actions;                 // in the order of "actiondescriptions"
    std::vector<std::int32_t> cheatOffsets;      // empty when the file has none, as are the lists below
    std::vector<std::int32_t> cheatLengths;      // by cheat
    std::vector<std::int32_t> codePointerStates; // by DeHackEd pointer number: the state that it belongs to
    std::vector<std::int32_t> codePointerOffsets;
    std::vector<String> strings; // "boomstrings"
    std::vector<std::int32_t> miscellaneousOffsets;

    std::array<Bits, bitSetCount> laterBits; // of the sets that came after the thing flags, by `BitSet`
    /// A number that a field may have, and what it stands for.
    struct Choice {
        std::int32_t value = 0;
        std::string name;
        bool operator==(const Choice&) const = default;
    };
    std::vector<Choice> pickupItems, pickupCategories; // of `FieldUnit::PickupItem`, `FieldUnit::PickupCategory`
    /// What things leave behind, in engines whose table has no place for it: things from 0, what they leave from 1.
    std::vector<std::pair<std::int32_t, std::int32_t>> droppedItems;
    /// Things that are in one projectile group from the start, one without a number.
    std::vector<std::int32_t> sharedProjectileGroup;

    /// The names of a set's bits, by bit; may be shorter than 32.
    const std::vector<std::string>& BitNames(BitSet set) const {
        return set == BitSet::Things ? flagNames : laterBits[static_cast<std::size_t>(set)].names;
    }
    const std::vector<std::string>& BitTooltips(BitSet set) const {
        return set == BitSet::Things ? flagTooltips : laterBits[static_cast<std::size_t>(set)].tooltips;
    }
    /// The action of a code pointer value; null when the configuration has none.
    const Action* ActionOf(std::int32_t codePointer) const;
    /// The mnemonic of a code pointer value; null when the configuration names none.
    const std::string* MnemonicOf(std::int32_t codePointer) const;
    /// The code pointer value of a mnemonic, compared exactly; absent when there is none.
    std::optional<std::int32_t> CodePointerOf(std::string_view mnemonic) const;
    /// Entries in "codepointermnemonics".
    std::size_t MnemonicCount() const { return mnemonicByValue.size(); }

    /// "codepointermnemonics" both ways round.
    std::unordered_map<std::int32_t, std::string> mnemonicByValue;
    std::unordered_map<std::string, std::int32_t, TextHash, std::equal_to<>> valueByMnemonic; // the first of each
};

/// The keys of "itemcounts" and "offsets", in the order of a written file.
struct CountKey {
    std::string_view key;
    std::int32_t EngineConfiguration::Counts::*member;
};
inline constexpr CountKey countKeys[]{
    {"things", &EngineConfiguration::Counts::things},         {"states", &EngineConfiguration::Counts::states},
    {"sounds", &EngineConfiguration::Counts::sounds},         {"sprites", &EngineConfiguration::Counts::sprites},
    {"strings", &EngineConfiguration::Counts::strings},       {"weapons", &EngineConfiguration::Counts::weapons},
    {"ammunition", &EngineConfiguration::Counts::ammunition}, {"cheats", &EngineConfiguration::Counts::cheats},
};
struct OffsetKey {
    std::string_view key;
    std::int32_t EngineConfiguration::Offsets::*member;
};
inline constexpr OffsetKey offsetKeys[]{
    {"datasegment", &EngineConfiguration::Offsets::dataSegment},
    {"things", &EngineConfiguration::Offsets::things},
    {"states", &EngineConfiguration::Offsets::states},
    {"sounds", &EngineConfiguration::Offsets::sounds},
    {"sprites", &EngineConfiguration::Offsets::sprites},
    {"strings", &EngineConfiguration::Offsets::strings},
    {"codepointers", &EngineConfiguration::Offsets::codePointers},
    {"weapons", &EngineConfiguration::Offsets::weapons},
    {"ammunition", &EngineConfiguration::Offsets::ammunition},
    {"cheats", &EngineConfiguration::Offsets::cheats},
};

/// The words of a configuration for rules, levels of fields, sets of bits and kinds of arguments, in the order of the
/// values.
inline constexpr std::array<std::string_view, 2> numberWords{"limited", "unlimited"};
inline constexpr std::array<std::string_view, 2> ruleWords{"kept", "engine"};
inline constexpr std::array<std::string_view, 4> levelWords{"doom", "dehextra", "mbf21", "id24"};
inline constexpr std::array<std::string_view, bitSetCount> bitSetWords{"flags", "thingbits21", "statebits21",
                                                                       "weaponbits21", "thingbits24"};
inline constexpr std::array<std::string_view, 11> argumentWords{
    "number", "unsigned", "fixed", "angle", "degrees", "flag", "thing", "state", "sound", "bits", "bits21"};

namespace modConfig {

inline constexpr std::string_view settingsType = "Plinket3 Program Configuration file";
inline constexpr std::string_view engineType = "Plinket3 Engine Configuration file";
inline constexpr std::string_view iwadDetectType = "Plinket3 IWAD detect configuration file";

/// A valid engine configuration that the enumeration found.
struct EngineEntry {
    std::filesystem::path file;
    std::string name;
    std::int16_t version = 0;
    bool extended = false;
    std::shared_ptr<const EngineConfiguration> configuration = nullptr; // as it was found; null when that failed
};

/// The engine configurations in `folder` (extension "cfg" in any case), ordered by file name. Files of another "type"
/// are skipped silently; files that cannot be loaded or lack "engine"."name" or "version" are skipped and handed, as
/// one line, to `skipped`. A folder that does not exist gives an empty list.
std::vector<EngineEntry> EnumerateEngines(const std::filesystem::path& folder,
                                          const std::function<void(std::string_view)>& skipped);

/// Loads one configuration into `engine`, which is left as it was after a failure. The reason of a failure names file,
/// structure and key; for a file of another "type" it is "Invalid engine configuration file.".
Status LoadEngine(const std::filesystem::path& file, EngineConfiguration& engine);

/// `LoadEngine` that shows the reason of a failure (exclamation icon).
[[nodiscard]] bool LoadEngineConfiguration(const std::filesystem::path& file, EngineConfiguration& engine,
                                           Notifier& notifier);

/// Loads "iwaddetect.cfg". Fails with "Invalid IWAD detect configuration file." when the file cannot be read or its
/// "type" is another.
Status LoadIwadDetect(const std::filesystem::path& file, clsConfiguration& iwadDetect);
/// The display name for an IWAD file, looked up by its base name in lower case; empty when it is not known.
std::string DetectIwadName(const clsConfiguration& iwadDetect, const std::filesystem::path& iwad);

} // namespace modConfig

/// In the settings' folder.
inline constexpr const char* settingsFileName = "plinket3.cfg";

/// The program's settings: one configuration tree, kept for the whole run and written at every shut-down. Programs that
/// run at the same time share the file: what each has changed since it read it is merged, entry by entry.
class Settings {
public:
    struct Iwad {
        std::string name, path;
        bool operator==(const Iwad&) const = default;
    };
    static constexpr std::size_t maximumRecentFiles = 32;

    /// Sets where the settings are kept. Reads nothing.
    void File(std::filesystem::path file) { file_ = std::move(file); }
    const std::filesystem::path& File() const { return file_; }

    /// Fills the empty tree with the defaults of a first run. `documentsFolder` becomes "lastDir", without a separator
    /// at its end.
    void CreateDefaults(const std::filesystem::path& documentsFolder);
    /// Loads the file. Fails with "Invalid program configuration file." when "Type" is another or the text is not
    /// valid; the tree then holds what was read.
    Status Load();
    /// Writes the file (CR LF, white space). After a `Load`, the file is read again, what was changed here since the
    /// last writing is changed in it too, and the result is written and replaces the tree. Fails, with the file left as
    /// it is, when it could not be read, now or by `Load`: a mistake in a hand-edited file must not cost its content.
    Status Save();

    /// A flag or list position; the default of a first run when the key is missing or no number.
    std::int32_t Number(std::string_view key) const;
    void Number(std::string_view key, std::int32_t value);
    /// Empty when the key is missing or no text.
    std::string Text(std::string_view key) const;
    void Text(std::string_view key, std::string_view value);

    /// The known IWADs ("IWADs": 0wad, 1wad ...), in order.
    std::vector<Iwad> Iwads() const;
    /// Every ";" is taken out of the name. What another program has added alike meanwhile is not added to the file.
    void AddIwad(std::string_view name, std::string_view path);
    /// Removes the entry at `index` and numbers the others anew. Does nothing when there is no such entry.
    void RemoveIwad(std::size_t index);

    /// A program that plays the game, with the arguments that it is started with: see `PortCommand.h`.
    struct Port {
        std::string name, program, arguments;
        bool operator==(const Port&) const = default;
    };
    /// The ports of the options, in order; empty when they were never stored.
    std::vector<Port> Ports() const;
    void Ports(const std::vector<Port>& ports);

    /// What a patch was edited against, of those that do not say so themselves. `patch` is its path, with the lump.
    struct FileSession {
        std::string engine, iwad, dataWad; // the configuration's file name; paths
        bool operator==(const FileSession&) const = default;
    };
    static constexpr std::size_t mostFileSessions = 100;
    /// Empty texts for a patch that is not known.
    FileSession SessionOf(std::string_view patch) const;
    /// Forgets the patch that was remembered first beyond `mostFileSessions`.
    void RememberSession(std::string_view patch, const FileSession& session);

    /// Recently used patch files, the oldest first.
    std::vector<std::string> RecentFiles() const;
    /// Moves or adds a path to the end of the list (paths that differ in ASCII case only are the same file) and drops
    /// the oldest one beyond `maximumRecentFiles`.
    void AddRecentFile(std::string_view path);
    /// Removes every path that names no existing file.
    void PruneRecentFiles();

private:
    using Change = std::function<void(SettingTree& root)>;
    void Apply(const Change& change);

    std::filesystem::path file_;
    clsConfiguration configuration_;
    std::vector<Change> changes_; // since the file was read or written
    bool loaded_ = false;
    bool readable_ = true; // false after a load that could not make sense of the file
};

} // namespace plinket3
