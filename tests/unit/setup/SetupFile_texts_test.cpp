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
    FixedLocale locale;
    SetupEnvironment environment{files, messages, locale};
    SetupDocument document;
    std::wstring model;
    int32_t mode = 0;
};

TEST_F(SetupFileTexts, TextsThatTheCodePageLacksComeBackAsTheyWere)
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
    };
    for (const auto& [text, page, becomesUnicode] : cases) {
        const SetupEnvironment around{files, messages, locale, *page};
        SetupDocument saved;
        saved.LevelUnit(text);
        saved.UserField(1, text);
        saved.Notes(L"n\r\n" + text);
        saved.StoredCaption(22, text);
        files.Put(path, "; kept\r\n\r\n[Other]\r\nx=1\r\n");
        ASSERT_TRUE(SaveSetup(saved, around, product, L"2.1", path));
        EXPECT_EQ(becomesUnicode, files.Content(path).starts_with("\xFF\xFE"));
        saved.fullPath = L"C:\\" + text + L"\\net.ini";
        ASSERT_TRUE(BackupSetup(saved, around, product, L"2.1", backup));
        for (const std::wstring& file : {path, backup}) {
            SetupDocument loaded;
            ASSERT_TRUE(LoadSetup(loaded, around, product, file, model, mode));
            EXPECT_EQ(std::tuple(text, text, saved.Notes(), text, file == path ? path : saved.fullPath),
                      std::tuple(loaded.LevelUnit(), loaded.UserField(1), loaded.Notes(), loaded.StoredCaption(22),
                                 loaded.fullPath));
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

TEST_F(SetupFileTexts, ANulEndsATextAndNothingElse)
{
    document.UserField(1, std::wstring(L" a\0b ", 5));
    document.Notes(std::wstring(L"n\0\n", 3));
    document.Zin(50);
    ASSERT_TRUE(SaveSetup(document, environment, product, L"2.1", path));
    ASSERT_TRUE(LoadSetup(document, environment, product, path, model, mode));
    EXPECT_EQ(L" a", document.UserField(1));
    EXPECT_EQ(L"n", document.Notes());
    EXPECT_EQ(50, document.Zin());
    EXPECT_TRUE(CanStoreNotes(std::wstring(L"n\0\n", 3)));
}

}  // namespace
}  // namespace tvn2x
