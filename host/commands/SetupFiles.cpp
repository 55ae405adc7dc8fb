#include "host/commands/SetupFiles.h"

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/setup/Product.h"
#include "host/setup/UnsavableText.h"
#include "text/InputError.h"

namespace tvn2x {

namespace {

void RequireSavable(const std::wstring& text, const std::wstring& what, bool mayHaveLines = false)
{
    if (const std::wstring reason = UnsavableText(text, mayHaveLines); !reason.empty()) {
        RaiseInput(fmt::format(L"{} cannot be saved: {}", what, reason));
    }
}

/// Finds the text that cannot stand in a setup file, and says so; returns where there is none.
void RequireSavableTexts(const Plugin& plugin)
{
    const auto& document = plugin.document;
    RequireSavable(Get<std::wstring>(document, &_clsSetup::get_LevelUnit), L"the level unit");
    RequireSavable(Get<std::wstring>(document, &_clsSetup::get_Notes), L"the notes", true);
    const long channels = Get<long>(document, &_clsSetup::get_ListSize);
    for (long channel = 1; channel <= channels; ++channel) {
        RequireSavable(Get<std::wstring>(document, &_clsSetup::get_UserField, channel),
                       fmt::format(L"the user field of channel {}", channel));
    }
    const long parameters = Get<long>(document, &_clsSetup::get_Count);
    for (long parameter = 1; parameter <= parameters; ++parameter) {
        RequireSavable(Get<std::wstring>(document, &_clsSetup::get_Caption, static_cast<MP_TYPES>(parameter)),
                       fmt::format(L"the caption of parameter {}", parameter));
    }
}

}  // namespace

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
    RequireSavableTexts(plugin);
    RequireWritten(FileFault::other, pending.Target());
}

}  // namespace tvn2x
