#include "core/inidraft.h"

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/inistore.h"
#include "tests/support/fakes.h"
#include "tests/support/fulldisk.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

using Saved = IniDraft::Saved;

struct Edited {
    testsupport::TempFolder folder{};
    testsupport::ScriptedUser user{};
    IniStore ini{user};
    std::string file = folder.Write("a.ini", "; mine\n[Main]\nName=old\n[Gone]\nx=1\n");
    std::string other = folder.File("b.ini");
};

TEST(IniDraft, NothingIsOnDiskBeforeSave) {
    Edited at;
    const std::string before = at.folder.Read("a.ini");
    {
        IniDraft draft(at.ini, {at.file, at.other});
        EXPECT_FALSE(draft.Changed());
        EXPECT_TRUE(at.ini.IniPut("Main", "Name", "new", at.file));
        EXPECT_TRUE(at.ini.IniEraseSection("Gone", at.file));
        EXPECT_TRUE(at.ini.IniPut("Main", "Name", "made", at.other));
        EXPECT_TRUE(draft.Changed());
        EXPECT_EQ(at.ini.IniGet("Main", "Name", at.file), "new");
        EXPECT_EQ(at.folder.Read("a.ini"), before);
        EXPECT_FALSE(Exists(at.other));
    }
    EXPECT_EQ(at.ini.IniGet("Main", "Name", at.file), "old");
    EXPECT_EQ(at.ini.IniGet("Gone", "x", at.file), "1");
    {
        IniDraft draft(at.ini, {at.file, at.other});
        at.ini.IniPut("Main", "Name", "new", at.file);
        at.ini.IniPut("Main", "Name", "made", at.other);
        EXPECT_EQ(draft.Save().saved, Saved::Done);
    }
    EXPECT_EQ(at.folder.Read("a.ini"), "; mine\n[Main]\nName=new\n[Gone]\nx=1\n");
    EXPECT_EQ(at.ini.IniGet("Main", "Name", at.other), "made");
}

TEST(IniDraft, AnInnerDraftIsKeptOrTakenBackByItself) {
    Edited at;
    IniDraft outer(at.ini, {at.file});
    at.ini.IniPut("Main", "Name", "outer", at.file);
    {
        IniDraft inner(at.ini, {at.file});
        EXPECT_FALSE(inner.Changed());
        at.ini.IniPut("Main", "Name", "lost", at.file);
    }
    EXPECT_EQ(at.ini.IniGet("Main", "Name", at.file), "outer");
    {
        IniDraft inner(at.ini, {at.file});
        at.ini.IniPut("Main", "More", "kept", at.file);
        EXPECT_EQ(inner.Save().saved, Saved::Done);
    }
    EXPECT_EQ(at.ini.IniGet("Main", "More", at.file), "kept");
    EXPECT_EQ(at.folder.Read("a.ini").find("kept"), std::string::npos);
    EXPECT_EQ(outer.Save().saved, Saved::Done);
    EXPECT_NE(at.folder.Read("a.ini").find("More=kept"), std::string::npos);
}

TEST(IniDraft, WhatAnotherProgramWroteIsNotLostUnasked) {
    Edited at;
    IniDraft draft(at.ini, {at.file});
    at.ini.IniPut("Main", "Name", "mine", at.file);
    at.folder.Write("a.ini", "[Main]\nName=theirs\n");
    EXPECT_EQ(at.ini.IniGet("Main", "Name", at.file), "mine");
    const IniDraft::Outcome outcome = draft.Save();
    EXPECT_EQ(outcome.saved, Saved::ChangedElsewhere);
    EXPECT_EQ(outcome.file, at.file);
    EXPECT_EQ(at.folder.Read("a.ini"), "[Main]\nName=theirs\n");
    EXPECT_EQ(draft.Save(true).saved, Saved::Done);
    EXPECT_EQ(at.ini.IniGet("Main", "Name", at.file), "mine");
}

TEST(IniDraft, AnUntouchedDraftLeavesTheChangesOfOthers) {
    Edited at;
    {
        IniDraft draft(at.ini, {at.file});
        at.folder.Write("a.ini", "[Main]\nName=theirs\n");
        EXPECT_EQ(draft.Save().saved, Saved::Done);
    }
    EXPECT_EQ(at.ini.IniGet("Main", "Name", at.file), "theirs");
}

TEST(IniDraft, AFailedSaveLosesNothingAndCanBeRepeated) {
    Edited at;
    const std::string before = at.folder.Read("a.ini");
    IniDraft draft(at.ini, {at.file});
    at.ini.IniPut("Main", "Name", std::string(3000, 'x'), at.file);
    {
        const testsupport::FullDisk full(1000);
        EXPECT_EQ(draft.Save().saved, Saved::Failed);
    }
    EXPECT_EQ(at.folder.Read("a.ini"), before);
    EXPECT_EQ(at.ini.IniGet("Main", "Name", at.file), std::string(3000, 'x'));
    EXPECT_EQ(draft.Save().saved, Saved::Done);
    EXPECT_NE(at.folder.Read("a.ini"), before);
}

}  // namespace
}  // namespace core
