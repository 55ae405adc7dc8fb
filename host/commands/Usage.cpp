#include "host/commands/Usage.h"

#include <algorithm>
#include <optional>

#include "host/terminal/Words.h"
#include "text/TextInput.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

bool IsOption(const std::string& word)
{
    return word.size() > 1 && word[0] == '-';
}

/// "unknown WHAT "word"; the nearest is right", with `otherwise` where nothing is near.
std::wstring Unknown(const wchar_t* what, const std::string& word, const std::vector<std::string>& known,
                     const std::wstring& otherwise)
{
    const std::string nearest = NearestWord(word, known);
    return std::wstring(L"unknown ") + what + L" " + Excerpt(word) +
           (nearest.empty() ? otherwise : L"; the nearest is " + FromUtf8(nearest));
}

std::vector<std::string> CommandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    return names;
}

std::vector<std::string> OptionNames(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

std::wstring Joined(const std::vector<std::string>& names)
{
    std::wstring text;
    for (const std::string& name : names) {
        text += (text.empty() ? L": " : L", ") + FromUtf8(name);
    }
    return text;
}

/// The option of the command line that the command does not have. The parser may complain of something else first: the
/// value of an unknown option passes for the setup.
std::optional<std::string> UnknownOption(const CLI::App& command, const std::vector<std::string>& words)
{
    const std::vector<std::string> rest = command.remaining();
    const auto found = std::ranges::find_if(
        words, [&](const std::string& word) { return IsOption(word) && std::ranges::find(rest, word) != rest.end(); });
    return found == words.end() ? std::nullopt : std::optional(*found);
}

std::wstring Complaint(const CLI::App& app, const CLI::App* command, const CLI::ParseError& error,
                       const std::vector<std::string>& words)
{
    if (!command) {
        const auto word = std::ranges::find_if_not(words, IsOption);
        if (word != words.end()) {
            return Unknown(L"command", *word, CommandNames(app), Joined(CommandNames(app)));
        }
        return words.empty() ? L"a command is required" + Joined(CommandNames(app))
                             : Unknown(L"option", words.front(), OptionNames(app), L"");
    }
    if (const auto option = UnknownOption(*command, words)) {
        return Unknown(L"option", *option, OptionNames(*command), L"") + L" (" + FromUtf8(command->get_name()) + L")";
    }
    if (const auto rest = command->remaining(); !rest.empty()) {
        return FromUtf8(command->get_name()) + L" has no use for " + Excerpt(rest.front());
    }
    return FromUtf8(error.what());
}

}  // namespace

std::wstring UsageComplaint(const CLI::App& app, const CLI::ParseError& error, const std::vector<std::string>& words)
{
    const std::vector<CLI::App*> given = app.get_subcommands();
    const CLI::App* command = given.empty() ? nullptr : given.front();
    return L"tvnhost: " + Complaint(app, command, error, words) + L"\nHelp: tvnhost " +
           (command ? FromUtf8(command->get_name()) + L" " : L"") + L"--help";
}

}  // namespace tvn2x
