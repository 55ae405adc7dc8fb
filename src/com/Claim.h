#pragma once

namespace tvn2x::com {

/// What a module may do with an identity that another file has.
enum class Claim
{
    own,      ///< take it over: it is the module's own
    ifVacant  ///< leave it: the module has it only where nobody else does
};

}  // namespace tvn2x::com
