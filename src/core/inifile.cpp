#include "core/inifile.h"

#include <algorithm>

#include "core/files.h"
#include "core/utf8.h"

namespace core {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t";

std::string_view WithoutEnd(std::string_view line) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::string_view Strip(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool InQuotes(std::string_view text) { return text.size() >= 2 && text.front() == '"' && text.back() == '"'; }

std::string_view Bare(std::string_view line) { return Strip(WithoutEnd(line)); }

bool IsHead(std::string_view line) { return Bare(line).starts_with('['); }

std::string_view HeadName(std::string_view line) {
    line = Bare(line).substr(1);
    return Strip(line.substr(0, line.find(']')));
}

struct Parts {
    std::string_view name{};
    std::string_view value{};
};
// Nothing for comments and lines without "=".
std::optional<Parts> Split(std::string_view line) {
    line = Bare(line);
    const std::size_t equal = line.find('=');
    if (equal == std::string_view::npos || line.starts_with(';')) return {};
    std::string_view value = Strip(line.substr(equal + 1));
    if (InQuotes(value)) value = value.substr(1, value.size() - 2);
    return Parts{Strip(line.substr(0, equal)), value};
}

std::string_view OneLine(std::string_view text) { return text.substr(0, text.find_first_of("\r\n")); }

// The quotes keep what reading would strip.
std::string Quoted(std::string_view value) {
    const bool strips = !value.empty() && (kBlanks.find(value.front()) != std::string_view::npos ||
                                           kBlanks.find(value.back()) != std::string_view::npos || InQuotes(value));
    return strips ? "\"" + std::string(value) + "\"" : std::string(value);
}

bool IsUtf16(std::string_view text) { return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"); }

}  // namespace

IniFile IniFile::Load(const std::string& path) { return From(ReadFile(path)); }

IniFile IniFile::From(const ReadText& read) {
    if (read.result && !IsUtf16(read.text)) return Parse(read.text);
    IniFile file;
    file.state_ = read.existed ? IniRead::Unreadable : IniRead::Missing;
    return file;
}

IniFile IniFile::Parse(std::string_view text) {
    IniFile file;
    if (text.starts_with(kByteOrderMark)) {
        file.mark_ = kByteOrderMark;
        text.remove_prefix(kByteOrderMark.size());
    }
    std::string room;
    text = ToUtf8(text, room);
    if (const std::size_t end = text.find('\n'); end != std::string_view::npos && end > 0 && text[end - 1] == '\r')
        file.lineEnd_ = "\r\n";
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        file.AddLine(std::string(text.substr(0, end)));
        text.remove_prefix(end);
    }
    file.Reindex();
    return file;
}

void IniFile::AddLine(std::string line) {
    if (IsHead(line)) sections_.push_back({std::string(HeadName(line)), {}, {}});
    sections_.back().lines.push_back(std::move(line));
}

void IniFile::Reindex(Section& section) {
    section.index.clear();
    for (std::size_t i = 0; i < section.lines.size(); ++i)
        if (!IsHead(section.lines[i]))
            if (const auto parts = Split(section.lines[i])) section.index.emplace(LowerUtf8(parts->name), i);
}

void IniFile::Reindex() {
    index_.clear();
    for (std::size_t i = 1; i < sections_.size(); ++i) {
        index_[LowerUtf8(sections_[i].name)].push_back(i);
        Reindex(sections_[i]);
    }
}

std::optional<std::string> IniFile::Get(std::string_view section, std::string_view entry) const {
    const auto found = index_.find(LowerUtf8(Strip(section)));
    if (found == index_.end()) return {};
    const std::string name = LowerUtf8(Strip(entry));
    for (const std::size_t i : found->second) {
        const auto line = sections_[i].index.find(name);
        if (line != sections_[i].index.end()) return std::string(Split(sections_[i].lines[line->second])->value);
    }
    return {};
}

std::vector<std::string> IniFile::Sections() const {
    std::vector<std::string> names;
    for (std::size_t i = 1; i < sections_.size(); ++i)
        if (index_.at(LowerUtf8(sections_[i].name)).front() == i) names.push_back(sections_[i].name);
    return names;
}

std::vector<std::string> IniFile::Entries(std::string_view section) const {
    std::vector<std::string> names;
    const auto found = index_.find(LowerUtf8(Strip(section)));
    if (found == index_.end()) return names;
    std::unordered_map<std::string, bool> seen;
    for (const std::size_t i : found->second)
        for (const std::string& line : sections_[i].lines) {
            if (IsHead(line)) continue;
            const auto parts = Split(line);
            if (parts && seen.emplace(LowerUtf8(parts->name), true).second) names.emplace_back(parts->name);
        }
    return names;
}

bool IniFile::HasSection(std::string_view section) const { return index_.contains(LowerUtf8(Strip(section))); }

void IniFile::EndLastLine() {
    for (auto section = sections_.rbegin(); section != sections_.rend(); ++section) {
        if (section->lines.empty()) continue;
        if (!section->lines.back().ends_with('\n')) section->lines.back() += lineEnd_;
        return;
    }
}

IniFile::Section& IniFile::SectionFor(std::string_view name) {
    const std::string folded = LowerUtf8(name);
    if (const auto found = index_.find(folded); found != index_.end()) return sections_[found->second.front()];
    EndLastLine();
    index_[folded].push_back(sections_.size());
    sections_.push_back({std::string(name), {"[" + std::string(name) + "]" + lineEnd_}, {}});
    return sections_.back();
}

void IniFile::Put(std::string_view section, std::string_view entry, std::string_view value) {
    section = Strip(OneLine(section));
    entry = Strip(OneLine(entry));
    const std::string folded = LowerUtf8(entry);
    const std::string text = "=" + Quoted(OneLine(value));
    if (const auto found = index_.find(LowerUtf8(section)); found != index_.end())
        for (const std::size_t i : found->second) {
            const auto line = sections_[i].index.find(folded);
            if (line == sections_[i].index.end()) continue;
            std::string& old = sections_[i].lines[line->second];
            const std::string end = old.substr(WithoutEnd(old).size());
            old = std::string(Split(old)->name) + text + end;
            return;
        }
    Section& target = SectionFor(section);
    EndLastLine();
    // Blank lines at a section's end part it from the next: the new entry goes before them.
    std::size_t at = target.lines.size();
    while (at > 1 && Bare(target.lines[at - 1]).empty()) --at;
    target.lines.insert(target.lines.begin() + static_cast<std::ptrdiff_t>(at), std::string(entry) + text + lineEnd_);
    target.index.emplace(folded, at);
}

bool IniFile::Erase(std::string_view section, std::string_view entry) {
    const auto found = index_.find(LowerUtf8(Strip(section)));
    if (found == index_.end()) return false;
    const std::string folded = LowerUtf8(Strip(entry));
    bool erased = false;
    for (const std::size_t i : found->second) {
        Section& target = sections_[i];
        if (!target.index.contains(folded)) continue;
        // All of them: else a second one of that name would come to light.
        std::erase_if(target.lines, [&folded](const std::string& line) {
            const auto parts = IsHead(line) ? std::nullopt : Split(line);
            return parts && LowerUtf8(parts->name) == folded;
        });
        Reindex(target);
        erased = true;
    }
    return erased;
}

bool IniFile::EraseSection(std::string_view section) {
    const std::string folded = LowerUtf8(Strip(section));
    if (!index_.contains(folded)) return false;
    const auto drops = [&folded](const Section& each) { return LowerUtf8(each.name) == folded; };
    sections_.erase(std::remove_if(sections_.begin() + 1, sections_.end(), drops), sections_.end());
    Reindex();
    return true;
}

std::string IniFile::Text() const {
    std::string text = mark_;
    for (const Section& section : sections_)
        for (const std::string& line : section.lines) text += line;
    return text;
}

std::string IniFile::SectionText(std::string_view section) const {
    std::string text;
    const auto found = index_.find(LowerUtf8(Strip(section)));
    if (found == index_.end()) return text;
    for (const std::size_t i : found->second)
        for (const std::string& line : sections_[i].lines) text += line;
    return text;
}

bool IniFile::Save(const std::string& path) const {
    return state_ != IniRead::Unreadable && !path.empty() && static_cast<bool>(WriteWhole(path, Text()));
}

}  // namespace core
