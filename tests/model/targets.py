"""Targets of a site: what a visit should reach, how it is tested, and the label of its columns."""

import textrules as tr
from filters import Rule

MOST = 4
SIZE, ANY, ALL = 1, 2, 3
SEPARATOR = b" : "


class Target:
    def __init__(self, ini, number):
        section = b"Target %d" % number
        self.kind = tr.fNum(ini.get(section, b"Typ"))
        self.least = tr.fNum(ini.get(section, b"TagOpBytes"))
        listed = ini.get(section, b"FltrLst")
        self.filters = [Rule(ini, name) for name in tr.cds_split(listed)] if listed else []

    def met(self, pages):
        """Of the (stored name, bytes) of a visit's pages, in their order."""
        if self.kind == ALL:
            return False  # nothing ever meets a target of this kind
        filters = self.filters if self.kind == ANY else self.filters[:1]
        for rule in filters:
            if not rule.value:
                continue
            for name, size in pages:
                if rule.holds(name):
                    return self.kind != SIZE or size >= self.least
        return False

    def label(self):
        joined = (b" & " if self.kind == ALL else b" / ").join(rule.value for rule in self.filters if rule.value)
        return b"*B " + joined if self.kind == SIZE else joined

    def types(self):
        return [tr.lower(tr.fTypeOf(rule.value)) for rule in self.filters]


def load(last_values, targets_ini, wanted):
    """The targets of a run, at most four of the list."""
    if not wanted:
        return []
    count = tr.to_long(tr.fNum(last_values.get(b"Main", b"CntTgt"))) or MOST
    listed = last_values.get(b"Main", b"LstTgts")
    items = tr.cds_split(listed) if listed else []
    count = min(max(min(count, MOST), 0), len(items))
    return [Target(targets_ini, number + 1) for number in range(count)]


def without_target_types(skip_types, targets):
    """The list of skipped file types, less those of the pages of targets."""
    for target in targets:
        for kind in target.types():
            skip_types = skip_types.replace(b"|" + kind + b"|", b"|")
    return skip_types
