#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adddata/adddata.h"
#include "cli/commands.h"

// Commands that read log files and store nothing.
namespace cli {

inline constexpr std::string_view kFileHelp =
    "Logs, read in this order as one list; packed ones as they lie. A folder is all logs in it, * in a name all that "
    "match, both in the order of their dates; - is standard input";
// What is wrong with a folder or a wildcard that names nothing.
std::string NoFile(const std::string& path);

struct FileArguments {
    std::vector<std::string> files{};
    std::string format{};
    std::string invalid{};
    bool json = false;
};

// FILE..., --format, --invalid and --json.
void AddFileArguments(CLI::App& command, FileArguments& arguments);
// The request of the arguments; answers what the read may ask.
adddata::AddRequest RequestOf(Program& program, const FileArguments& arguments);
// The site of the call, with a format for files that name none.
std::unique_ptr<sitedb::Site> SiteToRead(Program& program, const FileArguments& arguments);

// Says what failed. 0 all files were read, 1 one was not, 3 stopped by the user.
int ReadStatus(Program& program, const logread::ReadOutcome& read);

}  // namespace cli
