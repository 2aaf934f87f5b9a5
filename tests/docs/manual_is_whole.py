#!/usr/bin/env python3
"""Fails when a document links to what is not there, or when the manual misses something.

    manual_is_whole.py ROOT PLINKET3-CLI

- Every relative link of every document leads to a file, and to a heading of it where it names one.
- The manual's pages link to nothing outside of it, each is reached from its first page, and each picture is shown.
- The pages that the windows open are there.
- The page of formats names every field that the program knows, in the section of its records, and no other; that of
  modern formats names those that later engines add.
- The patches of version 2021 that pages show in full are what the program writes, and `check` has nothing to say of
  them.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

CODE_BLOCK = re.compile(r"^( *)```.*?^\1```$", re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
HEADING = re.compile(r"^(#+) (.+)$", re.MULTILINE)
PAGE_IN_SOURCE = re.compile(r'"([\w-]+\.md(?:#[\w-]+)?)"')
FIELD = re.compile(r"`([^`]+)`")

# A patch that a page shows, with one empty line wherever it has several.
PATCH = re.compile(r"^```\n(Patch File for DeHackEd v3.0\n\nDoom version = 2021\n.*?)^```$",
                   re.MULTILINE | re.DOTALL)

# The records of a dump by the page's headings, and what a dump tells of a record beside its fields.
SECTIONS = {"things": "Things", "states": "States", "sounds": "Sounds", "weapons": "Weapons", "ammo": "Ammo"}
NO_FIELDS = {"name", "Code pointer", "Mnemonic"}
# What stands in the states' section beside fields of a state.
OTHER_WORDS = {"Frame", "Codep Frame = S", "Pointer", "[CODEPTR]", "Frame 13 = FirePistol"}


def text_of(page):
    return CODE_BLOCK.sub("", page.read_text(encoding="utf-8"))


def anchors_of(page):
    """Headings as web sites name them; ui/ManualPage.cpp does the same."""
    for _, heading in HEADING.findall(text_of(page)):
        yield re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


def link_fault(folder, link):
    name, _, anchor = link.partition("#")
    target = folder / name
    if not target.is_file():
        return "leads nowhere"
    if anchor and anchor not in anchors_of(target):
        return "names no heading"
    return None


def links_of(page):
    for link in LINK.findall(text_of(page)):
        if not re.match(r"\w+:", link):
            yield link if not link.startswith("#") else page.name + link


def link_faults(root):
    for page in [*root.glob("*.md"), *root.glob("docs/**/*.md"), *root.glob("data/**/*.md")]:
        for link in links_of(page):
            if fault := link_fault(page.parent, link):
                yield f"{page.relative_to(root)}: {link} {fault}"


def manual_faults(manual):
    reached, shown, waiting = set(), set(), [manual / "index.md"]
    while waiting:
        page = waiting.pop()
        if page in reached or not page.is_file():
            continue
        reached.add(page)
        for link in links_of(page):
            target = (manual / link.partition("#")[0]).resolve()
            if manual not in target.parents:
                yield f"{page.name}: {link} is not in the manual"
            elif target.suffix == ".md":
                waiting.append(target)
            else:
                shown.add(target)
    for page in set(manual.glob("*.md")) - reached:
        yield f"{page.name} is not reached from the first page"
    for picture in set((manual / "images").iterdir()) - shown:
        yield f"images/{picture.name} is not shown"


def source_faults(root, manual):
    pages = set()
    for source in [*root.glob("ui/*.h"), *root.glob("ui/*.cpp")]:
        for page in PAGE_IN_SOURCE.findall(source.read_text(encoding="utf-8")):
            pages.add(page)
            if fault := link_fault(manual, page):
                yield f"{source.relative_to(root)}: {page} {fault}"
    if len(pages) < 2:
        yield "the windows name no pages"


def labels_of(dump, kind):
    return set().union(*(record for record in dump[kind]))


def dump_of(cli, engine):
    return json.loads(subprocess.run([cli, "dump", "-e", engine], check=True, capture_output=True).stdout)


def field_faults(manual, cli):
    dump = dump_of(cli, "mbf19")
    fields = {heading: set(dump[kind][0]) - NO_FIELDS for kind, heading in SECTIONS.items()}
    fields["Cheats"] = {cheat["label"] for cheat in dump["cheats"]}
    fields["Misc."] = set(dump["misc"])
    sections = re.split(r"^## (.+)\n", text_of(manual / "formats.md"), flags=re.MULTILINE)
    named = {heading: set(FIELD.findall(text)) for heading, text in zip(sections[1::2], sections[2::2])}
    for heading, labels in fields.items():
        words = named.get(heading, set()) - OTHER_WORDS
        for label in sorted(labels - words):
            yield f"formats.md: {heading} does not name the field {label}"
        for word in sorted(words - labels):
            yield f"formats.md: {heading} names {word}, which is no field"
    later = dump_of(cli, "id24")
    added = set().union(*(labels_of(later, kind) - labels_of(dump, kind) for kind in SECTIONS)) - {"index"}
    for label in sorted(added - set(FIELD.findall(text_of(manual / "modern.md")))):
        yield f"modern.md does not name the field {label}"


def patch_faults(manual, cli):
    shown = 0
    for page in sorted(manual.glob("*.md")):
        for patch in PATCH.findall(page.read_text(encoding="utf-8")):
            shown += 1
            with tempfile.TemporaryDirectory() as folder:
                file, fresh = pathlib.Path(folder, "shown.bex"), pathlib.Path(folder, "fresh.bex")
                file.write_text(patch, encoding="latin-1")
                found = subprocess.run([cli, "check", file], capture_output=True, text=True)
                if found.returncode != 0:
                    yield f"{page.name}: check of the patch: {found.stdout or found.stderr}"
                    continue
                subprocess.run([cli, "convert", "--fresh", "-e", "dsdhacked", file, fresh],
                               check=True, capture_output=True)
                written = re.sub(r"\n{3,}", "\n\n", fresh.read_bytes().decode("latin-1").replace("\r\n", "\n"))
                if written.rstrip("\n") != patch.rstrip("\n"):
                    yield f"{page.name}: the patch is not what the program writes"
    if shown == 0:
        yield "no page shows a patch"


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    manual = root / "docs" / "manual"
    faults = [*link_faults(root), *manual_faults(manual), *source_faults(root, manual),
              *field_faults(manual, sys.argv[2]), *patch_faults(manual, sys.argv[2])]
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
