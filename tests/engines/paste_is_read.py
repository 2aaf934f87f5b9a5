#!/usr/bin/env python3
"""Takes Freedoom's Imp out of its WAD, pastes it into an empty patch of MBF21 at free numbers, and lets real game engines
read that: they must take every value, and complain of nothing.

usage: paste_is_read.py PLINKET3-CLI DATA FLAGS

DATA is the folder with config/ and tables/, FLAGS the folder of the engines' fact tables. Exit status: 0 when every value
arrived, 1 when one did not, 77 when no engine is installed.
"""
import os
import subprocess
import sys
import tempfile

import read_every_field as engines

ENGINES = ("dsda-doom", "woof")
IMP, STATES = "11", 33


def main():
    cli, data, facts = sys.argv[1:4]
    programs = engines.installed(ENGINES)
    flags = engines.flags_of("mbf21", facts)
    failed = False
    with tempfile.TemporaryDirectory() as folder:
        base, clip, patch = (os.path.join(folder, name) for name in ("base.deh", "clip.deh", "imp.deh"))
        with open(base, "w", encoding="latin-1") as stream:
            stream.write("Patch File for DeHackEd v3.0\n\nDoom version = 2021\nPatch format = 6\n")
        with open(clip, "wb") as stream:
            subprocess.run([cli, "--data", data, "copy", "-e", "boom21", "--with-states", "thing", IMP, engines.IWAD],
                           check=True, stdout=stream)
        subprocess.run([cli, "--data", data, "paste", "-e", "mbf21", "--free", base, clip, patch], check=True,
                       stdout=subprocess.DEVNULL)
        with open(patch, encoding="latin-1", newline="") as stream:
            said = engines.sections(stream.read().replace("\r\n", "\n"))
        kinds = [header.split()[0] for header, _ in said]
        if kinds.count("Thing") != 1 or kinds.count("Frame") < STATES:
            print(f"the patch holds {kinds.count('Thing')} things and {kinds.count('Frame')} frames")
            return 1
        engines.prepare(folder)
        for engine, program in programs.items():
            log, ended, output = engines.run(engine, program, patch, folder)
            found = [] if ended else ["the engine did not get to the level: " + output[-300:]]
            found += [line for line in log.split("\n") if engines.COMPLAINT.match(line)]
            found += engines.missing_lines(log, engines.expected_lines(engine, said, flags))
            print(f"{engine} reads the pasted Imp: " + (f"{len(found)} faults" if found else "every field"))
            for line in found[:20]:
                print("  " + line)
            failed = failed or bool(found)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
