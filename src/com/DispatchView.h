#pragma once

#include <windows.h>

#include <oaidl.h>

namespace tvn2x::com {

/// An object of its own identity whose default interface is another object's secondary one: what a script language,
/// which sees default interfaces only, holds to call it by name. Keeps the viewed object alive.
IDispatch* NewDispatchView(IDispatch* viewed);

}  // namespace tvn2x::com
