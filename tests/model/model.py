"""Adds logs and draws reports as a job file tells, in memory, and writes tables, counters and grids as text.

usage: model.py JOB.json OUTDIR

The job: "params" is the folder of logfmts.ini, lastinstvals.ini and fltrbots.ini, "site_params" that of LdLnFltr.ini,
FltrFiles.ini, LastVals.ini, targets.ini, Siteareas.ini and the groups; a missing file is an empty list. "options" are
the site's. Each of "adds" is one whole add: files in their order, visits, clean-up. Each of "reports" is one grid,
written as NAME.csv:

    {"params": "param", "site_params": "site", "options": {"LastKeepVal": true, "LmtVisitLines": 1000, "domain": ""},
     "adds": [{"files": ["a.log"], "format": "apache-combined", "filter": "all", "robots": false, "components": false,
               "overlap": "add", "invalid": "skip"}],
     "reports": [{"name": "terms", "field": 1, "kind": "top", "top": 20, "from": null, "to": null, "threshold": 1,
                  "not_search": true, "dist1": true, "dist2": true, "click_through": false, "sep_query": false,
                  "sep_frag": false, "area": null, "targets": false, "deviation": false, "words": [1, 2],
                  "site_params": null,
                  "plots": [{"name": "trend", "line": "paris", "period": 7, "percent": false, "remove": 0}]}]}

A report's "kind" is top, all or grouped. Its word frequencies go to NAME.wordsN.csv, each of its plots to the plot's
NAME.json. Its "site_params" may be another folder than the job's. Reports of equal options share one analysis.

Relative paths in the job stand beside the job file. Nothing of the program is used: the rules are worked out a second
time here, as plainly as possible, so that the program's tables and grids can be compared with them cell by cell.
"""

import json
import os
import sys

import analysis
import plot
import store as tables
import textrules as tr
from deviation import Deviation, Settings
from engines import Engines
from grid import Grid, write_csv
from inireader import IniFile
from reading import Read
from store import Store
from visits import VisitBuilder
from words import frequencies

DEFAULTS = {"LastKeepVal": True, "Skip404": False, "RemQuery": False, "RemFrag": False, "EraseNonSE": False,
            "LmtVisitLines": 1000, "domain": ""}
ESCAPES = {0x09: b"\\t", 0x0A: b"\\n", 0x0D: b"\\r", 0x5C: b"\\\\"}


class Job:
    def __init__(self, path):
        with open(path, encoding="utf-8") as stream:
            self.data = json.load(stream)
        self.folder = os.path.dirname(os.path.abspath(path))
        self.options = dict(DEFAULTS, **self.data.get("options", {}))

    def path(self, name):
        return os.path.join(self.folder, name)

    def param(self, name):
        return os.path.join(self.path(self.data["params"]), name)

    def site_param(self, name, report=None):
        folder = (report or {}).get("site_params") or self.data.get("site_params", self.data["params"])
        return os.path.join(self.path(folder), name)


def cell_text(value):
    """One field as text: Null is \\N, control characters are escaped."""
    if value is None:
        return b"\\N"
    if isinstance(value, (int, float)):
        return tr.plain_number(value)
    out = bytearray()
    for c in value:
        out += ESCAPES.get(c) or (b"\\x%02X" % c if c < 32 or c == 127 else bytes([c]))
    return bytes(out)


def write_table(path, fields, rows):
    with open(path, "wb") as stream:
        stream.write("\t".join(fields).encode() + b"\n")
        for row in rows:
            stream.write(b"\t".join(cell_text(row[field]) for field in fields) + b"\n")


def write_store(store, folder):
    fields = tables.KEEP_FIELDS if store.keep else tables.NOKEEP_FIELDS
    pages = [{"PageID": number, "Filename": name} for number, name in enumerate(store.pages) if number > 0]
    clicks = sorted(store.visit_pages, key=lambda row: row["visitID"])
    write_table(os.path.join(folder, "logline.tsv"), fields, [store.lines[i] for i in sorted(store.lines)])
    write_table(os.path.join(folder, "page.tsv"), tables.PAGE_FIELDS, pages)
    write_table(os.path.join(folder, "visit.tsv"), tables.VISIT_FIELDS, [store.visits[i] for i in sorted(store.visits)])
    write_table(os.path.join(folder, "visitpages.tsv"), tables.VISITPAGES_FIELDS, clicks)


