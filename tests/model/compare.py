"""Compares what the program made with what the model made.

usage: compare.py SITE.db MODELDIR        every row and field of the four tables
       compare.py --csv GOT.csv MODEL.csv [MODEL_ALL.csv]   every cell of a report
       compare.py --words GOT.csv MODEL.csv   every word and count of word frequencies
       compare.py --plot GOT.json MODEL.json  every point, label and caption of a chart

Ends with exit status 1 when something differs. Lines of one count may stand in any order. Where values tie at the cut
of a Top report, or labels of one count at the end of a cut distribution, other members are told as "tie" and are no
error. With the model's All report of the same field such members are looked up there, so that their cells count too.
"""

import csv
import json
import os
import re
import sqlite3
import sys
from collections import Counter

from grid import REST, TOTAL
from model import cell_text

SHOWN = 20
KEYS = {"logline": ["LogLnID"], "page": ["PageID"], "visit": ["VisitID"], "visitpages": ["visitID"]}
# A count that was never raised may be Null.
NULL_IS_ZERO = {"CntDupes"}
DIST_LINE = re.compile(r"^(.*) (\d+) \[(?:-?\d+%|na)\]$", re.DOTALL)


# ---- tables ------------------------------------------------------------------------------------------------------

def model_rows(path):
    with open(path, "rb") as stream:
        lines = stream.read().split(b"\n")[:-1]
    return lines[0].decode().split("\t"), [line.split(b"\t") for line in lines[1:]]


def site_rows(db, table, fields):
    order = "rowid" if table == "visitpages" else KEYS[table][0]
    listed = ", ".join('"%s"' % field for field in fields)
    first = KEYS[table][0]
    for row in db.execute('SELECT %s FROM "%s" ORDER BY "%s", %s' % (listed, table, first, order)):
        yield [cell_text(0 if value is None and field in NULL_IS_ZERO else value)
               for field, value in zip(fields, row)]


def keyed(fields, rows, table):
    """Rows by their identifier; several rows of one visit by their position too."""
    key_at = fields.index(KEYS[table][0])
    seen, out = Counter(), {}
    for row in rows:
        out[(int(row[key_at]), seen[row[key_at]])] = row
        seen[row[key_at]] += 1
    return out


def compare_table(db, table, folder):
    fields, wanted = model_rows(os.path.join(folder, table + ".tsv"))
    columns = [row[1].decode() for row in db.execute('PRAGMA table_info("%s")' % table)]
    differences = []
    absent = {f.lower() for f in fields} - {c.lower() for c in columns}
    more = {c.lower() for c in columns} - {f.lower() for f in fields}
    if absent or more:
        differences.append("columns missing %s, not expected %s" % (sorted(absent), sorted(more)))
    if absent:
        return differences, 0
    wanted, got = keyed(fields, wanted, table), keyed(fields, site_rows(db, table, fields), table)
    for key in sorted(wanted.keys() | got.keys()):
        name = "%s %s" % (table, key[0] if table != "visitpages" else "%s row %s" % key)
        if key not in got:
            differences.append(name + ": missing")
        elif key not in wanted:
            differences.append(name + ": not expected")
        else:
            differences += ["%s: %s is %r, model %r" % (name, field, is_, should)
                            for field, is_, should in zip(fields, got[key], wanted[key]) if is_ != should]
    return differences, len(wanted)


def compare_site(database, folder):
    db = sqlite3.connect("file:%s?mode=ro" % os.path.abspath(database).replace("?", "%3f"), uri=True)
    db.text_factory = bytes
    bad = False
    for table in KEYS:
        differences, rows = compare_table(db, table, folder)
        print("%s: %d rows, %d differences" % (table, rows, len(differences)))
        for text in differences[:SHOWN]:
            print("  " + text)
        bad = bad or bool(differences)
    return 1 if bad else 0


# ---- reports -----------------------------------------------------------------------------------------------------

class Report:
    def __init__(self, path):
        csv.field_size_limit(1 << 30)
        with open(path, newline="", encoding="utf-8", errors="surrogateescape") as stream:
            rows = list(csv.reader(stream))
        self.header, rows = (rows[0], rows[1:]) if rows else ([], [])
        self.total = self.gap = self.rest = None
        if rows and rows[-1][0] == TOTAL.decode():
            self.total, rows = rows[-1], rows[:-1]
            self.gap, rows = (rows[-1], rows[:-1]) if rows and not any(rows[-1]) else (None, rows)
            if rows and rows[-1][0] == REST.decode():
                self.rest, rows = rows[-1], rows[:-1]
        self.values = rows

    def by_count(self):
        groups = {}
        for row in self.values:
            groups.setdefault(row[1], []).append(row)
        return groups


def distribution_lines(text):
    """(count, line) of each label; labels may hold line breaks themselves."""
    lines, pending = [], ""
    for part in text.split("\r\n"):
        pending = pending + "\r\n" + part if pending else part
        found = DIST_LINE.match(pending)
        if found:
            lines.append((int(found.group(2)), pending))
            pending = ""
    return lines, pending


