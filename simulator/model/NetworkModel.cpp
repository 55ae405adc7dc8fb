#include "simulator/model/NetworkModel.h"

#include <algorithm>

#include "simulator/model/ModelKeys.h"
#include "simulator/model/ModelParser.h"

namespace tvn2x {
namespace {

/// A key of a section, or the error that there is none.
template <class Section>
const ModelKey<Section>& Known(std::span<const ModelKey<Section>> keys, std::wstring_view section,
                               std::wstring_view key)
{
    const ModelKey<Section>* known = FindKey(keys, key);
    if (known == nullptr) {
        throw ModelError({}, 0, UnknownKey(key, section, keys));
    }
    return *known;
}

bool IsNetwork(std::wstring_view section)
{
    return FoldName(section) == L"network";
}

int32_t KnownChannelNumber(std::wstring_view section)
{
    const int32_t number = ChannelNumber(section);
    if (number == 0) {
        throw ModelError({}, 0, UnknownSection(section));
    }
    return number;
}

[[noreturn]] void FailMissing(std::wstring_view section)
{
    throw ModelError({}, 0,
                     L"there is no [" + std::wstring(section) + L"]; set its Frequency (MHz) first, which adds it");
}

}  // namespace

NetworkModel NetworkModel::Parse(std::string_view text, const std::wstring& fileName)
{
    return ModelParser(fileName).Parse(text);
}

NetworkModel NetworkModel::Load(FileSystem& files, const std::wstring& path)
{
    std::string content;
    FileStamp stamp;
    const FileFault fault = files.Read(path, content, stamp);
    if (fault != FileFault::none) {
        throw ModelError(path, 0,
                         L"the network model cannot be read: " + std::wstring(FaultText(fault)) +
                             L"; check its path and its access rights");
    }
    return Parse(content, path);
}

ChannelModel* NetworkModel::Find(int32_t number)
{
    const auto found = std::ranges::find(channels_, number, &ChannelModel::number);
    return found == channels_.end() ? nullptr : &*found;
}

void NetworkModel::StoreChannel(ChannelModel& target, std::wstring_view key, std::wstring_view text) const
{
    const std::wstring section = L"Channel " + std::to_wstring(target.number);
    const auto& known = Known(ChannelKeys(), section, key);
    if (const auto complaint = Store(known, target, text)) {
        throw ModelError({}, 0, AboutValue(section, known.name, *complaint));
    }
    for (const ChannelModel& other : channels_) {
        if (other.number != target.number && other.frequency == target.frequency) {
            throw ModelError({}, 0,
                             AboutValue(section, known.name,
                                        L"this is the frequency of [Channel " + std::to_wstring(other.number) +
                                            L"]; two channels cannot share one"));
        }
    }
}

void NetworkModel::Set(std::wstring_view section, std::wstring_view key, std::wstring_view text)
{
    if (IsNetwork(section)) {
        const auto& known = Known(NetworkKeys(), section, key);
        if (const auto complaint = Store(known, network_, text)) {
            throw ModelError({}, 0, AboutValue(section, known.name, *complaint));
        }
        return;
    }
    const int32_t number = KnownChannelNumber(section);
    ChannelModel* existing = Find(number);
    ChannelModel changed;
    if (existing != nullptr) {
        changed = *existing;
    }
    changed.number = number;
    StoreChannel(changed, key, text);
    if (changed.frequency == 0) {
        FailMissing(section);
    }
    if (existing != nullptr) {
        *existing = std::move(changed);
    } else {
        channels_.push_back(std::move(changed));
    }
}

std::wstring NetworkModel::Get(std::wstring_view section, std::wstring_view key) const
{
    if (IsNetwork(section)) {
        return Show(Known(NetworkKeys(), section, key), network_);
    }
    const int32_t number = KnownChannelNumber(section);
    const auto& known = Known(ChannelKeys(), section, key);
    const auto found = std::ranges::find(channels_, number, &ChannelModel::number);
    if (found == channels_.end()) {
        FailMissing(section);
    }
    return Show(known, *found);
}

}  // namespace tvn2x
