#include "host/serve/ListenAddress.h"

#include <charconv>
#include <optional>

#include "boost/asio/ip/address.hpp"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using boost::asio::ip::address;

std::optional<address> AddressIn(std::string_view text)
{
    if (text.starts_with('[') && text.ends_with(']')) {
        text = text.substr(1, text.size() - 2);
    }
    boost::system::error_code error;
    const address read = boost::asio::ip::make_address(std::string(text), error);
    return error ? std::nullopt : std::optional(read);
}

std::optional<uint16_t> PortIn(std::string_view text)
{
    uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(port) : std::nullopt;
}

}  // namespace

bool ListenAddress::IsLoopback() const
{
    return AddressIn(address)->is_loopback();
}

std::string ListenAddress::Link() const
{
    const auto where = *AddressIn(address);
    const std::string host = !where.is_unspecified() ? address : where.is_v6() ? "::1" : "127.0.0.1";
    return "http://" + (where.is_v6() ? "[" + host + "]" : host) + ":" + std::to_string(port) + "/";
}

ListenAddress ReadListenAddress(std::wstring_view text)
{
    const std::string words = ToUtf8(text);
    const size_t colon = words.rfind(':');
    std::string host = colon == std::string::npos ? "127.0.0.1" : words.substr(0, colon);
    if (host == "localhost") {
        host = "127.0.0.1";
    }
    const auto where = AddressIn(host);
    const auto port = PortIn(std::string_view(words).substr(colon == std::string::npos ? 0 : colon + 1));
    if (!where || !port || where->is_v6() != host.starts_with('[')) {
        RaiseInput(L"--listen: " + Excerpt(text) +
                   L" is no address with a port. Write 127.0.0.1:8087 or [::1]:8087 for this machine alone, "
                   L"0.0.0.0:8087 for everybody who has the token.");
    }
    return {where->to_string(), *port};
}

bool IsAddress(std::string_view text)
{
    return AddressIn(text).has_value();
}

}  // namespace tvn2x
