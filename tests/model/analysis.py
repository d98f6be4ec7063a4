"""One analysis: all visits of a date range in order of their start, counted per value of the chosen field."""

import names
import targets as tg
import textrules as tr
import words

# The visit that opens a row after rarer sightings is credited with all of them, in the visitors of the row and of its
# distributions. What it did on the site counts once.
THRESHOLD_KEYS = {1: (b"ThresholdST", 4), 2: (b"ThresholdPg", 2), 3: (b"ThresholdSTPg", 2), 4: (b"ThresholdPg", 2),
                  5: (b"ThresholdTrk", 4), 6: (b"ThresholdPg", 2), 7: (b"ThresholdPg", 2)}
THRESHOLD_KEYS.update({field: (b"ThresholdWrd", 4) for field in range(12, 22)})
NO_PAGES = b"No pages requested of selected types"
ONLY_SKIPPED = b"Only Skipped File Types"
CRLF = b"\r\n"


class Distribution:
    def __init__(self):
        self.labels = []
        self.index = {}
        self.cells = {}

    def add(self, row, label, count):
        if label not in self.index:
            self.index[label] = len(self.labels)
            self.labels.append(label)
        key = (row, self.index[label])
        self.cells[key] = self.cells.get(key, 0) + count

    def of_rows(self):
        """Per row, its (label index, count) pairs by label index."""
        rows = {}
        for (row, label), count in sorted(self.cells.items()):
            rows.setdefault(row, []).append((label, count))
        return rows


class Results:
    """Rows count from 1; element 0 stays empty. A series is the users, those who stayed, or those at a target: for each
    row its counts by the index of the day."""

    def __init__(self, targets, first_day, days):
        self.targets, self.first_day, self.days = targets, first_day, days
        self.values = [b""]
        self.visitors, self.stayed, self.pages = [0], [0], [0]
        self.reached = [[0] for _ in targets]
        self.series = [[{}] for _ in range(2 + len(targets))]
        self.first, self.alternate, self.click_through = Distribution(), Distribution(), Distribution()

    def add(self, row, value, day, count, stayed, pages, met):
        counters = [self.visitors, self.stayed, self.pages, *self.reached]
        if row < 0:
            row = len(self.values)
            self.values.append(value)
            for counter in counters:
                counter.append(0)
            for series in self.series:
                series.append({})
        for counter, more in zip(counters, [count, stayed, pages, *met]):
            counter[row] += more
        for series, more in zip(self.series, [count, stayed, *met]):
            if more:
                series[row][day] = series[row].get(day, 0) + more
        return row


class Threshold:
    """Keeps rare values out: a value gets its row at its (limit + 1)th sighting, credited with all of them."""

    def __init__(self, limit):
        self.limit = limit
        self.known = set()
        self.counts = {}

    def sight(self, value):
        """(credit, row), row -1 for a new one; None while the value is too rare."""
        if value not in self.known:
            self.known.add(value)
            if self.limit > 0:
                return None
        if value not in self.counts:
            seen = 1 if self.limit != 0 else 0
        elif self.counts[value] < 0:
            return 1, -self.counts[value]
        else:
            seen = self.counts[value] + 1
        if seen >= self.limit:
            return seen + 1, -1
        self.counts[value] = seen
        return None

    def has_row(self, value, row):
        self.counts[value] = -row


# ---- the run -----------------------------------------------------------------------------------------------------

def normal_types(text):
    text = tr.trim(text)
    text = text if text.startswith(b"|") else b"|" + text
    return tr.lower(text if text.endswith(b"|") else text + b"|")


class Options:
    def __init__(self, report, last_values, targets_ini):
        main = b"Main"
        self.field = report["field"]
        self.not_search = report.get("not_search", False)
        self.dist1 = report.get("dist1", False)
        self.dist2 = report.get("dist2", False)
        self.click_through = report.get("click_through", False) and self.field != 6
        self.sep_query = report.get("sep_query", False)
        self.sep_frag = report.get("sep_frag", False)
        self.range = (report.get("from"), report.get("to"))
        self.targets = tg.load(last_values, targets_ini, report.get("targets", False))
        skip_types = normal_types(last_values.get(main, b"CDSNoCntSurfToFileTypes"))
        self.skip_types = tg.without_target_types(skip_types, self.targets)
        self.count_types = normal_types(last_values.get(main, b"CDSCntAsPageForAvgPages"))
        self.threshold = self._threshold(report.get("threshold"), last_values)

    def _threshold(self, given, last_values):
        if self.field not in THRESHOLD_KEYS:
            return 0
        key, default = THRESHOLD_KEYS[self.field]
        if given is None:
            text = last_values.get(b"Main", key)
            given = tr.to_long(tr.fNum(text)) if text else default
        return given - 1


