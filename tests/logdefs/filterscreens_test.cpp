#include "logdefs/filterscreens.h"

#include <gtest/gtest.h>

#include <chrono>

#include "core/inistore.h"
#include "core/text.h"
#include "logdefs/formatstore.h"
#include "tests/support/tempsite.h"
#include "tests/support/testdesk.h"

namespace logdefs {
namespace {

using dialogs::Control;
using dialogs::DialogModel;
using testsupport::Combined;
using Names = std::vector<std::string>;

struct FilterScreensTest : testing::Test {
    FilterScreensTest() {
        editing.formats = home.folder.File("logfmts.ini");
        editing.filters = {home.folder.File("LdLnFltr.ini"), home.folder.File("FltrFiles.ini"),
                           home.folder.File("fltrbots.ini"), home.folder.File("LastVals.ini")};
        editing.siteName = "Shop";
    }
    ~FilterScreensTest() override {
        EXPECT_TRUE(home.host.Done());
        EXPECT_EQ(home.host.open, 0);
    }

    // Rules by name, and both in one condition.
    void Store(const std::string& file, const std::string& key = "SelLst") {
        FltrRuleWrite(home.ini, "Shop", file, {{kStartsWith, "/shop/", false}, 1});
        FltrRuleWrite(home.ini, "Errors", file, {{kGreater, "399", false}, 3});
        home.ini.IniPut("20200101.1", "CDSCndns", "Shop|Errors", file);
        home.ini.IniPut("20200101.1", "Any", "True", file);
        home.ini.IniPut("Filters", key, "Shop|Errors|20200101.1", file);
        home.ini.IniPut("Filters", "Fltr Sel", "Errors", file);
    }
    void UseLog() {
        EXPECT_FALSE(
            LogFmtStore(home.ini, "combined", {std::string(testsupport::kCombinedSpec)}, editing.formats).has_value());
        std::string log;
        for (int i = 0; i < 3; ++i) log += Combined("1.1.1.1", "02/Mar/2009:08:01:02", "/shop/a.html");
        log += Combined("1.1.1.1", "02/Mar/2009:08:01:02", "/Index.html", "-", 404, 1,
                        "Mozilla/5.0 (PlayStation 4) Own/1");
        editing.trial = {home.folder.Write("access.log", log + "not a line\n"), "combined"};
    }

    // The list: the row of this name is selected (none for "") and a button pressed.
    void Press(const std::string& caption, const std::string& name = {}) {
        home.host.WillPress(caption, [name](DialogModel& model) {
            Control& grid = model.controls[1];
            grid.Select({});
            for (std::size_t i = 1; i < grid.rows.size(); ++i)
                if (grid.rows[i][0] == name) grid.Select({static_cast<int>(i) - 1});
        });
    }
    static Control& Named(DialogModel& model, std::string_view caption) {
        for (Control& control : model.controls.All())
            if (dialogs::PlainCaption(control.caption) == caption) return control;
        throw std::runtime_error("no control " + std::string(caption));
    }
    struct Typed {
        std::string name{}, where{}, op{}, value{};
        bool matchCase = false;
    };
    static testsupport::ScriptedHost::Fill Types(const Typed& typed) {
        return [typed](DialogModel& model) {
            if (!typed.name.empty()) Named(model, "Name on List").value = typed.name;
            Control& where = Named(model, "Where");
            for (std::size_t i = 0; i < where.rows.size(); ++i)
                if (where.rows[i][0] == typed.where) where.Select({static_cast<int>(i)});
            for (Control& control : model.controls.All())
                if (control.Is(dialogs::ControlType::OptionButton) && !typed.op.empty())
                    control.value = core::fBoolWord(dialogs::PlainCaption(control.caption) == typed.op);
            Named(model, "Value").value = typed.value;
            Named(model, "Match Case").value = core::fBoolWord(typed.matchCase);
        };
    }
    void Enter(const Typed& typed, const std::string& button = "OK") { home.host.WillPress(button, Types(typed)); }
    void Ok(int times = 1) {
        while (times-- > 0) home.host.WillPress("OK");
    }
    // The host's n-th dialog from the end.
    const testsupport::ScriptedHost::Shown& Shown(std::size_t fromEnd) const {
        return home.host.shown[home.host.shown.size() - 1 - fromEnd];
    }
    std::string Value(std::string_view section, std::string_view entry, const std::string& file) {
        core::IniStore disk(home.user);
        return disk.IniGet(section, entry, file);
    }
    std::string MainList() { return Value("Filters", "SelLst", editing.filters.main); }

