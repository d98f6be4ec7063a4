#include "logdefs/formatscreens.h"

#include <gtest/gtest.h>

#include "logdefs/formatstore.h"
#include "tests/support/tempsite.h"
#include "tests/support/testdesk.h"

namespace logdefs {
namespace {

using dialogs::DialogModel;
using testsupport::Combined;
using Names = std::vector<std::string>;

const std::string kSpec(testsupport::kCombinedSpec);

dialogs::Control& Named(DialogModel& model, std::string_view caption) {
    for (dialogs::Control& control : model.controls.All())
        if (control.caption == caption) return control;
    throw std::runtime_error("no control " + std::string(caption));
}

struct FormatScreens : testing::Test {
    FormatScreens() {
        formats = at.folder.File("logfmts.ini");
        log = at.folder.Write("access.log", "#comment\n" +
                                                Combined("192.0.2.7", "02/Mar/2009:08:01:02", "/a.html",
                                                         "http://www.google.de/search?q=red+shoes") +
                                                Combined("192.0.2.8", "02/Mar/2009:08:01:03", "/b.html"));
        editing.formats = formats;
        editing.trial = {log, "combined"};
        Store("combined", {kSpec});
        Store("odd", {"%S;%r;"});
    }
    ~FormatScreens() override {
        EXPECT_TRUE(at.host.Done());
        EXPECT_EQ(at.host.open, 0);
    }
    void Store(const std::string& name, const std::vector<std::string>& specs) {
        EXPECT_FALSE(LogFmtStore(at.ini, name, specs, formats));
    }
    Names Stored() { return LogFmtNames(at.ini, formats); }
    std::string Spec(const std::string& name, std::size_t number = 1) {
        const core::StrArray specs = LogFmtSpecs(at.ini, name, formats);
        return specs.Item(static_cast<long>(number), "none");
    }
    // Selects a format of the list and presses a button.
    void Press(const std::string& caption, int row = -1) {
        at.host.WillPress(caption, [row](DialogModel& model) {
            if (row >= 0) Named(model, "LogFormats").Select({row});
        });
    }
    void Type(const std::string& button, std::vector<std::string> specs, testsupport::ScriptedHost::Fill look = {}) {
        at.host.WillPress(
            button,
            [specs](DialogModel& model) {
                for (std::size_t i = 0; i < specs.size(); ++i)
                    Named(model, "Specification " + std::to_string(i + 1)).value = specs[i];
            },
            std::move(look));
    }
    void TypeName(const std::string& name) {
        at.host.WillPress("OK", [name](DialogModel& model) { model.controls[1].value = name; });
    }
    const testsupport::ScriptedHost::Shown& Last(std::size_t back = 1) {
        return at.host.shown[at.host.shown.size() - back];
    }

