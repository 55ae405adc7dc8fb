#pragma once

#include <set>
#include <string>
#include <utility>

#include "Client.h"

namespace tvn2x::wrong {

/// How an operation of the wrong driver answers. The failures hand out what nobody may touch.
enum class Answer
{
    rightly,
    failsBare,         ///< E_FAIL without error information
    failsWithWords,    ///< 4711 with error information: source, description, help file and topic
    failsUnknown,      ///< an HRESULT that nobody has defined
    failsWithoutCode,  ///< the facility of run-time errors with the number 0
    succeedsOddly,     ///< rightly, with an HRESULT that is a success and not S_OK
    untouched,         ///< S_OK, the out argument as it was: 0, a null text, a null object
    notANumber,        ///< for numbers as well as for texts and flags: the least likely one
    infinite,
    minusInfinite,
    huge,      ///< 1e300, a text of a million characters
    denormal,  ///< the smallest number; a text of odd length with a NUL and half a character in it
    unmasks,   ///< rightly, with the thread's floating-point units in another state
};

constexpr Answer lastAnswer = Answer::unmasks;
constexpr bool Fails(Answer answer)
{
    return answer >= Answer::failsBare && answer <= Answer::failsWithoutCode;
}

constexpr long unknownFailure = static_cast<long>(0x8FFF1234);
constexpr long failureWithoutCode = static_cast<long>(0x800A0000);
constexpr long failureWithWords = static_cast<long>(0x800A0000 + 4711);
constexpr const wchar_t* words[] = {L"the cable", L"is not plugged in", L"cable.hlp"};
constexpr unsigned long topic = 77;

/// What every right answer leaves behind on its thread: error information of something else.
constexpr const wchar_t* leftOver = L"External 10MHz reference input is not fitted";

/// By class of the driver library; registered in its place they are a driver that knows nothing but the published
/// contract and the list of its operations. It answers as a receiver with a good signal does, except for the one
/// operation that it was told to answer wrongly.
extern const std::pair<CLSID, IClassFactory*> factories[3];

/// From now on the operation answers so; "" is none. Settings that were written are forgotten.
void Misbehave(const std::string& operation, Answer answer);
/// Asked before each operation where it is set: while it says so, the receiver cannot be reached and every one fails
/// with words.
extern bool (*isLost)();
/// How often an operation has answered as it was told.
int Misdeeds();
/// The operations that have been called since the program began.
const std::set<std::string>& Operations();

}  // namespace tvn2x::wrong
