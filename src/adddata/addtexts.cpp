#include "adddata/addtexts.h"

#include "core/dates.h"
#include "core/numbers.h"
#include "core/text.h"
#include "logdefs/format.h"

namespace adddata {
namespace {

constexpr double kMegabyte = 1e6;
constexpr double kSecondsOfDay = 86400;
constexpr std::string_view kFilters = " filters.";

std::string Switch(bool on, std::string_view label) {
    return std::string(on ? "Yes" : "No").append(" [").append(label).append("]");
}

// The statement without the rules.
std::string ShortStatement(const std::string& statement) {
    const std::size_t end = statement.find(kFilters);
    return end == std::string::npos ? statement : statement.substr(0, end + kFilters.size());
}

std::string DayText(double moment) { return core::FormatDate(moment, "dd mmm yyyy"); }

// The counts of all files in the form of those of one.
logread::ProgressTexts SkipTexts(const logread::AllCounters& all) {
    logread::LogReadCtx ctx;
    ctx.File.LinesAdded = all.AllLinesAdded;
    ctx.File.LinesExist = all.AllLinesExist;
    ctx.Filters.main.HitCount = all.AllFiltered;
    ctx.Filters.robots.HitCount = all.AllBots;
    ctx.Filters.components.HitCount = all.AllComps;
    return logread::LogReadProgressText(ctx, false);
}

}  // namespace

std::string AddOptionsText(const AddOptions& options) {
    std::string files;
    for (const logdefs::LogFileSpec& spec : options.files)
        files.append(files.empty() ? "" : "\r").append(logdefs::LogFileSpecJoin(spec));
    return "File Spec: " + files + "\rAdd Only/Except Filtered: " + options.mainFilter +
           "\rSkip robots n crawlers: " + Switch(options.switches.skipRobots, "user agent") +
           "\rSkip page components: " + Switch(options.switches.skipComponents, "page component");
}

std::string AddTotalsText(const AddTotals& totals) {
    const logread::AllCounters& all = totals.outcome.read.totals;
    std::string text = "Added: " + core::CountText(static_cast<double>(all.AllLinesAdded));
    if (totals.outcome.preprocessSeconds)
        text += " [Preprocessing: " + core::fElapsedText(0, *totals.outcome.preprocessSeconds / kSecondsOfDay) + "]";
    text += " in " + totals.took + "\rTotal log lines read: " + core::CountText(static_cast<double>(all.AllLinesRead)) +
            ".\rAdd Only/Except Filtered: " + ShortStatement(totals.mainFilter);
    if (all.AllFirstDate != 0) text += "\rData from " + DayText(all.AllFirstDate) + " to " + DayText(all.AllLastDate);
    const logread::ProgressTexts skipped = SkipTexts(all);
    return text + "\rTotal bandwidth for all lines read: " + core::fFormat(all.AllBytesRead / kMegabyte, "#,##0.0") +
           " Meg.\r" + skipped.summary + "\r" + skipped.details;
}

}  // namespace adddata
