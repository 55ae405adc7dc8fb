#include "com/TypeLibrary.h"

#include <windows.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "com/ComPtr.h"
#include "com/Errors.h"
#include "com/Module.h"

namespace tvn2x::com {
namespace {

using TypeInfos = std::vector<std::pair<IID, ComPtr<ITypeInfo>>>;

std::mutex guard;
// Never destroyed by the end of the process: by then the system library that owns the objects may be gone.
TypeInfos* known;

ComPtr<ITypeInfo> ReadTypeInfo(REFIID interfaceId)
{
    HRESULT result = TYPE_E_ELEMENTNOTFOUND;
    for (int resource = 1; const auto library = EmbeddedLibrary(resource); ++resource) {
        ComPtr<ITypeInfo> info;
        result = library->GetTypeInfoOfGuid(interfaceId, info.Put());
        if (SUCCEEDED(result)) {
            return info;
        }
    }
    ThrowFailure(result, nullptr, interfaceId);
}

}  // namespace

ComPtr<ITypeLib> EmbeddedLibrary(int resource)
{
    ComPtr<ITypeLib> library;
    if (FindResourceW(Module::Instance(), MAKEINTRESOURCEW(resource), L"TYPELIB")) {
        const std::wstring path = Module::FileName() + L"\\" + std::to_wstring(resource);
        Check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()), library.Get());
    }
    return library;
}

ITypeInfo* TypeInfoOf(REFIID interfaceId)
{
    const std::lock_guard lock(guard);
    if (!known) {
        known = new TypeInfos;
    }
    for (const auto& [id, info] : *known) {
        if (id == interfaceId) {
            return info.Get();
        }
    }
    known->emplace_back(interfaceId, ReadTypeInfo(interfaceId));
    return known->back().second.Get();
}

void ForgetTypeInfo()
{
    delete std::exchange(known, nullptr);
}

}  // namespace tvn2x::com
