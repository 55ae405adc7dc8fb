#pragma once

#include "host/report/Diagnosis.h"

namespace tvn2x {

/// Adds what is registered of the product, for the user and for the machine, for programs of both word lengths, and
/// what is wrong with it: entries that lead nowhere, half a registration, libraries that do not fit together, a second
/// installation beside the first, a choice of receivers that names nothing.
void CheckRegistration(Diagnosis& diagnosis);

}  // namespace tvn2x
