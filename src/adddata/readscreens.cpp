#include "adddata/readscreens.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "adddata/logform.h"
#include "core/env.h"
#include "core/text.h"
#include "dialogs/gridops.h"

namespace adddata {
namespace {

constexpr std::string_view kTitle = "Select log file and specify format";
constexpr std::string_view kListSpec = "12600|4500||||||||1|0|{900|8200|3500}";
constexpr std::size_t kMostText = 2000;  // bytes of a cell
constexpr std::string_view kSelectFirst = "Select a log file in the list first.";

// The list of log files. It works on a copy; what is chosen has its place in the order of reading.
class LogFilesScreen {
public:
    explicit LogFilesScreen(const AddDesk& at) : at_(at) {
        for (logdefs::LogFileSpec& spec : ReadLogList(at)) rows_.push_back({std::move(spec), 0});
        MarkChoice();
    }
    bool Run();

private:
    struct Row {
        logdefs::LogFileSpec spec{};
        int place = 0;  // in the order of reading, 0: not read
    };
    struct Act {
        std::string_view caption;
        void (LogFilesScreen::*run)();
    };
    static const std::array<Act, 5> kActs;

    void MarkChoice();
    Row* Selected();
    dialogs::DialogModel Model();
    void Show(dialogs::DialogModel& model);
    std::vector<Row*> Marked();
    void Number();
    std::optional<logdefs::LogFileSpec> AskFormat(const logdefs::LogFileSpec& spec) const;
    bool Store();

    void Add();
    void ChangeFormat();
    void Toggle();
    void OnlyThis();
    void Remove();

