#!/usr/bin/env python3
"""Gate G14: a second program on the same site gets a message at once and writes nothing; a killed first one leaves no lock.

    second.py --cli FILE --desktop FILE [--size sample|whole]
"""
import argparse
import hashlib
import os
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

MESSAGE = "Another copy of this program is using"
LIMIT = 1.0  # seconds until the message stands there, in the middle of the tries
PATIENCE = 60
KILLS = {"sample": 5, "whole": 50}


def need(condition, text):
    if not condition:
        sys.exit("G14 failed: " + text)


def state(home):
    """Every file with its content and time."""
    files = sorted(path for path in home.rglob("*") if path.is_file())
    return [(str(path), path.stat().st_mtime_ns, hashlib.sha256(path.read_bytes()).hexdigest()) for path in files]


class Gate:
    def __init__(self, options, home):
        self.options, self.home = options, home
        self.env = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}

    def cli(self, *words):
        return subprocess.run([self.options.cli, "--home", str(self.home), *words], capture_output=True, text=True,
                              timeout=PATIENCE, env=self.env)

    def hold(self):
        """A first program: the window, once it has the site open."""
        first = subprocess.Popen([self.options.desktop, "--home", str(self.home)], env=self.env,
                                 stderr=subprocess.DEVNULL)
        end = time.monotonic() + PATIENCE
        while not self.has_open(first.pid):
            if first.poll() is not None or time.monotonic() > end:
                first.kill()
                need(False, "the window does not take the site")
            time.sleep(0.02)
        return first

    def has_open(self, pid):
        """Without asking for the lock: the question itself would hold it for a moment."""
        try:
            return any(os.readlink(link).endswith("site1.mdb") for link in Path(f"/proc/{pid}/fd").iterdir())
        except OSError:  # a file was closed meanwhile
            return False

    def run(self):
        kills = KILLS[self.options.size]
        need(self.cli("site", "create", "gate").returncode == 0, "no site could be made")
        self.cli("site", "show")
        writes, times = 0, []
        for turn in range(kills):
            first = self.hold()
            before = state(self.home)
            for words in (("site", "show"), ("add", "/dev/null"), ("compact",), ("option", "set", "CntTopVals", "7")):
                begin = time.monotonic()
                done = self.cli(*words)
                times.append(time.monotonic() - begin)
                need(done.returncode != 0 and MESSAGE in done.stderr, f"{words}: {done.stderr.strip() or 'no message'}")
            writes += state(self.home) != before
            how = signal.SIGTERM if turn % 5 == 4 else signal.SIGKILL
            first.send_signal(how)
            status = first.wait(PATIENCE)
            need(how == signal.SIGKILL or status == 0, f"SIGTERM ended the window with {status}")
            after = self.cli("site", "show")
            need(after.returncode == 0, "a lock was left: " + after.stderr.strip())
        middle = statistics.median(times)
        need(writes == 0, f"{writes} second programs wrote something")
        need(middle <= LIMIT, f"the message took {middle:.2f} s")
        print(f"G14 second instance: {kills} windows ended, {len(times)} command lines refused, 0 writes, "
              f"message after {middle * 1000:.0f} ms (at most {max(times) * 1000:.0f}), 0 stale locks")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--desktop", required=True)
    parser.add_argument("--size", choices=sorted(KILLS), default="sample")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        Gate(options, Path(folder) / "home").run()


main()
