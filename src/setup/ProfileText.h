#pragma once

#include <string>
#include <string_view>

namespace tvn2x::profile {

std::string_view TrimSpaces(std::string_view text);  ///< names as callers give them: a tab belongs to the name

/// A default as the system hands it out: without trailing blanks (one is left of a default that is all blanks) and
/// without quotes.
std::string_view ReadableDefault(std::string_view text);

/// Whether a text can be written: at most 32,767 characters and no CR, LF or NUL, which would begin a line of their
/// own.
bool IsWritable(std::string_view text);
/// Whether a line written with this key is read back with it.
bool IsPlainKey(std::string_view key);
bool IsPlainSection(std::string_view section);

/// A caller's text as the functions of a profile take it: a NUL ends it, as it does for the system's own functions.
std::string FromCaller(std::wstring_view text);

}  // namespace tvn2x::profile
