#include "logdefs/rulescreen.h"

#include <algorithm>
#include <array>

#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/gridops.h"
#include "logdefs/rulebrowsers.h"

namespace logdefs {
namespace {

using dialogs::Controls;
using dialogs::MBAddCtl;
using dialogs::MBSpec;

constexpr std::string_view kNameRequired = "Name is required. Enter a description to be shown when rules are listed.";
constexpr std::size_t kLongestName = 120;  // bytes
constexpr std::size_t kShownValues = 50;
constexpr std::size_t kShownBytes = 300;

// Captions with their access letters, in the order of kOperators.
constexpr std::array<std::string_view, kOperators.size()> kCaptions{
    "&Starts with ...", "Con&tains ...", "E&quals ...", "Is &greater than ...", "Is &less than ...", "Is a n&umber"};

class Screen {
public:
    Screen(const RuleScreen& screen, RuleEntry start) : screen_(screen), start_(std::move(start)) { Build(); }

    std::optional<RuleEntry> Run();

private:
    void Build();
    int Add(std::string_view type, std::string_view value, std::string_view spec, std::string_view caption);
    void AddWhere();
    RuleEntry Entered(const Controls& controls) const;
    std::string Problem(const Controls& controls) const;
    std::string Warning(const StoredRule& stored) const;
    void ShowEffect(Controls& controls) const;
    dialogs::Rows ShownValues(const std::vector<const TrialLines::Value*>& values) const;

