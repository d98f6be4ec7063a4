#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include "desktop/listview.h"
#include "tests/desktop/modal.h"

namespace desktop {
namespace {

using dialogs::DialogModel;
using dialogs::Rows;

const Rows kFruits{{"apple"}, {"pear"}, {"plum|x"}};

DialogModel OkCancel(const std::string& message = "What now?") {
    DialogModel model = ModelWith({"&OK", "&Cancel"}, message);
    model.escButton = 2;
    return model;
}

TEST(DialogForm, ValuesComeBackAsTheyWentIn) {
    const struct {
        const char* type;
        const char* spec;
        const char* value;
        const char* out;
        Rows rows;
    } cases[] = {
        {"Label", "", "A label", "A label", {}},
        {"TextBox", "3000", "one line", "one line", {}},
        {"TextBox", "3000", "\x1b[1m \xff\r\nraw", "\x1b[1m \xff\r\nraw", {}},
        {"TextBox", "3000|4000", "two\rlines\t\x07", "two\rlines\t\x07", {}},
        {"CheckBox", "", "True", "True", {}},
        {"OptionButton", "", "False", "False", {}},
        {"ComboBox", "3000", "pear", "1|pear", kFruits},
        {"ComboBox", "3000", "2|plum|x", "2|plum|x", kFruits},
        {"ComboBox", "3000", "of my own", "-1|of my own", kFruits},
        {"ListBox", "3000|2000", "1", "1", kFruits},
        {"ListBox", "3000|2000", "-1", "-1", kFruits},
        {"ListBox", "3000|2000|||||||||||||True", "0|2", "0|2", kFruits},
        {"Grid", "3000|2000||||||||1", "0", "0", {{"Head"}, {"a"}, {"b"}}},
        {"CommandButton", "", "&Show", "&Show", {}},
        {"Line", "3000", "", "", {}},
        {"Shape", "300|300", "", "", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.type) + " " + c.value);
        DialogModel model = OkCancel();
        Add(model, c.type, c.value, c.spec, c.rows).caption = "It";
        const int ok = model.OwnButtons() + 1;
        EXPECT_EQ(RunWith(model, [](QWidget& dialog) { The<QPushButton>(dialog, "OK").click(); }), ok);
        EXPECT_EQ(model.controls[1].value, c.out);
    }
}

TEST(DialogForm, WhatAPersonEntersComesBackEvenOnCancel) {
    DialogModel model = OkCancel();
    Add(model, "TextBox", "old").caption = "Name";
    Add(model, "TextBox", "a\r\nb", "3000|3000").caption = "Lines";
    Add(model, "CheckBox", "False").caption = "&Tick me";
    Add(model, "OptionButton", "True").caption = "First";
    Add(model, "OptionButton", "False").caption = "Second";
    Add(model, "ComboBox", "apple", "", kFruits).caption = "Fruit";
    Add(model, "ListBox", "", "3000|2000|||||||||||||True", kFruits).caption = "Many";
    const int button = RunWith(model, [](QWidget& dialog) {
        The<QLineEdit>(dialog, "Name").setText(QStringLiteral("n\u00e9w"));
        The<QPlainTextEdit>(dialog, "Lines").setPlainText(QStringLiteral("1\n2"));
        The<QCheckBox>(dialog, "Tick me").click();
        The<QRadioButton>(dialog, "Second").click();
        The<QComboBox>(dialog, "Fruit").setEditText(QStringLiteral("cherry"));
        The<QAbstractItemView>(dialog, "Many").selectAll();
        The<QPushButton>(dialog, "Cancel").click();
    });
    EXPECT_EQ(button, 2);
    const char* expected[] = {"n\xc3\xa9w", "1\r\n2", "True", "False", "True", "-1|cherry", "0|1|2"};
    for (int number = 1; number <= 7; ++number) EXPECT_EQ(model.controls[number].value, expected[number - 1]);
}

TEST(DialogForm, OptionButtonsInAGroupAreAloneOn) {
    DialogModel model = OkCancel();
    for (const char* caption : {"A1", "A2"})
        Add(model, "OptionButton", caption[1] == '1' ? "True" : "False").caption = caption;
    Add(model, "Label", "and");
    for (const char* caption : {"B1", "B2"})
        Add(model, "OptionButton", caption[1] == '1' ? "True" : "False").caption = caption;
    RunWith(model, [](QWidget& dialog) {
        The<QRadioButton>(dialog, "A2").click();
        EXPECT_TRUE(The<QRadioButton>(dialog, "B1").isChecked());
        EXPECT_FALSE(The<QRadioButton>(dialog, "A1").isChecked());
        The<QPushButton>(dialog, "OK").click();
    });
    EXPECT_EQ(model.controls[2].value, "True");
    EXPECT_EQ(model.controls[4].value, "True");
}

TEST(DialogForm, ControlsFollowTheirBox) {
    DialogModel model = OkCancel();
    Add(model, "CheckBox", "False").caption = "Box";
    Add(model, "TextBox", "").caption = "With";
    Add(model, "TextBox", "").caption = "Against";
    model.followers.checks = {"2|-3"};
    dialogs::ApplyFollowers(model.followers, model.controls);
    RunWith(model, [](QWidget& dialog) {
        EXPECT_FALSE(The<QLineEdit>(dialog, "With").isEnabled());
        The<QCheckBox>(dialog, "Box").click();
        EXPECT_TRUE(The<QLineEdit>(dialog, "With").isEnabled());
        EXPECT_FALSE(The<QLineEdit>(dialog, "Against").isEnabled());
        The<QPushButton>(dialog, "OK").click();
    });
}

TEST(DialogForm, KeysPressButtons) {
    const struct {
        Qt::Key key;
        int esc, button;
    } cases[] = {{Qt::Key_Return, 2, 1}, {Qt::Key_Enter, 2, 1}, {Qt::Key_Escape, 2, 2}, {Qt::Key_F5, 2, 2}};
    for (const auto& c : cases) {
        DialogModel model = OkCancel();
        model.escButton = c.esc;
        model.options.keyHides = {{116, 2}};
        Add(model, "TextBox", "").caption = "Name";
        EXPECT_EQ(RunWith(model, [&](QWidget& dialog) { PressKey(dialog, c.key); }), c.button);
    }
}

TEST(DialogForm, EscapeWithoutItsButtonDoesNothing) {
    DialogModel model = OkCancel();
    model.escButton = 0;
    EXPECT_EQ(RunWith(model,
                      [](QWidget& dialog) {
                          PressKey(dialog, Qt::Key_Escape);
                          dialog.close();
                          EXPECT_TRUE(dialog.isVisible());
                          The<QPushButton>(dialog, "OK").click();
                      }),
              1);
}

TEST(DialogForm, EnterStaysInLines) {
    DialogModel model = OkCancel();
    Add(model, "TextBox", "ab", "3000|3000").caption = "Lines";
    RunWith(model, [](QWidget& dialog) {
        PressKey(dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(The<QPlainTextEdit>(dialog, "Lines").toPlainText().contains(u'\n'));
        The<QPushButton>(dialog, "Cancel").click();
    });
}

TEST(DialogForm, AButtonThatStaysLeavesTheDialogUp) {
    DialogModel model = ModelWith({"&New", "&Cancel"}, "Edit");
    model.options.stays = true;
    model.options.stayButtons = {1};
    Add(model, "ListBox", "0", "3000|2000", {{"first"}}).caption = "Items";
    QtDialogHost host;
    const auto window = host.Open(model);
    QWidget* seen = nullptr;
    EXPECT_EQ(RunWith(*window,
                      [&](QWidget& dialog) {
                          seen = &dialog;
                          The<QPushButton>(dialog, "New").click();
                      }),
              1);
    ASSERT_NE(seen, nullptr);
    EXPECT_TRUE(seen->isVisible());
    model.controls[1].rows = {{"first"}, {"second"}};
    model.controls[1].value = "1";
    model.problem = "Too many.";
    model.buttons[0].enabled = false;
    window->Update();
    EXPECT_EQ(RunWith(*window,
                      [&](QWidget& dialog) {
                          EXPECT_EQ(&dialog, seen);
                          EXPECT_EQ(The<QAbstractItemView>(dialog, "Items").model()->rowCount(), 2);
                          EXPECT_FALSE(The<QPushButton>(dialog, "New").isEnabled());
                          bool told = false;
                          for (const QLabel* label : dialog.findChildren<QLabel*>())
                              told = told || (label->text() == u"Too many." && label->isVisible());
                          EXPECT_TRUE(told);
                          The<QPushButton>(dialog, "Cancel").click();
                      }),
              2);
    EXPECT_FALSE(seen->isVisible());
    EXPECT_EQ(model.controls[1].value, "1");
}

TEST(DialogForm, OwnButtonsAreCountedFirst) {
    DialogModel model = ModelWith({"&OK"});
    Add(model, "CommandButton", "&Show options");
    EXPECT_EQ(RunWith(model, [](QWidget& dialog) { The<QPushButton>(dialog, "Show options").click(); }), 1);
    EXPECT_EQ(RunWith(model, [](QWidget& dialog) { The<QPushButton>(dialog, "OK").click(); }), 2);
}

TEST(DialogForm, CopyTakesTheMessageUnlessSomethingIsSelected) {
    DialogModel model = OkCancel("First\rsecond");
    Add(model, "TextBox", "entry").caption = "Name";
    RunWith(model, [](QWidget& dialog) {
        auto& name = The<QLineEdit>(dialog, "Name");
        name.selectAll();
        PressKey(dialog, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("entry"));
        name.deselect();
        PressKey(dialog, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("First\nsecond"));
        bool told = false;
        for (const QLabel* label : dialog.findChildren<QLabel*>())
            told = told || label->text() == QStringLiteral("Message text copied to clipboard.");
        EXPECT_TRUE(told);
        The<QPushButton>(dialog, "OK").click();
    });
}

TEST(DialogForm, TheSuppressBoxAndTheDetails) {
    DialogModel model = ModelWith({"&OK"}, "Done");
    model.suppressCaption = "Do &not Show this Message again";
    model.details = "line 1\rline 2";
    RunWith(model, [](QWidget& dialog) {
        The<QCheckBox>(dialog, "Do not Show this Message again").click();
        auto& details = The<QPlainTextEdit>(dialog, "Details");
        EXPECT_FALSE(details.isVisible());
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == u"Details") button->click();
        EXPECT_TRUE(details.isVisible());
        EXPECT_EQ(details.toPlainText(), QStringLiteral("line 1\nline 2"));
        The<QPushButton>(dialog, "OK").click();
    });
    EXPECT_TRUE(model.suppressTicked);
}

TEST(DialogForm, HelpIsAskedByItsId) {
    DialogModel model = ModelWith({"&OK"}, "Done");
    model.helpId = "EO";
    std::string asked;
    QtDialogHost host({}, [&](const std::string& id) { asked = id; });
    RunWith(*host.Open(model), [](QWidget& dialog) {
        PressKey(dialog, Qt::Key_F1);
        The<QPushButton>(dialog, "OK").click();
    });
    EXPECT_EQ(asked, "EO");
}

TEST(DialogForm, PlaceIsKeptAndUsedAgain) {
    DialogModel model = ModelWith({"&OK"}, "Done");
    model.name = "Parm";
    model.place = "40|50|500|300";
    RunWith(model, [](QWidget& dialog) {
        EXPECT_EQ(dialog.size(), QSize(500, 300));
        The<QPushButton>(dialog, "OK").click();
    });
    EXPECT_EQ(model.place, "40|50|500|300");
    model.place = "90000|-90000|1|1";
    RunWith(model, [](QWidget& dialog) {
        const QRect screen = dialog.screen()->geometry();
        EXPECT_EQ(screen.united(dialog.geometry()), screen);
        The<QPushButton>(dialog, "OK").click();
    });
}

TEST(DialogForm, TheFontGrowsByKey) {
    DialogModel model = OkCancel();
    Add(model, "TextBox", "kept").caption = "Name";
    QtDialogHost host;
    const auto window = host.Open(model);
    double before = 0;
    RunWith(*window, [&](QWidget& dialog) {
        before = dialog.font().pointSizeF();
        The<QLineEdit>(dialog, "Name").setText(QStringLiteral("typed"));
        PressKey(dialog, Qt::Key_Plus, Qt::ControlModifier);
        QTimer::singleShot(0, &dialog, [&dialog, &before] {
            EXPECT_GT(The<QLineEdit>(dialog, "Name").font().pointSizeF(), before);
            The<QPushButton>(dialog, "OK").click();
        });
    });
    EXPECT_EQ(model.controls[1].value, "typed");
    EXPECT_FALSE(model.font.empty());
}

DialogModel EveryControl() {
    DialogModel model = OkCancel();
    Add(model, "Label", "#H160#Name of site:");
    Add(model, "TextBox_", "", "4000");
    Add(model, "Label", "Log file:");
    Add(model, "TextBox_", "").pick = dialogs::Pick::OpenFile;
    Add(model, "CheckBox", "True").caption = "&Keep it";
    Add(model, "OptionButton", "True").caption = "All";
    Add(model, "OptionButton_", "False").caption = "Some";
    Add(model, "Label", "Fruit:");
    Add(model, "ComboBox_", "", "", kFruits);
    Add(model, "ListBox", "", "3000|1500", kFruits);
    Add(model, "Grid_", "", "3000|1500||||||||1||{1000|0}||||", {{"A", "B"}, {"a", "b"}}).caption = "Table";
    Add(model, "CommandButton", "&More");
    return model;
}

TEST(DialogForm, EveryControlHasAName) {
    DialogModel model = EveryControl();
    RunWith(model, [](QWidget& dialog) {
        for (QWidget* widget : dialog.findChildren<QWidget*>()) {
            const bool inner =
                widget->parentWidget()->inherits("QComboBox") || widget->parentWidget()->inherits("QAbstractItemView");
            if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !widget->isVisible() || inner) continue;
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
        }
        The<QLineEdit>(dialog, "Name of site");
        The<QPushButton>(dialog, "Browse for Log file");
        The<QComboBox>(dialog, "Fruit");
        The<QAbstractItemView>(dialog, "ListBox");
        The<QAbstractItemView>(dialog, "Table");
        EXPECT_EQ(dialog.focusWidget(), &The<QLineEdit>(dialog, "Name of site"));
        const auto labels = dialog.findChildren<QLabel*>();
        const bool buddy = std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->text() == u"&Name of site:" && label->buddy() == dialog.focusWidget();
        });
        EXPECT_TRUE(buddy);
        The<QPushButton>(dialog, "OK").click();
    });
}

