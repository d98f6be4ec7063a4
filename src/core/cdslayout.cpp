#include "core/cdslayout.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/errnums.h"
#include "core/error.h"
#include "core/text.h"
#include "core/utf8.h"

namespace core {
namespace {

constexpr char32_t kFirstCode = 33;
constexpr char32_t kCodes = 254 - kFirstCode + 1;
constexpr std::size_t kSubstituteLetters = 2;

// The last letters of a text, as the number of bytes they take; nothing when there are fewer.
std::optional<std::size_t> TailBytes(std::string_view text, std::size_t letters) {
    std::size_t end = text.size();
    for (; letters > 0; --letters) {
        if (end == 0) return std::nullopt;
        end -= LetterBefore(text, end).length;
    }
    return text.size() - end;
}

// The substitutes that are still possible, in the order of their codes, as numbers
// with one place for each letter.
class FreeTexts {
public:
    FreeTexts(std::string_view text, int length, std::string_view excluded) : length_(length) {
        for (int i = 0; i < length; ++i) end_ *= kCodes;
        for (std::size_t at = 0; at < excluded.size();) {
            const Letter letter = LetterAt(excluded, at);
            excluded_.push_back(letter.code);
            at += letter.length;
        }
        Collect(text);
    }

    // The next free text, or error 9910.
    std::string Next() {
        for (; next_ < end_; ++next_) {
            while (at_ < taken_.size() && taken_[at_] < next_) ++at_;
            if (at_ < taken_.size() && taken_[at_] == next_) continue;
            if (std::optional<std::string> text = TextOf(next_)) {
                ++next_;
                return *std::move(text);
            }
        }
        throw ErrorNumber(errnum::kNoFreeSubstitute, "ChooseSubstitute");
    }

private:
    // Every run of `length_` letters of the text, as numbers, sorted.
    void Collect(std::string_view text) {
        std::uint64_t number = 0;
        int run = 0;
        for (std::size_t at = 0; at < text.size();) {
            const Letter letter = LetterAt(text, at);
            at += letter.length;
            if (letter.code < kFirstCode || letter.code - kFirstCode >= kCodes) {
                run = 0;
                continue;
            }
            number = (number * kCodes + (letter.code - kFirstCode)) % end_;
            if (++run >= length_) taken_.push_back(number);
        }
        std::ranges::sort(taken_);
    }

    std::optional<std::string> TextOf(std::uint64_t number) const {
        std::string text;
        for (std::uint64_t place = end_ / kCodes; place > 0; place /= kCodes) {
            const auto code = static_cast<char32_t>(kFirstCode + number / place % kCodes);
            if (std::ranges::find(excluded_, code) != excluded_.end()) return std::nullopt;
            AppendLetter(text, code);
        }
        return text;
    }

