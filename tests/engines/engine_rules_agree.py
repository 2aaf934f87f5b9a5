#!/usr/bin/env python3
"""Makes random patches full of the oddities of real ones, reads them by engine rules, and compares value by value with
what dsda-doom and woof log when they read the same file. Then edits nothing and expects the same bytes back, writes a
new patch of what it says and expects the same values, and edits something and expects no complaint of an engine that it did not have before; this with two real patches, too.

usage: engine_rules_agree.py CLI EDITOR DATA COUNT [SEED]

EDITOR is the program edit_patch, DATA the folder with config/ and tables/.

Of three patches one is for MBF21 and one has things, frames, sounds and sprites of any number. The engines log things,
frames, code pointers, strings, par times and other names of sprites and sounds; values of sounds, weapons, ammunition
and of the miscellaneous section they do not, so those are left out. woof 10.5.1 gets no new sprites, which end it. Exit status: 0 when all
agree, 1 when not, 77 when no engine is installed.
"""
import collections
import csv
import json
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile

from read_every_field import COMPLAINT, ENGINES, installed, prepare, run

REAL = "/usr/share/woof/autoload/chex.wad/"
STATE_LOG = {"sprite": "Sprite number", "frame": "Sprite subnumber", "tics": "Duration", "nextstate": "Next frame",
             "misc1": "Unknown 1", "misc2": "Unknown 2", **{f"args[{n}]": f"Args{n + 1}" for n in range(8)}}
THING_KEYS = ["ID #", "Hit points", "Reaction time", "Pain chance", "Speed", "Width", "Height", "Mass",
              "Missile damage"]
# What a record has that comes into being in a patch; all else is unset or 0.
NEW_VALUES = {("state", "Duration"): -1, ("thing", "fast speed"): -1, ("thing", "melee range"): 64 * 65536,
              ("state", "Mnemonic"): "NULL"}
# Of sprites and sounds, from the first dump with them all, which is the engine's own data.
STANDARD_NAMES = {}
LATER_THING_KEYS = ["Dropped item", "Infighting group", "Projectile group", "Splash group", "MBF21 Bits", "Rip sound",
                    "Fast speed", "Melee range"]
SAFE_STATE_KEYS = ["Duration", "Unknown 1", "Unknown 2", "Sprite subnumber"]
FLAGS = ["SPECIAL", "SOLID", "SHOOTABLE", "NOSECTOR", "NOBLOCKMAP", "AMBUSH", "JUSTHIT", "JUSTATTACKED",
         "SPAWNCEILING", "NOGRAVITY", "DROPOFF", "PICKUP", "NOCLIP", "SLIDE", "FLOAT", "TELEPORT", "MISSILE",
         "DROPPED", "SHADOW", "NOBLOOD", "CORPSE", "INFLOAT", "COUNTKILL", "COUNTITEM", "SKULLFLY", "NOTDMATCH"]
STRING_KEYS = ["HUSTR_1", "HUSTR_2", "GOTARMOR", "GOTMEGA", "E1TEXT", "C1TEXT", "PD_BLUEC", "QUITMSG", "STSTR_MUS"]


