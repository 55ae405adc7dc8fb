#include "setup/clsIniFile.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <vector>

#include "setup/SystemProfile.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "support/ShiftedCodePage.h"
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
        files.Put(path, old);
        ini.FullPath(path);
        ini.SectionName(L"s");
    }

    static std::string utf16(const std::wstring& text)
    {
        return "\xFF\xFE" + file_text::ToUtf16(file_text::FromWide(text), SystemCodePage());
    }

    const std::string old = "[s]\r\nk=1\r\n";
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

TEST_F(IniFile, FindsFilesWithAndWithoutTheirExtension)
{
    EXPECT_EQ(-1, ini.Exists(path));
    EXPECT_EQ(-1, ini.Exists(L"C:\\data\\net"));
    EXPECT_EQ(0, ini.Exists(L"C:\\data\\other"));
    EXPECT_EQ(0, ini.Exists(L""));
    files.FailOn(FileOperation::find, 1, FileFault::other);
    EXPECT_EQ(0, ini.Exists(path));
}

TEST_F(IniFile, WithoutASectionItSaysSoAndDoesNothing)
{
    ini.SectionName(L"  ");
    EXPECT_EQ(std::tuple(L"", 0, false),
              std::tuple(ini.GetString(L"k", L"d"), ini.GetInt(L"k", 7), ini.GetTF(L"k", -1)));
    EXPECT_EQ(std::tuple(0, false), std::tuple(ini.PutString(L"k", L"2"), ini.PutTF(L"k", -1)));
    ini.DeleteStrEntry(L"k");
    ini.DeleteNumEntry(L"k");
    ini.DeleteSection();
    EXPECT_EQ(L"", ini.GetSectEntries());
    ASSERT_EQ(9u, messages.messages.size());
    EXPECT_EQ(L"[Section] and FileName Not Registered in Private.Ini!", messages.messages[0].text);
    EXPECT_EQ(L"IniFile Logic Error", messages.messages[0].title);
    EXPECT_EQ(MessageIcon::information, messages.messages[0].icon);
    EXPECT_EQ(old, files.Content(path));
}

TEST_F(IniFile, ReadsTrueFromItsSevenWordsOnly)
{
    const std::set<std::string> yes{"yes ", "Y", "True", "t", "On", "1", "-1"};
    for (const std::string text : {"yes ", "Y", "True", "t", "On", "1", "-1", "2", "No", "0", "", "truee"}) {
        files.Put(path, "[s]\r\nk=" + text + "\r\n");
        EXPECT_EQ(yes.contains(text), ini.GetTF(L"k", yes.contains(text) ? 0 : -1)) << text;
    }
    EXPECT_TRUE(ini.GetTF(L"missing", -1));
    EXPECT_FALSE(ini.GetTF(L"missing", 0));
}

TEST_F(IniFile, WritesAndReadsEachType)
{
    EXPECT_NE(0, ini.PutString(L"text", L"50 \u20AC"));
    EXPECT_NE(0, ini.PutInt(L"number", -12));
    EXPECT_TRUE(ini.PutTF(L"flag", 5));
    EXPECT_EQ(old + "text=50 \x80\r\nnumber=-12\r\nflag=True\r\n", files.Content(path));
    EXPECT_EQ(L"50 \u20AC", ini.GetString(L"TEXT", L""));
    EXPECT_EQ(-12, ini.GetInt(L"number", 0));
    ini.PutString(L"number", L"70000");
    EXPECT_EQ(70000 - 65536, ini.GetInt(L"number", 0));
    EXPECT_EQ(70000, ini.GetLong(L"number", 0));
    ini.DeleteStrEntry(L"text");
    ini.DeleteNumEntry(L"number");
    EXPECT_EQ(old + "text=\r\nflag=True\r\n", files.Content(path));
    EXPECT_EQ(L"", ini.GetString(L"text", L"default"));
    ini.DeleteSection();
    EXPECT_EQ("", files.Content(path));
    EXPECT_EQ(0, ini.PutString(L"k", L"1\r\n[t]"));
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
        files.Put(path, utf16(L"[\u041F]\r\nlong=" + longest + L"more\r\n"));
        EXPECT_EQ(longest, ini.GetString(L"long", L""));
    }
}

