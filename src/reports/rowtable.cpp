#include "reports/rowtable.h"

#include <optional>
#include <string>

#include "core/text.h"

namespace reports {
namespace {

// The text itself unless it has to be rewritten into `room`.
std::string_view Key(std::string_view cell, std::string& room) {
    if (cell.find('|') == std::string_view::npos) return cell;
    return room = core::fReplace(cell, "|", "-*-");
}

}  // namespace

void RowTable::PutST(std::string_view cell, std::span<const std::int32_t> indexes) {
    std::string room;
    if (cells_.FindOrAdd(Key(cell, room)) == parts_.size()) parts_.push_back({all_.size(), indexes.size()});
    all_.insert(all_.end(), indexes.begin(), indexes.end());
}

std::span<const std::int32_t> RowTable::GetSTs4Row(std::string_view cell) const {
    std::string room;
    const std::optional<std::uint32_t> at = cells_.Find(Key(cell, room));
    if (!at) return {};
    return std::span(all_).subspan(parts_[*at].start, parts_[*at].count);
}

}  // namespace reports
