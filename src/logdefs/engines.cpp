#include "logdefs/engines.h"

#include <algorithm>
#include <array>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/like.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/enginedefs.h"
#include "names/urlcode.h"

namespace logdefs {
namespace {

constexpr std::string_view kDefsKey = "CDSsrchenginedefs";
constexpr std::size_t kMaxUndefined = 10000;
constexpr std::string_view kHaveMore = "|Have More ...";

// "False" in any case, "0" and "" are false: the list is lower-cased before its flags are read.
bool Flag(std::string_view text) {
    const std::string_view trimmed = core::fTrim(text);
    return !trimmed.empty() && trimmed != "0" && core::LowerAscii(trimmed) != "false";
}

void AddUnique(std::vector<std::string>& keys, std::string key) {
    if (std::ranges::find(keys, key) == keys.end()) keys.push_back(std::move(key));
}

}  // namespace

std::string SEDefsRead(core::IniStore& ini, const EngineFiles& files) {
    std::string own = ini.IniGet("Main", kDefsKey, files.own);
    return own.empty() ? ini.IniGet("Main", kDefsKey, files.delivered) : own;
}

bool SEDefsWrite(core::IniStore& ini, const EngineFiles& files, const std::vector<std::string>& definitions) {
    std::vector<std::string> ordered = definitions;
    std::ranges::stable_partition(ordered, SEDefIsGeneral);
    return ini.IniPutWhole("Main", kDefsKey, ordered.empty() ? "" : core::CDSJoinPlain({1, std::move(ordered)}),
                           files.own);
}

std::vector<std::string> SEDefsList(core::IniStore& ini, const EngineFiles& files) {
    const core::StrArray list = core::CDSSplitPlain(SEDefsRead(ini, files), 0);
    std::vector<std::string> definitions(list.Items().begin(), list.Items().end());
    std::erase_if(definitions, [](const std::string& text) { return core::fTrim(text).empty(); });
    return definitions;
}

SearchEngines::SearchEngines(const std::vector<std::string>& definitions) {
    for (const std::string& definition : definitions)
        if (!core::fTrim(definition).empty()) definitions_.push_back(Compile(definition));
    std::vector<std::string_view> patterns;
    for (const Definition& definition : definitions_) patterns.push_back(definition.SEUrlSpec);
    filter_ = PatternFilter(patterns);
}

SearchEngines SearchEngines::SEDefsLoad(core::IniStore& ini, const EngineFiles& files) {
    return SearchEngines(SEDefsList(ini, files));
}

SearchEngines::Definition SearchEngines::Compile(std::string_view text) {
    Definition definition;
    const std::string_view spec = text.substr(0, text.find(' '));
    definition.SEUrlSpec = core::LowerUtf8(spec);
    JudgeAsHttp(definition.SEUrlSpec);
    definition.name = SEDefName(spec);
    const std::string items = core::LowerUtf8(text.substr(std::min(spec.size() + 1, text.size())));
    for (std::size_t from = 0; from <= items.size();) {
        const std::size_t comma = std::min(items.find(',', from), items.size());
        AddItem(definition, core::fTrim(std::string_view(items).substr(from, comma - from)));
        from = comma + 1;
    }
    return definition;
}

void SearchEngines::AddItem(Definition& definition, std::string_view item) {
    if (item.empty()) return;
    if (!item.starts_with("::")) {
        const std::string key = std::string(item) + "=";
        AddUnique(definition.SEParamKeys, key);
        if (key[0] == '?') AddUnique(definition.SEParamKeys, "&" + key.substr(1));
        if (key[0] == '&') AddUnique(definition.SEParamKeys, "?" + key.substr(1));
        return;
    }
    std::array<std::string, 4> fields;  // start, end, end required, decode
    std::string rest(item.substr(2));
    for (std::string& field : fields) {
        const core::Token token = core::fNextToken(rest, "::");
        field = token.found ? token.text : std::exchange(rest, {});
    }
    if (Flag(fields[3])) {
        fields[0] = names::fPercentDecode(fields[0]);
        fields[1] = names::fPercentDecode(fields[1]);
    }
    definition.items.push_back({fields[0], fields[1], Flag(fields[2])});
}

// Plain keys come before path items, whatever their order in the definition.
bool SearchEngines::TermOf(const Definition& definition, const Url& url, std::string& term) {
    for (const std::string& key : definition.SEParamKeys) {
        const std::size_t at = url.l.find(key);
        if (at == std::string::npos) continue;
        const std::size_t start = at + key.size();
        term = url.s.substr(start, std::min(url.s.find('&', start), url.s.size()) - start);
        return true;
    }
    for (const PathItem& item : definition.items) {
        const std::size_t at = url.l.find(item.start);
        if (at == std::string::npos) continue;
        const std::size_t start = at + item.start.size();
        const std::size_t end = start < url.l.size() ? url.l.find(item.end, start) : std::string::npos;
        if (end == std::string::npos && item.endRequired) continue;
        term = url.s.substr(start, std::min(end, url.s.size()) - start);
        return true;
    }
    return false;
}

FoundTerm SearchEngines::Search(std::string_view referrer, std::vector<std::string>* undefinedList) const {
    FoundTerm result;
    if (referrer.starts_with('"')) referrer.remove_prefix(1);
    Url url{names::fPercentDecode(referrer), {}};
    if (url.s.empty()) return result;
    JudgeAsHttp(url.s);
    url.l = core::LowerSameLength(url.s);
    std::vector<std::size_t> missed;
    const auto list = [&] {
        for (const std::size_t definition : missed) STUndefinedAdd(referrer, *undefinedList, definition);
    };
    for (const std::size_t i : filter_.Candidates(url.l)) {
        const Definition& definition = definitions_[i];
        if (!core::Like(url.l, definition.SEUrlSpec)) continue;
        result.isEngine = true;
        if (definition.SendsNoTerm()) {
            // Another definition may find a term all the same; the first assistant names the engine if none does.
            if (!result.assistant) result.engine = definition.name;
            result.assistant = true;
            continue;
        }
        if (TermOf(definition, url, result.term)) {
            result.term = core::ToUtf8(result.term);
            result.engine = definition.name;
            result.found = true;
            result.assistant = false;
            list();
            return result;
        }
        if (undefinedList != nullptr) missed.push_back(i);
    }
    if (!result.assistant) list();
    return result;
}

FoundTerm SearchEngines::STFromReferrer(std::string_view referrer) const { return Search(referrer, nullptr); }

FoundTerm SearchEngines::STFromReferrer(std::string_view referrer, std::vector<std::string>& undefinedList) const {
    return Search(referrer, &undefinedList);
}

void STUndefinedAdd(std::string_view referrer, std::vector<std::string>& list, std::size_t definition) {
    if (list.size() <= definition) list.resize(definition + 1);
    std::string& element = list[definition];
    if (element.size() < kMaxUndefined) {
        element = core::CDSAdd(element, referrer, {}, 1).list;
    } else if (!element.ends_with(kHaveMore)) {
        element += kHaveMore;
    }
}

}  // namespace logdefs
