// The engine with the knobs that gates turn and people don't: chunk and batch sizes, a stop at the n-th progress step,
// another clock, many damaged sites in one process. Takes the options of the command line program where it has them.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "adddata/adddata.h"
#include "analysis/run.h"
#include "core/clock.h"
#include "core/env.h"
#include "core/errlog.h"
#include "core/error.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "logread/readfiles.h"
#include "sitedb/build.h"
#include "sitedb/sites.h"

namespace {

constexpr int kFailed = 1;
constexpr int kStopped = 3;
constexpr double kClockStep = 0.3;  // seconds from one look at the clock to the next: runs are alike on any machine

class Answers final : public core::User {
public:
    core::Answer Ask(const core::Question& question) override {
        return {.button = 1, .cancelButton = question.cancelButton};
    }
};

class StopAt final : public core::Progress {
public:
    explicit StopAt(long step) : step_(step) {}
    int PIStart(std::string_view, std::string_view, double) override { return 1; }
    bool PIStep(int, double, std::string_view) override { return ++steps_ == step_; }
    void PIDone(int) override {}

private:
    long step_;
    long steps_ = 0;
};

class SteppingClock final : public core::Clock {
public:
    explicit SteppingClock(double now) : now_(now) {}
    double Now() const override { return now_ > 0 ? now_ : core::SystemClock().Now(); }
    double Seconds() const override { return seconds_ += kClockStep; }

private:
    double now_;
    mutable double seconds_ = 0;
};

struct Arguments {
    std::string home{}, shared{}, site{}, format = "apache-combined", log{};
    std::size_t chunk = logread::kReadChunk;
    std::int64_t batch = 16384;
    long stopAt = -1;
    double clock = 0;
    bool keepExtra = true;
    std::vector<std::string> words{};  // command and files
};

Arguments ReadArguments(const std::vector<std::string>& given) {
    Arguments out;
    const std::vector<std::pair<std::string_view, std::function<void(const std::string&)>>> options{
        {"--home", [&](const std::string& value) { out.home = value; }},
        {"--shared", [&](const std::string& value) { out.shared = value; }},
        {"--site", [&](const std::string& value) { out.site = value; }},
        {"--format", [&](const std::string& value) { out.format = value; }},
        {"--log", [&](const std::string& value) { out.log = value; }},
        {"--chunk", [&](const std::string& value) { out.chunk = std::stoul(value); }},
        {"--batch", [&](const std::string& value) { out.batch = std::stol(value); }},
        {"--stop-at", [&](const std::string& value) { out.stopAt = std::stol(value); }},
        {"--clock", [&](const std::string& value) { out.clock = std::stod(value); }},
        {"--keep-extra", [&](const std::string& value) { out.keepExtra = value == "yes"; }},
    };
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (!given[i].starts_with("--")) {
            out.words.push_back(given[i]);
            continue;
        }
        bool known = false;
        for (const auto& [name, take] : options) {
            if (name != given[i] || i + 1 == given.size()) continue;
            take(given[++i]);
            known = true;
            break;
        }
        if (!known) throw std::invalid_argument("unknown option, or no value: " + given[i]);
    }
    return out;
}

// One data home and what stands around it.
class Program {
public:
    Program(const Arguments& arguments, std::string home)
        : arguments_(arguments),
          paths_(std::move(home), arguments.shared),
          clock_(arguments.clock),
          progress_(arguments.stopAt),
          ini_(user_),
          events_(clock_, paths_.Home() + "/errors.log"),
          env_{ini_, user_, progress_, events_, clock_},
          sites_(env_, paths_) {}

    int Create(const std::string& name);
    int Add(const std::vector<std::string>& files);
    int Resume();
    int Show();
    int Terms();
    int Compact();

private:
    adddata::ProgramFiles Files() const {
        const std::string param = paths_.Home() + "/param/";
        return {param + "logfmts.ini", param + "lastinstvals.ini", param + "fltrbots.ini"};
    }
    std::unique_ptr<sitedb::Site> Open();
    int Told(const visits::VisitsOutcome& outcome);

    const Arguments& arguments_;
    core::Paths paths_;
    Answers user_{};
    SteppingClock clock_;
    StopAt progress_;
    core::IniStore ini_;
    core::EventLog events_;
    core::Env env_;
    sitedb::Sites sites_;
};

int Fail(std::string_view text) {
    std::cerr << text << '\n';
    return kFailed;
}

std::unique_ptr<sitedb::Site> Program::Open() {
    const std::string folder = sites_.CurrentFolder();
    if (folder.empty()) return nullptr;
    sitedb::SetSectionFiles(ini_, paths_, sitedb::Site_Paths(folder));
    sitedb::OpenFailure failure;
    auto site = sitedb::Site::Site_Open(env_, folder, failure);
    if (!site) Fail(failure.error);
    return site;
}

