#include "adddata/recordscreens.h"

#include <algorithm>
#include <array>

#include "adddata/addlog.h"
#include "adddata/problemstore.h"
#include "core/cds.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "dialogs/valuelist.h"
#include "logdefs/rule.h"

namespace adddata {
namespace {

constexpr std::size_t kMostRecords = 20000;
constexpr std::size_t kMainColumns = 16;
constexpr std::string_view kTitle = "Logged Additions of raw log data to this site database";
constexpr std::string_view kNotDone = "First select a line with \"** Done **\" in first column.";
constexpr std::string_view kStartOfFile = "START Read File.";
constexpr std::string_view kCopyBegin = "AddCpy_fltrbots";

// Of the main columns; those behind them are as narrow as what stands in them.
constexpr std::array<int, kMainColumns> kWidths{2750, 3200, 2600, 1300, 2750, 2750, 1200, 1300,
                                                1300, 900,  1000, 900,  1000, 900,  1000, 900};

std::string GridSpec() {
    std::string widths, alignments;
    for (std::size_t i = 0; i < kAddLogFields; ++i) {
        widths.append(i == 0 ? "" : "|").append(std::to_string(i < kMainColumns ? kWidths[i] : 1000));
        alignments.append(i == 0 ? "" : "|").append(kAddLogColumns[i].kind == AddLogKind::Count ? "7" : "0");
    }
    return "14400|6000||||||||1|0|{" + widths + "}|{" + alignments + "}";
}

const std::string& At(const AddLogRecord& record, std::size_t column) { return record.fields[column]; }

bool IsDone(const AddLogRecord& record) { return At(record, AddLogAt("date")).ends_with("Done **"); }

// The rules of a copy, for a person; nothing when there is no such copy.
std::vector<std::string> RulesOfCopy(const AddDesk& at, const std::string& name) {
    std::vector<std::string> rules;
    const bool inSite = name.starts_with(kCopyBegin) && name.find_first_of("/\\") == std::string::npos;
    const std::string file = core::fPathOf(at.site.Paths().lastVals) + name;
    if (!inSite || !core::IsRegularFile(file)) return rules;
    const std::string selected = at.env.ini.IniGet("Filters", "SkipRobotUserAgents", file);
    if (selected.empty()) return rules;
    const logdefs::Condition condition = logdefs::FltrCndnRead(at.env.ini, selected, file);
    const core::StrArray names = core::CDSSplitPlain(condition.list);
    for (const std::string& rule : names.Items())
        rules.push_back(logdefs::FltrRuleText(logdefs::FltrRuleRead(at.env.ini, rule, file)));
    return rules;
}

class AddLogScreen {
public:
    AddLogScreen(const AddDesk& at, std::vector<AddLogRecord> records) : at_(at), records_(std::move(records)) {
        std::ranges::reverse(records_);
    }
    void Run();

private:
    struct Act {
        std::string_view caption;
        void (AddLogScreen::*run)(dialogs::DialogModel& model);
    };
    static const std::array<Act, 6> kActs;

    void Fill(dialogs::DialogModel& model);
    const AddLogRecord* Selected(const dialogs::DialogModel& model) const;
    const AddLogRecord* Done(dialogs::DialogModel& model) const;

    void ShowLine(dialogs::DialogModel& model);
    void ShowRobots(dialogs::DialogModel& model);
    void ShowProblems(dialogs::DialogModel& model);
    void ShowSummary(dialogs::DialogModel& model);
    void Hide(dialogs::DialogModel& model);
    void ShowAll(dialogs::DialogModel& model);

