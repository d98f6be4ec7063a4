#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "logdefs/rule.h"

namespace logdefs {

// The conditions of one rule file in their order while they are edited. Rules and conditions are written to the store
// at once, the list of their names by WriteNames; whoever edits holds a draft of the file.
class FilterLines {
public:
    struct Line {
        std::string name{};
        bool multiple = false;
        bool any = false;
        StoredRule stored{};               // of a single rule
        std::vector<std::string> rules{};  // of a condition of several: names
    };

    FilterLines(core::IniStore& ini, std::string file, std::string key);

    void Read();  // anew from the store
    bool WriteNames();
    const std::vector<Line>& All() const { return lines_; }
    std::size_t Count() const { return lines_.size(); }
    std::optional<std::size_t> Find(std::string_view name) const;

    // The description, of which no more than about `most` bytes are made.
    std::string Text(const Line& line, std::size_t most) const;
    // Another line says the same.
    bool SameAsAnother(const Line& line, std::optional<std::size_t> without) const;
    // The first condition of several rules that holds the name; nothing when none does.
    std::optional<std::size_t> UserOf(std::string_view name) const;
    // The rules behind a line.
    std::vector<StoredRule> RulesOf(const Line& line) const;

    std::string FreeName(double now) const;             // for a condition of several rules
    std::string CopyName(std::string_view name) const;  // "name.1" ...
    // Stores the line at its place, or at the end. A changed name changes in all conditions that hold it, too.
    bool Put(std::optional<std::size_t> at, Line line);
    bool Insert(std::size_t at, Line line);
    bool Remove(std::size_t at);
    void MoveToEnd(std::size_t at);
    void Move(std::vector<int>& selected, bool up);

private:
    bool Write(const Line& line);
    bool Rename(const std::string& from, const std::string& to);
    void Index();
    StoredRule RuleNamed(const std::string& name) const;

    core::IniStore& ini_;
    std::string file_, key_;
    std::vector<Line> lines_{};
    std::unordered_map<std::string, std::size_t> places_{};  // by lower-cased name
    bool namesChanged_ = false;
};

}  // namespace logdefs
