#include "analysis/targets.h"

#include "analysis/fields.h"
#include "analysis/options.h"
#include "tests/analysis/testsite.h"

namespace analysis {
namespace {

using testsupport::TestSite;

logdefs::FltrRule Contains(const char* text) { return {logdefs::kContains, text, false}; }

TEST(TargetPages, FollowTheKind) {
    TestSite s;
    const std::vector<std::int32_t> pages{s.Page("a/Buy.htm"), s.Page("b.htm"), s.Page("buy2.htm")};
    const std::vector<double> bytes{100, 5000};
    const struct {
        Target target;
        bool met;
    } cases[] = {
        {{"", kSize, 100, {Contains("buy")}}, true},
        {{"", kSize, 101, {Contains("buy")}}, false},                   // a later page that matches does not help
        {{"", kSize, 5000, {Contains(""), Contains("b.htm")}}, false},  // looks at the first filter only
        {{"", kSize, 0, {Contains("buy2")}}, true},                     // no bytes known: 0
        {{"", kAny, 0, {Contains("none"), Contains(""), Contains("b.htm")}}, true},
        {{"", kAny, 0, {Contains("none")}}, false},
        {{"", kAll, 0, {Contains("htm")}}, false},  // never met
        {{"", kFirstOnly, 0, {Contains("none"), Contains("buy")}}, false},
        {{"", kFirstOnly, 0, {Contains("buy2")}}, true},
        {{"", kAny, 0, {{logdefs::kContains, "buy.htm", true}}}, false},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        const Target two[] = {cases[i].target, {"", kAny, 0, {Contains("buy2")}}};
        TargetPages targets(two, s.site->Pages());
        for (int round = 0; round < 2; ++round)  // the second time from memory
            EXPECT_EQ(targets.Tgt_Met(pages, bytes), cases[i].met ? 3U : 2U);
    }
}

TEST(Tgt_Load, ReadsAtMostFourTargetsAsTheyWereWritten) {
    TestSite s;
    const std::string& file = s.site->Paths().targets;
    EXPECT_TRUE(Tgt_Load(s.ini, *s.site, true).empty());
    s.Put("LstTgts", "Buy : the shop|B : x|C|D|E");
    s.Put("CntTgt", "6");
    ASSERT_TRUE(Tgt_WriteSection(s.ini, "Target 1", {"", kSize, 1500, {Contains("buy"), Contains("order")}}, file));
    ASSERT_TRUE(Tgt_WriteSection(s.ini, "Target 2", {"", kAny, 0, {Contains("b")}}, file));
    EXPECT_EQ(s.ini.IniGet("Target 1", "FltrLst", file), "TFltr1|TFltr2");
    EXPECT_EQ(s.ini.IniGet("Target 2", "FltrLst", file), "TFltr3");
    const std::vector<Target> targets = Tgt_Load(s.ini, *s.site, true);
    ASSERT_EQ(targets.size(), 4U);
    EXPECT_EQ(targets[0].name, "Buy");
    EXPECT_EQ(targets[0].kind, kSize);
    EXPECT_EQ(targets[0].bytes, 1500);
    ASSERT_EQ(targets[0].filters.size(), 2U);
    EXPECT_EQ(targets[0].filters[1].Val, "order");
    EXPECT_TRUE(Tgt_Load(s.ini, *s.site, false).empty());
}

TEST(SkipTypes_Check, CountsTypesOfTargetPagesInThisRun) {
    TestSite s;
    s.Put("LstTgts", "Paper : x");
    s.Put("CDSNoCntSurfToFileTypes", "gif|PDF|css");
    s.Put("CDSCntAsPageForAvgPages", "pdf");
    Tgt_WriteSection(s.ini, "Target 1", {"", kAny, 0, {Contains("paper.pdf")}}, s.site->Paths().targets);
    s.Visit({.term = "t", .engine = "G", .pages = {"a.htm", "paper.pdf"}});
    AnalysisRequest request = s.Request(kTerm);
    EXPECT_EQ(testsupport::Rows(*s.Analyse(request)), std::vector<std::string>{"t 1/0/0"});
    request.AnalTgt = true;
    s.user.WillPress(1);
    const auto results = s.Analyse(request);
    EXPECT_EQ(testsupport::Rows(*results), std::vector<std::string>{"t 1/1/1"});
    EXPECT_EQ(results->table.TargetCnt[0], (std::vector<std::int32_t>{0, 1}));
    EXPECT_TRUE(s.user.asked[0].ends_with(":\rpdf")) << s.user.asked[0];
    EXPECT_EQ(s.ini.IniGet("Main", "CDSNoCntSurfToFileTypes", core::kBySection), "gif|PDF|css");
}

TEST(NormaliseTypes, AnEmptyItemStandsForNamesWithoutType) {
    EXPECT_EQ(NormaliseTypes(""), "|");
    EXPECT_EQ(NormaliseTypes(" gif|js "), "|gif|js|");
    EXPECT_FALSE(HasType("|", ""));
    EXPECT_TRUE(HasType(NormaliseTypes("||htm"), ""));
    EXPECT_TRUE(HasType(NormaliseTypes("||htm"), "HTM"));
    EXPECT_FALSE(HasType(NormaliseTypes("htm"), "ht"));
}

TEST(ThresholdOfRun, TakesTheKeyOfTheFieldLessOne) {
    TestSite s;
    s.Put("ThresholdPg", "7");
    s.Put("ThresholdTrk", "");
    StoreThresholdDefaults(s.ini);
    EXPECT_EQ(s.ini.IniGet("Main", "ThresholdTrk", core::kBySection), "4");
    const struct {
        int field;
        std::optional<std::int32_t> given;
        std::int32_t threshold;
    } cases[] = {
        {kDir, {}, 6},    {kTrack, {}, 3}, {kWords7, {}, 3}, {kReferrer, 9, 0},
        {kEngine, {}, 0}, {kTerm, 1, 0},   {kTerm, 0, 0},
    };
    for (const auto& c : cases) {
        AnalysisRequest request;
        request.field = c.field;
        request.threshold = c.given;
        EXPECT_EQ(ThresholdOfRun(s.ini, request), c.threshold) << c.field;
    }
}

}  // namespace
}  // namespace analysis
