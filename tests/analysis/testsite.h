#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "analysis/run.h"
#include "core/env.h"
#include "core/errlog.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "sitedb/site.h"
#include "sitedb/visitrows.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace testsupport {

// A site whose pages and visits a test writes down in a few words.
class TestSite {
public:
    TestSite() {
        namespace fs = std::filesystem;
        fs::create_directories(folder.Path() + "/data");
        fs::copy(std::string(PARAMS_DIR) + "/site/param", folder.Path() + "/param", fs::copy_options::recursive);
        fs::copy_file(folder.Path() + "/param/def/logline_keep.def", folder.Path() + "/param/def/logline.def");
        const sitedb::SitePaths files = sitedb::Site_Paths(folder.Path());
        sitedb::CreateDatabaseFile(files.database);
        ini.IniPutBool("Main", "LastKeepVal", true, files.dbdef);
        sitedb::SetSectionFiles(ini, paths, files);
        sitedb::OpenFailure failure;
        site = sitedb::Site::Site_Open(env, folder.Path(), failure);
        EXPECT_TRUE(site) << failure.error;
    }

    std::int32_t Page(const std::string& name) {
        return site->Pages().Page_FindOrAdd(name, sitedb::Add::Yes, site->Db());
    }

    struct V {
        std::int64_t stamp = 20260105120000;
        std::string term{};
        std::string engine{};
        std::vector<std::string> pages{};  // the first is the start page; "/" is the root, which enters no list
        std::vector<int> bytes{};
        std::int64_t end = 0;
    };
    void Visit(const V& v) {
        sitedb::VisitRow row;
        row.VisitID = ++lastVisit_;
        row.StartTimeStamp = v.stamp;
        row.EndTimeStamp = v.end == 0 ? v.stamp : v.end;
        if (!v.term.empty()) row.StzdSearchTerm = v.term;
        if (!v.engine.empty()) row.SearchEngine = v.engine;
        std::vector<sitedb::ClickLine> lines;
        for (std::size_t i = 0; i < v.pages.size(); ++i) {
            lines.push_back({v.stamp, 0, Page(v.pages[i]), i < v.bytes.size() ? v.bytes[i] : 1, 0});
            if (i == 0) row.StartPageID = lines.back().PageID;
        }
        sitedb::VisitStore(site->Db()).Insert(row, sitedb::Visit_ListClicks(lines));
    }
    // n equal visits.
    void Visits(int n, const V& v) {
        for (int i = 0; i < n; ++i) Visit(v);
    }

    void Put(std::string_view key, std::string_view value) { ini.IniPut("Main", key, value, core::kBySection); }

    // The stored keys, every value listed.
    analysis::AnalysisRequest Request(int field) {
        analysis::AnalysisRequest request = analysis::Analyse_Request(ini, field);
        request.threshold = 1;
        return request;
    }
    std::unique_ptr<analysis::SrchTrmData> Analyse(const analysis::AnalysisRequest& request) {
        return analysis::CVNA_VisitsAnalyse(env, *site, request).results;
    }

    TempFolder folder{};
    ScriptedUser user{};
    FakeProgress progress{};
    core::IniStore ini{user};
    FixedClock clock{};
    core::EventLog events{clock, folder.Path() + "/events.log"};
    core::Env env{ini, user, progress, events, clock};
    core::Paths paths{folder.Path(), PARAMS_DIR};
    std::unique_ptr<sitedb::Site> site{};

private:
    std::int32_t lastVisit_ = 0;
};

// "value visitors/stayed/pages" of each row, in the order of the rows.
inline std::vector<std::string> Rows(const analysis::SrchTrmData& results) {
    std::vector<std::string> rows;
    const analysis::ResultTable& table = results.table;
    for (std::size_t i = 1; i < table.STs.size(); ++i)
        rows.push_back(table.STs[i] + " " + std::to_string(table.Visitors[i]) + "/" + std::to_string(table.Stayed[i]) +
                       "/" + std::to_string(table.HtmPages[i]));
    return rows;
}

}  // namespace testsupport
