// corvane-loggen: writes a demo or benchmark log.
#include <charconv>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include "tools/loggen/loggen.h"

namespace {

constexpr std::string_view kUsage =
    "usage: corvane-loggen [--lines N] [--days D] [--seed S] [--start YYYY-MM-DD] [--clean] [-o FILE]\n"
    "\n"
    "Writes a log in the combined format: the invented traffic of a small shop, in time order. The same options give "
    "the\n"
    "same bytes.\n"
    "\n"
    "  --lines N            exactly N lines; with --days they are spread over about so many days\n"
    "  --days D             the traffic of D days (28 when neither is given)\n"
    "  --seed S             another log of the same kind (default 1)\n"
    "  --start YYYY-MM-DD   first day (default 2026-09-07)\n"
    "  --clean              no broken lines\n"
    "  -o FILE              write to FILE; - is standard output (default)\n";

struct Arguments {
    loggen::Options options{};
    std::string file = "-";
    bool help = false;
    std::string problem{};
};

template <typename Number>
bool ReadNumber(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

Arguments ReadArguments(int argc, char** argv) {
    Arguments out;
    for (int i = 1; i < argc && out.problem.empty(); ++i) {
        const std::string_view name = argv[i];
        if (name == "--help" || name == "-h") {
            out.help = true;
        } else if (name == "--clean") {
            out.options.brokenLines = false;
        } else if (name != "--lines" && name != "--days" && name != "--seed" && name != "--start" && name != "-o") {
            out.problem = "unknown option " + std::string(name);
        } else if (++i == argc) {
            out.problem = std::string(name) + " needs a value";
        } else {
            const std::string_view value = argv[i];
            bool good = true;
            if (name == "--lines") good = ReadNumber(value, out.options.lines) && out.options.lines > 0;
            if (name == "--days")
                good = ReadNumber(value, out.options.days) && out.options.days > 0 && out.options.days <= 36500;
            if (name == "--seed") good = ReadNumber(value, out.options.seed);
            if (name == "--start") out.options.start = value;
            if (name == "-o") out.file = value;
            if (!good) out.problem = std::string(name) + " needs a positive whole number, not " + std::string(value);
        }
    }
    return out;
}

// The number of the failed call stays in errno for the message.
bool WriteLog(loggen::Generator& generator, std::FILE* file) {
    constexpr std::size_t kBlock = 1U << 20U;
    std::string block;
    block.reserve(kBlock + 4096);
    std::string line;
    while (generator.Next(line)) {
        block += line;
        block += '\n';
        if (block.size() < kBlock) continue;
        if (std::fwrite(block.data(), 1, block.size(), file) != block.size()) return false;
        block.clear();
    }
    return std::fwrite(block.data(), 1, block.size(), file) == block.size() && std::fflush(file) == 0;
}

int Run(const Arguments& arguments) {
    loggen::Generator generator(arguments.options);
    const bool standard = arguments.file == "-";
    std::FILE* file = standard ? stdout : std::fopen(arguments.file.c_str(), "wb");
    if (file == nullptr) {
        std::perror(("corvane-loggen: cannot open " + arguments.file).c_str());
        return 1;
    }
    bool good = WriteLog(generator, file);
    if (!good) std::perror(("corvane-loggen: cannot write " + arguments.file).c_str());
    if (!standard && std::fclose(file) != 0 && good) {
        std::perror(("corvane-loggen: cannot close " + arguments.file).c_str());
        good = false;
    }
    return good ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = ReadArguments(argc, argv);
    if (!arguments.problem.empty()) {
        std::cerr << "corvane-loggen: " << arguments.problem << "\n" << kUsage;
        return 2;
    }
    if (arguments.help) {
        std::cout << kUsage << std::flush;
        return std::cout.good() ? 0 : 1;
    }
    try {
        return Run(arguments);
    } catch (const std::exception& problem) {
        std::cerr << "corvane-loggen: " << problem.what() << "\n";
        return 2;
    }
}
