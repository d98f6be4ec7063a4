#include "logdefs/enginescreens.h"

#include <gtest/gtest.h>

#include "core/inistore.h"
#include "dialogs/gridops.h"
#include "logdefs/enginepreview.h"
#include "logdefs/formatstore.h"
#include "tests/support/testdesk.h"

namespace logdefs {
namespace {

using Texts = std::vector<std::string>;
using dialogs::DialogModel;
using testsupport::ScriptedHost;

enum { kUrl = 2, kPlaces = 4, kEffect = 5, kTry = 7, kTried = 8, kMatches = 9 };  // the edit of one definition
constexpr int kGrid = 1;                                                          // the list

struct EngineScreens : testing::Test {
    EngineScreens() {
        EXPECT_TRUE(SEDefsWrite(at.ini, files, start));
        EXPECT_FALSE(LogFmtStore(at.ini, "mine", {R"(%S "%f")"}, files.own).has_value());
    }
    ~EngineScreens() override { EXPECT_TRUE(at.host.Done()); }

    Editing Edited() {
        return {.desk = at.desk,
                .progress = progress,
                .clock = clock,
                .formats = files.own,
                .engines = files,
                .trial = trial};
    }
    bool Run(const LeadOut& check = {}) { return SEDefsEdit(Edited(), check); }
    Texts Stored() { return SEDefsList(at.ini, files); }
    // Selects a row of the list and presses a button.
    void Press(const std::string& caption, int row = -1) {
        at.host.WillPress(caption, [=](DialogModel& model) {
            if (row >= 0) model.controls[kGrid].Select({row});
        });
    }
    void Enter(const std::string& url, const std::string& places, ScriptedHost::Fill look = {}) {
        at.host.WillPress(
            "OK",
            [=](DialogModel& model) {
                model.controls[kUrl].value = url;
                model.controls[kPlaces].value = places;
            },
            std::move(look));
    }

    testsupport::TestDesk at{};
    testsupport::FakeProgress progress{};
    testsupport::FixedClock clock{};
    EngineFiles files{at.folder.File("logfmts.ini"), at.folder.File("lastinstvals.ini")};
    TrialLog trial{};
    const Texts start{"http://*.finder.*/* ?q", "http://finder.net/* ?p", "http://*.seek.net/* ?s,::/web/::/::0"};
};

TEST_F(EngineScreens, ChangesAreStoredOnOkGeneralOnesFirst) {
    Press("Edit SE Def", 1);
    Enter(" http://finder.org/* ", "?p, ?q");
    Press("Add New SE Def");
    Enter("http://*.new.*/*", "?n");
    Press("Add New SE Def");
    Enter("http://chat.test/*", "");
    Press("Remove SE Def", 3);
    at.host.WillPress("OK", [this](DialogModel& model) {
        EXPECT_EQ(model.controls[kGrid].rows[2], (Texts{"http://*.new.*/*", "?n"}));
        testsupport::ScriptedUser user;
        core::IniStore other(user);
        EXPECT_EQ(SEDefsList(other, files), start);  // nothing is in the file before OK
    });
    EXPECT_TRUE(Run());
    EXPECT_EQ(Stored(), (Texts{"http://*.finder.*/* ?q", "http://*.new.*/* ?n", "http://finder.org/* ?p, ?q",
                               "http://chat.test/*"}));
    EXPECT_EQ(at.host.shown[0].buttons, (Texts{"OK", "Edit SE Def", "Add New SE Def", "Copy SE Def", "Remove SE Def",
                                               "Change Sequence", "Cancel"}));
}

TEST_F(EngineScreens, CancelTakesAllOfItBack) {
    Press("Remove SE Def", 0);
    Press("Cancel");
    at.host.WillPress("Back to editing");
    Press("Edit SE Def");  // the row at the place of the removed one is selected
    at.host.WillPress("Cancel",
                      [](DialogModel& model) { EXPECT_EQ(model.controls[kUrl].value, "http://finder.net/*"); });
    Press("Cancel");
    at.host.WillPress("Give up");
    EXPECT_FALSE(Run());
    EXPECT_EQ(Stored(), start);

    at.host.WillPress("OK");  // nothing was changed
    EXPECT_FALSE(Run());
}

TEST_F(EngineScreens, WhatIsWrongIsToldInPlace) {
    const struct {
        const char* url;
        const char* places;
        const char* problem;
    } cases[] = {
        {"http://a b/*", "?q", "URL specification cannot contain Spaces (values in left column)."},
        {"", "?q", "it has no URL specification"},
        {"http://a/*", "?q|x", "it holds |"},
        {"http://a[/*", "?q", "the [ at character 9 is not closed"},
        {"http://a/*", "::::/::0", "\"::::/::0\" has no text in front of the term"},
        {"http://*.finder.*/*", "?q", "The list holds this definition already."},
    };
    Press("Add New SE Def");
    for (const auto& c : cases) Enter(c.url, c.places);
    Enter("finder.net", "?q");  // can be meant
    at.host.WillPress("Change it");
    Enter("finder.net", "?q");
    at.host.WillPress("Use it as it is");
    Press("OK");
    EXPECT_TRUE(Run());
    EXPECT_EQ(Stored().back(), "finder.net ?q");
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const std::string& problem = at.host.shown[i + 2].problem;
        EXPECT_NE(problem.find("Invalid values:\r"), std::string::npos);
        EXPECT_NE(problem.find(cases[i].problem), std::string::npos) << problem;
        EXPECT_TRUE(problem.ends_with("Changes not saved. Correct values and try again."));
    }
}

TEST_F(EngineScreens, AnEmptyListIsNotStored) {
    for (int i = 0; i < 3; ++i) Press("Remove SE Def", 0);
    Press("Edit SE Def");  // nothing is left to select
    at.host.WillPress("OK");
    Press("OK");
    at.host.WillPress("OK");
    Press("Cancel");
    at.host.WillPress("Give up");
    EXPECT_FALSE(Run());
    EXPECT_EQ(at.host.shown[4].message, "Select a definition first.");
    EXPECT_TRUE(at.host.shown[6].message.starts_with("The list is empty"));
}

TEST_F(EngineScreens, TheTwoListsAreJoinedInTheirOrder) {
    ASSERT_TRUE(SEDefsWrite(at.ini, files, {"http://b.*/* ?q", "http://a.*/* ?q", "http://c/* ?q", "http://d/* ?q"}));
    Press("Change Sequence");
    at.host.WillPress("Sort");
    at.host.WillPress("ReSequence Specific Domain Defs");
    at.host.WillPress("Up", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].rows, (dialogs::Rows{{"http://c/* ?q"}, {"http://d/* ?q"}}));
        model.controls[1].Select({1});
    });
    at.host.WillPress("ReSequence General Domain Defs");
    at.host.WillPress("Back to definitions");
    Press("Change Sequence");
    at.host.WillPress("Sort");
    at.host.WillPress("Cancel");
    Press("OK");
    EXPECT_TRUE(Run());
    EXPECT_EQ(Stored(), (Texts{"http://a.*/* ?q", "http://b.*/* ?q", "http://d/* ?q", "http://c/* ?q"}));
    EXPECT_TRUE(at.host.shown[1].message.starts_with("General Domain defs ["));
    EXPECT_TRUE(at.host.shown[3].message.starts_with("Specific Domain defs ["));
}

