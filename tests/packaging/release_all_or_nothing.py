#!/usr/bin/env python3
"""Makes releases with scripts/release in a small copy of the project, whose tests and packages are made up: what is
refused or fails changes nothing, and the same sources give the same files.

release_all_or_nothing.py PROJECT
"""

import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile

NOW, NEXT = "2.10.9", "2.10.10"  # as texts they would sort the other way
TIME = 1700000000  # 2023-11-14
FILES = [f"plinket3-{NEXT}-win64-setup.exe", f"plinket3-{NEXT}-win64.zip", f"plinket3-{NEXT}.tar.xz",
         f"plinket3_{NEXT}-0local1_amd64.deb"]

# Stand-ins for what takes long. FAULT, a command, is what goes wrong in them.
STAND_INS = {
    "scripts/test": 'echo "tests run"; step=tests; eval "${FAULT:-}"',
    "scripts/package": """version=$(scripts/version)
if [ "$1" = --windows ]; then
    step=windows; shift
    names="plinket3-$version-win64-setup.exe plinket3-$version-win64.zip"
else
    step=debian
    names=plinket3_$version-0local1_amd64.deb
fi
eval "${FAULT:-}"
for name in $names; do echo "$SOURCE_DATE_EPOCH" >"$1/$name"; echo "$1/$name"; done""",
}

REFUSED = [  # what was done before, the arguments, what is said
    ("", [], "usage: "),
    ("", [NEXT, "a", "b"], "usage: "),
    ("", ["--without-windos", NEXT], "no option --without-windos"),
    *[("", [version], "is no version") for version in
      ("", "3.0", "v3.0.0", "3.0.0-rc1", "3.0.00", "3.0.0.0", "3.0.10000", "3.0.0\n", "3..0")],
    *[("", [version], f"is not greater than {NOW}") for version in (NOW, "2.9.99", "1.99.99")],
    ("echo >>README", [NEXT], "not clean"),
    ("echo >>README; git add README", [NEXT], "not clean"),
    ("echo >new; git config status.showUntrackedFiles no", [NEXT], "not clean"),
    ("git checkout --quiet --detach", [NEXT], "no branch"),
    (f"sed --in-place /^-/d CHANGELOG.md; echo '## {NOW}\n- old' >>CHANGELOG.md; git commit --quiet -am e", [NEXT],
     "nothing under"),
    ("sed --in-place /^##/d CHANGELOG.md; git commit --quiet -am e", [NEXT], "nothing under"),
    (f"git tag v{NEXT}", [NEXT], f"the tag v{NEXT} exists"),
    (f"mkdir --parents build/releases/{NEXT}; echo >build/releases/{NEXT}/file", [NEXT], "not empty"),
    ("echo >build.txt; mv build.txt ../file", [NEXT, "../file"], "not empty"),
    ("git worktree add --quiet --detach build/release-tree", [NEXT], "another release"),
]

FAILURES = [  # what goes wrong, and what is said of it beside the last line
    ("[ $step != tests ] || exit 3", ""),
    ("[ $step != debian ] || exit 3", ""),
    ("[ $step != windows ] || exit 3", ""),
    ("[ $step != debian ] || names=plinket3_9.9.9-0local1_amd64.deb", "No such file"),
    ("[ $step != windows ] || names=", "No such file"),
    ("[ $step != debian ] || echo >>README", "changed the sources"),
    ("[ $step != tests ] || echo >new", "changed the sources"),
    ("[ $step != tests ] || git commit --quiet --allow-empty -m more", "changed the sources"),
    ("[ $step != debian ] || kill -TERM $PPID", ""),
]

MEANWHILE = [  # what somebody does in the tree during a release, which must stay; what is said
    ("git commit --quiet --allow-empty -m theirs", "meanwhile"),
    ("git checkout --quiet -b other", "meanwhile"),
    ("echo >>CHANGELOG.md", ""),
    (f"git tag v{NEXT}; echo >>README", "already exists"),
    (f"mkdir --parents build/releases/{NEXT}; echo >build/releases/{NEXT}/theirs", ""),
]


class Failed(Exception):
    pass


def expect(condition, what):
    if not condition:
        raise Failed(what)


