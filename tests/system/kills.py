#!/usr/bin/env python3
"""Kills the window program and the command line at random moments around a save, again and again. Whatever the moment,
the file is then the old one or the new one, byte for byte, a backup is whole, and what a killed save leaves behind
neither piles up nor hinders the next save.
    kills.py BUILD-FOLDER [KILLS [SEED]]      KILLS of the window without backups, as many with them, five times as
                                              many of the command line, and twice as many of it into a WAD
SEED gives the same patch and the same dice. The moments also follow from how long saves take, so they differ each time.
"""

import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import make_hostile
from driven import Account, Display, Failed, IWAD, Program, command, for_windows, require

ENGINE = "dehextra19"
HEADER = f"Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\nEngine config = {ENGINE}.cfg\n" \
         "IWAD = Freedoom\n\n"


def large_patch(chance):
    """A patch that changes nearly every record of the engine, so that a save takes its time."""
    lines = [HEADER]
    for thing in range(1, 250):
        lines.append(f"Thing {thing}\n" + "".join(
            f"{field} = {chance.randrange(1, 30000)}\n"
            for field in ("ID #", "Hit points", "Speed", "Width", "Height", "Mass", "Missile damage", "Bits")))
    for frame in range(1, 3999):
        lines.append(f"Frame {frame}\nSprite number = {chance.randrange(100)}\n"
                     f"Sprite subnumber = {chance.randrange(20)}\nDuration = {chance.randrange(100, 30000)}\n"
                     f"Next frame = {chance.randrange(900)}\nUnknown 1 = {chance.randrange(1, 30000)}\n"
                     f"Unknown 2 = {chance.randrange(1, 30000)}\n")
    return "\n".join(lines)


class Target:
    """The file that is saved over and over, and what may lie beside it."""

    def __init__(self, folder, name="target.bex"):
        self.file = Path(folder, name)
        self.backup = Path(folder, name + ".bak")
        self.versions = []
        self.delay = 0.05  # the middle of the moments at which we kill, in seconds behind the key or the start
        self.counts = {"old": 0, "new": 0, "leftover": 0}

    def leftovers(self):
        return {(entry.name, entry.stat().st_ino) for entry in self.file.parent.glob(".plinket3-*")}

    def time_until_saved(self, begin):
        """Calls begin() and waits for the file to be replaced."""
        before = self.file.stat().st_ino
        start = time.monotonic()
        begin()
        while self.file.stat().st_ino == before:
            if time.monotonic() > start + 20:
                raise Failed("the file is never saved")
            time.sleep(0.0005)
        self.delay = time.monotonic() - start

    def kill_around_save(self, chance, begin, kill):
        """begin() begins a save of the version that is not there, kill() ends its program."""
        old = self.file.read_bytes()
        if old not in self.versions:
            raise Failed("the file is no version that was saved")
        new = self.versions[1 - self.versions.index(old)]
        backup = self.backup.read_bytes() if self.backup.exists() else None
        before = self.leftovers()
        delay = self.delay * chance.uniform(0, 2)
        begin()
        time.sleep(delay)
        kill()

        found = self.file.read_bytes()
        if found not in (old, new):
            other = set(found.splitlines()) - set(new.splitlines())
            raise Failed(f"killed after {delay:.4f} s the file is neither old nor new: {len(found)} bytes; "
                         f"{len(other)} lines are not in the new one, such as {list(other)[:3]}")
        if self.backup.exists() and self.backup.read_bytes() not in (backup, old):
            raise Failed(f"killed after {delay:.4f} s the backup is not whole")
        left = self.leftovers()
        if len(left) > 2:  # one of the file, one of its backup
            raise Failed(f"leftovers pile up: {left}")
        side = "new" if found == new else "old"
        self.counts[side] += 1
        self.counts["leftover"] += bool(left - before)
        self.delay *= 1.25 if side == "old" else 0.8  # so that the moments gather around the change

    def report(self, name, kills):
        print(f"{name}: {kills} kills, {self.counts['old']} left the old file, {self.counts['new']} the new one, "
              f"{self.counts['leftover']} a leftover; the moments gathered around {self.delay * 1000:.1f} ms", flush=True)
        if kills >= 100:  # fewer may miss by chance
            if min(self.counts["old"], self.counts["new"]) == 0:
                raise Failed(f"{name}: all kills were on the same side of the save")
            if self.counts["leftover"] == 0:
                raise Failed(f"{name}: no kill was within the save")
        if self.leftovers():
            raise Failed(f"{name}: a leftover stays after a save that was not killed")


