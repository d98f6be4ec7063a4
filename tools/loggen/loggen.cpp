#include "tools/loggen/loggen.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <functional>
#include <limits>
#include <queue>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/loggen/content.h"
#include "tools/loggen/random.h"
#include "tools/loggen/shop.h"

namespace loggen {
namespace {

using Seconds = std::int64_t;

constexpr Seconds kDay = 86400;
constexpr Seconds kNever = std::numeric_limits<Seconds>::max();
constexpr int kDefaultDays = 28;
constexpr std::uint64_t kDefaultPerDay = 3000;
constexpr std::int64_t kLinesPerVisit = 8;  // measured; turns lines a day into visits a day
constexpr std::uint32_t kRegulars = 3000;   // visitors who come back
// Parts of the mean, in percent: by hour, and by weekday from Sunday.
constexpr std::array<std::int64_t, 24> kHourWeights{35,  22,  15,  12,  13,  22,  45,  75,  105, 125, 130, 128,
                                                    120, 122, 128, 130, 132, 138, 150, 172, 185, 170, 120, 66};
constexpr std::array<std::int64_t, 7> kWeekdayWeights{118, 96, 92, 90, 94, 98, 112};

enum class VisitKind : std::uint8_t { kPerson, kRobot, kScanner, kMonitor, kBroken };

struct Visit {
    VisitKind kind = VisitKind::kPerson;
    std::size_t page = 0;
    std::string referrer{};  // of the first page; then the pages of the visit refer to one another
    std::string address{};
    std::string_view agent{};
    std::string_view protocol{};
    int pagesLeft = 0;
    int partsLeft = 0;  // of the last page, without its picture
    bool pictureDue = false;
    bool entered = false;
    bool regular = false;
    std::size_t lastPage = 0;
};

struct Event {
    Seconds time = 0;
    std::uint64_t order = 0;
    std::size_t slot = 0;
    bool operator>(const Event& other) const { return time != other.time ? time > other.time : order > other.order; }
};

constexpr std::array<std::string_view, 5> kParts{"/favicon.ico", "/static/fonts/garden.woff2", "/static/img/logo.png",
                                                 "/static/js/shop.js?v=41", "/static/shop.css?v=41"};

template <typename Number>
void AppendNumber(std::string& out, Number number, int base = 10) {
    std::array<char, 24> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, base).ptr;
    out.append(text.data(), end);
}

// An address of the ranges for private and shared use and for documentation, one address for one number.
std::string Address(std::uint64_t number) {
    constexpr std::array<std::string_view, 3> kDocumentation{"192.0.2.", "198.51.100.", "203.0.113."};
    const std::uint64_t bits = Mix(number);
    const std::uint64_t choice = bits % 100;
    const auto byte = [bits](unsigned shift) { return static_cast<unsigned>(bits >> shift) & 255U; };
    std::string out;
    if (choice >= 75) {
        out = "2001:db8";
        for (const unsigned shift : {8U, 24U}) {
            out += ':';
            AppendNumber(out, static_cast<unsigned>(bits >> shift) & 0xFFFFU, 16);
        }
        out += "::";
        AppendNumber(out, 1 + byte(40), 16);
    } else if (choice >= 70) {
        out = kDocumentation[byte(8) % kDocumentation.size()];
        AppendNumber(out, 1 + byte(16) % 254U);
    } else {
        out = choice < 45 ? "10." : "100.";
        AppendNumber(out, choice < 45 ? byte(8) : 64 + byte(8) % 64U);
        out += '.';
        AppendNumber(out, byte(16));
        out += '.';
        AppendNumber(out, 1 + byte(24) % 254U);
    }
    return out;
}

std::int64_t FirstDay(const std::string& start) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    char rest = 0;
    const bool shaped = start.size() == 10 && start[4] == '-' && start[7] == '-' &&
                        std::sscanf(start.c_str(), "%4d-%2u-%2u%c", &year, &month, &day, &rest) == 3;
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
    if (!shaped || !date.ok() || year < 1970) throw std::invalid_argument("not a date: " + start);
    return std::chrono::sys_days{date}.time_since_epoch().count();
}

