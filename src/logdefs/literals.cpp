#include "logdefs/literals.h"

#include <algorithm>

namespace logdefs {

// States are the beginnings of the texts; the first is that of nothing.
Literals::Literals(std::span<const std::string_view> texts) {
    for (const std::string_view text : texts)
        for (const char c : text)
            if (std::uint8_t& column = column_[static_cast<unsigned char>(c)]; column == 0 && columns_ < 256)
                column = static_cast<std::uint8_t>(columns_++);
    next_.assign(columns_, 0);
    first_.assign(1, kNone);
    here_.resize(1);
    for (std::size_t i = 0; i < texts.size(); ++i) AddText(texts[i], i);
    Link();
}

void Literals::AddText(std::string_view text, std::size_t number) {
    State state = 0;
    for (const char c : text) {
        const std::size_t at = state * columns_ + column_[static_cast<unsigned char>(c)];
        if (next_[at] == 0) {
            next_[at] = static_cast<State>(first_.size());
            first_.push_back(kNone);
            here_.emplace_back();
            next_.resize(next_.size() + columns_, 0);
        }
        state = next_[at];
    }
    first_[state] = std::min(first_[state], number);
    here_[state].push_back(number);
}

// What is missing of a state's ways leads where the longest ending of its text that begins a text leads. The shorter
// ones come first, so each finds its ending complete.
void Literals::Link() {
    std::vector<State> ending(first_.size(), kStart), order{kStart};
    shorter_.assign(first_.size(), kStart);
    for (std::size_t done = 0; done < order.size(); ++done) {
        const State state = order[done];
        const State end = ending[state];
        first_[state] = std::min(first_[state], first_[end]);
        if (state != kStart) shorter_[state] = here_[end].empty() ? shorter_[end] : end;
        for (std::size_t column = 0; column < columns_; ++column) {
            State& way = next_[state * columns_ + column];
            const State other = state == kStart ? kStart : next_[end * columns_ + column];
            if (way == 0) {
                way = other;
                continue;
            }
            ending[way] = other;
            order.push_back(way);
        }
    }
}

std::size_t Literals::First(std::string_view value) const {
    if (first_.empty()) return kNone;
    std::size_t lowest = first_[0];
    State state = 0;
    for (const char c : value) {
        state = next_[state * columns_ + column_[static_cast<unsigned char>(c)]];
        lowest = std::min(lowest, first_[state]);
    }
    return lowest;
}

std::vector<std::size_t> Literals::All(std::string_view value) const {
    std::vector<std::size_t> numbers;
    if (first_.empty()) return numbers;
    std::vector<bool> seen(first_.size(), false);
    const auto take = [&](State text) {
        if (seen[text]) return;
        seen[text] = true;
        numbers.insert(numbers.end(), here_[text].begin(), here_[text].end());
    };
    take(kStart);
    State state = kStart;
    for (const char c : value) {
        state = next_[state * columns_ + column_[static_cast<unsigned char>(c)]];
        for (State text = state; text != kStart; text = shorter_[text]) take(text);
    }
    std::ranges::sort(numbers);
    return numbers;
}

}  // namespace logdefs
