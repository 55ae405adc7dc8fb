#include "setup/SetupFile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "setup/SetupKeys.h"
#include "setup/SetupRows.h"
#include "setup/catalogue/Options.h"
#include "setup/clsIniFile.h"
#include "util/RaisedError.h"

namespace tvn2x {

using namespace setup_file;

namespace {

constexpr const wchar_t* loadSource = L"clsSetup.ISetup_Load";

std::wstring Replaced(std::wstring_view text, std::wstring_view part, std::wstring_view replacement)
{
    std::wstring result;
    size_t start = 0;
    for (size_t at; (at = text.find(part, start)) != std::wstring_view::npos; start = at + part.size()) {
        result.append(text.substr(start, at - start)).append(replacement);
    }
    return result.append(text.substr(start));
}

/// Reads one setup file into a document, section by section.
class Reader
{
public:
    Reader(clsIniFile& ini, SetupDocument& document, const Locale& locale)
        : ini_(ini), document_(document), locale_(locale)
    {
    }

    void ReadIdentity();
    /// False for another model.
    bool ReadHardware(std::wstring& model, int32_t& mode);
    void ReadAll();

private:
    void ReadChannels();
    void ReadStaticSettings();
    void ReadParameters();
    void ReadFlags(const wchar_t* section, int32_t action);
    void ReadOrder();
    void ReadOldOrder();
    void ReadCaptions();
    void RepairOldCaptions();
    void ReadNotesAndAxis();
    void ReadBackup();

    int32_t ReadCount(int32_t defaultValue, int32_t most);
    void RequireRows(int32_t count);
    double ToDouble(std::string_view key, const std::optional<std::wstring>& text, double defaultValue) const;
    double ReadDouble(const char* key, double defaultValue) { return ToDouble(key, ini_.Find(key), defaultValue); }
    int32_t ReadLong(const char* key, int32_t defaultValue);
    int32_t KeyNumber(int32_t parameter) const { return old_ ? OldKeyNumber(parameter, count_) : parameter; }

