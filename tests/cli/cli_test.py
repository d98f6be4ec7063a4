#!/usr/bin/env python3
"""Drives the built corvane-cli as a person or a script would. Usage: cli_test.py PROGRAM"""
import csv
import gzip
import io
import json
import os
import pathlib
import pty
import select
import shutil
import signal
import sqlite3
import subprocess
import sys
import tarfile
import tempfile
import time
import unittest

PROGRAM = ""
AGENT = "Mozilla/5.0 (X11; Linux x86_64) Firefox/120.0"
ROBOT = "Mozilla/5.0 (compatible; Googlebot/2.1; +http://www.google.com/bot.html)"
SEARCH = "https://www.google.com/search?q=red+shoes"


def line(second=0, ip="192.0.2.1", path="/a.html", referrer="-", agent=AGENT, status=200):
    time_text = time.strftime("%d/%b/%Y:%H:%M:%S", time.gmtime(1709251200 + second))
    return f'{ip} - - [{time_text} +0000] "GET {path} HTTP/1.1" {status} 512 "{referrer}" "{agent}"\n'


def shop_log():
    """Two searches for one term, a reader without one, a robot, an image, an error and a broken line."""
    return "".join([
        line(0, "192.0.2.1", "/shoes.html", SEARCH), line(20, "192.0.2.1", "/red.html"),
        line(5, "192.0.2.2", "/shoes.html", SEARCH),
        line(7, "192.0.2.3", "/start.html"),
        line(9, "192.0.2.4", "/shoes.html", agent=ROBOT),
        line(21, "192.0.2.1", "/logo.png"),
        line(30, "192.0.2.5", "/gone.html", status=404),
        "this is no line of a log\n",
    ])


