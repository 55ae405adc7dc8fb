#include "setup/SetupFile.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "setup/clsIniFile.h"
#include "support/FaultyFiles.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "util/RaisedError.h"

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
    bool Load() { return LoadSetup(document, environment, L"P", path, model, mode); }
    bool Save(const std::wstring& target = path) { return SaveSetup(document, environment, L"P", L"2.1", target); }
    /// Number and description of the error that loading the content raises.
    std::wstring ErrorOf(const std::string& content)
    {
        try {
            Load(content);
        } catch (const RaisedError& raised) {
            return std::to_wstring(raised.number) + L" " + raised.description;
        }
        return {};
    }
    std::wstring Stored(const std::wstring& section, const std::wstring& key)
    {
        std::wstring text;
        clsIniFile(files, messages).IniRead(section, key, 0, L"(none)", text, false, path);
        return text;
    }

    MemoryFiles files;
    FaultyFiles faulty{files};
    RecordingMessageBoxes messages;
    FixedLocale locale;
    SetupEnvironment environment{faulty, messages, locale};
    SetupDocument document;
    std::wstring model;
    int32_t mode = 0;
};

TEST_F(SetupFile, IsWrittenSectionBySection)
{
    document.ListSize(2);
    document.Frequency(1, 474);
    document.SymbolRate(1, 6.875);
    document.UserField(1, L"S21");
    document.mode = 7;
    document.Notes(L"a\r\nb");
    document.XAxis(1, 1);
    ASSERT_TRUE(Save());
    const std::string content = files.Content(path);
    EXPECT_EQ(
        "[Application]\r\nName=P\r\nVersion=2.1\r\n[Hardware]\r\nModel=2x\r\nMode=7\r\n[Frequency List]\r\nCount=2\r\n"
        "Frequency   01=474.0000000\r\nUser Field  01=S21\r\nSymbol Rate 01=6.875\r\n"
        "Frequency   02=0.0000000\r\nUser Field  02=\r\nSymbol Rate 02=0.000\r\n"
        "[Static Settings]\r\nLevel Unit=dBmV\r\n10MHz Reference Source=0\r\nOrder Of QAM=64\r\nRolloff Factor=15\r\n"
        "BER Integration (Samples)=10\r\nSAW Filter Bandwidth (MHz)=8\r\nInput Impedance (ohm)=75\r\n"
        "Default Symbol Rate (MSymb/s)=6.900\r\nMaximum Settling Time (sec)=10\r\nCouple Display and Save=True\r\n"
        "[Parameters]\r\nCount=30\r\n[Parameters to Display]\r\nParameter 01=0\r\n",
        content.substr(0, content.find("Parameter 02")));
    for (const char* const part :
         {"\r\nParameter 10=-1\r\n", "\r\n[Parameters to Save]\r\nParameter 01=-1\r\n",
          "\r\n[Parameters Display Order]\r\nPosition 01=1\r\n",
          "\r\n[Parameter Captions]\r\nParameter 01=Input Route\r\n", "\r\nParameter 15=RF Level\r\n",
          "\r\n[Notes]\r\nTemplate=a\\r\\nb\r\nShow Before=0\r\nShow After=0\r\n[X-Axis]\r\nDisplay Grid=2\r\nResult "
          "File=1\r\n"})
        EXPECT_NE(std::string::npos, content.find(part)) << part;
    EXPECT_EQ(path, document.fullPath);
    EXPECT_EQ(L"2.1", document.appVersion);
    EXPECT_FALSE(document.dirty);
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
    EXPECT_EQ(L"dBmV", document.LevelUnit());
    EXPECT_EQ(100, document.BerSamples());
    EXPECT_EQ(8, document.SawBw());
    EXPECT_EQ(64, document.OrderOfQam());
    EXPECT_EQ(15, document.RollOffFactor());
    EXPECT_EQ(75, document.Zin());
    EXPECT_EQ(6.9, document.DefaultSymbolRate());
    EXPECT_EQ(10, document.MaxSettlingTime());
    EXPECT_TRUE(document.CoupleDisplayAndSave());
    EXPECT_FALSE(document.Parameter(1, 20) || document.Parameter(2, 20) || document.Parameter(0, 20));
    EXPECT_EQ(31, document.Order(1));
    EXPECT_EQ(60, document.Order(30));
    EXPECT_EQ(L"kept", document.Caption(27));
    EXPECT_EQ(L"", document.Notes());
    EXPECT_TRUE(document.ShowNotesBefore() && document.ShowNotesAfter());
    EXPECT_EQ(2, document.XAxis(0));
    EXPECT_EQ(2, document.XAxis(1));
    EXPECT_EQ(path, document.fullPath);
    EXPECT_FALSE(document.isBackup || document.dirty);
}

