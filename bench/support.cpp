#include "bench/support.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "tools/loggen/loggen.h"

namespace bench {

core::Answer Quiet::Ask(const core::Question& question) {
    const bool message = question.cancelButton == -99;
    if (!message) std::fprintf(stderr, "%s\n", question.message.c_str());
    return {};
}

BenchSite::BenchSite(const std::string& shared, const sitedb::SiteOptions& options) {
    const char* temp = std::getenv("TMPDIR");
    folder_ = std::string(temp != nullptr ? temp : "/tmp") + "/corvane-bench-XXXXXX";
    if (::mkdtemp(folder_.data()) == nullptr) Fail("no temporary folder: " + folder_);
    session_ = std::make_unique<shell::Session>(shell::Places{folder_, shared}, user_, progress_);
    if (const core::Result ready = session_->Prepare(); !ready) Fail(ready.error);
    if (const auto made = session_->Sites().Site_Create(options); !made.result) Fail(made.result.error);
    shell::Session::Opened opened = session_->Open("");
    if (!opened.site) Fail(opened.failure.error);
    site_ = std::move(opened.site);
}

BenchSite::~BenchSite() {
    site_.reset();
    if (const core::Result gone = core::RemoveDir(folder_); !gone) std::fprintf(stderr, "%s\n", gone.error.c_str());
}

void WriteLog(const std::string& path, std::uint64_t lines, std::uint64_t seed) {
    loggen::Options options;
    options.lines = lines;
    options.seed = seed;
    loggen::Generator generator(options);
    std::ofstream file(path, std::ios::binary);
    for (std::string line; generator.Next(line);) file << line << '\n';
    file.close();
    if (!file) Fail("cannot write " + path);
}

std::int64_t PeakMemoryKiB() {
    rusage usage{};
    return ::getrusage(RUSAGE_SELF, &usage) == 0 ? usage.ru_maxrss : -1;
}

void Fail(const std::string& what) {
    std::fprintf(stderr, "bench: %s\n", what.c_str());
    std::exit(1);
}

}  // namespace bench
