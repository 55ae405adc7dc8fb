#include "measure/ResultTable.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/FixedLocale.h"
#include "support/RaisedBy.h"

namespace tvn2x {
namespace {

struct ResultTableTest : testing::Test
{
    ResultTableTest()
    {
        document.ListSize(2);
        document.Frequency(2, 858.1234567);
        document.SymbolRate(2, 0.5);
        document.UserField(2, L"S 21");
    }

    void Reset(int32_t item = 0) { table.Reset(document, locale, item); }

    SetupDocument document;
    ResultTable table;
    const FixedLocale locale = CommaLocale();
};

/// An action is refused because its index is outside the table of a member.
template <class Action>
void ExpectOutside(const std::wstring& member, const Action& action)
{
    EXPECT_EQ(RaisedBy(action), L"9 clsSetup." + member + L": Subscript out of range");
}

TEST_F(ResultTableTest, ResetLeavesTheFixedColumnsAndTheStatusAlone)
{
    Reset();
    table.Result(0, MP_MER, 2, L"38,5");
    table.Result(2, MP_LAST, 2, L"x");
    table.Measured(1, true);
    table.Measured(2, true);
    Reset(2);
    EXPECT_TRUE(table.Measured(1));
    EXPECT_FALSE(table.Measured(2));
    table.Measured(2, true);
    Reset();
    EXPECT_FALSE(table.Measured(2));
    EXPECT_EQ(table.Result(1, MP_USERFIELD, 2), L"S 21");
    EXPECT_EQ(table.Result(1, MP_FREQUENCY, 2), L"858,1234567");
    EXPECT_EQ(table.Result(1, MP_SYMBOLRATE, 2), L"0,500");
    EXPECT_EQ(table.Result(1, MP_STATUS, 2), L"Un-measured");
    int filled = 0;
    for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter) {
        for (int32_t field = 0; field < ResultTable::fieldCount; ++field) {
            filled += table.Result(field, parameter, 2).empty() ? 0 : 1;
        }
    }
    EXPECT_EQ(filled, 4);
}

TEST_F(ResultTableTest, ResizedListResetsEveryChannelWhateverTheItem)
{
    Reset();
    table.Measured(1, true);
    document.ListSize(5);
    Reset(3);
    EXPECT_FALSE(table.Measured(1));
    EXPECT_EQ(table.Result(1, MP_STATUS, 1), L"Un-measured");
    EXPECT_EQ(table.Result(1, MP_STATUS, 5), L"Un-measured");
}

TEST_F(ResultTableTest, EmptyListHasTheEmptyRowZero)
{
    document.ListSize(0);
    Reset();
    Reset();
    EXPECT_EQ(table.Result(1, MP_STATUS, 0), L"");
    EXPECT_FALSE(table.Measured(0));
    ExpectOutside(L"Measured", [&] { static_cast<void>(table.Measured(1)); });
    ExpectOutside(L"ResetMeasurement", [&] { Reset(1); });
}

TEST_F(ResultTableTest, IndexOutsideNamesTheMember)
{
    const auto expectOutside = [&](std::initializer_list<std::tuple<int32_t, int32_t, int32_t>> cells) {
        for (const auto& cell : cells) {
            const auto read = [&](auto... index) { table.Result(index...); };
            const auto write = [&](auto... index) { table.Result(index..., L"x"); };
            ExpectOutside(L"Result", [&] { std::apply(read, cell); });
            ExpectOutside(L"Result", [&] { std::apply(write, cell); });
        }
    };
    expectOutside({{0, MP_STATUS, 0}, {0, MP_STATUS, 1}});  // before the first reset there is nothing at all
    Reset();
    expectOutside({{-1, MP_STATUS, 1},
                   {3, MP_STATUS, 1},
                   {0, MP_LASTSTATIC, 1},
                   {0, MP_LAST + 1, 1},
                   {0, INT32_MIN, 1},
                   {0, MP_STATUS, 0},
                   {0, MP_STATUS, 3}});
    ExpectOutside(L"Measured", [&] { table.Measured(3, true); });
    ExpectOutside(L"ResetMeasurement", [&] { Reset(-1); });
}

TEST_F(ResultTableTest, NumberGoesWithTheTextThatShowsIt)
{
    Reset();
    const auto store = [&] {
        table.Reading(MP_RFLEV, 1, L"61,1", 61.0625);
        table.Reading(MP_LAST, 1, L"0,0", 0);
        EXPECT_EQ(table.Result(0, MP_RFLEV, 1), L"61,1");
        EXPECT_EQ(table.Value(MP_RFLEV, 1), 61.0625);
        EXPECT_EQ(table.Value(MP_LAST, 1), 0) << "a number like any other";
    };
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"another text", [&] { table.Result(0, MP_RFLEV, 1, L"---"); }},
        {"the column's end", [&] { table.ClearColumn(MP_RFLEV, 1); }},
        {"the row's end", [&] { Reset(1); }},
        {"the table's end", [&] { Reset(); }},
    };
    for (const auto& [what, end] : ends) {
        store();
        end();
        EXPECT_EQ(table.Value(MP_RFLEV, 1), std::nullopt) << what;
    }
    store();
    table.Result(1, MP_RFLEV, 1, L"beside it");
    EXPECT_EQ(table.Value(MP_RFLEV, 1), 61.0625);
    for (const auto& [parameter, channel] : {std::pair{MP_RFLEV, 2}, {MP_FREQUENCY, 1}, {MP_FIRSTFIXED, 1}}) {
        EXPECT_EQ(table.Value(parameter, channel), std::nullopt);
    }
    for (const auto& [parameter, channel] :
         {std::pair{MP_LASTSTATIC + 0, 1}, {MP_LAST + 1, 1}, {INT32_MAX, 1}, {MP_RFLEV + 0, 0}, {MP_RFLEV + 0, 3}}) {
        ExpectOutside(L"Value",
                      [&, at = std::pair(parameter, channel)] { static_cast<void>(table.Value(at.first, at.second)); });
    }
}

TEST_F(ResultTableTest, CellsKeepTheirTextsWhateverTheirNeighboursDo)
{
    Reset();
    const std::wstring texts[] = {L"", L"x", std::wstring(70000, L'l'), L"---", std::wstring(L"a\0b", 3)};
    for (int32_t round = 0; round < 3; ++round) {
        const auto expected = [&](int32_t field, int32_t parameter) {
            return texts[static_cast<size_t>(round + 3 * field + parameter) % std::size(texts)];
        };
        for (int32_t parameter = MP_LAST; parameter >= MP_FIRSTFIXED; --parameter) {
            for (int32_t field = 0; field < ResultTable::fieldCount; ++field) {
                table.Result(field, parameter, 1, expected(field, parameter));
            }
        }
        for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter) {
            for (int32_t field = 0; field < ResultTable::fieldCount; ++field) {
                EXPECT_TRUE(table.Result(field, parameter, 1) == expected(field, parameter)) << parameter << field;
            }
        }
    }
    EXPECT_EQ(table.Result(1, MP_STATUS, 2), L"Un-measured");
}

}  // namespace
}  // namespace tvn2x
