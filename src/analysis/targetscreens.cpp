#include "analysis/targetscreens.h"

#include <algorithm>
#include <array>

#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/editlist.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

constexpr std::string_view kMain = "Main";
constexpr std::string_view kTitle = "Enter Target Specification.";
constexpr std::string_view kSelectType = "Select type of target and ";
constexpr std::size_t kLines = 4;  // pages of a target

struct KindButton {
    int kind;
    std::string_view caption;
};
constexpr std::array kKindButtons{
    KindButton{kAny, "An&y of these pages was requested"},
    KindButton{kAll, "A&ll of these pages were requested (as kept: it is never met)"},
    KindButton{kSize, "At least so many &bytes of the first page were sent:"},
};

logdefs::FltrRule RuleOf(std::string text, bool matchCase, bool equal) {
    if (!matchCase) text = core::LowerUtf8(text);
    return {equal ? logdefs::kEquals : logdefs::kContains, std::move(text), matchCase};
}

// What one page with a part of its name can say.
bool IsSimple(const Target& target) {
    const auto filled = [](const logdefs::FltrRule& rule) { return !rule.Val.empty(); };
    if (target.kind != kAny || std::ranges::count_if(target.filters, filled) > 1) return false;
    return std::ranges::all_of(target.filters, [&](const logdefs::FltrRule& rule) {
        return !filled(rule) || (rule.Typ == logdefs::kContains && !rule.MC);
    });
}

int AddText(std::string_view caption, const std::string& value, int width, dialogs::Controls& controls) {
    dialogs::MBAddCtl("Label", std::string(caption) + ":", dialogs::MBSpec("3200"), controls);
    const int number = dialogs::MBAddCtl("TextBox_", value, dialogs::MBSpec(std::to_string(width)), controls);
    controls[number].caption = core::fReplace(core::fReplace(caption, "#H160#", ""), "&", "");
    return number;
}

// The two forms of a target. What was entered goes along when the person changes from one to the other.
class TargetForms {
public:
    TargetForms(const dialogs::Desk& desk, Target target, const std::vector<Target>& others)
        : desk_(desk), target_(std::move(target)), others_(others) {}

    std::optional<Target> Run() {
        bool simple = IsSimple(target_);
        for (;;) {
            const Way way = simple ? Simple() : DefTgt();
            if (way == Way::Cancel) return std::nullopt;
            if (way == Way::Ok) return target_;
            simple = !simple;
        }
    }

private:
    enum class Way { Ok, Other, Cancel };

    Way Simple();
    Way DefTgt();
    Way Show(dialogs::Controls& controls, const std::string& message, std::string_view other,
             const std::function<Target(const dialogs::Controls&)>& entered);

    const dialogs::Desk& desk_;
    Target target_;
    const std::vector<Target>& others_;
};

TargetForms::Way TargetForms::Show(dialogs::Controls& controls, const std::string& message, std::string_view other,
                                   const std::function<Target(const dialogs::Controls&)>& entered) {
    constexpr int kOk = 1, kOther = 2, kCancel = 3;
    dialogs::Box box;
    box.message = message;
    box.buttons = "&OK|" + std::string(other) + "|&Cancel";
    box.escNo = kCancel;
    box.title = kTitle;
    box.name = "TargetForm";
    box.helpId = "ST";
    const dialogs::Pressed pressed =
        dialogs::ShowMBRepeat(desk_, box, controls, [&](dialogs::Controls& now, int button) {
            return button == kOk ? Tgt_Problem(entered(now), others_) : std::string();
        });
    if (pressed.Cancelled()) return Way::Cancel;
    target_ = entered(controls);
    return pressed.button == kOther ? Way::Other : Way::Ok;
}

TargetForms::Way TargetForms::Simple() {
    dialogs::Controls controls;
    const int name = AddText("#H160#Name of the target", target_.name, 6000, controls);
    const auto filled = std::ranges::find_if(target_.filters, [](const auto& rule) { return !rule.Val.empty(); });
    const int page =
        AddText("#H160#Page", filled == target_.filters.end() ? std::string() : filled->Val, 6000, controls);
    return Show(controls,
                std::string(kSelectType) +
                    "enter filename.\rEnter filename for page(s) required to achieve target.\rAny part of the path and "
                    "file name is sufficient. Any filename containing the name entered will be acepted as satisfying "
                    "the target. E.g. A target page of \"buynow\" will be satisfied for all pages: buynow.htm, "
                    "buynow.html, buynow1.htm, buynow/list1.htm, etc.",
                "Com&plex Target", [&](const dialogs::Controls& now) {
                    return Target{std::string(core::fTrim(now[name].value)),
                                  kAny,
                                  0,
                                  {RuleOf(std::string(core::fTrim(now[page].value)), false, false)}};
                });
}