std::uint64_t LinesPerDay(const Options& options) {
    constexpr std::uint64_t kMost = 1'000'000'000;
    if (options.linesPerDay > 0) return std::min(options.linesPerDay, kMost);
    if (options.lines == 0) return kDefaultPerDay;
    if (options.days > 0)
        return std::clamp<std::uint64_t>(options.lines / static_cast<std::uint64_t>(options.days), 1, kMost);
    return std::clamp<std::uint64_t>(options.lines / kDefaultDays, 500, 40000);  // a long log covers more days
}

}  // namespace

struct Generator::State {
    explicit State(const Options& options);

    // Visits.
    void ScheduleArrival();
    void Arrive();
    void StartPerson(Visit& visit);
    void StartRobot(Visit& visit);
    void EnterFromSearch(Visit& visit);
    void WeighTerms(std::int64_t day);

    // Lines. Each returns the seconds until the visit's next line, or kNever at its end.
    Seconds Emit(Visit& visit, std::string& line);
    Seconds EmitPerson(Visit& visit, std::string& line);
    Seconds EmitPart(Visit& visit, std::string& line);
    Seconds ThinkTime(const Visit& visit);
    Seconds EmitRobot(Visit& visit, std::string& line);
    Seconds EmitScanner(Visit& visit, std::string& line);
    Seconds EmitBroken(Visit& visit, std::string& line);
    void Write(std::string& line, const Visit& visit, std::string_view method, std::string_view url, int status,
               std::uint32_t bytes, std::string_view referrer);
    std::string_view TimeText();
    bool Outage() const;

    Options options;
    Random random;
    std::int64_t firstDay = 0;
    std::int64_t days = 0;  // the span of the trends
    std::int64_t visitsPerDay = 1;
    Seconds end = kNever;
    std::uint64_t written = 0;
    std::uint64_t arrivals = 0;
    std::int64_t arrivalMicros = 0;

    Shop shop{};
    std::array<std::uint32_t, kTerms.size()> termSums{};
    std::int64_t weighedDay = -1;

    std::vector<Visit> visits{};
    std::vector<std::size_t> freeSlots{};
    std::priority_queue<Event, std::vector<Event>, std::greater<>> events{};
    Seconds now = 0;
    Seconds timeTextOf = -1;
    std::string timeText{};
};

Generator::State::State(const Options& given) : options(given), random(given.seed), firstDay(FirstDay(given.start)) {
    const std::uint64_t perDay = LinesPerDay(options);
    days = options.days > 0 ? options.days : kDefaultDays;
    if (options.lines > 0) {
        days = std::max<std::int64_t>(1, static_cast<std::int64_t>(options.lines / perDay));
    } else {
        end = (firstDay + days) * kDay;
    }
    visitsPerDay = std::max<std::int64_t>(1, static_cast<std::int64_t>(perDay) / kLinesPerVisit);
    arrivalMicros = firstDay * kDay * 1'000'000;
    ScheduleArrival();
}

// Visits come at an even rate within an hour, evenly spread between no gap and twice the mean.
void Generator::State::ScheduleArrival() {
    const Seconds second = arrivalMicros / 1'000'000;
    const std::int64_t hour = kHourWeights[static_cast<std::size_t>(second % kDay / 3600)];
    const std::int64_t weekday = kWeekdayWeights[static_cast<std::size_t>((second / kDay + 4) % 7)];
    const std::int64_t mean = kDay * 1'000'000 / visitsPerDay * 10'000 / (hour * weekday);  // microseconds
    arrivalMicros += random.Between(0, 2 * mean);
}

void Generator::State::Arrive() {
    const Seconds second = arrivalMicros / 1'000'000;
    std::size_t slot = visits.size();
    if (freeSlots.empty()) {
        visits.emplace_back();
    } else {
        slot = freeSlots.back();
        freeSlots.pop_back();
    }
    Visit& visit = visits[slot];
    visit = Visit{};
    WeighTerms(second / kDay - firstDay);
    const std::uint32_t share = random.Below(1000);
    if (share < 760) {
        StartPerson(visit);
    } else if (share < 940 || !options.brokenLines || share >= 955) {
        StartRobot(visit);
    } else {
        visit.kind = VisitKind::kBroken;
        visit.address = Address(random.Next());
    }
    events.push({second, arrivals++, slot});
    ScheduleArrival();
}

