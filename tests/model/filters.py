"""Rules on fields of a line, and the three filters of a read: main filter, page components, robots."""

import textrules as tr

FIELD_OF_COLTYPE = {0: 7, 1: 3, 2: 5, 3: 24}
SECTION = b"Filters"


class Rule:
    def __init__(self, ini, section):
        self.kind = tr.fNum(ini.get(section, b"Typ"))
        self.match_case = ini.get_bool(section, b"MC")
        value = ini.get(section, b"Val", b"*** not found ***")
        self.value = value if self.match_case else tr.lower(value)
        self.field = FIELD_OF_COLTYPE.get(tr.fNum(ini.get(section, b"ColType")), 0)

    def holds(self, text):
        if not self.match_case:
            text = tr.lower(text)
        if self.kind == 1:
            return text.startswith(self.value)
        if self.kind == 2:
            return self.value in text
        if self.kind == 3:
            return text == self.value
        if self.kind == 4:
            return text > self.value
        if self.kind == 6:
            return tr.is_number(text)
        # Kind 5, "less than", can be chosen and stored and is never true.
        return False


class Filter:
    """True of `takes` means that the line is skipped."""

    def __init__(self, ini, key, active, invert, always_any=False):
        self.active = active
        self.invert = invert
        self.hits = 0
        self.rules = []
        self.any_rule = always_any
        if not active:
            return
        name = ini.get(SECTION, key)
        conditions = ini.get(name, b"CDSCndns") if name else b""
        if not always_any:
            self.any_rule = bool(name) and ini.get_bool(name, b"Any")
        names = conditions or name
        self.rules = [Rule(ini, section) for section in tr.cds_split(names)] if names else []

    def takes(self, fields):
        if not self.active:
            return False
        satisfied = not self.any_rule
        for rule in self.rules:
            if rule.holds(fields[rule.field]) == self.any_rule:
                satisfied = self.any_rule
                break
        skip = satisfied != self.invert
        if skip:
            self.hits += 1
        return skip
