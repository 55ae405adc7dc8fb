#include "editor/win32/Theme.h"

namespace tvn2x {

HINSTANCE OwnModule()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&OwnModule), &module);
    return module;
}

ThemeScope::ThemeScope()
{
    constexpr WORD isolationAwareManifest = 2;
    ACTCTXW wanted{};
    wanted.cbSize = sizeof wanted;
    wanted.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    wanted.hModule = OwnModule();
    wanted.lpResourceName = MAKEINTRESOURCEW(isolationAwareManifest);
    context_ = CreateActCtxW(&wanted);
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
}

ThemeScope::~ThemeScope()
{
    if (active_) {
        DeactivateActCtx(0, cookie_);
    }
    if (context_ != INVALID_HANDLE_VALUE) {
        ReleaseActCtx(context_);
    }
}

}  // namespace tvn2x
