#include <memory>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/output.h"
#include "core/errlog.h"
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

int Log(Program& program, const LogOptions& options) {
    if (options.errors) return Errors(program, options);
    throw UsageError(
        "What was added is not logged yet, so there is no list of it. corvane-cli log --errors shows failures; "
        "corvane-cli site show tells what the site holds.");
}

}  // namespace

void AddLogCommands(CLI::App& root, Program& program) {
    auto options = std::make_shared<LogOptions>();
    CLI::App* log = NewCommand(root, "log", "Recorded failures of the site (--errors)", "log --errors -n 5");
    log->add_flag("--errors", options->errors, "Failures that nobody expected, the newest last");
    log->add_flag("--json", options->json, "As JSON");
    log->add_option("-n", options->most, "At most this many (default: 20)")->check(CLI::Range(1, 100000));
    log->callback([=, &program] { program.run = [=, &program] { return Log(program, *options); }; });
}

}  // namespace cli
