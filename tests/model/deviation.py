"""The 26 deviation columns: recent days, months and years of a value against each other."""

import textrules as tr

DAYS_DEFAULT = 5
MISSING = b"*** not found ***"
NONE = b"none"
LONGEST_STEP = 27  # no month has fewer than 28 days

# Period of users per day and its header, or the two periods of a percent column and its header; then the periods that
# must exist, and the header that stands where they do not. N is the number of days of the first period.
COLUMNS = [
    ("Last", None, b"last N d. avg users per day", "", b""),
    ("Last", "All", b"+/- all days", "", b""),
    ("Last", "Rest", b"+/- rest days", "", b""),
    ("Last", "Prev", b"+/- prev P days", "Prev", b""),
    ("Prev", None, b"prev N d. avg users per day", "Prev", b"no prev days data"),
    ("Prev", "All", b"+/- all days", "Prev", b""),
    ("ThisMo", None, b"this mo N d. avg users per day", "", b""),
    ("ThisMo", "All", b"+/- all days", "", b""),
    ("ThisMo", "LastMo", b"+/- last mo", "LastMo", b""),
    ("ThisMo", "PrevMo", b"+/- prev mo", "PrevMo", b""),
    ("ThisMo", "ThisYr", b"+/- this yr", "", b""),
    ("ThisMo", "LastYr", b"+/- last yr", "LastYr", b""),
    ("LastMo", None, b"last mo. avg users per day", "LastMo", b"no last mo. data"),
    ("LastMo", "All", b"+/- all days", "LastMo", b""),
    ("LastMo", "PrevMo", b"+/- prev mo", "LastMo PrevMo", b""),
    ("LastMo", "ThisYr", b"+/- this yr", "LastMo", b""),
    ("LastMo", "LastYr", b"+/- last yr", "LastMo LastYr", b""),
    ("PrevMo", None, b"prev mo. avg users per day", "PrevMo", b"no prev mo. data"),
    ("PrevMo", "All", b"+/- all days", "PrevMo", b""),
    ("PrevMo", "LastYr", b"+/- last yr", "PrevMo LastYr", b""),
    ("ThisYr", None, b"this yr.N d. avg users per day", "", b""),
    ("ThisYr", "All", b"+/- all days", "", b""),
    ("ThisYr", "LastYr", b"+/- last yr", "LastYr", b""),
    ("LastYr", None, b"last yr. avg users per day", "LastYr", b"no last yr. data"),
    ("LastYr", "All", b"+/- all days", "LastYr", b""),
    ("All", None, b"all days. avg users per day", "", b""),
]


class Settings:
    def __init__(self, ini):
        def text(key, default=b""):
            return ini.get(b"Main", key, default)
        days = tr.to_long(tr.fNum(text(b"DevDays")))
        self.days = days if days >= 1 else DAYS_DEFAULT
        self.users_format = self._format(text(b"DevFmtVD", MISSING), b"#,###,##0.00")
        self.percent_format = self._format(text(b"DevFmtPct", MISSING), b"0")
        self.no_users = text(b"DevTxtNoneVD")
        self.no_change = text(b"DevTxtNonePct")
        self.from_nothing = text(b"DevTxtFrom0Pct")

    @staticmethod
    def _format(text, default):
        return default if text in (b"", MISSING) else text


class Deviation:
    """`first_day` is the day number of index 0 of the days, `count` how many there are."""

    def __init__(self, first_day, count, settings):
        self.settings = settings
        self.count = count
        self.dates = [tr.civil_from_days(first_day + i) for i in range(count)]
        self.periods = self._make_periods(count - 1)

    def _make_periods(self, last):
        """Name to (first index, last index); a last index below 0 means that there is no such period."""
        days = self.settings.days
        recent = max(0, last - days + 1)
        this_month = max(0, last + 1 - self.dates[last][2])
        last_month = self._month_start(this_month - 1)
        this_year = self._year_start(last)
        return {"Last": (recent, last), "Prev": (max(0, recent - days), recent - 1),
                "ThisMo": (this_month, last), "LastMo": (last_month, this_month - 1),
                "PrevMo": (self._month_start(last_month - 1), last_month - 1),
                "ThisYr": (this_year, last), "LastYr": (self._month_start(this_year - 1), this_year - 1)}

    def _month_start(self, index):
        """The first of a month at least 27 days back."""
        for i in range(index - LONGEST_STEP, -1, -1):
            if self.dates[i][2] == 1:
                return i
        return 0

    def _year_start(self, index):
        while True:
            start = self._month_start(index)
            if start == 0 or self.dates[start][1] == 1:
                return start
            index = start - 1

    def _length(self, period):
        if period == "All":
            return self.count
        first, last = self.periods[period]
        return last + 1 - first

    def _exists(self, needed):
        return all(self.periods[period][1] >= 0 for period in needed.split())

    def headers(self):
        made = []
        for period, other, header, needed, without in COLUMNS:
            if not self._exists(needed):
                made.append(without)
                continue
            header = header.replace(b"N", b"%d" % self._length(period))
            made.append(header.replace(b"P", b"%d" % self._length("Prev")) if other == "Prev" else header)
        return made

    def cells(self, visitors, daily):
        """Of a value with so many visitors in all, and by day index."""
        users = {period: self._sum(period, daily) for period in self.periods}
        rates = {period: users[period] / self._length(period) if self._exists(period) else 0.0 for period in users}
        others = self.count - self._length("Last")
        rates["All"] = visitors / self.count
        rates["Rest"] = (visitors - users["Last"]) / others if others else 0.0
        made = []
        for period, other, _, needed, _ in COLUMNS:
            if not self._exists(needed):
                made.append(b"")
            elif other is None:
                made.append(self._users(rates[period], NONE if period == "All" else self.settings.no_users))
            else:
                made.append(self._percent(rates[period], rates[other]))
        return made

    def _sum(self, period, daily):
        first, last = self.periods[period]
        return sum(users for day, users in daily.items() if first <= day <= last)

    def _users(self, rate, nothing):
        return tr.format_pattern(rate, self.settings.users_format) if rate else nothing

    def _percent(self, x, y):
        if y == 0 and x > 0:
            return self.settings.from_nothing
        text = self.settings.no_change if y == 0 else tr.format_pattern((x - y) * 100 / y, self.settings.percent_format)
        if not text:
            return b""
        return (b"+" if x > y else b"") + text + b" %"
