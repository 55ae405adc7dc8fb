#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "text/InputError.h"

namespace tvn2x {

int Edit(const EditOptions& options, Console& console)
{
    if (options.setup.empty() && options.output.empty()) {
        RaiseInput(
            L"edit: name the setup to edit (tvnhost edit SETUP), or the file of a new one (tvnhost edit -o FILE)");
    }
    const Plugin plugin;
    const std::wstring source = options.setup.empty() ? L"" : AbsolutePath(options.setup);
    const std::wstring target = options.output.empty() ? source : AbsolutePath(options.output);
    if (!options.output.empty()) {
        RequireNew(target, options.forces);
    }
    if (!source.empty()) {
        RequireUsable(ReadInput(source), source);
        plugin.Load(source);
    }
    if (!Get<VARIANT_BOOL>(plugin.setup, &ISetup::Edit)) {
        console.Notice(L"cancelled: nothing was saved");
        return exitStopped;
    }
    if (options.output.empty()) {
        SaveInPlace(plugin, target);
    } else {
        PendingFile pending(target);
        SaveInto(plugin, pending);
        pending.TakePlace();
    }
    const long channels = Get<long>(plugin.document, &_clsSetup::get_ListSize);
    console.Result(fmt::format(L"{}: {} {}\n", target, channels, channels == 1 ? L"channel" : L"channels"));
    return exitDone;
}

}  // namespace tvn2x
