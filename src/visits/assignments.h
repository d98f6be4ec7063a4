#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace visits {

// A line and the visit it belongs to; -1 for a line over the limit, which goes.
struct Assignment {
    std::int32_t line = 0;
    std::int32_t visit = 0;
};

// Takes assignments in any order and gives them back by line number, so that the table is written in the order of its
// rows. What does not fit the memory allowed waits in sorted runs of an unnamed file.
class Assignments {
public:
    // `folder` for the file; made on first need.
    explicit Assignments(std::string folder, std::size_t maxInMemory = 1U << 19U);
    ~Assignments();
    Assignments(const Assignments&) = delete;
    Assignments& operator=(const Assignments&) = delete;

    void Add(Assignment assignment);
    std::int64_t Count() const { return count_; }

    // After the last Add: the next one by line number.
    bool Next(Assignment& assignment);

private:
    struct Run {
        std::int64_t offset = 0;  // in entries, of what is not yet read
        std::int64_t left = 0;
        std::vector<Assignment> buffer{};
        std::size_t at = 0;
    };
    void Spill();
    void StartReading();
    bool Refill(Run& run);

    std::string folder_;
    std::size_t maxInMemory_;
    std::vector<Assignment> pending_{};
    std::vector<Run> runs_{};
    std::vector<std::size_t> heap_{};  // runs by their next line
    std::int64_t count_ = 0;
    std::int64_t written_ = 0;
    int fd_ = -1;
    bool reading_ = false;
    std::size_t at_ = 0;
};

}  // namespace visits
