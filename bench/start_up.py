#!/usr/bin/env python3
"""How fast the window starts and how much memory it takes, against a bare Qt window in the same run.

    bench/start_up.py BUILD-FOLDER [RUNS]

BUILD-FOLDER is a release build with its benchmarks. Runs under Xvfb when there is no display. The figures are medians;
each program is run once before, unmeasured, so that its files are in memory.
"""
import os
import shutil
import statistics
import subprocess
import sys
import tempfile

IWAD = "/usr/share/games/doom/freedoom2.wad"
MOST_TIME, MOST_OPEN, MOST_MEMORY = 2.5, 100.0, 2.0  # times the bare window, milliseconds, times the bare window


def figures(command):
    """The figures that a program prints: name -> (milliseconds, KiB)."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True, text=True)
    rows = (line.split() for line in done.stdout.splitlines())
    return {name: (float(time), int(memory)) for name, time, memory in rows}


def median(samples, name, place):
    return statistics.median(sample[name][place] for sample in samples)


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    if "DISPLAY" not in os.environ and "WAYLAND_DISPLAY" not in os.environ:
        os.execvp("xvfb-run", ["xvfb-run", "--auto-servernum", sys.executable, *sys.argv])
    build, runs = sys.argv[1], int(sys.argv[2]) if len(sys.argv) == 3 else 15
    with tempfile.TemporaryDirectory() as folder:
        patch = os.path.join(folder, "freedoom2.bex")
        lump = subprocess.run([os.path.join(build, "plinket3-cli"), "wad", IWAD, "DEHACKED"],
                              stdout=subprocess.PIPE, check=True).stdout
        with open(patch, "wb") as file:
            file.write(lump)
        settings = os.path.join(folder, "settings")
        os.mkdir(settings)
        bare = [os.path.join(build, "bench", "plinket3_bare_window")]
        real = [os.path.join(build, "bench", "plinket3_window_start"), build, settings, IWAD, patch]
        samples = {"bare": [], "real": []}
        for run in range(runs + 1):
            for name, command in (("bare", bare), ("real", real)):
                sample = figures(command)
                if run > 0:
                    samples[name].append(sample)
        shutil.rmtree(settings)

    bare_time, bare_memory = (median(samples["bare"], "ready", place) for place in (0, 1))
    time, memory = (median(samples["real"], "ready", place) for place in (0, 1))
    opening = median(samples["real"], "open", 0)
    rows = [
        ("start to \"Ready.\"", f"{time:.0f} ms", f"{time / bare_time:.2f} x the bare window's {bare_time:.0f} ms",
         f"{MOST_TIME} x", time <= MOST_TIME * bare_time),
        ("Freedoom's patch open", f"{opening:.0f} ms", "", f"{MOST_OPEN:.0f} ms", opening <= MOST_OPEN),
        ("peak memory when ready", f"{memory / 1024:.0f} MiB",
         f"{memory / bare_memory:.2f} x the bare window's {bare_memory / 1024:.0f} MiB", f"{MOST_MEMORY} x",
         memory <= MOST_MEMORY * bare_memory),
    ]
    for name, figure, ratio, most, kept in rows:
        print(f"{name:24} {figure:>9}  {ratio:36} at most {most:7} {'' if kept else 'MISSED'}")
    sys.exit(0 if all(row[-1] for row in rows) else 1)


main()
