"""One read of a list of log files: probing, tests in their order, duplicates, stored lines and counters."""

import os

import logformat
import names
import textrules as tr
from filters import Filter
from inireader import IniFile
from store import kept_values

WINDOW = 3000
SKIPPED = " File Skipped."
TEXT_INVALID = "Log Line Found cannot be matched for specified format. Line[s] Skipped."
TEXT_OVERLAP = "Dates on this log file overlap with data that already have on database.  All identical lines skipped."
TEXT_EMPTY = "Log file is empty or does not exist." + SKIPPED
TEXT_NO_LINES = "Log file does not contain any valid lines." + SKIPPED
TEXT_CORRUPT = "Log file ends with > 3000 bytes of corrupt lines [log file corrupt]." + SKIPPED


class Stopped(Exception):
    """The rest of the file is not read."""


class Read:
    def __init__(self, store, job, add):
        self.store = store
        self.options = job.options
        self.skip_overlapping = add.get("overlap", "add") == "skip"
        self.stop_at_invalid = add.get("invalid", "skip") == "stop"
        self.specs = logformat.load_format(IniFile(job.param("logfmts.ini")), add["format"].encode())
        self.main, self.components, self.robots = _filters(job, add)
        self.no_page = store.Page_FindOrAdd(names.NO_PAGE, add=True)
        self.totals = dict.fromkeys(["AllLinesRead", "AllLinesAdded", "AllLinesExist", "AllBytesRead", "AllBytesAdded",
                                     "AllFiltered", "AllBots", "AllComps", "AllFirstDate", "AllLastDate"], 0)
        self.files = []
        self.problems = {}
        self.moment = 0.0

    # ---- files ----

    def read_files(self, files):
        for name in files:
            self.file_name = name
            self._read_file(name)
        return {"files": self.files, "totals": self.totals, "problems": self.problems}

    def _read_file(self, name):
        self.count = dict.fromkeys(["LinesRead", "LinesAdded", "LinesExist", "BytesRead", "BytesAdded", "FirstDate"], 0)
        self.count.update(file=name, stopped=False, skipped=True, LastDate=0)
        self.files.append(self.count)
        self.main.hits = self.components.hits = self.robots.hits = 0
        data = b""
        if os.path.isfile(name):
            with open(name, "rb") as stream:
                data = stream.read()
        span = self._date_range(data)
        self.check_dupes = span is not None and self.store.any_between(*span)
        if self.check_dupes:
            self._problem(TEXT_OVERLAP)
        if span is None or (self.check_dupes and self.skip_overlapping):
            return
        self.count["skipped"] = False
        try:
            for line in data.split(b"\n"):
                self._line(line)
        except Stopped:
            self.count["stopped"] = True
        self._add_up()

    def _add_up(self):
        count, totals = self.count, self.totals
        if count["FirstDate"] and (totals["AllFirstDate"] == 0 or totals["AllFirstDate"] > count["FirstDate"]):
            totals["AllFirstDate"] = count["FirstDate"]
        totals["AllLastDate"] = max(totals["AllLastDate"], self.moment)
        count["Filtered"], count["Bots"], count["Comps"] = self.main.hits, self.robots.hits, self.components.hits
        for key in ("LinesRead", "LinesAdded", "LinesExist", "BytesRead", "BytesAdded", "Filtered", "Bots", "Comps"):
            totals["All" + key] += count[key]

    def _problem(self, text):
        texts = self.problems.setdefault(self.file_name, [])
        if text not in texts:
            texts.append(text)

    def _date_range(self, data):
        """First and last time of a file in order, or None with the problem noted."""
        if not data:
            return self._problem(TEXT_EMPTY)
        first = self._first_stamp(data[:WINDOW].split(b"\n"))
        if first is None:
            return self._problem(TEXT_NO_LINES)
        start = max(0, len(data) - WINDOW)
        while True:
            last = self._first_stamp(reversed(data[start:start + WINDOW].split(b"\n")))
            if last is not None:
                return min(first, last), max(first, last)
            if start == 0:
                return self._problem(TEXT_CORRUPT)
            start = max(0, start - WINDOW)

    def _first_stamp(self, lines):
        for line in lines:
            fields = logformat.interpret(self.specs, line)
            if fields is not None:
                return logformat.line_stamp(fields)
        return None

    # ---- lines ----

    def _line(self, raw_line):
        if logformat.is_empty(raw_line):
            return
        fields = logformat.interpret(self.specs, raw_line)
        if fields is None:
            self._problem(TEXT_INVALID)
            if self.stop_at_invalid:
                raise Stopped
            return
        size = tr.fNum(fields[20])
        self.count["LinesRead"] += 1
        self.count["BytesRead"] += size
        if self._is_skipped(fields):
            return
        self.moment = self.count["LastDate"] = logformat.line_moment(fields)
        if self.count["FirstDate"] == 0:
            self.count["FirstDate"] = self.moment
        if self.check_dupes and self._counted_as_existing(fields):
            return
        self._store(fields)
        self.count["LinesAdded"] += 1
        self.count["BytesAdded"] += size

    def _is_skipped(self, fields):
        if self.options["Skip404"] and 400 <= tr.fNum(fields[24]) <= 599:
            return True
        return self.main.takes(fields) or self.components.takes(fields) or self.robots.takes(fields)

    def _page(self, fields, add):
        name = names.Page_StripParts(fields[3], self.options["RemFrag"], self.options["RemQuery"])
        return self.store.Page_FindOrAdd(name, add)

    def _common_values(self, fields, page):
        return {"IP": tr.fLeft(fields[1], 50), "Timestamp": logformat.line_stamp(fields), "PageID": page,
                "Bytes": tr.to_long(tr.fNum(fields[20]))}

    def _counted_as_existing(self, fields):
        page = self._page(fields, add=False)
        wanted = self._common_values(fields, self.no_page if page < 0 else page)
        if self.store.keep:
            wanted.update(kept_values(fields))
        for row in self.store.lines_at(wanted["IP"], wanted["Timestamp"]):
            if all(row[name] == value for name, value in wanted.items()):
                self.count["LinesExist"] += 1
                # Reading stored data again leaves the counts alone until the file has added a line of its own.
                if self.count["LinesAdded"] > 0:
                    row["CntDupes"] += 1
                return True
        return False

    def _store(self, fields):
        row = self._common_values(fields, self._page(fields, add=True))
        if self.store.keep:
            row.update(kept_values(fields))
        self.store.add_line(row, self._waiting_referrer(fields[7]))

    def _waiting_referrer(self, referrer):
        if self.store.keep:
            return referrer
        if referrer in (b"", b"-"):
            return None
        domain = self.options["domain"].encode()
        return b"::::" if domain and referrer.startswith(domain) else referrer


def _filters(job, add):
    choice = add.get("filter", "all")
    main = Filter(IniFile(job.site_param("LdLnFltr.ini")), b"Fltr Sel", choice != "all", choice == "only")
    components = Filter(IniFile(job.site_param("FltrFiles.ini")), b"Fltr Sel", not add.get("components", True), False)
    robots = Filter(IniFile(job.param("fltrbots.ini")), b"SkipRobotUserAgents", not add.get("robots", True), False,
                    always_any=True)
    return main, components, robots
