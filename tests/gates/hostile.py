#!/usr/bin/env python3
"""Logs that somebody made to hurt, through the command line: each is read in bounded time and memory, and the healthy
lines in and beside it are stored as if it were not there.

    hostile.py --cli FILE [--size sample|whole] [--only TEXT] [--no-limits]
"""
import argparse
import bz2
import gzip
import lzma
import os
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SECONDS = 10        # of processor time; a busy machine makes no failure
PATIENCE = 90       # of the clock
MEMORY = 150 << 20  # bytes
AGENT = b"Mozilla/5.0 (X11; Linux x86_64) Firefox/120.0"
MIB = 1 << 20


def line(ip=b"203.0.113.5", when=b"01/Mar/2024:10:00:00 +0000", request=b"GET /x.html HTTP/1.1", status=b"200",
         size=b"512", referrer=b"-", agent=AGENT, user=b"-", end=b"\n"):
    return b'%s - %s [%s] "%s" %s %s "%s" "%s"%s' % (ip, user, when, request, status, size, referrer, agent, end)


def healthy(count=120):
    """Visits with terms, other addresses than those of any hostile line."""
    lines = []
    for i in range(count):
        referrer = b"https://www.bing.com/search?q=red+shoes+%d" % (i % 7) if i % 3 == 0 else b"-"
        lines.append(line(b"192.0.2.%d" % (i % 40), b"01/Mar/2024:%02d:%02d:%02d +0000" % (8 + i // 60, i % 60, i % 59),
                          b"GET /p%d.html HTTP/1.1" % (i % 11), referrer=referrer))
    return lines


def times(text, count):
    """A long text in pieces, so that this program stays small."""
    for start in range(0, count, 1000):
        yield text * min(1000, count - start)


def numbered(form, count):
    for start in range(0, count, 1000):
        yield b"".join(form(i) for i in range(start, min(start + 1000, count)))


def in_field(value):
    """A value in each text field of a line."""
    return [line(request=b"GET /" + value + b" HTTP/1.1"), line(referrer=b"http://h.example/" + value),
            line(referrer=b"https://www.bing.com/search?q=" + value), line(agent=value), line(user=value),
            line(ip=value)]


def fields(*values):
    return lambda: [item for value in values for item in in_field(value)]


def lines(*items):
    return lambda: list(items)


# Within a healthy log: a name and what stands between its lines.
WITHIN = {
    "a line of 50 MB": lambda: [*times(b"x", 50 * MIB), b"\n"],
    "a request of 50 MB": lambda: [b'203.0.113.5 - - [01/Mar/2024:10:00:00 +0000] "GET /', *times(b"y", 50 * MIB),
                                   b' HTTP/1.1" 200 5 "-" "-"\n'],
    "lines at the limit": lambda: [b"z" * (MIB + d) + b"\n" for d in (-1, 0, 1)] +
                                  [line(request=b"GET /" + b"q" * (MIB - 200 + d) + b" HTTP/1.1") for d in range(0, 99, 9)],
    "blanks over the limit": lambda: [b" " * (3 * MIB), b"\n\n \t\r\n"],
    "a million invalid lines": lambda: times(b"this is no line\n", 1_000_000),
    "a million empty lines": lambda: times(b"\n", 1_000_000),
    "NUL bytes": fields(b"a\0b", b"\0", b"\0" * 3000),
    "all bytes": fields(bytes(range(1, 10)) + bytes(range(11, 256)), *(bytes([b]) for b in range(128, 256, 9))),
    "invalid UTF-8": fields(b"\xff", b"\xc3", b"\xc0\xaf", b"\xed\xa0\x80", b"\xf4\x90\x80\x80", b"\xe2\x82" * 500),
    "a byte order mark": lines(b"\xef\xbb\xbf" + line()),
    "terminal escapes": fields(b"\x1b[2J\x1b]0;x\x07", b"\x08\x08\x08", b"a\rb", b"\x7f", b"\xc2\x9b31m"),
    "CR line ends": lines(line(end=b"\r") * 50, b"\n", line(end=b"\r\n") * 50),
    "markup": fields(b"<img src=x onerror=alert(1)>", b"%1 %s %n %d {0} &amp;", b"<b>&lt;</b>"),
    "formulas": fields(b"=cmd|' /C calc'!A0", b"+1+1", b"-2", b"@SUM(A1)", b"\t=1"),
    "SQL": fields(b"x' OR ''='", b"'; DROP TABLE logline; --", b'" OR 1=1', b"\\'"),
    "list marks": fields(b"|", b"{{||{{!!", b"{", b"}", b"|~~|", b":::", b"##", b"?", b"a|b|c" * 100),
    "settings": fields(b"[Main]", b"SplitEntry.1", b"a=b", b"[LogFormat: x]", b" [LogFormat: iis] "),
    "a separator further on": lines(b'junk 192.0.2.1 - - [01/Mar/2024:08:00:00 +0000] "GET /p HTTP/1.1" 200 5 "-" "-"\n',
                                    b'"" - - [] "" "" ""\n', line()[:-40] + line(), line() [:60] + b"\n"),
    "brackets": lambda: [b"[" * 900_000 + b"\n", b"[]" * 400_000 + b"\n", b'"' * 900_000 + b"\n", b" " + b"-" * 900_000 + b"\n"],
    "quotes": lambda: [line(agent=b'\\"' * 200_000), line(referrer=b'" "' * 200_000), line(agent=b'"')],
    "backslashes": lambda: [line(agent=b"\\" * 500_000), line(request=b"GET /" + b"\\" * 500_000 + b" HTTP/1.1")],
    "protocol again and again": lambda: [line(request=b"GET /" + b" HTTP/" * 150_000)],
    "years": lines(*(line(when=b"01/Mar/%s:10:00:00 +0000" % year)
                     for year in (b"99999", b"0000", b"-1", b"1e9", b"9" * 500, b"1899", b"10000", b"24"))),
    "days and months": lines(*(line(when=b"%s/2024:10:00:00 +0000" % day)
                               for day in (b"31/Feb", b"00/Mar", b"1e300/Mar", b"99/Mar", b"01/M\xc3\xa4r", b"01/", b"/Mar",
                                           b"01/13", b"-5/Mar"))),
    "hours": lines(*(line(when=b"01/Mar/2024:%s +0000" % hour)
                     for hour in (b"-1:00:00", b"25:00:00", b"10:61:61", b"1e5:00:00", b"::", b"10:00", b"9" * 300))),
    "zones": lines(*(line(when=b"01/Mar/2024:10:00:00 " + zone)
                     for zone in (b"+9999", b"-9999", b"", b"UTC", b"+" + b"9" * 99))),
    "numbers": lines(*(line(status=status, size=size)
                       for status in (b"1e99", b"-1", b"200abc", b"", b"9" * 400)
                       for size in (b"1e30", b"-", b"-5", b"9223372036854775808", b"1e308", b"nan", b"0x7f", b"9" * 400))),
    "percent signs": fields(b"%00", b"%2541", b"%", b"%%", b"%u1234", b"%zz", b"%c3%28", b"%25" * 10_000, b"%u" * 5000),
    "patterns": fields(b"*" * 5000, b"?*" * 5000, b"[!a-z]" * 500, b"[" * 500, b"#" * 500),
    "slashes": fields(b"/" * 200_000, b"../" * 50_000, b"a/" * 50_000, b"//", b"..\\..\\x"),
    "paths": fields(b"../../../etc/passwd", b"C:\\con", b"::*", b"/dev/zero", b"file:///etc/passwd", b"nul"),
    "long terms": lambda: [line(referrer=b"https://www.bing.com/search?q=" + b"w+" * 400_000),
                           line(referrer=b"https://www.bing.com/search?" + b"q=a&" * 200_000),
                           line(referrer=b"https://www.bing.com/search?q=" + b"%2B" * 300_000)],
    "engines without end": lambda: [line(referrer=b"http://" + b"www.bing.com/" * 60_000),
                                    line(referrer=b"http://" + b"google." * 100_000 + b"/?q=x"),
                                    line(referrer=b"http://" * 100_000)],
    "odd referrers": lines(*(line(referrer=r) for r in (b"", b"http://", b"//", b"javascript:alert(1)", b"data:text/html,x",
                                                        b"http://user:pw@h:99999999/?q=1", b"http://[::1]:x/", b"http://?q=x",
                                                        b"HTTP://WWW.BING.COM/SEARCH?Q=X", b"http://xn--a/",
                                                        b"android-app://x", b"http://h/#?q=x"))),
    "odd requests": lines(*(line(request=r) for r in (b"", b"-", b"GET", b"GET  HTTP/1.1", b"\x16\x03\x01\x02", b"GET /x",
                                                      b"GET http://h/x HTTP/1.1", b"OPTIONS * HTTP/1.0", b"CONNECT h:443 HTTP/1.1",
                                                      b"GET /?a?b#c HTTP/1.1", b"GET /a b c HTTP/1.1", b"PRI * HTTP/2.0"))),
    "direction marks": fields("a\u202egpj.exe".encode(), "\u2066x\u2069".encode(), "\ufeff".encode(), "\u2028".encode()),
    "letters of many kinds": fields("Ünïcödé İıſß ǅ ﬁ".encode(), "\U0001f468\u200d\U0001f469".encode() * 60,
                                    "e\u0301\u0323".encode() * 900, "\u0e01".encode() * 5000),
    "widths": fields(b"w" * 49, b"w" * 50, b"w" * 51, b"w" * 253, b"w" * 254, b"\xc3\xa4" * 127, b"\xe2\x82\xac" * 85),
    "long addresses": lines(line(ip=b"2001:db8::1"), line(ip=b"h." * 30_000), line(ip=b"::ffff:203.0.113.9%eth0")),
    "long fields everywhere": lambda: [line(b"i" * 50_000, request=b"GET /" + b"r" * 300_000 + b" HTTP/1.1",
                                            referrer=b"f" * 300_000, agent=b"b" * 300_000, user=b"u" * 50_000)] * 5,
    "the same line 100,000 times": lambda: times(line(), 100_000),
    "one visitor without end": lambda: numbered(
        lambda i: line(when=b"01/Mar/2024:%02d:%02d:%02d +0000" % (10 + i // 7200, i // 120 % 60, i // 2 % 60),
                       request=b"GET /v%d.html HTTP/1.1" % (i % 500)), 30_000),
    "times backwards": lambda: numbered(
        lambda i: line(when=b"01/Mar/2024:%02d:%02d:%02d +0000" % (23 - i // 3600, 59 - i // 60 % 60, 59 - i % 60)), 30_000),
    "times in jumps": lambda: numbered(lambda i: line(when=b"01/Mar/%d:10:00:00 +0000" % (1900 + i * 7919 % 8000)), 20_000),
    "distinct agents": lambda: numbered(lambda i: line(agent=b"agent %d/%d" % (i, i * i)), 100_000),
    "distinct pages": lambda: numbered(lambda i: line(request=b"GET /p/%d/%d HTTP/1.1" % (i, i * i)), 60_000),
    "distinct addresses": lambda: numbered(lambda i: line(ip=b"10.%d.%d.%d" % (i >> 16, i >> 8 & 255, i & 255)), 60_000),
    "distinct terms": lambda: numbered(
        lambda i: line(ip=b"10.9.%d.%d" % (i >> 8 & 255, i & 255), referrer=b"https://www.bing.com/search?q=t%d" % i), 40_000),
    "distinct referrers": lambda: numbered(lambda i: line(referrer=b"http://s%d.example/%d" % (i, i)), 60_000),
    "names that collide when cut": lambda: numbered(lambda i: line(request=b"GET /" + b"c" * 260 + b"%d HTTP/1.1" % i), 5000),
    "pages by case": lambda: [line(request=b"GET /" + bytes([c, c ^ 32]) * 20 + b" HTTP/1.1") for c in range(65, 91)],
    "dots and blanks": fields(b".", b"..", b" ", b"\xc2\xa0", b"\xe3\x80\x80", b"a ", b" a"),
    "a query of its own": fields(b"?" * 3000, b"&" * 3000, b"=" * 3000, b"a=" + b"b&" * 40_000),
    "stars in a robot's name": fields(b"Googlebot/2.1 " + b"bot" * 60_000, b"robots.txt", b"GoogleBOT"),
    "W3C headers": lines(b"#Software: x\n#Fields: date time c-ip\n#Date: \n", b"2024-03-01 10:00:00 203.0.113.5\n", b"#" * 9000 + b"\n"),
    "a JSON log": lines(b'{"ip":"203.0.113.5","request":"GET / HTTP/1.1"}\n' * 500),
    "UTF-16": lambda: ["".join(chr(c) for c in line() * 20).encode("utf-16") + b"\n"],
}


def packed_bomb(opened, size=200 * MIB):
    def write(path):
        with opened(path) as out:
            out.write(line() * 30)
            for _ in range(size // MIB):
                out.write(b"\0" * MIB)
            out.write(b"\n" + line())
    return write


def zstd_bomb(path):
    with open(path, "wb") as out:
        packer = subprocess.Popen(["zstd", "-q", "-c"], stdin=subprocess.PIPE, stdout=out)
        packer.stdin.write(line() * 30)
        for _ in range(200):
            packer.stdin.write(b"\0" * MIB)
        packer.stdin.close()
        packer.wait()


def bytes_of(data):
    return lambda path: path.write_bytes(data)


def cut(data, share):
    return bytes_of(data[:int(len(data) * share)])


def hole(path):
    with open(path, "wb") as out:
        out.write(line() * 3)
        out.truncate(500 * MIB)


def tar(data):
    return (b"access.log".ljust(257, b"\0") + b"ustar").ljust(512, b"\0") + data + b"\0" * 1024


SOME = b"".join(line(request=b"GET /s%d HTTP/1.1" % i) for i in range(3000))
# Beside a healthy log: a name and what writes the file.
BESIDE = {
    "500 MB without a line feed": hole,
    "a bomb of gzip": packed_bomb(lambda path: gzip.open(path, "wb", 6)),
    "a bomb of bzip2": packed_bomb(lambda path: bz2.open(path, "wb", 9), 60 * MIB),
    "a bomb of xz": packed_bomb(lambda path: lzma.open(path, "wb", preset=0)),
    "a bomb of zstd": zstd_bomb,
    "a cut gzip": cut(gzip.compress(SOME), 0.5),
    "a cut bzip2": cut(bz2.compress(SOME), 0.6),
    "a cut xz": cut(lzma.compress(SOME), 0.7),
    "a bad byte in gzip": bytes_of((lambda b: b[:2000] + bytes([b[2000] ^ 64]) + b[2001:])(gzip.compress(SOME))),
    "100,000 empty members": bytes_of(gzip.compress(line() * 9) + gzip.compress(b"") * 100_000),
    "a magic and nothing": bytes_of(b"\x1f\x8b"),
    "an xz that asks for memory": bytes_of(b"\xfd7zXZ\0\0\x04\xe6\xd6\xb4\x46\x02\0\x21\x01\x28" + b"\0" * 60),
    "a tar in gzip": bytes_of(gzip.compress(tar(SOME))),
    "a tar": bytes_of(tar(SOME)),
    "gzip in gzip": bytes_of(gzip.compress(gzip.compress(SOME))),
    "a zip": bytes_of(b"PK\x03\x04" + b"\0" * 5000),
    "a picture": bytes_of(b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 40),
    "an empty file": bytes_of(b""),
    "3000 bytes of junk in front": bytes_of(b"j" * 5000 + b"\n" + SOME),
    "junk at the end": bytes_of(SOME + b"junk\n" * 1_000_000),
    "junk behind the first line": bytes_of(line() + b"k" * 30 * MIB),
}
SAMPLE = ("a line of 50 MB", "a million invalid lines", "all bytes", "list marks", "SQL", "years", "numbers", "percent signs",
          "long terms", "distinct agents", "quotes", "500 MB without a line feed", "a bomb of gzip", "a tar in gzip",
          "a bad byte in gzip")


class Gate:
    def __init__(self, options):
        self.options = options
        room = shutil.disk_usage("/dev/shm").free if os.path.isdir("/dev/shm") else 0
        self.folder = Path(tempfile.mkdtemp(prefix="corvane-hostile-", dir="/dev/shm" if room > 2 << 30 else None))
        self.home = self.folder / "home"
        self.worst = {"seconds": 0.0, "bytes": 0}

    def run(self, home, *words):
        with open(self.folder / "told", "wb") as told:
            process = subprocess.Popen([self.options.cli, "--home", str(home), *words], stdin=subprocess.DEVNULL,
                                       stdout=subprocess.DEVNULL, stderr=told)
            end = time.monotonic() + PATIENCE
            while True:
                child, status, used = os.wait4(process.pid, os.WNOHANG)
                if child:
                    break
                if time.monotonic() > end:
                    process.kill()
                    os.wait4(process.pid, 0)
                    raise AssertionError(f"hangs for more than {PATIENCE} s")
                time.sleep(0.01)
        process.returncode = os.waitstatus_to_exitcode(status)
        return process.returncode, used.ru_utime + used.ru_stime, used.ru_maxrss * 1024

    def add(self, name, files, statuses):
        """Adds the files to a fresh site. Gives what is stored of the healthy lines."""
        home = self.folder / "work"
        shutil.copytree(self.home, home)
        try:
            status, seconds, memory = self.run(home, "add", "--format", "apache-combined", "--filter", "all", "--robots",
                                               "--components", "--overlap", "add", "--invalid", "skip", "--",
                                               *map(str, files))
            told = (self.folder / "told").read_bytes()
            assert status in statuses, f"ended with {status}: {told[:500]}"
            assert len(told) < 20_000, f"{len(told)} bytes of messages"
            assert not set(told) & set(b"\x1b\x07\x08\0\x7f"), "control characters in a message"
            self.worst = {"seconds": max(self.worst["seconds"], seconds), "bytes": max(self.worst["bytes"], memory)}
            if not self.options.no_limits:
                assert seconds <= SECONDS, f"took {seconds:.1f} s"
                assert memory <= MEMORY, f"took {memory >> 20} MiB"
            return self.stored(home)
        finally:
            shutil.rmtree(home, ignore_errors=True)

    def stored(self, home):
        database, = home.glob("sites/*/data/site1.mdb")
        with sqlite3.connect(f"file:{database}?mode=ro", uri=True) as store:
            store.text_factory = bytes
            verdict, = store.execute("PRAGMA integrity_check").fetchone()
            assert verdict == b"ok", verdict
            waiting, = store.execute("SELECT count(*) FROM logline WHERE VisitID IS NULL").fetchone()
            assert waiting == 0, f"{waiting} lines wait"
            cursor = store.execute("SELECT p.Filename AS name, l.* FROM logline l LEFT JOIN page p USING (PageID) "
                                   "WHERE l.IP LIKE '192.0.2.%' ORDER BY l.LogLnID")
            kept = [i for i, column in enumerate(cursor.description) if column[0] not in ("LogLnID", "PageID", "VisitID")]
            lines_stored = [tuple(row[i] for i in kept) for row in cursor]
            visits = store.execute("SELECT FirstIP, StartTimeStamp, EndTimeStamp, Files, StzdSearchTerm, SearchEngine FROM visit "
                                   "WHERE FirstIP LIKE '192.0.2.%' ORDER BY 1, 2").fetchall()
        return lines_stored, visits


def write_within(path, between):
    good = healthy()
    with open(path, "wb") as out:
        out.write(b"".join(good[:40]))
        for piece in between:
            out.write(piece)
        out.write(b"".join(good[40:80]))
        for piece in between if isinstance(between, list) and sum(map(len, between)) < MIB else []:
            out.write(piece)
        out.write(b"".join(good[80:]))


def check(gate, name, files, wanted, statuses=(0,)):
    try:
        found = gate.add(name, files, statuses)
        assert len(found[0]) == len(wanted[0]), f"{len(found[0])} healthy lines instead of {len(wanted[0])}"
        assert found[0] == wanted[0], "healthy lines are stored otherwise"
        assert found[1] == wanted[1], "healthy visits are others"
        return []
    except AssertionError as failure:
        return [f"{name}: {failure}"]


def run(gate):
    good = gate.folder / "good.log"
    good.write_bytes(b"".join(healthy()))
    status, _, _ = gate.run(gate.home, "site", "create", "gate")
    assert status == 0, "no site"
    wanted = gate.add("healthy", [good], (0,))
    assert len(wanted[0]) == len(healthy()) and wanted[1], "the healthy log is not stored"
    path, failures, cases = gate.folder / "hostile.log", [], 0
    chosen = [name for name in [*WITHIN, *BESIDE]
              if gate.options.only in name and (gate.options.size == "whole" or name in SAMPLE or gate.options.only)]
    for name in chosen:
        if name in WITHIN:
            write_within(path, WITHIN[name]())
            failures += check(gate, name, [path], wanted)
        else:
            BESIDE[name](path)
            failures += check(gate, name, [path, good], wanted, (0, 1))
        path.unlink()
        cases += 1
    assert not failures, f"{len(failures)} of {cases}:\n  " + "\n  ".join(failures)
    return (f"{cases} hostile logs, healthy lines stored as without them, at most {gate.worst['seconds']:.1f} s and "
            f"{gate.worst['bytes'] >> 20} MiB")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--size", choices=("sample", "whole"), default="sample")
    parser.add_argument("--only", default="")
    parser.add_argument("--no-limits", action="store_true", help="for a build with sanitizers")
    gate = Gate(parser.parse_args())
    start = time.monotonic()
    try:
        figures = run(gate)
    except AssertionError as failure:
        print(f"G8 FAILED: {failure}")
        return 1
    finally:
        shutil.rmtree(gate.folder, ignore_errors=True)
    print(f"G8: {figures} ({time.monotonic() - start:.1f} s)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
