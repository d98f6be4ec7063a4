#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"
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
    std::string CurrentName() const;

    // Makes the folder, copies the template, writes the five options, makes it current. `made` is the new folder.
    struct Created {
        core::Result result{};
        std::string folder{};
    };
    Created Site_Create(const SiteOptions& options);

    // Tests the folder and makes the site current. On a problem nothing changes.
    core::Result Site_Select(std::string_view name);

private:
    std::string FreeFolder(std::string_view name) const;
    core::Result FillFolder(const SitePaths& site, const SiteOptions& options);
    core::Result CopyTemplate(const std::string& folder, bool keep) const;
    core::Result WriteOptions(const SitePaths& site, const SiteOptions& options);
    core::Result ListSite(const std::string& name, const std::string& folder);
    core::Result MakeCurrent(const std::string& folder);

    std::string ListFile() const;
    std::string DirFile() const;

    core::Env& env_;
    const core::Paths& paths_;
};

}  // namespace sitedb
