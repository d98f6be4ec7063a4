#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/cds.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/engines.h"
#include "names/searchterm.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

struct EngineArguments {
    std::vector<std::string> texts{};
    std::string file{};
    bool add = false;
    bool remove = false;
    bool json = false;
};

logdefs::EngineFiles Files(Program& program) { return program.Session().ProgramFiles().Engines(); }

std::vector<std::string> Definitions(Program& program) {
    std::vector<std::string> definitions;
    const core::StrArray list = core::CDSSplitPlain(logdefs::SEDefsRead(program.Ini(), Files(program)));
    for (const std::string& item : list.Items())
        if (!core::fTrim(item).empty()) definitions.push_back(item);
    return definitions;
}

int List(Program& program, bool json) {
    const std::vector<std::string> definitions = Definitions(program);
    if (json) {
        PrintJson(definitions);
        return 0;
    }
    TextTable table{{{"Engine page"}, {"Places of the term"}}, {}};
    for (const std::string& definition : definitions)
        table.rows.push_back({std::string(core::fBefore(definition, " ")), std::string(core::fAfter(definition, " "))});
    PrintTable(table);
    return 0;
}

// What is wrong with a definition and where, or "".
std::string Fault(const std::string& definition) {
    if (!core::IsUtf8(definition)) return "it is no UTF-8 text";
    if (definition.find('|') != std::string::npos) return "it holds |, which parts the definitions of the list";
    const std::string_view url = core::fBefore(definition, " ");
    if (url.empty()) return "it begins with a blank; the pattern of the engine's pages comes first";
    const std::size_t open = url.rfind('[');
    if (open != std::string_view::npos && url.find(']', open) == std::string_view::npos)
        return "the [ at character " + std::to_string(open + 1) + " is not closed";
    const std::string_view items = core::fTrim(core::fAfter(definition, " "));
    if (items.empty()) return "it names no place of the term behind the pattern, such as ?q";
    for (std::string_view rest = items; !rest.empty();) {
        const std::string_view item = core::fTrim(core::fBefore(rest, ","));
        if (item.starts_with("::") && core::fBefore(item.substr(2), "::").empty())
            return "\"" + std::string(item) + "\" has no text in front of the term";
        rest = rest.find(',') == std::string_view::npos ? std::string_view() : rest.substr(rest.find(',') + 1);
    }
    return {};
}