    testsupport::TestDesk home{};
    testsupport::FakeProgress progress{};
    testsupport::FixedClock clock{};
    Editing editing{.desk = home.desk, .progress = progress, .clock = clock};
};

TEST_F(FilterScreensTest, AFirstRuleIsMadeAndSelected) {
    Press("New filter");
    home.host.WillPress("Single condition");
    Enter({"", "File Name", "Starts with ...", "/Shop/"});
    Enter({"a|b", "File Name", "Starts with ...", "/Shop/"});
    Enter({"Filters", "File Name", "Starts with ...", "/Shop/"});
    Enter({"My shop", "File Name", "Starts with ...", "/Shop/", true});
    Ok();
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Main));
    EXPECT_EQ(home.host.shown[0].title, "Main Filter to add/exclude lines [Site DB: Shop]");
    EXPECT_EQ(home.host.shown[0].message,
              "Select a single filter in this list\rUse new filter & choose \"multiple conditions\" to use more than "
              "one rule.");
    EXPECT_EQ(home.host.shown[0].buttons, (Names{"OK", "Edit filter", "New filter", "Remove filter", "Copy filter",
                                                 "Move Up", "Move Down", "Cancel"}));
    EXPECT_EQ(home.host.shown[1].message,
              "Use a single condition\rE.g. File Name equals xxx\r\ror a multi-condition criteria\rE.g. File Name "
              "equals xxx OR starts with yyy");
    EXPECT_EQ(home.host.shown[2].title, "Corvane - Enter Rule");
    EXPECT_EQ(home.host.shown[3].problem,
              "Problem with data entered: Name is required. Enter a description to be shown when rules are listed.");
    EXPECT_NE(home.host.shown[4].problem, "");
    EXPECT_NE(home.host.shown[5].problem, "");
    EXPECT_EQ(MainList(), "My shop");
    EXPECT_EQ(Value("Filters", "Fltr Sel", editing.filters.main), "My shop");
    EXPECT_EQ(FltrCndnText(home.ini, "My shop", editing.filters.main), "File Name Starts with </Shop/> MC");
}

TEST_F(FilterScreensTest, ARenamedRuleIsRenamedInItsConditions) {
    Store(editing.filters.main);
    Press("Edit filter", "Shop");
    Enter({"Errors", "File Name", "Contains ...", "ABC"});  // another's name
    Enter({"Sales", "File Name", "Contains ...", "ABC"});
    home.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].rows,
                  (dialogs::Rows{{"Name", "Condition"},
                                 {"Sales", "File Name Contains <abc>"},
                                 {"Errors", "RC (200=OK, 404=Page not found, etc.) Is greater than <399>"},
                                 {"20200101.1",
                                  "<File Name Contains <abc>> / <RC (200=OK, 404=Page not found, etc.) Is greater "
                                  "than <399>>"}}));
    });
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Main));
    EXPECT_EQ(MainList(), "Sales|Errors|20200101.1");
    EXPECT_EQ(Value("20200101.1", "CDSCndns", editing.filters.main), "Sales|Errors");
    EXPECT_EQ(Value("Shop", "Typ", editing.filters.main), "");
    EXPECT_EQ(Value("Filters", "Fltr Sel", editing.filters.main), "Sales");
}

