#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace analysis {

// What an analysis lists: the code is stored with results and named in menus.
enum Field : int {
    kTerm = 1,
    kStartPage = 2,
    kTermAndStart = 3,
    kExitPage = 4,
    kTrack = 5,
    kPage = 6,
    kDir = 7,
    kReferrer = 8,
    kEngine = 11,
    kWordsAndPhrases = 12,
    kPhrases2 = 13,
    kPhrases3 = 14,
    kWords = 15,
    kWords2 = 16,
    kWords7 = 21,
};

// How often a value must be sighted to get a row: the key's value. Fields that are not here list every value.
struct ThresholdRow {
    int firstField;
    int lastField;
    std::string_view key;
    int otherwise;
};
inline constexpr std::array kThresholds{
    ThresholdRow{kTerm, kTerm, "ThresholdST", 4},
    ThresholdRow{kStartPage, kStartPage, "ThresholdPg", 2},
    ThresholdRow{kTermAndStart, kTermAndStart, "ThresholdSTPg", 2},
    ThresholdRow{kExitPage, kExitPage, "ThresholdPg", 2},
    ThresholdRow{kTrack, kTrack, "ThresholdTrk", 4},
    ThresholdRow{kPage, kDir, "ThresholdPg", 2},
    ThresholdRow{kWordsAndPhrases, kWords7, "ThresholdWrd", 4},
};

constexpr bool HasField(int field) {
    return (field >= kTerm && field <= kReferrer) || (field >= kEngine && field <= kWords7);
}
constexpr bool IsWordField(int field) { return field >= kWordsAndPhrases && field <= kWords7; }

// nullptr: no threshold.
constexpr const ThresholdRow* ThresholdOf(int field) {
    const auto row = std::ranges::find_if(
        kThresholds, [field](const ThresholdRow& r) { return field >= r.firstField && field <= r.lastField; });
    return row == kThresholds.end() ? nullptr : &*row;
}

}  // namespace analysis
