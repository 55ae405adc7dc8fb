#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/Options.h"
#include "setup/catalogue/Parameters.h"
#include "setup/catalogue/Settings.h"
#include "support/PageRows.h"
#include "util/Encoding.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

TEST(LevelUnits, MapToTheReceiversCodesAndBack)
{
    for (int32_t code = 0; code < 6; ++code) {
        EXPECT_EQ(code, LevelUnitCode(std::wstring(LevelUnitName(code))));
    }
    EXPECT_EQ(L"", LevelUnitName(6));
    EXPECT_EQ(L"", LevelUnitName(-1));
    for (const wchar_t* const none : {L"", L"dbmv", L"dB\u03BCV", L"dBmV "}) {
        EXPECT_EQ(-1, LevelUnitCode(none)) << none;
    }
    EXPECT_EQ(0, SignificantLevelDigits(L"mv"));
    EXPECT_EQ(4, SignificantLevelDigits(L"mV"));
    EXPECT_EQ(61, LevelInDecibelMicrovolt(1, L"dBmV"));
}

TEST(Parameters, HaveACaptionAndOnlyReadingsAFormat)
{
    for (int32_t parameter = MP_FIRST; parameter <= MP_LAST; ++parameter) {
        EXPECT_TRUE(!DefaultCaption(parameter).empty() && (parameter >= MP_RFLEV || DisplayFormat(parameter).empty()));
    }
    EXPECT_EQ(L"", DefaultCaption(0));
    EXPECT_EQ(L"", DefaultCaption(31));
    EXPECT_EQ(L"#0", DisplayFormat(MP_FREQOFF));
    EXPECT_EQ(L"0.0", DisplayFormat(MP_DE));
}

TEST(Parameters, ThatAFileMayNameHaveANameOfTheirOwn)
{
    std::set<std::string> names;
    for (const Parameter& parameter : Parameters().subspan(MP_FIRSTFIXED - MP_FIRST)) {
        EXPECT_TRUE(names.insert(parameter.name).second) << parameter.number;
    }
    EXPECT_FALSE(names.contains(""));
}

TEST(LevelUnits, AreTheChoicesOfTheirSetting)
{
    EXPECT_EQ(LevelUnits().size(), setting::levelUnit.choices.size());
    for (const ListItem& choice : setting::levelUnit.choices) {
        EXPECT_EQ(LevelUnitName(choice.value), choice.text);
    }
}

TEST(Settings, TakeWhatTheyMayBeWhereTheyAreMissingAndOfferNothingElse)
{
    for (const Setting* setting : Settings()) {
        if (setting->kind == SettingKind::text || setting->kind == SettingKind::word) {
            continue;
        }
        const double otherwise = LeadingNumber(setting->otherwise);
        const bool isClosed = setting->lowest == setting->highest && !setting->choices.empty();
        EXPECT_TRUE(!isClosed || FindListData(setting->choices, static_cast<int32_t>(otherwise)) >= 0) << setting->key;
        EXPECT_TRUE(setting->lowest == setting->highest ||
                    (otherwise >= setting->lowest && otherwise <= setting->highest))
            << setting->key;
        for (const ListItem& choice : setting->choices) {
            EXPECT_TRUE(isClosed || choice.value >= setting->lowest) << setting->key;
        }
    }
}

