#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "setup/ProfileText.h"
#include "setup/SetupFile.h"
#include "setup/SetupKeys.h"
#include "setup/SetupRows.h"
#include "setup/catalogue/Patterns.h"
#include "setup/clsIniFile.h"
#include "util/FileText.h"
#include "util/modFormat.h"

namespace tvn2x {

using namespace setup_file;

namespace {

/// Fifteen digits of anything larger are read as more than a number can be.
constexpr double largestNumber = 1.79769313486231e308;

bool IsLoadable(double number)
{
    return std::fabs(number) <= largestNumber;
}

/// Whether LoadSetup takes what would be written. The rows of a list need no check: all of them are in the file.
bool IsLoadable(const SetupDocument& document)
{
    bool loadable = document.Count() <= mostParameters && IsLoadable(document.DefaultSymbolRate());
    for (int32_t row = 1; row <= document.ListSize() && loadable; ++row) {
        loadable = IsLoadable(document.Frequency(row)) && IsLoadable(document.SymbolRate(row));
    }
    return loadable;
}

/// What a caller's text is without a NUL and what follows it.
std::wstring UpToNul(const std::wstring& text)
{
    return text.substr(0, text.find(L'\0'));
}

/// A text whose blanks or quotes a reader of the file would take away is put in quotes, which are taken in their place.
std::wstring Protected(const std::wstring& text)
{
    constexpr std::wstring_view blanks = L" \t\v\f";
    constexpr std::wstring_view quotes = L"\"'";
    if (text.empty()) {
        return text;
    }
    const bool blankEdge =
        blanks.find(text.front()) != std::wstring_view::npos || blanks.find(text.back()) != std::wstring_view::npos;
    const bool quoted =
        text.size() >= 2 && text.front() == text.back() && quotes.find(text.front()) != std::wstring_view::npos;
    return blankEdge || quoted ? L'"' + text + L'"' : text;
}

/// Writes a document into an open batch, section by section. The first write that fails is the last that is tried.
class Writer
{
public:
    Writer(clsIniFile& ini, const SetupDocument& document, const Locale& locale)
        : ini_(ini), document_(document), locale_(locale)
    {
    }

    bool WriteIdentity(const std::wstring& productName, const std::wstring& appVersion);
    bool WriteContent();
    void WriteBackup();

private:
    void WriteChannels();
    void WriteStaticSettings();
    void WriteParameters();
    template <class Value>
    void WriteTable(const wchar_t* section, std::string_view prefix, int32_t oldCount, Value value);
    void WriteNotesAndAxis();

    void Section(const wchar_t* name) { ini_.SectionName(name); }
    void Text(std::string_view key, std::wstring_view value) { ok_ = ok_ && ini_.Put(key, value); }
    void Text(std::string_view key, const std::wstring& value)
    {
        ok_ = ok_ && ini_.Put(key, Protected(UpToNul(value)));
    }
    void Long(std::string_view key, int32_t value) { Text(key, std::wstring_view(std::to_wstring(value))); }
    void Flag(std::string_view key, bool value) { Text(key, std::wstring_view(value ? L"-1" : L"0")); }
    void Word(std::string_view key, bool value) { Text(key, std::wstring_view(value ? L"True" : L"False")); }
    void Number(std::string_view key, double value, std::wstring_view pattern)
    {
        Text(key, std::wstring_view(FormatNumber(value, pattern, false, locale_)));
    }
    void Delete(std::string_view key) { ok_ = ok_ && ini_.Delete(key); }
    int32_t OldCount(int32_t defaultValue)
    {
        return std::min(ini_.GetLong(L"Count", defaultValue), MostRows(ini_.TextSize()));
    }

