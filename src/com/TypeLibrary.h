#pragma once

#include <windows.h>

#include <oaidl.h>

namespace tvn2x::com {

/// The description of an interface, from the type libraries embedded in this module (resources 1, 2, ...). Read once
/// and kept until the module goes. Throws RaisedError where no embedded library knows the interface.
ITypeInfo* TypeInfoOf(REFIID interfaceId);

/// Forgets what was read. For the module's detachment.
void ForgetTypeInfo();

}  // namespace tvn2x::com
