#pragma once

#include <string>
#include <vector>

#include "core/files.h"
#include "logread/readctx.h"

namespace core {
class IniStore;
}
namespace sitedb {
struct SitePaths;
}

// What the files of an add had wrong with them, kept for each add that had problems.
namespace adddata {

std::string ProblemStoreFile(const sitedb::SitePaths& site);

struct ProblemRecord {
    core::Result result{};
    long number = 0;  // 0: there was no problem, or it could not be stored
};
// Takes the next number. A record that cannot be stored whole is taken out again.
ProblemRecord StoreProblems(core::IniStore& ini, const std::string& file, const logread::ProblemList& problems);
// Writes the record of a number anew, with what has come since.
core::Result StoreProblemsAgain(core::IniStore& ini, const std::string& file, long number,
                                const logread::ProblemList& problems);

// The record of a number, none when there is no such.
std::vector<logread::ProblemList::File> ReadProblems(core::IniStore& ini, const std::string& file, long number);

}  // namespace adddata
