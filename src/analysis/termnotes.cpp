#include "analysis/termnotes.h"

namespace analysis {

TermNote& TermNotes::Of(std::string_view term) {
    const std::uint32_t at = terms_.FindOrAdd(term);
    if (at < notes_.size()) return notes_[at];
    bytes_ += term.size();
    if (notes_.size() < kMost && bytes_ <= kMostBytes) return notes_.emplace_back();
    terms_ = {};
    notes_.clear();
    terms_.FindOrAdd(term);
    bytes_ = term.size();
    return notes_.emplace_back();
}

void TermNotes::Grew(const TermNote& note) {
    for (const std::string& value : note.cut) bytes_ += sizeof value + value.size() + 3 * sizeof(std::uint32_t);
}

}  // namespace analysis
