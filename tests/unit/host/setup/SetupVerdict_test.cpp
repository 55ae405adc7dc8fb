#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "host/setup/SetupInspection.h"
#include "setup/SetupFile.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "support/ShiftedCodePage.h"
#include "support/TestFiles.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

const std::wstring product = L"TVN Host";

/// The setup as the plug-in's own reader loads it for a host of model "2x"; nothing where it refuses.
std::optional<SetupDocument> Loaded(const std::string& content, const CodePage& page)
{
    MemoryFiles files;
    RecordingMessageBoxes messages;
    const std::wstring path = L"C:\\net.ini";
    files.Put(path, content);
    SetupDocument document;
    std::wstring model = L"2x";
    int32_t mode = 4;
    try {
        const bool isLoaded = LoadSetup(document, {files, messages, SystemLocale(), page}, product, path, model, mode);
        return isLoaded ? std::optional(std::move(document)) : std::nullopt;
    } catch (const RaisedError&) {
        return std::nullopt;
    }
}

/// Both readers give one answer. Returns it.
bool ExpectOneVerdict(const std::string& content, const CodePage& page, size_t mostRemarks)
{
    const SetupInspection inspection = InspectSetup(content, product, page);
    const std::optional<SetupDocument> loaded = Loaded(content, page);
    EXPECT_EQ(inspection.IsUsable(), loaded.has_value());
    if (loaded) {
        EXPECT_EQ(inspection.channels, std::max(loaded->ListSize(), 0));
        EXPECT_EQ(inspection.isBackup, loaded->isBackup);
    }
    EXPECT_LE(inspection.remarks.size() + inspection.leftOut, mostRemarks);
    return loaded.has_value();
}

/// The line that begins with a text is changed, or the first one where none does.
template <class Change>
std::string WithLine(const std::string& content, const std::string& beginning, Change&& change)
{
    const size_t found = content.find("\n" + beginning);
    const size_t at = found == std::string::npos ? 0 : found + 1;
    const size_t end = content.find_first_of("\r\n", at);
    return content.substr(0, at) + change(content.substr(at, end - at)) + content.substr(end);
}

TEST(SetupVerdict, IsThePlugInsOwnWhateverStandsInALine)
{
    using namespace std::string_view_literals;
    const std::string keys[] = {
        "Count=",         "Name=",          "Version=",       "Model=",     "Mode=",      "Freq",        "Symbol Rate",
        "Symbol Rate 02", "Frequency   02", "Default Symbol", "Full Path=", "User Field", "Order Of QAM"};
    const std::string_view values[] = {"",         "0",          "-1",          "3",           "3.0",    "2,5",
                                       "0x10",     "1e400",      "nan",         " '7' ",       "\"2x\"", "2x;",
                                       "1.4",      "2.0",        "32757",       "32758",       "32767",  "32768",
                                       "40000",    "4294967299", "-4294967294", "99999999999", "abc",    "TVN Host",
                                       "Tvn Host", " 474",       "474 MHz",     "6.9\x01",     "2x\0y"sv};
    const std::string headers[] = {"[Appl", "[Hard", "[Freq", "[Backup", "[Notes"};
    const std::string lines[] = {"",           "[CHANNEL]", "[Backup] ",    "[ Backup ]",        "[backup]",
                                 " [Backup]",  "[Backup",   "[Parameters]", "[frequency list]x", "[Frequency List",
                                 "[Hardware]", "[]"};
    const ShiftedCodePage shifted;
    const CodePage* const pages[] = {&SystemCodePage(), &Utf8CodePage(), &shifted};
    const std::string whole[] = {TestFile("setups/version-2.0.ini"), TestFile("setups/backup.ini"),
                                 TestFile("setups/version-1.4.ini")};
    size_t trials = 0, loaded = 0;
    const auto expect = [&](const std::string& beginning, const auto& change) {
        const std::string& file = whole[trials / std::size(pages) % std::size(whole)];
        const CodePage& page = *pages[trials++ % std::size(pages)];
        loaded += ExpectOneVerdict(WithLine(file, beginning, change), page, 50) ? 1 : 0;
    };
    for (const std::string& key : keys) {
        for (const std::string_view value : values) {
            SCOPED_TRACE(key + std::string(value));
            expect(key, [&](const std::string& line) { return line.substr(0, line.find('=') + 1).append(value); });
        }
    }
    for (const std::string& header : headers) {
        for (const std::string& line : lines) {
            SCOPED_TRACE(header + line);
            expect(header, [&](const std::string&) { return line; });
        }
    }
    EXPECT_GT(loaded, trials / 4);
    EXPECT_LT(loaded, trials - trials / 8);
}

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
    EXPECT_TRUE(ExpectOneVerdict(list("32767", 0, 0), SystemCodePage(), 10));
    EXPECT_FALSE(ExpectOneVerdict(list("32768", 1, 0), SystemCodePage(), 10)) << "more than the file has room for";
    EXPECT_FALSE(ExpectOneVerdict(list("32768", 0, many), SystemCodePage(), 10)) << "room, but not the rows";
    EXPECT_TRUE(ExpectOneVerdict(list("32768", 1, many), SystemCodePage(), 10));
}

}  // namespace
}  // namespace tvn2x
