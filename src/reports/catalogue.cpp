#include "reports/catalogue.h"

#include "core/numbers.h"
#include "core/text.h"
#include "reports/groups.h"

namespace reports {
namespace {

struct KindWord {
    ReportKind kind;
    std::string_view word;
};
// In the order in which a line is read.
constexpr std::array kKinds{KindWord{ReportKind::All, "All "}, KindWord{ReportKind::Top, "Top "},
                            KindWord{ReportKind::Grouped, "Grouped "}};

std::string TopLine(const FieldRow& field) {
    std::string text = std::string("Top ").append(field.name).append(" [Distr: ").append(field.firstDistribution);
    if (!field.alternate.empty()) text.append(" & ").append(field.alternate);
    return text + "]";
}

}  // namespace

std::vector<int> FieldsOf(ReportList list) {
    if (list == ReportList::Words) return {kWordFields.begin(), kWordFields.end()};
    return {kAllFields.begin(), kAllFields.end()};
}

std::vector<std::string> ReportLines(const std::vector<int>& fields) {
    std::vector<std::string> lines;
    for (const int code : fields) {
        const FieldRow* field = FindField(code);
        if (field == nullptr) continue;
        const std::string number = std::to_string(code) + "\t";
        lines.push_back(number + TopLine(*field));
        lines.push_back(number + "All " + std::string(field->name));
        if (GroupsOfField(code) != nullptr) lines.push_back(number + "Grouped " + std::string(field->name));
    }
    return lines;
}

std::optional<ReportChoice> ReportOfLine(std::string_view line) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) return std::nullopt;
    const int field = core::ToLong(core::fNum(line.substr(0, tab)));
    for (const KindWord& row : kKinds)
        if (line.substr(tab + 1).starts_with(row.word)) return ReportChoice{field, row.kind};
    return std::nullopt;
}

std::string DistributionNote(int field) {
    const FieldRow* row = FindField(field);
    if (row == nullptr) return {};
    return "[When selected, 1st Distrib col: " + std::string(row->firstDistribution) +
           ", 2nd Distrib col: " + (row->alternate.empty() ? "none" : std::string(row->alternate)) + "]";
}

}  // namespace reports
