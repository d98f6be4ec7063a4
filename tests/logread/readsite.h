#pragma once

#include <string>
#include <utility>
#include <vector>

#include "logread/readfiles.h"
#include "tests/support/tempsite.h"

namespace logread {

// A site with one format, and reads of texts.
struct ReadSite : testsupport::TempSite {
    explicit ReadSite(sitedb::SiteOptions options = Plain()) : testsupport::TempSite(std::move(options)) {
        ini.IniPut("combined", "DefsCDS", "|" + std::string(testsupport::kCombinedSpec), Formats());
    }
    std::string Formats() const { return folder.File("param/logfmts.ini"); }

    ReadOutcome Read(const std::vector<std::string>& logs, ReadRequest request = {}) {
        for (std::size_t i = 0; i < logs.size(); ++i)
            request.files.push_back({folder.Write("log" + std::to_string(i), logs[i]), ""});
        request.formatFile = Formats();
        request.defaultFormat = "combined";
        request.NoPromptOverlap = request.NoPromptInvalid = true;
        return RawLog_AddData_ReadLogFiles(env, *site, std::move(request));
    }
    std::int64_t Lines() { return site->Db().Scalar("SELECT count(*) FROM logline"); }
};

}  // namespace logread
