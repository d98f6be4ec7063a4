#include "adddata/summaryscreens.h"

#include <algorithm>

#include "adddata/recordscreens.h"
#include "core/numbers.h"
#include "core/text.h"
#include "dialogs/valuelist.h"

namespace adddata {
namespace {

constexpr std::string_view kNone = "none";
constexpr std::size_t kDateLength = 8;
constexpr std::string_view kSummarySpec = "12600|5000||||||||1|0|{2600|4300|1000|1400|2100}|{0|0|7|7|7}";
constexpr std::string_view kDetailSpec = "8600|5000||||||||1|0|{3800|1600|1600|1600}|{0|0|7|7}";
constexpr std::string_view kSummaryText =
    "This is a summary of data you have just added.\r\rUse the reports menu for\r"
    "- full trend reports including all raw log data added to the database.\r- reports on keywords.\r"
    "- trends for each word found within search terms [keywords].";

std::string Count(std::int64_t count) { return core::CountText(static_cast<double>(count)); }

std::string DateText(std::string_view date) { return core::fFormatText(date, "@@@@-@@-@@"); }

bool IsDate(std::string_view text) {
    return text.size() == kDateLength && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::int64_t DatedVisitors(const EngineDays& engine) {
    std::int64_t visitors = 0;
    for (const auto& [date, count] : engine.days) visitors += count;
    return visitors;
}

double Average(const EngineDays& engine) {
    return static_cast<double>(DatedVisitors(engine)) / static_cast<double>(engine.days.size());
}

std::string DatesText(const EngineDays& engine) {
    if (engine.days.empty()) return std::string(kNone);
    return std::to_string(engine.days.size()) + " days. [" + DateText(engine.days.begin()->first) + " to " +
           DateText(engine.days.rbegin()->first) + " ]";
}

std::string DeviationText(std::int64_t count, double average) {
    if (average == 0) return "0 %";
    const double percent = (static_cast<double>(count) / average - 1) * 100;
    const std::string text = core::fFormat(percent, "0");
    if (core::fNum(text) == 0) return "0 %";
    return (percent > 0 ? "+" : "") + text + " %";
}

void SEsummaryDetail(const dialogs::Desk& desk, const EngineDays& engine) {
    dialogs::ValueList list;
    list.title = "Detail for SE: " + engine.engine;
    list.message = "Detail for SE: " + engine.engine +
                   ". Show visitor counts for each date.\r% Deviation is change in no of visitors from average # of "
                   "visitors per day [" +
                   AverageText(engine) + "]";
    list.name = "SEsummaryDetail";
    list.emptyText = "None of these visitors has a date.";
    list.gridSpec = kDetailSpec;
    list.helpId = "AddLog";
    dialogs::Rows rows = DetailRows(engine);
    list.headers = rows.front();
    rows.erase(rows.begin());
    int selected = -1;
    dialogs::ShowValueList(desk, list, rows, selected);
}

void ShowProblemsOf(const dialogs::Desk& desk, const logread::ProblemList::File& file) {
    dialogs::ValueList list;
    list.title = "List Problems for: " + file.name;
    list.message = list.title;
    list.name = "ProblemList";
    list.helpId = "AddLog";
    int selected = -1;
    dialogs::ShowValueList(desk, list, dialogs::RowsOf(file.texts), selected);
}

}  // namespace

std::vector<EngineDays> EnginesOf(const EngineCounts& counts) {
    std::map<std::string, EngineDays, std::less<>> byName;
    for (const auto& [item, count] : counts) {
        const std::size_t bar = item.rfind('|');
        const std::string name = item.substr(0, bar);
        const std::string date = bar == std::string::npos ? std::string() : item.substr(bar + 1);
        EngineDays& engine = byName[name];
        engine.engine = name;
        engine.visitors += count;
        if (IsDate(date)) engine.days[date] += count;
    }
    std::vector<EngineDays> engines;
    for (auto& [name, engine] : byName) engines.push_back(std::move(engine));
    std::ranges::stable_sort(engines, std::ranges::greater(), &EngineDays::visitors);
    return engines;
}

std::string AverageText(const EngineDays& engine) {
    return engine.days.empty() ? std::string(kNone) : core::fFormat(Average(engine), "0.0");
}

dialogs::Rows SummaryRows(const std::vector<EngineDays>& engines) {
    dialogs::Rows rows{
        {"SE referrer", "No of distinct days / Dates", "Visitors", "Average per day", "% of total SE visitors"}};
    double total = 0;
    for (const EngineDays& engine : engines) total += static_cast<double>(engine.visitors);
    for (const EngineDays& engine : engines) {
        const double share = total > 0 ? static_cast<double>(engine.visitors) / total * 100 : 0;
        rows.push_back({engine.engine, DatesText(engine), Count(engine.visitors), AverageText(engine),
                        core::fFormat(share, "0.0") + " %"});
    }
    return rows;
}

dialogs::Rows DetailRows(const EngineDays& engine) {
    dialogs::Rows rows{{"SE referrer", "Date", "# of Visitors", "% Deviation"}};
    for (const auto& [date, count] : engine.days)
        rows.push_back({engine.engine, DateText(date), Count(count), DeviationText(count, Average(engine))});
    return rows;
}

void SEsummaryShow(const dialogs::Desk& desk, const EngineCounts& counts) {
    const std::vector<EngineDays> engines = EnginesOf(counts);
    if (engines.empty()) {
        dialogs::ShowMsg(desk, "No SE referrals found.", "- SE Summary");
        return;
    }
    dialogs::Controls controls;
    const int grid = dialogs::MBAddCtl("Grid", "0", dialogs::MBSpec(kSummarySpec), controls, SummaryRows(engines));
    controls[grid].caption = "Search engines";
    dialogs::Box box;
    box.message = kSummaryText;
    box.buttons = "Show &Detail|&Close";
    box.options = dialogs::option::NoHide("1", false, false);
    box.escNo = 2;
    box.title = "- SE Summary";
    box.name = "SEsummary";
    box.helpId = "AddLog";
    dialogs::ShowMBStay(desk, box, controls, [&](dialogs::DialogModel& model, int button) {
        model.problem.clear();
        const std::vector<int> selected = model.controls[grid].Selected();
        if (button == 1 && selected.empty()) model.problem = "Select a line first.";
        if (button == 1 && !selected.empty())
            SEsummaryDetail(desk, engines[static_cast<std::size_t>(selected.front())]);
    });
}

void ProblemFilesShow(const dialogs::Desk& desk, const std::vector<logread::ProblemList::File>& problems) {
    if (problems.empty()) {
        dialogs::ShowMsg(desk, "Files were all read without problems.");
        return;
    }
    dialogs::Controls controls;
    dialogs::Rows rows;
    for (const logread::ProblemList::File& file : problems) rows.push_back({file.name});
    const int files = dialogs::MBAddCtl("ListBox", "0", dialogs::MBSpec("10000|4000"), controls, std::move(rows));
    controls[files].caption = "Log files with problems";
    dialogs::Box box;
    box.message = "Log files with problems. Select file & press OK to see problem list.";
    box.buttons = "&OK|&Cancel";
    box.options = dialogs::option::NoHide("1", false, false);
    box.title = "- Log files with problems";
    box.name = "ProblemFiles";
    box.helpId = "AddLog";
    dialogs::ShowMBStay(desk, box, controls, [&](dialogs::DialogModel& model, int button) {
        const std::vector<int> selected = model.controls[files].Selected();
        if (button == 1 && !selected.empty())
            ShowProblemsOf(desk, problems[static_cast<std::size_t>(selected.front())]);
    });
}

}  // namespace adddata
