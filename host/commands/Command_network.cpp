#include <algorithm>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/PlanSource.h"
#include "host/console/Files.h"
#include "host/plan/NetworkWriter.h"
#include "text/TextInput.h"
#include "util/FileSystem.h"

namespace tvn2x {

int Network(const NetworkOptions& options, Console& console)
{
    const std::wstring modelPath = AbsolutePath(options.model);
    if (!options.plan.file.empty()) {
        RequireDifferent(AbsolutePath(options.plan.file), modelPath);
    }
    RequireNew(modelPath, options.forces);
    const ChannelPlan plan = LoadPlan(options.plan);
    const NetworkDraft network = DraftNetwork(plan, options.seed, !options.isClean);
    for (const auto* remarks : {&plan.leftOut, &network.leftOut}) {
        for (const PlanRemark& remark : *remarks) {
            console.Notice(AtLine(options.plan.file, remark.line) + L"left out: " + remark.text);
        }
    }
    RequireWritten(ReplaceContent(SystemFiles(), modelPath, WriteNetworkModel(network, NameOf(options.plan))),
                   modelPath);

    const auto impaired =
        std::ranges::count_if(network.channels, [](const auto& channel) { return !channel.fault.empty(); });
    console.Result(
        fmt::format(L"{}: {} channels, {} of them impaired\n", modelPath, network.channels.size(), impaired));
    for (const NetworkChannel& channel : network.channels) {
        if (!channel.fault.empty()) {
            console.Result(fmt::format(L"  {:<8} {}\n", channel.label, channel.fault));
        }
    }
    return exitDone;
}

}  // namespace tvn2x
