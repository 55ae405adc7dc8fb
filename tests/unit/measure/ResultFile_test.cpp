#include "measure/ResultFile.h"

#include <functional>
#include <initializer_list>
#include <sstream>

#include "measure/ResultTable.h"
#include "measure/SpreadsheetText.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RaisedBy.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TestFiles.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::wstring path = L"C:\\out\\results.csv";

struct ResultFileTest : testing::Test
{
    ResultFileTest()
    {
        document.ListSize(2);
        document.UserField(1, L"S 21");
        document.Frequency(1, 213);
        document.UserField(2, L"S 22");
        document.Frequency(2, 858.1234567);
        document.productName = L"Host";
        document.appVersion = L"2.0";
        document.fullPath = L"C:\\setups\\North.ini";
        Save({MP_FREQUENCY, MP_STATUS, MP_RFLEV});
        table.Reset(document, locale);
        table.Result(1, MP_STATUS, 1, L"Done");
        table.Result(0, MP_RFLEV, 1, L"-12,3");
        table.Result(0, MP_RFLEV, 2, L"---");
    }

    void Save(std::initializer_list<int32_t> parameters)
    {
        for (int32_t parameter = MP_FIRST; parameter <= MP_LAST; ++parameter) {
            document.Parameter(2, parameter, std::ranges::find(parameters, parameter) != parameters.end());
        }
    }

    std::vector<std::string> Rows() const
    {
        std::istringstream content(ResultFileContent(document, table, locale));
        std::vector<std::string> rows;
        for (std::string row; std::getline(content, row);) {
            EXPECT_TRUE(row.ends_with('\r'));
            rows.push_back(row.substr(0, row.size() - 1));
        }
        return rows;
    }

    /// What follows the first blank row: the results, and the notes where there are any.
    std::vector<std::string> RowsBehindSettings() const
    {
        std::vector<std::string> rows = Rows();
        rows.erase(rows.begin(), std::ranges::find(rows, std::string()) + 1);
        return rows;
    }

    bool Write(const std::wstring& to = path)
    {
        messages.messages.clear();
        Replacement file(files);
        return SaveResults(document, table, locale, file, messages, to);
    }

    SetupDocument document;
    ResultTable table;
    const FixedLocale locale = CommaLocale();
    MemoryFiles files;
    RecordingMessageBoxes messages;
};

/// A measurement with everything that a spreadsheet could misread. What one finds in these files is tested, too.
TEST(ResultFile, HasEveryCellInItsPlaceInEitherLocaleAndDirection)
{
    const wchar_t* const labels[] = {L"\u00D8lgade \"north\"; a, b\r\n\u4E2D\u6587 \U0001F4E1", L"=1+1",
                                     L"@SUM(A1); - plain"};
    for (const auto& [name, locale] : {std::pair("german", CommaLocale()), {"american", FixedLocale()}}) {
        SetupDocument document;
        document.ListSize(3);
        document.productName = L"TVN Host";
        document.appVersion = L"2.0";
        document.measurementNotes = L"{\\rtf1\\ansi cold; \"quiet\" morning\\par =1+1\\par}";
        document.Caption(MP_USERFIELD, L"Label; with, separators");
        for (int32_t channel = 1; channel <= 3; ++channel) {
            document.UserField(channel, labels[channel - 1]);
            document.Frequency(channel, 105.2512345 + 8 * channel);
            document.SymbolRate(channel, 6.9);
        }
        for (int32_t parameter = MP_TIMESTAMP; parameter <= MP_LAST; ++parameter) {
            document.Parameter(2, parameter, parameter == MP_RFLEV || parameter == MP_BER || parameter == MP_FREQOFF);
        }
        ResultTable table;
        table.Reset(document, locale);
        const std::wstring mark = DecimalSeparator(locale);
        const std::wstring readings[][3] = {{L"-12" + mark + L"3", L"1" + mark + L"5E-3", L"-1250"},
                                            {L"61" + mark + L"5", L"<1" + mark + L"7E-8", L"---"}};
        for (int32_t channel = 1; channel <= 2; ++channel) {
            table.Result(1, MP_STATUS, channel, L"Done");
            for (const auto& [column, place] : {std::pair(MP_RFLEV, 0), {MP_BER, 1}, {MP_FREQOFF, 2}}) {
                table.Result(0, column, channel, readings[channel - 1][place]);
            }
        }
        for (const auto& [direction, axis] : {std::pair("across", 0), {"down", 1}}) {
            document.XAxis(1, axis);
            EXPECT_EQ(ResultFileContent(document, table, locale),
                      TestFile("results/" + std::string(direction) + "." + name + ".csv"));
        }
    }
}