    const AddDesk& at_;
    std::vector<AddLogRecord> records_;  // the newest first
    std::vector<std::size_t> shown_{};   // of them, a row each
    bool hidden_ = false;
};

constexpr std::size_t kHide = 4, kShow = 5;
const std::array<AddLogScreen::Act, 6> AddLogScreen::kActs{{
    {"Sho&w Line", &AddLogScreen::ShowLine},
    {"List E&xclude Robots Filters", &AddLogScreen::ShowRobots},
    {"List Proble&ms", &AddLogScreen::ShowProblems},
    {"SE Summar&y", &AddLogScreen::ShowSummary},
    {"&Hide Lines: Start Read File", &AddLogScreen::Hide},
    {"S&how Lines: Start Read File", &AddLogScreen::ShowAll},
}};

void AddLogScreen::Fill(dialogs::DialogModel& model) {
    dialogs::Rows rows;
    dialogs::ListRow& headers = rows.emplace_back();
    for (const AddLogColumn& column : kAddLogColumns) headers.emplace_back(column.heading);
    shown_.clear();
    for (std::size_t i = 0; i < records_.size(); ++i) {
        if (hidden_ && At(records_[i], AddLogAt("action")) == kStartOfFile) continue;
        shown_.push_back(i);
        rows.emplace_back(records_[i].fields.begin(), records_[i].fields.end());
    }
    model.controls[1].rows = std::move(rows);
    model.controls[1].Select({shown_.empty() ? -1 : 0});
    model.buttons[kHide].enabled = !hidden_;
    model.buttons[kShow].enabled = hidden_;
}

const AddLogRecord* AddLogScreen::Selected(const dialogs::DialogModel& model) const {
    const std::vector<int> selected = model.controls[1].Selected();
    return selected.empty() ? nullptr : &records_[shown_[static_cast<std::size_t>(selected.front())]];
}

// The totals of an add; of another line that there are none.
const AddLogRecord* AddLogScreen::Done(dialogs::DialogModel& model) const {
    const AddLogRecord* record = Selected(model);
    if (record != nullptr && IsDone(*record)) return record;
    model.problem = kNotDone;
    return nullptr;
}

void AddLogScreen::ShowLine(dialogs::DialogModel& model) {
    const AddLogRecord* record = Selected(model);
    if (record == nullptr) return;
    dialogs::ValueList list;
    list.title = kTitle;
    list.headers = {"Column", "Value"};
    list.gridSpec = "11000|6000||||||||1|0|{3500|7500}";
    list.name = "AddLogLine";
    list.helpId = "FL";
    dialogs::Rows rows;
    for (std::size_t i = 0; i < kAddLogFields; ++i)
        rows.push_back({std::string(kAddLogColumns[i].heading), record->fields[i]});
    int selected = -1;
    dialogs::ShowValueList(at_.desk, list, rows, selected);
}

void AddLogScreen::ShowRobots(dialogs::DialogModel& model) {
    const AddLogRecord* record = Done(model);
    if (record == nullptr) return;
    const std::string& name = At(*record, AddLogAt("robotFilterCopy"));
    const std::vector<std::string> rules = RulesOfCopy(at_, name);
    if (rules.empty()) {
        model.problem = "Filters not available for that line.";
        return;
    }
    dialogs::ValueList list;
    list.title = "Exclude Robots Filters";
    list.message = "Filters copied to: " + name + "\r" + core::CountText(static_cast<double>(rules.size())) +
                   " filters, as they were when the data was added.";
    list.name = "AddLogRobots";
    list.helpId = "FL";
    int selected = -1;
    dialogs::ShowValueList(at_.desk, list, dialogs::RowsOf(rules), selected);
}

void AddLogScreen::ShowProblems(dialogs::DialogModel& model) {
    const AddLogRecord* record = Done(model);
    if (record == nullptr) return;
    const long number = core::ToLong(core::fNum(At(*record, AddLogAt("problems"))));
    const auto problems = number > 0 ? ReadProblems(at_.env.ini, ProblemStoreFile(at_.site.Paths()), number)
                                     : std::vector<logread::ProblemList::File>();
    if (problems.empty())
        model.problem = "Error List not available for that line.";
    else
        ProblemFilesShow(at_.desk, problems);
}

void AddLogScreen::ShowSummary(dialogs::DialogModel& model) {
    if (const AddLogRecord* record = Done(model))
        SEsummaryShow(at_.desk,
                      ReadEngineSummary(at_.env.ini, at_.site.Paths(), At(*record, AddLogAt("engineSummary"))));
}

void AddLogScreen::Hide(dialogs::DialogModel& model) {
    hidden_ = true;
    Fill(model);
}

void AddLogScreen::ShowAll(dialogs::DialogModel& model) {
    hidden_ = false;
    Fill(model);
}

void AddLogScreen::Run() {
    dialogs::Controls controls;
    dialogs::MBAddCtl("Grid", "-1", dialogs::MBSpec(GridSpec()), controls);
    controls[1].caption = "Add log";
    controls[1].emptyText = "All lines are hidden.";
    dialogs::Box box;
    box.message = kTitle;
    box.buttons.clear();
    for (const Act& act : kActs) dialogs::MBAddBtn(act.caption, box.buttons);
    const int close = dialogs::MBAddBtn("&Close", box.buttons);
    box.options = dialogs::option::NoHide("1|2|3|4|5|6", false, false);
    box.escNo = close;
    box.title = std::string(kTitle).append(". Site DB: ").append(at_.site.Options().name);
    box.name = "AddLogList";
    box.helpId = "FL";
    dialogs::ShowMBStay(at_.desk, box, controls, [&](dialogs::DialogModel& model, int button) {
        model.problem.clear();
        if (button == 0)
            Fill(model);
        else
            (this->*kActs[static_cast<std::size_t>(button - 1)].run)(model);
    });
}

}  // namespace

void AddLogShowList(const AddDesk& at) {
    AddLogRead read = ReadAddLog(AddLogFile(at.site.Paths()), kMostRecords);
    if (!read.result)
        dialogs::ShowMsg(at.desk, read.result.error);
    else if (read.records.empty())
        dialogs::ShowMsg(at.desk, "No data has been added to this database.");
    else
        AddLogScreen(at, std::move(read.records)).Run();
}

}  // namespace adddata
