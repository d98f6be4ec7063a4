#!/usr/bin/env python3
"""Writes src/core/unicodetables.cpp: simple case maps and the ranges of letters and numbers.

Run it from the root of the project: tools/make_unicode.py > src/core/unicodetables.cpp
"""

import sys
import unicodedata

WIDTH = 120
I_WITH_DOT = 0x130  # its full lower case has two letters; the simple one is a plain i


def simple_lower(code):
    if code == I_WITH_DOT:
        return ord("i")
    text = chr(code).lower()
    return ord(text) if len(text) == 1 else code


def simple_upper(code):
    for text in (chr(code).upper(), chr(code).title()):
        if len(text) == 1:
            return ord(text)
    return code


def codes():
    return (code for code in range(sys.maxunicode + 1) if not 0xD800 <= code <= 0xDFFF)


def case_rows(simple):
    """Runs of letters with one distance and one step: [first, last, step, delta]."""
    rows = []
    for code in codes():
        delta = simple(code) - code
        if delta == 0 or code < 0x80:
            continue
        row = rows[-1] if rows else None
        gap = code - row[1] if row else 0
        if row and row[3] == delta and gap in (1, 2) and (row[0] == row[1] or row[2] == gap):
            row[1], row[2] = code, gap
        else:
            rows.append([code, code, 1, delta])
    return rows


def ranges(categories):
    rows = []
    for code in codes():
        if unicodedata.category(chr(code))[0] not in categories:
            continue
        if rows and rows[-1][1] == code - 1:
            rows[-1][1] = code
        else:
            rows.append([code, code])
    return rows


def packed(items):
    line = "   "
    for item in items:
        if len(line) + 1 + len(item) > WIDTH:
            yield line
            line = "   "
        line += " " + item
    yield line


def table(kind, name, items):
    print(f"constexpr {kind} {name}[] = {{")
    print("\n".join(packed(items)))
    print("};\n")


def main():
    print(f"// Written by tools/make_unicode.py from Unicode {unicodedata.unidata_version}. Do not edit by hand.")
    print("// clang-format off")
    print('#include "core/unicodetables.h"\n')
    print("namespace core {\nnamespace {\n")
    for name, simple in (("kLower", simple_lower), ("kUpper", simple_upper)):
        table("CaseRow", name, (f"{{{a:#x},{b:#x},{step},{delta}}}," for a, b, step, delta in case_rows(simple)))
    table("CodeRange", "kLettersAndNumbers", (f"{{{a:#x},{b:#x}}}," for a, b in ranges("LN")))
    print("}  // namespace\n")
    print("std::span<const CaseRow> LowerRows() { return kLower; }")
    print("std::span<const CaseRow> UpperRows() { return kUpper; }")
    print("std::span<const CodeRange> LetterAndNumberRanges() { return kLettersAndNumbers; }\n")
    print("}  // namespace core")


if __name__ == "__main__":
    main()
