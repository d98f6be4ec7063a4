#include "core/inifile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/tempfolder.h"

namespace core {
namespace {

TEST(IniFile, ReadsAsPeopleWriteIt) {
    const IniFile file = IniFile::Parse(
        "x=before all\r\n; note=1\r\n[ Main ] ; head\r\n  Key One =  a b \t\r\nq=\" a "
        "\"\r\ns='b'\r\nlone\r\nK\xC3\x89Y=2\r\n"
        "[Other]\nkey one=3\n[main]\nkey one=second\nlast=9");
    EXPECT_EQ(file.Get("MAIN", "key one"), "a b");
    EXPECT_EQ(file.Get("Main", "q"), " a ");
    EXPECT_EQ(file.Get("Main", "s"), "'b'");
    EXPECT_EQ(file.Get("Main", "k\xC3\xA9y"), "2");
    EXPECT_EQ(file.Get("Main", "last"), "9");  // a section's second half
    EXPECT_EQ(file.Get("Main", "lone"), std::nullopt);
    EXPECT_EQ(file.Get("Main", "; note"), std::nullopt);
    EXPECT_EQ(file.Get("", "x"), std::nullopt);
    EXPECT_EQ(file.Sections(), (std::vector<std::string>{"Main", "Other"}));
    EXPECT_EQ(file.Entries("main"), (std::vector<std::string>{"Key One", "q", "s", "K\xC3\x89Y", "last"}));
}

TEST(IniFile, ChangesOnlyWhatIsPut) {
    IniFile file = IniFile::Parse("; top\r\n[A]\r\nb = 1 \r\n\r\n; about c\r\n\r\n[C]\r\nd=2");
    file.Put("a", "B", " x");
    file.Put("A", "new", "y");
    file.Put("C", "e", "");
    file.Put("Z", "z", "\"q\"");
    EXPECT_EQ(file.Text(),
              "; top\r\n[A]\r\nb=\" x\"\r\n\r\n; about c\r\nnew=y\r\n\r\n[C]\r\nd=2\r\ne=\r\n[Z]\r\nz=\"\"q\"\"\r\n");
    EXPECT_EQ(file.Get("Z", "z"), "\"q\"");
    EXPECT_TRUE(file.Erase("A", "b"));
    EXPECT_FALSE(file.Erase("A", "b"));
    EXPECT_TRUE(file.EraseSection("c"));
    EXPECT_EQ(file.Get("A", "new"), "y");
    EXPECT_EQ(file.Get("Z", "z"), "\"q\"");
    EXPECT_EQ(file.Text(), "; top\r\n[A]\r\n\r\n; about c\r\nnew=y\r\n\r\n[Z]\r\nz=\"\"q\"\"\r\n");
}

TEST(IniFile, AnErasedEntryHasNoSecondLife) {
    IniFile file = IniFile::Parse("[a]\nx=1\nX=2\n[A]\nx=3\n");
    EXPECT_TRUE(file.Erase("a", "x"));
    EXPECT_EQ(file.Get("a", "x"), std::nullopt);
    EXPECT_EQ(file.Text(), "[a]\n[A]\n");
}

TEST(IniFile, NoTextBreaksOutOfItsLine) {
    IniFile file;
    file.Put("a", "x", "1\n[b]\ny=2");
    EXPECT_EQ(file.Text(), "[a]\nx=1\n");
}

TEST(IniFile, KeepsTheMarkAndConvertsOldFilesAsAWhole) {
    IniFile marked = IniFile::Parse("\xEF\xBB\xBF[a]\nx=\xC3\xA9\n");
    EXPECT_EQ(marked.Get("a", "x"), "\xC3\xA9");
    marked.Put("a", "y", "1");
    EXPECT_EQ(marked.Text(), "\xEF\xBB\xBF[a]\nx=\xC3\xA9\ny=1\n");
    const IniFile old = IniFile::Parse("[a]\nx=\xE9\ny=\x80\n");
    EXPECT_EQ(old.Get("a", "x"), "\xC3\xA9");
    EXPECT_EQ(old.Get("a", "y"), "\xE2\x82\xAC");
}

TEST(IniFile, WhatCannotBeReadIsNotWritten) {
    const testsupport::TempFolder folder;
    EXPECT_EQ(IniFile::Load(folder.File("none.ini")).State(), IniRead::Missing);
    EXPECT_EQ(IniFile::Load(folder.Path()).State(), IniRead::Unreadable);
    const std::string wide = folder.Write("wide.ini", std::string("\xFF\xFE[\0a\0]\0", 8));
    IniFile file = IniFile::Load(wide);
    EXPECT_EQ(file.State(), IniRead::Unreadable);
    file.Put("a", "b", "c");
    EXPECT_FALSE(file.Save(wide));
    EXPECT_EQ(folder.Read("wide.ini").size(), 8U);
}

}  // namespace
}  // namespace core
