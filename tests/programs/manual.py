"""The manual page tells every option of the program, and is free of faults of its format.

manual.py TARVEN PAGE"""

import re
import shutil
import subprocess
import sys

tarven, page = sys.argv[1:]
text = open(page, encoding="utf-8").read().replace("\\-", "-")
options = subprocess.run([tarven, "--help"], capture_output=True, text=True, check=True).stdout
listed = set(re.findall(r"(?<![\w-])--?[a-z][a-z-]*", options))
told = set(re.findall(r"(?<![\w-])--?[a-z][a-z-]*", text))
missing = sorted(listed - told)
if len(listed) < 8 or missing:
    sys.exit(f"options found: {sorted(listed)}; not told in {page}: {missing}")
if shutil.which("mandoc"):
    lint = subprocess.run(["mandoc", "-Tlint", "-Wwarning", page], capture_output=True, text=True)
    if lint.returncode != 0:
        sys.exit(lint.stdout)
