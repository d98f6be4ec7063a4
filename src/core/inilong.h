#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Values longer than one entry can hold: part i stands under "SplitEntry." + i +
// "." + entry, the number of the last part under "SplitEntry." + entry.
namespace core {

inline constexpr std::string_view kSplitEntry = "SplitEntry.";

// The name of an entry as it stands behind the prefix of its parts.
std::string IniSplitName(std::string_view entry);
std::string IniPartName(std::string_view name);          // holds the number of the last part
std::string IniPartName(std::string_view name, long i);  // part i, from 0

// A single value loses its last character when it is split; a list keeps it.
enum class LastChar { Dropped, Kept };

// What a write does to the entries of a section, in texts of the file.
struct IniChanges {
    std::vector<std::pair<std::string, std::string>> puts{};
    std::vector<std::string> erased{};
};
// `oldLast` is the number of the last part that stands there now, -1 for none.
IniChanges IniChangesFor(std::string_view entry, std::string_view value, LastChar last, long oldLast);
IniChanges IniErasure(std::string_view entry, long oldLast);

// Names of entries out of the texts of a file: parts are left out, a split value is named once.
std::vector<std::string> IniNamesOf(const std::vector<std::string>& texts);

}  // namespace core
