#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/inifile.h"

namespace core {

// Parameter files as read last. A file that changed on disk, by its identity,
// size and time, is read again: people edit these files while the program runs.
class IniCache {
public:
    // Good until the next call. Changes in it are of no use without Save.
    IniFile& Open(const std::string& path);
    // False: the old file stands, and the next Open reads it again.
    bool Save(const std::string& path);
    void Drop(const std::string& path) { files_.erase(path); }

    // From here on changes of the file stay in memory; a draft within a draft is taken back or kept by itself.
    void BeginDraft(const std::string& path);
    enum class DraftEnd { Kept, Failed, ChangedElsewhere };
    // Kept: the outermost draft is on disk, an inner one is part of the outer. Otherwise the draft goes on.
    DraftEnd KeepDraft(const std::string& path, bool overOthers);
    void DropDraft(const std::string& path);
    bool DraftDiffers(const std::string& path) const;

private:
    struct Stamp {
        std::uint64_t device = 0, inode = 0;
        std::int64_t size = -1, seconds = 0, nanoseconds = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    struct Held {
        IniFile file{};
        Stamp stamp{};
        std::size_t hash = 0;  // of the bytes on disk
        bool settled = false;  // a later change would surely show in the stamp
    };

    static Stamp StampOf(const std::string& path);
    static bool Settled(const Stamp& stamp);
    static Held Read(const std::string& path);
    static bool Same(Held& held, const std::string& path);

    struct Draft {
        Held begun{};
        std::vector<IniFile> levels{};  // the last is what everybody reads
    };

    std::unordered_map<std::string, Held> files_{};
    std::unordered_map<std::string, Draft> drafts_{};
};

}  // namespace core
