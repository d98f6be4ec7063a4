#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "logdefs/format.h"
#include "logdefs/rule.h"
#include "logdefs/sample.h"

namespace core {
class IniStore;
}

namespace logdefs {

// The first lines of the trial log, cut into the fields that rules look at: what a rule does to them. Values count up
// to their first 4 KiB. Rules come as they are stored: Val in lower case unless MC.
class TrialLines {
public:
    TrialLines(core::IniStore& ini, const TrialLog& log, const std::string& formatFile);

    std::int64_t Lines() const { return static_cast<std::int64_t>(lines_.size()); }  // that fit the format

    struct Value {
        std::string text{};
        std::string lowered{};
        std::int64_t lines = 0;
    };
    struct Effect {
        std::int64_t satisfied = 0;  // lines
        std::vector<const Value*> taken{}, left{};
    };
    Effect Of(const StoredRule& stored) const;
    // The lines that a condition of these rules takes; nothing when there are too many rules to try at once.
    std::optional<std::int64_t> Satisfied(std::span<const StoredRule> rules, bool any) const;
    // "12 of the first 1,000 lines of access.log satisfy it.", or why there is nothing to try on.
    std::string Text(std::int64_t satisfied) const;
    // A user agent of the log that looks like a browser and that the rule takes.
    std::optional<std::string> BrowserTaken(const StoredRule& stored) const;

private:
    static constexpr std::size_t kFields = kColTypes.size();
    using Line = std::array<std::uint32_t, kFields>;  // places in values_

    void Cut(const LogSample& sample, const LogFormat& format);
    const Value& ValueOf(const Line& line, int colType) const;

    std::string file_{};  // its name
    std::string lack_{};  // why there are no lines
    std::int64_t read_ = 0;
    std::array<std::vector<Value>, kFields> values_{};
    std::vector<Line> lines_{};
};

}  // namespace logdefs
