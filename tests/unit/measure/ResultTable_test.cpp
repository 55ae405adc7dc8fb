#include "measure/ResultTable.h"

#include <gtest/gtest.h>

#include "support/FixedLocale.h"
#include "util/RaisedError.h"

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

template <class Access>
std::wstring SourceOfSubscriptError(Access access)
{
    try {
        access();
    } catch (const RaisedError& raised) {
        return raised.number == 9 && raised.description == L"Subscript out of range" ? raised.source : L"another error";
    }
    return L"no error";
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
    EXPECT_EQ(table.Result(1, MP_USERFIELD, 2), L"S 21");
    EXPECT_EQ(table.Result(1, MP_FREQUENCY, 2), L"858,1234567");
    EXPECT_EQ(table.Result(1, MP_SYMBOLRATE, 2), L"0,500");
    EXPECT_EQ(table.Result(1, MP_STATUS, 2), L"Un-measured");
    int filled = 0;
    for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter)
        for (int32_t field = 0; field < ResultTable::fieldCount; ++field)
            filled += table.Result(field, parameter, 2).empty() ? 0 : 1;
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
    EXPECT_EQ(SourceOfSubscriptError([&] { static_cast<void>(table.Measured(1)); }), L"clsSetup.Measured");
    EXPECT_EQ(SourceOfSubscriptError([&] { Reset(1); }), L"clsSetup.ResetMeasurement");
}

TEST_F(ResultTableTest, IndexOutsideNamesTheMember)
{
    const auto expectOutside = [&](int32_t field, int32_t parameter, int32_t channel) {
        EXPECT_EQ(SourceOfSubscriptError([&] { table.Result(field, parameter, channel); }), L"clsSetup.Result");
        EXPECT_EQ(SourceOfSubscriptError([&] { table.Result(field, parameter, channel, L"x"); }), L"clsSetup.Result");
    };
    expectOutside(0, MP_STATUS, 0);  // before the first reset there is nothing at all
    expectOutside(0, MP_STATUS, 1);
    Reset();
    expectOutside(-1, MP_STATUS, 1);
    expectOutside(3, MP_STATUS, 1);
    expectOutside(0, MP_LASTSTATIC, 1);
    expectOutside(0, MP_LAST + 1, 1);
    expectOutside(0, INT32_MIN, 1);
    expectOutside(0, MP_STATUS, 0);
    expectOutside(0, MP_STATUS, 3);
    EXPECT_EQ(SourceOfSubscriptError([&] { table.Measured(3, true); }), L"clsSetup.Measured");
    EXPECT_EQ(SourceOfSubscriptError([&] { Reset(3); }), L"clsSetup.ResetMeasurement");
    EXPECT_EQ(SourceOfSubscriptError([&] { Reset(-1); }), L"clsSetup.ResetMeasurement");
}

TEST_F(ResultTableTest, CellsKeepTheirTextsWhateverTheirNeighboursDo)
{
    Reset();
    const std::wstring texts[] = {L"", L"x", std::wstring(70000, L'l'), L"---", std::wstring(L"a\0b", 3)};
    for (int32_t round = 0; round < 3; ++round) {
        const auto expected = [&](int32_t field, int32_t parameter) {
            return texts[static_cast<std::size_t>(round + 3 * field + parameter) % std::size(texts)];
        };
        for (int32_t parameter = MP_LAST; parameter >= MP_FIRSTFIXED; --parameter)
            for (int32_t field = 0; field < ResultTable::fieldCount; ++field)
                table.Result(field, parameter, 1, expected(field, parameter));
        for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter)
            for (int32_t field = 0; field < ResultTable::fieldCount; ++field)
                EXPECT_TRUE(table.Result(field, parameter, 1) == expected(field, parameter)) << parameter << field;
    }
    EXPECT_EQ(table.Result(1, MP_STATUS, 2), L"Un-measured");
}

}  // namespace
}  // namespace tvn2x
