#!/usr/bin/env python3
"""Types the worked example of a page of docs and compares what the page shows.

worked_example.py PROGRAM PAGE.md [WORD OTHER FILE]...

A block fenced as "``` NAME.EXT" is a file of the example, "``` commands" are lines to type, and each
"``` report" block must stand as it is in what the program prints, in the order of the page. WORD becomes
OTHER in FILE before the second block of commands is typed, as the page tells the reader to do.
"""
import pathlib
import re
import subprocess
import sys
import tempfile


def main():
    program, page = (pathlib.Path(a).resolve() for a in sys.argv[1:3])
    corrections = [sys.argv[k:k + 3] for k in range(3, len(sys.argv), 3)]
    blocks = re.findall(r"^``` (\S+)\n(.*?)^```$", page.read_text(encoding="utf-8"), re.M | re.S)
    sessions = [text for kind, text in blocks if kind == "commands"]
    shown = [text for kind, text in blocks if kind == "report"]
    if len(sessions) != 2 or not shown:
        print("the page has no example")
        return 1
    printed = ""
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        for kind, text in blocks:
            if "." in kind:
                (folder / kind).write_text(text, encoding="utf-8")
        opening = sessions[0].splitlines()[0] + "\n"
        for number, typed in enumerate(sessions):
            if number == 1:
                for word, other, file in corrections:
                    path = folder / file
                    path.write_text(path.read_text().replace(word, other))
                typed = opening + typed
            done = subprocess.run([program], cwd=folder, input=typed.encode(), timeout=60,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            printed += done.stdout.decode("utf-8")
            if done.returncode != 0:
                print(f"exit status {done.returncode}")
                return 1
    at = 0
    for text in shown:
        found = printed.find(text, at)
        if found < 0:
            print(f"The page shows\n{text}but the program prints\n{printed}")
            return 1
        at = found + len(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
