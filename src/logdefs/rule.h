#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "logdefs/fields.h"

namespace core {
class IniStore;
}

// Rules on one value each, and their store. A rule has no "not": only a whole filter can be inverted.
namespace logdefs {

enum RuleType : int { kStartsWith = 1, kContains = 2, kEquals = 3, kGreater = 4, kLess = 5, kIsNumber = 6 };

struct OperatorRow {
    RuleType type;
    std::string_view word;  // of the command line
    std::string_view text;  // on screen
};
// "Less than" can be chosen and stored and is never true. "Greater" compares texts: "5" is greater than "404".
inline constexpr std::array kOperators{
    OperatorRow{kStartsWith, "starts-with", "Starts with ..."},
    OperatorRow{kContains, "contains", "Contains ..."},
    OperatorRow{kEquals, "equals", "Equals ..."},
    OperatorRow{kGreater, "greater-than", "Is greater than ..."},
    OperatorRow{kLess, "less-than", "Is less than ..."},
    OperatorRow{kIsNumber, "is-number", "Is a number"},
};

struct ColTypeRow {
    int colType;
    Field field;
    std::string_view word;
    std::string_view label;
};
inline constexpr std::array kColTypes{
    ColTypeRow{0, kReferrer, "referrer", "Referrer"},
    ColTypeRow{1, kFile, "file", "File Name"},
    ColTypeRow{2, kAgent, "agent", "User agent (browser)"},
    ColTypeRow{3, kStatus, "status", "RC (200=OK, 404=Page not found, etc.)"},
};
// Index 0, which is always empty, for a code that is not in the table.
int FieldOfColType(int colType);

struct FltrRule {
    int Typ = 0;
    std::string Val{};
    bool MC = false;  // Match Case; without it Val is lower case
};

bool FltrRuleTest(std::string_view value, const FltrRule& rule);
// The same for a value that is in the rule's case already: lower-cased unless rule.MC.
bool FltrTestPrepared(std::string_view value, const FltrRule& rule);

struct RulesResult {
    bool satisfied = false;
    std::size_t index = 0;  // of the rule that settled it; the number of rules when all were looked at
};
// One value for each rule, or one for all. `any`: true at the first satisfied rule; else false at the first that is
// not.
RulesResult FltrTestValues(std::span<const std::string_view> values, std::span<const FltrRule> rules, bool any);
bool FltrTestValue(std::string_view value, std::span<const FltrRule> rules, bool any);

// A rule's section in a rule file. A hand-edited Val is lower-cased on reading when MC is off.
struct StoredRule {
    FltrRule rule{};
    int colType = 0;
};
StoredRule FltrRuleRead(core::IniStore& ini, std::string_view section, std::string_view file);
bool FltrRuleWrite(core::IniStore& ini, std::string_view section, std::string_view file, const StoredRule& stored);

// The names behind a condition. Without CDSCndns the name stands for itself: a single rule.
struct Condition {
    bool multiple = false;
    bool any = false;
    std::string list{};
};
Condition FltrCndnRead(core::IniStore& ini, std::string_view name, std::string_view file);

// "Referrer Contains <x> MC"; of a condition each rule's text in "<>" joined by " & " or " / ".
std::string FltrRuleText(const StoredRule& stored);
std::string FltrCndnText(core::IniStore& ini, std::string_view name, std::string_view file);

}  // namespace logdefs
