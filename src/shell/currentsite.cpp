#include "shell/currentsite.h"

#include "core/error.h"

namespace shell {
namespace {

constexpr std::string_view kCaption = " - Current Site DB: ";
constexpr std::string_view kProgTitle = "Corvane";

}  // namespace

bool CurrentSite::pOpenCurSite() {
    Close();
    Session::Opened opened = session_.Open("");
    site_ = std::move(opened.site);
    failure_ = std::move(opened.failure);
    front_.SetCaption(site_ ? site_->Options().name + std::string(kCaption) + std::string(kProgTitle)
                            : std::string(kProgTitle));
    return site_ != nullptr;
}

std::string CurrentSite::Check() {
    if (!site_) return failure_.error.empty() ? "No site is open." : failure_.error;
    try {
        sitedb::Statement query = site_->Db().Prepare("SELECT * FROM visit");
        query.Step();
    } catch (const core::Stopped&) {
        throw;
    } catch (const core::ErrorNumber& error) {  // a database that cannot be read has a dialog of its own
        return error.what();
    }
    return {};
}

void CurrentSite::Close() { site_.reset(); }

core::Result CurrentSite::Change(std::string_view name) {
    const std::string oldFolder = session_.Sites().CurrentFolder();
    if (core::Result selected = session_.Sites().Site_Select(name); !selected) return selected;
    return OpenInstead(oldFolder);
}

core::Result CurrentSite::Create(const sitedb::SiteOptions& options) {
    const std::string oldFolder = session_.Sites().CurrentFolder();
    const sitedb::Sites::Created created = session_.Sites().Site_Create(options);
    if (!created.result) return created.result;
    return OpenInstead(oldFolder);
}

core::Result CurrentSite::OpenInstead(const std::string& oldFolder) {
    front_.CloseReports();
    if (pOpenCurSite()) return {};
    const std::string why = failure_.error;
    if (!oldFolder.empty() && session_.Sites().MakeCurrent(oldFolder)) pOpenCurSite();
    return {false, "Database NOT changed.\r\rProblem Details:\r" + why};
}

}  // namespace shell
