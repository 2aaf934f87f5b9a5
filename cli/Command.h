#pragma once

#include "cli/Cli.h"
#include "core/Notifier.h"
#include "core/Status.h"
#include "patch/Program.h"
#include "wad/modWADList.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3::cli {

/// What was given on the command line. A command reads only what its row in the table of commands allows.
struct Arguments {
    std::string engine;             // -e
    std::string rules = "auto";     // or "kept" or "engine"
    std::vector<std::string> files; // the plain arguments, in order
    std::string to, iwad, lump, base;
    std::vector<std::string> dataWads;
    bool compact = false, unused = false, fresh = false, withStates = false, free = false, same = false;
    std::optional<std::int32_t> thing, weapon;
    std::vector<std::string> sprite; // name and frame
};

/// Ends a command with `refused` and its one line.
struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Keeps what the core has to say until the command knows whether it failed.
class CollectingNotifier : public Notifier {
public:
    void Show(MessageKind, std::string_view text) override { messages_.emplace_back(text); }
    Answer Ask(std::string_view text, Buttons) override {
        messages_.emplace_back(text);
        return Answer::Cancel;
    }
    const std::vector<std::string>& Messages() const { return messages_; }

private:
    std::vector<std::string> messages_;
};

/// One run of a command.
struct Run {
    const Arguments& arguments;
    Program& program;
    CollectingNotifier& notifier;
    std::ostream& out;
    std::ostream& err;
    std::vector<std::string> skippedEngines = {}; // why, a line for each configuration that cannot be read
};

/// A command is a row; the help comes from the rows.
struct Command {
    std::string_view name;
    std::string_view synopsis; // the plain arguments as the help shows them
    std::string_view help;
    std::string_view options; // the names of the options that it takes, parted by blanks; "!" before one that it needs
    int fewestFiles, mostFiles;
    int (*run)(Run&);
};

std::span<const Command> PatchCommands();
std::span<const Command> RecordCommands();
std::span<const Command> WadCommands();

/// Writes a message as one line, whatever control characters the names in it have.
void Complain(std::ostream& err, std::string_view message);

/// Throws `Refused` with "WHAT: REASON" when `status` is a failure.
void Require(const Status& status, std::string_view what);

inline constexpr const char* standardSet = "-"; // in place of a patch: the engine's own data

/// Loads the engine that was asked for, or the one that the patch is likely made for, and reads the patch into that of
/// the program; `standardSet` leaves the engine's own data. Throws `Refused`.
void LoadPatch(Run& run, const std::string& file);

/// Writes the program's patch to a file or a lump as saving does. Throws `Refused`.
void SaveTo(Run& run, const std::string& file);

/// The WADs in their order. Throws `Refused`.
WadList OpenWads(std::span<const std::string> files);

/// Writes `bytes` to `file` in one step. Throws `Refused`.
void WriteOutput(const std::string& file, std::string_view bytes);

/// Writes the current set as JSON text.
void DumpJson(const Program& program, std::ostream& out);

} // namespace plinket3::cli
