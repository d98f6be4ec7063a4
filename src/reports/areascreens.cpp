#include "reports/areascreens.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_set>

#include "analysis/areas.h"
#include "core/env.h"
#include "core/inidraft.h"
#include "core/text.h"
#include "dialogs/draftsave.h"
#include "dialogs/editlist.h"
#include "dialogs/options.h"
#include "dialogs/twolist.h"
#include "names/pagename.h"
#include "sitedb/site.h"

namespace reports {
namespace {

using analysis::SiteArea;

constexpr std::string_view kTitle = "- Site Areas";
constexpr std::string_view kSelectFirst = "Select an area in the list first.";
constexpr int kList = 2, kLimit = 3;  // controls

class AreaScreen {
public:
    AreaScreen(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site)
        : env_(env), desk_(desk), site_(site), paths_(site.Paths()) {}

    bool Run();

private:
    struct Act {
        std::string_view caption;
        bool ofArea;
        void (AreaScreen::*run)(const SiteArea& area);
    };
    static const std::array<Act, 5> kActs;

    dialogs::Controls MakeControls();
    void Fill(dialogs::Controls& controls) const;
    void KeepLimit(const std::string& limited, dialogs::Control& box);
    void Press(dialogs::DialogModel& model, const Act& act);
    bool Store(const dialogs::Controls& controls);

    void New(const SiteArea&);
    void Edit(const SiteArea& area);
    void Copy(const SiteArea& area);
    void Rename(const SiteArea& area);
    void Remove(const SiteArea& area);

    std::vector<SiteArea> Areas() const { return analysis::Area_List(env_.ini, paths_); }
    std::optional<std::string> AskName(const std::string& message, const std::string& otherwise) const;
    std::optional<std::vector<std::string>> AskPages(const SiteArea& area) const;
    void Put(const SiteArea& area) {
        if (analysis::Area_Put(env_.ini, paths_, area)) chosen_ = area.name;
    }

