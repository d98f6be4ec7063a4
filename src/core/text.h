#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Small text helpers. Positions are 1-based, widths and positions count bytes,
// and a cut never splits a UTF-8 letter: it moves back to the letter's start.
namespace core {

enum class Case { Exact, Ignore };

struct Cut {
    std::string text{};
    bool wasCut = false;
};

// At most n bytes, `mark` included. Whatever is longer than n less the mark is
// cut, so with ".." texts of n and n-1 bytes are cut too.
Cut fLeft(std::string_view text, int n, std::string_view mark = {});

// `mark` and the last bytes, at least one letter, n bytes in all.
std::string fRight(std::string_view text, int n, std::string_view mark = {});

// Both ends move back to a letter's start. A start past the end, or a length of 0 or less, gives "".
std::string_view fMid(std::string_view text, long start, long length);

void fCutLeft(std::string& text, long n);
void fCutRight(std::string& text, long n);

std::string fStrip(std::string_view text, std::string_view find);
std::string fStripAmp(std::string_view text);
std::string fReplace(std::string_view text, std::string_view find, std::string_view by, Case mode = Case::Exact);

bool fStartsWith(std::string_view text, std::string_view prefix, Case mode = Case::Exact);
bool fEndsWith(std::string_view text, std::string_view suffix, Case mode = Case::Exact);
bool fEquals(std::string_view a, std::string_view b, Case mode);

// Offset (0-based) of the first occurrence at or after `from`, or npos.
std::size_t fFind(std::string_view text, std::string_view find, Case mode, std::size_t from = 0);
struct Found {
    bool found = false;
    long position = 0;  // 1-based, in the whole text
};
// Finds in the window from `start` to `stop` (1-based, both included; a stop below 1 means the end of the text).
Found fInStr(std::string_view text, std::string_view find, Case mode = Case::Exact, long start = 1, long stop = 0);
long fCount(std::string_view text, std::string_view find, Case mode = Case::Exact);

struct Token {
    std::string text{};
    bool found = false;
};
// Takes the text up to the first (fNextTokenR: behind the last) delimiter out
// of `rest`, with the delimiter. Not found: token "", `rest` unchanged.
Token fNextToken(std::string& rest, std::string_view delimiter, Case mode = Case::Exact);
// The same over a view: a walk through a long text takes linear time.
Token fNextToken(std::string_view& rest, std::string_view delimiter);
Token fNextTokenR(std::string& rest, std::string_view delimiter);

// The text before the first delimiter (the whole when absent), and behind it ("" when absent).
std::string_view fBefore(std::string_view text, std::string_view delimiter);
std::string_view fAfter(std::string_view text, std::string_view delimiter);
std::string_view fAfterR(std::string_view text, std::string_view delimiter);  // whole when absent

std::string fRepeat(std::string_view text, int n);
std::string fProper(std::string_view text);
std::string fAddQ(std::string_view text);
// Appends or puts in front; true when there is no memory for it, and then `variable` is as it was.
bool fConcatSafe(std::string_view text, std::string& variable, bool atEnd);
std::string fListAddSep(std::string_view item, std::string_view list);

// Blanks only (code 32), at both ends: what the word "trimmed" means everywhere.
std::string_view fTrim(std::string_view text);
std::string_view fTrimLeft(std::string_view text);
std::string_view fTrimRight(std::string_view text);

// "True", "Yes", "1", "-1" ... : everything is true but "False", "0" and "" (trimmed, exact).
bool fBool(std::string_view text);
std::string_view fBoolWord(bool flag);  // "True" or "False"
bool fIsOne(std::string_view text);
bool fIsOneSigned(std::string_view text);
std::string_view fBoolText(bool flag);        // "1" or "0"
std::string_view fBoolTextSigned(bool flag);  // "-1" or "0"

}  // namespace core
