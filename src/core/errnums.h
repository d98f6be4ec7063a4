#pragma once

#include <array>
#include <cstddef>

// Every internal error number of the program. A support report names only the
// number, so each stands for exactly one place; the check below keeps it so.
namespace core::errnum {

inline constexpr int kSubscript = 9;
inline constexpr int kOpenMode = 1001;  // and a missing entry in mode 2: both names of one number
inline constexpr int kMissingEntry = 1001;
inline constexpr int kFailedWrite = 1002;
inline constexpr int kBadExistsAction = 1031;
inline constexpr int kBadMissingAction = 1032;
inline constexpr int kStopped = 1066;
inline constexpr int kTableNameLength = 1101;
inline constexpr int kTableName = 1102;
inline constexpr int kFieldAttribute = 1103;
inline constexpr int kDbPathWildcard = 1104;
inline constexpr int kDbMissing = 1105;
inline constexpr int kDefPathWildcard = 1106;
inline constexpr int kDefMissing = 1107;
inline constexpr int kIndexUnique = 1109;
inline constexpr int kIndexPrimary = 1110;
inline constexpr int kValueVanished = 1412;
inline constexpr int kValueTooLong = 1413;
inline constexpr int kSectionScan = 2617;
inline constexpr int kDuplicateKey = 3022;
inline constexpr int kStore = 3051;  // any other failure of the database
inline constexpr int kOverflowName = 6233;
inline constexpr int kOverflowList = 6234;
inline constexpr int kOverflowNext = 6235;
inline constexpr int kEmptyBraceDelim = 7510;
inline constexpr int kReservedSection = 8011;
inline constexpr int kReservedAltEntry = 8012;
inline constexpr int kReservedSplitEntry = 8013;
inline constexpr int kNotInitialised = 8871;
inline constexpr int kControlType = 9710;     // a dialog's control of unknown type
inline constexpr int kControlOutside = 9711;  // a control's number outside the list
inline constexpr int kNoFreeSubstitute = 9910;
inline constexpr int kSectionLine = 19132;
inline constexpr int kFieldName = 66350;
inline constexpr int kRowText = 91273;

inline constexpr std::array kAll{
    kSubscript,        kMissingEntry,       kFailedWrite,    kBadExistsAction, kBadMissingAction,
    kStopped,          kTableNameLength,    kTableName,      kFieldAttribute,  kDbPathWildcard,
    kDbMissing,        kDefPathWildcard,    kDefMissing,     kIndexUnique,     kIndexPrimary,
    kValueVanished,    kValueTooLong,       kSectionScan,    kDuplicateKey,    kStore,
    kOverflowName,     kOverflowList,       kOverflowNext,   kEmptyBraceDelim, kReservedSection,
    kReservedAltEntry, kReservedSplitEntry, kNotInitialised, kControlType,     kControlOutside,
    kNoFreeSubstitute, kSectionLine,        kFieldName,      kRowText};

consteval bool AllDiffer() {
    for (std::size_t i = 0; i < kAll.size(); ++i)
        for (std::size_t j = i + 1; j < kAll.size(); ++j)
            if (kAll[i] == kAll[j]) return false;
    return true;
}
static_assert(AllDiffer(), "two places share an error number");

}  // namespace core::errnum
