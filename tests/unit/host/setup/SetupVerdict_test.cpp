#include <algorithm>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "host/setup/SetupInspection.h"
#include "setup/SetupFile.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "support/ShiftedCodePage.h"
#include "support/TestFiles.h"
#include "util/FileText.h"
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

/// Damages a setup as hands, editors, disks and other programs do.
class Damage
{
public:
    explicit Damage(uint32_t seed) : random_(seed) {}

    std::string Of(std::string content, size_t times)
    {
        for (size_t i = 0; i < times; ++i) {
            content = Random(10) == 0 ? Bytes(std::move(content)) : Lines(content);
        }
        return Random(8) == 0 ? Encoded(content) : content;
    }

    size_t Random(size_t below) { return random_() % below; }

private:
    template <size_t count>
    std::string OneOf(const std::string (&texts)[count])
    {
        return texts[Random(count)];
    }

    std::string Bytes(std::string content)
    {
        const size_t at = Random(content.size() + 1);
        switch (Random(4)) {
            case 0:
                return content.substr(0, at);
            case 1:
                return content.insert(at, 1, static_cast<char>(Random(256)));
            case 2:
                return content.erase(at, 1 + Random(3));
            default:
                return content.replace(std::min(at, content.size() - 1), 1, 1, static_cast<char>(Random(256)));
        }
    }

    std::string Lines(const std::string& content)
    {
        std::vector<std::string> lines;
        for (size_t at = 0; at < content.size();) {
            const size_t end = std::min(content.find('\n', at), content.size() - 1) + 1;
            lines.push_back(content.substr(at, end - at));
            at = end;
        }
        if (lines.empty()) {
            return content;
        }
        const size_t at = Random(lines.size());
        const auto line = lines.begin() + static_cast<ptrdiff_t>(at);
        switch (Random(6)) {
            case 0:
                lines.erase(line);
                break;
            case 1:
                lines.insert(line, *line);
                break;
            case 2:
                std::swap(*line, lines[Random(lines.size())]);
                break;
            case 3:
                Rename(lines);
                break;
            default:
                ChangeValue(Random(2) == 0 ? *line : *Important(lines));
        }
        std::string damaged;
        for (const std::string& each : lines) {
            damaged += each;
        }
        return damaged;
    }

    /// A line that a verdict may hang on.
    std::vector<std::string>::iterator Important(std::vector<std::string>& lines)
    {
        const std::string key = OneOf({"Count=", "Name=", "Version=", "Model=", "Frequency   0", "Symbol Rate 0",
                                       "Default Symbol", "[Backup", "[Appl", "[Freq", "[Hard"});
        const auto found = std::ranges::find_if(lines, [&](const std::string& line) { return line.starts_with(key); });
        return found == lines.end() ? lines.begin() : found;
    }

    void ChangeValue(std::string& line)
    {
        const size_t equals = line.find('=');
        if (equals == std::string::npos) {
            line = OneOf({" ", "\t", "x"}) + line;
        } else if (Random(8) == 0) {
            line.erase(equals, 1);
        } else {
            const std::string value = OneOf({"",
                                             "0",
                                             "-1",
                                             "3",
                                             "3.0",
                                             "2,5",
                                             "0x10",
                                             "1e400",
                                             "nan",
                                             " '7' ",
                                             "\"2x\"",
                                             "2x;",
                                             "1.4",
                                             "2.0",
                                             "32757",
                                             "32758",
                                             "32767",
                                             "32768",
                                             "40000",
                                             "4294967299",
                                             "-4294967294",
                                             "99999999999",
                                             "abc",
                                             "TVN Host",
                                             "Tvn Host",
                                             " 474",
                                             "474 MHz",
                                             "6.9\x01",
                                             std::string("2x\0y", 4)});
            line.replace(equals + 1, line.find_first_of("\r\n", equals) - equals - 1, value);
        }
    }

    void Rename(std::vector<std::string>& lines)
    {
        std::vector<std::string*> headers;
        for (std::string& line : lines) {
            if (line.starts_with('[')) {
                headers.push_back(&line);
            }
        }
        if (!headers.empty()) {
            *headers[Random(headers.size())] =
                OneOf({"[CHANNEL]\n", "[Backup] \n", "[ Backup ]\n", "[backup]\n", " [Backup]\n", "[Backup\n",
                       "[Parameters]\n", "[frequency list]x\n", "[Frequency List\n", "[Hardware]\n", "[]\n"});
        }
    }

    std::string Encoded(const std::string& content)
    {
        const std::string text = file_text::FromBytes(content, SystemCodePage());
        const std::string wide = file_text::ToUtf16(text, SystemCodePage());
        switch (Random(5)) {
            case 0:
                return "\xFF\xFE" + wide;
            case 1:
                return "\xFF\xFE" + wide + "x";
            case 2:
                return wide;
            case 3:
                return "\xEF\xBB\xBF" + text;
            default:
                return text;
        }
    }

    std::mt19937 random_;
};

TEST(SetupVerdict, IsThePlugInsOwnHoweverASetupIsDamaged)
{
    constexpr uint32_t trials = 400;
    constexpr size_t mostTimes = 3;
    constexpr size_t remarksPerDamage = 8;
    const ShiftedCodePage shifted;
    const CodePage* const pages[] = {&SystemCodePage(), &Utf8CodePage(), &shifted};
    const std::string whole[] = {TestFile("setups/version-2.0.ini"), TestFile("setups/backup.ini"),
                                 TestFile("setups/version-1.4.ini")};
    uint32_t loaded = 0;
    for (uint32_t seed = 0; seed < trials && !testing::Test::HasFailure(); ++seed) {
        Damage damage(seed);
        const size_t times = 1 + damage.Random(mostTimes);
        const std::string content = damage.Of(whole[damage.Random(std::size(whole))], times);
        SCOPED_TRACE("seed " + std::to_string(seed));
        const CodePage& page = *pages[seed % std::size(pages)];
        loaded += ExpectOneVerdict(content, page, (times + 1) * remarksPerDamage) ? 1 : 0;
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
