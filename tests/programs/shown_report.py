#!/usr/bin/env python3
"""Runs a session of examples and looks for what a page of docs shows of its report.

shown_report.py PROGRAM EXAMPLES PAGE.md SESSION.cmd

Each block of the page that holds a line of results ("HYPOTHESIS", "Hypothesis") must stand as it is in
what the session prints, in the order of the page; blanks at the end of a line do not count.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def bare(text):
    return "\n".join(line.rstrip() for line in text.splitlines())


def main():
    program, examples, page = (pathlib.Path(a).resolve() for a in sys.argv[1:4])
    blocks = re.findall(r"^```\n(.*?)^```$", page.read_text(encoding="utf-8"), re.M | re.S)
    shown = [bare(text) for text in blocks if "ypothesis " in text]
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch) / "examples"
        made = shutil.ignore_patterns("*.SYS", "*.TAB", "*.TMP", "*.REP", "*.GRF",
                                      "*.GAM")
        shutil.copytree(examples, folder, ignore=made)
        for path in [folder, *folder.rglob("*")]:
            path.chmod(path.stat().st_mode | 0o200)
        done = subprocess.run([program, sys.argv[4]], cwd=folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60)
    printed = bare(done.stdout.decode("utf-8"))
    at = 0
    for text in shown:
        found = printed.find(text, at)
        if found < 0:
            print(f"The page shows\n{text}\nbut the program prints\n{printed}")
            return 1
        at = found + len(text)
    return 0 if shown and done.returncode == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
