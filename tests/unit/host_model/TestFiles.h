#pragma once

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <string>

#include "host_model/InputError.h"

namespace tvn2x {

inline std::string TestFile(const std::string& name)
{
    std::ifstream file(std::string(TVN_TEST_DATA) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
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

}  // namespace tvn2x