void Generator::State::StartPerson(Visit& visit) {
    visit.regular = random.Chance(300);
    // Regulars and new visitors get their numbers from different halves, so that no new visitor is a regular.
    const std::uint64_t number =
        options.seed * 0x100000000U + (visit.regular ? random.Below(kRegulars) : kRegulars + arrivals);
    const std::uint64_t bits = Mix(Mix(number));
    const std::uint64_t one = bits % kBrowsers.size();
    const std::uint64_t other = (bits >> 20U) % kBrowsers.size();
    visit.agent = kBrowsers[static_cast<std::size_t>(std::min(one, other))];  // the first ones are the common ones
    visit.address = Address(number);
    visit.protocol = (bits >> 40U) % 10 < 7 ? "HTTP/2.0" : "HTTP/1.1";
    const std::uint32_t patience = random.Below(6);
    visit.pagesLeft = 1 + static_cast<int>(std::min(patience, random.Below(9)));
    const std::uint32_t share = random.Below(1000);
    const std::int64_t day = arrivalMicros / 1'000'000 / kDay - firstDay;
    if (share < 560) {
        EnterFromSearch(visit);
    } else if (share < 690 && day * 10 >= days * 4 && day * 10 < days * 6) {
        visit.page = shop.sale;  // the campaign: a letter, in the middle of the time
        visit.referrer = "-";
    } else if (share < 800) {
        visit.page = random.Chance(550) ? 0 : random.Pick(shop.products, shop.articles - shop.products);
        visit.referrer = "-";
    } else {
        visit.page = random.Chance(600) ? random.Pick(shop.articles, kArticles.size())
                                        : random.Pick(shop.categories, kCategories.size());
        visit.referrer = kOtherSites[random.Below(kOtherSites.size())];
    }
    if (random.Chance(20)) visit.page = random.Pick(shop.gone, 2);
    if (random.Chance(15)) visit.page = random.Pick(shop.moved, kCategories.size());
}

void Generator::State::EnterFromSearch(Visit& visit) {
    const auto found = std::ranges::upper_bound(termSums, random.Below(termSums.back()));
    const auto index = static_cast<std::size_t>(found - termSums.begin());
    const Term& term = kTerms[index];
    const auto script = static_cast<std::size_t>(term.script);
    std::uint32_t total = 0;
    for (const Engine& engine : kEngines) total += engine.weights[script];
    std::uint32_t place = random.Below(total);
    const Engine* engine = kEngines.data();
    while (place >= engine->weights[script]) place -= (engine++)->weights[script];
    visit.referrer = engine->before;
    if (engine->after != nullptr) {
        const bool oneByte =
            !shop.oneByteTerms[index].empty() && visit.referrer.starts_with("http:") && random.Chance(600);
        visit.referrer += oneByte ? shop.oneByteTerms[index] : shop.terms[index];
        visit.referrer += engine->after;
    }
    const std::size_t perCategory = kCategories[0].products.size();
    const std::uint32_t share = random.Below(10);
    visit.page = share < 7   ? shop.products + term.category * perCategory + (index + random.Below(2)) % perCategory
                 : share < 9 ? shop.categories + term.category
                             : random.Pick(shop.articles, kArticles.size());
}

void Generator::State::StartRobot(Visit& visit) {
    const std::uint32_t share = random.Below(100);
    const std::uint32_t which = random.Below(kRobots.size());
    visit.address = Address(options.seed + 77 * which + random.Below(4));
    visit.protocol = "HTTP/1.1";
    visit.agent = kRobots[which];
    visit.kind = share < 80 ? VisitKind::kRobot : share < 90 ? VisitKind::kMonitor : VisitKind::kScanner;
    visit.pagesLeft = static_cast<int>(random.Between(2, 9));
    visit.partsLeft = random.Chance(600) ? 1 : 0;  // robots.txt first
    if (visit.kind == VisitKind::kMonitor)
        visit.agent = "Mozilla/5.0+(compatible; UptimeRobot/2.0; http://www.uptimerobot.com/)";
    if (visit.kind == VisitKind::kScanner) visit.agent = random.Chance(500) ? "Mozilla/5.0 zgrab/0.x" : kBrowsers[0];
}

