#pragma once

#include <string>
#include <vector>

// Logs that come through a pipe.
namespace cli {

// The full path of a file argument; "-", the standard input, as it is.
std::string LogArgument(const std::string& given);
// Wrong usage when the standard input stands in a list more than once. True when it is in there.
bool WantsStandardInput(const std::vector<std::string>& files);

// A read looks at both ends of a file before it takes its lines, so a pipe's bytes are kept in a file without a name,
// which is gone when the program ends, however it ends. From then on the standard input can be opened anew like a
// file. It lies in `folder`, or with other temporary files where that cannot be written.
void KeepStandardInput(const std::string& folder);

}  // namespace cli
