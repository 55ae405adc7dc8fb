#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "util/modLocaleInfo.h"

namespace tvn2x {

/// Sorts rows of texts by several key columns in an order of priority.
///
/// Columns, rows and priorities count from 1. Every argument outside its range raises 380 "Invalid property value" from
/// "clsQuickSort.<member>" and changes nothing. The order of rows with equal keys is not kept; a last key column that
/// holds each row's position keeps it.
class clsQuickSort
{
public:
    static constexpr int32_t text = 0;     ///< ColType: compares code unit by code unit
    static constexpr int32_t numeric = 1;  ///< ColType: compares the numbers that the cells read as
    static constexpr int32_t ascending = 0;
    static constexpr int32_t descending = 1;
    static constexpr int32_t mostRows = 32767;

    explicit clsQuickSort(const Locale& locale) : locale_(locale) { Cols(1); }

    int32_t Cols() const { return static_cast<int32_t>(columns_.size()); }
    void Cols(int32_t count);  ///< at least 1; clears rows, types, directions and priorities
    int32_t Rows() const { return static_cast<int32_t>(rows_.size()); }
    int32_t ColType(int32_t column) const;
    void ColType(int32_t column, int32_t type);
    int32_t ColDirection(int32_t column) const;
    void ColDirection(int32_t column, int32_t direction);
    int32_t ColPriority(int32_t priority) const;
    void ColPriority(int32_t priority, int32_t column);  ///< 0 for no column

    int32_t AddRow();  ///< a row of empty cells; returns its index
    const std::wstring& Cell(int32_t row, int32_t column) const;
    void Cell(int32_t row, int32_t column, std::wstring value);
    const std::vector<std::wstring>& Data(int32_t row) const;

    /// True where a row has moved. Raises 6 "Overflow" above 32,767 rows, 13 where a cell of a numeric key column is no
    /// number; the rows then are as they were.
    bool Sort();

private:
    using Row = std::vector<std::wstring>;
    /// The settings of a column, and those of the position of the same number in the order of comparison.
    struct Column
    {
        int32_t type = text;
        int32_t direction = ascending;
        int32_t priority = 0;  ///< the column that is compared at this position, not this column's own rank
    };
    /// One key column while sorting: a pointer or a number per row, by the row's index before the sort.
    struct Key
    {
        bool isNumeric;
        bool isDescending;
        std::vector<double> numbers;
        std::vector<const std::wstring*> texts;

        int Compare(int32_t left, int32_t right) const;
    };

    static void Check(int64_t value, int64_t lowest, int64_t highest, const wchar_t* source);
    /// Where the vectors hold the row, column or priority of a number 1..count.
    static size_t Place(int32_t number, int32_t count, const wchar_t* source);
    void Put(int32_t Column::*setting, int32_t number, int32_t value, int32_t lowest, int32_t highest,
             const wchar_t* source);
    Key MakeKey(int32_t column) const;
    static bool SortRun(std::vector<int32_t>& order, int32_t low, int32_t high, const Key& key);
    static int32_t Partition(std::vector<int32_t>& order, int32_t low, int32_t high, const Key& key);

    const Locale& locale_;
    std::vector<Column> columns_;
    std::vector<Row> rows_;
};

}  // namespace tvn2x
