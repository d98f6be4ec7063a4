#include "core/inilong.h"

#include <algorithm>
#include <unordered_set>

#include "core/inicodec.h"
#include "core/text.h"
#include "core/utf8.h"

namespace core {

namespace {

constexpr std::size_t kMostText = 63998;  // bytes of an entry's text in the file
constexpr std::size_t kPart = 60800;      // bytes of a value in one part

// Length of "123." at the start of a name, 0 when it does not start so.
std::size_t NumberLength(std::string_view name) {
    const std::size_t end = name.find_first_not_of("0123456789");
    return end != 0 && end != std::string_view::npos && name[end] == '.' ? end + 1 : 0;
}

// The longest start of `rest` whose text fits, ending at a letter's end.
std::string_view NextPart(std::string_view rest, std::string& text) {
    std::string_view part = CutUtf8(rest, kPart);
    for (text = IniEncodeValue(part); text.size() > kMostText; text = IniEncodeValue(part)) {
        const double fits = static_cast<double>(kMostText) / static_cast<double>(text.size());
        const auto target = static_cast<std::size_t>(static_cast<double>(part.size()) * fits);
        part = CutUtf8(part, std::max<std::size_t>(std::min(target, part.size() - 1), 4));
    }
    return part;
}

std::vector<std::string> Parts(std::string_view value, LastChar last) {
    std::vector<std::string> texts;
    std::string text;
    std::string_view part;
    for (std::string_view rest = value; !rest.empty(); rest.remove_prefix(part.size())) {
        part = NextPart(rest, text);
        texts.push_back(text);
    }
    if (last == LastChar::Dropped)
        texts.back() = IniEncodeValue(part.substr(0, part.size() - LetterBefore(part, part.size()).length));
    return texts;
}

}  // namespace

std::string IniSplitName(std::string_view entry) {
    std::string name = IniEncodeEntry(entry);
    // "0.a" would else share names with part 0 of "a".
    if (NumberLength(name) > 0) name.replace(0, 1, std::string(kIniPair) + "#0" + std::to_string(name[0]) + ".");
    return name;
}

std::string IniPartName(std::string_view name) { return std::string(kSplitEntry).append(name); }

std::string IniPartName(std::string_view name, long i) {
    return std::string(kSplitEntry).append(std::to_string(i)).append(".").append(name);
}

IniChanges IniChangesFor(std::string_view entry, std::string_view value, LastChar last, long oldLast) {
    IniChanges changes;
    const std::string name = IniSplitName(entry);
    std::string text = IniEncodeValue(value);
    if (text.size() <= kMostText) {
        changes = IniErasure(entry, oldLast);
        changes.erased.erase(changes.erased.begin());
        changes.puts.emplace_back(IniEncodeEntry(entry), std::move(text));
        return changes;
    }
    const std::vector<std::string> parts = Parts(value, last);
    const long count = static_cast<long>(parts.size());
    for (long i = 0; i < count; ++i)
        changes.puts.emplace_back(IniPartName(name, i), parts[static_cast<std::size_t>(i)]);
    changes.puts.emplace_back(IniPartName(name), std::to_string(count - 1));
    changes.erased.push_back(IniEncodeEntry(entry));
    for (long i = count; i <= oldLast; ++i) changes.erased.push_back(IniPartName(name, i));
    return changes;
}

IniChanges IniErasure(std::string_view entry, long oldLast) {
    const std::string name = IniSplitName(entry);
    IniChanges changes;
    changes.erased.push_back(IniEncodeEntry(entry));
    if (oldLast < 0) return changes;
    for (long i = 0; i <= oldLast; ++i) changes.erased.push_back(IniPartName(name, i));
    changes.erased.push_back(IniPartName(name));
    return changes;
}

std::vector<std::string> IniNamesOf(const std::vector<std::string>& texts) {
    std::unordered_set<std::string> folded;
    for (const std::string& text : texts) folded.insert(LowerUtf8(text));
    std::vector<std::string> names;
    for (const std::string& text : texts) {
        std::string_view name = text;
        if (fStartsWith(name, kSplitEntry, Case::Ignore)) {
            name.remove_prefix(kSplitEntry.size());
            const std::size_t number = NumberLength(name);
            if (number > 0 && folded.contains(LowerUtf8(IniPartName(name.substr(number))))) continue;
        }
        names.push_back(IniDecodeName(name));
    }
    return names;
}

}  // namespace core
