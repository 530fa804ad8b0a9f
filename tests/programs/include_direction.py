#!/usr/bin/env python3
"""Fails on an arrow that runs up, and on a name of the workspace in a computation.

A file includes its own floor and those below it; on a floor with rooms its own room, the rooms
before it and the floors below. Files that stand beside the rooms register them and may include all
of them. On the floors of the statistics only command procedures and the workspace itself may name
a part of the workspace (The_...): what computes takes records.
"""
import pathlib
import re
import sys

# Lowest first. A floor without rooms has none here.
FLOORS = {
    "shell": [],
    "project": [],
    "tables": ["numbers", "table", "draws", "independence", "ordinal", "loglinear", "collapsing"],
    "graph": ["sets", "model", "hypotheses", "screening", "search", "paths", "views"],
    "rasch": ["items", "estimation", "persons", "fit", "screening", "exact"],
    "app": [],
}
APART = {("graph", "rasch"), ("rasch", "graph")}  # floors side by side
COMPUTING = ["tables", "graph", "rasch"]
# Command procedures, and the workspace itself, which holds the records under their names.
WORKSPACE_FILES = re.compile(r"(_commands?|_workspace|^register_\w+)\.(h|cpp)$")
# What reads the workspace or speaks to the user without naming a record of it.
WORKSPACE_HEADERS = re.compile(
    r"_workspace\.h$|^shell/(user|report|session|parsed_line|dispatcher|lifecycle|commands)\.h$")
WORKSPACE_NAMES = re.compile(r"\bThe_[a-z]|\bCases_of_project\b|\bData_source\(\)")


def fault_of_include(floor, room, target):
    floors = list(FLOORS)
    parts = target.split("/")
    other = parts[0]
    if other not in FLOORS:
        return "names no floor"
    if floors.index(other) > floors.index(floor) or (floor, other) in APART:
        return f"{floor} may not know {other}"
    rooms = FLOORS[floor]
    if other != floor or room is None or not rooms:
        return None
    if len(parts) < 3:
        return f"{floor}/{room} may not know what stands beside the rooms"
    if parts[1] not in rooms or rooms.index(parts[1]) > rooms.index(room):
        return f"{floor}/{room} may not know {floor}/{parts[1]}"
    return None


def main():
    source = pathlib.Path(sys.argv[1])
    faults = []
    files = 0
    for path in sorted([*source.rglob("*.h"), *source.rglob("*.cpp")]):
        files += 1
        place = path.relative_to(source).parts
        floor, room = place[0], place[1] if len(place) > 2 else None
        if floor not in FLOORS or (room is not None and room not in FLOORS[floor]):
            faults.append(f"{path}: no floor or room of this name is known here")
            continue
        computes = floor in COMPUTING and not WORKSPACE_FILES.search(path.name)
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            found = re.match(r'\s*#\s*include\s*"([^"]+)"', line)
            if re.match(r"\s*#\s*include\s*<.*(src/|tarven)", line) or \
                    re.match(r'\s*#\s*include\s*".*(\.\./|\.inc")', line):
                faults.append(f"{path}:{number}: an include that hides its floor: {line.strip()}")
            if found:
                fault = fault_of_include(floor, room, found.group(1))
                if fault:
                    faults.append(f"{path}:{number}: {found.group(1)}: {fault}")
                elif computes and WORKSPACE_HEADERS.search(found.group(1)):
                    faults.append(f"{path}:{number}: a computation includes {found.group(1)}")
            if computes and WORKSPACE_NAMES.search(re.sub(r"/\*.*?\*/|//.*", "", line)):
                faults.append(f"{path}:{number}: a computation reads the workspace: {line.strip()}")
    print(*faults, sep="\n")
    return 1 if faults or files == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
