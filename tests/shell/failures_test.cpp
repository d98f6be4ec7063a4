#include "shell/failures.h"

#include <gtest/gtest.h>

#include <string>

#include "core/error.h"
#include "sitedb/storeerror.h"
#include "tests/shell/fakefront.h"

namespace shell {
namespace {

using testsupport::TestShell;

class FailuresTest : public testing::Test {
protected:
    FailuresTest() { test.LoadFirst(); }
    Failures& failures() { return test.shell->TheFailures(); }

    TestShell test{};
};

TEST_F(FailuresTest, ARaisedErrorIsOneRecordAndOneBoxAndTheProgramGoesOn) {
    test.box.script = {1};
    EXPECT_TRUE(test.shell->Trap("Proc", [] { throw core::ErrorNumber(9711, "MBCtl"); }));
    ASSERT_EQ(test.Recorded().size(), 1U);
    const core::EventRecord record = test.Recorded()[0];
    EXPECT_EQ(record.number, 9711);
    EXPECT_EQ(record.event, "Proc");
    EXPECT_EQ(record.place.form + record.place.control + record.place.controlIndex, "CorvaneList2");
    EXPECT_TRUE(test.box.shown[0].text.ends_with(
        " Press OK to terminate this Action and continue. Press Cancel to End this system."));
    EXPECT_NE(test.box.shown[0].text.find("MBCtl"), std::string::npos);
    EXPECT_EQ(test.box.shown[0].details, record.message);
    EXPECT_EQ(test.front.quits, 0);
    EXPECT_FALSE(test.shell->dBusy());
}

TEST_F(FailuresTest, CancelEndsTheProgramAndDebugAsksOnlyThen) {
    const auto fail = [&] { return failures().Handle(9, "Proc", "x"); };
    test.box.script = {2, 1};
    EXPECT_FALSE(test.shell->Trap("Proc", [] { throw std::runtime_error("x"); }));
    EXPECT_EQ(test.front.quits, 1);
    EXPECT_EQ(test.box.shown.back().text, "This system will now be terminated. All unsaved data will be lost.");
    failures().SetDebug(Failures::Debug::On);
    test.box.script = {1};
    EXPECT_EQ(fail(), NextStep::GoOn);
    test.box.script = {2, 3};  // counts as OK
    EXPECT_EQ(fail(), NextStep::GoOn);
    test.box.script = {2, 1, 1};
    EXPECT_EQ(fail(), NextStep::EndProgram);
    test.box.script = {2, 2};  // no more debugging
    EXPECT_EQ(fail(), NextStep::GoOn);
    test.box.script = {2, 1};
    EXPECT_EQ(fail(), NextStep::EndProgram);
}

TEST_F(FailuresTest, WhatFailedDecidesWhatIsClosed) {
    const struct {
        const char* proc;
        FailedForm form;
        NextStep next;
        std::size_t boxes;
    } cases[] = {
        {"Grid_Click", FailedForm::Child, NextStep::CloseForm, 1},
        {"Form_Load", FailedForm::Child, NextStep::CloseForm, 1},
        {"Form_Paint", FailedForm::Child, NextStep::GoOn, 1},
        {"cmbCOMBOx", FailedForm::Child, NextStep::GoOn, 1},
        {"Sum - This module will skip the current step and continue.", FailedForm::Child, NextStep::GoOn, 1},
        {"fMnu_FW", FailedForm::Main, NextStep::GoOn, 1},
        {"MDIForm_Load", FailedForm::MainLoad, NextStep::EndProgram, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.proc);
        test.box.shown.clear();
        test.box.script.assign(c.boxes, 1);
        EXPECT_EQ(failures().Handle(40000, c.proc, "", c.form), c.next);
        EXPECT_EQ(test.box.shown.size(), c.boxes);
    }
    EXPECT_NE(test.Recorded().at(0).message.find("<<40000 - Windows Error>>."), std::string::npos);
}

TEST_F(FailuresTest, ModesHoldForOneFailure) {
    failures().SetMode(Failures::Mode::SilentOnce);
    EXPECT_EQ(failures().Handle(9, "P", "", FailedForm::Child), NextStep::CloseForm);
    failures().SetMode(Failures::Mode::LogOnly);
    EXPECT_EQ(failures().Handle(9, "P", "", FailedForm::Child), NextStep::GoOn);
    EXPECT_EQ(test.box.shown.size(), 0U);
    test.box.script = {1};
    failures().Handle(9, "P", "");
    EXPECT_EQ(test.Recorded().size(), 3U);
}

TEST_F(FailuresTest, AFailingBoxLeavesARecordInTheFallbackFile) {
    test.box.fails = true;
    EXPECT_FALSE(test.shell->Trap("Proc", [] { throw core::ErrorNumber(1001, "where"); }));
    EXPECT_EQ(test.Recorded().size(), 1U);
    const std::string fallback = test.folder.Read("home/errors.log");
    EXPECT_NE(fallback.find("1001 Error in ErrorHandler <<<Logged event"), std::string::npos);
    EXPECT_NE(fallback.find("Error Handler did not process an error correctly."), std::string::npos);
}

TEST_F(FailuresTest, AnExpectedFailureOfTheStoreIsAMessageAndTheUsersStopIsNothing) {
    test.host.WillPress("OK");
    EXPECT_TRUE(test.shell->Trap("P", [] { throw sitedb::StoreError(3051, 13, "The disk is full."); }));
    EXPECT_TRUE(test.shell->Trap("P", [] { throw core::Stopped("PIStep"); }));
    EXPECT_TRUE(test.Showed("The disk is full."));
    EXPECT_EQ(test.Recorded().size(), 0U);
    EXPECT_TRUE(test.host.Done());
}

TEST_F(FailuresTest, ACommandWhileAnotherRunsDoesNothingAtAll) {
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_EO");
    const int opened = test.host.opened;
    test.shell->Trap("Job", [&] {
        EXPECT_TRUE(test.shell->dBusy());
        test.shell->Run("fMnu_FS");
        test.shell->AddFiles({"/x"});
        test.shell->MenuOpened("fMnu_F");
        test.shell->Run("fMnu_HC");
        test.shell->MDIForm_Activate();
    });
    EXPECT_EQ(test.shell->dHelpID(), "EO");
    EXPECT_EQ(test.host.opened, opened);
    EXPECT_TRUE(test.front.helpShown.empty());
    EXPECT_FALSE(test.shell->dBusy());
}

}  // namespace
}  // namespace shell