/// A row of the page that people write their setups by: what it says of each key that it names.
void ExpectAsTold(const std::string& key, const std::string& value, const std::string& otherwise,
                  const Setting& setting)
{
    static const std::regex number(R"(-?\d+(\.\d+)?)"), range(R"((-?[\d.]+) to ([\d.]+))");
    SCOPED_TRACE(key + ": " + value);
    const bool isPlain = otherwise.find(' ') == std::string::npos && otherwise != "empty";
    EXPECT_EQ(ToUtf8(setting.otherwise), isPlain ? otherwise : "");
    std::smatch ends;
    const bool isFlag = value == "-1 yes, 0 no", isFrom = value.find("from 1") != std::string::npos;
    const bool isRange = std::regex_search(value, ends, range);
    EXPECT_EQ(setting.lowest, isFlag ? -1 : isFrom ? 1 : isRange ? std::stod(ends.str(1)) : 0);
    EXPECT_EQ(setting.highest, isFlag ? 1 : isFrom ? 2147483647 : isRange ? std::stod(ends.str(2)) : 0);
    std::set<std::string> offered, told;
    for (const ListItem& choice : setting.choices) {
        offered.insert(setting.kind == SettingKind::text ? ToUtf8(choice.text) : std::to_string(choice.value));
    }
    static const std::regex word(R"([^ ,]+)");
    const std::regex& kind = setting.kind == SettingKind::text ? word : number;
    for (std::sregex_iterator each(value.begin(), value.end(), kind), end; each != end; ++each) {
        told.insert(each->str());
    }
    EXPECT_TRUE(isFrom || offered.empty() || offered == told);
}

std::string Place(std::string section, const std::string& key)
{
    section += "/" + key.substr(0, key.find_last_not_of(' ') + 1);
    std::ranges::transform(section, section.begin(), [](unsigned char c) { return std::tolower(c); });
    return section;
}

TEST(Settings, HaveTheValuesAndDefaultsThatTheirPageTells)
{
    std::map<std::string, Setting> settings;
    for (const Setting* setting : Settings()) {
        settings.emplace(Place(setting->section, setting->key), *setting);
    }
    for (const SettingRows& rows : RowSettings()) {
        settings.insert(
            {Place(rows.section, rows.prefix), {rows.section, rows.prefix, rows.kind, rows.lowest, rows.highest}});
    }
    const std::regex name("`([^`]+?)( *NN)?`");
    const std::sregex_iterator end;
    std::set<std::string> told;
    std::string sections;
    for (const auto& row : PageRows("setup-file.md", R"(\| (.*?) ?\| (`.+`)[^|]* \| ([^|]+) \| ([^|]*) \|)")) {
        const std::string &keys = row[1], &value = row[2], &otherwise = row[3];
        sections = row[0].empty() ? sections : row[0];
        for (std::sregex_iterator section(sections.begin(), sections.end(), name); section != end; ++section) {
            for (std::sregex_iterator key(keys.begin(), keys.end(), name); key != end; ++key) {
                const std::string place = Place((*section)[1].str(), (*key)[1].str());
                told.insert(place);
                const bool isRow = (*key)[2].matched;
                ExpectAsTold(place, value, isRow ? "empty" : otherwise, settings.at(place));
            }
        }
    }
    EXPECT_EQ(told.size(), settings.size());
}

TEST(Settings, ThatAreChosenByANumberHaveIt)
{
    for (const auto& [setting, scale] : {std::pair{&setting::orderOfQam, 1},
                                         {&setting::rollOffFactor, 100},
                                         {&setting::berSamples, 1},
                                         {&setting::sawBandwidth, 1}}) {
        for (const ListItem& choice : setting->choices) {
            EXPECT_EQ(std::lround(LeadingNumber(choice.text) * scale), choice.value) << setting->key;
        }
    }
}

TEST(Options, ThatAreNeededAreKnownAndFoundInAListOfAll)
{
    std::wstring all;
    for (const OptionFact& option : Options()) {
        all += (all.empty() ? L"" : L",") + std::wstring(option.code);
    }
    for (const ListItem& filter : setting::sawBandwidth.choices) {
        const OptionNeed* const need = FindNeed(Capability::filter, filter.value);
        EXPECT_EQ(filter.value != 0, need != nullptr) << filter.value;
        EXPECT_TRUE(!need || IsMet(*need, all)) << filter.value;
    }
    EXPECT_TRUE(HasReferenceInput(all));
    EXPECT_FALSE(HasReferenceInput(L"extref"));
}

}  // namespace
}  // namespace tvn2x
