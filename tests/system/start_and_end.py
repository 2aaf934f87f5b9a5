#!/usr/bin/env python3
"""Starts the real program in a new account, adds Freedoom's IWADs, makes a patch, ends it, and opens a patch with -load
in a second run. Compares the log of both runs line by line.
    start_and_end.py PROGRAM"""

import sys
import tempfile
from pathlib import Path

from driven import Account, BETA, Display, Failed, IWAD, Program, for_windows, path_in, require

EDITORS = ["frmEditThings", "frmEditStates", "frmEditSounds", "frmEditStrings", "frmEditWeapons", "frmEditAmmo",
           "frmEditCheats", "frmEditMisc", "frmEditPars", "frmPropSound", "frmPropString", "frmSelectSprite",
           "frmSelectState", "frmSelectAction"]
BEGIN = ["Setting program defaults...", "Loading IWAD detect configuration...", "Loading program configuration..."]
ENGINES = ["Loading engine configurations...", "  Loaded 11 configuration files", "Loaing custom fonts...",
           "Loading forms..."]
READY = ["Initialising BASS library...", "Applying program settings...", "Ready."]
END = ["Closed IWAD", "Writing configuration file...", "Freeing BASS library...", "Unloading forms...", "Buh-bye..."]


def loaded(*windows):
    return [f"  Loaded {window}" for window in windows]


def session(program, engine, version, table, **counts):
    kinds = {"codepointers": "code pointers", "ammo": "ammo entries", "cheats": "cheat strings"}
    return ["Loading engine configuration...", f"  Using '{engine}' as the current engine",
            f"  Using engine version {version}", "Loading table...",
            f"  Loading tables from {path_in(program, program.parent / 'tables' / table)}.tbl...",
            *(f"    Loaded {count} {kinds.get(kind, kind)}" for kind, count in counts.items()),
            "  Reset patch data", "Loading IWAD...", "Registering WAD files...", "  Loaded PLAYPAL lump"]


def compare_log(account, expected):
    lines = [line.partition("]  ")[2] for line in account.log().replace("\r", "").splitlines()[5:]]
    for number, (said, due) in enumerate(zip(lines + [None] * len(expected), expected)):
        if said != due:
            raise Failed(f"line {number + 1} of the log is {said!r} instead of {due!r}")
    if len(lines) > len(expected):
        raise Failed(f"the log goes on with {lines[len(expected)]!r}")


def first_run(path, account, display):
    program = Program(path, account, display)
    program.answer(BETA)
    program.answer("This is the first time Plinket3 is run from this location.")
    program.through("^Options$")  # its first button looks for IWADs
    program.through("^IWADs found$")
    program.through("^Options$")
    program.through("^Welcome to Plinket3$", "alt+n")
    program.through("^New file$")
    program.focus(r"^Plinket3 - \[")
    program.end()
    compare_log(account, [
        *BEGIN, "First run, displaying Options dialog.", *loaded("frmOptions"), *ENGINES,
        *loaded("frmMain", *EDITORS, "frmAbout", "frmNewFile", "frmStartup"), *READY,
        *session(path, "Boom 2.02 (Doom version 19)", 19, "boom", things=139, states=968, sounds=109, sprites=139,
                 codepointers=75, strings=309, weapons=9, ammo=4, cheats=17), *END])


def second_run(path, account, display):
    patch = account.home / "Mine.deh"
    patch.write_text("Patch File for DeHackEd v3.0\nDoom version = 21\nPatch format = 6\n"
                     "Engine config = ultimate.cfg\nIWAD = freedoom: phase 2\n")
    # In its folder: the option takes no path with a dash in it, which that of a temporary folder may have.
    program = Program(path, account, display, "-load", patch.name, folder=account.home)
    program.answer(BETA)
    program.through("^File settings of [Mm]ine.deh$")  # Windows opens it by the name that is asked for
    program.focus(r"^Plinket3 - \[")
    program.end()
    settings = (account.settings / "plinket3.cfg").read_text("latin-1")
    if "mine.deh" not in settings.lower():
        raise Failed("the patch is no recent file")
    if "lastConfig = 10;" not in settings:
        raise Failed("the recommended engine was not taken")
    compare_log(account, [
        *BEGIN, *ENGINES, *loaded("frmMain", *EDITORS, "frmOptions", "frmAbout", "frmNewFile", "frmStartup"), *READY,
        "Loading patch file mine.deh...",
        *session(path, "Ultimate and Final Doom 1.9", 21, "ultimate", things=137, states=967, sounds=109, sprites=138,
                 codepointers=75, strings=1187, weapons=9, ammo=4, cheats=17), *END])


def main():
    require("Xvfb", "xdotool", "jwm", IWAD)
    path = Path(sys.argv[1]).absolute().with_suffix("")
    with tempfile.TemporaryDirectory(prefix="plinket3_") as folder, Display() as display:
        account = Account(Path(folder, "home"), new=True, windows=for_windows(path))
        first_run(path, account, display)
        second_run(path, account, display)
    print("Both runs are as they should be")


if __name__ == "__main__":
    try:
        main()
    except Failed as reason:
        sys.exit(f"FAILED: {reason}")