TEST_F(SetupFile, RandomDocumentsComeBackAsTheyWere)
{
    std::mt19937 random(7);
    const std::vector<std::wstring> texts{L"",    L"plain",   L" blanks \t",       L"\"quoted\"", L"'",
                                          L"'x'", L"a=b;[c]", L"50 \u20AC \u00FC", L";x",         L"[s]",
                                          L"= ",  L"\"",      L"MISSING not"};
    const auto text = [&] { return texts[random() % texts.size()]; };
    const auto number = [&] { return static_cast<int32_t>(random()); };
    const FixedLocale comma = CommaLocale();
    for (int round = 0; round < 60; ++round) {
        const SetupEnvironment around{files, messages, round % 2 == 0 ? static_cast<const Locale&>(locale) : comma};
        SetupDocument saved;
        saved.ListSize(static_cast<int32_t>(random() % 130));
        for (int32_t row = 1; row <= saved.ListSize(); ++row) {
            saved.Frequency(row, static_cast<double>(random()) / 1e7);
            saved.SymbolRate(row, static_cast<double>(random() % 7000) / 1e3);
            saved.UserField(row, text());
        }
        saved.Count(30 + static_cast<int32_t>(random() % 90));
        for (int32_t parameter = 1; parameter <= saved.Count(); ++parameter) {
            saved.Parameter(1, parameter, random() % 2 == 0);
            saved.Parameter(2, parameter, random() % 2 == 0);
            saved.Order(parameter, static_cast<int16_t>(random() % 1000));
            saved.StoredCaption(parameter, text());
        }
        saved.Notes(text() + L"\r\n\r\n" + text());
        saved.LevelUnit(text());
        saved.ReferenceSource(number());
        saved.BerSamples(number());
        saved.SawBw(number());
        saved.OrderOfQam(number());
        saved.RollOffFactor(number());
        saved.Zin(number());
        saved.MaxSettlingTime(number());
        saved.CoupleDisplayAndSave(random() % 2 == 0);
        saved.XAxis(0, number());
        saved.mode = number();
        ASSERT_TRUE(SaveSetup(saved, around, L"P", L"2.1", path));
        SetupDocument loaded;
        ASSERT_TRUE(LoadSetup(loaded, around, L"P", path, model, mode));
        const std::string first = files.Content(path);
        ASSERT_TRUE(SaveSetup(loaded, around, L"P", L"2.1"));
        EXPECT_EQ(first, files.Content(path));
        ASSERT_EQ(saved.ListSize(), loaded.ListSize());
        for (int32_t row = 1; row <= saved.ListSize(); ++row) {
            EXPECT_EQ(saved.Frequency(row), loaded.Frequency(row));
            EXPECT_EQ(saved.SymbolRate(row), loaded.SymbolRate(row));
            EXPECT_EQ(saved.UserField(row), loaded.UserField(row));
        }
        ASSERT_EQ(saved.Count(), loaded.Count());
        for (int32_t parameter = 1; parameter <= saved.Count(); ++parameter) {
            EXPECT_EQ(saved.Parameter(1, parameter), loaded.Parameter(1, parameter));
            EXPECT_EQ(saved.Parameter(2, parameter), loaded.Parameter(2, parameter));
            EXPECT_EQ(loaded.Parameter(1, parameter) || loaded.Parameter(2, parameter), loaded.Parameter(0, parameter));
            EXPECT_EQ(saved.Order(parameter), loaded.Order(parameter));
            EXPECT_EQ(saved.StoredCaption(parameter), loaded.StoredCaption(parameter));
        }
        EXPECT_EQ(saved.Notes(), loaded.Notes());
        EXPECT_EQ(saved.LevelUnit(), loaded.LevelUnit());
        EXPECT_EQ(saved.BerSamples(), loaded.BerSamples());
        EXPECT_EQ(saved.RollOffFactor(), loaded.RollOffFactor());
        EXPECT_EQ(saved.XAxis(0), loaded.XAxis(0));
        EXPECT_EQ(saved.mode, mode);
    }
}

