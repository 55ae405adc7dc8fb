#pragma once

#include <cstdint>
#include <string>

#include "instrument/Receiver.h"

namespace tvn2x {

/// Takes the instrument on line, finds out whether it is a receiver that this product is made for, and takes it off
/// line again. The letter case of manufacturer and model does not count.
///
/// identity becomes "name,address,model,manufacturer" of the right instrument and "" of any other; hardware and mode
/// (its operating mode) are written only where manufacturer and model are right. No error is passed on: a question that
/// fails makes the result false, and the next statement follows.
bool Identify(Instrument& instrument, Receiver& receiver, std::wstring& identity, std::wstring& hardware,
              int32_t& mode);

}  // namespace tvn2x