    clsIniFile& ini_;
    SetupDocument& document_;
    const Locale& locale_;
    bool old_ = false;   ///< a version 1.4 file
    int32_t count_ = 0;  ///< the file's own number of parameters
};

void Reader::ReadIdentity()
{
    ini_.SectionName(section::application);
    document_.productName = ini_.GetString(L"Name", L"");
    document_.appVersion = ini_.GetString(L"Version", L"");
}

bool Reader::ReadHardware(std::wstring& model, int32_t& mode)
{
    const double version = LeadingNumber(document_.appVersion);
    old_ = version == oldVersion;
    if (version >= firstVersionWithHardware) {
        ini_.SectionName(section::hardware);
        model = ini_.GetString(L"Model", L"");
        mode = ini_.GetLong(L"Mode", dvbCDemodulator);
        document_.mode = mode;
    } else if (old_) {
        model = modelName;
        mode = dvbCDemodulator;
        document_.mode = mode;
    }
    return model == modelName;
}

void Reader::ReadAll()
{
    ReadChannels();
    ReadStaticSettings();
    ReadParameters();
    ReadNotesAndAxis();
    for (int32_t parameter = MP_FIRST; parameter <= document_.Count(); ++parameter) {
        document_.Parameter(0, parameter, document_.Parameter(1, parameter) || document_.Parameter(2, parameter));
    }
    document_.dirty = false;
    ReadBackup();
}

/// The "Count" of the current section. More than the file can hold is a damaged file, and must not cost the host the
/// memory it asks for.
int32_t Reader::ReadCount(int32_t defaultValue, int32_t most)
{
    const int32_t count = ini_.GetLong(L"Count", defaultValue);
    if (count > most) {
        throw RaisedError(error::invalidPropertyValue, loadSource,
                          L"The file \"" + ini_.FullPath() + L"\" says [" + ini_.SectionName() + L"] Count=" +
                              std::to_wstring(count) + L", but can hold at most " + std::to_wstring(most) +
                              L". Correct the number, or load a backup of the file.");
    }
    return count;
}

void Reader::RequireRows(int32_t count)
{
    RowKey key(frequencyKey);
    int32_t missing = 0;
    for (int32_t row = 1; row <= count && count > mostMissingRows; ++row) {
        if (!ini_.Has(key(row)) && ++missing > mostMissingRows) {
            throw RaisedError(error::invalidPropertyValue, loadSource,
                              L"The file \"" + ini_.FullPath() + L"\" says [" + ini_.SectionName() + L"] Count=" +
                                  std::to_wstring(count) + L", but lacks more than " +
                                  std::to_wstring(mostMissingRows) +
                                  L" of these rows. Correct the number, or load a backup of the file.");
        }
    }
}

double Reader::ToDouble(std::string_view key, const std::optional<std::wstring>& text, double defaultValue) const
{
    if (!text) {
        return defaultValue;
    }
    try {
        return ParseNumber(*text, locale_);
    } catch (const RaisedError& raised) {
        throw RaisedError(raised.number, loadSource,
                          raised.description + L": the file \"" + ini_.FullPath() + L"\" says [" + ini_.SectionName() +
                              L"] " + std::wstring(key.begin(), key.end()) + L"=" + *text +
                              L", which is no number. Correct the line, or load a backup of the file.");
    }
}

/// An integer that is kept as a number of any form ("64", "64.0"), halves rounded to even. What is no integer of 32
/// bits is the default: one setting at its usual value is a better answer than a network that cannot be loaded.
int32_t Reader::ReadLong(const char* key, int32_t defaultValue)
{
    const std::optional<std::wstring> text = ini_.Find(key);
    if (!text) {
        return defaultValue;
    }
    try {
        const double number = std::nearbyint(ParseNumber(*text, locale_));
        const bool fits =
            number >= std::numeric_limits<int32_t>::min() && number <= std::numeric_limits<int32_t>::max();
        return fits ? static_cast<int32_t>(number) : defaultValue;
    } catch (const RaisedError&) {
        return defaultValue;
    }
}

void Reader::ReadChannels()
{
    ini_.SectionName(section::frequencyList);
    const int32_t count = ReadCount(1, MostRows(ini_.TextSize()));
    RequireRows(count);
    document_.ListSize(count);
    RowKey frequency(frequencyKey);
    RowKey userField(userFieldKey);
    RowKey symbolRate(symbolRateKey);
    for (int32_t row = 1; row <= document_.ListSize(); ++row) {
        std::string_view key = frequency(row);
        document_.Frequency(row, ToDouble(key, ini_.Find(key), 213));
        document_.UserField(row, ini_.Find(userField(row)).value_or(L""));
        key = symbolRate(row);
        document_.SymbolRate(row, ToDouble(key, ini_.Find(key), 6.9));
    }
}

void Reader::ReadStaticSettings()
{
    ini_.SectionName(section::staticSettings);
    document_.LevelUnit(ini_.GetString(L"Level Unit", L"dBmV"));
    document_.ReferenceSource(ini_.GetLong(L"10MHz Reference Source", 0));
    document_.BerSamples(ReadLong("BER Integration (Samples)", 100));
    document_.SawBw(ReadLong("SAW Filter Bandwidth (MHz)", 8));
    document_.OrderOfQam(ReadLong("Order Of QAM", 64));
    document_.RollOffFactor(ini_.GetLong(L"RollOff Factor", 15));
    document_.Zin(ReadLong("Input Impedance (ohm)", 75));
    document_.DefaultSymbolRate(ReadDouble("Default Symbol Rate (MSymb/s)", 6.9));
    document_.MaxSettlingTime(ReadLong("Maximum Settling Time (sec)", 10));
    document_.CoupleDisplayAndSave(ini_.GetTF(L"Couple Display and Save", -1));
}

void Reader::ReadParameters()
{
    ini_.SectionName(section::parameters);
    count_ = std::max(ReadCount(MP_LAST, mostParameters), 0);
    document_.Count(old_ ? count_ + addedParameters : count_);
    ReadFlags(section::display, 1);
    ReadFlags(section::save, 2);
    if (old_) {
        ReadOldOrder();
    } else {
        ReadOrder();
    }
    ReadCaptions();
    if (old_) {
        RepairOldCaptions();
    }
}

void Reader::ReadFlags(const wchar_t* section, int32_t action)
{
    ini_.SectionName(section);
    RowKey key(parameterKey);
    for (int32_t parameter = MP_FIRST; parameter <= document_.Count(); ++parameter) {
        document_.Parameter(action, parameter, ini_.FindLong(key(KeyNumber(parameter)), 0) != 0);
    }
}

/// A parameter without a position follows behind those that the file counts.
void Reader::ReadOrder()
{
    ini_.SectionName(section::displayOrder);
    RowKey key(positionKey);
    int32_t next = count_;
    for (int32_t parameter = MP_FIRST; parameter <= document_.Count(); ++parameter) {
        auto position = static_cast<int16_t>(ini_.FindLong(key(parameter), -1));
        if (position == -1) {
            position = static_cast<int16_t>(std::min(++next, lastPosition));
        }
        document_.Order(parameter, position);
    }
}

void Reader::ReadOldOrder()
{
    ini_.SectionName(section::displayOrder);
    RowKey key(positionKey);
    for (int32_t parameter = MP_FIRST; parameter <= document_.Count(); ++parameter) {
        const OldPosition source = OldPositionOf(parameter, count_);
        const int32_t position =
            source.key == 0 ? source.fixed
                            : TranslatedPosition(static_cast<int16_t>(ini_.FindLong(key(source.key), source.key)));
        document_.Order(parameter, static_cast<int16_t>(std::min(position, lastPosition)));
    }
}

void Reader::ReadCaptions()
{
    ini_.SectionName(section::captions);
    RowKey key(parameterKey);
    for (int32_t parameter = MP_FIRST; parameter <= document_.Count(); ++parameter) {
        std::optional<std::wstring> caption = ini_.Find(key(KeyNumber(parameter)));
        if (caption && *caption != L"MISSING") {
            document_.StoredCaption(parameter, std::move(*caption));
        }
    }
}

/// Old captions carry the unit, and an ordinal sign where the degree sign belongs.
void Reader::RepairOldCaptions()
{
    const auto repair = [this](int32_t parameter, std::wstring_view part, std::wstring_view replacement) {
        document_.StoredCaption(parameter, Replaced(document_.StoredCaption(parameter), part, replacement));
    };
    repair(MP_RFLEV, L" (dBmV)", L"");
    repair(MP_IQPHASE, L"\u00BA", L"\u00B0");
    repair(MP_PHASJIT, L"\u00BA", L"\u00B0 ");
}

void Reader::ReadNotesAndAxis()
{
    ini_.SectionName(section::notes);
    document_.NotesDirect(ProcessCrLf(ini_.GetString(L"Template", L""), 1));
    document_.ShowNotesBefore(ini_.GetInt(L"Show Before", -1) != 0);
    document_.ShowNotesAfter(ini_.GetInt(L"Show After", -1) != 0);
    ini_.SectionName(section::xAxis);
    document_.XAxis(0, ini_.GetLong(L"Display Grid", 2));
    document_.XAxis(1, ini_.GetLong(L"Result File", 2));
}

void Reader::ReadBackup()
{
    document_.isBackup = ini_.SectExist(section::backup);
    document_.fullPath = ini_.FullPath();
    document_.dirty = false;
    if (!document_.isBackup) {
        return;
    }
    ini_.SectionName(section::backup);
    document_.productName = ini_.GetString(L"Product Name", L"");
    document_.appVersion = ini_.GetString(L"App Version", L"");
    document_.fullPath = ini_.GetString(L"Full Path", L"");
    document_.dirty = ini_.GetTF(L"Dirty", 0);
    document_.measurementNotes = ProcessCrLf(ini_.GetString(L"Notes", L""), 1);
    document_.measurementShowNotesAfter = ini_.GetInt(L"Show After", -1) != 0;
}

}  // namespace

std::wstring ProcessCrLf(std::wstring_view text, int32_t mode)
{
    constexpr std::wstring_view lineEnd = L"\r\n";
    constexpr std::wstring_view encoded = L"\\r\\n";
    if (mode != 0 && mode != 1) {
        throw RaisedError(1000, L"clsSetup, ProcessCrLf", L"Invalid mode number, " + std::to_wstring(mode));
    }
    return mode == 0 ? Replaced(text, lineEnd, encoded) : Replaced(text, encoded, lineEnd);
}

bool LoadSetup(SetupDocument& document, const SetupEnvironment& environment, const std::wstring& productName,
               const std::wstring& fullPath, std::wstring& model, int32_t& mode)
{
    clsIniFile ini(environment.files, environment.messages, environment.codePage);
    const std::wstring path = NormalisedPath(ini, fullPath);
    if (ini.Exists(path) == 0) {
        return false;
    }
    ini.FullPath(path);
    ini.BeginBatch();
    if (!ini.Readable()) {
        return false;
    }

    SetupDocument loaded = document;
    Reader reader(ini, loaded, environment.locale);
    reader.ReadIdentity();
    if (loaded.productName != productName || !reader.ReadHardware(model, mode)) {
        document.productName = loaded.productName;
        document.appVersion = loaded.appVersion;
        return false;
    }
    reader.ReadAll();
    document = std::move(loaded);
    return true;
}

}  // namespace tvn2x
