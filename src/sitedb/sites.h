#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"
#include "core/ports.h"
#include "sitedb/site.h"

// The list of sites, and which is current. No database is open here.
namespace sitedb {

class Sites {
public:
    Sites(core::Env& env, const core::Paths& paths) : env_(env), paths_(paths) {}

    std::vector<std::string> Names() const;
    // Native folder of a site; "" when the name is not on the list.
    std::string Folder(std::string_view name) const;
    // Native folder of the current site, "" when there is none.
    std::string CurrentFolder() const;
    std::string Site_Name() const;

    // A name that a new site can have: it can be shown, listed and stored, leads out of no folder, and is free.
    core::Result CheckNewName(std::string_view name) const;

    // Makes the folder, copies the template, writes the five options, makes it current. `made` is the new folder.
    struct Created {
        core::Result result{};
        std::string folder{};
    };
    Created Site_Create(const SiteOptions& options);

    // Puts the current site back on a list that does not have it; false when it is no sound site or has no good name.
    bool ListCurrent();

    // Tests the folder and makes the site current. On a problem nothing changes.
    core::Result Site_Select(std::string_view name);
    // The same for a folder that was current before.
    core::Result MakeCurrent(const std::string& folder);

    // Takes a site off the list, then asks ("SiteRemoveFolder") whether its folder goes to <home>/recycled. The current
    // site is refused. What is no site's folder stays where it is and the user is told ("SiteRemoveFailed").
    struct Removed {
        core::Result result{};  // of the list
        std::string folder{};   // that the site had
        std::string movedTo{};  // "": the folder stands where it was
        std::string kept{};     // why it stands there, "" when the user wanted so
    };
    Removed Site_Remove(std::string_view name);
    // Moves the folders of all sites, the current one too, and takes those off the list. Nothing is deleted.
    struct Recycled {
        std::string message{};  // for the user, with the list
        bool all = true;
    };
    Recycled Sites_Recycle();
    // The clean-up when the program is removed: asks, recycles, tells. False: the user did not want it.
    bool Sites_DeleteAll();
    static core::Question DeleteAllQuestion();

    // The five options of a site as a message; "" when it is not on the list.
    std::string Site_ShowOptions(std::string_view name) const;

    // sitedbs.ini: the list, and the first site's name.
    std::string ListFile() const;

private:
    std::string FreeFolder(std::string_view name) const;
    core::Result FillFolder(const SitePaths& site, const SiteOptions& options);
    core::Result CopyTemplate(const std::string& folder, bool keep) const;
    core::Result WriteOptions(const SitePaths& site, const SiteOptions& options);
    core::Result ListSite(const std::string& name, const std::string& folder);
    core::Result Unlist(const std::string& name);
    std::string WhyKept(const std::string& folder) const;
    core::Result Recycle(const std::string& folder, std::string& movedTo) const;

    std::string DirFile() const;

    core::Env& env_;
    const core::Paths& paths_;
};

}  // namespace sitedb
