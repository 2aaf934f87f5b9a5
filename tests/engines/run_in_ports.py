#!/usr/bin/env python3
"""Selects a monster in the real program, presses F9 and looks whether it stands in the game: for every port that is
installed, the picture of the test map with it is compared with that of the same room without it. Then ends the program
while the port runs, which must go on.

usage: run_in_ports.py PLINKET3

Exit status: 0 when the monster was seen everywhere, 1 when not, 77 when something is not installed.
"""
import os
import signal
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "system"))
from driven import Account, Display, Failed, IWAD, Program, SKIPPED, require  # noqa: E402
from wad import lump  # noqa: E402

# The port, and what makes it show its own colours in a window.
PORTS = {"chocolate-doom": "-nogui -window -geometry 640x400", "dsda-doom": "-no_message_box -window -vidmode sw",
         "woof": "-nogui -window"}
ARGUMENTS = "-iwad %i -file %d -deh %p -warp %m -skill %s -nosound "
# The monster stands still and is fully lit, so that nothing but its own colours is to be seen.
PATCH = """Patch File for DeHackEd v3.0

Doom version = 19
Patch format = 6

Frame 442
Duration = -1
Sprite subnumber = 32768
"""
SPRITE = "TROOA1"


def colours_of(sprite):
    picture, palette, colours = lump(sprite), lump("PLAYPAL"), set()
    for column in struct.unpack_from("<%di" % struct.unpack_from("<H", picture)[0], picture, 8):
        while picture[column] != 255:
            length = picture[column + 1]
            colours |= set(picture[column + 3:column + 3 + length])
            column += length + 4
    return {tuple(palette[3 * colour:3 * colour + 3]) for colour in colours}


def wait_for(condition, what, seconds=20):
    end = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > end:
            raise Failed(f"waited in vain for {what}")
        time.sleep(0.05)
    return value


def child_of(process):
    found = subprocess.run(["ps", "-o", "pid=", "--ppid", str(process.pid)], text=True, stdout=subprocess.PIPE,
                           check=False).stdout.split()
    return int(found[0]) if found else None


def runs(port):
    state = subprocess.run(["ps", "-o", "stat=", "-p", str(port)], text=True, stdout=subprocess.PIPE, check=False).stdout
    return state.strip() != "" and not state.startswith("Z")


def started(program, name):
    """Selects a record of the editor in front, presses F9 and waits for the port's process."""
    program.focus("^Plinket3 - ")
    program.key("ctrl+g")
    program.focus("^Go to$")
    program.xdotool("type", name)
    program.through("^Go to$")
    program.focus("^Plinket3 - ")
    program.key("F9")
    return wait_for(lambda: child_of(program.process), "the port")


def picture(program, port):
    """The middle of its window, above the weapon, as rows of colours."""
    def grab():
        window = program.xdotool("search", "--onlyvisible", "--pid", str(port)).split()
        if not window:
            return None
        return subprocess.run(["import", "-window", window[-1], "-gravity", "center", "-crop", "24%x40%+0-20", "-depth",
                               "8", "rgb:-"], env=program.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              check=False).stdout
    wait_for(grab, "the port's window")
    before = None
    for _ in range(60):  # the screen melts at first
        time.sleep(0.5)
        now = grab()
        if now and now == before and len(set(now)) > 20:
            return [tuple(now[at:at + 3]) for at in range(0, len(now), 3)]
        before = now
    raise Failed("the port's picture does not come to rest")


def end(port):
    os.kill(port, signal.SIGKILL)  # some wait for their display when they are asked


def sees(name, display, folder, plinket):
    account = Account(folder / name)
    settings = account.settings / "plinket3.cfg"
    settings.write_text(settings.read_text() + 'ports { 1 { name = "Port"; program = "/usr/games/%s"; arguments = "%s"; } '
                        '} runPort = "Port";' % (name, ARGUMENTS + PORTS[name]))
    patch = folder / f"{name}.deh"
    patch.write_text(PATCH)
    program = Program(plinket, account, display, patch)
    try:
        program.open_patch()
        port = started(program, "Imp")
        with_monster = picture(program, port)
        end(port)
        wait_for(lambda: child_of(program.process) is None, "the end of the port, and no zombie of it")
        program.focus("^Plinket3 - ")
        program.key("ctrl+5")  # the weapon editor: the player has that weapon, so nothing stands in the room
        port = started(program, "Pistol")
        without = picture(program, port)
        changed = [new for new, old in zip(with_monster, without) if new != old]
        own = colours_of(SPRITE)
        fitting = sum(1 for pixel in changed if any(sum(abs(a - b) for a, b in zip(pixel, each)) <= 24 for each in own))
        print(f"{name}: {len(changed)} of {len(without)} pixels differ, {fitting} of them in the monster's colours", flush=True)
        if len(changed) < len(without) / 100 or fitting < 0.8 * len(changed):
            raise Failed("the monster is not seen")
        program.end()
        time.sleep(1)
        if not runs(port):
            raise Failed("the port ended with the program")
        end(port)
        left = list(Path(tempfile.gettempdir()).glob("plinket3-run-*"))
        if left:
            raise Failed(f"files are left: {left}")
    finally:
        if program.running():
            if port := child_of(program.process):
                end(port)
            program.kill()


def main():
    ports = [name for name in PORTS if os.path.exists("/usr/games/" + name)]
    require("Xvfb", "jwm", "xdotool", "import", IWAD)
    if not ports:
        print("skipped: no port is installed")
        return SKIPPED
    failed = False
    with tempfile.TemporaryDirectory() as folder, Display() as display:
        os.environ["TMPDIR"] = os.path.join(folder, "tmp")
        os.mkdir(os.environ["TMPDIR"])
        tempfile.tempdir = os.environ["TMPDIR"]
        for name in ports:
            try:
                sees(name, display, Path(folder), sys.argv[1])
            except (Failed, OSError) as failure:
                print(f"{name}: {failure}")
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
