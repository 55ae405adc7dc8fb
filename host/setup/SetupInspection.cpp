#include "host/setup/SetupInspection.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/setup/ForeignText.h"
#include "host/setup/RemarkList.h"
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
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    double number = 0;
    for (const char c : digits) {
        number = number * 10 + (c - '0');
    }
    return isNegative ? -number : number;
}

/// Goes through a setup file once and collects the remarks.
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
        remarks_.MoveInto(result_);
        return std::move(result_);
    }

private:
    bool InspectText(const std::string& content, const CodePage& codePage);
    bool InspectIdentity(std::wstring_view product);
    void InspectModel(double version, int32_t line);
    void InspectContent();
    void InspectPlaces();
    void InspectKeys(const SetupSection& section);
    Fault FaultOf(const SetupSection& section, const SetupEntry& entry) const;
    std::wstring FaultText(Fault fault, const SetupSection& section, const SetupEntry& entry) const;
    void InspectValue(const Setting& key, const SetupEntry& entry);
    void InspectUnit(const SetupEntry& entry);
    std::optional<int32_t> CountOf(const char* section, int32_t otherwise, int32_t most);
    void RequireRows(int32_t count);
    void InspectRows(const SettingRows& rows, int32_t count);
    void InspectMissingRows(const SettingRows& rows, int32_t count);
    void InspectSurplusRows(const SettingRows& rows, int32_t count);
    void InspectRowValue(const SettingRows& rows, const SetupEntry& entry, int32_t row);
    void InspectPositions();
    std::optional<double> InspectNumber(SettingKind kind, const SetupEntry& entry, const wchar_t* otherwise,
                                        Fault fault);

    std::wstring Says(const SetupEntry& entry) const
    {
        return text_.Quoted(entry.key) + L" is " + text_.Quoted(entry.value);
    }

    SetupText text_;
    bool isOld_ = false;
    RemarkList remarks_;
    SetupInspection result_;
};

/// False where the file is no text of a setup.
bool Inspector::InspectText(const std::string& content, const CodePage& codePage)
{
    if (content.find_first_not_of(" \t\r\n") == std::string::npos) {
        remarks_.Refuse(0, L"the file is empty");
        return false;
    }
    const std::optional<SetupRemark> remark = ForeignTextRemark(content, text_, codePage);
    if (remark) {
        remarks_.Add(*remark);
    }
    return !remark || !remark->isFatal;
}

