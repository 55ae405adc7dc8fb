#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

namespace tvn2x::com {

/// A BSTR of one's own. Running out of memory throws std::bad_alloc.
class Bstr
{
public:
    Bstr() = default;
    explicit Bstr(std::wstring_view text);
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
    ~Bstr() { SysFreeString(text_); }

    /// Takes over a text that the caller would have to free.
    static Bstr Attach(BSTR text)
    {
        Bstr result;
        result.text_ = text;
        return result;
    }

    BSTR Get() const { return text_; }
    BSTR Detach();
    /// The place for an out argument; what was held is freed.
    BSTR* Put();
    std::wstring_view View() const;

private:
    BSTR text_ = nullptr;
};

/// The text of a BSTR, which may be null and may hold NULs.
std::wstring_view ViewOf(BSTR text);

/// An identity as the registry spells it.
std::wstring TextOf(REFGUID id);

/// A BSTR that the receiver of it frees.
BSTR NewBstr(std::wstring_view text);

}  // namespace tvn2x::com
