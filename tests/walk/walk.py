#!/usr/bin/env python3
"""walk.py PROGRAM LOGGEN OUTDIR: walks through the real desktop program on a screen of its own.

Starts it with an empty data home, answers the first question, makes a second site, selects it, removes the first, opens
the option dialogs, leaves; starts it again with a log file and adds that; looks at records, definitions and checks; adds
a list of files and new robots; goes through reports, also with dark colours; stops reads. A picture of each step lands in OUTDIR. Fails
when a window does not come, when the program says something that nobody expected, or when the files do not stand as they
should afterwards.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds; the machine may be busy
TOOLS = ("Xvfb", "openbox", "xdotool", "xprop", "import")


class Screen:
    """A virtual screen with a window manager."""

    def __init__(self, folder):
        self.folder = folder
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x860x24", "-nolisten", "tcp"],
            pass_fds=(write,), stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise SystemExit("walk: Xvfb does not start")
        self.env = {**os.environ, "DISPLAY": ":" + number, "QT_QPA_PLATFORM": "xcb", "LC_ALL": "C.UTF-8",
                    "NO_AT_BRIDGE": "1"}
        self.manager = subprocess.Popen(["openbox"], env=self.env, stderr=subprocess.DEVNULL)
        self.shots = 0
        end = time.monotonic() + PATIENCE
        while "window id" not in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"):
            check(time.monotonic() < end, "the window manager does not start")
            time.sleep(0.05)

    def run(self, *command):
        return subprocess.run(command, env=self.env, capture_output=True, text=True).stdout

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def tool(self, *arguments):
        return self.run("xdotool", *arguments)

    def titles(self):
        ids = self.tool("search", "--onlyvisible", "--name", ".").split()
        return sorted({self.tool("getwindowname", i).strip() for i in ids})

    def wait(self, title, program):
        """Until a window of this title is there and has the keyboard."""
        pattern = re.compile(title)
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if program.poll() is not None:
                raise SystemExit(f"walk: the program ended with {program.returncode}, waiting for {title!r}")
            name = self.tool("getactivewindow", "getwindowname").strip()
            if pattern.search(name):
                time.sleep(0.3)  # drawn and ready for keys
                return name
            time.sleep(0.05)
        self.shot("lost")
        raise SystemExit(f"walk: no window {title!r}; there are {self.titles()}")

    def key(self, *keys):
        for key in keys:
            self.tool("key", "--clearmodifiers", key)
            time.sleep(0.1)

    def type(self, text):
        self.tool("type", "--delay", "15", text)
        time.sleep(0.1)

    def shot(self, name):
        self.shots += 1
        file = self.folder / f"{self.shots:02d}-{name}.png"
        subprocess.run(["import", "-window", "root", str(file)], env=self.env, check=True)


def check(condition, text):
    if not condition:
        raise SystemExit("walk: " + text)


def state(home):
    """Every file with its content."""
    return {path: path.read_bytes() for path in home.rglob("*") if path.is_file()}


def start(screen, program, home, *arguments):
    return subprocess.Popen([program, "--home", str(home), *arguments], env=screen.env)


def leave(screen, program):
    end = time.monotonic() + PATIENCE
    while program.poll() is None and time.monotonic() < end:  # while a job runs the key does nothing
        screen.key("ctrl+q")
        time.sleep(0.5)
    check(program.poll() == 0, f"the program ended with {program.returncode}")


def main_window(site):
    return f"^{site} - Current Site DB: Corvane"


def first_walk(screen, program, home):
    corvane = start(screen, program, home)
    screen.wait("^Enter Site Name", corvane)
    screen.shot("first-run")
    screen.key("Return")  # a name is required
    time.sleep(0.5)
    screen.shot("name-required")
    screen.type("My shop")
    screen.key("Return")
    screen.wait("^Corvane", corvane)
    screen.shot("add-data-now")
    screen.key("Escape")
    screen.wait(main_window("My shop"), corvane)
    screen.shot("main-window")

    screen.key("ctrl+n")
    screen.wait("Enter Database Name", corvane)
    screen.type("Second & <b>shop")
    screen.shot("new-site")
    screen.key("Return")
    screen.wait("^Corvane$", corvane)
    screen.key("Escape")
    second = main_window("Second & <b>shop")
    screen.wait(second, corvane)

    screen.key("ctrl+o")
    screen.wait("Select site database", corvane)
    screen.shot("select-site")
    screen.key("Return")  # the second one is chosen already
    screen.wait(second, corvane)
    screen.key("ctrl+o")
    screen.wait("Select site database", corvane)
    screen.key("Home", "alt+e")
    screen.wait("^Corvane$", corvane)
    screen.shot("remove-first")
    screen.key("alt+y")
    screen.wait("Select site database", corvane)
    screen.shot("first-removed")
    screen.key("Escape")
    screen.wait(second, corvane)

    for keys, title, name in (("ctrl+comma", "Enter Options", "program-options"),
                              ("ctrl+d", "Enter date range", "analysis-options"),
                              ("ctrl+r", "Enter Report Options", "report-options")):
        screen.key(keys)
        screen.wait(title, corvane)
        screen.shot(name)
        screen.key("Escape")
        screen.wait(second, corvane)
    screen.key("F1")
    screen.wait("Help", corvane)
    screen.shot("help")
    screen.key("Escape")
    screen.wait(second, corvane)
    screen.key("alt+r")
    time.sleep(0.5)
    screen.shot("reports-menu")
    screen.key("Escape", "Escape")
    leave(screen, corvane)

    sites = (home / "param/sitedbs.ini").read_text()
    check("DBNameLst=Second & <b>shop" in sites, "the list of sites is wrong: " + sites)
    recycled = [folder.name for folder in (home / "recycled").iterdir()]
    check(recycled == ["My_shop"], f"recycled: {recycled}")
    check(not (home / "sites/My_shop").exists(), "the first site's folder still stands")


def second_walk(screen, program, home, log):
    corvane = start(screen, program, home, str(log))
    screen.wait("^Add Log Data to Database", corvane)
    screen.shot("add-dialog")
    screen.key("alt+r")
    screen.wait("^Add Log Data to Site DB", corvane)
    screen.shot("added")
    screen.key("Return")
    screen.wait("^Add Log Data to Database", corvane)
    screen.shot("data-added")
    screen.key("Escape")
    screen.wait("Current Site DB: Corvane", corvane)
    screen.shot("site-with-data")
    before = state(home)
    second = start(screen, program, home)
    screen.wait("^Corvane$", second)
    screen.shot("second-program")
    screen.key("alt+x")
    check(second.wait(PATIENCE) == 0, f"the second program ended with {second.returncode}")
    check(state(home) == before, "the second program wrote something")
    screen.wait("Current Site DB", corvane)
    leave(screen, corvane)


def definitions_walk(screen, program, home):
    """What was added, and the editors of definitions on the log that was added; nothing is changed."""
    corvane = start(screen, program, home)
    main = "Current Site DB: Corvane"
    screen.wait(main, corvane)
    before = state(home)
    # The letter of the File menu, the title, and keys with the title that each brings and the picture's name.
    for letter, title, steps in (
            ("l", "^Logged Additions", (("alt+y", "Summary", "engine-summary"), ("Escape", "^Logged Additions", "add-log"))),
            ("m", "^Format of Log file", (("alt+t", "^Format of Log file", "format-preview"),
                                          ("Escape", "^Format of Log file", "formats"))),
            ("g", "^Definitions of SE", (("alt+t", "^Definitions of SE", "engine-preview"),
                                         ("Escape", "^Definitions of SE", "engines"), ("alt+k", "^Check SE", "check"),
                                         ("alt+r", "VS. Log File", "check-result"), ("Escape", "^Definitions of SE", "")))):
        screen.key("alt+f")
        time.sleep(0.3)
        screen.key(letter)
        screen.wait(title, corvane)
        for key, shown, name in steps:
            screen.key(key)
            time.sleep(0.3)
            screen.wait(shown, corvane)
            if name:
                screen.shot(name)
        screen.key("Escape")
        screen.wait(main, corvane)
    screen.key("ctrl+l")
    screen.wait("^Add Log Data to Database", corvane)
    screen.key("alt+i")
    screen.wait("^Change filters", corvane)
    screen.shot("robot-filters")
    screen.key("alt+t")
    screen.wait("Enter Rule", corvane)
    screen.shot("rule-preview")
    for title in ("^Change filters", "^Add Log Data to Database", main):
        screen.key("Escape")
        screen.wait(title, corvane)
    leave(screen, corvane)
    after = state(home)
    definitions = [path for path in before if path.suffix == ".ini" and path.name not in ("screens.ini", "LastVals.ini")]
    check(all(after.get(path) == before[path] for path in definitions), "looking at definitions changed them")


def adding_walk(screen, program, loggen, home, folder):
    """A list of files, an overlap, new robots, and a stopped read answered with No and with Yes."""
    rotated = folder / "rotated"
    rotated.mkdir()
    for name, first in (("access.log.1", "2026-11-01"), ("access.log", "2026-11-08")):
        subprocess.run([loggen, "--lines", "2000", "--days", "3", "--start", first, "--clean", "-o", rotated / name], check=True)
    dialog, totals = "^Add Log Data to Database", "^Add Log Data to Site DB"
    corvane = start(screen, program, home, str(rotated / "access.log*"))
    screen.wait(dialog, corvane)
    for overlaps in (False, True):
        screen.key("alt+r")
        screen.wait("^Confirm List of files", corvane)
        if not overlaps:
            screen.shot("wildcard")
        screen.key("alt+y")
        for file in range(2 if overlaps else 0):
            screen.wait("^Confirm add overlApping data", corvane)
            if file == 0:
                screen.shot("overlap")
            screen.key("alt+y")
            time.sleep(0.5)
        screen.wait(totals, corvane)
        screen.key("Return")
        screen.wait(dialog, corvane)
    screen.key("Escape")
    screen.wait("Current Site DB: Corvane", corvane)
    leave(screen, corvane)

    robots = folder / "robots.log"
    robots.write_text("".join(
        f'192.0.2.{i} - - [20/Nov/2026:10:00:0{i} +0000] "GET /robots.txt HTTP/1.1" 200 5 "-" "{agent}"\n'
        for i, agent in enumerate(("Fetchling/1.0", "OtherGatherer/2"))))
    corvane = start(screen, program, home, str(robots))
    screen.wait(dialog, corvane)
    screen.key("alt+k", "alt+r")
    screen.wait("Check for new robots", corvane)
    screen.key("ctrl+a", "alt+a")
    screen.shot("new-robots")
    screen.key("alt+o")
    time.sleep(0.5)
    screen.shot("robots-made")
    screen.key("Return")
    screen.wait("^Change filters", corvane)
    screen.key("Escape")
    screen.wait("^Confirm Filters", corvane)
    screen.shot("confirm-filters")
    screen.key("Return")
    screen.wait(totals, corvane)
    screen.key("Return")
    screen.wait(dialog, corvane)
    screen.key("alt+k", "Escape")
    screen.wait("Current Site DB: Corvane", corvane)
    leave(screen, corvane)
    filters = (home / "param/fltrbots.ini").read_text()
    check("Val=fetchling/1.0" in filters and "Val=othergatherer/2" in filters, "the robots have no rules")


def hold(file, begins, patience=PATIENCE):
    """Until the file is there and begins so."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        if file.exists() and file.read_bytes().startswith(begins):
            return
        time.sleep(0.1)
    raise SystemExit(f"walk: {file.name} was not written")


