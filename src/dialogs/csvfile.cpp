#include "dialogs/csvfile.h"

#include <unistd.h>

#include <functional>
#include <utility>

#include "core/dates.h"
#include "core/fileio.h"
#include "core/numbers.h"
#include "core/openfile.h"
#include "core/paths.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/gridops.h"
#include "dialogs/report.h"

namespace dialogs {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kChunk = 64 * 1024;

// Lines of an open file without their ends (LF, or CR LF). The last one may have none.
class Lines {
public:
    explicit Lines(int fd) : fd_(fd) {}

    bool Next(std::string& line) {
        line.clear();
        for (;;) {
            const std::size_t end = buffer_.find('\n', at_);
            line.append(buffer_, at_, end == std::string::npos ? end : end - at_);
            if (end != std::string::npos) {
                at_ = end + 1;
                break;
            }
            if (!Fill()) {
                if (line.empty()) return false;
                break;
            }
        }
        if (line.ends_with('\r')) line.pop_back();
        if (first_ && line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
        first_ = false;
        return true;
    }
    double Position() const { return static_cast<double>(offset_) - static_cast<double>(buffer_.size() - at_); }
    bool Failed() const { return failed_; }

private:
    bool Fill() {
        buffer_.resize(kChunk);
        at_ = 0;
        const ssize_t got = core::fileio::ReadAllAt(fd_, offset_, buffer_.data(), kChunk);
        failed_ = got < 0;
        buffer_.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        offset_ += static_cast<off_t>(buffer_.size());
        return got > 0;
    }

    int fd_;
    off_t offset_ = 0;
    std::string buffer_{};
    std::size_t at_ = 0;
    bool failed_ = false, first_ = true;
};

// Whether keys lie in a range whose kind the bounds tell.
class KeyRange {
public:
    KeyRange(std::string_view from, std::string_view to)
        : from_(core::LowerUtf8(from)), to_(core::LowerUtf8(to)), kind_(KindOf(from, to)) {}

    bool Holds(std::string_view key) const {
        if (from_.empty() && to_.empty()) return true;
        if (kind_ == Kind::Text) return Between(core::LowerUtf8(key), from_, to_);
        if (kind_ == Kind::Number)
            return core::IsNumeric(key) && Between(CellNumber(key), CellNumber(from_), CellNumber(to_));
        const std::int32_t day = core::fDayNo(key);
        return core::ParseDate(key).has_value() && Between(day, core::fDayNo(from_), core::fDayNo(to_));
    }

private:
    enum class Kind { Text, Number, Day };

    static Kind KindOf(std::string_view from, std::string_view to) {
        const auto each = [&](auto fits) { return (from.empty() || fits(from)) && (to.empty() || fits(to)); };
        if (each([](std::string_view text) { return core::IsNumeric(text); })) return Kind::Number;
        return each([](std::string_view text) { return core::ParseDate(text).has_value(); }) ? Kind::Day : Kind::Text;
    }
    template <typename Value>
    bool Between(const Value& value, const Value& from, const Value& to) const {
        return (from_.empty() || !(value < from)) && (to_.empty() || !(to < value));
    }

    std::string from_, to_;
    Kind kind_;
};

bool SkipTo(Lines& lines, std::string_view startText, Report& report, std::string& line) {
    while (lines.Next(line)) {
        std::string_view head(line);
        if (head.starts_with('"')) head.remove_prefix(1);
        if (head.starts_with(startText)) return true;
        report.Step(lines.Position(), "Looking for start text");
    }
    return false;
}

void ReadRows(Lines& lines, const CsvReadRules& rules, Report& report, CsvRead& read) {
    const KeyRange range(rules.from, rules.to);
    const auto key = static_cast<std::size_t>(rules.keyColumn.value_or(0));
    std::string line, room;
    bool more = rules.startText.empty() ? lines.Next(line) : SkipTo(lines, rules.startText, report, line);
    std::size_t columns = 0;
    for (; more; more = lines.Next(line)) {
        std::vector<std::string> cells = CsvReadLine(core::ToUtf8(line, room), rules.delimiter);
        if (columns == 0) columns = cells.size();
        if (cells.size() > columns) ++read.linesCut;
        cells.resize(columns);
        const std::string_view keyText = key < columns ? std::string_view(cells[key]) : std::string_view();
        report.Step(lines.Position(), std::string("Loading data. Last data loaded: ").append(keyText));
        if (rules.keyColumn && !range.Holds(keyText)) continue;
        const long row = read.table.RowCount();
        for (std::size_t col = cells.size(); col-- > 0;)
            read.table.ArrPut2(row, static_cast<long>(col), std::move(cells[col]));
    }
}

// An output that is whole or not there at all: beside an old file until it is whole, or cut off again behind one.
class WholeFile {
public:
    explicit WholeFile(const FileDesk& desk) : desk_(desk) {}
    ~WholeFile() { (void)TakeBack(); }
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    core::Result Open(std::string_view name, char existsAction) {
        const core::OpenRules rules{.existsAction = existsAction, .textMode = true};
        if (existsAction != 'A') return core::OpenNew(desk_.user, desk_.paths, name, rules, whole_);
        path_ = desk_.paths.ToNative(name);
        oldSize_ = core::FileSize(path_);
        core::Result opened = core::OpenFile(desk_.user, desk_.paths, name, 'O', rules, longer_);
        pending_ = longer_.IsOpen();
        return opened;
    }
    core::Result Add(std::string_view text) {
        buffer_ += text;
        return buffer_.size() < kChunk ? core::Result{} : Flush();
    }
    core::Result Close() {
        if (core::Result written = Flush(); !written) return written;
        if (!pending_) return whole_.PutInPlace();
        if (core::Result closed = longer_.Close(); !closed) return closed;
        core::Result synced = core::SyncFile(path_);
        pending_ = !synced.ok;
        return synced;
    }
    // Takes out what was appended; gives what is left to tell.
    std::string TakeBack() {
        if (!std::exchange(pending_, false)) return {};
        (void)longer_.Close();  // what it wrote goes anyway
        if (oldSize_ < 0) return core::FileDelete(path_) ? "" : "\rThe incomplete file could not be removed.";
        return ::truncate(path_.c_str(), oldSize_) == 0 ? "" : "\rThe lines written so far could not be taken out.";
    }

private:
    core::Result Flush() {
        core::Result written = pending_ ? longer_.Write(buffer_) : whole_.Write(buffer_);
        buffer_.clear();
        return written;
    }

