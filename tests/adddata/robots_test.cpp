#include "adddata/robots.h"

#include <gtest/gtest.h>

#include "core/dates.h"
#include "logdefs/rule.h"
#include "tests/support/tempsite.h"

namespace adddata {
namespace {

using testsupport::Combined;
using testsupport::TempSite;
using Texts = std::vector<std::string>;

constexpr std::string_view kTime = "02/Mar/2009:08:00:00";

std::string Asks(std::string_view agent, std::string_view file = "/robots.txt", int status = 200) {
    return Combined("1.1.1.1", kTime, file, "-", status, 5, agent);
}

// Rule files of its own: a robot filter "known", and one on a file name.
struct RobotSite : TempSite {
    explicit RobotSite(sitedb::SiteOptions options = Plain()) : TempSite(options) {
        Rule(files.robots, "Known", {{logdefs::kContains, "known", false}, 2});
        ini.IniPut("Filters", "SkipRobotUserAgents", "Known", files.robots);
    }
    void Rule(const std::string& file, const std::string& name, const logdefs::StoredRule& rule) {
        EXPECT_TRUE(logdefs::FltrRuleWrite(ini, name, file, rule));
    }
    Preprocessed Find(const std::string& log) {
        AddRequest request;
        request.files = {{folder.Write("access.log", log), ""}};
        return PreprocessBots(env, *site, program, request);
    }
    // As "agent lines".
    static Texts Shown(const std::vector<CountedText>& texts) {
        Texts shown;
        for (const CountedText& text : texts) shown.push_back(text.text + " " + std::to_string(text.lines));
        return shown;
    }
    Texts StillFound(const Texts& agents) {
        std::vector<CountedText> counted;
        for (const std::string& agent : agents) counted.push_back({agent, 1});
        return Shown(BotsFindNew(ini, files, counted).agents);
    }

