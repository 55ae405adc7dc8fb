#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tvn2x::recordings {

/// Decoder of the shortened Reed-Solomon code (204,188) of EN 300 429, clause 6.2: field polynomial
/// x^8 + x^4 + x^3 + x^2 + 1, generator with the roots a^0 to a^15, up to eight wrong bytes corrected.
class ReedSolomon
{
public:
    static constexpr size_t codeBytes = 204;
    static constexpr size_t dataBytes = 188;
    static constexpr size_t parityBytes = codeBytes - dataBytes;

    ReedSolomon();

    /// Corrects the code word in place. How many bits were wrong; nothing where more bytes are wrong than can be
    /// corrected, and the word is as it was then.
    std::optional<int> Correct(std::span<uint8_t, codeBytes> word) const;

private:
    using Polynomial = std::array<uint8_t, parityBytes + 1>;

    /// The polynomials that say where the errors are and how large.
    struct ErrorPolynomials
    {
        Polynomial locator;
        Polynomial evaluator;
        size_t errors;
    };

    uint8_t Product(uint8_t a, uint8_t b) const;
    uint8_t Quotient(uint8_t a, uint8_t b) const;
    uint8_t Value(std::span<const uint8_t> polynomial, uint8_t at) const;
    std::array<uint8_t, parityBytes> Remainder(std::span<const uint8_t, codeBytes> word) const;
    Polynomial Locator(std::span<const uint8_t, parityBytes> syndromes) const;
    ErrorPolynomials Solve(std::span<const uint8_t, parityBytes> syndromes) const;
    std::optional<int> Repair(const ErrorPolynomials& polynomials, std::span<uint8_t, codeBytes> word) const;

    /// Sixteen bytes of a remainder as two numbers: the first byte is the highest.
    struct Parity
    {
        uint64_t high = 0;
        uint64_t low = 0;

        uint8_t First() const { return static_cast<uint8_t>(high >> 56); }
        uint8_t Second() const { return static_cast<uint8_t>(high >> 48); }
        Parity Without(int bytes) const { return {high << (8 * bytes) | low >> (64 - 8 * bytes), low << (8 * bytes)}; }
        Parity Plus(const Parity& other) const { return {high ^ other.high, low ^ other.low}; }
    };

    std::array<uint8_t, 512> powers_{};  ///< of the field's generator; twice round, so that sums need no modulo
    std::array<uint8_t, 256> logarithms_{};
    /// What a byte that leaves the division adds to the remainder, and what it has added one byte later.
    std::array<Parity, 256> feedback_{};
    std::array<Parity, 256> feedbackBefore_{};
};

}  // namespace tvn2x::recordings