void Generator::State::WeighTerms(std::int64_t day) {
    if (day == weighedDay) return;
    weighedDay = day;
    const std::int64_t grown = 6 * std::clamp<std::int64_t>(day, 0, days);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < kTerms.size(); ++i) {
        const std::int64_t scale = kTerms[i].trend == Trend::kRising    ? days + grown
                                   : kTerms[i].trend == Trend::kFalling ? 7 * days - grown
                                                                        : 3 * days;
        sum += static_cast<std::uint32_t>(kTerms[i].weight * scale * 10 / days);
        termSums[i] = sum;
    }
}

Seconds Generator::State::Emit(Visit& visit, std::string& line) {
    switch (visit.kind) {
        case VisitKind::kPerson:
            return visit.pictureDue || visit.partsLeft > 0 ? EmitPart(visit, line) : EmitPerson(visit, line);
        case VisitKind::kRobot:
            return EmitRobot(visit, line);
        case VisitKind::kScanner:
            return EmitScanner(visit, line);
        case VisitKind::kBroken:
            return EmitBroken(visit, line);
        case VisitKind::kMonitor:
            Write(line, visit, "HEAD ", "/", Outage() ? 503 : 200, 0, "-");
            return kNever;
    }
    return kNever;
}

Seconds Generator::State::EmitPerson(Visit& visit, std::string& line) {
    const Page& page = shop.pages[visit.page];
    const bool failed = Outage() || random.Chance(1);
    const bool post = visit.page == shop.addToCart || (page.kind == PageKind::kThanks);
    Write(line, visit, post ? "POST " : "GET ", page.url, failed ? (Outage() ? 503 : 500) : page.status,
          failed ? 299 : page.bytes + random.Below(page.bytes / 50 + 1),
          visit.entered ? shop.pages[visit.lastPage].asReferrer : visit.referrer);
    if (failed) return kNever;
    const std::size_t requested = std::exchange(visit.page, shop.NextPage(page, random));
    if (page.follow >= 0) return 0;
    visit.lastPage = requested;
    visit.pictureDue = !page.image.empty();
    if (!visit.entered) visit.partsLeft = static_cast<int>(kParts.size());
    visit.entered = true;
    --visit.pagesLeft;
    return visit.pictureDue || visit.partsLeft > 0 ? 0 : ThinkTime(visit);
}

Seconds Generator::State::EmitPart(Visit& visit, std::string& line) {
    const Page& page = shop.pages[visit.lastPage];
    const bool picture = std::exchange(visit.pictureDue, false);
    if (!picture) --visit.partsLeft;
    const std::string_view url = picture ? page.image : kParts[static_cast<std::size_t>(visit.partsLeft)];
    const bool kept = visit.regular && random.Chance(700);
    const auto bytes = static_cast<std::uint32_t>(4000 + url.size() * 977);
    Write(line, visit, "GET ", url, kept ? 304 : 200, kept ? 0 : bytes, page.asReferrer);
    if (visit.partsLeft > 0) return random.Chance(250) ? 1 : 0;
    return ThinkTime(visit);
}

// Until the next page. A few people come back to the open page after half an hour or more.
Seconds Generator::State::ThinkTime(const Visit& visit) {
    if (visit.pagesLeft <= 0) return kNever;
    return random.Chance(15) ? random.Between(1500, 5400) : random.Between(6, 110);
}

Seconds Generator::State::EmitRobot(Visit& visit, std::string& line) {
    if (visit.partsLeft > 0) {
        visit.partsLeft = 0;
        Write(line, visit, "GET ", "/robots.txt", 200, 164, "-");
        return random.Between(1, 4);
    }
    const Page& page = shop.pages[random.Chance(25) ? random.Pick(shop.gone, 2) : random.Pick(0, shop.searchPage)];
    const bool kept = page.status == 200 && random.Chance(120);
    Write(line, visit, "GET ", page.url, kept ? 304 : page.status, kept ? 0 : page.bytes, "-");
    return --visit.pagesLeft > 0 ? random.Between(3, 60) : kNever;
}