def save(screen, corvane, title, path, name=""):
    """Enters a path into a dialog that saves, and takes its message away."""
    screen.wait(title, corvane)
    screen.key("ctrl+a")
    screen.type(str(path))
    if name:
        screen.shot(name)
    screen.key("Return")
    time.sleep(0.7)
    screen.key("Return")
    screen.wait("Current Site DB: Corvane", corvane)


def set_up_reports(home):
    """Options and groups of the site, as the option dialogs would store them."""
    site = next((home / "sites").iterdir()) / "param"
    (site / "STgroups.ini").write_text("[Groups]\r\nSTgrps=Garden|Pots\r\nGarden=garden shears|tomato seeds|never heard of\r\n"
                                       "Pots=terracotta pots 30 cm|copper watering can\r\n")
    values = site / "LastVals.ini"
    values.write_text(values.read_text().replace("[Main]", "[Main]\nDevShow=True\nConfirmRepOps=True", 1))


def menu(screen, *keys):
    """Goes through a menu: the letter of the menu bar, then of the entry."""
    for key in keys:
        screen.key(key)
        time.sleep(0.4)


def reports_walk(screen, program, home, folder):
    """Reports of one analysis: a line, a series removed, groups and their members, what is behind a number, files."""
    set_up_reports(home)
    main = "Current Site DB: Corvane"
    corvane = start(screen, program, home)
    screen.wait(main, corvane)
    menu(screen, "alt+r", "t")
    screen.wait("Analyse Search Term", corvane)
    screen.shot("analyse")
    screen.key("Return")
    screen.wait(main, corvane)
    time.sleep(2)
    screen.shot("top-report")
    screen.key("Down", "Down", "Down")
    time.sleep(0.5)
    screen.shot("line-selected")
    menu(screen, "alt+v", "e")
    screen.shot("series-removed")
    menu(screen, "alt+v", "p")
    screen.wait("Enter date range to plot", corvane)
    screen.key("alt+p", "Return")
    screen.wait(main, corvane)
    menu(screen, "alt+v", "e")
    screen.shot("percentages")

    menu(screen, "Menu", "b")
    screen.wait("Visits behind", corvane)
    screen.shot("visits-behind")
    screen.key("alt+l")
    time.sleep(1)
    screen.shot("log-lines")
    screen.key("Escape")
    screen.wait("Visits behind", corvane)
    screen.key("Escape")
    screen.wait(main, corvane)

    menu(screen, "Menu", "v")
    save(screen, corvane, "Save contents of grid", folder / "grid.csv", "save-grid")
    hold(folder / "grid.csv", b"Search Term,")
    menu(screen, "Menu", "p")
    save(screen, corvane, "Save report as web page", folder / "report.html")
    hold(folder / "report.html", b"<!DOCTYPE html>")
    screen.tool("mousemove", "500", "650", "click", "3")
    time.sleep(0.5)
    screen.shot("chart-menu")
    screen.key("p")
    save(screen, corvane, "Save picture of chart", folder / "chart.png")
    hold(folder / "chart.png", b"\x89PNG")
    screen.tool("mousemove", "505", "655")
    time.sleep(1)
    screen.shot("pointer")

    menu(screen, "alt+r", "g")
    time.sleep(1.5)
    screen.shot("grouped-report")
    screen.key("Down")
    menu(screen, "alt+r", "r")
    time.sleep(1)
    screen.shot("members")
    menu(screen, "alt+a", "n")
    screen.wait("Select Analysis", corvane)
    screen.shot("select-analysis")
    screen.key("Escape")
    screen.wait(main, corvane)
    leave(screen, corvane)


