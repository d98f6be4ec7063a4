#include "dialogs/gridsave.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

#include "core/inistore.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"
#include "core/utf8.h"

namespace dialogs {
namespace {

constexpr std::string_view kAskPath = "Enter Full Path and file name to save grid contents as CSV";
constexpr std::string_view kNoFolder =
    "First select directory in directory list and Clip it to have it copied here.\rOr enter a name that begins with /.";

// The dialog's controls, by number.
struct Form {
    Controls controls{};
    int path = 0, cells = 0, characters = 0, lines = 0, prefix = 0, part = 0, guard = 0;
    Followers followers{};
};

int AddBox(Controls& controls, std::string_view type, std::string_view value, std::string_view caption) {
    const int number = MBAddCtl(type, value, "", controls);
    controls[number].caption = caption;
    return number;
}

Form MakeForm(const GridToSave& grid, bool guard) {
    Form form;
    Controls& controls = form.controls;
    form.path = MBAddCtl("TextBox", "", MBSpec("10000||||||"), controls);
    controls[form.path].caption = kAskPath;
    controls[form.path].pick = Pick::SaveFile;
    form.cells = AddBox(controls, "OptionButton", "True", "Save the &cells");
    form.characters = AddBox(controls, "OptionButton", "False", "Analyse and Save ONLY list of Characters used");
    form.lines = AddBox(controls, "OptionButton", "False",
                        "Save Sorted list from current cell contents (Use CR to split into lines)");
    MBAddCtl("Label", "  ... Add Prefix to each line:", MBSpec("4000"), controls);
    form.prefix = MBAddCtl("TextBox_", "", MBSpec("6000"), controls);
    controls[form.prefix].caption = "Prefix of each line";
    form.part = AddBox(controls, "CheckBox", "False", "Save Only Se&lected Part of Data");
    controls[form.part].enabled = grid.selected.has_value();
    form.guard = AddBox(controls, "CheckBox", core::fBoolWord(guard),
                        "&Guard cells that a spreadsheet would take for a formula");
    // The prefix is for the sorted list alone, the guard not for it.
    form.followers.options = {"", "", std::to_string(form.prefix) + "|-" + std::to_string(form.guard)};
    return form;
}

// The typed name with the folder in front when it has none. "" and `problem` when there is no folder either.
std::string FullPath(const GridToSave& grid, const std::string& typed, std::string& problem) {
    const bool stored = typed.size() > 3 && typed.compare(1, 2, ":\\") == 0;
    if (typed.starts_with('/') || stored) return typed;
    if (grid.folder.empty() || typed.empty()) {
        problem = typed.empty() ? std::string(kAskPath) + "." : std::string(kNoFolder);
        return {};
    }
    return grid.folder + (grid.folder.ends_with('/') ? "" : "/") + typed;
}

std::string PathProblem(const FileDesk& files, const GridToSave& grid, const std::string& typed) {
    std::string problem;
    const std::string path = FullPath(grid, typed, problem);
    if (!problem.empty()) return problem;
    return core::CheckPAFN(path, files.paths).error;
}

CsvSaved Save(const FileDesk& files, const GridToSave& grid, const Form& form, const std::string& path) {
    const Controls& controls = form.controls;
    if (controls[form.lines].Ticked())
        return SaveLines(files, path, SortedLines(grid.currentCell, controls[form.prefix].value));
    const bool part = controls[form.part].Ticked() && grid.selected;
    TableArray cells = part ? TableOf(grid.rows, *grid.selected) : TableOf(grid.rows);
    if (controls[form.characters].Ticked()) cells = CharactersUsed(cells);
    return SaveCSV(files, path, cells,
                   {.guard = controls[form.guard].Ticked() ? CsvGuard::Spreadsheet : CsvGuard::Plain});
}

}  // namespace

TableArray CharactersUsed(const TableArray& cells) {
    std::map<char32_t, long> counts;
    for (long row = cells.FirstRow(); row <= cells.LastRow(); ++row)
        for (long col = cells.FirstCol(); col <= cells.LastCol(); ++col) {
            const std::string_view text = cells.Text(row, col);
            for (std::size_t at = 0; at < text.size();) {
                const core::Letter letter = core::LetterAt(text, at);
                ++counts[letter.code];
                at += letter.length;
            }
        }
    TableArray table(0, 0);
    const auto put = [&](std::string character, std::string code, std::string count) {
        const long row = table.RowCount();
        table.ArrPut2(row, 2, std::move(count));
        table.ArrPut2(row, 1, std::move(code));
        table.ArrPut2(row, 0, std::move(character));
    };
    put("Character", "Code", "Count");
    for (const auto& [code, count] : counts) {
        std::string character;
        core::AppendLetter(character, code);
        std::array<char, 16> name{};
        const int length = std::snprintf(name.data(), name.size(), "U+%04lX", static_cast<unsigned long>(code));
        put(std::move(character), std::string(name.data(), static_cast<std::size_t>(std::max(length, 0))),
            std::to_string(count));
    }
    return table;
}

std::vector<std::string> SortedLines(std::string_view cell, std::string_view prefix) {
    Rows rows;
    for (std::size_t at = 0; at < cell.size();) {
        const std::size_t end = std::min(cell.find_first_of("\r\n", at), cell.size());
        if (end > at) rows.push_back({std::string(cell.substr(at, end - at))});
        at = end + 1;
    }
    SortRows(rows, 0, RowOrder::Text);
    std::vector<std::string> lines;
    for (const auto& row : rows) lines.push_back(std::string(prefix).append(row[0]));
    return lines;
}

bool GridSaveDialog(const Desk& desk, const FileDesk& files, const GridToSave& grid) {
    const bool guard = desk.screens.empty() || desk.ini.IniGetBoolT("Parm", "CSVSafe", desk.screens);
    Form form = MakeForm(grid, guard);
    Box box;
    box.message = kAskPath;
    box.buttons = "1";
    box.title = grid.title;
    box.followers = form.followers;
    const auto check = [&](Controls& controls, int) { return PathProblem(files, grid, controls[form.path].value); };
    for (;;) {
        if (ShowMBRepeat(desk, box, form.controls, check).Cancelled()) return false;
        std::string problem;
        const std::string path = FullPath(grid, form.controls[form.path].value, problem);
        const CsvSaved saved = Save(files, grid, form, path);
        if (saved) {
            const std::string native = files.paths.ToNative(path);
            ShowMsg(desk, "Data written successfully to file: " + native, grid.title);
            return true;
        }
        ShowMsg(desk, "Error when try to write data. Not complete.\r" + saved.error, grid.title);
        if (saved.opened) return false;
    }
}

}  // namespace dialogs
