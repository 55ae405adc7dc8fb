#pragma once

#include <windows.h>

#include <unknwn.h>

#include <cstddef>
#include <utility>

namespace tvn2x::com {

/// A counted reference to a COM object. Used at the border only; the core knows no COM.
template <class T>
class ComPtr
{
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}
    explicit ComPtr(T* object) : object_(object)
    {
        if (object_) {
            object_->AddRef();
        }
    }
    ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~ComPtr() { Reset(); }

    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Takes over a reference that is counted already.
    static ComPtr Attach(T* object)
    {
        ComPtr result;
        result.object_ = object;
        return result;
    }

    /// Gives the counted reference away.
    T* Detach() { return std::exchange(object_, nullptr); }

    /// Releases what is held and hands out the place for an out argument.
    T** Put()
    {
        Reset();
        return &object_;
    }

    void Reset()
    {
        if (T* object = std::exchange(object_, nullptr)) {
            object->Release();
        }
    }

    /// The object's other interface, empty where it has none.
    template <class U>
    ComPtr<U> As() const
    {
        void* found = nullptr;
        // What an object leaves behind with a failure is no interface.
        if (object_ && FAILED(object_->QueryInterface(__uuidof(U), &found))) {
            found = nullptr;
        }
        return ComPtr<U>::Attach(static_cast<U*>(found));
    }

    T* Get() const { return object_; }
    T* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    T* object_ = nullptr;
};

}  // namespace tvn2x::com