class Maker:
    """Lines of a patch, each now and then in an odd form."""
    engine = "boom21"

    def __init__(self, random):
        self.random, self.lines = random, []

    def odd(self, chance=0.15):
        return self.random.random() < chance

    def pick(self, *choices):
        return self.random.choice(choices)

    def cased(self, text):
        return self.pick(text, text, text, text.lower(), text.upper())

    def number(self, highest=1000):
        value = self.random.randint(0, highest)
        return self.pick(str(value), str(value), str(value), hex(value), "0" + oct(value)[2:], f"{value}.5", f"-{value}",
                         f"{value} # comment", f"+{value}", str(value + 2**32), str(2**31 + value), f" {value}",
                         "00000000", "0x" + f"{value:08X}", "9" * 25, "x", "")

    def pair(self, key, value):
        key = self.cased(key)
        blank = "  " if self.odd(0.03) else " "
        indent = self.pick(" ", "\t") if self.odd(0.04) else ""
        self.lines.append(f"{indent}{key}{blank}={'' if self.odd(0.1) else ' '}{value}{' ' if self.odd(0.1) else ''}")

    def noise(self):
        if self.odd(0.1):
            self.lines.append(self.pick("# a comment", "#$Editor category = Monsters", "Blood color = 3", "no pair",
                                        "\tindented by a tab", " Key = 1", "=5", "Thing 5 (Inside)", "Frame 7 = Pain"))

    def section(self, header, pairs):
        self.lines.append(header)
        for key, value in pairs:
            self.pair(key, value)
            self.noise()
        if not self.odd(0.05):
            self.lines.append("")
        if self.odd(0.05):
            self.lines.append("")

    def bits(self):
        names = self.random.sample(FLAGS, self.random.randint(0, 5))
        if self.odd():
            names.append(self.pick("NOTAFLAG", "TRANSLATION", "UNUSED1"))
        text = self.pick(" + ", "+", " | ", ", ", " ").join(names)
        return self.pick(text, text, text.lower(), self.number(2**26), "0", str(2**31), "4+SOLID")

    def thing(self):
        number = self.random.randint(2, 137)
        word = self.pick("Thing", "Thing", "thing", "THING", "Things")
        name = self.pick("", " (Imp)", " (Rocket (in air))", "(tight)", " # comment")
        keys = self.random.sample(THING_KEYS, self.random.randint(1, 4))
        pairs = [(key, self.number()) for key in keys] + ([("Bits", self.bits())] if self.odd(0.5) else [])
        self.section(f"{word} {self.pick(str(number), hex(number))}{name}", pairs)

    def frame(self):
        keys = self.random.sample(SAFE_STATE_KEYS, self.random.randint(1, 3))
        self.section(f"{self.cased('Frame')} {self.random.randint(0, 966)}", [(key, self.number()) for key in keys])

    def pointer(self):
        word = self.pick("Frame", "frame", "x", "State")
        self.section(f"Pointer {self.random.randint(0, 447)} ({word} {self.random.randint(1, 966)})",
                     [("Codep Frame", str(self.random.randint(0, 966)))])

    def code_pointers(self):
        self.lines.append(self.cased("[CODEPTR]"))
        for _ in range(self.random.randint(1, 5)):
            name = self.pick("Look", "chase", "PAIN", "NULL", "A_Look", "Nonsense", "Fall # comment", "Scream")
            word, sign = self.pick("Frame", "FRAME", "frame"), self.pick(" = ", "=", " =", "  =  ")
            indent = " " if self.odd(0.04) else ""
            self.lines.append(f"{indent}{word} {self.random.randint(1, 966)}{sign}{name}")
            if self.odd(0.08):
                self.lines.append(self.pick("# comment", "nonsense"))
        self.lines.append("")

    def strings(self):
        self.lines.append(self.cased("[STRINGS]"))
        for _ in range(self.random.randint(1, 4)):
            key = self.pick(*STRING_KEYS, "USER_OWN", "HUSTR_1")
            parts = [self.pick("one", "two words", "tab\\there", "line\\nfeed", "quote\"", "a = b", "back\\\\slash", "N\\N")
                     for _ in range(self.random.randint(1, 4))]
            text = "".join(part + self.pick("", "\\\n", "\\\n  ", " \\ \n", "\\\n# comment\n") for part in parts)
            self.lines += f"{self.cased(key)} = {text}end".split("\n")
            if self.odd(0.1):
                self.lines.append(self.pick("# comment", "", "HUSTR_3 ="))
        self.lines.append("")

    def pars(self):
        self.lines.append(self.cased("[PARS]"))
        for _ in range(self.random.randint(1, 4)):
            word, tail = self.pick("par", "PAR", "Par"), self.pick("", " # fast", " 5")
            level = self.pick(f"1 {self.random.randint(1, 9)}", str(self.random.randint(1, 32)))
            self.lines.append(f"{word} {'  ' if self.odd() else ''}{level} {self.random.randint(1, 500)}{tail}")
        self.lines.append("")

    def makers(self):
        return [self.thing, self.frame, self.pointer, self.code_pointers, self.strings, self.pars]

    def patch(self):
        if not self.odd(0.3):
            self.lines += [self.pick("Patch File for DeHackEd v3.0", "patch file for dehacked v2.3", "# first"),
                           f"Doom version = {self.pick(19, 21, 16, 2021)}", "Patch format = 6", ""]
        for _ in range(self.random.randint(2, 8)):
            self.random.choice(self.makers())()
        text = "\n".join(self.lines) + self.pick("", "\n")
        return text.replace("\n", self.pick("\n", "\r\n")).encode("latin-1")


