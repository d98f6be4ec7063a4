#include "adddata/filterform.h"

#include <algorithm>

#include "adddata/checkscreens.h"
#include "core/cds.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"

namespace adddata {
namespace {

using logdefs::FilterFamily;
using logdefs::MainFilter;

constexpr std::size_t kMostText = 95;  // bytes of a filter's statement: a line
constexpr std::string_view kRobotKey = "SkipRobotUserAgents";

struct MainRow {
    MainFilter main;
    std::string_view caption;
};
constexpr std::array kMainRows{
    MainRow{MainFilter::All, "Add &all lines"},
    MainRow{MainFilter::Only, "Add &only lines of the filter"},
    MainRow{MainFilter::Except, "Add all lines e&xcept those of the filter"},
};

std::string Line(const std::string& text) {
    return text.size() <= kMostText ? text : std::string(core::CutUtf8(text, kMostText)) + " ...";
}

}  // namespace

FilterForm::FilterForm(const AddDesk& at) : at_(at), files_(FilterFilesOf(at.program, at.site.Paths())) {}

int FilterForm::AddButton(std::string_view caption, dialogs::Controls& controls) {
    dialogs::MBAddCtl("CommandButton_", caption, dialogs::MBSpec("3000"), controls);
    const auto isButton = [](const dialogs::Control& control) {
        return control.Is(dialogs::ControlType::CommandButton);
    };
    return static_cast<int>(std::ranges::count_if(controls.All(), isButton));
}

int FilterForm::AddText(std::string_view type, std::string_view caption, dialogs::Controls& controls) {
    const int text = dialogs::MBAddCtl(type, "", dialogs::MBSpec(type.ends_with('_') ? "5500" : "12000"), controls);
    controls[text].caption = caption;
    return text;
}

void FilterForm::Add(dialogs::Controls& controls) {
    const logdefs::FilterSwitches on = logdefs::FltrReadSwitches(at_.env.ini, files_);
    for (const MainRow& row : kMainRows) {
        const int number = dialogs::MBAddCtl(row.main == MainFilter::All ? "OptionButton" : "OptionButton_",
                                             core::fBoolWord(on.main == row.main), dialogs::MBSpec("3000"), controls);
        controls[number].caption = row.caption;
        if (row.main == MainFilter::All) all_ = number;
    }
    const auto addBox = [&](std::string_view caption, bool ticked) {
        const int box = dialogs::MBAddCtl("CheckBox", core::fBoolWord(ticked), dialogs::MBSpec("6000"), controls);
        controls[box].caption = caption;
        return box;
    };
    families_[0].button = AddButton("Main &filter ...", controls);
    families_[0].text = AddText("Label", "What the main filter does", controls);
    robots_ = addBox("Excl&ude robots and crawlers", on.skipRobots);
    families_[1].button = AddButton("Robot f&ilters ...", controls);
    families_[1].text = AddText("Label_", "Robot filters", controls);
    components_ = addBox("Skip page compo&nents (images, styles, scripts)", on.skipComponents);
    families_[2].button = AddButton("Page &component filter ...", controls);
    families_[2].text = AddText("Label", "What the page component filter does", controls);
}

std::string FilterForm::MainText(MainFilter main) const {
    if (main == MainFilter::All) return "All lines are added.";
    if (at_.env.ini.IniGet("Filters", "Fltr Sel", files_.main).empty())
        return "No main filter is selected yet: press Main filter to choose one.";
    return logdefs::FltrDescribe(at_.env.ini, files_, {.main = main});
}

std::string FilterForm::ComponentText() const {
    const std::string selected = at_.env.ini.IniGet("Filters", "Fltr Sel", files_.components);
    if (selected.empty()) return "No page component filter is selected yet: press Page component filter to choose one.";
    return "Skips: " + logdefs::FltrCndnText(at_.env.ini, selected, files_.components);
}

std::string FilterForm::RobotText() const {
    const long count = core::CDSCount(at_.env.ini.IniGet("Filters", kRobotKey, files_.robots));
    return core::CountText(static_cast<double>(count)) + " robot filters, the same for all sites.";
}

void FilterForm::Live(dialogs::Controls& controls) const {
    const logdefs::FilterSwitches on = Switches(controls);
    const auto show = [&](int number, const std::string& text) { controls[number].value = Line(text); };
    show(families_[0].text, MainText(on.main));
    show(families_[1].text, on.skipRobots ? RobotText() : "Lines of robots are added like those of visitors.");
    show(families_[2].text, on.skipComponents ? ComponentText() : "Lines of page components are added too.");
}

logdefs::FilterSwitches FilterForm::Switches(const dialogs::Controls& controls) const {
    logdefs::FilterSwitches switches;
    for (std::size_t i = 0; i < kMainRows.size(); ++i)
        if (controls[all_ + static_cast<int>(i)].Ticked()) switches.main = kMainRows[i].main;
    switches.skipRobots = controls[robots_].Ticked();
    switches.skipComponents = controls[components_].Ticked();
    return switches;
}

bool FilterForm::Edit(int button) const {
    const auto family = std::ranges::find(families_, button, &Family::button);
    if (family == families_.end()) return false;
    logdefs::LeadOut check;
    if (family->family == FilterFamily::Robots) check = [this] { CheckRobotsOnScreen(at_, OpenedFrom::Editor); };
    if (family->family == FilterFamily::Components) check = [this] { CheckPagesOnScreen(at_, OpenedFrom::Editor); };
    logdefs::FltrSelectMain(at_.Editing(), family->family, check);
    return true;
}

void StoreSwitches(const AddDesk& at, const logdefs::FilterSwitches& switches) {
    const std::string& file = at.site.Paths().lastVals;
    core::IniStore& ini = at.env.ini;
    ini.IniPutBool("Main", "All", switches.main == MainFilter::All, file);
    if (switches.main != MainFilter::All) ini.IniPutBool("Main", "Filter", switches.main == MainFilter::Only, file);
    ini.IniPutBool("Main", "nobots", switches.skipRobots, file);
    ini.IniPutBool("Main", "nocomp", switches.skipComponents, file);
}

}  // namespace adddata
