#include "logdefs/formatfinder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

#include "core/dates.h"
#include "core/numbers.h"
#include "core/utf8.h"
#include "logdefs/formatplausible.h"
#include "logdefs/formatstore.h"
#include "logdefs/linedate.h"

namespace logdefs {
namespace {

constexpr std::size_t kShownLine = 300;  // bytes
constexpr std::size_t kShownRest = 80;
constexpr double kClocksDiffer = 2;            // days that a server's clock may be ahead
constexpr double kLastDayWithout = 73050;      // the end of 2099
constexpr int kFreeField = FmtFieldCount - 4;  // "%1"
constexpr std::string_view kTime = "time";

// What reports need, and what cannot be told without it.
struct Wanted {
    std::array<int, 2> fields;  // one of them will do
    std::string_view word;
    std::string_view label;
    std::string_view loses;
};
constexpr std::array kWanted{
    Wanted{{kReferrer, kReferrer}, "referrer", "referrer", "search engines"},
    Wanted{{kAgent, kAgent2}, "agent", "user agent", "robots"},
    Wanted{{kStatus, kStatus}, "status", "HTTP status", "errors"},
    Wanted{{kBytes, kBytes}, "bytes", "bytes", "sizes"},
    Wanted{{kIP, kNumIP}, "address", "address", "visits"},
};

// "192.0.2.7, 10.0.0.1": how proxies tell for whom they asked, the visitor first.
bool IsForwarded(std::string_view text) { return IsIpAddress(text.substr(0, text.find(','))); }

// One that starts behind a quote was left out whole.
bool LeavesOutForwarded(const LogLnFields& fields, std::string_view line, std::string_view unread) {
    if (unread.starts_with(" \"") && IsForwarded(unread.substr(2, unread.find('"', 2) - 2))) return true;
    for (int field = kFreeField; field <= FmtFieldCount; ++field) {
        const std::string_view text = fields[field];
        const bool inside = text.data() > line.data() && text.data() <= line.data() + line.size();
        if (inside && *(text.data() - 1) == '"' && IsForwarded(text)) return true;
    }
    return false;
}

class Trier {
public:
    Trier(const LogFormat& format, std::size_t samples, double now, FormatTrial& trial)
        : format_(format),
          samples_(samples),
          lastDay_(now > 0 ? std::floor(now) + kClocksDiffer : kLastDayWithout),
          trial_(trial) {}

    void Take(std::string_view line) {
        ++trial_.lines;
        if (!format_.LogLnInterpret(line, fields_)) {
            if (trial_.firstMisfitNumber == 0) KeepMisfit(line);
            return;
        }
        ++trial_.fit;
        const std::string_view doubtful = DoubtfulField(fields_, line, lastDay_);
        if (doubtful.empty()) ++trial_.plausible;
        if (trial_.doubtful.empty()) trial_.doubtful = doubtful;
        trial_.filled += std::ranges::count_if(kFieldNames, [&](const FieldName& row) {
            // A "-" is how logs write that there is nothing; a layout that cuts "- -" out as one field is no better.
            return row.field != kQuery && fields_[row.field].find_first_not_of("- ") != std::string_view::npos;
        });
        const std::string_view unread = line.substr(format_.LogLnExplain(line).at);
        trial_.unread += static_cast<std::int64_t>(unread.size());
        if (LeavesOutForwarded(fields_, line, unread)) --trial_.filled;
        if (trial_.samples.size() < samples_) KeepSample();
    }

private:
    void KeepSample() {
        auto& shown = trial_.samples.emplace_back();
        trial_.sampleNumbers.push_back(trial_.lines);
        shown.push_back({std::string(kTime), std::to_string(clock_.LogLnTimestamp(fields_).timestamp)});
        for (const FieldName& row : kFieldNames)
            if (!fields_[row.field].empty()) shown.push_back({std::string(row.word), std::string(fields_[row.field])});
    }

    void KeepMisfit(std::string_view line) {
        const Misfit misfit = format_.LogLnExplain(line);
        trial_.firstMisfitNumber = trial_.lines;
        trial_.firstMisfit = core::CutUtf8(line, kShownLine);
        trial_.firstMisfitColumn = misfit.at;
        trial_.expected = misfit.separator;
        trial_.firstMisfitRest = core::CutUtf8(line.substr(misfit.at), kShownRest);
    }

