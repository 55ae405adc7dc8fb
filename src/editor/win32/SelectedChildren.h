#pragma once

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace tvn2x {

/// The numbers of children, one after the other. Begins with one reference.
class SelectedChildren final : public IEnumVARIANT
{
public:
    explicit SelectedChildren(std::vector<long> children) : children_(std::move(children)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object) {
            return E_POINTER;
        }
        const bool isKnown = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IEnumVARIANT);
        *object = isKnown ? this : nullptr;
        references_ += isKnown ? 1 : 0;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept override
    {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override
    {
        if (!values) {
            return E_POINTER;
        }
        ULONG taken = 0;
        for (; taken < count && next_ < children_.size(); ++taken, ++next_) {
            values[taken] = {};
            values[taken].vt = VT_I4;
            values[taken].lVal = children_[next_];
        }
        if (fetched) {
            *fetched = taken;
        }
        return taken == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override
    {
        const size_t left = children_.size() - next_;
        next_ += std::min<size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override
    {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** clone) noexcept override
    {
        if (!clone) {
            return E_POINTER;
        }
        *clone = nullptr;
        try {
            auto* const made = new SelectedChildren(children_);
            made->next_ = next_;
            *clone = made;
            return S_OK;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }

private:
    ~SelectedChildren() = default;

    ULONG references_ = 1;
    std::vector<long> children_;
    size_t next_ = 0;
};

}  // namespace tvn2x
