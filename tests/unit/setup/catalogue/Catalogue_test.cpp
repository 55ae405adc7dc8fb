#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/Options.h"
#include "setup/catalogue/Parameters.h"
#include "setup/catalogue/Settings.h"
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