class Copy:
    """A clone of the small copy, in a folder of its own."""

    def __init__(self, base, folder):
        self.folder = pathlib.Path(folder, "clone")
        subprocess.run(["git", "clone", "--quiet", base, self.folder], check=True)

    def git(self, *arguments):
        return subprocess.run(["git", *arguments], cwd=self.folder, check=True, capture_output=True, text=True).stdout

    def shell(self, command):
        subprocess.run(["bash", "-ec", command], cwd=self.folder, check=True)

    def release(self, *arguments, cwd=".", time=str(TIME), umask=0o22, **environment):
        if time:
            environment["SOURCE_DATE_EPOCH"] = time
        return subprocess.run([self.folder / "scripts/release", *arguments], umask=umask, cwd=self.folder / cwd,
                              capture_output=True, text=True, env={**os.environ, **environment})

    def state(self):
        """All that a release changes, and every file that is there, in git or not."""
        files = {str(path.relative_to(self.folder)): path.read_bytes() for path in self.folder.rglob("*")
                 if path.is_file() and ".git" not in path.relative_to(self.folder).parts[:1]}
        head = subprocess.run(["git", "symbolic-ref", "HEAD"], cwd=self.folder, capture_output=True).stdout
        return (files, head, self.git("rev-parse", "HEAD"), self.git("for-each-ref"), self.git("status", "--porcelain"),
                self.git("worktree", "list"), sorted(os.listdir(self.folder.parent)))


def make_base(project, base):
    """The small copy: the real scripts, version and change log, with something unreleased in it."""
    base.mkdir()
    shutil.copytree(project / "scripts", base / "scripts")
    for name in ".gitignore", "CMakeLists.txt", "CHANGELOG.md":
        shutil.copy(project / name, base)
    for name, pattern, by in (("CMakeLists.txt", r"(\nproject\(Plinket3 VERSION )[\d.]+", rf"\g<1>{NOW}"),
                              ("CHANGELOG.md", r"(\n## Unreleased\n)", r"\g<1>\n- A line more.\n")):
        text, count = re.subn(pattern, by, (base / name).read_text(encoding="utf-8"))
        expect(count == 1, f"{name} is not as this test knows it")
        (base / name).write_text(text, encoding="utf-8")
    for name, text in STAND_INS.items():
        (base / name).write_text(f"#!/usr/bin/env bash\nset -euo pipefail\n{text}\n")
    (base / "README").write_text("Read me\n")
    os.symlink("README", base / "link")
    subprocess.run("git init --quiet --initial-branch=main && git add . && git commit --quiet -m First", shell=True,
                   cwd=base, check=True)


def refusals(copy):
    for before, arguments, said in REFUSED:
        with copy() as clone:
            clone.shell(before)
            state = clone.state()
            ended = clone.release(*arguments)
            case = f"{before!r} {arguments}: {ended.stdout}{ended.stderr}"
            expect(ended.returncode == 1 and said in ended.stderr and len(ended.stderr.splitlines()) == 1, case)
            expect(clone.state() == state, f"something was changed: {case}")


def failures(copy):
    for fault, said in FAILURES:
        with copy() as clone:
            state = clone.state()
            ended = clone.release(NEXT, FAULT=fault)
            case = f"{fault}: {ended.stdout}{ended.stderr}"
            expect(ended.returncode != 0 and said in ended.stderr, case)
            expect(ended.stderr.endswith("no release was made; commits, tags and files are as they were before\n"), case)
            expect(clone.state() == state, f"something was changed: {case}")


def meanwhile(copy):
    for done, said in MEANWHILE:
        with copy() as clone, copy() as other:
            other.shell(done)
            ended = clone.release(NEXT, FAULT=f"[ $step != debian ] || (cd ../..; {done})")
            case = f"{done}: {ended.stdout}{ended.stderr}"
            expect(ended.returncode != 0 and said in ended.stderr, case)
            expect(clone.git("log", "--format=%s") == other.git("log", "--format=%s"), f"commits: {case}")
            expect(clone.state()[0] == other.state()[0], f"files: {case}")
            expect(clone.git("tag") == other.git("tag"), f"tags: {case}")


