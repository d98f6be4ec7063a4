#include "logdefs/enginepreview.h"

#include <algorithm>
#include <unordered_map>

#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/gridops.h"
#include "logdefs/formatstore.h"
#include "names/searchterm.h"

namespace logdefs {
namespace {

constexpr std::size_t kLongest = 4096;  // bytes of a referrer that are looked at
constexpr std::size_t kMostRows = 50;   // with a term, and as many without
constexpr std::size_t kMostShown = 300;

// Views of a line's referrers, unique, in the order of the log.
void Collect(const LogSample& sample, const LogFormat& format, TrialReferrers& trial) {
    std::unordered_map<std::string, std::size_t> places;
    LogLnFields fields;
    for (const std::string& line : sample.lines) {
        if (!format.LogLnInterpret(line, fields)) continue;
        ++trial.lines;
        const std::string_view referrer = core::CutUtf8(fields[kReferrer], kLongest);
        if (referrer.empty() || referrer == "-") continue;
        const auto [at, added] = places.try_emplace(std::string(referrer), trial.referrers.size());
        if (added) trial.referrers.push_back({at->first, 0});
        ++trial.referrers[at->second].lines;
    }
}

std::string TermText(const FoundTerm& found) {
    if (!found.found) return found.assistant ? "(sends no terms)" : "(no search term)";
    std::string term = found.term;
    std::string standard = names::ST_Std(term);
    return standard.empty() ? "(empty)" : dialogs::GridCellText(standard, kMostShown);
}

std::string Count(std::int64_t count) { return core::CountText(static_cast<double>(count)); }

std::string EngineText(const SEDef& definition) {
    const std::string url = definition.url;
    std::string text = "Engine: " + SEDefName(url) +
                       (SEDefIsGeneral(url) ? " - a general domain definition" : " - a specific domain definition");
    if (definition.places.empty())
        text += "\rNo values: visits from it are recognised and counted, without a search term (an AI assistant).";
    if (!SEDefHasProtocol(definition))
        text += "\rThe URL spec has no \"http\". It is held against whole referrers, which begin with http://.";
    return text;
}

}  // namespace

TrialReferrers ReadTrialReferrers(const Editing& editing) {
    TrialReferrers trial;
    if (editing.trial.file.empty()) {
        trial.problem = "Select a log file to see here what the definition finds in it.";
        return trial;
    }
    LogSample sample;
    if (const core::Result read = ReadLogSample(editing.trial.file, kSampleLines, sample); !read) {
        trial.problem = "The log file cannot be tried: " + read.error;
        return trial;
    }
    const LogFormatLoaded loaded = LogFmtLoad(editing.desk.ini, editing.trial.format, editing.formats);
    if (loaded.found) Collect(sample, loaded.format, trial);
    if (trial.lines == 0)
        trial.problem = "No line of the log file fits its format, so nothing can be tried on it.";
    else if (trial.referrers.empty())
        trial.problem = "The first lines of the log file hold no referrers.";
    return trial;
}

EngineEffect EffectOf(const SEDef& definition, const TrialReferrers& trial) {
    EngineEffect effect;
    if (const std::string fault = SEDefFault(definition); !fault.empty()) {
        effect.text = "Not complete yet: " + fault + ".";
        return effect;
    }
    effect.text = EngineText(definition);
    const SearchEngines engine({definition.Text()});
    std::int64_t withTerm = 0, without = 0;
    dialogs::Rows missed;
    for (const TrialReferrer& referrer : trial.referrers) {
        const FoundTerm found = engine.STFromReferrer(referrer.text);
        if (!found.isEngine) continue;
        (found.found ? withTerm : without) += referrer.lines;
        dialogs::Rows& rows = found.found ? effect.rows : missed;
        if (rows.size() < kMostRows)
            rows.push_back({TermText(found), Count(referrer.lines), dialogs::GridCellText(referrer.text, kMostShown)});
    }
    std::ranges::move(missed, std::back_inserter(effect.rows));
    if (trial.problem.empty())
        effect.text += "\rOf the first " + Count(trial.lines) + " log lines " + Count(withTerm + without) +
                       " match: " + Count(withTerm) + " with a search term, " + Count(without) + " without.";
    return effect;
}

std::string TriedReferrer(const std::string& referrer, const SEDef& definition,
                          const std::vector<std::string>& wholeList) {
    const std::string_view text = core::CutUtf8(core::fTrim(referrer), kLongest);
    if (text.empty()) return "Its search term appears here.";
    const auto verdict = [&](const std::vector<std::string>& definitions) -> std::string {
        const FoundTerm found = SearchEngines(definitions).STFromReferrer(text);
        if (!found.isEngine) return "does not match";
        return found.engine.empty() ? TermText(found) : found.engine + ": " + TermText(found);
    };
    std::string shown = "By this definition: ";
    shown += SEDefFault(definition).empty() ? verdict({definition.Text()}) : "not complete yet";
    return shown + "\rBy all definitions: " + verdict(wholeList);
}

}  // namespace logdefs
