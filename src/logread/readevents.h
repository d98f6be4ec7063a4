#pragma once

#include <cstddef>

#include "logread/readctx.h"

namespace logread {

// Where a file stands in a read, counted from 1.
struct ReadPlace {
    std::size_t item = 0, items = 0, file = 0, files = 0;
    bool list = false;  // several items, or one that names many files
};

// What a read tells while it goes on, so that a killed one leaves behind how far it came. A check tells nothing.
class ReadEvents {
public:
    virtual ~ReadEvents() = default;
    // Before the first file of a list.
    virtual void ListStarts() = 0;
    // Once the file's ends were looked at: also when it will be left out. `problems` are those found so far.
    virtual void FileStarts(const FileRecord& file, const ReadPlace& place, const ProblemList& problems) = 0;
    // However it ended; not for a file that was left out.
    virtual void FileEnds(const FileRecord& file, const ReadPlace& place, const ProblemList& problems) = 0;
};

}  // namespace logread
