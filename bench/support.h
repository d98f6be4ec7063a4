#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>
#include <memory>
#include <string>

#include "core/ports.h"
#include "shell/session.h"

// What the measuring programs share: a silent host, a throwaway data home, the peak of memory.
namespace bench {

class Quiet final : public core::User {
public:
    core::Answer Ask(const core::Question& question) override;
};

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// The same of this process alone: on a busy machine ratios keep their meaning.
class CpuWatch {
public:
    double Seconds() const { return static_cast<double>(std::clock() - start_) / CLOCKS_PER_SEC; }

private:
    std::clock_t start_ = std::clock();
};

// Shows nothing; tells how long a window would have stood still: the longest time without a call.
class SilentProgress final : public core::Progress {
public:
    int PIStart(std::string_view caption, std::string_view, double) override {
        Heard();
        caption_ = caption;
        return 1;
    }
    bool PIStep(int, double, std::string_view) override { return Heard(); }
    void PIDone(int) override { Heard(); }
    bool Beat() override { return Heard(); }

    double LongestSilence() const { return longest_; }
    const std::string& SilentIn() const { return silentIn_; }  // caption of the report that was open then
    void Forget() { *this = {}; }

private:
    bool Heard() {
        const double silence = last_.Seconds();
        if (silence > longest_) {
            longest_ = silence;
            silentIn_ = caption_;
        }
        last_ = {};
        return false;
    }

    Stopwatch last_{};
    double longest_ = 0;
    std::string caption_{}, silentIn_{};
};

// A data home in a new folder below $TMPDIR, removed again, with one site.
class BenchSite {
public:
    BenchSite(const std::string& shared, const sitedb::SiteOptions& options);
    ~BenchSite();
    BenchSite(const BenchSite&) = delete;
    BenchSite& operator=(const BenchSite&) = delete;

    shell::Session& Session() { return *session_; }
    sitedb::Site& Site() { return *site_; }
    SilentProgress& Progress() { return progress_; }
    const std::string& Folder() const { return folder_; }

private:
    std::string folder_;
    Quiet user_{};
    SilentProgress progress_{};
    std::unique_ptr<shell::Session> session_{};
    std::unique_ptr<sitedb::Site> site_{};
};

// Writes a log of `lines` lines made by the generator; throws on any failure.
void WriteLog(const std::string& path, std::uint64_t lines, std::uint64_t seed);

std::int64_t PeakMemoryKiB();
[[noreturn]] void Fail(const std::string& what);

}  // namespace bench
