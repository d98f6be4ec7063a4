#include "dialogs/checks.h"

#include <array>

#include "core/cds.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"
#include "core/utf8.h"

namespace dialogs {
namespace {

std::string CheckNumeric(std::string_view, std::string_view value) {
    return core::IsNumeric(value) ? std::string() : "Must be Numeric";
}

std::string CheckPositive(std::string_view, std::string_view value) {
    return core::IsNumeric(value) && core::fNum(value) > 0 ? std::string() : "Must be Positive";
}

std::string CheckLess(std::string_view limit, std::string_view value) {
    if (value.empty() || (core::IsNumeric(value) && core::fNum(value) < core::fNum(limit))) return {};
    return "Must be Less Than " + std::string(limit);
}

std::string CheckCharacters(std::string_view characters, std::string_view value) {
    if (characters.starts_with('|')) characters.remove_prefix(1);
    for (std::size_t at = 0; at < characters.size();) {
        const std::size_t length = core::LetterAt(characters, at).length;
        if (value.find(characters.substr(at, length)) != std::string_view::npos)
            return ">>" + std::string(characters) + "<< characters not allowed.";
        at += length;
    }
    return {};
}

// A person types native names, so that no drive needs to be known.
template <auto Check>
std::string CheckPath(std::string_view, std::string_view value) {
    if (value.empty()) return {};
    const core::Paths native("", "");
    return Check(value, native, core::NameRules{}).error;
}

using CheckRule = std::string (*)(std::string_view rest, std::string_view value);
struct RuleRow {
    std::string_view code;
    bool alone;  // nothing stands behind the code, or "|"
    CheckRule check;
};
// A longer code before the one that it begins with.
constexpr std::array kRules{
    RuleRow{"N", true, CheckNumeric},
    RuleRow{"+", true, CheckPositive},
    RuleRow{"<", false, CheckLess},
    RuleRow{"s-instr", false, CheckCharacters},
    RuleRow{"Sv", true, CheckCharacters},
    RuleRow{"S", false, CheckCharacters},
    RuleRow{"PDe", true, CheckPath<core::CheckDirExists>},
    RuleRow{"PD", true, CheckPath<core::CheckDir>},
    RuleRow{"P", true, CheckPath<core::CheckPAFN>},
};

std::string CheckRuleOf(std::string_view rule, std::string_view value) {
    for (const RuleRow& row : kRules) {
        if (!rule.starts_with(row.code)) continue;
        const std::string_view rest = rule.substr(row.code.size());
        if (!row.alone || rest.empty() || rest.front() == '|') return row.check(rest, value);
    }
    return {};
}

}  // namespace

std::string CheckEntry(std::string_view rules, std::string_view value) {
    const core::StrArray list = core::CDSSplit(rules, core::kBraceForm);
    for (const std::string& rule : list.Items()) {
        std::string problem = CheckRuleOf(core::fTrimLeft(rule), value);
        if (!problem.empty()) return problem;
    }
    return {};
}

}  // namespace dialogs
