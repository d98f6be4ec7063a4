#pragma once

#include <string>
#include <string_view>
#include <vector>

// The dialect of delimited files: read by table definitions, written by reports.
namespace dialogs {

// The cells of one line. A double quote toggles the quoted state and adds nothing; a delimiter outside quotes parts.
std::vector<std::string> CsvReadLine(std::string_view line, char delimiter = ',');

enum class CsvQuotes {
    Doubled,  // every " doubled, cells with " or the delimiter wrapped
    Coded,    // every " written as &34#, cells with the delimiter wrapped
};
enum class CsvGuard {
    Plain,        // the text as it stands
    Spreadsheet,  // cells that begin with = + - @ tab or carriage return and are no number get a leading '
};
// One cell. Line breaks stay, so a cell with one is wrapped too (Doubled).
std::string CsvCell(std::string_view text, CsvQuotes quotes = CsvQuotes::Doubled, CsvGuard guard = CsvGuard::Plain,
                    char delimiter = ',');
// One line with its end (CR LF).
std::string CsvLine(const std::vector<std::string>& cells, CsvQuotes quotes = CsvQuotes::Doubled,
                    CsvGuard guard = CsvGuard::Plain, char delimiter = ',');

}  // namespace dialogs
