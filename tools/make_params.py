#!/usr/bin/env python3
"""make_params.py DATADIR OUTDIR: makes the delivered definition files from the tab separated data files.

Reads  DATADIR/log-formats.tsv, search-engines.tsv, robots.tsv
Writes OUTDIR/logfmts.ini        all log formats that have a template
       OUTDIR/lastinstvals.ini   all search engines and assistants
       OUTDIR/fltrbots.ini       all robots, one rule each

Same data, same bytes. The values are written as the program's own parameter store writes them.
"""
import csv
import itertools
import os
import sys

PAIR = "\u00a0\u00a0"  # every escape word starts with two characters of code 160
MARKER = "!~!@#!"      # starts a value that holds control characters; its token follows
NARROW = {"MSN"}  # whose other hosts belong to an engine of another name
BLANKS = ("+", "%20")  # a blank of a user agent in W3C logs and in those of content networks


def encode_section(name):
    name = name.replace(PAIR, PAIR + "CHR160x2.")
    name = name.replace("]", PAIR + "SQ).").replace("[", PAIR + "(SQ.")
    return name.replace("\r\n", PAIR + "CRLF.")


def encode_controls(value):
    """Codes 1 to 13 become a token that stands nowhere in the value, and three digits."""
    if not value.startswith(MARKER) and not any(chr(code) in value for code in range(1, 14)):
        return value
    codes = range(33, 255)
    token = next(text for text in map("".join, itertools.product(map(chr, codes), repeat=3))
                 if text not in value and text not in MARKER)
    for code in range(1, 14):
        value = value.replace(chr(code), f"{token}{code:03d}")
    return MARKER + token + value


def encode_value(value):
    value = value.replace(PAIR, PAIR + "CHR160x2.").replace("\r\n", PAIR + "CRLF.")
    if value.startswith('"'):
        value = PAIR + "quote." + value[1:]
    if value.endswith('"'):
        value = value[:-1] + PAIR + "quote."
    if value.endswith(" "):
        value += PAIR + "<< less two."
    value = encode_controls(value)
    # Reading strips blanks and tabs around a value, then one enclosing pair of double quotes.
    return f'"{value}"' if value[:1] in (" ", "\t") else value


def section(name, entries):
    return [f"[{encode_section(name)}]"] + [f"{key}={encode_value(value)}" for key, value in entries]


def join_list(items):
    """A "|" list. No item here may hold the delimiter: the trailer form is never needed."""
    for item in items:
        if "|" in item:
            sys.exit(f"make_params: an item of a list holds the delimiter: {item}")
    return "|".join(items)


def write_file(path, comment, sections):
    lines = [f"; {line}" for line in comment]
    for one in sections:
        lines += ["", *one]
    with open(path, "w", encoding="utf-8", newline="\n") as file:
        file.write("\n".join(lines) + "\n")


def read_tsv(folder, name):
    with open(os.path.join(folder, name), encoding="utf-8", newline="\n") as file:
        return list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))


def log_formats(rows):
    """Name and stored list of every format that has a template. A row "name#2" is a further example of its format."""
    formats = {}
    for row in rows:
        name = row["name"].split("#")[0]
        template = row["template"]
        if name == "iis-w3c-iis5-cr":
            template = template.replace("\\r", "\r")  # the only template that ends in the character itself
        if template and formats.setdefault(name, template) != template:
            sys.exit(f"make_params: two templates for {name}")
    return formats


def write_formats(folder, rows):
    formats = log_formats(rows)
    sections = [section("Main", [("AcD", join_list(formats))])]
    sections += [section(name, [("DefsCDS", template)]) for name, template in formats.items()]
    write_file(os.path.join(folder, "logfmts.ini"),
               ["Log formats. Each section is a format; DefsCDS lists its specifications and begins with the delimiter.",
                "The first specification that fits a line is used. AcD lists the names."], sections)
    return len(formats)


def shown_name(url):
    """The engine name that the program takes from a URL specification."""
    url = url.split("http://", 1)[-1].removeprefix("*.")
    return url.split(".")[0].upper()