TargetForms::Way TargetForms::DefTgt() {
    dialogs::Controls controls;
    const int name = AddText("#H160#Name of the target", target_.name, 6000, controls);
    struct Line {
        int text, matchCase, equal;
    };
    std::array<Line, kLines> lines{};
    for (std::size_t i = 0; i < kLines; ++i) {
        const logdefs::FltrRule rule = i < target_.filters.size() ? target_.filters[i] : logdefs::FltrRule{};
        const std::string which = "Page " + std::to_string(i + 1);
        lines[i].text = AddText(which, rule.Val, 4600, controls);
        const auto addBox = [&](std::string_view caption, bool ticked) {
            const int number =
                dialogs::MBAddCtl("CheckBox_", core::fBoolWord(ticked), dialogs::MBSpec("1600"), controls);
            controls[number].caption = caption;
            return number;
        };
        lines[i].matchCase = addBox("Match Case", rule.MC);
        lines[i].equal = addBox("Whole name", rule.Typ == logdefs::kEquals);
    }
    std::array<int, kKindButtons.size()> kinds{};
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const bool on = kKindButtons[i].kind == target_.kind || (target_.kind == kFirstOnly && i == 0);
        kinds[i] = dialogs::MBAddCtl("OptionButton", core::fBoolWord(on), dialogs::MBSpec("7000"), controls);
        controls[kinds[i]].caption = kKindButtons[i].caption;
    }
    const int bytes = dialogs::MBAddCtl("TextBox_", target_.bytes > 0 ? core::NumText(target_.bytes) : "",
                                        dialogs::MBSpec("1800"), controls);
    controls[bytes].caption = "Bytes";
    return Show(controls, std::string(kSelectType) + "enter the pages, or parts of their names.", "Sim&ple Target",
                [&](const dialogs::Controls& now) {
                    Target target{std::string(core::fTrim(now[name].value)), kAny, core::fNum(now[bytes].value), {}};
                    for (std::size_t i = 0; i < kinds.size(); ++i)
                        if (now[kinds[i]].Ticked()) target.kind = kKindButtons[i].kind;
                    for (const Line& line : lines)
                        if (const std::string_view text = core::fTrim(now[line.text].value); !text.empty())
                            target.filters.push_back(
                                RuleOf(std::string(text), now[line.matchCase].Ticked(), now[line.equal].Ticked()));
                    return target;
                });
}

class TargetList {
public:
    TargetList(const dialogs::Desk& desk, const sitedb::SitePaths& site)
        : desk_(desk), site_(site), targets_(Tgt_ReadList(desk.ini, site)) {}
    bool Run();

private:
    dialogs::ListRow RowOf(const Target& target) const { return {target.name, Tgt_Describe(target)}; }
    std::optional<dialogs::ListRow> Edited(const dialogs::ListRow& row, bool isNew);
    Target& Named(const std::string& name);
    bool Store(const dialogs::Rows& rows);

    const dialogs::Desk& desk_;
    const sitedb::SitePaths& site_;
    std::vector<Target> targets_;  // all that were ever in the list, by name
};

Target& TargetList::Named(const std::string& name) {
    const auto same = [&](const Target& target) { return target.name == name; };
    const auto found = std::ranges::find_if(targets_, same);
    return found != targets_.end() ? *found : targets_.emplace_back(Target{.name = name});
}

std::optional<dialogs::ListRow> TargetList::Edited(const dialogs::ListRow& row, bool isNew) {
    Target start = row.empty() || row[0].empty() ? Target{} : Named(row[0]);
    if (isNew && !start.name.empty()) start.name += " 2";
    const std::optional<Target> target = Tgt_Edit(desk_, start, {});
    if (!target) return std::nullopt;
    Named(target->name) = *target;
    return RowOf(*target);
}

bool TargetList::Store(const dialogs::Rows& rows) {
    std::vector<Target> targets;
    for (const dialogs::ListRow& row : rows) targets.push_back(Named(row[0]));
    const core::Result written = Tgt_WriteList(desk_.ini, site_, targets);
    if (!written) dialogs::ShowMsg(desk_, written.error);
    return static_cast<bool>(written);
}

bool TargetList::Run() {
    dialogs::ListScreen screen;
    screen.title = "- Targets to Analyse";
    screen.item = "target";
    screen.message =
        "Pages that a visit should reach. A report counts the first four targets of this list, when targets are "
        "analysed.";
    screen.name = "Targets";
    screen.helpId = "ST";
    screen.headers = {"Target", "Met by"};
    screen.gridSpec = "12000|3500||||||||1|0|{3000|9000}";
    screen.unique = true;
    screen.emptyText = "There is no target yet. Add one: a page that shows that a visit was worth while.";
    screen.edit = [this](const dialogs::ListRow& row) { return Edited(row, false); };
    screen.copy = [this](const dialogs::ListRow& row) { return Edited(row, true); };
    screen.add = [this](const dialogs::ListRow&) { return Edited({}, true); };
    dialogs::Rows rows;
    for (const Target& target : targets_) rows.push_back(RowOf(target));
    const dialogs::EditedRows edited = dialogs::EditGrid(desk_, screen, rows);
    return edited.ok && (!edited.changed || Store(edited.rows));
}

}  // namespace

std::optional<Target> Tgt_Edit(const dialogs::Desk& desk, const Target& target, const std::vector<Target>& others) {
    return TargetForms(desk, target, others).Run();
}

bool ShowTargets(const dialogs::Desk& desk, const sitedb::SitePaths& site) {
    if (!TargetList(desk, site).Run()) return false;
    core::IniStore& ini = desk.ini;
    dialogs::Box box;
    box.message = "Shall an analysis count who reached the targets?";
    box.buttons = "&Yes|&No|&Cancel";
    box.defaultNo = ini.IniGetBool(kMain, "AnalTgt", site.lastVals) ? 1 : 2;
    const dialogs::Pressed pressed = dialogs::ShowMB(desk, box);
    if (!pressed.Cancelled()) ini.IniPutBool(kMain, "AnalTgt", pressed.button == 1, site.lastVals);
    return true;
}

}  // namespace analysis
