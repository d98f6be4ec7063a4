#include "reports/behind.h"

#include <algorithm>
#include <array>
#include <functional>

#include "analysis/fields.h"
#include "core/env.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"
#include "dialogs/gridsave.h"
#include "dialogs/options.h"
#include "names/pagename.h"
#include "sitedb/site.h"

namespace reports {
namespace {

constexpr std::string_view kSelectFirst = "Select a line first.";
constexpr std::string_view kNoExtra = "This site keeps no referrers, user agents and status codes.";
constexpr int kLongestTitle = 60;

struct GridColumn {
    std::string_view header;
    int width;
    bool number;
};
constexpr std::array kVisitColumns{
    GridColumn{"Start", 2400, false},        GridColumn{"End", 2400, false},    GridColumn{"Visitor", 2000, false},
    GridColumn{"Search term", 3200, false},  GridColumn{"Engine", 1600, false}, GridColumn{"First page", 3600, false},
    GridColumn{"Further pages", 1400, true},
};
constexpr std::array kLineColumns{
    GridColumn{"Time", 2400, false},       GridColumn{"Page", 4000, false},    GridColumn{"Status", 1000, false},
    GridColumn{"Bytes", 1200, true},       GridColumn{"Repeated", 1200, true}, GridColumn{"Referrer", 4000, false},
    GridColumn{"User agent", 4000, false},
};

template <std::size_t N>
std::vector<std::string> Headers(const std::array<GridColumn, N>& columns) {
    std::vector<std::string> headers;
    for (const GridColumn& column : columns) headers.emplace_back(column.header);
    return headers;
}

template <std::size_t N>
std::string GridSpec(const std::array<GridColumn, N>& columns) {
    std::string widths, alignments;
    for (const GridColumn& column : columns) {
        widths.append(widths.empty() ? "" : "|").append(std::to_string(column.width));
        alignments.append(alignments.empty() ? "" : "|").append(column.number ? "7" : "0");
    }
    return "14400|6000||||||||1|0|{" + widths + "}|{" + alignments + "}";
}

std::string StampText(std::int64_t stamp) {
    return stamp > 0 ? core::fFormatText(std::to_string(stamp), "@@@@-@@-@@ @@:@@:@@") : std::string();
}

std::string Count(std::int64_t count) { return core::CountText(static_cast<double>(count)); }

// Of these fields a visit can have more than one value.
bool HasSeveralValues(int field) {
    return field == analysis::kPage || field == analysis::kDir || analysis::IsWordField(field);
}

// A text of a report in one short line.
std::string OneLine(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 32) c = ' ';
    return core::fLeft(core::fTrim(text), kLongestTitle, "..").text;
}

// What the list of visits, and that of the lines of one, do alike.
struct ListBox {
    std::string title{}, message{}, spec{}, caption{}, name{}, emptyText{}, buttons{};
    dialogs::Rows rows{};
    int defaultNo = 1;
};

class BehindScreen {
public:
    BehindScreen(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site, const LineBehind& line)
        : env_(env), desk_(desk), site_(site), line_(line) {}

    void Run() {
        found_ = analysis::FindVisitsBehind(env_, site_, line_.results, line_.indexes);
        const std::string title = "- Visits behind: " + OneLine(line_.leftCell);
        if (found_.visits.empty()) {
            dialogs::ShowMsg(desk_, BehindMessage(line_, found_), title);
            return;
        }
        ListBox list{.title = title,
                     .message = BehindMessage(line_, found_),
                     .spec = GridSpec(kVisitColumns),
                     .caption = "Visits",
                     .name = "VisitsBehind",
                     .buttons = "&Close|Show &log lines|&Save as CSV",
                     .rows = VisitRows(found_.visits),
                     .defaultNo = 2};
        Show(list, [this](dialogs::DialogModel& model, int button) {
            if (button == 3) return Save(model);
            const std::vector<int> selected = model.controls[1].Selected();
            if (selected.empty())
                model.problem = kSelectFirst;
            else
                ShowLines(found_.visits[static_cast<std::size_t>(selected.front())]);
        });
    }

private:
    void ShowLines(const analysis::VisitFacts& visit) {
        ListBox list{.title = "- Log lines of a visit",
                     .message = "Visit of " + visit.address + ", " + StampText(visit.StartTimeStamp),
                     .spec = GridSpec(kLineColumns),
                     .caption = "Log lines",
                     .name = "LinesOfVisit",
                     .emptyText = "The site keeps no lines of this visit.",
                     .buttons = "&Close|&Save as CSV",
                     .rows = LogLineRows(analysis::LinesOfVisit(site_, visit.VisitID))};
        if (!site_.Options().LastKeepVal) list.message.append("\r").append(kNoExtra);
        Show(list, [this](dialogs::DialogModel& model, int) { Save(model); });
    }

