#include "host/setup/SetupInspection.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/plan/ChannelPlan.h"
#include "host/setup/SetupText.h"
#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/MP_TYPES.h"
#include "setup/catalogue/Settings.h"
#include "text/Folding.h"
#include "util/RaisedError.h"
#include "util/modFormat.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

namespace {

constexpr size_t mostRemarks = 1000;
constexpr int32_t mostMissing = 32767;
constexpr double oldVersion = 1.4;
constexpr double firstCurrentVersion = 2.0;

std::wstring Number(double value)
{
    return FormatNumber(value, false, SystemLocale());
}

std::wstring Wide(std::string_view ascii)
{
    return std::wstring(ascii.begin(), ascii.end());
}

/// What the profile functions read as an integer: a sign and digits, nothing behind them.
std::optional<double> WholeNumber(std::string_view text)
{
    const bool isNegative = text.starts_with('-');
    const std::string_view digits = text.substr(isNegative || text.starts_with('+') ? 1 : 0);
    const bool isWhole = !digits.empty() && std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; });
    if (!isWhole) {
        return std::nullopt;
    }
    double number = 0;
    for (const char c : digits) {
        number = number * 10 + (c - '0');
    }
    return isNegative ? -number : number;
}

/// The line in which a place of a file stands, from 1.
int32_t LineOf(std::string_view content, size_t at)
{
    int32_t line = 1;
    for (size_t i = 0; i < at; ++i) {
        const bool isPair = content[i] == '\r' && content.substr(i + 1).starts_with('\n');
        line += content[i] == '\n' || (content[i] == '\r' && !isPair) ? 1 : 0;
    }
    return line;
}

/// The level unit that a code page without a micro sign, or another than the reader's, has made such a text of; "" for
/// any other text.
std::wstring UnitBefore(std::wstring_view text)
{
    constexpr size_t longest = 6;  // two bytes of the sign, each read as a character, and one to spare
    const bool isFramed = text.size() > 3 && text.size() <= longest && text.starts_with(L"dB") &&
                          (text.back() == L'V' || text.back() == L'W');
    const auto isOther = [](wchar_t c) { return c == L'?' || c >= 0x80; };
    return isFramed && std::ranges::all_of(text.substr(2, text.size() - 3), isOther)
               ? std::wstring(L"dBµ") + text.back()
               : L"";
}

class Inspector
{
public:
    Inspector(std::string_view content, std::wstring_view product, const CodePage& codePage)
        : text_(content, codePage), codePage_(codePage)
    {
        if (InspectEncoding(content) && InspectIdentity(product)) {
            InspectContent();
        }
    }

    SetupInspection Result()
    {
        auto& remarks = result_.remarks;
        std::ranges::stable_sort(
            remarks, [](const SetupRemark& left, const SetupRemark& right) { return left.line < right.line; });
        return std::move(result_);
    }

private:
    void Doubt(int32_t line, std::wstring text) { Add({line, std::move(text), false}); }
    void Refuse(int32_t line, std::wstring text) { Add({line, std::move(text), true}); }
    void Add(SetupRemark remark)
    {
        if (result_.remarks.size() < (remark.isFatal ? 2 * mostRemarks : mostRemarks)) {
            result_.remarks.push_back(std::move(remark));
        } else {
            ++result_.leftOut;
        }
    }

    bool InspectEncoding(std::string_view content);
    bool InspectIdentity(std::wstring_view product);
    void InspectModel(double version, int32_t line);
    void InspectContent();
    void InspectPlaces();
    void InspectKeys(const SetupSection& section);
    bool IsRowKey(std::string_view section, const SetupEntry& entry);
    void InspectValue(const Setting& key, const SetupEntry& entry);
    void InspectRows(const SettingRows& rows, int32_t count);
    void InspectRowValue(const SettingRows& rows, const SetupEntry& entry);
    void InspectPositions();
    bool InspectNumber(SettingKind kind, const SetupEntry& entry, const wchar_t* otherwise, double& number);
    int32_t CountOf(const char* section, int32_t otherwise, double most);
    double MostChannels() const;

