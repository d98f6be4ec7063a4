#include "cli/filearguments.h"

#include <algorithm>
#include <memory>

#include "adddata/robots.h"
#include "cli/output.h"
#include "cli/standardinput.h"
#include "cli/suggest.h"
#include "core/inistore.h"
#include "core/text.h"
#include "logdefs/formatstore.h"
#include "logread/logset.h"

namespace cli {
namespace {

void CheckFormat(Program& program, const std::string& name, const std::string& whence) {
    const std::string file = program.Session().ProgramFiles().formats;
    if (logdefs::LogFmtLoad(program.Ini(), name, file).found) return;
    throw UsageError("There is no log format of that name" + whence + ": \"" + name + "\". " +
                     ValidAre(name, logdefs::LogFmtNames(program.Ini(), file)));
}

}  // namespace

std::string NoFile(const std::string& path) {
    if (core::IsDir(path)) return "There is no log in " + path + ". Check the folder.";
    return "No file matches " + path + ". Check the folder and the name.";
}

void AddFileArguments(CLI::App& command, FileArguments& arguments) {
    AddTexts(command, "FILE", arguments.files, std::string(kFileHelp))->required();
    AddText(command, "--format", arguments.format, "Name of the log format (default: the site's LFmtDflt)");
    AddText(command, "--invalid", arguments.invalid,
            "Lines that do not fit: skip them, or stop at the first of a file");
    command.add_flag("--json", arguments.json, "As JSON");
}

adddata::AddRequest RequestOf(Program& program, const FileArguments& arguments) {
    adddata::AddRequest request;
    WantsStandardInput(arguments.files);
    for (const std::string& given : arguments.files) {
        const std::string path = LogArgument(given);
        if (logread::NamesMany(path) && !logread::NamesFiles(path)) throw Failure(NoFile(path));
        request.files.push_back({path, ""});
    }
    request.format = arguments.format;
    if (!request.format.empty()) CheckFormat(program, request.format, "");
    CommandUser::Answers answers;
    if (!arguments.invalid.empty())
        answers.skipInvalid = Choice("--invalid", arguments.invalid, {"skip", "stop"}) == "skip";
    request.NoPromptInvalid = answers.skipInvalid.value_or(false);
    program.User().SetAnswers(answers);
    return request;
}

std::unique_ptr<sitedb::Site> SiteToRead(Program& program, const FileArguments& arguments) {
    auto site = program.OpenSite();
    if (arguments.format.empty())
        CheckFormat(program, program.Ini().IniGet("Main", "LFmtDflt", site->Paths().lastVals),
                    " (the site's default, LFmtDflt; give one with --format)");
    if (WantsStandardInput(arguments.files)) KeepStandardInput(site->Paths().temp);
    return site;
}

int ReadStatus(Program& program, const logread::ReadOutcome& read) {
    for (const std::string& error : read.errors) PrintError(error);
    if (!read.ok) PrintError(std::string(adddata::kReadFailed));
    if (program.User().Cancelled()) return 3;
    return read.ok && read.errors.empty() ? 0 : 1;
}

}  // namespace cli
