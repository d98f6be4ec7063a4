#include "dialogs/draftsave.h"

#include <gtest/gtest.h>

#include "tests/support/fulldisk.h"
#include "tests/support/testdesk.h"

namespace dialogs {
namespace {

using testsupport::TestDesk;

struct Editor : TestDesk {
    std::string file = folder.Write("defs.ini", "[Main]\nName=old\n");
    core::IniDraft draft{ini, {file}};
    void Edit(const std::string& value) { ini.IniPut("Main", "Name", value, file); }
    void EditElsewhere() { folder.Write("defs.ini", "[Main]\nName=theirs\n"); }
    std::string OnDisk() { return folder.Read("defs.ini"); }
};

TEST(DraftSave, ThePersonChoosesBetweenTheTwoVersions) {
    const struct {
        const char* press;
        bool closes;
        const char* onDisk;
    } cases[] = {
        {"Store mine", true, "[Main]\nName=mine\n"},
        {"Keep the file as it is", true, "[Main]\nName=theirs\n"},
        {"Back to editing", false, "[Main]\nName=theirs\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.press);
        Editor at;
        at.Edit("mine");
        at.EditElsewhere();
        at.host.WillPress(c.press);
        EXPECT_EQ(SaveDraft(at.desk, at.draft), c.closes);
        EXPECT_EQ(at.OnDisk(), c.onDisk);
        EXPECT_TRUE(at.host.Done());
    }
}

TEST(DraftSave, AFullDiskLeadsBackToTheEditor) {
    Editor at;
    at.Edit(std::string(2000, 'm'));
    at.host.WillPress("Try again");
    at.host.WillPress("Back to editing");
    {
        const testsupport::FullDisk full(500);
        EXPECT_FALSE(SaveDraft(at.desk, at.draft));
    }
    EXPECT_TRUE(at.draft.Changed());
    EXPECT_TRUE(SaveDraft(at.desk, at.draft));
}

TEST(DraftSave, LeavingAsksOnlyWhenSomethingWouldBeLost) {
    Editor at;
    EXPECT_TRUE(LeaveDraft(at.desk, at.draft));
    at.Edit("mine");
    at.host.WillPress("Back to editing");
    EXPECT_FALSE(LeaveDraft(at.desk, at.draft));
    at.host.WillPress("Give up");
    EXPECT_TRUE(LeaveDraft(at.desk, at.draft));
}

}  // namespace
}  // namespace dialogs