Seconds Generator::State::EmitScanner(Visit& visit, std::string& line) {
    const std::uint32_t which = random.Below(kProbes.size());
    Write(line, visit, which < 2 ? "POST " : "GET ", kProbes[which], 404, 1245, "-");
    return --visit.pagesLeft > 0 ? random.Between(0, 2) : kNever;
}

Seconds Generator::State::EmitBroken(Visit& visit, std::string& line) {
    constexpr std::string_view kRaw("\"\x16\x03\x01\x02\x00\xFE\xC3(\x1B[31m\" 400 226 \"-\" \"-\"", 31);
    constexpr std::array<std::string_view, 5> kRequests{
        "\"-\" 408 - \"-\" \"-\"",
        "\"\\x16\\x03\\x01\\x02\" 400 226 \"-\" \"-\"",
        "\"GET /\" 400 226 \"-\" \"-\"",
        kRaw,
        "\"GET /p/tomato-red-lantern.html HTTP/1.1\" 200 151",
    };
    line = visit.address;
    line += " - - ";
    line += TimeText();
    line += kRequests[random.Below(kRequests.size())];
    if (random.Chance(150)) line.resize(line.size() / 2);
    return kNever;
}

void Generator::State::Write(std::string& line, const Visit& visit, std::string_view method, std::string_view url,
                             int status, std::uint32_t bytes, std::string_view referrer) {
    line.clear();
    line += visit.address;
    line += " - - ";
    line += TimeText();
    line += '"';
    line += method;
    line += url;
    line += ' ';
    line += visit.protocol;
    line += "\" ";
    AppendNumber(line, status);
    line += ' ';
    if (bytes == 0) {
        line += '-';
    } else {
        AppendNumber(line, bytes);
    }
    line += " \"";
    line += referrer;
    line += "\" \"";
    line += visit.agent;
    line += '"';
}

std::string_view Generator::State::TimeText() {
    constexpr std::array<const char*, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    if (now == timeTextOf) return timeText;
    timeTextOf = now;
    const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{static_cast<int>(now / kDay)}}};
    const auto twoDigits = [this](auto number) {
        timeText += static_cast<char>('0' + number / 10);
        timeText += static_cast<char>('0' + number % 10);
    };
    timeText = '[';
    twoDigits(unsigned{date.day()});
    timeText += '/';
    timeText += kMonths[unsigned{date.month()} - 1];
    timeText += '/';
    AppendNumber(timeText, int{date.year()});
    for (const Seconds part : {now % kDay / 3600, now % 3600 / 60, now % 60}) {
        timeText += ':';
        twoDigits(part);
    }
    timeText += " +0000] ";
    return timeText;
}

// A bad quarter of an hour, one third through the time.
bool Generator::State::Outage() const {
    const Seconds begin = (firstDay + days / 3) * kDay + 14 * 3600;
    return now >= begin && now < begin + 900;
}

Generator::Generator(const Options& options) : state_(std::make_unique<State>(options)) {}
Generator::~Generator() = default;

bool Generator::Next(std::string& line) {
    State& state = *state_;
    if (state.options.lines > 0 && state.written == state.options.lines) return false;
    while (state.events.empty() || state.arrivalMicros / 1'000'000 <= state.events.top().time) {
        if (state.arrivalMicros / 1'000'000 >= state.end) break;
        state.Arrive();
    }
    if (state.events.empty() || state.events.top().time >= state.end) return false;
    const Event event = state.events.top();
    state.events.pop();
    state.now = event.time;
    const Seconds wait = state.Emit(state.visits[event.slot], line);
    if (wait == kNever) {
        state.freeSlots.push_back(event.slot);
    } else {
        state.events.push({event.time + wait, event.order, event.slot});
    }
    ++state.written;
    return true;
}

}  // namespace loggen
