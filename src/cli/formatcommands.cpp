#include <memory>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/standardinput.h"
#include "cli/suggest.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/formatfinder.h"
#include "logdefs/formatstore.h"
#include "logread/logset.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

constexpr std::size_t kSamples = 3;
constexpr int kFailed = 1;

struct FormatArguments {
    std::string name{};
    std::vector<std::string> texts{};
    bool json = false;
};

std::vector<std::string> SpecsOf(Program& program, const std::string& name) {
    const core::StrArray list = logdefs::LogFmtSpecs(program.Ini(), name, program.Session().ProgramFiles().formats);
    std::vector<std::string> specs;
    for (const std::string& spec : list.Items())
        if (!spec.empty()) specs.push_back(spec);
    return specs;
}

[[noreturn]] void RefuseName(Program& program, const std::string& name) {
    throw UsageError("There is no log format \"" + name + "\". " +
                     ValidAre(name, logdefs::LogFmtNames(program.Ini(), program.Session().ProgramFiles().formats)));
}

int List(Program& program, bool json) {
    ordered_json list = ordered_json::array();
    TextTable table{{{"Format"}, {"First specification"}}, {}};
    for (const std::string& name : logdefs::LogFmtNames(program.Ini(), program.Session().ProgramFiles().formats)) {
        const std::vector<std::string> specs = SpecsOf(program, name);
        list.push_back({{"name", name}, {"specs", specs}});
        table.rows.push_back({name, specs.empty() ? "" : specs.front()});
    }
    if (json)
        PrintJson(list);
    else
        PrintTable(table);
    return 0;
}

int Show(Program& program, const FormatArguments& arguments) {
    const std::vector<std::string> specs = SpecsOf(program, arguments.name);
    if (specs.empty()) RefuseName(program, arguments.name);
    if (arguments.json) {
        PrintJson({{"name", arguments.name}, {"specs", specs}});
        return 0;
    }
    for (const std::string& spec : specs) PrintData(spec + "\n");
    return 0;
}

void PrintDone(const FormatArguments& arguments, const std::vector<std::string>& specs, const std::string& done) {
    if (arguments.json)
        PrintJson({{"name", arguments.name}, {"specs", specs}});
    else
        Print("Log format \"" + Safe(arguments.name) + "\" " + done + "\n");
}

int Set(Program& program, const FormatArguments& arguments) {
    const auto wrong =
        logdefs::LogFmtStore(program.Ini(), arguments.name, arguments.texts, program.Session().ProgramFiles().formats);
    if (wrong) throw UsageError(*wrong);
    const logdefs::LogFormatLoaded stored =
        logdefs::LogFmtLoad(program.Ini(), arguments.name, program.Session().ProgramFiles().formats);
    for (const std::string& warning : stored.format.Warnings()) PrintError(warning);
    PrintDone(arguments, SpecsOf(program, arguments.name), "is stored.");
    return 0;
}

int Remove(Program& program, const FormatArguments& arguments) {
    const std::string formats = program.Session().ProgramFiles().formats;
    const std::vector<std::string> specs = SpecsOf(program, arguments.name);
    if (specs.empty()) RefuseName(program, arguments.name);
    if (const auto wrong = logdefs::LogFmtErase(program.Ini(), arguments.name, formats)) throw Failure(*wrong);
    PrintDone(arguments, specs, "is removed.");
    return 0;
}

double Share(const logdefs::FormatTrial& trial) {
    return trial.lines > 0 ? static_cast<double>(trial.fit) / static_cast<double>(trial.lines) : 0;
}

ordered_json TrialJson(const logdefs::FormatTrial& trial) {
    ordered_json samples = ordered_json::array();
    for (const auto& fields : trial.samples) {
        ordered_json& sample = samples.emplace_back(ordered_json::object());
        for (const logdefs::FormatTrial::Field& field : fields) sample[field.name] = field.text;
    }
    const bool misfit = trial.firstMisfitNumber > 0;
    return {{"format", trial.format},
            {"lines", trial.lines},
            {"fit", trial.fit},
            {"share", Share(trial)},
            {"plausible", trial.plausible},
            {"doubtful", trial.doubtful.empty() ? ordered_json(nullptr) : ordered_json(trial.doubtful)},
            {"missing", trial.missing},
            {"firstMisfitNumber", misfit ? ordered_json(trial.firstMisfitNumber) : ordered_json(nullptr)},
            {"firstMisfit", misfit ? ordered_json(trial.firstMisfit) : ordered_json(nullptr)},
            {"firstMisfitColumn", misfit ? ordered_json(trial.firstMisfitColumn + 1) : ordered_json(nullptr)},
            {"expected", misfit ? ordered_json(trial.expected) : ordered_json(nullptr)},
            {"samples", std::move(samples)}};
}