    const RuleScreen& screen_;
    const RuleEntry start_;
    Controls controls_{};
    std::vector<int> colTypes_{};  // of the rows of the list
    int name_ = 0, where_ = 0, value_ = 0, case_ = 0, effect_ = 0, warning_ = 0, taken_ = 0, left_ = 0;
    std::array<int, kOperators.size()> operators_{};
};

int Screen::Add(std::string_view type, std::string_view value, std::string_view spec, std::string_view caption) {
    const int number = MBAddCtl(type, value, MBSpec(spec), controls_);
    controls_[number].caption = caption;
    return number;
}

void Screen::AddWhere() {
    Add("Label", "#H160#Where [w]", "", "");
    where_ = Add("ListBox", "", "6000|1300", "Where");
    for (const ColTypeRow& row : kColTypes) {
        if (screen_.onlyColType.value_or(row.colType) != row.colType) continue;
        const bool renamed = screen_.onlyColType && !screen_.onlyLabel.empty();
        if (row.colType == start_.stored.colType || screen_.onlyColType)
            controls_[where_].value = std::to_string(colTypes_.size());
        controls_[where_].rows.push_back({renamed ? screen_.onlyLabel : std::string(row.label)});
        colTypes_.push_back(row.colType);
    }
}

void Screen::Build() {
    Add("Label", "#H160#Name on List [n]:", "3000", "");
    name_ = Add("TextBox_", start_.name, "6000", "Name on List");
    AddWhere();
    for (std::size_t i = 0; i < kOperators.size(); ++i) {
        const bool on = kOperators[i].type == start_.stored.rule.Typ;
        // Two operators in each line.
        operators_[i] = Add(i % 2 == 0 ? "OptionButton" : "OptionButton_", on ? "True" : "False", "", kCaptions[i]);
    }
    Add("Label", "#H160#Value [v]:", "3000", "");
    value_ = Add("TextBox_", start_.stored.rule.Val, "6000", "Value");
    controls_[value_].hint = "Text to compare with";
    case_ = Add("CheckBox", start_.stored.rule.MC ? "True" : "False", "", "&Match Case");
    warning_ = Add("Label", "", "", "Warning");
    effect_ = Add("Label", "", "", "Effect");
    Add("Label", "Satisfy the rule:", "4500", "");
    Add("Label_", "Do not:", "4500", "");
    taken_ = Add("ListBox", "", "4500|1500", "Values that satisfy the rule");
    left_ = Add("ListBox_", "", "4500|1500", "Values that do not");
    controls_[taken_].emptyText = "No value of the log satisfies the rule.";
    controls_[left_].emptyText = "All values of the log satisfy the rule.";
}

RuleEntry Screen::Entered(const Controls& controls) const {
    RuleEntry entry;
    entry.name = core::fTrim(controls[name_].value);
    // A section that was edited by hand can have a field or an operator of its own; it stays until another is chosen.
    entry.stored = start_.stored;
    const std::vector<int> where = controls[where_].Selected();
    if (!where.empty()) entry.stored.colType = colTypes_[static_cast<std::size_t>(where.front())];
    for (std::size_t i = 0; i < kOperators.size(); ++i)
        if (controls[operators_[i]].Ticked()) entry.stored.rule.Typ = kOperators[i].type;
    entry.stored.rule.MC = controls[case_].Ticked();
    entry.stored.rule.Val = entry.stored.rule.MC ? controls[value_].value : core::LowerUtf8(controls[value_].value);
    return entry;
}

std::string Screen::Problem(const Controls& controls) const {
    const RuleEntry entry = Entered(controls);
    if (entry.name.empty()) return std::string(kNameRequired);
    if (entry.name != start_.name)
        if (std::string problem = RuleNameProblem(entry.name); !problem.empty()) return problem;
    if (FieldOfColType(entry.stored.colType) == kNoField) return "Choose where the rule looks.";
    const auto isType = [&](const OperatorRow& row) { return row.type == entry.stored.rule.Typ; };
    if (std::ranges::none_of(kOperators, isType)) return "Choose how the value is compared.";
    const bool takesAll = entry.stored.rule.Typ == kStartsWith || entry.stored.rule.Typ == kContains;
    if (screen_.robots && takesAll && entry.stored.rule.Val.empty())
        return "A rule without a value would take every visitor for a robot.";
    return screen_.check ? screen_.check(entry) : std::string();
}

std::string Screen::Warning(const StoredRule& stored) const {
    std::string text;
    const auto line = [&](const std::string& more) { text.append(text.empty() ? "" : "\r").append(more); };
    const int type = stored.rule.Typ;
    if (type == kLess) line("\"Is less than ...\" can be stored and is never satisfied.");
    if (type == kGreater) line("\"Is greater than ...\" compares texts, numbers too: \"5\" is greater than \"404\".");
    if ((type == kStartsWith || type == kContains) && stored.rule.Val.empty())
        line("Without a value the rule is satisfied by every line.");
    if (!screen_.robots) return text;
    auto browser = screen_.trial.BrowserTaken(stored);
    if (!browser) browser = BrowserTaken(stored);
    if (browser)
        line("This rule takes visitors for robots, since browsers of people satisfy it, such as:\r" +
             dialogs::GridCellText(*browser, kShownBytes));
    return text;
}

dialogs::Rows Screen::ShownValues(const std::vector<const TrialLines::Value*>& values) const {
    dialogs::Rows rows;
    for (const TrialLines::Value* value : values) {
        if (rows.size() == kShownValues) break;
        const std::string text = value->text.empty() ? "(empty)" : dialogs::GridCellText(value->text, kShownBytes);
        rows.push_back({text + "  [" + std::to_string(value->lines) + "]"});
    }
    return rows;
}

void Screen::ShowEffect(Controls& controls) const {
    const StoredRule stored = Entered(controls).stored;
    const TrialLines::Effect effect = screen_.trial.Of(stored);
    controls[effect_].value = screen_.trial.Text(effect.satisfied);
    controls[warning_].value = Warning(stored);
    controls[taken_].rows = ShownValues(effect.taken);
    controls[left_].rows = ShownValues(effect.left);
    controls[value_].enabled = stored.rule.Typ != kIsNumber;
}

std::optional<RuleEntry> Screen::Run() {
    dialogs::Box box;
    box.title = "- Enter Rule";
    box.buttons = "1";
    box.name = "EnterRule";
    box.helpId = "EnterRule";
    box.live = [this](Controls& controls) { ShowEffect(controls); };
    const auto check = [this](Controls& entered, int) { return Problem(entered); };
    if (dialogs::ShowMBRepeat(screen_.desk, box, controls_, check).Cancelled()) return std::nullopt;
    return Entered(controls_);
}

}  // namespace

std::optional<RuleEntry> EnterRule(const RuleScreen& screen, RuleEntry start) {
    return Screen(screen, std::move(start)).Run();
}

std::string RuleNameProblem(std::string_view name) {
    if (name.empty()) return std::string(kNameRequired);
    if (name.size() > kLongestName) return "The name is too long.";
    const bool control =
        std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; });
    if (control || name.find_first_of("|[]\"") != std::string_view::npos)
        return "The following characters are not allowed in a name: | [ ] \"";
    for (const std::string_view taken : {"Main", "Filters", "TEMP.Edit"})
        if (core::fEquals(name, taken, core::Case::Ignore))
            return "\"" + std::string(name) + "\" has a meaning of its own. Choose another name.";
    for (const std::string_view start : {"AltNo.", "SplitEntry."})
        if (core::fStartsWith(name, start, core::Case::Ignore))
            return "Name cannot be prefixed with \"AltNo.\" or \"SplitEntry.\".";
    return {};
}

}  // namespace logdefs
