#include "reports/rowtable.h"

#include "core/text.h"

namespace reports {
namespace {

std::string Key(std::string_view cell) { return core::fReplace(cell, "|", "-*-"); }

}  // namespace

void RowTable::PutST(std::string_view cell, std::span<const std::int32_t> indexes) {
    parts_.try_emplace(Key(cell), Part{all_.size(), indexes.size()});
    all_.insert(all_.end(), indexes.begin(), indexes.end());
}

std::span<const std::int32_t> RowTable::GetSTs4Row(std::string_view cell) const {
    const auto at = parts_.find(Key(cell));
    if (at == parts_.end()) return {};
    return std::span(all_).subspan(at->second.start, at->second.count);
}

}  // namespace reports