TEST_F(IniFile, TheFileMayChangeItsEncodingUnderABatch)
{
    const std::wstring theirs = L"; \u00B5\r\n[s]\r\nk=1\r\n";
    for (const bool isUnicode : {false, true}) {
        for (const wchar_t* const value : {L"\u00FC", L"\u041C"}) {
            files.Put(path, isUnicode ? old : utf16(L"[s]\r\nk=1\r\n"));
            ini.BeginBatch();
            ini.SectionName(L"s");
            ini.PutString(L"k", value);
            files.Put(path, isUnicode ? utf16(theirs) : "; \xB5\r\n[s]\r\nk=1\r\n");
            ASSERT_TRUE(ini.CommitBatch());
            const bool fits = value == std::wstring_view(L"\u00FC");
            EXPECT_EQ(!isUnicode && fits ? "; \xB5\r\n[s]\r\nk=\xFC\r\n"
                                         : utf16(L"; \u00B5\r\n[s]\r\nk=" + std::wstring(value) + L"\r\n"),
                      files.Content(path));
        }
    }
    // A file that cannot hold it stays theirs.
    const ShiftedCodePage shifted;
    clsIniFile other(files, messages, shifted);
    other.FullPath(path);
    other.SectionName(L"s");
    files.Put(path, old);
    other.BeginBatch();
    EXPECT_NE(0, other.PutString(L"k", L"\u00B5"));
    files.Put(path, "[s]\r\nm=\x83\r\n");
    EXPECT_FALSE(other.CommitBatch());
    EXPECT_EQ("[s]\r\nm=\x83\r\n", files.Content(path));
    EXPECT_EQ(0, other.PutString(L"k", L"\u00B5"));
    EXPECT_NE(0, other.PutString(L"k", L"\u30BE"));
    EXPECT_EQ("[s]\r\nm=\x83\r\nk=\x83\x5D\r\n", files.Content(path));
}

TEST_F(IniFile, ANulEndsATextAndBreaksNoList)
{
    EXPECT_NE(0, ini.PutString(std::wstring(L"k\0x", 3), std::wstring(L"2\0\r\n[t]", 7)));
    EXPECT_EQ("[s]\r\nk=2\r\n", files.Content(path));
    EXPECT_EQ(L"2", ini.GetString(std::wstring(L"k\0y", 3), L""));
    files.Put(path, std::string("[s]\r\na=1\0b=2\r\n\0c=3\r\nd=4\r\n[t\0u]\r\n[]\r\n[v]\r\n", 41));
    EXPECT_EQ(std::wstring(L"a=1\0d=4\0", 8), ini.GetSectEntries());
    std::vector<std::array<std::wstring, 2>> entries;
    ini.GetSectEntriesEx(entries);
    EXPECT_EQ((std::vector<std::array<std::wstring, 2>>{{L"a", L"1"}, {L"d", L"4"}}), entries);
    EXPECT_EQ(std::wstring(L"s\0t\0v\0\0", 7), ini.GetSections());
}

TEST_F(IniFile, ListsSectionsAndEntries)
{
    files.Put(path, "[Backups]\r\n[ t ]\r\n [u]\r\n[v] x\r\n[S]\r\na=1=2\r\nb\r\n;c\r\n");
    EXPECT_EQ(std::wstring(L"Backups\0 t \0S\0\0", 15), ini.GetSections());
    EXPECT_TRUE(ini.SectExist(L"backupS"));
    EXPECT_FALSE(ini.SectExist(L"backup"));
    EXPECT_EQ(std::wstring(L"a=1=2\0b\0", 8), ini.GetSectEntries());
    std::vector<std::array<std::wstring, 2>> entries;
    ini.GetSectEntriesEx(entries);
    EXPECT_EQ((std::vector<std::array<std::wstring, 2>>{{L"a", L"1=2"}, {L"b", L""}}), entries);
}

