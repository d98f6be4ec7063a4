#include "visits/assignments.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "core/errnums.h"
#include "core/error.h"

namespace visits {
namespace {

constexpr std::size_t kRunBuffer = 4096;  // entries

[[noreturn]] void Fail(const char* what) {
    throw core::ErrorNumber(core::errnum::kStore, std::string("A temporary file cannot be ") + what + ": " +
                                                      std::strerror(errno) +
                                                      ". Visits were not built; nothing is lost.");
}

int OpenUnnamed(const std::string& folder) {
    const int fd = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd >= 0) return fd;
    std::string name = folder + "/visits-XXXXXX";
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0) ::unlink(name.c_str());
    return named;
}

bool ByLine(const Assignment& a, const Assignment& b) { return a.line < b.line; }

}  // namespace

Assignments::Assignments(std::string folder, std::size_t maxInMemory)
    : folder_(std::move(folder)), maxInMemory_(std::max<std::size_t>(maxInMemory, 1)) {}

Assignments::~Assignments() {
    if (fd_ >= 0) ::close(fd_);
}

void Assignments::Add(Assignment assignment) {
    if (pending_.size() >= maxInMemory_) Spill();
    pending_.push_back(assignment);
    ++count_;
}

void Assignments::Spill() {
    if (fd_ < 0 && (fd_ = OpenUnnamed(folder_)) < 0) Fail("made");
    std::ranges::sort(pending_, ByLine);
    const char* data = static_cast<const char*>(static_cast<const void*>(pending_.data()));
    std::size_t left = pending_.size() * sizeof(Assignment);
    off_t offset = static_cast<off_t>(written_ * static_cast<std::int64_t>(sizeof(Assignment)));
    while (left > 0) {
        const ssize_t done = ::pwrite(fd_, data, left, offset);
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0) Fail("written");
        data += done;
        left -= static_cast<std::size_t>(done);
        offset += done;
    }
    runs_.push_back({written_, static_cast<std::int64_t>(pending_.size()), {}, 0});
    written_ += static_cast<std::int64_t>(pending_.size());
    pending_.clear();
}

bool Assignments::Refill(Run& run) {
    const std::size_t count = static_cast<std::size_t>(std::min<std::int64_t>(run.left, kRunBuffer));
    run.buffer.resize(count);
    run.at = 0;
    if (count == 0) return false;
    char* into = static_cast<char*>(static_cast<void*>(run.buffer.data()));
    std::size_t room = count * sizeof(Assignment);
    off_t offset = static_cast<off_t>(run.offset * static_cast<std::int64_t>(sizeof(Assignment)));
    while (room > 0) {
        const ssize_t done = ::pread(fd_, into, room, offset);
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0) Fail("read");
        into += done;
        room -= static_cast<std::size_t>(done);
        offset += done;
    }
    run.offset += static_cast<std::int64_t>(count);
    run.left -= static_cast<std::int64_t>(count);
    return true;
}

void Assignments::StartReading() {
    reading_ = true;
    if (!runs_.empty() && !pending_.empty()) Spill();
    std::ranges::sort(pending_, ByLine);
    for (std::size_t i = 0; i < runs_.size(); ++i)
        if (Refill(runs_[i])) heap_.push_back(i);
    std::ranges::make_heap(heap_, std::greater<>(), [&](std::size_t i) { return runs_[i].buffer.front().line; });
}

bool Assignments::Next(Assignment& assignment) {
    if (!reading_) StartReading();
    if (runs_.empty()) {
        if (at_ == pending_.size()) return false;
        assignment = pending_[at_++];
        return true;
    }
    if (heap_.empty()) return false;
    const auto nextLine = [&](std::size_t i) { return runs_[i].buffer[runs_[i].at].line; };
    std::ranges::pop_heap(heap_, std::greater<>(), nextLine);
    Run& run = runs_[heap_.back()];
    assignment = run.buffer[run.at++];
    if (run.at < run.buffer.size() || Refill(run)) {
        std::ranges::push_heap(heap_, std::greater<>(), nextLine);
    } else {
        heap_.pop_back();
    }
    return true;
}

}  // namespace visits
