#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tvn2x {

/// What a reader asks for, in his own words: nothing of it is to be believed.
struct Question
{
    std::string method{};
    std::string target{};  ///< path and query
    std::string host{};
    std::string authorization{};
    std::string cookie{};
    std::string accept{};
    std::string lastEventId{};

    std::string_view Path() const;
    /// The value of a part of the query, "" where there is none. Nothing in it is decoded.
    std::string_view Query(std::string_view name) const;
};

/// Who may come in. A reader without the token learns nothing, and a page of another site that has led a browser here
/// under its own name is not answered.
class Gate
{
public:
    /// `token` "" lets everybody in. `names` are those under which the server is reached besides localhost and
    /// addresses; the port keeps the cookies of several servers on one machine apart.
    Gate(std::string token, const std::vector<std::string>& names, uint16_t port);

    /// Whether a browser was led here by a name that is known. Whoever owns another name can make it lead here, and
    /// would read with the browser's own rights; an address leads only where it says.
    bool KnowsHost(const Question& question) const;
    /// Whether a question has the token, as a cookie or as "Authorization: Bearer".
    bool LetsIn(const Question& question) const;
    /// Whether it is the link that the token was sent by, which is answered by the cookie.
    bool IsLink(const Question& question) const;
    std::string Cookie() const;  ///< the value of Set-Cookie

private:
    bool IsToken(std::string_view text) const;

    std::string token_;
    std::vector<std::string> names_;
    std::string cookieName_;
};

/// A token of 128 random bits.
std::string RandomToken();

/// The token in a file or in the environment: its first line. Raises unusableInput, without showing it, where it is
/// shorter than 16 characters or has others than letters, digits and ".-_~". `source` is where it was read.
std::string RequireToken(std::string_view text, const std::wstring& source);

}  // namespace tvn2x
