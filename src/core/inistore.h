#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/inifile.h"

// Parameter files: the one door to every setting and definition. Values of any
// bytes come back as they went in; names compare ignoring case.
namespace core {

class User;

inline constexpr std::string_view kNotFound = "*** not found ***";
inline constexpr double kNumNotFound = 31313;
inline constexpr std::string_view kBySection = "::*";  // file argument: the file is found from the section name

// What a read does with a missing entry. The numbers are how lists and logs name them.
enum class Missing : int { Keep = -1, Ask = 0, Marker = 1, Raise = 2, Empty = 3, Zero = 4, True = 5, Default = 7 };
// What a write does when it fails: nothing, tell the user, raise 1002.
enum class OnFail : int { Ignore = -1, Tell = 0, Raise = 2 };

class IniStore {
public:
    explicit IniStore(User& user);
    ~IniStore();
    IniStore(const IniStore&) = delete;
    IniStore& operator=(const IniStore&) = delete;

    // The files behind "::*", by section name ("Main", "Groups", "EnterLogFile" ...) and, for section Main's
    // entry AcD, by "Main/AcD". Native paths; set at start-up and whenever a site is chosen.
    void SetSectionFile(std::string_view section, std::string path);
    std::string SectionFile(std::string_view section, std::string_view entry) const;

    // The 64 KB limit of a file and its overflow into further files. Off by default.
    void SetSizeLimit(bool on, std::string altFilesIni);
    void SetMissingMode(Missing mode);  // the standing mode for the next read that says Keep

    std::string IniGet(std::string_view section, std::string_view entry, std::string_view file,
                       Missing mode = Missing::Empty, std::string_view otherwise = {});
    double IniGetNum(std::string_view section, std::string_view entry, std::string_view file,
                     Missing mode = Missing::Marker, double otherwise = 0);
    short IniGetInt(std::string_view section, std::string_view entry, std::string_view file,
                    Missing mode = Missing::Marker);
    bool IniGetBool(std::string_view section, std::string_view entry, std::string_view file,
                    Missing mode = Missing::Empty, bool otherwise = false);
    bool IniGetBoolT(std::string_view section, std::string_view entry, std::string_view file,
                     Missing mode = Missing::True, bool otherwise = false);
    bool IniHas(std::string_view section, std::string_view entry, std::string_view file);

    // False when the write failed (and `rc` said not to raise).
    bool IniPut(std::string_view section, std::string_view entry, std::string_view value, std::string_view file,
                OnFail rc = OnFail::Tell);
    // As IniPut, but a value that is split over entries keeps its last character: for lists.
    bool IniPutWhole(std::string_view section, std::string_view entry, std::string_view value, std::string_view file,
                     OnFail rc = OnFail::Tell);
    bool IniPutBool(std::string_view section, std::string_view entry, bool value, std::string_view file,
                    OnFail rc = OnFail::Tell);
    bool IniErase(std::string_view section, std::string_view entry, std::string_view file, OnFail rc = OnFail::Tell);
    bool IniEraseSection(std::string_view section, std::string_view file, OnFail rc = OnFail::Tell);
    bool IniFlush(std::string_view file, OnFail rc = OnFail::Tell);
    bool IniMove(std::string_view oldSection, std::string_view oldEntry, std::string_view oldFile, Missing mode,
                 std::string_view newSection, std::string_view newEntry, std::string_view newFile);
    double IniCount(std::string_view section, std::string_view entry, std::string_view file, bool write, Missing mode,
                    double limit);

    struct NewName {
        bool added = false;
        std::string message{};
    };
    NewName IniNewName(std::string_view section, std::string_view entry, std::string_view file, std::string_view name,
                       bool showMsg, bool atHead);
    // "yyyymmdd." and a counter from 1; `now` is a moment (dates.h). Gives the name that was added.
    std::string IniUniqueName(std::string_view section, std::string_view entry, std::string_view file, double now);

    // Names of the entries of a section, in the file's order, decoded.
    std::vector<std::string> IniEntries(std::string_view section, std::string_view file);
    bool LastWriteFailed() const;
    void SuspendWrites(bool on);

private:
    friend class IniDraft;
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace core
