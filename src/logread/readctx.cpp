#include "logread/readctx.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"

namespace logread {

void CountedList::Add(std::string_view text, std::int64_t count) {
    const auto at = index_.find(text);
    if (at != index_.end()) {
        counts_[at->second] += count;
        return;
    }
    index_.emplace(text, texts_.size());
    texts_.emplace_back(text);
    counts_.push_back(count);
}

void ProblemList::LogFileProblemAdd(std::string_view file, std::string_view text) {
    const auto [at, isNew] = index_.try_emplace(std::string(file), files_.size());
    if (isNew) files_.push_back({std::string(file), {}});
    std::vector<std::string>& texts = files_[at->second].texts;
    if (std::ranges::find(texts, text) == texts.end()) texts.emplace_back(text);
}

ProgressTexts LogReadProgressText(const LogReadCtx& ctx, bool isShort) {
    const FileCounters& file = ctx.File;
    const std::int64_t filtered = ctx.Filters.main.HitCount;
    const std::int64_t bots = ctx.Filters.robots.HitCount;
    const std::int64_t components = ctx.Filters.components.HitCount;
    const std::int64_t skipped = filtered + bots + components + file.LinesExist;
    const std::int64_t total = file.LinesAdded + skipped;
    const std::string percent = total == 0 ? "None" : std::to_string(skipped * 100 / total) + "%";
    const auto count = [](std::int64_t value) { return core::CountText(static_cast<double>(value)); };
    ProgressTexts texts;
    texts.summary = isShort ? percent + " skipped" : count(skipped) + " lines (" + percent + " of TTL) skipped";
    texts.details = count(file.LinesExist) + " exist." + count(filtered) + " filtered." + count(bots) + " bots." +
                    count(components) + " components.";
    return texts;
}

}  // namespace logread
