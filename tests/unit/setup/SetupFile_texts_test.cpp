#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "setup/SetupFile.h"
#include "setup/clsIniFile.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "support/ShiftedCodePage.h"

namespace tvn2x {
namespace {

class SetupFileTexts : public testing::Test
{
protected:
    const std::wstring path = L"C:\\data\\net.ini";
    const std::wstring product = L"P";
    MemoryFiles files;
    RecordingMessageBoxes messages;
    FixedLocale locale = CommaLocale();
    SetupEnvironment environment{files, messages, locale};
    SetupDocument document;
    std::wstring model;
    int32_t mode = 0;
};

TEST_F(SetupFileTexts, EveryTextComesBackAsItWasAndTheLocaleDoesNotMatter)
{
    const ShiftedCodePage shifted;
    const std::wstring backup = L"C:\\data\\backup.ini";
    const std::tuple<std::wstring, const CodePage*, bool> cases[] = {
        {L"dB\u00B5V", &SystemCodePage(), false},
        {L"\u010CT1", &SystemCodePage(), true},
        {L"\u0420\u043E\u0441", &SystemCodePage(), true},
        {L" \u041C\u00B0 ", &shifted, true},
        {L"dB\u00B5V", &shifted, true},
        {L"\u30BD\\\u30BE]", &shifted, false},
        {L"\u010CT1", &Utf8CodePage(), false},
        {L" blanks \t", &SystemCodePage(), false},
        {L"\"quoted\"", &SystemCodePage(), false},
        {L"'x'", &SystemCodePage(), false},
        {L"'", &SystemCodePage(), false},
        {L"\"", &SystemCodePage(), false},
        {L"a=b;[c]", &SystemCodePage(), false},
        {L";x", &SystemCodePage(), false},
        {L"[s]", &SystemCodePage(), false},
        {L"MISSING not", &SystemCodePage(), false},
    };
    for (const auto& [text, page, becomesUnicode] : cases) {
        const SetupEnvironment around{files, messages, locale, *page};
        SetupDocument saved;
        saved.LevelUnit(text);
        saved.UserField(1, text);
        saved.Frequency(1, 474.1234567);
        saved.Notes(L"n\r\n" + text);
        saved.StoredCaption(22, text);
        files.Put(path, "; kept\r\n\r\n[Other]\r\nx=1\r\n");
        ASSERT_TRUE(SaveSetup(saved, around, product, L"2.1", path));
        EXPECT_EQ(becomesUnicode, files.Content(path).starts_with("\xFF\xFE"));
        EXPECT_TRUE(CanStoreNotes(saved.Notes() + std::wstring(L"\0\n", 2))) << "a NUL ends them";
        saved.fullPath = L"C:\\" + text + L"\\net.ini";
        ASSERT_TRUE(BackupSetup(saved, around, product, L"2.1", backup));
        for (const std::wstring& file : {path, backup}) {
            SetupDocument loaded;
            ASSERT_TRUE(LoadSetup(loaded, around, product, file, model, mode));
            EXPECT_EQ(std::tuple(text, text, saved.Notes(), text, file == path ? path : saved.fullPath),
                      std::tuple(loaded.LevelUnit(), loaded.UserField(1), loaded.Notes(), loaded.StoredCaption(22),
                                 loaded.fullPath));
            EXPECT_EQ(474.1234567, loaded.Frequency(1));
        }
        clsIniFile ini(files, messages, *page);
        ini.FullPath(path);
        ini.SectionName(L"Other");
        EXPECT_EQ(L"1", ini.GetString(L"x", L""));
    }
    // What the code page does not know has no place in UTF-16.
    document.LevelUnit(L"dB\u00B5V");
    const std::string foreign = "[Other]\r\nx=\x83\r\n";
    files.Put(path, foreign);
    EXPECT_FALSE(SaveSetup(document, {files, messages, locale, shifted}, product, L"2.1", path));
    EXPECT_TRUE(document.dirty);
    EXPECT_TRUE(files.Content(path).starts_with(foreign));
}

}  // namespace
}  // namespace tvn2x
