#pragma once

#include <string>
#include <string_view>

#include "core/files.h"

// The only place that knows what a drive letter is here: Z: is the root of the
// file system, C: is the data home. Configuration texts keep the x:\folder\file
// form; everything a person types or reads is native.
namespace core {

class Paths {
public:
    // Absolute native paths without a trailing "/".
    Paths(std::string dataHome, std::string shared) : home_(std::move(dataHome)), shared_(std::move(shared)) {}

    const std::string& Home() const { return home_; }      // the application folder
    const std::string& Shared() const { return shared_; }  // delivered files, read-only

    // "Z:\home\ann\a.log" -> "/home/ann/a.log"; a native absolute path comes back as it is. "" for an unknown drive.
    std::string ToNative(std::string_view text) const;
    // A native path in the stored form: below the data home "C:\...", else "Z:\...". Fails on names that have no such
    // form (a backslash or another forbidden character in them) with a message.
    struct Stored {
        Result result{};
        std::string text{};
    };
    Stored ToStored(std::string_view native) const;

private:
    std::string home_;
    std::string shared_;
};

// Checks of stored names (x:\folder\file). A text argument that holds "Skip checks" lets everything pass.
struct NameCheck {
    bool ok = true;
    bool exists = false;
    std::string error{};
};
struct NameRules {
    bool strictNames = false;  // the 8.3 rules
    bool levels = true;        // at most 11 parts
    bool skipChecks = false;
    std::string_view program = "Corvane";
};
NameCheck CheckDir(std::string_view dir, const Paths& paths, const NameRules& rules = {});
NameCheck CheckDirExists(std::string_view dir, const Paths& paths, const NameRules& rules = {});
NameCheck CheckPAFN(std::string_view pafn, const Paths& paths, const NameRules& rules = {});
NameCheck CheckPAFNMustExist(std::string_view pafn, const Paths& paths, const NameRules& rules = {});
NameCheck CheckPAFNNew(std::string_view pafn, const Paths& paths, const NameRules& rules = {});

}  // namespace core
