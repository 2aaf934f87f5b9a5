#!/usr/bin/env python3
"""Compares pictures that the program shows as in the game, pixel by pixel, with what real game engines show.

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

import wad

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "system"))
import driven  # noqa: E402

ENGINE, BOOM, OTHER_BOOM = "/usr/games/chocolate-doom", "/usr/games/dsda-doom", "/usr/games/woof"
WIDTH, VIEW, HEIGHT = 320, 168, 200
LIGHTS = range(0, 256, 16)
SECTOR_LIGHT = 144  # where the first level begins
SIDES, BACK = range(1, 9), 5
PISTOL, READY = 1, 10
ROCKET, IMP, STANDING = 33, 11, 442
BRIGHT, RED, BROWN, FLYING, TRANSLUCENT = 0x8000, 3 << 26, 2 << 26, 0x10610, 1 << 31
TROO, PLAY, BOS2, SKUL = 0, 28, 43, 44
SPEED = (320 << 16) + 520  # so far that the rounding of engines comes to a scale of just 1
START = (-192, -160, 0, 1)
IMP_ID = 3001
HEAD = "Patch File for DeHackEd v3.0\n\nDoom version = %d\nPatch format = 6\n\n"
VANILLA, EXTENDED = HEAD % 19, HEAD % 21
# The pistol is held at a place of its own for ever, and shoots once with a flash that stays. It lightens the view by a
# level; what does nothing else takes that from it, and what lightens by two levels, too.
SHOOTS = VANILLA + ("Frame 10\nDuration = -1\nUnknown 1 = 40\nUnknown 2 = 60\n\nFrame 17\nDuration = -1\n\n"
                    "Weapon 1\nShooting frame = 10\n\nPointer 6 (Frame 10)\nCodep Frame = 14\n\n")
FLASHES = "Pointer 11 (Frame 17)\nCodep Frame = %d\n\n"
# In these and all above, two levels are enough to see the pistol in full light; one level takes one more.
FULL_LIGHT, ONLY_THIS = range(SECTOR_LIGHT - 16, 256, 16), [SECTOR_LIGHT]
DARK, BRIGHTER = FLASHES % 1, FLASHES % 31
# It never comes into the view.
NO_WEAPON = "Frame 12\nDuration = -1\nUnknown 1 = 1\nUnknown 2 = 300\n\n"


def stays(sprite, frame):
    return f"Frame {STANDING}\nSprite number = {sprite}\nSprite subnumber = {frame}\nDuration = -1\n\n"


def thrown(sprite, frame, bits):
    """The ready pistol throws one rocket, too wide for the room, so that it bursts where it comes to first: 160 units away,
    where a picture is drawn in its own size. It bursts into a picture that stays, seen from behind."""
    return VANILLA + ("Frame 10\nDuration = -1\n\nPointer 6 (Frame 10)\nCodep Frame = 61\n\n"
                      f"Thing {ROCKET + 1} (Rocket)\nWidth = {500 << 16}\nSpeed = {SPEED}\nDeath frame = {STANDING}\n"
                      f"Death sound = 0\nAlert sound = 0\nBits = {FLYING | bits}\n\n") + stays(sprite, frame)


def placed(side):
    """The player and an imp that shows that side. As engines round, so little aside makes the scale just 1."""
    x, y = START[:2]
    return wad.level_with([START, (x + 160, y + 3, (180 - 45 * (side - 1)) % 360, IMP_ID)])


def standing(head, sprite, frame, bits):
    """An imp that only stands there."""
    return head + NO_WEAPON + f"Thing {IMP + 1} (Imp)\nBits = {bits}\n\n" + stays(sprite, frame)


def pixels_of(pcx):
    """The colours of a screenshot, three bytes each."""
    palette, rows, at = pcx[-768:], bytearray(), 128
    while len(rows) < WIDTH * HEIGHT:
        count, value = (pcx[at] & 63, pcx[at + 1]) if pcx[at] >= 192 else (1, pcx[at])
        at += 2 if pcx[at] >= 192 else 1
        rows += bytes([value]) * count
    return [palette[3 * i:3 * i + 3] for i in rows]


class Engine:
    """One that stands at the start of a level of its own, in a window."""

    def __init__(self, display, folder, engine, level, patch, *arguments):
        (folder / "level.wad").write_bytes(level)
        self.environment = {**os.environ, "DISPLAY": display.name, "HOME": str(folder), "XDG_DATA_HOME": str(folder)}
        self.process = subprocess.Popen(
            [engine, "-iwad", driven.IWAD, "-file", "level.wad", "-deh", patch, "-warp", "1", "-nosound", "-window",
             *arguments], cwd=folder, env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def __enter__(self):
        self.window = subprocess.run(
            ["xdotool", "search", "--sync", "--onlyvisible", "--pid", str(self.process.pid)], env=self.environment,
            timeout=60, check=True, capture_output=True, text=True).stdout.split()[0]
        return self

    def __exit__(self, *_):
        self.process.kill()  # one waits for an answer when it is asked to end
        self.process.wait()

    def xdotool(self, *arguments):
        subprocess.run(["xdotool", *arguments], env=self.environment, check=True)


def screenshot(display, folder, patch, level):
    """What the engine writes when F1 is pressed."""
    (folder / "doom.cfg").write_text("screenblocks 10\n")
    (folder / "extra.cfg").write_text("png_screenshots 0\nfullscreen 0\nstartup_delay 0\n")
    with Engine(display, folder, ENGINE, level, patch, "-config", "doom.cfg", "-extraconfig", "extra.cfg", "-nodeh",
                "-devparm") as engine:
        engine.xdotool("windowfocus", engine.window)
        taken = folder / "DOOM00.pcx"
        time.sleep(4)  # the screen melts, the weapon comes up
        for _ in range(20):
            engine.xdotool("key", "F1")
            time.sleep(0.5)
            if taken.exists():
                return pixels_of(taken.read_bytes())
    raise driven.Failed("the engine takes no screenshot")


def palette():
    """Its colours, three bytes each."""
    lump = wad.lump("PLAYPAL")
    return [lump[at:at + 3] for at in range(0, 768, 3)]


def middle(pixels):
    """Those about the thing, beside which a lamp flickers far away."""
    return [pixels[y * WIDTH + x] for y in range(VIEW) for x in range(110, 210)]


def photograph(display, folder, patch, level):
    """What stands in the engine's window, where each of its pixels is enlarged, and dark ones are brightened a little."""
    shown = {bytes(part + 1 if part < 128 else part for part in colour): colour for colour in palette()}
    with Engine(display, folder, BOOM, level, patch, "-vidmode", "sw", "-geometry", f"{WIDTH}x{HEIGHT}w") as engine:
        pixels = None
        for _ in range(40):
            time.sleep(0.5)
            size, _, data = subprocess.run(
                ["import", "-window", engine.window, "-depth", "8", "ppm:-"], env=engine.environment, check=True,
                capture_output=True).stdout.removeprefix(b"P6\n").partition(b"\n255\n")
            width, height = map(int, size.split())
            places = ((2 * y + 1) * height // (2 * HEIGHT) * width + (2 * x + 1) * width // (2 * WIDTH)
                      for y in range(HEIGHT) for x in range(WIDTH))
            before, pixels = pixels, [shown.get(data[3 * at:3 * at + 3]) for at in places]
            if before and middle(pixels) == middle(before) and len(set(pixels)) > 20:
                return pixels
    raise driven.Failed("the engine's picture does not come to rest")


