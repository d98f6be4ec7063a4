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
        std::int32_t row = -1;  // -1: it has none yet; tell the new one by SetRow
        std::uint32_t id = 0;
    };
    Kept Hash_Keep(const KnownText& value) {
        const std::uint32_t id = value.Number([this](std::string_view text) { return values_.FindOrAdd(text); });
        if (id == states_.size()) states_.push_back(0);
        std::int32_t& state = states_[id];
        if (state < 0) return {true, 1, -state, id};
        if (++state <= threshold_) return {};
        return {true, state, -1, id};
    }
    std::string_view Text(std::uint32_t id) const { return values_.Text(id); }
    // Fetches what Hash_Keep soon will need.
    void Expect(const KnownText& value) const {
        if (*value.number == KnownText::kNew) values_.Expect(value.text);
    }
    void SetRow(std::uint32_t id, std::int32_t row) { states_[id] = -row; }

private:
    std::int32_t threshold_;
    TextTable values_{};
    std::vector<std::int32_t> states_{};  // sightings so far, or less the row
};

}  // namespace analysis
