#include "core/inistore.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <random>
#include <string>

#include "core/cdsini.h"
#include "core/dates.h"
#include "core/error.h"
#include "core/files.h"
#include "core/inicodec.h"
#include "core/inifile.h"
#include "core/utf8.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

class IniStoreTest : public testing::Test {
protected:
    testsupport::TempFolder folder;
    testsupport::ScriptedUser user;
    IniStore ini{user};
    std::string file = folder.File("a.ini");
};

int NumberOf(const auto& action) {
    try {
        action();
    } catch (const ErrorNumber& error) {
        return error.number();
    }
    return 0;
}

TEST_F(IniStoreTest, AMissingEntryAnswersAsTheModeSays) {
    folder.Write("a.ini", "[s]\nn=12abc\nno=False\nlower=false\nmarker=*** not found ***\n");
    EXPECT_EQ(ini.IniGet("s", "x", file), "");
    EXPECT_EQ(ini.IniGet("s", "x", folder.File("none.ini"), Missing::Empty), "");
    EXPECT_EQ(ini.IniGet("s", "x", file, Missing::Marker), kNotFound);
    EXPECT_EQ(ini.IniGet("s", "x", file, Missing::Zero), "0");
    EXPECT_EQ(ini.IniGet("s", "x", file, Missing::Default, "d"), "d");
    EXPECT_EQ(NumberOf([&] { ini.IniGet("s", "x", file, Missing::Raise); }), 1001);
    EXPECT_EQ(ini.IniGetNum("s", "x", file), kNumNotFound);
    EXPECT_EQ(ini.IniGetNum("s", "x", file, Missing::Default, 5), 5);
    EXPECT_EQ(ini.IniGetNum("s", "N", file), 12);
    EXPECT_EQ(ini.IniGetInt("s", "x", file), 31313);
    EXPECT_FALSE(ini.IniGetBool("s", "x", file));
    EXPECT_TRUE(ini.IniGetBoolT("s", "x", file));
    EXPECT_FALSE(ini.IniGetBoolT("s", "no", file));
    EXPECT_TRUE(ini.IniGetBool("s", "lower", file));  // compared exactly
    // A value may be any text, the one that stands for "missing" included.
    EXPECT_EQ(ini.IniGet("s", "marker", file, Missing::Default, "d"), kNotFound);
}

TEST_F(IniStoreTest, AskingHasOkAndCancel) {
    user.WillPressOk();
    EXPECT_EQ(ini.IniGet("s", "x", file, Missing::Ask), "");
    EXPECT_EQ(user.asked.at(0),
              "Error when trying to read from ini file. Entry or section of ini file missing.\rIni file: " + file +
                  "\r. Section: s\r. Entry: x\rError ignored but no data read from ini file.\r"
                  "Press OK to continue. Press Cancel to Stop with Error.");
    EXPECT_EQ(user.ids.at(0), "INIMsg_Section_EN_Missing");
    user.WillCancel();
    EXPECT_THROW(ini.IniGet("s", "x", file, Missing::Ask), Stopped);
}

TEST_F(IniStoreTest, TheStandingModeLastsForOneRead) {
    ini.SetMissingMode(Missing::Marker);
    EXPECT_EQ(ini.IniGet("s", "x", file, Missing::Keep), kNotFound);
    user.WillPressOk();
    EXPECT_EQ(ini.IniGet("s", "x", file, Missing::Keep), "");
    ini.SetMissingMode(Missing::Marker);
    ini.IniGet("s", "x", file, Missing::Empty);
    user.WillPressOk();
    EXPECT_EQ(ini.IniGet("s", "x", file, Missing::Keep), "");
}

