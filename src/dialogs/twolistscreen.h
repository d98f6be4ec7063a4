#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "dialogs/twolist.h"

// The running screen of twolist.h, for its own sources only.
namespace dialogs {

// Asks about one item after the other until somebody says "all" or "skip the rest".
class AskEach {
public:
    AskEach(const Desk& desk, std::string title) : desk_(desk), title_(std::move(title)) {}
    bool Yes(const std::string& message);
    bool Skipped() const { return mode_ == Mode::Skip; }

private:
    enum class Mode { Ask, All, Skip };
    const Desk& desk_;
    std::string title_;
    Mode mode_ = Mode::Ask;
};

class TwoListScreen {
public:
    TwoListScreen(const Desk& desk, core::Progress& progress, const TwoListPlan& plan, ListSide left, ListSide right);
    TwoListResult Run();

private:
    struct Act {
        std::string_view before, after;  // the caption around the item's name
        bool named;
        bool (TwoListScreen::*allowed)() const;
        void (TwoListScreen::*run)();
    };
    static const std::vector<Act>& MainActs();
    static const std::vector<Act>& MoreActs();

    bool Always() const { return true; }
    bool HasSequence() const { return plan_.sequence; }
    bool HasGroups() const { return plan_.groups.Given(); }
    bool HasFilters() const { return plan_.filters.Given(); }
    bool HasSkipList() const { return plan_.skipList.Given(); }
    bool HasManualAdd() const { return plan_.manualAdd; }

    // The screen (twolist.cpp).
    std::string Caption(const Act& act) const;
    std::string Hint() const;
    Controls MakeControls();
    DialogModel Model();
    void Show(Controls& controls) const;
    void ReadControls(const Controls& controls);
    int OkNumber() const { return static_cast<int>(shown_.size() + plan_.buttons.size()) + 1; }
    void Press(int button);
    void PressCallers(const TwoListButton& button);
    Rows ShownSide(const Choices& list) const;
    enum class Exit { Stay, Save, Drop };
    Exit AskExit() const;  // Cancel was pressed
    bool Leave();          // true when everything is saved
    void OfferFilters();
    bool SaveAll();
    TwoListResult Result(int button, bool ok);

    // What moves items (twolistmoves.cpp).
    void Add();
    void Remove();
    void Up() { Move(Direction::Up, "Move Up"); }
    void Down() { Move(Direction::Down, "Move Down"); }
    void Move(Direction direction, std::string_view button);
    void MoveToOtherList();
    void AddTypedLine();
    void AddRows(std::vector<int> rows);
    bool MayTake(const std::string& text, AskEach& ask) const;
    std::vector<int> RowsToAdd(const std::vector<int>& rows);
    void CutToRoom(std::vector<int>& rows);
    void CutRight();
    std::vector<int> MoveWithProgress(bool add, const std::vector<int>& rows);
    bool NoneSelected(const std::vector<int>& rows, std::string_view side, std::string_view button);
    std::optional<std::size_t> ChooseGroup();
    void RemoveFromGroups(const std::vector<std::string>& texts);

    // What finds them (twolistfind.cpp).
    void FindWord();
    void FindInGroups();
    void FindListName();
    void More();
    void CopySelected();
    void CopyToSkipList();
    void EditSkipList();
    void ViewItem();
    std::string Word() const;
    void NotFound();
    std::vector<std::string> ChosenFound(Rows results);

    // Saved filters (twolistfilters.cpp).
    void ApplyFilters();
    bool NewRule(MoveRule& rule);
    void RemoveRules(std::vector<int> selected, std::vector<MoveRule>& listed);
    std::size_t Apply(const std::vector<MoveRule>& rules);
    std::size_t MoveToGroup(std::size_t group, const std::unordered_set<long>& orders);

    const Desk& desk_;
    core::Progress& progress_;
    const TwoListPlan& plan_;
    const ListSide startLeft_, startRight_;
    GroupLists groups_;
    std::optional<std::size_t> group_{};  // the one that the right list holds
    std::vector<MoveRule> rules_{};
    std::vector<std::string> skip_{};
    Choices skipped_{};  // items of the left list that the skip list keeps away
    ChoiceLists lists_;
    std::size_t most_ = 0;  // items on the right, 0: any number
    std::vector<std::string> typed_{};
    bool changed_ = false, rulesChanged_ = false, skipChanged_ = false;

    std::vector<const Act*> shown_{};  // in the order of the buttons
    int hintNo_ = 0, groupNo_ = 0, leftTextNo_ = 0, rightTextNo_ = 0, leftNo_ = 0, rightNo_ = 0, wordNo_ = 0;
    int firstOptionNo_ = 0, option_ = 0;
    std::vector<int> leftRows_{}, rightRows_{};  // selected
    std::string word_{};
};

}  // namespace dialogs
