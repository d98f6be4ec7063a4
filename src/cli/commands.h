#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/program.h"

// The families of commands. Each adds its own to the program's set.
namespace cli {

void AddSiteCommands(CLI::App& root, Program& program);
void AddFormatCommands(CLI::App& root, Program& program);
void AddEngineCommands(CLI::App& root, Program& program);
void AddFilterCommands(CLI::App& root, Program& program);
void AddOptionCommands(CLI::App& root, Program& program);
void AddAddCommands(CLI::App& root, Program& program);
void AddLogCommands(CLI::App& root, Program& program);
void AddReportCommands(CLI::App& root, Program& program);
void AddPlotCommands(CLI::App& root, Program& program);
void AddVisitCommands(CLI::App& root, Program& program);
void AddTargetCommands(CLI::App& root, Program& program);
void AddGroupCommands(CLI::App& root, Program& program);
void AddRobotCommands(CLI::App& root, Program& program);
void AddCheckCommands(CLI::App& root, Program& program);

// A command with its example; --home and --site may stand behind it too.
CLI::App* NewCommand(CLI::App& parent, const std::string& name, const std::string& help, const std::string& example);
// A family of commands, one of which must be named.
CLI::App* NewFamily(CLI::App& parent, const std::string& name, const std::string& help);

// Arguments in brackets keep their commas. All text options are made with these, since ShieldArguments marks such
// texts.
CLI::Option* AddText(CLI::App& command, const std::string& name, std::string& value, const std::string& help);
CLI::Option* AddTexts(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                      const std::string& help);
// --NAME and --no-NAME.
void AddSwitch(CLI::App& command, const std::string& name, std::optional<bool>& value, const std::string& help);
std::vector<std::string> ShieldArguments(int count, char** arguments);

// The value when it is one of the allowed; else wrong usage, with what would be valid. `later` come with a later
// version.
const std::string& Choice(const std::string& option, const std::string& value, const std::vector<std::string>& allowed,
                          const std::vector<std::string>& later = {});

// A native path from the root on. "-" is refused.
std::string AbsolutePath(const std::string& path);
// A name that is stored as a section of a parameter file; wrong usage when it cannot be one.
void CheckSectionName(const std::string& what, const std::string& name);

}  // namespace cli
