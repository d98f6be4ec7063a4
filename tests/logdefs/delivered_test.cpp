#include <gtest/gtest.h>

#include <algorithm>

#include "core/inistore.h"
#include "core/text.h"
#include "logdefs/engines.h"
#include "logdefs/filter.h"
#include "logdefs/formatstore.h"
#include "logdefs/linedate.h"
#include "names/searchterm.h"
#include "tests/support/fakes.h"
#include "tests/support/tsv.h"

// The delivered files hold all definitions of the test data, and each does what its example says.
namespace logdefs {
namespace {

using testsupport::ReadTsv;

struct Delivered : testing::Test {
    testsupport::ScriptedUser user{};
    core::IniStore ini{user};
    const std::string formats = PARAMS_DIR "/program/logfmts.ini";
    const std::string robots = PARAMS_DIR "/program/fltrbots.ini";
    const EngineFiles engines{formats, PARAMS_DIR "/program/lastinstvals.ini"};
};

TEST_F(Delivered, EnginesFindTheTermOfTheirExample) {
    const SearchEngines all = SearchEngines::SEDefsLoad(ini, engines);
    EXPECT_EQ(all.Count(), 513U);
    for (const auto& row : ReadTsv(TEST_DATA "/params/engines.tsv")) {
        SCOPED_TRACE(row.at("example"));
        const FoundTerm found = all.STFromReferrer(row.at("example"));
        std::string term = found.term;
        EXPECT_EQ(found.engine, row.at("shown_name"));
        EXPECT_EQ(names::ST_Std(term), row.at("example_term"));
        EXPECT_FALSE(found.assistant);
    }
}

TEST_F(Delivered, AssistantsAreEnginesWithoutATerm) {
    const SearchEngines all = SearchEngines::SEDefsLoad(ini, engines);
    const auto rows = ReadTsv(TEST_DATA "/params/assistants.tsv");
    EXPECT_EQ(rows.size(), 31U);
    for (const auto& row : rows) {
        for (const char* end : {"", "/", "/chat/c/123"}) {
            const std::string referrer = "https://" + row.at("host") + (*end == '\0' ? "/" : end);
            SCOPED_TRACE(referrer);
            const FoundTerm found = all.STFromReferrer(referrer);
            EXPECT_TRUE(found.isEngine && found.assistant);
            EXPECT_EQ(found.engine, row.at("shown_name"));
            EXPECT_EQ(found.term, "");
        }
    }
    EXPECT_FALSE(all.STFromReferrer("https://www.shop.example/").isEngine);
}

TEST_F(Delivered, RobotsAreTakenByTheirOwnRuleAndBrowsersByNone) {
    FltrRuleSet rules = FltrLoad(ini, robots, "SkipRobotUserAgents", true, false);
    rules.AnyRule = true;
    std::size_t examples = 0;
    const auto rows = ReadTsv(TEST_DATA "/params/robots.tsv");
    EXPECT_EQ(rows.size(), 782U);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.at("token"));
        LogLnFields fields;
        fields.Set(kAgent, row.at("example"));
        const bool hasRule = std::ranges::any_of(rules.Rules, [&](const FltrRule& rule) {
            return rule.Typ == kContains && !rule.MC && rule.Val == row.at("token");
        });
        EXPECT_TRUE(hasRule);
        if (row.at("example").empty()) continue;
        EXPECT_TRUE(FltrTestLine(fields, rules).skip);
        ++examples;
    }
    EXPECT_GT(examples, 600U);
    for (const auto& row : ReadTsv(TEST_DATA "/params/browsers.txt")) {
        LogLnFields fields;
        fields.Set(kAgent, row.at("user_agent"));
        EXPECT_FALSE(FltrTestLine(fields, rules).skip) << row.at("user_agent");
    }
}

TEST_F(Delivered, FormatsCutTheirExamples) {
    const struct {
        const char* column;
        int field;
    } columns[] = {{"expected_address", kIP},        {"expected_file", kFile},       {"expected_query", kQuery},
                   {"expected_referrer", kReferrer}, {"expected_agent", kAgent},     {"expected_status", kStatus},
                   {"expected_bytes", kBytes},       {"expected_micros", kProcTime}, {"expected_vhost", kVirtualHost},
                   {"expected_user", kUserNo}};
    int cut = 0;
    for (const auto& row : ReadTsv(TEST_DATA "/params/formats.tsv")) {
        if (row.at("template").empty()) continue;
        SCOPED_TRACE(row.at("name"));
        const std::string name(core::fBefore(row.at("name") + "#", "#"));
        const LogFormatLoaded stored = LogFmtLoad(ini, name, formats);
        ASSERT_TRUE(stored.found);
        EXPECT_TRUE(stored.format.Warnings().empty());
        const std::string line = core::fReplace(core::fReplace(row.at("example"), "\\t", "\t"), "\\r", "\r");
        LogLnFields fields;
        ASSERT_TRUE(stored.format.LogLnInterpret(line, fields));
        for (const auto& column : columns) EXPECT_EQ(fields[column.field], row.at(column.column)) << column.column;
        EXPECT_EQ(std::to_string(LineClock().LogLnTimestamp(fields).timestamp), row.at("expected_time"));
        ++cut;
    }
    EXPECT_GE(cut, 59);
    EXPECT_EQ(LogFmtNames(ini, formats).size(), 52U);
}

}  // namespace
}  // namespace logdefs
