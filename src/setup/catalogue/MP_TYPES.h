#pragma once

#include <cstdint>

namespace tvn2x {

/// The number of every value that the product handles. Published in the type library with these names and values; the
/// boundary names share their value with the first or last parameter of a range.
enum MP_TYPES : int32_t
{
#define PARAMETER(name, number, kind, caption, file, title, unit, format) name = number,
#define PARAMETER_BOUND(name, number) name = number,
#include "setup/catalogue/ParameterList.h"
};

}  // namespace tvn2x
