#pragma once

#include <windows.h>

#include <ocidl.h>

#include <atomic>
#include <type_traits>

#include "com/ComPtr.h"
#include "com/Dispatch.h"
#include "com/Module.h"
#include "com/TypeLibrary.h"
#include "util/FloatingPoint.h"

namespace tvn2x::com {

/// A COM object: one reference count, one identity, a default dual interface and error information. Interfaces beside
/// the default one are member objects (Member) that the object hands out through FindInterface. Where the object is of
/// a published class, its type information names it, so that a script language can tell what it holds.
template <class Default, class PublishedClass = void>
class Object : public Dispatch<Default>, public ISupportErrorInfo, public IProvideClassInfo
{
public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept final
    {
        if (!out) {
            return Refuse(E_POINTER);
        }
        *out = FindPointer(id);
        if (!*out) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }

    ULONG STDMETHODCALLTYPE Release() noexcept final
    {
        const ULONG left = --references_;
        if (left == 0) {
            const OwnFloatingPoint floatingPoint;
            // What the destructor releases may come back for a moment: it must not destroy the object a second time.
            references_ = dying;
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept final
    {
        const bool isOfTheKit = id == IID_IUnknown || id == IID_ISupportErrorInfo || id == IID_IProvideClassInfo;
        return !isOfTheKit && FindPointer(id) ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** out) noexcept final
    {
        if (!out) {
            return Refuse(E_POINTER);
        }
        *out = nullptr;
        if constexpr (isPublished) {
            return Guard(IID_IProvideClassInfo, [&] { *out = ComPtr(TypeInfoOf(__uuidof(PublishedClass))).Detach(); });
        } else {
            return Refuse(E_NOTIMPL);
        }
    }

protected:
    Object() = default;
    virtual ~Object() = default;

    /// Counts a reference unless the last one is gone. For whoever knows the object without holding it, while its
    /// destructor is kept from ending.
    bool AddRefWhileAlive() noexcept
    {
        ULONG count = references_;
        while (count != 0 && count < dying) {
            if (references_.compare_exchange_weak(count, count + 1)) {
                return true;
            }
        }
        return false;
    }

    /// The address of another interface of the object, not counted; null where it has none.
    virtual void* FindInterface(REFIID) noexcept { return nullptr; }

private:
    static constexpr ULONG dying = 0x40000000;
    static constexpr bool isPublished = !std::is_void_v<PublishedClass>;

    void* FindPointer(REFIID id) noexcept
    {
        if (id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(Default)) {
            return static_cast<Default*>(this);
        }
        if (id == IID_ISupportErrorInfo) {
            return static_cast<ISupportErrorInfo*>(this);
        }
        if (isPublished && id == IID_IProvideClassInfo) {
            return static_cast<IProvideClassInfo*>(this);
        }
        return FindInterface(id);
    }

    ModuleLock lock_;
    std::atomic<ULONG> references_{0};
};

/// A further interface of an object: forwards identity and count to its owner.
template <class MemberInterface, class Owner>
class Member : public Dispatch<MemberInterface>
{
public:
    using Interface = MemberInterface;

    explicit Member(Owner& owner) : owner_(owner) {}
    Member(const Member&) = delete;
    Member& operator=(const Member&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        return owner_.QueryInterface(id, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return owner_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return owner_.Release(); }

protected:
    ~Member() = default;

    Owner& owner_;
};

}  // namespace tvn2x::com
