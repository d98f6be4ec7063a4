#include "logdefs/rulepreview.h"

#include <algorithm>
#include <unordered_map>

#include "core/files.h"
#include "core/numbers.h"
#include "core/utf8.h"
#include "logdefs/formatstore.h"
#include "logdefs/rulebrowsers.h"

namespace logdefs {
namespace {

constexpr std::size_t kMostOfValue = 4096;  // bytes
constexpr std::size_t kMostRules = 200;
constexpr std::size_t kAgentPlace = 2;
static_assert(kColTypes[kAgentPlace].field == kAgent);

const TrialLines::Value kNothing{};

bool Satisfies(const TrialLines::Value& value, const FltrRule& rule) {
    return FltrTestPrepared(rule.MC ? value.text : value.lowered, rule);
}

std::optional<std::size_t> PlaceOf(int colType) {
    const auto row = std::ranges::find(kColTypes, colType, &ColTypeRow::colType);
    if (row == kColTypes.end()) return std::nullopt;
    return static_cast<std::size_t>(row - kColTypes.begin());
}

}  // namespace

TrialLines::TrialLines(core::IniStore& ini, const TrialLog& log, const std::string& formatFile)
    : file_(core::fNameOf(log.file)) {
    if (log.file.empty()) {
        lack_ = "No log file is chosen on which this could be tried.";
        return;
    }
    LogSample sample;
    if (const core::Result read = ReadLogSample(log.file, kSampleLines, sample); !read) {
        lack_ = read.error;
        return;
    }
    read_ = static_cast<std::int64_t>(sample.lines.size());
    Cut(sample, LogFmtLoad(ini, log.format, formatFile).format);
    if (lines_.empty()) lack_ = "No line of " + file_ + " fits its log format " + log.format + ".";
}

void TrialLines::Cut(const LogSample& sample, const LogFormat& format) {
    std::array<std::unordered_map<std::string_view, std::uint32_t>, kFields> places;
    LogLnFields fields;
    for (const std::string& text : sample.lines) {
        fields.Clear();
        if (!format.LogLnInterpret(text, fields)) continue;
        Line& line = lines_.emplace_back();
        for (std::size_t i = 0; i < kFields; ++i) {
            const std::string_view value = core::CutUtf8(fields[kColTypes[i].field], kMostOfValue);
            const auto [place, isNew] = places[i].try_emplace(value, static_cast<std::uint32_t>(values_[i].size()));
            if (isNew) values_[i].push_back({std::string(value), core::LowerUtf8(value), 0});
            line[i] = place->second;
            ++values_[i][line[i]].lines;
        }
    }
}

const TrialLines::Value& TrialLines::ValueOf(const Line& line, int colType) const {
    const std::optional<std::size_t> place = PlaceOf(colType);
    return place ? values_[*place][line[*place]] : kNothing;
}

TrialLines::Effect TrialLines::Of(const StoredRule& stored) const {
    Effect effect;
    const std::optional<std::size_t> place = PlaceOf(stored.colType);
    if (!place) {
        if (Satisfies(kNothing, stored.rule)) effect.satisfied = Lines();
        return effect;
    }
    for (const Value& value : values_[*place]) {
        const bool satisfied = Satisfies(value, stored.rule);
        if (satisfied) effect.satisfied += value.lines;
        (satisfied ? effect.taken : effect.left).push_back(&value);
    }
    const auto more = [](const Value* a, const Value* b) { return a->lines > b->lines; };
    std::ranges::stable_sort(effect.taken, more);
    std::ranges::stable_sort(effect.left, more);
    return effect;
}

std::optional<std::int64_t> TrialLines::Satisfied(std::span<const StoredRule> rules, bool any) const {
    if (rules.size() > kMostRules) return std::nullopt;
    return std::ranges::count_if(lines_, [&](const Line& line) {
        const auto settles = [&](const StoredRule& stored) {
            return Satisfies(ValueOf(line, stored.colType), stored.rule) == any;
        };
        return std::ranges::any_of(rules, settles) == any;
    });
}

std::string TrialLines::Text(std::int64_t satisfied) const {
    if (!lack_.empty()) return lack_;
    const auto count = [](std::int64_t number) { return core::CountText(static_cast<double>(number)); };
    std::string text = count(satisfied) + " of the first " + count(Lines()) + " lines of " + file_ + " satisfy it.";
    if (read_ > Lines()) text += " " + count(read_ - Lines()) + " more do not fit the log format.";
    return text;
}

std::optional<std::string> TrialLines::BrowserTaken(const StoredRule& stored) const {
    if (PlaceOf(stored.colType) != kAgentPlace) return std::nullopt;
    for (const Value& value : values_[kAgentPlace])
        if (Satisfies(value, stored.rule) && LooksLikeBrowser(value.text)) return value.text;
    return std::nullopt;
}

}  // namespace logdefs