class CliCase(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="corvane-cli-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.home = self.folder / "home"
        self.env = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "CORVANE_HOME": str(self.home),
                    "TERM": "xterm"}

    def start(self, *arguments):
        return subprocess.Popen([PROGRAM, *arguments], env=self.env, cwd=self.folder, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def run_cli(self, *arguments, status=0, text=None):
        done = subprocess.run([PROGRAM, *arguments], env=self.env, cwd=self.folder, timeout=60, capture_output=True,
                              **({"input": text.encode()} if text is not None else {"stdin": subprocess.DEVNULL}))
        self.out, self.err = (text.decode("utf-8", "surrogateescape") for text in (done.stdout, done.stderr))
        self.assertEqual(done.returncode, status, f"{arguments}\n{self.out}\n{self.err}")
        return self.out

    def run_json(self, *arguments, status=0):
        words = 1 if arguments[0] == "add" else 2
        return json.loads(self.run_cli(*arguments[:words], "--json", *arguments[words:], status=status))

    def on_terminal(self, *arguments, keys=b""):
        """All that a terminal gets to see; the keys are pressed at the first question."""
        child, terminal = pty.fork()
        if child == 0:
            try:
                os.chdir(self.folder)
                os.execve(PROGRAM, [PROGRAM, *arguments], self.env)
            finally:
                os._exit(127)
        seen = b""
        while True:
            if keys and b"[y/n]" in seen:
                os.write(terminal, keys)
                keys = b""
            if not select.select([terminal], [], [], 30)[0]:
                os.kill(child, signal.SIGKILL)
            try:
                part = os.read(terminal, 65536)
            except OSError:
                break
            if not part:
                break
            seen += part
        os.close(terminal)
        self.terminal_status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
        return seen

    def write(self, name, text):
        path = self.folder / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return str(path)

    def make_site(self, name="Shop"):
        self.run_cli("site", "create", name)

    def add(self, *files, status=0, extra=()):
        return self.run_json("add", "--invalid", "skip", "--overlap", "add", *extra, "--", *files, status=status)


class TheWholeRoad(CliCase):
    def test_log_to_report(self):
        log = self.write("access.log", shop_log())
        self.run_cli("--home", str(self.home), "site", "create", "My shop", "--keep-extra", "--no-skip-404")
        added = self.run_json("add", "--format", "apache-combined", "--no-components", "--no-robots",
                              "--invalid", "skip", "--overlap", "add", log)
        totals = added["totals"]
        self.assertEqual([totals["All" + name] for name in ("LinesRead", "LinesAdded", "Bots", "Comps")], [7, 5, 1, 1])
        file = added["files"][0]
        self.assertEqual((file["FileName"], file["FirstDate"], file["LastDate"]),
                         (log, "2024-03-01 00:00:00", "2024-03-01 00:00:30"))
        self.assertEqual(added["visitsMade"], 4)
        self.assertEqual(set(added["seconds"]), {"read", "visits", "compaction"})
        self.assertIn("cannot be matched", added["problems"][log][0])

        again = self.run_json("add", "--no-components", "--no-robots", "--invalid", "skip", "--overlap", "add", log)
        self.assertEqual((again["totals"]["AllLinesAdded"], again["totals"]["AllLinesExist"]), (0, 5))
        self.run_cli("add", "--no-components", "--no-robots", "--invalid", "skip", "--overlap", "skip", log)

        shown = self.run_json("site", "show")
        self.assertEqual((shown["name"], shown["dates"]["first"], shown["counts"]["visits"], shown["unfinished"]),
                         ("My shop", "2024-03-01", 4, None))
        self.assertFalse(shown["options"]["Skip404"])
        with sqlite3.connect(shown["database"]) as database:
            self.assertEqual(database.execute("SELECT count(*) FROM logline").fetchone()[0], 5)

        rows = list(csv.reader(io.StringIO(self.run_cli("report", "terms", "--threshold", "1", "--as", "csv", "--dist1"))))
        self.assertEqual(rows[1][:2], ["red shoes", "2"])
        behind = json.loads(self.run_cli("visits", "terms", "--line", "Red Shoes", "--threshold", "1", "--as", "json",
                                         "--lines"))
        self.assertEqual((behind["line"], behind["count"]), ("red shoes", 2))
        self.assertEqual([line["page"] for line in behind["visits"][0]["lines"]], ["shoes.html", "red.html"])
        of_visit = self.run_cli("visits", "--visit", str(behind["visits"][0]["visit"]), "--as", "csv")
        self.assertEqual([row[1:3] for row in csv.reader(io.StringIO(of_visit))],
                         [["Page", "Status"], ["shoes.html", "200"], ["red.html", "200"]])
        self.run_cli("visits", "terms", "--line", "red shoos", "--threshold", "1", status=2)
        self.assertIn("red shoes", self.err)
        as_json = json.loads(self.run_cli("report", "1", "--kind", "all", "--threshold", "1", "--as", "json", "--dist1"))
        self.assertEqual((as_json["field"], as_json["kind"], as_json["from"]), ("terms", "all", "2024-03-01"))
        self.assertEqual(as_json["columns"], rows[0])
        self.assertIn("red shoes", self.run_cli("report", "terms", "--threshold", "1"))
        self.run_cli("report", "terms", "--threshold", "1", "--as", "csv", "--dist1", "-o", "out.csv")
        self.assertEqual(list(csv.reader(io.StringIO((self.folder / "out.csv").read_bytes().decode()))), rows)
        self.run_cli("compact")

    def test_options_hold_for_one_call_or_are_stored(self):
        self.make_site()
        log = self.write("a.log", shop_log())
        self.assertEqual(self.add(log, extra=["--robots", "--components"])["totals"]["AllBots"], 0)
        self.assertEqual(self.run_cli("option", "get", "nobots"), "True\n")
        self.run_cli("option", "set", "nobots", "no")
        self.assertEqual(self.run_cli("option", "get", "NOBOTS"), "False\n")
        self.run_cli("option", "set", "nobots", "perhaps", status=2)
        self.run_cli("option", "set", "CntTopVals", "-1", status=2)
        self.run_cli("option", "set", "LastKeepVal", "False", status=2)
        self.run_cli("option", "set", "CntTopVal", "3", status=2)
        self.assertIn("Valid are: CntTopVals,", self.err)
        files = {row["key"]: row["file"] for row in self.run_json("option", "list")}
        self.assertEqual((files["Skip404"], files["All"]), ("dbdef.ini", "LastVals.ini"))

    def test_definitions(self):
        self.make_site()
        log = self.write("a.log", shop_log())
        spec = '[%d/%M/%Y,%h:%n:%e] %S "%r" [%c]'
        self.run_cli("format", "set", "mine", spec, "[%S,%r]")
        self.assertEqual(self.run_cli("format", "show", "mine"), spec + "\n[%S,%r]\n")
        self.assertEqual(self.run_json("format", "try", "apache-combined", log)["fit"], 7)
        self.assertEqual(self.run_json("format", "try", log)[0]["format"], "apache-combined")
        self.assertEqual(self.run_json("format", "set", "mine", "%S %r;", "%S,%r;")["specs"], ["%S %r;", "%S,%r;"])
        for name, wrong in (("x", "%S|%r "), ("x", "no placeholder"), ("Main", "%S "), ("a]b", "%S ")):
            self.run_cli("format", "set", name, wrong, status=2)
        self.run_cli("format", "set", "near", '%S %r~%c "%f')
        tried = self.run_json("format", "try", "near", log, status=1)
        self.assertEqual((tried["plausible"], tried["firstMisfitColumn"], tried["expected"]), (0, 11, "~"))
        self.assertEqual(tried["missing"], ["referrer", "agent", "bytes"])
        self.run_cli("format", "try", "near", log, status=1)
        self.assertIn('Column 11: "~" is looked for here', self.out)
        self.assertEqual(self.run_json("format", "remove", "near")["name"], "near")
        self.run_cli("format", "show", "near", status=2)

        self.run_cli("engine", "set", "--add", "http://*.finder.*/* ?ask")
        tried = self.run_json("engine", "try", "https://www.finder.org/x?ask=Two+Words", SEARCH, "http://example.org/")
        self.assertEqual([(t["engine"], t["raw"], t["term"]) for t in tried],
                         [("FINDER", "Two+Words", "two words"), ("GOOGLE", "red+shoes", "red shoes"), (None, None, None)])
        before = self.run_json("engine", "list")
        self.run_cli("engine", "set", "http://good.*/* ?q", "http://bad[.*/* ?q", status=2)
        self.assertIn("Definition 2", self.err)
        self.assertEqual(self.run_json("engine", "list"), before)
        self.run_cli("engine", "set", "--file", "-", text="http://one.*/* ?q\r\nhttp://two.*/* ?q\n")
        self.assertEqual(len(self.run_json("engine", "list")), 2)

    def test_engines_one_by_one(self):
        self.run_cli("engine", "set", "http://*.finder.*/* ?q", "http://finder.net/* ?p", "http://chat.test/*")
        self.assertIn("http://chat.test/* names no place of a term", self.err)
        shown = self.run_json("engine", "show", "Finder")
        self.assertEqual([(d["number"], d["url"], d["places"], d["general"]) for d in shown],
                         [(1, "http://*.finder.*/*", "?q", True), (2, "http://finder.net/*", "?p", False)])
        self.assertTrue(self.run_json("engine", "show", "CHAT")[0]["assistant"])
        self.run_cli("engine", "show", "fynder", status=2)
        self.assertIn("FINDER", self.err)
        tried = self.run_json("engine", "try", "https://chat.test/")[0]
        self.assertEqual((tried["engine"], tried["assistant"], tried["found"]), ("CHAT", True, False))
        for wrong in ("0", "4", "http://*.finder.*"):
            self.run_cli("engine", "remove", wrong, status=2)
        self.assertEqual(self.run_json("engine", "remove", "1", "http://finder.net/*"), {"definitions": 1})
        self.assertEqual(self.run_json("engine", "list"), ["http://chat.test/*"])
        self.run_cli("engine", "remove", "1", status=2)
        self.assertIn("delivered one", self.err)

    def test_filters(self):
        self.make_site()
        log = self.write("a.log", shop_log())
        self.run_cli("filter", "set", "main", "Shoes", "--field", "file", "--op", "contains", "--value", "SHOES")
        self.run_cli("filter", "set", "main", "Found", "--field", "referrer", "--op", "contains", "--value", "google")
        self.run_cli("filter", "set", "main", "Both", "--rule", "Shoes", "--rule", "found", "--all")
        shown = self.run_json("filter", "show", "main", "both")
        self.assertEqual([(r["name"], r["value"]) for r in shown["rules"]], [("Shoes", "shoes"), ("Found", "google")])
        self.run_cli("filter", "remove", "main", "Shoes", status=2)
        self.run_cli("filter", "select", "main", "Bath", status=2)
        self.assertIn("Both", self.err)

        self.add(log, extra=["--filter", "except"])
        self.assertIn("main filter is on and has no rule selected", self.err)
        self.run_cli("filter", "select", "main", "Both")
        self.run_cli("site", "create", "Second")
        self.run_cli("site", "select", "shop")
        only = self.add(self.write("b.log", shop_log()), extra=["--filter", "only", "--robots", "--components"])
        self.assertEqual(only["totals"]["AllFiltered"], 4)
        self.run_cli("filter", "set", "robots", "shoebot", "--field", "agent", "--op", "contains", "--value", "ShoeBot")
        self.run_cli("filter", "select", "robots", "shoebot", status=2)
        self.run_cli("filter", "remove", "robots", "shoebot")
        self.assertNotIn("shoebot", [row["name"] for row in self.run_json("filter", "list", "robots")])
        tried = self.run_json("filter", "try", "main", log)
        self.assertEqual((tried["lines"] - tried["fit"], tried["satisfied"], len(tried["examples"])), (1, 2, 2))
        self.assertEqual(self.run_json("filter", "try", "main", "--value", "google/Shoes"),
                         {"value": "google/Shoes", "satisfied": True,
                          "rules": [{"name": "Shoes", "satisfied": True}, {"name": "Found", "satisfied": True}]})
        self.assertFalse(self.run_json("filter", "try", "robots", "--value", "nobody")["satisfied"])
        self.run_cli("filter", "try", "main", status=2)
        self.run_cli("filter", "try", "main", log, "--value", "x", status=2)
        self.assertEqual(self.run_json("filter", "remove", "main", "Both"), {"removed": "Both", "wasInUse": True})
        self.run_cli("filter", "try", "main", log, status=2)


class SitesLeave(CliCase):
    def setUp(self):
        super().setUp()
        for name in ("One", "Two", "Three"):
            self.make_site(name)

    def names(self):
        return [row["name"] for row in self.run_json("site", "list")]

    def test_remove(self):
        self.run_cli("site", "remove", "three", status=1)
        self.assertIn("current site cannot be removed", self.err)
        self.run_cli("site", "remove", "Tow", status=2)
        self.assertIn("Two", self.err)
        self.run_cli("site", "remove", "Two", "--recycle", status=2)  # nobody can be asked: nothing happens
        self.assertIn("--yes", self.err)
        self.assertEqual(self.names(), ["One", "Two", "Three"])
        self.run_cli("site", "remove", "one")
        self.assertIn(str(self.home / "sites" / "One"), self.out)
        self.assertTrue((self.home / "sites" / "One" / "data" / "site1.mdb").exists())
        self.run_cli("site", "remove", "Two", "--recycle", "--yes")
        self.assertTrue((self.home / "recycled" / "Two" / "data" / "site1.mdb").exists())
        self.assertEqual(self.names(), ["Three"])

    def test_a_person_is_asked_for_the_folder(self):
        seen = self.on_terminal("site", "remove", "One", "--recycle", keys=b"n\n")
        self.assertIn(b"Press YES to erase folder: ", seen)
        self.assertTrue((self.home / "sites" / "One").exists())
        self.on_terminal("site", "remove", "Two", "--recycle", keys=b"y\n")
        self.assertTrue((self.home / "recycled" / "Two").exists())

    def test_an_entry_that_points_elsewhere_moves_nothing(self):
        precious = self.folder / "precious"
        (precious / "param").mkdir(parents=True)
        (precious / "param" / "dbdef.ini").write_text("[Main]\nParm=Bad\n")
        sites = self.home / "param" / "sitedbs.ini"
        for target in ("/", str(self.folder), str(precious), str(self.home), str(self.home / "sites")):
            with self.subTest(target=target):
                self.make_site("Bad")
                self.run_cli("site", "select", "Three")
                text = sites.read_text()
                start = text.index("[Bad]")
                sites.write_text(text[:start] + "[Bad]\nParm=Z:" + target.replace("/", "\\") + "\n")
                self.run_cli("site", "select", "Bad", status=1)
                self.assertIn("Database NOT changed.", self.err)
                self.run_cli("--site", "Bad", "report", "terms", status=1)
                self.run_cli("--site", "Bad", "option", "set", "CntTopVals", "7", status=1)
                self.run_cli("site", "remove", "Bad", "--recycle", "--yes", status=1)
                self.assertTrue(os.path.isdir(target))
        self.assertFalse((self.home / "recycled").exists())
        self.assertEqual(list(precious.rglob("*")), [precious / "param", precious / "param" / "dbdef.ini"])

    def test_recycle(self):
        self.run_cli("site", "recycle", status=2)
        self.on_terminal("site", "recycle", keys=b"n\n")
        self.assertEqual(self.terminal_status, 3)
        self.assertEqual(len(self.names()), 3)
        self.run_cli("site", "recycle", "--yes")
        self.assertIn("Databases moved to recycle directory:", self.out)
        self.assertEqual(self.names(), [])
        self.assertEqual(sorted(os.listdir(self.home / "recycled")), ["One", "Three", "Two"])
        self.make_site("One")

    def test_recorded_failures(self):
        self.run_cli("log", "--errors")
        self.assertIn("No errors have been recorded.", self.err)
        record = '"2024-02-2{0}","13:05:09",9711,"fMnu_FW","/x","corvane","Corvane","","Main","List","2",' \
                 '"<<<Logged event>>>\r\rDescription:\r<<9711 - bad ""x"">>.\r\rForm"\r\n'
        log = self.home / "sites" / "Three" / "param" / "errors.log"
        log.write_bytes(('ord","cut off"\r\n' + "".join(record.format(i) for i in range(1, 4))).encode())
        records = self.run_json("log", "--errors", "-n", "2")
        self.assertEqual([row["date"] for row in records], ["2024-02-22", "2024-02-23"])
        self.assertEqual((records[0]["number"], records[0]["event"], records[0]["control"]), (9711, "fMnu_FW", "List"))
        self.assertIn('bad "x"', self.run_cli("log", "--errors"))


class BadInput(CliCase):
    def test_wrong_usage_names_what_is_valid(self):
        self.make_site()
        cases = [
            (["reprot"], "report"), (["report", "trems"], "terms"), (["report", "terms", "--tpo", "3"], "--top"),
            (["report", "terms", "--from", "2024-13-01"], "YYYY-MM-DD"), (["report", "terms", "--as", "cvs"], "csv"),
            (["report", "engines", "--kind", "grouped"], "There are no groups of engines"),
            (["visits"], "--visit"), (["visits", "terms"], "--line TEXT"), (["area", "set", "a=b", "/a"], "name"),
            (["plot", "terms"], "--line TEXT"), (["plot", "terms", "--total", "--line", "x"], "--line TEXT"),
            (["report", "terms", "--from", "2024-02-02", "--to", "2024-02-01"], "behind"),
            (["--site", "Shup", "site", "show"], "Shop"), (["site", "select", "x"], "Shop"), (["site", "show", "x"], "Shop"),
            (["site", "shwo"], "show"), (["add", "-", "-"], "Standard input"), (["add"], "FILE"),
            (["add", "--format", "apache-combind", "a.log"], "apache-combined"), (["add", "--filter", "some", "a.log"], "except"),
            (["format", "show", "nginx"], "nginx-combined"), (["filter", "list", "robot"], "robots"),
        ]
        for arguments, word in cases:
            with self.subTest(arguments=arguments):
                self.run_cli(*arguments, status=2)
                self.assertIn(word, self.err)
                self.assertEqual(self.out, "")

    def test_every_command_has_help_with_an_example(self):
        for command in ("add", "resume", "compact", "report", "site create", "format try", "engine set", "filter set",
                        "option set"):
            self.assertIn("Example", self.run_cli(*command.split(), "--help"))
        self.assertIn("corvane-cli", self.run_cli("--version"))

    def test_without_a_site_or_data(self):
        self.run_cli("report", "terms", status=1)
        self.assertIn("site create", self.err)
        self.make_site()
        self.run_cli("report", "terms", status=1)
        self.assertIn("no visits yet", self.err)
        self.run_cli("resume")

    def test_logs_that_cannot_be_read(self):
        self.make_site()
        os.mkfifo(self.folder / "pipe.log")
        (self.folder / "folder.log").mkdir()
        bad = {"missing.log": "No such file", "pipe.log": "pipe", "folder.log": "folder", "empty.log": "empty",
               "packed.log": "packed (zip)", "binary.log": "no text file", "*.nothing": "No file matches"}
        self.write("empty.log", "")
        self.write("packed.log", b"PK\x03\x04" + bytes(200))
        self.write("binary.log", bytes(range(256)) * 20)
        good = self.write("good.log", shop_log())
        added = self.add(*bad, good, status=1)
        self.assertEqual(added["totals"]["AllLinesRead"], 7)
        for name, word in bad.items():
            with self.subTest(name=name):
                self.assertTrue(any(name in error and word in error for error in added["errors"]), added["errors"])
        self.assertEqual(self.run_json("site", "show")["unfinished"], None)

    def test_a_format_that_does_not_fit(self):
        self.make_site()
        log = self.write("a.log", shop_log())
        self.run_cli("format", "set", "odd", "%S~%r~%c")
        added = self.add(log, extra=["--format", "odd"], status=1)
        misfit = added["misfits"][0]
        self.assertEqual((misfit["lines"], misfit["firstMisfitNumber"]), (8, 1))
        self.assertIn("apache-combined", misfit["wouldFit"])
        self.assertIn("--format NAME", self.err)
        self.run_cli("format", "try", "odd", log, status=1)

    def test_a_question_without_an_answer_names_the_option(self):
        self.make_site()
        log = self.write("a.log", shop_log())
        self.run_cli("add", log, status=2)
        self.assertIn("--invalid skip", self.err)
        self.run_cli("site", "show")
        self.assertIn("corvane-cli resume", self.err)
        self.run_cli("add", "--invalid", "skip", log, status=2)
        self.assertIn("--overlap add", self.err)
        self.run_cli("add", "--invalid", "stop", "--overlap", "add", log, status=1)
        self.run_cli("site", "show")
        self.assertEqual(self.err, "")


    def test_a_person_at_the_terminal_is_asked(self):
        self.make_site()
        log = self.write("a.log", line() + "broken\n" + line(5))
        self.assertIn(b"Go on? [y/n]", self.on_terminal("add", log, keys=b"perhaps\nn\n"))
        self.assertEqual(self.terminal_status, 3)
        self.assertEqual(self.run_json("site", "show")["counts"]["lines"], 1)
        self.on_terminal("add", log, keys=b"y\ny\n")
        self.assertEqual(self.terminal_status, 0)
        self.assertEqual(self.run_json("site", "show")["counts"]["lines"], 2)
        self.on_terminal("add", log, keys=b"\x03")
        self.assertEqual(self.terminal_status, 128 + signal.SIGINT)


class AddLog(CliCase):
    def test_what_was_added_is_listed(self):
        self.make_site()
        self.run_cli("log")
        self.assertIn("No data has been added", self.err)
        self.assertEqual(json.loads(self.run_cli("log", "--json")), [])
        self.write("shop.log", shop_log())
        bad = self.write("a?b\n\x1b[31m|.log", line(90000) + "garbage\n")
        self.add("shop.log")
        self.add("shop.log", bad)
        records = json.loads(self.run_cli("log", "--json"))
        self.assertEqual({len(record) for record in records}, {36})
        self.assertEqual([record["action"].split(". less")[0] for record in records],
                         ["START Read File.", "Done. Read File", "END ADD", "START ADD", "START Read File.",
                          "Done. Read File", "START Read File.", "Done. Read File", "END ADD"])
        first, second = records[2], records[8]
        self.assertEqual((first["date"], first["totalLines"], first["linesAdded"], first["exclBots"],
                          first["exclBotsLines"], first["skipDupes"], first["minsPreProcess"]),
                         ("** Done **", 7, 4, True, 1, False, None))
        self.assertEqual((second["linesAdded"], second["skipDupesLines"], second["problems"]), (1, 4, 2))
        self.assertTrue(records[7]["fileSpec"].endswith("a\uff1fb..[31m|.log"))
        param = self.home / "sites" / "Shop" / "param"
        self.assertEqual(first["robotFilterCopy"], second["robotFilterCopy"])
        self.assertTrue((param / first["robotFilterCopy"]).is_file())
        self.assertIn("Parm=GOOGLE|20240301", (param / first["engineSummary"]).read_text())
        table = self.run_cli("log", "-n", "2").splitlines()
        self.assertEqual(len([row for row in table if "20" in row]), 2)
        self.assertIn("** End ADD **", table[-1])

    def test_an_add_that_cannot_be_recorded_is_an_add(self):
        self.make_site()
        self.write("shop.log", shop_log())
        (self.home / "sites" / "Shop" / "param" / "adddata.log").mkdir()
        self.assertEqual(self.add("shop.log")["LinesAdded"], 4)
        self.assertEqual(self.err.count("the add log does not tell all"), 1)


class Hostile(CliCase):
    def test_site_names(self):
        for name in ('a"b', "a|b", "[a]", "a\nb", "../x", "x" * 300, "", " a", "Main", "\x1b[31m"):
            with self.subTest(name=name):
                self.run_cli("site", "create", name, status=1)
                self.assertNotIn("\x1b", self.err)
        self.assertEqual(self.run_json("site", "list"), [])
        for name in ("..", "it's", "Größe %41; rm -rf", "CON", "sites"):
            self.make_site(name)
        folders = [pathlib.Path(row["folder"]) for row in self.run_json("site", "list")]
        self.assertEqual({folder.parent for folder in folders}, {self.home / "sites"})
        self.assertEqual(len(set(folders)), 5)

    def test_log_names_are_taken_as_they_are(self):
        self.make_site()
        names = ['quote".log', "a|b.log", "x [LogFormat: iis-w3c-iis6]", "[a,b]", "line\nfeed.log", "back\\slash.log", "star*.log",
                 "\x1b[2J.log", "ü" * 100, " blank "]
        files = [self.write(name, line(60 * i, f"198.51.100.{i}")) for i, name in enumerate(names)]
        added = self.add(*files, status=0)
        self.assertEqual(added["totals"]["AllLinesAdded"], len(names))
        self.assertEqual([file["FileName"] for file in added["files"]], files)
        os.rename(files[3], self.folder / "-o.log")
        self.run_cli("add", "--overlap", "add", "--", "-o.log", "[a", "[a,b]", status=1)
        self.assertIn("/[a,b]", self.err)
        self.assertNotIn("\x1b", self.run_cli("add", "--overlap", "add", files[7]))
        self.run_cli("add", "y" * 300, status=1)

    def test_control_characters_do_not_reach_a_terminal(self):
        self.make_site()
        bad = "https://www.google.com/search?q=%1B%5B31mred%C2%9B"
        log = self.write("a.log", line(0, referrer=bad) + line(1, path="/\x1b]0;x\x07.html") + "\x1b[2J no line\n")
        shown = self.on_terminal("add", "--invalid", "stop", "--robots", log)
        self.assertIn(b"\\x1B[2J no line", shown)
        for form in ("table", "csv", "json"):
            seen = self.on_terminal("report", "terms", "--threshold", "1", "--as", form)
            self.assertEqual(self.terminal_status, 0)
            seen = seen.replace(b"\x1b[K", b"").replace(b"\x1b[1m", b"").replace(b"\x1b[0m", b"")
            self.assertIn(b"[31mred", seen)
            for raw in (b"\x1b", b"\xc2\x9b"):
                self.assertNotIn(raw, seen)
        self.env["NO_COLOR"] = "1"
        self.assertNotIn(b"\x1b[1m", self.on_terminal("report", "terms", "--threshold", "1"))

    def test_progress_stays_off_pipes_and_full_disks_are_told(self):
        self.make_site()
        self.run_cli("add", self.write("a.log", line()))
        self.assertEqual(self.err, "")
        with open("/dev/full", "w") as full:
            done = subprocess.run([PROGRAM, "site", "show"], env=self.env, stdout=full, stderr=subprocess.PIPE, timeout=20)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"could not be written", done.stderr)
        self.run_cli("report", "pages", "--threshold", "1", "--not-search", "-o", "/nonexistent/x.csv", status=1)
        text = self.run_cli("report", "start-pages", "--threshold", "1", "--not-search", "--as", "csv")
        self.assertTrue(text.endswith("\r\n"))


