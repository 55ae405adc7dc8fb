#include "setup/catalogue/Parameters.h"

#include <algorithm>
#include <array>

namespace tvn2x {
namespace {

using enum ParameterKind;

constexpr std::array<Parameter, MP_LAST> parameters{{
#define PARAMETER(name, number, kind, caption, file, title, unit, format) \
    {name, kind, caption, file, title, unit, format},
#include "setup/catalogue/ParameterList.h"
}};

constexpr bool IsByNumber()
{
    for (size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i].number != MP_FIRST + static_cast<int32_t>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(IsByNumber());

}  // namespace

std::span<const Parameter> Parameters()
{
    return parameters;
}

const Parameter* FindParameter(int32_t number)
{
    return number >= MP_FIRST && number <= MP_LAST ? &parameters[static_cast<size_t>(number - MP_FIRST)] : nullptr;
}

std::wstring_view DefaultCaption(int32_t parameter)
{
    const Parameter* const found = FindParameter(parameter);
    return found ? found->caption : std::wstring_view();
}

std::wstring_view DisplayFormat(int32_t parameter)
{
    const Parameter* const found = FindParameter(parameter);
    return found ? found->format : std::wstring_view();
}

}  // namespace tvn2x
