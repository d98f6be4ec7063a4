#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "logdefs/fields.h"
#include "logdefs/memo.h"
#include "logdefs/rule.h"
#include "logdefs/rulematcher.h"

namespace core {
class IniStore;
}

namespace logdefs {

// A filter as a read holds it. True of a test always means: the line is to be skipped.
struct FltrRuleSet {
    bool Active = false;
    bool Invert = false;
    bool AnyRule = false;
    std::vector<FltrRule> Rules{};
    std::vector<int> FieldIdx{};  // one for each rule
    std::int64_t HitCount = 0;    // lines skipped in the current file
    bool oneField = false;        // all rules look at one field

    struct Verdict {
        bool skip = false;
        std::size_t index = 0;  // of the rule that settled it
    };
    // Verdicts by the text of the field, while all rules look at one field.
    BoundedMemo<Verdict> seen{};
    // Of many rules on one field of which one is enough; made at the first line.
    std::shared_ptr<const RuleMatcher> matcher{};
};

struct LineVerdict {
    bool skip = false;
    std::string_view text{};  // the value that settled it, when there is one
    std::size_t index = 0;
};
// A filter that is not Active skips nothing and counts nothing.
LineVerdict FltrTestLine(const LogLnFields& fields, FltrRuleSet& set);

// Where the rule files of the three families and their switches stand.
struct FilterFiles {
    std::string main{};
    std::string components{};
    std::string robots{};
    std::string switches{};  // LastVals.ini: All, Filter, nobots, nocomp
};

enum class MainFilter { All, Only, Except };
struct FilterSwitches {
    MainFilter main = MainFilter::All;
    bool skipRobots = false;      // nobots
    bool skipComponents = false;  // nocomp
};
FilterSwitches FltrReadSwitches(core::IniStore& ini, const FilterFiles& files);

// Reads the rules of key `key` (section Filters) of a file.
FltrRuleSet FltrLoad(core::IniStore& ini, std::string_view file, std::string_view key, bool active, bool invert);

struct AddFilters {
    FltrRuleSet main{};
    FltrRuleSet components{};
    FltrRuleSet robots{};
    // A family that is on and has no rule: it would skip every line (or none). One text each, for the user.
    std::vector<std::string> warnings{};
};
// The variant that looks for new robots: one filter of its own, inverted; the other families are off.
AddFilters FltrLoadPreprocess(core::IniStore& ini, std::string_view preprocessFile);
AddFilters FltrLoadAddFilters(core::IniStore& ini, const FilterFiles& files, const FilterSwitches& switches);

// The main filter's statement: "Yes - Log line loaded when satisfy any filters. ..." or "No".
std::string FltrDescribe(core::IniStore& ini, const FilterFiles& files, const FilterSwitches& switches);

}  // namespace logdefs
