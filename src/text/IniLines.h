#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "util/CodePage.h"

/// What the lines of an initialisation file say ("[section]" lines, then "key=value" lines), by the rules of the
/// operating system's profile functions. Texts are as file_text has them. Names are compared by EqualIgnoringCase, and
/// the first section of a name and the first key of a name in it are the ones that are read.
namespace tvn2x::ini {

/// The longest section name, key or value that is written or read, in units of UTF-16.
constexpr size_t longestText = 32767;

/// The text of a file: UTF-16LE where it begins with its mark, the code page elsewhere.
struct FileContent
{
    std::string text;
    bool isUtf16 = false;
    std::string oddByte;  ///< the last byte of a UTF-16 file with half a unit at its end
};
FileContent ReadContent(std::string bytes, const CodePage& page);

/// One line of a file as offsets: its text is [start, stop), the next line begins at `next`.
struct Line
{
    size_t start = 0;
    size_t stop = 0;
    size_t next = 0;

    std::string_view Text(std::string_view content) const { return content.substr(start, stop - start); }
};

/// Walks over lines that end with CR LF, LF or CR, or with the content itself, each byte looked at a fixed number of
/// times.
class LineScanner
{
public:
    explicit LineScanner(std::string_view content, size_t start = 0) : content_(content), at_(start) {}

    /// The next line, false behind the last.
    bool Next(Line& line);
    /// The line end that most of the lines so far had; CR LF where none is in the lead.
    std::string_view PrevailingEnd() const;

private:
    size_t NearestOf(char end, size_t& known) const;

    std::string_view content_;
    size_t at_;
    size_t nextLf_ = 0;  ///< the first LF (CR) from here on is known to be there, or beyond `at_` yet to be sought
    size_t nextCr_ = 0;
    size_t crLfLines_ = 0;
    size_t lfLines_ = 0;
    size_t crLines_ = 0;
};

/// What a line says. `value` has no blanks round it; its quotes, if any, are still there.
struct Entry
{
    std::string_view key;
    std::string_view value;
    bool hasValue = false;  ///< the line has a "="; without one it hides later lines of its key, and none is read
};
Entry ParseEntry(std::string_view line);
/// The name in a line that begins with "[": up to the first "]" or the line's end, without the blanks round it.
std::string_view ParseHeader(std::string_view line);
/// The name in a line that is nothing but "[", a name and "]". Lists of sections have these alone.
std::optional<std::string_view> BracketedName(std::string_view line);

/// The value as a caller gets it: cut at a NUL, without one pair of equal quotes round it.
std::string_view ReadableValue(std::string_view value);
/// The number a value begins with, modulo 2^32: sign, then decimal digits or 0x, 0o, 0b and theirs. Nothing is 0.
uint32_t ReadInteger(std::string_view value);
/// The longest beginning of a text that is handed to a caller.
std::string_view FirstCharacters(std::string_view text);

}  // namespace tvn2x::ini
