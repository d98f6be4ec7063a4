"""Search engine definitions, and the term and engine of a referrer."""

import re

import textrules as tr

DEFS_KEY = b"CDSsrchenginedefs"


def like(pattern):
    """A Like pattern as a compiled expression, None where it cannot fit anything."""
    out, position = b"", 0
    while position < len(pattern):
        c = pattern[position:position + 1]
        position += 1
        if c == b"*":
            out += b".*"
        elif c == b"?":
            out += b"."
        elif c == b"#":
            out += b"[0-9]"
        elif c == b"[":
            end = pattern.find(b"]", position)
            if end < 0:
                return None
            out += _character_class(pattern[position:end])
            position = end + 1
        else:
            out += re.escape(c)
    try:
        return re.compile(out, re.DOTALL)
    except re.error:
        return None


def _character_class(body):
    negated = body.startswith(b"!") and len(body) > 1
    if negated:
        body = body[1:]
    if not body:
        return b""
    parts, position = b"", 0
    while position < len(body):
        if body[position + 1:position + 2] == b"-" and position + 2 < len(body):
            parts += re.escape(body[position:position + 1]) + b"-" + re.escape(body[position + 2:position + 3])
            position += 3
        else:
            parts += re.escape(body[position:position + 1])
            position += 1
    return b"[" + (b"^" if negated else b"") + parts + b"]"


def _without_secure(text):
    return b"http" + text[5:] if tr.ascii_lower(text[:8]) == b"https://" else text


class Definition:
    def __init__(self, text):
        spec, _, rest = text.partition(b" ")
        self.spec = _without_secure(tr.lower(spec))
        self.pattern = like(self.spec)
        self.name = self._name()
        self.keys = []
        self.cuts = []
        for item in tr.lower(rest).split(b","):
            self._add_item(tr.trim(item))

    def _name(self):
        name = self.spec.partition(b"http://")[2] if b"http://" in self.spec else self.spec
        if name.startswith(b"*."):
            name = name[2:]
        return tr.ascii_upper(name.partition(b".")[0])

    def _add_item(self, item):
        if item.startswith(b"::"):
            start, end, flag, decode = (item[2:].split(b"::") + [b""] * 4)[:4]
            if _is_true(decode):
                start, end = tr.fPercentDecode(start), tr.fPercentDecode(end)
            self.cuts.append((start, end, _is_true(flag)))
        elif item:
            self._add_key(item + b"=")
            if item.startswith(b"?"):
                self._add_key(b"&" + item[1:] + b"=")
            elif item.startswith(b"&"):
                self._add_key(b"?" + item[1:] + b"=")

    def _add_key(self, key):
        if key not in self.keys:
            self.keys.append(key)

    def fits(self, lowered):
        return self.pattern is not None and self.pattern.fullmatch(lowered) is not None

    def term(self, text, lowered):
        """The term as it stands, or None when the referrer has no place for one."""
        for key in self.keys:
            at = lowered.find(key)
            if at >= 0:
                return text[at + len(key):].partition(b"&")[0]
        for start, end, required in self.cuts:
            at = lowered.find(start)
            if at < 0:
                continue
            at += len(start)
            stop = lowered.find(end, at)
            if stop >= 0:
                return text[at:stop]
            if not required:
                return text[at:]
        return None


def _is_true(text):
    return tr.ascii_lower(tr.trim(text)) not in (b"", b"0", b"false")


def _lowered(text):
    """The text to search in keeps the length of the text to cut from."""
    if tr.is_utf8(text):
        lowered = tr.lower(text)
        if len(lowered) == len(text):
            return lowered
    return tr.ascii_lower(text)


class Engines:
    def __init__(self, logfmts, delivered):
        text = logfmts.get(b"Main", DEFS_KEY) or delivered.get(b"Main", DEFS_KEY)
        self.definitions = [Definition(item) for item in tr.cds_split(text)] if text else []
        self._known = {}

    def STFromReferrer(self, referrer):
        """Raw term and engine name. Both are empty when no definition gives a term."""
        if referrer not in self._known:
            self._known[referrer] = self._extract(referrer)
        return self._known[referrer]

    def _extract(self, referrer):
        if referrer.startswith(b'"'):
            referrer = referrer[1:]
        text = _without_secure(tr.fPercentDecode(referrer))
        if not text:
            return b"", b""
        lowered = _lowered(text)
        for definition in self.definitions:
            if definition.fits(lowered):
                term = definition.term(text, lowered)
                if term is not None:
                    return tr.to_utf8(term), definition.name
        return b"", b""