TEST_F(SetupFile, IdentityIsCheckedInOrderAndMembersReadBeforeStay)
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
}

TEST_F(SetupFile, AnUnknownVersionTrustsTheCallersModel)
{
    for (const char* const version : {"1.9", "1.39", "", "abc"}) {
        const std::string content =
            std::string("[Application]\r\nName=P\r\nVersion=") + version + "\r\n[Hardware]\r\nModel=9z\r\nMode=1\r\n";
        model.clear();
        mode = 5;
        EXPECT_FALSE(Load(content)) << version;
        model = L"2x";
        EXPECT_TRUE(Load(content)) << version;
        EXPECT_EQ(5, mode);
    }
}

TEST_F(SetupFile, ParametersWithoutAPositionFollowTheCount)
{
    std::string content = header + "[Parameters]\r\nCount=30\r\n[Parameters Display Order]\r\n";
    for (int parameter = 1; parameter <= 30; ++parameter) {
        if (parameter != 3 && parameter != 7)
            content += std::string("Position ") + (parameter < 10 ? "0" : "") + std::to_string(parameter) + "=" +
                       std::to_string(31 - parameter) + "\r\n";
    }
    ASSERT_TRUE(Load(content));
    EXPECT_EQ(31, document.Order(3));
    EXPECT_EQ(32, document.Order(7));
    EXPECT_EQ(30, document.Order(1));
}

