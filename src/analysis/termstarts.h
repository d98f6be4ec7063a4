#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/shownpages.h"
#include "analysis/texttable.h"

namespace analysis {

inline constexpr std::string_view kTermStartJoint = " - ";

// Numbers of a term and of the shown name of a start page.
struct TermStart {
    std::uint32_t term = 0;
    std::uint32_t start = 0;
};

// Tells values that are made of a term and a start page by their two numbers, so that their texts need not be made.
// Only where the joined text can be parted in one way: equal texts are one value.
class TermStarts {
public:
    static constexpr std::uint32_t kUnknown = 0xffffffff;

    explicit TermStarts(const ShownPages& shown) : shown_(shown) {}

    // `number` is that of the term, kUnknown the first time, and is remembered by the caller. Empty: only the text
    // tells.
    std::optional<TermStart> Of(std::string_view term, std::uint32_t& number, std::uint32_t start);
    std::string Text(const TermStart& value) const;

private:
    static constexpr std::uint32_t kByText = 0xfffffffe;
    enum class Tells : signed char { Unknown, No, Yes };

    bool StartTells(std::uint32_t start);

    const ShownPages& shown_;
    TextTable terms_{};
    std::vector<Tells> starts_{};  // by number of the shown name
};

}  // namespace analysis
