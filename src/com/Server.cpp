#include "com/Server.h"

#include "com/ComPtr.h"
#include "com/Counted.h"
#include "com/Errors.h"
#include "com/Module.h"
#include "com/Registration.h"

namespace tvn2x::com {
namespace {

/// Makes objects of one class.
class ClassFactory final : public Counted<IClassFactory>
{
public:
    explicit ClassFactory(const ServedClass& served) : served_(served) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** out) noexcept override
    {
        if (!out) {
            return Refuse(E_POINTER);
        }
        *out = nullptr;
        if (outer) {
            return CLASS_E_NOAGGREGATION;
        }
        HRESULT result = E_UNEXPECTED;
        const HRESULT guarded = Guard(IID_IClassFactory, [&] { result = served_.create(id, out); });
        return FAILED(guarded) ? guarded : result;
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override
    {
        lock ? Module::Lock() : Module::Unlock();
        return S_OK;
    }

private:
    const ServedClass& served_;
};

}  // namespace

HRESULT Server::ClassObject(REFCLSID classId, REFIID interfaceId, void** out) const noexcept
{
    if (!out) {
        return Refuse(E_POINTER);
    }
    *out = nullptr;
    for (const ServedClass& served : classes_) {
        if (served.id != classId) {
            continue;
        }
        HRESULT result = E_UNEXPECTED;
        const HRESULT guarded = Guard(IID_IClassFactory, [&] {
            result = ComPtr<ClassFactory>::Attach(new ClassFactory(served))->QueryInterface(interfaceId, out);
        });
        return FAILED(guarded) ? guarded : result;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT Server::Register(RegisteredFor whom) const noexcept
{
    return Guard(IID_NULL, [&] {
        Registration registration(typeLibrary_, whom);
        registration.Add(classes_);
        registration.AddTypeLibraries(libraryClaim_);
        registration.Keep();
    });
}

HRESULT Server::Unregister(RegisteredFor whom) const noexcept
{
    return Guard(IID_NULL, [&] {
        Registration registration(typeLibrary_, whom);
        for (const ServedClass& served : classes_) {
            registration.Remove(served);
        }
        registration.RemoveTypeLibraries(libraryClaim_);
        registration.Keep();
    });
}

HRESULT Server::Install(bool isInstalled, const wchar_t* words) const noexcept
{
    const bool isForUser = words && CompareStringOrdinal(words, -1, L"user", -1, TRUE) == CSTR_EQUAL;
    if (!isForUser && words && *words) {
        return E_INVALIDARG;
    }
    const RegisteredFor whom = isForUser ? RegisteredFor::user : RegisteredFor::machine;
    return isInstalled ? Register(whom) : Unregister(whom);
}

}  // namespace tvn2x::com