def important_definitions(row):
    """The bare host and its subdomains; https needs no definition of its own.

    The name shown is the first label of the pattern. Where that is not the engine's name (ya.ru is YANDEX), the first
    letter of the address is written as a class, which holds "http://yandex." and so brings the name along.
    """
    url, params = row["definition_http_only"].split(" ", 1)
    host = url.removeprefix("http://*.").removesuffix("/*")
    scheme = "http://"
    if shown_name(url) != row["shown_name"] or row["shown_name"] in NARROW:
        host = row["host"]
        scheme = f"[http://{row['shown_name'].lower()}.]ttp://"
    return [f"{scheme}{host}/* {params}", f"{scheme}*.{host}/* {params}"]


def engine_definitions(row):
    """Those of the important engines are what people edit; of the others one pattern serves host and subdomains. An
    assistant is an engine without a place of a term."""
    if row["kind"] == "assistant":
        end = "*" if "/" in row["host"] else "/*"
        definitions = [f"[http://{row['shown_name'].lower()}.]ttp*[/.]{row['host']}{end}"]
    else:
        definitions = important_definitions(row) if row["important"] == "yes" else [row["definition"]]
    for definition in definitions:
        if shown_name(definition) != row["shown_name"]:
            sys.exit(f"make_params: {definition} does not show as {row['shown_name']}")
    return definitions


def engine_list(rows):
    """All definitions, general ones first, the important ones before the others; the order is the match order."""
    important = [row for row in rows if row["important"] == "yes" and row["kind"] == "search"]
    others = [row for row in rows if row["important"] != "yes" and row["kind"] == "search"]
    assistants = [row for row in rows if row["kind"] == "assistant"]
    definitions = [one for row in [*important, *others, *assistants] for one in engine_definitions(row)]
    definitions.sort(key=lambda one: not one.split(" ")[0].endswith("*/*"))
    return definitions, len(rows)


def write_engines(folder, rows):
    definitions, count = engine_list(rows)
    write_file(os.path.join(folder, "lastinstvals.ini"),
               ["Search engine definitions as delivered. The program reads them as long as logfmts.ini has none of its own.",
                "Each is a URL pattern, a blank and the places of the term. http stands for https too. One without places",
                "is an engine that sends no terms."],
               [section("Main", [("CDSsrchenginedefs", join_list(definitions))])])
    return count, len(definitions)


def robot_rules(rows):
    """Name and text of each rule. A text with blanks has further rules for the logs that write a blank otherwise."""
    names = [row["name"].lower() for row in rows]
    rules = {}
    for row in rows:
        name = row["name"]
        if names.count(name.lower()) > 1:
            name += f" ({row['token']})"
        variants = [(name, row["token"])]
        if " " in row["token"]:
            variants += [(f"{name} ({blank})", row["token"].replace(" ", blank)) for blank in BLANKS]
        for rule_name, text in variants:
            if rule_name.lower() in (known.lower() for known in rules):
                sys.exit(f"make_params: two rules named {rule_name}")
            rules[rule_name] = text
    return rules, len(rows)


def write_robots(folder, rows):
    rules, count = robot_rules(rows)
    sections = [section("Filters", [("SkipRobotUserAgents", join_list(rules)), ("FltrBotsUASel", next(iter(rules)))])]
    for name, text in rules.items():
        sections.append(section(name, [("Typ", "2"), ("Val", text), ("MC", "False"), ("ColType", "2")]))
    write_file(os.path.join(folder, "fltrbots.ini"),
               ["Robots and crawlers by their user agent. All rules apply when robots are excluded.",
                "Rules named (+) and (%20) serve logs that write a blank of the user agent in this way."], sections)
    return count, len(rules)


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: make_params.py DATADIR OUTDIR")
    data, out = sys.argv[1:]
    os.makedirs(out, exist_ok=True)
    formats = write_formats(out, read_tsv(data, "log-formats.tsv"))
    engines, definitions = write_engines(out, read_tsv(data, "search-engines.tsv"))
    robots, rules = write_robots(out, read_tsv(data, "robots.tsv"))
    print(f"{formats} log formats, {engines} engines in {definitions} definitions, {robots} robots in {rules} rules")


if __name__ == "__main__":
    main()