def good_release(copy):
    with copy() as clone, copy() as second:
        before = clone.git("rev-parse", "HEAD")
        change_log = (clone.folder / "CHANGELOG.md").read_text(encoding="utf-8")
        (clone.folder / "build").mkdir()
        ended = clone.release(NEXT, "../files", cwd="build")  # from any folder
        told = ended.stdout + ended.stderr
        expect(ended.returncode == 0 and "tests run" in told and "without" not in told, told)
        folder = clone.folder / "files"
        expect(sorted(path.name for path in folder.iterdir()) == ["SHA256SUMS", *FILES], os.listdir(folder))
        expect(all(f"\n{folder / name}\n" in ended.stdout for name in FILES), told)
        sums = dict(reversed(line.split("  ")) for line in (folder / "SHA256SUMS").read_text().splitlines())
        expect(sums == {name: hashlib.sha256((folder / name).read_bytes()).hexdigest() for name in FILES}, sums)
        for name in set(FILES) - {f"plinket3-{NEXT}.tar.xz"}:
            expect((folder / name).read_text() == f"{TIME}\n", f"{name} was not made at the release's time")

        expect(clone.git("rev-parse", "main^") == before, "there is not one commit more on the branch")
        expect(clone.git("rev-parse", f"v{NEXT}^{{commit}}") == clone.git("rev-parse", "main"), "the tag is elsewhere")
        tag = clone.git("rev-parse", f"v{NEXT}")
        expect(clone.git("cat-file", "-t", tag.strip()) == "tag\n", "the tag is not annotated")
        expect(clone.git("status", "--porcelain") == "?? files/\n", "the tree is not as committed")
        expect(clone.git("diff", "--name-only", "HEAD^") == "CHANGELOG.md\nCMakeLists.txt\n", "other files changed")
        expect(f"\n+project(Plinket3 VERSION {NEXT} LANGUAGES CXX)\n" in clone.git("diff", "HEAD^", "CMakeLists.txt"),
               "the version was not set")
        section = f"## Unreleased\n\n## {NEXT} - 2023-11-14\n"
        expect((clone.folder / "CHANGELOG.md").read_text(encoding="utf-8") ==
               change_log.replace("## Unreleased\n", section), "the change log")

        with tarfile.open(folder / f"plinket3-{NEXT}.tar.xz", "r:xz") as archive:
            archive.extractall(folder.parent / "unpacked")
            told = {(member.mtime, member.uid, member.gid, 0 if member.issym() else member.mode & 0o022)
                    for member in archive}
            expect(told == {(TIME, 0, 0, 0)}, f"times, owners and rights in the archive: {told}")
        unpacked = folder.parent / "unpacked" / f"plinket3-{NEXT}"
        clone.shell(f"mv files unpacked {folder.parent.parent}; rm --recursive build; mv .git ..")
        differs = subprocess.run(["diff", "--recursive", "--no-dereference", clone.folder,
                                  folder.parent.parent / "unpacked" / unpacked.name], capture_output=True, text=True)
        expect(differs.returncode == 0, differs.stdout)

        ended = second.release(NEXT, umask=0o77, TZ="Asia/Tokyo", LC_ALL="C", XZ_OPT="--check=none")
        expect(ended.returncode == 0, ended.stderr)
        again = second.folder / f"build/releases/{NEXT}"
        for name in ["SHA256SUMS", *FILES]:
            expect((again / name).read_bytes() == (folder.parent.parent / "files" / name).read_bytes(),
                   f"{name} differs the second time")
            expect((again / name).stat().st_mode & 0o777 == 0o644, f"not everybody may read {name}")
        expect(second.git("rev-parse", f"v{NEXT}") == tag, "the tag differs the second time")
        expect(second.release("2.10.11").returncode == 1, "nothing is unreleased behind a release")


def parts_left_out(copy):
    with copy() as clone:
        ended = clone.release("--without-tests", "--without-windows", NEXT, time=None)
        expect(ended.returncode == 0 and "tests run" not in ended.stdout, ended.stdout + ended.stderr)
        last = ended.stdout.splitlines()[-2:]
        expect("without" in last[0] and "tests" in last[0] and "without" in last[1] and "Windows" in last[1], last)
        made = sorted(os.listdir(clone.folder / f"build/releases/{NEXT}"))
        expect(made == ["SHA256SUMS", *FILES[2:]], made)
        expect((clone.folder / f"build/releases/{NEXT}" / FILES[3]).read_text() == clone.git("log", "-1", "--format=%ct"),
               "the package was made at another time than the commit")


def main():
    if not all(shutil.which(tool) for tool in ("git", "xz")):
        print("skipped: git or xz is not installed")
        return 77
    project = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory(prefix="plinket3_") as name:
        folder = pathlib.Path(name).resolve()
        for key in [key for key in os.environ if key.startswith("GIT_") or key == "SOURCE_DATE_EPOCH"]:
            del os.environ[key]
        (folder / "home").mkdir()
        (folder / "home/.gitconfig").write_text("[user]\nname = Somebody\nemail = somebody@example.org\n")
        os.environ.update(HOME=str(folder / "home"), XDG_CONFIG_HOME=str(folder / "home"), GIT_CONFIG_NOSYSTEM="1")
        make_base(project, folder / "base")

        class Clone(tempfile.TemporaryDirectory):
            def __enter__(self):
                return Copy(folder / "base", super().__enter__())

        def copy():
            return Clone(dir=folder)

        failed = 0
        for test in refusals, failures, meanwhile, good_release, parts_left_out:
            try:
                test(copy)
            except Failed as fault:
                failed = 1
                print(f"FAILED: {test.__name__}: {fault}")
    return failed


if __name__ == "__main__":
    sys.exit(main())
