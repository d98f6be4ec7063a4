#include "dialogs/showmb.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "core/inistore.h"
#include "core/text.h"
#include "dialogs/font.h"

namespace dialogs {
namespace {

constexpr std::string_view kPlaceEntry = "MBPlace";
constexpr std::string_view kNotAgain = "Do &not Show this Message again";
constexpr int kStartUpPosition = 8;
constexpr int kSuppressedButton = -1;

std::string_view MessageOf(std::string_view message) {
    if (message.starts_with('-')) message.remove_prefix(1);
    return message;
}

int OwnButtons(const Controls& controls) {
    const auto isButton = [](const Control& control) { return control.Is(ControlType::CommandButton); };
    return static_cast<int>(std::ranges::count_if(controls.All(), isButton));
}

int CancelInList(const Box& box) {
    if (box.escNo > 0) return box.escNo;
    return ButtonsOf(box.buttons).cancel;
}

void MarkButtons(DialogModel& model, const std::vector<int>& numbers, bool DialogButton::*flag) {
    for (const int number : numbers) {
        const int inList = number - model.OwnButtons();
        if (inList >= 1 && inList <= static_cast<int>(model.buttons.size()))
            model.buttons[static_cast<std::size_t>(inList - 1)].*flag = true;
    }
}

// A number that names no button counts as not given.
int Existing(const DialogModel& model, int number) { return number <= model.ButtonCount() ? std::max(0, number) : 0; }

void ChooseButtons(DialogModel& model, const Box& box) {
    const int own = model.OwnButtons();
    const DialogOptions& options = model.options;
    // Without a word about it the first button behind the controls is the default one: Enter in an entry shall not
    // press a button that stands among the entries.
    const int first = model.buttons.empty() ? 1 : own + 1;
    const int wanted = options.defaultButton > 0 ? options.defaultButton : box.defaultNo > 0 ? box.defaultNo + own : 0;
    model.defaultButton = Existing(model, wanted);
    if (model.defaultButton == 0) model.defaultButton = Existing(model, first);
    model.focusButton = Existing(model, options.focusButton);
    model.escButton = Existing(model, options.escButton);
    if (model.escButton == 0) model.escButton = Existing(model, CancelNumber(box, model.controls));
    if (model.escButton == 0 && model.ButtonCount() == 1) model.escButton = 1;
    MarkButtons(model, options.boldButtons, &DialogButton::bold);
    MarkButtons(model, options.italicButtons, &DialogButton::italic);
    MarkButtons(model, options.underlinedButtons, &DialogButton::underlined);
}

SuppressPlace PlaceOfAnswer(const Desk& desk, const Box& box) {
    return {box.suppress.section.empty() ? box.name : box.suppress.section,
            box.suppress.file.empty() ? desk.screens : box.suppress.file};
}

bool IsSuppressed(const Desk& desk, const Box& box, const DialogOptions& options) {
    if (options.noShowKey.empty()) return false;
    const SuppressPlace place = PlaceOfAnswer(desk, box);
    return !place.section.empty() && desk.ini.IniGetBool(place.section, options.noShowKey, place.file);
}

constexpr Pressed kNotShown{kSuppressedButton, kSuppressed};

// Gives the values back to the caller's controls on every way out.
class Lent {
public:
    Lent(DialogModel& model, Controls& controls) : model_(model), controls_(controls) {}
    ~Lent() { controls_ = std::move(model_.controls); }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;

private:
    DialogModel& model_;
    Controls& controls_;
};

void ClearStartUp(Controls& controls) {
    for (Control& control : controls.All()) control.spec.Set(kStartUpPosition, "");
}

Asked AskIn(const Desk& desk, std::string_view spec, std::string_view message, std::string_view otherwise,
            std::string_view title) {
    Controls controls;
    const int number = MBAddCtl("TextBox", otherwise, MBSpec(spec), controls);
    controls[number].caption = MessageOf(message);
    Box box;
    box.message = message;
    box.buttons = "1";
    box.title = title;
    Asked asked;
    asked.pressed = ShowMB(desk, box, controls);
    if (!asked.pressed.Cancelled()) asked.text = controls[number].value;
    return asked;
}

}  // namespace

std::string TitleOf(const Desk& desk, std::string_view title, std::string_view message) {
    if (title.starts_with('-') || (message.starts_with('-') && !title.empty()))
        return desk.product + " " + std::string(title);
    if (!title.empty()) return std::string(title);
    if (message.starts_with('-')) return desk.product + " " + std::string(MessageOf(message));
    return desk.product;
}

int CancelNumber(const Box& box, const Controls& controls) {
    const int cancel = CancelInList(box);
    return cancel > 0 ? cancel + OwnButtons(controls) : kNoCancel;
}

DialogModel BuildModel(const Desk& desk, const Box& box, Controls controls) {
    DialogModel model;
    model.name = box.name;
    model.title = TitleOf(desk, box.title, box.message);
    model.message = MessageOf(box.message);
    model.details = box.details;
    model.helpId = box.helpId;
    model.options = ParseOptions(box.options);
    model.followers = box.followers;
    model.live = box.live;
    model.controls = std::move(controls);
    for (std::string& caption : ButtonsOf(box.buttons).captions)
        model.buttons.push_back({.caption = std::move(caption)});
    ChooseButtons(model, box);
    ApplyFollowers(model.followers, model.controls);
    if (desk.screens.empty()) return model;
    model.font = FontGet(desk.ini, {desk.screens});
    if (!model.name.empty()) model.place = desk.ini.IniGet(model.name, kPlaceEntry, desk.screens);
    return model;
}

void KeepLook(const Desk& desk, const DialogModel& model) {
    if (desk.screens.empty()) return;
    const bool moved = !model.name.empty() && !model.place.empty() &&
                       desk.ini.IniGet(model.name, kPlaceEntry, desk.screens) != model.place;
    // A place that is not kept costs no more than moving the window once again.
    if (moved) (void)desk.ini.IniPut(model.name, kPlaceEntry, model.place, desk.screens, core::OnFail::Ignore);
    if (!model.options.noSaveFont && FontGet(desk.ini, {desk.screens}) != model.font)
        (void)FontPut(desk.ini, {desk.screens}, model.font);
}

Pressed ShowMB(const Desk& desk, const Box& box, Controls& controls) {
    if (IsSuppressed(desk, box, ParseOptions(box.options))) return kNotShown;
    const int cancel = CancelNumber(box, controls);
    DialogModel model = BuildModel(desk, box, std::move(controls));
    const Lent lent(model, controls);
    const int button = desk.host.Open(model)->Run();
    KeepLook(desk, model);
    if (model.options.Stays(button)) ClearStartUp(model.controls);
    return {button, cancel};
}

Pressed ShowMB(const Desk& desk, const Box& box) {
    Controls none;
    return ShowMB(desk, box, none);
}

Pressed ShowMBRepeat(const Desk& desk, const Box& box, Controls& controls, const EntryCheck& check) {
    if (IsSuppressed(desk, box, ParseOptions(box.options))) return kNotShown;
    const Controls entry = controls;
    const int cancel = CancelNumber(box, controls);
    DialogModel model = BuildModel(desk, box, std::move(controls));
    const Lent lent(model, controls);
    const std::unique_ptr<DialogWindow> window = desk.host.Open(model);
    for (;;) {
        const int button = window->Run();
        if (button == cancel) {
            KeepLook(desk, model);
            model.controls = entry;
            return {button, cancel};
        }
        const std::string problem = check ? check(model.controls, button) : std::string();
        if (problem.empty()) {
            KeepLook(desk, model);
            return {button, cancel};
        }
        model.problem = "Problem with data entered: " + problem;
        ClearStartUp(model.controls);
        ApplyFollowers(model.followers, model.controls);
        window->Update();
    }
}

Pressed ShowMBStay(const Desk& desk, const Box& box, Controls& controls, const StayAct& act) {
    if (IsSuppressed(desk, box, ParseOptions(box.options))) return kNotShown;
    const int cancel = CancelNumber(box, controls);
    DialogModel model = BuildModel(desk, box, std::move(controls));
    const Lent lent(model, controls);
    act(model, 0);
    const std::unique_ptr<DialogWindow> window = desk.host.Open(model);
    int button = window->Run();
    for (; button != cancel && model.options.Stays(button); button = window->Run()) {
        ClearStartUp(model.controls);
        act(model, button);
        window->Update();
    }
    KeepLook(desk, model);
    return {button, cancel};
}

Pressed ShowMsg(const Desk& desk, std::string_view message, std::string_view title, std::string_view options) {
    Box box;
    box.message = message;
    box.title = title;
    box.options = option::Esc(1).append(options);
    return ShowMB(desk, box);
}

Pressed ShowMBTick(const Desk& desk, const Box& box, std::string_view caption, bool& ticked) {
    if (IsSuppressed(desk, box, ParseOptions(box.options))) return kNotShown;
    DialogModel model = BuildModel(desk, box, {});
    model.suppressCaption = caption;
    model.suppressTicked = ticked;
    const int button = desk.host.Open(model)->Run();
    KeepLook(desk, model);
    ticked = model.suppressTicked;
    return {button, CancelNumber(box, {})};
}

Pressed ShowMsgSuppressible(const Desk& desk, std::string_view message, std::string_view key,
                            const SuppressPlace& place, std::string_view title) {
    Box box;
    box.message = message;
    box.title = title;
    box.options = option::Esc(1) + option::NoShow(key);
    box.suppress = place;
    bool ticked = false;
    const Pressed pressed = ShowMBTick(desk, box, kNotAgain, ticked);
    if (pressed.Suppressed() || !ticked) return pressed;
    const SuppressPlace answer = PlaceOfAnswer(desk, box);
    // A failed write is told by the store; the message then comes again.
    (void)desk.ini.IniPutBool(answer.section, key, true, answer.file);
    return pressed;
}

Asked AskText(const Desk& desk, std::string_view message, std::string_view otherwise, std::string_view title) {
    return AskIn(desk, "10000||||||", message, otherwise, title);
}

Asked AskTextBig(const Desk& desk, std::string_view message, std::string_view otherwise, std::string_view title) {
    return AskIn(desk, "12000|8000|||||", message, otherwise, title);
}

}  // namespace dialogs
