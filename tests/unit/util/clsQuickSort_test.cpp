#include "util/clsQuickSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>

#include "support/FixedLocale.h"
#include "util/RaisedError.h"
#include "util/modListUtils.h"

namespace tvn2x {
namespace {

std::wstring ErrorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const RaisedError& raised) {
        return std::to_wstring(raised.number) + L" " + raised.source + L": " + raised.description;
    }
    return L"none";
}

class QuickSortTest : public testing::Test
{
protected:
    void Fill(int32_t columns, const std::vector<std::vector<std::wstring>>& rows)
    {
        sorter.Cols(columns);
        for (const auto& row : rows) {
            const int32_t index = sorter.AddRow();
            for (int32_t column = 1; column <= columns; ++column)
                sorter.Cell(index, column, row[static_cast<size_t>(column) - 1]);
        }
    }
    std::wstring Column(int32_t column) const
    {
        std::wstring text;
        for (int32_t row = 1; row <= sorter.Rows(); ++row)
            text += (row == 1 ? L"" : L" ") + sorter.Cell(row, column);
        return text;
    }

    FixedLocale locale;
    clsQuickSort sorter{locale};
};

TEST_F(QuickSortTest, RefusesArgumentsOutsideTheirRange)
{
    sorter.Cols(2);
    sorter.AddRow();
    const std::pair<const wchar_t*, std::function<void()>> calls[] = {
        {L"Cols", [&] { sorter.Cols(0); }},
        {L"ColType", [&] { sorter.ColType(3, 0); }},
        {L"ColType", [&] { sorter.ColType(1, 2); }},
        {L"ColType", [&] { sorter.ColType(0); }},
        {L"ColDirection", [&] { sorter.ColDirection(0, 0); }},
        {L"ColDirection", [&] { sorter.ColDirection(1, -1); }},
        {L"ColPriority", [&] { sorter.ColPriority(3, 1); }},
        {L"ColPriority", [&] { sorter.ColPriority(1, 3); }},
        {L"ColPriority", [&] { sorter.ColPriority(1, -1); }},
        {L"Cell", [&] { sorter.Cell(2, 1); }},
        {L"Cell", [&] { sorter.Cell(1, 3, L"x"); }},
        {L"Data", [&] { sorter.Data(0); }},
    };
    for (const auto& [member, call] : calls)
        EXPECT_EQ(L"380 clsQuickSort." + std::wstring(member) + L": Invalid property value", ErrorOf(call));
    EXPECT_EQ(2, sorter.Cols());
    EXPECT_EQ(1, sorter.Rows());
    sorter.Cols(3);
    EXPECT_EQ(0, sorter.Rows());
    EXPECT_EQ(3u, (sorter.AddRow(), sorter.Data(1).size()));
}

TEST_F(QuickSortTest, TextComparesByCodeUnitAndNumbersByValue)
{
    Fill(1, {{L"b"}, {L"10"}, {L"\u00E4"}, {L"9"}, {L"B"}, {L""}});
    sorter.ColPriority(1, 1);
    EXPECT_TRUE(sorter.Sort());
    EXPECT_EQ(L" 10 9 B b \u00E4", Column(1));
    EXPECT_FALSE(sorter.Sort());

    Fill(1, {{L"10"}, {L"9.5"}, {L"-1"}, {L"1E+3"}});
    sorter.ColPriority(1, 1);
    sorter.ColType(1, clsQuickSort::numeric);
    sorter.ColDirection(1, clsQuickSort::descending);
    EXPECT_TRUE(sorter.Sort());
    EXPECT_EQ(L"1E+3 10 9.5 -1", Column(1));
}

