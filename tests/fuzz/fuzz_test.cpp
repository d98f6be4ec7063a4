#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <random>
#include <string>

#include "tests/fuzz/targets.h"

namespace fuzz {

static void PrintTo(const Target& target, std::ostream* out) { *out << target.name; }

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kWords[] = {"|",
                                       "{{||{{",
                                       "!!",
                                       "{",
                                       "}",
                                       "%S",
                                       "%W",
                                       "%w",
                                       "%*s",
                                       "%%",
                                       "\\n",
                                       "\\t",
                                       "\xC2\xA0\xC2\xA0",
                                       "!~!@#!",
                                       "\xFF",
                                       "\xC3",
                                       "\xE2\x82\xAC",
                                       "\xC4\xB0",
                                       "\"",
                                       "\r\n",
                                       "\n",
                                       "\n\n",
                                       "\t",
                                       " ",
                                       "http://",
                                       "https://",
                                       "www.",
                                       "//",
                                       "#",
                                       "?",
                                       ";",
                                       "%25",
                                       "%u1234",
                                       "%00",
                                       "%",
                                       "*/*",
                                       "::",
                                       "*",
                                       "[!a-z]",
                                       "=",
                                       "[Main]\n",
                                       "SplitEntry.",
                                       "99999",
                                       "1e300",
                                       "-1",
                                       "d5",
                                       "2147483648",
                                       "P",
                                       "UQ",
                                       "+",
                                       "~4",
                                       "~5",
                                       "31/Dec/9999",
                                       "\x1B[2J",
                                       "' OR ''='",
                                       "CREATE",
                                       "FIELD DEFINITIONS START\n",
                                       "200",
                                       "404",
                                       "q=",
                                       "Do not exclude any part"};

long Setting(const char* name, long otherwise) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::atol(value) : otherwise;
}

std::vector<std::string> Corpus(std::string_view target) {
    std::vector<std::string> inputs;
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(CORPUS_DIR) / target)) {
        std::ifstream in(entry.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    std::ranges::sort(inputs);  // folders have no order of their own
    return inputs;
}

class Mutator {
public:
    Mutator(const std::vector<std::string>& corpus, std::uint32_t seed) : corpus_(corpus), dice_(seed) {}

    std::string Next() {
        std::string text = corpus_[Below(corpus_.size())];
        for (std::size_t i = 0, changes = 1 + Below(6); i < changes; ++i) Change(text);
        if (text.size() > kMost) text.resize(kMost);
        return text;
    }

private:
    static constexpr std::size_t kMost = 4096;

    std::size_t Below(std::size_t end) {
        return end == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, end - 1)(dice_);
    }
    char Byte() { return static_cast<char>(Below(256)); }

    void Change(std::string& text) {
        const std::size_t at = Below(text.size() + 1);
        const std::size_t length = std::min(Below(16) + 1, text.size() - at);
        switch (Below(7)) {
            case 0:
                text.insert(at, 1, Byte());
                break;
            case 1:
                text.erase(at, length);
                break;
            case 2:
                text.insert(at, text.substr(Below(text.size() + 1), Below(64)));
                break;
            case 3: {
                const std::string& other = corpus_[Below(corpus_.size())];
                text.replace(at, length, other.substr(Below(other.size() + 1), Below(64)));
                break;
            }
            case 4:
                if (at < text.size()) text[at] = Byte();
                break;
            default:
                text.insert(at, kWords[Below(std::size(kWords))]);
                break;
        }
    }

    const std::vector<std::string>& corpus_;
    std::mt19937 dice_;
};

// False when the target found something; the input stands in the message, ready for a corpus file.
bool Holds(const Target& target, const std::string& input) {
    const auto* bytes = static_cast<const std::uint8_t*>(static_cast<const void*>(input.data()));
    try {
        target.run(bytes, input.size());
        return true;
    } catch (const std::exception& error) {
        ADD_FAILURE() << target.name << ": " << error.what()
                      << "\ninput: " << testing::PrintToString(input.substr(0, 2000));
        return false;
    }
}

class Fuzz : public testing::TestWithParam<Target> {};

TEST_P(Fuzz, ReplaysItsCorpus) {
    const std::vector<std::string> corpus = Corpus(GetParam().name);
    ASSERT_FALSE(corpus.empty());
    for (const std::string& input : corpus) Holds(GetParam(), input);
}

TEST_P(Fuzz, HoldsOnChangedInputs) {
    const std::vector<std::string> corpus = Corpus(GetParam().name);
    ASSERT_FALSE(corpus.empty());
    const auto seconds = std::chrono::seconds(Setting("CORVANE_FUZZ_SECONDS", 1));
    const auto seed = static_cast<std::uint32_t>(Setting("CORVANE_FUZZ_SEED", 1));
    Mutator mutator(corpus, seed);
    long runs = 0;
    for (const auto end = std::chrono::steady_clock::now() + seconds; std::chrono::steady_clock::now() < end; ++runs) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", run " + std::to_string(runs));
        if (!Holds(GetParam(), mutator.Next())) break;
    }
    RecordProperty("runs", std::to_string(runs));
}

INSTANTIATE_TEST_SUITE_P(Targets, Fuzz, testing::ValuesIn(kTargets),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
}  // namespace fuzz
