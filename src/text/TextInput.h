#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvn2x {

/// Walks through a text line by line. Lines end with LF or CR LF; the last one needs no end.
class LineReader
{
public:
    explicit LineReader(std::string_view content);

    /// The next line without its end and without blanks around it. False behind the last one.
    bool Next(std::string_view& line);
    int32_t Number() const { return number_; }  ///< of the line last given out, from 1

private:
    std::string_view rest_;
    int32_t number_ = 0;
};

/// A line that was cut at its LF, without its CR and without blanks around it.
std::string_view TrimLine(std::string_view line);

/// A piece of a file as a message may quote it: in quotation marks, 40 characters at most, no control characters.
std::wstring Excerpt(std::string_view text);
std::wstring Excerpt(std::wstring_view text);

/// Puts a word of plain letters behind a list in a sentence: "ber, mer".
void AddToList(std::wstring& list, std::string_view plainWord);

/// "FILE, line 12: "
std::wstring AtLine(const std::wstring& path, int32_t line);

/// Raises unusableInput where a file is empty, larger than 4 MiB, UTF-16 or no text at all. kind says what was expected
/// ("channel plan"), remedy what the user can do.
void RequireText(std::string_view content, const std::wstring& path, const std::wstring& kind,
                 const std::wstring& remedy);

}  // namespace tvn2x
