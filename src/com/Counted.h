#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

#include "com/Errors.h"
#include "com/Module.h"

namespace tvn2x::com {

/// A counted object with one interface and no error information. Born with one reference.
template <class Interface>
class Counted : public Interface
{
public:
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept final
    {
        if (!out) {
            return Refuse(E_POINTER);
        }
        const bool known = id == IID_IUnknown || id == __uuidof(Interface);
        *out = known ? static_cast<Interface*>(this) : nullptr;
        if (known) {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }

    ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }

    ULONG STDMETHODCALLTYPE Release() noexcept final
    {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

protected:
    Counted() = default;
    virtual ~Counted() = default;

private:
    ModuleLock lock_;
    std::atomic<ULONG> references_{1};
};

}  // namespace tvn2x::com
