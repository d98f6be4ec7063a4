"""Standard names of pages and terms, and the parts of a URL."""

import re

import textrules as tr

ROOT = b"ROOT"
NOT_SEARCH_ENGINE = b" .. NOT SEARCH ENGINE .. "
NO_PAGE = b".. Page does not exist .."
UNKNOWN_REFERRER = b"UNKNOWN referrer"
DUMMY_HOST = b"http://www.corvane-page.invalid"


def Page_NameStd(name):
    if name.startswith(b"/"):
        name = name[1:]
    for scheme in (b"http://", b"https://"):
        if name.startswith(scheme):
            name = name[len(scheme):]
            break
    # Only a www. host is taken off. Any other stays as the first folder of the path.
    if name.startswith(b"www."):
        name = name.partition(b"/")[2]
    if not name:
        name = b"/"
    name = tr.to_utf8(tr.fPercentDecode(name).replace(b"//", b"/"))
    name = tr.fLeft(name, 253)
    for _ in range(2):
        if name.endswith(b"/"):
            name = name[:-1]
    return name


def ST_Std(term):
    """The standard term, and the decoded, lower-cased text it was trimmed from."""
    altered = tr.lower(tr.to_utf8(tr.fPercentDecode(term.replace(b"+", b" "))))
    return tr.trim(altered), altered


class Url:
    def __init__(self, text):
        self.scheme = self.host = b""
        text, _, self.fragment = text.partition(b"#")
        before, colon, behind = text.partition(b":")
        if colon and re.fullmatch(rb"[A-Za-z0-9+.-]*", before):
            self.scheme, text = before, behind
        if text.startswith(b"//"):
            end = re.search(rb"[/?;#]", text[2:])
            end = end.start() + 2 if end else len(text)
            self.host, text = text[2:end], text[end:]
        text, _, self.query = text.partition(b"?")
        self.path, _, self.params = text.partition(b";")

    def join(self):
        """Empty parts leave no separator behind."""
        text = self.scheme + b":" if self.scheme else b""
        text += b"//" + self.host if self.host else b""
        text += self.path
        text += b";" + self.params if self.params else b""
        text += b"?" + self.query if self.query else b""
        return text + (b"#" + self.fragment if self.fragment else b"")


def Page_StripParts(name, remove_fragment, remove_query):
    if not name.startswith(b"http"):
        if name.startswith(b"www."):
            name = b"http://" + name
        else:
            name = DUMMY_HOST + (name if name.startswith(b"/") else b"/" + name)
    url = Url(name)
    if remove_fragment:
        url.fragment = b""
    if remove_query:
        url.query = b""
    joined = url.join()
    return joined[len(DUMMY_HOST):] if joined.startswith(DUMMY_HOST) else joined


def referrer_host(referrer):
    host = Url(referrer).host
    return host[4:] if host.startswith(b"www.") else host