TEST_F(IniStoreTest, WritesToTheByte) {
    ini.IniPut("[s]", "k=1", " a\t", file);
    ini.IniPut("[s]", "e", " x ", file);
    ini.IniPutBool("[S]", "E", true, file);
    ini.IniPut("t", "u", "", file);
    const std::string p = "\xC2\xA0\xC2\xA0";
    EXPECT_EQ(folder.Read("a.ini"),
              "[" + p + "(SQ.s" + p + "SQ).]\nk" + p + "eq.1=!~!@#!!!! a!!!009\ne=True\n[t]\nu=\n");
    ini.IniPut("[s]", "e", " x ", file);
    EXPECT_NE(folder.Read("a.ini").find("e=\" x " + p + "<< less two.\"\n"), std::string::npos);
    EXPECT_EQ(ini.IniEntries("[s]", file), (std::vector<std::string>{"k=1", "e"}));
    ini.IniErase("[s]", "k=1", file);
    ini.IniEraseSection("[S]", file);
    EXPECT_EQ(folder.Read("a.ini"), "[t]\nu=\n");
    EXPECT_FALSE(ini.IniHas("[s]", "e", file));
    EXPECT_TRUE(ini.IniHas("t", "u", file));
}

TEST_F(IniStoreTest, ReservedNamesAreRefused) {
    EXPECT_EQ(NumberOf([&] { ini.IniPut("altno.x", "e", "v", file); }), 8011);
    EXPECT_EQ(NumberOf([&] { ini.IniPut("s", "AltNo.x", "v", file); }), 8012);
    EXPECT_EQ(NumberOf([&] { ini.IniPut("s", "SPLITENTRY.x", "v", file); }), 8013);
    EXPECT_EQ(FileSize(file), -1);
}

TEST_F(IniStoreTest, LongValuesStandInParts) {
    const std::string value = std::string(69999, 'x') + "y";
    EXPECT_TRUE(ini.IniPut("s", "e", value, file));
    EXPECT_EQ(folder.Read("a.ini"), "[s]\nSplitEntry.0.e=" + std::string(60800, 'x') +
                                        "\nSplitEntry.1.e=" + std::string(9199, 'x') + "\nSplitEntry.e=1\n");
    EXPECT_EQ(ini.IniGet("s", "e", file), value.substr(0, 69999));  // a single value loses its last character
    EXPECT_EQ(ini.IniEntries("s", file), std::vector<std::string>{"e"});
    EXPECT_TRUE(ini.IniPutWhole("s", "e", value + value, file));
    EXPECT_EQ(ini.IniGet("s", "e", file), value + value);
    ini.IniPut("s", "e", "short", file);
    EXPECT_EQ(folder.Read("a.ini"), "[s]\ne=short\n");
    ini.IniPut("s", "e", value, file);
    ini.IniErase("s", "e", file);
    EXPECT_EQ(folder.Read("a.ini"), "[s]\n");
    EXPECT_TRUE(ini.IniPut("s", "e", std::string(63998, 'x'), file));
    EXPECT_EQ(ini.IniGet("s", "e", file).size(), 63998U);
}

TEST_F(IniStoreTest, PartsFitAndNeverSplitALetter) {
    std::string dense(70000, '\1'), letters = "a";
    while (letters.size() < 130000) letters += "\xC3\xA9";
    for (const std::string& value : {dense, letters, std::string(60000, '\t'), std::string(90000, '\xFF')}) {
        EXPECT_TRUE(ini.IniPutWhole("s", "e", value, file));
        EXPECT_EQ(ini.IniGet("s", "e", file), value);
        const IniFile written = IniFile::Load(file);
        for (const std::string& entry : written.Entries("s")) EXPECT_LE(written.Get("s", entry)->size(), 63998U);
    }
    ini.IniPut("s", "e", letters, file);
    EXPECT_EQ(ini.IniGet("s", "e", file), letters.substr(0, letters.size() - 2));
}

