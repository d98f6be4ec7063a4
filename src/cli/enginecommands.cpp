#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <numeric>
#include <optional>
#include <sstream>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/enginedefs.h"
#include "logdefs/engines.h"
#include "names/searchterm.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

struct EngineArguments {
    std::vector<std::string> texts{};
    std::string name{};
    std::string file{};
    bool add = false;
    bool remove = false;
    bool json = false;
};

logdefs::EngineFiles Files(Program& program) { return program.Session().ProgramFiles().Engines(); }

std::vector<std::string> Definitions(Program& program) { return logdefs::SEDefsList(program.Ini(), Files(program)); }

constexpr std::string_view kNoPlaces = "(sends no terms)";

// The definitions with their numbers from 1, of all engines or of one.
void PrintDefinitions(const std::vector<std::string>& definitions, const std::vector<std::size_t>& places, bool json) {
    ordered_json list = ordered_json::array();
    TextTable table{{{"No", true}, {"Engine"}, {"Engine page"}, {"Places of the term"}}, {}};
    for (const std::size_t at : places) {
        const logdefs::SEDef definition = logdefs::SEDefSplit(definitions[at]);
        const std::string name = logdefs::SEDefName(definition.url);
        list.push_back({{"number", at + 1},
                        {"engine", name},
                        {"url", definition.url},
                        {"places", definition.places},
                        {"general", logdefs::SEDefIsGeneral(definition.url)},
                        {"assistant", definition.places.empty()},
                        {"definition", definitions[at]}});
        table.rows.push_back({std::to_string(at + 1), name, definition.url,
                              definition.places.empty() ? std::string(kNoPlaces) : definition.places});
    }
    if (json)
        PrintJson(list);
    else
        PrintTable(table);
}

int List(Program& program, const EngineArguments& arguments) {
    const std::vector<std::string> definitions = Definitions(program);
    if (arguments.json) {
        PrintJson(definitions);
        return 0;
    }
    std::vector<std::size_t> all(definitions.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    PrintDefinitions(definitions, all, false);
    return 0;
}

int Show(Program& program, const EngineArguments& arguments) {
    const std::vector<std::string> definitions = Definitions(program);
    std::vector<std::size_t> places;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < definitions.size(); ++i) {
        const std::string name = logdefs::SEDefName(definitions[i]);
        if (core::fEquals(name, arguments.name, core::Case::Ignore))
            places.push_back(i);
        else if (std::ranges::find(names, name) == names.end())
            names.push_back(name);
    }
    if (places.empty())
        throw UsageError("There is no engine " + arguments.name + ". " + ValidAre(arguments.name, names, 6));
    PrintDefinitions(definitions, places, arguments.json);
    return 0;
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

// The definition of this number, from 1.
std::optional<std::size_t> Numbered(const std::string& text, std::size_t count) {
    const bool digits = text.find_first_not_of("0123456789") == std::string::npos && text.size() < 10;
    if (text.empty() || !digits) return std::nullopt;
    const std::size_t number = std::stoul(text);
    if (number < 1 || number > count)
        throw UsageError("There is no definition " + text + ". They have the numbers 1 to " + std::to_string(count) +
                         " (engine list).");
    return number - 1;
}

// Definitions are named whole, by the pattern of their pages or by number.
std::vector<std::string> Without(const std::vector<std::string>& definitions,
                                 const std::vector<std::string>& unwanted) {
    std::vector<bool> gone(definitions.size());
    for (const std::string& text : unwanted) {
        if (const auto number = Numbered(text, definitions.size())) {
            gone[*number] = true;
            continue;
        }
        bool any = false;
        for (std::size_t i = 0; i < definitions.size(); ++i) {
            if (definitions[i] != text && core::fBefore(definitions[i], " ") != text) continue;
            gone[i] = any = true;
        }
        if (!any) throw UsageError("There is no such definition: " + text + ". " + ValidAre(text, definitions, 4));
    }
    std::vector<std::string> kept;
    for (std::size_t i = 0; i < definitions.size(); ++i)
        if (!gone[i]) kept.push_back(definitions[i]);
    if (kept.empty())
        throw UsageError("The list would be empty, which brings the delivered one back. Keep at least one.");
    return kept;
}

int Store(Program& program, const EngineArguments& arguments, const std::vector<std::string>& definitions) {
    if (!logdefs::SEDefsWrite(program.Ini(), Files(program), definitions))
        throw Failure("The definitions could not be written to " + Files(program).own);
    if (arguments.json)
        PrintJson({{"definitions", definitions.size()}});
    else
        Print(std::to_string(definitions.size()) + " definitions are stored.\n");
    return 0;
}

int Remove(Program& program, const EngineArguments& arguments) {
    return Store(program, arguments, Without(Definitions(program), arguments.texts));
}

// What is wrong with one of them, as wrong usage; what may not be meant, as a note.
void CheckGiven(const std::vector<std::string>& given) {
    for (std::size_t i = 0; i < given.size(); ++i) {
        const logdefs::SEDef definition = logdefs::SEDefSplit(given[i]);
        if (const std::string fault = logdefs::SEDefFault(definition); !fault.empty())
            throw UsageError("Definition " + std::to_string(i + 1) + " cannot be used, since " + fault + ": " +
                             given[i]);
        if (definition.places.empty())
            PrintError(definition.url +
                       " names no place of a term: its visits are recognised without one, as those of "
                       "an AI assistant.");
        if (!logdefs::SEDefHasProtocol(definition))
            PrintError(definition.url +
                       " has no \"http\". It is held against whole referrers, which begin with http://.");
    }
}

int Set(Program& program, const EngineArguments& arguments) {
    if (arguments.add && arguments.remove) throw UsageError("--add and --remove exclude each other.");
    const std::vector<std::string> given = Given(arguments);
    if (arguments.remove) return Store(program, arguments, Without(Definitions(program), given));
    CheckGiven(given);
    std::vector<std::string> definitions = arguments.add ? Definitions(program) : std::vector<std::string>();
    for (const std::string& text : given)
        if (std::ranges::find(definitions, text) == definitions.end()) definitions.push_back(text);
    return Store(program, arguments, definitions);
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
                        {"engine", found.engine.empty() ? ordered_json(nullptr) : ordered_json(found.engine)},
                        {"found", found.found},
                        {"isEngine", found.isEngine},
                        {"assistant", found.assistant},
                        {"raw", found.found ? ordered_json(found.term) : ordered_json(nullptr)},
                        {"term", found.found ? ordered_json(standard) : ordered_json(nullptr)}});
        std::string engine = found.found ? found.engine : found.isEngine ? "(engine, no term)" : "(none)";
        if (found.assistant) engine = found.engine;
        table.rows.push_back({engine, found.assistant ? std::string(kNoPlaces) : standard, found.term, referrer});
    }
    if (arguments.json)
        PrintJson(list);
    else
        PrintTable(table);
    return 0;
}

