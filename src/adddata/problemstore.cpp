#include "adddata/problemstore.h"

#include <algorithm>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "sitedb/site.h"

namespace adddata {
namespace {

constexpr std::string_view kName = "AddLog_Errs.ini";
constexpr std::string_view kMaxNo = "MaxNo";
constexpr core::CDSForm kDescsForm{.delim = "##"};

// One above the highest that was given, whatever somebody wrote there by hand; a record that stands is never written
// over.
long NextNumber(core::IniStore& ini, const std::string& file) {
    long number = std::max<long>(core::ToLong(core::fNum(ini.IniGet("Main", kMaxNo, file))), 0) + 1;
    while (ini.IniHas(std::to_string(number), "PAFNs", file)) ++number;
    return number;
}

bool Put(core::IniStore& ini, const std::string& section, const std::string& file,
         const logread::ProblemList& problems) {
    core::StrArray names(0, {}), lists(0, {});
    for (const logread::ProblemList::File& item : problems.Files()) {
        names.Append(item.name);
        lists.Append(core::CDSJoinPlain(core::StrArray(0, item.texts)));
    }
    return ini.IniPutWhole(section, "PAFNs", core::CDSJoinPlain(names), file, core::OnFail::Ignore) &&
           ini.IniPutWhole(section, "descs", core::CDSJoin(lists, kDescsForm, 0), file, core::OnFail::Ignore);
}

core::Result NotWritten(const std::string& file) { return {false, "This file cannot be written: " + file}; }

}  // namespace

std::string ProblemStoreFile(const sitedb::SitePaths& site) { return core::fPathOf(site.lastVals).append(kName); }

ProblemRecord StoreProblems(core::IniStore& ini, const std::string& file, const logread::ProblemList& problems) {
    if (problems.Files().empty()) return {};
    const long number = NextNumber(ini, file);
    const std::string section = std::to_string(number);
    if (Put(ini, section, file, problems) && ini.IniPut("Main", kMaxNo, section, file, core::OnFail::Ignore))
        return {{}, number};
    ini.IniEraseSection(section, file, core::OnFail::Ignore);
    return {NotWritten(file), 0};
}

core::Result StoreProblemsAgain(core::IniStore& ini, const std::string& file, long number,
                                const logread::ProblemList& problems) {
    return Put(ini, std::to_string(number), file, problems) ? core::Result{} : NotWritten(file);
}

std::vector<logread::ProblemList::File> ReadProblems(core::IniStore& ini, const std::string& file, long number) {
    const std::string section = std::to_string(number);
    if (number < 1 || !ini.IniHas(section, "PAFNs", file)) return {};
    const core::StrArray names = core::CDSSplitPlain(ini.IniGet(section, "PAFNs", file), 0);
    const core::StrArray lists = core::CDSSplit(ini.IniGet(section, "descs", file), kDescsForm, 0);
    std::vector<logread::ProblemList::File> files;
    for (long i = 0; i <= names.Upper(); ++i)
        files.push_back({names[i], core::CDSSplitPlain(lists.Item(i, {}), 0).Items()});
    return files;
}

}  // namespace adddata
