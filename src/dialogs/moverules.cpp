#include "dialogs/moverules.h"

#include <algorithm>

#include "core/cdsini.h"

namespace dialogs {

std::vector<std::string> ReadTexts(core::IniStore& ini, const IniEntry& place) {
    std::vector<std::string> texts;
    const core::StrArray list = core::CDSReadIni(ini, {place.section, place.entry, place.file});
    std::ranges::copy_if(list.Items(), std::back_inserter(texts),
                         [](const std::string& text) { return !text.empty(); });
    return texts;
}

bool WriteTexts(core::IniStore& ini, const IniEntry& place, const std::vector<std::string>& texts) {
    return core::CDSWriteIni(ini, {place.section, place.entry, place.file}, core::StrArray(1, texts));
}

std::vector<MoveRule> ReadRules(core::IniStore& ini, const IniEntry& place) {
    std::vector<MoveRule> rules;
    for (const std::string& text : ReadTexts(ini, place)) {
        MoveRule rule{core::CDSItem(1, text), core::CDSItem(2, text), core::CDSItem(3, text)};
        if (rule.moveItem != kToLeft) rule.moveItem = kToRight;
        if (!rule.rule.empty()) rules.push_back(std::move(rule));
    }
    return rules;
}

bool WriteRules(core::IniStore& ini, const IniEntry& place, const std::vector<MoveRule>& rules) {
    std::vector<std::string> texts;
    for (const MoveRule& rule : rules)
        texts.push_back(core::CDSJoinPlain(core::StrArray(1, {rule.rule, rule.moveItem, rule.toGroup})));
    return WriteTexts(ini, place, texts);
}

std::string RuleText(const MoveRule& rule) {
    const std::string where = rule.moveItem == kToLeft ? " <-- back to the left"
                              : rule.toGroup.empty()   ? " --> to the right"
                                                       : " --> group " + rule.toGroup;
    return rule.rule + where;
}

}  // namespace dialogs
