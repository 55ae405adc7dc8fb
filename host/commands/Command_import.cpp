#include <deque>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/PlanSource.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/setup/Product.h"
#include "host/setup/SetupDraft.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/Clock.h"

namespace tvn2x {
namespace {

std::wstring NotesText(const ImportOptions& options, const ChannelPlan& plan)
{
    const DateTime now = SystemClock().Now();
    const std::wstring& title = options.title.empty() ? plan.title : options.title;
    return fmt::format(L"{}{}Imported from {} on {:04}-{:02}-{:02} {:02}:{:02}", title, title.empty() ? L"" : L"\r\n",
                       NameOf(options.plan), now.year, now.month, now.day, now.hour, now.minute);
}

void FillSetup(const Plugin& plugin, const SetupDraft& draft, const ImportOptions& options, const std::wstring& notes)
{
    const auto& document = plugin.document;
    Call(document, &_clsSetup::put_OrderOfQam, draft.orderOfQam);
    Call(document, &_clsSetup::put_DefaultSymbolRate, draft.defaultSymbolRate);
    Call(document, &_clsSetup::put_BerSamples, options.berSamples);
    Call(document, &_clsSetup::put_MaxSettlingTime, options.maxSettlingTime);
    Call(document, &_clsSetup::put_LevelUnit, com::Bstr(options.levelUnit).Get());
    Call(document, &_clsSetup::put_Notes, com::Bstr(notes).Get());
    Call(document, &_clsSetup::put_ListSize, static_cast<long>(draft.channels.size()));
    long index = 0;
    for (const PlanChannel& channel : draft.channels) {
        ++index;
        Call(document, &_clsSetup::put_Frequency, index, channel.frequency);
        Call(document, &_clsSetup::put_SymbolRate, index, channel.symbolRate);
        Call(document, &_clsSetup::put_UserField, index, com::Bstr(channel.Label()).Get());
    }
    Call(plugin.setup, &ISetup::put_Mode, 4);
}

std::wstring Summary(const SetupDraft& draft)
{
    const double lowest = draft.channels.front().frequency;
    if (draft.channels.size() == 1) {
        return fmt::format(L"{}: 1 channel, {}-QAM, {:g} MHz\n", draft.path, draft.orderOfQam, lowest);
    }
    return fmt::format(L"{}: {} channels, {}-QAM, {:g} to {:g} MHz\n", draft.path, draft.channels.size(),
                       draft.orderOfQam, lowest, draft.channels.back().frequency);
}

void Report(const PlanRemark& remark, const ImportOptions& options, const wchar_t* what, Console& console)
{
    console.Notice(AtLine(options.plan.file, remark.line) + what + remark.text);
}

/// How the setups of a mixed plan become one run again.
std::wstring ScanAdvice(const SetupDrafts& drafts)
{
    std::wstring text = L"To scan them as one network: tvnhost scan";
    for (const SetupDraft& draft : drafts.setups) {
        text += draft.path.find(L' ') == std::wstring::npos ? L" " + draft.path : L" \"" + draft.path + L"\"";
    }
    return text + L" --write";
}

}  // namespace

int Import(const ImportOptions& options, Console& console)
{
    const ChannelPlan plan = LoadPlan(options.plan);
    const SetupDrafts drafts = DraftSetups(plan, AbsolutePath(options.setup));
    for (const PlanRemark& remark : plan.leftOut) {
        Report(remark, options, L"left out: ", console);
    }
    for (const PlanRemark& notice : drafts.notices) {
        Report(notice, options, L"", console);
    }
    if (drafts.setups.size() > 1) {
        console.Notice(fmt::format(L"The plan mixes {} orders of QAM, and a setup has one: {} setups are written.",
                                   drafts.setups.size(), drafts.setups.size()));
    }
    for (const SetupDraft& draft : drafts.setups) {
        if (!options.plan.file.empty()) {
            RequireDifferent(AbsolutePath(options.plan.file), draft.path);
        }
        RequireNew(draft.path, options.forces);
    }
    const std::wstring notes = NotesText(options, plan);
    // All of them or none: each is written before the first one takes its place.
    std::deque<PendingFile> pending;
    for (const SetupDraft& draft : drafts.setups) {
        const Plugin plugin;
        FillSetup(plugin, draft, options, notes);
        // What is saved into is empty: with --force an older setup of the same name is replaced whole, not merged.
        SaveInto(plugin, pending.emplace_back(draft.path));
    }
    for (PendingFile& file : pending) {
        file.TakePlace();
    }
    for (const SetupDraft& draft : drafts.setups) {
        console.Result(Summary(draft));
    }
    if (drafts.setups.size() > 1) {
        console.Notice(ScanAdvice(drafts));
    }
    return exitDone;
}

}  // namespace tvn2x
