#include "adddata/checkscreensread.h"

#include <algorithm>
#include <memory>

#include "adddata/readscreens.h"
#include "core/text.h"
#include "dialogs/gridops.h"

namespace adddata {
namespace {

constexpr std::string_view kButtons = "Sta&rt. Read Log File|select &log file and specify format|Read O&ptions|Don&e";
enum Button { kStart = 1, kFile, kOptions, kDone };
constexpr int kFileLabel = 1;
constexpr std::string_view kFirstUse =
    "To get started select an *uncompressed* log file and specify it's format.\r(Files packed with gzip, bzip2, xz or "
    "zstd are read as they are, too.)";
constexpr std::size_t kMostShown = 2000;  // bytes of the chosen files' names

std::string FileText(const AddDesk& at) {
    const std::string chosen = ChosenText(at);
    return chosen.empty() ? std::string(kFirstUse) : "Log file:\r" + dialogs::GridCellText(chosen, kMostShown);
}

// What a read cannot start without.
std::string Missing(const AddRequest& request) {
    if (request.files.empty()) return "No log file is selected. Press \"select log file and specify format\".";
    const auto hasNone = [](const logdefs::LogFileSpec& file) { return file.format.empty(); };
    if (request.format.empty() && std::ranges::any_of(request.files, hasNone))
        return "The log file has no format. Press \"select log file and specify format\".";
    return {};
}

dialogs::DialogModel ModelOf(const AddDesk& at, const CheckReadText& text) {
    dialogs::Controls controls;
    dialogs::MBAddCtl("Label", FileText(at), dialogs::MBSpec("9000"), controls);
    dialogs::Box box;
    box.message = text.heading + "\r\r" + text.explanations + "\r\r" + text.filters;
    box.buttons = kButtons;
    box.title = text.title;
    box.name = text.name;
    box.helpId = text.helpId;
    box.defaultNo = ChosenText(at).empty() ? kFile : kStart;
    box.escNo = kDone;
    dialogs::DialogModel model = dialogs::BuildModel(at.desk, box, std::move(controls));
    model.options.stays = true;
    return model;
}

}  // namespace

std::optional<AddRequest> AskCheckRead(const AddDesk& at, const CheckReadText& text) {
    dialogs::DialogModel model = ModelOf(at, text);
    const std::unique_ptr<dialogs::DialogWindow> window = at.desk.host.Open(model);
    for (;;) {
        const int button = window->Run();
        model.problem.clear();
        if (button == kStart) {
            AddRequest request = ChosenRead(at);
            model.problem = Missing(request);
            if (model.problem.empty()) {
                dialogs::KeepLook(at.desk, model);
                return request;
            }
        } else if (button == kFile) {
            EnterLogFiles(at);
        } else if (button == kOptions) {
            EnterReadOptions(at);
        } else {
            dialogs::KeepLook(at.desk, model);
            return std::nullopt;
        }
        model.controls[kFileLabel].value = FileText(at);
        window->Update();
    }
}

bool CheckReadDone(const AddDesk& at, const logread::ReadOutcome& read, const std::string& title) {
    at.memory.options.NoPromptInvalid = read.NoPromptInvalid;
    at.memory.options.NoPromptOverlap = read.NoPromptOverlap;
    if (read.ok) return true;
    dialogs::Box box;
    box.message = kReadFailed;
    box.title = title;
    box.escNo = 1;
    for (const std::string& error : read.errors) box.message.append("\r").append(error);
    for (const logread::ProblemList::File& file : read.problems.Files())
        for (const std::string& problem : file.texts) box.details.append(file.name + ": " + problem + "\r");
    dialogs::ShowMB(at.desk, box);
    return false;
}

std::string ChangedFileNote(const AddDesk& at, const std::string& fileRead) {
    if (ChosenText(at) == fileRead) return {};
    return " [** SELECTED FILE CHANGED. Press New .. to read new file. **]";
}

}  // namespace adddata
