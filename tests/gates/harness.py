"""Runs the program on throw-away data homes, with a fault injector in front of it where a gate wants one."""
import os
import shutil
import subprocess
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

TIMEOUT = 60  # seconds of one run; gates that look for hangs have their own


class GateFailure(Exception):
    """What did not hold, with the seed and the point to see it again."""


def need(condition, text):
    if not condition:
        raise GateFailure(text)


class Run:
    def __init__(self, done):
        self.status = done.returncode
        self.out = done.stdout.decode("utf-8", "replace")
        self.err = done.stderr.decode("utf-8", "replace")

    def killed(self):
        return self.status < 0


class Home:
    """A data home in a folder of its own; the site in it is called "gate"."""

    def __init__(self, bench, folder):
        self.bench = bench
        self.folder = Path(folder)

    @property
    def site(self):
        return self.folder / "sites" / "gate"

    @property
    def database(self):
        return self.site / "data" / "site1.mdb"

    def run(self, *words, env=None, timeout=TIMEOUT):
        places = ["--home", str(self.folder), "--shared", str(self.bench.shared)]
        return self.bench.spawn([str(self.bench.driver), *places, *map(str, words)], env, timeout)

    def work(self, *words, env=None):
        """A run that must end well."""
        done = self.run(*words, env=env)
        need(done.status == 0, f"{' '.join(map(str, words))} ended with {done.status}: {done.err.strip()}")
        return done

    def program(self, *words, env=None):
        command = [str(self.bench.program), "--home", str(self.folder), *map(str, words)]
        return self.bench.spawn(command, env, TIMEOUT)

    def copy(self):
        twin = self.bench.home()
        shutil.copytree(self.folder, twin.folder, dirs_exist_ok=True, symlinks=True)
        return twin

    def drop(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def last_value(self, key):
        """A key of section Main of the site's last values."""
        text = (self.site / "param" / "LastVals.ini").read_text("utf-8")
        for line in text.splitlines():
            name, _, value = line.partition("=")
            if name.strip().lower() == key.lower():
                return value.strip()
        return ""

    def marked(self):
        return self.last_value("AddedLogLns_MustDoVisitsAdd") != ""


class Bench:
    """Programs, sizes and the folder of one gate."""

    def __init__(self, arguments):
        self.driver = Path(arguments.driver).resolve()
        self.program = Path(arguments.program).resolve() if arguments.program else None
        self.injector = Path(arguments.injector).resolve()
        self.loggen = Path(arguments.loggen).resolve()
        self.shared = Path(arguments.shared).resolve()
        self.whole = arguments.size == "whole"
        self.seed = arguments.seed
        self.workers = arguments.jobs or min(os.cpu_count() or 1, 4)
        # Nothing here needs a real disk: what a kill leaves is in the system's memory anyway.
        memory = Path("/dev/shm")
        room = shutil.disk_usage(memory).free if memory.is_dir() and os.access(memory, os.W_OK) else 0
        self.folder = Path(tempfile.mkdtemp(prefix="corvane-gate-", dir=memory if room > 1 << 28 else None))

    def close(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def home(self):
        return Home(self, tempfile.mkdtemp(prefix="home-", dir=self.folder))

    def new_site(self, keep_extra=True):
        home = self.home()
        home.work("--keep-extra", "yes" if keep_extra else "no", "create", "gate")
        return home

    def spawn(self, command, env=None, timeout=TIMEOUT):
        environment = dict(os.environ, **(env or {}))
        try:
            return Run(subprocess.run(command, capture_output=True, env=environment, timeout=timeout, check=False,
                                      stdin=subprocess.DEVNULL))
        except subprocess.TimeoutExpired:
            raise GateFailure(f"hangs for more than {timeout} s: {' '.join(command)}") from None

    def log_lines(self, lines, seed, distinct=True):
        """Lines of a made-up log. `distinct` leaves out those that a site may take for one another."""
        path = self.folder / f"made-{lines}-{seed}.log"
        if not path.exists():
            done = self.spawn([str(self.loggen), "--lines", str(lines), "--seed", str(seed), "--clean",
                               "-o", str(path)])
            need(done.status == 0, f"corvane-loggen: {done.err}")
        kept, seen = [], set()
        for line in path.read_bytes().splitlines(keepends=True):
            head, request, result = line.split(b'"')[:3]
            key = (head.split()[0], head.split(b"[")[-1], request.split(b"?")[0], result)
            if distinct and key in seen:
                continue
            seen.add(key)
            kept.append(line)
        return kept

    def log(self, name, lines):
        path = self.folder / name
        path.write_bytes(b"".join(lines))
        return path

    def faults(self, home, at=0, kind="", count=None):
        environment = {"LD_PRELOAD": str(self.injector), "CORVANE_FAULT_ROOT": str(home.folder) + "/",
                       "CORVANE_FAULT_AT": str(at), "CORVANE_FAULT_KIND": kind}
        if count:
            environment["CORVANE_FAULT_COUNT"] = str(count)
        return environment

    def calls(self, home, words, run=None):
        """How many calls can fail in a run that goes well."""
        count = self.folder / "calls"
        done = (run or home.run)(*words, env=self.faults(home, count=count))
        need(done.status == 0, f"the run without faults ended with {done.status}: {done.err}")
        calls = int(count.read_text())
        need(calls > 50, f"only {calls} calls were counted: the injector does not see the program's writes")
        return calls

    def each(self, work, cases):
        """All cases, a few at a time. The first failure ends the gate."""
        with ThreadPoolExecutor(self.workers) as pool:
            return list(pool.map(work, cases))


def spread(calls, wanted):
    """Points from 1 to `calls`, evenly, with the first and the last."""
    if wanted >= calls:
        return list(range(1, calls + 1))
    return sorted({1 + round(i * (calls - 1) / (wanted - 1)) for i in range(wanted)})
