#include "text/IniLines.h"

#include <algorithm>
#include <utility>

#include "text/Blanks.h"
#include "util/FileText.h"

namespace tvn2x::ini {
namespace {

constexpr std::string_view utf16Mark = "\xFF\xFE";

int DigitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

uint32_t TakeBase(std::string_view& digits)
{
    if (digits.size() < 2 || digits[0] != '0') {
        return 10;
    }
    const uint32_t base = digits[1] == 'x' ? 16 : digits[1] == 'o' ? 8 : digits[1] == 'b' ? 2 : 10;
    if (base != 10) {
        digits.remove_prefix(2);
    }
    return base;
}

}  // namespace

FileContent ReadContent(std::string bytes, const CodePage& page)
{
    FileContent content;
    content.isUtf16 = bytes.starts_with(utf16Mark);
    if (!content.isUtf16) {
        content.text = file_text::FromBytes(std::move(bytes), page);
        return content;
    }
    if (bytes.size() % 2 != 0) {
        content.oddByte = bytes.back();
        bytes.pop_back();
    }
    content.text = file_text::FromUtf16(std::string_view(bytes).substr(utf16Mark.size()));
    return content;
}

size_t LineScanner::NearestOf(char end, size_t& known) const
{
    if (known < at_ || (known == at_ && (at_ == content_.size() || content_[at_] != end))) {
        const size_t found = content_.find(end, at_);
        known = found == std::string_view::npos ? content_.size() : found;
    }
    return known;
}

bool LineScanner::Next(Line& line)
{
    if (at_ >= content_.size()) {
        return false;
    }
    const size_t lf = NearestOf('\n', nextLf_);
    const size_t cr = NearestOf('\r', nextCr_);
    line.start = at_;
    line.stop = std::min(lf, cr);
    if (line.stop == content_.size()) {
        line.next = line.stop;
    } else if (cr < lf) {
        const bool pair = cr + 1 == lf && lf < content_.size();
        line.next = cr + (pair ? 2 : 1);
        ++(pair ? crLfLines_ : crLines_);
    } else {
        line.next = lf + 1;
        ++lfLines_;
    }
    at_ = line.next;
    return true;
}

std::string_view LineScanner::PrevailingEnd() const
{
    if (lfLines_ > std::max(crLfLines_, crLines_)) {
        return "\n";
    }
    return crLines_ > std::max(crLfLines_, lfLines_) ? "\r" : "\r\n";
}

Entry ParseEntry(std::string_view line)
{
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
        return {TrimBlanks(line), {}, false};
    }
    return {TrimBlanks(line.substr(0, equals)), TrimBlanks(line.substr(equals + 1)), true};
}

std::string_view ParseHeader(std::string_view line)
{
    line.remove_prefix(line.find('[') + 1);
    return TrimBlanks(line.substr(0, line.find(']')));
}

std::optional<std::string_view> BracketedName(std::string_view line)
{
    const bool isBracketed = line.size() >= 2 && line.front() == '[' && line.back() == ']';
    return isBracketed ? std::optional(line.substr(1, line.size() - 2)) : std::nullopt;
}

std::string_view ReadableValue(std::string_view value)
{
    value = value.substr(0, value.find('\0'));
    const bool quoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

uint32_t ReadInteger(std::string_view value)
{
    while (!value.empty() && static_cast<unsigned char>(value.front()) <= ' ') {
        value.remove_prefix(1);
    }
    const bool negative = value.starts_with('-');
    if (negative || value.starts_with('+')) {
        value.remove_prefix(1);
    }
    const uint32_t base = TakeBase(value);
    uint32_t number = 0;
    for (const char c : value) {
        const auto digit = static_cast<uint32_t>(DigitValue(c));
        if (digit >= base) {
            break;
        }
        number = number * base + digit;
    }
    return negative ? 0U - number : number;
}

std::string_view FirstCharacters(std::string_view text)
{
    return file_text::FirstUnits(text, longestText);
}

}  // namespace tvn2x::ini