TEST_F(ResultFileTest, EachChoiceHasItsWords)
{
    Save({MP_ZIN, MP_SAWBW});
    document.SawBw(0);
    document.CoupleDisplayAndSave(false);
    for (const auto& [route, words] : {std::pair{4, "Demod (50 ohm)"}, {128, "IF"}, {99, "99"}}) {
        document.Zin(route);
        EXPECT_EQ(Rows()[2], std::string("Input Route;") + words);
    }
    EXPECT_EQ(Rows()[3], "SAW Filter Bandwidth (MHz);Off");
    EXPECT_EQ(Rows()[5], "Couple Display and Save;False");
}

TEST_F(ResultFileTest, ChannelsRunAcrossInTheDisplayOrderUnderTheUsersCaptions)
{
    document.XAxis(1, 0);
    document.Order(MP_RFLEV, 1);
    document.Order(MP_STATUS, -1);
    document.Caption(MP_FREQUENCY, L"Mitte; \"f\"");
    EXPECT_THAT(RowsBehindSettings(),
                ElementsAre("RF Level (dBmV);-12,3;---", "\"Mitte; \"\"f\"\"\";213,0000000;858,1234567",
                            "Status;Done;Un-measured"));
}

TEST_F(ResultFileTest, OwnChoiceOfTheFileComesBeforeThatOfTheGrid)
{
    Save({MP_XAXIS});
    const std::tuple<int32_t, int32_t, const char*> choices[] = {{0, 0, "True"}, {1, 0, "True"},  {0, 1, "False"},
                                                                 {0, 2, "True"}, {1, 2, "False"}, {2, 2, "False"},
                                                                 {0, 7, "False"}};
    for (const auto& [grid, file, across] : choices) {
        document.XAxis(0, grid);
        document.XAxis(1, file);
        EXPECT_EQ(Rows()[2], std::string("X Axis is Frequency;") + across) << grid << file;
    }
}

TEST_F(ResultFileTest, CellsComeFromTheFieldThatTheUserSees)
{
    Save({MP_USERFIELD, MP_SYMBOLRATE, MP_TIMESTAMP, MP_BER});
    table.Result(1, MP_TIMESTAMP, 1, L"15.03.2024 10:00:00");
    table.Result(0, MP_BER, 1, L"<1,7E-8");
    table.Result(1, MP_BER, 1, L"UNDER");
    table.Result(2, MP_BER, 1, L"2,1E10");
    table.Result(0, MP_TIMESTAMP, 1, L"wrong field");
    EXPECT_EQ(RowsBehindSettings()[1], "S 21;0,000;15.03.2024 10:00:00;<1,7E-8");
}

TEST_F(ResultFileTest, TableWithoutChannelsHasCaptionsOnly)
{
    const ResultTable neverReset;
    document.XAxis(1, 1);
    EXPECT_THAT(ResultFileContent(document, neverReset, locale), testing::EndsWith("RF Level (dBmV)\r\n"));
    document.ListSize(0);
    table.Reset(document, locale);
    EXPECT_EQ(RowsBehindSettings().size(), 1u);
    document.XAxis(1, 0);
    EXPECT_EQ(RowsBehindSettings().back(), "RF Level (dBmV)");
}

TEST_F(ResultFileTest, NotesFollowLineByLine)
{
    document.measurementNotes = L"cold morning\r\n\r\n=A1; amplifier 3\nend\r\n\r\n";
    EXPECT_THAT(RowsBehindSettings(), ElementsAre("Center Frequency (MHz);Status;RF Level (dBmV)",
                                                  "213,0000000;Done;-12,3", "858,1234567;Un-measured;---", "", "Notes",
                                                  "cold morning", "", "\"'=A1; amplifier 3\"", "end"));
    document.measurementNotes = L"{\\rtf1\\ansi{\\fonttbl{\\f0 Lucida Console;}}one\\par two\\par\n}";
    EXPECT_THAT(Rows(), testing::Contains("two"));
    EXPECT_EQ(Rows().back(), "two");
    document.measurementNotes = L" \r\n";
    EXPECT_EQ(RowsBehindSettings().size(), 3u);
}

TEST_F(ResultFileTest, NoFileStaysOpenWhenMemoryRunsOut)
{
    files.before = [](FileOperation kind) { kind == FileOperation::rename ? throw std::bad_alloc() : void(); };
    Replacement file(files);
    EXPECT_THROW(SaveResults(document, table, locale, file, messages, path), std::bad_alloc);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_TRUE(files.Paths().empty());
}

