// Targets on the road of a log line: template, reader, engines, table definitions.
#include <string>

#include "core/error.h"
#include "core/files.h"
#include "core/utf8.h"
#include "logdefs/engines.h"
#include "logdefs/format.h"
#include "logdefs/linedate.h"
#include "logread/linereader.h"
#include "names/searchterm.h"
#include "sitedb/columns.h"
#include "sitedb/loglines.h"
#include "sitedb/sqlite.h"
#include "sitedb/storeerror.h"
#include "sitedb/tabledef.h"
#include "tests/fuzz/memoryfile.h"
#include "tests/fuzz/targets.h"

namespace fuzz {
namespace {

void CheckRecord(const logdefs::LogLnFields& fields) {
    logdefs::LineClock clock;
    const logdefs::LineTime time = clock.LogLnTimestamp(fields);
    Need(time.timestamp >= 0 && time.timestamp <= 99991231999999, "a time of more than 14 digits");
    sitedb::LogLnRecord record;
    sitedb::LogLn_Fill(record, fields, time.timestamp, true);
    Need(record.IP.size() <= sitedb::kIpWidth && core::IsUtf8(record.IP), "an address is too long or no UTF-8");
    for (std::size_t i = 0; i < sitedb::kTextColumns.size(); ++i) {
        Need(record.texts[i].size() <= static_cast<std::size_t>(sitedb::kTextColumns[i].width), "a text is too long");
        Need(core::IsUtf8(record.texts[i]), "a stored text is no UTF-8");
    }
}

// "a~5" is 2^(4*5) times "a": lines over the limit from a few bytes.
std::string Grown(std::string_view text) {
    constexpr std::size_t kMost = 3U << 20U;
    std::string grown;
    for (std::size_t i = 0; i < text.size() && grown.size() < kMost; ++i) {
        const bool repeats = text[i] == '~' && i > 0 && i + 1 < text.size() && text[i + 1] >= '0' && text[i + 1] <= '5';
        if (!repeats) {
            grown += text[i];
            continue;
        }
        ++i;
        // Just below, at and above the limit of a line.
        const std::size_t times = text[i] == '5' ? logread::kMaxLine - 2 : std::size_t{1} << (4 * (text[i] - '0'));
        grown.append(times, text[i - 2]);
    }
    return grown;
}

// All lines in one text, with what is told of each.
std::string LinesOf(const std::string& path, std::size_t chunk) {
    core::ChunkReader file;
    Need(file.Open(path).ok, "the file cannot be opened");
    logread::LineReader reader(file, chunk);
    logread::RawLine line;
    std::string all;
    while (reader.Next(line)) {
        all.append(line.text).append(line.tooLong ? "\n+" : "\n-").append(line.blank ? "b" : "-");
        all += std::to_string(reader.Position()) + "\n";
    }
    Need(!reader.Failed(), "reading failed");
    return all;
}

std::int64_t Count(sitedb::Database& db, std::string_view what) {
    return db.Scalar("SELECT count(*) FROM sqlite_schema WHERE " + std::string(what));
}

}  // namespace

int RunFormatLine(const std::uint8_t* data, std::size_t size) {
    const std::string text = core::ToUtf8(TextOf(data, size));
    const std::size_t middle = text.find("\n\n");
    const std::string_view templates = std::string_view(text).substr(0, middle);
    const std::string_view line =
        middle == std::string::npos ? std::string_view() : std::string_view(text).substr(middle + 2);
    core::StrArray specs(0, {""});
    for (const std::string_view spec : Parts(templates, 4)) specs.Append(std::string(spec));
    const logdefs::LogFormat format(specs);
    logdefs::LogLnFields fields;
    if (!format.LogLnInterpret(line, fields)) return 0;
    Need(!logdefs::IsBlankLine(line), "a blank line fits");
    for (int i = 0; i <= logdefs::FmtFieldCount; ++i) {
        const std::string_view field = fields[i];
        Need(field.empty() || (field.data() >= line.data() && field.data() + field.size() <= line.data() + line.size()),
             "a field lies outside the line");
        Need(core::IsUtf8(field), "a field is no UTF-8");
    }
    Need(fields[0].empty(), "index 0 is not empty");
    CheckRecord(fields);
    return 0;
}

int RunEngines(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string_view> parts = Parts(TextOf(data, size), 3);
    std::vector<std::string> definitions{"*.google.*/* q,p,as_q", "search.example.com/find/* ::/find/~/,query"};
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) definitions.push_back(core::ToUtf8(parts[i]));
    const std::string referrer = core::ToUtf8(parts.back());
    try {
        const logdefs::SearchEngines engines(definitions);
        std::vector<std::string> undefined(engines.Count() + 1);
        const logdefs::FoundTerm found = engines.STFromReferrer(referrer, undefined);
        Need(core::IsUtf8(found.term) && core::IsUtf8(found.engine), "a term or an engine is no UTF-8");
        Need(found.found || found.term.empty(), "a term that was not found");
        std::string raw = found.term;
        Need(core::IsUtf8(names::ST_Std(raw)), "a standard term is no UTF-8");
        const logdefs::FoundTerm again = engines.STFromReferrer(referrer);
        Need(again.term == found.term && again.engine == found.engine, "a second look finds another term");
    } catch (const core::ErrorNumber&) {
        // A definition that cannot compile, told by its number.
    }
    return 0;
}

int RunTableDef(const std::uint8_t* data, std::size_t size) {
    try {
        const sitedb::TableDef def = sitedb::ParseTableDef(TextOf(data, size));
        if (def.fields.empty()) return 0;
        sitedb::Database db(":memory:", {.create = true});
        db.Exec(sitedb::CreateTableSql("logline", def));
        Need(Count(db, "type<>'index'") == 1 + Count(db, "name='sqlite_sequence'"),
             "a definition makes more than its table");
        for (const sitedb::IndexSql& index : sitedb::CreateIndexSql("logline", def)) db.Exec(index.create);
        Need(Count(db, "type='table' AND name='logline'") == 1, "the table has another name");
        Need(Count(db, "type IN ('trigger','view')") == 0, "a definition makes a trigger or a view");
    } catch (const core::ErrorNumber&) {
        // A definition that cannot be: refused with its number.
    }
    return 0;
}

int RunReader(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(Grown(TextOf(data, size)));
    const std::string lines = LinesOf(file.Path(), logread::kReadChunk);
    for (const std::size_t chunk : {std::size_t{7}, std::size_t{4096}, std::size_t{1} << 22U})
        Need(LinesOf(file.Path(), chunk) == lines, "another chunk gives other lines");
    if (size < 500)
        Need(core::FileSize(file.Path()) > 5000 || LinesOf(file.Path(), 1) == lines, "chunks of 1 give other lines");
    return 0;
}

}  // namespace fuzz
