#pragma once

#include <cstdint>
#include <string>

namespace tvn2x {

/// What has been counted of bit errors before Reed-Solomon, over blocks of 10^7 bits, and how receivers show it.
struct BitErrorProgress
{
    static constexpr double blockBits = 1e7;

    double bits = 0;
    double errors = 0;
    int32_t wanted = 0;  ///< blocks

    int32_t Blocks() const;  ///< complete ones, `wanted` at most
    bool Done() const { return Blocks() == wanted; }
    /// Errors against bits; 0 before the first error.
    double Ratio() const { return bits > 0 ? errors / bits : 0; }
    std::wstring State() const;   ///< "3 of 10", at the end "Done"
    std::wstring Result() const;  ///< "2.3E-5"; "<1.0E-8" while there is no error among 10^8 bits
};

}  // namespace tvn2x
