#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "dialogs/showmb.h"

// Named groups of texts in a parameter file: one entry with the "|" list of their names, and one entry for each group
// with the "|" list of its members. Changes stay in memory until Save.
namespace dialogs {

struct GroupPlace {
    std::string section{};
    std::string listKey{};  // the entry of the names, "" for no groups at all
    std::string file = "::*";
    bool Given() const { return !listKey.empty(); }
};

struct Group {
    std::string name{};
    std::vector<std::string> members{};
    bool changed = false;
};

class GroupLists {
public:
    GroupLists(core::IniStore& ini, GroupPlace place);

    const std::vector<Group>& All() const { return groups_; }
    std::optional<std::size_t> Find(std::string_view name) const;  // ignoring case
    // The groups but `except` that hold the text, in their order.
    std::vector<std::size_t> Holding(const std::string& member, std::optional<std::size_t> except) const;

    // What is wrong with the name of a new group, "" when nothing is.
    std::string NameProblem(std::string_view name) const;
    std::size_t Add(std::string_view name);
    void Remove(std::size_t group);
    // Exactly these, in this order; names of no group are passed over.
    void Keep(const std::vector<std::string>& names);
    void SetMembers(std::size_t group, std::vector<std::string> members);
    // Members that stand there already are not put in twice.
    void AddMembers(std::size_t group, const std::vector<std::string>& members);
    void RemoveMembers(std::size_t group, const std::unordered_set<std::string>& members);
    // Writes what changed. False: a write failed and the user was told; another Save tries it again.
    bool Save();

private:
    void Changed(std::size_t group);

    core::IniStore& ini_;
    GroupPlace place_;
    std::vector<Group> groups_{};
    std::vector<std::string> removed_{};  // names whose members still stand in the file
    bool namesChanged_ = false;
    mutable std::unordered_map<std::string, std::vector<std::size_t>> holders_{};  // empty until it is asked for
};

// Asks for the name of a new group until it is a good one; nothing when cancelled.
std::optional<std::string> AskGroupName(const Desk& desk, const GroupLists& groups, std::string_view item,
                                        std::string_view title);

}  // namespace dialogs
