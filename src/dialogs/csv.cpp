#include "dialogs/csv.h"

#include "core/numbers.h"
#include "core/text.h"

namespace dialogs {
namespace {

// "-12.5" and "-12 %" are numbers and stay what they are.
bool MayBeFormula(std::string_view text) {
    if (text.empty() || std::string_view("=+-@\t\r").find(text[0]) == std::string_view::npos) return false;
    return !core::IsNumeric(text.ends_with(" %") ? text.substr(0, text.size() - 2) : text);
}

}  // namespace

std::vector<std::string> CsvReadLine(std::string_view line, char delimiter) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
        } else if (c == delimiter && !quoted) {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    return cells;
}

std::string CsvCell(std::string_view text, CsvQuotes quotes, CsvGuard guard, char delimiter) {
    std::string cell;
    if (guard == CsvGuard::Spreadsheet && MayBeFormula(text)) cell += '\'';
    cell += text;
    const bool doubled = quotes == CsvQuotes::Doubled;
    const bool hasQuote = cell.find('"') != std::string::npos;
    const bool hasBreak = doubled && cell.find_first_of("\r\n") != std::string::npos;
    const bool wrap = cell.find(delimiter) != std::string::npos || (doubled && hasQuote) || hasBreak;
    if (hasQuote) cell = core::fReplace(cell, "\"", doubled ? "\"\"" : "&34#");
    return wrap ? core::fAddQ(cell) : cell;
}

std::string CsvLine(const std::vector<std::string>& cells, CsvQuotes quotes, CsvGuard guard, char delimiter) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) line += delimiter;
        line += CsvCell(cells[i], quotes, guard, delimiter);
    }
    return line + "\r\n";
}

}  // namespace dialogs
