#include "setup/SetupKeys.h"

#include <algorithm>
#include <charconv>

#include "setup/catalogue/MP_TYPES.h"

namespace tvn2x::setup_file {
namespace {

/// `number`, counted from the old parameter count where `beyond` is set: keys that no old file has.
struct Number
{
    bool beyond;
    int32_t number;
};

// Of the parameters that there were when the layout changed.
constexpr std::array<Number, 30> oldKeys{{
    {false, 4},  {false, 3},  {false, 1},  {true, 1},  {true, 2},   {true, 3},   {false, 2},  {true, 4},
    {false, 5},  {false, 6},  {false, 7},  {false, 8}, {false, 19}, {false, 20}, {false, 17}, {false, 9},
    {false, 12}, {true, 5},   {true, 6},   {true, 7},  {false, 13}, {false, 14}, {false, 11}, {false, 16},
    {false, 10}, {false, 18}, {false, 15}, {true, 8},  {true, 9},   {true, 10},
}};

constexpr std::array<int32_t, 20> newPositions{3,  7,  2,  1,  9,  10, 11, 12, 16, 25,
                                               23, 17, 21, 22, 27, 24, 15, 26, 13, 14};

/// What the position of a range of parameters comes from.
enum class Source
{
    key,
    parameter,
    parameterLessCount,
    constant
};
/// Positions by ranges of parameters, both ends included. A range with a key reads the position key of the parameter's
/// number plus `offset`; the others place the parameter at its number plus `offset`, or at `offset` alone.
struct PositionRange
{
    Number first;
    Number last;
    Source source;
    int32_t offset;
};
constexpr PositionRange positionRanges[] = {
    {{false, 1}, {false, 5}, Source::key, 0},
    {{false, 10}, {true, 4}, Source::key, -4},
    {{false, 6}, {false, 8}, Source::parameter, -2},
    {{false, 9}, {false, 9}, Source::constant, 8},
    {{true, 5}, {true, 7}, Source::parameterLessCount, 13},
    {{true, 8}, {true, 10}, Source::parameterLessCount, 20},
};

int32_t Resolve(const Number& number, int32_t count)
{
    return number.number + (number.beyond ? count : 0);
}

}  // namespace

RowKey::RowKey(std::string_view prefix, bool padded) : prefixLength_(prefix.size()), padded_(padded)
{
    std::copy(prefix.begin(), prefix.end(), text_.begin());
}

std::string_view RowKey::operator()(int32_t row)
{
    char* digits = text_.data() + prefixLength_;
    if (padded_ && row >= 0 && row < 10) {
        *digits++ = '0';
    }
    const char* const end = std::to_chars(digits, text_.data() + text_.size(), row).ptr;
    return {text_.data(), static_cast<size_t>(end - text_.data())};
}

int32_t OldKeyNumber(int32_t parameter, int32_t count)
{
    return parameter <= static_cast<int32_t>(oldKeys.size())
               ? Resolve(oldKeys[static_cast<size_t>(parameter - MP_FIRST)], count)
               : parameter - addedParameters;
}

OldPosition OldPositionOf(int32_t parameter, int32_t count)
{
    for (const PositionRange& range : positionRanges) {
        if (parameter < Resolve(range.first, count) || parameter > Resolve(range.last, count)) {
            continue;
        }
        switch (range.source) {
            case Source::key:
                return {parameter + range.offset, 0};
            case Source::parameter:
                return {0, parameter + range.offset};
            case Source::parameterLessCount:
                return {0, parameter + range.offset - count};
            case Source::constant:
                return {0, range.offset};
        }
    }
    return {};
}

int32_t TranslatedPosition(int32_t oldPosition)
{
    if (oldPosition < 1) {
        return oldPosition;
    }
    return oldPosition <= static_cast<int32_t>(newPositions.size()) ? newPositions[static_cast<size_t>(oldPosition - 1)]
                                                                    : oldPosition + addedParameters;
}

}  // namespace tvn2x::setup_file
