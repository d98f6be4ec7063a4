#include "shell/addscreen.h"

#include <algorithm>
#include <array>
#include <utility>

#include "adddata/tryformat.h"
#include "core/cds.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "logdefs/formatstore.h"

namespace shell {
namespace {

constexpr std::size_t kShownErrors = 8;

void AppendPath(std::vector<std::string>& paths, std::string_view text) {
    if (!core::fTrim(text).empty()) paths.emplace_back(text);
}

bool Stands(const std::string& path) {
    if (core::Exists(path)) return true;
    return path.find('*') != std::string::npos && !core::ListFiles(core::fPathOf(path), core::fNameOf(path)).empty();
}

// The file whose lines stand for those of the list; "" when there is none to look at.
std::string Sample(const std::string& path) {
    if (core::IsRegularFile(path)) return path;
    if (path.find('*') == std::string::npos) return {};
    const std::string folder = core::fPathOf(path);
    for (const std::string& name : core::ListFiles(folder, core::fNameOf(path)))
        if (core::IsRegularFile(folder + name)) return folder + name;
    return {};
}

struct CountRow {
    std::string_view text;
    std::int64_t logread::AllCounters::*count;
};
constexpr std::array kCounts{
    CountRow{"Lines read: ", &logread::AllCounters::AllLinesRead},
    CountRow{"Lines added: ", &logread::AllCounters::AllLinesAdded},
    CountRow{"Lines that were there already: ", &logread::AllCounters::AllLinesExist},
    CountRow{"Left out by the main filter: ", &logread::AllCounters::AllFiltered},
    CountRow{"Left out, robots: ", &logread::AllCounters::AllBots},
    CountRow{"Left out, page components: ", &logread::AllCounters::AllComps},
};

std::string Count(std::int64_t count) { return core::CountText(static_cast<double>(count)); }

std::string Errors(const adddata::AddOutcome& outcome) {
    std::vector<std::string> errors = outcome.read.errors;
    if (!outcome.visits.error.empty()) errors.push_back(outcome.visits.error);
    std::string text;
    for (std::size_t i = 0; i < std::min(errors.size(), kShownErrors); ++i) text += "\r" + errors[i];
    if (errors.size() > kShownErrors) text += "\r... and " + std::to_string(errors.size() - kShownErrors) + " more";
    return text.empty() ? text : "\r\rNot everything could be added:" + text;
}

}  // namespace

std::vector<std::string> PathsOf(std::string_view text) {
    std::vector<std::string> paths;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.find('|') == std::string_view::npos || core::Exists(std::string(line))) {
            AppendPath(paths, line);
            continue;
        }
        const core::StrArray items = core::CDSSplitPlain(line);
        for (const std::string& item : items.Items()) AppendPath(paths, item);
    }
    return paths;
}

std::string AddSummary(const adddata::AddOutcome& outcome) {
    std::string text = outcome.visits.cancelled || !outcome.read.ok ? "The add was stopped." : "The add is done.";
    text += "\r";
    for (const CountRow& row : kCounts)
        text.append("\r").append(row.text).append(Count(outcome.read.totals.*row.count));
    if (outcome.visits.done)
        text += "\rVisits made: " + Count(outcome.visits.visitsMade);
    else
        text +=
            "\r\rThe visits of these lines are not built yet. Corvane offers to complete them at the next start, "
            "and the next add completes them.";
    return text + Errors(outcome);
}

bool AddScreen::Show(sitedb::Site& site, const std::vector<std::string>& files) {
    if (site.ReadOnly()) {
        dialogs::ShowMsg(desk_, "Nothing can be added: the site's folder cannot be written.\r\r" + site.Paths().folder);
        return true;
    }
    dialogs::Controls controls;
    const Places at = Fill(site, files, controls);
    dialogs::Box box;
    box.message = "Add raw log data to the site database: " + site.Options().name;
    box.buttons = "&Add|&Cancel";
    box.title = "- Add raw log data";
    box.name = "AddRawLogs";
    box.helpId = "AddLog";
    const dialogs::Pressed pressed = dialogs::ShowMBRepeat(
        desk_, box, controls, [&](dialogs::Controls& entered, int) { return Problem(entered, at); });
    if (pressed.Cancelled()) return false;
    Add(site, Entered(site.Paths(), controls, at));
    return true;
}

