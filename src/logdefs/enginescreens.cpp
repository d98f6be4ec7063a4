#include "logdefs/enginescreens.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>

#include "core/inidraft.h"
#include "core/inistore.h"
#include "dialogs/draftsave.h"
#include "dialogs/gridops.h"
#include "logdefs/engineedit.h"
#include "logdefs/enginesequence.h"

namespace logdefs {
namespace {

constexpr std::string_view kMessage =
    "Enter definitions for Search Engine referrer strings.\rThe left column contains URL spec.\rThe right column "
    "contains values a,b,c \rwhere search term will be included in referrer as a=yyyy& or b=yyyy&, etc.\rA definition "
    "without values is an engine that sends no search terms, such as an AI assistant.\rPress F1 for more info / help.";
constexpr std::string_view kGridSpec = "12000|5000|||||True|||1||{6500|5000}";
constexpr int kGrid = 1;  // number of the control
constexpr std::string_view kNoneSelected = "Select a definition first.";

class Editor {
public:
    Editor(const Editing& editing, const LeadOut& check) : editing_(editing), check_(check) {}

    bool Run();

private:
    struct Act {
        std::string_view caption;
        void (Editor::*run)();
    };
    static const std::array<Act, 6> kActs;

    dialogs::DialogModel Model();
    void Show(dialogs::Control& grid) const;
    void TakeSelection(const dialogs::DialogModel& model);
    std::optional<std::size_t> Selected();
    void Keep(std::vector<std::string> definitions);
    void KeepEdited(std::optional<std::size_t> at, const SEDef& start);
    bool MayStore();

    void Edit();
    void Add() { KeepEdited(std::nullopt, {}); }
    void Copy();
    void Remove();
    void Sequence();
    void Check();

