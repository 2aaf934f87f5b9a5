#!/usr/bin/env python3
"""Compares pictures that the program shows as in the game, pixel by pixel, with screenshots that a real game engine takes
of itself.

usage: pictures_are_as_on_screen.py GAME_PICTURE DATA

DATA is the folder with config/ and tables/. Exit status: 0 when all pixels are alike, 1 when one is not, 77 when what it
needs is not installed.
"""
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "system"))
import driven  # noqa: E402

ENGINE = "/usr/games/chocolate-doom"
WIDTH, VIEW, HEIGHT = 320, 168, 200
SECTOR_LIGHT = 144  # where the first level begins
PISTOL, READY = 1, 10
ROCKET, STANDING = 33, 442
SPEED = (320 << 16) + 520  # so far that the rounding of engines comes to a scale of just 1
HEAD = "Patch File for DeHackEd v3.0\n\nDoom version = 19\nPatch format = 6\n\n"
# The pistol is held at a place of its own for ever, and shoots once with a flash that stays and gives no light.
SHOOTS = HEAD + ("Frame 10\nDuration = -1\nUnknown 1 = 40\nUnknown 2 = 60\n\nFrame 17\nDuration = -1\n\n"
                 "Weapon 1\nShooting frame = 10\n\n"
                 "Pointer 6 (Frame 10)\nCodep Frame = 14\n\nPointer 11 (Frame 17)\nCodep Frame = 1\n\n")


def thrown(sprite, frame, bits):
    """The ready pistol throws one rocket, too wide for the room, so that it bursts where it comes to first: 160 units away,
    where a picture is drawn in its own size. It bursts into a picture that stays."""
    return HEAD + (f"Frame 10\nDuration = -1\n\nPointer 6 (Frame 10)\nCodep Frame = 61\n\n"
                   f"Thing {ROCKET + 1} (Rocket)\nWidth = {500 << 16}\nSpeed = {SPEED}\nDeath frame = {STANDING}\n"
                   f"Death sound = 0\nAlert sound = 0\nBits = {0x10610 | bits}\n\n"
                   f"Frame {STANDING}\nSprite number = {sprite}\nSprite subnumber = {frame}\nDuration = -1\n"
                   f"Next frame = {STANDING}\n\n")


THINGS = (("an imp from behind", thrown(0, 0, 0), False), ("a lit imp", thrown(0, 1 | 32768, 0), True),
          ("a red player", thrown(28, 0, 3 << 26), False), ("a brown player", thrown(28, 0, 2 << 26), False))


def pixels_of(pcx):
    """The colours of a screenshot, three bytes each."""
    palette, rows, at = pcx[-768:], bytearray(), 128
    while len(rows) < WIDTH * HEIGHT:
        count, value = (pcx[at] & 63, pcx[at + 1]) if pcx[at] >= 192 else (1, pcx[at])
        at += 2 if pcx[at] >= 192 else 1
        rows += bytes([value]) * count
    return [palette[3 * i:3 * i + 3] for i in rows]


def screenshot(display, folder, patch):
    """What the engine writes when F1 is pressed while the player stands at the start of the first level."""
    (folder / "doom.cfg").write_text("screenblocks 10\n")
    (folder / "extra.cfg").write_text("png_screenshots 0\nfullscreen 0\nstartup_delay 0\n")
    environment = {**os.environ, "DISPLAY": display.name, "HOME": str(folder)}
    engine = subprocess.Popen(
        [ENGINE, "-config", "doom.cfg", "-extraconfig", "extra.cfg", "-iwad", driven.IWAD, "-nodeh", "-deh", patch,
         "-warp", "1", "-nomonsters", "-nosound", "-devparm", "-window"],
        cwd=folder, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        window = subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--pid", str(engine.pid)],
                                env=environment, timeout=60, check=True, capture_output=True, text=True).stdout.split()[0]
        subprocess.run(["xdotool", "windowfocus", window], env=environment, check=True)
        taken = folder / "DOOM00.pcx"
        time.sleep(4)  # the weapon comes up
        for _ in range(20):
            subprocess.run(["xdotool", "key", "F1"], env=environment, check=True)
            time.sleep(0.5)
            if taken.exists():
                return pixels_of(taken.read_bytes())
        raise driven.Failed("the engine takes no screenshot")
    finally:
        engine.terminate()
        engine.wait()


class Judge:
    """What the program draws and the engine shows, for one patch."""

    def __init__(self, display, folder, patch, text):
        self.program, self.data = sys.argv[1:3]
        self.patch = folder / patch
        self.patch.write_text(text, encoding="latin-1")
        self.shot = screenshot(display, folder, str(self.patch))

    def drawn(self, *what):
        """Width, height, and the colours of the covered pixels by place."""
        out = subprocess.run([self.program, self.data, driven.IWAD, self.patch, *map(str, what)], check=True,
                             capture_output=True).stdout
        size, _, pixels = out.partition(b"\n")
        width, height = map(int, size.split())
        return width, height, {(at % width, at // width): pixels[4 * at:4 * at + 3]
                               for at in range(width * height) if pixels[4 * at + 3]}

    def alike(self, picture, left=0, top=0):
        return all(self.shot[(y + top) * WIDTH + x + left] == colour for (x, y), colour in picture.items())

    def places(self, width, height, picture):
        """Where the whole picture is on the screen."""
        return [(left, top) for top in range(VIEW - height) for left in range(WIDTH - width)
                if self.alike(picture, left, top)]


def weapon_fits(name, judge):
    fits = []
    for light in range(0, 256, 16):
        _, _, pixels = judge.drawn("weapon", PISTOL, READY, light)
        weapon = {place: colour for place, colour in pixels.items() if place[1] < VIEW}
        if judge.alike(weapon):
            fits.append(light)
    bar = [judge.shot[y * WIDTH + x] == colour for (x, y), colour in pixels.items() if y >= VIEW]
    print(f"{name}: {len(weapon)} pixels, all alike in the light {fits}; of the status bar's {len(bar)} {sum(bar)} are free"
          " of numbers")
    return fits == [SECTOR_LIGHT] and len(weapon) > 500 and sum(bar) * 3 > len(bar) * 2


def thing_fits(name, judge, lit):
    fits = {}
    for light in range(0, 256, 16):
        width, height, pixels = judge.drawn("thing", ROCKET, STANDING, light)
        if places := judge.places(width, height, pixels):
            fits[light] = places
    print(f"{name}: {len(pixels)} pixels, all alike by light at {fits}")
    return list(fits) == (list(range(0, 256, 16)) if lit else [SECTOR_LIGHT]) and all(len(places) == 1 for places in fits.values()) and len(pixels) > 500


def main():
    driven.require(ENGINE, "Xvfb", "jwm", "xdotool", driven.IWAD)
    right = []
    with driven.Display() as display, tempfile.TemporaryDirectory() as home:
        def judge(text):
            folder = Path(home, str(len(right)))
            folder.mkdir()
            return Judge(display, folder, "test.deh", text)
        for name, text in (("the pistol as it is held", HEAD), ("the pistol that flashes", SHOOTS)):
            right.append(weapon_fits(name, judge(text)))
        for name, text, lit in THINGS:
            right.append(thing_fits(name, judge(text), lit))
    return 0 if all(right) else 1


if __name__ == "__main__":
    sys.exit(main())
