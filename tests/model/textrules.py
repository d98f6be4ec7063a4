"""Text, number, list and date rules of the model. All text is bytes; widths and positions count bytes."""

import re
from decimal import Decimal, ROUND_HALF_UP

BLANK = b" "
LIST_MARKER = b"{{||{{"
LONG_LIMIT = 2147483647
DAY_SECONDS = 86400
MONTHS = b"Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()


# ---- bytes and letters -------------------------------------------------------------------------------------------

def is_utf8(text):
    try:
        text.decode("utf-8")
        return True
    except UnicodeDecodeError:
        return False


def to_utf8(text):
    """Text that is not valid UTF-8 is taken as Windows-1252 as a whole; its five unused codes keep their number."""
    if is_utf8(text):
        return text
    letters = []
    for code in text:
        try:
            letters.append(bytes([code]).decode("cp1252"))
        except UnicodeDecodeError:
            letters.append(chr(code))
    return "".join(letters).encode("utf-8")


def ascii_lower(text):
    return bytes(c + 32 if 65 <= c <= 90 else c for c in text)


def ascii_upper(text):
    return bytes(c - 32 if 97 <= c <= 122 else c for c in text)


def lower(text):
    """Lower case one code point at a time: no final sigma, and U+0130 gives a plain i."""
    if text.isascii():
        return text.lower()
    letters = text.decode("utf-8", "surrogateescape")
    return "".join("i" if c == "\u0130" else c.lower() for c in letters).encode("utf-8", "surrogateescape")


def cut_at(text, width):
    """The first `width` bytes, moved back to the start of a letter."""
    if len(text) <= width:
        return text
    end = width
    while end > 0 and text[end] & 0xC0 == 0x80:
        end -= 1
    return text[:end]


def fLeft(text, width, mark=b".."):
    """At most `width` bytes. A text of `width` or one less than it is cut too, since only what is no longer than
    the width less the mark stays whole."""
    keep = max(width - len(mark), 0)
    if len(text) <= keep:
        return text
    return cut_at(text, keep) + mark


def trim(text):
    return text.strip(BLANK)


# ---- numbers -----------------------------------------------------------------------------------------------------

_NUMBER = re.compile(rb"[+-]?(?:\d+\.?\d*|\.\d+)(?:[eE][+-]?\d+)?")
_NUMERIC = re.compile(rb" *[+-]?\$?(?:\d[\d,]*\.?\d*|\.\d+)(?:[eE][+-]?\d+)? *")


def fNum(text):
    """The number at the start of a text, blanks ignored; 0 when there is none or when it is too large."""
    found = _NUMBER.match(text.replace(BLANK, b""))
    if not found:
        return 0.0
    value = float(found.group())
    return 0.0 if value in (float("inf"), float("-inf")) else value


def is_number(text):
    return _NUMERIC.fullmatch(text) is not None


def to_long(value):
    """What a Long field holds of a number: half to even, held within the limits."""
    if value >= LONG_LIMIT:
        return LONG_LIMIT
    if value < -LONG_LIMIT:
        return -LONG_LIMIT
    return round(value)


def format_number(value, decimals):
    """Fixed decimals, half away from zero on the value's 15 significant digits."""
    digits = Decimal("%.15g" % value)
    return str(digits.quantize(Decimal(1).scaleb(-decimals), rounding=ROUND_HALF_UP)).encode()


def format_pattern(value, pattern):
    """A number by a pattern of "0", "#", "," and "." alone. What rounds to 0 from below keeps its sign."""
    whole, _, part = pattern.partition(b".")
    digits = format_number(abs(value), len(part)).decode()
    left, _, right = digits.partition(".")
    left = left.lstrip("0").rjust(whole.count(b"0"), "0")
    right = right[:part.count(b"0")] + right[part.count(b"0"):].rstrip("0")
    if b"," in whole:
        left = re.sub(r"(?<=\d)(?=(?:\d{3})+$)", ",", left)
    text = left + ("." + right if b"." in pattern else "")
    return (b"-" if value < 0 else b"") + text.encode()


def plain_number(value):
    return str(int(value)).encode() if value == int(value) else repr(value).encode()


# ---- lists -------------------------------------------------------------------------------------------------------

def cds_split(text):
    """The items of a "|" list, the first at index 0. The empty list gives one empty item."""
    if len(text) >= 8 and text[-8:-2] == LIST_MARKER:
        substitute = text[-2:]
        return [item.replace(substitute, b"|") for item in text[:-8].split(b"|")]
    return text.split(b"|")


def _free_pair(text):
    for outer in range(33, 127):
        for inner in range(33, 127):
            pair = bytes([outer, inner])
            if b"|" not in pair and pair not in text:
                return pair
    raise ValueError("no free pair of characters")


