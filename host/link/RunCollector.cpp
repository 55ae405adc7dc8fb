#include "host/link/RunCollector.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <set>

#include "host/console/Files.h"
#include "host/run/ParameterNames.h"
#include "host/run/ReadingKind.h"
#include "host/run/Sha256.h"
#include "text/InputError.h"
#include "text/RichText.h"

namespace tvn2x {
namespace {

/// Field 1 holds what is no reading: the fixed columns, the status and the time stamp.
long FieldOf(int32_t parameter)
{
    return parameter <= MP_TIMESTAMP ? 1 : 0;
}

std::wstring Cell(const Plugin& plugin, int32_t parameter, int32_t channel)
{
    return Get<std::wstring>(plugin.measure, &IMeasure::get_Result, FieldOf(parameter), static_cast<short>(parameter),
                             channel);
}

std::optional<double> ValueOf(const Plugin& plugin, int32_t parameter, int32_t channel)
{
    const auto value = Get<VARIANT>(plugin.results, &IResults::get_Value, static_cast<short>(parameter), channel);
    return value.vt == VT_R8 ? std::optional(value.dblVal) : std::nullopt;
}

/// The fixed columns and what is wanted, by the first setup's display positions.
std::vector<int32_t> ColumnParameters(const std::vector<const Setup*>& setups, const std::wstring& chosen)
{
    const std::vector<int32_t> wanted = chosen.empty() ? std::vector<int32_t>() : SelectParameters(chosen);
    std::vector<int32_t> parameters;
    for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter) {
        const auto isDisplayed = [&](const Setup* setup) { return setup->ParameterAt(parameter).isDisplayed; };
        const bool isWanted = wanted.empty() ? std::ranges::any_of(setups, isDisplayed)
                                             : std::ranges::find(wanted, parameter) != wanted.end();
        if (isWanted || parameter <= MP_LASTFIXED) {
            parameters.push_back(parameter);
        }
    }
    std::ranges::stable_sort(parameters, {},
                             [&](int32_t parameter) { return setups.front()->ParameterAt(parameter).position; });
    return parameters;
}

/// A text of the receiver, "" where it does not answer: a run without it is still a run.
template <class Member>
std::wstring Told(const Plugin& plugin, Member member)
{
    try {
        return Get<std::wstring>(plugin.driver, member);
    } catch (const RaisedError&) {
        return {};
    }
}

/// The simulated receiver is told by its settings, which no other has.
std::optional<RunSimulation> DescribeSimulation(const Plugin& plugin)
{
    com::ComPtr<ISimulatorSettings> simulator;
    try {
        simulator = SimulatorSettings(plugin);
    } catch (const RaisedError&) {
        return std::nullopt;
    }
    RunSimulation simulation{.model = Get<std::wstring>(simulator, &ISimulatorSettings::get_NetworkModel),
                             .sha256 = {},
                             .seed = Get<std::wstring>(simulator, &ISimulatorSettings::get_Value,
                                                       com::Bstr(L"Network").Get(), com::Bstr(L"Seed").Get())};
    if (!simulation.model.empty()) {
        simulation.sha256 = Sha256(ReadInput(simulation.model));
    }
    return simulation;
}

std::optional<RunRecordings> DescribeRecordings(const Plugin& plugin)
{
    com::ComPtr<IRecordingsSettings> recordings;
    try {
        recordings = RecordingsSettings(plugin);
    } catch (const RaisedError&) {
        return std::nullopt;
    }
    return RunRecordings{.folder = Get<std::wstring>(recordings, &IRecordingsSettings::get_Signals),
                         .bands = Get<std::wstring>(recordings, &IRecordingsSettings::get_Bands)};
}

/// Symbols out of an array of doubles; what is none gives none.
std::vector<Symbol> SymbolsIn(const VARIANT& array)
{
    std::vector<Symbol> symbols;
    double* numbers = nullptr;
    if (array.vt != (VT_ARRAY | VT_R8) || SafeArrayGetDim(array.parray) != 1 ||
        FAILED(SafeArrayAccessData(array.parray, reinterpret_cast<void**>(&numbers)))) {
        return symbols;
    }
    const auto stored = [](double value) {
        constexpr double largest = 100;  // no constellation reaches so far
        return static_cast<int32_t>(std::lround(std::clamp(value, -largest, largest) * symbolScale));
    };
    const ULONG count = array.parray->rgsabound[0].cElements;
    for (ULONG i = 0; i + 1 < count; i += 2) {
        if (std::isfinite(numbers[i]) && std::isfinite(numbers[i + 1])) {
            symbols.push_back({stored(numbers[i]), stored(numbers[i + 1])});
        }
    }
    SafeArrayUnaccessData(array.parray);
    return symbols;
}

/// A driver need not tell any, and its failure is no channel's.
ChannelDetails CollectDetails(const Plugin& plugin)
{
    constexpr long mostSymbols = 1024;
    ChannelDetails details;
    try {
        if (const auto teller = ChannelDetailsOf(plugin)) {
            details.remark = Get<std::wstring>(teller, &IChannelDetails::get_Remark);
            details.hasUnknownLevel =
                Get<VARIANT_BOOL>(teller, &IChannelDetails::get_LevelUncalibrated) != VARIANT_FALSE;
            auto symbols = Get<VARIANT>(teller, &IChannelDetails::Constellation, mostSymbols);
            details.symbols = SymbolsIn(symbols);
            VariantClear(&symbols);
        }
    } catch (const RaisedError&) {
        return details;
    }
    return details;
}

}  // namespace

