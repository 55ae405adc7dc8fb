#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "simulator/model/ModelKeys.h"
#include "simulator/model/NetworkModel.h"

namespace tvn2x {

/// The number in a section name "Channel 7": 1..9999, 0 where the name is no such name.
int32_t ChannelNumber(std::wstring_view section);

/// What a key that a section does not have is answered with.
template <class Section>
std::wstring UnknownKey(std::wstring_view key, std::wstring_view section, std::span<const ModelKey<Section>> keys)
{
    std::wstring text = L"unknown key " + Quoted(key) + L" in [" + std::wstring(section) + L"]; known keys are";
    for (const ModelKey<Section>& known : keys) {
        text.append(&known == &keys.front() ? L" " : L", ").append(known.name);
    }
    return text;
}

std::wstring UnknownSection(std::wstring_view section);

/// The complaint about a value, with the key and the section that it stands under.
std::wstring AboutValue(std::wstring_view section, std::wstring_view key, const std::wstring& complaint);

/// One pass over the text of a model file.
class ModelParser
{
public:
    explicit ModelParser(std::wstring fileName) : file_(std::move(fileName)) {}

    NetworkModel Parse(std::string_view text);

private:
    void CheckText(std::string_view text) const;
    void TakeLine(std::string_view bytes);
    void OpenSection(std::wstring_view line);
    void TakeKey(std::wstring_view line);
    void CloseChannel();
    template <class Section>
    void TakeValue(std::span<const ModelKey<Section>> keys, Section& target, std::wstring_view key,
                   std::wstring_view text);
    [[noreturn]] void Fail(int line, const std::wstring& text) const;

    const std::wstring file_;
    NetworkModel model_;
    int line_ = 0;
    std::wstring section_;  ///< as it is written; empty before the first
    int sectionLine_ = 0;
    bool inChannel_ = false;
    bool networkSeen_ = false;
    std::set<std::wstring> keysSeen_;  ///< folded, of this section
    std::map<int32_t, int> channelLines_;
    std::map<double, int32_t> frequencies_;  ///< MHz, to the number of the channel
};

}  // namespace tvn2x
