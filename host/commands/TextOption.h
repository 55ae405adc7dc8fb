#pragma once

#include <optional>
#include <string>

#include "CLI/App.hpp"
#include "util/Encoding.h"

namespace tvn2x {

/// An option with a text, a std::wstring or an optional one. The parser has it in UTF-8; everything behind it is wide.
template <class Text>
CLI::Option* AddText(CLI::App& command, const std::string& names, Text& text, const std::string& description)
{
    return command.add_option_function<std::string>(
        names, [&text](const std::string& utf8) { text = FromUtf8(utf8); }, description);
}

}  // namespace tvn2x