std::wstring NowUtc()
{
    using namespace std::chrono;
    return UtcText(duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
}

RunReceiver DescribeReceiver(const Plugin& plugin, const ReceiverIdentity& identity)
{
    return {.identity = identity.text,
            .hardware = identity.hardware,
            .serialNumber = Told(plugin, &IDriver::get_SerialNumber),
            .firmware = Told(plugin, &IDriver::get_FirmwareVersion),
            .options = Told(plugin, &IDriver::get_InstalledHardware),
            .simulation = DescribeSimulation(plugin),
            .recordings = DescribeRecordings(plugin)};
}

std::vector<std::wstring> MeasureForRun(const Plugin& plugin, const Setup& setup, const std::vector<RunColumn>& columns,
                                        const Limits* limits)
{
    constexpr long measured = 0;  // whether it is displayed or saved or neither
    std::set<int32_t> needed = limits ? limits->Parameters() : std::set<int32_t>();
    if (needed.erase(levelStep) != 0) {
        needed.insert(MP_RFLEV);
    }
    for (const ReadingKind& kind : ReadingKinds()) {
        if (kind.isLock) {
            needed.insert(kind.parameter);
        }
    }
    for (const RunColumn& column : columns) {
        if (FindReadingKind(column.parameter)) {
            needed.insert(column.parameter);
        }
    }
    std::vector<std::wstring> added;
    for (const int32_t number : needed) {
        const Setup::Parameter& parameter = setup.ParameterAt(number);
        if (!parameter.isDisplayed && !parameter.isSaved) {
            Call(plugin.document, &_clsSetup::put_Parameter, measured, static_cast<::MP_TYPES>(number), VARIANT_TRUE);
            added.push_back(parameter.caption);
        }
    }
    return added;
}

std::vector<RunColumn> DescribeColumns(const std::vector<const Setup*>& setups, const std::wstring& chosen)
{
    std::vector<RunColumn> columns;
    for (const int32_t parameter : ColumnParameters(setups, chosen)) {
        columns.push_back({parameter, setups.front()->ParameterAt(parameter).caption});
    }
    if (std::ranges::all_of(columns, [](const RunColumn& column) { return column.parameter <= MP_LASTFIXED; })) {
        RaiseInput(setups.front()->path +
                   L": the setup displays no measured parameter. Choose some on the setup's parameters page, or "
                   L"with --parameters.");
    }
    return columns;
}

ChannelResult CollectChannel(const Plugin& plugin, const Setup& setup, int32_t channel)
{
    ChannelResult result{.number = channel,
                         .label = setup.ChannelAt(channel).userField,
                         .frequency = setup.ChannelAt(channel).frequency,
                         .symbolRate = setup.ChannelAt(channel).symbolRate,
                         .orderOfQam = setup.settings.orderOfQam,
                         .status = Cell(plugin, MP_STATUS, channel),
                         .timeStamp = Cell(plugin, MP_TIMESTAMP, channel),
                         .began = {},
                         .readings = {}};
    for (int32_t parameter = MP_RFLEV; parameter <= MP_LAST; ++parameter) {
        // An empty cell was not wanted.
        if (const std::wstring cell = Cell(plugin, parameter, channel); !cell.empty()) {
            result.readings.push_back(MakeReading(parameter, cell, ValueOf(plugin, parameter, channel),
                                                  setup.settings.levelUnit, SystemLocale()));
        }
    }
    if (Get<VARIANT_BOOL>(plugin.measure, &IMeasure::get_Measured, channel) != VARIANT_FALSE) {
        result.outcome = OutcomeOf(result.status, result.readings);
        result.details = CollectDetails(plugin);
    }
    return result;
}

void PutError(const Plugin& plugin, int32_t channel)
{
    Call(plugin.results, &IResults::put_Result, FieldOf(MP_STATUS), static_cast<short>(MP_STATUS), channel,
         com::Bstr(L"Control Error").Get());
    Call(plugin.results, &IResults::put_Measured, channel, VARIANT_TRUE);
}

void RestoreResults(const Plugin& plugin, const FinishedRun& run, size_t setup)
{
    Call(plugin.measure, &IMeasure::ResetMeasurement, 0);
    if (run.receiver.simulation) {
        SimulatorSettings(plugin);  // from now on the plug-in knows which receiver it was
    }
    for (const size_t position : run.Latest()) {
        const ChannelResult& channel = run.channels[position];
        if (run.SetupOf(channel.number) != setup) {
            continue;
        }
        const int32_t number = channel.number - run.setups[setup].firstChannel + 1;
        const auto restore = [&](int32_t parameter, const std::wstring& text) {
            Call(plugin.results, &IResults::put_Result, FieldOf(parameter), static_cast<short>(parameter), number,
                 com::Bstr(text).Get());
        };
        restore(MP_STATUS, channel.status);
        restore(MP_TIMESTAMP, channel.timeStamp);
        for (const Reading& reading : channel.readings) {
            restore(reading.parameter, reading.text);
        }
        const VARIANT_BOOL measured = channel.outcome == ChannelOutcome::unmeasured ? VARIANT_FALSE : VARIANT_TRUE;
        Call(plugin.results, &IResults::put_Measured, number, measured);
    }
}

}  // namespace tvn2x
