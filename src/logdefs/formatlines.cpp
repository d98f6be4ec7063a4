#include "logdefs/formatlines.h"

#include <memory>
#include <utility>

#include "core/ports.h"
#include "core/text.h"
#include "dialogs/longtext.h"
#include "logdefs/formathelp.h"
#include "logdefs/formatpreview.h"
#include "logdefs/formatstore.h"

namespace logdefs {
namespace {

constexpr std::string_view kButtons = "&OK|&Add Line|&Placeholders|&Cancel";
enum Button { kOk = 1, kAddLine, kPlaceholders, kCancel };
constexpr std::size_t kMostBoxes = 50;
constexpr int kFirstBox = 1;

}  // namespace

bool FormatLines::Run(const Keep& keep) {
    if (specs_.empty()) specs_.emplace_back();
    if (specs_.size() > kMostBoxes) {
        dialogs::ShowMsg(editing_.desk, "\"" + name_ + "\" has " + std::to_string(specs_.size()) +
                                            " specifications; the dialog shows no more than " +
                                            std::to_string(kMostBoxes) + ". Change it in this file:\r" +
                                            editing_.formats);
        return false;
    }
    Step step = Step::Rebuild;
    while (step == Step::Rebuild) step = Shown(keep);
    return step == Step::Kept;
}

void FormatLines::AddBoxes(dialogs::Controls& controls) const {
    for (const std::string& spec : specs_) {
        const int box = dialogs::MBAddCtl("TextBox", spec, dialogs::MBSpec("12000||||||"), controls);
        controls[box].caption = "Specification " + std::to_string(box);
        controls[box].hint = "%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] \"%*r %r HTTP/%*s\" %c %b \"%f\" \"%B\"";
    }
}

std::vector<std::string> FormatLines::Entered(const dialogs::Controls& controls) const {
    std::vector<std::string> boxes;
    for (std::size_t i = 0; i < specs_.size(); ++i) boxes.push_back(controls[kFirstBox + static_cast<int>(i)].value);
    return boxes;
}

// Blanks at the ends of a specification count, a box of blanks alone does not.
std::vector<std::string> FormatLines::Filled(const std::vector<std::string>& boxes) {
    std::vector<std::string> specs;
    for (const std::string& box : boxes)
        if (!core::fTrim(box).empty()) specs.push_back(box);
    return specs;
}

std::string FormatLines::Problem(const std::vector<std::string>& boxes) const {
    const std::vector<std::string> specs = Filled(boxes);
    if (specs.empty()) return "A log format needs at least one specification.";
    for (const std::string& spec : specs)
        if (std::string problem = LogFmtSpecProblem(spec); !problem.empty()) return problem;
    return {};
}

FormatLines::Step FormatLines::Shown(const Keep& keep) {
    dialogs::Controls controls;
    AddBoxes(controls);
    FormatPreview preview(log_, editing_.clock.Now());
    preview.AddTo(controls);
    dialogs::Box box;
    box.message =
        "Enter specifications for LogFormat Named: " + name_ + "  The first matching specification will be used.";
    box.buttons = kButtons;
    box.title = "Format of Log file";
    box.name = "LogFormatLines";
    box.helpId = "LogFormat";
    box.live = [&](dialogs::Controls& shown) { preview.Show(shown, name_, Filled(Entered(shown))); };
    dialogs::DialogModel model = dialogs::BuildModel(editing_.desk, box, std::move(controls));
    model.options.stays = true;
    const std::unique_ptr<dialogs::DialogWindow> window = editing_.desk.host.Open(model);
    for (;;) {
        const int button = window->Run();
        log_ = preview.Log();
        const Step step = Pressed(button, model, keep);
        if (step != Step::Again) {
            dialogs::KeepLook(editing_.desk, model);
            return step;
        }
        window->Update();
    }
}

FormatLines::Step FormatLines::Pressed(int button, dialogs::DialogModel& model, const Keep& keep) {
    if (button == kCancel) return Step::Left;
    std::vector<std::string> boxes = Entered(model.controls);
    model.problem.clear();
    if (button == kPlaceholders) {
        dialogs::ShowLong(editing_.desk, PlaceholderText(), "Placeholders of specifications");
        return Step::Again;
    }
    if (button == kAddLine) {
        if (boxes.size() >= kMostBoxes) {
            model.problem = "More than " + std::to_string(kMostBoxes) + " specifications cannot be shown.";
            return Step::Again;
        }
        specs_ = std::move(boxes);
        specs_.emplace_back();
        return Step::Rebuild;
    }
    std::string problem = Problem(boxes);
    if (problem.empty()) problem = keep(Filled(boxes));
    if (problem.empty()) return Step::Kept;
    model.problem = "Problem with data entered: " + problem;
    return Step::Again;
}

}  // namespace logdefs
