#include "logdefs/formatscreens.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <utility>

#include "core/inidraft.h"
#include "core/inistore.h"
#include "core/ports.h"
#include "core/text.h"
#include "dialogs/draftsave.h"
#include "dialogs/editlist.h"
#include "dialogs/gridops.h"
#include "logdefs/formatfinder.h"
#include "logdefs/formatlines.h"
#include "logdefs/formatstore.h"

namespace logdefs {
namespace {

constexpr std::string_view kTitle = "Format of Log file";
constexpr std::string_view kNoneSelected = "Select a LogFormat in the list first.";
constexpr std::size_t kMostInCell = 600;  // bytes
constexpr int kFixedRowsPosition = 10;

std::vector<std::string> SpecsOf(const Editing& editing, const std::string& name) {
    std::vector<std::string> specs = LogFmtSpecs(editing.desk.ini, name, editing.formats).Items();
    std::erase_if(specs, [](const std::string& spec) { return spec.empty(); });
    return specs;
}

bool Stands(const Editing& editing, std::string_view name) {
    const std::vector<std::string> names = LogFmtNames(editing.desk.ini, editing.formats);
    return std::ranges::any_of(names,
                               [&](const auto& other) { return core::fEquals(other, name, core::Case::Ignore); });
}

std::optional<std::string> AskName(const Editing& editing) {
    return dialogs::AskLine(editing.desk, "Enter name for new LogFormat Definition", "", kTitle,
                            [&](const std::string& name) -> std::string {
                                if (Stands(editing, name)) return "\"" + name + "\" is in the list already.";
                                return LogFmtNameProblem(editing.desk.ini, name, editing.formats);
                            });
}

// Stores what is entered; where there is a draft it stays in memory.
bool EditLines(const Editing& editing, const std::string& name, std::vector<std::string> specs, std::string& log) {
    FormatLines lines(editing, name, std::move(specs), log);
    return lines.Run([&](const std::vector<std::string>& entered) {
        return LogFmtStore(editing.desk.ini, name, entered, editing.formats).value_or("");
    });
}

// The list of formats. What it does goes into a draft of the file; the list is read from it anew.
class FormatList {
public:
    explicit FormatList(const Editing& editing)
        : editing_(editing), draft_(editing.desk.ini, {editing.formats}), log_(editing.trial.file) {}
    bool Run();

private:
    struct Act {
        std::string_view caption;
        bool needsSelection;
        void (FormatList::*run)(dialogs::DialogModel& model, const std::string& name);
    };
    static const std::array<Act, 6> kActs;
    static constexpr int kOk = 1, kFirstAct = 2, kCancel = kFirstAct + static_cast<int>(kActs.size());

    dialogs::DialogModel Model();
    void Fill(dialogs::DialogModel& model);
    const FormatTrial& TrialOf(const std::string& name);
    std::string Selected(const dialogs::Controls& controls) const;
    void ShowFit(dialogs::Controls& controls);
    bool Leave(int button);
    void Do(int button, dialogs::DialogModel& model);
    void Changed(dialogs::DialogModel& model, const std::string& name);

    void Edit(dialogs::DialogModel& model, const std::string& name);
    void Copy(dialogs::DialogModel& model, const std::string& name);
    void New(dialogs::DialogModel& model, const std::string& name);
    void Remove(dialogs::DialogModel& model, const std::string& name);
    void Up(dialogs::DialogModel& model, const std::string&) { Move(model, dialogs::Direction::Up); }
    void Down(dialogs::DialogModel& model, const std::string&) { Move(model, dialogs::Direction::Down); }
    void Move(dialogs::DialogModel& model, dialogs::Direction direction);
    void AddNamed(dialogs::DialogModel& model, std::vector<std::string> specs);

