#pragma once

#include <windows.h>

#include <list>

#include "com/ComPtr.h"
#include "driver/DriverLibrary.h"

namespace tvn2x {

/// While it lives, the classes of XKTR2x are those of another driver library for whoever creates objects in this
/// apartment: the plug-in and its host alike, so that the host's stop reaches the receiver that measures. Nothing is
/// registered for other programs. Objects that were made before stay what they are.
class DriverInstead
{
public:
    /// Raises 429, with the reason, where the library's classes are not to be had or are no one library's.
    explicit DriverInstead(const DriverLibrary& library);
    DriverInstead(const DriverInstead&) = delete;
    DriverInstead& operator=(const DriverInstead&) = delete;

    /// Somebody has chosen for this apartment: the one who comes first has the word.
    static bool IsChosen();

private:
    /// A class object of this process, by an identity of one's choice.
    class ClassObject
    {
    public:
        ClassObject(REFCLSID id, IUnknown* object);
        ClassObject(const ClassObject&) = delete;
        ClassObject& operator=(const ClassObject&) = delete;
        ~ClassObject() { CoRevokeClassObject(cookie_); }

    private:
        DWORD cookie_ = 0;
    };

    std::list<ClassObject> classes_;
};

}  // namespace tvn2x