TEST(DialogForm, FocusGoesAsTheEyeDoes) {
    DialogModel model = EveryControl();
    RunWith(model, [](QWidget& dialog) {
        std::vector<QPoint> places;
        QWidget* first = dialog.focusWidget();
        QWidget* now = first;
        do {
            places.push_back(now->mapTo(&dialog, QPoint(0, 0)));
            QTest::keyClick(now, Qt::Key_Tab);
            now = dialog.focusWidget();
        } while (now != first && places.size() < 30);
        EXPECT_GE(places.size(), 9U);
        constexpr int kSameLine = 30;
        for (std::size_t i = 1; i < places.size(); ++i) {
            const bool below = places[i].y() > places[i - 1].y() - kSameLine;
            const bool right = places[i].x() > places[i - 1].x();
            EXPECT_TRUE(below || right) << i;
            EXPECT_TRUE(right || places[i].y() > places[i - 1].y()) << i;
        }
        The<QPushButton>(dialog, "OK").click();
    });
}

TEST(DialogForm, AHugeSpecStaysOnTheScreen) {
    DialogModel model = OkCancel(std::string(60000, 'x') + "\r" + std::string(20000, '\r'));
    model.options.fixedWidth = model.options.minHeight = 2000000;
    Add(model, "TextBox", "", "900000|900000").caption = "Big";
    Add(model, "ListBox", "", "900000|900000", kFruits).caption = "List";
    Add(model, "Label", "wide", "900000");
    for (int i = 0; i < 60; ++i) Add(model, "CheckBox", "True").caption = "Box";
    RunWith(model, [](QWidget& dialog) {
        EXPECT_LE(dialog.width(), dialog.screen()->availableSize().width());
        EXPECT_LE(dialog.height(), dialog.screen()->availableSize().height());
        EXPECT_TRUE(The<QPushButton>(dialog, "OK").isVisible());
        The<QPushButton>(dialog, "OK").click();
    });
}

