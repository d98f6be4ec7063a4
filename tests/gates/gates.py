#!/usr/bin/env python3
"""The fault gates: what the program survives, shown by doing it. One line of figures each.

    gates.py g1|g4|g6|g12|g13 --driver FILE --injector FILE --loggen FILE --shared FOLDER [--program FILE]
             [--size sample|whole] [--seed N] [--jobs N]
"""
import argparse
import hashlib
import selectors
import subprocess
import sys
import time

from checks import check_conservation, check_prefix, check_same_content, read_dump, waiting
from damage import MENDED, damage
from harness import Bench, GateFailure, need, spread

HANG = 10  # seconds


class Sweep:
    """One add that is disturbed at a point: its start, its log and the result of a run that is not disturbed."""

    def __init__(self, bench, keep_extra):
        lines = 2000
        log = bench.log_lines(2 * lines + 600, bench.seed)
        need(len(log) >= 2 * lines, f"only {len(log)} distinct lines")
        self.bench = bench
        self.name = "with extra data" if keep_extra else "without extra data"
        self.log = bench.log("second.log", log[lines:2 * lines])
        self.start = bench.new_site(keep_extra)
        self.start.work("add", bench.log("first.log", log[:lines]))
        done = self.start.copy()
        # Several batches, so that points lie before, between and behind commits.
        self.words = ("--batch", "500", "add", self.log)
        self.calls = bench.calls(done, self.words)
        self.result = read_dump(done)
        check_conservation(self.result)
        need(not waiting(self.result) and not done.marked(), "the run without faults is not complete")
        need(len(self.result.rows["logline"]) > lines, "the second log adds nothing")
        self.before = read_dump(self.start)

    def check_left(self, home):
        """What a disturbed run may leave behind. Gives the lines that wait for visits."""
        left = read_dump(home)
        need(len(left.rows["logline"]) >= len(self.before.rows["logline"]), "committed lines are lost")
        check_prefix(left, self.result)
        check_conservation(left)
        count = waiting(left)
        need(count == 0 or home.marked(), f"{count} lines wait and the mark is not set")
        return count

    def check_final(self, home, exact):
        """Equal to the uninterrupted result, or the same lines in visits of other numbers. True when equal."""
        final = read_dump(home, aside=False)
        need(not home.marked(), "the mark is still set")
        if final == self.result:
            return True
        need(not exact, f"not the uninterrupted result: {final.difference(self.result)}")
        check_prefix(final, self.result)
        check_prefix(self.result, final)
        check_conservation(final)
        need(waiting(final) == 0, "lines wait")
        return False


def kill_point(sweep, point, resume):
    home = sweep.start.copy()
    try:
        killed = home.run(*sweep.words, env=sweep.bench.faults(home, point, "kill"))
        need(killed.status == -9, f"was not killed: {killed.status}, {killed.err}")
        count = sweep.check_left(home)
        # Two building runs may group visits otherwise than one. That needs lines on both sides of the kill.
        added = len(sweep.result.rows["logline"]) - len(sweep.before.rows["logline"])
        exact = not resume or count in (0, added)
        if resume:
            home.work("resume")
            need(waiting(read_dump(home)) == 0, "lines wait after resume")
        home.work("add", sweep.log)
        return sweep.check_final(home, exact)
    except GateFailure as failure:
        raise GateFailure(f"{sweep.name}, kill before call {point} of {sweep.calls}, "
                          f"{'resume and ' if resume else ''}add again: {failure}") from None
    finally:
        home.drop()


def g1(bench):
    """SIGKILL before each write, sync, truncate, delete and rename of an add; then add again, or resume first."""
    points = exact = 0
    for keep_extra in (True, False):
        sweep = Sweep(bench, keep_extra)
        wanted = spread(sweep.calls, sweep.calls if bench.whole else 75)
        if bench.whole:
            cases = [(point, resume) for point in wanted for resume in (False, True)]
        else:
            cases = [(point, index % 2 == 1) for index, point in enumerate(wanted)]
        same = bench.each(lambda case, of=sweep: kill_point(of, *case), cases)
        points, exact = points + len(same), exact + sum(same)
    return (f"{points} kill points, 0 corrupt, 0 lines lost, 0 incomplete visits; {exact} equal byte for byte, "
            "the rest conserved")


FAULTS = ("eio-once", "eio-from", "enospc-from")


def add_words(bench, log):
    """The add as the driver or, when it is given, the command line program takes it."""
    if not bench.program:
        return ("--batch", "500", "add", log)
    return ("add", "--format", "apache-combined", "--filter", "all", "--robots", "--components", "--overlap", "add",
            "--invalid", "skip", log)