class ReportCheck:
    def __init__(self, got, model, everything=None):
        self.got, self.model = got, model
        self.everything = {row[0]: row for row in everything.values} if everything else None
        self.errors, self.ties = [], []

    def run(self):
        if self.got.header != self.model.header:
            self.errors.append("header is %r, model %r" % (self.got.header, self.model.header))
            return
        counts_got, counts_model = ([row[1] for row in report.values] for report in (self.got, self.model))
        if counts_got != counts_model:
            self.errors.append("counts of the lines differ: %d lines, model %d" % (len(counts_got), len(counts_model)))
        tied = self._value_lines()
        self._line("rest", self.got.rest, self.model.rest, tied, never=(0, 1, 5))
        self._line("gap", self.got.gap, self.model.gap, False)
        self._line("total", self.got.total, self.model.total, tied, never=(0, 1, 2, 3, 5))

    def _value_lines(self):
        groups_got, groups_model = self.got.by_count(), self.model.by_count()
        lowest = self.model.values[-1][1] if self.model.values else None
        tied = False
        for count in groups_got.keys() | groups_model.keys():
            pool = {}
            for row in groups_model.get(count, []):
                pool.setdefault(row[0], []).append(row)
            at_cut = count == lowest and self.model.rest is not None and self.got.rest is not None
            strangers = 0
            for row in groups_got.get(count, []):
                if not pool.get(row[0]):
                    strangers += 1
                    self._note(at_cut, "line %r with %s visitors is not in the model" % (row[0], count))
                    if at_cut and self.everything is not None:
                        self._line("line %r" % row[0], row, self.everything.get(row[0]), False)
                    continue
                same = next((i for i, other in enumerate(pool[row[0]]) if other == row), 0)
                self._line("line %r" % row[0], row, pool[row[0]].pop(same), False)
            missing = [name for name, rows in pool.items() for _ in rows]
            for name in missing:
                self._note(at_cut and len(missing) == strangers,
                           "line %r with %s visitors is missing" % (name, count))
            tied = tied or bool(strangers and at_cut)
        return tied

    def _note(self, tie, text):
        (self.ties if tie else self.errors).append(text)

    def _line(self, name, got, model, tied, never=()):
        if got is None or model is None:
            if got is not model:
                self.errors.append("%s: %s" % (name, "is missing" if got is None else "does not exist in the model"))
            return
        if len(got) != len(model):
            self.errors.append("%s: %d cells, model %d" % (name, len(got), len(model)))
            return
        for column, (is_, should) in enumerate(zip(got, model)):
            if is_ == should:
                continue
            text = "%s: column %d is %r, model %r" % (name, column, is_, should)
            verdict = self._distribution(is_, should) if column >= 6 else "differs"
            if verdict == "differs":
                self._note(tied and column not in never, text)
            elif verdict == "tie":
                self.ties.append(text)

    @staticmethod
    def _distribution(got, model):
        lines_got, end_got = distribution_lines(got)
        lines_model, end_model = distribution_lines(model)
        counts = [count for count, _ in lines_got]
        if counts != sorted(counts, reverse=True) or not lines_got or not lines_model or end_got != end_model:
            return "differs"
        if sorted(lines_got) == sorted(lines_model):
            return "same"
        edge = max(lines_got[-1][0], lines_model[-1][0])
        above = [sorted(line for line in lines if line[0] > edge) for lines in (lines_got, lines_model)]
        return "tie" if end_got.endswith("...") and above[0] == above[1] else "differs"


def compare_reports(got, model, everything=None):
    check = ReportCheck(Report(got), Report(model), Report(everything) if everything else None)
    check.run()
    for kind, texts in (("difference", check.errors), ("tie", check.ties)):
        for text in texts[:SHOWN]:
            print("%s: %s" % (kind, text))
    print("%d lines, %d differences, %d ties" % (len(check.model.values), len(check.errors), len(check.ties)))
    return 1 if check.errors else 0


def compare_words(got, model):
    got, model = ([[*row] for row in Report(path).values] for path in (got, model))
    same = sorted(got) == sorted(model) and [row[1] for row in got] == [row[1] for row in model]
    if not same:
        print("too many: %r\nmissing: %r" % ([row for row in got if row not in model][:SHOWN],
                                             [row for row in model if row not in got][:SHOWN]))
    print("%d lines, %s" % (len(model), "no differences" if same else "differences"))
    return 0 if same else 1


# ---- charts ------------------------------------------------------------------------------------------------------

def one_break(text):
    return text.replace("\r\n", "\n").replace("\r", "\n")


def same_point(got, model):
    if got is None or model is None:
        return got is model
    return abs(got - model) <= 1e-9 * max(1, abs(model))


def compare_charts(got, model):
    charts = []
    for path in (got, model):
        with open(path, encoding="utf-8", errors="surrogateescape") as stream:
            charts.append(json.load(stream))
    got, model = charts
    pairs = [(key, got.get(key), model[key]) for key in ("line", "period", "series")]
    pairs.append(("description", one_break(got["description"]), one_break(model["description"])))
    pairs.append(("number of rows", len(got["rows"]), len(model["rows"])))
    differences = ["%s is %r, model %r" % pair for pair in pairs if pair[1] != pair[2]]
    for number, (is_, should) in enumerate(zip(got["rows"], model["rows"])):
        texts_differ = any(is_[key] != should[key] for key in ("label", "from", "exact"))
        if texts_differ or not all(map(same_point, is_["values"], should["values"])):
            differences.append("row %d is %r,\nmodel %r" % (number, is_, should))
    for text in differences[:SHOWN]:
        print(text)
    print("%d periods, %d differences" % (len(model["rows"]), len(differences)))
    return 1 if differences else 0


WAYS = {"--csv": compare_reports, "--words": compare_words, "--plot": compare_charts}

if __name__ == "__main__":
    arguments = sys.argv[1:]
    if len(arguments) in (3, 4) and arguments[0] in WAYS:
        sys.exit(WAYS[arguments[0]](*arguments[1:]))
    if len(arguments) != 2:
        sys.exit(__doc__)
    sys.exit(compare_site(arguments[0], arguments[1]))
