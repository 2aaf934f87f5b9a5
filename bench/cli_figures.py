#!/usr/bin/env python3
"""Figures of the whole plinket3-cli process: time, and peak memory against the size of the patch.

    bench/cli_figures.py [BUILD]      BUILD: a build folder with plinket3-cli and plinket3_bench; build/release if not told

Exits with 1 when a target is missed.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

RUNS = 50
INFO_LIMIT_MS = 10
MEMORY_PER_BYTE = 3
MEMORY_BESIDE = 50 * 1024 * 1024


def run(*command):
    """Runs a command; returns its time in seconds and its peak memory in bytes."""
    started = time.perf_counter()
    process = subprocess.Popen([str(word) for word in command], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    elapsed = time.perf_counter() - started
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(process.args)}: ended with {process.returncode}")
    return elapsed, usage.ru_maxrss * 1024


def report(what, value, limit, unit):
    reached = value <= limit
    print(f"{what:<44} {value:10.2f} {unit:<3} target {limit:10.2f} {unit:<3}{'' if reached else '  MISSED'}")
    return reached


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else root / "build" / "release").resolve()
    cli = build / "plinket3-cli"
    with tempfile.TemporaryDirectory() as name:
        data = pathlib.Path(name)
        run(build / "plinket3_bench", "--write-data", data)
        small, large, out = data / "small.deh", data / "large.deh", data / "out.deh"

        info = statistics.median(run(cli, "info", small)[0] for _ in range(RUNS)) * 1000
        seconds, memory = run(cli, "--data", data, "convert", "-e", "bench", large, out)
        if out.read_bytes() != large.read_bytes():
            sys.exit("convert did not write the patch as it was")
        size = large.stat().st_size

    mega = 1024 * 1024
    print(f"convert of {size / mega:.1f} MB: {seconds:.2f} s")
    reached = [
        report(f"info on a small patch, median of {RUNS}", info, INFO_LIMIT_MS, "ms"),
        report("convert, peak memory", memory / mega, (MEMORY_PER_BYTE * size + MEMORY_BESIDE) / mega, "MB"),
    ]
    return 0 if all(reached) else 1


if __name__ == "__main__":
    sys.exit(main())
