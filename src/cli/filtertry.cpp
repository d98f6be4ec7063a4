#include "cli/filtertry.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/cds.h"
#include "core/inistore.h"
#include "core/utf8.h"
#include "logdefs/filter.h"
#include "logdefs/formatstore.h"
#include "logdefs/sample.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

// The filter as an add applies it, but for its inversion: what satisfies it.
logdefs::FltrRuleSet ChosenSet(Program& program, const FilterFamily& family) {
    const std::string key = family.allApply ? family.listKey : std::string(kFilterSelected);
    if (program.Ini().IniGet(kFilterSection, key, family.file).empty())
        throw UsageError("The family " + family.word +
                         " has no condition in use. Choose one with: corvane-cli filter select " + family.word +
                         " NAME");
    logdefs::FltrRuleSet set = logdefs::FltrLoad(program.Ini(), family.file, key, true, false);
    if (family.allApply) set.AnyRule = true;
    return set;
}

struct Trial {
    std::int64_t lines = 0, fit = 0, satisfied = 0;
    std::vector<std::string> examples{};  // first lines that satisfy it
};

Trial TryLines(const logdefs::LogSample& sample, const logdefs::LogFormat& format, logdefs::FltrRuleSet set) {
    constexpr std::size_t kExamples = 5;
    Trial trial;
    logdefs::LogLnFields fields;
    for (const std::string& line : sample.lines) {
        ++trial.lines;
        fields.Clear();
        if (!format.LogLnInterpret(line, fields)) continue;
        ++trial.fit;
        if (!logdefs::FltrTestLine(fields, set).skip) continue;
        ++trial.satisfied;
        if (trial.examples.size() < kExamples) trial.examples.push_back(line);
    }
    return trial;
}

}  // namespace

int TryFilterOnValue(Program& program, const FilterFamily& family, const std::string& text, bool json) {
    const logdefs::FltrRuleSet set = ChosenSet(program, family);
    const std::string value = core::ToUtf8(text);
    const bool satisfied = logdefs::FltrTestValue(value, set.Rules, set.AnyRule);
    const std::string chosen = family.allApply ? program.Ini().IniGet(kFilterSection, family.listKey, family.file)
                                               : program.Ini().IniGet(kFilterSection, kFilterSelected, family.file);
    const core::StrArray names = core::CDSSplitPlain(
        family.allApply ? chosen : logdefs::FltrCndnRead(program.Ini(), chosen, family.file).list, 0);
    ordered_json rules = ordered_json::array();
    TextTable table{{{""}, {"Rule"}}, {}};
    for (std::size_t i = 0; i < set.Rules.size(); ++i) {
        const bool one = logdefs::FltrRuleTest(value, set.Rules[i]);
        const std::string name = names[static_cast<long>(i)];
        if (one || !family.allApply) {
            rules.push_back({{"name", name}, {"satisfied", one}});
            table.rows.push_back({one ? "yes" : "no", name});
        }
    }
    if (json) {
        PrintJson({{"value", value}, {"satisfied", satisfied}, {"rules", std::move(rules)}});
        return 0;
    }
    if (!table.rows.empty()) PrintTable(table);
    Print(satisfied ? "The value satisfies the filter.\n" : "The value does not satisfy the filter.\n");
    return 0;
}

int TryFilterOnLog(Program& program, const FilterFamily& family, const std::string& file, const std::string& formatName,
                   bool json) {
    const std::string formats = program.Session().ProgramFiles().formats;
    const std::string format =
        formatName.empty() ? program.Ini().IniGet("Main", "LFmtDflt", program.SiteFiles().lastVals) : formatName;
    const logdefs::LogFormatLoaded loaded = logdefs::LogFmtLoad(program.Ini(), format, formats);
    if (!loaded.found)
        throw UsageError("There is no log format of that name: \"" + format + "\". " +
                         ValidAre(format, logdefs::LogFmtNames(program.Ini(), formats)));
    logdefs::LogSample sample;
    const std::string path = AbsolutePath(file);
    const core::Result read = logdefs::ReadLogSample(path, logdefs::kSampleLines, sample);
    if (!read) throw Failure(read.error);
    const Trial trial = TryLines(sample, loaded.format, ChosenSet(program, family));
    if (json) {
        PrintJson({{"file", path},
                   {"format", format},
                   {"lines", trial.lines},
                   {"fit", trial.fit},
                   {"satisfied", trial.satisfied},
                   {"examples", trial.examples}});
        return 0;
    }
    Print(std::to_string(trial.satisfied) + " of the first " + std::to_string(trial.fit) +
          " lines satisfy the filter.\n");
    for (const std::string& line : trial.examples) Print("  " + Safe(line) + "\n");
    if (trial.fit < trial.lines)
        PrintError(std::to_string(trial.lines - trial.fit) + " more lines do not fit the format " + format + ".");
    return 0;
}

}  // namespace cli