TEST_F(IniFile, ABatchWorksOnOneStateAndCommitsOnceInTheFileAsItIsThen)
{
    ini.BeginBatch();
    ini.PutString(L"k", L"2");
    ini.PutString(L"n", L"3");
    EXPECT_EQ(L"2", ini.GetString(L"k", L""));
    EXPECT_EQ(old, files.Content(path));
    ini.FlushCache();
    EXPECT_EQ("[s]\r\nk=2\r\nn=3\r\n", files.Content(path));
    ini.DeleteNumEntry(L"n");
    ini.PutString(L"k", L"9");
    files.Put(path, "; theirs\n[s]\nk=5\nn=6\nm=7\n");
    EXPECT_EQ(L"9", ini.GetString(L"k", L"")) << "a batch does not look at the file again";
    EXPECT_TRUE(ini.CommitBatch());
    EXPECT_EQ("; theirs\n[s]\nk=9\nm=7\n", files.Content(path)) << "our writes are made in their file";
    files.Put(path, "[s]\nk=8\n");
    EXPECT_EQ(L"8", ini.GetString(L"k", L"")) << "the batch is over";
    EXPECT_EQ(2, files.Count(FileOperation::rename));
    ini.PutString(L"k", L"8");
    EXPECT_EQ(2, files.Count(FileOperation::rename)) << "a value that is there already is not written again";
}

TEST_F(IniFile, AFailedReadOrWriteLeavesTheOldFile)
{
    // What cannot be read looks empty and is not overwritten.
    files.FailOn(FileOperation::read, 1, FileFault::inUse, true);
    EXPECT_EQ(L"d", ini.GetString(L"k", L"d"));
    EXPECT_EQ(0, ini.PutString(L"k", L"2"));
    files.Heal();
    EXPECT_EQ(old, files.Content(path));
    files.FailOn(FileOperation::write, 1, FileFault::diskFull);
    EXPECT_EQ(0, ini.PutString(L"k", L"2"));
    EXPECT_EQ(L"1", ini.GetString(L"k", L"")) << "what was not written does not read back";
}

TEST_F(IniFile, WinIniTakesThePlaceOfTheFile)
{
    ini.UseWinINI(true);
    EXPECT_EQ(WindowsFolder() + L"/WIN.INI", ini.FullPath());
    EXPECT_EQ(0, ini.PutString(L"k", L"x\n[y]"));
    EXPECT_NE(0, ini.PutString(L"k", L"v"));
    EXPECT_NE(0, ini.PutInt(L"n", -7));
    EXPECT_EQ("[s]\r\nk=v\r\nn=-7\r\n", files.Content(WindowsFolder() + L"/WIN.INI"));
    EXPECT_EQ(L"v", ini.GetString(L"k", L""));
    EXPECT_EQ(std::wstring(L"k=v\0n=-7\0", 9), ini.GetSectEntries());
    EXPECT_TRUE(ini.DeleteNumEntry(L"n"));
    EXPECT_EQ(1, ini.GetLong(L"n", 1));
    ini.DeleteSection();
    EXPECT_EQ("", files.Content(WindowsFolder() + L"/WIN.INI"));
    EXPECT_EQ(old, files.Content(path));
}

TEST_F(IniFile, OneShotAccessLeavesTheBindingAlone)
{
    const std::wstring other = L"C:\\data\\other.ini";
    std::wstring text;
    EXPECT_NE(0, ini.IniWrite(L"t", L"k", L"12x", other));
    EXPECT_EQ(12, ini.IniRead(L"t", L"k", 7, L"d", text, true, other));
    EXPECT_EQ(L"12", text);
    EXPECT_EQ(7, ini.IniRead(L"t", L"none", 7, L"d", text, true, other));
    EXPECT_EQ(path, ini.FullPath());
    EXPECT_EQ(L"s", ini.SectionName());
}

}  // namespace
}  // namespace tvn2x
