#pragma once

#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// What goes to standard output and standard error. Text from logs and names never reaches a terminal with control
// characters in it.
namespace cli {

// Ends the command with a message: exit status 1, or 2 where the call itself was wrong.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& message, int status = 1) : std::runtime_error(message), status_(status) {}
    int status() const noexcept { return status_; }

private:
    int status_;
};
class UsageError : public Failure {
public:
    explicit UsageError(const std::string& message) : Failure(message, 2) {}
};

// One line of shown text: control characters and those that turn the direction of writing as \xNN.
std::string Safe(std::string_view text);
// The same for messages, whose lines are parted by CR, LF or both.
std::string SafeMessage(std::string_view text);

// To standard output; a failed write throws Failure.
void Print(std::string_view text);
// The text as it is for a file or a pipe; control characters but line ends taken out for a terminal.
void PrintData(std::string_view text);
// One message to standard error, with a line end.
void PrintError(std::string_view message);

bool OutputIsTerminal();
bool ErrorIsTerminal();
// Columns of the terminal behind standard output or standard error, 0 for a file or a pipe.
int TerminalWidth();
int ErrorWidth();

// Places that a text takes on a terminal.
int ShownWidth(std::string_view text);
std::string CutToWidth(std::string_view text, int width);

struct TableColumn {
    std::string header{};
    bool right = false;
};
struct TextTable {
    std::vector<TableColumn> columns{};
    std::vector<std::vector<std::string>> rows{};
};
// Aligned columns; the widest give way until a line fits `width` (0: no limit).
std::string TableText(const TextTable& table, int width);
void PrintTable(const TextTable& table);

// Indented, with a line end. Control characters are escaped all of them.
std::string JsonText(const nlohmann::ordered_json& json);
void PrintJson(const nlohmann::ordered_json& json);

}  // namespace cli
