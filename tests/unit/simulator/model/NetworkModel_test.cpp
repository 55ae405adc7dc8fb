#include "simulator/model/NetworkModel.h"

#include <gmock/gmock.h>

#include <regex>

#include "support/PageRows.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string Complaint(std::string_view text)
{
    try {
        NetworkModel::Parse(text, L"net.ini");
    } catch (const ModelError& error) {
        return ToUtf8(error.description);
    }
    return "accepted";
}

TEST(NetworkModel, ReadsSectionsKeysAndDefaults)
{
    const NetworkModel model = NetworkModel::Parse(
        "\xEF\xBB\xBF; plant north\r\n[network]\r\nnoise figure (dB) = 6.5\r\nSeed=9\r\n\r\n[Channel 12]\r\n"
        "Frequency (MHz)=474\r\nLevel (dB\xC2\xB5V)=+58.25\r\norder of qam=256\r\n"
        "Outages=TS  1.5  0.4, carrier 0 86400\r\n# end",
        L"net.ini");
    EXPECT_EQ(model.Network().noiseFigure, 6.5);
    EXPECT_EQ(model.Network().headEndMer, 43);
    ASSERT_EQ(model.Channels().size(), 1u);
    const ChannelModel& channel = model.Channels()[0];
    EXPECT_EQ(channel.number, 12);
    EXPECT_EQ(channel.level, 58.25);
    EXPECT_EQ(channel.order, 256);
    EXPECT_EQ(channel.symbolRate, 6.9);
    EXPECT_EQ(channel.outages, (std::vector<Outage>{{LockKind::ts, 1.5, 0.4}, {LockKind::carrier, 0, 86400}}));
}

/// Of one more line in an otherwise good channel; the line is the fourth.
TEST(NetworkModel, NamesFileLineLimitAndRemedyOfAWrongLine)
{
    for (const std::vector<std::string>& row : TestTable("network-complaints.tsv", 2)) {
        EXPECT_THAT(Complaint("; a comment\n[Channel 3]\nFrequency (MHz)=474\n" + CellText(row[0]) + "\n"),
                    HasSubstr(CellText(row[1])))
            << row[0];
    }
    EXPECT_EQ(Complaint("[Network]\nSeed=1.5\n"),
              "net.ini:2: \"Seed\" in [Network]: 1.5 is out of range; write a whole number from 0 to 2147483647");
}

TEST(NetworkModel, RefusesFilesThatAreNoModel)
{
    EXPECT_THAT(Complaint(""), StartsWith("net.ini: the file is empty; a network model has a section [Network]"));
    EXPECT_THAT(Complaint("\xEF\xBB\xBF"), HasSubstr("there is no channel in the file"));
    EXPECT_THAT(Complaint("[Network]\n"), HasSubstr("there is no channel in the file"));
    EXPECT_THAT(Complaint(std::string_view("MZ\x90\0\3\0", 6)), HasSubstr("net.ini:1: there is a control character"));
    EXPECT_THAT(Complaint(std::string_view("\xFF\xFE[\0", 4)), HasSubstr("UTF-16; save it as UTF-8"));
    EXPECT_THAT(Complaint("[Channel 1]\nFrequency (MHz)=474\nHardware=\xB5"), HasSubstr("net.ini:3: this line is not"));
    EXPECT_THAT(Complaint("Seed=1"), HasSubstr("stands before any section"));
    std::string outages = "[Channel 1]\nFrequency (MHz)=474\nOutages=RF 1 1";
    for (int outage = 2; outage <= 101; ++outage) {
        outages += ", RF 1 1";
    }
    EXPECT_THAT(Complaint(outages), HasSubstr("a channel has 100 at most"));
}

/// The page that people write their models by.
TEST(NetworkModel, HasTheRangesAndDefaultsThatItsPageTells)
{
    const std::regex range(R"((-?[\d.]+) to ([\d.]+))");
    NetworkModel model = NetworkModel::Parse("[Channel 1]\nFrequency (MHz)=474\n", L"net.ini");
    std::wstring section = L"Network";
    const auto rows = PageRows("network-model.md", R"(\| `([^`]+)` \| ([^|]+) \| ([^|]+) \|.*)");
    EXPECT_GT(rows.size(), 30u);
    for (const std::vector<std::string>& row : rows) {
        SCOPED_TRACE(row[0]);
        const std::wstring key = FromUtf8(row[0]);
        const std::string &allowed = row[1], &standard = row[2];
        std::smatch ends;
        section = key == L"Frequency (MHz)" ? L"Channel 1" : section;
        if (standard != "all" && !standard.starts_with("none")) {
            EXPECT_EQ(ToUtf8(model.Get(section, key)), standard);
        }
        if (std::regex_match(allowed, ends, range)) {
            const double low = std::stod(ends.str(1)), high = std::stod(ends.str(2));
            const bool isWhole = key == L"Seed";
            const double step = isWhole ? 1 : 0.001;
            const auto text = [&](double value) {
                return isWhole ? std::to_wstring(static_cast<int64_t>(value)) : std::to_wstring(value);
            };
            for (const double good : {low, high}) {
                EXPECT_NO_THROW(model.Set(section, key, text(good)));
            }
            for (const double bad : {low - step, high + step}) {
                EXPECT_THROW(model.Set(section, key, text(bad)), ModelError);
            }
        }
    }
}

}  // namespace
}  // namespace tvn2x