TEST(DialogForm, AnEndFromOutsideIsNoYes) {
    DialogModel model = ModelWith({"&Yes", "&No"}, "Remove it?");
    EXPECT_EQ(RunWith(model, [](QWidget&) { QCoreApplication::exit(0); }), 2);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);  // a whole run takes the exit back for the tests behind
    QCoreApplication::exec();
}

TEST(DialogForm, ShowsAtOnceWhatAnEntryDoes) {
    DialogModel model = OkCancel();
    Add(model, "TextBox", "a", "3000").caption = "Entry";
    Add(model, "Label", "");
    Add(model, "ListBox", "-1", "3000|2000").caption = "Lines";
    int calls = 0;
    model.live = [&](dialogs::Controls& controls) {
        ++calls;
        controls[2].value = "is " + controls[1].value;
        controls[3].rows = {{controls[1].value}, {"always"}};
    };
    RunWith(model, [&](QWidget& dialog) {
        EXPECT_EQ(calls, 1);
        auto& entry = The<QLineEdit>(dialog, "Entry");
        entry.deselect();
        QTest::keyClicks(&entry, "bc");
        EXPECT_TRUE(QTest::qWaitFor([&] { return calls > 1; }, 3000));
        bool shown = false;
        for (const QLabel* label : dialog.findChildren<QLabel*>())
            shown = shown || label->text() == QLatin1String("is abc");
        EXPECT_TRUE(shown);
        EXPECT_EQ(entry.text(), QStringLiteral("abc"));
        The<QPushButton>(dialog, "OK").click();
    });
    EXPECT_EQ(calls, 2);  // no call for what it set itself
    EXPECT_EQ(model.controls[3].rows.front().front(), "abc");
}

}  // namespace
}  // namespace desktop