    core::Env& env_;
    const dialogs::Desk& desk_;
    sitedb::Site& site_;
    const sitedb::SitePaths& paths_;
    std::string chosen_{};  // whose line is selected
};

const std::array<AreaScreen::Act, 5> AreaScreen::kActs{{
    {"&New area", false, &AreaScreen::New},
    {"&Edit pages", true, &AreaScreen::Edit},
    {"Cop&y", true, &AreaScreen::Copy},
    {"Rena&me", true, &AreaScreen::Rename},
    {"&Remove", true, &AreaScreen::Remove},
}};

std::optional<std::string> AreaScreen::AskName(const std::string& message, const std::string& otherwise) const {
    const std::vector<SiteArea> areas = Areas();
    const auto check = [&](const std::string& text) {
        const std::string name(core::fTrim(text));
        std::string problem = analysis::Area_NameProblem(name);
        const bool taken = analysis::Area_Find(areas, name) && !core::fEquals(name, otherwise, core::Case::Ignore);
        return problem.empty() && taken ? "Name already exists. You must enter a unique name." : problem;
    };
    auto name = dialogs::AskLine(desk_, message, otherwise, kTitle, check);
    if (name) *name = core::fTrim(*name);
    return name;
}

// The pages of the site that are not in the area, and those of the area, whether the site has them or not. Names with
// "|" cannot stand in an area.
std::optional<std::vector<std::string>> AreaScreen::AskPages(const SiteArea& area) const {
    dialogs::ListSide left, right{.texts = area.pages};
    std::unordered_set<std::int32_t> chosen;
    for (const std::string& page : area.pages)
        chosen.insert(site_.Pages().Page_FindOrAdd(page, sitedb::Add::No, site_.Db()));
    for (std::int32_t id = 0; id <= site_.Pages().UpperBound(); ++id) {
        std::string name = "/" + std::string(site_.Pages().Page_Name(id));
        if (name.substr(1) == names::kNoPageName) continue;
        if (chosen.contains(id) || (id > 0 && name.size() == 1) || !analysis::Area_CanHold(name)) continue;
        left.texts.push_back(std::move(name));
    }
    std::ranges::sort(left.texts);
    dialogs::TwoListPlan plan;
    plan.title = "- Area of Site: " + area.name;
    plan.item = "Page name";
    plan.listName = "Page names";
    plan.message =
        "Page names to be analysed separately: a visit belongs to the area when it touched one of them. "
        "\"/\" is the root of the site.";
    plan.name = "SiteAreaMaint";
    plan.helpId = "SE";
    plan.emptyLeft = "The site has no other page. Names of pages that it does not have yet can be typed.";
    plan.emptyRight = "The area has no page yet.";
    plan.sequence = false;
    plan.mayEnd = [this](const dialogs::ListSide& pages, int) {
        const auto bad = std::ranges::find_if_not(pages.texts, analysis::Area_CanHold);
        if (bad == pages.texts.end()) return true;
        dialogs::ShowMsg(desk_, "\"" + *bad + "\" cannot stand in an area: the name of a page has no \"|\".", kTitle);
        return false;
    };
    dialogs::TwoListResult entered =
        dialogs::TwoListSelect(desk_, env_.progress, plan, std::move(left), std::move(right));
    if (!entered.ok) return std::nullopt;
    return std::move(entered.right.texts);
}

void AreaScreen::New(const SiteArea&) {
    const auto name = AskName("Enter name for new Area of Site", {});
    if (!name) return;
    if (auto pages = AskPages({*name, {}})) Put({*name, std::move(*pages)});
}

void AreaScreen::Edit(const SiteArea& area) {
    if (auto pages = AskPages(area)) Put({area.name, std::move(*pages)});
}

void AreaScreen::Copy(const SiteArea& area) {
    if (const auto name = AskName("Enter name for the copy of Area of Site: " + area.name, {}))
        Put({*name, area.pages});
}

void AreaScreen::Rename(const SiteArea& area) {
    const auto name = AskName("Enter new name for Area of Site: " + area.name, area.name);
    if (!name || *name == area.name) return;
    const auto limit = analysis::Area_Limit(env_.ini, paths_);
    if (!analysis::Area_Remove(env_.ini, paths_, area.name)) return;
    Put({*name, area.pages});
    // The limit goes along with the name.
    if (limit && core::fEquals(*limit, area.name, core::Case::Ignore)) analysis::Area_SetLimit(env_.ini, paths_, *name);
}

void AreaScreen::Remove(const SiteArea& area) {
    dialogs::Box box;
    box.message = "Remove Area of Site: " + area.name + "?";
    box.buttons = "&Remove|&Cancel";
    box.title = kTitle;
    if (!dialogs::ShowMB(desk_, box).Cancelled()) analysis::Area_Remove(env_.ini, paths_, area.name);
}

dialogs::Controls AreaScreen::MakeControls() {
    const std::optional<std::string> limit = analysis::Area_Limit(env_.ini, paths_);
    if (limit) chosen_ = *limit;
    dialogs::Controls controls;
    dialogs::MBAddCtl("Label", "Area of Site to be analysed separately:", dialogs::MBSpec("9000"), controls);
    dialogs::MBAddCtl("ListBox", "-1", dialogs::MBSpec("11400|3600|||||True|1"), controls);
    controls[kList].caption = "Areas of Site to be analysed separately";
    controls[kList].emptyText = "There is no area yet. An area is a list of pages that belong together.";
    dialogs::MBAddCtl("CheckBox", core::fBoolWord(limit.has_value()), dialogs::MBSpec("9000"), controls);
    controls[kLimit].caption = "&Analyse only the selected site area";
    Fill(controls);
    return controls;
}

// The list as it stands, with the line that was last worked on selected.
void AreaScreen::Fill(dialogs::Controls& controls) const {
    const std::vector<SiteArea> areas = Areas();
    dialogs::Rows rows;
    for (const SiteArea& area : areas)
        rows.push_back({area.name, std::to_string(area.pages.size()) + (area.pages.size() == 1 ? " page" : " pages")});
    controls[kList].rows = std::move(rows);
    const int otherwise = areas.empty() ? -1 : 0;
    const auto at = analysis::Area_Find(areas, chosen_);
    controls[kList].Select({at ? static_cast<int>(*at) : otherwise});
    if (areas.empty()) controls[kLimit].value = core::fBoolWord(false);
    controls[kLimit].enabled = !areas.empty();
}

// The limit stays with its area: a new one or a copy does not take it over, and with a removed one it goes.
void AreaScreen::KeepLimit(const std::string& limited, dialogs::Control& box) {
    const std::vector<SiteArea> areas = Areas();
    if (analysis::Area_Find(areas, limited))
        chosen_ = limited;
    else if (!analysis::Area_Find(areas, chosen_))
        box.value = core::fBoolWord(false);
}

void AreaScreen::Press(dialogs::DialogModel& model, const Act& act) {
    const std::vector<SiteArea> areas = Areas();
    const std::vector<int> selected = model.controls[kList].Selected();
    model.problem.clear();
    if (act.ofArea && selected.empty()) {
        model.problem = kSelectFirst;
        return;
    }
    const SiteArea area = selected.empty() ? SiteArea() : areas[static_cast<std::size_t>(selected.front())];
    chosen_ = area.name;
    (this->*act.run)(area);
    if (model.controls[kLimit].Ticked() && !area.name.empty()) KeepLimit(area.name, model.controls[kLimit]);
    Fill(model.controls);
}

bool AreaScreen::Store(const dialogs::Controls& controls) {
    const std::vector<SiteArea> areas = Areas();
    const std::vector<int> selected = controls[kList].Selected();
    std::optional<std::string> limit;
    if (controls[kLimit].Ticked() && !areas.empty()) {
        if (selected.empty()) {
            dialogs::ShowMsg(desk_, kSelectFirst, kTitle);
            return false;
        }
        limit = areas[static_cast<std::size_t>(selected.front())].name;
    }
    return limit == analysis::Area_Limit(env_.ini, paths_) || analysis::Area_SetLimit(env_.ini, paths_, limit);
}

bool AreaScreen::Run() {
    core::IniDraft draft(env_.ini, {paths_.siteAreas, paths_.lastVals});
    dialogs::Controls controls = MakeControls();
    dialogs::Box box;
    box.message = "Reports can be limited to the visits that touched one area of the site.";
    box.buttons.clear();
    for (const Act& act : kActs) dialogs::MBAddBtn(act.caption, box.buttons);
    box.defaultNo = dialogs::MBAddBtn("&OK", box.buttons);
    box.escNo = dialogs::MBAddBtn("&Cancel", box.buttons);
    box.options = dialogs::option::NoHide("1|2|3|4|5", false, false);
    box.title = kTitle;
    box.name = "SiteAreas";
    box.helpId = "SE";
    for (;;) {
        const dialogs::Pressed pressed =
            dialogs::ShowMBStay(desk_, box, controls, [&](dialogs::DialogModel& model, int button) {
                if (button > 0) Press(model, kActs[static_cast<std::size_t>(button - 1)]);
            });
        if (!pressed.Cancelled() && Store(controls) && dialogs::SaveDraft(desk_, draft)) return true;
        if (pressed.Cancelled() && dialogs::LeaveDraft(desk_, draft)) return false;
    }
}

}  // namespace

bool ShowSiteAreas(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site) {
    return AreaScreen(env, desk, site).Run();
}

}  // namespace reports
