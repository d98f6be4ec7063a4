#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace testsupport {

// A folder of its own for one test, gone with all that is in it.
class TempFolder {
public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "corvane-test-XXXXXX").string();
        if (::mkdtemp(name.data()))
            path_ = name;
        else
            ADD_FAILURE() << "no temporary folder";
    }
    ~TempFolder() {
        std::error_code ignored;
        if (path_.empty()) return;
        // Folders that a test made unreadable can be emptied again.
        for (std::filesystem::recursive_directory_iterator at(path_, ignored), end; !ignored && at != end;
             at.increment(ignored))
            if (at->is_directory(ignored) && !at->is_symlink(ignored))
                std::filesystem::permissions(at->path(), std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string File(std::string_view name) const { return path_ + "/" + std::string(name); }

    // Writes a file as it is and gives its path. In place: an existing file keeps its identity.
    std::string Write(std::string_view name, std::string_view text) const {
        std::ofstream(File(name), std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
        return File(name);
    }
    std::string Read(std::string_view name) const {
        std::ifstream in(File(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    // Names in the folder, however hidden.
    std::size_t Count() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
    }

private:
    std::string path_{};
};

}  // namespace testsupport