class Interrupted(CliCase):
    LINES = 40000

    def setUp(self):
        super().setUp()
        rows = (line(i, f"10.{i % 250}.{i % 97}.{i % 61}", f"/page{i % 500}.html",
                     SEARCH + str(i % 40) if i % 9 == 0 else "-") for i in range(self.LINES))
        self.log = self.write("big.log", "".join(rows))
        self.make_site()
        self.database = self.run_json("site", "show")["database"]

    def begin(self):
        """An add that has read its first line and is not done."""
        mark = pathlib.Path(self.database).parent.parent / "param" / "LastVals.ini"
        before = mark.stat().st_mtime_ns
        process = self.start("add", "--overlap", "add", self.log)
        deadline = time.monotonic() + 20
        while mark.stat().st_mtime_ns == before or b"MustDoVisitsAdd=2" not in mark.read_bytes():
            self.assertIsNone(process.poll(), "the add was over before it could be interrupted")
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.005)
        return process

    def facts(self):
        with sqlite3.connect(self.database) as database:
            return [database.execute(sql).fetchone()[0] for sql in (
                "SELECT count(*) FROM logline", "SELECT count(*) FROM visit", "SELECT count(*) FROM page",
                "SELECT count(*) FROM logline WHERE VisitID IS NULL")]

    def complete(self):
        self.run_cli("site", "show")
        self.assertIn("corvane-cli resume", self.err)
        self.run_cli("resume")
        self.run_cli("add", "--overlap", "add", self.log)
        self.assertEqual(self.err.count("resume"), 0)
        stopped = self.facts()
        self.run_cli("site", "create", "Whole")
        self.database = self.run_json("site", "show")["database"]
        self.run_cli("add", self.log)
        self.assertEqual(stopped[0], self.facts()[0])
        self.assertEqual(stopped[2:], self.facts()[2:])

    def test_kill_is_noticed_and_resume_completes(self):
        process = self.begin()
        process.kill()
        process.communicate()
        self.complete()

    def test_signals_stop_with_their_status(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number=number):
                process = self.begin()
                process.send_signal(number)
                _, errors = process.communicate(timeout=20)
                self.assertEqual(process.returncode, 128 + number)
                self.assertIn(b"corvane-cli resume", errors)
        self.complete()

    def test_the_second_program_is_told_at_once(self):
        process = self.begin()
        process.send_signal(signal.SIGSTOP)
        try:
            for arguments in (["site", "show"], ["report", "terms"], ["add", self.log], ["option", "set", "nobots", "no"]):
                start = time.monotonic()
                self.run_cli(*arguments, status=1)
                self.assertLess(time.monotonic() - start, 1)
                self.assertIn("Another copy of this program", self.err)
            self.run_cli("option", "get", "nobots")
            self.assertEqual(self.err, "")
        finally:
            process.send_signal(signal.SIGCONT)
            process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0)