def cds_add_unique(text, item):
    """Adds an item to a "|" list unless it stands there. Items that hold a "|" bring the list into its form with a
    two-character substitute, which is told at its end."""
    substitute, body = b"", text
    if len(text) >= 8 and text[-8:-2] == LIST_MARKER:
        substitute, body = text[-2:], text[:-8]
    needle = item.replace(b"|", substitute) if substitute else item
    if b"|" + needle + b"|" in b"|" + body + b"|":
        return text
    if substitute and substitute in item:
        body_before = body.replace(substitute, b"\0|")
        new = _free_pair(body + item)
        body, substitute = body_before.replace(b"\0|", new), new
    elif not substitute and b"|" in item:
        substitute = _free_pair(body + item)
    entry = item.replace(b"|", substitute) if substitute else item
    joined = body + b"|" + entry if body else entry
    return joined + LIST_MARKER + substitute if substitute else joined


# ---- dates -------------------------------------------------------------------------------------------------------

def days_from_civil(year, month, day):
    """Days since 30 December 1899 of a Gregorian date of any year."""
    year -= month <= 2
    era = year // 400
    of_era = year - era * 400
    of_year = (153 * (month + (-3 if month > 2 else 9)) + 2) // 5 + day - 1
    of_cycle = of_era * 365 + of_era // 4 - of_era // 100 + of_year
    return era * 146097 + of_cycle - 719468 + 25569


def civil_from_days(serial):
    shifted = serial - 25569 + 719468
    era = shifted // 146097
    of_cycle = shifted - era * 146097
    of_era = (of_cycle - of_cycle // 1460 + of_cycle // 36524 - of_cycle // 146096) // 365
    of_year = of_cycle - (365 * of_era + of_era // 4 - of_era // 100)
    part = (5 * of_year + 2) // 153
    month = part + (3 if part < 10 else -9)
    return of_era + era * 400 + (month <= 2), month, of_year - (153 * part + 2) // 5 + 1


def date_serial(year, month, day):
    """Months and days outside their range roll over. A date outside the years 100 to 9999 gives 0."""
    months = year * 12 + month - 1
    serial = days_from_civil(months // 12, months % 12 + 1, 1) + day - 1
    return serial if 100 <= civil_from_days(serial)[0] <= 9999 else 0


def stamp_number(serial, seconds):
    """Day and second of the day as the number yyyymmddhhnnss."""
    year, month, day = civil_from_days(serial)
    hour, rest = divmod(seconds, 3600)
    return ((year * 100 + month) * 100 + day) * 1000000 + hour * 10000 + rest // 60 * 100 + rest % 60


def day_of_date(date):
    """The day number of a date yyyymmdd."""
    return days_from_civil(date // 10000, date // 100 % 100, date % 100)


def day_month(serial):
    _, month, day = civil_from_days(serial)
    return b"%02d %s" % (day, MONTHS[month - 1])


def _stamp_parts(stamp):
    date, time = divmod(int(stamp), 1000000)
    serial = day_of_date(date)
    return serial, time // 10000 * 3600 + time // 100 % 100 * 60 + time % 100


def TS_DiffSecs(first, second):
    """Seconds from the first to the second. 0 is no time: it lies further away than any time-out."""
    if first == second:
        return 0
    if first == 0:
        return LONG_LIMIT
    if second == 0:
        return -LONG_LIMIT
    day1, seconds1 = _stamp_parts(first)
    day2, seconds2 = _stamp_parts(second)
    return (day2 - day1) * DAY_SECONDS + seconds2 - seconds1


def TS_AddSecs(stamp, seconds):
    day, of_day = _stamp_parts(stamp)
    total = day * DAY_SECONDS + of_day + seconds
    return stamp_number(total // DAY_SECONDS, total % DAY_SECONDS)


# ---- parts of names ----------------------------------------------------------------------------------------------

def fPathOf(name, separator=b"/"):
    return name[:name.rfind(separator) + 1]


def fTypeOf(name, separator=b"/"):
    """The text behind the last point, if that stands behind the last separator."""
    point = name.rfind(b".")
    return name[point + 1:] if point > name.rfind(separator) else b""


def fPercentDecode(text):
    """Each escape gives one byte, which is not looked at again. What is not hexadecimal becomes a blank."""
    def decoded(found):
        digits = found.group(1)
        return bytes([int(digits, 16)]) if re.fullmatch(rb"[0-9A-Fa-f]{2}", digits) else BLANK
    return re.sub(rb"%(..)", decoded, text, flags=re.DOTALL)
