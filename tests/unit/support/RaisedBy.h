#pragma once

#include <string>

#include "util/RaisedError.h"

namespace tvn2x {

/// Number, source and description of the error that an action raises ("7 Source: Text"), "" where it raises none.
template <class Action>
std::wstring RaisedBy(const Action& action)
{
    try {
        action();
    } catch (const RaisedError& raised) {
        return std::to_wstring(raised.number) + L" " + raised.source + L": " + raised.description;
    }
    return {};
}

}  // namespace tvn2x
