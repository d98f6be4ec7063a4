#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "desktop/dialoghost.h"
#include "desktop/text.h"

namespace desktop {

inline dialogs::DialogModel ModelWith(const std::vector<std::string>& captions, const std::string& message = {}) {
    dialogs::DialogModel model;
    model.title = "A title";
    model.message = message;
    for (const std::string& caption : captions) model.buttons.push_back({.caption = caption});
    return model;
}

inline dialogs::Control& Add(dialogs::DialogModel& model, const std::string& type, const std::string& value,
                             const std::string& spec = {}, dialogs::Rows rows = {}) {
    const int number = dialogs::MBAddCtl(type, value, dialogs::MBSpec(spec), model.controls, std::move(rows));
    return model.controls[number];
}

// Runs a window's loop and does `act` on the dialog once it is up. A dialog that `act` leaves open fails the test.
inline int RunWith(dialogs::DialogWindow& window, const std::function<void(QWidget&)>& act) {
    bool ran = false;
    QTimer::singleShot(0, qApp, [&act, &ran] {
        ran = true;
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        act(*dialog);
    });
    QTimer tooLong;
    tooLong.setSingleShot(true);
    QObject::connect(&tooLong, &QTimer::timeout, [] {
        ADD_FAILURE() << "the dialog stays open";
        QCoreApplication::exit(1);
    });
    constexpr int kMs = 8000;
    tooLong.start(kMs);
    const int button = window.Run();
    EXPECT_TRUE(ran);
    return button;
}

inline int RunWith(dialogs::DialogModel& model, const std::function<void(QWidget&)>& act) {
    QtDialogHost host;
    const auto window = host.Open(model);
    return RunWith(*window, act);
}

template <class Widget>
Widget& The(QWidget& dialog, const char* accessibleName) {
    for (Widget* widget : dialog.findChildren<Widget*>())
        if (widget->accessibleName() == QLatin1String(accessibleName)) return *widget;
    ADD_FAILURE() << "nothing is called " << accessibleName;
    throw std::runtime_error("no such widget");
}

inline void PressKey(QWidget& dialog, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* on = dialog.focusWidget() != nullptr ? dialog.focusWidget() : &dialog;
    QTest::keyClick(on, key, modifiers);
}

}  // namespace desktop