    const Editing& editing_;
    core::IniDraft draft_;
    std::string log_;
    std::string readLog_{};  // the log of `sample_`
    LogSample sample_{};
    std::map<std::string, FormatTrial> trials_{};  // by name
    int grid_ = 0, fit_ = 0;
    bool changed_ = false;
};

const std::array<FormatList::Act, 6> FormatList::kActs{{
    {"Edi&t LogFormat", true, &FormatList::Edit},
    {"Cop&y LogFormat", true, &FormatList::Copy},
    {"&New LogFormat", false, &FormatList::New},
    {"R&emove LogFormat", true, &FormatList::Remove},
    {"Move &Up", true, &FormatList::Up},
    {"Move Do&wn", true, &FormatList::Down},
}};

const FormatTrial& FormatList::TrialOf(const std::string& name) {
    const auto [trial, isNew] = trials_.try_emplace(name);
    if (isNew)
        trial->second = TryFormat(sample_, name, LogFmtLoad(editing_.desk.ini, name, editing_.formats).format, 0,
                                  editing_.clock.Now());
    return trial->second;
}

// Reads the log again when another one was named in the dialog of the lines.
void FormatList::Fill(dialogs::DialogModel& model) {
    if (readLog_ != log_) {
        readLog_ = log_;
        trials_.clear();
        // A log that cannot be read shows nothing; its dialog tells why.
        if (!ReadLogSample(log_, kSampleLines, sample_)) sample_ = {};
    }
    const bool tried = !sample_.lines.empty();
    dialogs::Rows& rows = model.controls[grid_].rows;
    rows = {{"Name", "LogFormat Spec.", tried ? "Lines that fit" : ""}};
    for (const std::string& name : LogFmtNames(editing_.desk.ini, editing_.formats)) {
        std::string specs;
        for (const std::string& spec : SpecsOf(editing_, name)) specs.append(specs.empty() ? "" : " | ").append(spec);
        const std::string fit = tried ? std::to_string(TrialOf(name).fit) : std::string();
        rows.push_back({name, dialogs::GridCellText(specs, kMostInCell), fit});
    }
}

std::string FormatList::Selected(const dialogs::Controls& controls) const {
    const std::vector<int> selected = controls[grid_].Selected();
    if (selected.empty()) return {};
    return controls[grid_].rows[static_cast<std::size_t>(selected.front()) + 1][0];
}

void FormatList::ShowFit(dialogs::Controls& controls) {
    const std::string name = Selected(controls);
    std::string& text = controls[fit_].value;
    text.clear();
    if (name.empty() || sample_.lines.empty()) return;
    const FormatTrial& trial = TrialOf(name);
    text = core::fNameOf(sample_.file) + ": " + FinderText(trial);
    if (const std::string misfit = MisfitText(trial); !misfit.empty()) text += "\r" + misfit;
}

dialogs::DialogModel FormatList::Model() {
    dialogs::Box box;
    box.title = kTitle;
    box.name = "LogFormats";
    box.helpId = "LogFormat";
    box.message =
        "Use Edit, Copy, New, Remove to change or add LogFormat.\rWhere several formats fit a log equally "
        "well, the first in this list is offered. Nothing is stored before OK.";
    box.buttons.clear();
    dialogs::MBAddBtn("&OK", box.buttons);
    for (const Act& act : kActs) dialogs::MBAddBtn(act.caption, box.buttons);
    dialogs::MBAddBtn("&Cancel", box.buttons);
    box.options = dialogs::option::MaxBpl(4);
    box.defaultNo = kFirstAct;
    box.live = [this](dialogs::Controls& controls) { ShowFit(controls); };
    dialogs::Controls controls;
    grid_ = dialogs::MBAddCtl("Grid", "-1", dialogs::MBSpec("12000|4000|||||True||"), controls, {{"Name", "", ""}});
    controls[grid_].spec.Set(kFixedRowsPosition, "1");
    controls[grid_].caption = "LogFormats";
    controls[grid_].emptyText = "No LogFormat yet. Press New LogFormat to add one.";
    fit_ = dialogs::MBAddCtl("Label", "", dialogs::MBSpec("12000"), controls);
    controls[fit_].caption = "What fits";
    dialogs::DialogModel model = dialogs::BuildModel(editing_.desk, box, std::move(controls));
    model.options.stays = true;
    Changed(model, editing_.trial.format);
    return model;
}

// The list as the draft has it now, with this format selected.
void FormatList::Changed(dialogs::DialogModel& model, const std::string& name) {
    trials_.erase(name);
    Fill(model);
    const dialogs::Rows& rows = model.controls[grid_].rows;
    const auto row = std::find_if(rows.begin() + 1, rows.end(),
                                  [&](const auto& cells) { return core::fEquals(cells[0], name, core::Case::Ignore); });
    if (row != rows.end()) model.controls[grid_].Select({static_cast<int>(row - rows.begin()) - 1});
    ShowFit(model.controls);
}

void FormatList::Edit(dialogs::DialogModel& model, const std::string& name) {
    EditLines(editing_, name, SpecsOf(editing_, name), log_);
    Changed(model, name);
}

void FormatList::AddNamed(dialogs::DialogModel& model, std::vector<std::string> specs) {
    const std::optional<std::string> name = AskName(editing_);
    if (!name) return;
    EditLines(editing_, *name, std::move(specs), log_);
    Changed(model, *name);
}

void FormatList::Copy(dialogs::DialogModel& model, const std::string& name) {
    AddNamed(model, SpecsOf(editing_, name));
}

void FormatList::New(dialogs::DialogModel& model, const std::string&) { AddNamed(model, {}); }

void FormatList::Remove(dialogs::DialogModel& model, const std::string& name) {
    if (core::fEquals(name, editing_.trial.format, core::Case::Ignore)) {
        dialogs::Box box;
        box.message = "The logs of this site are read by the LogFormat \"" + name +
                      "\". Without it nothing can be added until another one is chosen for them.\r\rRemove it all the "
                      "same?";
        box.buttons = "&Remove|&Cancel";
        box.options = std::to_string(static_cast<int>(dialogs::Icon::Exclamation));
        box.title = kTitle;
        box.defaultNo = 2;
        if (dialogs::ShowMB(editing_.desk, box).Cancelled()) return;
    }
    const std::vector<int> selected = model.controls[grid_].Selected();
    if (const auto wrong = LogFmtErase(editing_.desk.ini, name, editing_.formats)) model.problem = *wrong;
    Changed(model, name);
    const int left = static_cast<int>(model.controls[grid_].rows.size()) - 2;
    model.controls[grid_].Select({std::min(selected.front(), left)});
    ShowFit(model.controls);
}

void FormatList::Move(dialogs::DialogModel& model, dialogs::Direction direction) {
    std::vector<std::string> names = LogFmtNames(editing_.desk.ini, editing_.formats);
    std::vector<int> selected = model.controls[grid_].Selected();
    dialogs::MoveSelected(names, selected, direction);
    if (const auto wrong = LogFmtSequence(editing_.desk.ini, names, editing_.formats)) model.problem = *wrong;
    Fill(model);
    model.controls[grid_].Select(selected);
    ShowFit(model.controls);
}

void FormatList::Do(int button, dialogs::DialogModel& model) {
    const Act& act = kActs[static_cast<std::size_t>(button - kFirstAct)];
    const std::string name = Selected(model.controls);
    if (act.needsSelection && name.empty()) {
        model.problem = kNoneSelected;
        return;
    }
    (this->*act.run)(model, name);
}

// True when the list is done with.
bool FormatList::Leave(int button) {
    if (button == kCancel) return dialogs::LeaveDraft(editing_.desk, draft_);
    changed_ = draft_.Changed();
    return dialogs::SaveDraft(editing_.desk, draft_);
}

bool FormatList::Run() {
    dialogs::DialogModel model = Model();
    const std::unique_ptr<dialogs::DialogWindow> window = editing_.desk.host.Open(model);
    for (;;) {
        const int button = window->Run();
        model.problem.clear();
        if (button != kOk && button != kCancel) {
            Do(button, model);
        } else if (Leave(button)) {
            dialogs::KeepLook(editing_.desk, model);
            return button == kOk && changed_;
        }
        window->Update();
    }
}

}  // namespace

bool LogFmtEdit(const Editing& editing) { return FormatList(editing).Run(); }

std::optional<std::string> LogFmtEditOne(const Editing& editing, const std::string& given) {
    const std::optional<std::string> name = given.empty() ? AskName(editing) : given;
    if (!name) return std::nullopt;
    core::IniDraft draft(editing.desk.ini, {editing.formats});
    std::string log = editing.trial.file;
    do {
        if (!EditLines(editing, *name, SpecsOf(editing, *name), log)) return std::nullopt;
    } while (!dialogs::SaveDraft(editing.desk, draft));
    // Somebody may have kept the file as another program left it.
    if (!LogFmtLoad(editing.desk.ini, *name, editing.formats).found) return std::nullopt;
    return name;
}

}  // namespace logdefs
