#include "reports/html.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/numbers.h"
#include "core/text.h"
#include "reports/palette.h"

namespace reports {
namespace {

constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>@title</title>
<style>
:root { color-scheme: light dark; --line: #8886; --soft: #8881; --blue: #06c; }
body { font: 15px/1.5 system-ui, sans-serif; margin: 2rem auto; max-width: 90rem; padding: 0 1.5rem; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0 0 .25rem; }
.desc { white-space: pre-line; opacity: .75; margin: 0 0 1.5rem; }
figure { margin: 0 0 1.5rem; }
figcaption { font-size: .85rem; opacity: .75; }
svg { width: 100%; height: auto; font-size: 11px; }
svg text { fill: currentColor; }
.legend { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; font-size: .85rem; }
.legend i { display: inline-block; width: 1.4em; height: .3em; margin-right: .4em; vertical-align: middle; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; font-variant-numeric: tabular-nums; font-size: .9rem; }
th, td { padding: .3rem .6rem; border-bottom: 1px solid var(--line); text-align: right; vertical-align: top; white-space: pre-line; }
th { position: sticky; top: 0; background: Canvas; vertical-align: bottom; }
th button { font: inherit; font-weight: 600; background: none; border: 0; color: inherit; padding: 0; text-align: inherit; cursor: pointer; }
th[aria-sort=descending] button::after { content: " \25BE"; }
th[aria-sort=ascending] button::after { content: " \25B4"; }
.l { text-align: left; overflow-wrap: anywhere; min-width: 12rem; }
td.d { font-size: .85em; min-width: 12rem; text-align: left; }
tbody tr:hover { background: var(--soft); }
tfoot td { font-weight: 600; border-bottom: 0; border-top: 2px solid var(--line); }
@media print { body { margin: 0; } th { position: static; } }
</style>
</head>
<body>
)";

// Numbers stand before texts; the last lines stay last.
constexpr std::string_view kScript = R"(<script>
(() => {
  const body = document.querySelector("tbody"), heads = [...document.querySelectorAll("th")];
  const number = text => { const n = parseFloat(text.replace(/,/g, "")); return isNaN(n) ? -Infinity : n; };
  heads.forEach((head, column) => head.firstElementChild.addEventListener("click", () => {
    const left = head.classList.contains("l"), now = head.getAttribute("aria-sort");
    const next = now ? (now === "descending" ? "ascending" : "descending") : left ? "ascending" : "descending";
    const key = row => left ? row.cells[column].textContent : number(row.cells[column].textContent);
    const rows = [...body.rows].map(row => [key(row), row]), sign = next === "descending" ? -1 : 1;
    rows.sort((a, b) => sign * (a[0] < b[0] ? -1 : a[0] > b[0] ? 1 : 0));
    heads.forEach(other => other.removeAttribute("aria-sort"));
    head.setAttribute("aria-sort", next);
    body.append(...rows.map(row => row[1]));
  }));
})();
</script>
)";

std::string Escaped(std::string_view text) {
    std::string html;
    html.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            case '\'':
                html += "&#39;";
                break;
            case '\r':
                break;
            default:
                if (static_cast<unsigned char>(c) >= 32 || c == '\n' || c == '\t')
                    html += c;
                else
                    html += ' ';
        }
    }
    return html;
}

std::string Lines(std::string_view text) {
    return Escaped(core::fReplace(core::fReplace(text, "\r\n", "\n"), "\r", "\n"));
}

std::string Number(double value) { return core::fFormat(value, "0.0"); }

// The next of 4, 5, 10, 20, 50 ... at or above a value.
double NiceTop(double value) {
    if (value <= 4) return 4;
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 5.0, 10.0})
        if (value <= step * power) return step * power;
    return value;
}

class Svg {
public:
    explicit Svg(const ChartData& chart) : chart_(chart) {
        double top = 0;
        for (const ChartRow& row : chart.rows)
            for (std::size_t s = 0; s < kScaleHelper; ++s) top = std::max(top, Shown(row, s));
        top_ = NiceTop(top);
    }

    std::string Text() const {
        std::string svg = "<svg viewBox=\"0 0 960 260\" role=\"img\" aria-label=\"Trend\">\n";
        for (int step = 0; step <= 4; ++step) {
            const double value = top_ * step / 4;
            svg += "<line x1=\"50\" x2=\"950\" y1=\"" + Number(Y(value)) + "\" y2=\"" + Number(Y(value)) +
                   "\" stroke=\"currentColor\" stroke-opacity=\".15\"/><text x=\"44\" y=\"" + Number(Y(value) + 4) +
                   "\" text-anchor=\"end\">" + core::NumText(value) + "</text>\n";
        }
        for (std::size_t s = kScaleHelper; s-- > 0;)
            if (HasSeries(s)) svg += Line(s);
        return svg + Dates() + "</svg>\n";
    }
    std::string Legend() const {
        std::string legend = "<div class=\"legend\">";
        for (std::size_t s = 0; s < kScaleHelper; ++s)
            if (HasSeries(s))
                legend += "<span><i style=\"background:" + std::string(kSeriesColours[s]) + "\"></i>" +
                          Escaped(chart_.headers[s]) + "</span>";
        return legend + "</div>\n";
    }

private:
    static constexpr double kLeft = 50, kRight = 950, kTop = 12, kBottom = 230;

