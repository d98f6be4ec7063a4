#include "core/inidraft.h"

#include <algorithm>

#include "core/inistoreimpl.h"

namespace core {

IniDraft::IniDraft(IniStore& ini, std::vector<std::string> files) : ini_(ini), files_(std::move(files)) {
    for (const std::string& file : files_) ini_.impl_->cache.BeginDraft(file);
}

IniDraft::~IniDraft() {
    for (const std::string& file : files_) ini_.impl_->cache.DropDraft(file);
}

bool IniDraft::Changed() const {
    return std::ranges::any_of(files_, [&](const std::string& file) { return ini_.impl_->cache.DraftDiffers(file); });
}

IniDraft::Outcome IniDraft::Save(bool overOthers) {
    while (!files_.empty()) {
        const auto end = ini_.impl_->cache.KeepDraft(files_.back(), overOthers);
        if (end == IniCache::DraftEnd::Failed) return {Saved::Failed, files_.back()};
        if (end == IniCache::DraftEnd::ChangedElsewhere) return {Saved::ChangedElsewhere, files_.back()};
        files_.pop_back();
    }
    return {};
}

}  // namespace core
