#include "host/setup/SetupInspection.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/setup/ForeignText.h"
#include "host/setup/SetupText.h"
#include "setup/catalogue/FileRules.h"
#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/MP_TYPES.h"
#include "setup/catalogue/Settings.h"
#include "text/Folding.h"
#include "text/IniLines.h"
#include "util/RaisedError.h"
#include "util/modFormat.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

namespace {

using namespace setup_file;

constexpr size_t mostRemarks = 1000;
constexpr ptrdiff_t mostSingly = 3;  ///< neighbouring lines with one fault that get a remark each

std::wstring Number(double value)
{
    return FormatNumber(value, false, SystemLocale());
}

std::wstring Wide(std::string_view ascii)
{
    return std::wstring(ascii.begin(), ascii.end());
}

/// A sign and digits, nothing behind them.
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

/// Why nothing reads a line that stands where one of the section's lines does.
enum class KeyFault
{
    none,
    noValue,
    repeated,
    early,
    unknown
};

/// A row that counts, or not, under one of the row keys.
struct Row
{
    SetupEntry entry;
    int32_t number = 0;
};

class Inspector
{
public:
    Inspector(const std::string& content, std::wstring_view product, const CodePage& codePage)
        : text_(content, codePage)
    {
        if (InspectText(content, codePage) && InspectIdentity(product)) {
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
    void Doubt(int32_t line, std::wstring text) { Add({line, std::move(text)}); }
    void Refuse(int32_t line, std::wstring text) { Add({line, std::move(text), true}); }
    void Add(SetupRemark remark)
    {
        if (result_.remarks.size() < (remark.isFatal ? 2 * mostRemarks : mostRemarks)) {
            result_.remarks.push_back(std::move(remark));
        } else {
            ++result_.leftOut;
        }
    }

    bool InspectText(const std::string& content, const CodePage& codePage);
    bool InspectIdentity(std::wstring_view product);
    void InspectModel(double version, int32_t line);
    void InspectContent();
    void InspectPlaces();
    void InspectKeys(const SetupSection& section);
    KeyFault FaultOf(const SetupSection& section, const SetupEntry& entry) const;
    std::wstring FaultText(KeyFault fault, const SetupSection& section, const SetupEntry& entry) const;
    void InspectValue(const Setting& key, const SetupEntry& entry);
    void InspectUnit(const SetupEntry& entry);
    std::optional<int32_t> CountOf(const char* section, int32_t otherwise, int32_t most);
    void RequireRows(int32_t count);
    void InspectRows(const SettingRows& rows, int32_t count);
    void InspectMissingRows(const SettingRows& rows, int32_t count);
    void InspectSurplusRows(const SettingRows& rows, int32_t count);
    void InspectRowValue(const SettingRows& rows, const Row& row);
    void InspectPositions();
    std::optional<double> InspectNumber(SettingKind kind, const SetupEntry& entry, const wchar_t* otherwise);

    std::wstring Says(const SetupEntry& entry) const
    {
        return text_.Quoted(entry.key) + L" is " + text_.Quoted(entry.value);
    }
    std::wstring Range(const SetupEntry& first, const SetupEntry& last) const
    {
        return text_.Quoted(first.key) + (first.line == last.line ? L"" : L" to " + text_.Quoted(last.key));
    }

    SetupText text_;
    bool isOld_ = false;
    SetupInspection result_;
};

/// False where the file is no text of a setup.
bool Inspector::InspectText(const std::string& content, const CodePage& codePage)
{
    if (content.find_first_not_of(" \t\r\n") == std::string::npos) {
        Refuse(0, L"the file is empty");
        return false;
    }
    const std::optional<SetupRemark> remark = ForeignTextRemark(content, text_, codePage);
    if (remark) {
        Add(*remark);
    }
    return !remark || !remark->isFatal;
}

/// False for what is no setup at all.
bool Inspector::InspectIdentity(std::wstring_view product)
{
    const SetupEntry name = text_.Find("Application", "Name");
    if (name.line == 0 && text_.Find("CHANNEL") != nullptr) {
        Refuse(0, L"this is a channel plan, not a setup. Make a setup of it with: tvnhost import PLAN -o SETUP");
        return false;
    }
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
    if (number >= firstVersionWithHardware) {
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
    const std::optional<int32_t> channels = CountOf("Frequency List", 1, MostRows(text_.Text().size()));
    const std::optional<int32_t> counted = CountOf("Parameters", int32_t{MP_LAST}, mostParameters);
    const int32_t parameters = std::max(counted.value_or(0), isOld_ ? 0 : int32_t{MP_LAST});
    result_.channels = std::max(channels.value_or(0), 0);
    RequireRows(result_.channels);
    for (const SettingRows& rows : RowSettings()) {
        if (rows.isOfChannel ? channels.has_value() : counted.has_value()) {
            InspectRows(rows, rows.isOfChannel ? result_.channels : parameters);
        }
    }
    InspectPositions();
}

void Inspector::InspectModel(double version, int32_t line)
{
    const SetupEntry model = text_.Find("Hardware", "Model");
    if (model.line == 0) {
        Refuse(line, L"version " + Number(version) + L" needs \"Model\" in [Hardware], which is missing");
    } else if (text_.Wide(model.value) != modelName) {
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
    const SetupSection* const backup = text_.Find("Backup");
    result_.isBackup = text_.Lists("Backup");
    if (backup && !result_.isBackup) {
        Doubt(backup->line,
              L"the line of the section [Backup] says something else too, if only a blank: the file is "
              L"no backup copy, and the section is not read");
    }
    const auto& unread = text_.Unread();
    const auto firstSection = text_.Sections().front().line;
    const auto end = std::ranges::find_if(unread, [&](const SetupEntry& entry) { return entry.line > firstSection; });
    if (end - unread.begin() > mostSingly) {
        Doubt(unread.front().line, std::to_wstring(end - unread.begin()) + L" lines from " +
                                       text_.Quoted(unread.front().key) +
                                       L" on stand before the first section and are not read");
        return;
    }
    for (auto entry = unread.begin(); entry != end; ++entry) {
        Doubt(entry->line, text_.Quoted(entry->key) + L" stands before the first section and is not read");
    }
}

/// The setting of a key, null where it is none.
const Setting* SettingOf(std::string_view section, std::string_view key)
{
    const auto found = std::ranges::find_if(Settings(), [&](const Setting* known) {
        return EqualIgnoringCase(known->section, section) && EqualIgnoringCase(known->key, key);
    });
    return found == Settings().end() ? nullptr : *found;
}

/// Whether a key names a row; InspectRows sees to those.
bool IsRowKey(std::string_view section, std::string_view key)
{
    return std::ranges::any_of(RowSettings(), [&](const SettingRows& rows) {
        return EqualIgnoringCase(rows.section, section) && RowOf(rows.prefix, key);
    });
}

bool IsEarlyRowKey(std::string_view section, std::string_view key)
{
    const auto digits = key.find_last_not_of("0123456789") + 1;
    return EqualIgnoringCase(section, "Frequency List") && digits < key.size() &&
           std::ranges::any_of(EarlyRowKeys(),
                               [&](const char* prefix) { return EqualIgnoringCase(prefix, key.substr(0, digits)); });
}

KeyFault Inspector::FaultOf(const SetupSection& section, const SetupEntry& entry) const
{
    if (!entry.hasValue) {
        return KeyFault::noValue;
    }
    if (section.First(entry.key).line != entry.line) {
        return KeyFault::repeated;
    }
    if (SettingOf(section.name, entry.key) || IsRowKey(section.name, entry.key)) {
        return KeyFault::none;
    }
    return IsEarlyRowKey(section.name, entry.key) ? KeyFault::early : KeyFault::unknown;
}

std::wstring Inspector::FaultText(KeyFault fault, const SetupSection& section, const SetupEntry& entry) const
{
    const std::wstring key = text_.Quoted(entry.key);
    switch (fault) {
        case KeyFault::noValue:
            return key + L" has no \"=\" and is not read";
        case KeyFault::repeated:
            return key + L" is there a second time: line " + std::to_wstring(section.First(entry.key).line) +
                   L" counts";
        case KeyFault::early:
            return key + L" was left behind by an early program and is not read";
        default:
            return L"[" + text_.Wide(section.name) + L"] has no key " + key + L"; it is not read";
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
    for (auto begin = section.entries.begin(); begin != section.entries.end();) {
        const KeyFault fault = FaultOf(section, *begin);
        const auto end = std::find_if(begin + 1, section.entries.end(),
                                      [&](const SetupEntry& entry) { return FaultOf(section, entry) != fault; });
        const ptrdiff_t others = end - begin - 1;
        if (fault != KeyFault::none && others >= mostSingly) {
            Doubt(begin->line, FaultText(fault, section, *begin) + L" (likewise the " + std::to_wstring(others) +
                                   L" lines behind it)");
            begin = end;
        }
        for (; begin != end; ++begin) {
            const Setting* const key = SettingOf(section.name, begin->key);
            if (fault != KeyFault::none) {
                Doubt(begin->line, FaultText(fault, section, *begin));
            } else if (key) {
                InspectValue(*key, *begin);
            }
        }
    }
}

/// The number that is read; nothing where the text is none, which has been remarked on then.
std::optional<double> Inspector::InspectNumber(SettingKind kind, const SetupEntry& entry, const wchar_t* otherwise)
{
    if (kind == SettingKind::integer) {
        const auto taken = static_cast<int32_t>(ini::ReadInteger(entry.value));
        const std::optional<double> whole = WholeNumber(entry.value);
        if (whole == taken) {
            return taken;
        }
        Doubt(entry.line, Says(entry) + (whole ? L", which is too large: " : L", which is no whole number: ") +
                              (entry.value.empty() ? otherwise : std::to_wstring(taken)) + L" is taken");
        return std::nullopt;
    }
    try {
        return ParseNumber(text_.Wide(entry.value), SystemLocale());
    } catch (const RaisedError&) {
        if (kind == SettingKind::number) {
            Refuse(entry.line, Says(entry) + L", which is no number");
        } else {
            Doubt(entry.line, Says(entry) + L", which is no number: " + otherwise + L" is taken");
        }
        return std::nullopt;
    }
}

void Inspector::InspectUnit(const SetupEntry& entry)
{
    const std::wstring unit = text_.Wide(entry.value);
    if (LevelUnitCode(unit) >= 0) {
        return;
    }
    const std::wstring before = UnitBefore(unit);
    Doubt(entry.line,
          Says(entry) + (before.empty()
                             ? L", which is none of " + LevelUnitList() + L": the receiver keeps its own unit"
                             : L", which is what another code page has made of " + before +
                                   L": the receiver keeps its own unit. Choose " + before +
                                   L" in the setup's editor and save it; texts with other characters than A to Z "
                                   L"may have changed too"));
}

void Inspector::InspectValue(const Setting& key, const SetupEntry& entry)
{
    if (&key == &setting::levelUnit) {
        InspectUnit(entry);
    }
    if (key.kind == SettingKind::word) {
        constexpr std::string_view words[] = {"yes", "y", "true",  "t", "on",  "1", "-1",
                                              "no",  "n", "false", "f", "off", "0"};
        if (std::ranges::none_of(words, [&](std::string_view word) { return EqualIgnoringCase(word, entry.value); })) {
            Doubt(entry.line, Says(entry) + L", which is neither True nor False: it counts as False");
        }
    }
    const bool isNumber = key.kind != SettingKind::text && key.kind != SettingKind::word;
    const std::optional<double> number = isNumber ? InspectNumber(key.kind, entry, key.otherwise) : std::nullopt;
    if (!number) {
        return;
    }
    if (key.lowest == key.highest) {
        if (std::ranges::find(key.choices, *number, &ListItem::value) == key.choices.end()) {
            std::wstring all;
            for (const ListItem& choice : key.choices) {
                all += (all.empty() ? L"" : L", ") + std::to_wstring(choice.value);
            }
            Doubt(entry.line, Says(entry) + L"; the list has " + all);
        }
    } else if (!(*number >= key.lowest && *number <= key.highest)) {
        Doubt(entry.line, Says(entry) + L"; it has to be from " + Number(key.lowest) + L" to " + Number(key.highest));
    }
}

/// The "Count" that is read in a section; nothing where it keeps the file from being loaded.
std::optional<int32_t> Inspector::CountOf(const char* section, int32_t otherwise, int32_t most)
{
    const SetupEntry entry = text_.Find(section, "Count");
    if (entry.line == 0) {
        Doubt(text_.Find(section) ? text_.Find(section)->line : 0,
              L"\"Count\" is missing in [" + Wide(section) + L"]: " + std::to_wstring(otherwise) + L" is taken");
        return otherwise;
    }
    const int32_t count = entry.value.empty() ? otherwise : static_cast<int32_t>(ini::ReadInteger(entry.value));
    if (count <= most) {
        return count;
    }
    Refuse(entry.line, L"[" + Wide(section) + L"] says \"Count\" is " + text_.Quoted(entry.value) +
                           L", but the file can hold at most " + std::to_wstring(most));
    return std::nullopt;
}

void Inspector::RequireRows(int32_t count)
{
    const SettingRows& frequencies = RowSettings().front();
    const SetupSection* const section = text_.Find(frequencies.section);
    int32_t missing = 0;
    for (int32_t row = 1; row <= count && missing <= mostMissingRows; ++row) {
        missing += !section || section->Find(RowKey(frequencies.prefix, row)).line == 0 ? 1 : 0;
    }
    if (missing > mostMissingRows) {
        Refuse(section ? section->line : 0, L"[" + Wide(frequencies.section) + L"] lacks more than " +
                                                std::to_wstring(mostMissingRows) +
                                                L" of the rows that its \"Count\" promises");
    }
}

/// Rows 1..count: what is missing, what is doubtful, and what stands beyond.
void Inspector::InspectRows(const SettingRows& rows, int32_t count)
{
    if (rows.isNeeded) {
        InspectMissingRows(rows, count);
    }
    if (text_.Find(rows.section)) {
        InspectSurplusRows(rows, count);
    }
}

/// Neighbours are named together.
void Inspector::InspectMissingRows(const SettingRows& rows, int32_t count)
{
    const SetupSection* const section = text_.Find(rows.section);
    const auto keyOf = [&](int32_t row) { return L"\"" + Wide(RowKey(rows.prefix, row)) + L"\""; };
    int32_t first = 0;
    for (int32_t row = 1; row <= count + 1; ++row) {
        const bool isMissing = row <= count && (!section || section->Find(RowKey(rows.prefix, row)).line == 0);
        if (isMissing && first == 0) {
            first = row;
        } else if (!isMissing && first != 0) {
            const int32_t last = row - 1;
            SetupRemark remark{section ? section->line : 0,
                               L"[" + Wide(rows.section) + L"] lacks " + keyOf(first) +
                                   (first == last ? L": its default is taken"
                                                  : L" to " + keyOf(last) + L": their defaults are taken")};
            if (rows.isOfChannel) {
                remark.firstChannel = first;
                remark.lastChannel = last;
            }
            Add(std::move(remark));
            first = 0;
        }
    }
}

void Inspector::InspectSurplusRows(const SettingRows& rows, int32_t count)
{
    const SetupSection& section = *text_.Find(rows.section);
    std::vector<Row> surplus;
    for (const SetupEntry& entry : section.entries) {
        const std::optional<int32_t> row = RowOf(rows.prefix, entry.key);
        if (!row || section.Find(entry.key).line != entry.line) {
            continue;
        }
        if (*row <= count) {
            InspectRowValue(rows, {entry, *row});
        } else {
            surplus.push_back({entry, *row});
        }
    }
    if (!surplus.empty()) {
        const bool isOne = surplus.size() == 1;
        Doubt(surplus.front().entry.line, Range(surplus.front().entry, surplus.back().entry) +
                                              (isOne ? L" stands" : L" stand") + L" beyond \"Count\" (" +
                                              std::to_wstring(count) +
                                              (isOne ? L") and is not read" : L") and are not read"));
    }
}

void Inspector::InspectRowValue(const SettingRows& rows, const Row& row)
{
    if (rows.kind == SettingKind::text) {
        return;
    }
    const std::optional<double> number = InspectNumber(rows.kind, row.entry, L"the default");
    if (!number || (*number >= rows.lowest && *number <= rows.highest)) {
        return;
    }
    SetupRemark remark{row.entry.line, Says(row.entry) + L"; it has to be from " + Number(rows.lowest) + L" to " +
                                           Number(rows.highest)};
    if (rows.isOfChannel) {
        remark.firstChannel = remark.lastChannel = row.number;
    }
    Add(std::move(remark));
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
        const bool counts = RowOf("Position ", entry.key) && section->Find(entry.key).line == entry.line;
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

SetupInspection InspectSetup(const std::string& content, std::wstring_view product, const CodePage& codePage)
{
    return Inspector(content, product, codePage).Result();
}

}  // namespace tvn2x
