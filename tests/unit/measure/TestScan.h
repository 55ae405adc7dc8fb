#pragma once

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <tuple>

#include "measure/ChannelScan.h"
#include "support/FakeClock.h"
#include "support/FixedLocale.h"
#include "support/ScriptedReceiver.h"

namespace tvn2x {

/// A scan with all that it needs: two channels, every parameter wanted, an external reference, a receiver in order.
struct TestScan
{
    explicit TestScan(FixedLocale userLocale = FixedLocale()) : locale(std::move(userLocale))
    {
        clock.step = 0.125;
        Prepare();
    }

    void Prepare()
    {
        log.Disarm();
        document = SetupDocument();
        document.ListSize(2);
        document.Frequency(1, 213);
        document.Frequency(2, 221.5);
        document.SymbolRate(1, 6.9);
        document.SymbolRate(2, 6.9);
        document.ReferenceSource(1);
        document.BerSamples(1);
        table.Reset(document, locale);
    }

    void WantOnly(std::initializer_list<MP_TYPES> parameters)
    {
        for (int32_t parameter = MP_STATUS; parameter <= MP_LAST; ++parameter) {
            document.Parameter(0, parameter, std::count(parameters.begin(), parameters.end(), parameter) > 0);
        }
    }

    bool Measure(int32_t channel = 1)
    {
        log.calls.clear();
        return scan.Measure(channel, receiver, host, &host);
    }

    std::wstring Cell(int32_t parameter, int32_t field = 0, int32_t channel = 1) const
    {
        return std::wstring(table.Result(field, parameter, channel));
    }
    std::optional<double> Value(int32_t parameter) const { return table.Value(parameter, 1); }
    std::wstring Status(int32_t channel = 1) const { return Cell(MP_STATUS, 1, channel); }

    SetupDocument document;
    ResultTable table;
    FakeClock clock;
    FixedLocale locale;
    CallLog log;
    ScriptedReceiver receiver{log};
    ScriptedHost host{log};
    ChannelScan scan{document, table, clock, locale};
};

/// The plain readings of a receiver, with their columns.
inline constexpr std::tuple<const char*, MP_TYPES, double ReceiverAnswers::*> readings[] = {
#define RECEIVER_READING(name, parameter) {#name, parameter, &ReceiverAnswers::name},
#include "setup/catalogue/ReceiverOperations.h"
};

inline constexpr MP_TYPES lockIndicators[] = {MP_REF, MP_SYNC, MP_DATA};
inline constexpr MP_TYPES valueColumns[] = {MP_RFLEV, MP_BER, MP_FREQOFF, MP_IQIMBAL, MP_IQPHASE, MP_CS, MP_PHASJIT,
                                            MP_CI,    MP_SN,  MP_MER,     MP_MERPCT,  MP_SY,      MP_DE};

}  // namespace tvn2x
