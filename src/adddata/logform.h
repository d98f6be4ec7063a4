#pragma once

#include <string>
#include <unordered_map>

#include "adddata/loglist.h"
#include "adddata/logtrials.h"

// Log files and their formats as controls of a dialog: a box of paths, the format, and what comes of both.
namespace adddata {

inline constexpr std::string_view kBestFit = "The format that fits best";

class LogForm {
public:
    // `known` gives the formats that files have in the list; a file with a format of its own keeps it.
    LogForm(const AddDesk& at, const LogSpecs& known);

    // `format` is a name or kBestFit.
    void AddBox(const std::string& paths, dialogs::Controls& controls);
    void AddFormat(const std::string& format, dialogs::Controls& controls);
    void AddFound(dialogs::Controls& controls);

    void Live(dialogs::Controls& controls);
    LogSpecs Specs(const dialogs::Controls& controls) const;
    std::string Format(const dialogs::Controls& controls) const;  // "" is kBestFit
    std::string Paths(const dialogs::Controls& controls) const { return controls[box_].value; }

    // The format by which a file is read, `format` being that of the dialog.
    std::string FormatOf(const logdefs::LogFileSpec& spec, const std::string& format);
    // Each with its format. Of a long list the first ones are looked at with all formats; the others have the same one
    // where it fits.
    LogSpecs WithFormats(LogSpecs specs, const std::string& format);
    // What is wrong with the files alone, and with their formats too.
    std::string FilesProblem(const LogSpecs& specs) const;
    std::string FormatsProblem(const LogSpecs& specs, const std::string& format);
    LogTrials& Trials() { return trials_; }

private:
    const AddDesk& at_;
    std::unordered_map<std::string, std::string> known_{};  // format of a file of the list
    std::string otherwise_;                                 // the site's default format
    LogTrials trials_;
    int box_ = 0, format_ = 0, found_ = 0;
};

// The format of the site's parameters, for files that name none.
std::string DefaultFormat(const AddDesk& at);

}  // namespace adddata
