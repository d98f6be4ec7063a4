#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "analysis/fields.h"
#include "reports/lines.h"
#include "tests/analysis/testsite.h"

namespace testsupport {

using Texts = std::vector<std::string>;

// Results written down by hand, and what reports need around them.
class Handmade : public ::testing::Test {
protected:
    Handmade() {
        results.Analyzed_Field = analysis::kTerm;
        results.siteName = "Shop";
        results.days = {46000, 40};
    }
    std::int32_t Add(std::string_view value, std::int32_t visitors, std::int32_t stayed, std::int32_t pages,
                     std::array<std::int32_t, 4> targets = {}, std::int32_t day = 0) {
        return results.table.Result_Add(day, value,
                                        {.visitors = visitors, .pages = pages, .stayed = stayed, .targets = targets},
                                        results.Targets.size(), -1);
    }
    // Visits of a value that is there, on another day.
    void More(std::int32_t row, std::int32_t visitors, std::int32_t day, std::int32_t stayed = 0,
              std::array<std::int32_t, 4> targets = {}) {
        results.table.Result_Add(day, results.table.STs[static_cast<std::size_t>(row)],
                                 {.visitors = visitors, .pages = stayed, .stayed = stayed, .targets = targets},
                                 results.Targets.size(), row);
    }
    void Finish() {
        for (analysis::CrossTable* table : {&results.DistSE, &results.DistAlternate, &results.DistClickThru})
            table->cross.Finish();
    }
    reports::ReportGrid Show(reports::ReportKind kind, std::int32_t number = 20) {
        Finish();
        return pShowReport({env, results, deviation}, kind, number);
    }
    static Texts Lines(const reports::ReportGrid& grid) {
        Texts lines;
        for (const reports::GridRow& row : grid.rows) {
            std::string& line = lines.emplace_back();
            for (const std::string& cell : row.cells) line += cell + ";";
        }
        return lines;
    }

    analysis::SrchTrmData results{};
    const reports::Deviation* deviation = nullptr;
    testsupport::ScriptedUser user{};
    testsupport::FakeProgress progress{};
    core::IniStore ini{user};
    testsupport::FixedClock clock{};
    core::EventLog events{clock, ""};
    core::Env env{ini, user, progress, events, clock};
};

}  // namespace testsupport
