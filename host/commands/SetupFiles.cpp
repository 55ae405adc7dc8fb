#include "host/commands/SetupFiles.h"

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/link/SetupReader.h"
#include "host/setup/Product.h"
#include "host/setup/UnsavableText.h"
#include "text/InputError.h"
#include "text/TextInput.h"

namespace tvn2x {
namespace {

void RequireSavable(const std::wstring& text, const std::wstring& what, bool mayHaveLines = false)
{
    if (const std::wstring reason = UnsavableText(text, mayHaveLines); !reason.empty()) {
        RaiseInput(fmt::format(L"{} cannot be saved: {}", what, reason));
    }
}

/// Finds the text that cannot stand in a setup file, and says so; returns where there is none.
void RequireSavableTexts(const Setup& setup)
{
    RequireSavable(setup.settings.levelUnit, L"the level unit");
    RequireSavable(setup.notes, L"the notes", true);
    for (size_t i = 0; i < setup.channels.size(); ++i) {
        RequireSavable(setup.channels[i].userField, fmt::format(L"the user field of channel {}", i + 1));
    }
    for (size_t i = 0; i < setup.parameters.size(); ++i) {
        RequireSavable(setup.parameters[i].caption, fmt::format(L"the caption of parameter {}", i + 1));
    }
}

}  // namespace

std::wstring RemarkText(const std::wstring& path, const SetupRemark& remark)
{
    return (remark.line == 0 ? path + L": " : AtLine(path, remark.line)) + remark.text;
}

SetupInspection RequireUsable(const std::string& content, const std::wstring& path)
{
    SetupInspection inspection = InspectSetup(content, productName);
    std::wstring reasons;
    for (const SetupRemark& remark : inspection.remarks) {
        if (remark.isFatal) {
            reasons += (reasons.empty() ? L"" : L"\n") + RemarkText(path, remark);
        }
    }
    if (!reasons.empty()) {
        RaiseInput(reasons);
    }
    return inspection;
}

void SaveInto(const Plugin& plugin, const PendingFile& pending)
{
    const com::Bstr file(pending.Path());
    VARIANT target;
    target.vt = VT_BSTR;
    target.bstrVal = file.Get();
    const com::Bstr product(productName);
    const com::Bstr version(setupVersion);
    if (Get<VARIANT_BOOL>(plugin.setup, &ISetup::Save, product.Get(), version.Get(), target)) {
        return;
    }
    RequireSavableTexts(ReadSetup(plugin, pending.Target()));
    RequireWritten(FileFault::other, pending.Target());
}

void SaveInPlace(const Plugin& plugin, const std::wstring& path)
{
    const com::Bstr product(productName);
    const com::Bstr version(setupVersion);
    VARIANT nowhere;
    nowhere.vt = VT_ERROR;
    nowhere.scode = DISP_E_PARAMNOTFOUND;
    if (!Get<VARIANT_BOOL>(plugin.setup, &ISetup::Save, product.Get(), version.Get(), nowhere)) {
        RaiseInput(path +
                   L": the setup could not be saved, the file is as it was. See whether it is write-protected or open "
                   L"elsewhere, or give another file with -o FILE");
    }
}

}  // namespace tvn2x