    void Show(ListBox& list, const std::function<void(dialogs::DialogModel&, int)>& press) {
        dialogs::Controls controls;
        const std::string first = list.rows.size() > 1 ? "0" : "-1";
        dialogs::MBAddCtl("Grid", first, dialogs::MBSpec(list.spec), controls, std::move(list.rows));
        controls[1].caption = list.caption;
        controls[1].emptyText = list.emptyText;
        dialogs::Box box;
        box.message = list.message;
        box.buttons = list.buttons;
        box.options = dialogs::option::NoHide("2|3", false, false);
        box.defaultNo = list.defaultNo;
        box.escNo = 1;
        box.title = list.title;
        box.name = list.name;
        box.helpId = "Visits";
        dialogs::ShowMBStay(desk_, box, controls, [&](dialogs::DialogModel& model, int button) {
            model.problem.clear();
            if (button != 0) press(model, button);
        });
    }

    void Save(const dialogs::DialogModel& model) {
        const dialogs::Control& grid = model.controls[1];
        const core::Paths native(site_.Paths().folder, {});
        const dialogs::FileDesk files{env_.user, env_.progress, line_.paths != nullptr ? *line_.paths : native};
        dialogs::GridToSave save{.rows = grid.rows};
        if (const std::vector<int> selected = grid.Selected(); !selected.empty())
            save.currentCell = grid.rows[static_cast<std::size_t>(selected.front()) + 1].front();
        dialogs::GridSaveDialog(desk_, files, save);
    }

    core::Env& env_;
    const dialogs::Desk& desk_;
    sitedb::Site& site_;
    const LineBehind& line_;
    analysis::VisitsBehind found_{};
};

}  // namespace

std::string BehindDifference(const LineBehind& line, const analysis::VisitsBehind& found) {
    const analysis::ResultTable& table = line.results.table;
    if (found.stopped || line.indexes.size() != 1) return {};
    const std::int32_t index = line.indexes.front();
    if (index < 0 || index > table.UpperBound()) return {};
    const std::int32_t visitors = table.Visitors[static_cast<std::size_t>(index)];
    if (found.count == visitors) return {};
    return "The report counted " + Count(visitors) +
           ". The data, or the site area, was changed since that analysis was made.";
}

std::string BehindMessage(const LineBehind& line, const analysis::VisitsBehind& found) {
    std::string message =
        found.count == 0 ? "No visits were found." : Count(found.count) + (found.count == 1 ? " visit." : " visits.");
    const auto shown = static_cast<std::int64_t>(found.visits.size());
    if (shown < found.count) message += " The first " + Count(shown) + " are shown.";
    if (found.stopped) message += "\rThe search was stopped, so there can be more.";
    if (line.indexes.size() > 1 && HasSeveralValues(line.results.Analyzed_Field))
        message += "\rThe line sums several values. A visit that has more than one of them counts once here.";
    if (const std::string difference = BehindDifference(line, found); !difference.empty()) message += "\r" + difference;
    return message;
}

void ShowVisitsBehind(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site, const LineBehind& line) {
    BehindScreen(env, desk, site, line).Run();
}

dialogs::Rows VisitRows(const std::vector<analysis::VisitFacts>& visits) {
    dialogs::Rows rows{Headers(kVisitColumns)};
    for (const analysis::VisitFacts& visit : visits)
        rows.push_back({StampText(visit.StartTimeStamp), StampText(visit.EndTimeStamp), visit.address, visit.term,
                        visit.engine, visit.startPage, std::to_string(visit.further)});
    return rows;
}

dialogs::Rows LogLineRows(const std::vector<analysis::LineFacts>& lines) {
    dialogs::Rows rows{Headers(kLineColumns)};
    for (const analysis::LineFacts& line : lines)
        rows.push_back({StampText(line.Timestamp), line.page.empty() ? std::string(names::kRootName) : line.page,
                        line.status, std::to_string(line.bytes), std::to_string(line.repeated), line.referrer,
                        line.userAgent});
    return rows;
}

}  // namespace reports
