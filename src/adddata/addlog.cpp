#include "adddata/addlog.h"

#include <algorithm>

#include "core/dates.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "sitedb/site.h"

namespace adddata {
namespace {

constexpr char kSeparator = '?';
constexpr std::string_view kSeparatorShown = "\xEF\xBC\x9F";  // the wide question mark stands for one in a text
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kName = "adddata.log";
constexpr int kMostField = 2000;  // bytes; a list of thousands of files does not make a record of megabytes
constexpr std::int64_t kFirstTail = 65536;

// File names and filters hold what anybody wrote: nothing in them may end a field, end the line or reach a terminal.
std::string Tame(std::string_view field) {
    const std::string utf8 = core::fLeft(core::ToUtf8(field), kMostField, "..").text;
    std::string tame;
    for (std::size_t at = 0; at < utf8.size();) {
        const core::Letter letter = core::LetterAt(utf8, at);
        if (letter.code < 32 || (letter.code >= 127 && letter.code < 160))
            tame += '.';
        else if (letter.code == kSeparator)
            tame += kSeparatorShown;
        else
            tame.append(utf8, at, letter.length);
        at += letter.length;
    }
    return tame;
}

std::vector<AddLogRecord> RecordsOf(std::string_view text) {
    std::vector<AddLogRecord> records;
    while (!text.empty()) {  // no field holds a line feed
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (auto record = ReadAddLogLine(line)) records.push_back(std::move(*record));
    }
    return records;
}

}  // namespace

std::string AddLogCount(double count) { return core::fFormat(count, "#,###,###,###,##0"); }

std::string AddLogFlag(bool flag) { return flag ? "Yes" : "No"; }

std::string AddLogDate(double moment) {
    return moment == 0 ? std::string(kNoField) : core::FormatDate(moment, "dd mmm yyyy hh:nn.ss");
}

std::string AddLogSort(double moment) {
    return moment == 0 ? std::string(kNoField) : core::FormatDate(moment, "yyyy-mm-dd hh:nn.ss");
}

std::string AddLogLine(const AddLogRecord& record) {
    std::string line;
    for (std::size_t i = 0; i < kAddLogFields; ++i) {
        if (i > 0) line += kSeparator;
        const std::string& field = record.fields[i];
        // A field is never empty, so that a "?" where one begins is the whole of it.
        line += field.empty() || field == kNoField ? std::string(kNoField) : Tame(field);
    }
    return line.append(kLineEnd);
}

std::optional<AddLogRecord> ReadAddLogLine(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    AddLogRecord record;
    std::size_t at = 0;
    for (std::size_t i = 0; i < kAddLogFields; ++i) {
        if (at >= line.size()) return std::nullopt;
        const std::size_t end = line[at] == kSeparator ? at + 1 : std::min(line.find(kSeparator, at), line.size());
        record.fields[i] = line.substr(at, end - at);
        const bool last = i + 1 == kAddLogFields;
        if (last != (end == line.size()) || (!last && line[end] != kSeparator)) return std::nullopt;
        at = end + 1;
    }
    return record;
}

std::string AddLogFile(const sitedb::SitePaths& site) { return core::fPathOf(site.lastVals).append(kName); }

core::Result AppendAddLog(const std::string& path, std::span<const AddLogRecord> records) {
    std::string text;
    if (const std::int64_t size = core::FileSize(path); size > 0)
        if (const core::ReadText end = core::ReadFile(path, size, 1); end.result && end.text != "\n") text = kLineEnd;
    for (const AddLogRecord& record : records) text += AddLogLine(record);
    return core::AppendWhole(path, text);
}

AddLogRead ReadAddLog(const std::string& path, std::size_t most) {
    AddLogRead read;
    const std::int64_t size = core::FileSize(path);
    for (std::int64_t tail = kFirstTail; size > 0; tail *= 4) {
        const bool whole = tail >= size;
        core::ReadText part = core::ReadFile(path, whole ? 1 : size - tail + 1);
        read.result = part.result;
        if (!part.result) return read;
        // The first line of a tail may have lost its beginning.
        read.records = RecordsOf(whole ? std::string_view(part.text) : core::fAfter(part.text, "\n"));
        if (whole || read.records.size() >= most) break;
    }
    if (read.records.size() > most)
        read.records.erase(read.records.begin(), read.records.end() - static_cast<std::ptrdiff_t>(most));
    return read;
}

}  // namespace adddata
