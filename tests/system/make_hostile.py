#!/usr/bin/env python3
"""Makes a folder of files that want to harm whoever reads them, the same ones each time.
    make_hostile.py FOLDER BUILD-FOLDER
Each list below has rows of a name, the bytes, what the window program says (None for nothing, the file works), and the
exit codes of the commands that hostile.py runs on files of that kind, in their order: 2 for a refusal."""

import base64
import random
import struct
import sys
from pathlib import Path

HEADER = b"Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n"
NORMAL = HEADER + b"Engine config = doom19.cfg\nIWAD = Freedoom\n\n"
EXTENDED = HEADER + b"Engine config = dehextra19.cfg\nIWAD = Freedoom\n\n"

NO_PATCH = "Invalid file or unsupported patch version."
BAD_PATCH = "Invalid patch file."
NO_ENGINE = "There were no engine configuration files found that match the patch file's target engine."
NO_TEXT = "Could not find string replacement."
UNSUPPORTED = "Unsupported entries were found in the patch file."
UNKNOWN = "The file holds no line that a game engine knows."
# What the window program says of patches that the kept rules refuse when it goes by engine rules, if anything.
BY_ENGINES = {"nuls.deh": UNKNOWN, "noise.deh": UNKNOWN, "utf16.deh": UNKNOWN, "picture.deh": UNKNOWN,
              "program.deh": UNKNOWN, "zeros.deh": UNKNOWN, "data_wad_iwad.deh": "Unable to register data WAD."}
MEGABYTE = 1_000_000
CHANCE = random.Random(3)


