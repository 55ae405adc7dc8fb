#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tvn2x {

/// Columns that a text takes on a terminal: wide characters count 2, combining marks 0.
int32_t DisplayWidth(std::wstring_view text);

/// A text as a terminal may get it: what would move its cursor, colour it or turn its direction is a blank. Line ends
/// stay; a CR before one goes.
std::wstring Printable(std::wstring_view text);

/// The lines of one line of text, each at most width columns wide (at least 1), cut at blanks. What lies between two
/// blanks and is wider has a line of its own, or several where breaksWords.
std::vector<std::wstring> WrappedLines(std::wstring_view line, int32_t width, bool breaksWords);

/// A text with each of its lines wrapped at words; width 0 leaves them as they are.
std::wstring WrapWords(std::wstring_view text, int32_t width);

/// The one of some words that somebody may have meant who typed another: it differs in a third of its letters at most,
/// or in two.
/// "" where there is none.
std::string NearestWord(std::string_view typed, const std::vector<std::string>& known);

}  // namespace tvn2x