/// False for what is no setup at all.
bool Inspector::InspectIdentity(std::wstring_view product)
{
    const SetupEntry name = text_.Find("Application", "Name");
    if (name.line == 0 && text_.Find("CHANNEL") != nullptr) {
        remarks_.Refuse(0,
                        L"this is a channel plan, not a setup. Make a setup of it with: tvnhost import PLAN -o SETUP");
        return false;
    }
    if (name.line == 0) {
        remarks_.Refuse(0,
                        L"the product's name is missing: \"Name\" in [Application]. Without it nothing loads the file");
        return false;
    }
    if (text_.Wide(name.value) != product) {
        remarks_.Refuse(name.line, L"the setup belongs to " + text_.Quoted(name.value) +
                                       L", this host loads those of \"" + std::wstring(product) +
                                       L"\" (capital and small letters count)");
    }
    const SetupEntry version = text_.Find("Application", "Version");
    result_.version = text_.Wide(version.value);
    const double number = LeadingNumber(result_.version);
    isOld_ = number == oldVersion;
    if (number >= firstVersionWithHardware) {
        InspectModel(number, version.line);
    } else if (!isOld_) {
        remarks_.Doubt(version.line,
                       (version.line == 0 ? L"the version is missing"
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
        remarks_.Refuse(line, L"version " + Number(version) + L" needs \"Model\" in [Hardware], which is missing");
    } else if (text_.Wide(model.value) != modelName) {
        remarks_.Refuse(model.line, L"the setup is for receivers of model " + text_.Quoted(model.value) +
                                        L", the plug-in measures with model \"2x\"");
    }
}

/// Lines that nothing reads because of where they stand.
void Inspector::InspectPlaces()
{
    for (const SetupEntry& section : text_.RepeatedSections()) {
        remarks_.Doubt(section.line, L"a second section [" + text_.Wide(section.key) + L"]: the one in line " +
                                         std::to_wstring(text_.Find(section.key)->line) +
                                         L" counts, this one is not read");
    }
    const SetupSection* const backup = text_.Find("Backup");
    result_.isBackup = text_.Lists("Backup");
    if (backup && !result_.isBackup) {
        remarks_.Doubt(backup->line,
                       L"the line of the section [Backup] says something else too, if only a blank: the file is "
                       L"no backup copy, and the section is not read");
    }
    const int32_t firstSection = text_.Sections().front().line;
    for (const SetupEntry& entry : text_.Unread()) {
        if (entry.line < firstSection) {
            remarks_.DoubtLine(Fault::misplaced, entry.line,
                               text_.Quoted(entry.key) + L" stands before the first section and is not read");
        }
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

Fault Inspector::FaultOf(const SetupSection& section, const SetupEntry& entry) const
{
    if (!entry.hasValue) {
        return Fault::noValue;
    }
    if (section.First(entry.key).line != entry.line) {
        return Fault::repeated;
    }
    if (SettingOf(section.name, entry.key) || IsRowKey(section.name, entry.key)) {
        return Fault::none;
    }
    return IsEarlyRowKey(section.name, entry.key) ? Fault::early : Fault::unknown;
}

std::wstring Inspector::FaultText(Fault fault, const SetupSection& section, const SetupEntry& entry) const
{
    const std::wstring key = text_.Quoted(entry.key);
    switch (fault) {
        case Fault::noValue:
            return key + L" has no \"=\" and is not read";
        case Fault::repeated:
            return key + L" is there a second time: line " + std::to_wstring(section.First(entry.key).line) +
                   L" counts";
        case Fault::early:
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
        remarks_.Doubt(section.line, L"no setup has a section " + text_.Quoted(section.name) + L"; it is not read");
        return;
    }
    for (const SetupEntry& entry : section.entries) {
        const Fault fault = FaultOf(section, entry);
        const Setting* const key = SettingOf(section.name, entry.key);
        if (fault != Fault::none) {
            remarks_.DoubtLine(fault, entry.line, FaultText(fault, section, entry));
        } else if (key) {
            InspectValue(*key, entry);
        }
    }
}

/// The number that is read; nothing where the text is none, which has been remarked on then.
std::optional<double> Inspector::InspectNumber(SettingKind kind, const SetupEntry& entry, const wchar_t* otherwise,
                                               Fault fault)
{
    if (kind == SettingKind::integer) {
        const auto taken = static_cast<int32_t>(ini::ReadInteger(entry.value));
        const std::optional<double> whole = WholeNumber(entry.value);
        if (whole == taken) {
            return taken;
        }
        remarks_.DoubtLine(fault, entry.line,
                           Says(entry) + (whole ? L", which is too large: " : L", which is no whole number: ") +
                               (entry.value.empty() ? otherwise : std::to_wstring(taken)) + L" is taken");
        return std::nullopt;
    }
    try {
        return ParseNumber(text_.Wide(entry.value), SystemLocale());
    } catch (const RaisedError&) {
        if (kind == SettingKind::number) {
            remarks_.Refuse(entry.line, Says(entry) + L", which is no number");
        } else {
            remarks_.Doubt(entry.line, Says(entry) + L", which is no number: " + otherwise + L" is taken");
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
    remarks_.Doubt(
        entry.line,
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
            remarks_.Doubt(entry.line, Says(entry) + L", which is neither True nor False: it counts as False");
        }
    }
    const bool isNumber = key.kind != SettingKind::text && key.kind != SettingKind::word;
    const std::optional<double> number =
        isNumber ? InspectNumber(key.kind, entry, key.otherwise, Fault::none) : std::nullopt;
    if (!number) {
        return;
    }
    if (key.lowest == key.highest) {
        if (std::ranges::find(key.choices, *number, &ListItem::value) == key.choices.end()) {
            std::wstring all;
            for (const ListItem& choice : key.choices) {
                all += (all.empty() ? L"" : L", ") + std::to_wstring(choice.value);
            }
            remarks_.Doubt(entry.line, Says(entry) + L"; the list has " + all);
        }
    } else if (!(*number >= key.lowest && *number <= key.highest)) {
        remarks_.Doubt(entry.line,
                       Says(entry) + L"; it has to be from " + Number(key.lowest) + L" to " + Number(key.highest));
    }
}

/// The "Count" that is read in a section; nothing where it keeps the file from being loaded.
std::optional<int32_t> Inspector::CountOf(const char* section, int32_t otherwise, int32_t most)
{
    const SetupEntry entry = text_.Find(section, "Count");
    if (entry.line == 0) {
        remarks_.Doubt(
            text_.Find(section) ? text_.Find(section)->line : 0,
            L"\"Count\" is missing in [" + Wide(section) + L"]: " + std::to_wstring(otherwise) + L" is taken");
        return otherwise;
    }
    const int32_t count = entry.value.empty() ? otherwise : static_cast<int32_t>(ini::ReadInteger(entry.value));
    if (count <= most) {
        return count;
    }
    remarks_.Refuse(entry.line, L"[" + Wide(section) + L"] says \"Count\" is " + text_.Quoted(entry.value) +
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
        remarks_.Refuse(section ? section->line : 0, L"[" + Wide(frequencies.section) + L"] lacks more than " +
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
            remarks_.Add(std::move(remark));
            first = 0;
        }
    }
}

void Inspector::InspectSurplusRows(const SettingRows& rows, int32_t count)
{
    const SetupSection& section = *text_.Find(rows.section);
    std::vector<SetupEntry> surplus;
    for (const SetupEntry& entry : section.entries) {
        const std::optional<int32_t> row = RowOf(rows.prefix, entry.key);
        if (!row || section.Find(entry.key).line != entry.line) {
            continue;
        }
        if (*row <= count) {
            InspectRowValue(rows, entry, *row);
        } else {
            surplus.push_back(entry);
        }
    }
    if (!surplus.empty()) {
        const bool isOne = surplus.size() == 1;
        const std::wstring first = text_.Quoted(surplus.front().key);
        remarks_.Doubt(surplus.front().line,
                       (isOne ? first + L" stands" : first + L" to " + text_.Quoted(surplus.back().key) + L" stand") +
                           L" beyond \"Count\" (" + std::to_wstring(count) + L") and " + (isOne ? L"is" : L"are") +
                           L" not read");
    }
}

void Inspector::InspectRowValue(const SettingRows& rows, const SetupEntry& entry, int32_t row)
{
    if (rows.kind == SettingKind::text) {
        return;
    }
    const std::optional<double> number = InspectNumber(rows.kind, entry, L"the default", Fault::flag);
    if (!number || (*number >= rows.lowest && *number <= rows.highest)) {
        return;
    }
    std::wstring text = Says(entry) + L"; it has to be from " + Number(rows.lowest) + L" to " + Number(rows.highest);
    if (rows.isOfChannel) {
        remarks_.Add({entry.line, std::move(text), false, row, row});
    } else {
        remarks_.DoubtLine(Fault::flag, entry.line, std::move(text));
    }
}

/// Two parameters at one place of the grid.
void Inspector::InspectPositions()
{
    const SetupSection* const section = text_.Find("Parameters Display Order");
    std::map<std::string_view, SetupEntry> seen;
    for (const SetupEntry& entry : section ? section->entries : std::vector<SetupEntry>()) {
        if (!RowOf("Position ", entry.key) || section->Find(entry.key).line != entry.line ||
            entry.value.starts_with('-')) {
            continue;
        }
        const auto [other, isNew] = seen.emplace(entry.value, entry);
        if (!isNew) {
            remarks_.DoubtLine(Fault::position, entry.line,
                               Says(entry) + L", as is " + text_.Quoted(other->second.key) + L" in line " +
                                   std::to_wstring(other->second.line));
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