TEST_F(IniStoreTest, PartsOfOneEntryAreNotTakenForAnother) {
    const std::string a(70000, 'a'), b(70000, 'b');
    ini.IniPutWhole("s", "e", a, file);
    ini.IniPutWhole("s", "0.e", b, file);
    ini.IniPut("s", "1.e", "c", file);
    EXPECT_EQ(ini.IniGet("s", "e", file), a);
    EXPECT_EQ(ini.IniGet("s", "0.e", file), b);
    EXPECT_EQ(ini.IniGet("s", "1.e", file), "c");
    EXPECT_EQ(ini.IniEntries("s", file), (std::vector<std::string>{"e", "0.e", "1.e"}));
    folder.Write("a.ini", "[s]\nSplitEntry.e=1e300\nSplitEntry.0.e=x\n");
    EXPECT_EQ(ini.IniGet("s", "e", file), "x");
}

TEST_F(IniStoreTest, SeesEditsWhileTheProgramRuns) {
    ini.IniPut("s", "e", "1", file);
    EXPECT_EQ(ini.IniGet("s", "e", file), "1");
    for (const char* value : {"2", "3", "4"}) {  // same file, same size, no time to speak of between them
        folder.Write("a.ini", std::string("[s]\ne=") + value + "\n");
        EXPECT_EQ(ini.IniGet("s", "e", file), value);
    }
    folder.Write("a.ini", "; mine\n[s]\ne=5\nf=6\n");
    ini.IniPut("s", "e", "7", file);
    EXPECT_EQ(folder.Read("a.ini"), "; mine\n[s]\ne=7\nf=6\n");
    ASSERT_TRUE(FileDelete(file));
    EXPECT_FALSE(ini.IniHas("s", "e", file));
}

TEST_F(IniStoreTest, AFailedWriteIsToldAndLeavesTheOldFile) {
    const std::string nowhere = folder.File("no/a.ini");
    EXPECT_FALSE(ini.LastWriteFailed());
    EXPECT_FALSE(ini.IniPut("s", "e", "v", nowhere, OnFail::Ignore));
    EXPECT_TRUE(ini.LastWriteFailed());
    EXPECT_EQ(NumberOf([&] { ini.IniPut("s", "e", "v", nowhere, OnFail::Raise); }), 1002);
    user.WillPressOk();
    EXPECT_FALSE(ini.IniPut("s", "e", "v", nowhere));
    EXPECT_EQ(user.ids.at(0), "CheckRC");
    EXPECT_EQ(user.asked.at(0), "Return code zero indicating error from attempt to write to ini file: " + nowhere +
                                    ". Section: s. Entry: e. Value: v\rError ignored but data not written to ini "
                                    "file.\r\rPress OK to continue.");
    user.WillCancel();
    EXPECT_THROW(ini.IniPut("s", "e", "v", nowhere), Stopped);
    EXPECT_EQ(ini.IniGet("s", "e", nowhere), "");                    // what was not written is not remembered either
    EXPECT_FALSE(ini.IniPut("s", "e", "v", "::*", OnFail::Ignore));  // a section that has no file
}

TEST_F(IniStoreTest, WhatCannotBeReadIsNeverWritten) {
    ASSERT_TRUE(MakeDir(file));
    EXPECT_EQ(ini.IniGet("s", "e", file), "");
    EXPECT_FALSE(ini.IniPut("s", "e", "v", file, OnFail::Ignore));
    EXPECT_FALSE(ini.IniErase("s", "e", file, OnFail::Ignore));
    EXPECT_FALSE(ini.IniFlush(file, OnFail::Ignore));
    EXPECT_TRUE(IsDir(file));
}

TEST_F(IniStoreTest, SuspendedWritesWriteNothing) {
    ini.SuspendWrites(true);
    EXPECT_TRUE(ini.IniPut("s", "e", "v", file));
    ini.SuspendWrites(false);
    EXPECT_EQ(FileSize(file), -1);
}

TEST_F(IniStoreTest, FindsTheFileFromTheSection) {
    ini.SetSectionFile("Main", file);
    ini.SetSectionFile("Main/AcD", folder.File("b.ini"));
    ini.IniPut("Main", "x", "1", kBySection);
    ini.IniPut("MAIN", "acd", "2", kBySection);
    EXPECT_EQ(folder.Read("a.ini"), "[Main]\nx=1\n");
    EXPECT_EQ(folder.Read("b.ini"), "[MAIN]\nacd=2\n");
    EXPECT_EQ(ini.SectionFile("Other", "x"), "");
}

