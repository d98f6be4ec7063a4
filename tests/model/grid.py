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
    def __init__(self, results, options):
        self.results = results
        self.field = options.field
        name, alternate, first = (text.encode() for text in FIELDS[self.field])
        self.header = [name, b"Visitors (Users)", b"Stayed", b"stay %", b"Avg htm pages", b"% of Ttl Visitors"]
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
        self.rows = []

    def draw(self, kind, wanted):
        results = self.results
        if results is None or len(results.values) == 1:
            return
        everything = range(len(results.values))
        chosen = everything if kind == "all" else top_indexes(results.visitors, wanted)
        if chosen is None:
            return
        chosen = set(chosen)
        lines = [self._value_line(i) for i in everything if i in chosen]
        self.rows = sorted(lines, key=lambda line: -int(line[1]))
        rest = [i for i in everything if i not in chosen]
        if rest:
            self.rows.append(self._rest_line(rest))
        self._add_total()

    def _counts(self, label, visitors, stayed, pages):
        average = tr.format_number(pages / stayed, 1) if stayed else NOT_APPLICABLE
        return [label, b"%d" % visitors, b"%d" % stayed, percent(stayed, visitors, 0), average, b""]

    def _value_line(self, i):
        results = self.results
        line = self._counts(results.values[i], results.visitors[i], results.stayed[i], results.pages[i])
        for distribution, rows in self.distributions:
            line.append(distribution_text(distribution, rows.get(i, []), results.visitors[i]))
        if self.has_type:
            line.append(tr.fTypeOf(results.values[i]))
        return line

    def _rest_line(self, rest):
        """Values are summed by their text, so the empty text takes every row of that text along."""
        texts = {self.results.values[i] for i in rest}
        members = [i for i, value in enumerate(self.results.values) if value in texts]
        visitors = sum(self.results.visitors[i] for i in members)
        line = self._counts(REST, visitors, sum(self.results.stayed[i] for i in members),
                            sum(self.results.pages[i] for i in members))
        for distribution, rows in self.distributions:
            sums = {}
            for i in members:
                for label, count in rows.get(i, []):
                    sums[label] = sums.get(label, 0) + count
            line.append(distribution_text(distribution, list(sums.items()), visitors))
        return line + [b""] * self.has_type

    def _add_total(self):
        """Summed as displayed: the total average is made of the lines' rounded averages."""
        visitors = stayed = 0
        pages = 0.0
        for line in self.rows[:PLACE]:
            visitors += int(line[1])
            stayed += int(line[2])
            pages += tr.fNum(line[4])
        for line in self.rows:
            line[5] = percent(int(line[1]), visitors, 1)
        width = len(self.header)
        total = self._counts(TOTAL, visitors, stayed, pages)
        self.rows += [[b""] * width, total + [b""] * (width - len(total))]

    def csv(self):
        return b"".join(b",".join(map(_cell, line)) + CRLF for line in [self.header] + self.rows)


def _cell(text):
    if any(c in text for c in (b'"', b",", b"\r", b"\n")):
        return b'"' + text.replace(b'"', b'""') + b'"'
    return text
