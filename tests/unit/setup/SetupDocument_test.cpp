#include "setup/SetupDocument.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include "setup/catalogue/Parameters.h"
#include "support/DocumentParts.h"
#include "support/RaisedBy.h"

using namespace std::string_literals;

namespace tvn2x {
namespace {

TEST(SetupDocument, StartsUntitledWithOneChannelAndEverythingMeasuredShown)
{
    const SetupDocument document;
    EXPECT_EQ(L"Untitled", document.FileTitle());
    EXPECT_EQ(L"", document.FolderOfFile());
    EXPECT_FALSE(document.dirty);
    ASSERT_EQ(1, document.ListSize());
    EXPECT_EQ(213.0, document.Frequency(1));
    EXPECT_EQ(6.9, document.SymbolRate(1));
    EXPECT_EQ(L"My Channel", document.UserField(1));
    EXPECT_EQ(6.9, document.DefaultSymbolRate());
    EXPECT_EQ(std::tuple(L"dBmV"s, 0, 10, 8, 64, 15, 75, 10, true, 2, 2, L""s, false, false), SettingsOf(document));
    ASSERT_EQ(30, document.Count());
    for (int32_t parameter = MP_FIRST; parameter <= MP_LAST; ++parameter) {
        EXPECT_EQ(std::tuple(true, parameter > MP_LASTSTATIC, true, parameter, DefaultCaption(parameter)),
                  ParametersOf(document)[static_cast<size_t>(parameter) - 1]);
    }
}

TEST(SetupDocument, ANewValueMarksItDirtyTheSameOneDoesNot)
{
    using D = SetupDocument;
    struct Setter
    {
        std::function<void(D&)> same, other;
        bool marks = true;
    };
    const Setter setters[] = {
        {[](D& d) { d.ListSize(1); }, [](D& d) { d.ListSize(2); }},
        {[](D& d) { d.Frequency(1, 213); }, [](D& d) { d.Frequency(1, 214); }},
        {[](D& d) { d.UserField(1, L"My Channel"); }, [](D& d) { d.UserField(1, L"my channel"); }},
        {[](D& d) { d.Caption(27, L"MER (dB RMS)"); }, [](D& d) { d.Caption(27, L"MER"); }},
        {[](D& d) { d.Zin(75); }, [](D& d) { d.Zin(50); }},
        {[](D& d) { d.Count(30); }, [](D& d) { d.Count(31); }, false},
        {[](D& d) { d.CoupleDisplayAndSave(true); }, [](D& d) { d.CoupleDisplayAndSave(false); }, false},
    };
    for (const Setter& setter : setters) {
        SetupDocument document;
        setter.same(document);
        EXPECT_FALSE(document.dirty) << "row " << &setter - setters;
        setter.other(document);
        EXPECT_EQ(setter.marks, document.dirty) << "row " << &setter - setters;
    }
}

TEST(SetupDocument, ANewSizeClearsEveryRowTheSameSizeNoneAndAnImpossibleOneChangesNothing)
{
    SetupDocument document;
    for (const int32_t size : {std::numeric_limits<int32_t>::max(), 100'000'000}) {
        EXPECT_EQ(L"7 clsSetup.ListSize: Out of memory", RaisedBy([&] { document.ListSize(size); }));
        EXPECT_EQ(L"7 clsSetup.Count: Out of memory", RaisedBy([&] { document.Count(size); }));
    }
    EXPECT_EQ(30, document.Count());
    EXPECT_FALSE(document.dirty);
    document.ListSize(1);
    EXPECT_EQ(213.0, document.Frequency(1));
    document.ListSize(2);
    EXPECT_EQ(0.0, document.Frequency(1));
    EXPECT_EQ(L"", document.UserField(2));
    for (const int32_t none : {0, -7}) {
        document.ListSize(none);
        EXPECT_EQ(none, document.ListSize());
        document.UserField(0, L"row 0");
        EXPECT_EQ(L"row 0", document.UserField(0));
        EXPECT_NE(L"", RaisedBy([&] { document.Frequency(1); }));
        EXPECT_NE(L"", RaisedBy([&] { document.Frequency(none - 1); }));
    }

    // The number of parameters is never below thirty, and what stays is kept.
    document.Count(12);
    EXPECT_EQ(30, document.Count());
    document.Count(35);
    EXPECT_EQ(30, document.Order(30));
    EXPECT_EQ(0, document.Order(35));
    EXPECT_EQ(L"", document.Caption(35));
    EXPECT_FALSE(document.Parameter(0, 35));
    document.Parameter(1, 35, true);
    document.Count(30);
    document.Count(35);
    EXPECT_FALSE(document.Parameter(1, 35)) << "an entry that comes back is new";
}

TEST(SetupDocument, TheRfLevelsCaptionCarriesTheUnitOnlyOutside)
{
    SetupDocument document;
    document.LevelUnitDirect(L"dB\u00B5V");
    EXPECT_EQ(L"RF Level (dB\u00B5V)", document.Caption(MP_RFLEV));
    document.Caption(MP_RFLEV, document.Caption(MP_RFLEV));
    EXPECT_EQ(L"RF Level", document.StoredCaption(MP_RFLEV));
    EXPECT_FALSE(document.dirty);
    document.Caption(MP_RFLEV, L"Level (dB\u00B5V) in (dBmV) (dB\u00B5V)");
    EXPECT_EQ(L"Level in (dBmV)", document.StoredCaption(MP_RFLEV));
    document.Caption(MP_MER, L"MER (dB\u00B5V)");
    EXPECT_EQ(L"MER (dB\u00B5V)", document.Caption(MP_MER));
}

TEST(SetupDocument, AnIndexOutsideItsTableRaisesNineAndNamesTheProperty)
{
    SetupDocument document;
    const std::pair<const wchar_t*, std::function<void()>> accesses[] = {
        {L"Frequency", [&] { document.Frequency(0); }},
        {L"SymbolRate", [&] { document.SymbolRate(2, 6); }},
        {L"UserField", [&] { document.UserField(std::numeric_limits<int32_t>::min(), L""); }},
        {L"Parameter", [&] { document.Parameter(3, 1, false); }},
        {L"Parameter", [&] { document.Parameter(1, 31); }},
        {L"Order", [&] { document.Order(0, 5); }},
        {L"Caption", [&] { document.Caption(0); }},
        {L"XAxis", [&] { document.XAxis(-1, 1); }},
    };
    for (const auto& [property, access] : accesses) {
        EXPECT_EQ(std::wstring(L"9 clsSetup.") + property + L": Subscript out of range", RaisedBy(access));
    }
    EXPECT_FALSE(document.dirty);
}

}  // namespace
}  // namespace tvn2x
