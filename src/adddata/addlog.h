#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"

namespace sitedb {
struct SitePaths;
}

// The add log of a site: what was added, when and how. One record to a line, its fields parted by "?". The order of the
// columns and the forms of their values are those of the file and must stay.
namespace adddata {

enum class AddLogKind { Text, Count, Flag };
struct AddLogColumn {
    std::string_view heading;
    std::string_view key;  // its name where headings, some of which stand twice, do not do
    AddLogKind kind = AddLogKind::Text;
};
inline constexpr std::array kAddLogColumns{
    AddLogColumn{"Date", "date"},
    AddLogColumn{"File Spec.", "fileSpec"},
    AddLogColumn{"Action", "action"},
    AddLogColumn{"Lines Added", "linesAdded", AddLogKind::Count},
    AddLogColumn{"First Date", "firstDate"},
    AddLogColumn{"Last Date", "lastDate"},
    AddLogColumn{"Total Lines", "totalLines", AddLogKind::Count},
    AddLogColumn{"Accept Lines", "acceptLines", AddLogKind::Count},
    AddLogColumn{"Accept Bytes", "acceptBytes", AddLogKind::Count},
    AddLogColumn{"Skip Dupes", "skipDupes", AddLogKind::Flag},
    AddLogColumn{"Lines Skpd", "skipDupesLines", AddLogKind::Count},
    AddLogColumn{"Add By Filter", "addByFilter", AddLogKind::Flag},
    AddLogColumn{"Lines Skpd", "addByFilterLines", AddLogKind::Count},
    AddLogColumn{"Excl Bots", "exclBots", AddLogKind::Flag},
    AddLogColumn{"Lines Skpd", "exclBotsLines", AddLogKind::Count},
    AddLogColumn{"Excl Files", "exclFiles", AddLogKind::Flag},
    AddLogColumn{"Lines Skpd", "exclFilesLines", AddLogKind::Count},
    AddLogColumn{"Bytes Skpd", "bytesSkipped", AddLogKind::Count},
    AddLogColumn{"Rem Fragm", "remFragment", AddLogKind::Flag},
    AddLogColumn{"Rem Query", "remQuery", AddLogKind::Flag},
    AddLogColumn{"All Data", "allData", AddLogKind::Flag},
    AddLogColumn{"Skip 4xx, 5xx", "skip4xx5xx", AddLogKind::Flag},
    AddLogColumn{"Full File Name Log Data", "fullFileName"},
    AddLogColumn{"Mins Add Data", "minsAddData"},
    AddLogColumn{"Mins PreProcess", "minsPreProcess"},
    AddLogColumn{"Added Day", "addedDay"},
    AddLogColumn{"First Log Line", "firstLogLine"},
    AddLogColumn{"Last Log Line", "lastLogLine"},
    AddLogColumn{"Add By Filter - Only Lines or Exclude Lines", "mainFilterKind"},
    AddLogColumn{"Filter[s] Used", "mainFilterUsed"},
    AddLogColumn{"Excl Files", "componentFilterKind"},
    AddLogColumn{"Filter[s] Used", "componentFilterUsed"},
    AddLogColumn{"Excl Bots", "robotFilterKind"},
    AddLogColumn{"Filters copied to", "robotFilterCopy"},
    AddLogColumn{"?", "problems", AddLogKind::Count},
    AddLogColumn{"SE Summary saved in", "engineSummary"},
};
inline constexpr std::size_t kAddLogFields = kAddLogColumns.size();
static_assert(kAddLogFields == 36);

// The column of a key; a key that is none does not compile.
consteval std::size_t AddLogAt(std::string_view key) {
    for (std::size_t i = 0; i < kAddLogFields; ++i)
        if (kAddLogColumns[i].key == key) return i;
    throw "no column of that key";
}

inline constexpr std::string_view kNoField = "?";  // what does not apply

struct AddLogRecord {
    std::array<std::string, kAddLogFields> fields{};

    AddLogRecord() { fields.fill(std::string(kNoField)); }
};

// Forms of the values.
std::string AddLogCount(double count);
std::string AddLogFlag(bool flag);
std::string AddLogDate(double moment);  // "02 Mar 2009 08:00.01", "?" for 0
std::string AddLogSort(double moment);  // "2009-03-02 08:00.01", "?" for 0

// The record's line with its end. Whatever the fields hold, it is one line of 36 fields.
std::string AddLogLine(const AddLogRecord& record);
// Nothing for a text that is no whole record.
std::optional<AddLogRecord> ReadAddLogLine(std::string_view line);

std::string AddLogFile(const sitedb::SitePaths& site);
// One write for all of them. What an interrupted write left gets its line end first.
core::Result AppendAddLog(const std::string& path, std::span<const AddLogRecord> records);

struct AddLogRead {
    core::Result result{};
    std::vector<AddLogRecord> records{};  // the oldest first
};
// The last `most` records; none when there is no log. Memory: what these lines take.
AddLogRead ReadAddLog(const std::string& path, std::size_t most);

}  // namespace adddata
