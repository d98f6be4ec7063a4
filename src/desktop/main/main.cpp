#include <QApplication>
#include <QIcon>
#include <QStyleFactory>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "desktop/application.h"
#include "desktop/look.h"

namespace {

constexpr const char* kHelp =
    "usage: corvane [--home DIR] [FILE...]\n"
    "\n"
    "Reads the logs of your web server and reports what visitors searched for and looked at.\n"
    "\n"
    "  --home DIR   data home (default: $CORVANE_HOME, $XDG_DATA_HOME/corvane)\n"
    "  FILE...      raw logs, offered for adding once the program has started\n"
    "  /1UNINST     offer to move all site databases to the recycled folder, and end\n"
    "  --help       this text\n"
    "  --version    the version\n"
    "\n"
    "corvane-cli does the same work without a window.\n";

struct Arguments {
    std::string home{};
    std::vector<std::string> rest{};
    std::string wrong{};
    bool help = false, version = false;
};

Arguments Read(int count, char** texts) {
    Arguments read;
    for (int i = 1; i < count; ++i) {
        const std::string text = texts[i];
        if (text == "--help" || text == "-h")
            read.help = true;
        else if (text == "--version")
            read.version = true;
        else if (text == "--home" && i + 1 < count)
            read.home = texts[++i];
        else if (text.starts_with("--home="))
            read.home = text.substr(text.find('=') + 1);
        else if (text.starts_with("-"))
            read.wrong = text;
        else
            read.rest.push_back(text);
    }
    return read;
}

int Fail(const std::string& text, int status) {
    std::fprintf(stderr, "corvane: %s\n", text.c_str());
    return status;
}

void SetUp(const std::string& shared) {
    QApplication::setPalette(desktop::WithReadableHints(QApplication::palette()));
    QCoreApplication::setApplicationName(QStringLiteral("corvane"));
    QGuiApplication::setDesktopFileName(QStringLiteral("corvane"));
    QIcon icon;
    for (const int size : {16, 32, 48, 128, 256})
        icon.addFile(QStringLiteral("%1/icons/corvane-%2.png").arg(QString::fromStdString(shared)).arg(size));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("corvane"), icon));
}

int RunProgram(int count, char** texts, const Arguments& arguments) {
    constexpr int kWrongUsage = 2;
    QApplication toolkit(count, texts);
    const shell::Places places{shell::DataHome(arguments.home),
                               shell::SharedFolder(CORVANE_SHARE, CORVANE_SOURCE_SHARE)};
    if (places.home.empty())
        return Fail("there is no data home: set HOME, or name a folder with --home DIR.", kWrongUsage);
    SetUp(places.shared);
    desktop::Application application(places, CORVANE_VERSION);
    return application.Run(arguments.rest);
}

}  // namespace

int main(int count, char** texts) {
    const Arguments arguments = Read(count, texts);
    if (arguments.help) return std::fputs(kHelp, stdout) < 0 ? 1 : 0;
    if (arguments.version) return std::puts("corvane " CORVANE_VERSION) < 0 ? 1 : 0;
    if (!arguments.wrong.empty()) return Fail("there is no option " + arguments.wrong + ". Help: corvane --help", 2);
    try {
        return RunProgram(count, texts, arguments);
    } catch (const std::exception& error) {
        return Fail(error.what(), 1);
    }
}