    const FileDesk& desk_;
    core::fileio::NewFile whole_{};
    core::OpenedFile longer_{};
    bool pending_ = false;  // something stands behind the old file, or may
    std::string path_{}, buffer_{};
    std::int64_t oldSize_ = -1;  // below 0: there was none
};

// Opens, lets `write` add text, closes; a failure or a stop leaves everything as it was.
CsvSaved SaveWhole(const FileDesk& desk, std::string_view name, char existsAction, double rows,
                   const std::function<core::Result(WholeFile&, Report&)>& write) {
    CsvSaved saved;
    WholeFile file(desk);
    core::Result done = file.Open(name, existsAction);
    saved.opened = done.ok;
    if (saved.opened) {
        Report report(desk.progress, std::string("Writing CSV file ").append(name).append(". Please wait ...."), "rows",
                      rows);
        try {
            done = write(file, report);
            if (done) done = file.Close();
        } catch (const core::Stopped&) {
            saved.stopped = true;
            done = {false, "Stopped."};
        }
        if (!done) done.error += file.TakeBack();
    }
    saved.ok = done.ok;
    saved.error = done.error;
    return saved;
}

std::string CellText(const TableArray::Cell& cell, const CsvWriteRules& rules) {
    if (!cell) return {};
    std::string text;
    if (rules.keepLineEnds) {
        text = *cell;
    } else {
        for (const char c : *cell)
            if (c == '\r' || c == '\n')
                text += rules.lineEndText;
            else
                text += c;
    }
    return CsvCell(text, rules.quoted ? CsvQuotes::Doubled : CsvQuotes::Coded, rules.guard, rules.delimiter);
}

std::string RowText(const TableArray& array, long row, long firstCol, const CsvWriteRules& rules) {
    std::string line;
    for (long col = firstCol; col <= array.LastCol(); ++col) {
        if (col > firstCol) line += rules.delimiter;
        line += CellText(array.At(row, col), rules);
    }
    return line + "\r\n";
}

}  // namespace

CsvRead ReadCSV(const FileDesk& desk, std::string_view PAFN, const CsvReadRules& rules) {
    CsvRead read;
    core::OpenedFile file;
    read.result = core::OpenFile(desk.user, desk.paths, PAFN, 'I', {.missingAction = 'E'}, file);
    if (!read.result) return read;
    const std::string path = desk.paths.ToNative(PAFN);
    const std::int64_t size = core::FileSize(path);
    if (size == 0) return read;
    Report report(desk.progress, std::string("Reading CSV file ").append(PAFN).append(". Please wait ...."), "bytes",
                  static_cast<double>(size));
    Lines lines(file.Get());
    try {
        ReadRows(lines, rules, report, read);
        if (lines.Failed()) read.result = {false, "Error when try to read file.\rFile name: " + std::string(PAFN)};
    } catch (const core::Stopped&) {
        read.stopped = true;
        read.result = {false, "Stopped."};
    }
    return read;
}

CsvSaved SaveCSV(const FileDesk& desk, std::string_view PAFN, const TableArray& array, const CsvWriteRules& rules) {
    const long firstRow = rules.firstRow.value_or(array.FirstRow());
    const long firstCol = rules.firstCol.value_or(array.FirstCol());
    const auto rows = static_cast<double>(array.LastRow() - firstRow + 1);
    return SaveWhole(desk, PAFN, rules.existsAction, rows, [&](WholeFile& file, Report& report) {
        core::Result written = file.Add(rules.header);
        for (long row = firstRow; written && row <= array.LastRow(); ++row) {
            report.Step(static_cast<double>(row - firstRow + 1));
            written = file.Add(RowText(array, row, firstCol, rules));
        }
        return written ? file.Add(rules.trailer) : written;
    });
}

CsvSaved SaveLines(const FileDesk& desk, std::string_view PAFN, const std::vector<std::string>& lines,
                   char existsAction) {
    return SaveWhole(desk, PAFN, existsAction, static_cast<double>(lines.size()), [&](WholeFile& file, Report& report) {
        core::Result written;
        for (std::size_t i = 0; written && i < lines.size(); ++i) {
            report.Step(static_cast<double>(i + 1));
            written = file.Add(lines[i] + "\r\n");
        }
        return written;
    });
}

}  // namespace dialogs
