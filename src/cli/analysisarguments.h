#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/results.h"
#include "cli/program.h"
#include "reports/fieldtable.h"
#include "reports/lines.h"

// What the commands that analyse visits have in common.
namespace cli {

struct AnalysisArguments {
    std::string field{};
    std::string kind{};
    std::optional<std::int32_t> top{};
    std::string from{}, to{};
    std::optional<std::int32_t> threshold{};
    std::optional<bool> notSearch{}, dist1{}, dist2{}, clickThrough{}, deviation{}, targets{};
    std::string area{};
};

void AddAnalysisOptions(CLI::App& command, AnalysisArguments& arguments);
// The words of the fields behind the help of a command.
void AddFieldsFooter(CLI::App& command);

const reports::FieldRow& FieldOf(const std::string& text);
reports::ReportKind KindOf(const AnalysisArguments& arguments, reports::ReportKind otherwise);

// One analysis and the report that was asked for; the site stays open as long as it.
struct DrawnReport {
    const reports::FieldRow* field = nullptr;
    reports::ReportKind kind = reports::ReportKind::Top;
    std::unique_ptr<sitedb::Site> site{};
    std::unique_ptr<analysis::SrchTrmData> results{};
    reports::ReportGrid grid{};
    int status = 0;  // not 0: the command ends with it, and the user has been told
};
DrawnReport Draw(Program& program, const AnalysisArguments& arguments, reports::ReportKind otherwise);

// To a file or to standard output. `data` texts go out as they are.
void WriteReport(const std::string& output, const std::string& text, bool data);

}  // namespace cli
