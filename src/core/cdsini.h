#pragma once

#include <string>
#include <string_view>

#include "core/cds.h"
#include "core/inistore.h"

// Lists that stand in parameter files. What these write comes back whole, however long.
namespace core {

// Where a list stands.
struct IniKey {
    std::string_view section;
    std::string_view entry;
    std::string_view file;
};

// A missing or blank key gives one empty item at index 0.
StrArray CDSReadIni(IniStore& ini, const IniKey& key, const CDSForm& form = {}, long lowerBound = 1,
                    Missing mode = Missing::Empty);
bool CDSWriteIni(IniStore& ini, const IniKey& key, const StrArray& items, const CDSForm& form = {}, long lowerBound = 1,
                 DropEmpty drop = DropEmpty::No);

// Written only when the list changed; `written` is false when a needed write failed.
struct CDSIniRemoved {
    CDSRemoved result{};
    bool written = true;
};
CDSIniRemoved CDSRemoveIni(IniStore& ini, const IniKey& key, std::string_view value, const CDSForm& form = {},
                           Case mode = Case::Exact);
struct CDSIniAdded {
    CDSAdded result{};
    bool written = true;
};
// `mostBytes` above 0 keeps that much of the list's right end.
CDSIniAdded CDSAddIni(IniStore& ini, const IniKey& key, std::string_view item, const CDSForm& form = {}, int mode = 0,
                      bool atHead = false, int mostBytes = 0);

}  // namespace core
