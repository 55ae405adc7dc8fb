#include "host/run/ParameterNames.h"

#include <algorithm>
#include <string>

#include "setup/catalogue/Parameters.h"
#include "text/Blanks.h"
#include "text/Folding.h"
#include "text/InputError.h"
#include "text/TextInput.h"

namespace tvn2x {
namespace {

int32_t ParameterOf(std::wstring_view name)
{
    std::wstring all;
    for (const Parameter& known : Parameters().subspan(MP_FIRSTFIXED - MP_FIRST)) {
        if (EqualIgnoringCase(name, known.name)) {
            return known.number;
        }
        AddToList(all, known.name);
    }
    RaiseInput(L"--parameters: " + Excerpt(name) + L" is no parameter. Choose from " + all + L".");
}

}  // namespace

std::vector<int32_t> SelectParameters(std::wstring_view list)
{
    std::vector<int32_t> parameters;
    for (size_t begin = 0; begin <= list.size();) {
        const size_t end = std::min(list.find(L',', begin), list.size());
        const int32_t parameter = ParameterOf(TrimBlanks(list.substr(begin, end - begin)));
        if (std::ranges::find(parameters, parameter) == parameters.end()) {
            parameters.push_back(parameter);
        }
        begin = end + 1;
    }
    return parameters;
}

}  // namespace tvn2x
