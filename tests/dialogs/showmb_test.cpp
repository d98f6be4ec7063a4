#include "dialogs/showmb.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "dialogs/dialoguser.h"
#include "dialogs/font.h"
#include "dialogs/longtext.h"
#include "dialogs/sequence.h"
#include "tests/support/testdesk.h"

namespace {

using dialogs::Box;
using dialogs::Controls;
using dialogs::DialogModel;
using dialogs::kNoCancel;
using dialogs::kSuppressed;
using dialogs::MBAddCtl;
using dialogs::Pressed;
using testsupport::TestDesk;

Box BoxWith(std::string buttons, std::string options = {}) {
    Box box;
    box.message = "Message";
    box.buttons = std::move(buttons);
    box.options = std::move(options);
    return box;
}

TEST(ShowMB, TheNumberOfTheCancelButton) {
    const struct {
        const char* buttons;
        const char* pressed;
        int button;
        int cancel;
    } cases[] = {
        {"0", "OK", 1, kNoCancel},
        {"1", "Cancel", 2, 2},
        {"2", "Abort", 1, kNoCancel},
        {"3", "No", 2, 3},
        {"4", "No", 2, kNoCancel},
        {"5", "Cancel", 2, 2},
        {"&Go|&Cancel (skip rest)", "Go", 1, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.buttons);
        TestDesk at;
        at.host.WillPress(c.pressed);
        const Pressed pressed = ShowMB(at.desk, BoxWith(c.buttons));
        EXPECT_EQ(pressed.button, c.button);
        EXPECT_EQ(pressed.MBCancelNo, c.cancel);
        EXPECT_EQ(pressed.Cancelled(), c.button == c.cancel);
        EXPECT_EQ(at.host.open, 0);
    }
}

TEST(ShowMB, OwnCommandButtonsAreCountedFirst) {
    TestDesk at;
    Controls controls;
    MBAddCtl("TextBox", "", "", controls);
    MBAddCtl("CommandButton", "&Browse", "", controls);
    MBAddCtl("CommandButton_", "&More", "", controls);
    at.host.WillPress("More");
    EXPECT_EQ(ShowMB(at.desk, BoxWith("1"), controls).button, 2);
    at.host.WillPress("Cancel");
    const Pressed pressed = ShowMB(at.desk, BoxWith("1"), controls);
    EXPECT_EQ(pressed.button, 4);
    EXPECT_TRUE(pressed.Cancelled());
    EXPECT_EQ(at.host.shown[0].buttons, (std::vector<std::string>{"Browse", "More", "OK", "Cancel"}));
}

TEST(BuildModel, WhichButtonEnterAndEscapePress) {
    const struct {
        const char* buttons;
        const char* options;
        int defaultNo, escNo;
        bool own;
        int enter, escape, focus;
    } cases[] = {
        {"0", "", 0, 0, false, 1, 1, 0},  // the only button
        {"1", "", 0, 0, false, 1, 2, 0},
        {"4", "", 2, 0, false, 2, 0, 0},  // no Cancel: Escape does nothing
        {"4", "", 0, 2, false, 1, 2, 0},
        {"1", "DfltButton=2|Esc=1|FocBut=2", 1, 2, false, 2, 1, 2},  // the options come first
        {"1", "", 0, 0, true, 2, 3, 0},                              // Enter presses no button among the entries
        {"1", "", 2, 1, true, 3, 2, 0},
        {"1", "DfltButton=1|Esc=1", 0, 0, true, 1, 1, 0},  // over all buttons
        {"1", "DfltButton=9|Esc=9|FocBut=9", 0, 0, false, 1, 2, 0},
        {"", "", 0, 0, false, 0, 0, 0},
        {"", "", 0, 0, true, 1, 1, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.buttons) + " / " + c.options + (c.own ? " / own" : ""));
        TestDesk at;
        Controls controls;
        if (c.own) MBAddCtl("CommandButton", "Own", "", controls);
        Box box = BoxWith(c.buttons, c.options);
        box.defaultNo = c.defaultNo;
        box.escNo = c.escNo;
        const DialogModel model = BuildModel(at.desk, box, controls);
        EXPECT_EQ(model.defaultButton, c.enter);
        EXPECT_EQ(model.escButton, c.escape);
        EXPECT_EQ(model.focusButton, c.focus);
    }
}