def only_started(display, folder, patch, level):
    """Nothing, when it has written the table that it makes."""
    with Engine(display, folder, OTHER_BOOM, level, patch):
        for _ in range(40):
            time.sleep(0.5)
            if any(each.stat().st_size > 65536 for each in folder.rglob("tranmap.dat")):
                return None
    raise driven.Failed("the engine makes no table")


class Judge:
    """What the program draws and an engine shows, for one patch."""

    def __init__(self, display, folder, text, level=wad.level_with([START]), taken_by=screenshot):
        self.patch = folder / "test.deh"
        self.patch.write_text(text, encoding="latin-1")
        self.engine = "boom21" if text.startswith(EXTENDED) else "doom19"
        self.shot = taken_by(display, folder, str(self.patch), level)

    def written(self, *what):
        program, data = sys.argv[1:3]
        return subprocess.run([program, data, self.engine, driven.IWAD, self.patch, *map(str, what)], check=True,
                              env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}, capture_output=True).stdout

    def drawn_all(self, *what):
        """Width, height, and the colours of the covered pixels by place, of each picture."""
        size, _, pixels = self.written(*what).partition(b"\n")
        width, height = map(int, size.split())
        area = width * height
        return width, height, [
            {(at % width, at // width): each[4 * at:4 * at + 3] for at in range(area) if each[4 * at + 3]}
            for each in (pixels[start:start + 4 * area] for start in range(0, len(pixels), 4 * area))]

    def drawn(self, *what):
        width, height, pictures = self.drawn_all(*what)
        return width, height, pictures[0]

    def alike(self, picture, left=0, top=0):
        return all(self.shot[(y + top) * WIDTH + x + left] == colour for (x, y), colour in picture.items())

    def places(self, width, height, picture):
        """Where the whole picture is on the screen."""
        return [(left, top) for top in range(VIEW - height) for left in range(WIDTH - width)
                if self.alike(picture, left, top)]


def weapon_fits(name, judge, lights):
    fits = []
    for light in LIGHTS:
        _, _, pixels = judge.drawn("weapon", PISTOL, READY, light, 1)
        weapon = {place: colour for place, colour in pixels.items() if place[1] < VIEW}
        if judge.alike(weapon):
            fits.append(light)
    bar = [judge.shot[y * WIDTH + x] == colour for (x, y), colour in pixels.items() if y >= VIEW]
    print(f"{name}: {len(weapon)} pixels, all alike in the light {fits}; of the status bar's {len(bar)} {sum(bar)} are free"
          " of numbers", flush=True)
    return fits == list(lights) and len(weapon) > 500 and sum(bar) * 3 > len(bar) * 2


def light_fits(name, judge, lit):
    fits = {}
    for light in LIGHTS:
        width, height, pixels = judge.drawn("thing", ROCKET, STANDING, light, BACK)
        if places := judge.places(width, height, pixels):
            fits[light] = places
    print(f"{name}: {len(pixels)} pixels, all alike by light at {fits}", flush=True)
    return (list(fits) == (list(LIGHTS) if lit else [SECTOR_LIGHT]) and len(pixels) > 500 and
            all(len(places) == 1 for places in fits.values()))


def side_fits(name, judge, side):
    fits = {}
    for each in SIDES:
        width, height, pixels = judge.drawn("thing", IMP, STANDING, SECTOR_LIGHT, each)
        if len(pixels) > 500 and (places := judge.places(width, height, pixels)):
            fits[each] = len(pixels), places
    print(f"{name} from side {side}: all pixels alike, by side how many and where: {fits}", flush=True)
    return list(fits) == [side] and len(fits[side][1]) == 1


def graph_fits(name, judge):
    """The engine's pixels are in the box of the state."""
    width, height, pixels = judge.drawn("thing", IMP, STANDING, 255, 1)
    (left, top), = judge.places(width, height, pixels)
    seen = {(x, y): judge.shot[(y + top) * WIDTH + x + left] for x, y in pixels}
    across, down, box = judge.drawn("graph", IMP, STANDING, 255, 1)
    found = [(x, y) for y in range(down - height) for x in range(across - width)
             if all(box.get((x + dx, y + dy)) == colour for (dx, dy), colour in seen.items())]
    print(f"{name}: {len(seen)} pixels of the engine, all alike in a box of {across} by {down} at {found}", flush=True)
    return len(found) == 1 and len(seen) > 500


def glass_fits(name, judge, empty):
    """Each pixel is the one that is drawn over what is seen there without the thing."""
    index = {colour: at for at, colour in enumerate(palette())}
    width, height, over = judge.drawn_all("glass", IMP, STANDING, SECTOR_LIGHT, 1)
    fits = []
    for top in range(VIEW - height):
        for left in range(WIDTH - width):
            places = (((x, y), (y + top) * WIDTH + x + left) for x, y in over[0])
            if all(judge.shot[at] == over[index[empty.shot[at]]][place] for place, at in places):
                fits.append((left, top))
    changed = sum(one != other for one, other in zip(middle(judge.shot), middle(empty.shot)))
    print(f"{name}: {len(over[0])} pixels, all alike at {fits}; {changed} differ from the empty room", flush=True)
    return len(fits) == 1 and len(over[0]) > 500 and len(over[0]) // 2 < changed <= len(over[0])


def table_fits(name, folder, own):
    """What an engine has made for itself when it began: a percentage, the palette, and the table."""
    table = next(folder.rglob("tranmap.dat")).read_bytes()[1 + 768:]
    print(f"{name}: {sum(a == b for a, b in zip(table, own))} of {len(table)} bytes are alike", flush=True)
    return table == own and len(table) == 65536


def main():
    driven.require(ENGINE, "Xvfb", "jwm", "xdotool", "import", driven.IWAD)
    right = []
    with driven.Display() as display, tempfile.TemporaryDirectory() as home:
        def judge(*what):
            return Judge(display, Path(tempfile.mkdtemp(dir=home)), *what)
        for name, text, lights in (("the pistol as it is held", VANILLA, ONLY_THIS),
                                   ("the pistol that flashes", SHOOTS, FULL_LIGHT[1:]),
                                   ("one without light", SHOOTS + DARK, ONLY_THIS),
                                   ("one with more light", SHOOTS + BRIGHTER, FULL_LIGHT)):
            right.append(weapon_fits(name, judge(text), lights))
        for name, text, lit in (("an imp from behind", thrown(TROO, 0, 0), False),
                                ("a lit imp", thrown(TROO, 1 | BRIGHT, 0), True),
                                ("a red player", thrown(PLAY, 0, RED), False),
                                ("a brown player", thrown(PLAY, 0, BROWN), False)):
            right.append(light_fits(name, judge(text), lit))
        # Five lumps for all sides, one for each, and lumps that are named by the mirrored side first.
        for name, sprite, sides in (("an imp", TROO, SIDES), ("a knight", BOS2, (7,)), ("a soul", SKUL, (2, 8))):
            for side in sides:
                right.append(side_fits(name, judge(standing(VANILLA, sprite, 0, 0), placed(side)), side))
        right.append(graph_fits("a red, lit player in the graph",
                                judge(standing(VANILLA, PLAY, BRIGHT, RED), placed(1))))
        glass = standing(EXTENDED, TROO, 0, TRANSLUCENT)
        if os.path.exists(BOOM):
            seen = judge(glass, placed(1), photograph)
            right.append(glass_fits("a translucent imp", seen, judge(glass, wad.level_with([START]), photograph)))
            right.append(table_fits(BOOM, seen.patch.parent, seen.written("translucency")))
        if os.path.exists(OTHER_BOOM):
            seen = judge(glass, placed(1), only_started)
            right.append(table_fits(OTHER_BOOM, seen.patch.parent, seen.written("translucency")))
    return 0 if all(right) else 1


if __name__ == "__main__":
    sys.exit(main())
