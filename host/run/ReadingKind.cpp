#include "host/run/ReadingKind.h"

#include <algorithm>
#include <vector>

#include "text/Folding.h"
#include "text/TextInput.h"

namespace tvn2x {
namespace {

std::vector<ReadingKind> Kinds()
{
    std::vector<ReadingKind> kinds;
    for (const Parameter& parameter : Parameters()) {
        const bool isLock = parameter.kind == ParameterKind::lock;
        const bool isRatio = parameter.kind == ParameterKind::ratio;
        if (isLock || isRatio || parameter.kind == ParameterKind::reading) {
            kinds.push_back({parameter.number, parameter.name, parameter.title, parameter.unit, isLock, isRatio});
        }
    }
    kinds.push_back({.parameter = levelStep, .name = "step", .title = L"level step", .unit = L"dB"});
    return kinds;
}

}  // namespace

std::span<const ReadingKind> ReadingKinds()
{
    static const std::vector<ReadingKind> kinds = Kinds();
    return kinds;
}

const ReadingKind* FindReadingKind(int32_t parameter)
{
    const auto found = std::ranges::find(ReadingKinds(), parameter, &ReadingKind::parameter);
    return found == ReadingKinds().end() ? nullptr : &*found;
}

const ReadingKind* FindReadingKind(std::wstring_view name)
{
    const auto found = std::ranges::find_if(
        ReadingKinds(), [&](const ReadingKind& kind) { return EqualIgnoringCase(name, kind.name); });
    return found == ReadingKinds().end() ? nullptr : &*found;
}

const wchar_t* UnitOfDifference(const ReadingKind& kind)
{
    return kind.isRatio ? L"decades" : kind.parameter == MP_RFLEV ? L"dB" : kind.unit;
}

}  // namespace tvn2x
