#!/usr/bin/env python3
"""Lets real game engines read patches that change every field, and compares what they log with what was written.

usage: read_every_field.py MAKER DATA FLAGS

MAKER is the program make_every_field_patch, DATA the folder with config/ and tables/, FLAGS the folder of the engines'
fact tables. Exit status: 0 when every value arrived, 1 when one did not, 77 when no engine is installed.
"""
import csv
import os
import re
import shutil
import subprocess
import sys
import tempfile

IWAD = "/usr/share/games/doom/freedoom2.wad"
SKIPPED = 77
# A demo of the first level for Doom 1.9, one player, no moves: the engine starts the level and quits.
DEMO = bytes([109, 2, 1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0x80])

NORMAL, EXTENDED = ["doom19", "ultimate"], ["boom19", "mbf19", "dehextra19", "mbf21"]
UNLIMITED = ["dsdhacked"]  # woof 10.5.1 crashes at every patch that names a new sprite
# The tables of the bits that things have by name.
FACTS = {"boom19": ["boom/flags"], "mbf19": ["mbf/flags"], "dehextra19": ["dehextra/flags"],
         "mbf21": ["dehextra/flags", "mbf21/thing_bits"], "dsdhacked": ["dehextra/flags", "mbf21/thing_bits"]}
ENGINES = {
    "chocolate-doom": (NORMAL, ["-nodeh", "-nogui", "-extraconfig", "extra.cfg"]),
    "woof": (NORMAL + EXTENDED, ["-nodehlump", "-nogui", "-dehout", "deh.log"]),
    "dsda-doom": (NORMAL + EXTENDED + UNLIMITED, ["-nodeh", "-no_message_box", "-dehout", "deh.log"]),
}
FRAME_LOG = {"Sprite number": "sprite", "Sprite subnumber": "frame", "Duration": "tics", "Next frame": "nextstate",
             "Unknown 1": "misc1", "Unknown 2": "misc2", **{f"Args{n + 1}": f"args[{n}]" for n in range(8)}}
COMPLAINT = re.compile(r"Bad (data|ammo|weapon|length)|Could not find (MBF21 )?(\w+ )?bit (?!mnemonic 0$)|.* must be positive"
                       r"|Invalid |No files may|Unmatched Block: '(?!Patch File|Doom version|Patch format|Engine config"
                       r"|IWAD)| - codep, should|Warning: Mismatched")


def sections(text):
    """The patch as (header line, [(key, value)]) in file order; a text's value is (old text, new text)."""
    found, at = [("", [])], 0
    while at < len(text):
        end = text.index("\n", at)
        line, at = text[at:end], end + 1
        if line.startswith("Text "):
            old, new = map(int, line.split()[1:])
            found.append((line, (text[at:at + old], text[at + old:at + old + new])))
            at += old + new
        elif " = " in line or line.endswith(" ="):
            key, value = line.split(" =", 1)
            found[-1][1].append((key, value[1:]))
        elif line.startswith("par "):
            found[-1][1].append((line, ""))
        elif line and not line.startswith(("#", "Patch File")):
            found.append((line, []))
        elif line.startswith("#"):
            found.append(("", []))  # the versions stand behind a comment
    return [entry for entry in found if entry[0]]


def thing_lines(engine, number, fields, flags):
    for key, value in fields:
        named = key.endswith("Bits") and not value.isdigit()
        value = sum(flags[name] for name in value.split(" + ")) if named else int(value)
        if named and engine == "dsda-doom":  # which gives named flags bits of its own, and complains of unknown names
            yield re.compile(rf"Assigned 0x[0-9a-f]+ to {key}\({number}\) at index ")
        elif engine == "woof":
            value = (value + 2**31) % 2**32 - 2**31
            yield f"Assigned {value} to {key}({number - 1}) at index "
        else:
            yield f"Assigned 0x{value % 2**64:016x} to {key}({number}) at index "


def expected_lines(engine, patch, flags):
    """The lines that must stand in the engine's log, in their order. Values of sounds, weapons, ammunition and of the
    miscellaneous section are not logged, only their keys or nothing."""
    for header, fields in patch:
        words = header.split()
        if words[0] == "Thing":
            yield from thing_lines(engine, int(words[1]), fields, flags)
        elif words[0] == "Frame":
            yield f"Processing Frame at index {words[1]}: Frame"
            yield from (f" - {FRAME_LOG[key]} = {value}" for key, value in fields if key in FRAME_LOG)
        elif words[0] == "Pointer":
            frame = words[3].rstrip(")")
            yield re.compile(rf" - applied .*from codeptr\[{fields[0][1]}\] to states\[{frame}\]")
        elif header == "[CODEPTR]":
            for key, value in fields:
                yield f"Processing pointer at index {key.split()[1]}: {value}"
                yield re.compile(rf" - applied .* to states\[{key.split()[1]}\]")
        elif words[0] == "Cheat":
            yield from (f"- {key} = {value}" for key, value in fields)
        elif words[0] == "Misc":
            yield from (f"Processing Misc item '{key}'" for key, _ in fields)
        elif words[0] in ("Sound", "Weapon", "Ammo"):
            yield f"Line='{header}'"
        elif header in ("[SPRITES]", "[SOUNDS]"):
            yield from (f"Substituting '{value}' for {header[1:-2].lower()} '{key}'" for key, value in fields)
        elif header == "[PARS]":
            for line, _ in fields:
                level, (*where, seconds) = "", map(int, line.split()[1:])
                level = "E%dM%d" % tuple(where) if len(where) == 2 else "MAP%02d" % where[0]
                yield re.compile(rf"Changed par time for {level} from \d+ to {seconds}$")
        elif header == "[STRINGS]":
            # An engine may have dropped strings that it no longer shows: it says so. Like us, it trims values.
            yield from (re.compile(rf"Assigned key {key} => '{re.escape(value.rstrip())}'$|Invalid string key '{key}'")
                        for key, value in fields)
        elif words[0] == "Text":
            # As with strings; most texts of the original program are not those of its successors.
            start = re.escape(fields[0].split("\n")[0][:12])
            yield re.compile(rf"(Assigned|Could not find) '{start}")