TEST_F(FilterScreensTest, AnIdenticalConditionIsRefusedAndNothingChanged) {
    Store(editing.filters.main);
    Press("Edit filter", "Errors");
    Enter({"Errors", "File Name", "Starts with ...", "/SHOP/"});  // lower-cased it is the other rule
    home.host.WillPress("Cancel");
    Press("Edit filter", "Errors");
    Ok();  // as it was
    Press("New filter");
    home.host.WillPress("Single condition");
    Enter({"Two", "File Name", "Starts with ...", "/shop/"});
    home.host.WillPress("Cancel");
    Press("OK", "Errors");
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Main));
    EXPECT_EQ(home.host.shown[2].problem,
              "Problem with data entered: Edits not allowed. Already have an identical condition in the list.\rChanges "
              "have not been saved.");
    EXPECT_EQ(home.host.shown[8].problem, home.host.shown[2].problem);
    EXPECT_EQ(MainList(), "Shop|Errors|20200101.1");
    EXPECT_EQ(Value("Errors", "Val", editing.filters.main), "399");
}

TEST_F(FilterScreensTest, ACopyStandsBesideItsOriginalAndCancelTakesItBack) {
    Store(editing.filters.main);
    const auto before = core::ReadFile(editing.filters.main).text;
    Press("Copy filter", "Shop");
    Press("Copy filter", "20200101.1");
    Press("Remove filter", "Errors");  // in use
    Ok();
    Press("Move Up", "Errors");
    home.host.WillPress("Cancel", [](DialogModel& model) {
        Names names;
        for (const auto& row : model.controls[1].rows) names.push_back(row[0]);
        EXPECT_EQ(names, (Names{"Name", "Shop", "Shop.1", "20200101.1", "Errors", "20200101.1.1"}));
    });
    home.host.WillPress("Back to editing");
    home.host.WillPress("Cancel");
    home.host.WillPress("Give up");
    EXPECT_FALSE(FltrSelectMain(editing, FilterFamily::Main));
    EXPECT_EQ(core::ReadFile(editing.filters.main).text, before);
    EXPECT_EQ(home.host.shown[3].message,
              "Cannot delete that rule. It is used in a multi rule condition.\rFirst (Multi rule where it is used: "
              "20200101.1 <File Name Starts with </shop/>> / <RC (200=OK, 404=Page not found, etc.) Is greater than "
              "<399>>) take it off that condition.\rThe Rule has been re-added at the end.");
}

TEST_F(FilterScreensTest, RemovesWhatNothingUses) {
    Store(editing.filters.main);
    Press("Remove filter");  // none selected
    Press("Remove filter", "20200101.1");
    Press("Remove filter", "Errors");
    Press("OK");
    Press("OK", "Shop");
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Main));
    EXPECT_EQ(home.host.shown[1].problem, "Select a filter first.");
    EXPECT_EQ(home.host.shown[4].problem, "Select a single filter in this list.");
    EXPECT_EQ(MainList(), "Shop");
    EXPECT_EQ(Value("Errors", "Val", editing.filters.main), "");
}

TEST_F(FilterScreensTest, ProtectedNamesGoToTheEnd) {
    Store(editing.filters.components);
    FilterList list{.file = editing.filters.components, .isProtected = {"20200101.1", "shop"}};
    Press("Remove filter", "Shop");
    Ok(2);
    EXPECT_TRUE(FltrListEdit(editing, list));
    EXPECT_EQ(home.host.shown[1].message, "Cannot delete that line. It has been re-added at the end.");
    EXPECT_EQ(Value("Filters", "SelLst", editing.filters.components), "Errors|20200101.1|Shop");
}

