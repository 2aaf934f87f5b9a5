#!/usr/bin/env python3
"""Has the window program and the command line open every file of make_hostile.py. Each says what it should, or works;
none takes long, needs much memory or falls over.
    hostile.py BUILD-FOLDER [NAME-PART]"""

import queue
import resource
import shutil
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

import make_hostile
from driven import Account, BETA, Display, Failed, IWAD, Program, require

MEMORY = 3 << 30  # address space, most of which the toolkit's libraries take
SECONDS = 20


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


class Case:
    """`codes` is None for a patch that the window opens as the program recommends: else it goes by the kept rules."""

    def __init__(self, kind, file, said, codes, build, place):
        self.kind, self.file, self.said, self.codes, self.build, self.place = kind, file, said, codes, build, place
        # AddressSanitizer reserves more than any limit, and makes everything several times as slow.
        sanitized = b"__asan_init" in (build / "plinket3").read_bytes()
        self.limit = None if sanitized else limit_memory
        self.seconds = SECONDS * (5 if sanitized else 1)
        self.programs = build
        self.good = place / "good.deh"
        place.mkdir()
        self.good.write_bytes(make_hostile.NORMAL)
        if kind in ("tables", "configurations"):
            self.programs = place / "program"
            for folder in ("config", "tables", "resources"):
                shutil.copytree(build / folder, self.programs / folder)
            for file_ in ("plinket3", "iwaddetect.cfg"):
                shutil.copy(build / file_, self.programs)
        if kind == "tables":
            shutil.copy(file, self.programs / "tables/doom19.tbl")
        elif kind == "configurations":
            shutil.copy(file, self.programs / "config")
            self.good.write_bytes(make_hostile.NORMAL.replace(b"doom19.cfg", file.name.encode()))

    def window(self, display):
        account = Account(self.place / "home")
        patch = self.good
        if self.kind == "patches":
            patch = self.file
            if self.codes is not None:
                settings = account.settings / "plinket3.cfg"
                settings.write_text(settings.read_text() + " patchRules = 1;")
        elif self.kind == "wads":
            settings = account.settings / "plinket3.cfg"
            settings.write_text(settings.read_text().replace(IWAD, str(self.file)))
        elif self.kind == "settings":
            shutil.copy(self.file, account.settings / "plinket3.cfg")
        elif self.kind == "recoveries":
            shutil.copy(self.file, account.settings / "recovery-0.dat")
        elif self.kind == "places":
            shutil.copy(self.file, account.settings / "windows.ini")
        program = Program(self.programs / "plinket3", account, display, *([patch] if self.kind != "settings" else []),
                          limit=self.limit)
        try:
            self.run(program)
        except BaseException:
            program.kill()
            raise

    def run(self, program):
        """Waits for what should come, ends the program and looks at all that it said."""
        if self.said is not None:
            def reached(_):
                return any(self.said in message for message in program.messages[1:])
            program.pass_by(f'"{self.said}"', reached, "^File settings of ")
        elif self.kind == "settings":
            program.answer(BETA)
            program.focus("^Welcome to Plinket3$")
        else:
            program.reach_patch()
        program.get_to_end()
        said = [message for message in program.messages if message != BETA]
        if self.said is None and said:
            raise Failed("nothing should have been said; " + program.said())
        if any(len(message) > 6000 for message in said):
            raise Failed("it said too much: " + said[0][:200])

    def commands(self):
        if self.kind == "patches":
            engine = "dehextra19" if self.file.suffix == ".bex" else "doom19"
            for command in ("info",), ("check", "-e", engine), ("diff", "-e", engine), ("dump", "-e", engine):
                yield [*command, self.file]
            yield ["convert", "-e", engine, self.file, self.place / "out"]
        elif self.kind == "wads":
            yield ["wad", self.file]
            yield ["wad", self.file, "PLAYPAL"]
            yield ["wad", "--sprite", "PLAY", "0", self.file]
            yield ["picture", "PLAYA1", self.file, self.place / "out"]
        elif self.kind in ("tables", "configurations"):
            engine = "doom19" if self.kind == "tables" else self.file.stem
            yield ["--data", self.programs, "engines"]
            yield ["--data", self.programs, "dump", "-e", engine]
            yield ["--data", self.programs, "convert", "-e", engine, self.good, self.place / "out"]
        if self.kind in ("configurations", "settings", "recoveries"):
            yield ["config", self.file]

    def command_line(self):
        if self.codes is None:
            return
        ended = ""
        for command in self.commands():
            run = subprocess.run([self.build / "plinket3-cli", *command], capture_output=True, timeout=self.seconds,
                                 preexec_fn=self.limit, check=False)
            said = run.stderr.decode("latin-1")
            if run.returncode not in (0, 1, 2) or (run.returncode == 2 and (said.count("\n") != 1 or len(said) < 10)):
                raise Failed(f"{' '.join(map(str, command))} ended with {run.returncode} and said: {said[:1000]}")
            ended += str(run.returncode)
        if ended != self.codes:
            raise Failed(f"the commands ended with {ended} instead of {self.codes}")


def work(cases, failures):
    with Display() as display:
        while True:
            try:
                case = cases.get_nowait()
            except queue.Empty:
                return
            for attempt in (lambda case=case: case.window(display), case.command_line):
                try:
                    attempt()
                except (Failed, subprocess.TimeoutExpired) as reason:
                    failures.append(f"{case.kind}/{case.file.name}: {reason}")
            shutil.rmtree(case.place)


def main():
    require("Xvfb", "xdotool", "jwm", IWAD)
    build = Path(sys.argv[1]).absolute()
    part = sys.argv[2] if len(sys.argv) > 2 else ""
    cases, failures = queue.Queue(), []
    with tempfile.TemporaryDirectory(prefix="plinket3_hostile_") as folder:
        for kind, rows in make_hostile.make(folder, build).items():
            for file, said, codes in rows:
                ways = [(said, codes)]
                if kind == "patches" and said is not None:
                    ways.append((make_hostile.BY_ENGINES.get(file.name), None))
                for way in ways if part in f"{kind}/{file.name}" else []:
                    cases.put(Case(kind, file, *way, build, Path(folder, f"case{cases.qsize()}")))
        count = cases.qsize()
        workers = [threading.Thread(target=work, args=(cases, failures)) for _ in range(2)]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
    for failure in failures:
        print("FAILED:", failure)
    print(f"{count} files, {len(failures)} failures")
    sys.exit(bool(failures))


if __name__ == "__main__":
    main()