    const LogFormat& format_;
    std::size_t samples_;
    double lastDay_;
    FormatTrial& trial_;
    LogLnFields fields_{};
    LineClock clock_{};
};

auto Rank(const FormatTrial& trial) { return std::tuple(trial.plausible, trial.fit, trial.filled, -trial.unread); }

std::string Number(std::int64_t count) { return core::CountText(static_cast<double>(count)); }

// Whole percent; 0 and 100 for none and all alone.
std::string Percent(std::int64_t part, std::int64_t whole) {
    const std::int64_t percent = part * 100 / std::max<std::int64_t>(1, whole);
    if (part > 0 && percent == 0) return "Less than 1 %";
    return std::to_string(percent) + " %";
}

std::string ShareText(const FormatTrial& trial) {
    if (trial.lines == 0) return "The log has no lines.";
    if (trial.lines == 1)
        return trial.fit == 1 ? "The one line of the log fits." : "The one line of the log does not fit.";
    const std::string lines = "of the first " + Number(trial.lines) + " lines";
    return trial.fit == 0 ? "None " + lines + " fits." : Percent(trial.fit, trial.lines) + " " + lines + " fit.";
}

std::string LabelOf(std::string_view word) {
    if (word == "date") return "date";
    const auto row = std::ranges::find(kFieldNames, word, &FieldName::word);
    return std::string(row == kFieldNames.end() ? word : row->label);
}

std::string DoubtText(const FormatTrial& trial) {
    const std::int64_t doubtful = trial.fit - trial.plausible;
    if (doubtful * 2 <= trial.fit) return {};
    return " But it is probably another layout: in " + Number(doubtful) + (doubtful == 1 ? " line" : " lines") +
           " a field is not what it is called, first the field \"" + LabelOf(trial.doubtful) + "\".";
}

// "a, b or c".
std::string Listed(const std::vector<std::string_view>& words, std::string_view last) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i)
        text.append(i == 0 ? "" : i + 1 < words.size() ? ", " : last).append(words[i]);
    return text;
}

std::string MissingText(const FormatTrial& trial) {
    std::vector<std::string_view> labels, loses;
    for (const Wanted& wanted : kWanted) {
        if (std::ranges::find(trial.missing, wanted.word) == trial.missing.end()) continue;
        labels.push_back(wanted.label);
        loses.push_back(wanted.loses);
    }
    if (labels.empty()) return {};
    return " The layout holds no " + Listed(labels, " or ") + ", so " + Listed(loses, " and ") + " cannot be told.";
}

// Letters from the start of the line, from 1, as far as the line was kept.
std::size_t LetterOf(const FormatTrial& trial) {
    const std::size_t kept = std::min(trial.firstMisfitColumn, trial.firstMisfit.size());
    const auto inLetter = std::count_if(trial.firstMisfit.begin(), trial.firstMisfit.begin() + static_cast<long>(kept),
                                        [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
    return trial.firstMisfitColumn - static_cast<std::size_t>(inLetter) + 1;
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace

FormatTrial TryFormat(const LogSample& sample, const std::string& name, const LogFormat& format, std::size_t samples,
                      double now) {
    FormatTrial trial{.format = name};
    Trier trier(format, samples, now, trial);
    for (const std::string& line : sample.lines) trier.Take(line);
    for (const Wanted& wanted : kWanted)
        if (!format.Holds(wanted.fields[0]) && !format.Holds(wanted.fields[1])) trial.missing.emplace_back(wanted.word);
    return trial;
}

std::vector<FormatTrial> FindFormats(core::IniStore& ini, const std::string& formatFile, const LogSample& sample,
                                     double now) {
    std::vector<FormatTrial> trials;
    for (const std::string& name : LogFmtNames(ini, formatFile)) {
        FormatTrial trial = TryFormat(sample, name, LogFmtLoad(ini, name, formatFile).format, 1, now);
        if (trial.fit > 0) trials.push_back(std::move(trial));
    }
    std::ranges::stable_sort(trials, [](const auto& a, const auto& b) { return Rank(a) > Rank(b); });
    return trials;
}

std::string FinderText(const FormatTrial& trial) {
    std::string text = ShareText(trial);
    if (trial.fit == 0) return text;
    const std::string doubt = DoubtText(trial);
    return text + (doubt.empty() ? MissingText(trial) : doubt);
}

std::string MisfitText(const FormatTrial& trial) {
    if (trial.firstMisfitNumber == 0) return {};
    std::string text = "Line " + Number(trial.firstMisfitNumber) + " does not fit: " + trial.firstMisfit;
    if (trial.expected.empty()) return text;
    text += "\rColumn " + Number(static_cast<std::int64_t>(LetterOf(trial))) + ": " + Quoted(trial.expected);
    if (trial.firstMisfitRest.empty()) return text + " should stand at the end of the line.";
    return text + " is looked for here and does not fit: " + Quoted(trial.firstMisfitRest);
}

}  // namespace logdefs
