#include "core/cdsini.h"
#include "core/dates.h"
#include "core/inistoreimpl.h"
#include "core/numbers.h"
#include "core/ports.h"
#include "core/text.h"

// Operations of the store that are made of its reads and writes.
namespace core {

bool IniStore::IniMove(std::string_view oldSection, std::string_view oldEntry, std::string_view oldFile, Missing mode,
                       std::string_view newSection, std::string_view newEntry, std::string_view newFile) {
    const bool found = IniHas(oldSection, oldEntry, oldFile);
    const std::string value = IniGet(oldSection, oldEntry, oldFile, mode);
    const auto orOld = [](std::string_view name, std::string_view old) { return name.empty() ? old : name; };
    return found &&
           IniPutWhole(orOld(newSection, oldSection), orOld(newEntry, oldEntry), value, orOld(newFile, oldFile));
}

double IniStore::IniCount(std::string_view section, std::string_view entry, std::string_view file, bool write,
                          Missing mode, double limit) {
    const bool found = IniHas(section, entry, file);
    const double old = IniGetNum(section, entry, file, mode);
    double next = (found || mode != Missing::Marker ? old : 0) + 1;
    if (limit >= 1 && next >= limit) next = 1;
    if (write) IniPut(section, entry, NumText(next), file);
    return next;
}

IniStore::NewName IniStore::IniNewName(std::string_view section, std::string_view entry, std::string_view file,
                                       std::string_view name, bool showMsg, bool atHead) {
    name = fTrim(name);
    NewName made;
    if (name.empty()) {
        made.message = "Enter a name.";
    } else if (fStartsWith(name, "AltNo.", Case::Ignore) || fStartsWith(name, kSplitEntry, Case::Ignore)) {
        made.message = "Name cannot be prefixed with \"AltNo.\" or \"SplitEntry.\".";
    } else {
        const CDSIniAdded change = CDSAddIni(*this, {section, entry, file}, name, {}, 2, atHead);
        made.added = change.result.added && change.written;
        if (!change.result.added)
            made.message =
                "Name already exists. You must enter a unique name.\r(Changes in upper/lower case are ignored.\r"
                "Leading and trailing blanks are ignored.)";
    }
    if (showMsg && !made.message.empty()) impl_->user.Tell("IniNewName", made.message);
    return made;
}

std::string IniStore::IniUniqueName(std::string_view section, std::string_view entry, std::string_view file,
                                    double now) {
    const std::string day = FormatDate(now, "yyyymmdd") + ".";
    const std::string list = IniGet(section, entry, file);
    for (long n = 1;; ++n) {
        const std::string name = day + std::to_string(n);
        const CDSAdded added = CDSAdd(list, name, {}, 2);
        if (added.added) return IniPutWhole(section, entry, added.list, file) ? name : std::string();
    }
}

}  // namespace core
