#pragma once

#include <string>

#include "CLI/App.hpp"

namespace tvn2x {

/// What is wrong with a command line that the parser has refused, in two lines: which word, with the nearest right one,
/// and where help is.
std::wstring UsageComplaint(const CLI::App& app, const CLI::ParseError& error, const std::vector<std::string>& words);

}  // namespace tvn2x
