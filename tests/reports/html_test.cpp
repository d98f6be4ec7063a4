#include "reports/html.h"

#include "reports/exports.h"
#include "tests/reports/handmade.h"

namespace reports {
namespace {

class Html : public testsupport::Handmade {};

TEST_F(Html, WhatVisitorsSendStandsInItAsText) {
    const std::string hostile = "<script>alert('x')</script>\"&\x1b[31m https://evil.example/";
    Add(hostile, 3, 1, 2);
    Add("b", 1, 0, 0);
    Finish();
    const ReportGrid grid = Show(ReportKind::All);
    const std::string page = ReportPage(env, results, grid);
    EXPECT_EQ(page.find("<script>alert"), std::string::npos);
    EXPECT_NE(page.find("&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;&quot;&amp; [31m"), std::string::npos);
    EXPECT_NE(page.find("default-src 'none'"), std::string::npos);
    for (const char* fetches : {" src=", " href=", "url(", "@import"}) EXPECT_EQ(page.find(fetches), std::string::npos);
}

// The total stands below the lines that can be sorted; the gap above it is no line of a page.
TEST_F(Html, TheTotalStaysBelowTheLinesAndItsTrendIsDrawn) {
    results.Targets.resize(1);
    Add("a", 3, 1, 2, {2});
    Finish();
    const std::string page = ReportPage(env, results, Show(ReportKind::All));
    const std::string foot = page.substr(page.find("<tfoot>"));
    EXPECT_NE(foot.find(".. Total .."), std::string::npos);
    EXPECT_EQ(page.find("<tr><td class=\"l\"></td><td></td>"), std::string::npos);
    EXPECT_EQ(std::string::npos, page.find("<td></td><td></td><td></td><td></td>"));
    EXPECT_NE(page.find("<polyline"), std::string::npos);
    const std::string empty = ReportPage(env, results, ReportGrid{});
    EXPECT_EQ(empty.find("<svg"), std::string::npos);
}

}  // namespace
}  // namespace reports