TEST_F(QuickSortTest, LaterColumnsOrderTheRunsOfEarlierOnes)
{
    const std::vector<std::vector<std::wstring>> rows{
        {L"1", L"b", L"2"}, {L"1.0", L"a", L"1"}, {L"0", L"z", L"5"}, {L"1", L"b", L"1"}, {L"2", L"a", L"0"}};
    Fill(3, rows);
    sorter.ColType(1, clsQuickSort::numeric);
    sorter.ColPriority(1, 1);
    sorter.ColPriority(2, 2);
    sorter.ColPriority(3, 3);
    EXPECT_TRUE(sorter.Sort());
    EXPECT_EQ(L"z a b b a", Column(2));
    EXPECT_EQ(L"5 1 1 2 0", Column(3));

    Fill(3, rows);
    sorter.ColPriority(2, 2);
    sorter.ColPriority(3, 3);
    EXPECT_TRUE(sorter.Sort());
    EXPECT_EQ(L"0 1 1 2 5", Column(3));
}

TEST_F(QuickSortTest, CellThatIsNoNumberFailsAndMovesNothing)
{
    Fill(1, {{L"2"}, {L"1"}, {L"-"}});
    sorter.ColPriority(1, 1);
    sorter.ColType(1, clsQuickSort::numeric);
    EXPECT_EQ(0u, ErrorOf([&] { sorter.Sort(); }).find(L"13 "));
    EXPECT_EQ(L"2 1 -", Column(1));
}

TEST_F(QuickSortTest, FewerThanTwoRowsNeverMoveAndMoreThanTheLimitOverflow)
{
    sorter.ColPriority(1, 1);
    EXPECT_FALSE(sorter.Sort());
    sorter.AddRow();
    EXPECT_FALSE(sorter.Sort());
    while (sorter.Rows() < 32767)
        sorter.AddRow();
    EXPECT_FALSE(sorter.Sort());
    sorter.AddRow();
    EXPECT_EQ(L"6 clsQuickSort.Sort: Overflow", ErrorOf([&] { sorter.Sort(); }));
}

TEST_F(QuickSortTest, SortsEveryKindOfInputLikeAStableSort)
{
    constexpr int count = 5000;
    std::mt19937 random(7);
    const std::function<int(int)> inputs[] = {
        [&](int) { return static_cast<int>(random() % 1000000); },
        [&](int) { return static_cast<int>(random() % 10); },
        [](int row) { return row; },
        [](int row) { return count - row; },
        [](int) { return 4; },
        [](int row) { return std::min(row, count - row); },
        [](int row) { return row == count - 1 ? -1 : row; },
    };
    for (const auto& input : inputs) {
        for (const int32_t direction : {clsQuickSort::ascending, clsQuickSort::descending}) {
            sorter.Cols(2);
            std::vector<int> values;
            for (int row = 0; row < count; ++row) {
                values.push_back(input(row));
                const int32_t index = sorter.AddRow();
                sorter.Cell(index, 1, std::to_wstring(values.back()));
                sorter.Cell(index, 2, std::to_wstring(row));
            }
            std::vector<int> order(count);
            std::iota(order.begin(), order.end(), 0);
            std::stable_sort(order.begin(), order.end(), [&](int left, int right) {
                return direction == clsQuickSort::ascending ? values[left] < values[right]
                                                            : values[left] > values[right];
            });
            for (const int32_t column : {1, 2}) {
                sorter.ColType(column, clsQuickSort::numeric);
                sorter.ColPriority(column, column);
            }
            sorter.ColDirection(1, direction);
            EXPECT_EQ(!std::is_sorted(order.begin(), order.end()), sorter.Sort());
            for (int row = 0; row < count; ++row)
                ASSERT_EQ(std::to_wstring(order[row]), sorter.Cell(row + 1, 2)) << row;
        }
    }
}

TEST(ListUtils, FindTheFirstEntryByExactTextOrByValue)
{
    constexpr ListItem items[] = {{L"Off", 0}, {L"On", 5}, {L"on", 5}};
    static_assert(FindListText(items, L"on") == 2);
    static_assert(FindListText(items, L"O") == -1);
    static_assert(FindListData(items, 5) == 1);
    EXPECT_EQ(-1, FindListData(items, 6));
    EXPECT_EQ(-1, FindListData({}, 0));
}

}  // namespace
}  // namespace tvn2x
