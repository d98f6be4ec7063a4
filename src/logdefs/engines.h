#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "logdefs/patternfilter.h"

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
// The definitions of the list one by one, numbered as the tables below number them.
std::vector<std::string> SEDefsList(core::IniStore& ini, const EngineFiles& files);

struct FoundTerm {
    std::string term{};      // raw: case and "+" as the referrer has them
    std::string engine{};    // named when a term position was found, the term being empty or not, and of an assistant
    bool found = false;      // a term position was found
    bool isEngine = false;   // the URL of any definition matched
    bool assistant = false;  // of an engine whose definition names no place of a term: it sends none
};

class SearchEngines {
public:
    SearchEngines() = default;
    // Definitions in match order: "URLSPEC item,item,...", or "URLSPEC" alone of an engine that sends no terms.
    explicit SearchEngines(const std::vector<std::string>& definitions);
    static SearchEngines SEDefsLoad(core::IniStore& ini, const EngineFiles& files);

    FoundTerm STFromReferrer(std::string_view referrer) const;
    // The same; referrers of a known engine that gave no term are listed by definition number, those of an assistant
    // not: they have none to give.
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
        bool SendsNoTerm() const { return SEParamKeys.empty() && items.empty(); }
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
    PatternFilter filter_{};  // of their URL specifications
};

// Adds a referrer to the "|" list of its definition, unique; a list of 10000 characters gets "|Have More ..." once.
void STUndefinedAdd(std::string_view referrer, std::vector<std::string>& list, std::size_t definition);

}  // namespace logdefs
