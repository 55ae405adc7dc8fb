#include "host/commands/ScanParts.h"

#include <algorithm>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/link/SetupReader.h"
#include "host/run/Sha256.h"
#include "text/InputError.h"

namespace tvn2x {

std::vector<ScanFile> ReadScanFiles(const std::vector<std::wstring>& setups)
{
    std::vector<ScanFile> files;
    int32_t firstChannel = 1;
    for (const std::wstring& setup : setups) {
        const std::wstring path = AbsolutePath(setup);
        if (std::ranges::any_of(files, [&](const ScanFile& file) { return IsSameFile(file.described.path, path); })) {
            RaiseInput(path + L" is given twice. Give each setup once.");
        }
        const std::string content = ReadInput(path);
        ScanFile file{.described = {}, .inspection = RequireUsable(content, path)};
        file.described.path = path;
        file.described.sha256 = Sha256(content);
        file.described.firstChannel = firstChannel;
        if (file.inspection.channels == 0) {
            RaiseInput(path + L": there is no channel to measure. Add some in the setup's editor: tvnhost edit SETUP");
        }
        firstChannel += file.inspection.channels;
        files.push_back(std::move(file));
    }
    return files;
}

ScanPart::ScanPart(const ScanFile& file) : firstChannel(file.described.firstChannel)
{
    plugin.Load(file.described.path);
    setup = ReadSetup(plugin, file.described.path);
}

std::vector<const Setup*> SetupsOf(const ScanParts& parts)
{
    std::vector<const Setup*> setups;
    std::ranges::transform(parts, std::back_inserter(setups), [](const ScanPart& part) { return &part.setup; });
    return setups;
}

std::vector<const Plugin*> PluginsOf(const ScanParts& parts)
{
    std::vector<const Plugin*> plugins;
    std::ranges::transform(parts, std::back_inserter(plugins), [](const ScanPart& part) { return &part.plugin; });
    return plugins;
}

void RequireOneLevelUnit(const ScanParts& parts)
{
    const Setup& first = parts.front().setup;
    for (const ScanPart& part : parts) {
        if (part.setup.settings.levelUnit != first.settings.levelUnit) {
            RaiseInput(
                fmt::format(L"{} shows levels in {} and {} in {}, and a run shows them in one unit. Give both "
                            L"setups the same: tvnhost edit SETUP, or scan each by itself.",
                            first.path, first.settings.levelUnit, part.setup.path, part.setup.settings.levelUnit));
        }
    }
}

const ReceiverIdentity& PartReceiver::GoOnLine(size_t part)
{
    if (part_ != part) {
        part_.reset();
        isPrepared_ = false;
        online_.reset();
        online_.emplace(parts_[part].plugin);
        part_ = part;
    }
    return online_->Identity();
}

bool PartReceiver::Prepare(size_t part)
{
    GoOnLine(part);
    if (!isPrepared_) {
        const Preparation how{.writes = options_.WritesSettings(),
                              .forces = options_.forces,
                              .measuresAsIs = options_.measuresAsIs,
                              .setsSimulator = !options_.network.empty() || options_.hasTimeScale};
        ScanPart& prepared = parts_[part];
        if (!PrepareReceiver(prepared.plugin, prepared.setup, how, stop_, console_)) {
            return false;
        }
        prepared.setup = ReadSetup(prepared.plugin, prepared.setup.path);
        isPrepared_ = true;
    }
    return true;
}

}  // namespace tvn2x
