#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/fields.h"

// The fields of reports: what the left column lists, and how the distribution columns are called.
namespace reports {

struct FieldRow {
    int code;
    std::string_view word;  // of the command line
    std::string_view name;
    std::string_view alternate;  // "": the field has no alternate distribution
    std::string_view firstDistribution;
};
// "Visted" and "Wordss" are how users read them in lists and captions; keep the spelling.
inline constexpr std::array kFieldTable{
    FieldRow{1, "terms", "Search Term", "First Page (Found)", "Srch Engine"},
    FieldRow{2, "start-pages", "Page Found", "Search Term", "Srch Engine"},
    FieldRow{3, "terms-start-pages", "Search Term // Page Found", "", "Srch Engine"},
    FieldRow{4, "exit-pages", "Exit Page", "Search Term", "Srch Engine"},
    FieldRow{5, "tracks", "Visited Pages in sequence", "Search Term", "Srch Engine"},
    FieldRow{6, "pages", "Visted Page", "Search Term", "Srch Engine"},
    FieldRow{7, "dirs", "Visted Dir (any Page in folder)", "Search Term", "Srch Engine"},
    FieldRow{8, "referrers", "Referrer (NonSE)", "First Page (Found)", "Srch Engine"},
    FieldRow{9, "", "Visitor Group", "First Page (Found)", "Srch Engine"},
    FieldRow{11, "engines", "Srch Engine", "First Page (Found)", "Search Term"},
    FieldRow{12, "words-phrases", "Search Term Words n Phrases [up to 7 words]", "First Page (Found)", "Search Term"},
    FieldRow{13, "phrases", "Search Term Phrases [2 or more words]", "First Page (Found)", "Search Term"},
    FieldRow{14, "phrases3", "Search Term Phrases [3 or more words]", "First Page (Found)", "Search Term"},
    FieldRow{15, "words", "Search Term Wordss [single words from all keywords]", "First Page (Found)", "Search Term"},
    FieldRow{16, "2-word", "2-word Search Term Phrases", "First Page (Found)", "Search Term"},
    FieldRow{17, "3-word", "3-word Search Term Phrases", "First Page (Found)", "Search Term"},
    FieldRow{18, "4-word", "4-word Search Term Phrases", "First Page (Found)", "Search Term"},
    FieldRow{19, "5-word", "5-word Search Term Phrases", "First Page (Found)", "Search Term"},
    FieldRow{20, "6-word", "6-word Search Term Phrases", "First Page (Found)", "Search Term"},
    FieldRow{21, "7-word", "7-word Search Term Phrases", "First Page (Found)", "Search Term"},
};
static_assert(std::ranges::all_of(kFieldTable,
                                  [](const FieldRow& row) { return row.word.empty() || analysis::HasField(row.code); }),
              "a field of the command line cannot be analysed");

// nullptr: there is no such field.
const FieldRow* FindField(int code);
std::string_view FieldName(int code);

// By word or code ("terms", "1"). nullptr: unknown, or not to be reported.
const FieldRow* FieldOfWord(std::string_view text);
// Words that look like the given one, the nearest first; all of them when none does.
std::vector<std::string> SuggestFields(std::string_view text);

enum class FieldList : int { Full = 1, Words = 2 };
// A "|" list of codes.
std::string Fields_List(FieldList kind);

}  // namespace reports
