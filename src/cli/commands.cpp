#include "cli/commands.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>

#include "cli/output.h"
#include "cli/suggest.h"
#include "core/text.h"

namespace cli {
namespace {

// The argument parser takes "[a,b]" apart; with this in front it does not.
constexpr char kShield = '\x1f';
constexpr std::size_t kLongestName = 120;

std::string Unshield(std::string& text) {
    if (!text.empty() && text.front() == kShield) text.erase(0, 1);
    return {};
}

CLI::Validator Unshielding() { return CLI::Validator(std::function<std::string(std::string&)>(Unshield), "", ""); }

}  // namespace

CLI::App* NewCommand(CLI::App& parent, const std::string& name, const std::string& help, const std::string& example) {
    CLI::App* command = parent.add_subcommand(name, help);
    command->fallthrough();
    command->footer("Example:\n  corvane-cli " + example);
    return command;
}

CLI::App* NewFamily(CLI::App& parent, const std::string& name, const std::string& help) {
    CLI::App* family = parent.add_subcommand(name, help);
    family->fallthrough();
    family->require_subcommand(1);
    return family;
}

CLI::Option* AddText(CLI::App& command, const std::string& name, std::string& value, const std::string& help) {
    return command.add_option(name, value, help)->transform(Unshielding())->type_name("TEXT");
}

CLI::Option* AddTexts(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                      const std::string& help) {
    return command.add_option(name, values, help)->transform(Unshielding())->type_name("TEXT");
}

void AddSwitch(CLI::App& command, const std::string& name, std::optional<bool>& value, const std::string& help) {
    command.add_flag_callback(
        "--" + name, [&value] { value = true; }, help + "; --no-" + name + ": not");
    command.add_flag_callback("--no-" + name, [&value] { value = false; })->group("");
}

std::vector<std::string> ShieldArguments(int count, char** arguments) {
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        std::string text = arguments[i];
        if (text.starts_with('[') && text.ends_with(']')) text.insert(text.begin(), kShield);
        texts.push_back(std::move(text));
    }
    return texts;
}

const std::string& Choice(const std::string& option, const std::string& value, const std::vector<std::string>& allowed,
                          const std::vector<std::string>& later) {
    if (std::ranges::find(allowed, value) != allowed.end()) return value;
    if (std::ranges::find(later, value) != later.end())
        throw UsageError(option + " " + value + " is not built yet. " + ValidAre("", allowed));
    throw UsageError(option + " cannot be \"" + value + "\". " + ValidAre(value, allowed));
}

std::string AbsolutePath(const std::string& path) {
    if (path.empty()) throw UsageError("A file name is empty.");
    if (path == "-") throw UsageError("Standard input (-) is no file that this command reads. Save it and name that.");
    if (path.front() == '/') return path;
    std::array<char, PATH_MAX> here{};
    if (::getcwd(here.data(), here.size()) == nullptr)
        throw Failure("The working folder cannot be read. Give full paths.");
    return std::string(here.data()) + (std::string_view(here.data()).ends_with('/') ? "" : "/") + path;
}

void CheckSectionName(const std::string& what, const std::string& name) {
    if (name.empty() || core::fTrim(name).size() != name.size())
        throw UsageError(what + " needs a name without blanks at its ends.");
    if (name.size() > kLongestName)
        throw UsageError("The name of " + what + " can have at most " + std::to_string(kLongestName) + " bytes.");
    const bool control =
        std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; });
    if (control || name.find_first_of("|[]\"") != std::string::npos)
        throw UsageError("The name of " + what + " cannot hold | [ ] \" or control characters.");
    for (const char* taken : {"Main", "Filters"})
        if (core::fEquals(name, taken, core::Case::Ignore))
            throw UsageError("\"" + name + "\" is taken. Choose another name.");
    for (const char* start : {"AltNo.", "SplitEntry."})
        if (core::fStartsWith(name, start, core::Case::Ignore))
            throw UsageError("A name cannot begin with \"" + std::string(start) + "\".");
}

}  // namespace cli
