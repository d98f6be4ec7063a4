#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// One parameter file as it stands on disk. Comments, blank lines, order and
// line ends (CR LF or LF) are kept; a write replaces the file in one step.
namespace core {

struct ReadText;

enum class IniRead { Ok, Missing, Unreadable };

class IniFile {
public:
    // What cannot be read is never written: Unreadable leaves an object whose Save fails.
    static IniFile Load(const std::string& path);
    static IniFile From(const ReadText& read);  // Load in two steps
    static IniFile Parse(std::string_view text);

    IniRead State() const { return state_; }

    // Names compare ignoring case (ASCII and UTF-8 letters). The value has blanks and tabs at its ends stripped
    // and then one enclosing pair of double quotes taken off. Of equal names the first counts.
    std::optional<std::string> Get(std::string_view section, std::string_view entry) const;
    std::vector<std::string> Sections() const;
    std::vector<std::string> Entries(std::string_view section) const;
    bool HasSection(std::string_view section) const;

    // Names and values are texts of one line (see inicodec.h); each stops at its first line end.
    void Put(std::string_view section, std::string_view entry, std::string_view value);
    bool Erase(std::string_view section, std::string_view entry);
    bool EraseSection(std::string_view section);

    std::string Text() const;
    // The lines of a section with its head, as they stand; "" when there is none.
    std::string SectionText(std::string_view section) const;
    // Atomic (see WriteWhole in files.h). False: the old file stands.
    bool Save(const std::string& path) const;

private:
    struct Section {
        std::string name{};
        std::vector<std::string> lines{};  // with line ends; the head is the first, but before all sections
        std::unordered_map<std::string, std::size_t> index{};  // folded name -> line, the first of equal names
    };

    void AddLine(std::string line);
    void Reindex();
    static void Reindex(Section& section);
    void EndLastLine();
    Section& SectionFor(std::string_view name);

    IniRead state_ = IniRead::Ok;
    std::string mark_{};  // the byte order mark, when the file has one
    std::string lineEnd_ = "\n";
    std::vector<Section> sections_{Section{}};  // the first holds what stands before all heads
    std::unordered_map<std::string, std::vector<std::size_t>> index_{};
};

}  // namespace core
