#include "reports/cells.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "core/numbers.h"

namespace reports {
namespace {

struct PlainFormat {
    std::string_view format;
    int places;
    std::int64_t scale;
    double limit;  // beyond it the number has groups, or too many digits
};
constexpr double kNoGroups = 999;
constexpr double kFewDigits = 1e9;
constexpr std::array kPlain{
    PlainFormat{"0", 0, 1, kFewDigits},           PlainFormat{"0.0", 1, 10, kFewDigits},
    PlainFormat{"0.00", 2, 100, kFewDigits},      PlainFormat{"#,###,##0", 0, 1, kNoGroups},
    PlainFormat{"#,###,##0.0", 1, 10, kNoGroups}, PlainFormat{"#,###,##0.00", 2, 100, kNoGroups},
};
// So close to a half it takes the digits of the number to tell which way it goes.
constexpr double kNearHalf = 1e-4;

std::string WithPoint(std::int64_t scaled, const PlainFormat& format, bool negative) {
    std::array<char, 32> room{};
    char* at = room.data();
    if (negative && scaled != 0) *at++ = '-';
    at = std::to_chars(at, room.data() + room.size(), scaled / format.scale).ptr;
    if (format.places > 0) *at++ = '.';
    for (std::int64_t unit = format.scale / 10; unit > 0; unit /= 10)
        *at++ = static_cast<char>('0' + scaled / unit % 10);
    return {room.data(), at};
}

}  // namespace

std::string NumberCell(double value, std::string_view format) {
    for (const PlainFormat& plain : kPlain) {
        if (plain.format != format) continue;
        const double size = std::abs(value);
        if (!(size < plain.limit)) break;
        const double scaled = size * static_cast<double>(plain.scale), whole = std::floor(scaled);
        if (std::abs(scaled - whole - 0.5) < kNearHalf) break;
        return WithPoint(static_cast<std::int64_t>(whole) + (scaled - whole > 0.5 ? 1 : 0), plain, value < 0);
    }
    return core::fFormat(value, format);
}

std::string PercentText(double part, double base, std::string_view format) {
    return base == 0 ? std::string(kNotApplicable) : NumberCell(part * 100 / base, format) + " %";
}

void WriteCounts(ReportGrid& grid, std::size_t row, std::string_view label, const LineRecord& line) {
    const double stayed = line.LineAdd[kAddStayed];
    grid.Cell(row, kColValue) = label;
    grid.Cell(row, kColVisitors) = core::NumText(line.LineVisitors);
    grid.Cell(row, kColStayed) = core::NumText(stayed);
    grid.Cell(row, kColStayPercent) = PercentText(stayed, line.LineVisitors, "0");
    grid.Cell(row, kColAverage) =
        stayed == 0 ? std::string(kNotApplicable) : NumberCell(line.LinePages / stayed, "0.0");
}

void WriteTarget(ReportGrid& grid, std::size_t row, std::size_t target, double count, const LineRecord& line) {
    const int first = kFirstTargetColumn + kTargetColumns * static_cast<int>(target);
    grid.Cell(row, first) = core::NumText(count);
    grid.Cell(row, first + 1) = PercentText(count, line.LineVisitors, "0");
    grid.Cell(row, first + 2) = PercentText(count, line.LineAdd[kAddStayed], "0");
}

void WriteTargets(ReportGrid& grid, std::size_t row, const LineRecord& line) {
    for (std::size_t t = 0; t < grid.targets; ++t) WriteTarget(grid, row, t, line.LineAdd[kAddTargets + t], line);
}

}  // namespace reports