void AddLines(std::istream& input, std::vector<std::string>& texts) {
    for (std::string line; std::getline(input, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (!core::fTrim(line).empty() && !line.starts_with(';')) texts.push_back(line);
    }
}

std::vector<std::string> Given(const EngineArguments& arguments) {
    std::vector<std::string> texts = arguments.texts;
    if (arguments.file == "-") {
        AddLines(std::cin, texts);
    } else if (!arguments.file.empty()) {
        const std::string path = AbsolutePath(arguments.file);
        core::ReadText read = core::ReadFile(path);
        if (!read.result) throw Failure(read.result.error);
        if (!read.existed) throw Failure("There is no file " + path + ".");
        std::istringstream input(core::ToUtf8(read.text));
        AddLines(input, texts);
    }
    if (texts.empty())
        throw UsageError(
            "No definition is given. Give some, or a file with --file; one looks like: 'http://*.finder.*/* ?q'");
    return texts;
}

// Definitions are named whole, or by the pattern of their pages.
std::vector<std::string> Without(const std::vector<std::string>& definitions,
                                 const std::vector<std::string>& unwanted) {
    std::vector<std::string> kept = definitions;
    for (const std::string& text : unwanted) {
        const auto same = [&](const std::string& definition) {
            return definition == text || core::fBefore(definition, " ") == text;
        };
        if (std::erase_if(kept, same) == 0)
            throw UsageError("There is no such definition: " + text + ". " + ValidAre(text, definitions, 4));
    }
    return kept;
}

int Set(Program& program, const EngineArguments& arguments) {
    if (arguments.add && arguments.remove) throw UsageError("--add and --remove exclude each other.");
    const std::vector<std::string> given = Given(arguments);
    std::vector<std::string> definitions =
        arguments.add || arguments.remove ? Definitions(program) : std::vector<std::string>();
    if (arguments.remove) {
        definitions = Without(definitions, given);
        if (definitions.empty())
            throw UsageError("The list would be empty, which brings the delivered one back. Keep at least one.");
    } else {
        for (std::size_t i = 0; i < given.size(); ++i)
            if (const std::string fault = Fault(given[i]); !fault.empty())
                throw UsageError("Definition " + std::to_string(i + 1) + " cannot be used, since " + fault + ": " +
                                 given[i]);
        for (const std::string& text : given)
            if (std::ranges::find(definitions, text) == definitions.end()) definitions.push_back(text);
    }
    if (!logdefs::SEDefsWrite(program.Ini(), Files(program), definitions))
        throw Failure("The definitions could not be written to " + Files(program).own);
    Print(std::to_string(definitions.size()) + " definitions are stored.\n");
    return 0;
}

int Try(Program& program, const EngineArguments& arguments) {
    const logdefs::SearchEngines engines = logdefs::SearchEngines::SEDefsLoad(program.Ini(), Files(program));
    ordered_json list = ordered_json::array();
    TextTable table{{{"Engine"}, {"Term"}, {"Raw"}, {"Referrer"}}, {}};
    for (const std::string& given : arguments.texts) {
        const std::string referrer = core::ToUtf8(given);
        const logdefs::FoundTerm found = engines.STFromReferrer(referrer);
        std::string decoded = found.term;
        const std::string standard = names::ST_Std(decoded);
        list.push_back({{"referrer", referrer},
                        {"engine", found.found ? ordered_json(found.engine) : ordered_json(nullptr)},
                        {"found", found.found},
                        {"isEngine", found.isEngine},
                        {"raw", found.found ? ordered_json(found.term) : ordered_json(nullptr)},
                        {"term", found.found ? ordered_json(standard) : ordered_json(nullptr)}});
        const std::string engine = found.found ? found.engine : found.isEngine ? "(engine, no term)" : "(none)";
        table.rows.push_back({engine, standard, found.term, referrer});
    }
    if (arguments.json)
        PrintJson(list);
    else
        PrintTable(table);
    return 0;
}

}  // namespace

void AddEngineCommands(CLI::App& root, Program& program) {
    CLI::App* family = NewFamily(root, "engine", "Search engine definitions: list, set, try");
    auto arguments = std::make_shared<EngineArguments>();

    CLI::App* list = NewCommand(*family, "list", "All definitions in the order in which they are tried", "engine list");
    list->add_flag("--json", arguments->json, "As JSON");
    list->callback([=, &program] { program.run = [=, &program] { return List(program, arguments->json); }; });

    CLI::App* set = NewCommand(*family, "set", "Replace the list of definitions, or change it",
                               "engine set --add 'http://*.finder.*/* ?q,?query'");
    AddTexts(*set, "DEFINITION", arguments->texts, "Pattern of the engine's pages, a blank, places of the term");
    AddText(*set, "--file", arguments->file, "File with one definition per line, - is standard input");
    set->add_flag("--add", arguments->add, "Add these to the list");
    set->add_flag("--remove", arguments->remove, "Take these off the list (the pattern is enough)");
    set->callback([=, &program] { program.run = [=, &program] { return Set(program, *arguments); }; });

    CLI::App* trial = NewCommand(*family, "try", "Engine and term of referrers",
                                 "engine try 'https://www.google.com/search?q=red+shoes'");
    AddTexts(*trial, "REFERRER", arguments->texts, "Referrers as the log has them")->required();
    trial->add_flag("--json", arguments->json, "As JSON");
    trial->callback([=, &program] { program.run = [=, &program] { return Try(program, *arguments); }; });
}

}  // namespace cli
