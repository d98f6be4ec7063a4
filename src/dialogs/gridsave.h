#pragma once

#include <optional>
#include <string>

#include "dialogs/csvfile.h"
#include "dialogs/gridops.h"
#include "dialogs/showmb.h"

namespace dialogs {

struct GridToSave {
    const Rows& rows;
    int fixedRows = 1;
    std::optional<CellRange> selected{};  // rows counted with the headers
    std::string currentCell{};            // its whole text
    std::string folder{};                 // native; goes in front of a bare file name
    std::string title = "Save contents of grid.";
};
// Asks for a file and what to save of a grid, saves it and tells how it went. Asks again when the file could not be
// made. True when all was written. CSVSafe in section Parm of screens.ini says whether cells are guarded at first.
bool GridSaveDialog(const Desk& desk, const FileDesk& files, const GridToSave& grid);

// Each character of the cells with its code and how often it stands there, by code; the first row holds headers.
TableArray CharactersUsed(const TableArray& cells);
// The lines of a cell (parted by carriage returns or line feeds), sorted, each behind the prefix. Empty ones are left
// out.
std::vector<std::string> SortedLines(std::string_view cell, std::string_view prefix);

}  // namespace dialogs