class RobotsAndChecks(CliCase):
    def setUp(self):
        super().setUp()
        self.make_site()
        ask = lambda agent: line(1, path="/robots.txt", agent=agent)
        self.log = self.write("access.log", shop_log().replace("this is no line of a log\n", "") + ask("Spark|{x}") +
                              ask("Mooncat/1.0") + ask("Spark|{x}") + ask(ROBOT) +
                              line(2, path="/x.html", referrer="https://www.google.com/maps") +
                              line(3, path="/y.html", referrer="http://www.blog.example/z"))

    def agents(self):
        return [(each["agent"], each["lines"]) for each in self.run_json("robot", "find", self.log)["candidates"]]

    def test_find_makes_filters_and_skips_the_rest(self):
        self.assertEqual(self.agents(), [("Mooncat/1.0", 1), ("Spark|{x}", 2)])
        self.assertIn("Do NOT add generic", (self.run_cli("robot", "find", self.log), self.err)[1])
        self.run_cli("robot", "find", self.log, "--add", "--agent", "Nobody", status=2)
        self.run_cli("robot", "find", self.log, "--agent", "Mooncat/1.0", status=2)
        found = self.run_json("robot", "find", self.log, "--add", "--agent", "Spark|{x}", "--skip-rest")
        self.assertEqual(([each["agent"] for each in found["added"]], found["skipped"]), (["Spark|{x}"], ["Mooncat/1.0"]))
        name = found["added"][0]["name"]
        self.assertEqual(self.agents(), [])
        self.assertIn("No new filters created.", (self.run_cli("robot", "find", self.log, "--add"), self.err)[1])
        self.assertEqual(self.run_json("robot", "show", name),
                         {"name": name, "field": "agent", "op": "starts-with", "value": "spark|{x}", "matchCase": False})
        self.assertEqual([each["filter"] for each in self.run_json("robot", "try", "SPARK|{x} 2", "a Spark|{x}")],
                         [name, None])
        self.run_cli("robot", "remove", name)
        self.assertEqual(self.agents(), [("Spark|{x}", 2)])

    def test_filters_are_edited(self):
        count = len(self.run_json("robot", "list"))
        self.run_cli("robot", "set", "Mine", "--value", "MOON", "--op", "contains")
        self.run_cli("robot", "set", "mine", "--value", "Moon")
        self.assertEqual(len(self.run_json("robot", "list")), count + 1)
        self.assertIn("Starts with <moon>", self.run_cli("robot", "show", "MINE"))
        self.assertTrue(self.run_json("robot", "try", "Mooncat/1.0")[0]["robot"])
        self.run_cli("robot", "set", "All", "--value", "", status=2)
        self.run_cli("robot", "set", "All", status=2)
        self.run_cli("robot", "remove", "Googlebott", status=2)
        self.assertIn("Googlebot", self.err)
        self.assertEqual(self.run_json("robot", "set", "Wide", "--value", "Mozilla/5.0 (X11")["value"], "mozilla/5.0 (x11")
        self.assertIn("browsers of people", self.err)
        self.assertEqual(self.run_json("robot", "remove", "wide"), {"removed": "Wide"})

    def test_an_add_makes_filters_of_new_robots_first(self):
        log = self.write("more.log", pathlib.Path(self.log).read_text() +
                         line(4, path="/robots.txt", agent="Mozilla/5.0 (X11; Linux) Own/1"))
        added = self.run_json("add", "--new-robots", "--no-robots", log)
        new = added["newRobots"]
        self.assertEqual([each["agent"] for each in new["added"]], ["Mooncat/1.0", "Spark|{x}"])
        self.assertEqual(new["browsers"], ["Mozilla/5.0 (X11; Linux) Own/1"])
        self.assertGreaterEqual(added["totals"]["AllBots"], 4)
        self.assertIn("Spark|{x}", self.err)
        self.assertTrue(self.run_json("robot", "try", "spark|{x}")[0]["robot"])
        self.run_cli("add", "--new-robots", "--overlap", "add", log)
        self.assertIn("No new filters created.", self.err)
        self.run_cli("add", "--new-robots", str(self.home / "gone.log"), status=1)
        self.assertIn("Read raw log data cancelled or failed.", self.err)

    def test_checks_store_nothing(self):
        check = self.run_json("check", "referrers", self.log)
        self.assertEqual([(each["site"], each["lines"]) for each in check["unknown"]], [("", 5), ("blog.example", 1)])
        self.assertEqual([each["referrers"][0]["referrer"] for each in check["undefined"]][:1],
                         ["https://www.google.com/maps"])
        self.assertEqual(self.run_json("check", "referrers", self.log, "--at-least", "2")["unknown"], [])
        pages = {each["page"]: each for each in self.run_json("check", "pages", self.log)["pages"]}
        self.assertEqual((pages["logo.png"]["skipped"], pages["shoes.html"]["lines"], pages["shoes.html"]["new"]),
                         (True, 3, True))
        self.assertEqual([each["page"] for each in self.run_json("check", "pages", self.log, "--show", "skipped")["pages"]],
                         ["logo.png"])
        robots = self.run_json("check", "robots", self.log)
        self.assertEqual([(each["filter"], each["lines"]) for each in robots["rejected"]], [("Googlebot", 2)])
        self.assertIn("Googlebot", self.run_cli("check", "robots", self.log))
        self.assertIn("blog.example", self.run_cli("check", "referrers", self.log))
        self.assertIn("shoes.html", self.run_cli("check", "pages", self.log))
        self.assertEqual(self.run_json("site", "show")["counts"]["lines"], 0)

    def test_a_file_that_cannot_be_read_is_a_failure(self):
        for command in (("robot", "find"), ("check", "referrers"), ("check", "pages"), ("check", "robots")):
            self.run_cli(*command, "absent.log", status=1)
            self.run_cli(*command, self.log, "--format", "no-such", status=2)


