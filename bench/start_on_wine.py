#!/usr/bin/env python3
"""How long the program takes from its start to "Ready." in its log, here and as the program for Windows under wine: without
the time in which it waits for an answer to its first message.

    start_on_wine.py PROGRAM WINDOWS-PROGRAM [RUNS]
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/system"))
import driven  # noqa: E402


def start(path, account, display):
    """Milliseconds."""
    (account.settings / "plinket3.log").unlink(missing_ok=True)
    begin = time.monotonic()
    program = driven.Program(path, account, display)
    program.until(lambda: program.messages, "its first message")
    asked = time.monotonic()
    program.focus("^Plinket3$")
    answered = time.monotonic()
    program.key("Return")
    program.until(lambda: "Ready." in account.log(), "its start")
    ready = time.monotonic()
    program.kill()
    return 1000 * (asked - begin + ready - answered)


def main():
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 7
    with tempfile.TemporaryDirectory(prefix="plinket3_") as folder, driven.Display() as display:
        means = []
        for name, path in (("here", sys.argv[1]), ("under wine", sys.argv[2])):
            path = Path(path).with_suffix("")
            account = driven.Account(Path(folder, name), windows=driven.for_windows(path))
            # Windows is there before a program is; wine begins and ends its desktop with the first and last program.
            desktop = driven.for_windows(path) and subprocess.Popen([driven.WINE, "winver"], env=account.environment(display))
            start(path, account, display)  # files are read, the Windows is there
            if desktop:  # so that the script which makes one is not measured
                driven.WINE = "wine"
                os.environ["WINEDEBUG"] = "-all"
            times = sorted(start(path, account, display) for _ in range(runs))
            means.append(statistics.median(times))
            if desktop:
                desktop.terminate()
            print(f"{name}: {means[-1]:.0f} ms, {times[0]:.0f} to {times[-1]:.0f}")
    print(f"{means[1] / means[0]:.2f} times as long")


if __name__ == "__main__":
    try:
        main()
    except driven.Failed as reason:
        sys.exit(f"FAILED: {reason}")
