#include <windows.h>

#include <shlobj.h>

#include "Version.h"
#include "com/Module.h"
#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/InstallationCheck.h"
#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// Letters that setups hold everywhere: those of the level units.
constexpr wchar_t usualLetters[] = L"dBµV";

void CheckCodePage(Diagnosis& diagnosis)
{
    const UINT codePage = GetACP();
    diagnosis.facts.emplace_back(L"Code page", std::to_wstring(codePage));
    BOOL isLost = FALSE;
    char bytes[16];
    if (codePage != CP_UTF8 && (WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, usualLetters, -1, bytes, sizeof bytes,
                                                    nullptr, &isLost) == 0 ||
                                isLost)) {
        diagnosis.complaints.push_back(
            {fmt::format(L"The code page {} has no letters for the level unit {}", codePage, usualLetters),
             L"Setups with it are saved as UTF-16, which older programs do not read. For those set the language for "
             L"programs without Unicode to one of western Europe"});
    }
}

void CheckLocale(Diagnosis& diagnosis)
{
    wchar_t mark[16] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, static_cast<int>(std::size(mark)));
    diagnosis.facts.emplace_back(L"Decimal mark", mark);
    if (std::wcslen(mark) != 1 || std::wcschr(L"0123456789+-eE \"", mark[0])) {
        diagnosis.complaints.push_back(
            {fmt::format(L"The decimal mark is \"{}\": numbers with it cannot be read back", mark),
             L"Set it to one character, such as . or , in the system's settings for the region"});
    }
}

/// Where setups lie: the user's documents, and the folder in which the program was started.
void CheckFolders(Diagnosis& diagnosis)
{
    wchar_t documents[MAX_PATH] = L"";
    SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, documents);
    const std::pair<const wchar_t*, std::wstring> folders[] = {{L"Documents", documents},
                                                               {L"Current folder", AbsolutePath(L".")}};
    for (const auto& [name, folder] : folders) {
        diagnosis.facts.emplace_back(name, folder);
        try {
            const PendingFile trial(folder + L"\\TVN2x doctor.ini");
        } catch (const RaisedError& error) {
            diagnosis.complaints.push_back(
                {fmt::format(L"No file can be made in {}: {}", folder, error.description),
                 L"Save setups and results in a folder that you may write to, or have the rights changed"});
        }
    }
}

/// Whether the plug-in and its receiver can be had, and who that is.
void CheckReceiverIdentity(Diagnosis& diagnosis)
{
    try {
        const Plugin plugin;
        const OnLine online(plugin);
        diagnosis.facts.emplace_back(L"Receiver", online.Identity().text);
    } catch (const RaisedError& error) {
        diagnosis.complaints.push_back({L"No receiver can be had: " + ErrorText(error),
                                        L"Put right what else is wrong, then connect the receiver, or go on with the "
                                        L"simulated one: --receiver simulated"});
    }
}

}  // namespace

int Doctor(bool asJson, Console& console)
{
    Diagnosis diagnosis;
    diagnosis.facts = {{L"tvnhost", FromUtf8(TVN_VERSION)},
                       {L"Bits", std::to_wstring(8 * sizeof(void*))},
                       {L"Program", com::Module::FileName()}};
    CheckCodePage(diagnosis);
    CheckLocale(diagnosis);
    CheckFolders(diagnosis);
    CheckRegistration(diagnosis);
    CheckReceiverIdentity(diagnosis);
    console.Result(asJson ? FromUtf8(DiagnosisJson(diagnosis)) : DiagnosisText(diagnosis, console.ResultWidth()));
    return diagnosis.IsHealthy() ? exitDone : exitFindings;
}

}  // namespace tvn2x
