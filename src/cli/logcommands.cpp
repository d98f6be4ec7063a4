#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "adddata/addlog.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "core/errlog.h"
#include "core/numbers.h"
#include "core/text.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

struct LogOptions {
    bool errors = false, json = false;
    int most = 20;
};

// What went wrong, without the rest of the message.
std::string What(const core::EventRecord& record) {
    const std::string_view text = core::fAfter(record.message, "\rDescription:\r<<");
    return std::string(core::fBefore(text, ">>."));
}

ordered_json RecordJson(const core::EventRecord& record) {
    return {{"date", record.date},
            {"time", record.time},
            {"number", record.number},
            {"event", record.event},
            {"caption", record.caption},
            {"screen", record.place.form},
            {"control", record.place.control},
            {"data", record.place.controlIndex},
            {"message", record.message}};
}

int Errors(Program& program, const LogOptions& options) {
    core::EventLog& events = program.Env().events;
    // Without a site the log of the data home is read, where failures stand that happened before one was open.
    if (!program.Session().Sites().CurrentFolder().empty() || !program.site.empty())
        events.SetPath(program.SiteFiles().errorLog);
    const std::string tail = events.Tail();
    std::vector<core::EventRecord> records = core::ReadEventRecords(tail);
    const auto most = static_cast<std::size_t>(options.most);
    if (records.size() > most) records.erase(records.begin(), records.end() - options.most);
    if (options.json) {
        ordered_json list = ordered_json::array();
        for (const core::EventRecord& record : records) list.push_back(RecordJson(record));
        PrintJson(list);
        return 0;
    }
    if (records.empty()) {
        PrintError("No errors have been recorded.");
        return 0;
    }
    TextTable table{{{"Date"}, {"Time"}, {"No", true}, {"Event"}, {"What"}}, {}};
    for (const core::EventRecord& record : records)
        table.rows.push_back({record.date, record.time, std::to_string(record.number), record.event, What(record)});
    PrintTable(table);
    return 0;
}

// What a person looks for first; --json has all columns.
struct ShownColumn {
    std::size_t column;
    std::string_view header;
    bool right = false;
};
constexpr std::array kShownColumns{
    ShownColumn{adddata::AddLogAt("addedDay"), "Added"},
    ShownColumn{adddata::AddLogAt("fileSpec"), "File"},
    ShownColumn{adddata::AddLogAt("action"), "Action"},
    ShownColumn{adddata::AddLogAt("totalLines"), "Total Lines", true},
    ShownColumn{adddata::AddLogAt("linesAdded"), "Lines Added", true},
    ShownColumn{adddata::AddLogAt("firstDate"), "First Date"},
    ShownColumn{adddata::AddLogAt("lastDate"), "Last Date"},
    ShownColumn{adddata::AddLogAt("problems"), "Problems", true},
};

// Null for what does not apply.
ordered_json FieldJson(const std::string& field, adddata::AddLogKind kind) {
    if (field == adddata::kNoField) return nullptr;
    if (kind == adddata::AddLogKind::Flag) return field == adddata::AddLogFlag(true);
    if (kind == adddata::AddLogKind::Count && core::IsNumeric(field))
        return static_cast<std::int64_t>(core::fNum(core::fStrip(field, ",")));
    return field;
}

ordered_json RecordJson(const adddata::AddLogRecord& record) {
    ordered_json json = ordered_json::object();
    for (std::size_t i = 0; i < adddata::kAddLogFields; ++i) {
        const adddata::AddLogColumn& column = adddata::kAddLogColumns[i];
        json[std::string(column.key)] = FieldJson(record.fields[i], column.kind);
    }
    return json;
}

int Added(Program& program, const LogOptions& options) {
    const std::string path = adddata::AddLogFile(program.SiteFiles());
    const adddata::AddLogRead read = adddata::ReadAddLog(path, static_cast<std::size_t>(options.most));
    if (!read.result) throw Failure(read.result.error);
    if (options.json) {
        ordered_json list = ordered_json::array();
        for (const adddata::AddLogRecord& record : read.records) list.push_back(RecordJson(record));
        PrintJson(list);
        return 0;
    }
    if (read.records.empty()) {
        PrintError("No data has been added to this database.");
        return 0;
    }
    TextTable table;
    for (const ShownColumn& column : kShownColumns) table.columns.push_back({std::string(column.header), column.right});
    for (const adddata::AddLogRecord& record : read.records) {
        std::vector<std::string> cells;
        for (const ShownColumn& column : kShownColumns) {
            const std::string& field = record.fields[column.column];
            cells.push_back(field == adddata::kNoField ? std::string() : field);
        }
        table.rows.push_back(std::move(cells));
    }
    PrintTable(table);
    return 0;
}

int Log(Program& program, const LogOptions& options) {
    return options.errors ? Errors(program, options) : Added(program, options);
}

}  // namespace

void AddLogCommands(CLI::App& root, Program& program) {
    auto options = std::make_shared<LogOptions>();
    CLI::App* log =
        NewCommand(root, "log", "What was added to the site, or its recorded failures (--errors)", "log -n 5");
    log->add_flag("--errors", options->errors, "Failures that nobody expected instead of adds");
    log->add_flag("--json", options->json, "As JSON");
    log->add_option("-n", options->most, "The last N records (default: 20), the newest last")
        ->check(CLI::Range(1, 100000));
    log->callback([=, &program] { program.run = [=, &program] { return Log(program, *options); }; });
}

}  // namespace cli