    const AddDesk& at_;
    std::vector<Row> rows_{};
    int selected_ = -1, last_ = 0;
    std::string problem_{};
};

const std::array<LogFilesScreen::Act, 5> LogFilesScreen::kActs{{
    {"&Add log files ...", &LogFilesScreen::Add},
    {"Log &format ...", &LogFilesScreen::ChangeFormat},
    {"&Read / do not read", &LogFilesScreen::Toggle},
    {"Read on&ly this one", &LogFilesScreen::OnlyThis},
    {"R&emove from list", &LogFilesScreen::Remove},
}};

// What is chosen and has fallen off the list stands behind it.
void LogFilesScreen::MarkChoice() {
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < rows_.size(); ++i) places.emplace(rows_[i].spec.file, i);
    for (logdefs::LogFileSpec& chosen : ReadLogChoice(at_)) {
        const auto [at, isNew] = places.try_emplace(chosen.file, rows_.size());
        if (isNew) rows_.push_back({std::move(chosen), 0});
        if (rows_[at->second].place == 0) rows_[at->second].place = ++last_;
    }
}

LogFilesScreen::Row* LogFilesScreen::Selected() {
    if (selected_ >= 0 && static_cast<std::size_t>(selected_) < rows_.size())
        return &rows_[static_cast<std::size_t>(selected_)];
    problem_ = kSelectFirst;
    return nullptr;
}

dialogs::DialogModel LogFilesScreen::Model() {
    dialogs::Controls controls;
    const int list = dialogs::MBAddCtl("Grid", "-1", dialogs::MBSpec(kListSpec), controls);
    controls[list].caption = "Log files";
    controls[list].emptyText = "No log file yet. Press Add log files to name the logs of your web server.";
    dialogs::Box box;
    box.message =
        "Log files of this site, the newest first. Those with a number are read, in the order of the numbers.\r"
        "A file without a LogFormat of its own is read by the format that fits.";
    box.buttons.clear();
    dialogs::MBAddBtn("&OK", box.buttons);
    for (const Act& act : kActs) dialogs::MBAddBtn(act.caption, box.buttons);
    dialogs::MBAddBtn("&Cancel", box.buttons);
    box.title = std::string(kTitle).append(". Site DB: ").append(at_.site.Options().name);
    box.name = "EnterLogFiles";
    box.helpId = "AddLog";
    dialogs::DialogModel model = dialogs::BuildModel(at_.desk, box, std::move(controls));
    model.options.stays = true;
    return model;
}

void LogFilesScreen::Show(dialogs::DialogModel& model) {
    dialogs::Rows rows{{"Read", "Log file", "LogFormat"}};
    const std::string otherwise = "(" + DefaultFormat(at_) + ")";
    Number();
    for (const Row& row : rows_) {
        rows.push_back({row.place > 0 ? std::to_string(row.place) : "", dialogs::GridCellText(row.spec.file, kMostText),
                        row.spec.format.empty() ? otherwise : dialogs::GridCellText(row.spec.format, kMostText)});
    }
    model.controls[1].rows = std::move(rows);
    model.controls[1].Select({selected_});
    model.problem = problem_;
    problem_.clear();
}

std::vector<LogFilesScreen::Row*> LogFilesScreen::Marked() {
    std::vector<Row*> marked;
    for (Row& row : rows_)
        if (row.place > 0) marked.push_back(&row);
    std::ranges::sort(marked, {}, [](const Row* row) { return row->place; });
    return marked;
}

// From 1 without a gap.
void LogFilesScreen::Number() {
    last_ = 0;
    for (Row* row : Marked()) row->place = ++last_;
}

// New files come to the head of the list, and they alone are chosen.
void LogFilesScreen::Add() {
    LogForm form(at_, {});
    dialogs::Controls controls;
    form.AddBox("", controls);
    form.AddFormat("", controls);
    form.AddFound(controls);
    dialogs::Box box;
    box.buttons = "&OK|&Cancel";
    box.title = "Add log files";
    box.name = "AddLogFiles";
    box.helpId = "AddLog";
    box.live = [&](dialogs::Controls& entered) { form.Live(entered); };
    const auto check = [&](dialogs::Controls& entered, int) { return form.FilesProblem(form.Specs(entered)); };
    if (dialogs::ShowMBRepeat(at_.desk, box, controls, check).Cancelled()) return;
    std::vector<Row> rows;
    std::unordered_set<std::string> added;
    for (logdefs::LogFileSpec& spec : form.Specs(controls)) {
        if (!added.insert(spec.file).second) continue;
        rows.push_back({{std::move(spec.file), form.Format(controls)}, static_cast<int>(added.size())});
    }
    for (Row& row : rows_)
        if (!added.contains(row.spec.file)) rows.push_back({std::move(row.spec), 0});
    rows_ = std::move(rows);
    selected_ = 0;
}

std::optional<logdefs::LogFileSpec> LogFilesScreen::AskFormat(const logdefs::LogFileSpec& spec) const {
    LogForm form(at_, {});
    dialogs::Controls controls;
    form.AddFormat(spec.format, controls);
    const int text = dialogs::MBAddCtl("Label", "", dialogs::MBSpec("10000"), controls);
    controls[text].caption = "How it fits";
    dialogs::Box box;
    box.message = spec.file;
    box.buttons = "&OK|&Cancel";
    box.title = "Log format of this file";
    box.helpId = "AddLog";
    box.live = [&](dialogs::Controls& entered) {
        const std::string format = form.FormatOf({spec.file, {}}, form.Format(entered));
        entered[text].value = format + ": " + form.Trials().Text(spec.file, format);
    };
    if (dialogs::ShowMB(at_.desk, box, controls).Cancelled()) return std::nullopt;
    return logdefs::LogFileSpec{spec.file, form.Format(controls)};
}

void LogFilesScreen::ChangeFormat() {
    Row* row = Selected();
    if (row == nullptr) return;
    if (auto spec = AskFormat(row->spec)) row->spec = *std::move(spec);
}

void LogFilesScreen::Toggle() {
    if (Row* row = Selected()) row->place = row->place > 0 ? 0 : ++last_;
}

void LogFilesScreen::OnlyThis() {
    Row* chosen = Selected();
    if (chosen == nullptr) return;
    for (Row& row : rows_) row.place = 0;
    chosen->place = ++last_;
}

void LogFilesScreen::Remove() {
    if (Selected() == nullptr) return;
    rows_.erase(rows_.begin() + selected_);
    selected_ = std::min(selected_, static_cast<int>(rows_.size()) - 1);
}

// False: the screen stays. With nothing marked the selected line is the choice.
bool LogFilesScreen::Store() {
    if (Marked().empty() && selected_ >= 0) Toggle();
    LogSpecs list, chosen;
    for (const Row& row : rows_) list.push_back(row.spec);
    for (const Row* row : Marked()) chosen.push_back(row->spec);
    return StoreLogList(at_, list) && StoreLogChoice(at_, chosen);
}

bool LogFilesScreen::Run() {
    dialogs::DialogModel model = Model();
    const std::unique_ptr<dialogs::DialogWindow> window = at_.desk.host.Open(model);
    for (;;) {
        Show(model);
        window->Update();
        const int button = window->Run();
        const std::vector<int> selected = model.controls[1].Selected();
        selected_ = selected.empty() ? -1 : selected.front();
        const bool left = button == model.ButtonCount();
        if (left || (button == 1 && Store())) {
            dialogs::KeepLook(at_.desk, model);
            return !left;
        }
        if (button > 1) (this->*kActs[static_cast<std::size_t>(button - 2)].run)();
    }
}

struct OptionRow {
    std::string_view caption;
    bool ReadOptions::*option;
};
constexpr std::array kOptions{
    OptionRow{"No prompt for in&valid log lines. - Ignore log lines that cannot be interpreted, skip files with no "
              "valid lines",
              &ReadOptions::NoPromptInvalid},
    OptionRow{"No prompt when log file has d&ates which overlap existing data. - Process file, check for duplicates",
              &ReadOptions::NoPromptOverlap},
    OptionRow{"Keep List of &404 filenames. [Keep all filenames for raw log lines with HTTP status 4xx or 5xx.]",
              &ReadOptions::Keep404List},
};

}  // namespace

