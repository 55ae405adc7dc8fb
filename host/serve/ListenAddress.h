#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvn2x {

/// Where a server listens.
struct ListenAddress
{
    std::string address;  ///< of either version of IP, without brackets: "127.0.0.1", "::1", "0.0.0.0"
    uint16_t port = 0;    ///< 0 lets the system choose one

    bool IsLoopback() const;  ///< nobody but this machine reaches it
    /// What a browser on this machine is given: "http://127.0.0.1:8087/". Of every address of the machine it names the
    /// loopback one.
    std::string Link() const;
};

/// Reads "127.0.0.1:8087", "[::1]:8087", "localhost:8087", or a port alone, which is the loopback's. Raises
/// unusableInput for anything else.
ListenAddress ReadListenAddress(std::wstring_view text);

/// Whether a text is an address of either version of IP, in brackets or without.
bool IsAddress(std::string_view text);

}  // namespace tvn2x
