#include "host/serve/Gate.h"

#include <algorithm>
#include <random>

#include "fmt/format.h"
#include "host/serve/ListenAddress.h"
#include "text/InputError.h"

namespace tvn2x {
namespace {

constexpr size_t shortestToken = 16;

std::string Lower(std::string_view text)
{
    std::string lower(text);
    for (char& letter : lower) {
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
    }
    return lower;
}

/// Host without its port and the dot that may end a name.
std::string NameIn(std::string_view host)
{
    const size_t colon = host.rfind(':');
    if (colon != std::string_view::npos && host.find(']', colon) == std::string_view::npos) {
        host = host.substr(0, colon);
    }
    if (host.ends_with('.')) {
        host.remove_suffix(1);
    }
    return Lower(host);
}

bool IsTokenLetter(char letter)
{
    return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           std::string_view(".-_~").find(letter) != std::string_view::npos;
}

}  // namespace

std::string_view Question::Path() const
{
    return std::string_view(target).substr(0, target.find('?'));
}

std::string_view Question::Query(std::string_view name) const
{
    std::string_view left = target;
    left.remove_prefix(std::min(left.size(), left.find('?')));
    while (!left.empty()) {
        left.remove_prefix(1);
        const std::string_view part = left.substr(0, left.find('&'));
        if (part.starts_with(name) && part.substr(name.size()).starts_with('=')) {
            return part.substr(name.size() + 1);
        }
        left.remove_prefix(part.size());
    }
    return {};
}

Gate::Gate(std::string token, const std::vector<std::string>& names, uint16_t port)
    : token_(std::move(token)), names_{"localhost"}, cookieName_(fmt::format("tvnhost_{}", port))
{
    for (const std::string& name : names) {
        names_.push_back(Lower(name));
    }
}

bool Gate::KnowsHost(const Question& question) const
{
    const std::string name = NameIn(question.host);
    return IsAddress(name) || std::ranges::find(names_, name) != names_.end();
}

/// Takes the same time wherever the first difference is.
bool Gate::IsToken(std::string_view text) const
{
    unsigned difference = text.size() == token_.size() ? 0 : 1;
    for (size_t i = 0; i < text.size(); ++i) {
        difference |= static_cast<unsigned char>(text[i]) ^ static_cast<unsigned char>(token_[i % token_.size()]);
    }
    return difference == 0;
}

bool Gate::LetsIn(const Question& question) const
{
    if (token_.empty()) {
        return true;
    }
    constexpr std::string_view scheme = "bearer ";
    if (Lower(question.authorization).starts_with(scheme)) {
        return IsToken(std::string_view(question.authorization).substr(scheme.size()));
    }
    std::string_view left = question.cookie;
    while (!left.empty()) {
        std::string_view part = left.substr(0, left.find(';'));
        left.remove_prefix(std::min(left.size(), part.size() + 1));
        part.remove_prefix(std::min(part.size(), part.find_first_not_of(' ')));
        if (part.starts_with(cookieName_ + "=") && IsToken(part.substr(cookieName_.size() + 1))) {
            return true;
        }
    }
    return false;
}

bool Gate::IsLink(const Question& question) const
{
    return !token_.empty() && question.Path() == "/" && IsToken(question.Query("token"));
}

std::string Gate::Cookie() const
{
    constexpr int32_t month = 30 * 24 * 3600;
    return fmt::format("{}={}; Path=/; Max-Age={}; HttpOnly; SameSite=Strict", cookieName_, token_, month);
}

std::string RandomToken()
{
    std::random_device device;
    std::string token;
    for (int i = 0; i < 4; ++i) {
        token += fmt::format("{:08x}", device());
    }
    return token;
}

std::string RequireToken(std::string_view text, const std::wstring& source)
{
    const std::string_view token = text.substr(0, text.find_first_of("\r\n"));
    if (token.size() < shortestToken || !std::ranges::all_of(token, IsTokenLetter)) {
        RaiseInput(source +
                   L" has no token. Put one line of 16 letters and digits at least there, as \"openssl rand "
                   L"-hex 16\" makes them.");
    }
    return std::string(token);
}

}  // namespace tvn2x
