#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/error.h"
#include "core/text.h"
#include "sitedb/storeerror.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kStopped = 3;

void SetUp(CLI::App& root, cli::Program& program) {
    root.name("corvane-cli");
    root.require_subcommand(1);
    root.set_version_flag("--version", std::string("corvane-cli ") + CORVANE_VERSION);
    root.set_help_all_flag("--help-all", "Help on all commands");
    cli::AddText(root, "--home", program.home, "Data home (default: $CORVANE_HOME, $XDG_DATA_HOME/corvane)");
    cli::AddText(root, "--site", program.site, "Name of the site (default: the current one)");
    root.footer(
        "Help on a command:  corvane-cli COMMAND --help\n"
        "Exit status: 0 done, 1 failed, 2 wrong usage, 3 stopped by the user, 130 on Ctrl-C.");
    cli::AddSiteCommands(root, program);
    cli::AddAddCommands(root, program);
    cli::AddLogCommands(root, program);
    cli::AddReportCommands(root, program);
    cli::AddPlotCommands(root, program);
    cli::AddVisitCommands(root, program);
    cli::AddTargetCommands(root, program);
    cli::AddGroupCommands(root, program);
    cli::AddFormatCommands(root, program);
    cli::AddEngineCommands(root, program);
    cli::AddFilterCommands(root, program);
    cli::AddRobotCommands(root, program);
    cli::AddCheckCommands(root, program);
    cli::AddOptionCommands(root, program);
}

// The innermost command that was named.
const CLI::App* Innermost(const CLI::App& root) {
    const CLI::App* command = &root;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
    return command;
}

std::vector<std::string> OptionNames(const CLI::App* command) {
    std::vector<std::string> names;
    for (const CLI::App* app = command; app != nullptr; app = app->get_parent())
        for (const CLI::Option* option : app->get_options())
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

std::vector<std::string> CommandNames(const CLI::App* command) {
    std::vector<std::string> names;
    for (const CLI::App* sub : command->get_subcommands({})) names.push_back(sub->get_name());
    return names;
}

// What is wrong with the arguments, with the nearest commands or options to those that are none.
std::string Complaint(const CLI::App& root, const CLI::ParseError& error, const std::vector<std::string>& arguments) {
    const CLI::App* command = Innermost(root);
    constexpr std::size_t kFew = 6;
    const std::vector<std::string> commands = CommandNames(command);
    const std::vector<std::string> options = OptionNames(command);
    for (const std::string& argument : arguments) {
        if (argument == "--") break;
        const std::string name(core::fBefore(argument, "="));
        if (name.starts_with("--") && std::ranges::find(options, name) == options.end())
            return "There is no option " + name + " here. " + cli::ValidAre(name, options, kFew);
    }
    if (commands.empty()) return core::fReplace(error.what(), "\x1f", "");
    const std::vector<std::string> extra = root.remaining(true);
    const auto word = std::ranges::find_if(extra, [](const std::string& text) { return !text.starts_with('-'); });
    if (word == extra.end()) return "A command is missing. " + cli::ValidAre("", commands);
    return "There is no command \"" + *word + "\" here. " + cli::ValidAre(*word, commands);
}

int ParseFailed(const CLI::App& root, const CLI::ParseError& error, const std::vector<std::string>& arguments) {
    const CLI::App* command = Innermost(root);
    if (error.get_exit_code() == 0) return root.exit(error);  // --help, --version
    std::string way = "corvane-cli";
    if (command != &root) {
        std::string path;
        for (const CLI::App* app = command; app != nullptr && app->get_parent() != nullptr; app = app->get_parent())
            path = " " + app->get_name() + path;
        way += path;
    }
    cli::PrintError(Complaint(root, error, arguments) + "\nHelp: " + way + " --help");
    return kWrongUsage;
}

int EndedBySignal() { return 128 + cli::SignalSeen(); }

int Run(cli::Program& program) {
    const auto say = [](const std::string& text) {
        if (!text.empty()) cli::PrintError(text);
    };
    try {
        const int status = program.run();
        if (cli::SignalSeen() != 0 && status != 0) return EndedBySignal();
        return program.User().WriteFailed() && status == 0 ? kFailed : status;
    } catch (const cli::Failure& failure) {
        say(failure.what());
        return failure.status();
    } catch (const cli::Unanswered& question) {
        say(question.what());
        return kWrongUsage;
    } catch (const core::Stopped&) {
        say("Stopped.");
        return cli::SignalSeen() != 0 ? EndedBySignal() : kStopped;
    } catch (const sitedb::StoreError& error) {
        say(error.what());
    } catch (const core::ErrorNumber& error) {
        say(program.LogFailure(error.number(), error.what()));
    } catch (const std::bad_alloc&) {
        say("There is not enough memory for this.");
    } catch (const std::exception& error) {
        say(program.LogFailure(0, error.what()));
    }
    return kFailed;
}

}  // namespace

int main(int count, char** arguments) {
    cli::CatchSignals();
    cli::Program program;
    CLI::App root("Corvane reads web server logs and reports what visitors searched for and looked at.");
    SetUp(root, program);
    const std::vector<std::string> texts = cli::ShieldArguments(count, arguments);
    try {
        std::vector<std::string> reversed(texts.rbegin(), texts.rend());
        root.parse(reversed);
    } catch (const CLI::ParseError& error) {
        return ParseFailed(root, error, texts);
    }
    return Run(program);
}
