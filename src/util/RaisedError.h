#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace tvn2x {

/// An error on its way to the host: number, source ("clsSetup.Frequency") and description, as the host reads them from
/// its error object, and where the raiser's help explains it. Numbers 1..65535 are run-time errors, negative ones are
/// HRESULTs; both travel unchanged. Any other number, which somebody else has made up, leads the description.
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
    std::wstring helpFile;     ///< of whoever raised it first; empty where there is none
    uint32_t helpContext = 0;  ///< the topic in that file
};

namespace error {

constexpr int32_t overflow = 6;
constexpr int32_t subscriptOutOfRange = 9;
constexpr int32_t typeMismatch = 13;
constexpr int32_t objectMissing = 91;
constexpr int32_t invalidPropertyValue = 380;
constexpr int32_t cannotCreateObject = 429;

}  // namespace error

/// Error 9, the standard answer to an index outside an array.
[[noreturn]] inline void RaiseSubscript(const wchar_t* source)
{
    throw RaisedError(error::subscriptOutOfRange, source, L"Subscript out of range");
}

}  // namespace tvn2x
