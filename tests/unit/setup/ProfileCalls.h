#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "setup/ProfileStore.h"

namespace tvn2x {

/// What a call of the system's profile functions answers: its result, and the part of the caller's buffer that it
/// wrote.
struct ProfileAnswer
{
    uint32_t result = 0;
    std::string buffer;
};

/// The profile functions as the system declares them, with their buffers, on top of a profile store. A null text is a
/// null pointer.
class ProfileCalls
{
public:
    using Text = std::optional<std::string>;

    explicit ProfileCalls(ProfileStore& store) : store_(store) {}

    ProfileAnswer GetString(const Text& section, const Text& key, const Text& defaultValue, size_t size)
    {
        if (size == 0)
            return {};
        if (section && key) {
            const std::string value(Profile().GetString(Own(*section), Own(*key), defaultValue.value_or("")));
            return Single(FromOwn(value), size);
        }
        const std::vector<std::string> names = section ? Keys(*section) : Profile().GetSectionNames();
        return names.empty() ? Single(section ? defaultValue.value_or("") : "", size) : List(names, size, 1);
    }
    uint32_t GetInt(const Text& section, const Text& key, uint32_t defaultValue)
    {
        return section && key ? Profile().GetInt(Own(*section), Own(*key), defaultValue) : 0;
    }
    ProfileAnswer GetSection(const Text& section, size_t size)
    {
        return section ? List(Profile().GetSection(Own(*section)), size, 2) : ProfileAnswer{};
    }
    ProfileAnswer GetSectionNames(size_t size) { return List(Profile().GetSectionNames(), size, 1); }
    bool WriteString(const Text& section, const Text& key, const Text& value)
    {
        if (!section)
            return false;
        return key ? store_.Write(Own(*section), Own(*key), value ? Text(Own(*value)) : std::nullopt)
                   : store_.DeleteSection(Own(*section));
    }

private:
    const ProfileFile& Profile() { return store_.Profile(); }
    std::string Own(const std::string& text)
    {
        return Profile().IsUnicode() ? Profile().Encode(ProfileFile().Decode(text)) : text;
    }
    std::string FromOwn(const std::string& text)
    {
        return Profile().IsUnicode() ? ProfileFile().Encode(Profile().Decode(text)) : text;
    }
    std::vector<std::string> Keys(const std::string& section)
    {
        std::vector<std::string> keys;
        for (const std::string& line : Profile().GetSection(section))
            keys.push_back(line.substr(0, line.find('=')));
        return keys;
    }
    static ProfileAnswer Single(const std::string& text, size_t size)
    {
        const std::string cut = text.substr(0, size - 1);
        return {static_cast<uint32_t>(cut.size()), cut + '\0'};
    }
    /// Names that are each ended by a NUL. A list that is too long is cut two characters short of the buffer.
    static ProfileAnswer List(const std::vector<std::string>& names, size_t size, size_t nulsIfEmpty)
    {
        std::string list;
        for (const std::string& name : names)
            list.append(name).push_back('\0');
        if (list.size() + 1 <= size && !list.empty())
            return {static_cast<uint32_t>(list.size()), list + '\0'};
        list.resize(std::min(list.size(), size - 2));
        const auto length = static_cast<uint32_t>(list.size());
        return {length, list.append(list.empty() ? nulsIfEmpty : 2, '\0')};
    }

    ProfileStore& store_;
};

}  // namespace tvn2x
