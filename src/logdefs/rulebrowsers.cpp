#include "logdefs/rulebrowsers.h"

#include <algorithm>
#include <array>

#include "core/text.h"
#include "core/utf8.h"

namespace logdefs {
namespace {

constexpr int kAgentColType = 2;

// One of each kind of system and engine; versions do not matter.
constexpr std::array<std::string_view, 12> kBrowsers{
    "Mozilla/5.0 (Windows NT 10.0; Win64; x64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/124.0.0.0 Safari/537.36",
    "Mozilla/5.0 (Windows NT 10.0; Win64; x64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/124.0.0.0 Safari/537.36 "
    "Edg/124.0.0.0",
    "Mozilla/5.0 (Windows NT 10.0; Win64; x64; rv:125.0) Gecko/20100101 Firefox/125.0",
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.4 "
    "Safari/605.1.15",
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 10.15; rv:125.0) Gecko/20100101 Firefox/125.0",
    "Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/124.0.0.0 Safari/537.36",
    "Mozilla/5.0 (X11; Linux x86_64; rv:125.0) Gecko/20100101 Firefox/125.0",
    "Mozilla/5.0 (iPhone; CPU iPhone OS 17_4 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.4 "
    "Mobile/15E148 Safari/604.1",
    "Mozilla/5.0 (iPad; CPU OS 17_4 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.4 "
    "Mobile/15E148 Safari/604.1",
    "Mozilla/5.0 (Linux; Android 10; K) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/124.0.0.0 Mobile Safari/537.36",
    "Mozilla/4.0 (compatible; MSIE 8.0; Windows NT 6.1; Trident/4.0)",
    "Opera/9.80 (Windows NT 6.1; WOW64) Presto/2.12.388 Version/12.18",
};

constexpr std::array kStarts{
    std::string_view("mozilla"), std::string_view("opera"),        std::string_view("mosaic"),
    std::string_view("ncsa"),    std::string_view("lynx"),         std::string_view("links"),
    std::string_view("elinks"),  std::string_view("w3m"),          std::string_view("blackberry"),
    std::string_view("nokia"),   std::string_view("sonyericsson"), std::string_view("ucweb"),
};

// What robots write of themselves and people's browsers do not.
constexpr std::array<std::string_view, 14> kRobotMarks{"bot",     "crawl",  "spider",  "slurp",  "://",
                                                       "@",       "archiv", "fetcher", "scrape", "scan",
                                                       "monitor", "http;",  "www.",    "checker"};

}  // namespace

std::optional<std::string> BrowserTaken(const StoredRule& stored) {
    if (stored.colType != kAgentColType) return std::nullopt;
    const auto taken = std::ranges::find_if(kBrowsers, [&](auto agent) { return FltrRuleTest(agent, stored.rule); });
    if (taken == kBrowsers.end()) return std::nullopt;
    return std::string(*taken);
}

bool LooksLikeBrowser(std::string_view agent) {
    const std::string lowered = core::LowerUtf8(core::fTrim(agent));
    if (BrowserTaken({{kStartsWith, lowered, false}, kAgentColType})) return true;
    const auto begins = [&](std::string_view start) { return lowered.starts_with(start); };
    const std::string named = core::fReplace(lowered, "cubot", "");  // a maker of phones
    const auto marked = [&](std::string_view mark) { return named.find(mark) != std::string::npos; };
    return std::ranges::any_of(kStarts, begins) && std::ranges::none_of(kRobotMarks, marked);
}

}  // namespace logdefs
