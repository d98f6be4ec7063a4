#include "cli/output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>

#include "core/utf8.h"

namespace cli {
namespace {

struct LetterRange {
    char32_t first;
    char32_t last;
};
constexpr std::array kNoWidth{LetterRange{0x300, 0x36F},   LetterRange{0x483, 0x489},   LetterRange{0x591, 0x5BD},
                              LetterRange{0x610, 0x61A},   LetterRange{0x64B, 0x65F},   LetterRange{0x200B, 0x200F},
                              LetterRange{0x20D0, 0x20F0}, LetterRange{0xFE00, 0xFE0F}, LetterRange{0xFE20, 0xFE2F}};
constexpr std::array kDoubleWidth{
    LetterRange{0x1100, 0x115F},   LetterRange{0x2E80, 0x303E},  LetterRange{0x3041, 0xA4CF},
    LetterRange{0xAC00, 0xD7A3},   LetterRange{0xF900, 0xFAFF},  LetterRange{0xFE30, 0xFE4F},
    LetterRange{0xFF00, 0xFF60},   LetterRange{0xFFE0, 0xFFE6},  LetterRange{0x1F300, 0x1F64F},
    LetterRange{0x1F900, 0x1F9FF}, LetterRange{0x20000, 0x3FFFD}};
// They turn the direction of what follows, so that a line shows other than it is.
constexpr std::array kTurning{LetterRange{0x200E, 0x200F}, LetterRange{0x202A, 0x202E}, LetterRange{0x2066, 0x2069}};

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowest = 6;

template <std::size_t N>
bool Within(const std::array<LetterRange, N>& ranges, char32_t code) {
    return std::ranges::any_of(ranges, [code](LetterRange r) { return code >= r.first && code <= r.last; });
}

int LetterWidth(char32_t code) {
    if (code < 0x300) return 1;
    if (Within(kNoWidth, code)) return 0;
    return Within(kDoubleWidth, code) ? 2 : 1;
}

void AppendEscaped(std::string& out, char32_t code) {
    std::array<char, 12> text{};
    std::snprintf(text.data(), text.size(), code < 256 ? "\\x%02X" : "\\u%04X", static_cast<unsigned>(code));
    out += text.data();
}

std::string Escape(std::string_view text, bool keepLineEnds) {
    std::string safe;
    safe.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const core::Letter letter = core::LetterAt(text, at);
        const bool noLetter = letter.length == 1 && static_cast<unsigned char>(text[at]) >= 128;
        const bool control =
            letter.code < 32 || (letter.code >= 127 && letter.code < 160) || Within(kTurning, letter.code);
        if (noLetter)
            AppendEscaped(safe, static_cast<unsigned char>(text[at]));
        else if (control && !(keepLineEnds && (letter.code == '\n' || letter.code == '\r')))
            AppendEscaped(safe, letter.code);
        else
            safe.append(text, at, letter.length);
        at += letter.length;
    }
    return safe;
}

bool WriteAll(std::FILE* file, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

std::string OneLine(std::string_view text) {
    std::string line;
    for (const char c : text) {
        if (c == '\r') continue;
        if (c == '\n')
            line += "; ";
        else
            line += c;
    }
    while (line.ends_with("; ")) line.resize(line.size() - 2);
    return Safe(line);
}

// Takes from the widest that is above its least width until the line fits or nothing can be taken.
void Narrow(std::vector<std::size_t>& widths, const std::vector<std::size_t>& least, std::size_t room) {
    std::size_t total = kGap * (widths.size() - 1);
    for (const std::size_t width : widths) total += width;
    while (total > room) {
        std::size_t widest = widths.size();
        for (std::size_t i = 0; i < widths.size(); ++i)
            if (widths[i] > least[i] && (widest == widths.size() || widths[i] > widths[widest])) widest = i;
        if (widest == widths.size()) return;
        --widths[widest];
        --total;
    }
}

// Headers give way before cells do.
std::vector<std::size_t> Widths(const TextTable& table, std::size_t room) {
    std::vector<std::size_t> cells(table.columns.size(), 0);
    for (const auto& row : table.rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            cells[i] = std::max(cells[i], static_cast<std::size_t>(ShownWidth(row[i])));
    std::vector<std::size_t> widths = cells;
    for (std::size_t i = 0; i < widths.size(); ++i)
        widths[i] = std::max(cells[i], static_cast<std::size_t>(ShownWidth(table.columns[i].header)));
    if (room == 0 || widths.empty()) return widths;
    for (std::size_t& width : cells) width = std::max(width, kNarrowest);
    Narrow(widths, cells, room);
    Narrow(widths, std::vector<std::size_t>(widths.size(), kNarrowest), room);
    return widths;
}

std::string Line(const std::vector<std::string>& cells, const TextTable& table,
                 const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const int width = static_cast<int>(widths[i]);
        const std::string cell = CutToWidth(cells[i], width);
        const std::string blanks(static_cast<std::size_t>(std::max(0, width - ShownWidth(cell))), ' ');
        if (i > 0) line.append(kGap, ' ');
        line += table.columns[i].right ? blanks + cell : cell + blanks;
    }
    while (line.ends_with(' ')) line.pop_back();
    return line;
}

int WidthOf(int fd) {
    constexpr int kUsualWidth = 80;
    if (::isatty(fd) != 1) return 0;
    winsize size{};
    return ::ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualWidth;
}

bool WantsBold() {
    const char* none = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return OutputIsTerminal() && (none == nullptr || *none == '\0') && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

}  // namespace

std::string Safe(std::string_view text) { return Escape(text, false); }

std::string SafeMessage(std::string_view text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r')
            lines += text[i];
        else if (i + 1 == text.size() || text[i + 1] != '\n')
            lines += '\n';
    }
    return Escape(lines, true);
}

void Print(std::string_view text) {
    if (WriteAll(stdout, text)) return;
    // Who closed the pipe has seen enough; a full disk is worth a word.
    throw Failure(errno == EPIPE ? "" : std::string("Standard output could not be written: ") + std::strerror(errno));
}

void PrintData(std::string_view text) {
    if (OutputIsTerminal())
        Print(Escape(text, true));
    else
        Print(text);
}

void PrintError(std::string_view message) { WriteAll(stderr, SafeMessage(message) + "\n"); }

bool OutputIsTerminal() { return ::isatty(STDOUT_FILENO) == 1; }
bool ErrorIsTerminal() { return ::isatty(STDERR_FILENO) == 1; }

int TerminalWidth() { return WidthOf(STDOUT_FILENO); }
int ErrorWidth() { return WidthOf(STDERR_FILENO); }

int ShownWidth(std::string_view text) {
    int width = 0;
    for (std::size_t at = 0; at < text.size();) {
        const core::Letter letter = core::LetterAt(text, at);
        width += LetterWidth(letter.code);
        at += letter.length;
    }
    return width;
}

std::string CutToWidth(std::string_view text, int width) {
    if (width <= 0 || ShownWidth(text) <= width) return std::string(text);
    std::size_t at = 0;
    for (int taken = 0; at < text.size();) {
        const core::Letter letter = core::LetterAt(text, at);
        taken += LetterWidth(letter.code);
        if (taken > width - 1) break;
        at += letter.length;
    }
    return std::string(text.substr(0, at)) + "~";
}

std::string TableText(const TextTable& given, int width) {
    TextTable table = given;
    for (TableColumn& column : table.columns) column.header = OneLine(column.header);
    for (auto& row : table.rows) {
        row.resize(table.columns.size());
        for (std::string& cell : row) cell = OneLine(cell);
    }
    const std::vector<std::size_t> widths = Widths(table, static_cast<std::size_t>(std::max(width, 0)));
    std::vector<std::string> headers;
    for (const TableColumn& column : table.columns) headers.push_back(column.header);
    const bool bold = width > 0 && WantsBold();
    std::string text;
    if (std::ranges::any_of(headers, [](const std::string& header) { return !header.empty(); }))
        text +=
            (bold ? "\x1b[1m" : "") + CutToWidth(Line(headers, table, widths), width) + (bold ? "\x1b[0m" : "") + "\n";
    for (const auto& row : table.rows) text += CutToWidth(Line(row, table, widths), width) + "\n";
    return text;
}

void PrintTable(const TextTable& table) { Print(TableText(table, TerminalWidth())); }

std::string JsonText(const nlohmann::ordered_json& json) {
    const std::string text = json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    std::string safe;
    safe.reserve(text.size() + 1);
    for (std::size_t at = 0; at < text.size();) {
        const core::Letter letter = core::LetterAt(text, at);
        if ((letter.code >= 127 && letter.code < 160) || Within(kTurning, letter.code)) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(letter.code));
            safe += escape.data();
        } else {
            safe.append(text, at, letter.length);
        }
        at += letter.length;
    }
    return safe + "\n";
}

void PrintJson(const nlohmann::ordered_json& json) { Print(JsonText(json)); }

}  // namespace cli
