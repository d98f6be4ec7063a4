#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace logdefs {

// Looks for many texts in one pass: which of them a value holds costs the value's length, not the number of texts.
// Bytes are compared as they are.
class Literals {
public:
    Literals() = default;
    // Numbers are places in the list. An empty text is in every value.
    explicit Literals(std::span<const std::string_view> texts);

    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    // The lowest number of a text in the value, kNone when it holds none.
    std::size_t First(std::string_view value) const;
    // The numbers of all texts in the value, ascending.
    std::vector<std::size_t> All(std::string_view value) const;

private:
    using State = std::uint32_t;
    static constexpr State kStart = 0;

    void AddText(std::string_view text, std::size_t number);
    void Link();

    std::array<std::uint8_t, 256> column_{};  // of a byte; 0 for those in no text
    std::size_t columns_ = 1;
    std::vector<State> next_{};                     // by state and column; complete after Link()
    std::vector<std::size_t> first_{};              // lowest number of a text that ends in a state
    std::vector<std::vector<std::size_t>> here_{};  // numbers of the texts that a state is
    std::vector<State> shorter_{};                  // the next ending of a state that is a text, kStart at the end
};

}  // namespace logdefs
