#include "util/clsQuickSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "support/FixedLocale.h"
#include "support/RaisedBy.h"

namespace tvn2x {
namespace {

class QuickSortTest : public testing::Test
{
protected:
    void AddRow(const std::vector<std::wstring>& cells)
    {
        const int32_t row = sorter.AddRow();
        for (int32_t column = 1; column <= sorter.Cols(); ++column) {
            sorter.Cell(row, column, cells[static_cast<size_t>(column) - 1]);
        }
    }
    std::wstring Column() const
    {
        std::wstring text;
        for (int32_t row = 1; row <= sorter.Rows(); ++row) {
            text += (row == 1 ? L"" : L" ") + sorter.Cell(row, 1);
        }
        return text;
    }

    FixedLocale locale;
    clsQuickSort sorter{locale};
};

TEST_F(QuickSortTest, RefusesArgumentsOutsideTheirRange)
{
    sorter.Cols(2);
    sorter.AddRow();
    sorter.ColType(1, 1);
    sorter.ColDirection(1, 1);
    sorter.ColPriority(1, 2);
    const std::pair<const wchar_t*, std::function<void()>> calls[] = {
        {L"Cols", [&] { sorter.Cols(0); }},
        {L"ColType", [&] { sorter.ColType(3, 0); }},
        {L"ColType", [&] { sorter.ColType(1, 2); }},
        {L"ColDirection", [&] { sorter.ColDirection(0, 0); }},
        {L"ColDirection", [&] { sorter.ColDirection(1, -1); }},
        {L"ColPriority", [&] { sorter.ColPriority(3, 1); }},
        {L"ColPriority", [&] { sorter.ColPriority(1, 3); }},
        {L"ColPriority", [&] { sorter.ColPriority(1, -1); }},
        {L"Cell", [&] { sorter.Cell(2, 1); }},
        {L"Cell", [&] { sorter.Cell(1, 3, L"x"); }},
        {L"Data", [&] { sorter.Data(0); }},
    };
    for (const auto& [member, call] : calls) {
        EXPECT_EQ(L"380 clsQuickSort." + std::wstring(member) + L": Invalid property value", RaisedBy(call));
    }
    EXPECT_EQ(std::tuple(2, 1, 1, 1, 2), std::tuple(sorter.Cols(), sorter.Rows(), sorter.ColType(1),
                                                    sorter.ColDirection(1), sorter.ColPriority(1)));
    sorter.ColPriority(1, 0);
    sorter.Cols(3);
    EXPECT_EQ(0, sorter.Rows());
    EXPECT_EQ(3u, (sorter.AddRow(), sorter.Data(1).size()));
}

TEST_F(QuickSortTest, TextComparesByCodeUnitAndNumbersByValue)
{
    for (const wchar_t* const cell : {L"b", L"10", L"\u00E4", L"9", L"B", L""}) {
        AddRow({cell});
    }
    sorter.ColPriority(1, 1);
    EXPECT_TRUE(sorter.Sort());
    EXPECT_EQ(L" 10 9 B b \u00E4", Column());
    EXPECT_FALSE(sorter.Sort());

    sorter.ColType(1, clsQuickSort::numeric);
    sorter.Cell(1, 1, L"2");
    EXPECT_EQ(0u, RaisedBy([&] { sorter.Sort(); }).find(L"13 "));
    EXPECT_EQ(L"2 10 9 B b \u00E4", Column()) << "a cell that is no number moves nothing";
}

TEST_F(QuickSortTest, FewerThanTwoRowsNeverMoveAndMoreThanTheLimitOverflow)
{
    sorter.ColPriority(1, 1);
    for (const int32_t rows : {0, 1, 32767}) {
        while (sorter.Rows() < rows) {
            sorter.AddRow();
        }
        EXPECT_FALSE(sorter.Sort());
    }
    sorter.AddRow();
    EXPECT_EQ(L"6 clsQuickSort.Sort: Overflow", RaisedBy([&] { sorter.Sort(); }));
}

/// By three columns; the last tells the rows apart, as the grid's does.
TEST_F(QuickSortTest, SortsEveryShapeOfInputInBothDirections)
{
    constexpr int count = 5000;
    int (*const shapes[])(int) = {
        [](int row) { return row * 7919 % count; },
        [](int row) { return row % 10; },
        [](int row) { return row; },
        [](int row) { return count - row; },
        [](int row) { return std::min(row, count - row); },
    };
    for (const auto shape : shapes) {
        for (const int32_t direction : {clsQuickSort::ascending, clsQuickSort::descending}) {
            sorter.Cols(3);
            for (int row = 0; row < count; ++row) {
                AddRow({std::to_wstring(shape(row)), std::wstring(1, L"ba"[row % 2]), std::to_wstring(row)});
            }
            for (const int32_t column : {1, 2, 3}) {
                sorter.ColType(column, column == 2 ? clsQuickSort::text : clsQuickSort::numeric);
                sorter.ColPriority(column, column);
            }
            sorter.ColDirection(1, direction);
            sorter.Sort();
            const auto at = [&](int32_t row) {
                const int value = std::stoi(sorter.Cell(row, 1)), position = std::stoi(sorter.Cell(row, 3));
                EXPECT_EQ(value, shape(position)) << "rows move as a whole";
                return std::tuple(direction == clsQuickSort::ascending ? value : -value, sorter.Cell(row, 2), position);
            };
            for (int32_t row = 2; row <= count; ++row) {
                ASSERT_LT(at(row - 1), at(row)) << row;
            }
        }
    }
}

}  // namespace
}  // namespace tvn2x
