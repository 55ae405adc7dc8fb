#include "setup/SetupFile.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include "setup/SetupDocument.h"
#include "setup/catalogue/Parameters.h"
#include "setup/clsIniFile.h"
#include "support/DocumentParts.h"
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
const std::string header = "[Application]\r\nName=P\r\nVersion=2.0\r\n[Hardware]\r\nModel=2x\r\n";

class SetupFile : public testing::Test
{
protected:
    bool Load(const std::string& content)
    {
        files.Put(path, content);
        return Load();
    }
    bool Load() { return Load(document, path); }
    bool Load(SetupDocument& into, const std::wstring& from)
    {
        return LoadSetup(into, environment, product, from, model, mode);
    }
    bool Save(const std::wstring& target = path) { return Save(document, target); }
    bool Save(SetupDocument& what, const std::wstring& target = path)
    {
        return SaveSetup(what, environment, product, L"2.1", target);
    }
    /// Loads a whole file as a program or a person has left it.
    void LoadSample(const std::string& name)
    {
        product = L"TVN Host";
        ASSERT_TRUE(Load(TestFile("setups/" + name)));
    }
    std::wstring ErrorOf(const std::string& content)
    {
        return RaisedBy([&] { Load(content); });
    }
    std::wstring Stored(const std::wstring& section, const std::wstring& key)
    {
        std::wstring text;
        clsIniFile(files, messages).IniRead(section, key, 0, L"(none)", text, false, path);
        return text;
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
    for (const std::wstring& target : {path, copy}) {
        const std::string sample = files.Content(path);
        ASSERT_TRUE(SaveSetup(document, environment, product, L"2.0", target));
        EXPECT_EQ(sample, files.Content(target));
        EXPECT_EQ(target, document.fullPath);
        EXPECT_FALSE(document.dirty);
    }
    EXPECT_EQ(L"copy", document.FileTitle());
    EXPECT_EQ(L"C:\\data", document.FolderOfFile());
}

TEST_F(SetupFile, AMissingKeyTakesItsDefaultAndACaptionStays)
{
    document.StoredCaption(27, L"kept");
    document.Notes(L"old");
    ASSERT_TRUE(Load(header));
    EXPECT_EQ(L"2x", model);
    EXPECT_EQ(4, mode);
    EXPECT_EQ(4, document.mode);
    ASSERT_EQ(1, document.ListSize());
    EXPECT_EQ(213, document.Frequency(1));
    EXPECT_EQ(6.9, document.SymbolRate(1));
    EXPECT_EQ(L"", document.UserField(1));
    EXPECT_EQ(std::tuple(L"dBmV"s, 0, 100, 8, 64, 15, 75, 10, true, 2, 2, L""s, true, true), SettingsOf(document));
    EXPECT_EQ(6.9, document.DefaultSymbolRate());
    EXPECT_FALSE(document.Parameter(1, 20) || document.Parameter(2, 20) || document.Parameter(0, 20));
    EXPECT_EQ(31, document.Order(1));
    EXPECT_EQ(60, document.Order(30));
    EXPECT_EQ(L"kept", document.Caption(27));
    EXPECT_EQ(path, document.fullPath);
    EXPECT_FALSE(document.isBackup || document.dirty);

    // Parameters without a position follow the count.
    std::string positions;
    for (int number = 1; number <= 30; ++number) {
        positions += "Position " + std::string(number < 10 ? "0" : "") + std::to_string(number) + "=" +
                     (number == 3 || number == 7 ? "-1" : std::to_string(31 - number)) + "\r\n";
    }
    ASSERT_TRUE(Load(header + "[Parameters]\r\nCount=30\r\n[Parameters Display Order]\r\n" + positions));
    EXPECT_EQ(31, document.Order(3));
    EXPECT_EQ(32, document.Order(7));
    EXPECT_EQ(30, document.Order(1));
}

TEST_F(SetupFile, IdentityIsCheckedInOrderAndAnUnknownVersionTrustsTheCallersModel)
{
    EXPECT_FALSE(Load()) << "no file";
    EXPECT_EQ(L"", document.productName);
    EXPECT_FALSE(Load("[Application]\r\nName=p\r\nVersion=3\r\n"));
    EXPECT_EQ(L"p", document.productName);
    EXPECT_EQ(L"3", document.appVersion);
    EXPECT_EQ(L"", model);
    EXPECT_FALSE(Load("[Application]\r\nName=P\r\nVersion=2.0.1\r\n[Hardware]\r\nModel=2X\r\nMode=9\r\n"));
    EXPECT_EQ(L"2X", model);
    EXPECT_EQ(9, mode);
    EXPECT_EQ(213, document.Frequency(1));
    EXPECT_EQ(L"My Channel", document.UserField(1)) << "nothing else was read";
    for (const char* const version : {"1.9", "1.39", "", "abc"}) {
        const std::string content =
            std::string("[Application]\r\nName=P\r\nVersion=") + version + "\r\n[Hardware]\r\nModel=9z\r\nMode=1\r\n";
        model = L"2x";
        mode = 5;
        EXPECT_TRUE(Load(content)) << version;
        EXPECT_EQ(5, mode);
        model.clear();
        EXPECT_FALSE(Load(content)) << version;
    }
}

TEST_F(SetupFile, Version14IsConverted)
{
    LoadSample("parameters-1.4.ini");  // each caption with the number of its key
    EXPECT_EQ(L"2x", model);
    EXPECT_EQ(4, mode);
    const std::string content = files.Content(path);
    ASSERT_TRUE(SaveSetup(document, environment, product, L"2.0", L"C:\\data\\copy.ini"));
    EXPECT_EQ(TestFile("setups/parameters-1.4-converted.ini"), files.Content(L"C:\\data\\copy.ini"));
    ASSERT_TRUE(Load(content + "[Parameters Display Order]\r\nPosition 01=20\r\nPosition 06=25\r\n"));
    EXPECT_EQ(14, document.Order(1));
    EXPECT_EQ(35, document.Order(10)) << "a position beyond the old ones moves by the ten new parameters";
}

TEST_F(SetupFile, SurplusRowsStayAndSurplusParametersGo)
{
    document.ListSize(8);
    document.Count(32);
    ASSERT_TRUE(Save());
    files.Put(path,
              "; kept\r\n" + files.Content(path) + "[Frequency List]\r\n[Other]\r\nx=1\r\n[Backup]\r\nDirty=True\r\n");
    for (const wchar_t* const early : {L"Frequency 6", L"Symbol Rate (MSymb/s) 8", L"Frequency 9"}) {
        clsIniFile(files, messages).IniWrite(L"Frequency List", early, L"1", path);
    }
    document.ListSize(5);
    document.Count(30);
    ASSERT_TRUE(Save());
    const wchar_t* const gone = L"(none)";
    const std::array<const wchar_t*, 3> expected[] = {
        {L"Frequency List", L"Count", L"5"},
        {L"Frequency List", L"Frequency   08", L"0.0000000"},
        {L"Frequency List", L"Frequency 6", gone},
        {L"Frequency List", L"Symbol Rate (MSymb/s) 8", gone},
        {L"Frequency List", L"Frequency 9", L"1"},  // beyond the old count
        {L"Parameters to Display", L"Parameter 31", gone},
        {L"Parameters to Save", L"Parameter 30", L"-1"},
        {L"Parameters Display Order", L"Position 32", gone},
        {L"Other", L"x", L"1"},
        {L"Backup", L"Dirty", L"True"},
    };
    for (const auto& [section, key, value] : expected) {
        EXPECT_EQ(value, Stored(section, key));
    }
    EXPECT_TRUE(files.Content(path).starts_with("; kept\r\n"));
    ASSERT_TRUE(Load());
    EXPECT_EQ(5, document.ListSize());
}

TEST_F(SetupFile, ABackupRemembersTheRealDocument)
{
    const std::wstring backup = L"C:\\data\\backup.ini";
    document.fullPath = path;
    document.productName = L"Real";
    document.appVersion = L"2.5";
    document.dirty = true;
    document.measurementNotes = L"m\r\nn";
    document.measurementShowNotesAfter = true;
    document.UserField(1, L"changed");
    EXPECT_TRUE(BackupSetup(document, environment, L"P", L"2.1", backup));
    EXPECT_EQ(L"Real", document.productName);
    EXPECT_FALSE(files.Exists(path));
    EXPECT_TRUE(files.Content(backup).ends_with(
        "[Backup]\r\nProduct Name=Real\r\nApp Version=2.5\r\nFull Path=C:\\data\\net.ini\r\nDirty=True\r\n"
        "Notes=m\\r\\nn\r\nShow After=-1\r\n"));

    SetupDocument loaded;
    ASSERT_TRUE(Load(loaded, backup));
    EXPECT_TRUE(loaded.isBackup && loaded.dirty && loaded.measurementShowNotesAfter);
    EXPECT_EQ(std::tuple(L"Real"s, L"2.5"s, path, L"m\r\nn"s, L"changed"s),
              std::tuple(loaded.productName, loaded.appVersion, loaded.fullPath, loaded.measurementNotes,
                         loaded.UserField(1)));

    document.Notes(L"lone\n");
    EXPECT_FALSE(BackupSetup(document, environment, L"P", L"2.1", backup));
    ASSERT_TRUE(Load(loaded, backup)) << "what it belongs to is there all the same";
    EXPECT_EQ(path, loaded.fullPath);
}

TEST_F(SetupFile, AnUntitledDocumentNeedsAPathAndKeepsAWholeOne)
{
    EXPECT_FALSE(Save(L""));
    EXPECT_TRUE(files.Paths().empty());
    ASSERT_TRUE(Save(L"C:/data/other.ini"));
    EXPECT_EQ(L"C:/data/other.ini", document.fullPath);
    document.UserField(1, L"second");
    ASSERT_TRUE(Save(L""));
    EXPECT_NE(std::string::npos, files.Content(L"C:/data/other.ini").find("second"));
    ASSERT_TRUE(Save(L"bare.ini"));
    EXPECT_EQ(L"C:\\current\\bare.ini", document.fullPath);
    files.Put(path, header);
    for (const wchar_t* const given : {L"\\data\\net.ini", L"C:net.ini"}) {
        files.current = L"C:\\data";
        ASSERT_TRUE(Load(document, given));
        files.current = L"D:\\data";
        EXPECT_EQ(path, document.fullPath) << "whatever folder is current later";
    }
}

TEST_F(SetupFile, NothingIsWrittenThatCouldNotBeLoaded)
{
    const std::string old = header + "[Other]\r\n";
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double largest = std::numeric_limits<double>::max();
    void (*const faults[])(SetupDocument&) = {
        [](SetupDocument& changed) { changed.Frequency(1, infinite); },
        [](SetupDocument& changed) { changed.SymbolRate(1, -infinite); },
        [](SetupDocument& changed) { changed.DefaultSymbolRate(std::numeric_limits<double>::quiet_NaN()); },
        [](SetupDocument& changed) { changed.Frequency(1, largest); },
        [](SetupDocument& changed) { changed.Count(32758); },
    };
    for (const auto& spoil : faults) {
        SetupDocument spoilt;
        spoil(spoilt);
        spoilt.UserField(1, L"changed");
        files.Put(path, old);
        EXPECT_FALSE(Save(spoilt));
        EXPECT_TRUE(spoilt.dirty);
        EXPECT_EQ(old, files.Content(path));
        EXPECT_FALSE(BackupSetup(spoilt, environment, product, L"2.1", path));
    }
    document.Count(32757);
    document.Frequency(1, std::nextafter(1.79769313486231e308, 0));
    ASSERT_TRUE(Save());
    EXPECT_TRUE(Load());
}

TEST_F(SetupFile, ATextThatCannotBeWrittenEndsTheFileThere)
{
    ASSERT_TRUE(Save());
    document.ListSize(2);
    document.UserField(2, L"x\n[Static Settings]");
    document.Zin(50);
    EXPECT_FALSE(Save());
    EXPECT_TRUE(document.dirty);
    EXPECT_EQ(L"2", Stored(L"Frequency List", L"Count"));
    EXPECT_EQ(L"0.0000000", Stored(L"Frequency List", L"Frequency   02"));
    EXPECT_EQ(L"(none)", Stored(L"Frequency List", L"User Field  02"));
    EXPECT_EQ(L"75", Stored(L"Static Settings", L"Input Impedance (ohm)"));

    // Notes keep their line ends in one line.
    EXPECT_EQ(L"a\\r\\nb\\r\\n\\r\\n\rc\nd", ProcessCrLf(L"a\r\nb\r\n\r\n\rc\nd", 0));
    EXPECT_EQ(L"\r\n\\r\r\n\\n", ProcessCrLf(L"\\r\\n\\r\\r\\n\\n", 1));
    EXPECT_EQ(L"1000 clsSetup, ProcessCrLf: Invalid mode number, 2", RaisedBy([] { ProcessCrLf(L"", 2); }));
}

TEST_F(SetupFile, ABadNumberNamesItsLineAndLeavesTheDocumentAlone)
{
    document.fullPath = L"C:\\own.ini";
    EXPECT_EQ(
        L"13 clsSetup.ISetup_Load: Type mismatch: the file \"C:\\data\\net.ini\" says [Frequency List] Symbol Rate "
        L"01=fast, which is no "
        L"number. Correct the line, or load a backup of the file.",
        ErrorOf(header + "[Frequency List]\r\nFrequency   01=100\r\nSymbol Rate 01=fast\r\n"));
    EXPECT_EQ(213, document.Frequency(1));
    EXPECT_EQ(L"C:\\own.ini", document.fullPath);
    EXPECT_FALSE(document.dirty);
    EXPECT_EQ(L"", ErrorOf(header + "[Static Settings]\r\nOrder Of QAM=many\r\nInput Impedance (ohm)=\r\n"
                                    "SAW Filter Bandwidth (MHz)=7.5\r\nMaximum Settling Time (sec)=1e99\r\n"));
    EXPECT_EQ(std::tuple(64, 75, 8, 10),
              std::tuple(document.OrderOfQam(), document.Zin(), document.SawBw(), document.MaxSettlingTime()));
}

TEST_F(SetupFile, ACountBeyondWhatTheFileCanHoldIsRefused)
{
    EXPECT_EQ(
        L"380 clsSetup.ISetup_Load: The file \"C:\\data\\net.ini\" says [Frequency List] Count=2000000000, but can "
        L"hold at most 32767. "
        L"Correct the number, or load a backup of the file.",
        ErrorOf(header + "[Frequency List]\r\nCount=2000000000\r\n"));
    EXPECT_NE(L"", ErrorOf(header + "[Parameters]\r\nCount=2000000000\r\n"));
    EXPECT_EQ(1, document.ListSize());
    EXPECT_EQ(30, document.Count());
    EXPECT_EQ(L"", ErrorOf(header + "[Frequency List]\r\nCount=-2147483648\r\n[Parameters]\r\nCount=-2147483648\r\n"));
    EXPECT_EQ(30, document.Count());
    EXPECT_EQ(1, document.Order(1));
    document.ListSize(1);
    files.Put(path, header + "[Frequency List]\r\nCount=2147483647\r\n[Parameters]\r\nCount=2147483647\r\n");
    EXPECT_TRUE(Save()) << "the old count is only a number in a file";
}

TEST_F(SetupFile, EveryFileOperationMayFailAndTheFileIsTheOldOrTheNew)
{
    ASSERT_TRUE(Save());
    const std::string old = files.Content(path);
    document.UserField(1, L"new");
    int n = 1;
    for (bool failed = true; failed; ++n) {
        files.Put(path, old);
        SetupDocument trial = document;
        files.FailAt(n, FileFault::diskFull);
        const bool saved = Save(trial);
        failed = files.Failed();
        files.Heal();
        EXPECT_TRUE(saved || failed) << n;
        EXPECT_EQ(!saved, files.Content(path) == old) << n;
        EXPECT_EQ(!saved, trial.dirty) << n;
        EXPECT_EQ(1u, files.Paths().size()) << n;
        EXPECT_TRUE(Load(trial, path)) << n;
        EXPECT_EQ(saved ? L"new" : L"My Channel", trial.UserField(1)) << n;
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
