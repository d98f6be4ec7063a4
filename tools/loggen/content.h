// What the invented shop consists of: its pages, the terms people look for, the engines and sites that send them, their
// browsers, and the robots. Tables only; the generator chooses from them by weight.
#pragma once

#include <array>
#include <cstdint>

namespace loggen {

struct Category {
    const char* name;
    std::array<const char*, 6> products;
};

inline constexpr std::array kCategories{
    Category{"seeds",
             {"tomato-red-lantern", "basil-large-leaf", "sunflower-giant", "wild-flower-mix", "lavender", "chili"}},
    Category{"bulbs", {"tulip-evening", "daffodil-pale", "crocus-mix", "allium-blue", "lily-white", "snowdrop"}},
    Category{"tools", {"hand-trowel", "garden-shears", "copper-watering-can", "spade-ash", "leaf-rake", "pruning-saw"}},
    Category{"pots", {"terracotta-30", "terracotta-20", "glazed-blue", "hanging-basket", "saucer-set", "trough-long"}},
    Category{"furniture", {"folding-chair", "teak-bench", "round-table", "sun-shade", "hammock", "deck-chair"}},
    Category{"books", {"first-vegetables", "pruning-roses", "herbs-indoors", "soil-handbook", "small-gardens", "bees"}},
};

inline constexpr std::array kArticles{"pruning-roses-step-by-step", "ten-herbs-for-the-window",
                                      "when-to-plant-tulips",       "lavender-care",
                                      "what-soil-do-i-have",        "tomatoes-from-seed"};

enum class Script : std::uint8_t { kLatin, kCyrillic, kGreek, kChinese, kArabic };
enum class Trend : std::uint8_t { kSteady, kRising, kFalling };

struct Term {
    const char* text;
    Script script;
    std::uint8_t category;  // position in kCategories
    std::uint16_t weight;
    Trend trend = Trend::kSteady;
};

inline constexpr std::array kTerms{
    Term{"tomato seeds", Script::kLatin, 0, 90},
    Term{"copper watering can", Script::kLatin, 2, 40, Trend::kRising},
    Term{"tulip bulbs", Script::kLatin, 1, 40, Trend::kFalling},
    Term{"garden shears", Script::kLatin, 2, 60},
    Term{"terracotta pots 30 cm", Script::kLatin, 3, 45},
    Term{"shop.example", Script::kLatin, 0, 70},
    Term{"lavender plant care", Script::kLatin, 0, 35},
    Term{"wild flower mix", Script::kLatin, 0, 40},
    Term{"folding garden chair", Script::kLatin, 4, 30},
    Term{"how to prune roses", Script::kLatin, 5, 45},
    Term{"\"hand trowel\" wood", Script::kLatin, 2, 8},
    Term{"pots & saucers", Script::kLatin, 3, 6},
    Term{"best gardening books 2026", Script::kLatin, 5, 12},
    Term{"Teak bench", Script::kLatin, 4, 15},
    Term{"teak bench", Script::kLatin, 4, 15},
    Term{"graines de tomates anciennes", Script::kLatin, 0, 18},
    Term{"bêche à main", Script::kLatin, 2, 14},
    Term{"Gießkanne Kupfer", Script::kLatin, 2, 16, Trend::kRising},
    Term{"Gartenmöbel günstig", Script::kLatin, 4, 20},
    Term{"semillas de albahaca", Script::kLatin, 0, 10},
    Term{"pá de jardim", Script::kLatin, 2, 8},
    Term{"doniczki ceramiczne kraków", Script::kLatin, 3, 8},
    Term{"семена томатов", Script::kCyrillic, 0, 22},
    Term{"садовые ножницы", Script::kCyrillic, 2, 16},
    Term{"купить луковицы тюльпанов", Script::kCyrillic, 1, 12, Trend::kFalling},
    Term{"σπόροι ντομάτας", Script::kGreek, 0, 10},
    Term{"γλάστρες κήπου", Script::kGreek, 3, 8},
    Term{"番茄种子", Script::kChinese, 0, 14},
    Term{"园艺剪刀", Script::kChinese, 2, 10},
    Term{"花盆 30厘米", Script::kChinese, 3, 6},
    Term{"بذور الطماطم", Script::kArabic, 0, 8},
    Term{"أدوات الحديقة", Script::kArabic, 2, 6},
};

// A referrer of an engine: the term stands between the two texts. Without a term ("after" is null) the first is all.
struct Engine {
    const char* before;
    const char* after;
    std::array<std::uint8_t, 5> weights;  // by script of the term
};

inline constexpr std::array kEngines{
    Engine{"https://www.google.com/", nullptr, {60, 20, 40, 10, 50}},
    Engine{"https://www.bing.com/", nullptr, {12, 2, 4, 6, 4}},
    Engine{"https://duckduckgo.com/", nullptr, {10, 2, 2, 1, 2}},
    Engine{"http://www.google.co.uk/url?sa=t&rct=j&q=", "&esrc=s&source=web&cd=1", {10, 3, 6, 2, 8}},
    Engine{"http://www.google.co.uk/url?sa=t&rct=j&q=&esrc=s&source=web&cd=2", nullptr, {4, 1, 2, 1, 2}},
    Engine{"https://www.google.com/search?hl=en&q=", "&ie=UTF-8", {34, 10, 24, 6, 30}},
    Engine{"https://www.bing.com/search?q=", "&form=QBLH", {26, 4, 6, 6, 8}},
    Engine{"http://www.bing.com/search?q=", "&go=&form=QBLH", {5, 1, 1, 2, 1}},
    Engine{"https://duckduckgo.com/?q=", "&t=h_&ia=web", {14, 3, 3, 1, 3}},
    Engine{"https://search.yahoo.com/search?p=", "&fr=yfp-t", {9, 1, 2, 2, 4}},
    Engine{"https://www.ecosia.org/search?method=index&q=", "", {8, 0, 1, 0, 0}},
    Engine{"https://www.startpage.com/do/dsearch?query=", "&cat=web", {5, 1, 1, 0, 0}},
    Engine{"https://www.qwant.com/?l=fr&q=", "&t=web", {4, 0, 0, 0, 0}},
    Engine{"https://yandex.ru/search/?text=", "&lr=213", {2, 60, 0, 0, 0}},
    Engine{"http://www.baidu.com/s?ie=utf-8&wd=", "&rsv_bp=1", {1, 0, 0, 70, 0}},
    Engine{"https://search.seznam.cz/?q=", "&oq=", {2, 1, 0, 0, 0}},
};

inline constexpr std::array kOtherSites{
    "https://www.slow-garden.example/links.html",    "https://forum.balcony.example/t/4711?page=2",
    "http://old-directory.example/garden/shops.htm", "https://social.example/",
    "https://news.town-paper.example/weekend",
};

inline constexpr std::array kBrowsers{
    "Mozilla/5.0 (Windows NT 10.0; Win64; x64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/147.0.0.0 Safari/537.36",
    "Mozilla/5.0 (iPhone; CPU iPhone OS 18_6 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/26.0 "
    "Mobile/15E148 Safari/604.1",
    "Mozilla/5.0 (Linux; Android 10; K) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/147.0.0.0 Mobile Safari/537.36",
    "Mozilla/5.0 (Windows NT 10.0; Win64; x64; rv:149.0) Gecko/20100101 Firefox/149.0",
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/26.0 "
    "Safari/605.1.15",
    "Mozilla/5.0 (Windows NT 10.0; Win64; x64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/146.0.0.0 Safari/537.36 "
    "Edg/146.0.0.0",
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/146.0.0.0 "
    "Safari/537.36",
    "Mozilla/5.0 (X11; Linux x86_64; rv:140.0) Gecko/20100101 Firefox/140.0",
    "Mozilla/5.0 (Linux; Android 10; K) AppleWebKit/537.36 (KHTML, like Gecko) SamsungBrowser/29.0 Chrome/136.0.0.0 "
    "Mobile Safari/537.36",
    "Mozilla/5.0 (iPad; CPU OS 17_7 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.6 Mobile/15E148 "
    "Safari/604.1",
    "Mozilla/5.0 (Android 15; Mobile; rv:149.0) Gecko/149.0 Firefox/149.0",
    "Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/147.0.0.0 Safari/537.36 "
    "OPR/131.0.0.0",
    "Mozilla/5.0 (Windows NT 6.1; WOW64; Trident/7.0; rv:11.0) like Gecko",
    "Mozilla/5.0 (compatible; \\\"Home\\\" Reader 2.1)",
};

inline constexpr std::array kRobots{
    "Mozilla/5.0 (compatible; Googlebot/2.1; +http://www.google.com/bot.html)",
    "Mozilla/5.0 AppleWebKit/537.36 (KHTML, like Gecko; compatible; bingbot/2.0; +http://www.bing.com/bingbot.htm)",
    "Mozilla/5.0 AppleWebKit/537.36 (KHTML, like Gecko; compatible; GPTBot/1.2; +https://openai.com/gptbot)",
    "Mozilla/5.0 AppleWebKit/537.36 (KHTML, like Gecko; compatible; ClaudeBot/1.0; +claudebot@anthropic.com)",
    "Mozilla/5.0 (compatible; AhrefsBot/7.0; +http://ahrefs.com/robot/)",
    "Mozilla/5.0 (compatible; SemrushBot/7~bl; +http://www.semrush.com/bot.html)",
    "Mozilla/5.0 (compatible; YandexBot/3.0; +http://yandex.com/bots)",
    "Mozilla/5.0 (compatible; MJ12bot/v1.4.8; http://mj12bot.com/)",
    "facebookexternalhit/1.1 (+http://www.facebook.com/externalhit_uatext.php)",
    "python-requests/2.32.3",
};

inline constexpr std::array kProbes{
    "/wp-login.php", "/xmlrpc.php", "/.env", "/.git/config", "/phpmyadmin/index.php", "/old/index.htm", "/backup.zip",
};

}  // namespace loggen
