#include "host/link/SetupReader.h"

namespace tvn2x {
namespace {

std::wstring TextOf(const VARIANT& value)
{
    std::wstring text;
    if (value.vt == VT_BSTR) {
        com::Bstr owner;
        *owner.Put() = value.bstrVal;
        text = owner.View();
    }
    return text;
}

std::vector<Setup::Channel> ReadChannels(const Plugin& plugin)
{
    const auto& document = plugin.document;
    std::vector<Setup::Channel> channels;
    const long count = Get<long>(document, &_clsSetup::get_ListSize);
    for (long channel = 1; channel <= count; ++channel) {
        channels.push_back({Get<std::wstring>(document, &_clsSetup::get_UserField, channel),
                            Get<double>(document, &_clsSetup::get_Frequency, channel),
                            Get<double>(document, &_clsSetup::get_SymbolRate, channel)});
    }
    return channels;
}

std::vector<Setup::Parameter> ReadParameters(const Plugin& plugin)
{
    const auto& document = plugin.document;
    std::vector<Setup::Parameter> parameters;
    const long count = Get<long>(document, &_clsSetup::get_Count);
    for (long number = 1; number <= count; ++number) {
        const auto parameter = static_cast<MP_TYPES>(number);
        parameters.push_back({Get<std::wstring>(document, &_clsSetup::get_Caption, parameter),
                              Get<VARIANT_BOOL>(document, &_clsSetup::get_Parameter, 1L, parameter) != 0,
                              Get<VARIANT_BOOL>(document, &_clsSetup::get_Parameter, 2L, parameter) != 0,
                              Get<short>(document, &_clsSetup::get_Order, parameter)});
    }
    return parameters;
}

}  // namespace

SetupSettings ReadSettings(const Plugin& plugin)
{
    const auto& document = plugin.document;
    return {.orderOfQam = Get<long>(document, &_clsSetup::get_OrderOfQam),
            .rollOffFactor = Get<long>(document, &_clsSetup::get_RollOffFactor),
            .sawBandwidth = Get<long>(document, &_clsSetup::get_SawBw),
            .inputRoute = Get<long>(document, &_clsSetup::get_Zin),
            .referenceSource = Get<long>(document, &_clsSetup::get_ReferenceSource),
            .berSamples = Get<long>(document, &_clsSetup::get_BerSamples),
            .maxSettlingTime = Get<long>(document, &_clsSetup::get_MaxSettlingTime),
            .levelUnit = Get<std::wstring>(document, &_clsSetup::get_LevelUnit)};
}

Setup ReadSetup(const Plugin& plugin, const std::wstring& path)
{
    const auto& document = plugin.document;
    const auto& setup = plugin.setup;
    return {.path = path,
            .product = TextOf(Get<VARIANT>(setup, &ISetup::get_ProductName)),
            .version = TextOf(Get<VARIANT>(setup, &ISetup::get_AppVersion)),
            .mode = Get<long>(setup, &ISetup::get_Mode),
            .isBackup = Get<VARIANT_BOOL>(setup, &ISetup::IsBackup) != 0,
            .isDirty = Get<VARIANT_BOOL>(setup, &ISetup::get_Dirty) != 0,
            .realPath = Get<std::wstring>(setup, &ISetup::get_FullPath),
            .settings = ReadSettings(plugin),
            .defaultSymbolRate = Get<double>(document, &_clsSetup::get_DefaultSymbolRate),
            .isCoupled = Get<VARIANT_BOOL>(document, &_clsSetup::get_CoupleDisplayAndSave) != 0,
            .xAxis = {Get<long>(document, &_clsSetup::get_XAxis, 0L), Get<long>(document, &_clsSetup::get_XAxis, 1L)},
            .channels = ReadChannels(plugin),
            .parameters = ReadParameters(plugin),
            .notes = Get<std::wstring>(document, &_clsSetup::get_Notes),
            .showsNotesBefore = Get<VARIANT_BOOL>(document, &_clsSetup::get_ShowNotesBefore) != 0,
            .showsNotesAfter = Get<VARIANT_BOOL>(document, &_clsSetup::get_ShowNotesAfter) != 0};
}

}  // namespace tvn2x