DARK = "".join(f"[Colors:{part}]\nBackgroundNormal=32,34,37\nForegroundNormal=235,235,235\nBackgroundAlternate=40,43,46\n"
               "ForegroundInactive=150,150,150\n"
               for part in ("Window", "View", "Button", "Tooltip")) + (
    "[Colors:Selection]\nBackgroundNormal=61,125,190\nForegroundNormal=255,255,255\n")


def dark_walk(screen, program, home, folder):
    """The same report with the colours of a dark desktop."""
    (folder / "config").mkdir()
    (folder / "config/kdeglobals").write_text(DARK)
    screen.env.update(XDG_CURRENT_DESKTOP="KDE", KDE_SESSION_VERSION="5", KDE_FULL_SESSION="true",
                      XDG_CONFIG_HOME=str(folder / "config"))
    corvane = start(screen, program, home)
    screen.wait("Current Site DB: Corvane", corvane)
    menu(screen, "alt+r", "t")
    screen.wait("Analyse Search Term", corvane)
    screen.key("Return")
    screen.wait("Current Site DB: Corvane", corvane)
    time.sleep(2)
    screen.key("Down", "Down")
    time.sleep(0.5)
    screen.shot("dark-report")
    leave(screen, corvane)
    for name in ("XDG_CURRENT_DESKTOP", "KDE_SESSION_VERSION", "KDE_FULL_SESSION", "XDG_CONFIG_HOME"):
        screen.env.pop(name, None)


