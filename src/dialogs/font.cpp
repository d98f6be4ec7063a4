#include "dialogs/font.h"

#include <array>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"

namespace dialogs {
namespace {

constexpr std::array<std::string_view, 4> kEntries{"MB all Fontname", "MB all Size", "MB all Bold", "MB all Italic"};
constexpr double kSmallest = 4, kLargest = 72;  // points

}  // namespace

std::string FontGet(core::IniStore& ini, const FontPlace& place) {
    const auto entry = [&](std::size_t i) { return ini.IniGet(place.section, kEntries[i], place.file); };
    const std::string name = core::fStrip(entry(0), "|");
    const double size = core::fNum(entry(1));
    if (name.empty() || !(size >= kSmallest && size <= kLargest)) return {};
    std::string font = name + "|" + core::NumText(size);
    for (const std::size_t flag : {2U, 3U}) font.append("|").append(core::fBoolWord(core::fBool(entry(flag))));
    return font;
}

bool FontPut(core::IniStore& ini, const FontPlace& place, std::string_view font) {
    bool written = true;
    for (std::size_t i = 0; i < kEntries.size(); ++i) {
        const std::string value = core::CDSItem(static_cast<long>(i) + 1, font);
        if (!ini.IniPut(place.section, kEntries[i], value, place.file, core::OnFail::Ignore)) written = false;
    }
    return written;
}

bool FontCopy(core::IniStore& ini, const FontPlace& from, const FontPlace& to) {
    return FontPut(ini, to, FontGet(ini, from));
}

}  // namespace dialogs
