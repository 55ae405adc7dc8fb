#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/model/ModelError.h"
#include "simulator/model/ModelSections.h"
#include "util/FileSystem.h"

namespace tvn2x {

/// The cable network at the outlet and the receiver behind it. Made from an INI file in UTF-8 with one section
/// [Network] and one section [Channel n] per channel; docs/network-model.md describes every key.
class NetworkModel
{
public:
    /// No channels, a fully fitted receiver.
    NetworkModel() = default;

    /// Reads a model from its text. Throws ModelError with file and line; fileName appears in it as it is given.
    static NetworkModel Parse(std::string_view text, const std::wstring& fileName);
    /// The same from a file; a file that cannot be read is a ModelError, too.
    static NetworkModel Load(FileSystem& files, const std::wstring& path);

    const NetworkSettings& Network() const { return network_; }
    /// Ordered as in the file.
    const std::vector<ChannelModel>& Channels() const { return channels_; }

    /// One value by section ("Network", "Channel 3") and key, as in the file. Throws ModelError; nothing has changed
    /// then. Setting the frequency of a channel that does not exist adds the channel.
    void Set(std::wstring_view section, std::wstring_view key, std::wstring_view text);
    std::wstring Get(std::wstring_view section, std::wstring_view key) const;

private:
    friend class ModelParser;

    ChannelModel* Find(int32_t number);
    void StoreChannel(ChannelModel& target, std::wstring_view key, std::wstring_view text) const;

    NetworkSettings network_;
    std::vector<ChannelModel> channels_;
};

}  // namespace tvn2x