class Analysis:
    def __init__(self, store, options, area_pages=None):
        self.store = store
        self.options = options
        self.area = area_pages
        self._shown = {}

    def run(self):
        """The results, or None when the range holds no visit."""
        visits = self.store.visits_by_start()
        if visits:
            first, last = self._stamps(visits)
            visits = [visit for visit in visits if first <= visit["StartTimeStamp"] <= last]
        if not visits:
            return None
        first_day = max(first // 1000000, visits[0]["StartTimeStamp"] // 1000000)
        last_day = min(last // 1000000, visits[-1]["EndTimeStamp"] // 1000000)
        first_day, last_day = tr.day_of_date(first_day), tr.day_of_date(last_day)
        self.results = Results(self.options.targets, first_day, last_day - first_day + 1)
        self.threshold = Threshold(self.options.threshold)
        for visit in visits:
            self._visit(visit)
        return self.results

    def _stamps(self, visits):
        first, last = self.options.range
        first = int(first.replace("-", "")) if first else visits[0]["StartTimeStamp"] // 1000000
        last = int(last.replace("-", "")) if last else visits[-1]["EndTimeStamp"] // 1000000
        return first * 1000000, last * 1000000 + 999999

    def _visit(self, visit):
        if not self.options.not_search and not visit["StzdSearchTerm"]:
            return
        pages = self.store.clicked_pages(visit)
        if self.area is not None and not self.area & set(pages + [visit["StartPageID"]]):
            return
        start, further, count = self._pages_of(visit, pages)
        values, alternate, first, further = self._values(visit, start, further)
        stayed = 1 if count > 0 else 0
        day = tr.day_of_date(visit["StartTimeStamp"] // 1000000) - self.results.first_day
        met = self._met(visit, pages)
        for value in values:
            kept = self.threshold.sight(value)
            if kept is None:
                continue
            credit, row = kept
            new = row < 0
            row = self.results.add(row, value, day, credit, stayed, count, met)
            if new:
                self.threshold.has_row(value, row)
            if self.options.dist1:
                self.results.first.add(row, first, credit)
            if self.options.dist2 and alternate:
                self.results.alternate.add(row, alternate, credit)
            if self.options.click_through:
                for name in further:
                    self.results.click_through.add(row, name, credit)

    def _met(self, visit, pages):
        if not self.options.targets:
            return []
        names_of = [self.store.pages[page] if 0 <= page < len(self.store.pages) else b"" for page in pages]
        visited = list(zip(names_of, self.store.clicked_bytes(visit)))
        return [int(target.met(visited)) for target in self.options.targets]

    # ---- pages of a visit ----

    def _show_name(self, page):
        if page not in self._shown:
            self._shown[page] = self._make_name(page)
        return self._shown[page]

    def _make_name(self, page):
        if page != 0 and page >= len(self.store.pages):
            return names.NO_PAGE
        name = self.store.pages[page]
        if name in (b"", b"/"):
            return names.ROOT
        if self.options.sep_frag and self.options.sep_query:
            return name
        name = names.Page_StripParts(name, not self.options.sep_frag, not self.options.sep_query)
        return names.ROOT if name in (b"", b"/") else name

    @staticmethod
    def _has_type(name, types):
        return b"|" + tr.lower(tr.fTypeOf(name)) + b"|" in types

    def _counts(self, name):
        if name == names.NO_PAGE:
            return False
        return name == names.ROOT or not self._has_type(name, self.options.skip_types)

    def _pages_of(self, visit, pages):
        """Start, the names of the further pages, and how many of them count for the average."""
        start = self._show_name(visit["StartPageID"])
        if not self._counts(start):
            start = b""
        further, count = [], 0
        for page in pages:
            name = self._show_name(page)
            if page == visit["StartPageID"] or not self._counts(name):
                continue
            if not start:
                start = name
                continue
            words.add_unique(further, name)
            count += self._has_type(name, self.options.count_types)
        return start or NO_PAGES, further, count

    # ---- values ----

    def _values(self, visit, start, further):
        """Values, alternate, first distribution, and the further pages for the click-through column."""
        label = visit["StzdSearchTerm"] or names.NOT_SEARCH_ENGINE
        engine = visit["SearchEngine"] or names.NOT_SEARCH_ENGINE
        field = self.options.field
        if field == 1:
            return [label], start, engine, further
        if field == 2:
            return [start], label, engine, further
        if field == 3:
            return [label + b" - " + start], b"", engine, further
        if field == 4:
            if not further:
                return [start], label, engine, further
            # The click-through column of an exit page shows what led to it.
            led = further[:-1] + ([start] if start not in further[:-1] else [])
            return further[-1:], label, engine, led
        if field == 8:
            return [self._referrer_label(visit)], b"", engine, further
        if field == 11:
            return [engine], start, label, further
        if field >= 12:
            return self._phrases(visit, field), start, label, further
        return self._page_values(start, further), label, engine, further

    def _phrases(self, visit, field):
        return words.cut_term(visit["StzdSearchTerm"], field) if visit["StzdSearchTerm"] else []

    def _page_values(self, start, further):
        shown = ([] if start == NO_PAGES else [start]) + further
        if self.options.field == 5:
            return [b"".join(name + CRLF for name in shown) or ONLY_SKIPPED]
        values = []
        for name in shown:
            words.add_unique(values, name if self.options.field == 6 else tr.fPathOf(name) or b"/")
        return values

    def _referrer_label(self, visit):
        if visit["NONSERefr"]:
            return visit["NONSERefr"].replace(b"-*-", b"|")
        if visit["SearchEngine"]:
            return visit["SearchEngine"]
        if self.store.keep:
            for line in self.store.lines_of(visit["VisitID"]):
                host = names.referrer_host(line["Referrer"])
                if host:
                    return host
        return names.UNKNOWN_REFERRER
