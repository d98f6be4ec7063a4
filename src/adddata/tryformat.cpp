#include "adddata/tryformat.h"

#include <algorithm>

#include "core/decompressreader.h"
#include "core/utf8.h"
#include "logdefs/formatstore.h"
#include "logdefs/linedate.h"
#include "logread/linereader.h"

namespace adddata {
namespace {

constexpr std::size_t kShownLine = 300;

std::vector<FormatTrial::Field> FieldsOf(const logdefs::LogLnFields& fields, logdefs::LineClock& clock) {
    std::vector<FormatTrial::Field> shown{{"time", std::to_string(clock.LogLnTimestamp(fields).timestamp)}};
    for (const logdefs::FieldName& row : logdefs::kFieldNames)
        if (!fields[row.field].empty()) shown.push_back({std::string(row.word), std::string(fields[row.field])});
    return shown;
}

// A "-" is how logs write that there is nothing; a layout that cuts "- -" out as one field is no better.
auto FilledFields(const FormatTrial& trial) {
    return std::ranges::count_if(trial.samples.front(), [](const FormatTrial::Field& field) {
        return field.text.find_first_not_of("- ") != std::string::npos;
    });
}

void TakeLine(std::string_view line, const logdefs::LogFormat& format, std::size_t samples, FormatTrial& trial) {
    logdefs::LogLnFields fields;
    logdefs::LineClock clock;
    ++trial.lines;
    if (format.LogLnInterpret(line, fields)) {
        ++trial.fit;
        if (trial.samples.size() < samples) trial.samples.push_back(FieldsOf(fields, clock));
    } else if (trial.firstMisfitNumber == 0) {
        trial.firstMisfitNumber = trial.lines;
        trial.firstMisfit = core::CutUtf8(line, kShownLine);
    }
}

}  // namespace

core::Result TryFormat(const std::string& path, const std::string& name, const logdefs::LogFormat& format,
                       std::size_t samples, FormatTrial& trial) {
    trial = {.format = name};
    core::UnpackReader file;
    if (core::Result opened = file.Open(path); !opened) return opened;
    logread::LineReader reader(file, 1 << 16);
    logread::RawLine raw;
    std::string room;
    while (trial.lines < kTrialLines && reader.Next(raw)) {
        const std::string_view line = core::ToUtf8(raw.text, room);
        if (!raw.tooLong && logdefs::IsBlankLine(line)) continue;
        TakeLine(raw.tooLong ? std::string_view("\n") : line, format, samples, trial);
    }
    return reader.Failed() ? file.Failed() : core::Result{};
}

core::Result TryAllFormats(core::IniStore& ini, const std::string& formatFile, const std::string& path,
                           std::vector<FormatTrial>& trials) {
    for (const std::string& name : logdefs::LogFmtNames(ini, formatFile)) {
        FormatTrial trial;
        const logdefs::LogFormatLoaded loaded = logdefs::LogFmtLoad(ini, name, formatFile);
        if (core::Result tried = TryFormat(path, name, loaded.format, 1, trial); !tried) return tried;
        if (trial.fit > 0) trials.push_back(std::move(trial));
    }
    std::ranges::stable_sort(trials, [](const FormatTrial& a, const FormatTrial& b) {
        return a.fit != b.fit ? a.fit > b.fit : FilledFields(a) > FilledFields(b);
    });
    return {};
}

}  // namespace adddata
