#pragma once

#include <string>
#include <string_view>

// Definitions of engines as texts: "URLSPEC item,item,...".
namespace logdefs {

// The two halves as people edit them.
struct SEDef {
    std::string url{};     // pattern of the engine's pages
    std::string places{};  // of the term; empty: the engine sends none (an AI assistant)
    std::string Text() const { return places.empty() ? url : url + " " + places; }
    bool operator==(const SEDef&) const = default;
};
SEDef SEDefSplit(std::string_view definition);

// A general definition serves any top level domain. Its URL specification ends in "*/*".
bool SEDefIsGeneral(std::string_view definition);
// "http://*.finder.*/*" is FINDER, "http://www.finder.net/*" is WWW.
std::string SEDefName(std::string_view definition);
// What is wrong with a definition and where, "" when nothing is. Begins with a small letter and has no full stop.
std::string SEDefFault(const SEDef& definition);
// A pattern is held against whole referrers, and those of the web begin with "http".
bool SEDefHasProtocol(const SEDef& definition);

// One rule serves both protocols: the s goes, in definitions and in referrers.
void JudgeAsHttp(std::string& url);

}  // namespace logdefs
