"""Lines without a visit become visits: by address, time and term, nothing else."""

import names
import textrules as tr

TIME_OUT = 7200
WINDOW_BACK = 7200
WINDOW_FORWARD = 14400
OVER_LIMIT = -1


def time_test(visit, line):
    """Whether the line is near enough to the visit, and whether it lies before its start.

    A line inside a long visit is measured from its start: in the third hour of five it fails."""
    gap = tr.TS_DiffSecs(visit["EndTimeStamp"], line["Timestamp"])
    earlier = False
    if gap < 0:
        gap = tr.TS_DiffSecs(visit["StartTimeStamp"], line["Timestamp"])
        if gap < 0:
            gap, earlier = -gap, True
    return gap <= TIME_OUT, earlier


def term_test(visit, term, engine):
    """The line's term is compared as it was extracted, the visit's in its standard form."""
    if not term or not visit["StzdSearchTerm"]:
        return True
    return term == visit["StzdSearchTerm"] and engine == (visit["SearchEngine"] or b"")


class VisitBuilder:
    def __init__(self, store, engines, options):
        self.store = store
        self.engines = engines
        self.limit = options["LmtVisitLines"]
        self.erase = options["EraseNonSE"]
        self.domain = options["domain"].encode()
        self.made = 0

    def run(self):
        visit, previous = None, None
        lines = self.store.lines_without_visit()
        for line in lines:
            term, engine = self._term(line)
            same, first_data = self._continues(visit, previous, line, term, engine)
            if not same:
                if visit is not None:
                    self.store.store_clicks(visit)
                visit, first_data = self._other_visit(line, term, engine)
            self._enter(visit, line, first_data, term, engine)
            previous = line["IP"]
        if visit is not None:
            self.store.store_clicks(visit)
        if self.erase:
            for row in [v for v in self.store.visits.values() if v["StzdSearchTerm"] is None]:
                self.store.delete_visit(row)
        ignored = self.store.delete_lines_of(OVER_LIMIT)
        self.store.waiting_referrers.clear()
        return {"LinesHandled": len(lines), "VisitsMade": self.made, "LinesIgnored": ignored}

    def _term(self, line):
        referrer = self.store.waiting_referrers.get(line["LogLnID"], b"")
        if not self.store.keep and referrer.startswith(b"::"):
            referrer = b"" if referrer == b"::::" else self._internal(referrer[2:])
        return self.engines.STFromReferrer(referrer)

    def _internal(self, number):
        page = int(tr.fNum(number))
        name = self.store.pages[page] if 0 <= page < len(self.store.pages) else b""
        return self.domain + b"/" + name

    def _continues(self, visit, previous, line, term, engine):
        if visit is None or line["IP"] != previous:
            return False, False
        near, earlier = time_test(visit, line)
        same = near and term_test(visit, term, engine)
        return same, same and earlier

    def _other_visit(self, line, term, engine):
        """An earlier visit of the same address, else a new one; and whether the line becomes its start."""
        oldest = tr.TS_AddSecs(line["Timestamp"], -WINDOW_BACK)
        newest = tr.TS_AddSecs(line["Timestamp"], WINDOW_FORWARD)
        for visit in self.store.visits_from(line["IP"]):
            if visit["StartTimeStamp"] >= oldest and visit["EndTimeStamp"] < newest:
                near, earlier = time_test(visit, line)
                if near and term_test(visit, term, engine):
                    return visit, earlier
        self.made += 1
        return self.store.add_visit(line["IP"]), True

    def _enter(self, visit, line, first_data, term, engine):
        if first_data:
            visit["FirstIP"] = line["IP"]
            visit["StartLogLnID"] = line["LogLnID"]
            visit["StartPageID"] = line["PageID"]
            visit["StartTimeStamp"] = line["Timestamp"]
        if term:
            self._set_term(visit, term, engine)
        visit["CDSIPs"] = tr.cut_at(tr.cds_add_unique(visit["CDSIPs"] or b"", line["IP"]), 250)
        if tr.TS_DiffSecs(visit["EndTimeStamp"] or 0, line["Timestamp"]) > 0:
            visit["EndTimeStamp"] = line["Timestamp"]
        visit["Files"] = (visit["Files"] or 0) + 1
        over = self.limit >= 1 and visit["Files"] > self.limit
        self.store.give_visit(line, OVER_LIMIT if over else visit["VisitID"])

    @staticmethod
    def _set_term(visit, term, engine):
        standard, altered = names.ST_Std(term)
        if not standard:
            return
        visit["StzdSearchTerm"] = tr.cut_at(standard, 250)
        if altered != standard:
            visit["SearchTerm"] = tr.cut_at(altered, 250)
        visit["SearchEngine"] = tr.cut_at(engine, 150)
