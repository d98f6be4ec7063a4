#!/usr/bin/env python3
"""Logs that move: written, cut in the middle of a line, rotated, packed, truncated and deleted between the adds of their
folder, and under the hands of an add. A model knows which lines must be stored; each is stored once.

    moving.py --cli FILE [--size sample|whole] [--seed N]
"""
import argparse
import bz2
import gzip
import lzma
import os
import random
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

PATIENCE = 60
STEPS = 20
PACKERS = {".gz": gzip.compress, ".bz2": bz2.compress, ".xz": lzma.compress}


def line_of(number):
    """A line that no other number has."""
    day, rest = divmod(number, 20_000)
    return b'192.0.2.%d - - [%02d/Mar/2024:%02d:%02d:%02d +0000] "GET /p%d.html HTTP/1.1" 200 %d "-" "Mozilla/5.0"\n' % (
        number % 250, day % 28 + 1, rest // 3600, rest // 60 % 60, rest % 60, number, number % 9999)


def number_of(page):
    return int(page.removeprefix("p").removesuffix(".html"))


class Gate:
    def __init__(self, options):
        self.options = options
        self.folder = Path(tempfile.mkdtemp(prefix="corvane-moving-", dir="/dev/shm" if os.path.isdir("/dev/shm") else None))
        self.adds = 0
        self.template = self.folder / "home"
        done = self.cli(self.template, "site", "create", "gate")
        assert done.returncode == 0, done.stderr

    def cli(self, home, *words):
        return subprocess.run([self.options.cli, "--home", str(home), *words], capture_output=True, text=True,
                              errors="replace", timeout=PATIENCE, stdin=subprocess.DEVNULL, check=False)

    def add(self, home, *paths):
        self.adds += 1
        return self.cli(home, "add", "--format", "apache-combined", "--filter", "all", "--robots", "--components",
                        "--overlap", "add", "--invalid", "skip", "--", *map(str, paths))


class Logs:
    """A folder of logs as a server and its rotation keep it."""

    def __init__(self, folder, dice):
        self.folder, self.dice = folder, dice
        self.live = folder / "access.log"
        self.next = 0
        self.half = b""  # the rest of a line that was begun
        self.gone = set()  # lines whose beginning and end stand in no one file
        folder.mkdir()
        self.live.write_bytes(b"")
        self.append()

    def append(self, count=0):
        lines, self.half = self.half, b""
        for _ in range(count or self.dice.randrange(1, 40)):
            lines += line_of(self.next)
            self.next += 1
        with open(self.live, "ab") as out:
            out.write(lines)

    def append_half(self):
        self.append()
        text = line_of(self.next)
        # Without its last quote no line fits, and no end of a line without its date.
        at = self.dice.randrange(text.index(b"[") + 1, len(text) - 3)
        with open(self.live, "ab") as out:
            out.write(text[:at])
        self.half = text[at:]
        self.next += 1

    def older(self):
        return sorted(self.folder.glob("access.log.*"), key=lambda path: int(path.name.split(".")[2]))

    def shift(self):
        for path in reversed(self.older()):
            parts = path.name.split(".")
            parts[2] = str(int(parts[2]) + 1)
            path.rename(self.folder / ".".join(parts))

    def rotate(self):
        """The old file is given away, a new one begun; a begun line is lost."""
        self.shift()
        self.live.rename(self.folder / "access.log.1")
        self.half = b""
        self.live.write_bytes(b"")
        self.append()

    def copy_and_truncate(self):
        """The rest of a begun line comes into the emptied file."""
        self.shift()
        shutil.copy(self.live, self.folder / "access.log.1")
        self.live.write_bytes(b"")
        self.append()

    def pack(self):
        plain = [path for path in self.older() if path.suffix not in PACKERS]
        if plain:
            path = self.dice.choice(plain)
            kind = self.dice.choice(list(PACKERS))
            Path(str(path) + kind).write_bytes(PACKERS[kind](path.read_bytes()))
            if self.dice.random() < 0.8:
                path.unlink()

    def delete_oldest(self):
        if self.older():
            self.older()[-1].unlink()

    def truncate(self):
        size = self.live.stat().st_size
        os.truncate(self.live, self.dice.randrange(size + 1))
        self.half = b""
        with open(self.live, "ab") as out:
            out.write(b"\n")

    def lines(self):
        """Numbers of the complete lines that lie in the folder."""
        found = set()
        for path in self.folder.iterdir():
            data = path.read_bytes()
            if path.suffix in PACKERS:
                data = {".gz": gzip, ".bz2": bz2, ".xz": lzma}[path.suffix].decompress(data)
            for text in data.splitlines(keepends=True):
                if b'GET /p' in text and text.endswith((b'"\n', b'"')):
                    number = number_of(text.split(b"/p")[1].split(b" ")[0].decode())
                    if line_of(number).startswith(text):
                        found.add(number)
        return found


def stored(home):
    database, = home.glob("sites/*/data/site1.mdb")
    with sqlite3.connect(f"file:{database}?mode=ro", uri=True) as store:
        verdict, = store.execute("PRAGMA integrity_check").fetchone()
        assert verdict == "ok", verdict
        return [number_of(page) for page, in store.execute("SELECT p.Filename FROM logline JOIN page p USING (PageID)")]


def check(home, done, wanted, exact=True):
    assert done.returncode in (0, 1), f"ended with {done.returncode}: {done.stderr}"
    numbers = stored(home)
    found = set(numbers)
    assert len(found) == len(numbers), f"{len(numbers) - len(found)} lines are stored twice"
    assert found <= wanted, f"lines that never were complete: {sorted(found - wanted)[:5]}"
    assert not exact or found == wanted, f"lines are missing: {sorted(wanted - found)[:5]} of {len(wanted)}: {done.stderr}"


def sequence(gate, seed):
    dice = random.Random(seed)
    home = gate.folder / f"home-{seed}"
    shutil.copytree(gate.template, home)
    logs = Logs(gate.folder / f"logs-{seed}", dice)
    wanted, trace = set(), []
    moves = [logs.append, logs.append, logs.append_half, logs.rotate, logs.copy_and_truncate, logs.pack, logs.truncate,
             logs.delete_oldest]
    try:
        for step in range(STEPS):
            move = dice.choice(moves)
            trace.append(move.__name__)
            move()
            if step % 5 == 4 or dice.random() < 0.1:
                trace.append("add")
                done = gate.add(home, logs.folder)
                wanted |= logs.lines()
                check(home, done, wanted)
    except AssertionError as failure:
        raise AssertionError(f"seed {seed}: {' '.join(trace)}: {failure}") from None
    finally:
        shutil.rmtree(home, ignore_errors=True)
        shutil.rmtree(logs.folder, ignore_errors=True)


def race(gate, seed):
    """The log moves while it is read. What the add got of it are whole lines; the next one gets what there is."""
    dice = random.Random(seed)
    home = gate.folder / f"race-{seed}"
    shutil.copytree(gate.template, home)
    logs = Logs(gate.folder / f"racing-{seed}", dice)
    try:
        logs.append(30_000)
        wanted = logs.lines()
        move = [logs.append_half, logs.rotate, logs.copy_and_truncate, logs.truncate, lambda: logs.live.unlink()][seed % 5]
        timer = threading.Timer(dice.random() * 0.4, move)
        timer.start()
        done = gate.add(home, logs.folder)
        timer.join()
        check(home, done, wanted | set(range(logs.next)), exact=False)
        done = gate.add(home, logs.folder)
        left = logs.lines() if logs.live.exists() else set()
        numbers = set(stored(home))
        assert left <= numbers, f"lines are missing: {sorted(left - numbers)[:5]}"
        check(home, done, set(range(logs.next)), exact=False)
    except AssertionError as failure:
        raise AssertionError(f"race, seed {seed}: {failure}") from None
    finally:
        shutil.rmtree(home, ignore_errors=True)
        shutil.rmtree(logs.folder, ignore_errors=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--size", choices=("sample", "whole"), default="sample")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    sequences, races = (500, 50) if options.size == "whole" else (8, 5)
    gate = Gate(options)
    start = time.monotonic()
    try:
        for number in range(sequences):
            sequence(gate, options.seed * 10_000 + number)
        for number in range(races):
            race(gate, options.seed * 10_000 + number)
    except AssertionError as failure:
        print(f"G11 FAILED: {failure}")
        return 1
    finally:
        shutil.rmtree(gate.folder, ignore_errors=True)
    print(f"G11: {sequences} sequences of {STEPS} moves and {races} races, {gate.adds} adds, each line once and none lost "
          f"({time.monotonic() - start:.1f} s)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
