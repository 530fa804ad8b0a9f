#!/usr/bin/env python3
"""Fails on an include that runs up: a file includes its own floor and those below it."""
import pathlib
import re
import sys

FLOORS = ["shell", "project", "tables", "graph", "rasch", "app"]


def main():
    source = pathlib.Path(sys.argv[1])
    faults = []
    files = 0
    for path in sorted([*source.rglob("*.h"), *source.rglob("*.cpp")]):
        files += 1
        floor = path.relative_to(source).parts[0]
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            found = re.match(r'\s*#\s*include\s*"([^"]+)"', line)
            if not found:
                continue
            other = found.group(1).split("/")[0]
            if other not in FLOORS or floor not in FLOORS:
                faults.append(f"{path}:{number}: {found.group(1)} names no floor")
            elif FLOORS.index(other) > FLOORS.index(floor):
                faults.append(f"{path}:{number}: {floor} may not know {other}")
    print(*faults, sep="\n")
    return 1 if faults or files == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
