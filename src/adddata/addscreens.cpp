#include "adddata/addscreens.h"

#include <array>

#include "adddata/addrun.h"
#include "adddata/checkscreens.h"
#include "adddata/filterform.h"
#include "adddata/logform.h"
#include "adddata/readscreens.h"
#include "adddata/recordscreens.h"
#include "adddata/robotscreens.h"
#include "core/env.h"
#include "core/inidraft.h"
#include "core/inistore.h"
#include "core/text.h"
#include "logdefs/enginescreens.h"
#include "logdefs/formatscreens.h"

namespace adddata {
namespace {

constexpr std::string_view kWhat = "Select File to add, Processing to be done, Filters to be used.";

class AddDialog {
public:
    explicit AddDialog(const AddDesk& at) : at_(at), paths_(PathLines(ReadLogChoice(at))) {}

    void Drop(const std::vector<std::string>& files);
    void Run();

private:
    // One showing of the dialog; the next one finds what commands changed meanwhile.
    struct Shown {
        explicit Shown(const AddDesk& at);
        LogForm logs;
        FilterForm filters;
        dialogs::Controls controls{};
        int newbots = 0, DoAdd = 0;
        int own = 0;  // buttons among the controls: one, those of the filters, three
        LogSpecs Specs() const { return logs.Specs(controls); }
    };
    struct Act {
        std::string_view caption;
        void (AddDialog::*run)(Shown& shown);
    };
    static const std::array<Act, 4> kOwn;
    static const std::array<Act, 5> kButtons;
    static constexpr int kDone = 2;  // of kButtons, from 1

    void Build(Shown& shown) const;
    int Show(Shown& shown);
    void Take(Shown& shown);
    void Press(Shown& shown, int button);

    void Start(Shown& shown);
    void Leave(Shown&) {}
    void Options(Shown&) { EnterReadOptions(at_); }
    void Summary(Shown&);
    void Problems(Shown&);
    void LogFiles(Shown&);
    void Formats(Shown&) { logdefs::LogFmtEdit(at_.Editing()); }
    void Engines(Shown&);
    void Finder(Shown&) { BotsFinderEdit(at_); }

