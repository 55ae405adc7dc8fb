#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "simulator/model/ModelSections.h"

namespace tvn2x {

/// One key of a section: its name, where its value lives, and what is allowed there.
template <class Section>
struct ModelKey
{
    using Member = std::variant<double Section::*, int32_t Section::*, bool Section::*, std::wstring Section::*,
                                std::vector<Outage> Section::*>;

    std::wstring_view name;
    Member member;
    double min = 0;
    double max = 0;
    std::span<const int32_t> allowed = {};  ///< the only values of a whole number; empty: all from min to max
};

std::span<const ModelKey<NetworkSettings>> NetworkKeys();
std::span<const ModelKey<ChannelModel>> ChannelKeys();

/// Names are compared without regard to case; "dBµV" and "dBuV" are the same.
std::wstring FoldName(std::wstring_view name);

/// The text as it may stand in a message: shortened, without control characters.
std::wstring Quoted(std::wstring_view text);

/// The key of that name, null where there is none.
template <class Section>
const ModelKey<Section>* FindKey(std::span<const ModelKey<Section>> keys, std::wstring_view name)
{
    const std::wstring folded = FoldName(name);
    for (const ModelKey<Section>& key : keys) {
        if (FoldName(key.name) == folded) {
            return &key;
        }
    }
    return nullptr;
}

/// Takes a value in from its text, or says what is wrong with it and what is allowed; then nothing has changed.
template <class Section>
std::optional<std::wstring> Store(const ModelKey<Section>& key, Section& section, std::wstring_view text);

/// The value as Store takes it.
template <class Section>
std::wstring Show(const ModelKey<Section>& key, const Section& section);

}  // namespace tvn2x
