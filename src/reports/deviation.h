#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "analysis/results.h"

namespace core {
class IniStore;
}

// The block of columns that holds a value's last days, months and years against each other.
namespace reports {

inline constexpr int kDevColumns = 26;

struct DevSettings {
    std::int32_t DevDays = 5;  // of the recent block
    std::string DevFmtVD = "#,###,##0.00";
    std::string DevTxtNoneVD{};
    std::string DevFmtPct = "0";
    std::string DevTxtNonePct{};
    std::string DevTxtFrom0Pct{};
};
DevSettings ReadDevSettings(core::IniStore& ini);
bool DevShow(core::IniStore& ini);

// Periods of the days of one analysis, and the texts of its cells. Made once for an analysis.
class Deviation {
public:
    Deviation(const analysis::DaysList& days, DevSettings settings);

    struct ColumnFacts {
        std::string header{};
        bool isValueCol = false;  // users per day
        bool isNoData = false;
    };
    const ColumnFacts& Facts(int column) const { return facts_[static_cast<std::size_t>(column)]; }

    using Cells = std::array<std::string, kDevColumns>;
    Cells OfValue(const analysis::ResultTable& table, std::int32_t valueIndex) const;

    enum Period : int { LastDays, PrevDays, ThisMo, LastMo, PrevMo, ThisYr, LastYr, kPeriods };
    struct Span {  // of day indexes, both included; empty for a period that lies before all days
        std::int32_t start = 0, end = -1;
        bool Has() const { return end >= 0; }
        std::int32_t Days() const { return end + 1 - start; }
    };
    const Span& Of(Period period) const { return spans_[static_cast<std::size_t>(period)]; }

private:
    std::int32_t MonthStart(std::int32_t index) const;
    std::int32_t YearStart(std::int32_t index) const;
    Span MonthBefore(const Span& span) const;
    ColumnFacts FactsOf(int column) const;
    std::string PerDay(double value, const std::string& none) const;
    std::string Percent(double x, double y) const;

    analysis::DaysList days_;
    DevSettings settings_;
    std::array<Span, kPeriods> spans_{};
    std::array<ColumnFacts, kDevColumns> facts_{};
};

}  // namespace reports
