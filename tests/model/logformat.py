"""Log formats: templates become columns of separators and field numbers, and lines are cut into fields by them."""

import textrules as tr

PLACEHOLDER_LETTERS = b"SsrqBAfuvdmMyYZhnaUbtTDcCje"
FIELD_COUNT = 59
PLACEHOLDERS = ([b"%" + bytes([c]) for c in PLACEHOLDER_LETTERS] + [b"%*" + bytes([c]) for c in PLACEHOLDER_LETTERS] +
                [b"%1", b"%2", b"%3", b"%4", b"%5"])
TOKENS = [b"%w", b"%W", b"\\n"]
ESCAPES = [(b"%%", b"%"), (b"\\t", b"\t"), (b"\\\\", b"\\")]
NO_FIELD = -1
MAX_LINE = 1048576
WHITESPACE = b" \t"
LINE_ENDS = b"\r\n"
MONTHS = [b"january", b"february", b"march", b"april", b"may", b"june", b"july", b"august", b"september", b"october",
          b"november", b"december"]


class Column:
    """The separator in front of a field and the field's number. With `tokens` the separator is a list of tokens."""

    def __init__(self, text, code):
        for find, replacement in ESCAPES:
            text = text.replace(find, replacement)
        self.code = code
        self.tokens = _tokenise(text) if any(token in text for token in TOKENS) else None
        self.text = text
        # Two percent signs at the start are taken for a reference to a token list, so such a separator never fits.
        self.misread = self.tokens is None and text.startswith(b"%%")


def _tokenise(text):
    tokens, plain, position = [], b"", 0
    while position < len(text):
        token = next((t for t in TOKENS if text.startswith(t, position)), None)
        if token is None:
            plain += text[position:position + 1]
            position += 1
            continue
        tokens += [plain, token] if plain else [token]
        plain = b""
        position += len(token)
    return tokens + [plain] if plain else tokens


def compile_spec(spec):
    columns, position = [], 0
    while True:
        found = [(spec.find(name, position), index) for index, name in enumerate(PLACEHOLDERS, 1)]
        found = [(at, -index) for at, index in found if at >= 0]
        if not found:
            break
        at, index = min(found)
        index = -index
        touching = at == position and position > 0
        columns.append(Column(b" " if touching else spec[position:at], index))
        position = at + len(PLACEHOLDERS[index - 1])
    return columns + [Column(spec[position:], NO_FIELD), Column(b"", NO_FIELD)]


def load_format(logfmts, name):
    """The compiled templates of a format, in their order. Item 0 of the stored list is not used."""
    return [compile_spec(spec) for spec in tr.cds_split(logfmts.get(name, b"DefsCDS"))[1:]]


def _next_of(line, characters, position):
    while position < len(line) and line[position] not in characters:
        position += 1
    return position if position < len(line) else -1


def _skip(line, characters, position):
    while position < len(line) and line[position] in characters:
        position += 1
    return position


_CLASSES = {b"%w": WHITESPACE, b"True": LINE_ENDS}


def _anchor(token, line, position):
    """Where the first token that is no "%W" stands, and the place behind it."""
    if token in _CLASSES:
        start = _next_of(line, _CLASSES[token], position)
        return start, _skip(line, _CLASSES[token], start + 1)
    start = line.find(token, position)
    return start, start + len(token)


def _check(token, line, position):
    if token == b"%W":
        return True, _skip(line, WHITESPACE, position)
    if token in _CLASSES:
        behind = _skip(line, _CLASSES[token], position)
        return behind > position, behind
    if line.startswith(token, position):
        return True, position + len(token)
    return False, position


def match_tokens(tokens, line, position):
    """Start and length of the separator, or None."""
    first = next((i for i, token in enumerate(tokens) if token != b"%W"), None)
    if first is None:
        return None
    while True:
        if position > len(line):
            return None
        start, position = _anchor(tokens[first], line, position)
        if start < 0:
            return None
        fits = True
        for token in tokens[first + 1:]:
            fits, position = _check(token, line, position)
            if not fits:
                break
        if fits:
            break
        position += 1
    if tokens[0] != b"%W":
        return start, position - start
    # A leading "%W" is not consumed: the next field starts at the first of the whitespace.
    if start < len(line) and line[start] in WHITESPACE:
        while start > 0 and line[start - 1] in WHITESPACE:
            start -= 1
        if start == 0:
            return None
    return start, 0


def _find(column, line, position):
    if column.misread:
        return None
    if column.tokens is not None:
        return match_tokens(column.tokens, line, position)
    at = line.find(column.text, position)
    return None if at < 0 else (at, len(column.text))


def _match_spec(columns, line):
    fields = [b""] * (FIELD_COUNT + 1)
    position = field_start = 0
    for number, column in enumerate(columns):
        found = _find(column, line, position)
        if found is None:
            return None
        position, length = found
        if position > 0:
            if number == 0:
                return None
            code = columns[number - 1].code
            if code != NO_FIELD:
                fields[code] = line[field_start:position] if position > field_start else b""
        position += length
        field_start = position
    return fields


def is_empty(line):
    return not line.strip(b" \t\r")


def interpret(specs, raw_line):
    """The fields of a line by the first template that fits, or None."""
    if is_empty(raw_line) or len(raw_line) > MAX_LINE:
        return None
    line = tr.to_utf8(raw_line)
    for columns in specs:
        fields = _match_spec(columns, line)
        if fields is not None:
            return fields
    return None


# ---- date and time of a line -------------------------------------------------------------------------------------

def _month_of_text(text):
    text = tr.lower(tr.trim(text))
    for number, name in enumerate(MONTHS, 1):
        if text in (name, name[:3]):
            return number
    return 1 if text.isdigit() and 1 <= int(text) <= 31 else 0


def _usable(*values):
    return all(abs(value) <= tr.LONG_LIMIT for value in values)


def line_date(fields):
    day = tr.fNum(fields[10])
    month = tr.fNum(fields[11])
    if month == 0:
        month = _month_of_text(fields[12])
    year = tr.fNum(fields[14]) or tr.fNum(fields[13]) or tr.fNum(fields[15])
    if year < 1900:
        year += 2000 if year < 61 else 1900
    if not _usable(day, month, year):
        return 0
    return tr.date_serial(round(year), round(month), int(day))


def line_seconds(fields):
    """The time as seconds, which may lie outside one day."""
    hour = tr.fNum(fields[16])
    marker = tr.lower(fields[18])
    if marker == b"p" and hour < 12:
        hour += 12
    elif marker == b"a" and hour == 12:
        hour = 0
    minute, second = tr.fNum(fields[17]), tr.fNum(fields[27])
    if not _usable(hour, minute, second):
        return 0
    return round(hour) * 3600 + round(minute) * 60 + round(second)


def line_stamp(fields):
    return tr.stamp_number(line_date(fields), line_seconds(fields) % tr.DAY_SECONDS)


def line_moment(fields):
    """Day number plus time of day, the time with eight decimals."""
    return line_date(fields) + float(tr.format_number(line_seconds(fields) / tr.DAY_SECONDS, 8))
