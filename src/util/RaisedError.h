#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace tvn2x {

/// An error on its way to the host: number, source ("clsSetup.Frequency") and description, as the host reads them from
/// its error object. Numbers 1..65535 are run-time errors; any other number is an HRESULT and travels unchanged.
class RaisedError : public std::exception
{
public:
    RaisedError(int32_t errorNumber, std::wstring errorSource, std::wstring errorDescription)
        : number(errorNumber), source(std::move(errorSource)), description(std::move(errorDescription))
    {
    }

    const char* what() const noexcept override { return "raised error"; }

    int32_t number;
    std::wstring source;
    std::wstring description;
};

namespace error {

constexpr int32_t overflow = 6;
constexpr int32_t subscriptOutOfRange = 9;
constexpr int32_t typeMismatch = 13;
constexpr int32_t invalidPropertyValue = 380;
constexpr int32_t cannotCreateObject = 429;

}  // namespace error

/// Error 9, the standard answer to an index outside an array.
[[noreturn]] inline void RaiseSubscript(const wchar_t* source)
{
    throw RaisedError(error::subscriptOutOfRange, source, L"Subscript out of range");
}

}  // namespace tvn2x
