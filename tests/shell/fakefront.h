#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/errlog.h"
#include "reports/reportmodel.h"
#include "shell/shell.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempfolder.h"

namespace testsupport {

// A report that nobody sees.
class FakeReport final : public shell::ReportWindow {
public:
    explicit FakeReport(std::unique_ptr<reports::ReportModel> report) : report_(std::move(report)) {}

    std::optional<std::size_t> line{};
    int column = 0, gridChanges = 0, chartChanges = 0;
    std::vector<std::string> pictures{};
    core::Result saved{};

    reports::ReportModel& Report() override { return *report_; }
    std::optional<std::size_t> SelectedLine() const override { return line; }
    int SelectedColumn() const override { return column; }
    void GridChanged() override { ++gridChanges; }
    void ChartChanged() override { ++chartChanges; }
    core::Result SavePicture(const std::string& path) override {
        pictures.push_back(path);
        return saved;
    }
    // Selects the line of this left cell.
    void Select(std::string_view leftCell) {
        const auto& rows = report_->Grid().rows;
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (rows[i].cells.at(0) == leftCell) line = i;
        EXPECT_TRUE(line) << leftCell;
    }

private:
    std::unique_ptr<reports::ReportModel> report_;
};

class FakeFront final : public shell::Front {
public:
    int mainShown = 0, reportsClosed = 0, quits = 0, optionsChanged = 0;
    std::string caption{}, windowId{};
    std::vector<std::string> helpShown{};
    std::vector<std::unique_ptr<FakeReport>> reports{};
    std::vector<shell::Arrange> arranged{};
    bool hasHelp = true;

    void ShowMain() override { ++mainShown; }
    void SetCaption(std::string_view text) override { caption = text; }
    void OpenReport(std::unique_ptr<reports::ReportModel> report) override {
        reports.push_back(std::make_unique<FakeReport>(std::move(report)));
        windowId = "1|STLst";
    }
    void CloseReports() override {
        ++reportsClosed;
        reports.clear();
        windowId.clear();
    }
    shell::ReportWindow* ActiveReport() override { return reports.empty() ? nullptr : reports.back().get(); }
    std::string ActiveWindowId() const override { return windowId; }
    void ArrangeWindows(shell::Arrange how) override { arranged.push_back(how); }
    bool ShowHelp(const std::string& page, const std::string& anchor) override {
        helpShown.push_back(page + "#" + anchor);
        return hasHelp;
    }
    bool OpenDocument(const std::string&) override { return true; }
    void OptionsChanged() override { ++optionsChanged; }
    void Quit() override { ++quits; }
};

class FakeView final : public dialogs::ProgressView {
public:
    int hidden = 0;
    void Show(const dialogs::ProgressReports&) override {}
    void Hide() override { ++hidden; }
    void Pump() override {}
};

// Presses buttons of the plain box from a script; an unexpected box fails the test.
class FakeBox final : public shell::PlainBox {
public:
    std::deque<int> script{};
    std::vector<shell::PlainMessage> shown{};
    bool fails = false;  // throws instead of being shown

    int Ask(const shell::PlainMessage& message) override {
        if (fails) throw std::runtime_error("no box");
        shown.push_back(message);
        if (script.empty()) {
            ADD_FAILURE() << "unexpected box: " << message.text;
            return 1;
        }
        const int button = script.front();
        script.pop_front();
        return button;
    }
    core::EventPlace ActivePlace() override {
        if (fails) throw std::runtime_error("no form");
        return {"Corvane", "List", "2"};
    }
};

// The whole program without a window over a fresh data home.
class TestShell {
public:
    TestShell() { Restart(); }

    void Restart() {
        shell.reset();
        shell = std::make_unique<shell::Shell>(shell::Places{home, PARAMS_DIR},
                                               shell::Shell::Outside{front, host, view, box}, "0.1");
    }
    bool Load(const std::vector<std::string>& arguments = {}) { return shell->MDIForm_Load(arguments); }
    // Starts with the first site made.
    void LoadFirst(const std::string& name = "Shop") {
        host.WillPress("OK", Enter(name));
        ASSERT_TRUE(Load());
    }
    // Starts with "Shop" open and "Other" on the list.
    void LoadWithTwoSites() {
        ASSERT_TRUE(shell->TheSession().Prepare().ok);
        sitedb::SiteOptions options;
        for (const char* name : {"Other", "Shop"}) {
            options.name = name;
            ASSERT_TRUE(Sites().Site_Create(options).result.ok);
        }
        ASSERT_TRUE(Load());
    }
    // Enters a text into the first text box.
    static ScriptedHost::Fill Enter(const std::string& text) {
        return [text](dialogs::DialogModel& model) {
            for (dialogs::Control& control : model.controls.All()) {
                if (!control.Is(dialogs::ControlType::TextBox)) continue;
                control.value = text;
                return;
            }
            ADD_FAILURE() << "no text box: " << model.title;
        };
    }
    // Selects a row of the first list.
    static ScriptedHost::Fill Choose(const std::string& row) {
        return [row](dialogs::DialogModel& model) {
            for (dialogs::Control& control : model.controls.All()) {
                if (!control.Is(dialogs::ControlType::ListBox)) continue;
                for (std::size_t i = 0; i < control.rows.size(); ++i)
                    if (control.rows[i][0] == row) control.value = std::to_string(i);
                return;
            }
            ADD_FAILURE() << "no list: " << model.title;
        };
    }
    bool Showed(const std::string& text) const {
        for (const ScriptedHost::Shown& shown : host.shown)
            if ((shown.message + shown.problem).find(text) != std::string::npos) return true;
        return false;
    }
    sitedb::Sites& Sites() { return shell->TheSession().Sites(); }
    std::vector<core::EventRecord> Recorded() {
        const core::EventLog& events = shell->TheSession().Env().events;
        return core::ReadEventRecords(events.Tail());
    }

    TempFolder folder{};
    std::string home = folder.File("home");
    ScriptedHost host{};
    FakeFront front{};
    FakeView view{};
    FakeBox box{};
    std::unique_ptr<shell::Shell> shell{};
};

}  // namespace testsupport
