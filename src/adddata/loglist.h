#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adddata/adddesk.h"

// The site's list of log files and the choice of what is read next: entries "Log Files" and "PAFNlog" of LastVals.ini.
// Paths are native here and stored in the drive-letter form.
namespace adddata {

using LogSpecs = std::vector<logdefs::LogFileSpec>;
inline constexpr std::size_t kMostLogFiles = 50;

LogSpecs ReadLogList(const AddDesk& at);
LogSpecs ReadLogChoice(const AddDesk& at);

// Unique, no more than kMostLogFiles. False: it could not be written, and the user was told.
bool StoreLogList(const AddDesk& at, const LogSpecs& list);
bool StoreLogChoice(const AddDesk& at, const LogSpecs& chosen);
// Stores the choice and puts it at the head of the list.
bool ChooseLogs(const AddDesk& at, const LogSpecs& chosen);

// Why this file cannot be read or kept in the list, "" when it can.
std::string LogFileProblem(const AddDesk& at, const std::string& path);

// One path in each line; a "|" list is taken apart unless a file of that very name exists.
std::vector<std::string> PathsOf(std::string_view text);
std::string PathLines(const LogSpecs& specs);  // for a box of such lines

// The file whose lines stand for those of a wildcard or folder; "" when there is none to look at.
std::string LogToLookAt(const std::string& path);

}  // namespace adddata
