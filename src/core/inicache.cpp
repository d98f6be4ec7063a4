#include "core/inicache.h"

#include <ctime>
#include <functional>
#include <string_view>
#include <utility>

#include "core/files.h"

namespace core {

namespace {

constexpr std::int64_t kNano = 1'000'000'000;
// File times step by some milliseconds: a change within the step of the last one keeps the time.
constexpr std::int64_t kTimeStep = 20'000'000;

std::size_t HashOf(std::string_view text) { return std::hash<std::string_view>{}(text); }

}  // namespace

IniCache::Stamp IniCache::StampOf(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return {};
    return {info.st_dev, info.st_ino, info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

bool IniCache::Settled(const Stamp& stamp) {
    struct timespec now {};
    if (stamp.size < 0 || ::clock_gettime(CLOCK_REALTIME, &now) != 0) return stamp.size < 0;
    const std::int64_t age = (now.tv_sec - stamp.seconds) * kNano + (now.tv_nsec - stamp.nanoseconds);
    return age > kTimeStep;
}

IniCache::Held IniCache::Read(const std::string& path) {
    constexpr int kTries = 3;
    Held held;
    for (int n = 0; n < kTries; ++n) {
        held.stamp = StampOf(path);
        held.settled = Settled(held.stamp);
        const ReadText read = ReadFile(path);
        held.file = IniFile::From(read);
        held.hash = HashOf(read.text);
        if (StampOf(path) == held.stamp) break;
        held.settled = false;
    }
    return held;
}

bool IniCache::Same(Held& held, const std::string& path) {
    const Stamp stamp = StampOf(path);
    if (!(stamp == held.stamp)) return false;
    if (held.settled) return true;
    const bool settled = Settled(stamp);
    if (HashOf(ReadFile(path).text) != held.hash) return false;
    held.settled = settled;
    return true;
}

IniFile& IniCache::Open(const std::string& path) {
    if (const auto draft = drafts_.find(path); draft != drafts_.end()) return draft->second.levels.back();
    const auto found = files_.find(path);
    // A file that could not be read may have got other permissions, which no stamp shows.
    if (found != files_.end() && found->second.file.State() != IniRead::Unreadable && Same(found->second, path))
        return found->second.file;
    return (files_[path] = Read(path)).file;
}

bool IniCache::Save(const std::string& path) {
    if (const auto draft = drafts_.find(path); draft != drafts_.end())
        return draft->second.levels.back().State() != IniRead::Unreadable;
    const auto found = files_.find(path);
    if (found == files_.end()) return false;
    Held& held = found->second;
    const std::string text = held.file.Text();
    if (path.empty() || held.file.State() == IniRead::Unreadable || !WriteWhole(path, text)) {
        files_.erase(found);
        return false;
    }
    held.stamp = StampOf(path);
    held.settled = false;  // someone may have been at the file between our renaming and our look at it
    held.hash = HashOf(text);
    return true;
}

void IniCache::BeginDraft(const std::string& path) {
    Draft& draft = drafts_[path];
    if (draft.levels.empty()) draft.begun = Read(path);
    draft.levels.push_back(draft.levels.empty() ? draft.begun.file : draft.levels.back());
}

IniCache::DraftEnd IniCache::KeepDraft(const std::string& path, bool overOthers) {
    const auto found = drafts_.find(path);
    if (found == drafts_.end()) return DraftEnd::Failed;
    std::vector<IniFile>& levels = found->second.levels;
    if (levels.size() > 1) {
        levels[levels.size() - 2] = std::move(levels.back());
        levels.pop_back();
        return DraftEnd::Kept;
    }
    const Held& begun = found->second.begun;
    const std::string text = levels.back().Text();
    if (text != begun.file.Text()) {
        if (!overOthers && Read(path).hash != begun.hash) return DraftEnd::ChangedElsewhere;
        if (levels.back().State() == IniRead::Unreadable || !WriteWhole(path, text)) return DraftEnd::Failed;
    }
    DropDraft(path);
    return DraftEnd::Kept;
}

void IniCache::DropDraft(const std::string& path) {
    const auto found = drafts_.find(path);
    if (found == drafts_.end()) return;
    found->second.levels.pop_back();
    if (found->second.levels.empty()) drafts_.erase(found);
    Drop(path);
}

bool IniCache::DraftDiffers(const std::string& path) const {
    const auto found = drafts_.find(path);
    if (found == drafts_.end()) return false;
    const std::vector<IniFile>& levels = found->second.levels;
    const IniFile& before = levels.size() > 1 ? levels[levels.size() - 2] : found->second.begun.file;
    return levels.back().Text() != before.Text();
}

}  // namespace core
