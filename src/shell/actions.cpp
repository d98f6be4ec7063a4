#include "shell/actions.h"

#include <exception>
#include <new>

#include "core/error.h"
#include "sitedb/storeerror.h"

namespace shell {
namespace {

class Busy {
public:
    explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
    ~Busy() { flag_ = false; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    bool& flag_;
};

}  // namespace

std::string Actions::HelpIdOf(std::string_view control) { return std::string(control.substr(control.find('_') + 1)); }

void Actions::Opened(std::string_view menu) {
    if (!dBusy_) dHelpID_ = HelpIdOf(menu);
}

NextStep Actions::Run(std::string_view control, const std::function<void()>& body) {
    if (dBusy_) return NextStep::GoOn;
    dHelpID_ = HelpIdOf(control);
    return Trap(control, body);
}

NextStep Actions::Trap(std::string_view event, const std::function<void()>& body, FailedForm form) {
    if (dBusy_) return NextStep::GoOn;
    const Busy busy(dBusy_);
    std::string expected;
    try {
        body();
    } catch (const core::Stopped&) {  // the user's own wish; the job has said what was kept
    } catch (const sitedb::StoreError& error) {
        expected = error.what();
    } catch (const std::bad_alloc&) {
        expected = "There is not enough memory for this.";
    } catch (const core::ErrorNumber& error) {
        return failures_.Handle(error.number(), event, error.what(), form);
    } catch (const std::exception& error) {
        return failures_.Handle(0, event, error.what(), form);
    } catch (...) {
        return failures_.Handle(0, event, "", form);
    }
    if (expected.empty()) return NextStep::GoOn;
    try {
        user_.Tell("StoreFailed", expected + "\r\rWhat was stored before stands as it was.");
    } catch (const std::exception& error) {
        return failures_.Handle(0, event, error.what(), form);
    }
    return NextStep::GoOn;
}

}  // namespace shell
