#pragma once

#include <chrono>
#include <cstdint>
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

class NoProgress final : public core::Progress {
public:
    int PIStart(std::string_view, std::string_view, double) override { return 1; }
    bool PIStep(int, double, std::string_view) override { return false; }
    void PIDone(int) override {}
};

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
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
    const std::string& Folder() const { return folder_; }

private:
    std::string folder_;
    Quiet user_{};
    NoProgress progress_{};
    std::unique_ptr<shell::Session> session_{};
    std::unique_ptr<sitedb::Site> site_{};
};

// Writes a log of `lines` lines made by the generator; throws on any failure.
void WriteLog(const std::string& path, std::uint64_t lines, std::uint64_t seed);

std::int64_t PeakMemoryKiB();
[[noreturn]] void Fail(const std::string& what);

}  // namespace bench
