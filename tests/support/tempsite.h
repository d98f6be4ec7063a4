#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/env.h"
#include "core/errlog.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "sitedb/site.h"
#include "sitedb/sites.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace testsupport {

// A data home in a temporary folder with one open site, made as the program makes it.
class TempSite {
public:
    explicit TempSite(sitedb::SiteOptions options = Plain()) {
        EXPECT_TRUE(core::MakeDir(folder.File("param")).ok);
        const auto made = sites.Site_Create(options);
        EXPECT_TRUE(made.result.ok) << made.result.error;
        Reopen();
    }

    // Stores everything that a line has and leaves nothing out.
    static sitedb::SiteOptions Plain() {
        sitedb::SiteOptions options;
        options.name = "Shop";
        options.Skip404 = false;
        return options;
    }

    void Reopen() {
        site.reset();
        sitedb::OpenFailure failure;
        site = sitedb::Site::Site_Open(env, sites.CurrentFolder(), failure);
        ASSERT_NE(site, nullptr) << failure.error;
    }

    // Rows of a query, columns joined by "|", Null as "NULL".
    std::vector<std::string> Rows(std::string_view sql, int columns) {
        std::vector<std::string> rows;
        sitedb::Statement query = site->Db().Prepare(sql);
        while (query.Step()) {
            std::string row;
            for (int i = 0; i < columns; ++i) {
                if (i > 0) row += "|";
                row += query.IsNull(i) ? "NULL" : std::string(query.Text(i));
            }
            rows.push_back(std::move(row));
        }
        return rows;
    }

    TempFolder folder{};
    ScriptedUser user{};
    FakeProgress progress{};
    FixedClock clock{};
    core::Paths paths{folder.Path(), PARAMS_DIR};
    core::IniStore ini{user};
    core::EventLog events{clock, folder.File("errors.log")};
    core::Env env{ini, user, progress, events, clock};
    sitedb::Sites sites{env, paths};
    std::unique_ptr<sitedb::Site> site{};
};

// A combined log line from a few words; `time` is "02/Mar/2009:08:01:02".
inline std::string Combined(std::string_view ip, std::string_view time, std::string_view file,
                            std::string_view referrer = "-", int status = 200, int bytes = 100,
                            std::string_view agent = "Mozilla/5.0") {
    return std::string(ip) + " - - [" + std::string(time) + " +0000] \"GET " + std::string(file) + " HTTP/1.1\" " +
           std::to_string(status) + " " + std::to_string(bytes) + " \"" + std::string(referrer) + "\" \"" +
           std::string(agent) + "\"\n";
}

inline constexpr std::string_view kCombinedSpec =
    R"(%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] "%*r %r HTTP/%*s" %c %b "%f" "%B")";

}  // namespace testsupport