def fault_point(sweep, words, point, kind):
    home = sweep.start.copy()
    run = home.program if sweep.bench.program else home.run
    try:
        done = run(*words, env=sweep.bench.faults(home, point, kind))
        need(not done.killed(), f"ended with signal {-done.status}")
        if done.status != 0:
            told = [line for line in done.err.splitlines() if line.strip()]
            need(told, f"ended with {done.status} and no message")
            need(len(set(told)) == len(told), f"told the same twice: {told}")
            need(sum(line.startswith("Database: ") for line in told) < 2, f"more than one message: {told}")
        sweep.check_left(home)
        again = run(*words)
        need(again.status == 0, f"the retry ended with {again.status}: {again.err.strip()}")
        # An add whose read failed may have built visits of what was stored: then the retry builds a second time.
        return done.status == 0, sweep.check_final(home, exact=False)
    except GateFailure as failure:
        raise GateFailure(f"{kind} at call {point}: {failure}") from None
    finally:
        home.drop()


def g4(bench):
    """Each call fails once, from then on, or for want of room."""
    sweep = Sweep(bench, keep_extra=True)
    words = add_words(bench, sweep.log)
    trial = sweep.start.copy()
    calls = bench.calls(trial, words, trial.program if bench.program else None)
    points = spread(calls, calls if bench.whole else 50 if not bench.program else 17)
    results = bench.each(lambda case: fault_point(sweep, words, *case), [(p, kind) for kind in FAULTS for p in points])
    survived, exact = (sum(column) for column in zip(*results))
    return (f"{len(results)} faults, 0 signals, {survived} runs went well all the same, "
            f"{exact} equal byte for byte after a retry, the rest conserved")


class Examiner:
    """Leads many damaged sites through one process and notices where it crashes or hangs."""

    def __init__(self, bench, log):
        self.bench = bench
        self.log = log
        self.refused = 0  # steps that ended with a message

    def run(self, command, homes):
        """Failures as texts; a home that fails is left out and the rest goes on."""
        failures, rest = [], list(homes)
        while rest:
            done, problem = self._some(command, rest)
            if problem:
                failures.append(f"{rest[done][1]}, seed {rest[done][2]}: {problem}")
                done += 1
            rest = rest[done:]
        return failures

    def _some(self, command, homes):
        words = [str(self.bench.driver), "--shared", str(self.bench.shared), "--log", str(self.log), command]
        listed = self.bench.log(f"homes-{id(homes)}", [f"{home.folder}\n".encode() for home, _, _ in homes])
        steps = 2 if command == "examine-reading" else 1
        ended, current = 0, "start"
        with open(listed, "rb") as given, open(f"{listed}.err", "wb") as errors:
            process = subprocess.Popen(words, stdin=given, stdout=subprocess.PIPE, stderr=errors, text=True,
                                       errors="replace")
        with selectors.DefaultSelector() as selector, process:
            selector.register(process.stdout, selectors.EVENT_READ)
            while True:
                if not selector.select(HANG):
                    process.kill()
                    return ended // steps, f"{current} hangs for more than {HANG} s"
                line = process.stdout.readline()
                if not line:
                    break
                if line.startswith("BEGIN "):
                    current = line.split()[1]
                elif line.startswith("END "):
                    ended += 1
                    self.refused += line.strip() != "END 0"
            status = process.wait()
        if status != 0:
            return ended // steps, f"{current} ended with {status}"
        return len(homes), ""


def fingerprint(path):
    return hashlib.sha256(path.read_bytes()).hexdigest() if path.exists() else ""


