#pragma once

namespace tvn2x::dvbc {

/// Errored time of a transport stream since some moment, in seconds.
struct ErroredTime
{
    double syncErrors = 0;   ///< with packet synchronisation errors
    double dataErrors = 0;   ///< with uncorrectable packets
    double unavailable = 0;  ///< without any transport stream
};

}  // namespace tvn2x::dvbc
