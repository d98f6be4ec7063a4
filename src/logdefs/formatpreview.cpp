#include "logdefs/formatpreview.h"

#include <algorithm>

#include "core/numbers.h"
#include "core/strarray.h"
#include "core/text.h"
#include "dialogs/gridops.h"

namespace logdefs {
namespace {

constexpr std::size_t kShown = 3;         // lines
constexpr std::size_t kMostInCell = 300;  // bytes
constexpr int kFixedRowsPosition = 10;
constexpr std::string_view kNoLog = "Name a log above to see here how its first lines are cut.";
constexpr std::string_view kNoFit = "No line fits yet. Below stands where the first one gets stuck.";

std::string TextOf(const std::vector<FormatTrial::Field>& fields, std::string_view word) {
    const auto field = std::ranges::find(fields, word, &FormatTrial::Field::name);
    return field == fields.end() ? std::string() : dialogs::GridCellText(field->text, kMostInCell);
}

// "20090302080102" as "2009-03-02 08:01:02".
std::string TimeText(const std::string& digits) { return core::fFormatText(digits, "@@@@-@@-@@ @@:@@:@@"); }

dialogs::Rows RowsOf(const FormatTrial& trial, const LogFormat& format) {
    dialogs::Rows rows{{"Field"}};
    for (std::size_t i = 0; i < kShown; ++i)
        rows[0].push_back(i < trial.sampleNumbers.size()
                              ? "line " + core::CountText(static_cast<double>(trial.sampleNumbers[i]))
                              : std::string());
    if (trial.samples.empty()) return rows;
    const auto add = [&](std::string_view label, const auto& textOf) {
        std::vector<std::string>& row = rows.emplace_back(1, std::string(label));
        for (std::size_t i = 0; i < kShown; ++i)
            row.push_back(i < trial.samples.size() ? textOf(trial.samples[i]) : std::string());
    };
    add("Date and time", [](const auto& fields) { return TimeText(TextOf(fields, "time")); });
    for (const FieldName& name : kFieldNames)
        if (format.Names(name.field)) add(name.label, [&](const auto& fields) { return TextOf(fields, name.word); });
    return rows;
}

// Placeholders that end a specification: their fields stay empty.
std::string OpenEnds(const LogFormat& format) {
    std::string letters;
    for (int field = 1; field <= kPlainCount; ++field)
        if (format.Names(field) && !format.Holds(field))
            letters.append(letters.empty() ? "%" : ", %")
                .append(1, kPlaceholderLetters[static_cast<std::size_t>(field - 1)]);
    if (letters.empty()) return {};
    return "No text stands behind " + letters + ", so this field stays empty. Put the text that ends it behind it.";
}

}  // namespace

void FormatPreview::AddTo(dialogs::Controls& controls) {
    dialogs::MBAddCtl("Label", "Try it on this #H160#log:", dialogs::MBSpec("2400"), controls);
    box_ = dialogs::MBAddCtl("TextBox_", log_, dialogs::MBSpec("9600"), controls);
    controls[box_].caption = "Log file to try";
    controls[box_].hint = "Choose a log file to see how its first lines are cut";
    controls[box_].pick = dialogs::Pick::OpenFile;
    grid_ = dialogs::MBAddCtl("Grid", "", dialogs::MBSpec("12000|3000|||||True||"), controls, {{"Field", "", "", ""}});
    controls[grid_].spec.Set(kFixedRowsPosition, "1");
    controls[grid_].caption = "Fields of the first lines";
    controls[grid_].emptyText = kNoLog;
    status_ = dialogs::MBAddCtl("Label", "", dialogs::MBSpec("12000"), controls);
    controls[status_].caption = "What fits";
}

void FormatPreview::Read(const std::string& path) {
    if (read_ && path == log_) return;
    log_ = path;
    read_ = true;
    sample_ = {};
    failure_.clear();
    if (log_.empty()) return;
    if (const core::Result read = ReadLogSample(log_, kSampleLines, sample_); !read) failure_ = read.error;
}

std::string FormatPreview::Status(const FormatTrial& trial, const LogFormat& format) const {
    std::string text;
    const auto line = [&](const std::string& more) {
        if (!more.empty()) text.append(text.empty() ? "" : "\r").append(more);
    };
    for (const std::string& warning : format.Warnings()) line(dialogs::GridCellText(warning, 2 * kMostInCell));
    line(OpenEnds(format));
    line(failure_);
    if (format.Empty() || log_.empty() || !failure_.empty()) return text;
    line(FinderText(trial));
    line(MisfitText(trial));
    return text;
}

void FormatPreview::Show(dialogs::Controls& controls, const std::string& name, const std::vector<std::string>& specs) {
    Read(std::string(core::fTrim(controls[box_].value)));
    core::StrArray stored(0, {""});
    for (const std::string& spec : specs) stored.Append(spec);
    const LogFormat format(stored);
    const FormatTrial trial = TryFormat(sample_, name, format, kShown, now_);
    controls[grid_].rows = RowsOf(trial, format);
    controls[grid_].emptyText = sample_.lines.empty() ? kNoLog : kNoFit;
    controls[status_].value = Status(trial, format);
}

}  // namespace logdefs
