#include "util/clsQuickSort.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include "util/RaisedError.h"

namespace tvn2x {

void clsQuickSort::Check(int64_t value, int64_t lowest, int64_t highest, const wchar_t* source)
{
    if (value < lowest || value > highest) {
        throw RaisedError(error::invalidPropertyValue, source, L"Invalid property value");
    }
}

size_t clsQuickSort::Place(int32_t number, int32_t count, const wchar_t* source)
{
    Check(number, 1, count, source);
    return static_cast<size_t>(number) - 1;
}

void clsQuickSort::Cols(int32_t count)
{
    Check(count, 1, std::numeric_limits<int32_t>::max(), L"clsQuickSort.Cols");
    std::vector<Column> columns(static_cast<size_t>(count));
    columns_ = std::move(columns);
    rows_.clear();
}

int32_t clsQuickSort::ColType(int32_t column) const
{
    return columns_[Place(column, Cols(), L"clsQuickSort.ColType")].type;
}

void clsQuickSort::ColType(int32_t column, int32_t type)
{
    Put(&Column::type, column, type, text, numeric, L"clsQuickSort.ColType");
}

int32_t clsQuickSort::ColDirection(int32_t column) const
{
    return columns_[Place(column, Cols(), L"clsQuickSort.ColDirection")].direction;
}

void clsQuickSort::ColDirection(int32_t column, int32_t direction)
{
    Put(&Column::direction, column, direction, ascending, descending, L"clsQuickSort.ColDirection");
}

int32_t clsQuickSort::ColPriority(int32_t priority) const
{
    return columns_[Place(priority, Cols(), L"clsQuickSort.ColPriority")].priority;
}

void clsQuickSort::ColPriority(int32_t priority, int32_t column)
{
    Put(&Column::priority, priority, column, 0, Cols(), L"clsQuickSort.ColPriority");
}

void clsQuickSort::Put(int32_t Column::*setting, int32_t number, int32_t value, int32_t lowest, int32_t highest,
                       const wchar_t* source)
{
    Column& column = columns_[Place(number, Cols(), source)];
    Check(value, lowest, highest, source);
    column.*setting = value;
}

int32_t clsQuickSort::AddRow()
{
    rows_.emplace_back(columns_.size());
    return Rows();
}

const std::wstring& clsQuickSort::Cell(int32_t row, int32_t column) const
{
    const size_t place = Place(row, Rows(), L"clsQuickSort.Cell");
    return rows_[place][Place(column, Cols(), L"clsQuickSort.Cell")];
}

void clsQuickSort::Cell(int32_t row, int32_t column, std::wstring value)
{
    const_cast<std::wstring&>(std::as_const(*this).Cell(row, column)) = std::move(value);
}

const std::vector<std::wstring>& clsQuickSort::Data(int32_t row) const
{
    return rows_[Place(row, Rows(), L"clsQuickSort.Data")];
}

/// Negative where the left row comes first.
int clsQuickSort::Key::Compare(int32_t left, int32_t right) const
{
    const auto l = static_cast<size_t>(left);
    const auto r = static_cast<size_t>(right);
    const int order = isNumeric ? (numbers[l] > numbers[r]) - (numbers[l] < numbers[r]) : texts[l]->compare(*texts[r]);
    return isDescending ? -order : order;
}

clsQuickSort::Key clsQuickSort::MakeKey(int32_t column) const
{
    const Column& settings = columns_[static_cast<size_t>(column) - 1];
    Key key{settings.type == numeric, settings.direction == descending, {}, {}};
    const wchar_t mark = locale_.DecimalMark();
    for (const Row& row : rows_) {
        const std::wstring& cell = row[static_cast<size_t>(column) - 1];
        if (key.isNumeric) {
            key.numbers.push_back(ParseNumber(cell, mark));
        } else {
            key.texts.push_back(&cell);
        }
    }
    return key;
}

bool clsQuickSort::Sort()
{
    if (Rows() > mostRows) {
        throw RaisedError(error::overflow, L"clsQuickSort.Sort", L"Overflow");
    }
    if (Rows() < 2) {
        return false;
    }
    std::vector<Key> keys;
    for (const Column& column : columns_) {
        if (column.priority != 0) {
            keys.push_back(MakeKey(column.priority));
        }
    }

    std::vector<int32_t> order(rows_.size());
    std::iota(order.begin(), order.end(), 0);
    bool changed = false;
    for (size_t rank = 0; rank < keys.size(); ++rank) {
        const auto sameSoFar = [&](int32_t left, int32_t right) {
            return std::all_of(keys.begin(), keys.begin() + static_cast<ptrdiff_t>(rank),
                               [&](const Key& key) { return key.Compare(left, right) == 0; });
        };
        for (int32_t first = 0, next = 0; first < Rows(); first = next) {
            for (next = first + 1; next < Rows(); ++next) {
                if (!sameSoFar(order[static_cast<size_t>(next) - 1], order[static_cast<size_t>(next)])) {
                    break;
                }
            }
            changed = SortRun(order, first, next - 1, keys[rank]) || changed;
        }
    }

    std::vector<Row> sorted(rows_.size());
    std::transform(order.begin(), order.end(), sorted.begin(),
                   [this](int32_t row) { return std::move(rows_[static_cast<size_t>(row)]); });
    rows_ = std::move(sorted);
    return changed;
}

/// Sorts the places low..high. Only the smaller part of each partition is left to a call of its own, so the stack grows
/// with the logarithm of the rows; a part that is in order already, as after a click on a sorted heading, costs one
/// look.
bool clsQuickSort::SortRun(std::vector<int32_t>& order, int32_t low, int32_t high, const Key& key)
{
    bool changed = false;
    while (low < high) {
        const auto begin = order.begin() + low;
        const auto end = order.begin() + high + 1;
        if (std::is_sorted(begin, end, [&](int32_t left, int32_t right) { return key.Compare(left, right) < 0; })) {
            break;
        }
        changed = true;
        const int32_t pivot = Partition(order, low, high, key);
        if (pivot - low < high - pivot) {
            SortRun(order, low, pivot - 1, key);
            low = pivot + 1;
        } else {
            SortRun(order, pivot + 1, high, key);
            high = pivot - 1;
        }
    }
    return changed;
}

/// Puts the pivot into its final place, which it returns. The middle of the first, the central and the last row is the
/// pivot, so that a sorted list is not the worst case. A reversed one is near it; whoever can have one shuffles.
int32_t clsQuickSort::Partition(std::vector<int32_t>& order, int32_t low, int32_t high, const Key& key)
{
    const auto at = [&order](int32_t place) -> int32_t& { return order[static_cast<size_t>(place)]; };
    const auto comesFirst = [&](int32_t left, int32_t right) { return key.Compare(at(left), at(right)) < 0; };
    const int32_t middle = low + (high - low) / 2;
    const int32_t lesser = comesFirst(low, high) ? low : high;
    const int32_t greater = lesser == low ? high : low;
    const int32_t median = comesFirst(middle, lesser) ? lesser : comesFirst(greater, middle) ? greater : middle;
    std::swap(at(low), at(median));

    const int32_t pivot = at(low);
    int32_t i = low;
    int32_t j = high;
    while (i != j) {
        while (i < j && key.Compare(at(j), pivot) >= 0) {
            --j;
        }
        at(i) = at(j);
        while (i < j && key.Compare(at(i), pivot) <= 0) {
            ++i;
        }
        at(j) = at(i);
    }
    at(i) = pivot;
    return i;
}

}  // namespace tvn2x
