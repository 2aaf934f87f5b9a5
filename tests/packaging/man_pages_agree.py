#!/usr/bin/env python3
"""Fails when the man pages, the table in README.md and what the programs print as their help do not agree.

man_pages_agree.py README FOLDER-OF-MAN-PAGES FOLDER-OF-PROGRAMS
"""

import pathlib
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--?[a-z][\w-]*")
HELP = {"-h", "--help"}


def items(page, section):
    """What the paragraphs with a tag in a section are tagged with, without fonts: "check [-e ENGINE] PATCH"."""
    text = page.read_text(encoding="utf-8")
    (body,) = re.findall(rf"^\.SH {section}\n(.*?)(?=^\.SH )", text, re.M | re.S)
    return [tag.replace("\\-", "-") for tag in re.findall(r"^\.TP\n\.B (.*)$", body, re.M)]


def readme_commands(readme):
    """The command of each row, as in the table: "check [-e ENGINE] PATCH"."""
    table = readme.read_text(encoding="utf-8").split("| command | does |")[1].split("\n\n")[0]
    return [row.split(" | ")[0].lstrip("| ").replace("`", "") for row in table.splitlines()[2:]]


def help_of(program, *arguments):
    return subprocess.run([program, *arguments, "--help"], check=True, capture_output=True, text=True).stdout


def options_in(text):
    """The options that the lines of a help begin with."""
    return {option for line in text.splitlines() if re.match(r" +-", line)
            for option in OPTION.findall(re.split(r" {2,}", line.strip())[0].replace(",", " "))}


def differences(what, here, there):
    if missing := there - here:
        yield f"{what}: lacks {', '.join(sorted(missing))}"
    if surplus := here - there:
        yield f"{what}: has {', '.join(sorted(surplus))}, which does not exist"


def command_faults(program, command, forms):
    """`forms`: how the man page writes the command, in one line or several."""
    text = help_of(program, command)
    written = " ".join(forms)
    yield from differences(f"command {command}", set(OPTION.findall(written)), options_in(text) - HELP)
    for option in re.findall(r"^ +(-\S+) .*REQUIRED", text, re.M):
        if f"[{option}" in written:
            yield f"command {command}: {option} is needed"
    files = re.search(r"^ +files (.*) \.\.\.", text, re.M)
    for operands in files[1].split(" | ") if files else []:
        if not any(operands in form for form in forms):
            yield f"command {command}: {operands} is missing"


def faults(readme, pages, programs):
    cli = programs / "plinket3-cli"
    page = pages / "plinket3-cli.1"
    written = items(page, "COMMANDS")
    if written != readme_commands(readme):
        yield "README.md and plinket3-cli(1) write the commands otherwise:"
        yield from (f"  {form}" for form in set(written) ^ set(readme_commands(readme)))

    text = help_of(cli)
    forms = {}
    for form in written:
        forms.setdefault(form.split()[0], []).append(form)
    commands = set(re.findall(r"^  (\w+) ", text.split("Subcommands:")[1], re.M))
    yield from differences("plinket3-cli(1), commands", set(forms), commands)
    for command in commands & set(forms):
        yield from command_faults(cli, command, forms[command])

    for program, options in ((cli, text.split("Subcommands:")[0]), (programs / "plinket3", help_of(programs / "plinket3"))):
        listed = " ".join(items(pages / f"{program.name}.1", "OPTIONS"))
        yield from differences(f"{program.name}(1), options", set(OPTION.findall(listed)), options_in(options))


def main():
    found = list(faults(*map(pathlib.Path, sys.argv[1:])))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