class Mbf21Maker(Maker):
    """The same with fields and actions of MBF21, but without what makes the engines refuse to start: groups below 0 and
    arguments beyond those of the action."""
    engine = "mbf21"
    actions, bits21 = {}, []

    @classmethod
    def read_facts(cls, folder):
        def rows(name):
            with open(os.path.join(folder, name), encoding="ascii") as file:
                return list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))
        for row in rows("arguments.tsv"):
            cls.actions.setdefault(row["action"], []).append((row["field"], row["kind"]))
        cls.bits21 = [row["mnemonic"] for row in rows("thing_bits.tsv")]

    def small(self, highest):
        value = self.random.randint(0, highest)
        return self.pick(str(value), str(value), hex(value), "0" + oct(value)[2:], f"{value} # comment", f"+{value}")

    def thing(self):
        values = {"Dropped item": self.small(137), "Infighting group": self.small(9), "Splash group": self.small(9),
                  "Projectile group": self.number(9), "Rip sound": self.small(108), "Fast speed": self.number(2**21),
                  "Melee range": self.number(2**23)}
        names = self.random.sample(self.bits21, self.random.randint(0, 4)) + (["NOBIT"] if self.odd() else [])
        values["MBF21 Bits"] = self.pick("+", " | ", ",").join(names) if self.odd(0.5) else str(
            self.random.randint(0, 2**19 - 1))
        keys = self.random.sample(list(values), self.random.randint(1, 5))
        pairs = [(key, values[key]) for key in keys]
        self.section(f"Thing {self.random.randint(2, 250)}", pairs)

    def frame(self):
        free = self.random.randint(1100, 3999)
        action = self.pick(*self.actions)
        pairs = [(field, self.small(100) if kind in ("thing", "state", "sound") else self.number(2**20))
                 for field, kind in self.actions[action] if self.odd(0.7)]
        if not pairs:
            pairs.append((f"Args{self.random.randint(1, 8)}", "0"))  # which no action minds
        self.section(f"Frame {free}", pairs + [("Duration", "5")])
        # At once, for the next frame may be the same one.
        self.lines += ["[CODEPTR]", f"Frame {free} = {self.cased(action)}", ""]


class DsdhackedMaker(Mbf21Maker):
    """The same with numbers beyond the tables. They stay small: engines take memory up to the highest."""
    engine = "dsdhacked"

    def section(self, header, pairs):
        word = header.split()[0]
        if word in ("Thing", "Frame") and self.odd(0.5):
            header = f"{word} {self.pick(251, 260, 300) if word == 'Thing' else self.pick(4000, 4001, 4077, 5000)}"
            if word == "Frame":
                pairs = [(key, value) for key, value in pairs if not key.startswith("Args")]
                if self.odd(0.5):
                    pairs.append(("Next frame", self.pick("4000", "5000", "17")))
        super().section(header, pairs)

    def names(self, section, engine_names, numbers, longest):
        self.lines.append(self.cased(section))
        for _ in range(self.random.randint(1, 4)):
            name = "".join(self.random.choices("ABCDEFGH", k=longest))
            key = self.pick(self.cased(self.pick(*engine_names)), str(self.pick(*numbers)), f"{self.pick(*numbers)}")
            self.lines.append(f"{key} = {name}{self.pick('', ' ', ' # comment')}")
        self.lines.append("")

    def sprites(self):
        self.names("[SPRITES]", ["TROO", "SHTG", "POSS"], [245, 246, 300, 7, 500], 4)

    def sounds(self):
        self.names("[SOUNDS]", ["pistol", "bfg", "itemup"], [700, 701, 5, 900, 120], self.random.randint(1, 6))

    def made_sound(self):
        self.section(f"Sound {self.pick(700, 701, 900)}", [("Value", self.small(200))])

    def makers(self):
        return super().makers() + [self.sprites, self.sounds, self.made_sound]


def read_by(engine, program, patch, folder):
    log = os.path.join(folder, "deh.log")
    if os.path.exists(log):
        os.remove(log)
    return run(engine, program, patch, folder)


