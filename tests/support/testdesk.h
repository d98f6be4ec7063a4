#pragma once

#include <string>
#include <string_view>

#include "core/inistore.h"
#include "dialogs/showmb.h"
#include "tests/support/fakes.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempfolder.h"

namespace testsupport {

// A desk with a scripted host and a screens file of its own.
struct TestDesk {
    TempFolder folder{};
    ScriptedUser user{};
    core::IniStore ini{user};
    ScriptedHost host{};
    dialogs::Desk desk{ini, host, "Corvane", folder.File("screens.ini")};

    std::string Entry(std::string_view section, std::string_view entry) {
        return ini.IniGet(section, entry, desk.screens);
    }
};

}  // namespace testsupport