TEST_F(EngineScreens, ACheckSeesWhatIsNotStoredYet) {
    Texts seen;
    Press("Remove SE Def", 0);
    Press("Check vs. log file");
    Press("Cancel");
    at.host.WillPress("Give up");
    Run([&] { seen = Stored(); });
    EXPECT_EQ(seen, (Texts{start[1], start[2]}));
}

TEST_F(EngineScreens, AFileThatSomebodyElseChangedIsNotOverwritten) {
    Press("Remove SE Def", 0);
    at.host.WillPress("OK", [this](DialogModel&) {
        testsupport::ScriptedUser user;
        core::IniStore other(user);
        EXPECT_TRUE(SEDefsWrite(other, files, {"http://theirs/* ?q"}));
    });
    at.host.WillPress("Keep the file as it is");
    Run();
    EXPECT_EQ(Stored(), (Texts{"http://theirs/* ?q"}));
}

TEST_F(EngineScreens, TheEditShowsAtOnceWhatADefinitionFinds) {
    trial = {at.folder.Write("access.log",
                             "1.1.1.1 \"http://www.new.org/?n=Red+Shoes\"\n"
                             "1.1.1.1 \"http://www.new.org/?n=Red+Shoes\"\n"
                             "1.1.1.1 \"https://www.new.org/about|{x}\"\n"
                             "1.1.1.1 \"-\"\ngarbage\n1.1.1.1 \"http://finder.net/?p=x\"\n"),
             "mine"};
    Press("Add New SE Def");
    Enter("http://*.new.*/*", "?n", [](DialogModel& model) {
        const auto& rows = model.controls[kMatches].rows;
        ASSERT_EQ(rows.size(), 3U);
        EXPECT_EQ(rows[1], (Texts{"red shoes", "2", "http://www.new.org/?n=Red+Shoes"}));
        EXPECT_EQ(rows[2], (Texts{"(no search term)", "1", "https://www.new.org/about|{x}"}));
        EXPECT_EQ(model.controls[kEffect].value,
                  "Engine: NEW - a general domain definition\r"
                  "Of the first 5 log lines 3 match: 2 with a search term, 1 without.");
    });
    Press("Add New SE Def");
    at.host.WillPress(
        "Cancel",
        [](DialogModel& model) {
            model.controls[kUrl].value = "http://www.new.org/*";
            model.controls[kTry].value = " http://www.new.org/?n=a+b ";
        },
        [](DialogModel& model) {
            EXPECT_NE(model.controls[kEffect].value.find("(an AI assistant)"), std::string::npos);
            EXPECT_EQ(model.controls[kMatches].rows[1][0], "(sends no terms)");
            EXPECT_EQ(model.controls[kTried].value,
                      "By this definition: WWW: (sends no terms)\rBy all definitions: NEW: a b");
        });
    Press("Cancel");
    at.host.WillPress("Give up");
    Run();
}

TEST_F(EngineScreens, ATrialTellsWhyThereIsNone) {
    EXPECT_TRUE(ReadTrialReferrers(Edited()).problem.starts_with("Select a log file"));
    trial = {at.folder.File("gone.log"), "mine"};
    EXPECT_TRUE(ReadTrialReferrers(Edited()).problem.starts_with("The log file cannot be tried: "));
    trial = {at.folder.Write("access.log", "1.1.1.1 \"-\"\n"), "mine"};
    EXPECT_TRUE(ReadTrialReferrers(Edited()).problem.ends_with("hold no referrers."));
    trial.format = "none";
    EXPECT_TRUE(ReadTrialReferrers(Edited()).problem.starts_with("No line of the log file fits"));
}

}  // namespace
}  // namespace logdefs
