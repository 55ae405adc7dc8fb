#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include "setup/SetupDocument.h"

namespace tvn2x {

/// What a document says of the receiver, its notes and its axes, to be compared at once.
inline auto SettingsOf(const SetupDocument& document)
{
    return std::tuple(document.LevelUnit(), document.ReferenceSource(), document.BerSamples(), document.SawBw(),
                      document.OrderOfQam(), document.RollOffFactor(), document.Zin(), document.MaxSettlingTime(),
                      document.CoupleDisplayAndSave(), document.XAxis(0), document.XAxis(1), document.Notes(),
                      document.ShowNotesBefore(), document.ShowNotesAfter());
}

/// Of each parameter the flags (either, displayed, saved), the position and the caption.
inline auto ParametersOf(const SetupDocument& document)
{
    std::vector<std::tuple<bool, bool, bool, int16_t, std::wstring>> parameters;
    for (int32_t parameter = 1; parameter <= document.Count(); ++parameter) {
        parameters.emplace_back(document.Parameter(0, parameter), document.Parameter(1, parameter),
                                document.Parameter(2, parameter), document.Order(parameter),
                                document.StoredCaption(parameter));
    }
    return parameters;
}

/// Everything that the editor can change.
inline auto Everything(const SetupDocument& document)
{
    std::vector<std::tuple<double, double, std::wstring>> channels;
    for (int32_t channel = 1; channel <= document.ListSize(); ++channel) {
        channels.emplace_back(document.Frequency(channel), document.SymbolRate(channel), document.UserField(channel));
    }
    return std::tuple(SettingsOf(document), ParametersOf(document), channels, document.DefaultSymbolRate(),
                      document.dirty);
}

}  // namespace tvn2x
