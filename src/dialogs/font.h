#pragma once

#include <string>
#include <string_view>

namespace core {
class IniStore;
}

// The font that a person chose for all dialogs, as "name|size|bold|italic"; "" is the desktop's own.
namespace dialogs {

struct FontPlace {
    std::string file{};  // native path
    std::string section = "MB formats";
};

std::string FontGet(core::IniStore& ini, const FontPlace& place);
// Both are false when an entry could not be written; nobody is told.
bool FontPut(core::IniStore& ini, const FontPlace& place, std::string_view font);
bool FontCopy(core::IniStore& ini, const FontPlace& from, const FontPlace& to);

}  // namespace dialogs
