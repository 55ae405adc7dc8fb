#include "setup/SetupDocument.h"

#include <algorithm>
#include <new>
#include <utility>

#include "setup/PathParts.h"
#include "setup/catalogue/Parameters.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

// Far beyond any network, and small enough to be had: a larger table is a mistake that must not take the host's memory.
constexpr int32_t largestTable = 1 << 22;

[[noreturn]] void RaiseOutOfMemory(const wchar_t* source)
{
    throw RaisedError(7, source, L"Out of memory");
}

/// Gives the table `size` entries; an impossible size raises 7 and leaves the table as it was.
template <class T>
void Resize(std::vector<T>& table, int32_t size, const wchar_t* source)
{
    if (size > largestTable) {
        RaiseOutOfMemory(source);
    }
    try {
        table.resize(static_cast<size_t>(size) + 1);
    } catch (const std::bad_alloc&) {
        RaiseOutOfMemory(source);
    }
}

std::wstring UnitSuffix(const std::wstring& unit)
{
    return L" (" + unit + L")";
}

void RemoveAll(std::wstring& text, const std::wstring& part)
{
    for (size_t at = text.find(part); at != std::wstring::npos; at = text.find(part, at)) {
        text.erase(at, part.size());
    }
}

}  // namespace

SetupDocument::SetupDocument()
{
    ListSize(1);
    Frequency(1, 213.0);
    UserField(1, L"My Channel");
    SymbolRate(1, 6.9);
    Count(MP_LAST);
    for (int32_t parameter = MP_FIRST; parameter <= MP_LAST; ++parameter) {
        for (int32_t action = 0; action <= 2; ++action) {
            Parameter(action, parameter, true);
        }
        Order(parameter, static_cast<int16_t>(parameter));
        Caption(parameter, std::wstring(DefaultCaption(parameter)));
    }
    for (int32_t parameter = MP_FIRST; parameter <= MP_LASTSTATIC; ++parameter) {
        Parameter(1, parameter, false);
    }
    xAxis_ = {2, 2};
    dirty = false;
}

const SetupDocument::Channel& SetupDocument::Row(int32_t channel, const wchar_t* source) const
{
    const bool exists = listSize_ < 1 ? channel == 0 : channel >= 1 && channel <= listSize_;
    if (!exists) {
        RaiseSubscript(source);
    }
    return channels_[static_cast<size_t>(channel)];
}

SetupDocument::Channel& SetupDocument::Row(int32_t channel, const wchar_t* source)
{
    return const_cast<Channel&>(std::as_const(*this).Row(channel, source));
}

const SetupDocument::Entry& SetupDocument::At(int32_t parameter, const wchar_t* source) const
{
    if (parameter < MP_FIRST || parameter > count_) {
        RaiseSubscript(source);
    }
    return parameters_[static_cast<size_t>(parameter)];
}

SetupDocument::Entry& SetupDocument::At(int32_t parameter, const wchar_t* source)
{
    return const_cast<Entry&>(std::as_const(*this).At(parameter, source));
}

void SetupDocument::ListSize(int32_t size)
{
    if (size == listSize_ && !channels_.empty()) {
        return;
    }
    std::vector<Channel> cleared;
    Resize(cleared, std::max(size, 0), L"clsSetup.ListSize");
    channels_ = std::move(cleared);
    listSize_ = size;
    dirty = true;
}

double SetupDocument::Frequency(int32_t channel) const
{
    return Row(channel, L"clsSetup.Frequency").frequency;
}

void SetupDocument::Frequency(int32_t channel, double megahertz)
{
    Change(Row(channel, L"clsSetup.Frequency").frequency, megahertz);
}

double SetupDocument::SymbolRate(int32_t channel) const
{
    return Row(channel, L"clsSetup.SymbolRate").symbolRate;
}

void SetupDocument::SymbolRate(int32_t channel, double megasymbols)
{
    Change(Row(channel, L"clsSetup.SymbolRate").symbolRate, megasymbols);
}

const std::wstring& SetupDocument::UserField(int32_t channel) const
{
    return Row(channel, L"clsSetup.UserField").userField;
}

void SetupDocument::UserField(int32_t channel, std::wstring text)
{
    Change(Row(channel, L"clsSetup.UserField").userField, std::move(text));
}

void SetupDocument::Count(int32_t count)
{
    const int32_t stored = std::max<int32_t>(count, MP_LAST);
    Resize(parameters_, stored, L"clsSetup.Count");
    count_ = stored;
}

bool SetupDocument::Parameter(int32_t action, int32_t parameter) const
{
    const Entry& entry = At(parameter, L"clsSetup.Parameter");
    if (action < 0 || action > 2) {
        RaiseSubscript(L"clsSetup.Parameter");
    }
    return entry.action[static_cast<size_t>(action)];
}

void SetupDocument::Parameter(int32_t action, int32_t parameter, bool value)
{
    Entry& entry = At(parameter, L"clsSetup.Parameter");
    if (action < 0 || action > 2) {
        RaiseSubscript(L"clsSetup.Parameter");
    }
    Change(entry.action[static_cast<size_t>(action)], value);
}

int16_t SetupDocument::Order(int32_t parameter) const
{
    return static_cast<int16_t>(At(parameter, L"clsSetup.Order").order);
}

void SetupDocument::Order(int32_t parameter, int16_t position)
{
    Change(At(parameter, L"clsSetup.Order").order, int32_t{position});
}

std::wstring SetupDocument::Caption(int32_t parameter) const
{
    const std::wstring& stored = At(parameter, L"clsSetup.Caption").caption;
    return parameter == MP_RFLEV ? stored + UnitSuffix(levelUnit_) : stored;
}

void SetupDocument::Caption(int32_t parameter, std::wstring text)
{
    Entry& entry = At(parameter, L"clsSetup.Caption");
    if (parameter == MP_RFLEV) {
        RemoveAll(text, UnitSuffix(levelUnit_));
    }
    Change(entry.caption, std::move(text));
}

const std::wstring& SetupDocument::StoredCaption(int32_t parameter) const
{
    return At(parameter, L"clsSetup.Caption").caption;
}

void SetupDocument::StoredCaption(int32_t parameter, std::wstring text)
{
    At(parameter, L"clsSetup.Caption").caption = std::move(text);
}

void SetupDocument::LevelUnit(std::wstring name)
{
    Change(levelUnit_, std::move(name));
}

int32_t SetupDocument::XAxis(int32_t destination) const
{
    if (destination < 0 || destination > 1) {
        RaiseSubscript(L"clsSetup.XAxis");
    }
    return xAxis_[static_cast<size_t>(destination)];
}

void SetupDocument::XAxis(int32_t destination, int32_t choice)
{
    if (destination < 0 || destination > 1) {
        RaiseSubscript(L"clsSetup.XAxis");
    }
    Change(xAxis_[static_cast<size_t>(destination)], choice);
}

void SetupDocument::Notes(std::wstring text)
{
    Change(notes_, std::move(text));
}

std::wstring SetupDocument::FolderOfFile() const
{
    return std::wstring(FolderPart(fullPath));
}

std::wstring SetupDocument::FileTitle() const
{
    const std::wstring_view title = TitlePart(fullPath);
    return title.empty() ? L"Untitled" : std::wstring(title);
}

}  // namespace tvn2x
