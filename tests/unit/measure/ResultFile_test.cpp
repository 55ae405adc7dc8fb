#include "measure/ResultFile.h"

#include <gmock/gmock.h>

#include <sstream>

#include "measure/ResultTable.h"
#include "measure/SpreadsheetText.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;

const std::wstring path = L"C:\\out\\results.csv";

struct ResultFileTest : testing::Test
{
    ResultFileTest() { table.Reset(document, locale); }

    bool Write()
    {
        messages.messages.clear();
        Replacement file(files);
        return SaveResults(document, table, locale, file, messages, path);
    }

    SetupDocument document;
    ResultTable table;
    const FixedLocale locale = CommaLocale();
    MemoryFiles files;
    RecordingMessageBoxes messages;
};

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

/// Texts that a spreadsheet would take for something else, by decimal mark and list separator of the user.
TEST(SpreadsheetText, WritesEachRowAsTheTableSays)
{
    for (const std::vector<std::string>& row : TestTable("spreadsheet-cells.tsv", 4)) {
        SpreadsheetText text(FixedLocale(FromUtf8(CellText(row[0])), FromUtf8(CellText(row[1]))));
        std::istringstream cells(CellText(row[2]) + "|");
        for (std::string cell; std::getline(cells, cell, '|');) {
            text.Cell(FromUtf8(cell));
        }
        text.EndRow();
        EXPECT_EQ(text.Take(), "\xEF\xBB\xBF" + CellText(row[3]) + "\r\n") << row[2];
    }
}

TEST_F(ResultFileTest, CellsOfTheTableKeepTheirTextsWhateverTheirNeighboursDo)
{
    document.ListSize(2);
    table.Reset(document, locale);
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
