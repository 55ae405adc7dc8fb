#include "editor/win32/UserPlace.h"

namespace tvn2x {
namespace {

constexpr wchar_t keyName[] = L"Software\\TVN2x\\Editor";
constexpr wchar_t valueName[] = L"Place";

/// What is kept: a version of its own, because other versions of the product read it too.
struct Kept
{
    static constexpr int32_t presentVersion = 1;

    int32_t version = presentVersion;
    int32_t window[4]{};
    int32_t dpi = 0;
    int32_t page = 0;
    int32_t shares[6]{};
};

}  // namespace

std::optional<UserPlace> KeptPlace()
{
    Kept kept;
    DWORD size = sizeof kept;
    const LSTATUS status =
        RegGetValueW(HKEY_CURRENT_USER, keyName, valueName, RRF_RT_REG_BINARY, nullptr, &kept, &size);
    if (status != ERROR_SUCCESS || size != sizeof kept || kept.version != Kept::presentVersion) {
        return std::nullopt;
    }
    UserPlace place;
    place.window = {kept.window[0], kept.window[1], kept.window[2], kept.window[3]};
    place.dpi = kept.dpi;
    place.page = kept.page;
    for (size_t index = 0; index < 3; ++index) {
        place.channelShares[index] = kept.shares[index];
        place.parameterShares[index] = kept.shares[3 + index];
    }
    return place;
}

void KeepPlace(const UserPlace& place)
{
    Kept kept;
    const RECT& window = place.window;
    const LONG edges[4]{window.left, window.top, window.right, window.bottom};
    for (size_t index = 0; index < 4; ++index) {
        kept.window[index] = static_cast<int32_t>(edges[index]);
    }
    kept.dpi = place.dpi;
    kept.page = place.page;
    for (size_t index = 0; index < 3; ++index) {
        kept.shares[index] = place.channelShares[index];
        kept.shares[3 + index] = place.parameterShares[index];
    }
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, keyName, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr) ==
        ERROR_SUCCESS) {
        RegSetValueExW(key, valueName, 0, REG_BINARY, reinterpret_cast<const BYTE*>(&kept), sizeof kept);
        RegCloseKey(key);
    }
}

}  // namespace tvn2x
