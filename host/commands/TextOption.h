#pragma once

#include <optional>
#include <string>
#include <vector>

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

/// An option with several texts.
inline CLI::Option* AddTexts(CLI::App& command, const std::string& names, std::vector<std::wstring>& texts,
                             const std::string& description)
{
    return command.add_option_function<std::vector<std::string>>(
        names,
        [&texts](const std::vector<std::string>& given) {
            texts.clear();
            for (const std::string& utf8 : given) {
                texts.push_back(FromUtf8(utf8));
            }
        },
        description);
}

}  // namespace tvn2x