TEST(BuildModel, MarkedButtonsAreNumberedOverAll) {
    TestDesk at;
    Controls controls;
    MBAddCtl("CommandButton", "Own", "", controls);
    const DialogModel model = BuildModel(at.desk, BoxWith("3", "{BoldButts=1|2|9}|ItiButts=4"), controls);
    EXPECT_TRUE(model.buttons[0].bold);
    EXPECT_FALSE(model.buttons[1].bold || model.buttons[2].bold);
    EXPECT_TRUE(model.buttons[2].italic);
}

TEST(TitleOf, ADashPutsTheProductBefore) {
    const struct {
        const char* title;
        const char* message;
        const char* shownTitle;
        const char* shownMessage;
    } cases[] = {
        {"", "Text", "Corvane", "Text"},
        {"Own", "Text", "Own", "Text"},
        {"- Enter Options.", "Text", "Corvane - Enter Options.", "Text"},
        {"", "-x", "Corvane x", "x"},
        {"Own", "-x", "Corvane Own", "x"},
        {"", "a-b", "Corvane", "a-b"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.message);
        TestDesk at;
        at.host.WillPress("OK");
        dialogs::ShowMsg(at.desk, c.message, c.title);
        EXPECT_EQ(at.host.shown[0].title, c.shownTitle);
        EXPECT_EQ(at.host.shown[0].message, c.shownMessage);
    }
}

TEST(ShowMB, WhateverStandsInTheDataIsNoPartOfTheDialog) {
    for (const char* text : {"|", "{", "}", "{}|{", "|~~|", "&", "#H160#", "a|b|~~|c{{||{{!!", "-", "Cancel|OK"}) {
        SCOPED_TRACE(text);
        TestDesk at;
        Controls controls;
        const std::string spec = dialogs::MBSpec("9000|2000||||||||||{100|200}");
        MBAddCtl("Label", text, spec, controls);
        MBAddCtl("TextBox", text, spec, controls);
        MBAddCtl("ComboBox", std::string("0|") + text, spec, controls, {{text}});
        MBAddCtl("ListBox", "0", spec, controls, {{text}, {text}});
        MBAddCtl("Grid", "1", spec, controls, {{text, text}, {text, text}});
        Box box = BoxWith("1");
        box.message = std::string("About ") + text;
        box.title = text;
        box.details = text;
        at.host.WillPress("Cancel", [&](const DialogModel& model) {
            EXPECT_EQ(model.controls.Count(), 5);
            EXPECT_EQ(model.buttons.size(), 2u);
            EXPECT_EQ(model.controls[5].rows[1].size(), 2u);
        });
        EXPECT_TRUE(ShowMB(at.desk, box, controls).Cancelled());
        EXPECT_EQ(controls[1].value, text);
        EXPECT_EQ(controls[2].value, text);
        EXPECT_EQ(controls[3].ComboText(), text);
        EXPECT_EQ(controls[4].rows[1][0], text);
        EXPECT_EQ(at.host.shown[0].message, box.message);
    }
}

TEST(ShowMB, ControlsSurviveAHostThatFails) {
    TestDesk at;
    Controls controls;
    MBAddCtl("TextBox", "kept", "", controls);
    at.host.WillPress("OK", [](DialogModel&) { throw std::runtime_error("gone"); });
    EXPECT_THROW(ShowMB(at.desk, BoxWith("0"), controls), std::runtime_error);
    ASSERT_EQ(controls.Count(), 1);
    EXPECT_EQ(controls[1].value, "kept");
    EXPECT_EQ(at.host.open, 0);
}