def stop_walk(screen, program, home, log):
    """A read that is stopped: its visits are left for later, then, with the next one, built at once."""
    corvane = start(screen, program, home, str(log))
    for answer, name in (("alt+n", "stopped-and-left"), ("alt+y", "stopped-and-built")):
        screen.wait("^Add Log Data to Database", corvane)
        screen.key("alt+r")
        if answer == "alt+y":  # some of it is stored by now
            screen.wait("^Confirm add overlApping data", corvane)
            screen.key("alt+y")
        screen.wait("Step 1/3", corvane)
        screen.key("Escape")
        screen.wait("^Corvane$", corvane)  # is it to be stopped?
        screen.key("Return")
        time.sleep(0.7)
        screen.wait("^Corvane$", corvane)  # shall visits be built?
        screen.key(answer)
        screen.wait("^Add Log Data to Site DB", corvane)
        screen.shot(name)
        screen.key("Return")
    screen.wait("^Add Log Data to Database", corvane)
    screen.key("Escape")
    screen.wait("Current Site DB: Corvane", corvane)
    leave(screen, corvane)
    marks = (home / "sites").glob("*/param/LastVals.ini")
    check(all("MustDoVisitsAdd=2" not in mark.read_text() for mark in marks), "the stopped add is not complete")


def damaged_walk(screen, program, home):
    """A database that cannot be read comes to its dialog and stays as it is."""
    database = next((home / "sites").glob("*/data/site1.mdb"))
    sound = database.read_bytes()
    database.write_bytes(b"noise" * 10000)
    before = state(home)
    corvane = start(screen, program, home)
    screen.wait("^Corvane$", corvane)
    screen.shot("damaged-database")
    screen.key("alt+x")
    check(corvane.wait(PATIENCE) == 0, f"the program ended with {corvane.returncode}")
    check(state(home) == before, "something was written to a damaged site")
    database.write_bytes(sound)


