#pragma once

#include <string>

#include "adddata/adddesk.h"
#include "dialogs/editlist.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempsite.h"

namespace testsupport {

// A site with a scripted screen over it, and the delivered definitions in copies of their own.
struct ScreenSite : TempSite {
    explicit ScreenSite(sitedb::SiteOptions options = Plain()) : TempSite(options) {
        for (const std::string& file : {program.formats, program.robots, param + "ppfindbots.ini"})
            EXPECT_TRUE(core::FileCopy(PARAMS_DIR "/program/" + core::fNameOf(file), file).ok);
    }
    std::string LastVal(std::string_view key) { return ini.IniGet("Main", key, site->Paths().lastVals); }
    std::string Stored(const std::string& native) const { return paths.ToStored(native).text; }
    std::int64_t Lines() { return site->Db().Scalar("SELECT count(*) FROM logline"); }
    bool Showed(const std::string& text) const {
        for (const ScriptedHost::Shown& shown : host.shown)
            if ((shown.title + "\r" + shown.message + "\r" + shown.problem).find(text) != std::string::npos)
                return true;
        return false;
    }

    std::string param = folder.File("param/");
    adddata::ProgramFiles program{param + "logfmts.ini", PARAMS_DIR "/program/lastinstvals.ini",
                                  param + "fltrbots.ini"};
    ScriptedHost host{};
    dialogs::Desk desk{.ini = ini, .host = host, .screens = folder.File("screens.ini")};
    adddata::ReadMemory memory{};
    adddata::AddDesk at{env, desk, *site, paths, memory, program};
};

// The control with this caption (without "&").
inline dialogs::Control& Captioned(dialogs::DialogModel& model, const std::string& caption) {
    for (dialogs::Control& control : model.controls.All())
        if (dialogs::PlainCaption(control.caption) == caption) return control;
    ADD_FAILURE() << "no control " << caption << " in: " << model.title;
    throw std::runtime_error("no such control");
}
inline ScriptedHost::Fill Set(const std::string& caption, const std::string& value) {
    return [=](dialogs::DialogModel& model) { Captioned(model, caption).value = value; };
}

}  // namespace testsupport
