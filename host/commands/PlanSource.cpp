#include "host/commands/PlanSource.h"

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/console/Files.h"
#include "text/InputError.h"

namespace tvn2x {

ChannelPlan LoadPlan(const PlanSource& source)
{
    if (!source.file.empty()) {
        return ReadChannelPlan(ReadInput(AbsolutePath(source.file)), source.file, source.defaults);
    }
    if (source.to == 0) {
        RaiseInput(L"a channel plan is required, or --from 306 --to 858 --step 8.");
    }
    constexpr double usualSymbolRate = 6.9;  // MSymb/s, in channels of 8 MHz
    PlanDefaults defaults = source.defaults;
    defaults.symbolRate = defaults.symbolRate == 0 ? usualSymbolRate : defaults.symbolRate;
    return RasterPlan(source.from, source.to, source.step, defaults);
}

std::wstring NameOf(const PlanSource& source)
{
    if (source.file.empty()) {
        return fmt::format(L"{:g} to {:g} MHz", source.from, source.to);
    }
    const std::wstring path = AbsolutePath(source.file);
    return path.substr(path.find_last_of(L'\\') + 1);
}

}  // namespace tvn2x
