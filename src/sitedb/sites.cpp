#include "sitedb/sites.h"

#include <algorithm>
#include <array>

#include "core/cds.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "core/text.h"
#include "core/utf8.h"
#include "sitedb/sitefolder.h"
#include "sitedb/storeerror.h"

namespace sitedb {
namespace {

constexpr std::size_t kMaxName = 60;
constexpr std::string_view kMainDir = "Main Data Dir";
// What a new site gets beside its logline.def, below param.
constexpr std::array<std::string_view, 9> kTemplateFiles{"targets.ini",   "STgroups.ini", "LdLnFltr.ini",
                                                         "FltrFiles.ini", "LastVals.ini", "dbdef.ini",
                                                         "def/visit.def", "def/page.def", "def/visitpages.def"};

core::Result Fail(std::string text) { return {false, std::move(text)}; }

// A name is shown, listed and stored as a section: what those cannot hold is refused, and so is what could leave the
// folder of sites.
core::Result CheckName(std::string_view name) {
    const std::string_view trimmed = core::fTrim(name);
    if (trimmed.empty()) return Fail("A site needs a name.");
    if (trimmed.size() != name.size()) return Fail("The name of a site cannot begin or end with a blank.");
    if (name.size() > kMaxName) return Fail("The name of a site can have at most 60 bytes.");
    if (!core::IsUtf8(name)) return Fail("The name of a site must be UTF-8 text.");
    const bool bad = std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; });
    if (bad || name.find_first_of("|[]\\/\"") != std::string_view::npos)
        return Fail("The name of a site cannot contain | [ ] \\ / \" or control characters.");
    if (core::fEquals(name, "Main", core::Case::Ignore)) return Fail("\"Main\" cannot be the name of a site.");
    if (core::fStartsWith(name, "AltNo.", core::Case::Ignore) ||
        core::fStartsWith(name, "SplitEntry.", core::Case::Ignore))
        return Fail("Name cannot be prefixed with \"AltNo.\" or \"SplitEntry.\".");
    return {};
}

// Letters and digits of the name; everything else becomes "_", so no name leads out of the folder.
std::string FolderName(std::string_view name) {
    std::string folder;
    for (std::size_t at = 0; at < name.size();) {
        const core::Letter letter = core::LetterAt(name, at);
        const bool keep = core::IsLetterOrDigit(letter.code) || letter.code == '-';
        folder += keep ? std::string(name.substr(at, letter.length)) : "_";
        at += letter.length;
    }
    return folder;
}

bool IsListed(const std::vector<std::string>& names, std::string_view name) {
    return std::ranges::any_of(names,
                               [&](const std::string& item) { return core::fEquals(item, name, core::Case::Ignore); });
}

}  // namespace

std::string Sites::ListFile() const { return paths_.Home() + "/param/sitedbs.ini"; }
std::string Sites::DirFile() const { return paths_.Home() + "/Dir.ini"; }

std::vector<std::string> Sites::Names() const {
    std::vector<std::string> names;
    const core::StrArray list = core::CDSSplitPlain(env_.ini.IniGet("Main", "DBNameLst", ListFile()));
    for (const std::string& name : list.Items())
        if (!name.empty()) names.push_back(name);
    return names;
}

std::string Sites::Folder(std::string_view name) const {
    if (!IsListed(Names(), name)) return {};
    return paths_.ToNative(env_.ini.IniGet(name, "Parm", ListFile()));
}

std::string Sites::CurrentFolder() const {
    std::string stored(core::fTrimRight(env_.ini.IniGet("Main", kMainDir, DirFile())));
    while (stored.ends_with('\\')) stored.pop_back();
    return stored.empty() ? std::string() : paths_.ToNative(stored);
}

std::string Sites::Site_Name() const {
    const std::string folder = CurrentFolder();
    return folder.empty() ? std::string() : env_.ini.IniGet("Main", "Parm", Site_Paths(folder).dbdef);
}

std::string Sites::FreeFolder(std::string_view name) const {
    const std::string base = paths_.Home() + "/sites/" + FolderName(name);
    std::string folder = base;
    for (int i = 1; IsNameTaken(folder); ++i) folder = base + "-" + std::to_string(i);
    return folder;
}

core::Result Sites::CopyTemplate(const std::string& folder, bool keep) const {
    const std::string from = paths_.Shared() + "/site/param/";
    const std::string to = folder + "/param/";
    for (const std::string_view name : kTemplateFiles) {
        core::Result copied = core::FileCopy(from + std::string(name), to + std::string(name));
        if (!copied) return copied;
    }
    return core::FileCopy(from + (keep ? "def/logline_keep.def" : "def/logline_nokeep.def"), to + "def/logline.def");
}