def patches():
    noise = CHANCE.randbytes(65536)
    words = [b"Thing", b"Frame", b"{[(<", b"Misc", b"[PARS]", b"[STRINGS]", b"[CODEPTR]", b"=", b"\n",
                              b"-1", b"999999999", b"\r", b"\0", b"Health", b"Sound", b"Pointer", b"Weapon", b"Cheat"]
    nonsense = b" ".join(CHANCE.choice(words) for _ in range(50_000))
    return [
        ("empty.deh", b"", NO_PATCH, "00000"),
        ("nuls.deh", bytes(100_000), NO_PATCH, "22222"),
        ("noise.deh", noise, NO_PATCH, "22222"),
        ("noise_behind_header.deh", NORMAL + noise, None, "01000"),
        ("nonsense.bex", EXTENDED + nonsense, None, "01000"),
        ("picture.deh", b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR" + noise, NO_PATCH, "22222"),
        ("program.deh", Path("/usr/bin/env").read_bytes(), NO_PATCH, "22222"),
        ("zeros.deh", bytes(100 * MEGABYTE), NO_PATCH, "22222"),
        ("utf8_mark.deh", b"\xef\xbb\xbf" + NORMAL, BAD_PATCH, "01000"),
        ("utf16.deh", NORMAL.decode().encode("utf-16"), NO_PATCH, "22222"),
        ("utf8.bex", EXTENDED + "[STRINGS]\nHUSTR_1 = Grüße \u4e2d\u6587\nThing 1 (Ünicöde)\nSpeed = 3\n".encode(),
         None, "01100"),
        ("latin1.deh", NORMAL + bytes(range(128, 256)) + b"\nThing 1 (" + bytes(range(160, 256)) + b")\n",
         None, "01100"),
        ("long_line.deh", NORMAL + b"Thing 1\nHit points = " + b"9" * 10 * MEGABYTE, None, "01100"),
        ("long_name.deh", NORMAL + b"Thing 1 (" + b"x" * MEGABYTE + b")\nSpeed = 4\n", None, "00100"),
        ("long_header.deh", HEADER + b"Engine config = " + b"x" * MEGABYTE + b"\nIWAD = " + b"y" * MEGABYTE,
         None, "00000"),
        ("no_line_end.deh", NORMAL + b"Thing 2\nSpeed = 8", None, "00000"),
        ("carriage_returns.deh", NORMAL.replace(b"\n", b"\r"), NO_PATCH, "00000"),
        ("million_sections.deh", NORMAL + b"Thing 1\nSpeed = 8\n" * MEGABYTE, None, "00100"),
        ("million_pars.bex", EXTENDED + b"[PARS]\n" + b"par 1 2 3\n" * (MEGABYTE // 4), None, "00100"),
        ("huge_numbers.deh", NORMAL + b"".join(
            b"%s %s\n%s = %s\n" % (section, number, field, number)
            for section, field in ((b"Thing", b"Hit points"), (b"Frame", b"Next frame"), (b"Sound", b"Value"),
                                   (b"Pointer", b"Codep Frame"), (b"Weapon", b"Ammo type"), (b"Ammo", b"Max ammo"),
                                   (b"Misc", b"Initial Health"), (b"Frame", b"Sprite number"))
            for number in (b"-1", b"2147483647", b"2147483648", b"-2147483649", b"9" * 400, b"0x7fffffff", b"1e309",
                           b"nan")), None, "01000"),
        ("wild_frames.deh", NORMAL + b"Thing 1\nInitial frame = 2147483647\nDeath frame = -5\nFrame 149\n"
         b"Sprite number = -7\nSprite subnumber = 2147483647\nNext frame = -149\nDuration = 0\n", None, "01100"),
        ("many_bits.bex", EXTENDED + b"Thing 1\nBits = " + b"SOLID+SHOOTABLE|" * 100_000 + b"\n", None, "00100"),
        ("long_string.bex", EXTENDED + b"[STRINGS]\nHUSTR_1 = " + b"\\n\\\\" * (MEGABYTE // 4) + b"\n", None, "01100"),
        ("endless_string.bex", EXTENDED + b"[STRINGS]\nHUSTR_1 = " + b"line \\\n" * 100_000, None, "00100"),
        ("code_pointers.bex", EXTENDED + b"[CODEPTR]\n" + b"".join(
            b"Frame %d = %s\n" % (frame, CHANCE.choice([b"A_Look", b"NULL", b"A_" + b"x" * 500, b"-1", b""]))
            for frame in range(-5, 5000)), None, "01000"),
        ("text_too_long.deh", NORMAL + b"Text 999999999 5\nabc\n", NO_TEXT, "01000"),
        ("text_negative.deh", NORMAL + b"Text -5 -7\nabc\n", NO_TEXT, "01000"),
        ("text_ends_early.deh", NORMAL + b"Text 13 99999\nFuzzy Gen. \n", NO_TEXT, "01000"),
        ("text_of_all.deh", NORMAL + b"Text 1 2147483647\n" + b"a" * MEGABYTE, NO_TEXT, "01000"),
        ("includes_itself.bex", EXTENDED + b"Include includes_itself.bex\nInclude NOTEXT includes_itself.bex\n",
         UNSUPPORTED, "01000"),
        ("other_format.deh", NORMAL.replace(b"format = 6", b"format = 7"), NO_PATCH, "01000"),
        ("other_engine.deh", NORMAL.replace(b"version = 19", b"version = -19"), NO_ENGINE, "01000"),
        ("huge_engine.deh", NORMAL.replace(b"version = 19", b"version = 65555"), NO_ENGINE, "01000"),
        ("first_line_missing.deh", NORMAL.split(b"\n", 1)[1], BAD_PATCH, "01000"),
        ("header_twice.deh", NORMAL + b"IWAD = Freedoom\n",
         'the line "IWAD" stands in it twice, again in line 7', "00000"),
        ("engine_elsewhere.deh", HEADER + b"Engine config = ../../../../etc/passwd\nIWAD = Freedoom\n", None, "00000"),
        ("data_wad_missing.deh", NORMAL + b"Data WAD = /nowhere/" + b"x" * 5000 + b".wad\n", None, "00000"),
        ("data_wad_device.deh", NORMAL + b"Data WAD = /dev/zero\n", None, "00000"),
        ("data_wad_folder.deh", NORMAL + b"Data WAD = /\n", None, "00000"),
        ("data_wad_nul.deh", NORMAL + b"Data WAD = /etc/\0passwd\n", None, "00000"),
        ("data_wad_iwad.deh", NORMAL + b"Data WAD = /usr/share/games/doom/freedoom2.wad\n",
         "Unable to register data WAD.", "00000"),
        ("name %1 %n <b>&amp; \u00e4.deh", NORMAL, None, "00000"),
    ]


def entry(offset, size, name):
    return struct.pack("<ii8s", offset, size, name)


def wad(lumps, identification=b"IWAD"):
    data, directory = b"", b""
    for name, content in lumps:
        directory += entry(12 + len(data), len(content), name)
        data += content
    return identification + struct.pack("<ii", len(lumps), 12 + len(data)) + data + directory


def picture(width, height, offsets, posts):
    return struct.pack("<HHhh", width, height, 0, 0) + b"".join(struct.pack("<i", at) for at in offsets) + posts


def game(player, sound=b"\3\0\x11\x2b\x10\0\0\0" + bytes(16), palette=bytes(range(256)) * 3):
    """A WAD with what the window shows first: the player's picture, and sounds."""
    return wad([(b"PLAYPAL", palette), (b"DSPISTOL", sound), (b"DSPLPAIN", sound), (b"S_START", b"")] +
               [(b"PLAY" + bytes([frame]) + b"1", player) for frame in range(65, 75)] + [(b"S_END", b"")])


NO_PALETTE = "Could not load PLAYPAL lump."


def wads():
    good = picture(1, 3, [12], b"\0\3\0abc\0\xff")
    directory = entry(12, 768, b"PLAYPAL")
    return [
        ("good.wad", game(good), None, "0000"),
        ("empty.wad", b"", NO_PALETTE, "2222"),
        ("short.wad", b"IWAD\1", NO_PALETTE, "0111"),
        ("other.wad", b"WAD2" + bytes(100), NO_PALETTE, "2222"),
        ("count_negative.wad", b"IWAD" + struct.pack("<ii", -1, 12) + directory, NO_PALETTE, "0111"),
        ("count_huge.wad", b"IWAD" + struct.pack("<ii", 0x7fffffff, 12) + directory + bytes(2000), None, "0011"),
        ("count_huge_of_none.wad", b"IWAD" + struct.pack("<ii", 0x7fffffff, 12), NO_PALETTE, "0111"),
        ("directory_beyond.wad", b"IWAD" + struct.pack("<ii", 5, 0x7ffffff0) + directory, NO_PALETTE, "0111"),
        ("directory_negative.wad", b"IWAD" + struct.pack("<ii", 5, -16) + directory, NO_PALETTE, "0111"),
        ("directory_is_header.wad", b"IWAD" + struct.pack("<ii", 9, 0) + directory * 9, NO_PALETTE, "0111"),
        ("lump_beyond.wad", b"IWAD" + struct.pack("<ii", 1, 12) + entry(0x7fffffff, 0x7fffffff, b"PLAYPAL"),
         None, "0011"),
        ("lump_negative.wad", b"IWAD" + struct.pack("<ii", 1, 12) + entry(-1, -1, b"PLAYPAL"), None, "0011"),
        ("palette_short.wad", game(good, palette=b"abc"), None, "0000"),
        ("lumps_overlap.wad", b"IWAD" + struct.pack("<ii", 20_000, 12) + b"".join(
            entry(0, 0x7fffffff, b"PLAYPAL" if lump == 0 else b"S_START" if lump == 1 else b"PLAYA1")
            for lump in range(20_000)), None, "0002"),
        ("markers_only.wad", wad([(b"PLAYPAL", bytes(768))] + [(b"S_START", b"")] * 1000 + [(b"S_END", b"")]),
         None, "0011"),
        ("picture_empty.wad", game(b""), None, "0002"),
        ("picture_huge.wad", game(picture(0xffff, 0xffff, [8] * 10, b"\0\3\0abc\0\xff")), None, "0002"),
        ("picture_columns_outside.wad", game(picture(4, 4, [0x7fffffff, -1, -0x80000000, 99999], b"")), None, "0000"),
        ("picture_posts_loop.wad", game(picture(2, 255, [0, 4], b"\0\0\0\0" * 5000)), None, "0000"),
        ("picture_posts_overflow.wad", game(picture(2, 3, [16, 16], b"\xfe\xff" * 300)), None, "0000"),
        ("picture_no_end.wad", game(picture(1, 255, [12], b"\0\xff\0" + bytes(100))), None, "0000"),
        ("sound_lies.wad", game(good, sound=b"\3\0\xff\xff\xff\xff\xff\x7f"), None, "0000"),
        ("sound_empty.wad", game(good, sound=b""), None, "0000"),
        ("noise.wad", b"IWAD" + struct.pack("<ii", 4000, 12) + CHANCE.randbytes(70_000), NO_PALETTE, "0111"),
    ]


def tables(good):
    """`good` is the table file of an engine."""
    cut = [good[:size] for size in (4, 6, 11, len(good) // 2)]
    bad_count = good[:6] + struct.pack("<i", -2) + good[10:]
    huge_count = good[:6] + struct.pack("<i", 0x7fffffff) + good[10:]
    largest_count = good[:6] + struct.pack("<i", 1048575)
    noise = good[:6] + struct.pack("<i", 100) + CHANCE.randbytes(20_000)
    return [
        ("empty.tbl", b"", "Invalid table Id.", "022"),
        ("other.tbl", b"ETBX" + good[4:], "Invalid table Id.", "022"),
        ("version.tbl", b"ETBL\x01\x7f" + good[6:], "Invalid table version.", "022"),
        ("only_id.tbl", cut[0], "Invalid table version.", "022"),
        ("only_version.tbl", cut[1], None, "000"),
        ("cut_in_names.tbl", cut[2], None, "000"),
        ("cut_in_half.tbl", cut[3], None, "000"),
        ("count_below.tbl", bad_count, "Damaged table file.", "022"),
        ("count_above.tbl", huge_count, "Damaged table file.", "022"),
        ("count_largest.tbl", largest_count, "Damaged table file.", "022"),
        ("noise.tbl", noise, None, "000"),
    ]


def configurations(good):
    """`good` is an engine's configuration."""
    identity = b'type = "Plinket3 Engine Configuration file";\n'
    engine = b'engine { name = "Evil"; version = 19; table = "doom19.tbl"; extended = 0; }\n'
    return [
        ("evil_counts.cfg", good.replace(b"things = 1", b"things = 2147483647"), "is out of range", "0220"),
        ("evil_negative.cfg", good.replace(b"states = ", b"states = -"), '"itemcounts.states" is negative', "0220"),
        ("evil_table.cfg", good.replace(b"table = \"", b"table = \"../../../../../etc/"),
         "No table file for engine configuration.", "0220"),
        ("evil_empty.cfg", identity + engine, 'evil_empty.cfg: missing key "engine.allowexeread"', "0220"),
        ("evil_version.cfg", good.replace(b"version = 19", b"version = 1e308"), None, "0220"),
        ("evil_deep.cfg", identity + engine + b"a{" * 100_000, None, "0222"),
        ("evil_open.cfg", good[:len(good) // 2], 'evil_open.cfg: missing structure "', "0220"),
        ("evil_noise.cfg", identity + engine + CHANCE.randbytes(65536), 'evil_noise.cfg: missing key "', "0220"),
    ]


BAD_SETTINGS = "Invalid program configuration file."
SETTINGS = b'Type = "Plinket3 Program Configuration file"; firstRun = 0;\n'


def settings():
    return [
        ("empty.cfg", b"", BAD_SETTINGS, "0"),
        ("noise.cfg", CHANCE.randbytes(65536), BAD_SETTINGS, "0"),
        ("twice.cfg", SETTINGS + b"a = 1; a = 2;", BAD_SETTINGS, "2"),
        ("deep.cfg", SETTINGS + b"a{" * 100_000, BAD_SETTINGS, "2"),
        ("kinds.cfg", SETTINGS + b'IWADs = "x"; recentFiles = 5; createBackup { } lastDir = 7; lastConfig = "y";',
         None, "0"),
        ("numbers.cfg", SETTINGS + b"lastConfig = 1e308; lastIWAD = -99999999999; createBackup = .; stateActivate = -;",
         None, "0"),
        ("iwads.cfg", SETTINGS + b"IWADs { " + b"".join(b'%dwad = "%s";' % (number, b"x;" * 20)
                                                        for number in range(5000)) + b'-1wad = ";"; 99999999999wad = ";"; }',
         None, "0"),
        ("recent.cfg", SETTINGS + b"recentFiles { " + b"".join(b'%d = "/dev/%s";' % (number, b"full" * (number % 2) or
                                                                                    b"x" * 5000)
                                                               for number in range(500)) + b"}", None, "0"),
    ]


DAMAGED = "The file with its unsaved changes is damaged and stays as "


def recoveries():
    texts = b'type = "Plinket3 recovery file";fileName = "/x/mine.deh";named = 1;engineConfig = "doom19.cfg";' \
            b'iwad = "/usr/share/games/doom/freedoom2.wad";dataWad = "";pars{}'
    return [
        ("empty.dat", b"", DAMAGED, "0"),
        ("noise.dat", CHANCE.randbytes(65536), DAMAGED, "0"),
        ("length_lies.dat", b"999999999\n" + texts, DAMAGED, "0"),
        ("length_negative.dat", b"-5\n" + texts, DAMAGED, "0"),
        ("length_short.dat", b"%d\n" % (len(texts) - 20) + texts, "Unsaved changes of", "0"),
        ("no_table.dat", b"%d\n" % len(texts) + texts, "Unsaved changes of", "0"),
        ("table_size_lies.dat", b"%d\n" % (len(texts) + 24) + texts + b'tableSize = 999999999;  ' + b"ETBL",
         DAMAGED, "0"),
        ("noise_table.dat", b"%d\n" % len(texts) + texts + b"ETBL\1\3" + CHANCE.randbytes(65536),
         "Unsaved changes of", "0"),
    ]


def places():
    state = b"\0\0\0\xff\0\0\0\0\0\0\0\1\xff\xff\xff\xf0" + b"\0" * 200
    return [
        ("noise.ini", CHANCE.randbytes(65536), None, ""),
        ("unsealed.ini", b"frmEditThings/lstThings=" + b"0" * 40 + b" " + base64.b64encode(state) + b"\n", None, ""),
        ("toolkit.ini", b"[frmEditThings]\nlstThings=@ByteArray(" + state.replace(b"\0", b"\\0") + b")\n", None, ""),
        ("many.ini", b"a=b c\n" * 10_000_000, None, ""),
    ]


def write(folder, rows):
    """Writes the files of one of the lists; returns the rows with their paths in place of the bytes."""
    folder.mkdir(parents=True)
    written = []
    for name, content, said, codes in rows:
        (folder / name).write_bytes(content)
        written.append((folder / name, said, codes))
    return written


def make(folder, build):
    """All of them, by kind."""
    folder = Path(folder)
    return {"patches": write(folder / "patches", patches()), "wads": write(folder / "wads", wads()),
            "tables": write(folder / "tables", tables((build / "tables/doom19.tbl").read_bytes())),
            "configurations": write(folder / "configurations",
                                    configurations((build / "config/doom19.cfg").read_bytes())),
            "settings": write(folder / "settings", settings()), "recoveries": write(folder / "recoveries", recoveries()),
            "places": write(folder / "places", places())}


if __name__ == "__main__":
    make(sys.argv[1], Path(sys.argv[2]))