TEST_F(ResultFileTest, UserLearnsWhatStandsInTheWay)
{
    using enum FileOperation;
    const std::tuple<FileOperation, FileFault, std::wstring> texts[] = {
        {write, FileFault::diskFull, L"Destination disk drive is full."},
        {rename, FileFault::inUse,
         L"The document C:\\out\\results.csv is in use by another application and cannot be accessed."},
        {create, FileFault::accessDenied, L"Access to C:\\out\\results.csv was denied."},
        {create, FileFault::readOnly, L"Access to C:\\out\\results.csv was denied."},
        {create, FileFault::missing, L"Path does not exist. Please verify the correct path was given."},
        {create, FileFault::other, L"Error writing C:\\out\\results.csv: the system reports an error."}};
    files.Put(path, "old");
    for (const auto& [operation, fault, text] : texts) {
        files.FailOn(operation, 1, fault);
        EXPECT_FALSE(Write());
        EXPECT_EQ(files.Content(path), "old");
        EXPECT_THAT(files.Paths(), ElementsAre(path)) << "no piece is left behind";
        ASSERT_EQ(messages.messages.size(), 1u);
        EXPECT_EQ(messages.messages[0].text, text);
        EXPECT_EQ(messages.messages[0].title, L"Save Results");
        EXPECT_EQ(messages.messages[0].icon, MessageIcon::warning);
    }
    files.Heal();
    EXPECT_TRUE(Write());
    EXPECT_EQ(files.Content(path), ResultFileContent(document, table, locale));
    EXPECT_TRUE(messages.messages.empty());
}

/// The cells as one row, without the byte order mark and the line end.
std::string Row(std::initializer_list<std::wstring_view> cells, const FixedLocale& locale = CommaLocale())
{
    SpreadsheetText text(locale);
    for (const std::wstring_view cell : cells) {
        text.Cell(cell);
    }
    text.EndRow();
    const std::string bytes = text.Take();
    EXPECT_TRUE(bytes.starts_with("\xEF\xBB\xBF") && bytes.ends_with("\r\n"));
    return bytes.substr(3, bytes.size() - 5);
}

TEST(SpreadsheetText, SeparatorIsTheOneThatTheSpreadsheetSplitsAt)
{
    const std::tuple<const wchar_t*, const wchar_t*, const char*> locales[] = {
        {L".", L",", "a,b"},  {L",", L";", "a;b"}, {L".", L";", "a;b"}, {L".", L"\t", "a\tb"},
        {L",", L"; ", "a;b"}, {L",", L",", "a;b"}, {L".", L"", "a,b"},  {L",", L"", "a;b"},
        {L".", L"\"", "a;b"}, {L".", L"x", "a;b"}, {L"", L",", "a,b"}};
    for (const auto& [decimal, list, row] : locales) {
        EXPECT_EQ(Row({L"a", L"b"}, FixedLocale(decimal, list)), row);
    }
}

TEST(SpreadsheetText, TextThatBeginsLikeAFormulaIsMadeHarmless)
{
    EXPECT_EQ(Row({L"=1+1", L"+A1", L"-A1", L"@SUM(A1)", L"-1+2", L"\uFF1D1"}),
              "'=1+1;'+A1;'-A1;'@SUM(A1);'-1+2;'\xEF\xBC\x9D"
              "1");
    EXPECT_EQ(Row({L"\t=1", L"\r=1", L"  =1", L"\u00A0=1"}), "\"'\t=1\";\"'\r=1\";\"'  =1\";\"'\xC2\xA0=1\"");
    EXPECT_EQ(Row({L"=\"a\";\"b\""}), "\"'=\"\"a\"\";\"\"b\"\"\"") << "both rules at once";
}

TEST(SpreadsheetText, NumbersAndMarkersStayAsTheyAre)
{
    EXPECT_EQ(Row({std::wstring_view(L"a\0b\x1B\x07", 5), L" blank ", L""}), "\"a b  \";\" blank \";")
        << "control characters";
    EXPECT_EQ(Row({L"-6,9", L"+3", L"-1,5E-8", L"---", L"-", L"<1,7E-8", L"a=b", L"1-2"}),
              "-6,9;+3;-1,5E-8;---;-;<1,7E-8;a=b;1-2");
    const FixedLocale point(L".", L",");
    EXPECT_EQ(Row({L"-6.9", L"-6,9"}, point), "-6.9,\"'-6,9\"") << "no number in this locale";
}

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
