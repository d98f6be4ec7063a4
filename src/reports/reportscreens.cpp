#include "reports/reportscreens.h"

#include "analysis/run.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/ports.h"
#include "dialogs/named.h"
#include "reports/dates.h"
#include "sitedb/site.h"

namespace reports {
namespace {

constexpr std::string_view kMain = "Main";
constexpr std::string_view kDialog = "ConfirmRep";
constexpr std::string_view kListSpec = "11000|1200|||||True|1";
constexpr std::string_view kReportSpec = "8000|3000|||||True||1";
constexpr std::int32_t kDefaultTop = 20;

dialogs::Rows DescRows(const std::vector<AnalysisPtr>& analyses, bool withField) {
    dialogs::Rows rows;
    for (const AnalysisPtr& analysis : analyses)
        rows.push_back({DescLine(*analysis) +
                        (withField ? " ^ " + std::string(FieldName(analysis->Analyzed_Field())) : std::string())});
    return rows;
}

int AddLabel(const std::string& text, dialogs::Controls& controls) {
    return dialogs::MBAddCtl("Label", text, dialogs::MBSpec("11000"), controls);
}

int AddList(std::string_view caption, std::string_view spec, dialogs::Rows rows, dialogs::Controls& controls) {
    const int number = dialogs::MBAddCtl("ListBox", "0", dialogs::MBSpec(spec), controls, std::move(rows));
    controls[number].caption = caption;
    return number;
}

// The line that is selected, -1 for none.
int SelectedLine(const dialogs::Control& list) {
    const std::vector<int> selected = list.Selected();
    return selected.empty() ? -1 : selected.front();
}

// The dialog of dates and options over what the caller puts in front; its entries are stored.
dialogs::Pressed AskDates(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site, dialogs::NamedDialog& dialog,
                          const dialogs::EntryCheck& more) {
    const DatesPart dates{.data = DataDaysOf(site), .today = core::SplitMoment(env.clock.Now()).day};
    return Dates_Ask(desk, dialog, dates, more);
}

}  // namespace

AnalysisPtr ReportScreens::Analyse(int field) {
    analysis::AnalysisRequest request = analysis::Analyse_Request(env_.ini, field);
    request.WordListsOn = true;
    if (request.CntTopVals <= 0) request.CntTopVals = kDefaultTop;
    analysis::AnalysisOutcome outcome = analysis::CVNA_VisitsAnalyse(env_, site_, request);
    return outcome.results ? analyses_.Analysis_New(std::move(outcome.results)) : nullptr;
}

AnalysisPtr ReportScreens::pChooseAnalysis(int field, bool useSoleAnalysis) {
    const std::vector<AnalysisPtr> earlier = analyses_.Analyses_List(site_.Options().name, field);
    if (earlier.size() == 1 && useSoleAnalysis) return earlier.front();
    const bool hasData = DataDaysOf(site_).has_value();
    if (earlier.empty() && !hasData) return Analyse(field);  // which tells why it cannot
    dialogs::Controls front;
    int list = 0;
    std::string buttons;
    if (!earlier.empty()) {
        AddLabel("Or select a previous analysis of " + std::string(FieldName(field)), front);
        list = AddList("Previous analyses", kListSpec, DescRows(earlier, false), front);
        AddLabel("Either Select an analysis or confirm dates and options below to read database (new analysis).",
                 front);
        buttons =
            "Use selected &analysis (dates && options as selected above)|Read database (ne&w analysis - dates && "
            "options as entered below)";
    } else {
        buttons = " &OK - Start New Analysis ";
    }
    AddLabel("Analyse by: " + std::string(FieldName(field)) + "\r" + DistributionNote(field), front);
    dialogs::MBAddCtl("Line", "", dialogs::MBSpec("1"), front);
    dialogs::NamedDialog dialog(desk_,
                                {.dialog = std::string(kDialog),
                                 .valueSection = std::string(kMain),
                                 .title = "- Analyse " + std::string(FieldName(field)),
                                 .width = 11000,
                                 .message = hasData ? "Confirm dates for new analysis below and confirm options. "
                                                      "More options on Analysis menu."
                                                    : "There are no data to analyse.",
                                 .buttons = buttons + "|&Cancel"});
    dialog.PutInFront(std::move(front));
    const dialogs::Pressed pressed = AskDates(env_, desk_, site_, dialog, [&](dialogs::Controls& entered, int button) {
        const bool uses = list != 0 && button == 1;
        return uses && SelectedLine(entered[list]) < 0 ? std::string("Select an analysis in the list.") : std::string();
    });
    if (pressed.Cancelled() || !dialog.Problem().empty()) return nullptr;
    if (list != 0 && pressed.button == 1) return earlier[static_cast<std::size_t>(SelectedLine(dialog.Ctls()[list]))];
    return Analyse(field);
}

std::optional<ReportScreens::Chosen> ReportScreens::OpenReport(const ReportChoice& report) {
    const bool sole = env_.ini.IniGetBool(kMain, "ConfirmRepOps", core::kBySection);
    AnalysisPtr analysis = pChooseAnalysis(report.field, sole);
    if (!analysis) return std::nullopt;
    return Chosen{std::move(analysis), report};
}

std::optional<ReportChoice> ReportScreens::pSelectReport(const std::vector<int>& fields, const std::string& text,
                                                         bool askDates) {
    const std::vector<std::string> lines = ReportLines(fields);
    dialogs::Controls front;
    AddLabel("Select Report", front);
    dialogs::Rows rows;
    for (const std::string& line : lines) rows.push_back({line.substr(line.find('\t') + 1)});
    const int list = AddList("Reports", kReportSpec, std::move(rows), front);
    const auto choice = [&](const dialogs::Controls& controls) -> std::optional<ReportChoice> {
        const int line = SelectedLine(controls[list]);
        return line < 0 ? std::nullopt : ReportOfLine(lines[static_cast<std::size_t>(line)]);
    };
    const auto check = [&](dialogs::Controls& entered, int) {
        return choice(entered) ? std::string() : std::string("Select report to continue");
    };
    if (!askDates) {
        dialogs::Box box;
        box.message = text;
        box.buttons = "&OK|&Cancel";
        box.title = "- Select Report";
        box.name = "SelectReport";
        box.helpId = "R";
        const dialogs::Pressed pressed = dialogs::ShowMBRepeat(desk_, box, front, check);
        return pressed.Cancelled() ? std::nullopt : choice(front);
    }
    AddLabel("Dates to Analyse", front);
    dialogs::NamedDialog dialog(desk_, {.dialog = std::string(kDialog),
                                        .valueSection = std::string(kMain),
                                        .title = "- Select Report",
                                        .width = 11000,
                                        .message = text + (text.empty() ? "" : "\r\r") +
                                                   "Confirm dates to analyse below and choose report from list",
                                        .buttons = "&OK|&Cancel"});
    dialog.PutInFront(std::move(front));
    const dialogs::Pressed pressed = AskDates(env_, desk_, site_, dialog, check);
    if (pressed.Cancelled() || !dialog.Problem().empty()) return std::nullopt;
    return choice(dialog.Ctls());
}

std::optional<ReportScreens::Chosen> ReportScreens::pReportAfterChange(std::string_view subject, ReportList list) {
    const std::string text =
        subject.empty() ? std::string() : "To use " + std::string(subject) + " you must analyse now.";
    const std::optional<ReportChoice> report = pSelectReport(FieldsOf(list), text, true);
    if (!report) return std::nullopt;
    AnalysisPtr analysis = Analyse(report->field);
    if (!analysis) return std::nullopt;
    return Chosen{std::move(analysis), *report};
}

std::vector<AnalysisPtr> ReportScreens::AllOfSite() const {
    std::vector<AnalysisPtr> all;
    for (const int field : FieldsOf(ReportList::All))
        for (AnalysisPtr& analysis : analyses_.Analyses_List(site_.Options().name, field))
            all.push_back(std::move(analysis));
    return all;
}

std::optional<ReportScreens::Chosen> ReportScreens::pNewReportFromAnalysis() {
    const std::vector<AnalysisPtr> all = AllOfSite();
    if (all.empty()) return pReportAfterChange({}, ReportList::All);
    dialogs::Controls controls;
    AddLabel("Select a previous analysis to create a new report:", controls);
    const int list = AddList("Previous analyses", "12000|2400|||||True|1", DescRows(all, true), controls);
    dialogs::Box box;
    box.message =
        "Select an analysis to use (dates & options as selected above) and press OK for a list of reports that can be "
        "created.";
    box.buttons = "&OK - Use selected analysis to make new report|&Cancel|Enter options for ne&w analysis";
    box.options = dialogs::option::MinWidth(11000);
    box.escNo = 2;
    box.title = "- Select Analysis";
    box.name = "SelectAnalysis";
    box.helpId = "SN";
    const dialogs::Pressed pressed =
        dialogs::ShowMBRepeat(desk_, box, controls, [&](dialogs::Controls& entered, int b) {
            return b == 1 && SelectedLine(entered[list]) < 0 ? std::string("Select an analysis in the list.")
                                                             : std::string();
        });
    if (pressed.Cancelled()) return std::nullopt;
    if (pressed.button == 3) return pReportAfterChange({}, ReportList::All);
    AnalysisPtr analysis = all[static_cast<std::size_t>(SelectedLine(controls[list]))];
    const std::optional<ReportChoice> report =
        pSelectReport({analysis->Analyzed_Field()}, "Analysis results selected: \r" + analysis->GetDataDesc(), false);
    if (!report) return std::nullopt;
    return Chosen{std::move(analysis), *report};
}

}  // namespace reports
