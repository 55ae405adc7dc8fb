#include "receivers/recordings/transport/ReedSolomon.h"

#include <algorithm>
#include <bit>

namespace tvn2x::recordings {
namespace {

constexpr int fieldPolynomial = 0x11D;
constexpr size_t fieldOrder = 255;

}  // namespace

ReedSolomon::ReedSolomon()
{
    int element = 1;
    for (size_t power = 0; power < fieldOrder; ++power) {
        powers_[power] = static_cast<uint8_t>(element);
        powers_[power + fieldOrder] = static_cast<uint8_t>(element);
        logarithms_[static_cast<size_t>(element)] = static_cast<uint8_t>(power);
        element = element << 1 ^ (element & 0x80 ? fieldPolynomial : 0);
    }

    // The generator's coefficients, the highest first and without its leading 1.
    Polynomial generator{1};
    for (size_t root = 0; root < parityBytes; ++root) {
        for (size_t i = root + 1; i > 0; --i) {
            generator[i] = static_cast<uint8_t>(generator[i] ^ Product(generator[i - 1], powers_[root]));
        }
    }
    for (size_t byte = 0; byte < feedback_.size(); ++byte) {
        for (size_t i = 0; i < parityBytes; ++i) {
            uint64_t& half = i < 8 ? feedback_[byte].high : feedback_[byte].low;
            half = half << 8 | Product(generator[i + 1], static_cast<uint8_t>(byte));
        }
    }
    for (size_t byte = 0; byte < feedback_.size(); ++byte) {
        const Parity& added = feedback_[byte];
        feedbackBefore_[byte] = added.Without(1).Plus(feedback_[added.First()]);
    }
}

uint8_t ReedSolomon::Product(uint8_t a, uint8_t b) const
{
    return a == 0 || b == 0 ? uint8_t{0} : powers_[size_t{logarithms_[a]} + logarithms_[b]];
}

uint8_t ReedSolomon::Quotient(uint8_t a, uint8_t b) const
{
    return a == 0 ? uint8_t{0} : powers_[size_t{logarithms_[a]} + fieldOrder - logarithms_[b]];
}

/// Of a polynomial whose coefficients are given from the lowest.
uint8_t ReedSolomon::Value(std::span<const uint8_t> polynomial, uint8_t at) const
{
    uint8_t value = 0;
    for (size_t i = polynomial.size(); i > 0; --i) {
        value = static_cast<uint8_t>(Product(value, at) ^ polynomial[i - 1]);
    }
    return value;
}

/// What is left of the word divided by the generator, from the lowest coefficient: nothing but zeros if it is right.
std::array<uint8_t, ReedSolomon::parityBytes> ReedSolomon::Remainder(std::span<const uint8_t, codeBytes> word) const
{
    Parity rest;
    for (size_t i = 0; i < dataBytes; i += 2) {
        const Parity& first = feedbackBefore_[word[i] ^ rest.First()];
        const Parity& second = feedback_[word[i + 1] ^ rest.Second()];
        rest = rest.Without(2).Plus(first).Plus(second);
    }
    std::array<uint8_t, parityBytes> remainder{};
    for (size_t i = 0; i < parityBytes; ++i) {
        const uint64_t half = i < 8 ? rest.low >> (8 * i) : rest.high >> (8 * (i - 8));
        remainder[i] = static_cast<uint8_t>(half ^ word[codeBytes - 1 - i]);
    }
    return remainder;
}

/// The algorithm of Berlekamp and Massey.
ReedSolomon::Polynomial ReedSolomon::Locator(std::span<const uint8_t, parityBytes> syndromes) const
{
    Polynomial locator{1};
    Polynomial earlier{1};
    size_t length = 0;
    size_t shift = 1;
    uint8_t earlierDiscrepancy = 1;
    for (size_t step = 0; step < parityBytes; ++step, ++shift) {
        uint8_t discrepancy = syndromes[step];
        for (size_t i = 1; i <= length; ++i) {
            discrepancy = static_cast<uint8_t>(discrepancy ^ Product(locator[i], syndromes[step - i]));
        }
        if (discrepancy == 0) {
            continue;
        }
        const Polynomial before = locator;
        const uint8_t factor = Quotient(discrepancy, earlierDiscrepancy);
        for (size_t i = shift; i < locator.size(); ++i) {
            locator[i] = static_cast<uint8_t>(locator[i] ^ Product(factor, earlier[i - shift]));
        }
        if (2 * length <= step) {
            length = step + 1 - length;
            earlier = before;
            earlierDiscrepancy = discrepancy;
            shift = 0;
        }
    }
    return locator;
}

ReedSolomon::ErrorPolynomials ReedSolomon::Solve(std::span<const uint8_t, parityBytes> syndromes) const
{
    ErrorPolynomials solved{Locator(syndromes), {}, parityBytes};
    while (solved.errors > 0 && solved.locator[solved.errors] == 0) {
        --solved.errors;
    }
    for (size_t i = 0; i < parityBytes; ++i) {
        for (size_t j = 0; j <= i; ++j) {
            solved.evaluator[i] =
                static_cast<uint8_t>(solved.evaluator[i] ^ Product(solved.locator[j], syndromes[i - j]));
        }
    }
    return solved;
}

/// The errors' places by trying all of them (Chien), their values by Forney's formula.
std::optional<int> ReedSolomon::Repair(const ErrorPolynomials& polynomials, std::span<uint8_t, codeBytes> word) const
{
    std::array<std::pair<size_t, uint8_t>, parityBytes / 2> errors;
    size_t found = 0;
    for (size_t place = 0; place < codeBytes; ++place) {
        const uint8_t inverse = powers_[fieldOrder - place];
        const std::span<const uint8_t> locator(polynomials.locator.data(), polynomials.errors + 1);
        if (Value(locator, inverse) != 0) {
            continue;
        }
        uint8_t derivative = 0;
        const uint8_t square = Product(inverse, inverse);
        for (size_t i = (polynomials.errors + 1) / 2; i > 0; --i) {
            derivative = static_cast<uint8_t>(Product(derivative, square) ^ polynomials.locator[2 * i - 1]);
        }
        if (derivative == 0 || found == polynomials.errors) {
            return std::nullopt;
        }
        const uint8_t numerator = Product(powers_[place], Value(polynomials.evaluator, inverse));
        errors[found++] = {codeBytes - 1 - place, Quotient(numerator, derivative)};
    }
    if (found != polynomials.errors) {
        return std::nullopt;
    }
    int bits = 0;
    for (size_t i = 0; i < found; ++i) {
        const auto [place, value] = errors[i];
        word[place] = static_cast<uint8_t>(word[place] ^ value);
        bits += std::popcount(value);
    }
    return bits;
}

std::optional<int> ReedSolomon::Correct(std::span<uint8_t, codeBytes> word) const
{
    const std::array<uint8_t, parityBytes> remainder = Remainder(word);
    if (std::all_of(remainder.begin(), remainder.end(), [](uint8_t byte) { return byte == 0; })) {
        return 0;
    }
    std::array<uint8_t, parityBytes> syndromes{};
    for (size_t i = 0; i < parityBytes; ++i) {
        syndromes[i] = Value(remainder, powers_[i]);
    }
    const ErrorPolynomials polynomials = Solve(syndromes);
    if (polynomials.errors == 0 || polynomials.errors > parityBytes / 2) {
        return std::nullopt;
    }
    return Repair(polynomials, word);
}

}  // namespace tvn2x::recordings
