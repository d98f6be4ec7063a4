#include "visits/builder.h"

#include <algorithm>
#include <utility>

#include "core/cds.h"
#include "core/dates.h"
#include "core/errnums.h"
#include "core/error.h"
#include "core/utf8.h"
#include "names/searchterm.h"
#include "sitedb/columns.h"

namespace visits {
namespace {

constexpr std::int32_t kMaxId = 2147483647;
constexpr std::int32_t kOverLimit = -1;

std::int64_t SecondsOf(std::int64_t timestamp) {
    const auto stamp = static_cast<double>(timestamp);
    return std::int64_t{core::TS_Date(stamp)} * 86400 + core::TS_Time(stamp);
}

std::int64_t Moved(std::int64_t timestamp, double seconds) {
    return static_cast<std::int64_t>(core::TS_AddSecs(static_cast<double>(timestamp), seconds));
}

}  // namespace

VisitBuilder::VisitBuilder(sitedb::VisitStore& store, Assignments& assignments, const Settings& settings)
    : store_(store), assignments_(assignments), settings_(settings), lastVisitId_(settings.LastVisitID) {
    // No visit outside this window can be joined by any of the waiting lines.
    settings_.earliest = Moved(settings.earliest, -static_cast<double>(kTimeOut));
    settings_.latest = Moved(settings.latest, static_cast<double>(kTimeOut));
}

// Lines are ordered by the text of address and number, so an address is done when that text no longer begins with it.
void VisitBuilder::DropAddresses(std::string_view sortText) {
    while (!addresses_.empty() && !sortText.starts_with(addresses_.back()->ip)) {
        if (currentAddress_ == addresses_.back().get()) {
            current_ = nullptr;
            currentAddress_ = nullptr;
        }
        Write(*addresses_.back());
        addresses_.pop_back();
    }
}

VisitBuilder::Address& VisitBuilder::AddressOf(const VisitLine& line) {
    sortText_.assign(line.IP).append(std::to_string(line.LogLnID));
    DropAddresses(sortText_);
    const auto at =
        std::ranges::find_if(addresses_, [&](const auto& address) { return address->ip.size() >= line.IP.size(); });
    if (at != addresses_.end() && (*at)->ip == line.IP) return **at;
    auto address = std::make_unique<Address>();
    address->ip = line.IP;
    if (settings_.hasVisits) {
        for (sitedb::VisitRow& row : store_.OfAddress(line.IP, settings_.earliest, settings_.latest)) {
            auto visit = std::make_unique<OpenVisit>();
            visit->isNew = false;
            visit->startSeconds = SecondsOf(row.StartTimeStamp);
            visit->endSeconds = SecondsOf(row.EndTimeStamp);
            visit->row = std::move(row);
            address->visits.push_back(std::move(visit));
            address->finder.Put(*address->visits.back(), address->visits.size() - 1);
        }
    }
    return **addresses_.insert(at, std::move(address));
}

void VisitBuilder::Close(OpenVisit* visit) {
    if (visit == nullptr || currentAddress_ == nullptr) return;
    const auto at = std::ranges::lower_bound(currentAddress_->visits, visit->row.VisitID, {},
                                             [](const auto& item) { return item->row.VisitID; });
    currentAddress_->finder.Put(*visit, static_cast<std::size_t>(at - currentAddress_->visits.begin()));
}

OpenVisit* VisitBuilder::Earlier(Address& address, const VisitLine& line, std::int64_t seconds, bool& firstData) {
    const std::size_t index = address.finder.Find(address.visits, line.term, line.engine, seconds);
    if (index == VisitFinder::npos) return nullptr;
    OpenVisit* visit = address.visits[index].get();
    firstData = Visit_TimeOK(*visit, seconds).earlier;
    return visit;
}

OpenVisit& VisitBuilder::Create(Address& address, const VisitLine& line) {
    if (lastVisitId_ >= kMaxId)
        throw core::ErrorNumber(core::errnum::kStore, "The database has no free visit numbers left.");
    auto visit = std::make_unique<OpenVisit>();
    visit->row.VisitID = ++lastVisitId_;
    visit->row.CDSIPs = core::CDSAdd("", line.IP, {}, 1).list;
    ++visitsMade_;
    address.visits.push_back(std::move(visit));
    return *address.visits.back();
}

void VisitBuilder::AddTerm(OpenVisit& visit, const VisitLine& line) {
    std::string raw(line.term);
    const std::string standard = names::ST_Std(raw);
    if (standard.empty()) return;
    visit.row.StzdSearchTerm = core::CutUtf8(standard, sitedb::kTermWidth);
    if (raw != standard) visit.row.SearchTerm = core::CutUtf8(raw, sitedb::kTermWidth);
    visit.row.SearchEngine = core::CutUtf8(line.engine, sitedb::kEngineWidth);
    CountEngine(line);
}

void VisitBuilder::CountEngine(const VisitLine& line) {
    ++foundTerms_[std::string(line.engine) + "|" + std::to_string(line.Timestamp / 1000000)];
}

// A visit whose lines come with ever earlier times begins anew with each of them and is told once.
std::vector<std::string> VisitBuilder::Messages() const {
    const std::string limit = std::to_string(settings_.LmtVisitLines);
    std::vector<std::string> messages;
    for (const auto& [visit, start] : overLimitStarts_)
        messages.push_back("Probable Bot. Single visitor accessed more than " + limit + " files. Only first " + limit +
                           " log lines saved for that visit. Visit at: " + std::to_string(start));
    return messages;
}

void VisitBuilder::AddLine(OpenVisit& visit, const VisitLine& line) {
    sitedb::VisitRow& row = visit.row;
    if (row.Files < kMaxId) ++row.Files;
    if (settings_.LmtVisitLines >= 1 && row.Files > settings_.LmtVisitLines) {
        overLimit_ = true;
        overLimitStarts_[row.VisitID] = row.StartTimeStamp;
        assignments_.Add({line.LogLnID, kOverLimit});
        return;
    }
    visit.lines.push_back({line.Timestamp, line.LogLnID, line.PageID, line.Bytes, line.CntDupes});
    assignments_.Add({line.LogLnID, row.VisitID});
}

void VisitBuilder::Take(const VisitLine& line) {
    const std::int64_t seconds = SecondsOf(line.Timestamp);
    Address& address = AddressOf(line);
    bool firstData = false;
    OpenVisit* visit = nullptr;
    if (!firstLine_ && current_ != nullptr && line.IP == previousIp_) {
        const TimeTest time = Visit_TimeOK(*current_, seconds);
        if (time.ok && Visit_TermOK(current_->row, line.term, line.engine)) {
            visit = current_;
            firstData = time.earlier;
        }
    }
    if (visit == nullptr) {
        Close(current_);
        visit = Earlier(address, line, seconds, firstData);
        if (visit != nullptr && !visit->touched && !visit->isNew) ++visitsContinued_;
    }
    const bool isNew = visit == nullptr;
    if (isNew) visit = &Create(address, line);
    visit->touched = true;
    sitedb::VisitRow& row = visit->row;
    if (isNew || firstData) {
        row.FirstIP = line.IP;
        row.StartLogLnID = line.LogLnID;
        row.StartPageID = line.PageID;
        row.StartTimeStamp = line.Timestamp;
        visit->startSeconds = seconds;
    }
    if (!line.term.empty())
        AddTerm(*visit, line);
    else if (!line.engine.empty())
        CountEngine(line);  // an assistant: counted, but a visit's engine is one that sent a term
    if (isNew || seconds > visit->endSeconds) {
        row.EndTimeStamp = line.Timestamp;
        visit->endSeconds = seconds;
    }
    AddLine(*visit, line);
    current_ = visit;
    currentAddress_ = &address;
    previousIp_ = line.IP;
    firstLine_ = false;
}

void VisitBuilder::Write(Address& address) {
    // The table is kept in order of time, so rows go into it in that order.
    std::ranges::stable_sort(address.visits, {}, [](const auto& visit) { return visit->row.StartTimeStamp; });
    for (const auto& visit : address.visits) {
        if (!visit->touched) continue;
        if (!visit->isNew) {
            const std::vector<sitedb::ClickLine> stored = store_.LinesOf(visit->row.VisitID);
            visit->lines.insert(visit->lines.end(), stored.begin(), stored.end());
        }
        std::ranges::sort(visit->lines, [](const sitedb::ClickLine& a, const sitedb::ClickLine& b) {
            return a.Timestamp != b.Timestamp ? a.Timestamp < b.Timestamp : a.LogLnID < b.LogLnID;
        });
        const sitedb::Clicks clicks = sitedb::Visit_ListClicks(visit->lines);
        if (visit->isNew) {
            store_.Insert(visit->row, clicks);
        } else {
            store_.Update(visit->row, clicks);
        }
    }
}

void VisitBuilder::Finish() {
    current_ = nullptr;
    currentAddress_ = nullptr;
    while (!addresses_.empty()) {
        Write(*addresses_.back());
        addresses_.pop_back();
    }
}

}  // namespace visits
