#include "setup/clsIniFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FailingMemory.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TestTable.h"
#include "util/Encoding.h"
#include "util/FileText.h"

namespace tvn2x {
namespace {

const std::wstring path = L"C:\\data\\net.ini";

class IniFile : public testing::Test
{
protected:
    IniFile()
    {
        files.Put(path, "[s]\r\nk=1\r\n");
        ini.FullPath(path);
        ini.SectionName(L"s");
    }

    MemoryFiles files;
    RecordingMessageBoxes messages;
    clsIniFile ini{files, messages};
};

TEST_F(IniFile, StartsOnTheRunningModulesOwnFileAndTakesPathsApart)
{
    const clsIniFile fresh(files, messages);
    EXPECT_EQ(L"General", fresh.SectionName());
    EXPECT_EQ(L"Unit_setup", fresh.FileName());
    EXPECT_EQ(L"ini", fresh.FileExt());
    EXPECT_NE(L"", fresh.FilePath());
    for (const std::vector<std::string>& row : TestTable("path-parts.tsv", 5)) {
        const std::wstring whole = FromUtf8(row[0]);
        for (const int16_t part : {0, 1, 2}) {
            EXPECT_EQ(FromUtf8(CellText(row[static_cast<size_t>(part) + 1])), ini.ExtractName(whole, part)) << row[0];
        }
        EXPECT_EQ(FromUtf8(row[4]), ini.ExtractPath(whole)) << row[0];
    }
    files.current = L"\\\\host\\share\\sub";
    EXPECT_EQ(L"\\\\host\\share\\data", ini.ExtractPath(L"\\data\\net.ini"));
    EXPECT_EQ(L"net", ini.ExtractName(L"", 1)) << "an empty path means the full path";
}

TEST_F(IniFile, TellsItsDescendantOfEachWriteToWinIni)
{
    struct Descendant : clsIniFile
    {
        using clsIniFile::clsIniFile;
        void WinIniWritten() override { ++told; }
        int told = 0;
    };
    Descendant descendant(files, messages);
    descendant.PutString(L"k", L"v");
    EXPECT_EQ(0, descendant.told);
    descendant.UseWinINI(true);
    descendant.PutString(L"k", L"v");
    descendant.DeleteSection();
    EXPECT_EQ(2, descendant.told);
}

TEST_F(IniFile, ATextThatTheCodePageLacksStaysWholeInAUtf16File)
{
    files.Put(path, "; \xB5\n[s]\nk=1\n?=no\n[\xDC]\n");
    EXPECT_EQ(L"d", ini.GetString(L"\u041C", L"d"));
    EXPECT_NE(0, ini.PutString(L"k", std::wstring(1, static_cast<wchar_t>(0xDC00)) + L"x"));
    EXPECT_EQ(std::wstring(1, static_cast<wchar_t>(0xDC00)) + L"x", ini.GetString(L"k", L""));
    ini.SectionName(L"\u041F");
    EXPECT_FALSE(ini.SectExist(L"\u041F"));

    // 32,767 characters in either encoding, whatever they take inside.
    for (const wchar_t* const text : {L"e", L"\u00E9", L"\u041C"}) {
        std::wstring longest;
        while (longest.size() < 32767) {
            longest += text;
        }
        EXPECT_NE(0, ini.PutString(L"long", longest));
        EXPECT_EQ(0, ini.PutString(L"long", longest + text));
        EXPECT_EQ(longest, ini.GetString(L"long", L""));
        files.Put(path,
                  "\xFF\xFE" + file_text::ToUtf16(file_text::FromWide(L"[\u041F]\r\nlong=" + longest + L"more\r\n"),
                                                  SystemCodePage()));
        EXPECT_EQ(longest, ini.GetString(L"long", L""));
    }
}

TEST_F(IniFile, AWriteThatRunsOutOfMemoryLeavesNothingToALaterOne)
{
    const std::wstring value(1000, L'v');
    bool failed = true;
    for (long n = 0; failed; ++n) {
        files.Put(path, "[s]\r\nk=1\r\n");
        const std::wstring key = L"k" + std::to_wstring(n);  // names are remembered
        FailAllocationsFrom(n);
        try {
            ini.PutString(key, value);
        } catch (const std::bad_alloc&) {
        }
        failed = AllowAllocations();
        EXPECT_NE(0, ini.PutString(L"m", L"2"));
        if (failed) {
            EXPECT_EQ("[s]\r\nk=1\r\nm=2\r\n", files.Content(path)) << n;
        }
    }
}

}  // namespace
}  // namespace tvn2x
