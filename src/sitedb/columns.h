#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "logdefs/fields.h"

// Columns and widths of the four tables. Widths count bytes.
namespace sitedb {

inline constexpr int kIpWidth = 50;
inline constexpr std::string_view kCutMark = "..";

// Texts of extra data, in the order in which a line's record is filled and compared.
struct TextColumn {
    std::string_view name;
    logdefs::Field field;
    int width;  // with the mark
};
inline constexpr std::array kTextColumns{
    TextColumn{"Filename", logdefs::kFile, 253},     TextColumn{"Query", logdefs::kQuery, 200},
    TextColumn{"Browser", logdefs::kAgent, 253},     TextColumn{"Browser2", logdefs::kAgent2, 100},
    TextColumn{"UserNo", logdefs::kUserNo, 100},     TextColumn{"VirtualHost", logdefs::kVirtualHost, 100},
    TextColumn{"HTTPStatus", logdefs::kStatus, 100}, TextColumn{"CodeWordsHTTP", logdefs::kCodeWords, 100},
    TextColumn{"Referrer", logdefs::kReferrer, 253},
};
inline constexpr std::size_t kReferrerColumn = 8;
static_assert(kTextColumns[kReferrerColumn].field == logdefs::kReferrer);

// Texts of a visit.
inline constexpr std::size_t kTermWidth = 250;
inline constexpr std::size_t kEngineWidth = 150;
inline constexpr std::size_t kIpListWidth = 250;
inline constexpr std::size_t kClicksWidth = 253;  // longer lists go to visitpages

}  // namespace sitedb
