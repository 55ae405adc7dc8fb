#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "setup/SetupDocument.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// What a measurement found: per channel 1..n a measured flag, and a text for each parameter 10..30 and field 0..2;
/// beside the text of a reading the number that it was made of.
///
/// Field 0 holds a measured value, field 1 the fixed columns, the status and the time stamp; the bit error rate uses
/// all three (result, state of the count, value status). Before the first Reset there is no table at all; for a list
/// without channels there is the single row 0. An index outside the table raises 9 and changes nothing.
class ResultTable
{
public:
    static constexpr int32_t fieldCount = 3;

    std::wstring receiver;  ///< what has to be said of the one that measured: "simulated"; empty for a real one

    /// Brings channel `item`, or all channels when it is 0, back to "Un-measured". A list whose size has changed since
    /// the last reset gives a new table, whatever `item` says. Where memory runs out the old table stays.
    void Reset(const SetupDocument& document, const Locale& locale, int32_t item = 0);

    int32_t Channels() const { return channels_; }  ///< -1 before the first reset

    bool Measured(int32_t channel) const { return Row(channel, L"clsSetup.Measured").measured; }
    void Measured(int32_t channel, bool measured);

    /// The text is valid until the next change of the table.
    std::wstring_view Result(int32_t field, int32_t parameter, int32_t channel) const;
    /// A text alone: the parameter has no number afterwards where field 0 is written.
    void Result(int32_t field, int32_t parameter, int32_t channel, std::wstring_view text);
    /// The number behind field 0 as it was measured, unrounded and in the unit of the text; nothing where the text is
    /// none of a number.
    std::optional<double> Value(int32_t parameter, int32_t channel) const;
    /// Field 0 of a parameter 15..30 with its number, which has to be finite.
    void Reading(int32_t parameter, int32_t channel, std::wstring_view text, double value);
    void ClearColumn(int32_t parameter, int32_t channel);

private:
    static constexpr int32_t parameterCount = MP_LAST - MP_FIRSTFIXED + 1;
    static constexpr size_t cellCount = size_t{fieldCount} * parameterCount;
    static constexpr size_t readingCount = MP_LAST - MP_RFLEV + 1;
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();

    /// The cells of a channel as one run of text: most are empty or a few characters long, so a string each would take
    /// several times the room.
    struct Channel
    {
        Channel() { values.fill(none); }
        std::wstring_view Cell(size_t cell) const;
        void Cell(size_t cell, std::wstring_view text);
        size_t Begin(size_t cell) const { return cell == 0 ? 0 : ends[cell - 1]; }

        std::wstring texts;
        std::array<uint32_t, cellCount> ends{};  ///< where in `texts` each cell ends
        bool measured = false;
        std::array<double, readingCount> values;  ///< from MP_RFLEV
    };

    static size_t CellIndex(int32_t field, int32_t parameter, const wchar_t* source = L"clsSetup.Result");
    static Channel Unmeasured(const SetupDocument& document, const Locale& locale, int32_t channel);
    const Channel& Row(int32_t channel, const wchar_t* source) const;
    Channel& Row(int32_t channel, const wchar_t* source);

    int32_t channels_ = -1;
    std::vector<Channel> rows_;  ///< from channel 1, or the one row 0
};

}  // namespace tvn2x