TEST_F(FilterScreensTest, AConditionOfSeveralRulesIsMadeOutOfTwoLists) {
    Store(editing.filters.components);
    const auto pick = [](std::vector<int> rows) {
        return [rows](DialogModel& model) { Named(model, "rules").Select(rows); };
    };
    Press("New filter");
    home.host.WillPress("Multiple Conditions");
    Ok(2);  // no rule yet
    home.host.WillPress("Add -->", pick({1, 0}));
    home.host.WillPress("OK", [](DialogModel& model) {
        Named(model, "All rules selected").value = "False";
        Named(model, "Any rule selected").value = "True";
    });  // as there is one already
    Ok();
    home.host.WillPress("OK", [](DialogModel& model) {
        Named(model, "All rules selected").value = "True";
        Named(model, "Any rule selected").value = "False";
    });
    Ok();
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Components));
    EXPECT_EQ(home.host.shown[0].title, "Filter to identify files to be SKIPPED. [Site DB: Shop]");
    EXPECT_EQ(home.host.shown[3].message, "Select at least one rule on the left and press Add.");
    EXPECT_TRUE(home.host.shown[6].message.starts_with("Edits not allowed."));
    const std::string name = Value("Filters", "Fltr Sel", editing.filters.components);
    EXPECT_TRUE(name.ends_with(".1"));
    EXPECT_EQ(Value("Filters", "SelLst", editing.filters.components), "Shop|Errors|20200101.1|" + name);
    EXPECT_EQ(Value(name, "CDSCndns", editing.filters.components), "Shop|Errors");
    EXPECT_EQ(Value(name, "Any", editing.filters.components), "False");
}

TEST_F(FilterScreensTest, ShowsAtOnceWhatARuleDoes) {
    UseLog();
    Press("New filter");
    home.host.WillPress("Single condition");
    home.host.WillPress("OK", Types({"Shop", "File Name", "Starts with ...", "/SHOP"}), [](DialogModel& model) {
        EXPECT_EQ(Named(model, "Effect").value,
                  "3 of the first 4 lines of access.log satisfy it. 1 more do not fit the log format.");
        EXPECT_EQ(Named(model, "Values that satisfy the rule").rows, (dialogs::Rows{{"/shop/a.html  [3]"}}));
        EXPECT_EQ(Named(model, "Values that do not").rows, (dialogs::Rows{{"/Index.html  [1]"}}));
        EXPECT_EQ(Named(model, "Warning").value, "");
    });
    home.host.WillPress("Edit filter", {}, [](DialogModel& model) {
        EXPECT_EQ(Named(model, "Effect of the selected filter").value,
                  "The selected filter: 3 of the first 4 lines of access.log satisfy it. 1 more do not fit the log "
                  "format.");
    });
    const std::string status(kColTypes[3].label);
    home.host.WillPress("Cancel", Types({"", status, "Is less than ...", "500"}), [](DialogModel& model) {
        EXPECT_TRUE(Named(model, "Values that satisfy the rule").rows.empty());
        EXPECT_TRUE(Named(model, "Warning").value.ends_with("never satisfied."));
    });
    Press("Edit filter", "Shop");
    home.host.WillPress("Cancel", Types({"", status, "Is greater than ...", "399"}), [](DialogModel& model) {
        EXPECT_EQ(Named(model, "Values that satisfy the rule").rows, (dialogs::Rows{{"404  [1]"}}));
        EXPECT_NE(Named(model, "Warning").value.find("compares texts"), std::string::npos);
    });
    Press("Edit filter", "Shop");
    home.host.WillPress("Cancel", Types({"", status, "Is a number", ""}), [](DialogModel& model) {
        EXPECT_TRUE(Named(model, "Effect").value.starts_with("4 of"));
        EXPECT_FALSE(Named(model, "Value").enabled);
    });
    Ok();
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Main));
}

TEST_F(FilterScreensTest, RobotRulesThatTakeBrowsersAreWarnedOf) {
    UseLog();
    Store(editing.filters.robots, "SkipRobotUserAgents");
    const auto warns = [&](const std::string& value, const std::string& with) {
        Press("New filter");
        home.host.WillPress("Cancel", Types({"", "User agent (browser)", "Starts with ...", value}),
                            [with](DialogModel& model) {
                                const std::string& text = Named(model, "Warning").value;
                                if (with.empty())
                                    EXPECT_EQ(text, "");
                                else
                                    EXPECT_NE(text.find(with), std::string::npos) << text;
                            });
    };
    warns("GoodBot", "");
    warns("mozilla/5.0 (play", "Own/1");  // of the log
    warns("Mozilla/5.0 (X11", "Linux");   // of everybody
    Press("New filter");
    Enter({"Empty", "User agent (browser)", "Contains ...", ""});
    home.host.WillPress("Cancel");
    home.host.WillPress("Cancel");
    EXPECT_FALSE(FltrSelectMain(editing, FilterFamily::Robots));
    EXPECT_NE(Shown(1).problem.find("every visitor"), std::string::npos);
}

