#include <algorithm>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/cds.h"
#include "core/dates.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/formatstore.h"

namespace cli {
namespace {

enum class OptionFile { LastVals, DbDef };
enum class OptionKind { Flag, Number, Text, Dates, Format, Fixed };

struct OptionKey {
    std::string_view key;
    OptionFile file;
    OptionKind kind;
    std::string_view help;
};
constexpr OptionFile kLast = OptionFile::LastVals;
constexpr OptionFile kDef = OptionFile::DbDef;
constexpr std::array kOptions{
    OptionKey{"All", kLast, OptionKind::Flag, "add every line: the main filter is off"},
    OptionKey{"Filter", kLast, OptionKind::Flag, "with All off: add what satisfies the main filter, else all but that"},
    OptionKey{"nobots", kLast, OptionKind::Flag, "skip lines of robots"},
    OptionKey{"nocomp", kLast, OptionKind::Flag, "skip page components"},
    OptionKey{"newbots", kLast, OptionKind::Flag, "stored only: looking for new robots is not built yet"},
    OptionKey{"DoAdd", kLast, OptionKind::Flag, "stored only: an add of the command line always stores lines"},
    OptionKey{"LFmtDflt", kLast, OptionKind::Format, "name of the default log format"},
    OptionKey{"AnalStartEnd", kLast, OptionKind::Dates,
              "stored only, first|last: a report takes its own --from and --to"},
    OptionKey{"RepStartEnd", kLast, OptionKind::Dates,
              "stored only, first|last: a report takes its own --from and --to"},
    OptionKey{"CntTopVals", kLast, OptionKind::Number, "number of values of a top report"},
    OptionKey{"ThresholdST", kLast, OptionKind::Number, "sightings before a term gets a line"},
    OptionKey{"ThresholdPg", kLast, OptionKind::Number, "the same for pages and directories"},
    OptionKey{"ThresholdSTPg", kLast, OptionKind::Number, "the same for a term with its start page"},
    OptionKey{"ThresholdTrk", kLast, OptionKind::Number, "the same for tracks"},
    OptionKey{"ThresholdWrd", kLast, OptionKind::Number, "the same for words and phrases"},
    OptionKey{"ShowNotSEitem", kLast, OptionKind::Flag, "count visits without a search term too"},
    OptionKey{"ShowDist1", kLast, OptionKind::Flag, "collect the distribution over engines"},
    OptionKey{"ShowDist2", kLast, OptionKind::Flag, "collect the second distribution"},
    OptionKey{"ShowClickThru", kLast, OptionKind::Flag, "collect the pages that followed"},
    OptionKey{"SepQuery", kLast, OptionKind::Flag, "pages with another query are separate values"},
    OptionKey{"SepFrag", kLast, OptionKind::Flag, "pages with another fragment are separate values"},
    OptionKey{"CDSNoCntSurfToFileTypes", kLast, OptionKind::Text,
              "file types that are not counted at all, parted by |"},
    OptionKey{"CDSCntAsPageForAvgPages", kLast, OptionKind::Text, "file types that count for the average, parted by |"},
    OptionKey{"ShowOnlySelSiteArea", kLast, OptionKind::Flag, "analyse one site area alone"},
    OptionKey{"ParmShowOnlySelSiteArea", kLast, OptionKind::Text, "name of that area"},
    OptionKey{"AnalTgt", kLast, OptionKind::Flag, "analyse targets"},
    OptionKey{"CntTgt", kLast, OptionKind::Number, "number of targets, at most 4"},
    OptionKey{"LstTgts", kLast, OptionKind::Text, "the targets, parted by |"},
    OptionKey{"ConfirmRepOps", kLast, OptionKind::Flag, "stored only: desktop, use the only analysis without asking"},
    OptionKey{"DevShow", kLast, OptionKind::Flag, "deviation columns in reports"},
    OptionKey{"DevDays", kLast, OptionKind::Number, "days of their recent block"},
    OptionKey{"DevFmtVD", kLast, OptionKind::Text, "number format of users per day"},
    OptionKey{"DevTxtNoneVD", kLast, OptionKind::Text, "text for no users per day"},
    OptionKey{"DevFmtPct", kLast, OptionKind::Text, "number format of percent differences"},
    OptionKey{"DevTxtNonePct", kLast, OptionKind::Text, "text when both periods have no users"},
    OptionKey{"DevTxtFrom0Pct", kLast, OptionKind::Text, "text for a rise from no users"},
    OptionKey{"DaysToPlot", kLast, OptionKind::Number, "days of a period of a plot"},
    OptionKey{"MemMin", kLast, OptionKind::Flag, "stored only: memory follows the number of values"},
    OptionKey{"MemHi", kLast, OptionKind::Flag, "stored only: memory follows the number of values"},
    OptionKey{"LmtVisitLines", kDef, OptionKind::Number,
              "lines of one visitor from which on it is a robot, 0: no limit"},
    OptionKey{"domain", kDef, OptionKind::Text, "the site's own host"},
    OptionKey{"Skip404", kDef, OptionKind::Flag, "leave out lines with status 400 to 599"},
    OptionKey{"RemQuery", kDef, OptionKind::Flag, "cut the query off page names"},
    OptionKey{"RemFrag", kDef, OptionKind::Flag, "cut the fragment off page names"},
    OptionKey{"EraseNonSE", kDef, OptionKind::Flag, "keep only visits with a search term"},
    OptionKey{"LastKeepVal", kDef, OptionKind::Fixed, "extra data is kept; settled when the site was made"},
    OptionKey{"Parm", kDef, OptionKind::Fixed, "the site's name"},
};

const OptionKey& Find(const std::string& key) {
    std::vector<std::string> keys;
    for (const OptionKey& row : kOptions) {
        if (core::fEquals(row.key, key, core::Case::Ignore)) return row;
        keys.emplace_back(row.key);
    }
    throw UsageError("There is no option \"" + key + "\". " + ValidAre(key, keys, kOptions.size()));
}

const std::string& FileOf(const OptionKey& option, const sitedb::SitePaths& site) {
    return option.file == OptionFile::LastVals ? site.lastVals : site.dbdef;
}

std::string FlagValue(const OptionKey& option, const std::string& value) {
    const std::string word = core::LowerAscii(value);
    for (const char* yes : {"true", "yes", "on", "1"})
        if (word == yes) return "True";
    for (const char* no : {"false", "no", "off", "0"})
        if (word == no) return "False";
    throw UsageError(std::string(option.key) + " cannot be \"" + value + "\". Valid are: True, False");
}

std::string NumberValue(const OptionKey& option, const std::string& value) {
    const bool digits =
        !value.empty() && value.size() <= 9 && std::ranges::all_of(value, [](char c) { return c >= '0' && c <= '9'; });
    if (digits) return std::to_string(core::ToLong(core::fNum(value)));
    throw UsageError(std::string(option.key) + " cannot be \"" + value +
                     "\". Valid is a whole number from 0 to 999999999.");
}

std::string DatesValue(const OptionKey& option, const std::string& value) {
    const std::string first = core::CDSItem(1, value);
    const std::string last = core::CDSItem(2, value);
    const bool good = value.empty() || (core::CDSCount(value) == 2 && (first.empty() || core::ParseDate(first)) &&
                                        (last.empty() || core::ParseDate(last)));
    if (good) return value;
    throw UsageError(std::string(option.key) + " cannot be \"" + value +
                     "\". Valid are two dates, \"2024-01-01|2024-01-31\", of which each may be empty.");
}

std::string FormatValue(Program& program, const std::string& value) {
    const std::vector<std::string> names =
        logdefs::LogFmtNames(program.Ini(), program.Session().ProgramFiles().formats);
    for (const std::string& name : names)
        if (core::fEquals(name, value, core::Case::Ignore)) return name;
    throw UsageError("There is no log format \"" + value + "\". " + ValidAre(value, names));
}

std::string Checked(Program& program, const OptionKey& option, const std::string& value) {
    switch (option.kind) {
        case OptionKind::Flag:
            return FlagValue(option, value);
        case OptionKind::Number:
            return NumberValue(option, value);
        case OptionKind::Dates:
            return DatesValue(option, value);
        case OptionKind::Format:
            return FormatValue(program, value);
        case OptionKind::Fixed:
            throw UsageError(std::string(option.key) + " cannot be changed: it is " + std::string(option.help) + ".");
        default:
            break;
    }
    if (!core::IsUtf8(value)) throw UsageError(std::string(option.key) + " must be UTF-8 text.");
    return value;
}

int Get(Program& program, const std::string& key) {
    const OptionKey& option = Find(key);
    const sitedb::SitePaths site = program.SiteFiles();
    PrintData(program.Ini().IniGet("Main", option.key, FileOf(option, site)) + "\n");
    return 0;
}

int Set(Program& program, const std::string& key, const std::string& value) {
    const OptionKey& option = Find(key);
    const std::string text = Checked(program, option, value);
    core::FileLock lock;
    const sitedb::SitePaths site = program.LockSite(lock);
    if (!program.Ini().IniPutWhole("Main", option.key, text, FileOf(option, site), core::OnFail::Ignore))
        throw Failure("The option could not be written to " + FileOf(option, site));
    return 0;
}

int List(Program& program, bool json) {
    const sitedb::SitePaths site = program.SiteFiles();
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    TextTable table{{{"Option"}, {"Value"}, {"File"}, {"Meaning"}}, {}};
    for (const OptionKey& option : kOptions) {
        const std::string& file = FileOf(option, site);
        const std::string value = program.Ini().IniGet("Main", option.key, file);
        list.push_back(
            {{"key", option.key}, {"value", value}, {"file", core::fNameOf(file)}, {"meaning", option.help}});
        constexpr int kShownValue = 30;
        table.rows.push_back({std::string(option.key), CutToWidth(Safe(value), kShownValue), core::fNameOf(file),
                              std::string(option.help)});
    }
    if (json)
        PrintJson(list);
    else
        PrintTable(table);
    return 0;
}

}  // namespace

void AddOptionCommands(CLI::App& root, Program& program) {
    CLI::App* family = NewFamily(root, "option", "Stored options of a site: list, get, set");
    auto key = std::make_shared<std::string>();
    auto value = std::make_shared<std::string>();
    auto json = std::make_shared<bool>(false);

    CLI::App* list = NewCommand(*family, "list", "All options with their values", "option list");
    list->add_flag("--json", *json, "As JSON");
    list->callback([=, &program] { program.run = [=, &program] { return List(program, *json); }; });

    CLI::App* get = NewCommand(*family, "get", "Print one value", "option get CntTopVals");
    AddText(*get, "KEY", *key, "Name of the option")->required();
    get->callback([=, &program] { program.run = [=, &program] { return Get(program, *key); }; });

    CLI::App* set = NewCommand(*family, "set", "Store one value", "option set nobots True");
    AddText(*set, "KEY", *key, "Name of the option")->required();
    AddText(*set, "VALUE", *value, "The new value, \"\" for none")->required();
    set->callback([=, &program] { program.run = [=, &program] { return Set(program, *key, *value); }; });
}

}  // namespace cli