TEST_F(IniStoreTest, CountsAndMovesAndNames) {
    ini.IniPut("s", "n", "4", file);
    EXPECT_EQ(ini.IniCount("s", "n", file, false, Missing::Empty, 0), 5);
    EXPECT_EQ(ini.IniCount("s", "n", file, true, Missing::Empty, 5), 1);
    EXPECT_EQ(ini.IniGet("s", "n", file), "1");
    EXPECT_TRUE(ini.IniMove("s", "n", file, Missing::Empty, "", "m", ""));
    EXPECT_FALSE(ini.IniMove("s", "none", file, Missing::Empty, "", "m", ""));
    EXPECT_EQ(ini.IniGet("s", "m", file), "1");

    EXPECT_TRUE(ini.IniNewName("s", "names", file, " Abc ", true, false).added);
    user.WillPressOk(2);
    EXPECT_FALSE(ini.IniNewName("s", "names", file, "ABC", true, false).added);
    EXPECT_FALSE(ini.IniNewName("s", "names", file, "splitentry.1", true, false).added);
    EXPECT_TRUE(ini.IniNewName("s", "names", file, "first|", false, true).added);
    EXPECT_EQ(ini.IniGet("s", "names", file), "first!!|Abc{{||{{!!");
    const double day = *DateSerial(2024, 2, 29);
    EXPECT_EQ(ini.IniUniqueName("s", "names", file, day), "20240229.1");
    EXPECT_EQ(ini.IniUniqueName("s", "names", file, day), "20240229.2");
    user.WillPressOk();  // the failed write is told, and the search for a name ends
    EXPECT_EQ(ini.IniUniqueName("s", "names", folder.Path(), day), "");
}

TEST_F(IniStoreTest, ListsComeBackWhole) {
    const IniKey key{"s", "CDSList", file};
    EXPECT_EQ(CDSReadIni(ini, key), StrArray(0, {""}));
    StrArray items(1, {});
    for (int i = 0; i < 9000; ++i) items.Append("item " + std::to_string(i) + "|");
    EXPECT_TRUE(CDSWriteIni(ini, key, items));
    EXPECT_EQ(CDSReadIni(ini, key), items);
    EXPECT_TRUE(CDSAddIni(ini, key, "last").result.added);
    EXPECT_EQ(CDSReadIni(ini, key).Upper(), 9001);
    EXPECT_TRUE(CDSRemoveIni(ini, key, "item 0|").result.removed);
    EXPECT_EQ(CDSReadIni(ini, key)[1], "item 1|");
    EXPECT_EQ(CDSReadIni(ini, key)[9000], "last");
    const std::string before = folder.Read("a.ini");
    EXPECT_FALSE(CDSRemoveIni(ini, key, "no such").result.removed);
    EXPECT_EQ(folder.Read("a.ini"), before);
    ini.IniPut("s", "e", "abc", file);
    CDSAddIni(ini, {"s", "e", file}, "de", {}, 0, false, 4);
    EXPECT_EQ(ini.IniGet("s", "e", file), "c|de");
}