TEST(ShowMB, ASuppressedMessageIsNotShown) {
    TestDesk at;
    Box box = BoxWith("1", "{No show|Hide it}");
    box.suppress = {"Messages", at.desk.screens};
    for (const char* kept : {"True", "1"}) {
        SCOPED_TRACE(kept);
        ASSERT_TRUE(at.ini.IniPut("Messages", "Hide it", kept, at.desk.screens));
        const Pressed pressed = ShowMB(at.desk, box);
        EXPECT_EQ(pressed.button, -1);
        EXPECT_EQ(pressed.MBCancelNo, kSuppressed);
        EXPECT_TRUE(pressed.Suppressed());
        EXPECT_FALSE(pressed.Cancelled());
    }
    ASSERT_TRUE(at.ini.IniPut("Messages", "Hide it", "False", at.desk.screens));
    at.host.WillPress("OK");
    EXPECT_EQ(ShowMB(at.desk, box).button, 1);
}

TEST(ShowMsgSuppressible, TheTickIsKept) {
    TestDesk at;
    const dialogs::SuppressPlace place{"Messages", at.desk.screens};
    const auto show = [&] { return ShowMsgSuppressible(at.desk, "Hint", "a|b{c}", place); };
    at.host.WillPress("OK");
    EXPECT_FALSE(show().Suppressed());
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.suppressCaption, "Do &not Show this Message again");
        EXPECT_FALSE(model.suppressTicked);
        model.suppressTicked = true;
    });
    EXPECT_FALSE(ShowMsgSuppressible(at.desk, "Hint", "Hint key", place).Suppressed());
    EXPECT_TRUE(ShowMsgSuppressible(at.desk, "Hint", "Hint key", place).Suppressed());
    EXPECT_EQ(at.host.shown.size(), 2u);
}

TEST(ShowMBRepeat, IsShownAgainUntilTheCheckIsContent) {
    TestDesk at;
    Controls controls;
    MBAddCtl("TextBox", "", dialogs::MBSpec("100|||||||True"), controls);
    at.host.WillPress("OK", [](DialogModel& model) { model.controls[1].value = "x"; });
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.problem, "Problem with data entered: Must be Numeric");
        EXPECT_EQ(model.controls[1].value, "x");
        EXPECT_EQ(model.controls[1].spec.At(8), "");
        model.controls[1].value = "7";
    });
    const auto check = [](Controls& entered, int button) {
        EXPECT_EQ(button, 1);
        return std::string(entered[1].value == "7" ? "" : "Must be Numeric");
    };
    EXPECT_EQ(ShowMBRepeat(at.desk, BoxWith("1"), controls, check).button, 1);
    EXPECT_EQ(controls[1].value, "7");
    EXPECT_EQ(at.host.opened, 1);
}

TEST(ShowMBRepeat, CancelRunsNoCheckAndLeavesTheValues) {
    TestDesk at;
    Controls controls;
    MBAddCtl("TextBox", "before", "", controls);
    MBAddCtl("CheckBox", "True", "", controls);
    int checked = 0;
    const auto check = [&](Controls&, int) {
        ++checked;
        return std::string("wrong");
    };
    const auto enter = [](DialogModel& model) {
        model.controls[1].value = "typed";
        model.controls[2].value = "False";
    };
    at.host.WillPress("OK", enter);
    at.host.WillPress("Cancel", enter);
    EXPECT_TRUE(ShowMBRepeat(at.desk, BoxWith("1"), controls, check).Cancelled());
    EXPECT_EQ(checked, 1);
    EXPECT_EQ(controls[1].value, "before");
    EXPECT_EQ(controls[2].value, "True");
}

