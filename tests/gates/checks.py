"""What must hold of a site's database, from outside: with SQLite alone, none of the program's code."""
import shutil
import sqlite3
from collections import defaultdict
from pathlib import Path

from harness import GateFailure, need

# Tables and the order in which they are dumped.
TABLES = {"logline": "LogLnID", "page": "PageID", "visit": "VisitID", "visitpages": "rowid"}
OVERFLOW = "||"


class Dump:
    """All rows of the four tables, by key."""

    def __init__(self, rows, columns):
        self.rows = rows
        self.columns = columns
        self._alone = None

    def records(self, table):
        return [dict(zip(self.columns[table], row)) for row in self.rows[table]]

    def lines_alone(self):
        """Rows of logline without their visit."""
        if self._alone is None:
            at = self.columns["logline"].index("VisitID")
            self._alone = [row[:at] + row[at + 1:] for row in self.rows["logline"]]
        return self._alone

    def __eq__(self, other):
        return self.rows == other.rows

    def difference(self, other):
        """The first difference, for people."""
        for table in TABLES:
            mine, theirs = self.rows[table], other.rows[table]
            for i, (a, b) in enumerate(zip(mine, theirs)):
                if a != b:
                    return f"{table}, row {i}: {a} instead of {b}"
            if len(mine) != len(theirs):
                return f"{table} has {len(mine)} rows instead of {len(theirs)}"
        return "none"


def read_dump(home, aside=True):
    """The database as it would be opened. `aside` reads a copy: playing a journal back is the program's to do."""
    database = home.database
    need(database.exists() or Path(str(database) + ".temp").exists(), "there is no database under its name")
    folder = home.bench.home().folder if aside else None
    try:
        if aside:
            for path in database.parent.glob("site1.mdb*"):
                shutil.copy(path, folder / path.name)
            database = folder / "site1.mdb"
            if not database.exists():
                (folder / "site1.mdb.temp").rename(database)
        return _read(database)
    except sqlite3.Error as error:
        raise GateFailure(f"the database cannot be read: {error}") from None
    finally:
        if folder:
            shutil.rmtree(folder, ignore_errors=True)


def _read(database):
    store = sqlite3.connect(database)
    store.text_factory = bytes
    try:
        verdict = [row[0].decode() for row in store.execute("PRAGMA integrity_check")]
        need(verdict == ["ok"], f"integrity_check: {verdict[:3]}")
        rows, columns = {}, {}
        for table, key in TABLES.items():
            cursor = store.execute(f"SELECT * FROM {table} ORDER BY {key}")
            columns[table] = [item[0] for item in cursor.description]
            rows[table] = cursor.fetchall()
        return Dump(rows, columns)
    finally:
        store.close()


def waiting(dump):
    at = dump.columns["logline"].index("VisitID")
    return sum(1 for line in dump.rows["logline"] if line[at] is None)


def check_prefix(dump, whole):
    """What is stored after a failure is the start of what an uninterrupted run stores: nothing lost in between."""
    lines, all_lines = dump.lines_alone(), whole.lines_alone()
    need(lines == all_lines[:len(lines)], "the stored lines are not the first lines of the uninterrupted run")
    pages = dump.rows["page"]
    need(pages == whole.rows["page"][:len(pages)], "the stored pages are not the first pages of the uninterrupted run")


def _click_lists(lines):
    """Pages and bytes of a visit as its lines give them."""
    totals, last = {}, None
    for line in sorted(lines, key=lambda item: (item["Timestamp"], item["LogLnID"])):
        size, dupes = line["Bytes"] or 0, line["CntDupes"] or 0
        if line["PageID"] != 0:
            last = line["PageID"]
            totals[last] = totals.get(last, 0) + size
        if dupes > 0 and last is not None:
            totals[last] += size * dupes
    return "|".join(map(str, totals)), "|".join(map(str, totals.values()))


def _stored_lists(visit, overflow):
    pages, sizes = visit["CDSClickFurtherPageIDs"], visit["CDSBytesClickFurtherPageIDs"]
    pages, sizes = (pages or b"").decode(), (sizes or b"").decode()
    return overflow[visit["VisitID"]] if pages.startswith(OVERFLOW) else (pages, sizes)


def _overflow(dump):
    """Lists too long for the row of their visit: the rows of visitpages, put together again in their order."""
    parts = defaultdict(list)
    for row in dump.records("visitpages"):
        pages, sizes = row["CDSClickFurtherPageIDs"], row["CDSBytesClickFurtherPageIDs"]
        parts[row["visitID"]].append((pages.decode(), sizes.decode()))
    return {visit: ("|".join(pages for pages, _ in rows), "|".join(sizes for _, sizes in rows))
            for visit, rows in parts.items()}


def check_conservation(dump):
    """Each line that has a visit has a complete one: counts, times and click lists are those of its lines."""
    lines = defaultdict(list)
    for line in dump.records("logline"):
        if line["VisitID"] is not None:
            lines[line["VisitID"]].append(line)
    overflow = _overflow(dump)
    seen = set()
    for visit in dump.records("visit"):
        number = visit["VisitID"]
        own = lines.get(number, [])
        seen.add(number)
        need(visit["Files"] == len(own), f"visit {number} counts {visit['Files']} lines and has {len(own)}")
        stamps = [line["Timestamp"] for line in own]
        need((visit["StartTimeStamp"], visit["EndTimeStamp"]) == (min(stamps), max(stamps)),
             f"visit {number} starts or ends otherwise than its lines")
        first = [line for line in own if line["LogLnID"] == visit["StartLogLnID"]]
        need(first and first[0]["Timestamp"] == visit["StartTimeStamp"] and first[0]["PageID"] == visit["StartPageID"],
             f"visit {number} does not start with its start line")
        need(all(line["IP"] == visit["FirstIP"] for line in own), f"visit {number} has lines of other addresses")
        need(_stored_lists(visit, overflow) == _click_lists(own),
             f"visit {number} has other click lists than its lines")
    lost = set(lines) - seen
    need(not lost, f"{len(lost)} visits are named by lines and not there, the first is {min(lost, default=None)}")


def check_same_content(dump, other):
    """The same lines whatever their numbers, and pages by name."""
    def content(of):
        names = {page["PageID"]: page["Filename"] for page in of.records("page")}
        return sorted(tuple((name, names.get(value, value) if name == "PageID" else value)
                            for name, value in line.items() if name not in ("LogLnID", "VisitID")).__repr__()
                      for line in of.records("logline"))
    need(content(dump) == content(other), "other lines are stored")
