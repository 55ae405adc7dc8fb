#include "host/setup/RichText.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "util/Encoding.h"

namespace tvn2x {

namespace {

bool IsLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

int32_t HexDigit(wchar_t c)
{
    if (IsDigit(c)) {
        return c - L'0';
    }
    const wchar_t lower = c | 0x20;
    return lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : 0;
}

class RichTextReader
{
public:
    explicit RichTextReader(std::wstring_view text) : text_(text) {}

    std::wstring Read()
    {
        while (at_ < text_.size()) {
            const wchar_t c = text_[at_++];
            if (c == L'{') {
                groups_.push_back(group_);
            } else if (c == L'}') {
                LeaveGroup();
            } else if (c == L'\\') {
                ReadControl();
            } else if (c != L'\r' && c != L'\n') {
                Put(std::wstring(1, c));
            }
        }
        return std::move(plain_);
    }

private:
    struct Group
    {
        bool isHidden = false;
        int32_t fallback = 1;  ///< characters that stand behind a Unicode character for older readers
    };

    void LeaveGroup()
    {
        if (!groups_.empty()) {
            group_ = groups_.back();
            groups_.pop_back();
        }
    }

    void Put(std::wstring_view text)
    {
        if (toSkip_ > 0) {
            --toSkip_;
        } else if (!group_.isHidden) {
            plain_ += text;
        }
    }

    void ReadControl()
    {
        if (at_ == text_.size()) {
            return;
        }
        if (IsLetter(text_[at_])) {
            ReadWord();
            return;
        }
        const wchar_t symbol = text_[at_++];
        if (symbol == L'\'') {
            const int32_t high = at_ < text_.size() ? HexDigit(text_[at_++]) : 0;
            const int32_t low = at_ < text_.size() ? HexDigit(text_[at_++]) : 0;
            Put(FromCodePage(std::string(1, static_cast<char>(high * 16 + low))));
        } else if (symbol == L'*') {
            group_.isHidden = true;
        } else if (symbol == L'\r' || symbol == L'\n') {
            Put(L"\n");
        } else if (symbol == L'~') {
            Put(L"\u00A0");
        } else if (symbol == L'\\' || symbol == L'{' || symbol == L'}') {
            Put(std::wstring(1, symbol));
        }
    }

    void ReadWord()
    {
        const size_t start = at_;
        while (at_ < text_.size() && IsLetter(text_[at_])) {
            ++at_;
        }
        const std::wstring_view word = text_.substr(start, at_ - start);
        const bool isNegative = at_ < text_.size() && text_[at_] == L'-';
        at_ += isNegative ? 1 : 0;
        constexpr int32_t largest = 0xFFFFF;
        int32_t number = 0;
        for (; at_ < text_.size() && IsDigit(text_[at_]); ++at_) {
            number = std::min(number * 10 + (text_[at_] - L'0'), largest);
        }
        if (at_ < text_.size() && text_[at_] == L' ') {
            ++at_;
        }
        Apply(word, isNegative ? -number : number);
    }

    void Apply(std::wstring_view word, int32_t number)
    {
        constexpr std::wstring_view hidden[] = {L"fonttbl", L"colortbl", L"stylesheet", L"info", L"pict"};
        if (std::ranges::find(hidden, word) != std::end(hidden)) {
            group_.isHidden = true;
        } else if (word == L"par" || word == L"line" || word == L"page") {
            Put(L"\n");
        } else if (word == L"tab") {
            Put(L"\t");
        } else if (word == L"uc") {
            group_.fallback = number;
        } else if (word == L"u") {
            toSkip_ = 0;
            Put(std::wstring(1, static_cast<wchar_t>(number & 0xFFFF)));
            toSkip_ = group_.fallback;
        }
    }

    std::wstring_view text_;
    size_t at_ = 0;
    Group group_;
    std::vector<Group> groups_;
    int32_t toSkip_ = 0;
    std::wstring plain_;
};

}  // namespace

std::wstring PlainText(std::wstring_view text)
{
    std::wstring plain;
    if (text.starts_with(L"{\\rtf")) {
        plain = RichTextReader(text).Read();
    } else {
        std::ranges::remove_copy(text, std::back_inserter(plain), L'\r');
    }
    plain.erase(plain.find_last_not_of(L'\n') + 1);
    return plain;
}

}  // namespace tvn2x
