#include "receivers/recordings/server/RecordingsSettings.h"

#include <algorithm>
#include <complex>
#include <vector>

#include "util/FileSystem.h"

namespace tvn2x {
namespace {

/// An array of doubles, the parts of each sample by turns.
VARIANT ArrayOf(const std::vector<std::complex<float>>& symbols)
{
    VARIANT array{};
    array.parray = SafeArrayCreateVector(VT_R8, 0, static_cast<ULONG>(2 * symbols.size()));
    void* data = nullptr;
    if (!array.parray || FAILED(SafeArrayAccessData(array.parray, &data))) {
        SafeArrayDestroy(array.parray);
        throw std::bad_alloc();
    }
    array.vt = VT_ARRAY | VT_R8;
    auto* numbers = static_cast<double*>(data);
    for (const std::complex<float>& symbol : symbols) {
        *numbers++ = symbol.real();
        *numbers++ = symbol.imag();
    }
    SafeArrayUnaccessData(array.parray);
    return array;
}

}  // namespace

HRESULT RecordingsSettings_IChannelDetails::get_Remark(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Receiver().Remark(); });
}

HRESULT RecordingsSettings_IChannelDetails::Constellation(LONG lMost, VARIANT* value) noexcept
{
    constexpr long largest = 65536;
    if (!value) {
        return com::Refuse(E_POINTER);
    }
    VariantInit(value);
    return Do([&] {
        *value = ArrayOf(owner_.Receiver().Constellation(static_cast<size_t>(std::clamp(lMost, 0L, largest))));
    });
}

HRESULT RecordingsSettings_IChannelDetails::get_LevelUncalibrated(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return !owner_.Receiver().IsCalibrated(); });
}

void* RecordingsSettings::FindInterface(REFIID id) noexcept
{
    return id == __uuidof(IChannelDetails) ? static_cast<IChannelDetails*>(&details_) : nullptr;
}

HRESULT RecordingsSettings::put_Signals(BSTR sFolder) noexcept
{
    return Do([&] {
        const std::wstring folder(com::ViewOf(sFolder));
        Receiver().Signals(folder.empty() ? folder : FullPath(folder));
    });
}

HRESULT RecordingsSettings::get_Signals(BSTR* value) noexcept
{
    return Get(value, [&] { return Receiver().Folder(); });
}

HRESULT RecordingsSettings::get_Bands(BSTR* value) noexcept
{
    return Get(value, [&] { return Receiver().Signals().Bands(); });
}

HRESULT RecordingsSettings::get_LevelOfFullScale(VARIANT* value) noexcept
{
    return Get(value, [&] { return Receiver().LevelBelowFullScale(); });
}

}  // namespace tvn2x