    const Editing& editing_;
    const LeadOut& check_;
    core::IniDraft draft_{editing_.desk.ini, {editing_.engines.own}};
    std::vector<std::string> definitions_ = SEDefsList(editing_.desk.ini, editing_.engines);
    std::optional<TrialReferrers> trial_{};  // read when it is needed
    std::vector<const Act*> acts_{};         // in the order of the buttons behind OK
    std::optional<std::size_t> selected_{};
};

const std::array<Editor::Act, 6> Editor::kActs{{
    {"Edi&t SE Def", &Editor::Edit},
    {"Add Ne&w SE Def", &Editor::Add},
    {"Cop&y SE Def", &Editor::Copy},
    {"R&emove SE Def", &Editor::Remove},
    {"Change Se&quence", &Editor::Sequence},
    {"Chec&k vs. log file", &Editor::Check},
}};

dialogs::DialogModel Editor::Model() {
    dialogs::Controls controls;
    dialogs::MBAddCtl("Grid", "-1", dialogs::MBSpec(kGridSpec), controls);
    controls[kGrid].caption = "Definitions";
    controls[kGrid].emptyText = "No definitions. Press \"Add New SE Def\" to add one.";
    Show(controls[kGrid]);
    dialogs::Box box;
    box.title = kSEDefsTitle;
    box.message = kMessage;
    box.name = "SEDefs";
    box.helpId = "SEDefs";
    box.options = dialogs::option::MaxBpl(4);
    box.buttons = "&OK";
    for (const Act& act : kActs) {
        if (act.run == &Editor::Check && !check_) continue;
        dialogs::MBAddBtn(act.caption, box.buttons);
        acts_.push_back(&act);
    }
    box.escNo = dialogs::MBAddBtn("&Cancel", box.buttons);
    box.defaultNo = 2;
    dialogs::DialogModel model = dialogs::BuildModel(editing_.desk, box, std::move(controls));
    model.options.stays = true;
    return model;
}

void Editor::Show(dialogs::Control& grid) const {
    grid.rows = {{"URL spec", "Values a,b,c"}};
    for (const std::string& text : definitions_) {
        const SEDef definition = SEDefSplit(text);
        grid.rows.push_back({dialogs::GridCellText(definition.url), dialogs::GridCellText(definition.places)});
    }
    grid.value = selected_ ? std::to_string(*selected_) : "-1";
}

void Editor::TakeSelection(const dialogs::DialogModel& model) {
    const std::vector<int> rows = model.controls[kGrid].Selected();
    selected_.reset();
    if (!rows.empty() && static_cast<std::size_t>(rows.front()) < definitions_.size())
        selected_ = static_cast<std::size_t>(rows.front());
}

// Nothing: it was told that a definition must be selected.
std::optional<std::size_t> Editor::Selected() {
    if (!selected_) dialogs::ShowMsg(editing_.desk, kNoneSelected, kSEDefsTitle);
    return selected_;
}

// The draft has what the screen shows, so that a check of the definitions works with them.
void Editor::Keep(std::vector<std::string> definitions) {
    if (definitions == definitions_) return;
    definitions_ = std::move(definitions);
    SEDefsWrite(editing_.desk.ini, editing_.engines, definitions_);
}

void Editor::KeepEdited(std::optional<std::size_t> at, const SEDef& start) {
    if (!trial_) trial_ = ReadTrialReferrers(editing_);
    const std::optional<SEDef> edited =
        SEDefEditOne(editing_.desk, *trial_, {.list = definitions_, .at = at, .start = start});
    if (!edited || (at && *edited == start)) return;
    Keep(SEDefsWith(definitions_, at, *edited));
    const auto place = std::ranges::find(definitions_, edited->Text());
    selected_ = static_cast<std::size_t>(place - definitions_.begin());
}

void Editor::Edit() {
    if (const auto at = Selected()) KeepEdited(at, SEDefSplit(definitions_[*at]));
}

void Editor::Copy() {
    if (const auto at = Selected()) KeepEdited(std::nullopt, SEDefSplit(definitions_[*at]));
}

void Editor::Remove() {
    const auto at = Selected();
    if (!at) return;
    std::vector<std::string> kept = definitions_;
    kept.erase(kept.begin() + static_cast<std::ptrdiff_t>(*at));
    Keep(std::move(kept));
    if (*at >= definitions_.size()) selected_ = definitions_.empty() ? std::nullopt : std::optional(*at - 1);
}

void Editor::Sequence() {
    std::vector<std::string> definitions = definitions_;
    if (!SEDefsSequence(editing_.desk, definitions)) return;
    Keep(std::move(definitions));
    selected_.reset();
}

void Editor::Check() {
    check_();
    definitions_ = SEDefsList(editing_.desk.ini, editing_.engines);
    selected_.reset();
}

// An empty list is none, and the delivered one would come back.
bool Editor::MayStore() {
    if (!definitions_.empty()) return true;
    dialogs::ShowMsg(editing_.desk, "The list is empty, which would bring the delivered one back. Keep at least one.",
                     kSEDefsTitle);
    return false;
}

bool Editor::Run() {
    dialogs::DialogModel model = Model();
    const std::unique_ptr<dialogs::DialogWindow> window = editing_.desk.host.Open(model);
    for (;;) {
        const int button = window->Run();
        TakeSelection(model);
        const bool ok = button == 1, cancel = button == model.ButtonCount();
        if (!ok && !cancel) (this->*acts_[static_cast<std::size_t>(button - 2)]->run)();
        if ((ok && MayStore() && dialogs::SaveDraft(editing_.desk, draft_)) ||
            (cancel && dialogs::LeaveDraft(editing_.desk, draft_))) {
            dialogs::KeepLook(editing_.desk, model);
            return ok;
        }
        Show(model.controls[kGrid]);
        window->Update();
    }
}

}  // namespace

bool SEDefsEdit(const Editing& editing, const LeadOut& check) {
    const std::string before = SEDefsRead(editing.desk.ini, editing.engines);
    return Editor(editing, check).Run() && SEDefsRead(editing.desk.ini, editing.engines) != before;
}

}  // namespace logdefs
