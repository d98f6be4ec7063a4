#include "logdefs/rule.h"

#include <algorithm>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"

namespace logdefs {
namespace {

int SmallNumber(core::IniStore& ini, std::string_view section, std::string_view entry, std::string_view file) {
    return core::ToLong(ini.IniGetNum(section, entry, file, core::Missing::Marker));
}

std::string Label(int colType) {
    const auto row = std::ranges::find(kColTypes, colType, &ColTypeRow::colType);
    return row == kColTypes.end() ? std::string() : std::string(row->label);
}

std::string OperatorText(int type) {
    const auto row = std::ranges::find(kOperators, type, &OperatorRow::type);
    return row == kOperators.end() ? std::string() : core::fReplace(row->text, " ...", "");
}

}  // namespace

int FieldOfColType(int colType) {
    const auto row = std::ranges::find(kColTypes, colType, &ColTypeRow::colType);
    return row == kColTypes.end() ? kNoField : row->field;
}

bool FltrTestPrepared(std::string_view value, const FltrRule& rule) {
    switch (rule.Typ) {
        case kStartsWith:
            return value.starts_with(rule.Val);
        case kContains:
            return value.find(rule.Val) != std::string_view::npos;
        case kEquals:
            return value == rule.Val;
        case kGreater:
            return value > rule.Val;
        case kIsNumber:
            return core::IsNumeric(value);
        default:
            return false;  // "less than" too: it can be stored and is never true
    }
}

bool FltrRuleTest(std::string_view value, const FltrRule& rule) {
    return FltrTestPrepared(rule.MC ? std::string(value) : core::LowerUtf8(value), rule);
}

RulesResult FltrTestValues(std::span<const std::string_view> values, std::span<const FltrRule> rules, bool any) {
    for (std::size_t i = 0; i < rules.size(); ++i)
        if (FltrRuleTest(values[i], rules[i]) == any) return {any, i};
    return {!any, rules.size()};
}

bool FltrTestValue(std::string_view value, std::span<const FltrRule> rules, bool any) {
    return std::ranges::any_of(rules, [&](const FltrRule& rule) { return FltrRuleTest(value, rule) == any; }) ? any
                                                                                                              : !any;
}

StoredRule FltrRuleRead(core::IniStore& ini, std::string_view section, std::string_view file) {
    StoredRule stored;
    stored.rule.Typ = SmallNumber(ini, section, "Typ", file);
    stored.rule.Val = ini.IniGet(section, "Val", file, core::Missing::Marker);
    stored.rule.MC = ini.IniGetBool(section, "MC", file);
    stored.colType = SmallNumber(ini, section, "ColType", file);
    if (!stored.rule.MC) stored.rule.Val = core::LowerUtf8(stored.rule.Val);
    return stored;
}

bool FltrRuleWrite(core::IniStore& ini, std::string_view section, std::string_view file, const StoredRule& stored) {
    const std::string value = stored.rule.MC ? stored.rule.Val : core::LowerUtf8(stored.rule.Val);
    return ini.IniPut(section, "Typ", std::to_string(stored.rule.Typ), file) &&
           ini.IniPutWhole(section, "Val", value, file) && ini.IniPutBool(section, "MC", stored.rule.MC, file) &&
           ini.IniPut(section, "ColType", std::to_string(stored.colType), file);
}

Condition FltrCndnRead(core::IniStore& ini, std::string_view name, std::string_view file) {
    Condition condition;
    condition.list = ini.IniGet(name, "CDSCndns", file);
    condition.multiple = !condition.list.empty();
    if (condition.multiple) {
        condition.any = ini.IniGetBool(name, "Any", file);
    } else {
        condition.list = name;
    }
    return condition;
}

std::string FltrRuleText(const StoredRule& stored) {
    return Label(stored.colType) + " " + OperatorText(stored.rule.Typ) + " <" + stored.rule.Val + ">" +
           (stored.rule.MC ? " MC" : "");
}

std::string FltrCndnText(core::IniStore& ini, std::string_view name, std::string_view file) {
    const Condition condition = FltrCndnRead(ini, name, file);
    if (!condition.multiple) return FltrRuleText(FltrRuleRead(ini, name, file));
    std::string text;
    const core::StrArray names = core::CDSSplitPlain(condition.list);
    for (const std::string& rule : names.Items()) {
        if (!text.empty()) text += condition.any ? " / " : " & ";
        text += "<" + FltrRuleText(FltrRuleRead(ini, rule, file)) + ">";
    }
    return text;
}

}  // namespace logdefs