    SetupText text_;
    const CodePage& codePage_;
    bool isOld_ = false;
    SetupInspection result_;
};

/// Texts that are read as others than were written. False where that keeps the file from being loaded.
bool Inspector::InspectEncoding(std::string_view content)
{
    constexpr std::wstring_view remedy = L"Save it in a text editor as UTF-16 LE (\"Unicode\")";
    const auto other = std::ranges::find_if(content, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (text_.IsUnicode() || other == content.end()) {
        return true;
    }
    if (content.starts_with("\xEF\xBB\xBF")) {
        const bool isHidden = text_.Find("Application") == nullptr;
        Add({1,
             L"the file begins with the mark of UTF-8, which is read as the beginning of its first line. " +
                 std::wstring(remedy),
             isHidden});
        return !isHidden;
    }
    const int32_t line = LineOf(content, static_cast<size_t>(other - content.begin()));
    const bool isSystemUtf8 = codePage_.Encode(L"µ") == Utf8CodePage().Encode(L"µ");
    if (!isSystemUtf8 && Utf8CodePage().DecodeStrictly(content)) {
        Doubt(line, L"the file looks like UTF-8, but is read in the system's code page: \"µ\" is read as \"" +
                        codePage_.Decode(Utf8CodePage().Encode(L"µ")) + L"\". " + std::wstring(remedy));
    } else if (!codePage_.DecodeStrictly(content)) {
        Doubt(line,
              L"the file has bytes that are no characters of the system's code page: another one has written it, "
              L"and no text beyond the code page can be saved into it. Open it in a text editor in the code page "
              L"that it was written in. " +
                  std::wstring(remedy));
    }
    return true;
}

/// False for what is no setup at all.
bool Inspector::InspectIdentity(std::wstring_view product)
{
    if (text_.Find("CHANNEL") != nullptr) {
        Refuse(0, L"this is a channel plan, not a setup. Make a setup of it with: tvnhost import PLAN -o SETUP");
        return false;
    }
    const SetupEntry name = text_.Find("Application", "Name");
    if (name.line == 0) {
        Refuse(0, L"the product's name is missing: \"Name\" in [Application]. Without it nothing loads the file");
        return false;
    }
    if (text_.Wide(name.value) != product) {
        Refuse(name.line, L"the setup belongs to " + text_.Quoted(name.value) + L", this host loads those of \"" +
                              std::wstring(product) + L"\" (capital and small letters count)");
    }
    const SetupEntry version = text_.Find("Application", "Version");
    result_.version = text_.Wide(version.value);
    const double number = LeadingNumber(result_.version);
    isOld_ = number == oldVersion;
    if (number >= firstCurrentVersion) {
        InspectModel(number, version.line);
    } else if (!isOld_) {
        Doubt(version.line, (version.line == 0 ? L"the version is missing"
                                               : text_.Quoted(version.value) + L" is the version of no known "
                                                                               L"generation") +
                                std::wstring(L" (1.4, or 2.0 and later): only a host that names the receiver's model "
                                             L"itself can load the file"));
    }
    return true;
}

void Inspector::InspectContent()
{
    InspectPlaces();
    for (const SetupSection& section : text_.Sections()) {
        InspectKeys(section);
    }
    const int32_t channels = CountOf("Frequency List", 1, MostChannels());
    const int32_t parameters = std::max(CountOf("Parameters", int32_t{MP_LAST}, 32757), 0);
    result_.channels = std::max(channels, 0);
    result_.isBackup = text_.Find("Backup") != nullptr;
    for (const SettingRows& rows : RowSettings()) {
        InspectRows(rows, rows.isOfChannel ? channels : isOld_ ? parameters : std::max(parameters, int32_t{MP_LAST}));
    }
    InspectPositions();
}

void Inspector::InspectModel(double version, int32_t line)
{
    const SetupEntry model = text_.Find("Hardware", "Model");
    if (model.line == 0) {
        Refuse(line, L"version " + Number(version) + L" needs \"Model\" in [Hardware], which is missing");
    } else if (model.value != "2x") {
        Refuse(model.line, L"the setup is for receivers of model " + text_.Quoted(model.value) +
                               L", the plug-in measures with model \"2x\"");
    }
}

/// Lines that nothing reads because of where they stand.
void Inspector::InspectPlaces()
{
    for (const SetupEntry& section : text_.RepeatedSections()) {
        Doubt(section.line, L"a second section [" + text_.Wide(section.key) + L"]: the one in line " +
                                std::to_wstring(text_.Find(section.key)->line) + L" counts, this one is not read");
    }
    const int32_t firstSection = text_.Sections().empty() ? 0 : text_.Sections().front().line;
    for (const SetupEntry& entry : text_.Unread()) {
        if (firstSection == 0 || entry.line < firstSection) {
            Doubt(entry.line, text_.Quoted(entry.key) + L" stands before the first section and is not read");
        }
    }
}

void Inspector::InspectKeys(const SetupSection& section)
{
    const auto isKnown = [&](const Setting* known) { return EqualIgnoringCase(known->section, section.name); };
    const auto isOfRows = [&](const SettingRows& known) { return EqualIgnoringCase(known.section, section.name); };
    if (std::ranges::none_of(Settings(), isKnown) && std::ranges::none_of(RowSettings(), isOfRows)) {
        Doubt(section.line, L"no setup has a section " + text_.Quoted(section.name) + L"; it is not read");
        return;
    }
    for (const SetupEntry& entry : section.entries) {
        const SetupEntry first = section.Find(entry.key);
        const auto key = std::ranges::find_if(Settings(), [&](const Setting* known) {
            return isKnown(known) && EqualIgnoringCase(known->key, entry.key);
        });
        if (!entry.hasValue) {
            Doubt(entry.line, text_.Quoted(entry.key) + L" has no \"=\" and is not read");
        } else if (first.line != entry.line) {
            Doubt(entry.line, text_.Quoted(entry.key) + L" is there a second time: line " +
                                  std::to_wstring(first.line) + L" counts");
        } else if (key != Settings().end()) {
            InspectValue(**key, entry);
        } else if (!IsRowKey(section.name, entry)) {
            Doubt(entry.line,
                  L"[" + text_.Wide(section.name) + L"] has no key " + text_.Quoted(entry.key) + L"; it is not read");
        }
    }
}

/// Whether a key names a row; InspectRows sees to those.
bool Inspector::IsRowKey(std::string_view section, const SetupEntry& entry)
{
    const bool isRow = std::ranges::any_of(RowSettings(), [&](const SettingRows& rows) {
        return EqualIgnoringCase(rows.section, section) && RowOf(rows.prefix, entry.key);
    });
    const auto digits = entry.key.find_last_not_of("0123456789") + 1;
    const bool isEarly = EqualIgnoringCase(section, "Frequency List") && digits < entry.key.size() &&
                         std::ranges::any_of(EarlyRowKeys(), [&](const char* prefix) {
                             return EqualIgnoringCase(prefix, entry.key.substr(0, digits));
                         });
    if (isEarly && !isRow) {
        Doubt(entry.line, text_.Quoted(entry.key) + L" was left behind by an early program and is not read");
    }
    return isRow || isEarly;
}

/// False where the text is no number, which has been remarked on then.
bool Inspector::InspectNumber(SettingKind kind, const SetupEntry& entry, const wchar_t* otherwise, double& number)
{
    const std::wstring says = text_.Quoted(entry.key) + L" is " + text_.Quoted(entry.value);
    if (kind == SettingKind::integer) {
        const std::optional<double> whole = WholeNumber(entry.value);
        if (!whole) {
            Doubt(entry.line, says + L", which is no whole number: " +
                                  (entry.value.empty() ? std::wstring(otherwise) + L" is taken"
                                                       : L"the digits at its beginning are taken, or 0"));
            return false;
        }
        number = *whole;
        return true;
    }
    try {
        number = ParseNumber(text_.Wide(entry.value), SystemLocale());
        return true;
    } catch (const RaisedError&) {
        if (kind == SettingKind::number) {
            Refuse(entry.line, says + L", which is no number");
        } else {
            Doubt(entry.line, says + L", which is no number: " + otherwise + L" is taken");
        }
        return false;
    }
}

void Inspector::InspectValue(const Setting& key, const SetupEntry& entry)
{
    const std::wstring says = text_.Quoted(entry.key) + L" is " + text_.Quoted(entry.value);
    const std::wstring unit = text_.Wide(entry.value);
    if (&key == &setting::levelUnit && LevelUnitCode(unit) < 0) {
        const std::wstring before = UnitBefore(unit);
        Doubt(
            entry.line,
            says + (before.empty() ? L", which is none of " + LevelUnitList() + L": the receiver keeps its own unit"
                                   : L", which is what another code page has made of " + before +
                                         L": the receiver keeps its own unit. Choose " + before +
                                         L" in the setup's editor and save it; texts with other characters than A to Z "
                                         L"may have changed too"));
    }
    if (key.kind == SettingKind::word) {
        constexpr std::string_view words[] = {"yes", "y", "true",  "t", "on",  "1", "-1",
                                              "no",  "n", "false", "f", "off", "0"};
        if (std::ranges::none_of(words, [&](std::string_view word) { return EqualIgnoringCase(word, entry.value); })) {
            Doubt(entry.line, says + L", which is neither True nor False: it counts as False");
        }
    }
    double number = 0;
    const bool isNumber = key.kind != SettingKind::text && key.kind != SettingKind::word;
    if (!isNumber || !InspectNumber(key.kind, entry, key.otherwise, number)) {
        return;
    }
    if (key.lowest == key.highest) {
        if (std::ranges::find(key.choices, number, &ListItem::value) == key.choices.end()) {
            std::wstring all;
            for (const ListItem& choice : key.choices) {
                all += (all.empty() ? L"" : L", ") + std::to_wstring(choice.value);
            }
            Doubt(entry.line, says + L"; the list has " + all);
        }
    } else if (!(number >= key.lowest && number <= key.highest)) {
        Doubt(entry.line, says + L"; it has to be from " + Number(key.lowest) + L" to " + Number(key.highest));
    }
}

/// As many as the file has room for, or any that 16 bits can name.
double Inspector::MostChannels() const
{
    constexpr double always = 32767;
    constexpr double bytesPerRow = 20;
    return std::max(always, std::floor(static_cast<double>(text_.Size()) / bytesPerRow));
}

int32_t Inspector::CountOf(const char* section, int32_t otherwise, double most)
{
    const SetupEntry entry = text_.Find(section, "Count");
    if (entry.line == 0) {
        Doubt(text_.Find(section) ? text_.Find(section)->line : 0,
              L"\"Count\" is missing in [" + Wide(section) + L"]: " + std::to_wstring(otherwise) + L" is taken");
        return otherwise;
    }
    const std::optional<double> count = WholeNumber(entry.value);
    if (!count) {
        return entry.value.empty() ? otherwise : 0;
    }
    if (*count > most) {
        Refuse(entry.line, L"[" + Wide(section) + L"] says \"Count\" is " + text_.Quoted(entry.value) +
                               L", but the file can hold at most " + Number(most));
        return 0;
    }
    return static_cast<int32_t>(std::max(*count, -1.0));
}

void Inspector::InspectRowValue(const SettingRows& rows, const SetupEntry& entry)
{
    double number = 0;
    if (rows.kind == SettingKind::text || !InspectNumber(rows.kind, entry, L"0", number)) {
        return;
    }
    if (!(number >= rows.lowest && number <= rows.highest)) {
        Doubt(entry.line, text_.Quoted(entry.key) + L" is " + text_.Quoted(entry.value) + L"; it has to be from " +
                              Number(rows.lowest) + L" to " + Number(rows.highest));
    }
}

/// Rows 1..count: what is missing (neighbours in one remark), what is doubtful, and what stands beyond.
void Inspector::InspectRows(const SettingRows& rows, int32_t count)
{
    const SetupSection* const section = text_.Find(rows.section);
    const auto keyOf = [&](int32_t row) { return RowKey(rows.prefix, row); };
    const int32_t line = section ? section->line : 0;
    int32_t firstMissing = 0;
    int32_t missing = 0;
    for (int32_t row = 1; row <= count + 1; ++row) {
        const SetupEntry entry = row <= count && section ? section->Find(keyOf(row)) : SetupEntry{};
        const bool isMissing = row <= count && rows.isNeeded && entry.line == 0;
        if (entry.line != 0) {
            InspectRowValue(rows, entry);
        }
        missing += isMissing ? 1 : 0;
        if (isMissing && firstMissing == 0) {
            firstMissing = row;
        } else if (!isMissing && firstMissing != 0) {
            const bool isOne = row - 1 == firstMissing;
            Doubt(line, L"[" + Wide(rows.section) + L"] lacks \"" + Wide(keyOf(firstMissing)) + L"\"" +
                            (isOne ? L"" : L" to \"" + Wide(keyOf(row - 1)) + L"\"") +
                            (isOne ? L": its default is taken" : L": their defaults are taken"));
            firstMissing = 0;
        }
    }
    if (missing > mostMissing && rows.isOfChannel) {
        Refuse(line, L"[" + Wide(rows.section) + L"] lacks more than " + std::to_wstring(mostMissing) +
                         L" of the rows that its \"Count\" promises");
    }
    if (!section) {
        return;
    }
    for (const SetupEntry& entry : section->entries) {
        const std::optional<int32_t> row = RowOf(rows.prefix, entry.key);
        if (row && *row > std::max(count, 0)) {
            Doubt(entry.line, text_.Quoted(entry.key) + L" stands beyond \"Count\" (" + std::to_wstring(count) +
                                  L") and is not read");
        }
    }
}

/// Two parameters at one place of the grid.
void Inspector::InspectPositions()
{
    const SetupSection* const section = text_.Find("Parameters Display Order");
    if (!section) {
        return;
    }
    std::map<std::string_view, SetupEntry> seen;
    for (const SetupEntry& entry : section->entries) {
        const bool counts =
            entry.hasValue && RowOf("Position ", entry.key) && section->Find(entry.key).line == entry.line;
        if (!counts || entry.value.starts_with('-')) {
            continue;
        }
        const auto [other, isNew] = seen.emplace(entry.value, entry);
        if (!isNew) {
            Doubt(entry.line, text_.Quoted(entry.key) + L" is " + text_.Quoted(entry.value) + L", as is " +
                                  text_.Quoted(other->second.key) + L" in line " + std::to_wstring(other->second.line));
        }
    }
}

}  // namespace

bool SetupInspection::IsUsable() const
{
    return std::ranges::none_of(remarks, &SetupRemark::isFatal);
}

SetupInspection InspectSetup(std::string_view content, std::wstring_view product, const CodePage& codePage)
{
    if (const auto refused = WhyNoSetupText(content)) {
        SetupInspection nothing;
        nothing.remarks.push_back({refused->line, refused->reason, true});
        return nothing;
    }
    return Inspector(content, product, codePage).Result();
}

}  // namespace tvn2x