TEST(ShowMBStay, GoesOnUntilAButtonThatDoesNotStay) {
    for (const char* options : {"{NoHide=1}", "NoHide"}) {
        SCOPED_TRACE(options);
        TestDesk at;
        Controls controls;
        MBAddCtl("TextBox", "", dialogs::MBSpec("100|||||||True"), controls);
        at.host.WillPress("More", [](DialogModel& model) { EXPECT_EQ(model.message, "0"); });
        at.host.WillPress("Cancel", [](DialogModel& model) {
            EXPECT_EQ(model.message, "1");
            EXPECT_EQ(model.controls[1].spec.At(8), "");  // shown at the start alone
            model.controls[1].value = "typed";
        });
        const auto act = [](DialogModel& model, int button) { model.message = std::to_string(button); };
        EXPECT_TRUE(ShowMBStay(at.desk, BoxWith("&More|&Cancel", options), controls, act).Cancelled());
        EXPECT_EQ(controls[1].value, "typed");
        EXPECT_EQ(at.host.opened, 1);
        // Without anybody to act the dialog goes, ready to be shown again.
        controls[1].spec.Set(8, "True");
        at.host.WillPress("More");
        EXPECT_EQ(ShowMB(at.desk, BoxWith("&More|&Cancel", options), controls).button, 1);
        EXPECT_EQ(controls[1].spec.At(8), "");
        EXPECT_EQ(at.host.open, 0);
    }
}

TEST(AskText, CancelGivesNoText) {
    TestDesk at;
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].spec.Width(), 10000);
        EXPECT_EQ(model.controls[1].value, "before");
        model.controls[1].value = "a|b";
    });
    EXPECT_EQ(AskText(at.desk, "Name?", "before").text, "a|b");
    at.host.WillPress("Cancel", [](DialogModel& model) { model.controls[1].value = "typed"; });
    const dialogs::Asked asked = AskTextBig(at.desk, "Text?", "before");
    EXPECT_EQ(asked.text, "");
    EXPECT_TRUE(asked.pressed.Cancelled());
}

TEST(KeepLook, PlaceAndFontComeBack) {
    TestDesk at;
    Box box = BoxWith("0");
    box.name = "Sites";
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.place + model.font, "");
        model.place = "10|20|300|400";
        model.font = "DejaVu Sans|11|True|False";
    });
    ShowMB(at.desk, box);
    EXPECT_EQ(at.Entry("Sites", "MBPlace"), "10|20|300|400");
    EXPECT_EQ(at.Entry("MB formats", "MB all Fontname"), "DejaVu Sans");
    EXPECT_EQ(at.Entry("MB formats", "MB all Size"), "11");
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.place, "10|20|300|400");
        EXPECT_EQ(model.font, "DejaVu Sans|11|True|False");
        model.font = "Other|9|False|False";
    });
    box.options = "NoSaveFont|";
    ShowMB(at.desk, box);
    EXPECT_EQ(dialogs::FontGet(at.ini, {at.desk.screens}), "DejaVu Sans|11|True|False");
    // Another place in, nonsense out.
    ASSERT_TRUE(dialogs::FontCopy(at.ini, {at.desk.screens}, {at.desk.screens, "Reports"}));
    EXPECT_EQ(at.Entry("Reports", "MB all Bold"), "True");
    ASSERT_TRUE(at.ini.IniPut("Reports", "MB all Size", "9999", at.desk.screens));
    EXPECT_EQ(dialogs::FontGet(at.ini, {at.desk.screens, "Reports"}), "");
}

TEST(DialogUser, PutsTheQuestionsOfTheEngine) {
    TestDesk at;
    dialogs::DialogUser user(at.desk);
    at.host.WillPress("No", [](DialogModel& model) {
        EXPECT_EQ(model.options.icon, dialogs::Icon::Question);
        EXPECT_EQ(model.suppressCaption, "For &all");
        model.suppressTicked = true;
    });
    core::Answer answer =
        user.Ask({.message = "Go?", .buttons = "&Yes|&No", .checkBox = "For &all", .cancelButton = 2});
    EXPECT_EQ(answer.button, 2);
    EXPECT_TRUE(answer.boxTicked);
    EXPECT_TRUE(answer.Cancelled());
    at.host.WillPress("OK");
    user.Tell("Id", "Told");
    at.host.WillPress("Yes");
    answer = user.Ask({.message = "Go?", .buttons = "&Yes|&No"});
    EXPECT_EQ(answer.cancelButton, kNoCancel);
}

