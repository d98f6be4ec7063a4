#!/usr/bin/env python3
"""check_layers.py ROOT: fails when a file of src/ includes something from a folder it must not know."""
import pathlib
import re
import sys

ORDER = ["core", "dialogs", "names", "logdefs", "sitedb", "logread", "visits", "adddata", "analysis", "reports",
         "shell", "desktop", "cli"]
ALLOWED = {  # folder: what it may include besides itself
    "core": [],
    "dialogs": ["core"],
    "names": ["core"],
    "logdefs": ["core", "dialogs", "names"],
    "sitedb": ["core", "dialogs", "names", "logdefs"],
    "logread": ["core", "dialogs", "names", "logdefs", "sitedb"],
    "visits": ["core", "dialogs", "names", "logdefs", "sitedb"],
    "adddata": ["core", "dialogs", "names", "logdefs", "sitedb", "logread", "visits"],
    "analysis": ["core", "dialogs", "names", "logdefs", "sitedb", "visits"],
    "reports": ["core", "dialogs", "names", "sitedb", "visits", "analysis"],
    "shell": ORDER[:10],
    "desktop": ORDER[:11],
    "cli": ORDER[:11],
}
INCLUDE = re.compile(r'\s*#\s*include\s*["<]([^">]+)')


def faults_of(file, src):
    path = file.relative_to(src).as_posix()
    mine = path.split("/")[0]
    if mine not in ALLOWED:
        yield f"{path}: {mine} is no folder of the design"
        return
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        found = INCLUDE.match(line)
        if not found:
            continue
        target = found[1]
        theirs = target.split("/")[0]
        if "/" in target and theirs in ALLOWED and theirs != mine and theirs not in ALLOWED[mine]:
            yield f"{path}:{number}: {mine} must not include {theirs}"
        if re.match(r"Q[A-Z]", target) and mine != "desktop":
            yield f"{path}:{number}: Qt belongs to desktop only"
        if target == "sqlite3.h" and mine != "sitedb":
            yield f"{path}:{number}: sqlite3.h belongs to sitedb only"
        if not target.endswith(".h") or "/" not in target or theirs in ALLOWED:
            continue
        if line.strip().startswith('#include "'):
            yield f"{path}:{number}: {target} is no header of src"


def main():
    src = pathlib.Path(sys.argv[1]) / "src"
    files = sorted([*src.rglob("*.h"), *src.rglob("*.cpp")])
    faults = [fault for file in files for fault in faults_of(file, src)]
    print("\n".join(faults) or f"{len(files)} files: all includes point downwards")
    return 1 if faults or not files else 0


sys.exit(main())
