#!/usr/bin/env python3
"""Installs the programs for Windows into a new Windows of wine's, uses them, removes them and looks whether anything stays
behind; then does the same with the archive.

    install.py SETUP ARCHIVE
"""
import os
import re
import struct
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "system"))
import driven  # noqa: E402

setup, archive = (Path(argument).resolve() for argument in sys.argv[1:])
SETTINGS = "AppData/Roaming/Plinket3"


def freedooms_patch():
    wad = Path(driven.IWAD).read_bytes()
    _, count, at = struct.unpack_from("<4sii", wad)
    for lump in range(count):
        start, size, name = struct.unpack_from("<ii8s", wad, at + 16 * lump)
        if name.rstrip(b"\0") == b"DEHACKED":
            return wad[start:start + size]
    raise driven.Failed("Freedoom has no patch")


def wine(*command, **options):
    return subprocess.run([driven.WINE, *command], text=True, capture_output=True, timeout=300, check=False, **options)


def expect(condition, what):
    if not condition:
        raise driven.Failed(what)


def files(prefix):
    """All files and folders below the drive, without what Windows itself writes there."""
    return {str(path.relative_to(prefix)) for path in Path(prefix, "drive_c").rglob("*")
            if not re.search("/Temp/|/windows/|/Microsoft/", str(path))}


def registry(prefix):
    """The lines that are about the programs or their files. Windows writes them when its server ends."""
    subprocess.run(["wineserver", "--wait"], check=True, timeout=120)
    return [line for name in ("user.reg", "system.reg") for line in Path(prefix, name).read_text("latin-1").splitlines()
            if re.search(r"plinket3|\.deh|\.bex", line, re.I)]


def edit(program, account, display):
    """The first run: finds Freedoom, opens its patch, changes a number and saves, and checks it."""
    patch = account.home / "freedoom.deh"
    patch.write_bytes(freedooms_patch())
    before = patch.read_bytes()
    running = driven.Program(program, account, display, patch)
    running.pass_by("the open patch", lambda title: title.startswith("Plinket3 - ["), "^Options$", "^IWADs found$",
                    "^File settings of ")
    running.key("ctrl+8")
    running.focus(r"^Plinket3 - \[")
    running.key("5")
    running.key("ctrl+s")
    running.until(lambda: patch.read_bytes() != before, "the patch to be saved")
    running.end()
    after = patch.read_bytes()
    lines = set(after.splitlines()) ^ set(before.splitlines())
    print(f"  edited: {sorted(lines)}")
    expect(0 < len(lines) <= 6, f"{len(lines)} lines of the patch changed")
    checked = subprocess.run(driven.command(program.with_name("plinket3-cli"), "check", "-e", "boom21", patch),
                             capture_output=True, check=False)
    tells = checked.returncode == 1 and b"freedoom.deh" in checked.stdout + checked.stderr
    expect(checked.returncode == 0 or tells, f"check says {checked}")


def installed(prefix, folder, display):
    home = driven.windows_home()
    programs = home / "AppData/Local/Programs/Plinket3"
    shortcut = home / "AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Plinket3.lnk"
    before = files(prefix)
    expect(registry(prefix) == [], "the registry is not new")
    expect(wine(setup, "/S").returncode == 0, "the installer fails")
    expect((programs / "plinket3.exe").exists() and shortcut.exists(), "the program is not installed")
    entries = "\n".join(registry(prefix))
    for part in (r"Classes\\\\\.deh\]", r"Classes\\\\\.bex\]", r'"\.wad"|\.wad', r"CurrentVersion\\\\Uninstall\\\\Plinket3"):
        expect(re.search(part, entries), f"the registry has no {part}")

    account = driven.Account(folder / "home", new=True, windows=True)
    edit(programs / "plinket3", account, display)
    expect((home / SETTINGS / "plinket3.cfg").exists(), "the settings are not in the user's folder")
    (programs / "mine.txt").write_text("somebody's own")

    expect(wine(setup, "/S").returncode == 0, "the installer fails over an older installation")
    wine(programs / "uninstall.exe", "/S", rf"_?={windows_path(programs)}")
    expect(sorted(path.name for path in programs.iterdir()) in (["mine.txt"], ["mine.txt", "uninstall.exe"]),
           f"there stay {sorted(programs.iterdir())}")
    for name in ("mine.txt", "uninstall.exe"):
        (programs / name).unlink(missing_ok=True)
    programs.rmdir()
    left = {path for path in files(prefix) - before if SETTINGS not in path and not path.endswith("/Programs")}
    expect(not left, f"there stay {sorted(left)}")
    expect(registry(prefix) == [], f"the registry keeps {registry(prefix)}")
    print("installed, used and removed; only the settings stay")


def windows_path(path):
    return wine("winepath", "-w", path).stdout.strip()


def carried(prefix, folder, display):
    before = files(prefix)
    with zipfile.ZipFile(archive) as opened:
        opened.extractall(folder / "carried")
    programs = folder / "carried/Plinket3"
    account = driven.Account(folder / "home2", new=True)
    account.windows = True
    account.settings = programs / "settings"
    edit(programs / "plinket3", account, display)
    expect((account.settings / "plinket3.cfg").exists(), "the settings are not beside the program")
    left = files(prefix) - before
    expect(not left, f"the archive's program wrote {sorted(left)}")
    print("the archive's program keeps its settings beside it")


def main():
    driven.require("wine", "Xvfb", "jwm", "xdotool", driven.IWAD)
    with tempfile.TemporaryDirectory(prefix="plinket3_") as folder, driven.Display() as display:
        prefix = os.environ["WINEPREFIX"] = str(Path(folder, "wine"))
        os.environ["DOOMWADDIR"] = "Z:\\usr\\share\\games\\doom"
        os.environ["DISPLAY"] = display.name
        wine("wineboot", "--init")
        try:
            installed(prefix, Path(folder), display)
            carried(prefix, Path(folder), display)
        finally:
            subprocess.run(["wineserver", "--kill"], check=False)


if __name__ == "__main__":
    try:
        main()
    except driven.Failed as reason:
        sys.exit(f"FAILED: {reason}")
