#include "util/CodePage.h"

#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// UTF-8, in which nothing is lost.
class Utf8 : public CodePage
{
public:
    std::string Encode(std::wstring_view text) const override { return ToUtf8(text); }
    std::wstring Decode(std::string_view bytes) const override { return FromUtf8(bytes); }
    std::optional<std::wstring> DecodeStrictly(std::string_view bytes) const override
    {
        std::wstring text = FromUtf8(bytes);
        return ToUtf8(text) == bytes ? std::optional(std::move(text)) : std::nullopt;
    }
    size_t Length(char first) const override
    {
        const auto byte = static_cast<unsigned char>(first);
        return byte < 0xC2 || byte > 0xF4 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
    }
};

}  // namespace

const CodePage& Utf8CodePage()
{
    static const Utf8 page;
    return page;
}

}  // namespace tvn2x
