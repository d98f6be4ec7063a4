#!/usr/bin/env python3
"""Kills and I/O errors while sites are made, removed, recycled: no file is lost, the list is usable, no name is barred.

    sitekills.py --cli FILE --injector FILE [--size sample|whole]
"""
import argparse
import json
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

PATIENCE = 60
SITES = ("One", "Two", "Three")  # the last one is the current one
KINDS = ("kill", "eio-once", "enospc-from")
POINTS = {"sample": 6, "whole": 10 ** 6}  # for each command and kind
COMMANDS = {
    "create": ("site", "create", "Four"),
    "remove": ("site", "remove", "One", "--recycle", "--yes"),
    "recycle": ("site", "recycle", "--yes"),
}


class Point:
    """One disturbed command on a data home of its own."""

    def __init__(self, gate, home, name):
        self.gate, self.home, self.name = gate, home, name

    def need(self, condition, text):
        if not condition:
            sys.exit(f"site kills failed: {self.name}: {text}")

    def cli(self, *words, env=None):
        return subprocess.run([self.gate.options.cli, "--home", str(self.home), *words], capture_output=True, text=True,
                              timeout=PATIENCE, env={**os.environ, **(env or {})}, stdin=subprocess.DEVNULL)

    def names(self):
        done = self.cli("site", "list", "--json")
        self.need(done.returncode == 0, "no list: " + done.stderr)
        return [site["name"] for site in json.loads(done.stdout)]

    def usable(self, name):
        """True for a site that opens, False for one whose folder has gone: a plain message then."""
        done = self.cli("site", "select", name)
        if done.returncode != 0:
            self.need("Database NOT changed." in done.stderr, f"{name}: {done.stderr}")
            return False
        shown = self.cli("site", "show")
        self.need(shown.returncode == 0, f"{name} does not open: {shown.stderr}")
        return True

    def check_files(self):
        for name in SITES:
            there = list(self.home.glob(f"*/{name}*/own.txt"))
            self.need(len(there) == 1 and there[0].read_text() == name, f"the folder of {name} is lost: {there}")
            for part in ("data/site1.mdb", "param/dbdef.ini"):
                self.need((there[0].parent / part).exists(), f"{part} of {name} is lost")

    def after_create(self):
        names = self.names()
        self.need(set(SITES) <= set(names), f"the list lost a name: {names}")
        for name in names:
            self.need(self.usable(name), f"{name} is listed and has no folder")
        if "Four" not in names:
            done = self.cli("site", "create", "Four")
            self.need(done.returncode == 0, "the name is barred: " + done.stderr)
            self.need(self.usable("Four"), "the new site does not open")

    def after_remove(self):
        names = self.names()
        self.need({"Two", "Three"} <= set(names), f"the list lost a name: {names}")
        for name in names:
            self.need(self.usable(name), f"{name} is listed and has no folder")
        self.cli("site", "select", "Three")
        if "One" in names:
            done = self.cli("site", "remove", "One", "--recycle", "--yes")
            self.need(done.returncode == 0, "it cannot be removed again: " + done.stderr)

    def after_recycle(self):
        listed = self.names()
        gone = [name for name in listed if not self.usable(name)]
        self.need(len(gone) <= 1 or "kill" not in self.name, f"listed without their folders: {gone}")
        for name in SITES:
            recycled = bool(list(self.home.glob(f"recycled/{name}*/own.txt")))
            self.need(recycled or name in listed, f"{name} is neither listed nor recycled")
        done = self.cli("site", "create", "Four")
        self.need(done.returncode == 0 and self.usable("Four"), "no site can be made: " + done.stderr)
        for name in gone:
            done = self.cli("site", "remove", name)
            self.need(done.returncode == 0, f"{name} does not come off the list: {done.stderr}")


class Gate:
    def __init__(self, options, folder):
        self.options, self.folder = options, folder
        self.start = Point(self, folder / "start", "the start")
        for name in SITES:
            done = self.start.cli("site", "create", name)
            self.start.need(done.returncode == 0, done.stderr)
            self.start.cli("site", "show")
            (self.start.home / "sites" / name / "own.txt").write_text(name)

    def disturbed(self, command, kind, at):
        """A copy of the start on which the command met its fault."""
        point = Point(self, self.folder / "copy", f"{command}, {kind} at {at}")
        shutil.rmtree(point.home, ignore_errors=True)
        shutil.copytree(self.start.home, point.home)
        count = self.folder / "count"
        count.unlink(missing_ok=True)
        done = point.cli(*COMMANDS[command], env={
            "LD_PRELOAD": self.options.injector, "CORVANE_FAULT_ROOT": str(point.home), "CORVANE_FAULT_AT": str(at),
            "CORVANE_FAULT_KIND": kind, "CORVANE_FAULT_COUNT": str(count)})
        return point, done, int(count.read_text()) if count.exists() else 0

    def run(self):
        points = 0
        for command in COMMANDS:
            calls = self.disturbed(command, "kill", 0)[2]
            self.start.need(calls > 0, f"no call of {command} was counted")
            for kind in KINDS:
                for at in range(1, calls + 1, max(1, calls // POINTS[self.options.size])):
                    point, done, _ = self.disturbed(command, kind, at)
                    point.need(kind == "kill" or done.returncode >= 0, f"ended by signal {-done.returncode}")
                    told = done.returncode == 0 or done.stderr + done.stdout
                    point.need(kind == "kill" or told, "it failed without a word")
                    point.check_files()
                    getattr(point, "after_" + command)()
                    point.check_files()
                    points += 1
        print(f"site kills: {points} points of {', '.join(COMMANDS)}: 0 files lost, 0 lists damaged, 0 names barred")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--injector", required=True)
    parser.add_argument("--size", choices=sorted(POINTS), default="sample")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        Gate(options, Path(folder)).run()


main()
