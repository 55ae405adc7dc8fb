#include "com/Module.h"

#include <atomic>

namespace tvn2x::com {
namespace {

HINSTANCE moduleInstance;
std::atomic<long> locks;

}  // namespace

void Module::Instance(HINSTANCE instance)
{
    moduleInstance = instance;
}

HINSTANCE Module::Instance()
{
    return moduleInstance;
}

std::wstring Module::FileName()
{
    std::wstring name(260, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(moduleInstance, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) {
            name.resize(length);
            return name;
        }
        name.resize(name.size() * 2);
    }
}

std::wstring Module::Folder()
{
    const std::wstring name = FileName();
    const size_t end = name.find_last_of(L"\\/");
    if (end == std::wstring::npos) {
        return {};
    }
    return name.substr(0, end == 2 ? 3 : end);
}

void Module::Lock()
{
    ++locks;
}

void Module::Unlock()
{
    --locks;
}

bool Module::CanUnload()
{
    return locks == 0;
}

}  // namespace tvn2x::com
