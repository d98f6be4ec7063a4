#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Fuzz targets: plain functions of some bytes that throw Broken when something promised does not hold. libFuzzer drives
// them (CORVANE_FUZZ), and so does an ordinary test, with a kept corpus and a small seeded mutator.
namespace fuzz {

class Broken : public std::logic_error {
public:
    using std::logic_error::logic_error;
};
inline void Need(bool holds, std::string_view what) {
    if (!holds) throw Broken(std::string(what));
}

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
    return {static_cast<const char*>(static_cast<const void*>(data)), size};
}
// Up to `most` parts of the input, parted by a line feed; the last is the rest.
std::vector<std::string_view> Parts(std::string_view input, std::size_t most);

int RunFormatLine(const std::uint8_t* data, std::size_t size);  // templates by line, an empty line, a log line
int RunNumbers(const std::uint8_t* data, std::size_t size);     // three numbers and a format by line
int RunLists(const std::uint8_t* data, std::size_t size);       // items by line
int RunIni(const std::uint8_t* data, std::size_t size);         // name, value, the text of a file
int RunEngines(const std::uint8_t* data, std::size_t size);     // definition, referrer
int RunNames(const std::uint8_t* data, std::size_t size);       // a page name, URL or term
int RunRules(const std::uint8_t* data, std::size_t size);       // pattern, value
int RunCsv(const std::uint8_t* data, std::size_t size);         // a line, or cells by line
int RunDialogs(const std::uint8_t* data, std::size_t size);     // a value, then a spec, option, button or rule list
int RunTableDef(const std::uint8_t* data, std::size_t size);    // a table definition file
int RunReader(const std::uint8_t* data, std::size_t size);      // a log; "~" and a digit repeat the byte before it
int RunUnpack(const std::uint8_t* data, std::size_t size);      // a packed log
int RunSite(const std::uint8_t* data, std::size_t size);        // options, then a log

struct Target {
    std::string_view name;  // of its folder in corpus/
    int (*run)(const std::uint8_t*, std::size_t);
};
inline constexpr std::array kTargets{
    Target{"formatline", RunFormatLine}, Target{"numbers", RunNumbers},
    Target{"lists", RunLists},           Target{"ini", RunIni},
    Target{"engines", RunEngines},       Target{"names", RunNames},
    Target{"rules", RunRules},           Target{"csv", RunCsv},
    Target{"dialogs", RunDialogs},       Target{"tabledef", RunTableDef},
    Target{"reader", RunReader},         Target{"site", RunSite},
    Target{"unpack", RunUnpack},
};

}  // namespace fuzz
