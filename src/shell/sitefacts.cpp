#include "shell/sitefacts.h"

#include "core/dates.h"
#include "core/numbers.h"

namespace shell {
namespace {

constexpr std::string_view kNoData = "No data yet. Add the raw logs of your web server, then read the reports.";

std::string Day(std::int64_t stamp) { return core::fDateText(core::TS_Date(static_cast<double>(stamp)), "d mmm yyyy"); }

}  // namespace

std::string SiteFactsText(sitedb::Site& site) {
    const sitedb::SiteFacts facts = sitedb::ReadSiteFacts(site);
    if (facts.visits == 0) return std::string(kNoData);
    std::string text = core::CountText(static_cast<double>(facts.visits)) + " visits from " + Day(facts.firstStamp) +
                       " to " + Day(facts.lastStamp);
    if (site.ReadOnly()) text += "\rThe site's folder cannot be written: reports work, adding does not.";
    return text;
}

}  // namespace shell
