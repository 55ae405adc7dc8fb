// Whole setup files of each generation, as programs and people have left them.

#include <gtest/gtest.h>

#include <fstream>

#include "setup/SetupFile.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

class Generation : public testing::Test
{
protected:
    SetupDocument Loaded(const std::string& name)
    {
        std::ifstream file(std::string(TVN_TEST_DATA "/setups/") + name, std::ios::binary);
        files.Put(path, std::string{std::istreambuf_iterator<char>(file), {}});
        SetupDocument document;
        EXPECT_TRUE(LoadSetup(document, environment, L"TVN Host", path, model, mode));
        return document;
    }

    const std::wstring path = L"C:\\data\\net.ini";
    MemoryFiles files;
    RecordingMessageBoxes messages;
    FixedLocale locale;
    SetupEnvironment environment{files, messages, locale};
    std::wstring model;
    int32_t mode = 0;
};

TEST_F(Generation, ThePresentOneIsLoadedAndSavedBackByteForByte)
{
    SetupDocument document = Loaded("version-2.0.ini");
    EXPECT_EQ(6, document.ListSize());
    EXPECT_EQ(6.875, document.SymbolRate(4));
    EXPECT_EQ(L"K23 ", document.UserField(6)) << "quotes keep the blank";
    EXPECT_EQ(L"dB\u00B5V", document.LevelUnit());
    EXPECT_EQ(L"Head end north\r\nCall before measuring: V\u00F6sendorf", document.Notes());
    const std::string before = files.Content(path);
    ASSERT_TRUE(SaveSetup(document, environment, L"TVN Host", L"2.0"));
    EXPECT_EQ(before, files.Content(path));
}

TEST_F(Generation, Version14BecomesAPresentOne)
{
    SetupDocument document = Loaded("version-1.4.ini");
    EXPECT_EQ(L"2x", model);
    EXPECT_EQ(30, document.Count());
    EXPECT_EQ(L"RF Level", document.StoredCaption(MP_RFLEV));
    EXPECT_EQ(L"I/Q Phase (\u00B0)", document.StoredCaption(MP_IQPHASE));
    EXPECT_EQ(L"Phase Jitter (\u00B0 RMS)", document.StoredCaption(MP_PHASJIT));
    EXPECT_TRUE(document.Parameter(1, MP_MER) && document.Parameter(2, MP_TIMESTAMP));
    EXPECT_FALSE(document.Parameter(1, MP_TIMESTAMP) || document.Parameter(0, MP_SY));
    ASSERT_TRUE(SaveSetup(document, environment, L"TVN Host", L"2.0", L"C:\\data\\new.ini"));
    SetupDocument again;
    ASSERT_TRUE(LoadSetup(again, environment, L"TVN Host", L"C:\\data\\new.ini", model, mode));
    for (int32_t parameter = MP_FIRST; parameter <= MP_LAST; ++parameter) {
        EXPECT_EQ(document.Order(parameter), again.Order(parameter));
        EXPECT_EQ(document.Caption(parameter), again.Caption(parameter));
        EXPECT_EQ(document.Parameter(0, parameter), again.Parameter(0, parameter));
    }
}

TEST_F(Generation, ABackupCopyBelongsToTheRealDocument)
{
    const SetupDocument document = Loaded("backup.ini");
    EXPECT_TRUE(document.isBackup && document.dirty && document.measurementShowNotesAfter);
    EXPECT_EQ(L"C:\\Measurements\\north.ini", document.fullPath);
    EXPECT_EQ(L"Amplifier 3 replaced\r\nLevels checked", document.measurementNotes);
    EXPECT_EQ(7, document.ListSize());
}

TEST_F(Generation, AListOfManyRowsNeedsThemInTheFile)
{
    const std::string head =
        "[Application]\nName=TVN Host\nVersion=2.0\n[Hardware]\nModel=2x\n[Frequency List]\nCount=";
    const auto withRows = [&](int32_t rows) {
        std::string content = head + "40000\n";
        for (int32_t row = 1; row <= rows; ++row)
            content += "Frequency   " + std::string(row < 10 ? "0" : "") + std::to_string(row) + "=100\n";
        return content + std::string(1'000'000, ';');
    };
    SetupDocument document;
    files.Put(path, withRows(40000 - 32767));
    EXPECT_TRUE(LoadSetup(document, environment, L"TVN Host", path, model, mode));
    EXPECT_EQ(213, document.Frequency(40000));
    files.Put(path, withRows(40000 - 32768));
    EXPECT_THROW(LoadSetup(document, environment, L"TVN Host", path, model, mode), RaisedError);
}

}  // namespace
}  // namespace tvn2x