AddScreen::Places AddScreen::Fill(sitedb::Site& site, const std::vector<std::string>& files,
                                  dialogs::Controls& controls) {
    const std::string& lastVals = site.Paths().lastVals;
    Places at;
    std::string list;
    for (const std::string& file : files) list += (list.empty() ? "" : "\r") + file;
    dialogs::MBAddCtl(
        "Label", "#H160#Log files, one in each line; they are read in this order:", dialogs::MBSpec("9000"), controls);
    at.files = dialogs::MBAddCtl("TextBox", list, dialogs::MBSpec("9000|1800"), controls);
    controls[at.files].pick = dialogs::Pick::OpenFiles;
    controls[at.files].caption = "Log files";
    controls[at.files].hint = "Browse for the logs of your web server, or drop them on the main window";
    dialogs::MBAddCtl("Label", "Log #H160#format:", dialogs::MBSpec("2000"), controls);
    dialogs::Rows formats;
    for (const std::string& name : logdefs::LogFmtNames(desk_.ini, session_.ProgramFiles().formats))
        formats.push_back({name});
    at.format = dialogs::MBAddCtl("ComboBox_", BestFormat(files, desk_.ini.IniGet("Main", "LFmtDflt", lastVals)),
                                  dialogs::MBSpec("6800"), controls, std::move(formats));
    controls[at.format].caption = "Log format";
    controls[at.format].readOnly = true;
    const auto addBox = [&](std::string_view caption, std::string_view key) {
        const std::string ticked(core::fBoolWord(desk_.ini.IniGetBool("Main", key, lastVals)));
        const int number = dialogs::MBAddCtl("CheckBox", ticked, dialogs::MBSpec("9000"), controls);
        controls[number].caption = caption;
        return number;
    };
    at.robots = addBox("Leave out lines of &robots", "nobots");
    at.components = addBox("Leave out &page components (images, styles, scripts)", "nocomp");
    return at;
}

std::string AddScreen::BestFormat(const std::vector<std::string>& files, std::string otherwise) {
    for (const std::string& file : files) {
        const std::string sample = Sample(file);
        std::vector<adddata::FormatTrial> trials;
        if (sample.empty() || !adddata::TryAllFormats(desk_.ini, session_.ProgramFiles().formats, sample, trials))
            continue;
        // The site's own format stays when no other fits more lines.
        const auto own = std::ranges::find(trials, otherwise, &adddata::FormatTrial::format);
        if (own != trials.end() && own->fit == trials.front().fit) return otherwise;
        if (!trials.empty()) return trials.front().format;
    }
    return otherwise;
}

std::string AddScreen::Problem(const dialogs::Controls& controls, const Places& at) {
    const std::vector<std::string> paths = PathsOf(controls[at.files].value);
    if (paths.empty()) return "Name at least one log file.";
    for (const std::string& path : paths) {
        if (!path.starts_with('/')) return "Give the full path, from \"/\" on: " + path;
        if (!Stands(path)) return "There is no such file: " + path;
    }
    const std::string format = controls[at.format].ComboText();
    if (format.empty()) return "Choose a log format.";
    return Misfit(paths.front(), format);
}

// A file none of whose lines fits would be left out; better told now.
std::string AddScreen::Misfit(const std::string& file, const std::string& format) {
    const std::string sample = Sample(file), formats = session_.ProgramFiles().formats;
    const logdefs::LogFormatLoaded loaded = logdefs::LogFmtLoad(desk_.ini, format, formats);
    if (!loaded.found) return "There is no log format of that name: " + format;
    adddata::FormatTrial trial;
    if (sample.empty() || !adddata::TryFormat(sample, format, loaded.format, 0, trial)) return {};
    if (trial.lines == 0 || trial.fit > 0) return {};
    std::vector<adddata::FormatTrial> others;
    const bool tried = static_cast<bool>(adddata::TryAllFormats(desk_.ini, formats, sample, others));
    return "No line of this file has the log format \"" + format + "\": " + sample +
           (tried && !others.empty() ? ". The format that fits best is \"" + others.front().format + "\"."
                                     : ". No other format fits either; is it a log of a web server?");
}

adddata::AddRequest AddScreen::Entered(const sitedb::SitePaths& site, const dialogs::Controls& controls,
                                       const Places& at) {
    adddata::AddRequest request;
    for (const std::string& path : PathsOf(controls[at.files].value)) request.files.push_back({path, ""});
    request.format = controls[at.format].ComboText();
    request.skipRobots = controls[at.robots].Ticked();
    request.skipComponents = controls[at.components].Ticked();
    desk_.ini.IniPut("Main", "LFmtDflt", request.format, site.lastVals);
    desk_.ini.IniPutBool("Main", "nobots", *request.skipRobots, site.lastVals);
    desk_.ini.IniPutBool("Main", "nocomp", *request.skipComponents, site.lastVals);
    return request;
}

void AddScreen::Add(sitedb::Site& site, const adddata::AddRequest& request) {
    const adddata::AddOutcome outcome = adddata::AddLogData(session_.Env(), site, session_.ProgramFiles(), request);
    const bool well = outcome.Status() == 0;
    const auto icon = well ? dialogs::Icon::Information : dialogs::Icon::Exclamation;
    dialogs::ShowMsg(desk_, AddSummary(outcome), "- Add raw log data", std::to_string(static_cast<int>(icon)));
}

}  // namespace shell
