#include "setup/SetupFile.h"

#include <string>

#include "setup/SetupDocument.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RaisedBy.h"
#include "support/RecordingMessageBoxes.h"
#include "support/ShiftedCodePage.h"
#include "support/TestFiles.h"

using namespace std::string_literals;

namespace tvn2x {
namespace {

const std::wstring path = L"C:\\data\\net.ini";

class SetupFile : public testing::Test
{
protected:
    bool Load() { return LoadSetup(document, environment, product, path, model, mode); }
    bool Save(const std::wstring& target) { return SaveSetup(document, environment, product, L"2.0", target); }
    /// Loads a whole file as a program or a person has left it.
    void LoadSample(const std::string& name)
    {
        product = L"TVN Host";
        files.Put(path, TestFile("setups/" + name));
        ASSERT_TRUE(Load());
    }

    MemoryFiles files;
    RecordingMessageBoxes messages;
    FixedLocale locale;
    SetupEnvironment environment{files, messages, locale};
    SetupDocument document;
    std::wstring product = L"P";
    std::wstring model;
    int32_t mode = 0;
};

TEST_F(SetupFile, IsWrittenSectionBySection)
{
    LoadSample("version-2.0.ini");
    EXPECT_EQ(L"K23 ", document.UserField(6)) << "quotes keep the blank";
    EXPECT_EQ(L"Head end north\r\nCall before measuring: V\u00F6sendorf", document.Notes());
    const std::wstring copy = L"C:\\data\\copy.ini";
    document.dirty = true;
    document.appVersion = L"";
    for (const std::wstring& target : {path, copy}) {
        const std::string sample = files.Content(path);
        ASSERT_TRUE(Save(target));
        EXPECT_EQ(sample, files.Content(target));
        EXPECT_EQ(target, document.fullPath);
        EXPECT_EQ(L"2.0", document.appVersion);
        EXPECT_FALSE(document.dirty);
    }
    EXPECT_EQ(L"copy", document.FileTitle());
    EXPECT_EQ(L"C:\\data", document.FolderOfFile());
}

TEST_F(SetupFile, IsMeasuredWhatIsShownOrSaved)
{
    constexpr int32_t measured = 0, shown = 1, saved = 2;
    for (const auto& [parameter, which] : {std::pair{MP_MER, shown}, {MP_BER, saved}}) {
        document.Parameter(shown, parameter, which == shown);
        document.Parameter(saved, parameter, which == saved);
    }
    ASSERT_TRUE(Save(path));
    document = SetupDocument();
    ASSERT_TRUE(Load());
    EXPECT_TRUE(document.Parameter(measured, MP_MER) && document.Parameter(measured, MP_BER));
}

TEST_F(SetupFile, Version14IsConverted)
{
    LoadSample("parameters-1.4.ini");  // each caption with the number of its key
    EXPECT_EQ(L"2x", model);
    EXPECT_EQ(4, mode);
    const std::string content = files.Content(path);
    ASSERT_TRUE(Save(L"C:\\data\\copy.ini"));
    EXPECT_EQ(TestFile("setups/parameters-1.4-converted.ini"), files.Content(L"C:\\data\\copy.ini"));
    files.Put(path, content + "[Parameters Display Order]\r\nPosition 01=20\r\nPosition 06=25\r\n");
    ASSERT_TRUE(Load());
    EXPECT_EQ(14, document.Order(1));
    EXPECT_EQ(35, document.Order(10)) << "a position beyond the old ones moves by the ten new parameters";
}

TEST(ProcessCrLf, KeepsLineEndsInOneLine)
{
    EXPECT_EQ(L"a\\r\\nb\\r\\n\\r\\n\rc\nd", ProcessCrLf(L"a\r\nb\r\n\r\n\rc\nd", 0));
    EXPECT_EQ(L"\r\n\\r\r\n\\n", ProcessCrLf(L"\\r\\n\\r\\r\\n\\n", 1));
    EXPECT_EQ(L"1000 clsSetup, ProcessCrLf: Invalid mode number, 2", RaisedBy([] { ProcessCrLf(L"", 2); }));
}

TEST_F(SetupFile, EveryFileOperationMayFailAndTheFileIsTheOldOrTheNew)
{
    ASSERT_TRUE(Save(path));
    const std::string old = files.Content(path);
    int n = 1;
    for (bool failed = true; failed; ++n) {
        files.Put(path, old);
        document.UserField(1, L"new " + std::to_wstring(n));
        files.FailAt(n, FileFault::diskFull);
        const bool saved = Save(path);
        failed = files.Failed();
        files.Heal();
        EXPECT_TRUE(saved || failed) << n;
        EXPECT_EQ(!saved, files.Content(path) == old) << n;
        EXPECT_EQ(!saved, document.dirty) << n;
        EXPECT_EQ(1u, files.Paths().size()) << n;
        EXPECT_TRUE(Load()) << n;
        EXPECT_EQ(saved ? L"new " + std::to_wstring(n) : L"My Channel", document.UserField(1)) << n;
    }
    EXPECT_GT(n, 5);
    files.FailAt(1, FileFault::inUse);
    EXPECT_FALSE(Load());
}

TEST_F(SetupFile, ATextThatTheCodePageLacksMakesFileAndBackupUtf16AndTheLocaleDoesNotMatter)
{
    const ShiftedCodePage shifted;
    const FixedLocale comma = CommaLocale();
    const SetupEnvironment around{files, messages, comma, shifted};
    for (const auto& [text, becomesUnicode] : {std::pair(L"\u30BD\\\u30BE]"s, false), {L" \u041C\u00B0 "s, true}}) {
        document.UserField(1, text);
        document.Frequency(1, 474.1234567);
        files.Put(path, "; kept\r\n\r\n[Other]\r\nx=1\r\n");
        ASSERT_TRUE(SaveSetup(document, around, product, L"2.1", path));
        EXPECT_EQ(becomesUnicode, files.Content(path).starts_with("\xFF\xFE"));
        document.fullPath = L"C:\\" + text + L"\\net.ini";
        ASSERT_TRUE(BackupSetup(document, around, product, L"2.1", L"C:\\data\\backup.ini"));
        SetupDocument loaded;
        ASSERT_TRUE(LoadSetup(loaded, around, product, L"C:\\data\\backup.ini", model, mode));
        EXPECT_EQ(std::tuple(text, document.fullPath, 474.1234567),
                  std::tuple(loaded.UserField(1), loaded.fullPath, loaded.Frequency(1)));
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