class LogsAsTheyLie(CliCase):
    def setUp(self):
        super().setUp()
        self.make_site()
        self.folder.joinpath("logs").mkdir()

    def test_a_folder_is_read_in_the_order_of_its_dates(self):
        self.write("logs/access.log", line(300, path="/new.html"))
        self.write("logs/access.log.1", line(200))
        self.write("logs/access.log.2.gz", gzip.compress(line(100).encode()))
        self.write("logs/.hidden", line(0))
        files = self.add("logs")["files"]
        self.assertEqual([pathlib.Path(file["FileName"]).name for file in files],
                         ["access.log.2.gz", "access.log.1", "access.log"])
        self.assertEqual(sum(file["LinesAdded"] for file in files), 3)
        self.folder.joinpath("empty").mkdir()
        self.run_cli("add", "empty", status=1)
        self.assertIn("no log in", self.err)

    def test_standard_input(self):
        home = self.home
        words = ("add", "--json", "--invalid", "skip", "--overlap", "add")
        for given in (shop_log().encode(), gzip.compress(shop_log().encode())):
            added = json.loads(self.run_bytes(*words, "-", given=given))
            self.assertEqual(added["files"][0]["FileName"], "-")
            self.assertEqual(added["totals"]["AllLinesRead"], 7)
        self.assertEqual(added["totals"]["AllLinesAdded"], 0)  # packed, the same again
        self.assertFalse(list(home.glob("sites/*/temp")))
        with open(self.write("plain.log", line(900)), "rb") as log:
            done = subprocess.run([PROGRAM, *words, "-"], env=self.env, stdin=log, capture_output=True, timeout=60)
        self.assertEqual(json.loads(done.stdout)["totals"]["AllLinesAdded"], 1)
        self.run_cli("add", "-", "-", status=2, text="")
        self.assertIn("once", self.err)
        self.run_cli("add", "-", status=1, text="")
        self.assertIn("is empty", self.err)
        out = self.run_bytes("check", "pages", "--invalid", "skip", "-", given=line(5, path="/found.html").encode())
        self.assertIn("found.html", out)
        self.assertFalse(list(home.glob("sites/*/temp")))

    def run_bytes(self, *arguments, given):
        done = subprocess.run([PROGRAM, *arguments], env=self.env, cwd=self.folder, input=given, capture_output=True,
                              timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout.decode()

    def test_archives_are_refused_with_advice(self):
        with tarfile.open(self.folder / "logs.tar.gz", "w:gz") as archive:
            archive.add(self.write("inner.log", shop_log()), "inner.log")
        self.add("logs.tar.gz", status=1)
        self.assertIn("archive of files (tar)", self.err)
        self.write("logs.zip", b"PK\x03\x04 and more")
        self.add("logs.zip", status=1)
        self.assertIn("packed (zip)", self.err)


def main():
    global PROGRAM
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    result = unittest.main(exit=False, verbosity=1).result
    failed = len({test.id() for test, _ in result.failures + result.errors})
    print(f"{result.testsRun - failed} passed, {failed} failed", flush=True)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
