#include "logread/linereader.h"

#include <algorithm>
#include <cstring>

#include "logdefs/format.h"

namespace logread {
namespace {

constexpr std::size_t kShownStart = 1000;

}  // namespace

LineReader::LineReader(core::ChunkSource& file, std::size_t chunk)
    : file_(file), buffer_(kMaxLine + 2 + std::max<std::size_t>(chunk, 1)), chunk_(std::max<std::size_t>(chunk, 1)) {}

bool LineReader::Fill() {
    if (begin_ > 0 && end_ + chunk_ > buffer_.size()) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    const std::size_t got = file_.Read(buffer_.data() + end_, std::min(chunk_, buffer_.size() - end_));
    end_ += got;
    return got > 0;
}

// What is held of a line that is too long: only its start and whether it is blank are kept.
void LineReader::Discard() {
    const std::string_view held(buffer_.data() + begin_, end_ - begin_);
    if (!tooLong_) start_ = held.substr(0, kShownStart);
    tooLong_ = true;
    blankSoFar_ = blankSoFar_ && logdefs::IsBlankLine(held);
    position_ += static_cast<std::int64_t>(held.size());
    begin_ = end_ = scanned_ = 0;
}

bool LineReader::Emit(RawLine& line, std::size_t length, std::size_t consumed) {
    const std::string_view text(buffer_.data() + begin_, length);
    line.tooLong = tooLong_ || length > kMaxLine;
    line.blank = line.tooLong && blankSoFar_ && logdefs::IsBlankLine(text);
    line.text = tooLong_ ? std::string_view(start_) : text.substr(0, line.tooLong ? kShownStart : length);
    begin_ += consumed;
    position_ += static_cast<std::int64_t>(consumed);
    scanned_ = 0;
    tooLong_ = false;
    blankSoFar_ = true;
    return true;
}

bool LineReader::Next(RawLine& line) {
    for (;;) {
        const char* from = buffer_.data() + begin_ + scanned_;
        const std::size_t unseen = end_ - begin_ - scanned_;
        if (const void* feed = unseen > 0 ? std::memchr(from, '\n', unseen) : nullptr) {
            const auto length = static_cast<std::size_t>(static_cast<const char*>(feed) - (buffer_.data() + begin_));
            return Emit(line, length, length + 1);
        }
        scanned_ = end_ - begin_;
        if (scanned_ > kMaxLine) Discard();
        if (Fill()) continue;
        if (Failed() || (scanned_ == 0 && !tooLong_) || file_.Grown()) return false;
        return Emit(line, scanned_, scanned_);
    }
}

}  // namespace logread