core::Result Sites::WriteOptions(const SitePaths& site, const SiteOptions& options) {
    core::IniStore& ini = env_.ini;
    const bool ok = ini.IniPut("Main", "Parm", options.name, site.dbdef, core::OnFail::Ignore) &&
                    ini.IniPutBool("Main", "LastKeepVal", options.LastKeepVal, site.dbdef, core::OnFail::Ignore) &&
                    ini.IniPutBool("Main", "EraseNonSE", options.EraseNonSE, site.dbdef, core::OnFail::Ignore) &&
                    ini.IniPutBool("Main", "Skip404", options.Skip404, site.dbdef, core::OnFail::Ignore) &&
                    ini.IniPutBool("Main", "RemQuery", options.RemQuery, site.dbdef, core::OnFail::Ignore) &&
                    ini.IniPutBool("Main", "RemFrag", options.RemFrag, site.dbdef, core::OnFail::Ignore);
    return ok ? core::Result{} : Fail("The options could not be written to " + site.dbdef);
}

core::Result Sites::ListSite(const std::string& name, const std::string& folder) {
    const core::Paths::Stored stored = paths_.ToStored(folder);
    if (!stored.result) return stored.result;
    const std::string list = env_.ini.IniGet("Main", "DBNameLst", ListFile());
    const bool ok = env_.ini.IniPut(name, "Parm", stored.text, ListFile(), core::OnFail::Ignore) &&
                    env_.ini.IniPutWhole("Main", "DBNameLst", core::CDSAdd(list, name, {}, 2).list, ListFile(),
                                         core::OnFail::Ignore);
    return ok ? core::Result{} : Fail("The site could not be added to the list in " + ListFile());
}

core::Result Sites::MakeCurrent(const std::string& folder) {
    const core::Paths::Stored stored = paths_.ToStored(folder);
    if (!stored.result) return stored.result;
    if (!env_.ini.IniPut("Main", kMainDir, stored.text, DirFile(), core::OnFail::Ignore))
        return Fail("The current site could not be written to " + DirFile());
    SetSectionFiles(env_.ini, paths_, Site_Paths(folder));
    return {};
}

core::Result Sites::FillFolder(const SitePaths& site, const SiteOptions& options) {
    core::Result done = core::MakeDir(site.folder + "/data");
    if (done) done = core::MakeDir(site.folder + "/param/def");
    if (done) done = CopyTemplate(site.folder, options.LastKeepVal);
    if (done) done = WriteOptions(site, options);
    if (!done) return done;
    try {
        CreateDatabaseFile(site.database);
    } catch (const StoreError& error) {
        return Fail(error.what());
    }
    return {};
}

core::Result Sites::CheckNewName(std::string_view name) const {
    if (core::Result well = CheckName(name); !well) return well;
    return IsListed(Names(), name) ? Fail("There is a site of that name already: " + std::string(name))
                                   : core::Result{};
}

bool Sites::ListCurrent() {
    const std::string folder = CurrentFolder(), name = Site_Name();
    return CheckSiteFolder(folder, paths_) && CheckNewName(name) && ListSite(name, folder);
}

// The list comes last: whatever ends the program before leaves a folder that no list names, and the name free.
Sites::Created Sites::Site_Create(const SiteOptions& options) {
    Created created;
    if (!(created.result = CheckNewName(options.name))) return created;
    created.folder = FreeFolder(options.name);
    const SitePaths site = Site_Paths(created.folder);
    if (!(created.result = FillFolder(site, options))) return created;
    if (!(created.result = ListSite(options.name, created.folder))) return created;
    if (!(created.result = MakeCurrent(created.folder))) {
        static_cast<void>(Unlist(options.name));  // the name stays free for another try
        return created;
    }
    for (const char* key : {"ShowOnlySelSiteArea", "ParmShowOnlySelSiteArea", "AddedLogLns_MustDoVisitsAdd"})
        env_.ini.IniPut("Main", key, "", site.lastVals, core::OnFail::Ignore);
    return created;
}

core::Result Sites::Site_Select(std::string_view name) {
    constexpr std::string_view kNotChanged =
        "Database NOT changed. A problem was found with the folder containing parameters and data for the database you "
        "selected.\r\rProblem Details:\r";
    const std::string folder = Folder(name);
    if (folder.empty()) return Fail(std::string(kNotChanged) + "No site of this name is on the list.");
    if (const core::Result usable = CheckSiteFolder(folder, paths_); !usable)
        return Fail(std::string(kNotChanged) + usable.error);
    return MakeCurrent(folder);
}

}  // namespace sitedb