using Command = int (*)(Program&, const EngineArguments&);

}  // namespace

void AddEngineCommands(CLI::App& root, Program& program) {
    CLI::App* family = NewFamily(root, "engine", "Search engine definitions: list, show, set, remove, try");
    auto arguments = std::make_shared<EngineArguments>();
    const auto add = [&](const char* word, const char* help, const char* example, Command command) {
        CLI::App* app = NewCommand(*family, word, help, example);
        app->add_flag("--json", arguments->json, "As JSON");
        app->callback([=, &program] { program.run = [=, &program] { return command(program, *arguments); }; });
        return app;
    };

    add("list", "All definitions in the order in which they are tried", "engine list", List);

    CLI::App* show = add("show", "The definitions of one engine", "engine show google", Show);
    AddText(*show, "NAME", arguments->name, "Name of the engine, as reports show it")->required();

    CLI::App* set = add("set", "Replace the list of definitions, or change it",
                        "engine set --add 'http://*.finder.*/* ?q,?query'", Set);
    AddTexts(*set, "DEFINITION", arguments->texts,
             "Pattern of the engine's pages, a blank, places of the term; the pattern alone for an engine that sends "
             "no terms, such as an AI assistant");
    AddText(*set, "--file", arguments->file, "File with one definition per line, - is standard input");
    set->add_flag("--add", arguments->add, "Add these to the list");
    set->add_flag("--remove", arguments->remove, "Take these off the list (the pattern is enough)");

    CLI::App* remove = add("remove", "Take definitions off the list", "engine remove 'http://*.finder.*/*'", Remove);
    AddTexts(*remove, "DEFINITION", arguments->texts, "Pattern of the engine's pages, or number in the list")
        ->required();

    CLI::App* trial =
        add("try", "Engine and term of referrers", "engine try 'https://www.google.com/search?q=red+shoes'", Try);
    AddTexts(*trial, "REFERRER", arguments->texts, "Referrers as the log has them")->required();
}

}  // namespace cli