    ProgramFiles program{PARAMS_DIR "/program/logfmts.ini", PARAMS_DIR "/program/lastinstvals.ini",
                         folder.File("param/fltrbots.ini")};
    RobotFiles files = RobotFilesOf(program);
};

const std::string kLog = Asks("Zeta/1") + Asks("Alpha/2 (+http://a.example)") + Asks("Zeta/1") + Asks("KNOWN bot") +
                         Asks("Firefox/3", "/a.html") + Asks("Gone/1", "/robots.txt", 404) + Asks("");

TEST(PreprocessBots, OffersWhoAskedForRobotsTxtAndIsTakenByNoFilter) {
    sitedb::SiteOptions options = TempSite::Plain();
    options.Skip404 = true;  // a site without the file answers 404, and the robot asked all the same
    RobotSite home(options);
    const Preprocessed result = home.Find(kLog);
    EXPECT_TRUE(result.read.ok);
    EXPECT_EQ(RobotSite::Shown(result.offered), (Texts{"Alpha/2 (+http://a.example) 1", "Gone/1 1", "Zeta/1 2"}));
    EXPECT_FALSE(result.found.otherRules);
    EXPECT_TRUE(home.site->UnfinishedAdd(home.env).empty());
    EXPECT_EQ(home.Rows("SELECT count(*) FROM logline", 1), (Texts{"0"}));
    EXPECT_TRUE(home.Find(Asks("Firefox/3", "/a.html")).offered.empty());
}

TEST(PreprocessBots, TheChosenFinderFilterCounts) {
    RobotSite home;
    home.Rule(home.files.finder, "Trap", {{logdefs::kStartsWith, "/trap", false}, 1});
    home.ini.IniPut("Filters", "Fltr Sel", "Trap", home.files.finder);
    EXPECT_EQ(RobotSite::Shown(home.Find(kLog + Asks("Fallen/1", "/trap/x")).offered), (Texts{"Fallen/1 1"}));
}

TEST(PreprocessBots, TheDeliveredFinderFilterIsTheOneOnRobotsTxt) {
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    const std::string file = PARAMS_DIR "/program/ppfindbots.ini";
    const logdefs::AddFilters filters = logdefs::FltrLoadPreprocess(ini, file);
    ASSERT_EQ(filters.main.Rules.size(), 1U);
    EXPECT_TRUE(filters.main.Active && filters.main.Invert);
    const std::string name = ini.IniGet("Filters", "Fltr Sel", file);
    EXPECT_EQ(ini.IniGet("Filters", "SelLst", file), name);
    EXPECT_EQ(logdefs::FltrCndnText(ini, name, file), "File Name Contains <robots.txt>");
}

TEST(PreprocessBots, FiltersOnOtherFieldsAreToldOnceAndTakeNobody) {
    RobotSite home;
    home.Rule(home.files.robots, "File", {{logdefs::kContains, "", false}, 1});
    home.Rule(home.files.robots, "Status", {{logdefs::kGreater, "100", false}, 3});
    home.ini.IniPut("Filters", "SkipRobotUserAgents", "File|Known|Status", home.files.robots);
    home.user.WillPressOk();
    EXPECT_EQ(home.Find(kLog).offered.size(), 3U);
    EXPECT_EQ(home.user.ids, (Texts{"RobotFiltersNotOnAgent"}));
}

TEST(PreprocessBots, SkipListAndSkipFiltersEachTakeFromTheOffer) {
    RobotSite home;
    home.Rule(home.files.skip, "Firefox", {{logdefs::kStartsWith, "Firefox", false}, 2});
    home.Rule(home.files.skip, "Opera", {{logdefs::kStartsWith, "Opera", false}, 2});
    home.ini.IniPut("Filters", "skipFtrs", "Firefox|Opera", home.files.skip);
    ASSERT_TRUE(BotsSkipListWrite(home.ini, home.files, {"A|B {x}", "Zeta/1", "Zeta/1", " "}));
    EXPECT_EQ(BotsSkipList(home.ini, home.files), (Texts{"A|B {x}", "Zeta/1"}));
    const Preprocessed result =
        home.Find(Asks("A|B {x}") + Asks("Opera/9") + Asks("Firefox/3") + Asks("Zeta/1") + Asks("Zeta/10"));
    EXPECT_EQ(RobotSite::Shown(result.offered), (Texts{"Zeta/10 1"}));
    EXPECT_EQ(result.found.agents.size(), 5U);  // what is offered can be worked out anew when the filters change
    ASSERT_TRUE(BotsSkipListWrite(home.ini, home.files, {}));
    EXPECT_TRUE(BotsSkipList(home.ini, home.files).empty());
}

TEST(BotsAddRules, WritesOneRuleForEachUnderAFreeName) {
    RobotSite home;
    const std::string day = core::FormatDate(home.clock.Now(), "yyyymmdd");
    home.ini.IniPut("Filters", "SkipRobotUserAgents", "Known|" + day + ".1", home.files.robots);
    home.ini.IniPut(day + ".2", "CDSCndns", "left over", home.files.robots);
    const RulesAdded added = BotsAddRules(home.env, home.files, {" Zeta/1 ", "  ", "zeta/1", "Alpha"});
    ASSERT_TRUE(added.ok);
    EXPECT_EQ(added.names, (Texts{day + ".2", day + ".3"}));
    EXPECT_EQ(added.agents, (Texts{" Zeta/1 ", "Alpha"}));
    EXPECT_EQ(home.ini.IniGet("Filters", "SkipRobotUserAgents", home.files.robots),
              "Known|" + day + ".1|" + day + ".2|" + day + ".3");
    EXPECT_EQ(home.ini.IniGet("Filters", "FltrBotsUASel", home.files.robots), day + ".3");
    EXPECT_EQ(logdefs::FltrCndnText(home.ini, day + ".2", home.files.robots),
              "User agent (browser) Starts with <zeta/1>");
    EXPECT_EQ(home.StillFound({"ZETA/1.5", "my zeta/1", "alphabet"}), (Texts{"my zeta/1 1"}));
}

TEST(BotsAddRules, HostileUserAgentsLeaveAFileThatReadsBack) {
    RobotSite home;
    const Texts hostile{"a|b|c",
                        "{{||{{",
                        "{x}|{y}",
                        "\"quoted\"",
                        "\"",
                        "'",
                        "[Filters]",
                        "[Known]\nTyp=9",
                        "x\ry",
                        std::string("nul\0byte", 8),
                        "\x01\x1b[31m",
                        "SkipRobotUserAgents=",
                        "; note",
                        "=",
                        "\xC2\xA0\xC2\xA0",
                        "\xff\xfe",
                        "tab\t",
                        std::string(70000, 'q') + "Z",
                        "|",
                        "-",
                        "İstanbul"};
    ASSERT_TRUE(BotsAddRules(home.env, home.files, hostile).ok);
    ASSERT_TRUE(BotsSkipListWrite(home.ini, home.files, hostile));
    core::IniStore fresh(home.user);  // what is on disk
    for (const std::string& agent : hostile)
        EXPECT_TRUE(BotsFindNew(fresh, home.files, {{agent, 1}}).agents.empty()) << agent.substr(0, 50);
    EXPECT_EQ(BotsFindNew(fresh, home.files, {{"Firefox", 1}, {"known", 1}}).agents.size(), 1U);
    EXPECT_EQ(BotsSkipList(fresh, home.files), hostile);
    EXPECT_EQ(fresh.IniGet("Known", "Typ", home.files.robots), "2");
}

TEST(BotsAddRules, TenThousandUserAgentsAreOneWrite) {
    RobotSite home;
    std::string log;
    for (int i = 0; i < 10000; ++i) log += Asks("Bot" + std::to_string(100000 + i) + "|{" + std::to_string(i) + "}");
    const Preprocessed result = home.Find(log);
    ASSERT_EQ(result.offered.size(), 10000U);
    Texts agents;
    for (const CountedText& agent : result.offered) agents.push_back(agent.text);
    const RulesAdded added = BotsAddRules(home.env, home.files, agents);
    ASSERT_TRUE(added.ok);
    EXPECT_EQ(added.names.size(), 10000U);
    Texts some{"Known", "Firefox"};
    for (std::size_t i = 0; i < agents.size(); i += 99) some.push_back(agents[i]);
    EXPECT_EQ(home.StillFound(some), (Texts{"Firefox 1"}));
}

TEST(BotsAddRules, AFileThatCannotBeWrittenStaysAsItWas) {
    RobotSite home;
    const std::string missing = home.folder.File("nowhere/fltrbots.ini");
    home.user.WillPressOk(3);  // told by the store, when it comes to that
    EXPECT_FALSE(BotsAddRules(home.env, {missing, "", ""}, {"Zeta"}).ok);
    EXPECT_TRUE(home.StillFound({"known"}).empty());
}

}  // namespace
}  // namespace adddata