bool EnterLogFiles(const AddDesk& at) { return LogFilesScreen(at).Run(); }

bool EnterReadOptions(const AddDesk& at) {
    dialogs::Controls controls;
    for (const OptionRow& row : kOptions) {
        const bool ticked = at.memory.options.*row.option;
        const int box = dialogs::MBAddCtl("CheckBox", core::fBoolWord(ticked), dialogs::MBSpec("12000"), controls);
        controls[box].caption = row.caption;
    }
    dialogs::Box box;
    box.message = "Options of reading log files. They hold until they are changed or Corvane ends.";
    box.buttons = "&OK|&Cancel";
    box.title = "- Read options";
    box.name = "ReadOptions";
    box.helpId = "AddLog";
    if (dialogs::ShowMB(at.desk, box, controls).Cancelled()) return false;
    for (std::size_t i = 0; i < kOptions.size(); ++i)
        at.memory.options.*kOptions[i].option = controls[static_cast<int>(i) + 1].Ticked();
    return true;
}

// A default format that fits none of a file's lines gives way to the one that does.
AddRequest ChosenRead(const AddDesk& at) {
    AddRequest request;
    request.format = DefaultFormat(at);
    request.files = ReadLogChoice(at);
    LogTrials trials(at);
    for (logdefs::LogFileSpec& spec : request.files)
        if (spec.format.empty() && !trials.Misfit(spec.file, request.format).empty())
            spec.format = trials.Best(spec.file, request.format);
    request.NoPromptInvalid = at.memory.options.NoPromptInvalid;
    request.NoPromptOverlap = at.memory.options.NoPromptOverlap;
    request.Keep404List = at.memory.options.Keep404List;
    return request;
}

std::string ChosenText(const AddDesk& at) {
    std::string text;
    for (const logdefs::LogFileSpec& spec : ReadLogChoice(at))
        text.append(text.empty() ? "" : "\r").append(logdefs::LogFileSpecJoin(spec));
    return text;
}

}  // namespace adddata
