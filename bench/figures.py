#!/usr/bin/env python3
"""Every promised figure of speed and size in one table, each a median, as a ratio to what it is measured against.

    bench/figures.py [--markdown] [BUILD]      BUILD: a release build; build/release if not told

What a figure is measured against is either the least work that could do the job, taken in the same run, or a limit.
Windows are shown under Xvfb when there is no display. Exits with 1 when a promise is not kept.
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

IWAD = "/usr/share/games/doom/freedoom2.wad"
MEGA = 1024 * 1024
MODERN_STATES = 7400
HUGE_NUMBERS = "Doom version = 2021\n\nThing 2000000000 (Far)\nHit points = 5\n\nFrame 2147483646\nDuration = 5\n"
INFO_RUNS = 50
START_RUNS = 15

# Figures of plinket3_bench: what, benchmark, its floor (a benchmark, or a limit in ms), the most it may be of that.
JOBS = [
    ("read a patch of 1,000,000 lines", "ReadPatch/1000000", "SplitLinesFloor/1000000", 4),
    ("read a patch of 10,000 lines", "ReadPatch/10000", "SplitLinesFloor/10000", 4),
    ("read 10 times the lines", "ReadPatch/1000000", "ReadPatch/100000", 11),
    ("write a patch of 1,000,000 lines", "WritePatch/1000000", "CopyLinesFloor/1000000", 4),
    ("write a patch of 10,000 lines", "WritePatch/10000", "CopyLinesFloor/10000", 4),
    # 1.6 times what reading took when documents began, 2.82 of splitting.
    ("open a patch of 1,000,000 lines as a document", "OpenDocument/1000000", "SplitLinesFloor/1000000", 4.5),
    ("save it with a changed value", "SaveDocument/1000000/1/real_time", "SaveDocument/1000000/0/real_time", 2),
    ("compare two patches of 7,400 states", "ComparePatches", 200, 1),
    ("copy a monster of 60 out of 7,400 states", "CopyMonster", 50, 1),
    ("load the engine doom19", "LoadEngine/0", 5, 1),
    ("load the engine dehextra21", "LoadEngine/1", 5, 1),
    ("open freedoom2.wad", "OpenWad", "ReadDirectoryFloor", 3),
    ("find what uses a thing among 11,400 states", "FindUses", 20, 1),
    ("find the free ones of 11,400 states", "FindFreeStates", 20, 1),
    ("lay out the graph of 500 out of 11,400 states", "LayOutStates/500", 200, 1),
    ("find the problems of a patch of 7,400 states", "FindProblems", 60, 1),
]
FLOORS = {"SplitLinesFloor": "splitting its lines", "CopyLinesFloor": "copying its lines",
          "ReadDirectoryFloor": "reading its directory", "ReadPatch": "a tenth of them",
          "SaveDocument": "writing its bytes"}

# Figures of plinket3_editor_lists, in milliseconds.
LISTS = [
    ("4,000 states: a letter in the filter", "filter", 50),
    ("4,000 states: select 1,000 rows", "select", 50),
    ("4,000 states: type a value into 1,000 rows", "edit", 50),
    ("500 states: show their graph", "graph", 200),
    ("7,400 states: a letter in Find", "modern anything", 50),
    ("50,000 states: a letter in Find", "anything", 50),
    ("50,000 states with arguments: a letter in the filter", "find arguments", 50),
    ("50,000 states with arguments: a letter that none has", "find nothing", 50),
    ("100,000 states: scroll by a tenth", "scroll", 50),
    ("4,000 states: scroll by a page of new pictures", "new pictures", 50),
]


class Table:
    def __init__(self, markdown):
        self.markdown = markdown
        self.kept = True
        if markdown:
            print("| figure | measured | against | ratio | promised |\n| --- | ---: | ---: | ---: | ---: |")

    def row(self, what, measured, against, most, unit, floor):
        ratio = measured / against
        kept = ratio <= most
        self.kept = self.kept and kept
        cells = (what, f"{measured:.3g} {unit}", f"{floor} {against:.3g} {unit}", f"{ratio:.2f}",
                 f"at most {most:g}{'' if kept else ', MISSED'}")
        print(("| {} | {} | {} | {} | {} |" if self.markdown else "{:44} {:>10}   {:36} {:>6}   {}").format(*cells),
              flush=True)


def run(*command, may_find=False):
    """Runs a command; returns its time in seconds and its peak memory in bytes."""
    started = time.perf_counter()
    process = subprocess.Popen([str(word) for word in command], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    elapsed = time.perf_counter() - started
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0 and not (may_find and process.returncode == 1):
        sys.exit(f"{' '.join(process.args)}: ended with {process.returncode}")
    return elapsed, usage.ru_maxrss * 1024


def printed(*command):
    """The figures that a program prints: name -> (milliseconds, KiB)."""
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          check=True, text=True)
    rows = (line.rsplit(maxsplit=2) for line in done.stdout.splitlines())
    return {name: (float(milliseconds), int(memory)) for name, milliseconds, memory in rows}


def jobs(table, build, folder):
    out = folder / "bench.json"
    run(build / "plinket3_bench", "--benchmark_repetitions=9", "--benchmark_enable_random_interleaving=true",
        f"--benchmark_out={out}", "--benchmark_out_format=json")
    samples = {}
    units = {"us": 1e-3, "ms": 1, "ns": 1e-6}
    for entry in json.loads(out.read_text())["benchmarks"]:
        if entry.get("error_occurred"):
            sys.exit(f"{entry['name']}: {entry['error_message']}")
        if entry["run_type"] == "iteration":
            time_ = entry["real_time" if entry["run_name"].endswith("real_time") else "cpu_time"]  # a disk has no CPU time
            samples.setdefault(entry["run_name"], []).append(time_ * units[entry["time_unit"]])
    milliseconds = {name: statistics.median(taken) for name, taken in samples.items()}
    for what, name, floor, most in JOBS:
        if isinstance(floor, str):
            table.row(what, milliseconds[name], milliseconds[floor], most, "ms", FLOORS[floor.split("/")[0]])
        else:
            table.row(what, milliseconds[name], floor, most, "ms", "the limit of")


def command_line(table, build, folder):
    cli = build / "plinket3-cli"
    run(build / "plinket3_bench", "--write-data", folder)
    small, large, out = folder / "small.deh", folder / "large.deh", folder / "out.deh"
    info = statistics.median(run(cli, "info", small)[0] for _ in range(INFO_RUNS)) * 1000
    memory = run(cli, "--data", folder, "--rules", "kept", "convert", "-e", "bench", large, out)[1]
    if out.read_bytes() != large.read_bytes():
        sys.exit("convert did not write the patch as it was")
    base = run(cli, "--data", folder, "--rules", "kept", "check", "-e", "bench", small, may_find=True)[1]
    document = run(cli, "--data", folder, "--rules", "engine", "convert", "-e", "bench", large, out)[1]
    table.row("open as a document and save, memory beside the engine's", (document - base) / MEGA,
              large.stat().st_size / MEGA, 3, "MB", "the file's")
    table.row("plinket3-cli info, the whole process", info, 10, 1, "ms", "the limit of")
    huge = folder / "huge.deh"
    huge.write_text(HUGE_NUMBERS)
    table.row("plinket3-cli dump with huge numbers, peak memory", run(cli, "dump", huge)[1] / MEGA, 60, 1, "MB",
              "the limit of")
    table.row("plinket3-cli convert, peak memory", memory / MEGA, 3 * large.stat().st_size / MEGA + 50, 1, "MB",
              "3 times the file and 50 MB:")


def modern_patch():
    """A DSDHacked patch as large ones are: states behind those of the engine, most with an action and arguments."""
    states = range(5000, 5000 + MODERN_STATES)
    lines = ["Patch File for DeHackEd v3.0", "Doom version = 2021", "Patch format = 6", ""]
    for state in states:
        lines += [f"Frame {state}", f"Sprite number = {state % 130}", f"Sprite subnumber = {state % 6}",
                  f"Duration = {state % 9 + 1}", f"Next frame = {state + 1 if state + 1 in states else 0}",
                  f"Args1 = {state % 137 + 1}", ""]
    lines += ["[CODEPTR]"] + [f"Frame {state} = SpawnObject" for state in states]
    return "\n".join(lines) + "\n"


def window(table, build, folder):
    patch, modern = folder / "freedoom2.bex", folder / "modern.deh"
    modern.write_text(modern_patch())
    patch.write_bytes(subprocess.run([build / "plinket3-cli", "wad", IWAD, "DEHACKED"], stdout=subprocess.PIPE,
                                     check=True).stdout)
    settings = folder / "settings"
    settings.mkdir()
    bare, real, large = [], [], []
    for _ in range(START_RUNS + 1):
        large.append(printed(build / "bench" / "plinket3_window_start", build, settings, IWAD, modern))
        bare.append(printed(build / "bench" / "plinket3_bare_window"))
        real.append(printed(build / "bench" / "plinket3_window_start", build, settings, IWAD, patch))

    def median(samples, name, place):
        return statistics.median(sample[name][place] for sample in samples[1:])  # the first one warms up

    table.row('window: start to "Ready."', median(real, "ready", 0), median(bare, "ready", 0), 1.9, "ms",
              "a bare window's")
    table.row("window: peak memory when ready", median(real, "ready", 1) / 1024, median(bare, "ready", 1) / 1024, 2,
              "MiB", "a bare window's")
    table.row(f"window: open {MODERN_STATES:,} states, {modern.stat().st_size // 1000} kB", median(large, "open", 0), 150,
              1, "ms", "the limit of")
    table.row("window: open Freedoom's patch", median(real, "open", 0), 100, 1, "ms", "the limit of")


def lists(table, build):
    figures = printed(build / "bench" / "plinket3_editor_lists", build, IWAD)
    for what, name, limit in LISTS:
        table.row(what, figures[name][0], limit, 1, "ms", "the limit of")


def main():
    arguments = sys.argv[1:]
    markdown = "--markdown" in arguments
    if markdown:
        arguments.remove("--markdown")
    if "DISPLAY" not in os.environ and "WAYLAND_DISPLAY" not in os.environ:
        os.execvp("xvfb-run", ["xvfb-run", "--auto-servernum", sys.executable, *sys.argv])
    root = pathlib.Path(__file__).resolve().parent.parent
    build = pathlib.Path(arguments[0] if arguments else root / "build" / "release").resolve()
    table = Table(markdown)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        jobs(table, build, folder)
        command_line(table, build, folder)
        window(table, build, folder)
    lists(table, build)
    return 0 if table.kept else 1


if __name__ == "__main__":
    sys.exit(main())
