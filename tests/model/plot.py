"""The chart of one line of a report: users, those who stayed and those at each target in each period."""

import textrules as tr

MOST_PERIODS = 55
SERIES = 7
LIST_LIMIT = 400
CRLF = b"\r\n"
REMOVED = b" .. removed .."
HINT = b"  [Use menu item Analysis Options - Targets to Analyse [Optional] to define target(s)]"
CAPTIONS = {0: b"Users", 1: b"Pct. of total", 2: b"Pct. stayed"}


class Settings:
    def __init__(self, ini, wanted):
        days = wanted.get("period") or tr.to_long(tr.fNum(ini.get(b"Main", b"DaysToPlot")))
        self.days = max(1, days)
        self.percent = wanted.get("percent", False)
        self.removed = wanted.get("remove", 0)
        self.date_labels = ini.get_bool(b"Main", b"ColTitDt")
        self.number_labels = ini.get_bool(b"Main", b"ColTitNum")


class Chart:
    def __init__(self, results, grid, line, settings):
        self.results, self.settings = results, settings
        self.field_name = grid.header[0]
        self.line = line
        self.indexes = next(indexes for label, _, indexes in grid.lines if label == line)
        self.period = self._period_length()
        self.rows = []
        self.highest = [0] * SERIES
        for first, end in self._periods():
            self._close(first, end)
        self.headers = [self._header(c) for c in range(1, SERIES + 1)]
        self._finish()

    def _period_length(self):
        span = self.results.days - 1
        if span / self.settings.days > MOST_PERIODS:
            return round(span / MOST_PERIODS)  # half to even
        return self.settings.days

    def _periods(self):
        """(first index, index behind the last)."""
        starts = list(range(0, self.results.days, self.period))
        return zip(starts, starts[1:] + [self.results.days])

    def _close(self, first, end):
        values = [None] * SERIES
        for number, series in enumerate(self.results.series):
            values[number] = sum(count for i in self.indexes for day, count in series[i].items() if first <= day < end)
            self.highest[number] = max(self.highest[number], values[number])
        day, days = self.results.first_day + first, end - first
        short = b" /%dd." % days if days < self.period else b""
        label = tr.day_month(day) + b" [%d" % values[0] + short + b"]"
        exact = b" %d d. from " % days + label + b" %04d" % tr.civil_from_days(day)[0]
        if self.settings.date_labels:
            label = tr.day_month(day)
        elif self.settings.number_labels:
            label = b" %d" % (len(self.rows) + 1)
        self.rows.append({"label": label, "from": day, "exact": exact, "values": values})

    def _finish(self):
        removed = self.settings.removed
        if not removed:
            return
        for row in self.rows:
            values = row["values"]
            base = values[removed - 1]
            if self.settings.percent and base:
                values[removed:] = [None if value is None else value / base * 100 for value in values[removed:]]
            values[:removed] = [0] * removed
        highest = max([0] + self.highest[removed:SERIES - 1])
        if highest < 20 and removed < SERIES:  # the helper itself may be removed
            self.rows[-1]["values"][SERIES - 1] = 10 if highest < 10 else 20

    def _caption(self):
        removed = self.settings.removed if self.settings.percent else 0
        return CAPTIONS.get(removed, b"Pct. users at target %d also" % (removed - 2))

    def _header(self, column):
        if column <= self.settings.removed:
            return REMOVED
        if column == 1:
            return b"Total Users for selected (group of) " + self.field_name + b"s"
        if column == 2:
            return self._caption() + b" who Stayed on site - surfed to other pages"
        if column - 3 < len(self.results.targets) and column < SERIES:
            return self._caption() + b" got to TARGET: " + self.results.targets[column - 3].label()
        return HINT if column == SERIES - 1 else b" "

    def description(self):
        head = b""
        if self.settings.percent:
            head = b"" if self.settings.removed else b"Remove totals column to plot "
            head += b"PERCENTAGES of last col removed" + CRLF * 2
        head += self.field_name
        if len(self.indexes) > 1:
            values = b", ".join(self.results.values[i] for i in self.indexes)
            values = values if len(values) <= LIST_LIMIT else tr.cut_at(values, LIST_LIMIT) + b".."
            head += b" Group: " + CRLF + self.line + CRLF * 2 + b"%d" % len(self.indexes) + b" Grouped Vals Incl:"
            head += CRLF + values
        else:
            head += b": " + CRLF + self.line
        return head + CRLF * 2 + b"Plotted: %d day periods." % self.period

    def as_json(self):
        def text(words):
            return words.decode("utf-8", "surrogateescape")
        rows = [{"label": text(row["label"]), "from": "%04d-%02d-%02d" % tr.civil_from_days(row["from"]),
                 "exact": text(row["exact"]), "values": row["values"]} for row in self.rows]
        return {"line": text(self.line), "period": self.period, "description": text(self.description()),
                "series": [text(header) for header in self.headers], "rows": rows}
