#pragma once

#include "editor/GridRows.h"

namespace tvn2x {

/// Codes of keys and of the characters that they make.
namespace key {

constexpr wchar_t copy = 3;
constexpr wchar_t backspace = 8;
constexpr wchar_t tab = 9;
constexpr wchar_t enter = 13;
constexpr wchar_t paste = 22;
constexpr wchar_t cut = 24;
constexpr wchar_t undo = 26;
constexpr wchar_t escape = 27;
constexpr wchar_t space = 32;

}  // namespace key

constexpr bool IsClipboardKey(wchar_t character)
{
    return character == key::copy || character == key::paste || character == key::cut || character == key::undo;
}

/// What a cell without a value shows.
constexpr const wchar_t* noValue = L"-";

/// The row below the last channel, where a new one is typed.
inline GridRow PlaceholderRow()
{
    return {{noValue, noValue, noValue}, {}, 0};
}

/// Sets a flag for the length of a block.
class FlagGuard
{
public:
    explicit FlagGuard(bool& flag) : flag_(flag) { flag_ = true; }
    ~FlagGuard() { flag_ = false; }
    FlagGuard(const FlagGuard&) = delete;
    FlagGuard& operator=(const FlagGuard&) = delete;

private:
    bool& flag_;
};

}  // namespace tvn2x
