#include "core/cdsini.h"

#include "core/text.h"

namespace core {

StrArray CDSReadIni(IniStore& ini, const IniKey& key, const CDSForm& form, long lowerBound, Missing mode) {
    std::string list;
    if (ini.IniHas(key.section, key.entry, key.file))
        list = ini.IniGet(key.section, key.entry, key.file, mode);
    else
        ini.IniGet(key.section, key.entry, key.file, mode);  // for what the mode does about it
    if (fTrim(list).empty()) return StrArray(0, {""});
    return CDSSplit(list, form, lowerBound);
}

bool CDSWriteIni(IniStore& ini, const IniKey& key, const StrArray& items, const CDSForm& form, long lowerBound,
                 DropEmpty drop) {
    return ini.IniPutWhole(key.section, key.entry, CDSJoin(items, form, lowerBound, drop), key.file);
}

CDSIniRemoved CDSRemoveIni(IniStore& ini, const IniKey& key, std::string_view value, const CDSForm& form, Case mode) {
    CDSIniRemoved change{CDSRemove(ini.IniGet(key.section, key.entry, key.file), value, form, mode)};
    if (change.result.removed) change.written = ini.IniPutWhole(key.section, key.entry, change.result.list, key.file);
    return change;
}

CDSIniAdded CDSAddIni(IniStore& ini, const IniKey& key, std::string_view item, const CDSForm& form, int mode,
                      bool atHead, int mostBytes) {
    const std::string old = ini.IniGet(key.section, key.entry, key.file);
    CDSIniAdded change{CDSAdd(old, item, form, mode, atHead)};
    std::string& list = change.result.list;
    if (mostBytes > 0 && list.size() > static_cast<std::size_t>(mostBytes)) list = fRight(list, mostBytes);
    if (list != old) change.written = ini.IniPutWhole(key.section, key.entry, list, key.file);
    return change;
}

}  // namespace core
