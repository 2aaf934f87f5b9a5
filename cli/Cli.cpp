#include "cli/Cli.h"

#include "cli/Command.h"
#include "core/Files.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "core/Version.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <limits>
#include <sstream>

namespace plinket3::cli {

namespace {

/// The options that commands choose from.
void AddOption(CLI::App& app, std::string_view name, Arguments& arguments) {
    const bool needed = name.starts_with('!');
    if (needed)
        name.remove_prefix(1);
    CLI::Option* option = nullptr;
    if (name == "engine")
        option =
            app.add_option("-e", arguments.engine, "The engine: a configuration's file name, with or without .cfg");
    else if (name == "to")
        option = app.add_option("--to", arguments.to,
                                "The engine to take the patch over to; what that one cannot hold is left out, and told "
                                "on standard error with the exit status 1");
    else if (name == "iwad")
        option = app.add_option("--iwad", arguments.iwad,
                                "The IWAD: convert names it in the patch, check looks for pictures in it");
    else if (name == "data-wad")
        option = app.add_option("--data-wad", arguments.dataWads,
                                "A data WAD, for the same; given several times, later ones replace what earlier ones "
                                "have")
                     ->allow_extra_args(false); // what follows is a file
    else if (name == "base")
        option = app.add_option("--base", arguments.base,
                                "The patch from which all others come: only what a PATCH changed in it counts, and "
                                "what BASE changed otherwise is a conflict");
    else if (name == "lump")
        option = app.add_option("--lump", arguments.lump,
                                "Where the patch stands in a WAD: NAME, or NAME#2 for the second lump of that name; "
                                "the last one called DEHACKED without this")
                     ->check([](const std::string& lump) { return lump.empty() ? "a lump has a name" : ""; });
    else if (name == "compact")
        option = app.add_flag("--compact", arguments.compact, "Without blanks, indentation and empty lines");
    else if (name == "fresh")
        option = app.add_flag("--fresh", arguments.fresh, "A new patch that holds only what differs from the engine");
    else if (name == "with-states")
        option = app.add_flag("--with-states", arguments.withStates,
                              "With the states that they come to, and the things, sounds, sprites and strings that the "
                              "patch has made or changed");
    else if (name == "free")
        option = app.add_flag("--free", arguments.free,
                              "Things and states go to free numbers, sprites and sounds where one of their name is; so "
                              "without this");
    else if (name == "same")
        option =
            app.add_flag("--same", arguments.same, "Everything goes to the numbers that it has")->excludes("--free");
    else if (name == "thing")
        option = app.add_option("--thing", arguments.thing, "The states of this thing, counted from 0")
                     ->check(CLI::Range(INT32_MIN, INT32_MAX));
    else if (name == "weapon")
        option = app.add_option("--weapon", arguments.weapon, "The states of this weapon, counted from 0")
                     ->check(CLI::Range(INT32_MIN, INT32_MAX));
    else if (name == "unused")
        option = app.add_flag("--unused", arguments.unused, "The states that nothing uses");
    else if (name == "sprite")
        option = app.add_option("--sprite", arguments.sprite, "A sprite's name and its frame (a number or a letter)")
                     ->expected(2)
                     ->allow_extra_args(false) // what follows is a file
                     ->type_name("NAME FRAME");
    if (option != nullptr && needed)
        option->required();
}

void AddCommand(CLI::App& app, const Command& command, Arguments& arguments, std::function<void()> chosen) {
    CLI::App* sub = app.add_subcommand(std::string(command.name), std::string(command.help));
    std::istringstream options{std::string(command.options)};
    for (std::string name; options >> name;)
        AddOption(*sub, name, arguments);
    if (command.mostFiles > 0)
        sub->add_option("files", arguments.files, "The plain arguments, in this order")
            ->type_name(std::string(command.synopsis));
    sub->callback(std::move(chosen));
}

} // namespace

void Complain(std::ostream& err, std::string_view message) { err << "plinket3-cli: " << Printable(message) << '\n'; }

void Require(const Status& status, std::string_view what) {
    if (!status)
        throw Refused(std::string(what) + ": " + status.Reason());
}

void WriteOutput(const std::string& file, std::string_view bytes) {
    Require(WriteFileAtomically(PathOf(file), bytes), file);
}

int RunCli(const std::vector<std::string>& arguments, const std::filesystem::path& programFolder, std::ostream& out,
           std::ostream& err) {
    CLI::App app("Reads, checks, compares and converts DeHackEd patches without a window.", "plinket3-cli");
    app.allow_windows_style_options(false); // "/home/me/a.deh" is a file everywhere
    app.set_version_flag("--version", programVersion);
    app.require_subcommand(1);
    app.fallthrough();
    std::string data;
    app.add_option("--data", data, "The folder that holds config/ and tables/ instead of the program's own");

    Arguments given;
    app.add_option("--rules", given.rules,
                   "By which rules patches are read and written: kept (as ever), engine (as game "
                   "engines do, keeping every line) or auto (engine where kept would lose anything), as without this")
        ->check(CLI::IsMember({"auto", "kept", "engine"}));
    const Command* chosen = nullptr;
    for (const auto commands : {PatchCommands(), RecordCommands(), WadCommands()})
        for (const Command& command : commands)
            AddCommand(app, command, given, [&chosen, &command] { chosen = &command; });

    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) // help and version
            return app.exit(error, out, err);
        Complain(err, std::string(error.what()) + "; see --help");
        return refused;
    }

    const auto files = static_cast<int>(given.files.size());
    if (files < chosen->fewestFiles || files > chosen->mostFiles) {
        Complain(err, "usage: plinket3-cli " + std::string(chosen->name) + " " + std::string(chosen->synopsis) +
                          "; see --help");
        return refused;
    }

    CollectingNotifier notifier;
    Program program(notifier);
    program.programFolder = data.empty() ? programFolder : PathOf(data);
    std::ostringstream result;
    Run run{given, program, notifier, result, err};
    try {
        const int exit = chosen->run(run);
        out << result.str();
        out.flush();
        if (!out) {
            Complain(err, "the output could not be written");
            return refused;
        }
        return exit;
    } catch (const Refused& reason) {
        Complain(err, reason.what());
    } catch (const std::bad_alloc&) {
        Complain(err, "there is not enough memory");
    }
    return refused;
}

} // namespace plinket3::cli
