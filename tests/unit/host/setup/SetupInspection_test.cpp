#include "host/setup/SetupInspection.h"

#include <string>

#include "host/setup/SetupText.h"
#include "setup/SetupFile.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "support/ShiftedCodePage.h"
#include "support/TestFiles.h"
#include "support/TestTable.h"
#include "util/Encoding.h"
#include "util/FileText.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;

SetupInspection Inspect(const std::string& content)
{
    return InspectSetup(content, L"TVN Host");
}

auto Remark(int32_t line, const std::wstring& text, bool isFatal = false)
{
    return AllOf(Field(&SetupRemark::line, line), Field(&SetupRemark::text, HasSubstr(text)),
                 Field(&SetupRemark::isFatal, isFatal));
}

/// The remarks on a good setup in which one text is replaced by another.
std::vector<SetupRemark> Changed(const std::string& from, const std::string& to)
{
    std::string content = TestFile("setups/version-2.0.ini");
    const size_t at = content.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return Inspect(content.replace(at, from.size(), to)).remarks;
}

TEST(SetupInspection, FindsNothingInSetupsAsTheyAreSaved)
{
    for (const char* const name : {"setups/version-2.0.ini", "setups/backup.ini"}) {
        EXPECT_THAT(Inspect(TestFile(name)).remarks, IsEmpty()) << name;
    }
    const SetupInspection old = Inspect(TestFile("setups/version-1.4.ini"));
    EXPECT_EQ(old.version, L"1.4");
    EXPECT_EQ(old.channels, 3);
    EXPECT_TRUE(old.IsUsable());
    EXPECT_THAT(old.remarks, ElementsAre(Remark(16, L"\"Frequency 4\" was left behind by an early program"),
                                         Remark(17, L"\"Symbol Rate (MSymb/s) 4\" was left behind")));
    EXPECT_TRUE(Inspect(TestFile("setups/backup.ini")).isBackup);
}

TEST(SetupInspection, RefusesWhatIsNoSetupWithoutGoingIntoDetailAndStaysShortWhereEverythingIsDoubtful)
{
    const std::pair<std::string, const wchar_t*> cases[] = {{" \r\n", L"empty"},
                                                            {"[a]\nk=1\n", L"\"Name\" in [Application]"},
                                                            {TestFile("plans/at-Kabelsignal"), L"channel plan"}};
    for (const auto& [content, text] : cases) {
        EXPECT_THAT(Inspect(content).remarks, ElementsAre(Remark(0, text, true)));
    }
    EXPECT_THAT(Inspect(std::string("[a]\nMZ\0", 7)).remarks, ElementsAre(Remark(2, L"binary data", true)));

    std::string content = TestFile("setups/version-2.0.ini");
    for (int i = 0; i < 5000; ++i) {
        content += "[Hardware]\r\n";
    }
    const SetupInspection inspection = Inspect(content);
    EXPECT_EQ(inspection.remarks.size() + inspection.leftOut, 5000u);
    EXPECT_EQ(inspection.remarks.size(), 1000u);
}

TEST(SetupInspection, NamesEveryDoubtfulEntryByItsLine)
{
    for (const std::vector<std::string>& row : TestTable("setup-remarks.tsv", 3)) {
        std::vector<testing::Matcher<SetupRemark>> expected;
        std::istringstream remarks(CellText(row[2]));
        for (std::string text; std::getline(remarks, text, '|');) {
            const bool isFatal = text[0] == '!';
            const size_t blank = text.find(' ');
            int32_t line = 0, first = 0, last = 0;
            std::sscanf(text.c_str() + isFatal, "%d@%d-%d", &line, &first, &last);
            expected.push_back(AllOf(Remark(line, FromUtf8(text.substr(blank + 1)), isFatal),
                                     Field(&SetupRemark::firstChannel, first), Field(&SetupRemark::lastChannel, last)));
        }
        EXPECT_THAT(Changed(CellText(row[0]), CellText(row[1])), testing::ElementsAreArray(expected)) << row[1];
    }
    EXPECT_THAT(Changed("Count=6", "Count=40000"), Contains(Remark(8, L"the file can hold at most 32767", true)));
}

