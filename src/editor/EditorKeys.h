#pragma once

#include <cstdint>
#include <memory>

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
constexpr wchar_t deleted = 127;  ///< what Ctrl and Backspace make

constexpr int32_t pageUp = 0x21;
constexpr int32_t pageDown = 0x22;
constexpr int32_t end = 0x23;
constexpr int32_t home = 0x24;
constexpr int32_t left = 0x25;
constexpr int32_t up = 0x26;
constexpr int32_t right = 0x27;
constexpr int32_t down = 0x28;
constexpr int32_t insert = 0x2D;
constexpr int32_t remove = 0x2E;
constexpr int32_t f2 = 0x71;
constexpr int32_t f3 = 0x72;

}  // namespace key

constexpr bool IsClipboardKey(wchar_t character)
{
    return character == key::copy || character == key::paste || character == key::cut || character == key::undo;
}

/// What a cell without a value shows.
constexpr const wchar_t* noValue = L"-";

/// The row below the last channel, where a new one is typed.
inline SharedRow PlaceholderRow()
{
    return std::make_shared<const GridRow>(GridRow{{noValue, noValue, noValue}, {}, 0});
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
