#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>

// The widgets need an application, and no test needs a screen.
int main(int count, char** arguments) {
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication application(count, arguments);
    ::testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