def moment_text(moment):
    if not moment:
        return ""
    days, seconds = divmod(round(moment * tr.DAY_SECONDS), tr.DAY_SECONDS)
    return "%014d" % tr.stamp_number(days, seconds)


def readable(counters):
    """Moments as 14 digits, whole numbers without a fraction."""
    out = {}
    for key, value in counters.items():
        if key.endswith("Date"):
            value = moment_text(value)
        elif isinstance(value, float) and value == int(value):
            value = int(value)
        out[key] = value
    return out


def area_pages(job, store, report):
    area = report.get("area")
    if not area:
        return None
    text = IniFile(job.site_param("Siteareas.ini", report)).get(b"SiteAreas", area.encode())
    pages = {store.Page_FindOrAdd(name, add=False) for name in tr.cds_split(text)} if text else set()
    return pages - {-1}


def run_add(job, store, engines, add):
    read = Read(store, job, add).read_files([job.path(name) for name in add["files"] if name.strip()])
    read["files"] = [readable(count) for count in read["files"]]
    read["totals"] = readable(read["totals"])
    read.update(VisitBuilder(store, engines, job.options).run())
    read["Lines"], read["Pages"], read["Visits"] = len(store.lines), len(store.pages) - 1, len(store.visits)
    return read


# Field to file, section and the key of the list of names.
GROUPS = {1: ("STgroups.ini", b"Groups", b"STgrps"),
          6: ("VisitedPages.ini", b"VisitedPages", b"VisitedPages"),
          7: ("VisitedDirs.ini", b"VisitedDirs", b"VisitedDirs"),
          8: ("NonSERefrgrps.ini", b"NonSERefrgrps", b"nonSERefrgrps")}


def groups_of(job, report):
    name, section, key = GROUPS[report["field"]]
    ini = IniFile(job.site_param(name, report))
    listed = ini.get(section, key)
    return [(group, tr.cds_split(ini.get(section, group))) for group in tr.cds_split(listed)] if listed else []


class Reports:
    """Draws the reports of a job. What an analysis depends on keys the ones already made."""

    NOT_OF_ANALYSIS = ("name", "kind", "top", "deviation", "words", "plots")

    def __init__(self, job, store, out):
        self.job, self.store, self.out = job, store, out
        self.made = {}

    def draw(self, report):
        last_values = IniFile(self.job.site_param("LastVals.ini", report))
        options, results = self._analysis(report, last_values)
        deviation = None
        if report.get("deviation") and results:
            deviation = Deviation(results.first_day, results.days, Settings(last_values))
        grid = Grid(results, options, deviation)
        kind = report.get("kind", "top")
        grid.draw(kind, report.get("top", 20), groups_of(self.job, report) if kind == "grouped" else ())
        self._write(report["name"] + ".csv", grid.csv())
        for length in report.get("words", []):
            header = b"Total users for each %d word combination in Search term" % length
            lines = [[text, b"%d" % users] for text, users in frequencies(grid.value_lines(), length)]
            self._write("%s.words%d.csv" % (report["name"], length), write_csv([[header, b"Visitors"]] + lines))
        for wanted in report.get("plots", []):
            chart = plot.Chart(results, grid, wanted["line"].encode(), plot.Settings(last_values, wanted))
            self._write(wanted["name"] + ".json", json.dumps(chart.as_json(), indent=1).encode())

    def _analysis(self, report, last_values):
        key = json.dumps({key: value for key, value in report.items() if key not in self.NOT_OF_ANALYSIS},
                         sort_keys=True)
        if key not in self.made:
            options = analysis.Options(report, last_values, IniFile(self.job.site_param("targets.ini", report)))
            area = area_pages(self.job, self.store, report)
            self.made[key] = options, analysis.Analysis(self.store, options, area).run()
        return self.made[key]

    def _write(self, name, text):
        with open(os.path.join(self.out, name), "wb") as stream:
            stream.write(text)


def main(job_path, out):
    job = Job(job_path)
    os.makedirs(out, exist_ok=True)
    engines = Engines(IniFile(job.param("logfmts.ini")), IniFile(job.param("lastinstvals.ini")))
    store = Store(job.options["LastKeepVal"])
    adds = [run_add(job, store, engines, add) for add in job.data.get("adds", [])]
    write_store(store, out)
    with open(os.path.join(out, "counters.json"), "w", encoding="utf-8") as stream:
        json.dump(adds, stream, indent=1, ensure_ascii=False)
    reports = Reports(job, store, out)
    for report in job.data.get("reports", []):
        reports.draw(report)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
