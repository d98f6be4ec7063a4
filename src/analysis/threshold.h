#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "analysis/termnotes.h"
#include "analysis/texttable.h"

namespace analysis {

// Keeps rare values out of the results: a value gets its row at sighting T + 1, credited with all of them. Until then
// it costs its text and a number. Values are told apart by their exact text.
class ThresholdHash {
public:
    explicit ThresholdHash(std::int32_t threshold) : threshold_(threshold) {}

    struct Kept {
        bool keep = false;
        std::int32_t count = 0;
        std::int32_t row = -1;          // -1: it has none yet; tell the new one by SetRow, before the next value
        std::int32_t* state = nullptr;  // sightings so far, or less the row
    };
    Kept Hash_Keep(const KnownText& value) {
        const std::uint32_t id = value.Number([this](std::string_view text) { return values_.FindOrAdd(text); });
        if (id == states_.size()) states_.push_back(0);
        return Sighted(states_[id]);
    }
    Kept Hash_Keep(const TermStart& value) { return Sighted(pairs_.Of(value.term, value.start)); }
    static void SetRow(const Kept& kept, std::uint32_t row) { *kept.state = -static_cast<std::int32_t>(row); }
    // Fetch what Hash_Keep soon will need.
    void Expect(const KnownText& value) const {
        if (*value.number == KnownText::kNew) values_.Expect(value.text);
    }
    void Expect(const TermStart& value) const { pairs_.Expect(value.term, value.start); }

private:
    Kept Sighted(std::int32_t& state) const {
        if (state < 0) return {true, 1, -state, &state};
        if (++state <= threshold_) return {};
        return {true, state, -1, &state};
    }

    std::int32_t threshold_;
    TextTable values_{};
    std::vector<std::int32_t> states_{};
    PairTable pairs_{};  // states of the values that are told by their numbers
};

}  // namespace analysis