def g6(bench):
    """Damaged databases: no crash, no hang, and reading leaves the file as it is."""
    lines = bench.log_lines(400, bench.seed)
    site = bench.new_site()
    site.work("add", bench.log("first.log", lines[:250]))
    examiner = Examiner(bench, bench.log("second.log", lines[200:300]))
    seeds = range(bench.seed * 1000, bench.seed * 1000 + (8000 if bench.whole else 400))
    block = 50

    def some(start):
        homes = []
        for seed in seeds[start:start + block]:
            home = site.copy()
            homes.append((home, damage(home.database, seed), seed))
        prints = [fingerprint(home.database) for home, _, _ in homes]
        failures = examiner.run("examine-reading", homes)
        for (home, kind, seed), before in zip(homes, prints):
            if kind not in MENDED and fingerprint(home.database) != before:
                failures.append(f"{kind}, seed {seed}: reading changed the file")
        failures += examiner.run("examine-adding", homes)
        for home, _, _ in homes:
            home.drop()
        return failures

    failures = sum(bench.each(some, range(0, len(seeds), block)), [])
    need(not failures, f"{len(failures)} of {len(seeds)}: " + "; ".join(failures[:5]))
    need(examiner.refused > len(seeds) // 2, f"only {examiner.refused} steps noticed the damage")
    return (f"{len(seeds)} damaged databases, 0 crashes, 0 hangs over {HANG} s, the file unchanged by reading, "
            f"{examiner.refused} of {3 * len(seeds)} steps refused with a message")


CHUNKS = (1, 7, 4096, 1 << 20, 10_000_000)
BATCHES = (1, 100, 16384)
ZONES = ("UTC", "America/St_Johns", "Pacific/Kiritimati", "Asia/Kathmandu", "Europe/Berlin", "QQQ-25:59:59")
LOCALES = ("C", "C.UTF-8", "de_DE.UTF-8", "tr_TR.UTF-8")  # one that is not installed acts as C
CLOCKS = (0, 1, 45000.5, 2958465.9)


def g12(bench):
    """The result depends on log and settings alone."""
    log = bench.log("same.log", bench.log_lines(3000, bench.seed, distinct=False))
    zones, locales = (len(ZONES), len(LOCALES)) if bench.whole else (3, 2)
    variants = [(chunk, BATCHES[i % 3], {}, 0) for i, chunk in enumerate(CHUNKS)]
    variants += [(1 << 20, batch, {}, 0) for batch in BATCHES]
    variants += [(4096, 100, {"TZ": zone}, 0) for zone in ZONES[:zones]]
    variants += [(4096, 16384, {"LC_ALL": name}, 0) for name in LOCALES[:locales]]
    variants += [(4096, 16384, {}, clock) for clock in CLOCKS]
    if bench.whole:
        variants += [(chunk, batch, {"TZ": zone}, 0) for chunk in CHUNKS for batch in BATCHES for zone in ZONES]

    def result(variant):
        chunk, batch, env, clock = variant
        home = bench.new_site()
        home.work("--chunk", chunk, "--batch", batch, "--clock", clock, "add", log, env=env)
        dump = read_dump(home, aside=False)
        home.drop()
        return dump

    first, *others = bench.each(result, variants)
    for variant, dump in zip(variants[1:], others):
        chunk, batch, env, clock = variant
        need(dump == first, f"chunk {chunk}, batch {batch}, {env}, clock {clock}: {dump.difference(first)}")
    check_conservation(first)
    return f"{len(variants)} ways to read {len(first.rows['logline'])} lines, all dumps equal byte for byte"


def repeat(bench, home, log, times, what):
    """Adding what is stored changes nothing."""
    before = read_dump(home)
    for i in range(times):
        home.work("add", log)
        again = read_dump(home)
        need(again == before, f"{what}, repeat {i + 1}: {again.difference(before)}")
    return before


def g13(bench):
    """The same log again, in halves, the halves swapped, stopped and added again."""
    # Stored twice from one log, equal lines stay as they are when the log comes again.
    twins = bench.log("twins.log", bench.log_lines(2000, bench.seed, distinct=False))
    home = bench.new_site()
    home.work("add", twins)
    repeat(bench, home, twins, 2, "a log with equal lines")
    checked = 3
    lines = bench.log_lines(3000, bench.seed)
    log = bench.log("whole.log", lines)
    halves = [bench.log("half1.log", lines[:len(lines) // 2]), bench.log("half2.log", lines[len(lines) // 2:])]
    for keep_extra in (True, False):
        home = bench.new_site(keep_extra)
        home.work("add", log)
        whole = repeat(bench, home, log, 2, "the same log")
        check_conservation(whole)
        for order in (halves, halves[::-1]):
            home = bench.new_site(keep_extra)
            for half in order:
                home.work("add", half)
            parted = repeat(bench, home, log, 1, "in halves")
            check_conservation(parted)
            check_same_content(parted, whole)
        checked += 5 + stops(bench, keep_extra, log, whole)
    return f"{checked} repeats, stored lines unchanged"


def stops(bench, keep_extra, log, whole):
    """A read that was stopped and then added again ends as one that ran through."""
    stopped = 0
    for step in range(1, 21):
        home = bench.new_site(keep_extra)
        home.work("show")  # the tables are made at the first opening, with steps of their own
        done = home.run("--stop-at", step, "add", log)
        if done.status == 0:
            break
        need(done.status == 3, f"stopped at step {step}, the status is {done.status}: {done.err}")
        left = read_dump(home)
        check_prefix(left, whole)
        need(not waiting(left) or home.marked(), f"stopped at step {step}: lines wait and the mark is not set")
        home.work("add", log)
        final = read_dump(home)
        need(final == whole, f"stopped at step {step} and added again: {final.difference(whole)}")
        stopped += 1
        home.drop()
    need(stopped >= 5, f"only {stopped} stops took effect")
    return stopped


GATES = {"g1": g1, "g4": g4, "g6": g6, "g12": g12, "g13": g13}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("gate", choices=GATES)
    for name in ("driver", "injector", "loggen", "shared"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--program", default="")
    parser.add_argument("--size", choices=("sample", "whole"), default="sample")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=0)
    arguments = parser.parse_args()
    bench = Bench(arguments)
    start = time.monotonic()
    try:
        figures = GATES[arguments.gate](bench)
    except GateFailure as failure:
        print(f"{arguments.gate.upper()} FAILED (seed {arguments.seed}): {failure}")
        return 1
    finally:
        bench.close()
    print(f"{arguments.gate.upper()}: {figures} ({time.monotonic() - start:.1f} s)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
