#include <gtest/gtest.h>

#include <string>

#include "host/setup/SetupInspection.h"
#include "setup/SetupFile.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

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
    const size_t many = 40000 * 20;
    EXPECT_TRUE(Loads(list("32767", 0, 0)));
    EXPECT_FALSE(Loads(list("32768", 1, 0))) << "more than the file has room for";
    EXPECT_FALSE(Loads(list("32768", 0, many))) << "room, but not the rows";
    EXPECT_TRUE(Loads(list("32768", 1, many)));
}

}  // namespace
}  // namespace tvn2x
