"""Ways to damage a database file, each settled by a seed."""
import random
import sqlite3

PAGE = 4096


def _flips(data, dice):
    for _ in range(dice.choice((1, 1, 4, 40))):
        data[dice.randrange(len(data))] ^= 1 << dice.randrange(8)


def _page_flips(data, dice):
    """In the heads of pages, where the tree is."""
    for _ in range(dice.choice((1, 2, 8))):
        page = dice.randrange(len(data) // PAGE)
        data[page * PAGE + dice.randrange(16)] = dice.randrange(256)


def _noise_page(data, dice):
    page = dice.randrange(len(data) // PAGE)
    data[page * PAGE:(page + 1) * PAGE] = dice.randbytes(PAGE)


def _zero_page(data, dice):
    page = dice.randrange(len(data) // PAGE)
    data[page * PAGE:(page + 1) * PAGE] = bytes(PAGE)


def _cut(data, dice):
    del data[dice.choice((0, 1, 15, 99, 100, PAGE, dice.randrange(len(data)), len(data) - 1)):]


def _swapped_pages(data, dice):
    a, b = (dice.randrange(len(data) // PAGE) * PAGE for _ in range(2))
    data[a:a + PAGE], data[b:b + PAGE] = data[b:b + PAGE], data[a:a + PAGE]


def _header(data, dice):
    for _ in range(dice.choice((1, 1, 3))):
        data[dice.randrange(100)] = dice.randrange(256)


def _longer(data, dice):
    data += dice.randbytes(dice.choice((1, PAGE, 3 * PAGE + 7)))


BYTE_DAMAGES = (_flips, _page_flips, _noise_page, _zero_page, _cut, _swapped_pages, _header, _longer)

SCHEMAS = (
    "DROP TABLE visit",
    "DROP TABLE logline",
    "DROP TABLE page; CREATE TABLE page (x)",
    "DROP TABLE visit; CREATE VIEW visit AS SELECT * FROM logline",
    "ALTER TABLE visit RENAME COLUMN StartTimeStamp TO Started",
    "DROP TABLE logline; CREATE TABLE logline (LogLnID TEXT, VisitID BLOB, Timestamp, PageID, Bytes, CntDupes, IP)",
    "UPDATE logline SET Timestamp='x', IP=NULL, PageID=1e300, Bytes=-9e18",
    "UPDATE visit SET StartPageID=2147483647, Files=NULL, CDSClickFurtherPageIDs='||'",
    "UPDATE visit SET CDSClickFurtherPageIDs='9|x||-1|99999999999999999999', CDSBytesClickFurtherPageIDs='1'",
    "UPDATE visit SET EndTimeStamp=-1, StartTimeStamp=VisitID",
    "UPDATE visit SET StartTimeStamp=9e300+VisitID*1e290",
    "UPDATE page SET PageID=PageID+99000000",
    "UPDATE page SET Filename=CAST(x'ff00fe' AS TEXT) || PageID",
    "UPDATE page SET Filename=zeroblob(9000000) WHERE PageID=1",
    "UPDATE visit SET StzdSearchTerm=CAST(x'c328' AS TEXT), SearchEngine=NULL",
    "CREATE TRIGGER t AFTER INSERT ON logline BEGIN DELETE FROM visit; END",
    "DROP TABLE referrerwait; CREATE VIEW referrerwait AS SELECT 1 AS LogLnID, 2 AS Referrer",
    "PRAGMA user_version=99",
    "PRAGMA application_id=7",
    "PRAGMA journal_mode=WAL",
)


def _schema(database, dice):
    store = sqlite3.connect(database)
    try:
        store.executescript(dice.choice(SCHEMAS))
        store.commit()
    finally:
        store.close()


def _noise_journal(database, dice):
    tail = dice.choice(("-journal", "-wal", "-shm", ".temp", ".temp-journal"))
    with open(str(database) + tail, "wb") as file:
        file.write(dice.randbytes(dice.choice((0, 8, 512, 5000))))


def _foreign_journal(database, dice):
    """A sound journal, of another database."""
    other = str(database) + ".other"
    store = sqlite3.connect(other)
    store.executescript("PRAGMA journal_mode=WAL; CREATE TABLE a (b); INSERT INTO a VALUES (randomblob(20000))")
    with open(other + "-wal", "rb") as source, open(str(database) + "-wal", "wb") as target:
        target.write(source.read())
    store.close()
    for tail in ("", "-wal", "-shm"):
        try:
            (database.parent / (database.name + ".other" + tail)).unlink()
        except FileNotFoundError:
            pass


FILE_DAMAGES = (_schema, _schema, _noise_journal, _foreign_journal)

# Opening these brings the file into order again (a table or an index that is missing is made, a write-ahead log is
# taken in), so that their bytes may change.
MENDED = ("schema", "foreign_journal")


def damage(database, seed):
    """Damages the file and tells in which way."""
    dice = random.Random(seed)
    kinds = BYTE_DAMAGES + FILE_DAMAGES
    kind = kinds[seed % len(kinds)]
    if kind in BYTE_DAMAGES:
        data = bytearray(database.read_bytes())
        kind(data, dice)
        database.write_bytes(data)
    else:
        kind(database, dice)
    return kind.__name__.strip("_")
