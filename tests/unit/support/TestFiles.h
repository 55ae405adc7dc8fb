#pragma once

#include <gmock/gmock.h>

#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <utility>

#include "text/InputError.h"

namespace tvn2x {

inline std::string TestFile(const std::string& name)
{
    std::ifstream file(std::string(TVN_TEST_DATA) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Holds a long text against the file of tests/data/told that has it. What is told now is written beside the other
/// temporary files, so that it can be compared, looked at, and made the file.
inline void ExpectTold(const std::string& name, const std::string& told)
{
    const std::string now = testing::TempDir() + name;
    std::ofstream(now, std::ios::binary) << told;
    EXPECT_EQ(TestFile("told/" + name), told) << "what is told now is in " << now;
}

/// The description of the input error that an action ends with; "" where it does not refuse.
template <class Action>
std::wstring Refusal(Action&& action)
{
    try {
        action();
    } catch (const RaisedError& error) {
        EXPECT_EQ(error.number, unusableInput);
        return error.description;
    }
    return {};
}

/// Each of the contents is refused with a description that says what stands beside it.
template <class Read>
void ExpectRefusals(Read&& read, std::initializer_list<std::pair<std::string, const wchar_t*>> rows)
{
    for (const auto& [content, reason] : rows) {
        EXPECT_THAT(Refusal([&, &content = content] { read(content); }), testing::HasSubstr(reason))
            << content.substr(0, 100);
    }
}

}  // namespace tvn2x
