#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "cli/host.h"
#include "core/files.h"
#include "shell/session.h"

namespace cli {

// What one call of the program works with. The commands of a family are set up with a reference to it and leave in
// `run` what is to be done once all arguments are read.
class Program {
public:
    std::string home{};  // --home
    std::string site{};  // --site, "" the current one
    std::function<int()> run{};

    CommandUser& User() { return user_; }
    bool CanAsk() const { return CommandUser::CanAsk(); }
    // The data home, made and filled at the first use.
    shell::Session& Session();
    core::Env& Env() { return Session().Env(); }
    core::IniStore& Ini() { return Env().ini; }

    // The site of the call. Says so when its last add did not finish.
    std::unique_ptr<sitedb::Site> OpenSite();
    // Its files alone, for commands that leave the data as they are; "::*" stands for them from here on.
    sitedb::SitePaths SiteFiles();
    // The same for a command that writes them: nobody else works on the site meanwhile.
    sitedb::SitePaths LockSite(core::FileLock& lock);

    bool HasSession() const { return session_ != nullptr; }
    // A failure that nobody expected: into the event log. Gives the message.
    std::string LogFailure(int number, std::string_view what);

private:
    std::string SiteFolder();

    ProgressLine progress_{};
    CommandUser user_{progress_};
    std::unique_ptr<shell::Session> session_{};
};

}  // namespace cli
