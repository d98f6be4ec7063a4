#include "logdefs/sample.h"

#include <algorithm>
#include <string_view>

#include "core/decompressreader.h"
#include "core/utf8.h"
#include "logdefs/format.h"

namespace logdefs {
namespace {

constexpr std::size_t kLongest = 1 << 16;
constexpr std::size_t kMostOfAll = 4 << 20;  // bytes of all lines
constexpr std::size_t kRoom = 1 << 16;

// Lines out of chunks; what is behind kLongest of one is dropped.
class Lines {
public:
    Lines(std::size_t most, std::vector<std::string>& lines) : most_(most), lines_(lines) {}
    bool Full() const { return lines_.size() >= most_ || taken_ >= kMostOfAll; }
    void Take(std::string_view chunk) {
        while (!chunk.empty() && !Full()) {
            const std::size_t end = chunk.find('\n');
            Append(chunk.substr(0, end));
            if (end == std::string_view::npos) return;
            Close();
            chunk.remove_prefix(end + 1);
        }
    }
    void Close() {
        std::string room;
        if (!Full() && !IsBlankLine(line_)) {
            lines_.emplace_back(core::ToUtf8(line_, room));
            taken_ += line_.size();
        }
        line_.clear();
    }

private:
    void Append(std::string_view text) { line_.append(text.substr(0, kLongest - std::min(kLongest, line_.size()))); }

    std::size_t most_;
    std::vector<std::string>& lines_;
    std::string line_{};
    std::size_t taken_ = 0;
};

}  // namespace

core::Result ReadLogSample(const std::string& path, std::size_t most, LogSample& sample) {
    sample = {.file = path};
    core::UnpackReader file;
    if (core::Result opened = file.Open(path); !opened) return opened;
    Lines lines(most, sample.lines);
    std::vector<char> room(kRoom);
    while (!lines.Full()) {
        const std::size_t got = file.Read(room.data(), room.size());
        if (got == 0) break;
        lines.Take({room.data(), got});
    }
    lines.Close();
    return sample.lines.empty() ? file.Failed() : core::Result{};
}

}  // namespace logdefs
