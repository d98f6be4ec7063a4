#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "shell/front.h"
#include "shell/session.h"

namespace shell {

// The site that the window works on. There is one as long as a database can be opened at all.
class CurrentSite {
public:
    CurrentSite(Session& session, Front& front) : session_(session), front_(front) {}

    sitedb::Site* Get() { return site_.get(); }
    std::string Name() const { return session_.Sites().Site_Name(); }

    // Opens the site that Dir.ini names and sets the caption. Why it could not be opened stays in Failure().
    bool pOpenCurSite();
    const sitedb::OpenFailure& Failure() const { return failure_; }
    // "" when the open database answers a query.
    std::string Check();
    void Close();

    // Another site: reports and database are closed, then it is opened. When that fails the old one is opened again;
    // the result then says that the database was not changed, and why.
    core::Result Change(std::string_view name);
    // Makes a site and changes to it.
    core::Result Create(const sitedb::SiteOptions& options);

private:
    core::Result OpenInstead(const std::string& oldFolder);

    Session& session_;
    Front& front_;
    std::unique_ptr<sitedb::Site> site_{};
    sitedb::OpenFailure failure_{};
};

}  // namespace shell
