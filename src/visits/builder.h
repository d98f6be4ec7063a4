#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sitedb/visitrows.h"
#include "visits/assignments.h"
#include "visits/finder.h"

namespace visits {

// A stored line as the building of visits takes it. Views live for the call.
struct VisitLine {
    std::int32_t LogLnID = 0;
    std::string_view IP{};
    std::int64_t Timestamp = 0;
    std::int32_t PageID = 0;
    std::int32_t Bytes = 0;
    std::int32_t CntDupes = 0;
    std::string_view term{};    // as extracted
    std::string_view engine{};  // without a term: an assistant
};

// Groups lines into visits by address, time and term. Lines come in the order of the text of address and number, so
// visits of one address may be interleaved with those of addresses that begin with it; whatever can still come back is
// held in memory and written when no further line can belong to it.
class VisitBuilder {
public:
    struct Settings {
        std::int32_t LmtVisitLines = 1000;
        std::int32_t LastVisitID = -1;
        bool hasVisits = false;     // visits of earlier runs may be continued
        std::int64_t earliest = 0;  // of the waiting lines' timestamps
        std::int64_t latest = 0;
    };
    VisitBuilder(sitedb::VisitStore& store, Assignments& assignments, const Settings& settings);

    void Take(const VisitLine& line);
    void Finish();

    std::int32_t LastVisitID() const { return lastVisitId_; }
    std::int64_t VisitsMade() const { return visitsMade_; }
    std::int64_t VisitsContinued() const { return visitsContinued_; }
    bool OverLimit() const { return overLimit_; }
    // One for each visit over the limit, in the order of the visits.
    std::vector<std::string> Messages() const;
    // "engine|yyyymmdd" and the number of lines with a term or of an assistant.
    const std::map<std::string, std::int64_t>& FoundTerms() const { return foundTerms_; }

private:
    // All visits of one address that a line can still join.
    struct Address {
        std::string ip{};
        std::vector<std::unique_ptr<OpenVisit>> visits{};  // by number
        VisitFinder finder{};
    };

    Address& AddressOf(const VisitLine& line);
    void DropAddresses(std::string_view sortText);
    void Write(Address& address);
    OpenVisit* Earlier(Address& address, const VisitLine& line, std::int64_t seconds, bool& firstData);
    OpenVisit& Create(Address& address, const VisitLine& line);
    void Close(OpenVisit* visit);
    void AddTerm(OpenVisit& visit, const VisitLine& line);
    void CountEngine(const VisitLine& line);
    void AddLine(OpenVisit& visit, const VisitLine& line);

    sitedb::VisitStore& store_;
    Assignments& assignments_;
    Settings settings_;
    std::vector<std::unique_ptr<Address>> addresses_{};  // each begins with the one before
    std::string sortText_{};
    std::string previousIp_{};
    bool firstLine_ = true;
    OpenVisit* current_ = nullptr;
    Address* currentAddress_ = nullptr;

    std::int32_t lastVisitId_ = -1;
    std::int64_t visitsMade_ = 0;
    std::int64_t visitsContinued_ = 0;
    bool overLimit_ = false;
    std::map<std::int32_t, std::int64_t> overLimitStarts_{};  // first stamp by visit
    std::map<std::string, std::int64_t> foundTerms_{};
};

}  // namespace visits
