#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"
#include "dialogs/csv.h"
#include "dialogs/tablearray.h"

namespace core {
class Paths;
class Progress;
class User;
}  // namespace core

// Table arrays from and to delimited files. Names are stored or native ones. Both end their progress report on every
// way out; a stop by the user ends them as a failure.
namespace dialogs {

struct FileDesk {
    core::User& user;
    core::Progress& progress;
    const core::Paths& paths;
};

struct CsvReadRules {
    char delimiter = ',';
    std::string startText{};  // the rows begin with the line that starts with it
    // Rows whose key lies outside the range are left out. Bounds that are numbers compare as numbers, dates as days,
    // anything else as texts ignoring case. An empty bound is open.
    std::optional<long> keyColumn{};  // from 0
    std::string from{}, to{};
};
struct CsvRead {
    core::Result result{};
    TableArray table{0, 0};
    long linesCut = 0;     // lines with more cells than the first, which fixes the number of columns
    bool stopped = false;  // by the user; the table then holds what was read
};
CsvRead ReadCSV(const FileDesk& desk, std::string_view PAFN, const CsvReadRules& rules = {});

struct CsvWriteRules {
    char delimiter = ',';
    std::optional<long> firstRow{}, firstCol{};  // the table's own
    bool quoted = true;                          // quotes doubled; off: coded as &34#
    std::string header{}, trailer{};             // written as they are
    char existsAction = 'W';                     // of core::OpenRules
    bool keepLineEnds = false;
    std::string lineEndText = " ";  // in place of each carriage return and each line feed of a cell
    CsvGuard guard = CsvGuard::Plain;
};
struct CsvSaved {
    bool ok = false;       // all was written
    bool opened = false;   // false: the file could not be made, or the user keeps the one that is there
    bool stopped = false;  // by the user
    std::string error{};
    explicit operator bool() const { return ok; }
};
// On failure nothing of it is left: an old file stands as it was, what was appended is cut off.
CsvSaved SaveCSV(const FileDesk& desk, std::string_view PAFN, const TableArray& array, const CsvWriteRules& rules = {});
// The lines as they are, each with CR LF. Same promises.
CsvSaved SaveLines(const FileDesk& desk, std::string_view PAFN, const std::vector<std::string>& lines,
                   char existsAction = 'W');

}  // namespace dialogs