TEST_F(IniStoreTest, AFullFileOverflowsAndIsReadAtTheNextStart) {
    const std::string lists = folder.File("AltFiles.ini");
    std::map<std::string, std::string> want;
    {
        ini.SetSizeLimit(true, lists);
        ini.IniPut("Keep", "k", "stays", file);
        for (int i = 0; i < 60; ++i) {
            const std::string name = "e" + std::to_string(i % 45);
            want[name] = std::string(static_cast<std::size_t>(2000 + i), static_cast<char>('a' + i % 26));
            ASSERT_TRUE(ini.IniPut("Big", name, want[name], file, OnFail::Ignore));
        }
        ASSERT_TRUE(ini.IniPut("Big", "long", std::string(70000, 'l'), file));
    }
    EXPECT_LE(FileSize(file), 65536);
    EXPECT_NE(folder.Read("AltFiles.ini").find(folder.File("a.0.ini")), std::string::npos);
    for (const bool limit : {true, false}) {
        IniStore next(user);
        next.SetSizeLimit(limit, lists);
        for (const auto& [name, value] : want) EXPECT_EQ(next.IniGet("Big", name, file), value) << name;
        EXPECT_EQ(next.IniGet("Big", "long", ">>1<" + file).size(), 69999U);
        EXPECT_EQ(next.IniEntries("Big", file).size(), 46U);
        EXPECT_EQ(next.IniGet("Keep", "k", file), "stays");
        next.IniPut("Big", "e7", limit ? "seven" : "eight", file);
        EXPECT_EQ(next.IniGet("Big", "e7", file), limit ? "seven" : "eight");
        want["e7"] = limit ? "seven" : "eight";
    }
    IniStore last(user);
    last.SetSizeLimit(true, lists);
    last.IniErase("Big", "e1", file);
    EXPECT_FALSE(last.IniHas("Big", "e1", file));
    last.IniEraseSection("Big", file);
    EXPECT_TRUE(last.IniEntries("Big", file).empty());
    EXPECT_EQ(last.IniGet("Keep", "k", file), "stays");
}

// Names and values of all bytes. The same seed each time: a failure can be repeated.
class RandomTexts {
public:
    std::string Text(std::size_t most) {
        const std::size_t length = random_() % (most + 1);
        std::string text;
        const auto kind = random_() % 3;
        static constexpr std::string_view kOdd = " \t\"';=[]\r\n\0!#.|{}0\xC2\xA0\xFF";
        while (text.size() < length)
            text += kind == 0   ? static_cast<char>(random_() % 256)
                    : kind == 1 ? static_cast<char>('a' + random_() % 26)
                                : kOdd[random_() % kOdd.size()];
        return text;
    }
    std::string Name() { return Text(12); }
    unsigned Below(unsigned n) { return static_cast<unsigned>(random_() % n); }

private:
    std::mt19937 random_{20240229};
};

TEST_F(IniStoreTest, FiveThousandRandomValuesComeBack) {
    RandomTexts random;
    std::map<std::string, std::map<std::string, std::string>> want;  // folded names
    for (int n = 0; n < 5000; ++n) {
        const bool large = n % 500 == 0;
        const std::string path =
            folder.File(large ? "large" + std::to_string(n / 2000) : std::to_string(random.Below(80)));
        const std::string section = random.Name(), entry = random.Name();
        const std::string value = random.Text(large ? 200000 : 60);
        const std::string place = path + '\n' + LowerUtf8(section) + '\n' + LowerUtf8(entry);
        ASSERT_TRUE(ini.IniPutWhole(section, entry, value, path));
        want[path][place] = value;
        ASSERT_EQ(ini.IniGet(section, entry, path), value);
        if (n % 10 != 0) continue;
        IniStore fresh(user);
        ASSERT_EQ(fresh.IniGet(section, entry, path, Missing::Raise), value);
    }
    IniStore fresh(user);
    for (const auto& [path, entries] : want) {
        std::size_t found = 0;
        const IniFile read = IniFile::Load(path);
        for (const std::string& text : read.Sections()) {
            const std::string section = IniDecodeName(text);
            for (const std::string& entry : fresh.IniEntries(section, path)) {
                const auto at = entries.find(path + '\n' + LowerUtf8(section) + '\n' + LowerUtf8(entry));
                ASSERT_NE(at, entries.end());
                ASSERT_EQ(fresh.IniGet(section, entry, path), at->second);
                ++found;
            }
        }
        EXPECT_EQ(found, entries.size());
    }
}

}  // namespace
}  // namespace core
