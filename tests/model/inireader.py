"""Reads parameter files: sections, entries, escape words, control characters and values split over entries."""

import os

import textrules as tr

PAIR = b"\xc2\xa0\xc2\xa0"
MISSING = b"*** not found ***"
CONTROL_MARK = b"!~!@#!"


def _encode_common(text):
    return text.replace(PAIR, PAIR + b"CHR160x2.")


def encode_section(text):
    text = _encode_common(text)
    text = text.replace(b"]", PAIR + b"SQ).").replace(b"[", PAIR + b"(SQ.")
    return text.replace(b"\r\n", PAIR + b"CRLF.")


def encode_entry(text):
    return _encode_common(text).replace(b"=", PAIR + b"eq.").replace(b"\r\n", PAIR + b"CRLF.")


def decode_value(text):
    text = _decode_controls(text)
    if PAIR not in text:
        return text
    for word, meaning in ((b"CRLF.", b"\r\n"), (b"(SQ.", b"["), (b"SQ).", b"]"), (b"eq.", b"=")):
        text = text.replace(PAIR + word, meaning)
    quote, less_two = PAIR + b"quote.", PAIR + b"<< less two."
    if text.startswith(quote):
        text = b'"' + text[len(quote):]
    if text.endswith(quote):
        text = text[:-len(quote)] + b'"'
    if text.endswith(less_two):
        text = text[:-len(less_two)]
    return text.replace(PAIR + b"CHR160x2.", PAIR)


def _decode_controls(text):
    if not text.startswith(CONTROL_MARK):
        return text
    token, rest = text[6:9], text[9:]
    pieces = rest.split(token)
    out = pieces[0]
    for piece in pieces[1:]:
        out += bytes([int(piece[:3])]) + piece[3:]
    return out


class IniFile:
    """One parameter file. A file that does not exist has no entries."""

    def __init__(self, path):
        self.sections = {}
        if os.path.isfile(path):
            with open(path, "rb") as stream:
                self._load(tr.to_utf8(stream.read()))

    def _load(self, text):
        entries = None
        if text.startswith(b"\xef\xbb\xbf"):
            text = text[3:]
        for raw in text.split(b"\n"):
            line = raw.strip(b" \t\r")
            if not line or line.startswith(b";"):
                continue
            if line.startswith(b"["):
                end = line.find(b"]")
                name = tr.lower(line[1:end if end >= 0 else len(line)].strip(b" \t"))
                entries = {} if name in self.sections else self.sections.setdefault(name, {})
            elif entries is not None and b"=" in line:
                name, value = line.split(b"=", 1)
                value = value.strip(b" \t")
                if len(value) >= 2 and value[:1] == value[-1:] == b'"':
                    value = value[1:-1]
                entries.setdefault(tr.lower(name.strip(b" \t")), value)

    def _raw(self, section, entry):
        entries = self.sections.get(tr.lower(encode_section(section)), {})
        value = entries.get(tr.lower(encode_entry(entry)))
        return None if value is None else decode_value(value)

    def get(self, section, entry, default=b""):
        if not tr.ascii_lower(entry).startswith(b"splitentry."):
            count = self._raw(section, b"SplitEntry." + entry)
            if count is not None:
                parts = range(int(tr.fNum(count)) + 1)
                return b"".join(self._raw(section, b"SplitEntry.%d." % i + entry) or b"" for i in parts)
        value = self._raw(section, entry)
        return default if value is None else value

    def get_bool(self, section, entry):
        return tr.trim(self.get(section, entry)) not in (b"", b"0", b"False")
