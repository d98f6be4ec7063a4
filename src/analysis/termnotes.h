#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/termstarts.h"
#include "analysis/texttable.h"

namespace analysis {

// A text that visits add to, and the place of the number that the run's tables gave it: whoever keeps the place looks
// the text up once for many visits.
struct KnownText {
    static constexpr std::uint32_t kNew = 0xffffffff;

    std::string_view text{};
    std::uint32_t* number = nullptr;

    // `look` finds the number of a text.
    template <typename Look>
    std::uint32_t Number(Look look) const {
        if (*number == kNew) *number = look(text);
        return *number;
    }
};

// What a run remembers of a search term.
struct TermNote {
    std::uint32_t label = KnownText::kNew;
    std::uint32_t ofStarts = TermStarts::kUnknown;
    bool isCut = false;
    std::vector<std::string> cut{};        // what a word field lists of it
    std::vector<std::uint32_t> numbers{};  // of these texts
    std::vector<std::uint32_t> rows{};     // of those that have one
    std::vector<std::uint32_t> open{};     // places of those that have none yet
    std::uint32_t bundle = 0;              // of the rows, when there are some
    bool isSplit = false;
    std::vector<std::uint32_t> words{};  // numbers in the list of words
};

// Notes of terms. Their memory is bounded: when full they start anew, so ever new terms cost no more than without them.
class TermNotes {
public:
    // Fetches what Of soon will need.
    void Expect(std::string_view term) const { terms_.Expect(term); }
    // The note stands until the next call.
    TermNote& Of(std::string_view term);
    // What was put into the note counts.
    void Grew(const TermNote& note);

private:
    static constexpr std::size_t kMost = 1U << 16U;
    static constexpr std::size_t kMostBytes = 32U << 20U;

    TextTable terms_{};
    std::deque<TermNote> notes_{};  // by number of the term
    std::size_t bytes_ = 0;
};

}  // namespace analysis
