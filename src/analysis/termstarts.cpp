#include "analysis/termstarts.h"

#include <algorithm>

namespace analysis {
namespace {

bool HasJoint(std::string_view text) { return text.find(kTermStartJoint) != std::string_view::npos; }

// A half of the joint at an edge makes another one with the joint itself.
bool TermTells(std::string_view term) { return !HasJoint(term) && !term.ends_with(" -"); }

}  // namespace

bool TermStarts::StartTells(std::uint32_t start) {
    if (start >= starts_.size()) starts_.resize(std::max<std::size_t>(start + 1, starts_.size() * 2));
    if (starts_[start] == Tells::Unknown) {
        const std::string_view name = shown_.Name(start);
        // The text that stands for no page could be the name of one.
        const bool tells = !HasJoint(name) && !name.starts_with("- ") && name != kNoPages;
        starts_[start] = tells ? Tells::Yes : Tells::No;
    }
    return starts_[start] == Tells::Yes;
}

std::optional<TermStart> TermStarts::Of(std::string_view term, std::uint32_t& number, std::uint32_t start) {
    if (number == kUnknown) number = TermTells(term) ? terms_.FindOrAdd(term) : kByText;
    if (number == kByText || !StartTells(start)) return std::nullopt;
    return TermStart{number, start};
}

std::string TermStarts::Text(const TermStart& value) const {
    std::string text(terms_.Text(value.term));
    return text.append(kTermStartJoint).append(shown_.Name(value.start));
}

}  // namespace analysis
