#!/usr/bin/env python3
"""check_help.py ROOT: fails when a command or dialog lacks its help, a link leads nowhere, or a page is not plain."""
import html.parser
import pathlib
import re
import sys

PLAIN = set("html head meta title body h1 h2 h3 p a ul ol li b i code pre br hr table tr td th".split())
VOID = {"meta", "br", "hr"}
ATTRIBUTES = {"href", "name", "border", "cellpadding", "cellspacing", "align", "valign", "http-equiv", "content"}


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.path, self.links, self.anchors, self.faults, self.open, self.title = path, [], set(), [], [], ""
        try:
            self.feed(path.read_bytes().decode("utf-8"))
        except UnicodeDecodeError:
            self.fault("is no UTF-8")
        if self.open:
            self.fault(f"<{self.open[-1]}> is not closed")
        if not self.title.strip():
            self.fault("has no title")

    def fault(self, text):
        self.faults.append(f"{self.path.name}: {text}")

    def handle_starttag(self, tag, attrs):
        if tag not in PLAIN:
            self.fault(f"<{tag}> is not for help pages")
        if tag not in VOID:
            self.open.append(tag)
        for name, value in attrs:
            if name not in ATTRIBUTES:
                self.fault(f"attribute {name} is not for help pages")
            if tag == "a" and name == "href":
                self.links.append(value or "")
            if tag == "a" and name == "name":
                if value in self.anchors:
                    self.fault(f"anchor {value} stands twice")
                self.anchors.add(value)

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.fault(f"</{tag}> closes nothing (line {self.getpos()[0]})")

    def handle_data(self, data):
        if self.open and self.open[-1] == "title":
            self.title += data


def target_fault(pages, target, here=""):
    name, _, anchor = target.partition("#")
    page = pages.get(name or here)
    if page is None:
        return f"no page for {target}"
    return f"no anchor for {target}" if anchor and anchor not in page.anchors else ""


def index_of(file, pages, faults):
    index = {}
    for line in file.read_text(encoding="utf-8").splitlines():
        if not line or line.startswith(";"):
            continue
        key, _, target = line.partition(" ")
        if key.lower() in {other.lower() for other in index}:  # the program looks without minding case
            faults.append(f"index.txt: {key} stands twice")
        index[key] = target
        if fault := target_fault(pages, target):
            faults.append(f"index.txt: {key}: {fault}")
    return index


def ids_in_use(root):
    """Every help id that the program asks for, with the place that does."""
    for name in ("menu.h", "popups.h"):
        for control in re.findall(r'"fMn[uU]_(\w+)", "', (root / "src/shell" / name).read_text(encoding="utf-8")):
            yield control, name
    for file in sorted(root.glob("src/*/*.cpp")):
        for key in re.findall(r'\bhelpId = "(\w+)"', file.read_text(encoding="utf-8")):
            yield key, file.name
    screens = (root / "params/program/screens.ini").read_text(encoding="utf-8")
    for key in re.findall(r"^Help=(.+)$", screens, re.M):
        yield key.strip(), "screens.ini"


def unreached(pages):
    seen, todo = set(), ["helpcont.htm"]
    while todo:
        name = todo.pop()
        if name in seen or name not in pages:
            continue
        seen.add(name)
        todo += [link.partition("#")[0] for link in pages[name].links]
    return sorted(set(pages) - seen)


def main():
    root = pathlib.Path(sys.argv[1])
    folder = root / "params/help"
    pages = {file.name: Page(file) for file in sorted(folder.glob("*.htm"))}
    faults = [fault for page in pages.values() for fault in page.faults]
    for page in pages.values():
        faults += [f"{page.path.name}: {fault}" for link in page.links
                   if (fault := target_fault(pages, link, page.path.name))]
        if re.search(r"\w+://|url\(", page.path.read_text(encoding="utf-8", errors="replace")):
            faults.append(f"{page.path.name}: names something on the net")
    index = index_of(folder / "index.txt", pages, faults)
    used = list(ids_in_use(root))
    faults += [f"{place}: no help for {key}" for key, place in used if key not in index]
    faults += [f"{name}: no way leads there from helpcont.htm" for name in unreached(pages)]
    if "start" not in getattr(pages.get("helpcont.htm"), "anchors", ()):
        faults.append("helpcont.htm: no anchor start")
    print("\n".join(faults) or f"{len(pages)} pages, {len(index)} ids, {len(used)} in use: all found")
    return 1 if faults or not pages else 0


sys.exit(main())
