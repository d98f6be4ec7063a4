#include "dialogs/longtext.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "core/numbers.h"
#include "core/utf8.h"

namespace dialogs {
namespace {

enum Button { kPrevious = 1, kNext, kLast, kClose };
constexpr std::string_view kButtons = "< &Prev|&Next >|Las&t >>|&OK";
constexpr std::string_view kSpec = "12000|8000|||||";
constexpr int kLinesOfPage = 40;
constexpr std::size_t kBytesOfPage = 8000;

// Bytes of the first line with its end; a line ends with CR, LF or both.
std::size_t LineLength(std::string_view text) {
    const std::size_t end = text.find_first_of("\r\n");
    if (end == std::string_view::npos) return text.size();
    return text.substr(end).starts_with("\r\n") ? end + 2 : end + 1;
}

std::size_t PageLength(std::string_view text) {
    std::size_t length = 0;
    for (int line = 0; line < kLinesOfPage && length < text.size(); ++line) {
        const std::size_t next = LineLength(text.substr(length));
        if (length + next > kBytesOfPage) break;
        length += next;
    }
    return length > 0 ? length : std::max<std::size_t>(1, core::CutUtf8(text, kBytesOfPage).size());
}

std::string CountLine(std::size_t page, std::size_t pages, std::optional<int> checked) {
    std::string line = "Page " + core::CountText(static_cast<double>(page + 1)) + " of " +
                       core::CountText(static_cast<double>(pages)) + ".";
    return checked ? line + " " + ShownCount(*checked) + " checked. " : line;
}

std::size_t PageAfter(std::size_t page, std::size_t pages, int button) {
    if (button == kPrevious) return page > 0 ? page - 1 : 0;
    return button == kNext ? std::min(page + 1, pages - 1) : pages - 1;
}

void ShowPage(DialogModel& model, const std::vector<std::string>& pages, std::size_t page, std::optional<int> checked) {
    model.message = CountLine(page, pages.size(), checked);
    model.controls[1].value = pages[page];
    model.buttons[kPrevious - 1].enabled = page > 0;
    model.buttons[kNext - 1].enabled = model.buttons[kLast - 1].enabled = page + 1 < pages.size();
}

}  // namespace

std::string ShownCount(double count) { return count > 0 ? core::CountText(count) : "none"; }

std::vector<std::string> PagesOf(std::string_view text) {
    std::vector<std::string> pages;
    while (!text.empty()) {
        const std::size_t length = PageLength(text);
        pages.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    if (pages.empty()) pages.emplace_back();
    return pages;
}

void ShowLong(const Desk& desk, std::string_view text, std::string_view title, std::optional<int> checked) {
    const std::vector<std::string> pages = PagesOf(text);
    Controls controls;
    Control& shown = controls[MBAddCtl("TextBox", {}, MBSpec(kSpec), controls)];
    shown.readOnly = true;
    shown.caption = "Text";
    Box box;
    box.title = title;
    box.buttons = kButtons;
    box.options = option::NoHide("1|2|3", true, true) + option::DfltButton(kClose) + option::Esc(kClose);
    DialogModel model = BuildModel(desk, box, std::move(controls));
    std::size_t page = 0;
    ShowPage(model, pages, page, checked);
    const std::unique_ptr<DialogWindow> window = desk.host.Open(model);
    for (int button = window->Run(); button != kClose; button = window->Run()) {
        page = PageAfter(page, pages.size(), button);
        ShowPage(model, pages, page, checked);
        window->Update();
    }
    KeepLook(desk, model);
}

}  // namespace dialogs
