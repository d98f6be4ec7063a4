#include "visits/labels.h"

#include "core/text.h"
#include "core/utf8.h"
#include "names/searchterm.h"
#include "names/url.h"

namespace visits {
namespace {

constexpr std::string_view kStoredBar = "-*-";

}  // namespace

std::string_view Visit_STLabel(const sitedb::AnalysisRow& visit) {
    return visit.StzdSearchTerm.empty() ? names::kNotSearchEngine : visit.StzdSearchTerm;
}

std::string_view Visit_SELabel(const sitedb::AnalysisRow& visit) {
    return visit.SearchEngine.empty() ? names::kNotSearchEngine : visit.SearchEngine;
}

std::string Visit_RefrHost(std::int32_t visitId, sitedb::VisitReferrers& referrers) {
    referrers.Start(visitId);
    std::string_view referrer;
    while (referrers.Next(referrer)) {
        std::string_view host = names::URL_Parse(referrer).net;
        if (host.starts_with("www.")) host.remove_prefix(4);
        if (!host.empty() && core::LowerUtf8(host) != kIgnoredHost) return std::string(host);
    }
    return {};
}

std::string Visit_RefrLabel(const sitedb::AnalysisRow& visit, sitedb::VisitReferrers* referrers) {
    if (!visit.NonSErefr.empty()) return core::fReplace(visit.NonSErefr, kStoredBar, "|");
    if (!visit.SearchEngine.empty()) return std::string(visit.SearchEngine);
    std::string host = referrers == nullptr ? std::string() : Visit_RefrHost(visit.VisitID, *referrers);
    return host.empty() ? std::string(names::kUnknownReferrer) : host;
}

}  // namespace visits