def window(build, display, patch, backup, kills, chance):
    with tempfile.TemporaryDirectory(prefix="plinket3_kills_") as folder:
        target = Target(folder)
        target.file.write_bytes(patch.read_bytes())
        account = Account(Path(folder, "home"), backup, windows=for_windows(build / "plinket3"))

        def open_program():
            (account.settings / "windows.ini").unlink(missing_ok=True)  # the editors as at a first start
            program = Program(build / "plinket3", account, display, target.file)
            program.open_patch()
            program.key("ctrl+8")  # the first field of the miscellaneous values
            return program

        def edit(program, version):
            program.key("56"[version])

        program = open_program()
        for version in (0, 1):
            edit(program, version)
            target.time_until_saved(lambda: program.press("ctrl+s"))
            target.versions.append(target.file.read_bytes())
            program.key("shift+Tab", "Tab")  # selects what the field holds
        program.end()
        for _ in range(kills):
            program = open_program()
            edit(program, 1 - target.versions.index(target.file.read_bytes()))
            target.kill_around_save(chance, lambda: program.press("ctrl+s"), program.kill)

        program = open_program()
        edit(program, 1 - target.versions.index(target.file.read_bytes()))
        target.time_until_saved(lambda: program.press("ctrl+s"))
        program.end()
        target.report("Window with backups" if backup else "Window without backups", kills)


def command_line(build, patch, kills, chance, wad=None):
    """`wad`: the bytes of a WAD that gets the patch as a lump."""
    with tempfile.TemporaryDirectory(prefix="plinket3_kills_") as folder:
        target = Target(folder, "target.wad" if wad else "target.bex")
        if wad:
            target.file.write_bytes(wad)
        inputs = [patch, Path(folder, "other.bex")]
        inputs[1].write_text(patch.read_text() + "\nMisc 0\nInitial Health = 77\n")

        def start(version):
            return subprocess.Popen(command(build / "plinket3-cli", "--rules", "kept", "convert", "-e", ENGINE,
                                            inputs[version], target.file))

        for version in (0, 1):
            if start(version).wait() != 0:
                raise Failed("convert refuses the patch")
            target.versions.append(target.file.read_bytes())
        started = []
        target.time_until_saved(lambda: started.append(start(0)))
        started[0].wait()

        def kill():
            started[-1].kill()
            started[-1].wait()

        for _ in range(kills):
            version = 1 - target.versions.index(target.file.read_bytes())
            target.kill_around_save(chance, lambda: started.append(start(version)), kill)
        start(0).wait()
        target.report("Command line, into a WAD" if wad else "Command line", kills)


def main():
    require("Xvfb", "xdotool", "jwm", IWAD)
    build = Path(sys.argv[1])
    kills = int(sys.argv[2]) if len(sys.argv) > 2 else 200
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 32)
    print(f"seed {seed}", flush=True)
    chance = random.Random(seed)
    with tempfile.TemporaryDirectory(prefix="plinket3_kills_") as folder, Display() as display:
        patch = Path(folder, "large.bex")
        patch.write_text(large_patch(chance))
        command_line(build, patch, 5 * kills, chance)
        lumps = [(b"BEFORE", chance.randbytes(1 << 20)), (b"DEHACKED", b""), (b"BEHIND", chance.randbytes(1 << 20))]
        command_line(build, patch, 2 * kills, chance, make_hostile.wad(lumps, b"PWAD"))
        window(build, display, patch, 0, kills, chance)
        window(build, display, patch, 1, kills, chance)


if __name__ == "__main__":
    try:
        main()
    except Failed as reason:
        sys.exit(f"FAILED: {reason}")
