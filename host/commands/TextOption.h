#pragma once

#include <string>

#include "CLI/App.hpp"
#include "util/Encoding.h"

namespace tvn2x {

/// An option with a text. The parser has it in UTF-8; everything behind it is wide.
inline CLI::Option* AddText(CLI::App& command, const std::string& names, std::wstring& text,
                            const std::string& description)
{
    return command.add_option_function<std::string>(
        names, [&text](const std::string& utf8) { text = FromUtf8(utf8); }, description);
}

}  // namespace tvn2x
