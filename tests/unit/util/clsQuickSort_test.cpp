#include "util/clsQuickSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "support/FixedLocale.h"
#include "support/TestSession.h"

namespace tvn2x {
namespace {

/// A table that is filled, and sorted by some of its columns.
class Session : public TestSession
{
public:
    const Deeds deeds{
        {"columns", [this] { sorter.Cols(Number(0)); }},
        {"rows", [this] { AddRows(Number(0)); }},
        {"cell", [this] { sorter.Cell(Number(0), Number(1), Text(2)); }},
        {"type", [this] { sorter.ColType(Number(0), Number(1)); }},
        {"direction", [this] { sorter.ColDirection(Number(0), Number(1)); }},
        {"priority", [this] { sorter.ColPriority(Number(0), Number(1)); }},
    };
    const Sights sights{
        {"sort", [this] { return Told(sorter.Sort()); }},
        {"columns", [this] { return Told(sorter.Cols()); }},
        {"rows", [this] { return Told(sorter.Rows()); }},
        {"cell", [this] { return std::wstring(sorter.Cell(Number(0), Number(1))); }},
        {"first-column", [this] { return FirstColumn(); }},
        {"type", [this] { return Told(sorter.ColType(Number(0))); }},
        {"direction", [this] { return Told(sorter.ColDirection(Number(0))); }},
        {"priority", [this] { return Told(sorter.ColPriority(Number(0))); }},
        {"width", [this] { return Told(sorter.Data(Number(0)).size()); }},
        {"error-of", [this] { return ErrorOf(*this, std::string(rest)); }},
    };

private:
    void AddRows(int32_t count)
    {
        while (sorter.Rows() < count) {
            sorter.AddRow();
        }
    }
    std::wstring FirstColumn() const
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

TEST(QuickSort, SortsAsEachSessionExpects)
{
    PlaySessions("sort-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
}

/// By three columns; the last tells the rows apart, as the grid's does.
TEST(QuickSort, SortsEveryShapeOfInputInBothDirections)
{
    const FixedLocale locale;
    clsQuickSort sorter(locale);
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
                const int32_t added = sorter.AddRow();
                sorter.Cell(added, 1, std::to_wstring(shape(row)));
                sorter.Cell(added, 2, std::wstring(1, L"ba"[row % 2]));
                sorter.Cell(added, 3, std::to_wstring(row));
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
