#include "core/errlog.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "core/dates.h"
#include "core/files.h"
#include "core/ports.h"
#include "core/utf8.h"

namespace core {

namespace {

constexpr int kSystemErrors = 32768;
constexpr std::int64_t kTail = 100000;

struct RuntimeText {
    int number;
    std::string_view text;
};
constexpr std::array kRuntimeTexts{RuntimeText{7, "Out of memory"},      RuntimeText{9, "Subscript out of range"},
                                   RuntimeText{53, "File not found"},    RuntimeText{61, "Disk full"},
                                   RuntimeText{70, "Permission denied"}, RuntimeText{75, "Path/File access error"},
                                   RuntimeText{76, "Path not found"}};

std::string Describe(int number, std::string_view description) {
    if (!description.empty()) return std::string(description);
    if (number >= kSystemErrors) return "Windows Error";
    const auto* row = std::ranges::find(kRuntimeTexts, number, &RuntimeText::number);
    return std::string(row != kRuntimeTexts.end() ? row->text : "Internal error");
}

// Text that may hold what a visitor sent: no control character of it may end a
// record or reach a terminal.
std::string Tame(std::string_view text) {
    const std::string utf8 = ToUtf8(text);
    std::string tame;
    for (std::size_t at = 0; at < utf8.size();) {
        const Letter letter = LetterAt(utf8, at);
        const bool control = letter.code < 32 || (letter.code >= 127 && letter.code < 160);
        if (control)
            tame += '.';
        else
            tame.append(utf8, at, letter.length);
        at += letter.length;
    }
    return tame;
}

std::string Quoted(std::string_view field) {
    std::string quoted = "\"";
    for (const char c : field) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

// The fields of one record without its line end; none when a quote stands where it cannot.
std::vector<std::string> FieldsOf(std::string_view record) {
    std::vector<std::string> fields;
    for (std::size_t at = 0; at <= record.size(); ++at) {
        std::string field;
        if (at < record.size() && record[at] == '"') {
            for (++at;; ++at) {
                if (at >= record.size()) return {};
                if (record[at] != '"')
                    field += record[at];
                else if (at + 1 < record.size() && record[at + 1] == '"')
                    field += record[at++];
                else
                    break;
            }
            if (++at < record.size() && record[at] != ',') return {};
        } else {
            const std::size_t end = std::min(record.find(',', at), record.size());
            field = record.substr(at, end - at);
            at = end;
        }
        fields.push_back(std::move(field));
    }
    return fields;
}

}  // namespace

std::vector<EventRecord> ReadEventRecords(std::string_view text) {
    constexpr std::size_t kFields = 12;
    std::vector<EventRecord> records;
    while (!text.empty()) {  // no field holds a line feed
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (!line.starts_with('"')) continue;
        std::vector<std::string> f = FieldsOf(line);
        if (f.size() != kFields) continue;
        const int number = std::atoi(f[2].c_str());
        records.push_back({f[0], f[1], number, f[3], f[4], f[5], f[6], f[7], {f[8], f[9], f[10]}, f[11]});
    }
    return records;
}

Result EventLog::AppendFallback(std::string_view text) const { return AppendWhole(fallback_, Tame(text) + "\r\n"); }

void EventLog::SetProgram(std::string folder, std::string executable, std::string caption) {
    folder_ = std::move(folder);
    executable_ = std::move(executable);
    caption_ = std::move(caption);
}

EventLog::Logged EventLog::LogEvent(int number, std::string_view procName, std::string_view description,
                                    const EventPlace& place) {
    std::string proc = Tame(procName);
    const std::string path = path_.empty() ? fallback_ : path_;
    if (path_.empty()) proc += " Also: gPAFN_Errorlog not set, error log written to " + fallback_ + ".";
    const double now = clock_.Now();
    const std::string date = FormatDate(now, "yyyy-mm-dd"), time = FormatDate(now, "hh:nn:ss");
    const std::string form = Tame(place.form), control = Tame(place.control), index = Tame(place.controlIndex);

    Logged logged;
    logged.message = "<<<Logged event (auto processing; warning or error)>>>\r\rDescription:\r<<" +
                     std::to_string(number) + " - " + Tame(Describe(number, description)) +
                     ">>.\r\rINTERNAL. Proc: " + proc + "\rForm: " + form + "\rControl: " + control + " / " + index +
                     "\r\rEvent Logged at >> " + date + " " + time + " << to file >>" + Tame(path) + "<<";
    const std::string record = Quoted(date) + "," + Quoted(time) + "," + std::to_string(number) + "," + Quoted(proc) +
                               "," + Quoted(Tame(folder_)) + "," + Quoted(Tame(executable_)) + "," +
                               Quoted(Tame(caption_)) + "," + Quoted("") + "," + Quoted(form) + "," + Quoted(control) +
                               "," + Quoted(index) + "," + Quoted(logged.message) + "\r\n";
    const Result appended = AppendWhole(path, record);
    logged.written = appended.ok;
    logged.error = appended.error;
    logged.path = path;
    if (!appended && path != fallback_ && AppendWhole(fallback_, record)) {
        logged.written = true;
        logged.error += " The record stands in " + Tame(fallback_) + ".";
        logged.path = fallback_;
    }
    return logged;
}

std::string EventLog::Tail() const {
    const std::string& path = path_.empty() ? fallback_ : path_;
    const ReadText read = ReadFile(path, std::max<std::int64_t>(1, FileSize(path) - kTail + 1));
    if (read.existed && !read.result) return read.result.error;
    if (read.text.empty()) return "No errors have been recorded.";
    std::size_t start = 0;  // the cut may have gone through a letter
    while (start < read.text.size() && start < 3 && (static_cast<unsigned char>(read.text[start]) & 0xC0) == 0x80)
        ++start;
    return read.text.substr(start);
}

}  // namespace core
