#include "logdefs/engines.h"

#include <gtest/gtest.h>

#include "core/inistore.h"
#include "core/text.h"
#include "names/searchterm.h"
#include "tests/support/fakes.h"
#include "tests/support/tsv.h"

namespace logdefs {
namespace {

// "ENGINE:raw term", "engine without a term" or "no engine".
std::string Found(const std::string& definition, const std::string& referrer) {
    const FoundTerm found = SearchEngines({definition}).STFromReferrer(referrer);
    if (found.found) return found.engine + ":" + found.term;
    return found.isEngine ? "engine without a term" : "no engine";
}

TEST(STFromReferrer, TakesTheTermByTheOrderOfItsSteps) {
    const struct {
        const char* definition;
        const char* referrer;
        const char* found;
    } cases[] = {
        {"http://www.finder.*/* q,as_q", "http://www.finder.net/search?hl=de&q=web%20log&btnG=", "WWW:web log"},
        {"http://*.finder.*/* ?q", "http://de.finder.net/s?q=a%26b", "FINDER:a"},  // decoding comes first
        {"http://*.finder.*/* ?q", "http://de.finder.net/s?Q=Red+Shoes", "FINDER:Red+Shoes"},
        {"http://*.finder.*/* q", "http://de.finder.net/s?faq=1&q=x", "FINDER:1"},
        {"http://*.finder.*/* ?q", "http://de.finder.net/s?faq=1&q=x", "FINDER:x"},
        {"http://*.finder.*/* ?q", "https://de.finder.net/s?q=x", "FINDER:x"},
        {"https://*.finder.*/* ?q", "http://de.finder.net/s?q=x", "FINDER:x"},
        {"http://*.finder.*/* ?q", "\"http://de.finder.net/s?q=x&a=b\"", "FINDER:x"},
        {"http://*.finder.*/* ?q", "http://de.finder.net/s?q=", "FINDER:"},
        {"http://*.finder.*/* ?q", "http://de.finder.net/", "engine without a term"},
        {"http://*.finder.*/* ?q", "http://other.test/?q=x", "no engine"},
        {"http://finder.net/* ::/search/::/::0", "http://finder.net/search/cheap%20flights/1", "FINDER:cheap flights"},
        {"http://finder.net/* ::/search/::/::1", "http://finder.net/search/cheap", "engine without a term"},
        {"http://finder.net/* ::/search/::/::FALSE", "http://finder.net/search/cheap", "FINDER:cheap"},
        {"http://finder.net/* ::%2Fsearch%2F::|::0::1", "http://finder.net/search/a|b", "FINDER:a"},
        {"http://finder.net/* ::/s/::/::0,?q", "http://finder.net/s/path/?q=key", "FINDER:key"},  // keys before items
        {"http://finder.net/* ,, ?q ,", "http://finder.net/?q=x", "FINDER:x"},
        {"finder.net ?q", "finder.net", "engine without a term"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.definition) + "  <-  " + c.referrer);
        EXPECT_EQ(Found(c.definition, c.referrer), c.found);
    }
}

TEST(STFromReferrer, GoesOnToTheNextDefinitionWithoutATerm) {
    const SearchEngines engines({"http://*.finder.*/* ?text", "http://finder.*/* ?q", "http://*finder.*/* ?q"});
    std::vector<std::string> undefined;
    const FoundTerm found = engines.STFromReferrer("http://www.finder.net/?q=x", undefined);
    EXPECT_EQ(found.term, "x");
    ASSERT_EQ(undefined.size(), 1U);  // the first definition knew the address and found nothing
    EXPECT_EQ(undefined[0], "http://www.finder.net/?q=x");
}

TEST(STFromReferrer, AnEngineThatSendsNoTermsIsNamedAndNotListed) {
    const SearchEngines engines({"http://*.chat.*/* ?q", "http://chat.test/*", "[http://talk.]ttp://*.chat.test/* ",
                                 "http://www.chat.test/* ?p"});
    const struct {
        const char* referrer;
        const char* engine;
        bool assistant;
        std::size_t undefined;
    } cases[] = {
        {"https://chat.test/", "CHAT", true, 0},
        {"https://app.chat.test/", "TALK", true, 0},       // the general definition missed its term, as it should
        {"https://app.chat.test/?q=x", "CHAT", false, 0},  // a term wins
        {"https://www.chat.test/?p=x", "WWW", false, 1},   // behind the assistant, too
        {"https://www.chat.org/", "", false, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.referrer);
        std::vector<std::string> undefined;
        const FoundTerm found = engines.STFromReferrer(c.referrer, undefined);
        EXPECT_TRUE(found.isEngine);
        EXPECT_EQ(found.assistant, c.assistant);
        EXPECT_EQ(found.found, !c.assistant && c.engine[0] != '\0');
        EXPECT_EQ(found.engine, c.engine);
        EXPECT_EQ(undefined.size(), c.undefined);
    }
}

TEST(STUndefinedAdd, EndsALongListOnce) {
    std::vector<std::string> list{std::string(10000, 'x')};
    STUndefinedAdd("http://a/", list, 0);
    STUndefinedAdd("http://b/", list, 0);
    EXPECT_EQ(list[0], std::string(10000, 'x') + "|Have More ...");
}

// The example of a row gives its engine and its standardised term over both protocols.
void ExpectExample(const SearchEngines& engines, const testsupport::TsvRow& row) {
    for (const std::string protocol : {"http://", "https://"}) {
        const std::string referrer = protocol + std::string(core::fAfter(row.at("example"), "://"));
        SCOPED_TRACE(referrer);
        const FoundTerm found = engines.STFromReferrer(referrer);
        std::string term = found.term;
        EXPECT_EQ(found.engine, row.at("shown_name"));
        EXPECT_EQ(names::ST_Std(term), row.at("example_term"));
    }
}

TEST(DeliveredData, EveryExampleGivesItsEngineAndTerm) {
    std::vector<std::string> definitions;
    const auto rows = testsupport::ReadTsv(TEST_DATA "/params/engines.tsv");
    for (const auto& row : rows) definitions.push_back(row.at("definition"));
    const SearchEngines engines(definitions);
    for (const auto& row : rows) ExpectExample(engines, row);
    EXPECT_EQ(rows.size(), 432U);
}

TEST(DeliveredDefinitions, KnowTheImportantEngines) {
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    const SearchEngines engines =
        SearchEngines::SEDefsLoad(ini, {PARAMS_DIR "/program/logfmts.ini", PARAMS_DIR "/program/lastinstvals.ini"});
    int known = 0;
    for (const auto& row : testsupport::ReadTsv(TEST_DATA "/params/engines.tsv")) {
        if (row.at("important") != "yes") continue;
        ExpectExample(engines, row);
        ++known;
    }
    EXPECT_EQ(known, 50);
}

}  // namespace
}  // namespace logdefs