TEST(SetupInspection, TellsThatAnotherCodePageHasWrittenTheTexts)
{
    const ShiftedCodePage shifted;
    const std::string good = TestFile("setups/version-2.0.ini");
    const auto withUnit = [&](const std::string& unit) {
        std::string content;
        for (const char c : good) {
            content += static_cast<unsigned char>(c) < 0x80 ? std::string(1, c) : c == '\xB5' ? unit : std::string();
        }
        return content;
    };
    const auto inspect = [](const std::string& content, const CodePage& page) {
        return InspectSetup(content, L"TVN Host", page).remarks;
    };
    const std::string asUtf8 = withUnit("\xC2\xB5");
    EXPECT_THAT(inspect(asUtf8, SystemCodePage()),
                ElementsAre(Remark(28,
                                   L"looks like UTF-8, but is read in the system's code page: \"µ\" is read as "
                                   L"\"Âµ\". Save it in a text editor as UTF-16 LE"),
                            Remark(28, L"\"dBÂµV\", which is what another code page has made of dBµV")));
    EXPECT_THAT(inspect(asUtf8, Utf8CodePage()), IsEmpty());
    EXPECT_THAT(inspect("\xEF\xBB\xBF" + asUtf8, SystemCodePage()), ElementsAre(Remark(1, L"mark of UTF-8", true)));
    EXPECT_THAT(inspect("\xEF\xBB\xBF;\r\n" + asUtf8, Utf8CodePage()),
                ElementsAre(Remark(1, L"mark of UTF-8"), Remark(1, L"stands before the first section")));
    EXPECT_THAT(inspect(withUnit("?"), SystemCodePage()), ElementsAre(Remark(28, L"\"dB?V\", which is what another")));
    EXPECT_THAT(inspect(withUnit("\xB5"), shifted), ElementsAre(Remark(28, L"\"dBｵV\", which is what another")));
    EXPECT_THAT(inspect(withUnit("\xB5"), Utf8CodePage()),
                ElementsAre(Remark(28, L"bytes that are no characters of the system's code page"),
                            Remark(28, L"has made of dBµV")));
    const std::string utf16 = "\xFF\xFE" + file_text::ToUtf16(file_text::FromBytes(good, SystemCodePage()), shifted);
    EXPECT_THAT(inspect(utf16, shifted), IsEmpty());
    EXPECT_THAT(inspect("[\x83\x5D]\r\n" + withUnit("\x81\x8B"), shifted),
                ElementsAre(Remark(1, L"no setup has a section \"ゾ\""), Remark(29, L"has made of dBµV")));
}

TEST(SetupText, TellsRowKeysFromOthersAndLinesByAnyEnd)
{
    for (const char* const end : {"\n", "\r", "\r\n"}) {
        const SetupText setup(std::string(";c") + end + " [ A ] x" + end + end + "k = \"v \"" + end + "K=2");
        EXPECT_EQ(setup.Find("a", "K").value, "v ");
        EXPECT_EQ(setup.Find("a", "k").line, 4);
    }
    EXPECT_EQ(RowOf("Frequency   ", "FREQUENCY   07"), 7);
    EXPECT_EQ(RowOf("Frequency   ", "Frequency   123"), 123);
    for (const char* const key : {"Frequency   7", "Frequency   007", "Frequency   00", "Frequency   ",
                                  "Frequency   1x", "Frequency 01", "Frequency   99999999999"}) {
        EXPECT_EQ(RowOf("Frequency   ", key), std::nullopt) << key;
    }
}

/// Whether the plug-in's own reader loads a setup; the host's look at the file says the same.
bool Loads(const std::string& content)
{
    MemoryFiles files;
    RecordingMessageBoxes messages;
    files.Put(L"C:\\net.ini", content);
    SetupDocument document;
    std::wstring model = L"2x";
    int32_t mode = 4;
    bool isLoaded = false;
    try {
        isLoaded = LoadSetup(document, {files, messages, SystemLocale()}, L"TVN Host", L"C:\\net.ini", model, mode);
    } catch (const RaisedError&) {
    }
    const SetupInspection inspection = InspectSetup(content, L"TVN Host");
    EXPECT_EQ(inspection.IsUsable(), isLoaded);
    EXPECT_EQ(inspection.channels, isLoaded ? document.ListSize() : inspection.channels);
    EXPECT_LE(inspection.remarks.size() + inspection.leftOut, 10u);
    return isLoaded;
}

/// The files of the fuzzer, which holds the two readers against each other, have no room for such lists.
TEST(SetupVerdict, IsThePlugInsOwnAtTheLimitsOfItsLists)
{
    const auto list = [](const std::string& count, int32_t rows, size_t blanks) {
        std::string content =
            "[Application]\nName=TVN Host\nVersion=2.0\n[Hardware]\nModel=2x\n[Frequency List]\nCount=" + count + "\n" +
            std::string(blanks, '\n');
        for (int32_t row = 1; row <= rows; ++row) {
            content += "Frequency   " + std::string(row < 10 ? "0" : "") + std::to_string(row) + "=474\n";
        }
        return content;
    };
    const size_t many = 32768 * 20;
    EXPECT_TRUE(Loads(list("32767", 0, 0)));
    EXPECT_FALSE(Loads(list("32768", 1, 0))) << "more than the file has room for";
    EXPECT_FALSE(Loads(list("32768", 0, many))) << "room, but not the rows";
    EXPECT_TRUE(Loads(list("32768", 1, many)));
}

}  // namespace
}  // namespace tvn2x