int Program::Create(const std::string& name) {
    for (const char* folder : {"/param", "/sites"})
        if (const core::Result made = core::MakeDir(paths_.Home() + folder); !made) return Fail(made.error);
    for (const char* file : {"logfmts.ini", "lastinstvals.ini", "fltrbots.ini"}) {
        const core::Result copied =
            core::FileCopy(paths_.Shared() + "/program/" + file, paths_.Home() + "/param/" + std::string(file));
        if (!copied) return Fail(copied.error);
    }
    const auto created = sites_.Site_Create({.name = name, .LastKeepVal = arguments_.keepExtra});
    return created.result ? 0 : Fail(created.result.error);
}

int Program::Told(const visits::VisitsOutcome& outcome) {
    if (outcome.cancelled) return kStopped;
    return outcome.done ? 0 : Fail(outcome.error.empty() ? "The visits were not built." : outcome.error);
}

int Program::Add(const std::vector<std::string>& files) {
    const auto site = Open();
    if (!site) return kFailed;
    logread::ReadRequest request;
    for (const std::string& file : files) request.files.push_back({file, ""});
    request.formatFile = Files().formats;
    request.defaultFormat = arguments_.format;
    request.filters = logdefs::FltrLoadAddFilters(ini_, adddata::FilterFilesOf(Files(), site->Paths()), {});
    request.NoPromptInvalid = request.NoPromptOverlap = true;
    request.chunk = arguments_.chunk;
    request.batchLines = arguments_.batch;
    const logread::ReadOutcome read = logread::RawLog_AddData_ReadLogFiles(env_, *site, std::move(request));
    for (const std::string& error : read.errors) Fail(error);
    if (!read.errors.empty()) return kFailed;
    if (!read.ok) return kStopped;  // and the visits wait
    return Told(adddata::ResumeAdd(env_, *site, Files()));
}

int Program::Resume() {
    const auto site = Open();
    return site ? Told(adddata::ResumeAdd(env_, *site, Files())) : kFailed;
}

int Program::Show() {
    const auto site = Open();
    if (!site) return kFailed;
    const sitedb::SiteFacts facts = sitedb::ReadSiteFacts(*site);
    std::cout << "lines " << facts.lines << ", visits " << facts.visits << ", waiting " << site->WaitingLines() << '\n';
    return 0;
}

int Program::Terms() {
    const auto site = Open();
    if (!site) return kFailed;
    const auto outcome = analysis::CVNA_VisitsAnalyse(env_, *site, analysis::Analyse_Request(ini_, 1));
    std::cout << (outcome.results ? "analysed\n" : "nothing to analyse\n");
    return 0;
}

int Program::Compact() {
    const auto site = Open();
    if (!site) return kFailed;
    return sitedb::BLDTBL_CompactDB(site->Db()) ? 0 : Fail("The database was not compacted.");
}

// What an expected failure or an impossible state ends in: a message, never a signal.
int Guarded(const std::function<int()>& action) {
    try {
        return action();
    } catch (const core::ErrorNumber& error) {
        return Fail(error.what());
    } catch (const std::bad_alloc&) {
        return Fail("out of memory");
    }
}

// Homes come by line on standard input, each is seen through the steps; before and behind each step stands a line, so
// that whoever reads them knows where a crash or a hang happened.
int Examine(const Arguments& arguments, bool writing) {
    std::string home;
    while (std::getline(std::cin, home)) {
        const std::vector<std::pair<const char*, std::function<int(Program&)>>> reading{
            {"show", [](Program& program) { return program.Show(); }},
            {"terms", [](Program& program) { return program.Terms(); }}};
        const std::vector<std::pair<const char*, std::function<int(Program&)>>> adding{
            {"add", [&](Program& program) { return program.Add({arguments.log}); }}};
        for (const auto& [name, step] : writing ? adding : reading) {
            std::cout << "BEGIN " << name << ' ' << home << std::endl;
            const int status = Guarded([&] {
                Program program(arguments, home);
                return step(program);
            });
            std::cout << "END " << status << std::endl;
        }
    }
    return 0;
}

int Run(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.words;
    const std::string command = words.empty() ? "" : words.front();
    const std::vector<std::string> rest(words.begin() + (words.empty() ? 0 : 1), words.end());
    if (command == "examine-reading") return Examine(arguments, false);
    if (command == "examine-adding") return Examine(arguments, true);
    Program program(arguments, arguments.home);
    if (command == "create" && rest.size() == 1) return program.Create(rest.front());
    if (command == "add") return program.Add(rest);
    if (command == "resume") return program.Resume();
    if (command == "show") return program.Show();
    if (command == "terms") return program.Terms();
    if (command == "compact") return program.Compact();
    return Fail("commands: create NAME, add FILE..., resume, show, terms, compact, examine-reading, examine-adding");
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");  // whatever the locale, results are the same
    try {
        const Arguments arguments = ReadArguments({argv + 1, argv + argc});
        return Guarded([&] { return Run(arguments); });
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}
