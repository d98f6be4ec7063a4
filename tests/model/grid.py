"""A report: columns, value lines, the rest and total lines, distribution texts, and the grid as CSV."""

import textrules as tr

REST = b".. Rest .."
TOTAL = b".. Total .."
NOT_APPLICABLE = b"na"
PLACE = 32767
DISTRIBUTION_LIMIT = 600
CRLF = b"\r\n"
FIELDS = {
    1: ("Search Term", "First Page (Found)", "Srch Engine"),
    2: ("Page Found", "Search Term", "Srch Engine"),
    3: ("Search Term // Page Found", "", "Srch Engine"),
    4: ("Exit Page", "Search Term", "Srch Engine"),
    5: ("Visited Pages in sequence", "Search Term", "Srch Engine"),
    6: ("Visted Page", "Search Term", "Srch Engine"),
    7: ("Visted Dir (any Page in folder)", "Search Term", "Srch Engine"),
    8: ("Referrer (NonSE)", "First Page (Found)", "Srch Engine"),
    11: ("Srch Engine", "First Page (Found)", "Search Term"),
    12: ("Search Term Words n Phrases [up to 7 words]", "First Page (Found)", "Search Term"),
    13: ("Search Term Phrases [2 or more words]", "First Page (Found)", "Search Term"),
    14: ("Search Term Phrases [3 or more words]", "First Page (Found)", "Search Term"),
    15: ("Search Term Wordss [single words from all keywords]", "First Page (Found)", "Search Term"),
}
FIELDS.update({n + 14: ("%d-word Search Term Phrases" % n, "First Page (Found)", "Search Term") for n in range(2, 8)})
FILE_TYPE_FIELDS = (2, 3, 4, 6)
GROUPS_WITHOUT_REST = 8


def percent(part, base, decimals):
    return tr.format_number(part * 100 / base, decimals) + b" %" if base else NOT_APPLICABLE


def top_indexes(counts, wanted):
    """Indexes of the highest counts. Among equal counts a later index comes first: the sorted list is read from its
    end. None when the values at the cut do not fit into the list."""
    indexes = range(len(counts))
    if len(counts) > PLACE:
        lowest, reached = None, 0
        for count in sorted(set(counts), reverse=True):
            lowest, reached = count, reached + counts.count(count)
            if reached >= wanted:
                break
        indexes = [i for i in indexes if counts[i] >= lowest]
        if len(indexes) > PLACE:
            return None
    return sorted(indexes, key=lambda i: (counts[i], i), reverse=True)[:wanted]


def distribution_text(distribution, pairs, visitors):
    """Pairs of label index and count, the highest count first, until the text is longer than its limit."""
    pairs = sorted(pairs, key=lambda pair: (pair[1], pair[0]), reverse=True)
    text = b""
    for number, (label, count) in enumerate(pairs, 1):
        share = tr.format_number(count / visitors * 100, 0) + b"%" if visitors else NOT_APPLICABLE
        text += distribution.labels[label] + b" %d [" % count + share + b"]" + CRLF
        if len(text) > DISTRIBUTION_LIMIT:
            return text + CRLF + b"..." if number < len(pairs) else text
    return text


