"""The four tables of a site in memory, with the searches that reading, visit building and reports need."""

import textrules as tr
import names

LINE_TEXTS = [("Query", 4, 200), ("Browser2", 6, 100), ("UserNo", 8, 100), ("VirtualHost", 9, 100),
              ("HTTPStatus", 24, 100), ("CodeWordsHTTP", 25, 100), ("Filename", 3, 253), ("Browser", 5, 253),
              ("Referrer", 7, 253)]
LINE_NUMBERS = [("numIP", 2), ("ProcTimeMicroSecs", 23)]
KEEP_FIELDS = ["LogLnID", "VisitID", "numIP", "PageID", "Bytes", "ProcTimeMicroSecs", "CntDupes", "Timestamp", "IP",
               "Query", "Browser2", "UserNo", "VirtualHost", "HTTPStatus", "CodeWordsHTTP", "Filename", "Browser",
               "Referrer"]
NOKEEP_FIELDS = ["LogLnID", "VisitID", "IP", "PageID", "Timestamp", "Bytes", "CntDupes"]
PAGE_FIELDS = ["PageID", "Filename"]
VISIT_FIELDS = ["VisitID", "StartPageID", "StartLogLnID", "Files", "StartTimeStamp", "EndTimeStamp", "FirstIP",
                "CDSIPs", "SearchTerm", "StzdSearchTerm", "SearchEngine", "CDSClickFurtherPageIDs",
                "CDSBytesClickFurtherPageIDs", "NONSERefr"]
VISITPAGES_FIELDS = ["visitID", "CDSClickFurtherPageIDs", "CDSBytesClickFurtherPageIDs"]
CLICK_LIMIT = 253
OVERFLOW = b"||"


def kept_values(fields):
    """The extra columns of a line, as they are stored and compared."""
    row = {name: tr.to_long(tr.fNum(fields[number])) for name, number in LINE_NUMBERS}
    row.update({name: tr.fLeft(fields[number], width) for name, number, width in LINE_TEXTS})
    return row


class Store:
    def __init__(self, keep):
        self.keep = keep
        self.lines = {}
        self.pages = [b""]
        self.page_ids = {b"": 0}
        self.visits = {}
        self.visit_pages = []
        self.waiting_referrers = {}
        self.last_line = -1
        self.last_visit = -1
        self._lines_at = {}
        self._lines_of = {}
        self._visits_from = {}

    # ---- pages ----

    def Page_FindOrAdd(self, name, add):
        name = names.Page_NameStd(name)
        if name in self.page_ids:
            return self.page_ids[name]
        if not add:
            return -1
        self.pages.append(name)
        self.page_ids[name] = len(self.pages) - 1
        return self.page_ids[name]

    # ---- lines ----

    def add_line(self, row, referrer):
        self.last_line += 1
        row["LogLnID"], row["VisitID"], row["CntDupes"] = self.last_line, None, 0
        self.lines[self.last_line] = row
        self._lines_at.setdefault((row["IP"], row["Timestamp"]), []).append(row)
        if referrer is not None:
            self.waiting_referrers[self.last_line] = referrer

    def lines_at(self, address, stamp):
        return self._lines_at.get((address, stamp), [])

    def any_between(self, first, last):
        return any(first <= row["Timestamp"] <= last for row in self.lines.values())

    def lines_without_visit(self):
        rows = [row for row in self.lines.values() if row["VisitID"] is None]
        return sorted(rows, key=lambda row: (row["IP"] + b"%d" % row["LogLnID"], row["LogLnID"]))

    def give_visit(self, row, visit_id):
        row["VisitID"] = visit_id
        self._lines_of.setdefault(visit_id, []).append(row)

    def lines_of(self, visit_id):
        return sorted(self._lines_of.get(visit_id, []), key=lambda row: (row["Timestamp"], row["LogLnID"]))

    def delete_lines_of(self, visit_id):
        rows = self._lines_of.pop(visit_id, [])
        for row in rows:
            del self.lines[row["LogLnID"]]
            self._lines_at[(row["IP"], row["Timestamp"])].remove(row)
        return len(rows)

    # ---- visits ----

    def add_visit(self, address):
        self.last_visit += 1
        visit = dict.fromkeys(VISIT_FIELDS)
        visit["VisitID"] = self.last_visit
        self.visits[self.last_visit] = visit
        self._visits_from.setdefault(address, []).append(visit)
        return visit

    def visits_from(self, address):
        return self._visits_from.get(address, [])

    def visits_by_start(self):
        return sorted(self.visits.values(), key=lambda visit: (visit["StartTimeStamp"], visit["VisitID"]))

    def delete_visit(self, visit):
        self.delete_lines_of(visit["VisitID"])
        self._delete_visit_pages(visit["VisitID"])
        del self.visits[visit["VisitID"]]
        self._visits_from[visit["FirstIP"]].remove(visit)

    # ---- clicks ----

    def _delete_visit_pages(self, visit_id):
        self.visit_pages = [row for row in self.visit_pages if row["visitID"] != visit_id]

    def _list_clicks(self, visit_id):
        """Each page but the root once, in order of its first request, and the bytes of each."""
        order, totals, position = [], [], -1
        for row in self.lines_of(visit_id):
            if row["PageID"] != 0:
                if row["PageID"] not in order:
                    order.append(row["PageID"])
                    totals.append(0)
                position = order.index(row["PageID"])
                totals[position] += row["Bytes"]
            # Repeated lines of the root are credited to the page remembered last; before any page they are dropped.
            if row["CntDupes"] > 0 and position >= 0:
                totals[position] += row["Bytes"] * row["CntDupes"]
        return [b"%d" % page for page in order], [tr.plain_number(total) for total in totals]

    def store_clicks(self, visit):
        pages, totals = self._list_clicks(visit["VisitID"])
        page_text, byte_text = b"|".join(pages), b"|".join(totals)
        if len(page_text) > CLICK_LIMIT or len(byte_text) > CLICK_LIMIT:
            self._store_overflow(visit["VisitID"], pages, totals)
            page_text, byte_text = OVERFLOW, b""
        visit["CDSClickFurtherPageIDs"], visit["CDSBytesClickFurtherPageIDs"] = page_text, byte_text

    def _store_overflow(self, visit_id, pages, totals):
        self._delete_visit_pages(visit_id)
        row = None
        for page, total in zip(pages, totals):
            if row is not None:
                page_text = row["CDSClickFurtherPageIDs"] + b"|" + page
                byte_text = row["CDSBytesClickFurtherPageIDs"] + b"|" + total
                if len(page_text) <= CLICK_LIMIT and len(byte_text) <= CLICK_LIMIT:
                    row["CDSClickFurtherPageIDs"], row["CDSBytesClickFurtherPageIDs"] = page_text, byte_text
                    continue
            row = {"visitID": visit_id, "CDSClickFurtherPageIDs": page, "CDSBytesClickFurtherPageIDs": total}
            self.visit_pages.append(row)

    def _clicks(self, visit, field):
        text = visit[field] or b""
        if visit["CDSClickFurtherPageIDs"] == OVERFLOW:
            text = b"|".join(row[field] for row in self.visit_pages if row["visitID"] == visit["VisitID"])
        return text.split(b"|") if text else []

    def clicked_pages(self, visit):
        return [int(tr.fNum(item)) for item in self._clicks(visit, "CDSClickFurtherPageIDs")]

    def clicked_bytes(self, visit):
        return [tr.fNum(item) for item in self._clicks(visit, "CDSBytesClickFurtherPageIDs")]
