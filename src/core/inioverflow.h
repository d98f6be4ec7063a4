#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/inicache.h"

namespace core {

// Where entries of a full parameter file go: into further files beside it. The
// base file's section "AltNo." + section holds each such entry's file number.
// Section and entry names are texts of the file (encoded).
class IniOverflow {
public:
    explicit IniOverflow(IniCache& cache) : cache_(cache) {}

    // Reads the lists of alternative files back.
    void Start(bool limit, std::string altFilesIni);
    bool Concerns(const std::string& base) const { return limit_ || lists_.contains(base); }

    std::optional<std::string> Get(const std::string& base, std::string_view section, std::string_view entry);
    bool Put(const std::string& base, std::string_view section, std::string_view entry, std::string_view value);
    bool Erase(const std::string& base, std::string_view section, std::string_view entry);
    bool EraseSection(const std::string& base, std::string_view section);
    // Entries of the section that stand in further files.
    std::vector<std::string> Entries(const std::string& base, std::string_view section);

private:
    using Files = std::vector<std::string>;

    std::string FileOf(const std::string& base, std::string_view section, std::string_view entry);
    std::optional<std::string> NumberOf(const std::string& base, std::string_view section, std::string_view entry);
    bool PutInBase(const std::string& base, std::string_view section, std::string_view entry, std::string_view value);
    bool Overflow(const std::string& base, std::string_view section, std::string_view entry, std::string_view value);
    bool AddFile(const std::string& base, int errorNumber);
    std::string TargetFor(const std::string& base, std::size_t size);
    bool Record(const std::string& base, std::string_view section, std::string_view entry);
    bool RecordSection(const std::string& base, std::string_view section);
    bool RecordList(const std::string& base);

    IniCache& cache_;
    bool limit_ = false;
    std::string altFilesIni_{};
    std::map<std::string, Files> lists_{};
};

}  // namespace core
