#include "dialogs/checks.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "core/cds.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"
#include "core/utf8.h"

namespace dialogs {
namespace {

std::string PlainNumber(std::string_view text) {
    std::string plain(text);
    std::erase_if(plain, [](char c) { return c == ',' || c == '$' || c == ' '; });
    return plain;
}

double NumberOf(std::string_view text) { return core::fNum(PlainNumber(text)); }

std::string CheckNumeric(std::string_view, std::string_view value) {
    return core::IsNumeric(value) ? std::string() : "Must be Numeric";
}

std::string CheckPositive(std::string_view, std::string_view value) {
    return core::IsNumeric(value) && NumberOf(value) > 0 ? std::string() : "Must be Positive";
}

std::string CheckLess(std::string_view limit, std::string_view value) {
    if (value.empty() || (core::IsNumeric(value) && NumberOf(value) < NumberOf(limit))) return {};
    return "Must be Less Than " + std::string(limit);
}

std::unordered_set<std::string_view> LettersOf(std::string_view text) {
    std::unordered_set<std::string_view> letters;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = core::LetterAt(text, at).length;
        letters.insert(text.substr(at, length));
        at += length;
    }
    return letters;
}

std::string CheckCharacters(std::string_view characters, std::string_view value) {
    if (characters.starts_with('|')) characters.remove_prefix(1);
    const std::unordered_set<std::string_view> refused = LettersOf(characters), entered = LettersOf(value);
    const bool clean = std::ranges::none_of(refused, [&](std::string_view letter) { return entered.contains(letter); });
    return clean ? std::string() : ">>" + std::string(characters) + "<< characters not allowed.";
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
    bool number = false;  // wants one
};
// A longer code before the one that it begins with.
constexpr std::array kRules{
    RuleRow{"N", true, CheckNumeric, true},
    RuleRow{"+", true, CheckPositive, true},
    RuleRow{"<", false, CheckLess, true},
    RuleRow{"s-instr", false, CheckCharacters},
    RuleRow{"Sv", true, CheckCharacters},
    RuleRow{"S", false, CheckCharacters},
    RuleRow{"PDe", true, CheckPath<core::CheckDirExists>},
    RuleRow{"PD", true, CheckPath<core::CheckDir>},
    RuleRow{"P", true, CheckPath<core::CheckPAFN>},
};

// The row of a rule and what stands behind its code; nothing when it is no rule.
const RuleRow* RowOf(std::string_view rule, std::string_view& rest) {
    for (const RuleRow& row : kRules) {
        if (!rule.starts_with(row.code)) continue;
        rest = rule.substr(row.code.size());
        if (!row.alone || rest.empty() || rest.front() == '|') return &row;
    }
    return nullptr;
}

}  // namespace

std::string CheckEntry(std::string_view rules, std::string_view value) {
    for (const std::string& rule : core::CDSSplit(rules, core::kBraceForm).Items()) {
        std::string_view rest;
        const RuleRow* const row = RowOf(core::fTrimLeft(rule), rest);
        std::string problem = row != nullptr ? row->check(rest, value) : std::string();
        if (!problem.empty()) return problem;
    }
    return {};
}

std::string KeptEntry(std::string_view rules, std::string_view value) {
    std::string_view rest;
    for (const std::string& rule : core::CDSSplit(rules, core::kBraceForm).Items())
        if (const RuleRow* const row = RowOf(core::fTrimLeft(rule), rest); row != nullptr && row->number)
            return core::IsNumeric(value) ? PlainNumber(value) : std::string(value);
    return std::string(value);
}

}  // namespace dialogs
