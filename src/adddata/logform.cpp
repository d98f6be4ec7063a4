#include "adddata/logform.h"

#include <algorithm>
#include <span>

#include "core/env.h"
#include "core/inistore.h"
#include "dialogs/gridops.h"
#include "logdefs/formatstore.h"

namespace adddata {
namespace {

constexpr std::size_t kMostShown = 20;   // files whose first lines are looked at while somebody types
constexpr std::size_t kMostText = 1000;  // bytes of a cell
constexpr std::string_view kFoundSpec = "12000|950||||||||1|0|{4300|2200|5500}";

}  // namespace

std::string DefaultFormat(const AddDesk& at) { return at.env.ini.IniGet("Main", "LFmtDflt", at.site.Paths().lastVals); }

LogForm::LogForm(const AddDesk& at, const LogSpecs& known) : at_(at), otherwise_(DefaultFormat(at)), trials_(at) {
    for (const logdefs::LogFileSpec& spec : known) known_.emplace(spec.file, spec.format);
}

void LogForm::AddBox(const std::string& paths, dialogs::Controls& controls) {
    dialogs::MBAddCtl(
        "Label", "Log files, one in eac#H160#h line; they are read in this order:", dialogs::MBSpec("12000"), controls);
    box_ = dialogs::MBAddCtl("TextBox", paths, dialogs::MBSpec("12000|800"), controls);
    controls[box_].pick = dialogs::Pick::OpenFiles;
    controls[box_].caption = "Log files";
    controls[box_].hint = "Browse for the logs of your web server, or drop them on the main window";
}

void LogForm::AddFormat(const std::string& format, dialogs::Controls& controls) {
    dialogs::Rows formats{{std::string(kBestFit)}};
    for (const std::string& name : logdefs::LogFmtNames(at_.env.ini, at_.program.formats)) formats.push_back({name});
    dialogs::MBAddCtl("Label", "Log forma#H160#t:", dialogs::MBSpec("1500"), controls);
    format_ = dialogs::MBAddCtl("ComboBox_", format.empty() ? kBestFit : std::string_view(format),
                                dialogs::MBSpec("6800"), controls, std::move(formats));
    controls[format_].caption = "Log format";
    controls[format_].readOnly = true;
}

void LogForm::AddFound(dialogs::Controls& controls) {
    found_ = dialogs::MBAddCtl("Grid", "-1", dialogs::MBSpec(kFoundSpec), controls);
    controls[found_].caption = "Files to be read";
    controls[found_].emptyText = "No file is chosen yet. Browse for the logs of your web server.";
    controls[found_].rows = {{"File to be read", "LogFormat", "Its first lines"}};
}

void LogForm::Live(dialogs::Controls& controls) {
    const LogSpecs specs = Specs(controls);
    const std::string format = Format(controls);
    dialogs::Rows rows{controls[found_].rows.front()};
    for (const logdefs::LogFileSpec& spec : specs) {
        if (rows.size() > kMostShown) {
            rows.push_back({"... and " + std::to_string(specs.size() - kMostShown) + " more"});
            break;
        }
        const std::string used = FormatOf(spec, format);
        const bool full = spec.file.starts_with('/');
        rows.push_back({dialogs::GridCellText(spec.file, kMostText), full ? used : "",
                        full ? dialogs::GridCellText(trials_.Text(spec.file, used), kMostText)
                             : "Give the full path, from \"/\" on."});
    }
    controls[found_].rows = std::move(rows);
}

LogSpecs LogForm::Specs(const dialogs::Controls& controls) const {
    LogSpecs specs;
    for (std::string& path : PathsOf(controls[box_].value)) {
        const auto known = known_.find(path);
        std::string format = known != known_.end() ? known->second : std::string();
        specs.push_back({std::move(path), std::move(format)});
    }
    return specs;
}

std::string LogForm::Format(const dialogs::Controls& controls) const {
    std::string format = controls[format_].ComboText();
    return format == kBestFit ? std::string() : format;
}

std::string LogForm::FormatOf(const logdefs::LogFileSpec& spec, const std::string& format) {
    if (!spec.format.empty()) return spec.format;
    return format.empty() ? trials_.Best(spec.file, otherwise_) : format;
}

std::string LogForm::FilesProblem(const LogSpecs& specs) const {
    if (specs.empty()) return "Name at least one log file.";
    for (const logdefs::LogFileSpec& spec : specs)
        if (std::string problem = LogFileProblem(at_, spec.file); !problem.empty()) return problem;
    return {};
}

LogSpecs LogForm::WithFormats(LogSpecs specs, const std::string& format) {
    for (std::size_t i = 0; i < specs.size(); ++i) {
        logdefs::LogFileSpec& spec = specs[i];
        const bool asFirst =
            i >= kMostShown && spec.format.empty() && trials_.Misfit(spec.file, specs.front().format).empty();
        spec.format = asFirst ? specs.front().format : FormatOf(spec, format);
    }
    return specs;
}

std::string LogForm::FormatsProblem(const LogSpecs& specs, const std::string& format) {
    for (const logdefs::LogFileSpec& spec : std::span(specs).first(std::min(specs.size(), kMostShown)))
        if (std::string problem = trials_.Misfit(spec.file, FormatOf(spec, format)); !problem.empty()) return problem;
    return {};
}

}  // namespace adddata
