#!/usr/bin/env python3
"""Fails when docs/commands.md is not what the program prints of its commands."""
import difflib
import pathlib
import subprocess
import sys

program, stored = sys.argv[1:3]
now = subprocess.run([program, "--commands-reference"], check=True, stdout=subprocess.PIPE,
                     stdin=subprocess.DEVNULL).stdout.decode("utf-8")
old = pathlib.Path(stored).read_text(encoding="utf-8")
if now != old or not now:
    sys.stdout.writelines(difflib.unified_diff(old.splitlines(True), now.splitlines(True),
                                               stored, "the program"))
    print(f"write it anew: tarven --commands-reference > {stored}")
    sys.exit(1)
