#!/usr/bin/env python3
"""Fails when a program or a file that is made shows another version than CMakeLists.txt gives the project, or when the
version stands anywhere else in the sources, where the next release would leave it behind.

versions_agree.py PROJECT BUILD-FOLDER VERSION
"""

import pathlib
import re
import subprocess
import sys

PATTERNS = {  # in the files that the build makes: what stands where the version is shown
    "packaging/plinket3.1": r'^\.TH .*"Plinket3 (.*?)"',
    "packaging/plinket3-cli.1": r'^\.TH .*"Plinket3 (.*?)"',
    "packaging/plinket3.metainfo.xml": r'<release version="(.*?)"',
    "packaging/changelog.Debian": r"^plinket3 \((.*)-.*?\)",
    "CPackConfig.cmake": r'^set\(CPACK_PACKAGE_VERSION "(.*)"\)',
}
OWN = {"CMakeLists.txt", "CHANGELOG.md"}  # the one place, and the history
NOT_OURS = {".git", "build", "data", "corpus"}  # patches that some version wrote, numbers of engines


def sources(folder):
    for path in sorted(folder.iterdir()):
        if path.is_dir():
            if path.name not in NOT_OURS:
                yield from sources(path)
        elif path.suffix not in {".png", ".svg"}:
            yield path


def faults(project, build, version):
    major, minor, patch = version.split(".")
    shown = f"Plinket3 {major}.{minor} build {patch} beta\n"
    for program in "plinket3", "plinket3-cli":
        told = subprocess.run([build / program, "--version"], check=True, capture_output=True, text=True).stdout
        if told != shown:
            yield f"{program} --version prints {told!r}, not {shown!r}"
    for name, pattern in PATTERNS.items():
        found = re.findall(pattern, (build / name).read_text(encoding="utf-8"), re.M)
        if found != [version]:
            yield f"{name} shows {found}, not {version}"
    written = re.compile(rf"(?<![\d.]){major}(\.{minor}(\.| build )|, ?{minor}, ?){patch}(?![\d.])")
    for path in sources(project):
        name = str(path.relative_to(project))
        if name not in OWN and written.search(path.read_text(encoding="utf-8", errors="replace")):
            yield f"{name} writes the version {version}; only CMakeLists.txt should"


def main():
    project, build, version = sys.argv[1:]
    found = list(faults(pathlib.Path(project), pathlib.Path(build), version))
    for fault in found:
        print(fault)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
