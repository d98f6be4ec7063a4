#pragma once

#include <string>
#include <vector>

namespace core {

class IniStore;

// Parameter files while somebody edits them. As long as it lives, what is written to them through the store stays in
// memory, and all who read them through the store see it. Without a Save all of it is taken back. Drafts of one file
// can stand in one another, the inner one ending first.
class IniDraft {
public:
    IniDraft(IniStore& ini, std::vector<std::string> files);  // native paths
    ~IniDraft();
    IniDraft(const IniDraft&) = delete;
    IniDraft& operator=(const IniDraft&) = delete;

    bool Changed() const;

    enum class Saved { Done, Failed, ChangedElsewhere };
    struct Outcome {
        Saved saved = Saved::Done;
        std::string file{};  // that could not be saved
    };
    // Ends the draft of each file that is saved. Where another program changed a file meanwhile nothing of it is
    // written, unless `overOthers`; what is not saved can be saved by another call.
    Outcome Save(bool overOthers = false);

private:
    IniStore& ini_;
    std::vector<std::string> files_;  // that are still drafts
};

}  // namespace core