    int length_;
    std::uint64_t end_ = 1, next_ = 0;
    std::vector<char32_t> excluded_{};
    std::vector<std::uint64_t> taken_{};
    std::size_t at_ = 0;
};

std::string_view FirstLetter(std::string_view text) { return text.substr(0, LetterAt(text, 0).length); }

}  // namespace

CDSLayout::CDSLayout(const CDSForm& form) : delim(form.delim), marker(form.marker.empty() ? kTrailer : form.marker) {
    if (form.exclusion == kNoExclusion) {
        if (delim.empty()) delim = "|";
        return;
    }
    if (delim.empty()) throw ErrorNumber(errnum::kEmptyBraceDelim, "CDSSplit");
    open = form.exclusion.empty() ? "" : FirstLetter(form.exclusion);
    close = form.exclusion.substr(open.size());
    const bool isPair =
        !open.empty() && !close.empty() && FirstLetter(close) == close && open != close && open != " " && close != " ";
    if (isPair) return;
    open = "{";
    close = "}";
}

CDSSubstitutes TakeTail(std::string_view& list, const CDSLayout& layout) {
    const std::size_t count = layout.HasBraces() ? 2 : 1;
    const std::string mark =
        layout.HasBraces() ? std::string(layout.open).append(layout.open) : std::string(layout.marker);
    const auto bytes = TailBytes(list, count * kSubstituteLetters);
    if (!bytes || !list.substr(0, list.size() - *bytes).ends_with(mark)) return {};
    const std::size_t kept = list.size() - *bytes - mark.size();
    if (layout.HasBraces() && kept == 0) return {};
    const std::string_view both = list.substr(list.size() - *bytes);
    const std::size_t first = *bytes - *TailBytes(both, (count - 1) * kSubstituteLetters);
    list = list.substr(0, kept);
    return {std::string(both.substr(0, first)), std::string(both.substr(first))};
}

std::string TailText(const CDSSubstitutes& substitutes, const CDSLayout& layout) {
    if (!substitutes.Any()) return {};
    std::string text(layout.HasBraces() ? layout.open : layout.marker);
    return text.append(layout.open).append(substitutes.first).append(substitutes.second);
}

bool NeedsSubstitutes(std::string_view item, const CDSLayout& layout) {
    if (!layout.HasBraces()) return item.find(layout.delim) != std::string_view::npos;
    return item.find(layout.open) != std::string_view::npos || item.find(layout.close) != std::string_view::npos;
}

std::string Protected(std::string_view item, const CDSSubstitutes& substitutes, const CDSLayout& layout) {
    if (!substitutes.Any()) return std::string(item);
    if (!layout.HasBraces()) return fReplace(item, layout.delim, substitutes.first);
    return fReplace(fReplace(item, layout.open, substitutes.first), layout.close, substitutes.second);
}

std::string Restored(std::string_view item, const CDSSubstitutes& substitutes, const CDSLayout& layout) {
    if (!substitutes.Any()) return std::string(item);
    if (!layout.HasBraces()) return fReplace(item, substitutes.first, layout.delim);
    return fReplace(fReplace(item, substitutes.first, layout.open), substitutes.second, layout.close);
}

bool ComesBack(std::string_view item, const CDSSubstitutes& substitutes, const CDSLayout& layout) {
    const std::string written = Protected(item, substitutes, layout);
    return !NeedsSubstitutes(written, layout) && Restored(written, substitutes, layout) == item;
}

CDSSubstitutes ChooseSubstitutes(std::string_view joined, const std::vector<std::string_view>& items,
                                 const CDSLayout& layout) {
    const auto allComeBack = [&](const CDSSubstitutes& chosen) {
        return std::ranges::all_of(items, [&](std::string_view item) { return ComesBack(item, chosen, layout); });
    };
    const std::string excluded =
        layout.HasBraces() ? std::string(layout.open).append(layout.close) : std::string(FirstLetter(layout.delim));
    FreeTexts firsts(joined, kSubstituteLetters, excluded);
    for (;;) {
        CDSSubstitutes chosen{firsts.Next(), {}};
        if (!layout.HasBraces()) {
            if (allComeBack(chosen)) return chosen;
            continue;
        }
        // "a!" and "!!" for a brace would read back as a brace and "!" after "a": the next pair is tried.
        FreeTexts seconds(std::string(joined).append(chosen.first), kSubstituteLetters, excluded);
        constexpr int kTries = 3;
        for (int i = 0; i < kTries; ++i) {
            chosen.second = seconds.Next();
            if (allComeBack(chosen)) return chosen;
        }
    }
}

CDSReader::CDSReader(std::string_view list, const CDSLayout& layout, bool readTail) : layout_(layout), rest_(list) {
    if (readTail) substitutes_ = TakeTail(rest_, layout_);
}

std::optional<std::string> CDSReader::Next() {
    const std::optional<std::string_view> raw = NextRaw();
    if (!raw) return std::nullopt;
    return Restored(*raw, substitutes_, layout_);
}

void CDSReader::Skip() { NextRaw(); }

std::optional<std::string_view> CDSReader::NextRaw() {
    if (done_) return std::nullopt;
    return layout_.HasBraces() ? NextBraced() : NextPlain();
}

std::optional<std::string_view> CDSReader::NextPlain() {
    const std::size_t at = rest_.find(layout_.delim);
    const std::string_view item = rest_.substr(0, at);
    done_ = at == std::string_view::npos;
    rest_.remove_prefix(done_ ? rest_.size() : at + layout_.delim.size());
    return item;
}

std::optional<std::string_view> CDSReader::NextBraced() {
    const std::string_view trimmed = fTrimLeft(rest_);
    if (!trimmed.starts_with(layout_.open)) return NextPlain();  // a raw item, blanks kept
    // An unterminated brace runs to the end of the list.
    const std::string_view inside = trimmed.substr(layout_.open.size());
    const std::size_t end = inside.find(layout_.close);
    const std::string_view item = inside.substr(0, end);
    rest_ = end == std::string_view::npos ? std::string_view() : fTrimLeft(inside.substr(end + layout_.close.size()));
    // Whatever stands between a closing brace and the next delimiter ends the list there.
    done_ = !rest_.starts_with(layout_.delim);
    if (!done_) rest_.remove_prefix(layout_.delim.size());
    return item;
}

std::string ChooseSubstitute(std::string_view text, int length, std::string_view excluded) {
    return FreeTexts(text, length, excluded).Next();
}

}  // namespace core