def complaints(engine, program, patch, folder):
    """What an engine has against a patch, however often, without line numbers and addresses."""
    log, ended, _ = read_by(engine, program, patch, folder)
    if engine == "chocolate-doom":
        found = [re.sub(r"^.*?:\d+:", "", line) for line in log.split("\n") if line.startswith(patch + ":")]
    else:
        found = [re.sub(r"0x[0-9a-f]+$", "", line) for line in log.split("\n") if COMPLAINT.match(line)]
    return collections.Counter(found + ([] if ended else ["does not start"]))


def new_complaints(programs, editor, data, configuration, patch, folder, seed):
    edited = os.path.join(folder, "edited.deh")
    done = subprocess.run([editor, data, configuration, patch, edited, str(seed)], capture_output=True, check=False)
    if done.returncode:
        if b"would not read back" not in done.stderr: # refused, the file stays as it is
            yield f"editing: {done.stderr.decode()}"
        return
    with open(patch, encoding="latin-1") as file:
        extended = re.search(r"(?m)^\[", file.read())
    for engine, program in programs.items():
        if engine == "chocolate-doom" and extended:
            continue  # takes their lines for those of other sections
        if configuration in ENGINES[engine][0] or (engine != "chocolate-doom" and configuration == "boom21"):
            before = complaints(engine, program, patch, folder)
            after = complaints(engine, program, edited, folder)
            yield from (f"{engine} says after an edit: {line}" for line in after - before)


def signed(value):
    return (value + 2**31) % 2**32 - 2**31


def values_in(engine, log):
    """{(kind, record, field): value} as the engine had it last."""
    values, state = {}, None
    for line in log.split("\n"):
        if match := re.match(r"Assigned (\S+) to (.*)\((-?\d+)\) at index (\d+)", line):
            thing = int(match[3]) - (0 if engine == "woof" else 1)
            values["thing", thing, match[2].lower()] = signed(int(match[1], 0))
        elif match := re.match(r"Processing Frame at index (\d+)", line):
            state = int(match[1])
        elif match := re.match(r" - (sprite|frame|tics|nextstate|misc[12]|args\[\d\]) = (-?\d+)", line):
            values["state", state, STATE_LOG[match[1]]] = signed(int(match[2]))
        elif match := re.match(r" - applied A_(\w+) from codeptr\[\d+\] to states\[(\d+)\]", line):
            values["state", int(match[2]), "Mnemonic"] = match[1].upper()
        elif match := re.match(r" - applied \(?NULL\)? from .* to states\[(\d+)\]", line):
            values["state", int(match[1]), "Mnemonic"] = "NULL"
        elif match := re.match(r" - applied from .* to states\[(\d+)\]", line):
            values.pop(("state", int(match[1]), "Mnemonic"), None)  # it does not say which
        elif match := re.match(r"Assigned key (\S+) => '(.*)'$", line):
            values["string", match[1].upper(), "text"] = match[2].replace("\\n", "\n").replace("\\N", "\n")
        elif match := re.match(r"Substituting '([^' ]+)[^']*' for (sprite|sound) '(\S+)'", line):
            names, key = STANDARD_NAMES[match[2]], match[3].upper()
            values[match[2], names.index(key) if key in names else int(key), "name"] = match[1].upper()
        elif match := re.match(r"Changed par time for (\S+) from \d+ to (-?\d+)", line):
            values["par", match[1], "seconds"] = int(match[2])
    return values


def values_of(dump):
    values = {}
    for thing in dump["things"]:
        values.update({("thing", thing["index"], key.lower()): value for key, value in thing.items()})
    for state in dump["states"]:
        values.update({("state", state["index"], key): value for key, value in state.items()})
        values["state", state["index"], "Mnemonic"] = (state["Mnemonic"] or "").upper()
    for string in dump["strings"]:
        values["string", (string["key"] or "").upper(), "text"] = string["text"]
    for kind in ("sprite", "sound"):
        STANDARD_NAMES.setdefault(kind, [entry["name"].upper() for entry in dump[kind + "s"]])
        values.update({(kind, entry["index"], "name"): entry["name"].upper() for entry in dump[kind + "s"]})
    for par in dump["pars"]:
        level = f"E{par['episode']}M{par['map']}" if par["episode"] else f"MAP{par['map']:02d}"
        values["par", level, "seconds"] = par["seconds"]
    return values


