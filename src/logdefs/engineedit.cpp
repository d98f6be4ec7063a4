#include "logdefs/engineedit.h"

#include <algorithm>

#include "core/text.h"

namespace logdefs {
namespace {

constexpr std::string_view kNew = "Enter NEW Search Engine referrer string definition.";
constexpr std::string_view kChange = "Enter definitions for Search Engine referrer strings.";
constexpr std::string_view kHowTo =
    "\r\rURL spec: the pattern of the engine's pages, such as http://*.finder.*/*\r"
    "Values: a,b,c where the search term is in the referrer as a=yyyy& or b=yyyy&, etc., such as ?q,?query\r"
    "Leave the values empty for an engine that sends no search terms, such as an AI assistant.";
constexpr std::string_view kBoxSpec = "9000|||||";
constexpr std::string_view kTextSpec = "11000";
constexpr std::string_view kGridSpec = "11000|3000|||||True|||1||{3000|1000|6500}";
enum { kUrl = 2, kPlaces = 4, kEffect = 5, kTry = 7, kTried = 8, kRows = 9 };  // numbers of the controls

SEDef DefinitionIn(const dialogs::Controls& controls) {
    return {std::string(core::fTrim(controls[kUrl].value)), std::string(core::fTrim(controls[kPlaces].value))};
}

void AddBox(std::string_view label, std::string_view caption, const std::string& value, dialogs::Controls& controls) {
    dialogs::MBAddCtl("Label", label, dialogs::MBSpec("2000"), controls);
    const int box = dialogs::MBAddCtl("TextBox_", value, dialogs::MBSpec(kBoxSpec), controls);
    controls[box].caption = caption;
}

dialogs::Controls ControlsOf(const SEDef& start, const TrialReferrers& trial) {
    dialogs::Controls controls;
    AddBox("URL spec", "URL specification", start.url, controls);
    controls[kUrl].hint = "http://*.finder.*/*";
    AddBox("Values", "Parameter list", start.places, controls);
    controls[kPlaces].hint = "?q,?query";
    dialogs::MBAddCtl("Label", "", dialogs::MBSpec(kTextSpec), controls);
    controls[kEffect].caption = "What the definition finds";
    AddBox("Try a referrer", "Try a referrer", "", controls);
    controls[kTry].hint = "http://www.finder.net/search?q=red+shoes";
    dialogs::MBAddCtl("Label", "", dialogs::MBSpec(kTextSpec), controls);
    controls[kTried].caption = "What the tried referrer gives";
    dialogs::MBAddCtl("Grid", "-1", dialogs::MBSpec(kGridSpec), controls);
    controls[kRows].caption = "Referrers of the log that match";
    controls[kRows].emptyText = trial.problem.empty() ? "No referrer of the log matches." : trial.problem;
    return controls;
}

// Without the question what is missing is a hint alone: such a pattern can be meant.
bool WantedWithoutProtocol(const dialogs::Desk& desk, const SEDef& definition) {
    if (SEDefHasProtocol(definition)) return true;
    dialogs::Box box;
    box.message = "The URL spec has no \"http\":\r" + definition.url +
                  "\r\rIt is held against whole referrers, which begin with http://, so it may never match.";
    box.title = kSEDefsTitle;
    box.buttons = "&Use it as it is|&Change it";
    box.options = std::to_string(static_cast<int>(dialogs::Icon::Exclamation));
    box.defaultNo = box.escNo = 2;
    return dialogs::ShowMB(desk, box).button == 1;
}

std::string InvalidText(const std::string& reason) {
    return "\rInvalid values:\r" + reason + "\rChanges not saved. Correct values and try again.";
}

std::string Problem(const dialogs::Desk& desk, const SEDefEditing& editing, const SEDef& definition) {
    if (definition.url.find(' ') != std::string::npos)
        return InvalidText("URL specification cannot contain Spaces (values in left column).");
    if (const std::string fault = SEDefFault(definition); !fault.empty())
        return InvalidText("The definition cannot be used, since " + fault + ".");
    const std::string text = definition.Text();
    for (std::size_t i = 0; i < editing.list.size(); ++i)
        if (i != editing.at && editing.list[i] == text) return InvalidText("The list holds this definition already.");
    return WantedWithoutProtocol(desk, definition) ? std::string() : InvalidText("The URL spec has no \"http\".");
}

}  // namespace

std::vector<std::string> SEDefsWith(const std::vector<std::string>& list, std::optional<std::size_t> at,
                                    const SEDef& definition) {
    std::vector<std::string> with = list;
    if (at)
        with[*at] = definition.Text();
    else
        with.push_back(definition.Text());
    std::ranges::stable_partition(with, SEDefIsGeneral);
    return with;
}

std::optional<SEDef> SEDefEditOne(const dialogs::Desk& desk, const TrialReferrers& trial, const SEDefEditing& editing) {
    dialogs::Controls controls = ControlsOf(editing.start, trial);
    dialogs::Box box;
    box.message = std::string(editing.at ? kChange : kNew).append(kHowTo);
    box.title = kSEDefsTitle;
    box.buttons = "&OK|&Cancel";
    box.name = "SEDefEdit";
    box.helpId = "SEDefs";
    box.live = [&](dialogs::Controls& shown) {
        const SEDef definition = DefinitionIn(shown);
        EngineEffect effect = EffectOf(definition, trial);
        shown[kEffect].value = std::move(effect.text);
        shown[kRows].rows = std::move(effect.rows);
        shown[kRows].rows.insert(shown[kRows].rows.begin(), {"Search term", "LogLines", "Referrer"});
        shown[kTried].value =
            TriedReferrer(shown[kTry].value, definition, SEDefsWith(editing.list, editing.at, definition));
    };
    const auto check = [&](dialogs::Controls& entered, int) { return Problem(desk, editing, DefinitionIn(entered)); };
    if (dialogs::ShowMBRepeat(desk, box, controls, check).Cancelled()) return std::nullopt;
    return DefinitionIn(controls);
}

}  // namespace logdefs
