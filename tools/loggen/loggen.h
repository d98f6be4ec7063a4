// A generator of realistic logs in the combined format: the traffic of a small invented shop, in time order. For the
// demo and the benchmarks. Same options, same bytes, on every machine; memory depends on the visits under way, not on
// the lines.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace loggen {

struct Options {
    std::uint64_t lines = 0;        // stop after so many; 0: no limit but `days`
    int days = 0;                   // days covered; 0: as many as `lines` needs, 28 when that is 0 too
    std::uint64_t linesPerDay = 0;  // about; 0: chosen from `lines` and `days`
    std::uint64_t seed = 1;
    std::string start = "2026-09-07";  // first day, YYYY-MM-DD
    bool brokenLines = true;           // a few truncated, binary and empty requests among the others
};

class Generator {
public:
    // Throws std::invalid_argument when `start` is no date of the years 1970 to 9999.
    explicit Generator(const Options& options);
    ~Generator();
    Generator(const Generator&) = delete;
    Generator& operator=(const Generator&) = delete;

    // The next line, without its line feed. False at the end.
    bool Next(std::string& line);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace loggen
