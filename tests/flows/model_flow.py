#!/usr/bin/env python3
"""model_flow.py CLI LOGGEN [--format NAME] [LOG...]: adds logs with the program and with the independent model beside it
(tests/model), and compares every row of the four tables and every cell of the reports. A second site, of a log of more
than a year, does the same for deviation columns, groups, targets, charts and word frequencies.

Without LOGs it makes its own, hostile lines among them. With LOGs it takes those instead; scenarios that know
of two files share them out.
Ends with "N passed, N failed".
"""

import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
MODEL = os.path.join(HERE, "..", "model")
COMPARE = [sys.executable, os.path.join(MODEL, "compare.py")]
WORDS = {1: "terms", 2: "start-pages", 3: "terms-start-pages", 4: "exit-pages", 5: "tracks", 6: "pages", 7: "dirs",
         8: "referrers", 11: "engines", 12: "words-phrases", 13: "phrases", 14: "phrases3", 15: "words", 16: "2-word",
         17: "3-word", 18: "4-word", 19: "5-word", 20: "6-word", 21: "7-word"}
OPTION_FLAGS = {"LastKeepVal": "keep-extra", "Skip404": "skip-404", "RemQuery": "remove-query", "RemFrag": "remove-fragment",
                "EraseNonSE": "erase-non-search"}
DISTRIBUTIONS = [{}, {"dist1": True, "dist2": True}, {"dist1": True, "dist2": True, "click_through": True}]

SCENARIOS = [
    {"name": "extra data, filters on", "options": {"LastKeepVal": True},
     "adds": [[0], [1]], "robots": False, "components": False, "seed": 1},
    {"name": "extra data, filters off, one list, then again", "options": {"LastKeepVal": True, "LmtVisitLines": 40},
     "adds": [[0, 1], [1, 0]], "robots": True, "components": True, "seed": 2},
    {"name": "no extra data, parts removed", "seed": 3,
     "options": {"LastKeepVal": False, "Skip404": True, "RemQuery": True, "RemFrag": True, "domain": "https://www.shop.example"},
     "adds": [[1], [0]], "robots": False, "components": False},
    {"name": "main filter that adds, no limit", "options": {"LastKeepVal": True, "LmtVisitLines": 0}, "adds": [[0], [1]],
     "robots": True, "components": True, "seed": 5, "filter": "only", "sep_query": True, "from": "2026-09-08",
     "rules": [("german", "referrer", "contains", "Google"), ("shop", "file", "starts-with", "/p")], "any": True},
    {"name": "main filter that leaves out, an area, files that overlap left out", "adds": [[0], [0, 1], [1]], "seed": 6,
     "options": {"LastKeepVal": False, "RemFrag": True}, "robots": False, "components": False, "filter": "except",
     "rules": [("numbers", "status", "is-number", ""), ("high", "status", "greater-than", "399")], "any": False,
     "overlap": "skip", "area": ["c/tools", "c/bulbs", "not there"], "sep_frag": True, "to": "2026-09-09"},
    {"name": "stops at the first line that does not fit", "options": {"LastKeepVal": True}, "adds": [[0], [1, 0]], "seed": 7,
     "robots": True, "components": False, "invalid": "stop"},
    {"name": "only visits with a term", "options": {"LastKeepVal": True, "EraseNonSE": True, "LmtVisitLines": 7},
     "adds": [[0], [0, 1]], "robots": True, "components": False, "seed": 4},
]

LONG_LOG = {"name": "long log"}
# Days of the reports of the long log: all, from within a month on, over a turn of the year, within one January, one day.
RANGES = [(None, None), ("2025-11-17", "2026-02-10"), ("2025-12-01", "2026-01-31"), ("2026-01-05", "2026-01-30"),
          ("2026-03-09", "2026-03-09")]
# Options under which the reports of the long log are drawn, each on top of those before it.
SETTINGS = [
    {"DevTxtNoneVD": "-", "DevTxtFrom0Pct": "new"},
    {"DevDays": "30", "DevFmtVD": "#,##0.000", "DevFmtPct": "0.0", "DevTxtNonePct": "0", "CntTgt": "2", "DaysToPlot": "3"},
    {"DevDays": "0", "DevFmtVD": "", "DevFmtPct": "", "DevTxtNoneVD": "", "DevTxtNonePct": "", "DevTxtFrom0Pct": "",
     "CntTgt": "0"},
]
TARGETS = [["Basket", "--page", "cart/add", "--page", "checkout"],
           ["Seeds", "--page", "c/seeds", "--page", "C/Bulbs", "--kind", "size", "--bytes", "4000"],
           ["Both", "--page", "c/", "--page", "p/", "--kind", "all"],
           ["Books", "--page", "c/books", "--op", "equals"],
           ["Style", "--page", "nothing.css", "--page", "P/", "--match-case"]]

