#pragma once

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "analysis/counting.h"
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
        const std::uint32_t row = counting->NewRow(value);
        Count(row, day, {.visitors = visitors, .pages = pages, .stayed = stayed, .targets = targets});
        return static_cast<std::int32_t>(row);
    }
    // Visits of a value that is there, on another day.
    void More(std::int32_t row, std::int32_t visitors, std::int32_t day, std::int32_t stayed = 0,
              std::array<std::int32_t, 4> targets = {}) {
        Count(static_cast<std::uint32_t>(row), day,
              {.visitors = visitors, .pages = stayed, .stayed = stayed, .targets = targets});
    }
    void Count(std::uint32_t row, std::int32_t day, const analysis::VisitCounts& counts) {
        counting->Result_Add(row, day, counts);
    }
    void Cross(analysis::Axis axis, std::uint32_t row, std::string_view label, std::int32_t count) {
        counting->Cross_Add(axis, row, counting->TableOf(axis).second.FindOrAdd(label), count);
    }
    void Word(std::string_view word) {
        const std::uint32_t number = results.words.NumberOf(word);
        ++results.words.Visitors[number];
    }
    // Nothing is added afterwards but to new results.
    void Finish() {
        if (counting) counting->Finish();
        counting.reset();
    }
    void StartAnew() {
        results.table = {};
        for (analysis::CrossTable* table : {&results.DistSE, &results.DistAlternate, &results.DistClickThru})
            *table = {};
        counting.emplace(results);
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
    std::optional<analysis::Counting> counting{std::in_place, results};
    const reports::Deviation* deviation = nullptr;
    testsupport::ScriptedUser user{};
    testsupport::FakeProgress progress{};
    core::IniStore ini{user};
    testsupport::FixedClock clock{};
    core::EventLog events{clock, ""};
    core::Env env{ini, user, progress, events, clock};
};

}  // namespace testsupport
