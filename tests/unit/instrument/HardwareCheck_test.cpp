#include "instrument/HardwareCheck.h"

#include <gtest/gtest.h>

#include "support/ScriptedReceiver.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

TEST(HardwareCheck, EachSettingNeedsItsOptionAsTheTableSays)
{
    SetupDocument document;
    CallLog log;
    ScriptedReceiver receiver(log);
    const HardwareCheck check(document, [&]() -> Receiver& { return receiver; });
    const auto canDoMode = [&] {
        receiver.answers.Mode = document.mode + 1;
        const bool inactive = check.Mode() == 1;
        receiver.answers.Mode = document.mode;
        EXPECT_EQ(check.Mode(), inactive ? 2 : 0);
        return inactive;
    };
    const std::map<std::string, std::pair<std::function<void(int32_t)>, std::function<bool()>>> checks = {
        {"mode", {[&](int32_t mode) { document.mode = mode; }, canDoMode}},
        {"route", {[&](int32_t route) { document.Zin(route); }, [&] { return check.InputPort(); }}},
        {"filter", {[&](int32_t filter) { document.SawBw(filter); }, [&] { return check.SawFilterBw(); }}},
        {"reference", {[&](int32_t source) { document.ReferenceSource(source); }, [&] { return check.ExtRef(); }}},
    };
    for (const std::vector<std::string>& row : TestTable("hardware-answers.tsv", 4)) {
        const auto& [put, canDo] = checks.at(row[0]);
        put(std::stoi(row[1]));
        receiver.answers.InstalledOptions = FromUtf8(CellText(row[2]));
        EXPECT_EQ(canDo(), row[3] == "yes") << testing::PrintToString(row);
    }
}

}  // namespace
}  // namespace tvn2x
