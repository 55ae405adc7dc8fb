#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tvn2x::profile {

/// The longest section name, key or value that is written or read, in units of UTF-16.
constexpr size_t longestText = 32767;

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

inline bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}
std::string_view Trim(std::string_view text);        ///< without the blanks round it
std::string_view TrimSpaces(std::string_view text);  ///< names as callers give them: a tab belongs to the name

/// What a line says. `value` has no blanks round it; its quotes, if any, are still there.
struct Entry
{
    std::string_view key;
    std::string_view value;
    bool hasValue = false;  ///< the line has a "="
};
Entry ParseEntry(std::string_view line);
/// The name in a line that begins with "[": up to the first "]" or the line's end, without the blanks round it.
std::string_view ParseHeader(std::string_view line);

/// The value as a caller gets it: cut at a NUL, without one pair of equal quotes round it.
std::string_view ReadableValue(std::string_view value);
/// A default as the system hands it out: without trailing blanks (one is left of a default that is all blanks) and
/// without quotes.
std::string_view ReadableDefault(std::string_view text);
/// The number a value begins with, modulo 2^32: sign, then decimal digits or 0x, 0o, 0b and theirs. Nothing is 0.
uint32_t ReadInteger(std::string_view value);

/// Names are the same where they differ in the case of A..Z at most.
bool EqualNames(std::string_view left, std::string_view right);
/// A hash that agrees with EqualNames and that nobody outside the process can foresee.
uint32_t HashName(std::string_view name);

/// Whether a text can be written: at most 32,767 characters and no CR, LF or NUL, which would begin a line of their
/// own.
bool IsWritable(std::string_view text);
/// Whether a line written with this key is read back with it.
bool IsPlainKey(std::string_view key);
bool IsPlainSection(std::string_view section);

/// A caller's text as the functions of a profile take it: a NUL ends it, as it does for the system's own functions.
std::string FromCaller(std::wstring_view text);
/// The longest beginning of a text that is handed to a caller.
std::string_view FirstCharacters(std::string_view text);

}  // namespace tvn2x::profile
