#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "host/setup/Setup.h"

namespace tvn2x {

/// The channels that a selection such as `K45-K63,12,474` names, by their numbers from 1, ascending and each once.
///
/// Commas separate what is wanted: a channel, a range of two ("K45-K63"), or all from one on ("30-"). A channel is
/// named by its label, letter by letter; what is no label by its number, and what is no number either by its frequency
/// in MHz, to the kHz. Two frequencies are a range of frequencies, whether or not there are channels at its ends.
/// Quotation marks protect a label with commas or dashes.
///
/// Raises unusableInput for what names no channel and for what means two things: a label that two channels have, a text
/// that is a label as well as a range.
std::vector<int32_t> SelectChannels(std::wstring_view selection, const std::vector<Setup::Channel>& channels);

/// All of them.
std::vector<int32_t> AllChannels(const std::vector<Setup::Channel>& channels);

}  // namespace tvn2x