TEST_F(SetupFile, Version14IsConverted)
{
    std::string content = "[Application]\r\nName=P\r\nVersion=1.4\r\n[Parameters]\r\nCount=20\r\n";
    const auto keys = [&](const char* section, const char* key, auto value) {
        content += std::string("[") + section + "]\r\n";
        for (int number = 1; number <= 20; ++number)
            content +=
                std::string(key) + (number < 10 ? "0" : "") + std::to_string(number) + "=" + value(number) + "\r\n";
    };
    keys("Parameters to Display", "Parameter ", [](int) { return "-1"; });
    keys("Parameters to Save", "Parameter ", [](int number) { return number == 17 ? "1" : "0"; });
    keys("Parameter Captions", "Parameter ",
         [](int number) { return "old " + std::to_string(number) + " \xBA (dBmV)"; });
    ASSERT_TRUE(Load(content));
    EXPECT_EQ(L"2x", model);
    EXPECT_EQ(4, mode);
    ASSERT_EQ(30, document.Count());

    // The parameter's old key number, 0 for the ten that version 1.4 did not have.
    const std::vector<int> oldKeys{4, 3,  1, 0, 0, 0,  2,  0,  5,  6,  7,  8,  19, 20, 17,
                                   9, 12, 0, 0, 0, 13, 14, 11, 16, 10, 18, 15, 0,  0,  0};
    for (int32_t parameter = 1; parameter <= 30; ++parameter) {
        const int key = oldKeys[static_cast<size_t>(parameter - 1)];
        EXPECT_EQ(key != 0, document.Parameter(1, parameter)) << parameter;
        EXPECT_EQ(key == 17, document.Parameter(2, parameter)) << parameter;
        const std::wstring old = L"old " + std::to_wstring(key);
        EXPECT_EQ(key == 0                  ? std::wstring(DefaultCaption(parameter))
                  : parameter == MP_RFLEV   ? old + L" \u00BA"
                  : parameter == MP_IQPHASE ? old + L" \u00B0 (dBmV)"
                  : parameter == MP_PHASJIT ? old + L" \u00B0  (dBmV)"
                                            : old + L" \u00BA (dBmV)",
                  document.StoredCaption(parameter));
    }

    // Without position keys every parameter takes the place that its own number had become.
    std::vector<int> fromKeys;
    for (int32_t parameter = 1; parameter <= 30; ++parameter)
        fromKeys.push_back(document.Order(parameter));
    const std::vector<int> expected{3,  7,  2,  1,  9,  4,  5,  6,  8,  10, 11, 12, 16, 25, 23,
                                    17, 21, 22, 27, 24, 15, 26, 13, 14, 18, 19, 20, 28, 29, 30};
    EXPECT_EQ(expected, fromKeys);
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
    clsIniFile ini(files, messages);
    ini.IniWrite(L"Frequency List", L"Frequency 6", L"1", path);
    ini.IniWrite(L"Frequency List", L"Symbol Rate (MSymb/s) 8", L"1", path);
    ini.IniWrite(L"Frequency List", L"Frequency 9", L"1", path);
    document.ListSize(5);
    document.Count(30);
    ASSERT_TRUE(Save());
    EXPECT_EQ(L"5", Stored(L"Frequency List", L"Count"));
    EXPECT_EQ(L"0.0000000", Stored(L"Frequency List", L"Frequency   08"));
    EXPECT_EQ(L"(none)", Stored(L"Frequency List", L"Frequency 6"));
    EXPECT_EQ(L"(none)", Stored(L"Frequency List", L"Symbol Rate (MSymb/s) 8"));
    EXPECT_EQ(L"1", Stored(L"Frequency List", L"Frequency 9")) << "beyond the old count";
    for (const wchar_t* const section : {L"Parameters to Display", L"Parameters to Save", L"Parameter Captions"}) {
        EXPECT_EQ(L"(none)", Stored(section, L"Parameter 31"));
        EXPECT_EQ(L"(none)", Stored(section, L"Parameter 32"));
        EXPECT_NE(L"(none)", Stored(section, L"Parameter 30"));
    }
    EXPECT_EQ(L"(none)", Stored(L"Parameters Display Order", L"Position 32"));
    EXPECT_TRUE(files.Content(path).starts_with("; kept\r\n"));
    EXPECT_EQ(L"1", Stored(L"Other", L"x"));
    EXPECT_EQ(L"True", Stored(L"Backup", L"Dirty"));
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

    SetupDocument loaded;
    ASSERT_TRUE(LoadSetup(loaded, environment, L"P", backup, model, mode));
    EXPECT_TRUE(loaded.isBackup && loaded.dirty && loaded.measurementShowNotesAfter);
    EXPECT_EQ(L"Real", loaded.productName);
    EXPECT_EQ(L"2.5", loaded.appVersion);
    EXPECT_EQ(path, loaded.fullPath);
    EXPECT_EQ(L"m\r\nn", loaded.measurementNotes);
    EXPECT_EQ(L"changed", loaded.UserField(1));

    document.Notes(L"lone\n");
    EXPECT_FALSE(BackupSetup(document, environment, L"P", L"2.1", backup));
    ASSERT_TRUE(LoadSetup(loaded, environment, L"P", backup, model, mode))
        << "what it belongs to is there all the same";
    EXPECT_EQ(path, loaded.fullPath);
}

TEST_F(SetupFile, AnUntitledDocumentNeedsAPath)
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
}

