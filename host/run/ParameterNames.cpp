#include "host/run/ParameterNames.h"

#include <algorithm>
#include <array>
#include <string>

#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/Encoding.h"

namespace tvn2x {

namespace {

constexpr std::array<const char*, lastParameter - firstFixedParameter + 1> names{
    "userfield", "frequency", "symbolrate", "status",  "timestamp", "rflev", "ber", "freqoff", "ref", "sync", "data",
    "iqimbal",   "iqphase",   "cs",         "phasjit", "ci",        "sn",    "mer", "merpct",  "sy",  "de"};

int32_t ParameterOf(const std::string& name)
{
    const auto found = std::ranges::find_if(names, [&](const char* known) { return EqualIgnoringCase(known, name); });
    if (found == names.end()) {
        std::string all;
        for (const char* known : names) {
            all += (all.empty() ? "" : ", ") + std::string(known);
        }
        RaiseInput(L"--parameters: " + Excerpt(name) + L" is no parameter. Choose from " + FromUtf8(all) + L".");
    }
    return firstFixedParameter + static_cast<int32_t>(found - names.begin());
}

}  // namespace

std::vector<int32_t> SelectParameters(std::wstring_view list)
{
    std::vector<int32_t> parameters;
    for (size_t begin = 0; begin <= list.size();) {
        const size_t end = std::min(list.find(L',', begin), list.size());
        const int32_t parameter = ParameterOf(ToUtf8(TrimBlanks(std::wstring(list.substr(begin, end - begin)))));
        if (std::ranges::find(parameters, parameter) == parameters.end()) {
            parameters.push_back(parameter);
        }
        begin = end + 1;
    }
    return parameters;
}

}  // namespace tvn2x