TEST_F(FilterScreensTest, TheWayOutSeesWhatWasChangedSoFar) {
    Store(editing.filters.robots, "SkipRobotUserAgents");
    int calls = 0;
    const auto check = [&] {
        ++calls;
        EXPECT_EQ(home.ini.IniGet("Filters", "SkipRobotUserAgents", editing.filters.robots), "Errors|20200101.1");
        home.ini.IniPut("Filters", "SkipRobotUserAgents", "20200101.1|Errors", editing.filters.robots);
    };
    home.ini.IniErase("20200101.1", "CDSCndns", editing.filters.robots);
    Press("Remove filter", "Shop");
    Press("Check vs. log file", "Errors");
    Ok();
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Robots, check));
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(home.host.shown[0].message.ends_with("when option to exlude robots is checked."));
    EXPECT_EQ(Value("Filters", "SkipRobotUserAgents", editing.filters.robots), "20200101.1|Errors");
    EXPECT_EQ(Value("Filters", "FltrBotsUASel", editing.filters.robots), "Errors");
}

TEST_F(FilterScreensTest, HostileNamesAndTextsStayPlain) {
    const std::string file = editing.filters.main;
    const std::string longText(70000, 'x');
    FltrRuleWrite(home.ini, "a&b <b>", file, {{kContains, "|{\"}\n" + longText, true}, 1});
    home.ini.IniPut("loop", "CDSCndns", "loop|nowhere|a&b <b>", file);
    home.ini.IniPut("Filters", "SelLst", "a&b <b>|loop|A&B <B>||gone", file);
    Press("Edit filter", "a&b <b>");
    Ok();
    Press("Copy filter", "loop");
    Press("OK", "a&b <b>");
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Main));
    EXPECT_EQ(MainList(), "a&b <b>|loop|loop.1|gone");
    EXPECT_EQ(Value("a&b <b>", "Val", file), "|{\"}\n" + longText);
    EXPECT_EQ(Value("loop.1", "CDSCndns", file), "loop|nowhere|a&b <b>");
}

TEST_F(FilterScreensTest, TenThousandRulesOpenAndCloseAtOnce) {
    std::string text = "[Filters]\nSkipRobotUserAgents=", rules;
    for (int i = 0; i < 10000; ++i) {
        const std::string name = "Robot" + std::to_string(i);
        text += (i > 0 ? "|" : "") + name;
        rules += "[" + name + "]\nTyp=2\nVal=robot" + std::to_string(i) + "/\nMC=False\nColType=2\n";
    }
    editing.filters.robots = home.folder.Write("many.ini", text + "\n" + rules);
    const auto start = std::chrono::steady_clock::now();
    Press("Edit filter", "Robot9999");
    Enter({"Last", "User agent (browser)", "Contains ...", "lastrobot/"});
    Ok();
    EXPECT_TRUE(FltrSelectMain(editing, FilterFamily::Robots));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_LT(took.count(), 10);  // quadratic work takes minutes
    EXPECT_EQ(Value("Last", "Val", editing.filters.robots), "lastrobot/");
}

TEST_F(FilterScreensTest, AnotherProgramsChangeIsNotLost) {
    Store(editing.filters.main);
    Press("Remove filter", "20200101.1");
    home.host.WillPress("OK", [&](DialogModel&) {
        core::IniStore other(home.user);
        other.IniPut("Filters", "Fltr Sel", "Shop", editing.filters.main);
    });
    home.host.WillPress("Back to editing");
    home.host.WillPress("OK");
    home.host.WillPress("Keep the file as it is");
    FltrSelectMain(editing, FilterFamily::Main);
    EXPECT_EQ(MainList(), "Shop|Errors|20200101.1");
    EXPECT_EQ(Value("Filters", "Fltr Sel", editing.filters.main), "Shop");
}

}  // namespace
}  // namespace logdefs
