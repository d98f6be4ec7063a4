#include <algorithm>
#include <array>

#include "core/cdsini.h"
#include "core/env.h"
#include "core/fileio.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "core/text.h"
#include "sitedb/sitefolder.h"
#include "sitedb/sites.h"

// How sites leave: off the list, and their folders to the recycled folder.
namespace sitedb {
namespace {

constexpr std::string_view kAskNoMore = "NoAskDeleteAll";
constexpr int kYes = 1;

core::Question FolderQuestion(const std::string& folder) {
    return {.id = "SiteRemoveFolder",
            .message =
                "Site removed from this List.\r\rDo you also want to delete all parameters and data for this "
                "site?\r\r*** WARNING This will move the entire directory to Recycled and it will be deleted "
                "permanently whenever you next empty the recycle folder. Any files you created manually or with "
                "any other program in the same folder will be deleted.\r\rAre you sure?\r\rPress YES to erase "
                "folder: " +
                core::fileio::Shown(folder),
            .buttons = "&Yes|&No",
            .cancelButton = 2};
}

std::string MoveFailedText(const std::string& folder, const std::string& why) {
    return "Delete folder " + core::fileio::Shown(folder) +
           " FAILED.\r\rTry to delete the folder again using Halvern or other explorer-replacement software after "
           "ending Corvane and-or restarting your computer.\r\r" +
           why;
}

struct OptionLine {
    std::string_view text;
    bool SiteOptions::*value;
    bool advanced;
};
constexpr std::array kOptionLines{
    OptionLine{"Skip 404s [Skip Log Lines with HTTP status 4xx or 5xx]: ", &SiteOptions::Skip404, false},
    OptionLine{"Skip visitors NOT referred by a search engine: ", &SiteOptions::EraseNonSE, false},
    OptionLine{"Remove Query String from page name stored: ", &SiteOptions::RemQuery, true},
    OptionLine{"Remove Fragment from page name stored: ", &SiteOptions::RemFrag, true},
    OptionLine{"Store (Keep) Extra data [referrer, user agent etc.]: ", &SiteOptions::LastKeepVal, true},
};

}  // namespace

// The list first: a name without a folder would be asked about for ever, a section that no name leads to is not read.
core::Result Sites::Unlist(const std::string& name) {
    const core::CDSIniRemoved removed =
        core::CDSRemoveIni(env_.ini, {"Main", "DBNameLst", ListFile()}, name, {}, core::Case::Ignore);
    if (!removed.written || !removed.result.removed)
        return {false, "The site could not be taken off the list in " + ListFile() + ". Nothing was changed."};
    // A list that somebody wrote may name the section that holds it.
    if (!core::fEquals(name, "Main", core::Case::Ignore))
        env_.ini.IniEraseSection(name, ListFile(), core::OnFail::Ignore);
    return {};
}

// Two names may stand for one folder, or a site may have been made below another: nobody else's data goes along.
std::string Sites::WhyKept(const std::string& folder) const {
    if (const core::Result site = CheckSiteFolder(folder, paths_); !site) return site.error;
    std::vector<std::string> others;
    for (const std::string& name : Names()) others.push_back(Folder(name));
    others.push_back(CurrentFolder());
    for (const std::string& other : others)
        if (!other.empty() && IsWithin(other, folder))
            return "Another site of the list, or the current one, has its data in this folder.";
    return {};
}

core::Result Sites::Recycle(const std::string& folder, std::string& movedTo) const {
    core::FileLock lock;  // moves with the folder
    if (lock.Lock(Site_Paths(folder).lock).taken)
        return {false, "Another copy of this program is using the site's database. Close it and try again."};
    const std::string recycled = paths_.Home() + "/recycled";
    if (core::Result made = core::MakeDir(recycled); !made) return made;
    std::string bare = folder;
    while (bare.ends_with('/')) bare.pop_back();
    const std::string base = recycled + "/" + core::fNameOf(bare);
    std::string target = base;
    for (int n = 1; IsNameTaken(target); ++n) target = base + "-" + std::to_string(n);
    if (core::Result moved = core::FileRename(bare, target); !moved && !IsNameTaken(target)) return moved;
    movedTo = target;
    return {};
}

Sites::Removed Sites::Site_Remove(std::string_view name) {
    Removed removed;
    removed.folder = Folder(name);
    const std::vector<std::string> names = Names();
    const auto listed = std::ranges::find_if(
        names, [&](const std::string& item) { return core::fEquals(item, name, core::Case::Ignore); });
    if (listed == names.end())
        removed.result = {false, "There is no site of that name: " + std::string(name)};
    else if (core::fEquals(name, Site_Name(), core::Case::Ignore) ||
             (!removed.folder.empty() && removed.folder == CurrentFolder()))
        removed.result = {false, "The current site cannot be removed. Select another site first."};
    else
        removed.result = Unlist(*listed);
    if (!removed.result) return removed;

    removed.kept = WhyKept(removed.folder);
    if (!removed.kept.empty()) {
        env_.user.Tell("SiteRemoveFailed",
                       "Site removed from this List. Its folder was left as it is.\r\r" + removed.kept);
        return removed;
    }
    if (env_.user.Ask(FolderQuestion(removed.folder)).button != kYes) return removed;
    if (const core::Result moved = Recycle(removed.folder, removed.movedTo); !moved) {
        removed.kept = moved.error;
        env_.user.Tell("SiteRemoveFailed", MoveFailedText(removed.folder, moved.error));
    }
    return removed;
}

// The folder first: were the list first, a kill between the two would leave data that no list names.
Sites::Recycled Sites::Sites_Recycle() {
    Recycled recycled;
    std::string moved, kept, listed;
    for (const std::string& name : Names()) {
        const std::string folder = Folder(name);
        std::string movedTo;
        core::Result done = CheckSiteFolder(folder, paths_);
        if (done) done = Recycle(folder, movedTo);
        if (done)
            moved += "\r" + name + " - " + core::fileio::Shown(folder);
        else
            kept += "\r" + name + " - " + done.error;
        if (done && !(done = Unlist(name))) listed += "\r" + name;
        recycled.all = recycled.all && done;
    }
    if (Names().empty()) {  // as before the first start
        env_.ini.IniErase("Main", "NmFirstSite", ListFile(), core::OnFail::Ignore);
        env_.ini.IniErase("Main", "Main Data Dir", DirFile(), core::OnFail::Ignore);
    }
    recycled.message = moved.empty() ? "No database was moved." : "Databases moved to recycle directory:\r" + moved;
    if (!kept.empty()) recycled.message += "\r\rNot moved:\r" + kept;
    if (!listed.empty()) recycled.message += "\r\rMoved, but still in " + ListFile() + ":\r" + listed;
    return recycled;
}

core::Question Sites::DeleteAllQuestion() {
    return {.id = "SitesDeleteAll",
            .message = "Do you want to delete all site databases that you created?",
            .buttons = "&Yes|&No",
            .cancelButton = 2};
}

bool Sites::Sites_DeleteAll() {
    if (env_.ini.IniGetBool("Main", kAskNoMore, ListFile())) return false;
    core::Question question = DeleteAllQuestion();
    question.checkBox = "Do &not Show this Message again";
    const core::Answer answer = env_.user.Ask(question);
    if (answer.boxTicked) env_.ini.IniPutBool("Main", kAskNoMore, true, ListFile(), core::OnFail::Ignore);
    if (answer.button != kYes) return false;
    env_.user.Tell("SitesRecycled", Sites_Recycle().message);
    return true;
}

std::string Sites::Site_ShowOptions(std::string_view name) const {
    const std::string folder = Folder(name);
    if (folder.empty()) return {};
    const SiteOptions options = ReadSiteOptions(env_.ini, Site_Paths(folder));
    std::string plain, advanced;
    for (const OptionLine& line : kOptionLines)
        (line.advanced ? advanced : plain).append("\r").append(line.text).append(options.*line.value ? "Yes" : "No");
    return "Database Options for Site DB: " + std::string(name) + "\r" + plain + "\r\rAdvanced:" + advanced;
}

}  // namespace sitedb
