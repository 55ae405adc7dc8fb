#pragma once

#include <oleauto.h>

#include "TVNINT.h"
#include "XKTR2x.h"
#include "com/Wire.h"
#include "support/ReceiverAnswers.h"
#include "support/StaticObject.h"

namespace tvn2x::bench {

/// A static object that is called by its members only.
template <class Interface>
using Null = Lasting<Interface, EarlyBound<Interface>>;

template <class Value>
HRESULT Answer(Value* out, Value value) noexcept
{
    *out = value;
    return S_OK;
}

inline HRESULT Answer(LONG* out, int32_t value) noexcept
{
    *out = value;
    return S_OK;
}

inline HRESULT Answer(VARIANT_BOOL* out, bool value) noexcept
{
    *out = com::ToWire(value);
    return S_OK;
}

inline HRESULT Answer(BSTR* out, const std::wstring& text) noexcept
{
    *out = SysAllocString(text.c_str());
    return S_OK;
}

class NullCounters final : public Null<IErrorCounters>
{
public:
    HRESULT STDMETHODCALLTYPE get_SyncErrors(double* value) noexcept override { return Answer(value, 0.0); }
    HRESULT STDMETHODCALLTYPE get_DataErrors(double* value) noexcept override { return Answer(value, 0.0); }
    HRESULT STDMETHODCALLTYPE get_Unavailable(double* value) noexcept override { return Answer(value, 0.0); }
};

/// A synchronised receiver that answers at once. No bit error count runs: it would take its time. No
/// option is installed.
class NullDriver final : public Null<IReceiver>
{
public:
    NullDriver()
    {
        answers_.BerState = L"---";
        answers_.InstalledOptions.clear();
    }

#define RECEIVER_READING(name, parameter)                           \
    HRESULT STDMETHODCALLTYPE name(double* value) noexcept override \
    {                                                               \
        return Answer(value, answers_.name);                        \
    }
#define RECEIVER_STATE(Type, name)                                                 \
    HRESULT STDMETHODCALLTYPE get_##name(com::Wire<Type>* value) noexcept override \
    {                                                                              \
        return Answer(value, answers_.name);                                       \
    }
#define RECEIVER_COUNTERS(name)                                                    \
    HRESULT STDMETHODCALLTYPE get_##name(IErrorCounters** value) noexcept override \
    {                                                                              \
        return Answer<IErrorCounters*>(value, &counters_);                         \
    }
#define RECEIVER_SETTING(Type, name)                                        \
    RECEIVER_STATE(Type, name)                                              \
    HRESULT STDMETHODCALLTYPE put_##name(com::Wire<Type>) noexcept override \
    {                                                                       \
        return S_OK;                                                        \
    }
#define RECEIVER_ACTION(name)                          \
    HRESULT STDMETHODCALLTYPE name() noexcept override \
    {                                                  \
        return S_OK;                                   \
    }
#include "setup/catalogue/ReceiverOperations.h"

private:
    ReceiverAnswers answers_ = GoodAnswers();
    NullCounters counters_;
};

class NullRun final : public Null<IRunControl>
{
public:
    HRESULT STDMETHODCALLTYPE get_StopFlag(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_FALSE});
    }
    HRESULT STDMETHODCALLTYPE put_StopFlag(VARIANT_BOOL) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Pause(float) noexcept override { return S_OK; }
};

class NullHost final : public Null<IMeasureParent>
{
public:
    HRESULT STDMETHODCALLTYPE Status(BSTR) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Progress(double, VARIANT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CellChanged(LONG, SHORT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ChannelStart(double, VARIANT) noexcept override { return S_OK; }
};

}  // namespace tvn2x::bench