HOSTILE = [
    b'x\' OR \'\'=\' - - [%s +0000] "GET /a|b{{||{{!!?q={}#f|g HTTP/1.1" 200 -5 "http://www.google.com/search?q=a%%7Cb%%00c" "=cmd|x"\n',
    b'10.0.0.1 - - [%s +0000] "GET /%%u1234%%2541%%E9%%zz HTTP/1.1" 1e99 99999999999 "https://www.google.de/?q=%%C3%%9Cber+caf%%E9" "\xff\xfe"\n',
    b' - - [%s +0000] "GET //a//b///c/ HTTP/1.1" 200 12.5 "-" "-"\n',
    b'10.0.0.1%(pad)s - - [%s +0000] "GET /x HTTP/1.1" 200 7 "http://www.bing.com/search?q=+++" "Mozilla"\n',
    b'2001:db8::1 - - [%s +0000] "GET http://www.shop.example/%(long)s HTTP/2.0" 200 1 "%(long)s" "%(long)s"\n',
    b'10.0.0.9 - - [99/Foo/99999:77:88:99 +0000] "GET /odd HTTP/1.1" 404 1 "http://www.google.com/search?q=(cheap,+hotels!)++paris" "M"\n',
    b'\xc4 broken \x00 line\n', b'   \t\r\n',
]


def hostile(rng, stamp):
    line = rng.choice(HOSTILE)
    line = line.replace(b"%(pad)s", b"1" * rng.randint(0, 60)).replace(b"%(long)s", "é/".encode() * rng.randint(80, 140))
    return line.replace(b"%s", stamp).replace(b"%%", b"%")