def compared(key):
    kind, _, field = key
    if kind == "thing":
        return field in [name.lower() for name in THING_KEYS + LATER_THING_KEYS]
    if kind == "par" and not re.fullmatch(r"E[1-3]M[1-9]|MAP(0[1-9]|[12]\d|3[0-2])", key[1]):
        return False  # beyond the engines' tables: we keep it
    return field in [*SAFE_STATE_KEYS, "text", "seconds"] or field.startswith("Args")


def disagreements(engine, logged, ours, standard):
    """What the engine set is what we set, and what it did not set is the engine's own."""
    for key, value in logged.items():
        if key[2] in ("bits", "mbf21 bits") and engine == "dsda-doom":
            continue  # named flags have bits of their own there
        if key in ours and ours[key] != value:
            yield f"{key}: {engine} has {value!r}, we have {ours[key]!r}"
    for key, value in ours.items():
        own = standard.get(key, NEW_VALUES.get((key[0], key[2])))
        if compared(key) and key not in logged and (value or 0) != (own or 0) and key[:2] != ("string", "USER_OWN"):
            yield f"{key}: {engine} left it alone, we have {value!r}"


def main():
    cli, editor = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    data, count, first = os.path.abspath(sys.argv[3]), int(sys.argv[4]), int((sys.argv + [1])[5])
    programs = installed()
    ours_of = lambda *arguments: subprocess.run([cli, *arguments], capture_output=True, check=True).stdout
    Mbf21Maker.read_facts(os.path.join(os.path.dirname(__file__), "../../data/engines/mbf21"))
    standard = {maker: values_of(json.loads(ours_of("--rules", "engine", "dump", "-e", maker.engine)))
                for maker in (DsdhackedMaker, Maker, Mbf21Maker)}
    faults = compared_values = 0
    with tempfile.TemporaryDirectory() as folder:
        prepare(folder)
        patch, again = os.path.join(folder, "patch.deh"), os.path.join(folder, "again.deh")

        def tell(name, told):
            nonlocal faults
            if told:
                faults += 1
                print(f"{name}:", *told, sep="\n  ")

        for seed in range(first, first + count):
            maker = (Maker, Mbf21Maker, DsdhackedMaker)[seed % 3]
            bytes_ = maker(random.Random(seed)).patch()
            with open(patch, "wb") as file:
                file.write(bytes_)
            ours = values_of(json.loads(ours_of("--rules", "engine", "dump", "-e", maker.engine, patch)))
            told = []
            for engine in programs.keys() - {"chocolate-doom"}: # it logs no values
                if engine == "woof" and re.search(rb"= *\r?(\n|$)|(?i:\[SPRITES\])", bytes_):
                    continue  # takes a line with an empty value for none, dsda-doom for 0
                logged = values_in(engine, read_by(engine, programs[engine], patch, folder)[0])
                compared_values += sum(key in ours for key in logged)
                told += disagreements(engine, logged, ours, standard[maker])
            ours_of("--rules", "engine", "convert", "-e", maker.engine, patch, again)
            with open(again, "rb") as file:
                if file.read() != bytes_:
                    told.append("saving it unchanged gave other bytes")
            ours_of("--rules", "engine", "convert", "--fresh", "-e", maker.engine, patch, again)
            fresh = values_of(json.loads(ours_of("--rules", "engine", "dump", "-e", maker.engine, again)))
            told += [f"{key}: {value!r} in a new patch is {fresh.get(key)!r}" for key, value in ours.items()
                     if fresh.get(key) != value and key[:2] != ("string", "USER_OWN")]
            for configuration in ("boom21", "doom19") if maker is Maker else (maker.engine,):
                told += new_complaints(programs, editor, data, configuration, patch, folder, seed)
            if told and not faults:
                shutil.copy(patch, os.path.join(tempfile.gettempdir(), f"disagreement-{seed}.deh"))
            tell(f"seed {seed}", told)
        for name in ("chex.deh", "extchex.deh"):
            for seed in range(5) if os.path.exists(REAL + name) else ():
                tell(name, list(new_complaints(programs, editor, data, "ultimate", REAL + name, folder, seed)))
    print(f"{count} patches, {len(programs)} engines, {compared_values} values: {faults} with disagreements")
    return 1 if faults or (not compared_values and programs.keys() - {"chocolate-doom"}) else 0


sys.exit(main())
