#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/link/SetupReader.h"
#include "host/setup/Product.h"
#include "host/setup/SetupView.h"
#include "text/InputError.h"

namespace tvn2x {
namespace {

std::wstring Doubts(size_t count, const std::wstring& path)
{
    return fmt::format(L"{} doubtful {} in it. To see {}: tvnhost check {}", count, count == 1 ? L"thing" : L"things",
                       count == 1 ? L"it" : L"them", path);
}

std::wstring Channels(size_t count)
{
    return fmt::format(L"{} {}", count, count == 1 ? L"channel" : L"channels");
}

}  // namespace

int Show(const std::wstring& setup, Console& console)
{
    const std::wstring path = AbsolutePath(setup);
    const SetupInspection inspection = RequireUsable(ReadInput(path), path);
    const Plugin plugin;
    plugin.Load(path);
    console.Result(DescribeSetup(ReadSetup(plugin, path), console.ResultWidth()));
    if (const size_t count = inspection.remarks.size() + inspection.leftOut; count != 0) {
        console.Notice(path + L": " + Doubts(count, setup));
    }
    return exitDone;
}

int Convert(const std::wstring& oldSetup, const std::wstring& newSetup, bool forces, Console& console)
{
    const std::wstring source = AbsolutePath(oldSetup);
    const std::wstring target = AbsolutePath(newSetup);
    RequireDifferent(source, target);
    RequireNew(target, forces);
    const SetupInspection inspection = RequireUsable(ReadInput(source), source);
    const Plugin plugin;
    plugin.Load(source);
    const Setup content = ReadSetup(plugin, source);
    PendingFile pending(target);
    SaveInto(plugin, pending);
    pending.TakePlace();
    console.Result(fmt::format(L"{}: {}version {}, {}\n", source, inspection.isBackup ? L"backup copy, " : L"",
                               inspection.version, Channels(static_cast<size_t>(inspection.channels))));
    console.Result(fmt::format(L"{}: version {}, {}, {} parameters\n", target, setupVersion,
                               Channels(content.channels.size()), content.parameters.size()));
    if (content.isBackup) {
        console.Notice(fmt::format(L"{} is a backup copy of {}. The new setup is no backup copy.", source,
                                   content.realPath.empty() ? L"a setup without a file" : content.realPath));
    }
    if (const size_t count = inspection.remarks.size() + inspection.leftOut; count != 0) {
        console.Notice(source + L": " + Doubts(count, oldSetup) + L". What is not read is not in the new setup.");
    }
    return exitDone;
}

int Check(const std::wstring& setup, Console& console)
{
    const std::wstring path = AbsolutePath(setup);
    const SetupInspection inspection = InspectSetup(ReadInput(path), productName);
    for (const SetupRemark& remark : inspection.remarks) {
        console.Result(RemarkText(path, remark) + (remark.isFatal ? L" (cannot be loaded)\n" : L"\n"));
    }
    if (inspection.leftOut != 0) {
        console.Result(fmt::format(L"{}: and {} more\n", path, inspection.leftOut));
    }
    if (!inspection.IsUsable()) {
        console.Notice(path +
                       L": cannot be loaded. Correct the lines above, or make a setup with: tvnhost import PLAN "
                       L"-o SETUP");
        return exitUnusable;
    }
    Plugin().Load(path);
    const size_t count = inspection.remarks.size() + inspection.leftOut;
    console.Result(fmt::format(L"{}: {}version {}, {}: {}\n", path, inspection.isBackup ? L"backup copy, " : L"",
                               inspection.version.empty() ? L"unknown" : inspection.version,
                               Channels(static_cast<size_t>(inspection.channels)),
                               count == 0   ? std::wstring(L"nothing doubtful")
                               : count == 1 ? std::wstring(L"1 doubtful thing")
                                            : fmt::format(L"{} doubtful things", count)));
    return count == 0 ? exitDone : exitFindings;
}

}  // namespace tvn2x
