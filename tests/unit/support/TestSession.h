#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/RaisedBy.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {

/// What somebody does and sees, as a file in tests/data tells it: a line at the margin is a deed, an indented one what
/// is looked at, a colon, and what there is. Each begins with a word; a text that has blanks at its ends or signs that
/// nobody sees stands in quotes, one that goes on where the line ends has three dots. A test gives both words a
/// meaning.
class TestSession
{
public:
    TestSession() = default;
    TestSession(const TestSession&) = delete;
    TestSession& operator=(const TestSession&) = delete;
    virtual ~TestSession() = default;

    using Deeds = std::map<std::string, std::function<void()>>;
    using Sights = std::map<std::string, std::function<std::wstring()>>;

    /// Begins a line: its first word, by which the test does or sees something with the rest.
    std::string Take(const std::string& line)
    {
        std::istringstream in(line);
        std::string name;
        in >> name >> std::ws;
        rest.clear();
        std::getline(in, rest);
        std::istringstream each(rest);
        words.assign(std::istream_iterator<std::string>(each), {});
        words.resize(std::max<size_t>(words.size(), 2));
        return name;
    }

protected:
    double Value(size_t word) const { return std::stod(words.at(word)); }
    int32_t Number(size_t word) const { return std::stoi(words.at(word)); }
    /// The bytes behind the first words.
    std::string Bytes(int behind = 0) const
    {
        std::istringstream in(rest);
        std::string text;
        while (behind-- > 0) {
            in >> text;
        }
        text.clear();
        std::getline(in >> std::ws, text);
        return CellText(text);
    }
    std::wstring Text(int behind = 0) const { return FromUtf8(Bytes(behind)); }
    std::wstring Word(size_t word) const { return FromUtf8(CellText(words.at(word))); }
    /// What somebody who is asked answers: the rest of the line.
    void Answer(double& answer) const { answer = Value(0); }
    void Answer(int32_t& answer) const { answer = Number(0); }
    void Answer(bool& answer) const { answer = Number(0) != 0; }
    void Answer(std::wstring& answer) const { answer = Text(); }
    template <class Said>
    static std::wstring Told(Said answer)
    {
        if constexpr (std::is_same_v<Said, bool>) {
            return answer ? L"yes" : L"no";
        } else {
            return std::to_wstring(answer);
        }
    }

    std::string rest;                ///< of the line, behind its first word
    std::vector<std::string> words;  ///< of the rest, two at least
};

/// A line of a session whose members `deeds` and `sights` have the meanings of the words.
template <class Session>
void PlayLine(Session& session, const std::string& line)
{
    if (!line.starts_with("  ")) {
        const std::string name = session.Take(line);
        ASSERT_TRUE(session.deeds.contains(name)) << name;
        session.deeds.at(name)();
        if constexpr (requires { session.IsDone(); }) {
            session.IsDone();  // what holds after every deed
        }
        return;
    }
    const size_t colon = line.find(": ");
    const std::string name = session.Take(line.substr(0, colon));
    ASSERT_TRUE(session.sights.contains(name)) << name;
    const std::wstring expected = FromUtf8(CellText(line.substr(colon + 2)));
    const std::wstring seen = session.sights.at(name)();
    EXPECT_EQ(expected, expected.ends_with(L"...") ? seen.substr(0, expected.size() - 3) + L"..." : seen);
}

/// The error that the rest of a line ends with, a deed or a look, "" where there is none.
template <class Session>
std::wstring ErrorOf(Session& session, const std::string& line)
{
    const std::string name = session.Take(line);
    const auto deed = session.deeds.find(name);
    return RaisedBy(
        [&] { deed != session.deeds.end() ? deed->second() : static_cast<void>(session.sights.at(name)()); });
}

/// The sessions of a file, each of which begins with a line "= Title": `begin` makes what it happens to of that line.
template <class Begin>
void PlaySessions(const std::string& file, const Begin& begin)
{
    std::ifstream lines(std::string(TVN_TEST_DATA) + "/" + file);
    decltype(begin(std::string())) session;
    std::string title;
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        SCOPED_TRACE("line " + std::to_string(++number) + " of " + file + ", " + title);
        if (line.starts_with("=")) {
            session.reset();
            session = begin(title = line);
        } else if (session && !line.empty() && line[0] != '#') {
            PlayLine(*session, line);
        }
    }
    EXPECT_TRUE(session) << file;
}

}  // namespace tvn2x
