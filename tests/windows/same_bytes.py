#!/usr/bin/env python3
"""What the Windows program writes equals what this system's does, byte for byte.

    same_bytes.py EMULATOR WINDOWS_BUILD BUILD CORPUS
"""
import filecmp
import os
import subprocess
import sys
import tempfile

emulator, windows, here, corpus = sys.argv[1:]


def differences():
    for folder in ("config", "tables", "uses"):
        names = set(os.listdir(f"{windows}/{folder}")) | set(os.listdir(f"{here}/{folder}"))
        assert len(names) > 3, f"{folder} is empty"
        _, other, missing = filecmp.cmpfiles(f"{windows}/{folder}", f"{here}/{folder}", names, shallow=False)
        yield from (f"{folder}/{name}" for name in other + missing)


def run(program, arguments, folder):
    arguments = [argument.replace("@", folder + "/") for argument in arguments]
    done = subprocess.run(program + arguments, cwd=folder, stdin=subprocess.DEVNULL, capture_output=True)
    files = {}
    for root, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(root, name)
            with open(path, "rb") as file:
                files[os.path.relpath(path, folder)] = file.read()
    # Messages end lines as the system does, where results have their own ends.
    said = [text.replace(folder.encode() + b"/", b"@") for text in (done.stdout, done.stderr.replace(b"\r\n", b"\n"))]
    return done.returncode, *said, files


def commands():
    for folder in ("patch", "document"):
        for name in sorted(os.listdir(os.path.join(corpus, folder))):
            with open(os.path.join(corpus, folder, name), "rb") as file:
                yield file.read(), ["convert", "-e", "boom21", "in.deh", "out.deh"]
    with open(os.path.join(os.path.dirname(__file__), "sample.bex"), "rb") as file:
        sample = file.read()
    for arguments in (["dump", "in.deh"], ["info", "in.deh"], ["check", "@in.deh"], ["diff", "in.deh"],
                      ["convert", "--to", "dsdhacked", "in.deh", "out.deh"], ["table", "in.deh", "out.tbl"],
                      ["copy", "-e", "mbf21", "--with-states", "thing", "11", "-"], ["dump", "-e", "id24"],
                      ["free", "-e", "mbf21", "state"], ["uses", "-e", "mbf21", "thing", "31"]):
        yield sample, arguments


failed = [f"{name} differs" for name in differences()]
tried = written = 0
for patch, arguments in commands():
    results = []
    for program in ([emulator, f"{windows}/plinket3-cli.exe"], [f"{here}/plinket3-cli"]):
        with tempfile.TemporaryDirectory() as folder:
            with open(f"{folder}/in.deh", "wb") as file:
                file.write(patch)
            results.append(run(program, arguments, folder))
    tried += 1
    written += len(results[1][-1]) > 1
    if results[0] != results[1]:
        failed.append(f"{' '.join(arguments)}: {results[0][:3]} instead of {results[1][:3]}"[:2000])
print(f"{tried} commands, {written} wrote a file; {len(failed)} differ")
print("\n".join(failed))
sys.exit(1 if failed or written < 5 else 0)