    static double Shown(const ChartRow& row, std::size_t series) { return row.values[series].value_or(0); }
    bool HasSeries(std::size_t series) const {
        return !chart_.Removed(series) &&
               std::ranges::any_of(chart_.rows, [&](const ChartRow& row) { return row.values[series].has_value(); });
    }
    double X(std::size_t row) const {
        const double last = chart_.rows.size() > 1 ? static_cast<double>(chart_.rows.size() - 1) : 1;
        return kLeft + (kRight - kLeft) * static_cast<double>(row) / last;
    }
    double Y(double value) const { return kBottom - (kBottom - kTop) * value / top_; }

    std::string Line(std::size_t series) const {
        std::string points;
        for (std::size_t row = 0; row < chart_.rows.size(); ++row)
            points += Number(X(row)) + "," + Number(Y(Shown(chart_.rows[row], series))) + " ";
        return "<polyline fill=\"none\" stroke=\"" + std::string(kSeriesColours[series]) +
               "\" stroke-width=\"2\" stroke-linejoin=\"round\" points=\"" + points + "\"/>\n";
    }
    std::string Dates() const {
        constexpr std::size_t kMost = 12;
        std::string text;
        const std::size_t step = std::max<std::size_t>(1, (chart_.rows.size() + kMost - 1) / kMost);
        for (std::size_t row = 0; row < chart_.rows.size(); row += step)
            text += "<text x=\"" + Number(X(row)) + "\" y=\"248\" text-anchor=\"middle\">" +
                    Escaped(chart_.rows[row].label.substr(0, chart_.rows[row].label.find(" ["))) + "</text>\n";
        return text;
    }

    const ChartData& chart_;
    double top_ = 1;
};

bool ShownColumn(const Column& column) { return column.kind != ColumnKind::Separator && column.width > 1; }

std::string_view ClassOf(const Column& column) {
    if (column.leftAligned) return " class=\"l\"";
    return column.kind == ColumnKind::Distribution ? " class=\"d\"" : "";
}

std::string RowHtml(const ReportGrid& grid, const GridRow& row) {
    std::string html = "<tr>";
    for (std::size_t c = 0; c < grid.columns.size(); ++c)
        if (ShownColumn(grid.columns[c]))
            html.append("<td").append(ClassOf(grid.columns[c])).append(">").append(Lines(row.cells[c])).append("</td>");
    return html + "</tr>\n";
}

std::string Table(const ReportGrid& grid) {
    std::string head, body, foot;
    for (const Column& column : grid.columns)
        if (ShownColumn(column))
            head.append("<th")
                .append(ClassOf(column))
                .append(" scope=\"col\"><button type=\"button\">")
                .append(Escaped(column.header))
                .append("</button></th>");
    for (const GridRow& row : grid.rows) {
        if (row.kind == LineKind::Gap) continue;
        const bool last = row.kind == LineKind::Rest || row.kind == LineKind::Total;
        (last ? foot : body) += RowHtml(grid, row);
    }
    return "<div class=\"scroll\"><table>\n<thead><tr>" + head + "</tr></thead>\n<tbody>\n" + body +
           "</tbody>\n<tfoot>\n" + foot + "</tfoot>\n</table></div>\n";
}

}  // namespace

std::string HtmlPage(const analysis::SrchTrmData& results, const ReportGrid& grid, const ChartData& trend) {
    const std::string title = grid.caption.substr(0, grid.caption.find(". // "));
    std::string page = core::fReplace(kHead, "@title", Escaped(title));
    page += "<h1>" + Escaped(title) + "</h1>\n<p class=\"desc\">" + Lines(analysis::GetDataDesc(results)) + "</p>\n";
    if (!trend.rows.empty()) {
        const Svg svg(trend);
        page += "<figure>\n" + svg.Text() + svg.Legend() + "<figcaption>All visitors of this report, in periods of " +
                std::to_string(trend.period) + (trend.period == 1 ? " day" : " days") + "</figcaption>\n</figure>\n";
    }
    return page + Table(grid) + std::string(kScript) + "</body>\n</html>\n";
}

}  // namespace reports
