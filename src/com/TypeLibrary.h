#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/ComPtr.h"

namespace tvn2x::com {

/// A type library that is embedded in this module (resources 1, 2, ...); null behind the last one. Throws where it
/// cannot be read.
ComPtr<ITypeLib> EmbeddedLibrary(int resource);

/// The description of an interface or a class, from the embedded type libraries. Read once and kept until the module
/// goes. Throws RaisedError where no embedded library knows it.
ITypeInfo* TypeInfoOf(REFIID interfaceId);

/// Forgets what was read. For the module's detachment.
void ForgetTypeInfo();

}  // namespace tvn2x::com
