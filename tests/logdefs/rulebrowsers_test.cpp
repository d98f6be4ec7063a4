#include "logdefs/rulebrowsers.h"

#include <gtest/gtest.h>

#include "tests/support/tsv.h"

namespace logdefs {
namespace {

TEST(LooksLikeBrowser, KnowsMostBrowsersAndNoRobotThatNamesItself) {
    std::size_t known = 0, all = 0;
    for (const auto& row : testsupport::ReadTsv(TEST_DATA "/params/browsers.txt")) {
        ++all;
        if (LooksLikeBrowser(row.at("user_agent"))) ++known;
    }
    EXPECT_GT(known * 10, all * 9) << known << " of " << all;
    for (const char* robot : {"Googlebot/2.1 (+http://www.google.com/bot.html)", "curl/8.1", "python-requests/2.31",
                              "Mozilla/5.0 (compatible; bingbot/2.0; +http://www.bing.com/bingbot.htm)",
                              "Mozilla/5.0 (Windows NT 10.0) AppleWebKit/537.36 (KHTML, like Gecko; "
                              "compatible; GPTBot/1.2; +https://openai.com/gptbot)"})
        EXPECT_FALSE(LooksLikeBrowser(robot)) << robot;
    for (const char* start : {"", "M", "Mozilla", " MOZILLA/5.0", "Mozilla/5.0 (Windows NT 10.0; Win64; x64)", "Opera"})
        EXPECT_TRUE(LooksLikeBrowser(start)) << start;
}

TEST(BrowserTaken, LooksAtRulesOnTheUserAgentAlone) {
    EXPECT_TRUE(BrowserTaken({{kContains, "firefox", false}, 2}));
    EXPECT_FALSE(BrowserTaken({{kContains, "firefox", true}, 2}));
    EXPECT_FALSE(BrowserTaken({{kContains, "", false}, 1}));
    EXPECT_FALSE(BrowserTaken({{kStartsWith, "seekbot", false}, 2}));
}

}  // namespace
}  // namespace logdefs