def third_walk(screen, program, home, log):
    """Ended in the middle of an add; completed at the next start."""
    corvane = start(screen, program, home, str(log))
    screen.wait("^Add Log Data to Database", corvane)
    screen.key("alt+r")
    screen.wait("Step 1/3", corvane)
    screen.shot("progress")
    time.sleep(0.3)
    corvane.terminate()
    check(corvane.wait(PATIENCE) == 0, f"SIGTERM ended the program with {corvane.returncode}")
    corvane = start(screen, program, home)
    screen.wait("^Corvane", corvane)
    screen.shot("unfinished-add")
    screen.key("Return")
    screen.wait("Current Site DB", corvane)
    screen.shot("completed")
    leave(screen, corvane)
    marks = (home / "sites").glob("*/param/LastVals.ini")
    check(all("MustDoVisitsAdd=2" not in mark.read_text() for mark in marks), "the add is still marked as unfinished")


def main():
    program, loggen, out = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    lacking = [tool for tool in TOOLS if shutil.which(tool) is None]
    if lacking:
        raise SystemExit("walk: not installed: " + " ".join(lacking))
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    with tempfile.TemporaryDirectory() as folder:
        home, log = pathlib.Path(folder) / "home", pathlib.Path(folder) / "access.log"
        subprocess.run([loggen, "--lines", "150000", "--days", "20", "--clean", "-o", str(log)], check=True)
        screen = Screen(out)
        try:
            first_walk(screen, program, home)
            second_walk(screen, program, home, log)
            definitions_walk(screen, program, home)
            adding_walk(screen, program, loggen, home, pathlib.Path(folder))
            reports_walk(screen, program, home, pathlib.Path(folder))
            dark_walk(screen, program, home, pathlib.Path(folder))
            damaged_walk(screen, program, home)
            subprocess.run([loggen, "--lines", "1500000", "--start", "2027-03-01", "--clean", "-o", str(log)], check=True)
            third_walk(screen, program, home, log)
            subprocess.run([loggen, "--lines", "1500000", "--start", "2028-03-01", "--clean", "-o", str(log)], check=True)
            stop_walk(screen, program, home, log)
        finally:
            screen.close()
        errors = list(home.rglob("errors.log"))
        check(not errors, "the program recorded failures: " + "".join(file.read_text() for file in errors))
    print(f"walk: done, {screen.shots} pictures in {out}")


main()
