#include "sitedb/visitrows.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>

#include "core/utf8.h"
#include "sitedb/columns.h"

namespace sitedb {
namespace {

constexpr std::string_view kColumns =
    "VisitID, StartPageID, StartLogLnID, Files, StartTimeStamp, EndTimeStamp, FirstIP, CDSIPs, SearchTerm, "
    "StzdSearchTerm, SearchEngine";
constexpr int kClickParameter = 12;

std::optional<std::string> OptionalText(Statement& row, int column) {
    if (row.IsNull(column)) return std::nullopt;
    return std::string(row.Text(column));
}

void BindOptional(Statement& statement, int parameter, const std::optional<std::string>& text, std::size_t width) {
    if (text) {
        statement.Bind(parameter, core::CutUtf8(*text, width));
    } else {
        statement.BindNull(parameter);
    }
}

void AppendItem(std::string& list, std::int64_t number) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    if (!list.empty()) list += '|';
    list.append(digits, end.ptr);
}

std::string_view TakeItem(std::string_view& list) {
    const std::size_t bar = std::min(list.find('|'), list.size());
    const std::string_view item = list.substr(0, bar);
    list.remove_prefix(std::min(bar + 1, list.size()));
    return item;
}

}  // namespace

Clicks Visit_ListClicks(const std::vector<ClickLine>& lines) {
    struct Page {
        std::int32_t id;
        std::int64_t bytes;
    };
    std::vector<Page> pages;
    std::unordered_map<std::int32_t, std::size_t> positions;
    std::size_t last = 0;
    for (const ClickLine& line : lines) {
        if (line.PageID != 0) {
            const auto [at, isNew] = positions.try_emplace(line.PageID, pages.size());
            if (isNew) pages.push_back({line.PageID, 0});
            last = at->second;
            pages[last].bytes += line.Bytes;
        }
        // Whatever the page: duplicates count for the last page remembered. Before there is one they are dropped.
        if (line.CntDupes > 0 && !pages.empty()) pages[last].bytes += std::int64_t{line.Bytes} * line.CntDupes;
    }
    Clicks clicks;
    for (const Page& page : pages) {
        AppendItem(clicks.pages, page.id);
        AppendItem(clicks.bytes, page.bytes);
    }
    return clicks;
}

VisitStore::VisitStore(Database& db) : db_(db) {
    const std::string columns(kColumns);
    ofAddress_ =
        db_.Prepare("SELECT " + columns +
                    " FROM visit WHERE FirstIP=? AND StartTimeStamp>=? AND StartTimeStamp<=? ORDER BY VisitID");
    linesOf_ = db_.Prepare(
        "SELECT Timestamp, LogLnID, PageID, Bytes, CntDupes FROM logline WHERE VisitID=? ORDER BY Timestamp, LogLnID");
    insert_ = db_.Prepare("INSERT INTO visit (" + columns +
                          ", CDSClickFurtherPageIDs, CDSBytesClickFurtherPageIDs) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)");
    update_ = db_.Prepare(
        "UPDATE visit SET StartPageID=?2, StartLogLnID=?3, Files=?4, StartTimeStamp=?5, EndTimeStamp=?6, FirstIP=?7, "
        "CDSIPs=?8, SearchTerm=?9, StzdSearchTerm=?10, SearchEngine=?11, CDSClickFurtherPageIDs=?12, "
        "CDSBytesClickFurtherPageIDs=?13 WHERE VisitID=?1");
    addPages_ = db_.Prepare(
        "INSERT INTO visitpages (visitID, CDSClickFurtherPageIDs, CDSBytesClickFurtherPageIDs) VALUES (?,?,?)");
    delPages_ = db_.Prepare("DELETE FROM visitpages WHERE visitID=?");
    delLines_ = db_.Prepare("DELETE FROM logline WHERE VisitID=?");
}

std::vector<VisitRow> VisitStore::OfAddress(std::string_view ip, std::int64_t from, std::int64_t to) {
    std::vector<VisitRow> rows;
    ofAddress_.Bind(1, ip).Bind(2, from).Bind(3, to);
    while (ofAddress_.Step()) {
        VisitRow row;
        row.VisitID = static_cast<std::int32_t>(ofAddress_.Int(0));
        row.StartPageID = static_cast<std::int32_t>(ofAddress_.Int(1));
        row.StartLogLnID = static_cast<std::int32_t>(ofAddress_.Int(2));
        row.Files = static_cast<std::int32_t>(ofAddress_.Int(3));
        row.StartTimeStamp = ofAddress_.Int(4);
        row.EndTimeStamp = ofAddress_.Int(5);
        row.FirstIP = ofAddress_.Text(6);
        row.CDSIPs = ofAddress_.Text(7);
        row.SearchTerm = OptionalText(ofAddress_, 8);
        row.StzdSearchTerm = OptionalText(ofAddress_, 9);
        row.SearchEngine = OptionalText(ofAddress_, 10);
        rows.push_back(std::move(row));
    }
    ofAddress_.Reset();
    return rows;
}

