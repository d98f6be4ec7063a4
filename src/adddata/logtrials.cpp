#include "adddata/logtrials.h"

#include <algorithm>

#include "adddata/loglist.h"
#include "core/env.h"
#include "core/ports.h"
#include "logdefs/formatstore.h"

namespace adddata {
namespace {

using logdefs::FormatTrial;

const FormatTrial* Find(const std::vector<FormatTrial>& trials, const std::string& format) {
    const auto at = std::ranges::find(trials, format, &FormatTrial::format);
    return at != trials.end() ? &*at : nullptr;
}

// The finder's order but for the last of it, the place in the store.
bool AsGood(const FormatTrial& own, const FormatTrial& best) {
    return own.plausible == best.plausible && own.fit == best.fit && own.filled == best.filled;
}

std::string BetterText(const FormatTrial& best) { return "\"" + best.format + "\" fits better: " + FinderText(best); }

}  // namespace

const LogTrials::Tried& LogTrials::Of(const std::string& path) {
    static const Tried kNone;
    const std::string file = LogToLookAt(path);
    if (file.empty()) return kNone;
    const auto known = tried_.find(file);
    if (known != tried_.end()) return known->second;
    Tried tried;
    logdefs::LogSample sample;
    tried.read = logdefs::ReadLogSample(file, logdefs::kSampleLines, sample);
    if (tried.read) tried.formats = logdefs::FindFormats(at_.env.ini, at_.program.formats, sample, at_.env.clock.Now());
    return tried_.emplace(file, std::move(tried)).first->second;
}

std::string LogTrials::Best(const std::string& path, const std::string& otherwise) {
    const std::vector<FormatTrial>& trials = Of(path).formats;
    if (trials.empty()) return otherwise;
    const FormatTrial* own = Find(trials, otherwise);
    return own != nullptr && AsGood(*own, trials.front()) ? otherwise : trials.front().format;
}

std::string LogTrials::Text(const std::string& path, const std::string& format) {
    if (LogToLookAt(path).empty()) return core::Exists(path) ? "No log file stands in it." : "There is no such file.";
    const Tried& tried = Of(path);
    if (!tried.read) return tried.read.error;
    if (tried.formats.empty()) return "No format fits its first lines.";
    const FormatTrial* trial = Find(tried.formats, format);
    const FormatTrial& best = tried.formats.front();
    if (trial == nullptr) return "None of its first lines fits. " + BetterText(best);
    return FinderText(*trial) + (AsGood(*trial, best) ? "" : " " + BetterText(best));
}

std::string LogTrials::Misfit(const std::string& path, const std::string& format) {
    const logdefs::LogFormatLoaded loaded = logdefs::LogFmtLoad(at_.env.ini, format, at_.program.formats);
    if (!loaded.found) return "There is no log format of that name: " + format;
    const std::string file = LogToLookAt(path);
    logdefs::LogSample sample;
    if (file.empty() || !logdefs::ReadLogSample(file, logdefs::kSampleLines, sample) || sample.lines.empty()) return {};
    const FormatTrial trial = logdefs::TryFormat(sample, format, loaded.format, 0);
    if (trial.lines == 0 || trial.fit > 0) return {};
    const std::vector<FormatTrial>& formats = Of(path).formats;
    return "No line of this file has the log format \"" + format + "\": " + file +
           (formats.empty() ? ". No other format fits either; is it a log of a web server? "
                            : ". The format that fits best is \"" + formats.front().format + "\". ") +
           MisfitText(trial);
}

}  // namespace adddata
