#include "core/inioverflow.h"

#include <algorithm>

#include "core/cds.h"
#include "core/errnums.h"
#include "core/error.h"
#include "core/files.h"
#include "core/freename.h"
#include "core/inicodec.h"
#include "core/numbers.h"

namespace core {

namespace {

constexpr std::string_view kAltNo = "AltNo.";
constexpr std::string_view kListSection = "Main";
constexpr std::size_t kFull = 65536;     // a base file takes no write that makes it larger
constexpr std::size_t kCrowded = 50000;  // size at which entries go elsewhere

std::string AltSection(std::string_view section) { return std::string(kAltNo).append(section); }

std::size_t SizeOf(const std::string& path) {
    return static_cast<std::size_t>(std::max<std::int64_t>(FileSize(path), 0));
}

}  // namespace

void IniOverflow::Start(bool limit, std::string altFilesIni) {
    limit_ = limit;
    altFilesIni_ = std::move(altFilesIni);
    lists_.clear();
    if (altFilesIni_.empty()) return;
    const IniFile& file = cache_.Open(altFilesIni_);
    for (const std::string& entry : file.Entries(kListSection)) {
        const std::string list = IniDecodeValue(file.Get(kListSection, entry).value_or(""));
        if (list.empty()) continue;
        const StrArray items = CDSSplitPlain(list);
        lists_[IniDecodeName(entry)] = Files(items.Items().begin(), items.Items().end());
    }
}

// The number of the file that holds an entry, as text.
std::optional<std::string> IniOverflow::NumberOf(const std::string& base, std::string_view section,
                                                 std::string_view entry) {
    const std::string record = AltSection(section);
    const IniFile& file = cache_.Open(base);
    if (auto number = file.Get(record, entry)) return number;
    return file.Get(record, kAltNo);
}

std::string IniOverflow::FileOf(const std::string& base, std::string_view section, std::string_view entry) {
    if (cache_.Open(base).Get(section, entry)) return base;
    const auto list = lists_.find(base);
    const auto number = list == lists_.end() ? std::nullopt : NumberOf(base, section, entry);
    if (!number) return {};
    const double n = fNum(*number);
    if (!(n >= 1 && n <= static_cast<double>(list->second.size()))) return {};
    const std::string& path = list->second[static_cast<std::size_t>(n) - 1];
    return cache_.Open(path).Get(section, entry) ? path : std::string();
}

std::optional<std::string> IniOverflow::Get(const std::string& base, std::string_view section, std::string_view entry) {
    const std::string path = FileOf(base, section, entry);
    return path.empty() ? std::nullopt : cache_.Open(path).Get(section, entry);
}

bool IniOverflow::Put(const std::string& base, std::string_view section, std::string_view entry,
                      std::string_view value) {
    const std::string path = FileOf(base, section, entry);
    if (!path.empty() && path != base) {
        cache_.Open(path).Put(section, entry, value);
        return cache_.Save(path);
    }
    const bool goesElsewhere = limit_ && path.empty() && lists_.contains(base);
    if (!goesElsewhere && PutInBase(base, section, entry, value)) return true;
    return limit_ && Overflow(base, section, entry, value);
}

bool IniOverflow::PutInBase(const std::string& base, std::string_view section, std::string_view entry,
                            std::string_view value) {
    IniFile& file = cache_.Open(base);
    file.Put(section, entry, value);
    if (limit_ && file.Text().size() > kFull) {
        cache_.Drop(base);
        return false;
    }
    return cache_.Save(base);
}

bool IniOverflow::AddFile(const std::string& base, int errorNumber) {
    const FreeName made = MakeFreeName(base);
    if (!made.ok) throw ErrorNumber(errorNumber, "IniOverflow: " + made.result);
    lists_[base].push_back(made.result);
    // The name counts as taken once the file exists.
    if (WriteWhole(made.result, {}) && RecordList(base)) return true;
    FileDelete(made.result);
    lists_[base].pop_back();
    if (lists_[base].empty()) lists_.erase(base);
    return false;
}

bool IniOverflow::RecordList(const std::string& base) {
    if (altFilesIni_.empty()) return false;
    const std::string list = CDSJoinPlain(StrArray(1, lists_[base]));
    cache_.Open(altFilesIni_).Put(kListSection, IniEncodeEntry(base), IniEncodeValue(list));
    return cache_.Save(altFilesIni_);
}

std::string IniOverflow::TargetFor(const std::string& base, std::size_t size) {
    if (!lists_.contains(base) && !AddFile(base, errnum::kOverflowName)) return {};
    const std::string& last = lists_[base].back();
    if (SizeOf(last) > 0 && SizeOf(last) + size > kCrowded && !AddFile(base, errnum::kOverflowNext)) return {};
    return lists_[base].back();
}

// The new place is on disk before the base file lets go of the old one, so that a stop in between loses nothing.
bool IniOverflow::Overflow(const std::string& base, std::string_view section, std::string_view entry,
                           std::string_view value) {
    const IniFile& file = cache_.Open(base);
    if (file.State() == IniRead::Unreadable) return false;
    const std::size_t size = entry.size() + 1 + value.size();
    const bool moves = file.HasSection(section) && SizeOf(base) + size > kCrowded;
    const IniFile from = moves ? file : IniFile();
    const std::string target = TargetFor(base, size + from.SectionText(section).size());
    if (target.empty()) return false;
    IniFile& to = cache_.Open(target);
    for (const std::string& each : from.Entries(section)) to.Put(section, each, *from.Get(section, each));
    to.Put(section, entry, value);
    if (!cache_.Save(target)) return false;
    return moves ? RecordSection(base, section) : Record(base, section, entry);
}

bool IniOverflow::Record(const std::string& base, std::string_view section, std::string_view entry) {
    const std::string number = std::to_string(lists_[base].size());
    IniFile& file = cache_.Open(base);
    file.Erase(section, entry);
    const std::string record = AltSection(section);
    if (file.Get(record, kAltNo) != number) file.Put(record, entry, number);
    return cache_.Save(base);
}

// One record stands for all entries of the section.
bool IniOverflow::RecordSection(const std::string& base, std::string_view section) {
    IniFile& file = cache_.Open(base);
    file.EraseSection(section);
    file.Put(AltSection(section), kAltNo, std::to_string(lists_[base].size()));
    return cache_.Save(base);
}

bool IniOverflow::Erase(const std::string& base, std::string_view section, std::string_view entry) {
    const std::string path = FileOf(base, section, entry);
    if (!path.empty() && path != base) {
        cache_.Open(path).Erase(section, entry);
        if (!cache_.Save(path)) return false;
    }
    IniFile& file = cache_.Open(base);
    if (file.State() == IniRead::Unreadable) return false;
    const bool stood = file.Erase(section, entry);
    const bool recorded = file.Erase(AltSection(section), entry);
    return (!stood && !recorded) || cache_.Save(base);
}

bool IniOverflow::EraseSection(const std::string& base, std::string_view section) {
    if (const auto list = lists_.find(base); list != lists_.end())
        for (const std::string& path : list->second)
            if (cache_.Open(path).EraseSection(section) && !cache_.Save(path)) return false;
    IniFile& file = cache_.Open(base);
    if (file.State() == IniRead::Unreadable) return false;
    const bool stood = file.EraseSection(section);
    const bool recorded = file.EraseSection(AltSection(section));
    return (!stood && !recorded) || cache_.Save(base);
}

std::vector<std::string> IniOverflow::Entries(const std::string& base, std::string_view section) {
    std::vector<std::string> names;
    const auto list = lists_.find(base);
    if (list == lists_.end()) return names;
    for (const std::string& path : list->second)
        for (std::string& entry : cache_.Open(path).Entries(section))
            if (FileOf(base, section, entry) == path) names.push_back(std::move(entry));
    return names;
}

}  // namespace core