class Grid:
    """`lines` holds label, users and value indexes of each line in the order they were drawn, the total's last."""

    def __init__(self, results, options, deviation=None):
        self.results = results
        self.field = options.field
        self.deviation = deviation
        self.targets = options.targets
        name, alternate, first = (text.encode() for text in FIELDS[self.field])
        self.header = [name, b"Visitors (Users)", b"Stayed", b"stay %", b"Avg htm pages", b"% of Ttl Visitors"]
        for target in self.targets:
            self.header += [target.label(), b"% of total", b"% of stays", b""]
        self.distributions = []
        for wanted, title, table in ((options.dist1, first, "first"), (options.dist2, alternate, "alternate"),
                                     (options.click_through, b"Surf thru to page", "click_through")):
            if wanted:
                self.header.append(title)
                distribution = getattr(results, table) if results else None
                self.distributions.append((distribution, distribution.of_rows() if results else {}))
        self.has_type = self.field in FILE_TYPE_FIELDS
        if self.has_type:
            self.header.append(b"File Type")
        self.header += deviation.headers() if deviation else []
        self.rows, self.lines = [], []

    def draw(self, kind, wanted, groups=()):
        results = self.results
        if results is None or len(results.values) == 1:
            return
        if kind == "grouped":
            self._draw_groups(groups)
        else:
            self._draw_values(kind, wanted)
        self._add_total()

    def _draw_values(self, kind, wanted):
        everything = range(len(self.results.values))
        chosen = everything if kind == "all" else top_indexes(self.results.visitors, wanted)
        if chosen is None:
            return
        chosen = set(chosen)
        self._add_rest([self._value_line(i) for i in everything if i in chosen],
                       [i for i in everything if i not in chosen])

    def _draw_groups(self, groups):
        """A value can be in several groups; listed twice in one it counts once. What is in none stands below: referrers
        one by one, others in one line."""
        index = {}
        for i, value in enumerate(self.results.values):
            index.setdefault(value, i)
        grouped, rows = set(), []
        for name, members in groups:
            members = dict.fromkeys(members + [b".. Grouped: " + name])
            indexes = [index[member] for member in members if member in index]
            rows.append(self._sum_line(name, members, indexes))
            grouped.update(indexes)
        others = [i for i in range(len(self.results.values)) if i not in grouped]
        if self.field != GROUPS_WITHOUT_REST:
            return self._add_rest(rows, others)
        self._add_rest(rows, [])
        self.rows += [self._value_line(i) for i in others]

    def _add_rest(self, rows, rest):
        self.rows = sorted(rows, key=lambda line: -int(line[1]))
        if rest:
            self.rows.append(self._sum_line(REST, {self.results.values[i] for i in rest}, rest))

    @staticmethod
    def _counts(label, visitors, stayed, pages):
        average = tr.format_number(pages / stayed, 1) if stayed else NOT_APPLICABLE
        return [label, b"%d" % visitors, b"%d" % stayed, percent(stayed, visitors, 0), average, b""]

    @staticmethod
    def _target_cells(reached, visitors, stayed):
        cells = []
        for count in reached:
            cells += [b"%d" % count, percent(count, visitors, 0), percent(count, stayed, 0), b""]
        return cells

    def _value_line(self, i):
        results = self.results
        visitors, stayed = results.visitors[i], results.stayed[i]
        self.lines.append((results.values[i], visitors, [i]))
        line = self._counts(results.values[i], visitors, stayed, results.pages[i])
        line += self._target_cells([counts[i] for counts in results.reached], visitors, stayed)
        for distribution, rows in self.distributions:
            line.append(distribution_text(distribution, rows.get(i, []), visitors))
        if self.has_type:
            line.append(tr.fTypeOf(results.values[i]))
        return line + (self.deviation.cells(visitors, results.series[0][i]) if self.deviation else [])

    def _sum_line(self, label, texts, indexes):
        """Values are summed by their text, so the empty text takes every row of that text along."""
        results = self.results
        members = [i for i, value in enumerate(results.values) if value in texts]
        visitors, stayed, pages = (sum(counter[i] for i in members)
                                   for counter in (results.visitors, results.stayed, results.pages))
        self.lines.append((label, visitors, indexes))
        line = self._counts(label, visitors, stayed, pages)
        line += self._target_cells([sum(counts[i] for i in members) for counts in results.reached], visitors, stayed)
        for distribution, rows in self.distributions:
            sums = {}
            for i in members:
                for number, count in rows.get(i, []):
                    sums[number] = sums.get(number, 0) + count
            line.append(distribution_text(distribution, list(sums.items()), visitors))
        return line + [b""] * (len(self.header) - len(line))

    def _add_total(self):
        """Summed as displayed: the total average is made of the lines' rounded averages."""
        shown = self.rows[:PLACE]
        visitors, stayed = (sum(int(line[column]) for line in shown) for column in (1, 2))
        pages = sum(tr.fNum(line[4]) for line in shown)
        reached = [sum(int(line[column]) for line in shown) for column in range(6, 6 + 4 * len(self.targets), 4)]
        for line in self.rows:
            line[5] = percent(int(line[1]), visitors, 1)
        width = len(self.header)
        total = self._counts(TOTAL, visitors, stayed, pages) + self._target_cells(reached, visitors, stayed)
        self.rows += [[b""] * width, total + [b""] * (width - len(total))]
        self.lines.append((TOTAL, visitors, [i for _, _, indexes in self.lines for i in indexes]))

    def value_lines(self):
        """Label and users of the lines above the rest and the total."""
        return [(line[0], int(line[1])) for line in self.rows if line[0] not in (REST, TOTAL) and line[1]]

    def csv(self):
        return write_csv([self.header] + self.rows)


def write_csv(lines):
    return b"".join(b",".join(map(_cell, line)) + CRLF for line in lines)


def _cell(text):
    if any(c in text for c in (b'"', b",", b"\r", b"\n")):
        return b'"' + text.replace(b'"', b'""') + b'"'
    return text
