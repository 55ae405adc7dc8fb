#include "host/link/RunCollector.h"

#include <algorithm>
#include <chrono>
#include <set>

#include "Version.h"
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

/// The columns of the grid: the fixed ones and what the setup displays, or the chosen ones, by display position.
std::vector<RunColumn> Columns(const Setup& setup, const std::wstring& chosen)
{
    const std::vector<int32_t> wanted = chosen.empty() ? std::vector<int32_t>() : SelectParameters(chosen);
    std::vector<int32_t> parameters;
    for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter) {
        const bool isWanted = wanted.empty() ? setup.ParameterAt(parameter).isDisplayed
                                             : std::ranges::find(wanted, parameter) != wanted.end();
        if (isWanted || parameter <= MP_LASTFIXED) {
            parameters.push_back(parameter);
        }
    }
    std::ranges::stable_sort(parameters, {}, [&](int32_t parameter) { return setup.ParameterAt(parameter).position; });
    std::vector<RunColumn> columns;
    columns.reserve(parameters.size());
    for (const int32_t parameter : parameters) {
        columns.push_back({parameter, setup.ParameterAt(parameter).caption});
    }
    return columns;
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
            .simulation = DescribeSimulation(plugin)};
}

std::vector<std::wstring> MeasureForVerdicts(const Plugin& plugin, const Setup& setup, const Limits* limits)
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

FinishedRun DescribeRun(const Setup& setup, const std::wstring& setupSha256, const std::wstring& chosen)
{
    FinishedRun run;
    run.program = L"tvnhost " TVN_VERSION;
    run.setup = {
        .path = setup.path, .sha256 = setupSha256, .notes = PlainText(setup.notes), .settings = setup.settings};
    run.columns = Columns(setup, chosen);
    if (std::ranges::all_of(run.columns, [](const RunColumn& column) { return column.parameter <= MP_LASTFIXED; })) {
        RaiseInput(setup.path +
                   L": the setup displays no measured parameter. Choose some on the setup's parameters page, or "
                   L"with --parameters.");
    }
    run.began = NowUtc();
    return run;
}

ChannelResult CollectChannel(const Plugin& plugin, const Setup& setup, const ChannelTurn& turn)
{
    const int32_t channel = turn.channel;
    ChannelResult result{.pass = turn.pass,
                         .number = channel,
                         .label = setup.ChannelAt(channel).userField,
                         .frequency = setup.ChannelAt(channel).frequency,
                         .symbolRate = setup.ChannelAt(channel).symbolRate,
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
    }
    return result;
}

void RestoreResults(const Plugin& plugin, const FinishedRun& run)
{
    Call(plugin.measure, &IMeasure::ResetMeasurement, 0);
    if (run.receiver.simulation) {
        SimulatorSettings(plugin);  // from now on the plug-in knows which receiver it was
    }
    for (const size_t position : run.Latest()) {
        const ChannelResult& channel = run.channels[position];
        const auto restore = [&](int32_t parameter, const std::wstring& text) {
            Call(plugin.results, &IResults::put_Result, FieldOf(parameter), static_cast<short>(parameter),
                 channel.number, com::Bstr(text).Get());
        };
        restore(MP_STATUS, channel.status);
        restore(MP_TIMESTAMP, channel.timeStamp);
        for (const Reading& reading : channel.readings) {
            restore(reading.parameter, reading.text);
        }
        const VARIANT_BOOL measured = channel.outcome == ChannelOutcome::unmeasured ? VARIANT_FALSE : VARIANT_TRUE;
        Call(plugin.results, &IResults::put_Measured, channel.number, measured);
    }
}

}  // namespace tvn2x