    testsupport::TestDesk at{};
    testsupport::FakeProgress progress{};
    testsupport::FixedClock clock{};
    std::string formats{}, log{};
    Editing editing{.desk = at.desk, .progress = progress, .clock = clock};
};

TEST_F(FormatScreens, TheListShowsWhatFitsTheLog) {
    at.host.WillPress("Cancel", [&](DialogModel& model) {
        EXPECT_EQ(model.title, "Format of Log file");
        const dialogs::Rows expected{
            {"Name", "LogFormat Spec.", "Lines that fit"}, {"combined", kSpec, "2"}, {"odd", "%S;%r;", "0"}};
        EXPECT_EQ(Named(model, "LogFormats").rows, expected);
        EXPECT_EQ(Named(model, "LogFormats").Selected(), std::vector<int>{0});
        const std::string& fits = Named(model, "What fits").value;
        EXPECT_TRUE(fits.starts_with("access.log: 66 % of the first 3 lines fit.\rLine 1 does not fit: #comment\r"));
    });
    EXPECT_FALSE(LogFmtEdit(editing));
}

TEST_F(FormatScreens, EditsCopiesAddsRemovesAndPutsInSequence) {
    Press("Edit LogFormat", 1);
    Type("OK", {"%S,%r,"});
    Press("Copy LogFormat", 0);
    TypeName("copy");
    Type("OK", {});
    Press("New LogFormat");
    TypeName("fresh");
    Type("Add Line", {"%S %r "});
    Type("OK", {"%S %r ", "  "});  // a box of blanks is none
    Press("Move Up", 3);
    Press("Remove LogFormat", 1);
    Press("OK");
    EXPECT_TRUE(LogFmtEdit(editing));
    EXPECT_EQ(Stored(), (Names{"combined", "fresh", "copy"}));
    EXPECT_EQ(Spec("copy"), kSpec);
    EXPECT_EQ(Spec("fresh"), "%S %r ");
    EXPECT_EQ(Spec("fresh", 2), "none");
    EXPECT_EQ(Spec("odd"), "none");
}

TEST_F(FormatScreens, CancelTakesAllOfItBackAfterAsking) {
    Press("Edit LogFormat", 1);
    Type("OK", {"%S,%r,"});
    Press("Remove LogFormat", 1);
    Press("Cancel");
    at.host.WillPress("Back to editing");
    Press("Cancel");
    at.host.WillPress("Give up");
    EXPECT_FALSE(LogFmtEdit(editing));
    EXPECT_EQ(Stored(), (Names{"combined", "odd"}));
    EXPECT_EQ(Spec("odd"), "%S;%r;");
}

TEST_F(FormatScreens, TheFormatOfTheSiteIsRemovedAfterAsking) {
    Press("Remove LogFormat", 0);
    at.host.WillPress("Cancel");
    Press("Remove LogFormat", 0);
    at.host.WillPress("Remove");
    Press("OK");
    EXPECT_TRUE(LogFmtEdit(editing));
    EXPECT_EQ(Stored(), Names{"odd"});
}

TEST_F(FormatScreens, NamesAreGoodAndUnique) {
    at.host.WillPress("Edit LogFormat", [](DialogModel& model) { Named(model, "LogFormats").Select({}); });
    Press("New LogFormat");
    TypeName("ODD");
    TypeName("a|b");
    at.host.WillPress("Cancel");
    Press("OK");
    EXPECT_FALSE(LogFmtEdit(editing));
    EXPECT_EQ(at.host.shown[1].problem, "Select a LogFormat in the list first.");
    EXPECT_EQ(at.host.shown[2].message, "Enter name for new LogFormat Definition");
    EXPECT_EQ(at.host.shown[3].problem, "Problem with data entered: \"ODD\" is in the list already.");
    EXPECT_NE(at.host.shown[4].problem.find("cannot hold |"), std::string::npos);
}

TEST_F(FormatScreens, TheLinesAreShownOnTheLogAtOnce) {
    Type("OK", {"%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] \"%*r %r HTTP/%*s\" %c %b"}, [](DialogModel& model) {
        EXPECT_EQ(model.message,
                  "Enter specifications for LogFormat Named: combined  The first matching specification will be used.");
        const dialogs::Rows& rows = Named(model, "Fields of the first lines").rows;
        EXPECT_EQ(rows[0], (Names{"Field", "line 2", "line 3", ""}));
        EXPECT_EQ(rows[1], (Names{"Date and time", "2009-03-02 08:01:02", "2009-03-02 08:01:03", ""}));
        EXPECT_EQ(rows[3], (Names{"File Name", "/a.html", "/b.html", ""}));
        const std::string& status = Named(model, "What fits").value;
        EXPECT_TRUE(status.starts_with("No text stands behind %b, so this field stays empty."));
        EXPECT_NE(status.find("\r66 % of the first 3 lines fit. The layout holds no referrer"), std::string::npos);
        EXPECT_NE(status.find("\rLine 1 does not fit: #comment"), std::string::npos);
    });
    EXPECT_EQ(LogFmtEditOne(editing, "combined"), "combined");
    EXPECT_TRUE(Spec("combined").ends_with("%c %b"));
}

TEST_F(FormatScreens, TheLogCanBeNamedWhileEditing) {
    editing.trial = {};
    at.host.WillPress("Placeholders", {}, [](DialogModel& model) {
        EXPECT_EQ(Named(model, "What fits").value, "");
        EXPECT_FALSE(Named(model, "Fields of the first lines").emptyText.empty());
    });
    at.host.WillPress("OK", {}, [](DialogModel& model) {
        EXPECT_NE(model.controls[1].value.find("%S  address of the visitor"), std::string::npos);
    });
    at.host.WillPress(
        "Add Line", [&](DialogModel& model) { Named(model, "Log file to try").value = at.folder.File("none.log"); },
        [](DialogModel& model) { EXPECT_NE(Named(model, "What fits").value.find("none.log"), std::string::npos); });
    at.host.WillPress(
        "Cancel", [&](DialogModel& model) { Named(model, "Log file to try").value = log; },
        [](DialogModel& model) {
            EXPECT_EQ(Named(model, "Specification 2").value, "");
            EXPECT_TRUE(Named(model, "What fits").value.starts_with("66 % of the first 3 lines fit."));
        });
    EXPECT_FALSE(LogFmtEditOne(editing, "combined").has_value());
}

TEST_F(FormatScreens, WhatIsRefusedIsSaidInPlace) {
    Type("OK", {" "});
    Type("OK", {"%S|%r "});
    Type("OK", {"%S%r "}, [](DialogModel& model) {
        EXPECT_TRUE(Named(model, "What fits").value.starts_with("Error in format specification >>%S%r <<"));
    });
    EXPECT_EQ(LogFmtEditOne(editing, "odd"), "odd");
    EXPECT_EQ(at.host.shown[1].problem, "Problem with data entered: A log format needs at least one specification.");
    EXPECT_NE(at.host.shown[2].problem.find("A specification cannot hold |"), std::string::npos);
    EXPECT_EQ(Spec("odd"), "%S%r ");
}

TEST_F(FormatScreens, ANewFormatIsAskedForItsName) {
    TypeName("fresh");
    Type("OK", {"%S;"});
    EXPECT_EQ(LogFmtEditOne(editing, ""), "fresh");
    at.host.WillPress("Cancel");
    EXPECT_FALSE(LogFmtEditOne(editing, "").has_value());
    EXPECT_EQ(Stored(), (Names{"combined", "odd", "fresh"}));
}

TEST_F(FormatScreens, AFileThatAnotherProgramChangedIsKeptWhenWanted) {
    Type("OK", {"%S;"}, [&](DialogModel&) {
        testsupport::ScriptedUser user;
        core::IniStore other(user);
        EXPECT_FALSE(LogFmtStore(other, "theirs", {"%r;"}, formats));
    });
    at.host.WillPress("Back to editing");
    Type("OK", {});
    at.host.WillPress("Keep the file as it is");
    EXPECT_EQ(LogFmtEditOne(editing, "odd"), "odd");
    EXPECT_EQ(Stored(), (Names{"combined", "odd", "theirs"}));
    EXPECT_EQ(Spec("odd"), "%S;%r;");
}

}  // namespace
}  // namespace logdefs
