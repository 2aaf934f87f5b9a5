#!/usr/bin/env python3
"""Saves on a disk that is full and runs with settings that cannot be written. Every failure is told with file and
reason, the old files stay as they were, and the program goes on.
    disk_faults.py BUILD-FOLDER"""

import errno
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from driven import Account, BETA, Display, Failed, IWAD, Program, SKIPPED, require

HEADER = "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\nEngine config = dehextra19.cfg\n" \
         "IWAD = Freedoom\n\n"
NO_SPACE = "No space left on device"


def in_own_mounts():
    """Starts this script anew where it can mount what it wants and nobody else sees it."""
    if "OWN_MOUNTS" in os.environ:
        return
    for command in (["unshare", "--mount"], ["unshare", "--user", "--map-root-user", "--mount"]):
        if subprocess.run([*command, "mount", "-t", "tmpfs", "none", "/mnt"], stderr=subprocess.DEVNULL,
                          check=False).returncode == 0:
            os.environ["OWN_MOUNTS"] = "1"
            os.execvp(command[0], [*command, sys.executable, *sys.argv])
    print("skipped: this account can mount nothing")
    sys.exit(SKIPPED)


class Disk:
    """A small disk of its own."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.folder.mkdir(parents=True)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=4m", "none", folder], check=True)

    def fill(self, leave):
        """Leaves so many bytes free."""
        with open(self.folder / "filler", "ab", buffering=0) as filler:
            try:
                while True:
                    filler.write(bytes(4096))
            except OSError as error:
                if error.errno != errno.ENOSPC:
                    raise
            filler.truncate(max(filler.tell() - leave, 0))

    def read_only(self):
        subprocess.run(["mount", "-o", "remount,ro", self.folder], check=True)

    def content(self):
        return {file.name: file.read_bytes() for file in self.folder.rglob("*") if file.is_file()}


def check(holds, what):
    if not holds:
        raise Failed(what)


def large_patch():
    return HEADER + "".join(f"Frame {frame}\nDuration = {frame + 3}\nUnknown 1 = 12345\nUnknown 2 = 23456\n\n"
                            for frame in range(3999))


def edit(program, shown=False):
    """Changes the first of the miscellaneous values, whose editor may be shown already."""
    program.key(*["ctrl+8"] * (1 + shown), "5")


def choose_file(program, title, file):
    program.focus(f"^{title}$")
    program.xdotool("type", str(file))
    program.key("Return")


def saves(build, display, folder):
    """A patch, its backup and a table on a full disk."""
    for backup in (0, 1):
        place = Path(folder, f"backup{backup}")
        disk = Disk(place / "disk")
        patch = disk.folder / "mine.bex"
        patch.write_text(large_patch())
        (disk.folder / "mine.bex.bak").write_text("an older backup")
        disk.fill(100_000)
        before = disk.content()
        account = Account(place / "home", backup)
        program = Program(build / "plinket3", account, display, patch)
        program.open_patch()
        edit(program)
        program.key("ctrl+s")
        reason = f"no backup could be made: {NO_SPACE}" if backup else NO_SPACE
        program.answer(f"Could not save {patch}: {reason}")
        program.focus(r"^Plinket3 - \[")
        program.key("alt+f", "t")
        choose_file(program, "Save table", disk.folder / "mine.tbl")
        program.answer(f"Could not save {disk.folder}/mine.tbl: {NO_SPACE}")
        check(disk.content() == before, "a failed save has changed the disk")
        program.focus(r"^Plinket3 - \[")
        program.key("ctrl+q")
        program.answer(f"The file {patch} has been changed. Do you want to save it?", "Escape")
        program.focus(r"^Plinket3 - \[")
        program.key("ctrl+shift+s")
        choose_file(program, "Save patch file", place / "other.bex")
        program.until(lambda: (place / "other.bex").exists(), "the patch in another place")
        program.end()
        check(b"Initial Health = 5\r\n" in (place / "other.bex").read_bytes(), "the edit is not in the patch")
        check(len(program.messages) == 4, program.said())


def command_line(build, folder):
    disk = Disk(Path(folder, "cli"))
    patch = Path(folder, "cli.bex")
    patch.write_text(large_patch())
    out = disk.folder / "out.bex"
    out.write_text("old")
    disk.fill(100_000)
    before = disk.content()
    for command in (["convert", "-e", "dehextra19", patch, out], ["table", "-e", "dehextra19", patch, out]):
        run = subprocess.run([build / "plinket3-cli", "--rules", "kept", *command], text=True, capture_output=True,
                             check=False)
        check(run.returncode == 2 and run.stderr.endswith(f"{NO_SPACE}\n") and str(out) in run.stderr,
              f"{command[0]} ended with {run.returncode} and said {run.stderr}")
        check(disk.content() == before, f"a failed {command[0]} has changed the disk")


def settings(build, display, folder):
    """Settings, log, window places and the recovery file's lock on a full disk; the patch is elsewhere."""
    place = Path(folder, "settings")
    place.mkdir()
    disk = Disk(place / "home/.config")
    account = Account(place / "home")
    patch = place / "mine.bex"
    for full in (False, True):
        patch.write_text(HEADER)
        if full:
            disk.fill(0)
        before = disk.content()
        program = Program(build / "plinket3", account, display, patch)
        program.open_patch()
        edit(program, full)
        program.key("ctrl+s")
        program.until(lambda: b"Initial Health = 5\r\n" in patch.read_bytes(), "the saved patch")
        program.focus(r"^Plinket3 - \[")
        program.key("ctrl+q")
        if full:
            program.answer(f"Could not save {account.settings}/plinket3.cfg: {NO_SPACE}")
        program.ended()
        check(len(program.messages) == 1 + full, program.said())
    after = disk.content()
    check("windows.ini" in before, "the places of windows are never kept")
    for name in ("plinket3.cfg", "windows.ini"):
        check(after[name] == before[name], f"{name} is no longer what it was")


def read_only_settings(build, display, folder):
    place = Path(folder, "readonly")
    place.mkdir()
    disk = Disk(place / "home/.config")
    account = Account(place / "home")
    disk.read_only()
    patch = place / "mine.bex"
    patch.write_text(HEADER)
    program = Program(build / "plinket3", account, display, patch)
    program.answer(f"Could not write into the settings folder {account.settings}: Read-only file system. Settings, log "
                   "and unsaved work will not be kept.")
    program.answer(BETA)
    program.reach_patch()
    edit(program)
    program.key("ctrl+s")
    program.until(lambda: b"Initial Health = 5\r\n" in patch.read_bytes(), "the saved patch")
    program.end()
    check(len(program.messages) == 2, program.said())


def main():
    require("Xvfb", "xdotool", "jwm", "unshare", IWAD)
    in_own_mounts()
    build = Path(sys.argv[1]).absolute()
    with tempfile.TemporaryDirectory(prefix="plinket3_disk_") as folder:
        try:
            with Display() as display:
                command_line(build, folder)
                saves(build, display, folder)
                settings(build, display, folder)
                read_only_settings(build, display, folder)
        finally:
            for line in Path("/proc/self/mounts").read_text().splitlines():
                if line.split()[1].startswith(folder):
                    subprocess.run(["umount", "--lazy", line.split()[1]], check=False)
    print("Every failure was told, and nothing was lost")


if __name__ == "__main__":
    try:
        main()
    except Failed as reason:
        sys.exit(f"FAILED: {reason}")