void PrintTrial(const logdefs::FormatTrial& trial) {
    Print(Safe(trial.format) + ": " + std::to_string(trial.fit) + " of the first " + std::to_string(trial.lines) +
          " lines fit (" + core::fFormat(Share(trial) * 100, "0.0") + " %), and in " + std::to_string(trial.plausible) +
          " of them the fields make sense.\n" + SafeMessage(logdefs::FinderText(trial)) + "\n");
    if (const std::string misfit = logdefs::MisfitText(trial); !misfit.empty()) Print(SafeMessage(misfit) + "\n");
    for (const auto& fields : trial.samples) {
        TextTable table{{{""}, {""}}, {}};
        for (const logdefs::FormatTrial::Field& field : fields) table.rows.push_back({"  " + field.name, field.text});
        Print("\n");
        PrintTable(table);
    }
}

logdefs::LogSample SampleOf(const std::string& file) {
    logdefs::LogSample sample;
    if (const core::Result read = logdefs::ReadLogSample(file, logdefs::kSampleLines, sample); !read)
        throw Failure(read.error);
    return sample;
}

int TryOne(Program& program, const FormatArguments& arguments, const std::string& file) {
    const std::string& name = arguments.texts.front();
    const std::string formats = program.Session().ProgramFiles().formats;
    const logdefs::LogFormatLoaded loaded = logdefs::LogFmtLoad(program.Ini(), name, formats);
    if (!loaded.found) RefuseName(program, name);
    const logdefs::FormatTrial trial =
        logdefs::TryFormat(SampleOf(file), name, loaded.format, kSamples, program.Env().clock.Now());
    for (const std::string& warning : loaded.format.Warnings()) PrintError(warning);
    if (arguments.json)
        PrintJson(TrialJson(trial));
    else
        PrintTrial(trial);
    return trial.fit > 0 ? 0 : kFailed;
}

int TryAll(Program& program, bool json, const std::string& file) {
    const std::vector<logdefs::FormatTrial> trials = logdefs::FindFormats(
        program.Ini(), program.Session().ProgramFiles().formats, SampleOf(file), program.Env().clock.Now());
    if (json) {
        ordered_json list = ordered_json::array();
        for (const logdefs::FormatTrial& trial : trials) list.push_back(TrialJson(trial));
        PrintJson(list);
    } else if (trials.empty()) {
        PrintError("No stored format fits a line of " + file + ". Describe one with: corvane-cli format set NAME SPEC");
    } else {
        TextTable table{{{"Format"}, {"Make sense", true}, {"Lines that fit", true}, {"of", true}}, {}};
        for (const logdefs::FormatTrial& trial : trials)
            table.rows.push_back({trial.format, std::to_string(trial.plausible), std::to_string(trial.fit),
                                  std::to_string(trial.lines)});
        PrintTable(table);
        Print("\nThe best:\n");
        PrintTrial(trials.front());
    }
    return trials.empty() ? kFailed : 0;
}

int Try(Program& program, const FormatArguments& arguments) {
    if (WantsStandardInput({arguments.texts.back()})) KeepStandardInput("");
    const std::string file = logread::OpenedPath(LogArgument(arguments.texts.back()));
    return arguments.texts.size() == 1 ? TryAll(program, arguments.json, file) : TryOne(program, arguments, file);
}

}  // namespace

void AddFormatCommands(CLI::App& root, Program& program) {
    CLI::App* family = NewFamily(root, "format", "Log formats: list, show, set, remove, try");
    auto arguments = std::make_shared<FormatArguments>();

    CLI::App* list = NewCommand(*family, "list", "All log formats", "format list");
    list->add_flag("--json", arguments->json, "As JSON");
    list->callback([=, &program] { program.run = [=, &program] { return List(program, arguments->json); }; });

    CLI::App* show =
        NewCommand(*family, "show", "The specifications of a format, one per line", "format show apache-combined");
    AddText(*show, "NAME", arguments->name, "Name of the format")->required();
    show->add_flag("--json", arguments->json, "As JSON");
    show->callback([=, &program] { program.run = [=, &program] { return Show(program, *arguments); }; });

    CLI::App* set = NewCommand(*family, "set", "Store a format; a line is read by the first specification that fits it",
                               "format set mine '%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] \"%*r %r HTTP/%*s\" %c %b'");
    AddText(*set, "NAME", arguments->name, "Name of the format")->required();
    AddTexts(*set, "SPEC", arguments->texts, "Specifications")->required();
    set->add_flag("--json", arguments->json, "As JSON");
    set->callback([=, &program] { program.run = [=, &program] { return Set(program, *arguments); }; });

    CLI::App* remove = NewCommand(*family, "remove", "Remove a format", "format remove mine");
    AddText(*remove, "NAME", arguments->name, "Name of the format")->required();
    remove->add_flag("--json", arguments->json, "As JSON, the format as it was");
    remove->callback([=, &program] { program.run = [=, &program] { return Remove(program, *arguments); }; });

    CLI::App* trial =
        NewCommand(*family, "try", "How well a format fits the first lines of a file; without NAME all are tried",
                   "format try apache-combined access.log");
    AddTexts(*trial, "NAME FILE", arguments->texts, "[NAME] FILE")->required()->expected(1, 2)->type_name("");
    trial->add_flag("--json", arguments->json, "As JSON");
    trial->callback([=, &program] { program.run = [=, &program] { return Try(program, *arguments); }; });
}

}  // namespace cli