    clsIniFile& ini_;
    const SetupDocument& document_;
    const Locale& locale_;
    bool ok_ = true;
};

bool Writer::WriteIdentity(const std::wstring& productName, const std::wstring& appVersion)
{
    Section(section::application);
    Text("Name", productName);
    Text("Version", appVersion);
    return ok_;
}

bool Writer::WriteContent()
{
    Section(section::hardware);
    Text("Model", std::wstring_view(modelName));
    Long("Mode", document_.mode);
    WriteChannels();
    WriteStaticSettings();
    WriteParameters();
    WriteNotesAndAxis();
    return ok_;
}

void Writer::WriteChannels()
{
    Section(section::frequencyList);
    const int32_t oldCount = OldCount(1);
    const int32_t count = document_.ListSize();
    Long("Count", count);
    RowKey frequency(frequencyKey);
    RowKey userField(userFieldKey);
    RowKey symbolRate(symbolRateKey);
    for (int32_t row = 1; row <= count && ok_; ++row) {
        Number(frequency(row), document_.Frequency(row), pattern::frequencyInFiles);
        Text(userField(row), document_.UserField(row));
        Number(symbolRate(row), document_.SymbolRate(row), pattern::symbolRate);
    }

    // Surplus rows stay in the file, beyond its count and out of every reader's way; these are keys of another spelling
    // that early programs left behind.
    RowKey earlyFrequency("Frequency ", false);
    RowKey earlySymbolRate("Symbol Rate (MSymb/s) ", false);
    for (int32_t row = std::max(count, 0) + 1; row <= oldCount && ok_; ++row) {
        Delete(earlyFrequency(row));
        Delete(earlySymbolRate(row));
    }
}

void Writer::WriteStaticSettings()
{
    Section(section::staticSettings);
    Text("Level Unit", document_.LevelUnit());
    Long("10MHz Reference Source", document_.ReferenceSource());
    Number("Order Of QAM", document_.OrderOfQam(), {});
    Long("Rolloff Factor", document_.RollOffFactor());
    Long("BER Integration (Samples)", document_.BerSamples());
    Long("SAW Filter Bandwidth (MHz)", document_.SawBw());
    Long("Input Impedance (ohm)", document_.Zin());
    Number("Default Symbol Rate (MSymb/s)", document_.DefaultSymbolRate(), pattern::symbolRate);
    Long("Maximum Settling Time (sec)", document_.MaxSettlingTime());
    Word("Couple Display and Save", document_.CoupleDisplayAndSave());
}

void Writer::WriteParameters()
{
    Section(section::parameters);
    const int32_t oldCount = OldCount(MP_LAST);
    Long("Count", document_.Count());
    WriteTable(section::display, parameterKey, oldCount,
               [this](std::string_view key, int32_t parameter) { Flag(key, document_.Parameter(1, parameter)); });
    WriteTable(section::save, parameterKey, oldCount,
               [this](std::string_view key, int32_t parameter) { Flag(key, document_.Parameter(2, parameter)); });
    WriteTable(section::displayOrder, positionKey, oldCount,
               [this](std::string_view key, int32_t parameter) { Long(key, document_.Order(parameter)); });
    WriteTable(section::captions, parameterKey, oldCount,
               [this](std::string_view key, int32_t parameter) { Text(key, document_.StoredCaption(parameter)); });
}

/// One entry per parameter; what a longer table has left behind it is removed.
template <class Value>
void Writer::WriteTable(const wchar_t* section, std::string_view prefix, int32_t oldCount, Value value)
{
    Section(section);
    RowKey key(prefix);
    for (int32_t parameter = MP_FIRST; parameter <= document_.Count() && ok_; ++parameter) {
        value(key(parameter), parameter);
    }
    for (int32_t parameter = document_.Count() + 1; parameter <= oldCount && ok_; ++parameter) {
        Delete(key(parameter));
    }
}

void Writer::WriteNotesAndAxis()
{
    Section(section::notes);
    Text("Template", ProcessCrLf(document_.Notes(), 0));
    Flag("Show Before", document_.ShowNotesBefore());
    Flag("Show After", document_.ShowNotesAfter());
    Section(section::xAxis);
    Long("Display Grid", document_.XAxis(0));
    Long("Result File", document_.XAxis(1));
}

/// What the document belongs to, each key on its own: one that cannot be written costs none of the others.
void Writer::WriteBackup()
{
    Section(section::backup);
    const auto write = [this](std::string_view key, auto&& put) {
        ok_ = true;
        put(key);
    };
    write("Product Name", [this](std::string_view key) { Text(key, document_.productName); });
    write("App Version", [this](std::string_view key) { Text(key, document_.appVersion); });
    write("Full Path", [this](std::string_view key) { Text(key, document_.fullPath); });
    write("Dirty", [this](std::string_view key) { Word(key, document_.dirty); });
    write("Notes", [this](std::string_view key) { Text(key, ProcessCrLf(document_.measurementNotes, 0)); });
    write("Show After", [this](std::string_view key) { Flag(key, document_.measurementShowNotesAfter); });
}

}  // namespace

bool CanStoreNotes(const std::wstring& notes)
{
    return profile::IsWritable(file_text::FromWide(Protected(UpToNul(ProcessCrLf(notes, 0)))));
}

bool SaveSetup(SetupDocument& document, const SetupEnvironment& environment, const std::wstring& productName,
               const std::wstring& appVersion, const std::wstring& fullPath)
{
    if (fullPath.empty() && document.FileTitle() == L"Untitled") {
        return false;
    }
    if (!IsLoadable(document)) {
        return false;
    }
    clsIniFile ini(environment.files, environment.messages, environment.codePage);
    ini.FullPath(NormalisedPath(ini, fullPath.empty() ? document.fullPath : fullPath));
    ini.BeginBatch();
    Writer writer(ini, document, environment.locale);
    const bool identified = writer.WriteIdentity(productName, appVersion);
    const bool written = identified && writer.WriteContent();
    if (!ini.CommitBatch()) {
        return false;
    }
    if (identified) {
        document.productName = productName;
        document.appVersion = appVersion;
    }
    if (written) {
        document.fullPath = ini.FullPath();
        document.dirty = false;
    }
    return written;
}

bool BackupSetup(const SetupDocument& document, const SetupEnvironment& environment, const std::wstring& productName,
                 const std::wstring& appVersion, const std::wstring& fullPath)
{
    if (fullPath.empty()) {
        return false;
    }
    clsIniFile ini(environment.files, environment.messages, environment.codePage);
    ini.FullPath(NormalisedPath(ini, fullPath));
    ini.BeginBatch();
    Writer writer(ini, document, environment.locale);
    const bool written = IsLoadable(document) && writer.WriteIdentity(productName, appVersion) && writer.WriteContent();
    writer.WriteBackup();
    return ini.CommitBatch() && written;
}

}  // namespace tvn2x
