#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "analysis/shownpages.h"
#include "sitedb/analysisrows.h"
#include "sitedb/visitrows.h"

namespace analysis {

// The pages of one visit, told apart into where it started and where it went on to.
struct VisitPageList {
    static constexpr std::int64_t kNoStart = -1;

    std::int64_t start = kNoStart;        // shown name, or kNoStart when only skipped types were asked for
    std::int32_t further = 0;             // further pages that count for the average, each PageID once
    std::vector<std::uint32_t> names{};   // shown names of further pages, each once
    std::vector<std::int32_t> pageIds{};  // as requested
    std::vector<double> bytes{};          // goes along with pageIds
};

// Reads the click lists of visits. Its buffers live for the whole run.
class VisitReader {
public:
    struct Wants {
        bool names = false;  // the list of further names
        bool bytes = false;
    };
    VisitReader(sitedb::Database& db, ShownPages& shown, Wants wants) : db_(db), shown_(shown), wants_(wants) {}

    // The result stands until the next call.
    VisitPageList& Visit_Pages(const sitedb::AnalysisRow& visit);

private:
    void Split(std::string_view pages, std::string_view bytes);
    void Further(const PageFact& fact);

    sitedb::Database& db_;
    ShownPages& shown_;
    Wants wants_;
    std::optional<sitedb::VisitPages> overflow_{};  // prepared at the first visit that needs it
    VisitPageList list_{};
    IdSet seen_{};
};

}  // namespace analysis
