#pragma once

#include <string>
#include <vector>

#include "dialogs/controls.h"
#include "logdefs/format.h"
#include "logdefs/formatfinder.h"
#include "logdefs/sample.h"

namespace logdefs {

// What a format does to the first lines of a log, on the dialog in which it is edited: a box for the log, its first
// lines cut into fields, how many fit, and what a person should know about the specifications.
class FormatPreview {
public:
    // `log` is a native path or "". `now` is a moment (core/dates.h).
    FormatPreview(std::string log, double now) : log_(std::move(log)), now_(now) {}

    void AddTo(dialogs::Controls& controls);
    // Shows it for these specifications; reads the log when another one is named.
    void Show(dialogs::Controls& controls, const std::string& name, const std::vector<std::string>& specs);
    const std::string& Log() const { return log_; }

private:
    void Read(const std::string& path);
    std::string Status(const FormatTrial& trial, const LogFormat& format) const;

    std::string log_;
    double now_;
    bool read_ = false;  // `sample_` is that of `log_`
    LogSample sample_{};
    std::string failure_{};  // of reading it
    int box_ = 0, grid_ = 0, status_ = 0;
};

}  // namespace logdefs