    const AddDesk& at_;
    std::string paths_;   // as they were entered, one in each line
    std::string format_;  // "" is the one that fits best
    std::string status_{}, problem_{};
};

const std::array<AddDialog::Act, 4> AddDialog::kOwn{{
    {"Se&lect log file and specify format ...", &AddDialog::LogFiles},
    {"Lo&g formats ...", &AddDialog::Formats},
    {"&Search engine definitions ...", &AddDialog::Engines},
    {"Filter that finds ro&bots ...", &AddDialog::Finder},
}};

const std::array<AddDialog::Act, 5> AddDialog::kButtons{{
    {"Sta&rt. Read Log File", &AddDialog::Start},
    {"Don&e", &AddDialog::Leave},
    {"O&ptions", &AddDialog::Options},
    {"SE Summar&y", &AddDialog::Summary},
    {"List Proble&m Files for last read", &AddDialog::Problems},
}};

AddDialog::Shown::Shown(const AddDesk& at)
    : logs(at,
           [&at] {
               LogSpecs known = ReadLogChoice(at);
               for (logdefs::LogFileSpec& spec : ReadLogList(at)) known.push_back(std::move(spec));
               return known;
           }()),
      filters(at) {}

// Files that cannot be used are told; the others are the choice.
void AddDialog::Drop(const std::vector<std::string>& files) {
    LogSpecs good;
    std::string problems;
    for (const std::string& file : files) {
        const std::string problem = LogFileProblem(at_, file);
        if (problem.empty())
            good.push_back({file, {}});
        else
            problems.append(problems.empty() ? "" : "\r").append(problem);
    }
    problem_ = problems;
    if (!good.empty()) paths_ = PathLines(good);
}

void AddDialog::Build(Shown& shown) const {
    const std::string& lastVals = at_.site.Paths().lastVals;
    dialogs::Controls& controls = shown.controls;
    shown.logs.AddBox(paths_, controls);
    shown.logs.AddFormat(format_, controls);
    dialogs::MBAddCtl("CommandButton_", kOwn[0].caption, dialogs::MBSpec("3900"), controls);
    shown.logs.AddFound(controls);
    const auto addBox = [&](std::string_view type, std::string_view caption, std::string_view key) {
        const std::string_view ticked = core::fBoolWord(at_.env.ini.IniGetBool("Main", key, lastVals));
        const int number = dialogs::MBAddCtl(type, ticked, dialogs::MBSpec("6000"), controls);
        controls[number].caption = caption;
        return number;
    };
    shown.newbots = addBox("CheckBox", "Preprocessing - Chec&k for new robots", "newbots");
    shown.DoAdd = addBox("CheckBox_", "Main Processing - A&dd log lines to database.", "DoAdd");
    shown.filters.Add(controls);
    dialogs::MBAddCtl("CommandButton", kOwn[1].caption, dialogs::MBSpec("3000"), controls);
    dialogs::MBAddCtl("CommandButton_", kOwn[2].caption, dialogs::MBSpec("3900"), controls);
    dialogs::MBAddCtl("CommandButton_", kOwn[3].caption, dialogs::MBSpec("3900"), controls);
}

// Without a file the cursor stands in the box for them, else Enter starts.
int AddDialog::Show(Shown& shown) {
    dialogs::Box box;
    const std::string& name = at_.site.Options().name;
    box.message = (status_.empty() ? "" : status_ + "\r\r") + "Current Site DB: " + name + "\r" + std::string(kWhat);
    box.buttons.clear();
    for (const Act& act : kButtons) dialogs::MBAddBtn(act.caption, box.buttons);
    box.escNo = kDone;
    box.title = "Add Log Data to Database. Select File, Processing to do, Filters. Site DB: " + name;
    box.name = "AddRawLogs";
    box.helpId = "AddLog";
    box.live = [&shown](dialogs::Controls& controls) {
        shown.logs.Live(controls);
        shown.filters.Live(controls);
    };
    box.live(shown.controls);  // the window is as large as what it will show
    dialogs::DialogModel model = dialogs::BuildModel(at_.desk, box, std::move(shown.controls));
    if (!paths_.empty()) model.focusButton = model.defaultButton;
    model.problem = problem_;
    shown.own = model.OwnButtons();
    const int button = at_.desk.host.Open(model)->Run();
    dialogs::KeepLook(at_.desk, model);
    shown.controls = std::move(model.controls);
    return button;
}

// What was entered stays, whatever is pressed. Files that cannot be read are kept in the box alone.
void AddDialog::Take(Shown& shown) {
    const std::string& lastVals = at_.site.Paths().lastVals;
    core::IniStore& ini = at_.env.ini;
    core::IniDraft draft(ini, {lastVals});  // one write for all
    paths_ = shown.logs.Paths(shown.controls);
    format_ = shown.logs.Format(shown.controls);
    StoreSwitches(at_, shown.filters.Switches(shown.controls));
    ini.IniPutBool("Main", "newbots", shown.controls[shown.newbots].Ticked(), lastVals);
    ini.IniPutBool("Main", "DoAdd", shown.controls[shown.DoAdd].Ticked(), lastVals);
    const LogSpecs specs = shown.Specs();
    if (specs.empty()) StoreLogChoice(at_, {});
    if (shown.logs.FilesProblem(specs).empty()) {
        ChooseLogs(at_, specs);
        const std::string used = shown.logs.FormatOf({specs.front().file, {}}, format_);
        if (!used.empty()) ini.IniPut("Main", "LFmtDflt", used, lastVals);
    }
    if (draft.Save(true).saved != core::IniDraft::Saved::Done)
        dialogs::ShowMsg(at_.desk,
                         "What you chose holds for now alone; it cannot be stored in this file:\r" + lastVals);
}

void AddDialog::Start(Shown& shown) {
    const LogSpecs specs = shown.Specs();
    const AddSteps steps{shown.controls[shown.newbots].Ticked(), shown.controls[shown.DoAdd].Ticked()};
    problem_ = shown.logs.FilesProblem(specs);
    if (problem_.empty()) problem_ = shown.logs.FormatsProblem(specs, format_);
    if (problem_.empty() && !steps.preprocess && !steps.add)
        problem_ = "Tick what is to be done: preprocessing, main processing or both.";
    if (!problem_.empty()) return;
    AddRequest request;
    request.files = shown.logs.WithFormats(specs, format_);
    request.format = request.files.front().format;
    const logdefs::FilterSwitches switches = shown.filters.Switches(shown.controls);
    request.mainFilter = switches.main;
    request.skipRobots = switches.skipRobots;
    request.skipComponents = switches.skipComponents;
    request.NoPromptInvalid = at_.memory.options.NoPromptInvalid;
    request.NoPromptOverlap = at_.memory.options.NoPromptOverlap;
    status_ = RunAdd(at_, std::move(request), steps);
}

void AddDialog::Summary(Shown&) {
    const LastAdd& last = at_.memory.lastAdd;
    if (last.any)
        SEsummaryShow(at_.desk, last.engines);
    else
        status_ = "Nothing was added yet. List raw log data added (File menu) has the summaries of earlier adds.";
}

void AddDialog::Problems(Shown&) {
    const LastAdd& last = at_.memory.lastAdd;
    if (last.any)
        ProblemFilesShow(at_.desk, last.problems);
    else
        status_ = "Nothing was read yet. List raw log data added (File menu) has the problems of earlier adds.";
}

void AddDialog::LogFiles(Shown&) {
    if (!EnterLogFiles(at_)) return;
    paths_ = PathLines(ReadLogChoice(at_));
    format_.clear();
}

void AddDialog::Engines(Shown&) {
    logdefs::SEDefsEdit(at_.Editing(), [this] { CheckReferrersOnScreen(at_, OpenedFrom::Editor); });
}

void AddDialog::Press(Shown& shown, int button) {
    if (button > shown.own)
        (this->*kButtons[static_cast<std::size_t>(button - shown.own - 1)].run)(shown);
    else if (button == 1)
        LogFiles(shown);
    else if (!shown.filters.Edit(button))
        (this->*kOwn[static_cast<std::size_t>(button - shown.own + 3)].run)(shown);
}

void AddDialog::Run() {
    for (;;) {
        Shown shown(at_);
        Build(shown);
        const int button = Show(shown);
        status_.clear();
        problem_.clear();
        Take(shown);
        if (button == shown.own + kDone) return;
        Press(shown, button);
    }
}

}  // namespace

void AddLogDataOnScreen(const AddDesk& at, const std::vector<std::string>& files) {
    if (at.site.ReadOnly()) {
        dialogs::ShowMsg(at.desk,
                         "Nothing can be added: the site's folder cannot be written.\r\r" + at.site.Paths().folder);
        return;
    }
    AddDialog dialog(at);
    dialog.Drop(files);
    dialog.Run();
}

}  // namespace adddata
