#include <algorithm>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/Files.h"
#include "host/plan/ChannelPlan.h"
#include "host/plan/ChannelRaster.h"
#include "host/plan/NetworkWriter.h"
#include "text/TextInput.h"

namespace tvn2x {

int Network(const NetworkOptions& options, Console& console)
{
    const std::wstring planPath = AbsolutePath(options.plan);
    const std::wstring modelPath = AbsolutePath(options.model);
    RequireDifferent(planPath, modelPath);
    const ChannelPlan plan = ReadChannelPlan(ReadInput(planPath), options.plan, options.orderForAuto);
    const NetworkDraft network = DraftNetwork(plan, options.seed, !options.isClean);
    for (const auto* remarks : {&plan.leftOut, &network.leftOut}) {
        for (const PlanRemark& remark : *remarks) {
            console.Notice(AtLine(options.plan, remark.line) + L"left out: " + remark.text);
        }
    }
    const std::wstring planName = planPath.substr(planPath.find_last_of(L'\\') + 1);
    RequireWritten(SaveNetworkModel(SystemFiles(), modelPath, network, planName), modelPath);

    const auto impaired =
        std::ranges::count_if(network.channels, [](const auto& channel) { return !channel.fault.empty(); });
    console.Result(
        fmt::format(L"{}: {} channels, {} of them impaired\n", modelPath, network.channels.size(), impaired));
    for (const NetworkChannel& channel : network.channels) {
        if (!channel.fault.empty()) {
            console.Result(fmt::format(L"  {:<8} {}\n", ChannelLabel(channel.frequency), channel.fault));
        }
    }
    return exitDone;
}

}  // namespace tvn2x