TEST(ShowSequence, GivesTheNewOrderOrNothing) {
    TestDesk at;
    const std::vector<std::string> list{"a|b", "", "{c}"};
    at.host.WillPress("Up", [](DialogModel& model) { model.controls[1].Select({1, 2}); });
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].Selected(), (std::vector<int>{0, 1}));
    });
    EXPECT_EQ(ShowSequence(at.desk, "Page", list), (std::vector<std::string>{"", "{c}", "a|b"}));
    EXPECT_EQ(at.host.shown[0].title, "Corvane - Sequence for Page");
    at.host.WillPress("Down", [](DialogModel& model) { model.controls[1].Select({0}); });
    at.host.WillPress("Cancel");
    EXPECT_FALSE(ShowSequence(at.desk, "Page", list).has_value());
    EXPECT_EQ(at.host.opened, 2);
}

TEST(ShowLong, PagesHoldTheWholeText) {
    std::string text;
    for (int line = 1; line <= 100; ++line) text += "line " + std::to_string(line) + (line % 2 ? "\r\n" : "\r");
    for (int i = 0; i < 10000; ++i) text += "\xC3\xA9";  // one line of letters of two bytes
    const std::vector<std::string> pages = dialogs::PagesOf(text);
    EXPECT_EQ(pages.size(), 6u);
    std::string joined;
    for (const std::string& page : pages) {
        EXPECT_NE(page.back(), '\xC3');
        joined += page;
    }
    EXPECT_EQ(joined, text);

    TestDesk at;
    const auto isAt = [](bool previous, bool next) {
        return [=](const DialogModel& model) {
            EXPECT_EQ(model.buttons[0].enabled, previous);
            EXPECT_EQ(model.buttons[1].enabled, next);
        };
    };
    at.host.WillPress("Next >", isAt(false, true));
    at.host.WillPress("Last >>", isAt(true, true));
    at.host.WillPress("< Prev", isAt(true, false));
    at.host.WillPress("OK", isAt(true, true));
    ShowLong(at.desk, text, "Log");
    EXPECT_EQ(at.host.shown[0].message, "Page 1 of 6.");
    EXPECT_EQ(at.host.shown[3].message, "Page 5 of 6.");
    at.host.WillPress("OK");
    ShowLong(at.desk, "");
    EXPECT_EQ(at.host.shown.back().message, "Page 1 of 1.");
}

TEST(ShowLongChecks, TicksOfAllPagesComeBackUnlessCancelled) {
    TestDesk at;
    std::vector<dialogs::LongCheck> checks(45);
    for (std::size_t i = 0; i < checks.size(); ++i) checks[i].caption = "R&D|" + std::to_string(i);
    const auto tick = [](int number) { return [=](DialogModel& model) { model.controls[number].value = "True"; }; };
    const auto show = [&] { return ShowLongChecks(at.desk, "Which?", checks); };
    at.host.WillPress("Next >", tick(20));
    at.host.WillPress("Cancel", tick(1));
    EXPECT_FALSE(show());
    EXPECT_FALSE(checks[19].checked || checks[20].checked);
    at.host.WillPress("Last >>", tick(20));
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(dialogs::PlainCaption(model.controls[5].caption), "R&D|44");
        EXPECT_EQ(model.controls.Count(), 5);
        model.controls[5].value = "True";
    });
    EXPECT_TRUE(show());
    EXPECT_TRUE(checks[19].checked && checks[44].checked && !checks[24].checked);
    EXPECT_EQ(at.host.shown[2].message, "Which?\rPage 1 of 3. none checked. ");
    EXPECT_EQ(at.host.shown[3].message, "Which?\rPage 3 of 3. 1 checked. ");
    checks.clear();
    at.host.WillPress("OK");
    EXPECT_TRUE(show());
}

}  // namespace