def missing_lines(log, expected):
    lines, at = log.split("\n"), 0
    for line in expected:
        fits = line.match if isinstance(line, re.Pattern) else lambda text, line=line: text.startswith(line)
        for place in range(at, len(lines)):
            if fits(lines[place]):
                at = place
                break
        else:
            yield "not in the log: " + (line.pattern if isinstance(line, re.Pattern) else line)


def for_chocolate(text):
    """Chocolate Doom stops at "Zero 1" of a sound and at the last frame, behind which the original program keeps other
    data; "Offset", "Zero/One" and "Zero 4" it does not support. A level with things of an unknown ID does not start.
    All else it must take."""
    text = re.sub(r"(?m)^ID # = .*\n", "", text)
    text = re.sub(r"(?m)^Sound \d+\n(.+\n)+\n", "", text)
    return re.sub(r"(?m)^(Frame 966\n)(.+\n)+\n", "", text)


def run(engine, program, patch, folder):
    """What the engine logged about the patch, and whether it reached the end of the demo."""
    names = {"HOME": "home", "XDG_CONFIG_HOME": "c", "XDG_DATA_HOME": "d", "XDG_CACHE_HOME": "e", "XDG_RUNTIME_DIR": "r"}
    environment = {name: os.path.join(folder, place) for name, place in names.items()}
    for place in environment.values():
        os.makedirs(place, mode=0o700, exist_ok=True)
    environment.update(PATH=os.environ["PATH"], SDL_VIDEODRIVER="dummy", SDL_AUDIODRIVER="dummy", LC_ALL="C")
    command = [program, "-iwad", IWAD, "-nosound", "-noautoload", "-nodraw", *ENGINES[engine][1], "-timedemo", "demo",
               "-deh", patch]
    try:
        done = subprocess.run(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, timeout=120,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        output = done.stdout.decode("latin-1")
    except subprocess.TimeoutExpired:
        output = "no end within 120 seconds"
    log = os.path.join(folder, "deh.log")
    if os.path.exists(log):
        with open(log, encoding="latin-1", newline="") as stream:
            return stream.read(), re.search(r"(?i)timed \d+ gametics", output), output
    return output, re.search(r"(?i)timed \d+ gametics", output), output


def installed(engines=tuple(ENGINES)):
    """The programs of those engines that are there; ends the test as skipped when there is none, or no game."""
    path = os.environ["PATH"] + ":/usr/games:/usr/local/games"
    programs = {engine: shutil.which(engine, path=path) for engine in engines}
    programs = {engine: program for engine, program in programs.items() if program}
    if not programs or not os.path.exists(IWAD):
        print("skipped: install freedoom and one of", *engines)
        sys.exit(SKIPPED)
    return programs


def prepare(folder):
    """Puts into a folder what `run` needs there beside the patch."""
    for name, content in (("demo.lmp", DEMO), ("extra.cfg", b"startup_delay 0\n")):
        with open(os.path.join(folder, name), "wb") as stream:
            stream.write(content)


def flags_of(configuration, facts):
    """The bits that things have by name."""
    flags = {}
    for table in FACTS.get(configuration, []):
        with open(os.path.join(facts, table + ".tsv"), encoding="ascii") as stream:
            flags |= {row["mnemonic"]: 1 << int(row["bit"]) for row in csv.DictReader(stream, delimiter="\t")}
    return flags


def faults(engine, program, configuration, maker, data, facts):
    with tempfile.TemporaryDirectory() as folder:
        patch = os.path.join(folder, "every.deh")
        subprocess.run([maker, data, configuration, patch], check=True)
        with open(patch, encoding="latin-1", newline="") as stream:
            text = stream.read().replace("\r\n", "\n")
        if engine == "chocolate-doom":
            text = for_chocolate(text)
            with open(patch, "w", encoding="latin-1", newline="\r\n") as stream:
                stream.write(text)
        prepare(folder)
        log, ended, output = run(engine, program, patch, folder)
        found = [] if ended else ["the engine did not get to the level: " + output[-300:]]
        if engine == "chocolate-doom":
            return found + [line for line in log.split("\n") if line.startswith(patch + ":")]
        found += [line for line in log.split("\n") if COMPLAINT.match(line) and not line.startswith("Invalid string key")]
        return found + list(missing_lines(log, expected_lines(engine, sections(text), flags_of(configuration, facts))))


def main():
    failed = False
    for engine, program in installed().items():
        for configuration in ENGINES[engine][0]:
            found = faults(engine, program, configuration, *sys.argv[1:4])
            print(f"{engine} reads {configuration}: " + (f"{len(found)} faults" if found else "every field"), flush=True)
            for line in found[:20]:
                print("  " + line)
            failed = failed or bool(found)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