std::vector<ClickLine> VisitStore::LinesOf(std::int32_t visitId) {
    std::vector<ClickLine> lines;
    linesOf_.Bind(1, std::int64_t{visitId});
    while (linesOf_.Step()) {
        lines.push_back({linesOf_.Int(0), static_cast<std::int32_t>(linesOf_.Int(1)),
                         static_cast<std::int32_t>(linesOf_.Int(2)), static_cast<std::int32_t>(linesOf_.Int(3)),
                         static_cast<std::int32_t>(linesOf_.Int(4))});
    }
    linesOf_.Reset();
    return lines;
}

void VisitStore::BindRow(Statement& statement, const VisitRow& row) {
    statement.Bind(1, std::int64_t{row.VisitID}).Bind(2, std::int64_t{row.StartPageID});
    statement.Bind(3, std::int64_t{row.StartLogLnID}).Bind(4, std::int64_t{row.Files});
    statement.Bind(5, row.StartTimeStamp).Bind(6, row.EndTimeStamp).Bind(7, std::string_view(row.FirstIP));
    statement.Bind(8, core::CutUtf8(row.CDSIPs, kIpListWidth));
    BindOptional(statement, 9, row.SearchTerm, kTermWidth);
    BindOptional(statement, 10, row.StzdSearchTerm, kTermWidth);
    BindOptional(statement, 11, row.SearchEngine, kEngineWidth);
}

void VisitStore::Insert(const VisitRow& row, const Clicks& clicks) {
    BindRow(insert_, row);
    Visit_StoreClicks(row, clicks, insert_, kClickParameter);
    insert_.Run();
}

void VisitStore::Update(const VisitRow& row, const Clicks& clicks) {
    BindRow(update_, row);
    Visit_StoreClicks(row, clicks, update_, kClickParameter);
    update_.Run();
}

void VisitStore::Visit_StoreClicks(const VisitRow& row, const Clicks& clicks, Statement& statement, int first) {
    if (clicks.pages.size() <= kClicksWidth && clicks.bytes.size() <= kClicksWidth) {
        statement.Bind(first, std::string_view(clicks.pages)).Bind(first + 1, std::string_view(clicks.bytes));
        return;
    }
    VisitPg_Store(row.VisitID, clicks);
    statement.Bind(first, kOverflowMark).Bind(first + 1, std::string_view());
}

// A row never splits a pair, and both fields of a row hold the same number of items.
void VisitStore::VisitPg_Store(std::int32_t visitId, const Clicks& clicks) {
    Visit_DelPages(visitId);
    std::string pages;
    std::string bytes;
    const auto addRow = [&] {
        addPages_.Bind(1, std::int64_t{visitId})
            .Bind(2, std::string_view(pages))
            .Bind(3, std::string_view(bytes))
            .Run();
        pages.clear();
        bytes.clear();
    };
    std::string_view pageList = clicks.pages;
    std::string_view byteList = clicks.bytes;
    while (!pageList.empty()) {
        const std::string_view page = TakeItem(pageList);
        const std::string_view total = TakeItem(byteList);
        if (!pages.empty() &&
            (pages.size() + 1 + page.size() > kClicksWidth || bytes.size() + 1 + total.size() > kClicksWidth))
            addRow();
        if (!pages.empty()) {
            pages += '|';
            bytes += '|';
        }
        pages += page;
        bytes += total;
    }
    addRow();
}

std::int32_t VisitStore::HighestID() {
    return static_cast<std::int32_t>(db_.Scalar("SELECT ifnull(max(VisitID), -1) FROM visit"));
}

std::int64_t VisitStore::Visit_DelLogLines(std::int32_t visitId) {
    delLines_.Bind(1, std::int64_t{visitId}).Run();
    return db_.Changes();
}

std::int64_t VisitStore::Visit_DelPages(std::int32_t visitId) {
    delPages_.Bind(1, std::int64_t{visitId}).Run();
    return db_.Changes();
}

VisitPages::VisitPages(Database& db)
    : select_(db.Prepare("SELECT CDSClickFurtherPageIDs, CDSBytesClickFurtherPageIDs FROM visitpages WHERE visitID=? "
                         "ORDER BY rowid")) {}

std::optional<Clicks> VisitPages::VisitPg_Read(std::int32_t visitId) {
    std::optional<Clicks> clicks;
    select_.Bind(1, std::int64_t{visitId});
    while (select_.Step()) {
        if (!clicks) {
            clicks = Clicks{std::string(select_.Text(0)), std::string(select_.Text(1))};
            continue;
        }
        clicks->pages.append("|").append(select_.Text(0));
        clicks->bytes.append("|").append(select_.Text(1));
    }
    select_.Reset();
    return clicks;
}

}  // namespace sitedb
