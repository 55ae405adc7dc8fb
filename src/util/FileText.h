#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "util/CodePage.h"

/// The text of a file that may stand in a code page or in UTF-16LE, in one form for both: UTF-8, in which an ASCII byte
/// is never part of another character. What UTF-8 has no place for is spelled by its rules all the same: half a
/// surrogate pair takes three bytes, and each byte of a code page that would not come back from there and back is a
/// "character" of four bytes above U+10FFFF. So every file comes back byte for byte.
namespace tvn2x::file_text {

/// Of a file in a code page.
std::string FromBytes(std::string bytes, const CodePage& page);
/// A character that the code page lacks becomes "?" (see Fits).
std::string ToBytes(std::string text, const CodePage& page);
/// Whether a text reads back identical from the code page.
bool Fits(std::string_view text, const CodePage& page);
/// The text with the characters of the code page in place of what stands for its bytes; nothing where one is none
/// there.
std::optional<std::string> InCharacters(std::string_view text, const CodePage& page);

/// Of a file in UTF-16LE without its mark; `bytes` has an even length.
std::string FromUtf16(std::string_view bytes);
/// What stood for bytes of a code page becomes the characters that they are there.
std::string ToUtf16(std::string_view text, const CodePage& page);

std::string FromWide(std::wstring_view wide);
std::wstring ToWide(std::string_view text, const CodePage& page);

/// As much of a text's beginning as takes at most so many units of UTF-16, whole characters only.
std::string_view FirstUnits(std::string_view text, size_t units);

}  // namespace tvn2x::file_text