def make_logs(loggen, folder, seed):
    """Two logs whose days overlap, with lines out of order, doubled and hostile."""
    rng = random.Random(seed)
    paths = []
    for part in range(2):
        path = os.path.join(folder, "part%d.log" % part)
        subprocess.run([loggen, "--lines", "2500", "--days", "3", "--seed", str(seed * 10 + part % 2), "-o", path], check=True)
        with open(path, "rb") as stream:
            lines = stream.readlines()
        for _ in range(120):
            at = rng.randrange(len(lines))
            stamp = lines[at].split(b"[")[-1].split(b" +")[0] if b" +0000] " in lines[at] else b"07/Sep/2026:10:00:00"
            lines.insert(at + 1, hostile(rng, stamp))
        for _ in range(60):
            at = rng.randrange(len(lines) - 10)
            lines.insert(at, lines[at + rng.randrange(10)])
        if part == 1:
            with open(paths[0], "rb") as stream:
                lines[len(lines) // 2:len(lines) // 2] = stream.readlines()[::3]
        with open(path, "wb") as stream:
            stream.writelines(lines)
        paths.append(path)
    return [[path] for path in paths]


def run(command, allowed=(0,)):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if done.returncode not in allowed:
        raise RuntimeError("%s\nexit status %d\n%s" % (" ".join(command), done.returncode, done.stderr.decode(errors="replace")[-3000:]))
    return done.stdout


class Flow:
    def __init__(self, cli, folder, log_format):
        self.cli, self.folder, self.format = cli, folder, log_format
        self.home = os.path.join(folder, "home")
        self.passed = self.failed = 0

    def program(self, *words, allowed=(0,)):
        return run([self.cli, "--home", self.home, *words], allowed)

    def check(self, what, command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode == 0:
            self.passed += 1
            return
        self.failed += 1
        print("FAILED: %s\n%s" % (what, done.stdout.decode(errors="replace")[:6000]))

    def prepare(self, scenario):
        """The main filter, the site area and the options that stand beside them."""
        for name, field, operator, value in scenario.get("rules", []):
            self.program("filter", "set", "main", name, "--field", field, "--op", operator, "--value", value)
        if "rules" in scenario:
            names = [word for rule in scenario["rules"] for word in ("--rule", rule[0])]
            self.program("filter", "set", "main", "Both", *names, "--any" if scenario["any"] else "--all")
            self.program("filter", "select", "main", "Both")
        if "area" in scenario:
            folder = json.loads(self.program("site", "show", "--json"))["folder"]
            with open(os.path.join(folder, "param", "Siteareas.ini"), "w", encoding="utf-8") as stream:
                stream.write("[SiteAreas]\nPart=%s\n" % "|".join(scenario["area"]))
        for key, name in (("SepQuery", "sep_query"), ("SepFrag", "sep_frag")):
            self.program("option", "set", key, "True" if scenario.get(name) else "False")

    def add(self, scenario, logs):
        options = scenario["options"]
        flags = ["--%s%s" % ("" if options.get(key, False) else "no-", flag) for key, flag in OPTION_FLAGS.items()]
        self.program("site", "create", "Flow", *flags)
        for key in ("LmtVisitLines", "domain"):
            if key in options:
                self.program("option", "set", key, str(options[key]))
        self.prepare(scenario)
        allowed = (0, 1) if scenario.get("invalid") == "stop" else (0,)
        for files in scenario["adds"]:
            self.program("add", "--format", self.format, "--filter", scenario.get("filter", "all"),
                         "--%srobots" % ("" if scenario["robots"] else "no-"),
                         "--%scomponents" % ("" if scenario["components"] else "no-"),
                         "--overlap", scenario.get("overlap", "add"), "--invalid", scenario.get("invalid", "skip"),
                         *[log for i in files for log in logs[i]], allowed=allowed)

    def reports(self, scenario):
        listed = []
        fields = list(WORDS)
        for i, field in enumerate(fields):
            chosen = DISTRIBUTIONS[i % 3] if field != 6 else DISTRIBUTIONS[1]
            base = {"field": field, "from": scenario.get("from"), "to": scenario.get("to"), "not_search": i % 2 == 0,
                    "dist1": False, "dist2": False, "click_through": False, "sep_query": scenario.get("sep_query", False),
                    "sep_frag": scenario.get("sep_frag", False), "area": "Part" if "area" in scenario else None, **chosen}
            listed.append({**base, "name": "top%d" % field, "kind": "top", "top": 7, "threshold": 2})
            listed.append({**base, "name": "all%d" % field, "kind": "all", "top": 20, "threshold": 1})
            listed.append({**base, "name": "alltop%d" % field, "kind": "all", "top": 20, "threshold": 2})
        return listed

    def grid(self, report, path):
        words = ["report", WORDS[report["field"]], "--kind", report["kind"], "--threshold", str(report["threshold"]), "--as", "csv", "-o", path,
                 "--not-search" if report["not_search"] else "--no-not-search"]
        for key, flag in (("from", "--from"), ("to", "--to"), ("area", "--area")):
            if report[key]:
                words += [flag, report[key]]
        if report["kind"] == "top":
            words += ["--top", str(report["top"])]
        for key, flag in (("dist1", "dist1"), ("dist2", "dist2"), ("click_through", "click-through")):
            words.append("--%s%s" % ("" if report[key] else "no-", flag))
        self.program(*words)

    def model(self, job):
        """Runs the model on a job; the folder of what it made."""
        site = json.loads(self.program("site", "show", "--json"))
        job = {"params": os.path.join(self.home, "param"), "site_params": os.path.join(site["folder"], "param"), **job}
        job_file, made = os.path.join(self.folder, "job.json"), os.path.join(self.folder, "model")
        with open(job_file, "w", encoding="utf-8") as stream:
            json.dump(job, stream)
        run([sys.executable, os.path.join(MODEL, "model.py"), job_file, made])
        self.check("tables of " + job["title"], [*COMPARE, site["database"], made])
        return made

    def scenario(self, scenario, logs):
        reports = self.reports(scenario)
        self.add(scenario, logs)
        made = self.model({"title": scenario["name"], "options": scenario["options"], "reports": reports,
                           "adds": [{"files": [log for i in files for log in logs[i]], "format": self.format,
                                     "filter": scenario.get("filter", "all"), "robots": scenario["robots"],
                                     "components": scenario["components"], "overlap": scenario.get("overlap", "add"),
                                     "invalid": scenario.get("invalid", "skip")}
                                    for files in scenario["adds"]]})
        for report in reports:
            got = os.path.join(self.folder, report["name"] + ".csv")
            self.grid(report, got)
            expected = [os.path.join(made, report["name"] + ".csv")]
            if report["kind"] == "top":
                expected.append(os.path.join(made, "alltop%d.csv" % report["field"]))
            self.check("%s: report %s" % (scenario["name"], report["name"]), COMPARE + ["--csv", got] + expected)


class LongLog(Flow):
    """Reports of a log of more than a year. The program's outputs are written first, each beside what the model must
    make of the same options; then the model runs once and all are compared."""

    def __init__(self, cli, folder):
        super().__init__(cli, folder, "apache-combined")
        self.wanted, self.comparisons = [], []

    def run(self, loggen):
        log = os.path.join(self.folder, "long.log")
        run([loggen, "--lines", "4500", "--days", "130", "--seed", "77", "--start", "2025-06-20", "-o", log])
        self.program("site", "create", "Long", "--no-skip-404")
        self.program("add", "--format", self.format, "--robots", "--no-components", "--overlap", "add", "--invalid",
                     "skip", log)
        for target in TARGETS:
            self.program("target", "set", *target)
        site = json.loads(self.program("site", "show", "--json"))
        for number, settings in enumerate(SETTINGS):
            for key, value in settings.items():
                self.program("option", "set", key, value)
            if number == 0:
                self.make_groups()
            kept = os.path.join(self.folder, "param%d" % number)
            shutil.copytree(os.path.join(site["folder"], "param"), kept)
            self.params = kept
            (self.deviations_and_words, self.charts_and_groups, self.last_settings)[number]()
        made = self.model({"title": "the long log", "reports": self.wanted, "adds": [
            {"files": [log], "format": self.format, "filter": "all", "robots": True, "components": False,
             "overlap": "add", "invalid": "skip"}]})
        for what, kind, got, name in self.comparisons:
            self.check("long log: " + what, COMPARE + [kind, got, os.path.join(made, name)])

    # ---- one output of the program and the report that the model owes for it ----

    def report(self, field, kind, dates=(None, None), targets=True, **more):
        """The model's report, its number in its name."""
        report = {"name": "r%d" % len(self.wanted), "field": field, "kind": kind, "threshold": 1, "not_search": True,
                  "from": dates[0], "to": dates[1], "targets": targets, "site_params": self.params, "plots": [],
                  "words": [], **more}
        self.wanted.append(report)
        return report

    @staticmethod
    def flags(report):
        words = ["--kind", report["kind"], "--threshold", "1", "--not-search"]
        words += ["--targets"] if report["targets"] else ["--no-targets"]
        for key, flag in (("from", "--from"), ("to", "--to"), ("top", "--top")):
            if report.get(key):
                words += [flag, str(report[key])]
        return words

    def output(self, report, command, kind, name):
        got = os.path.join(self.folder, "got-" + name)
        words = command + self.flags(report)
        self.program(*words, "-o", got)
        self.comparisons.append((" ".join(words), kind, got, name))

    def grid_of(self, report):
        command = ["report", WORDS[report["field"]], "--as", "csv"]
        for key in ("deviation", "dist1", "dist2"):
            command.append("--%s%s" % ("" if report.get(key) else "no-", key))
        self.output(report, command, "--csv", report["name"] + ".csv")

    def plot_of(self, report, line, **options):
        name = "p%d" % len(self.comparisons)
        report["plots"].append({"name": name, "line": line or ".. Total ..", **options})
        command = ["plot", WORDS[report["field"]], "--as", "json", *(["--line", line] if line else ["--total"])]
        for key in ("period", "remove"):
            command += ["--" + key, str(options[key])] if key in options else []
        command += ["--percent"] if options.get("percent") else []
        self.output(report, command, "--plot", name + ".json")

    def words_of(self, report):
        for length in report["words"]:
            self.output(report, ["words", "--length", str(length), "--as", "csv"], "--words",
                        "%s.words%d.csv" % (report["name"], length))

    # ---- the reports ----

    def values(self, field, *more):
        """Values and users of an All report, the highest first."""
        shown = json.loads(self.program("report", WORDS[field], "--kind", "all", "--threshold", "1", "--not-search",
                                        "--as", "json", *more))
        return [(row[0], int(row[1])) for row in shown["rows"] if row[0] and row[0] != ".. Total .."]

    @staticmethod
    def clean_cut(values, least):
        """A number of values from `least` on behind which the users drop, so that no ties stand at the cut."""
        return next(n for n in range(least, len(values)) if values[n - 1][1] > values[n][1])

    def make_groups(self):
        """A missing member, one listed twice, a value in two groups, a group of nothing, and one named as a value."""
        for field in (1, 6, 7, 8):
            names = [value for value, _ in self.values(field)]
            at = lambda *numbers: [names[n % len(names)] for n in numbers]
            groups = {"Twice": at(1, 3) + ["not there"] + at(1), "Also": at(3, 4), "Nothing": ["nobody", "no one"],
                      "One": at(2) + ["gone"], "Many": at(*range(7, 60, 2))}
            if field == 1:
                groups[names[1]] = at(5, 6)
            for name, members in groups.items():
                self.program("group", "set", name, *members, "--field", WORDS[field])

    def deviations_and_words(self):
        for field in (1, 7):
            for dates in RANGES:
                self.grid_of(self.report(field, "all", dates, targets=field == 7, deviation=True))
        for kind, top in (("all", None), ("top", self.clean_cut(self.values(1), 5))):
            report = self.report(1, kind, targets=False, top=top, words=[1, 2, 3, 4])
            self.words_of(report)

    def charts_and_groups(self):
        dates = RANGES[1]
        self.grid_of(self.report(11, "all", dates, deviation=True))
        self.grid_of(self.report(6, "all", dates, deviation=True))
        for field in (1, 6, 7, 8):
            self.grid_of(self.report(field, "grouped", targets=field != 8, dist1=field in (1, 8), dist2=field == 1))
        grouped = self.report(1, "grouped", dates)
        for line in ("Twice", "Also", "One", "Many", "Nothing", None):
            self.plot_of(grouped, line, period=7)
        self.plot_of(self.report(8, "grouped"), None, period=30, remove=1, percent=True)

    def last_settings(self):
        self.grid_of(self.report(7, "all", RANGES[0], deviation=True))
        self.grid_of(self.report(6, "top", RANGES[2], deviation=True, top=self.clean_cut(
            self.values(6, "--from", RANGES[2][0], "--to", RANGES[2][1], "--targets"), 5)))
        values = self.values(7)
        every, dates = self.report(7, "all"), self.report(7, "all", RANGES[1])
        for remove in range(5):
            self.plot_of(every, values[1][0], period=30, remove=remove, percent=True)
        self.plot_of(every, values[-1][0], period=1, remove=2)
        self.plot_of(dates, values[2][0], period=1)
        self.plot_of(dates, values[2][0])
        self.plot_of(dates, None, period=7, remove=2)
        top = self.report(7, "top", top=self.clean_cut(values, 3))
        for remove in (0, 1, 3):
            self.plot_of(top, ".. Rest ..", period=7, remove=remove, percent=remove > 0)
        self.plot_of(top, None, period=7)
        pages = self.values(6, "--targets")
        self.plot_of(self.report(6, "top", top=self.clean_cut(pages, 3)), ".. Rest ..", period=30)


def main():
    cli, loggen = (os.path.abspath(word) for word in sys.argv[1:3])
    words = sys.argv[3:]
    log_format = words[1] if words[:1] == ["--format"] else "apache-combined"
    given = [os.path.abspath(word) for word in words[2 if words[:1] == ["--format"] else 0:]]
    own_logs = [given[:(len(given) + 1) // 2], given[(len(given) + 1) // 2:]] if given else None
    passed = failed = 0
    for scenario in SCENARIOS + ([] if given else [LONG_LOG]):
        if own_logs:  # the dates are those of the made logs
            scenario = {key: value for key, value in scenario.items() if key not in ("from", "to")}
        folder = tempfile.mkdtemp(prefix="corvane-flow-")
        try:
            if scenario is LONG_LOG:
                flow = LongLog(cli, folder)
                flow.run(loggen)
            else:
                flow = Flow(cli, folder, log_format)
                flow.scenario(scenario, own_logs or make_logs(loggen, folder, scenario["seed"]))
            passed, failed = passed + flow.passed, failed + flow.failed
        finally:
            shutil.rmtree(folder, ignore_errors=True)
    print("%d passed, %d failed" % (passed, failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
