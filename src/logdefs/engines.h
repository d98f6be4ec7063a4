#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace core {
class IniStore;
}

// From a referrer to the search engine and the raw search term.
namespace logdefs {

struct EngineFiles {
    std::string own{};        // logfmts.ini
    std::string delivered{};  // lastinstvals.ini
};

// The stored list of definitions, or the delivered one where none is stored.
std::string SEDefsRead(core::IniStore& ini, const EngineFiles& files);
// Stores the list, general definitions (URL specification ending in "*/*") before specific ones, order kept in each.
bool SEDefsWrite(core::IniStore& ini, const EngineFiles& files, const std::vector<std::string>& definitions);

struct FoundTerm {
    std::string term{};     // raw: case and "+" as the referrer has them
    std::string engine{};   // named when a term position was found, the term being empty or not
    bool found = false;     // a term position was found
    bool isEngine = false;  // the URL of any definition matched
};

class SearchEngines {
public:
    SearchEngines() = default;
    // Definitions in match order: "URLSPEC item,item,...".
    explicit SearchEngines(const std::vector<std::string>& definitions);
    static SearchEngines SEDefsLoad(core::IniStore& ini, const EngineFiles& files);

    FoundTerm STFromReferrer(std::string_view referrer) const;
    // The same; referrers of a known engine that gave no term are listed by definition number.
    FoundTerm STFromReferrer(std::string_view referrer, std::vector<std::string>& undefinedList) const;

    std::size_t Count() const { return definitions_.size(); }

private:
    struct PathItem {
        std::string start{};
        std::string end{};
        bool endRequired = false;
    };
    struct Definition {
        std::string SEUrlSpec{};
        std::string name{};
        std::vector<std::string> SEParamKeys{};
        std::vector<PathItem> items{};
    };
    struct Url {
        std::string s{};  // decoded
        std::string l{};  // and lower-cased, letter for letter at the same places
    };

    static Definition Compile(std::string_view definition);
    static void AddItem(Definition& definition, std::string_view item);
    static bool TermOf(const Definition& definition, const Url& url, std::string& term);
    FoundTerm Search(std::string_view referrer, std::vector<std::string>* undefinedList) const;

    std::vector<Definition> definitions_{};
};

// Adds a referrer to the "|" list of its definition, unique; a list of 10000 characters gets "|Have More ..." once.
void STUndefinedAdd(std::string_view referrer, std::vector<std::string>& list, std::size_t definition);

}  // namespace logdefs