TEST_F(SetupFile, NotesKeepTheirLineEndsInOneLine)
{
    EXPECT_EQ(L"a\\r\\nb\\r\\n\\r\\n\rc\nd", ProcessCrLf(L"a\r\nb\r\n\r\n\rc\nd", 0));
    EXPECT_EQ(L"\r\n\\r\r\n\\n", ProcessCrLf(L"\\r\\n\\r\\r\\n\\n", 1));
    try {
        ProcessCrLf(L"", 2);
        FAIL();
    } catch (const RaisedError& raised) {
        EXPECT_EQ(1000, raised.number);
        EXPECT_EQ(L"clsSetup, ProcessCrLf", raised.source);
        EXPECT_EQ(L"Invalid mode number, 2", raised.description);
    }
}

TEST_F(SetupFile, ABadNumberNamesItsLineAndLeavesTheDocumentAlone)
{
    document.fullPath = L"C:\\own.ini";
    EXPECT_EQ(
        L"13 Type mismatch: the file \"C:\\data\\net.ini\" says [Frequency List] Symbol Rate 01=fast, which is no "
        L"number. Correct the line, or load a backup of the file.",
        ErrorOf(header + "[Frequency List]\r\nFrequency   01=100\r\nSymbol Rate 01=fast\r\n"));
    EXPECT_EQ(213, document.Frequency(1));
    EXPECT_EQ(L"C:\\own.ini", document.fullPath);
    EXPECT_FALSE(document.dirty);
    EXPECT_EQ(L"", ErrorOf(header + "[Static Settings]\r\nOrder Of QAM=many\r\nInput Impedance (ohm)=\r\n"
                                    "SAW Filter Bandwidth (MHz)=7.5\r\nMaximum Settling Time (sec)=1e99\r\n"));
    EXPECT_EQ(64, document.OrderOfQam());
    EXPECT_EQ(75, document.Zin());
    EXPECT_EQ(8, document.SawBw());
    EXPECT_EQ(10, document.MaxSettlingTime());
}

TEST_F(SetupFile, ACountBeyondWhatTheFileCanHoldIsRefused)
{
    EXPECT_EQ(
        L"380 The file \"C:\\data\\net.ini\" says [Frequency List] Count=2000000000, but can hold at most 32767. "
        L"Correct the number, or load a backup of the file.",
        ErrorOf(header + "[Frequency List]\r\nCount=2000000000\r\n"));
    EXPECT_NE(L"", ErrorOf(header + "[Parameters]\r\nCount=2000000000\r\n"));
    EXPECT_EQ(1, document.ListSize());
    EXPECT_EQ(30, document.Count());
    EXPECT_EQ(L"", ErrorOf(header + "[Frequency List]\r\nCount=32767\r\n[Parameters]\r\nCount=32000\r\n"));
    EXPECT_EQ(32767, document.ListSize());
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
    SetupDocument trial = document;
    ASSERT_TRUE(SaveSetup(trial, environment, L"P", L"2.1"));
    const std::string fresh = files.Content(path);
    ASSERT_NE(old, fresh);
    for (int n = 1;; ++n) {
        files.Put(path, old);
        trial = document;
        faulty.FailAt(n, FileFault::diskFull);
        const bool saved = SaveSetup(trial, environment, L"P", L"2.1");
        const bool failed = faulty.Failed();
        faulty.Heal();
        EXPECT_EQ(saved ? fresh : old, files.Content(path)) << n;
        EXPECT_EQ(!saved, trial.dirty) << n;
        EXPECT_EQ(1u, files.Paths().size()) << n;
        if (!failed) {
            EXPECT_TRUE(saved);
            EXPECT_GT(n, 5);
            break;
        }
    }
    for (int n = 1;; ++n) {
        trial = document;
        faulty.FailAt(n, FileFault::inUse);
        const bool loaded = LoadSetup(trial, environment, L"P", path, model, mode);
        const bool failed = faulty.Failed();
        faulty.Heal();
        EXPECT_TRUE(loaded || trial.dirty) << n;
        if (!failed)
            break;
    }
}

}  // namespace
}  // namespace tvn2x
