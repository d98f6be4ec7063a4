#include "dialogs/longtext.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"

namespace dialogs {
namespace {

enum Button { kPrevious = 1, kNext, kLast, kClose };
constexpr std::string_view kButtons = "< &Prev|&Next >|Las&t >>|&OK";
constexpr std::string_view kSpec = "12000|8000|||||";
constexpr int kLinesOfPage = 40;
constexpr std::size_t kBytesOfPage = 8000;
constexpr std::size_t kBoxesOfPage = 20;

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

std::string CountLine(std::size_t page, std::size_t pages) {
    return "Page " + core::CountText(static_cast<double>(page + 1)) + " of " +
           core::CountText(static_cast<double>(pages)) + ".";
}

std::size_t PageAfter(std::size_t page, std::size_t pages, int button) {
    if (button == kPrevious) return page > 0 ? page - 1 : 0;
    return button == kNext ? std::min(page + 1, pages - 1) : pages - 1;
}

void EnableTurning(DialogModel& model, std::size_t page, std::size_t pages) {
    model.buttons[kPrevious - 1].enabled = page > 0;
    model.buttons[kNext - 1].enabled = model.buttons[kLast - 1].enabled = page + 1 < pages;
}

Controls BoxesOf(const std::vector<LongCheck>& checks, std::size_t page) {
    Controls boxes;
    for (std::size_t i = page * kBoxesOfPage; i < std::min(checks.size(), (page + 1) * kBoxesOfPage); ++i) {
        const int number = MBAddCtl("CheckBox", core::fBoolWord(checks[i].checked), "", boxes);
        boxes[number].caption = core::fReplace(checks[i].caption, "&", "&&");
    }
    return boxes;
}

std::string CheckedLine(const std::vector<LongCheck>& checks) {
    return ShownCount(static_cast<double>(std::ranges::count_if(checks, &LongCheck::checked))) + " checked. ";
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

void ShowLong(const Desk& desk, std::string_view text, std::string_view title) {
    const std::vector<std::string> pages = PagesOf(text);
    Controls controls;
    Control& shown = controls[MBAddCtl("TextBox", {}, MBSpec(kSpec), controls)];
    shown.readOnly = true;
    shown.caption = "Text";
    Box box;
    box.title = title;
    box.buttons = kButtons;
    box.options = option::NoHide("1|2|3", true, true) + option::DfltButton(kClose) + option::Esc(kClose);
    std::size_t page = 0;
    ShowMBStay(desk, box, controls, [&](DialogModel& model, int button) {
        if (button > 0) page = PageAfter(page, pages.size(), button);
        model.message = CountLine(page, pages.size());
        model.controls[1].value = pages[page];
        EnableTurning(model, page, pages.size());
    });
}

// A dialog for each page, where the one before it stood.
bool ShowLongChecks(const Desk& desk, std::string_view message, std::vector<LongCheck>& checks,
                    std::string_view title) {
    const std::vector<LongCheck> start = checks;
    const std::size_t pages = std::max<std::size_t>(1, (checks.size() + kBoxesOfPage - 1) / kBoxesOfPage);
    std::string place;
    for (std::size_t page = 0;;) {
        Box box;
        box.title = title;
        box.message = std::string(message) + "\r" + CountLine(page, pages) + " " + CheckedLine(checks);
        box.buttons = std::string(kButtons) + "|&Cancel";
        box.options = option::DfltButton(kClose);
        DialogModel model = BuildModel(desk, box, BoxesOf(checks, page));
        model.place = place;
        EnableTurning(model, page, pages);
        const int button = desk.host.Open(model)->Run();
        KeepLook(desk, model);
        place = model.place;
        for (int number = 1; number <= model.controls.Count(); ++number)
            checks[page * kBoxesOfPage + static_cast<std::size_t>(number - 1)].checked =
                model.controls[number].Ticked();
        if (button == kClose) return true;
        if (button > kClose) {
            checks = start;
            return false;
        }
        page = PageAfter(page, pages, button);
    }
}

}  // namespace dialogs
