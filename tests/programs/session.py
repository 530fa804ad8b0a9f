#!/usr/bin/env python3
"""Runs a recorded session through the real program and compares its whole report.

session.py PROGRAM EXAMPLES NAME.cmd [--accept]

The session runs in a scratch copy of EXAMPLES. Standard output must equal NAME.rep beside the
command file, with the scratch folder written as FOLDER and date and time as DATE TIME. With
--accept the report is stored instead.
"""
import difflib
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def masked(text, folder):
    text = text.replace(str(folder), "FOLDER")
    return re.sub(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d", "DATE TIME", text)


def main():
    program, examples, session = (pathlib.Path(a).resolve() for a in sys.argv[1:4])
    stored = session.with_suffix(".rep")
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch).resolve() / "session"
        # Not what somebody who opened an example has left there.
        made = shutil.ignore_patterns("*.SYS", "*.TAB", "*.TMP", "*.REP", "*.GRF",
                                      "*.GAM")
        shutil.copytree(examples, folder, ignore=made)
        for path in [folder, *folder.rglob("*")]:
            path.chmod(path.stat().st_mode | 0o200)
        shutil.copy(session, folder / session.name)
        done = subprocess.run([program, session.name], cwd=folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=600)
        report = masked(done.stdout.decode("utf-8", "replace"), folder)
    if done.returncode != 0:
        print(f"exit status {done.returncode}")
        print(done.stderr.decode("utf-8", "replace")[-3000:])
        return 1
    if "--accept" in sys.argv:
        stored.write_text(report, encoding="utf-8")
        print(f"{stored} stored: read its difference line by line")
        return 0
    expected = stored.read_text(encoding="utf-8")
    if report == expected:
        return 0
    sys.stdout.writelines(difflib.unified_diff(
        expected.splitlines(True), report.splitlines(True), stored.name, "this run"))
    return 1


if __name__ == "__main__":
    sys.exit(main())
