#include "reports/fieldtable.h"

#include "core/utf8.h"

namespace reports {
namespace {

// Letters to add, drop or change to make one word of the other.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t corner = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = corner + (a[i - 1] == b[j - 1] ? 0 : 1);
            corner = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
        }
    }
    return row[b.size()];
}

constexpr std::size_t kLongestWord = 40;

}  // namespace

const FieldRow* FindField(int code) {
    const auto row = std::ranges::find(kFieldTable, code, &FieldRow::code);
    return row == kFieldTable.end() ? nullptr : &*row;
}

std::string_view FieldName(int code) {
    const FieldRow* row = FindField(code);
    return row == nullptr ? std::string_view() : row->name;
}

const FieldRow* FieldOfWord(std::string_view text) {
    const std::string word = core::LowerAscii(text);
    for (const FieldRow& row : kFieldTable)
        if (!row.word.empty() && (word == row.word || word == std::to_string(row.code))) return &row;
    return nullptr;
}

std::vector<std::string> SuggestFields(std::string_view text) {
    const std::string word = core::LowerAscii(text.substr(0, kLongestWord));
    std::vector<std::pair<std::size_t, std::string>> near;
    std::vector<std::string> all;
    for (const FieldRow& row : kFieldTable) {
        if (row.word.empty()) continue;
        all.emplace_back(row.word);
        const bool part = word.size() > 2 &&
                          (row.word.find(word) != std::string_view::npos || word.find(row.word) != std::string::npos);
        const std::size_t distance = part ? 0 : Distance(word, row.word);
        if (distance <= 2) near.emplace_back(distance, row.word);
    }
    if (near.empty()) return all;
    std::ranges::stable_sort(near, {}, &std::pair<std::size_t, std::string>::first);
    all.clear();
    for (const auto& [distance, found] : near) all.push_back(found);
    return all;
}

std::string Fields_List(FieldList kind) {
    std::string list;
    for (const FieldRow& row : kFieldTable) {
        if (kind == FieldList::Words && !analysis::IsWordField(row.code)) continue;
        list += (list.empty() ? "" : "|") + std::to_string(row.code);
    }
    return list;
}

}  // namespace reports
