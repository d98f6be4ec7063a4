#pragma once

#include <optional>
#include <string>

#include "adddata/adddesk.h"

// The dialog that the checks of definitions start with: which log file is read, and how.
namespace adddata {

struct CheckReadText {
    std::string title{};
    std::string heading{};
    std::string explanations{};  // lines parted by a carriage return
    std::string filters{};       // which of them the read applies
    std::string name{};          // of the dialog
    std::string helpId{};
};
// Nothing: left without a read.
std::optional<AddRequest> AskCheckRead(const AddDesk& at, const CheckReadText& text);

// Keeps the boxes that were ticked while it was read. False: the read was stopped or failed, which was told.
bool CheckReadDone(const AddDesk& at, const logread::ReadOutcome& read, const std::string& title);

// Behind the name of the file that was read: whether another one is chosen by now.
std::string ChangedFileNote(const AddDesk& at, const std::string& fileRead);

}  // namespace adddata
