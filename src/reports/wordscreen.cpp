#include "reports/wordscreen.h"

#include "core/numbers.h"
#include "reports/words.h"

namespace reports {

void pShowWordFrequencies(const dialogs::Desk& desk, const ReportGrid& grid) {
    constexpr int kOk = 1;
    for (int length = 1;;) {
        dialogs::Rows rows;
        for (const WordCount& word : WordFrequencies(grid, length))
            rows.push_back({word.text + " - " + core::NumText(word.count)});
        dialogs::Controls controls;
        const int list = dialogs::MBAddCtl("ListBox", "-1", dialogs::MBSpec("9000|5400"), controls, std::move(rows));
        controls[list].caption = "Word combinations and their users";
        controls[list].emptyText = "No search term of this report has so many words.";
        const std::string title = FrequencyTitle(length);
        const dialogs::Box box{.message = title,
                               .buttons = "&OK|&1 Word|&2 Words|&3 Words|&4 Words",
                               .title = title,
                               .escNo = kOk,
                               .name = "WordFrequencies",
                               .helpId = "Frequencies"};
        const dialogs::Pressed pressed = dialogs::ShowMB(desk, box, controls);
        if (pressed.button <= kOk || pressed.button > kOk + kMostFrequencyWords) return;
        length = pressed.button - kOk;
    }
}

}  // namespace reports
